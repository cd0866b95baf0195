# Compiles for macOS on Linux: Debian's clang, lld and llvm tools over the SDK folder that
# scripts/install-macos-tools.sh makes. For the preset `macos`, both architectures at once:
#   cmake --preset macos --toolchain cmake/macos/toolchain.cmake
# scripts/build-macos.sh does that. What comes out is linked against lists of names in place of the frameworks.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
get_filename_component(sok_macos_sdk "${CMAKE_CURRENT_LIST_DIR}/../../.cache/macos-sdk" ABSOLUTE)
set(CMAKE_OSX_SYSROOT "${sok_macos_sdk}")
set(CMAKE_FIND_ROOT_PATH "${sok_macos_sdk}")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)  # a program would need more of the libraries than their lists have

set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_CXX_COMPILER_TARGET arm64-apple-macos)  # CMAKE_OSX_ARCHITECTURES adds to it
# The folder has `lipo`, which clang calls where it compiles for two architectures. Standard headers of newer systems do
# not include each other by chance; without that they are also read in two thirds of the time.
set(CMAKE_CXX_FLAGS_INIT "\"-B${sok_macos_sdk}/bin\" -D_LIBCPP_REMOVE_TRANSITIVE_INCLUDES")
set(CMAKE_EXE_LINKER_FLAGS_INIT -fuse-ld=lld)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -fuse-ld=lld)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -fuse-ld=lld)

# Object files for two architectures make a library for each: libtool's work, which ar does not know.
set(CMAKE_CXX_CREATE_STATIC_LIBRARY "llvm-libtool-darwin-19 -static -o <TARGET> <OBJECTS>")
set(CMAKE_RANLIB "" CACHE INTERNAL "libtool has done it")
foreach(tool AR NM OTOOL STRIP LIPO INSTALL_NAME_TOOL)
  string(TOLOWER "llvm-${tool}-19" program)
  string(REPLACE "_" "-" program "${program}")
  find_program(CMAKE_${tool} ${program} REQUIRED)
endforeach()
