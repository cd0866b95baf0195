#!/usr/bin/env bash
# The pages for authors and the reference of the kit as HTML in build/docs/html. Fails on a public name without documentation and on
# every other warning of Doxygen.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh doxygen
mkdir -p build/docs
doxygen docs/Doxyfile
echo "build/docs/html/index.html"
