#!/usr/bin/env bash
# Runs the fuzzers under the address and undefined-behaviour sanitizers. New inputs go to build/fuzz/corpus/<name>; what
# crashes is left in build/fuzz/found. Usage: scripts/fuzz.sh [seconds each] [name...]
# The tests of every other build run the seeds, too.
set -euo pipefail
export TMPDIR=${TMPDIR:-/dev/shm}  # small files, written very often
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh
cmake -G Ninja -B build/fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ -DSOK_BUILD_FUZZ=ON \
  -DSOK_SANITIZE=address,undefined >/dev/null
cmake --build build/fuzz --target fuzzers

seconds=${1:-60}
[ $# -gt 0 ] && shift
names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  for folder in fuzz/corpus/*; do names+=("$(basename "$folder")"); done
fi
mkdir -p build/fuzz/found
status=0
for name in "${names[@]}"; do
  mkdir -p "build/fuzz/corpus/$name"
  echo "== $name, $seconds s"
  dictionary=()
  [ -e "fuzz/$name.dict" ] && dictionary=("-dict=fuzz/$name.dict")
  build/fuzz/fuzz/"$name" "${dictionary[@]}" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=3000 -artifact_prefix="build/fuzz/found/$name-" \
    -verbosity=0 -print_final_stats=1 "build/fuzz/corpus/$name" "fuzz/corpus/$name" || status=1
done
exit $status
