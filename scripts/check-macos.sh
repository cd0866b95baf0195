#!/usr/bin/env bash
# Checks on Linux that the kit, MeasureRests and the examples compile and link for macOS, as
#   Kit.CompilesForMacOS   both architectures, Release and Debug, without a warning
#   Kit.LinksForMacOS      what the bundle exports and asks for, its layout, the installed kit
# Needs scripts/install-macos-tools.sh. Exits 1 at the first finding.
set -euo pipefail
export LC_ALL=C  # names are sorted by bytes, and i is a letter between a and z, which it is not in Turkish
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
test_name=Kit.CompilesForMacOS

passed() { echo "$test_name ($*): passed"; }
fail() { echo "$test_name: FAILED: $*" >&2; exit 1; }
differs() {  # what, the file with what is expected, the file with what is there
  diff -u --label expected --label found "$2" "$3" >&2 || fail "$1"
}

# The names that a bundle may ask for, as nm prints them.
allowed_imports() {
  sed -n 's/^\(lib[^ ]*\) \([^ ]*\)$/\2 (from \1)/p' cmake/macos/imports.txt
  local framework
  for framework in CoreFoundation Carbon; do
    grep -o "'_[A-Za-z_]*'" ".cache/macos-sdk/System/Library/Frameworks/$framework.framework/$framework.tbd" |
      sed "s/'\(.*\)'/\1 (from $framework)/"
  done
}

# The list of exports has the names of the one for GNU linkers, by which the tests on Linux go.
check_export_list() {
  sed -n 's/^ *\([A-Za-z_0-9]*\);$/_\1/p' cmake/extension_exports.map | sort >"$work/expected"
  sort cmake/extension_exports.exp >"$work/found"
  differs cmake/extension_exports.exp "$work/expected" "$work/found"
}

check_symbols() {  # a bundle's executable, architecture
  local nm=(llvm-nm-19 -arch "$2")
  sort cmake/extension_exports.exp >"$work/expected"
  "${nm[@]}" -gUj "$1" | sort >"$work/found"
  differs "$1 exports for $2" "$work/expected" "$work/found"
  if "${nm[@]}" -g "$1" | grep ' _SX_'; then fail "$1: a wrapper is visible, or bound elsewhere"; fi
  "${nm[@]}" -um "$1" | sed -n 's/^ *(undefined) external //p' | sort >"$work/asked"
  allowed_imports | sort >"$work/allowed"
  comm -23 "$work/asked" "$work/allowed" >"$work/more"
  [ ! -s "$work/more" ] || fail "$1 asks for more than cmake/macos/imports.txt allows: $(cat "$work/more")"
}

check_form() {  # a bundle's executable, architecture
  local headers header
  headers=$(llvm-objdump-19 --macho --arch="$2" --private-headers "$1")
  header=$(grep -A2 '^Mach header' <<<"$headers" | tail -1)
  for word in BUNDLE NOUNDEFS TWOLEVEL; do
    [[ $header == *" $word"* ]] || fail "$1: the header for $2 lacks $word: $header"
  done
  [[ $header != *WEAK* ]] || fail "$1: $2 binds weak names: $header"
  grep -q 'minos 11.0' <<<"$headers" || fail "$1: not for macOS 11 on $2"
}

check_executable() {
  local arch
  [ "$(llvm-lipo-19 -archs "$1" | xargs -n1 | sort | xargs)" = "arm64 x86_64" ] || fail "$1 is not universal"
  for arch in arm64 x86_64; do
    check_symbols "$1" "$arch"
    check_form "$1" "$arch"
  done
}

check_layout() {  # a bundle
  (cd "$1" && find . -type f | sort) >"$work/found"
  { echo ./Contents/Info.plist; echo ./Contents/MacOS/MeasureRests
    (cd entry/resources && find . -name '*.strings' | sed 's|^.|./Contents/Resources|'); } | sort >"$work/expected"
  differs "the files of $1" "$work/expected" "$work/found"
  cmp -s entry/resources/Info.plist "$1/Contents/Info.plist" || fail "$1 has another Info.plist"
  diff -r -x Info.plist entry/resources "$1/Contents/Resources" >&2 || fail "$1 has other string tables"
}

