# Compiling and linking for a Mac on another system, as far as that proves anything: Debian's clang, lld and libc++,
# headers that tools/fetch-macos-headers brings, and our own declarations of the frameworks. What comes out
# is never shipped. QUILLO_MAC_ARCH names the processor: arm64 or x86_64.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${QUILLO_MAC_ARCH})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUILLO_MAC_ARCH)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
set(headers ${root}/build/macos-headers)
set(stubs ${root}/build/macos-stubs)
set(processor ${QUILLO_MAC_ARCH})
if(processor STREQUAL "arm64")
  set(processor aarch64)
endif()

set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_OBJCXX_COMPILER /usr/bin/clang++-19)
set(CMAKE_AR /usr/bin/llvm-ar-19 CACHE FILEPATH "")
set(CMAKE_RANLIB /usr/bin/llvm-ranlib-19 CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL /usr/bin/llvm-install-name-tool-19 CACHE FILEPATH "")
set(CMAKE_OSX_SYSROOT "" CACHE STRING "")
set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "")
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET ${QUILLO_MAC_ARCH}-apple-macos14.0)
  set(CMAKE_${language}_STANDARD_LIBRARIES "-lc++ -lSystem")
  string(JOIN " " CMAKE_${language}_FLAGS_INIT
    -nostdinc++ -nostdlibinc
    -isystem /usr/lib/llvm-19/include/c++/v1
    -isystem ${stubs}/include
    -isystem ${root}/cmake/macos/declarations/include
    -isystem ${headers}/include/any-macos.13-any
    -isystem ${headers}/include/any-macos-any
    -isystem ${headers}/include/${processor}-macos.13-none
    -iframework ${root}/cmake/macos/declarations)
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-mlinker-version=907 --ld-path=/usr/bin/ld64.lld-19 -nostdlib -L${stubs}/lib -L${root}/cmake/macos/declarations/lib -F${root}/cmake/macos/declarations")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# Debian's header-only or re-declared libraries, never this machine's own link libraries.
set(ENV{PKG_CONFIG_LIBDIR} ${stubs}/pkgconfig)
set(ENV{PKG_CONFIG_PATH} "")
set(fmt_DIR ${CMAKE_CURRENT_LIST_DIR}/packages)
set(CLI11_DIR ${CMAKE_CURRENT_LIST_DIR}/packages)
set(Qt6_DIR ${CMAKE_CURRENT_LIST_DIR}/packages)
file(GLOB QUILLO_MAC_QT /usr/include/*/qt6)
