# Cross build for 64-bit Windows with Debian's MinGW-w64 (posix thread model), tests run
# under wine64. SPINDLE_WIN32_DEPS names the prefix where scripts/build-win32-deps
# installed the reference host's dependencies.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(SPINDLE_WIN32_DEPS "" CACHE PATH "Prefix of the cross-built pugixml, zlib and libzip")
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${SPINDLE_WIN32_DEPS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Test programs and the tests' discovery run under Wine.
find_program(SPINDLE_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
set(CMAKE_CROSSCOMPILING_EMULATOR ${SPINDLE_WINE})

