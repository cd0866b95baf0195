#!/usr/bin/env bash
# Makes sokrun a Debian package, build/package/sokrun_VERSION_ARCHITECTURE.deb: installed with `apt-get install ./FILE`, it
# runs on a machine without a compiler. Usage: scripts/package.sh [--try]
#   --try   also installs it in a root of its own (debootstrap, as root) and runs it there
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
cmake -G Ninja -S . -B build/package/tree -D CMAKE_BUILD_TYPE=Release -D SOK_UNITY=ON -D SOK_BUILD_TESTS=OFF \
  -D SOK_BUILD_EXAMPLES=OFF -D CMAKE_SKIP_INSTALL_ALL_DEPENDENCY=ON >/dev/null
cmake --build build/package/tree --target sokrun MeasureRests SonkelEngine
rm -f build/package/*.deb
cpack --config build/package/tree/CPackConfig.cmake -G DEB -B build/package >/dev/null
rm -rf build/package/_CPack_Packages
package=$(echo build/package/sokrun_*.deb)
echo "$package"
[ "${1:-}" = --try ] || exit 0

scripts/install-dependencies.sh debootstrap
root=$(mktemp -d)
trap '! mountpoint -q "$root/proc" || umount "$root/proc"; rm -rf --one-file-system "$root"' EXIT
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(apt-get indextargets --format '$(REPO_URI)' "Codename: $release" | sed -n 1p)
debootstrap --variant=minbase "$release" "$root" "$mirror" >/dev/null
cp "$package" examples/scores/demo.musicxml "$root/tmp"
mount -t proc proc "$root/proc"
chroot "$root" sh -ec '
  apt-get install -y -qq --no-install-recommends /tmp/sokrun_*.deb >/dev/null
  cd /tmp
  sokrun --version
  sokrun fill demo.musicxml -o filled.mxl
  sokrun scan filled.mxl --quiet
  sokrun validate /usr/lib/sok/MeasureRests.bundle --check version --check symbols | tail -1'
