# What a host needs: the library, the modules that it loads, pictures, the door's headers, a package
# for find_package(CorvaneTAVOSDK) and files for pkg-config.

install(DIRECTORY "${PROJECT_SOURCE_DIR}/Include/tavo"
  DESTINATION "${TAVO_INSTALL_INCLUDEDIR}" COMPONENT Development FILES_MATCHING PATTERN "*.h")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Resources/"
  DESTINATION "${TAVO_INSTALL_DATADIR}" COMPONENT Runtime)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/CorvaneTAVOSDK-${PROJECT_VERSION_MAJOR}")
install(TARGETS TavoDoor TavoLibrary TavoAdNetwork EXPORT CorvaneTAVOSDKTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
  INCLUDES DESTINATION "${TAVO_INSTALL_INCLUDEDIR}")
install(EXPORT CorvaneTAVOSDKTargets NAMESPACE Corvane::
  DESTINATION "${package_folder}" COMPONENT Development)
if(TAVO_BUILD_GTK)
  install(TARGETS TavoGtkHost EXPORT CorvaneTAVOSDKGtkTargets)
  install(EXPORT CorvaneTAVOSDKGtkTargets NAMESPACE Corvane::
    DESTINATION "${package_folder}" COMPONENT Development)
endif()

include(CMakePackageConfigHelpers)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/CorvaneTAVOSDKConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfig.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfig.cmake"
              "${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfigVersion.cmake"
  DESTINATION "${package_folder}" COMPONENT Development)

# pkg-config: paths are seen from the file's own place, so that a prefix may be moved.
set(pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH TAVO_PREFIX_FROM_PKGCONFIG
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" TAVO_PREFIX_FROM_PKGCONFIG "${TAVO_PREFIX_FROM_PKGCONFIG}")
# A static library leaves to its host what it is made of.
set(TAVO_PC_REQUIRES "")
if(NOT BUILD_SHARED_LIBS)
  set(TAVO_PC_REQUIRES "Requires: glib-2.0 re2 sqlite3 simdjson zlib")
  if(TAVO_BUILD_GTK)
    string(APPEND TAVO_PC_REQUIRES
      " gtkmm-4.0 libsoup-3.0 gdk-pixbuf-2.0 gio-unix-2.0 gmodule-no-export-2.0")
  endif()
endif()
foreach(name corvane-tavo corvane-tavo-gtk)
  if(name STREQUAL "corvane-tavo" OR TAVO_BUILD_GTK)
    set(file "${PROJECT_BINARY_DIR}/${name}-${PROJECT_VERSION_MAJOR}.pc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in" "${file}" @ONLY)
    install(FILES "${file}" DESTINATION "${pkgconfig_folder}" COMPONENT Development)
  endif()
endforeach()

# Examples as their readers build them, and the papers.
set(examples_folder "${CMAKE_INSTALL_DOCDIR}/examples")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Examples/"
  DESTINATION "${examples_folder}" COMPONENT Examples)
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
              "${PROJECT_SOURCE_DIR}/SECURITY.md" "${PROJECT_SOURCE_DIR}/LICENSE"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation
  PATTERN CMakeLists.txt EXCLUDE PATTERN reference EXCLUDE)

# cmake --build <build> --target uninstall: takes away what the last installation put there.
if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall
    COMMAND "${CMAKE_COMMAND}" -D "MANIFEST_FOLDER=${PROJECT_BINARY_DIR}"
            -D "PREFIX=${CMAKE_INSTALL_PREFIX}" -P "${PROJECT_SOURCE_DIR}/cmake/Uninstall.cmake")
endif()
