#!/usr/bin/env bash
# The pages for authors and the reference of the kit as HTML in build/docs/html. Fails on a public name without
# documentation and on every other warning of Doxygen. Usage: scripts/docs.sh [another folder than build/docs]
set -euo pipefail
cd "$(dirname "$0")/.."
output=${1:-build/docs}
command -v doxygen >/dev/null || scripts/install-dependencies.sh doxygen

# Doxygen cannot follow a link between pages whose path has a blank.
work=$(mktemp -d /tmp/sokedk-docs.XXXXXX)
trap 'rm -rf "$work"' EXIT
cp -R docs SokExtShared platform "$work"
(cd "$work" && mkdir -p build/docs && doxygen docs/Doxyfile)
mkdir -p "$output"
rm -rf "$output/html"
mv "$work/build/docs/html" "$output/html"
echo "$output/html/index.html"
