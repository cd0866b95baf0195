#!/usr/bin/env bash
# The umbrella header compiles alone, with every compiler there is, and has every public header.
# Usage: umbrella.sh SOURCE_DIR
set -euo pipefail
cd "$1"
internal="assertion_report.h|binding.h|first_match.h|record_calls.h|unit_blocks.h"  # of the sources of their own folders
include=(-I .)
[ "$(uname)" = Darwin ] || include+=(-I platform)
header=SokExtShared/SokEDK.h
for compiler in g++ clang++; do
  command -v "$compiler" >/dev/null || { echo "umbrella.sh: no $compiler" >&2; continue; }
  echo "#include \"$header\"" | "$compiler" -x c++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Werror \
    "${include[@]}" -fsyntax-only -
done
missing=$(comm -23 <(find SokExtShared -name '*.h' ! -name SokEDK.h | grep -Ev "/($internal)$" | sort) \
               <(sed -n 's/^#include "\(.*\)"$/\1/p' "$header" | sort))
[ -z "$missing" ] || { echo "not in $header: $missing" >&2; exit 1; }
