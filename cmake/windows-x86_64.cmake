# Cross-building for 64-bit Windows with Debian's MinGW-w64 and the libraries of
# tools/windows-libraries.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(DEFINED ENV{OMBRIX_WINDOWS_LIBRARIES})
    set(OMBRIX_WINDOWS_LIBRARIES $ENV{OMBRIX_WINDOWS_LIBRARIES})
elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(OMBRIX_WINDOWS_LIBRARIES $ENV{XDG_CACHE_HOME}/ombrix-windows)
else()
    set(OMBRIX_WINDOWS_LIBRARIES $ENV{HOME}/.cache/ombrix-windows)
endif()
set(CMAKE_FIND_ROOT_PATH ${OMBRIX_WINDOWS_LIBRARIES}/x86_64 /usr/x86_64-w64-mingw32)
set(CMAKE_PREFIX_PATH ${OMBRIX_WINDOWS_LIBRARIES}/x86_64)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Whoever installs the program has not got the compiler's libraries.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

# Tests, and the programs that make templates and guides, run while the build goes on.
find_program(OMBRIX_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(OMBRIX_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${OMBRIX_WINE})
endif()
# Qt's own tools are those of the machine that builds.
set(QT_HOST_PATH /usr)
