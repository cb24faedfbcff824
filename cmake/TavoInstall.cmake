# What a host needs: three static libraries, the modules that they load, pictures, the headers that
# can be reached from the ones that hosts include, and a package for find_package(CorvaneTAVOSDK).

set(TAVO_HEADER_ROOTS "${PROJECT_SOURCE_DIR}/Source" "${PROJECT_SOURCE_DIR}/Platform"
                      "${PROJECT_SOURCE_DIR}/Platforms")

# The headers that hosts and ad networks include by name, below one of the roots. Networks draw their
# ads out of scene views.
set(TAVO_HOST_HEADERS
  Configuration/XAdSlotConfiguration.h
  Configuration/XBrowserConfiguration.h
  Configuration/XGlobalConfiguration.h
  Configuration/XMediationConfiguration.h
  Configuration/XPrefetchConfiguration.h
  Configuration/XUserConfiguration.h
  ErrorHandler/DebugLogSwitch.h
  ErrorHandler/FatalFailure.h
  ErrorHandler/XErrorHandler.h
  Gtk/AdSlot.h
  Gtk/AdWindow.h
  Gtk/GtkPlatform.h
  Runtime/Runtime.h
  Scene/Button.h
  Scene/ImageView.h
  Scene/Label.h
  Services/MoviePlayerFactory.h
  OnlineRequest/TrackingLedger.h
  UserInterface/WebView/BaseViews/XAdInterstitialViewController.h
  UserInterface/WebView/BaseViews/XAdView.h
  XMediation/AdNetwork/AdNetworkClasses.h
  XMediation/AdNetwork/AdNetworkExports.h
  XMediation/AdNetwork/CVBannerAdView.h
  XMediation/AdNetwork/CVInterstitialAd.h)

# Installs each header and all that it includes, at the places by which they include one another.
set(TAVO_HEADER_FOLDER "${CMAKE_INSTALL_INCLUDEDIR}/corvane-tavo")
set(waiting ${TAVO_HOST_HEADERS})
set(installed "")
while(waiting)
  list(POP_FRONT waiting header)
  if(header IN_LIST installed)
    continue()
  endif()
  list(APPEND installed "${header}")
  find_file(file "${header}" PATHS ${TAVO_HEADER_ROOTS} NO_DEFAULT_PATH NO_CACHE REQUIRED)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES "${file}" DESTINATION "${TAVO_HEADER_FOLDER}/${folder}")
  file(STRINGS "${file}" includes REGEX "^#include \"")
  list(TRANSFORM includes REPLACE "^#include \"([^\"]+)\".*" "\\1")
  list(APPEND waiting ${includes})
  unset(file)
endwhile()

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/CorvaneTAVOSDK")
install(TARGETS TavoPlatform TavoSdk TavoGtk TavoAdNetwork EXPORT CorvaneTAVOSDKTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES DESTINATION "${TAVO_HEADER_FOLDER}")
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