# A bundle with the whole kit in it: it asks for more than MeasureRests and the examples do.
check_whole_kit() {  # Release or Debug
  local all=$work/All-$1 sdk=.cache/macos-sdk
  clang++-19 --target=arm64-apple-macos -arch arm64 -arch x86_64 -mmacosx-version-min=11.0 "-B$sdk/bin" -isysroot "$sdk" \
    -fuse-ld=lld -std=c++20 -I. -fvisibility=hidden -bundle -o "$all" examples/minimal/minimal.cpp \
    -Wl,-all_load "build/macos-$1/lib/libSokEDK.a" -framework CoreFoundation -framework Carbon \
    -Wl,-exported_symbols_list,cmake/extension_exports.exp || fail "the whole kit does not link"
  check_executable "$all"
}

# The kit as it is installed; extensions built with what find_package and pkg-config say of it.
check_installed() {
  local prefix=$work/prefix by_hand=$work/ByHand
  cmake --install build/macos-Release --prefix "$prefix" >/dev/null
  check_layout "$prefix/lib/sok/MeasureRests.bundle"
  [ ! -e "$prefix/include/sokplatform" ] || fail "the platform's stand-in is installed"
  export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
  for place in "$(pkg-config --variable=exports SokEDK)" $(pkg-config --cflags-only-I SokEDK | sed 's/-I//g'); do
    [ -e "$place" ] || fail "pkg-config names $place, which is not there"
  done
  [[ $(pkg-config --libs SokEDK) == *"-framework CoreFoundation -framework Carbon"* ]] || fail "pkg-config lacks frameworks"
  # shellcheck disable=SC2046
  clang++-19 --target=arm64-apple-macos11 -isysroot .cache/macos-sdk -fuse-ld=lld -std=c++20 -bundle -o "$by_hand" \
    examples/minimal/minimal.cpp $(pkg-config --cflags --libs SokEDK) \
    "-Wl,-exported_symbols_list,$(pkg-config --variable=exports SokEDK)" || fail "what pkg-config says does not build"
  check_symbols "$by_hand" arm64
  scripts/new-extension.sh Outside "$work/outside" >/dev/null
  { cmake -S "$work/outside" -B "$work/outside/build" --toolchain "$PWD/cmake/macos/toolchain.cmake" \
      -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_OSX_ARCHITECTURES="arm64;x86_64" -DCMAKE_OSX_DEPLOYMENT_TARGET=11.0 &&
    cmake --build "$work/outside/build"; } >"$work/log" 2>&1 || { cat "$work/log"; fail "an extension outside of the tree"; }
  [ ! -d "$work/outside/build/SokEDK" ] || fail "the project did not find the installed kit"
  check_executable "$work/outside/build/Outside.bundle/Contents/MacOS/Outside"
}

# The tests that need no host, as far as they can be looked at here.
check_tests_configure() {
  cmake --preset macos --toolchain cmake/macos/toolchain.cmake -B "$work/tests" -DSOK_BUILD_TESTS=ON \
    -DGTest_DIR="$(echo /usr/lib/*/cmake/GTest)" >"$work/log" 2>&1 || { cat "$work/log"; fail "the tests do not configure"; }
}

check_tests_configure
for type in Release Debug; do
  scripts/build-macos.sh "$type" SokEDK >"$work/log" 2>&1 || { cat "$work/log"; fail "$type"; }
  passed "$type, arm64 and x86_64"
done

test_name=Kit.LinksForMacOS
check_export_list
for type in Release Debug; do
  scripts/build-macos.sh "$type" >"$work/log" 2>&1 || { cat "$work/log"; fail "$type"; }
  while IFS= read -r executable; do check_executable "$executable"; done \
    < <(find "build/macos-$type" -type f -path '*.bundle/Contents/MacOS/*')
  check_layout "build/macos-$type/lib/sok/MeasureRests.bundle"
  check_whole_kit "$type"
  passed "$type: exports, imports, form, layout"
done
check_installed
passed "the installed kit, by find_package and by pkg-config"
