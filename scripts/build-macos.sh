#!/usr/bin/env bash
# Builds MeasureRests.bundle for macOS (arm64 and x86_64 in one) on Linux, for a person to try on a Mac. It is unsigned,
# linked against lists of names in place of the system's libraries, and was never run: tests see its form alone.
# Usage: scripts/build-macos.sh [Release|Debug] [target...]
set -euo pipefail
cd "$(dirname "$0")/.."
type=${1:-Release}
[ $# -gt 0 ] && shift
targets=("${@:-all}")
build=build/macos-$type

scripts/install-macos-tools.sh
python3 cmake/macos/make_stubs.py .cache/macos-sdk
log=$(cmake --preset macos --toolchain cmake/macos/toolchain.cmake -B "$build" -DCMAKE_BUILD_TYPE="$type" 2>&1) ||
  { echo "$log"; exit 1; }
cmake --build "$build" -j 2 --target "${targets[@]}"
[ "${targets[*]}" = all ] || exit 0
cat <<END
$build/lib/sok/MeasureRests.bundle: for arm64 and x86_64, macOS 11 and later. It was linked against stubs and never run.
It carries no developer's signature: on the Mac, unpack it and \`codesign --force --sign - MeasureRests.bundle\`
where the system refuses it.
END
