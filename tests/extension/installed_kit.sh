#!/usr/bin/env bash
# The kit as other projects use it: installed into a prefix of its own, then an extension built against it from a folder
# outside of the repository, with find_package and with pkg-config.
# Usage: installed_kit.sh SOURCE_DIR BUILD_DIR COMPILER SANITIZERS
set -euo pipefail
source=$1 build=$2 compiler=$3 sanitize=${4:+-fsanitize=$4}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
fail() { echo "installed_kit.sh: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$prefix" >/dev/null
for file in bin/sokrun lib/libSokEDK.a lib/libSokPlatform.so lib/cmake/SokEDK/SokEDKConfigVersion.cmake \
    lib/sok/MeasureRests.bundle/Contents/MacOS/MeasureRests lib/sok/MeasureRests.bundle/Contents/Info.plist \
    lib/sok/MeasureRests.bundle/Contents/Resources/en.lproj/Localizable.strings \
    lib/sok/SonkelEngine.bundle/Contents/MacOS/SonkelEngine include/SokExtShared/SokEDK.h \
    include/sokplatform/CoreFoundation/CoreFoundation.h include/sokplatform/Carbon/Carbon.h; do
  [ -f "$prefix/$file" ] || fail "not installed: $file"
done
! grep -rl "For the kit's own sources" "$prefix/include" || fail "installed headers that are not public"
! grep -rlF -e "$source" -e "$build" "$prefix/lib/cmake" "$prefix/lib/pkgconfig" || fail "installed files name the tree"
for binary in bin/sokrun lib/sok/*.bundle/Contents/MacOS/*; do
  ! readelf -d "$prefix"/$binary | grep -E 'R(UN)?PATH.*/(build|tmp)' || fail "$binary looks for libraries in the build"
done

# Everything that is installed works from there, also after the prefix has moved.
mv "$prefix" "$work/moved"
prefix=$work/moved
"$prefix/bin/sokrun" validate "$prefix/lib/sok/MeasureRests.bundle" --rounds 1 --only-failed

# find_package, from a project as the installed script starts it.
"$prefix/bin/sok-new-extension" Outside "$work/outside" >/dev/null
cmake -S "$work/outside" -B "$work/outside/build" -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Wconversion -Werror $sanitize" >/dev/null
[ ! -d "$work/outside/build/SokEDK" ] || fail "the project did not find the installed kit"
cmake --build "$work/outside/build" >/dev/null
ctest --test-dir "$work/outside/build" >"$work/tests" || { cat "$work/tests"; fail "the project's own test fails"; }
grep -q '100% tests passed, 0 tests failed out of 1' "$work/tests" || fail "the project's own test was not run"
cmake --install "$work/outside/build" --prefix "$work/elsewhere" >/dev/null
for bundle in "$work/outside/build/Outside.bundle" "$work/elsewhere/lib/sok/Outside.bundle"; do
  "$prefix/bin/sokrun" validate "$bundle" --check symbols --check hidden-names --check texts --check frames --only-failed
done

# A test whose result differs shows how.
sed '/<measure number="2"/,$s/half/whole/' "$work/outside/score.musicxml" >"$work/outside/expected.musicxml"
echo "sok_test_extension(Outside COMMAND 0 SCORE score.musicxml EXPECT expected.musicxml)" >>"$work/outside/CMakeLists.txt"
cmake "$work/outside/build" >/dev/null
! ctest --test-dir "$work/outside/build" --output-on-failure >"$work/tests" || fail "a wrong result passes"
grep -q '^-.*<type>whole<' "$work/tests" || { cat "$work/tests"; fail "the difference is not shown"; }

# pkg-config: the same source, the same layout; the executable built by hand takes the headers and the library alone.
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
by_hand=$work/Outside.bundle
cp -R "$work/outside/build/Outside.bundle" "$by_hand"
rm "$by_hand/Contents/MacOS/Outside"
eval "flags=($(pkg-config --cflags --libs SokEDK))"  # words for the shell, blanks in them with backslashes
# shellcheck disable=SC2086
"$compiler" -std=c++20 -fPIC -shared $sanitize -o "$by_hand/Contents/MacOS/Outside" \
  "$work/outside/Outside.cpp" "${flags[@]}"
[ -f "$(pkg-config --variable=exports SokEDK)" ] || fail "the list of exports is not where the kit says it is"
"$prefix/bin/sokrun" validate "$by_hand" --check symbols --check hidden-names --check texts --check frames --only-failed

# Without an installed kit a project builds the tree's.
"$source/scripts/new-extension.sh" Outside "$work/inside" >/dev/null
cmake -S "$work/inside" -B "$work/inside/tree" -DCMAKE_DISABLE_FIND_PACKAGE_SokEDK=ON -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_COMPILER="$compiler" >/dev/null
cmake --build "$work/inside/tree" -j2 >/dev/null
"$prefix/bin/sokrun" list "$work/inside/tree/Outside.bundle"
