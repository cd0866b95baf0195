# What `cmake --install` puts where: the kit for other projects, MeasureRests and the workbench.
include(CMakePackageConfigHelpers)

set(sok_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/SokEDK")

# What is not named otherwise is the kit; `sokrun` is the workbench with what it needs, as the package has it.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME kit)

# The kit's libraries and headers.
set_target_properties(SokPlatform PROPERTIES EXPORT_NAME Platform)
install(TARGETS SokEDK SokPlatform EXPORT SokEDKTargets LIBRARY COMPONENT sokrun)

# The public headers are those that the umbrella header includes.
set(umbrella SokExtShared/SokEDK.h)
file(STRINGS "${umbrella}" public_headers REGEX "^#include \"SokExtShared/")
list(TRANSFORM public_headers REPLACE "^#include \"(.*)\"$" "\\1")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${umbrella}")
foreach(header IN LISTS umbrella public_headers ITEMS SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}")
endforeach()
if(NOT APPLE)
  install(DIRECTORY platform/CoreFoundation platform/Carbon DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/sokplatform"
    FILES_MATCHING PATTERN "*.h")
endif()

# find_package(SokEDK)
install(EXPORT SokEDKTargets NAMESPACE SokEDK:: DESTINATION "${sok_package_dir}")
configure_package_config_file(cmake/SokEDKConfig.cmake.in "${PROJECT_BINARY_DIR}/SokEDKConfig.cmake"
  INSTALL_DESTINATION "${sok_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/SokEDKConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/SokEDKConfig.cmake" "${PROJECT_BINARY_DIR}/SokEDKConfigVersion.cmake"
  cmake/SokExtension.cmake cmake/SokTestExtension.cmake cmake/extension_exports.map cmake/extension_exports.exp DESTINATION "${sok_package_dir}")

# pkg-config SokEDK
if(APPLE)
  set(sok_pc_platform_libs "-framework CoreFoundation -framework Carbon")
  set(sok_pc_exports extension_exports.exp)
else()
  set(sok_pc_platform_cflags " -I\${includedir}/sokplatform")
  set(sok_pc_platform_libs "-Wl,-rpath,\${libdir} -lSokPlatform")
  set(sok_pc_exports extension_exports.map)
endif()
file(RELATIVE_PATH sok_pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" sok_pc_prefix "${sok_pc_prefix}")
configure_file(cmake/SokEDK.pc.in "${PROJECT_BINARY_DIR}/SokEDK.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/SokEDK.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# Pages, examples and what starts an extension; the reference when scripts/docs.sh has made it.
install(FILES docs/first-steps.md docs/guide.md docs/cookbook.md docs/music-in-frames.md docs/numbers.md docs/traps.md
  docs/finding-faults.md
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/sokedk")
install(DIRECTORY build/docs/html DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/sokedk" OPTIONAL)
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DATADIR}/sokedk" PATTERN CMakeLists.txt EXCLUDE)
install(PROGRAMS scripts/new-extension.sh DESTINATION "${CMAKE_INSTALL_BINDIR}" RENAME sok-new-extension)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME sokrun)
sok_install_bundle(MeasureRests)
if(TARGET SonkelEngine)
  sok_install_bundle(SonkelEngine)
endif()
if(TARGET sokrun)
  set_target_properties(sokrun PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS sokrun)
  install(TARGETS SokArchive LIBRARY DESTINATION lib/sok)
  install(FILES docs/sokrun.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" OPTIONAL)
  install(FILES docs/sokrun-json.md DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/sokrun")
endif()

# `scripts/package.sh`: a Debian package of the component sokrun.
set(CPACK_PACKAGE_NAME sokrun)
set(CPACK_PACKAGE_VENDOR "The SokExt authors")
set(CPACK_PACKAGE_CONTACT "The SokExt authors <sokrun@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "fills and clears whole-measure rests in MusicXML scores")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL sokrun)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_SOKRUN_PACKAGE_NAME sokrun)
set(CPACK_DEBIAN_SOKRUN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "nodejs, npm")
include(CPack)
