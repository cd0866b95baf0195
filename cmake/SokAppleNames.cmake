# Reads every source of the kit and of entry/ once more behind a header that does to names what the headers of macOS do.
# Nothing comes of it but messages, and that in every build: what cannot be compiled there does not build here.
if(APPLE)
  return()
endif()

# The sources of a target with their full paths.
function(sok_sources_of target out)
  get_target_property(folder ${target} SOURCE_DIR)
  get_target_property(sources ${target} SOURCES)
  list(TRANSFORM sources PREPEND "${folder}/" REGEX "^[^/]")
  set(${out} ${sources} PARENT_SCOPE)
endfunction()

sok_sources_of(SokEDK sok_kit_sources)
sok_sources_of(MeasureRests sok_entry_sources)
set(sok_apple_names "${PROJECT_SOURCE_DIR}/cmake/macos/apple_names.h")
find_program(SOK_CLANG clang++)
foreach(source IN LISTS sok_kit_sources sok_entry_sources)
  set(compiler "${CMAKE_CXX_COMPILER}")
  if(source MATCHES "assertion_report_glibc")
    string(REPLACE glibc darwin source "${source}")
    if(SOK_CLANG)
      set(compiler "${SOK_CLANG}")  # g++ lets a second declaration pass that clang++ refuses
    endif()
  endif()
  file(RELATIVE_PATH name "${PROJECT_SOURCE_DIR}" "${source}")
  string(MAKE_C_IDENTIFIER "${name}" name)
  set(stamp "${PROJECT_BINARY_DIR}/apple_names/${name}.read")
  add_custom_command(OUTPUT "${stamp}"
    COMMAND "${compiler}" -std=c++20 "-I${PROJECT_SOURCE_DIR}" "-I${PROJECT_SOURCE_DIR}/platform"
            -include "${sok_apple_names}" -Werror=deprecated-declarations -fsyntax-only
            -MD -MF "${stamp}.d" -MT "${stamp}" "${source}"
    COMMAND ${CMAKE_COMMAND} -E touch "${stamp}"
    DEPENDS "${source}" "${sok_apple_names}" DEPFILE "${stamp}.d" COMMENT "Reading ${source} behind macOS's names" VERBATIM)
  list(APPEND sok_apple_stamps "${stamp}")
endforeach()
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/apple_names")
add_custom_target(apple_names ALL DEPENDS ${sok_apple_stamps})
if(TARGET unit_tests)
  add_dependencies(unit_tests apple_names)
endif()
