#!/usr/bin/env bash
# cppcheck and clang-tidy over everything that is shipped. Exits 1 on a finding.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh clang-tidy cppcheck
mapfile -t sources < <(git ls-files 'entry/*.cpp' 'SokExtShared/*.cpp' 'platform/*.cpp' 'host/*.cpp' 'examples/*.cpp' |
  grep -v darwin)

echo "cppcheck: ${#sources[@]} sources"
cppcheck --quiet --error-exitcode=1 --std=c++20 --language=c++ --inline-suppr -j 2 \
  --enable=warning,performance,portability --suppressions-list=scripts/cppcheck-suppressions.txt \
  -I . -I platform "${sources[@]}"

echo "clang-tidy"
# The sources of sokrun are looked at together, as they are compiled: what all of them include takes most of the time.
cmake --preset release -B build/analyse -DCMAKE_CXX_COMPILER=clang++ >/dev/null
sed -n 's/^ *"file": "\(.*\)".*/\1/p' build/analyse/compile_commands.json | sort -u |
  grep -F -e /Unity/ -f <(printf "$PWD/%s\n" "${sources[@]}") |
  xargs -d '\n' -P 2 -n 2 clang-tidy --quiet --checks=-bugprone-suspicious-include -p build/analyse 2>/dev/null
echo "analysis: no findings"
