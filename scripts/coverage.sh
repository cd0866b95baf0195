#!/usr/bin/env bash
# Line and branch coverage of the kit and the extension by the tests, as a table and as HTML in build/coverage/html.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh gcovr
cmake --preset debug -B build/coverage -DCMAKE_CXX_FLAGS="--coverage -fprofile-abs-path" >/dev/null
cmake --build build/coverage
find build/coverage -name '*.gcda' -delete
# The installed kit's outside project is built without coverage and could not link an instrumented kit; what counts the
# lines does not survive short memory itself.
ctest --test-dir build/coverage -j2 -Q -E 'Kit.WorksInstalled|MemoryShort' ||
  { ctest --test-dir build/coverage --rerun-failed --output-on-failure; exit 1; }
mkdir -p build/coverage/html
gcovr --root . --filter 'entry/' --filter 'SokExtShared/' --exclude-throw-branches --exclude-unreachable-branches \
  --print-summary --html-details build/coverage/html/index.html --fail-under-line 95 --fail-under-branch 85 \
  build/coverage/SokExtShared build/coverage/entry
