# Compiler policy: one set of warnings for every target, contraction of floating-point expressions
# off (the same frames on every machine), a refusal of compilers known to miscompile coroutines, and what a build that
# is handed to others has beyond one for developers. What only developers want is off unless a preset asks for it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
  message(FATAL_ERROR
    "g++ ${CMAKE_CXX_COMPILER_VERSION} destroys some temporaries of coroutine expressions twice. "
    "Use clang-19: cmake -DCMAKE_CXX_COMPILER=clang++-19")
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 19)
  message(FATAL_ERROR
    "To clang ${CMAKE_CXX_COMPILER_VERSION} the standard library offers no std::expected, which asks for the concepts of "
    "clang 19. Use that or a newer one: cmake -DCMAKE_CXX_COMPILER=clang++-19")
endif()

add_library(quillo_flags INTERFACE)
option(QUILLO_WERROR "a warning is an error, as in every preset; a newer compiler warns of more" OFF)
target_compile_options(quillo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wconversion -Wsign-conversion
  -Wimplicit-fallthrough $<$<BOOL:${QUILLO_WERROR}>:-Werror> -ffp-contract=off)
target_compile_options(quillo_flags INTERFACE -pthread)  # as GLib and Qt have it: one precompiled header serves all
target_include_directories(quillo_flags INTERFACE ${CMAKE_SOURCE_DIR})

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# Sanitizers are chosen by name: address (with undefined behaviour), thread, or none.
set(QUILLO_SANITIZER "" CACHE STRING "address, thread or empty")
if(QUILLO_SANITIZER STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(QUILLO_SANITIZER STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
set(QUILLO_LINKER "" CACHE STRING "a linker that the compiler shall use instead of its own, by name: lld")
if(QUILLO_LINKER AND NOT APPLE)
  add_link_options(-fuse-ld=${QUILLO_LINKER})
endif()

# Hardened: mistakes with memory end the program rather than serve somebody, and no table that steers it stays writable.
# No path of this machine is left in it, so that the same sources give the same bytes in every folder.
set(hardened OFF)
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT QUILLO_SANITIZER)
  set(hardened ON)
endif()
option(QUILLO_HARDENED "harden the programs, and leave out where they were built" ${hardened})
if(QUILLO_HARDENED AND NOT APPLE)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -D_GLIBCXX_ASSERTIONS
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=./build)
  add_link_options(LINKER:-z,relro,-z,now)
endif()

# What nearly every source reads is compiled once: for all that add nothing to it together, else for each target.
# Sources still name all that they use: a Mac's build does without. What stands on the engine's seam reads it nearly always.
set(quillo_seam ${CMAKE_SOURCE_DIR}/WindowEngine/records/Workspace.hpp
  ${CMAKE_SOURCE_DIR}/WindowEngine/services/Platform.hpp)
option(QUILLO_PRECOMPILE "precompile the standard library's headers" ON)
function(quillo_precompile name)
  if(NOT QUILLO_PRECOMPILE)
    return()
  endif()
  # With ccache, a precompiled header must not carry the time at which it was made.
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    target_compile_options(${name} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
  endif()
  get_target_property(type ${name} TYPE)  # hardened, a library's code is another than a program's
  string(MAKE_C_IDENTIFIER "quillo_precompiled_${type}_${ARGN}" group)
  get_property(first GLOBAL PROPERTY ${group})
  if(first)
    target_precompile_headers(${name} REUSE_FROM ${first})
    return()
  endif()
  target_precompile_headers(${name} PRIVATE
    <algorithm> <array> <chrono> <coroutine> <deque> <expected> <filesystem> <functional> <map> <memory> <mutex>
    <optional> <ranges> <set> <span> <string> <string_view> <thread> <unordered_map> <utility> <variant> <vector>
    <fmt/format.h> ${ARGN})
  set_property(GLOBAL PROPERTY ${group} ${name})
endfunction()

# Several sources of a library are compiled as one, which spares most of what they read and instantiate alike: a build from
# nothing takes two thirds of the time. Who changes a file compiles its neighbours with it. Which are neighbours changes with
# each new file, so names outside of functions are told apart within a library; what a local one hides in a neighbour
# does not matter, and the linter and a Mac's build look at each file alone.
option(QUILLO_UNITY "compile several sources of a library as one" ON)

# A library of all sources directly in the folders under FOLDER (default: the present one), linked to what stands below
# it, with the headers under PRECOMPILE precompiled beside the common ones.
function(quillo_library name)
  cmake_parse_arguments(arg "" "" "FOLDER;LINK;PRECOMPILE" ${ARGN})
  if(NOT arg_FOLDER)
    set(arg_FOLDER .)
  endif()
  list(TRANSFORM arg_FOLDER REPLACE "(.+)" "${CMAKE_CURRENT_SOURCE_DIR}/\\1/*.cpp")
  file(GLOB sources CONFIGURE_DEPENDS ${arg_FOLDER})
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE quillo_flags ${arg_LINK})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC quillo_flags ${arg_LINK})
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${QUILLO_UNITY} UNITY_BUILD_BATCH_SIZE 6)
  if(QUILLO_UNITY)
    target_compile_options(${name} PRIVATE -Wno-shadow)
  endif()
  quillo_precompile(${name} ${arg_PRECOMPILE})
endfunction()
