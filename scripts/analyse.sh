#!/usr/bin/env bash
# clang-tidy and cppcheck over everything that is shipped. Exits 1 on a finding.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh clang-tidy cppcheck
cmake --preset release -DCMAKE_CXX_COMPILER=clang++ -B build/analyse >/dev/null

mapfile -t sources < <(git ls-files 'entry/*.cpp' 'SokExtShared/*.cpp' 'platform/*.cpp' 'host/*.cpp' 'examples/*.cpp' |
  grep -v darwin)
echo "clang-tidy: ${#sources[@]} sources"
printf '%s\n' "${sources[@]}" | xargs -P 2 -n 4 clang-tidy --quiet -p build/analyse 2>/dev/null

echo "cppcheck"
cppcheck --quiet --error-exitcode=1 --std=c++20 --language=c++ --inline-suppr -j 2 \
  --enable=warning,performance,portability --suppressions-list=scripts/cppcheck-suppressions.txt \
  -I . -I platform "${sources[@]}"
echo "analysis: no findings"
