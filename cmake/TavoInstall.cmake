# What a host needs: static libraries, the modules that they load, pictures, the door's headers, and
# a package for find_package(CorvaneTAVOSDK).

install(DIRECTORY "${PROJECT_SOURCE_DIR}/Include/tavo"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/CorvaneTAVOSDK")
install(TARGETS TavoDoor TavoPlatform TavoGround TavoAnswer TavoWire TavoRenderers TavoSlot TavoSdk
                TavoGtk TavoAdNetwork
  EXPORT CorvaneTAVOSDKTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT CorvaneTAVOSDKTargets NAMESPACE Corvane:: DESTINATION "${package_folder}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Resources/"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/corvane-tavo")

include(CMakePackageConfigHelpers)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/CorvaneTAVOSDKConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfig.cmake" INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfigVersion.cmake"
  COMPATIBILITY ExactVersion)
install(FILES "${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfig.cmake"
              "${PROJECT_BINARY_DIR}/CorvaneTAVOSDKConfigVersion.cmake"
  DESTINATION "${package_folder}")
