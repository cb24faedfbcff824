# The one library that hosts and ad networks link: all floors and the GTK platform. What a host needs
# no code of (the web engine, video, calendars) is in modules that it loads. Programs of this tree
# that look behind the door (tests, fuzz targets) link the floors instead.

set(boxes TavoPlatform TavoGround TavoAnswer TavoWire TavoRenderers TavoSlot)
if(TAVO_BUILD_GTK)
  list(APPEND boxes TavoGtk TavoGtkShared)
endif()
list(TRANSFORM boxes REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
add_library(TavoLibrary ${objects})
target_compile_features(TavoLibrary PUBLIC cxx_std_20)
target_link_libraries(TavoLibrary PUBLIC TavoDoor
  PRIVATE Threads::Threads PkgConfig::GLIB PkgConfig::RE2 PkgConfig::SQLITE simdjson::simdjson ZLIB::ZLIB
          $<BUILD_INTERFACE:TavoCompileOptions>)
if(TAVO_BUILD_GTK)
  target_link_libraries(TavoLibrary
    PRIVATE PkgConfig::GTKMM PkgConfig::SOUP PkgConfig::PIXBUF PkgConfig::GIO_UNIX)
endif()

# The number of the binary interface: the major version is in the name, so it begins at 0, and grows
# with a change that a host built before would not survive. The symbols of the library are the list
# of what such a host may use; debian/ keeps it.
set(TAVO_BINARY_INTERFACE 0)
set_target_properties(TavoLibrary PROPERTIES
  LINKER_LANGUAGE CXX
  OUTPUT_NAME "${TAVO_API_NAME}" EXPORT_NAME TavoSdk
  SOVERSION ${TAVO_BINARY_INTERFACE}
  VERSION "${TAVO_BINARY_INTERFACE}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH}")
if(BUILD_SHARED_LIBS)
  set(export_list "${PROJECT_BINARY_DIR}/exports.map")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/exports.map.in" "${export_list}" @ONLY)
  target_link_options(TavoLibrary PRIVATE "LINKER:--version-script=${export_list}" LINKER:-z,defs)
  set_target_properties(TavoLibrary PROPERTIES LINK_DEPENDS "${export_list}")
endif()
if(TAVO_SANITIZE)
  target_link_options(TavoLibrary PRIVATE LINKER:-z,undefs)  # the sanitizer's are in the program
endif()
add_library(Corvane::TavoSdk ALIAS TavoLibrary)

# For hosts that include <tavo/gtk/...>.
if(TAVO_BUILD_GTK)
  add_dependencies(TavoLibrary TavoGtkWeb TavoGtkVideo TavoGtkCalendar TavoWebUserAgent)
  add_library(TavoGtkHost INTERFACE)
  target_link_libraries(TavoGtkHost INTERFACE TavoLibrary PkgConfig::GTKMM)
  set_target_properties(TavoGtkHost PROPERTIES EXPORT_NAME TavoGtk)
  add_library(Corvane::TavoGtk ALIAS TavoGtkHost)
endif()

# For libraries of external ad networks: the door and the scene.
add_library(TavoAdNetwork INTERFACE)
target_link_libraries(TavoAdNetwork INTERFACE TavoLibrary)
add_library(Corvane::TavoAdNetwork ALIAS TavoAdNetwork)
