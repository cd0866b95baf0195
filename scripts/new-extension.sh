#!/usr/bin/env bash
# Starts an extension of one's own: sok-new-extension NAME DIR (scripts/new-extension.sh in a clone)
#
# DIR becomes a project that builds at once, with the kit that this script was installed with or, in a clone, with an
# installed kit (CMAKE_PREFIX_PATH tells where) or the clone itself.
set -euo pipefail
command=$(basename "$0")
root=$(cd "$(dirname "$0")/.." && pwd)

fail() { echo "$command: $*" >&2; exit 1; }
[ $# -eq 2 ] || { echo "usage: $command NAME DIR" >&2; exit 2; }
export LC_ALL=C  # letters are A to Z in the name that follows, also where other languages have other alphabets
name=$1 dir=$2
[[ $name =~ ^[A-Za-z][A-Za-z0-9_]*$ ]] || fail "$name: a name is letters, digits and underscores, a letter first"
[ ! -e "$dir" ] || fail "$dir: exists already"

if [ -d "$root/share/sokedk/examples/minimal" ]; then  # installed
  template=$root/share/sokedk/examples/minimal
  kit="list(APPEND CMAKE_PREFIX_PATH \"$root\")
find_package(SokEDK 1 REQUIRED)"
else
  template=$root/examples/minimal
  kit="find_package(SokEDK 1 QUIET)
if(NOT SokEDK_FOUND)
  set(SOKEDK_TREE \"$root\" CACHE PATH \"The kit's own tree, for when it is not installed\")
  add_subdirectory(\"\${SOKEDK_TREE}\" SokEDK EXCLUDE_FROM_ALL)
endif()"
fi

mkdir -p "$dir"
cp -R "$template/resources" "$dir"
cp "$template/minimal.cpp" "$dir/$name.cpp"
cp "$template/score.musicxml" "$dir"
sed "s/Minimal/$name/g" "$template/resources/Info.plist" >"$dir/resources/Info.plist"
cat >"$dir/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.22)
project($name VERSION 1.0 LANGUAGES CXX)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

$kit

option(CHECKED "With sanitizers, for sokrun validate --sanitize")
if(CHECKED)
  set(sanitize SANITIZE)
endif()
sok_add_extension($name
  SOURCES $name.cpp
  INFO_PLIST resources/Info.plist
  RESOURCES resources \${sanitize})
target_compile_options($name PRIVATE -Wall -Wextra)
sok_install_bundle($name)

enable_testing()
sok_test_extension($name COMMAND 0 SCORE score.musicxml ALERT "Notes: 3")  # what the command shows or makes of a score
END
cat <<END
$dir: an extension with one command. Its identifier stands in resources/Info.plist, its texts in
resources/en.lproj/Localizable.strings. Build and check it:
    cd $(printf %q "$dir") && cmake -B build && cmake --build build
    ctest --test-dir build --output-on-failure
    sokrun list build/$name.bundle
    sokrun validate build/$name.bundle
END
