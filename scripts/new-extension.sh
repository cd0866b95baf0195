#!/usr/bin/env bash
# Starts an extension of one's own: scripts/new-extension.sh NAME DIR
#
# DIR becomes a project that builds at once, with an installed kit (CMAKE_PREFIX_PATH tells where) or with this tree.
set -euo pipefail
tree=$(cd "$(dirname "$0")/.." && pwd)

fail() { echo "new-extension.sh: $*" >&2; exit 1; }
[ $# -eq 2 ] || { echo "usage: scripts/new-extension.sh NAME DIR" >&2; exit 2; }
export LC_ALL=C  # letters are A to Z in the name that follows, also where other languages have other alphabets
name=$1 dir=$2
[[ $name =~ ^[A-Za-z][A-Za-z0-9_]*$ ]] || fail "$name: a name is letters, digits and underscores, a letter first"
[ ! -e "$dir" ] || fail "$dir: exists already"

mkdir -p "$dir"
cp -R "$tree/examples/minimal/resources" "$dir"
cp "$tree/examples/minimal/minimal.cpp" "$dir/$name.cpp"
cp "$tree/examples/minimal/score.musicxml" "$dir"
sed "s/Minimal/$name/g" "$tree/examples/minimal/resources/Info.plist" >"$dir/resources/Info.plist"
cat >"$dir/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.22)
project($name VERSION 1.0 LANGUAGES CXX)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_package(SokEDK 1 QUIET)
if(NOT SokEDK_FOUND)
  set(SOKEDK_TREE "$tree" CACHE PATH "The kit's own tree, for when it is not installed")
  add_subdirectory("\${SOKEDK_TREE}" SokEDK EXCLUDE_FROM_ALL)
endif()

sok_add_extension($name
  SOURCES $name.cpp
  INFO_PLIST resources/Info.plist
  RESOURCES resources)
sok_install_bundle($name)

enable_testing()
sok_test_extension($name COMMAND 0 SCORE score.musicxml ALERT "Notes: 3")
END
cat <<END
$dir: an extension with one command. Its identifier stands in resources/Info.plist, its texts in
resources/en.lproj/Localizable.strings. Build and check it:
    cd $(printf %q "$dir") && cmake -B build && cmake --build build
    ctest --test-dir build
    sokrun list build/$name.bundle
    sokrun validate build/$name.bundle
END
