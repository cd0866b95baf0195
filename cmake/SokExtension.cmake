# Functions for extensions, in the kit's own tree and, installed, with find_package(SokEDK).
#
# sok_add_extension(NAME SOURCES file... INFO_PLIST file RESOURCES folder [OUTPUT_DIRECTORY folder] [SANITIZE])
#
# Builds a loadable extension bundle, NAME.bundle, in the macOS layout: Contents/Info.plist, Contents/MacOS/NAME and
# Contents/Resources with the string tables of the RESOURCES folder (<language>.lproj/*.strings). Nothing but the host's
# interface, which SOK_EXTENSION defines in one of the sources, is visible from outside. The bundle stands in
# OUTPUT_DIRECTORY, by default the current binary directory; the target's property SOK_BUNDLE is its path. With SANITIZE
# it is built for `sokrun validate --sanitize`, which finds wrong uses of memory and undefined behaviour; no host loads it.
#
# sok_install_bundle(NAME [DESTINATION folder])
#
# Installs the bundle, into lib/sok by default. It finds the platform library where it was linked from, and in the
# prefix that it is installed to.

# sok_test_extension(NAME COMMAND number SCORE file [EXPECT file] [FRAMES file] [ALERT text]
#                    [OPTIONS option...] [TEST name])
#
# Adds a test to ctest that runs one command of the extension on a score with `sokrun run` and its options, such as
# OPTIONS --measures 2-3. It passes when the score that comes out is EXPECT's to the last byte, when the entries of what
# changed are the table in FRAMES (as `sokrun run … --check --quiet --frames` prints it; empty where nothing changes), and
# when ALERT, alerts joined with line ends (those at the end do not count), is all that is shown; one of the three has to
# be there. What differs is printed. With SOK_ACCEPT in the environment of ctest, EXPECT and FRAMES become what comes
# out. The test bears the name TEST, or one made of all this. Where there is no sokrun, the test is left out.

# Lays a module library out as NAME.bundle below `folder`, with an Info.plist and the files of a resources folder.
function(sok_bundle_layout target folder info_plist resources)
  set(contents "${folder}/${target}.bundle/Contents")
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX "" OUTPUT_NAME ${target} LIBRARY_OUTPUT_DIRECTORY "${contents}/MacOS"
    SOK_BUNDLE "${folder}/${target}.bundle")
  file(GLOB_RECURSE resource_files CONFIGURE_DEPENDS "${resources}/*.strings")
  set(copies COMMAND ${CMAKE_COMMAND} -E copy_if_different "${info_plist}" "${contents}/Info.plist")
  foreach(file IN LISTS resource_files)
    file(RELATIVE_PATH name "${resources}" "${file}")
    get_filename_component(language "${name}" DIRECTORY)
    list(APPEND copies COMMAND ${CMAKE_COMMAND} -E make_directory "${contents}/Resources/${language}"
                       COMMAND ${CMAKE_COMMAND} -E copy_if_different "${file}" "${contents}/Resources/${name}")
  endforeach()
  set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}.resources")
  add_custom_command(OUTPUT "${stamp}" COMMAND ${CMAKE_COMMAND} -E make_directory "${contents}" ${copies}
    COMMAND ${CMAKE_COMMAND} -E touch "${stamp}" DEPENDS "${info_plist}" ${resource_files} VERBATIM)
  add_custom_target(${target}_resources ALL DEPENDS "${stamp}")
  add_dependencies(${target} ${target}_resources)
endfunction()

# Hides everything but the names listed in `exports` (.map for GNU linkers, .exp for Apple's) and binds the module's
# own calls to itself: a wrapper and its host function share a name, and a visible wrapper could be found in the
# host's place, or by itself.
function(sok_export_only target exports)
  if(APPLE)
    target_link_options(${target} PRIVATE "LINKER:-exported_symbols_list,${exports}.exp")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${exports}.exp")
  else()
    target_link_options(${target} PRIVATE "LINKER:-Bsymbolic" "LINKER:--version-script,${exports}.map")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${exports}.map")
  endif()
endfunction()

