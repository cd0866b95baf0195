#!/usr/bin/env bash
# Measures everything in one run, as ratios against named peers, and prints them as a table (the one in
# docs/performance.md). Usage: scripts/bench.sh [--quick] [score.musicxml...]    the scores are added to the whole runs
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh time
cmake --preset release -DSOK_BUILD_BENCH=ON >/dev/null
cmake --build --preset release >/dev/null
exec python3 scripts/bench_table.py build/release "$@"
