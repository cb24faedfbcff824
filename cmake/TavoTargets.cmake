# Compiler settings shared by every target of the project.

add_library(TavoCompileOptions INTERFACE)
target_compile_features(TavoCompileOptions INTERFACE cxx_std_20)
target_compile_options(TavoCompileOptions INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wextra-semi -Wimplicit-fallthrough -Werror)
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

# tavo_add_box(<name> <include root> <link libraries...>): a static library of every .cpp below the
# calling folder, whose headers are reached from <include root>.
function(tavo_add_box name include_root)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${include_root}>")
  target_link_libraries(${name} PUBLIC ${ARGN} PRIVATE TavoCompileOptions)
  target_compile_features(${name} PUBLIC cxx_std_20)
endfunction()
