# How every target of the house is built. A floor is one shared library; it sees only the floors named to it.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
# An installation can be moved as a whole: bin/ lib/ Config/ Resources/.
set(CMAKE_INSTALL_RPATH $ORIGIN/../lib)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(qloom_flags INTERFACE)
# GCC 12 reports -Wrestrict inside its own string headers.
target_compile_options(qloom_flags INTERFACE -Wall -Wextra -Wpedantic $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> $<$<BOOL:${QLOOM_WERROR}>:-Werror>)
if(QLOOM_SANITIZE)
  target_compile_options(qloom_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer)
  target_link_options(qloom_flags INTERFACE -fsanitize=address,undefined)
endif()

# qloom_floor(<target> DIRS <folder>... [WITHOUT <folder>...] SEES <target>... USES <private library>...)
function(qloom_floor target)
  cmake_parse_arguments(FLOOR "" "" "DIRS;WITHOUT;SEES;USES" ${ARGN})
  set(sources)
  foreach(dir IN LISTS FLOOR_DIRS)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${dir}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  foreach(dir IN LISTS FLOOR_WITHOUT)
    list(FILTER sources EXCLUDE REGEX "/src/${dir}/")
  endforeach()
  add_library(${target} SHARED ${sources})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${target} PUBLIC ${FLOOR_SEES} PRIVATE qloom_flags ${FLOOR_USES})
  # Nobody replaces a floor's functions at load time: they may be inlined into each other.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
endfunction()
