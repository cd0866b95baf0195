#!/usr/bin/env bash
# Installs what draws the music in the pages of `sokrun --html`: the npm package verovio, where sokrun looks for it.
# Needs Node and npm. Usage: scripts/install-verovio.sh [folder]
# Another folder than the default has to stand in NODE_PATH, with /node_modules added.
set -euo pipefail
folder=${1:-${XDG_DATA_HOME:-$HOME/.local/share}/sokrun}

command -v node >/dev/null && command -v npm >/dev/null || {
  echo "install-verovio.sh: Node and npm are needed (Debian: apt-get install nodejs npm)" >&2
  exit 1
}
mkdir -p "$folder"
[ -e "$folder/package.json" ] || echo '{"private": true}' >"$folder/package.json"
npm install --prefix "$folder" --no-audit --no-fund --save-exact verovio@6
echo "verovio is in $folder/node_modules"
