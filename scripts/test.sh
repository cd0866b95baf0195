#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test:
#   release   g++, everything
#   asan      g++, everything, under the address and undefined-behaviour sanitizers (leaks are errors)
#   tsan      g++, the look-up of host entry points and bundles from many threads
#   libcxx    clang++ with libc++: the platform layer, the kit, the extension, the engine
#   macos     clang++ for macOS, where scripts/install-macos-tools.sh was run: compiles, links, asks for what is there
#   analysis  cppcheck and clang-tidy
# Usage: scripts/test.sh [--quick]     --quick runs the release stage alone
set -euo pipefail
cd "$(dirname "$0")/.."

export UBSAN_OPTIONS=print_stacktrace=1

stage() { printf '\n==== %s (%s s so far)\n' "$*" "$SECONDS"; }

# Runs a command that the log shows first.
run() {
  printf '+%s\n' "$(printf ' %q' "$@")"
  "$@"
}

run_stage() {  # preset, then the targets to build and how ctest picks the tests, when not all of them
  local preset=$1 targets=${2:-all} tests=${3:--R .}
  stage "$preset"
  cmake --preset "$preset" >build-"$preset".log 2>&1 || { cat build-"$preset".log; exit 1; }
  rm -f build-"$preset".log
  # shellcheck disable=SC2086
  run cmake --build --preset "$preset" --target $targets
  # shellcheck disable=SC2086
  run ctest --preset "$preset" $tests
}

skipped=()
skip() {  # what, and why
  skipped+=("$1 ($2)")
  echo "test.sh: skipped: ${skipped[-1]}" >&2
}

scripts/install-dependencies.sh
scripts/install-musicxml-schema.sh || skip "the test by the MusicXML schema" "scripts/install-musicxml-schema.sh failed"
run_stage release
[ "${1:-}" = --quick ] && exit 0
run_stage asan
run_stage tsan "binding_test platform_bundle_test" '-R ^(Binding|Bundle)\.'
run_stage libcxx unit_tests "-L unit"
stage macos
if missing=$(scripts/install-macos-tools.sh --check); then
  run scripts/check-macos.sh
else
  skip macos "$missing; scripts/install-macos-tools.sh installs it"
fi
stage analysis
run scripts/analyse.sh
stage "all stages passed${skipped[*]:+, but for what was skipped:}"
for what in "${skipped[@]}"; do echo "     $what"; done