function(sok_add_extension name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SANITIZE" "INFO_PLIST;RESOURCES;OUTPUT_DIRECTORY" "SOURCES")
  if(NOT arg_OUTPUT_DIRECTORY)
    set(arg_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")
  endif()
  get_filename_component(arg_INFO_PLIST "${arg_INFO_PLIST}" ABSOLUTE)
  get_filename_component(arg_RESOURCES "${arg_RESOURCES}" ABSOLUTE)
  add_library(${name} MODULE ${arg_SOURCES})
  target_compile_features(${name} PRIVATE cxx_std_20)
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${name} PRIVATE SokEDK::SokEDK)
  sok_export_only(${name} "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/extension_exports")
  sok_bundle_layout(${name} "${arg_OUTPUT_DIRECTORY}" "${arg_INFO_PLIST}" "${arg_RESOURCES}")
  if(arg_SANITIZE)
    sok_sanitize(${name})
  endif()
endfunction()

# Compiles a target with sanitizers whose library is a shared one, so that the program that loads it can load that first.
function(sok_sanitize target)
  # The address sanitizer says more of what is out of bounds than the check of object sizes does.
  set(flags -fsanitize=address,undefined -fno-sanitize=object-size -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_compile_options(${target} PRIVATE ${flags})
  target_link_options(${target} PRIVATE ${flags})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(library "libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so")
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library} OUTPUT_VARIABLE path
      OUTPUT_STRIP_TRAILING_WHITESPACE)
    get_filename_component(folder "${path}" DIRECTORY)
    target_link_options(${target} PRIVATE -shared-libasan "LINKER:-rpath,${folder}")
  endif()
endfunction()

function(sok_install_bundle target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESTINATION" "")
  if(NOT arg_DESTINATION)
    set(arg_DESTINATION lib/sok)
  endif()
  if(NOT APPLE)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON
      INSTALL_RPATH "$ORIGIN/../../../../../${CMAKE_INSTALL_LIBDIR}")
  endif()
  set(contents "${arg_DESTINATION}/${target}.bundle/Contents")
  install(TARGETS ${target} LIBRARY DESTINATION "${contents}/MacOS")
  install(DIRECTORY "$<TARGET_PROPERTY:${target},SOK_BUNDLE>/Contents/" DESTINATION "${contents}" PATTERN MacOS EXCLUDE)
endfunction()

# sokrun as this tree builds it, as it is installed beside the kit, or as it is found.
function(sok_find_sokrun result)
  if(TARGET sokrun)
    set(${result} "$<TARGET_FILE:sokrun>" PARENT_SCOPE)
    return()
  endif()
  find_program(SOKRUN sokrun HINTS "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../../../bin")
  set(${result} "${SOKRUN}" PARENT_SCOPE)
endfunction()

function(sok_test_extension name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "COMMAND;SCORE;EXPECT;FRAMES;ALERT;TEST" "OPTIONS")
  if(NOT DEFINED arg_COMMAND OR NOT DEFINED arg_SCORE OR NOT
      (DEFINED arg_EXPECT OR DEFINED arg_FRAMES OR DEFINED arg_ALERT))
    message(FATAL_ERROR "sok_test_extension(${name}): needs COMMAND, SCORE and one of EXPECT, FRAMES and ALERT")
  endif()
  sok_find_sokrun(sokrun)
  if(NOT sokrun)
    message(STATUS "${name}: there is no sokrun, so that its tests are left out")
    return()
  endif()
  get_filename_component(score "${arg_SCORE}" ABSOLUTE)
  get_filename_component(file "${arg_SCORE}" NAME)
  get_filename_component(expected_file "${arg_EXPECT}${arg_FRAMES}" NAME)
  list(JOIN arg_OPTIONS " " options)
  set(run "${arg_TEST}")
  if(NOT run)
    set(run "command_${arg_COMMAND}_${file} ${options} ${expected_file}.")
  endif()
  string(REGEX REPLACE "[^A-Za-z0-9]+" "_" run "${run}")
  string(REGEX REPLACE "_$" "" run "${run}")
  if(DEFINED arg_EXPECT)
    set(file "${arg_EXPECT}")  # its suffix says whether the result is compressed
  endif()
  get_filename_component(suffix "${file}" LAST_EXT)
  set(definitions "-DSOKRUN=${sokrun}" "-DBUNDLE=$<TARGET_PROPERTY:${name},SOK_BUNDLE>" "-DCOMMAND=${arg_COMMAND}"
    "-DSCORE=${score}" "-DRESULT=${CMAKE_CURRENT_BINARY_DIR}/${name}_${run}${suffix}" "-DOPTIONS=${options}")
  foreach(file EXPECT FRAMES)
    if(DEFINED arg_${file})
      get_filename_component(path "${arg_${file}}" ABSOLUTE)
      list(APPEND definitions "-D${file}=${path}")
    endif()
  endforeach()
  if(DEFINED arg_ALERT)
    string(REPLACE ";" "\\;" alert "${arg_ALERT}")
    list(APPEND definitions "-DALERT=${alert}")
  endif()
  add_test(NAME "${name}.${run}"
    COMMAND "${CMAKE_COMMAND}" ${definitions} -P "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/SokTestExtension.cmake")
endfunction()
