#!/usr/bin/env bash
# Installs what is missing, builds, fills the empty measures of a real score with rests, clears whole-measure rests, and
# shows what changed. Usage: scripts/demo.sh [score.musicxml]
set -euo pipefail
score=$(realpath "${1:-$(dirname "$0")/../examples/scores/demo.musicxml}")
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
cmake --preset release >/dev/null
cmake --build --preset release --target sokrun MeasureRests SonkelEngine
sokrun=build/release/bin/sokrun
out=build/demo
name=$(basename "$score")
mkdir -p "$out"

say() { printf '\n== %s\n' "$*"; }

say "The score: $name"
"$sokrun" list

say "Fill empty measures with rests -> $out/filled-$name"
"$sokrun" fill "$score" -o "$out/filled-$name" --html "$out/${name%.*}.html"
echo "A page of it, with pictures where scripts/install-verovio.sh was run -> $out/${name%.*}.html"

say "Clear whole-measure rests -> $out/cleared-$name"
"$sokrun" clear "$score" -o "$out/cleared-$name"

say "What filling changed in the text of the score"
difference=$("$sokrun" fill "$score" --dry-run --quiet)
sed -n 1,40p <<<"${difference:-nothing}"
