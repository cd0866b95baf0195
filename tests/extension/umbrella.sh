#!/usr/bin/env bash
# The umbrella header compiles alone, with every compiler there is, and has every header that does not say of itself
# that it is for the kit's own sources.
# Usage: umbrella.sh SOURCE_DIR
set -euo pipefail
cd "$1"
include=(-I .)
[ "$(uname)" = Darwin ] || include+=(-I platform)
header=SokExtShared/SokEDK.h
for compiler in g++ clang++; do
  command -v "$compiler" >/dev/null || { echo "umbrella.sh: no $compiler" >&2; continue; }
  echo "#include \"$header\"" | "$compiler" -x c++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Werror \
    "${include[@]}" -fsyntax-only -
done
listed=$(sed -n 's/^#include "\(.*\)"$/\1/p' "$header" | sort)
public=$(grep -rL --include='*.h' "For the kit's own sources" SokExtShared | grep -vx "$header" | sort)
[ "$listed" = "$public" ] || { diff <(echo "$listed") <(echo "$public") >&2; echo "$header: > is missing" >&2; exit 1; }
