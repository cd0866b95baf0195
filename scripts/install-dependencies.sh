#!/usr/bin/env bash
# Installs what building and testing need, from Debian's packages. Does nothing where everything is there.
set -euo pipefail

packages=(
  g++ clang cmake ninja-build pkg-config
  libpugixml-dev libzip-dev libcli11-dev libkainjow-mustache-dev libdtl-dev nlohmann-json3-dev
  libgtest-dev googletest libbenchmark-dev libicu-dev
  libc++-14-dev libc++abi-14-dev libclang-rt-14-dev
  libxml2-utils patch python3 python3-cram
)
missing=()
for package in "${packages[@]}" "$@"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || {
    echo "install-dependencies.sh: root or sudo is needed to install what is missing: ${missing[*]}" >&2
    exit 1
  }
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}" >&2
"${as_root[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
