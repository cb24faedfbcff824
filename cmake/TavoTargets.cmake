# Compiler settings shared by every target of the project.

add_library(TavoCompileOptions INTERFACE)
target_compile_features(TavoCompileOptions INTERFACE cxx_std_20)
target_compile_options(TavoCompileOptions INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wextra-semi -Wimplicit-fallthrough -Werror)
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

# Where the library looks at run time for its modules and its pictures: in this build, or where
# `cmake --install` puts them. A build is for one of the two.
option(TAVO_FOR_INSTALL "Build to be installed: look for modules and resources below the prefix" OFF)
if(TAVO_FOR_INSTALL)
  set(TAVO_MODULE_FOLDER "${CMAKE_INSTALL_FULL_LIBDIR}/corvane-tavo")
  set(TAVO_RESOURCE_FOLDER "${CMAKE_INSTALL_FULL_DATADIR}/corvane-tavo")
else()
  set(TAVO_MODULE_FOLDER "${PROJECT_BINARY_DIR}/modules")
  set(TAVO_RESOURCE_FOLDER "${PROJECT_SOURCE_DIR}/Resources")
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
  target_link_options(${name} PRIVATE -Wl,--exclude-libs,ALL)
  set_target_properties(${name} PROPERTIES
    PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/modules")
  add_dependencies(TavoGtk ${name})
  install(TARGETS ${name} LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/corvane-tavo")
endfunction()
