# The compiler and the libraries of builds for the machine they run on; chosen here so that `cmake --preset` alone does.
#
# Linux: Debian's clang 19. A Mac: Apple's compiler where its standard library is new enough, for that library is
# the system's own; else Homebrew's clang with the library it brings. Homebrew keeps some formulas (ICU, LLVM) out of
# everybody's search path, so they are asked for by name. Environment: CXX, where set, is taken as it is.
if(NOT CMAKE_HOST_SYSTEM_NAME STREQUAL "Darwin")
  if(NOT DEFINED ENV{CXX})
    set(CMAKE_CXX_COMPILER clang++-19)
  endif()
  return()
endif()

# homebrew(OUT FORMULA): where the formula stands, or empty.
function(homebrew out formula)
  execute_process(COMMAND brew --prefix ${formula} OUTPUT_VARIABLE prefix ERROR_QUIET RESULT_VARIABLE failed
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(failed OR NOT IS_DIRECTORY "${prefix}")
    set(prefix "")
  endif()
  set(${out} "${prefix}" PARENT_SCOPE)
endfunction()

foreach(formula "" qt icu4c)
  homebrew(prefix "${formula}")
  if(prefix)
    list(PREPEND CMAKE_PREFIX_PATH ${prefix})
    set(ENV{PKG_CONFIG_PATH} "${prefix}/lib/pkgconfig:$ENV{PKG_CONFIG_PATH}")
  endif()
endforeach()

# Apple's numbers are its own: 17 is the first whose standard library has what clang 19's has.
set(QUILLO_OLDEST_APPLE_CLANG 17)
if(NOT DEFINED ENV{CXX})
  execute_process(COMMAND xcrun clang++ --version OUTPUT_VARIABLE version ERROR_QUIET)
  if(version MATCHES "^Apple clang version ([0-9]+)" AND CMAKE_MATCH_1 GREATER_EQUAL QUILLO_OLDEST_APPLE_CLANG)
    execute_process(COMMAND xcrun --find clang++ OUTPUT_VARIABLE CMAKE_CXX_COMPILER OUTPUT_STRIP_TRAILING_WHITESPACE)
  else()
    homebrew(llvm llvm@19)
    if(NOT llvm)
      message(FATAL_ERROR "Neither Apple's clang ${QUILLO_OLDEST_APPLE_CLANG} or newer (Xcode 16.3) nor Homebrew's is here: "
        "update the command line tools, or run brew install llvm@19")
    endif()
    set(CMAKE_CXX_COMPILER ${llvm}/bin/clang++)
    # What its headers promise beyond the system's library is in the one beside it.
    set(CMAKE_EXE_LINKER_FLAGS_INIT "-L${llvm}/lib/c++ -Wl,-rpath,${llvm}/lib/c++")
  endif()
  set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
endif()
