# Compiler settings shared by every target of the project.

add_library(TavoCompileOptions INTERFACE)
target_compile_features(TavoCompileOptions INTERFACE cxx_std_20)
target_compile_options(TavoCompileOptions INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wextra-semi -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # A false alarm about joined strings, at -O3.
  target_compile_options(TavoCompileOptions INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
endif()
if(TAVO_SANITIZE)
  target_compile_options(TavoCompileOptions INTERFACE -fsanitize=${TAVO_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(TavoCompileOptions INTERFACE -fsanitize=${TAVO_SANITIZE})
endif()
if(TAVO_COVERAGE)
  target_compile_options(TavoCompileOptions INTERFACE --coverage)
  target_link_options(TavoCompileOptions INTERFACE --coverage)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Nothing is seen outside of the library but what the door's headers mark.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# All that is installed carries the major version in its name, so that two of them stand side by
# side below one prefix.
set(TAVO_API_NAME "corvane-tavo-${PROJECT_VERSION_MAJOR}")
set(TAVO_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/${TAVO_API_NAME}")
set(TAVO_INSTALL_MODULEDIR "${CMAKE_INSTALL_LIBDIR}/${TAVO_API_NAME}")
set(CMAKE_INSTALL_DOCDIR "${CMAKE_INSTALL_DATADIR}/doc/${TAVO_API_NAME}")
set(TAVO_INSTALL_DATADIR "${CMAKE_INSTALL_DATADIR}/${TAVO_API_NAME}")

# Where the library looks at run time for its modules and its pictures: seen from its own file (a
# static one: from the host's program), or in this build's folders. A build is for one of the two.
if(TAVO_FOR_INSTALL)
  set(TAVO_MODULE_FOLDER "${CMAKE_INSTALL_FULL_LIBDIR}/${TAVO_API_NAME}")
  set(TAVO_RESOURCE_FOLDER "${CMAKE_INSTALL_FULL_DATADIR}/${TAVO_API_NAME}")
  set(library_folder "${CMAKE_INSTALL_FULL_LIBDIR}")
  if(NOT BUILD_SHARED_LIBS)
    set(library_folder "${CMAKE_INSTALL_FULL_BINDIR}")
  endif()
  file(RELATIVE_PATH TAVO_MODULES_BESIDE "${library_folder}" "${TAVO_MODULE_FOLDER}")
  file(RELATIVE_PATH TAVO_RESOURCES_BESIDE "${library_folder}" "${TAVO_RESOURCE_FOLDER}")
  set(TAVO_LOCALE_FOLDER "${CMAKE_INSTALL_FULL_LOCALEDIR}")
else()
  set(TAVO_MODULE_FOLDER "${PROJECT_BINARY_DIR}/modules")
  set(TAVO_RESOURCE_FOLDER "${PROJECT_SOURCE_DIR}/Resources")
  set(TAVO_LOCALE_FOLDER "${PROJECT_BINARY_DIR}/locale")
endif()

# tavo_bundle_folders(<target>): a build in bundles (CMAKE_UNITY_BUILD) makes one of each folder.
function(tavo_bundle_folders name)
  get_target_property(sources ${name} SOURCES)
  foreach(source ${sources})
    cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE place)
    cmake_path(GET place PARENT_PATH folder)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${PROJECT_SOURCE_DIR}")
    string(MAKE_C_IDENTIFIER "${folder}" bundle)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${bundle})
  endforeach()
  set_target_properties(${name} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

# tavo_add_box(<name> <include root> <link libraries...>): a static library of every .cpp below the
# calling folder, whose headers are reached from <include root>.
function(tavo_add_box name include_root)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  add_library(${name} STATIC ${sources})
  tavo_bundle_folders(${name})
  target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${include_root}>")
  target_link_libraries(${name} PUBLIC ${ARGN} PRIVATE $<BUILD_INTERFACE:TavoCompileOptions>)
  target_compile_features(${name} PUBLIC cxx_std_20)
endfunction()

# tavo_add_floor(<name> BELOW <target> FOLDERS <folder>... [USES <library>...]): a static library of
# some folders (with all below them) beside the calling list file. Their headers are reached by their own paths, and only
# from this floor and those above it: a floor shows its folders in a place of its own, so an include
# that points up finds nothing.
function(tavo_add_floor name)
  cmake_parse_arguments(floor "" "BELOW" "FOLDERS;USES" ${ARGN})
  set(shown "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  set(sources "")
  foreach(folder ${floor_FOLDERS})
    file(GLOB_RECURSE found CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp")
    list(APPEND sources ${found})
    cmake_path(GET folder PARENT_PATH above)
    file(MAKE_DIRECTORY "${shown}/${above}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${folder}" "${shown}/${folder}" SYMBOLIC)
  endforeach()
  add_library(${name} STATIC ${sources})
  tavo_bundle_folders(${name})
  target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${shown}>")
  target_link_libraries(${name}
    PUBLIC ${floor_BELOW} PRIVATE ${floor_USES} $<BUILD_INTERFACE:TavoCompileOptions>)
  target_compile_features(${name} PUBLIC cxx_std_20)
endfunction()

# tavo_add_module(<name> <sources...>): a part of the GTK platform that is loaded on its first use,
# with the platform's code linked in and hidden: the host need not export anything for it.
function(tavo_add_module name)
  add_library(${name} MODULE
    ${ARGN} "${PROJECT_SOURCE_DIR}/Platforms/Gtk/ModuleSide/ModuleVersion.cpp")
  target_compile_definitions(${name} PRIVATE TAVO_MODULE_VERSION="${PROJECT_VERSION}")
  tavo_bundle_folders(${name})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/Platforms")
  target_link_libraries(${name} PRIVATE TavoGtkShared TavoPlatform TavoCompileOptions)
  target_link_options(${name} PRIVATE
    LINKER:--exclude-libs,ALL "LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/modules.map")
  set_target_properties(${name} PROPERTIES
    PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/modules")
  add_dependencies(TavoGtk ${name})
  install(TARGETS ${name} LIBRARY DESTINATION "${TAVO_INSTALL_MODULEDIR}" COMPONENT Runtime)
endfunction()
