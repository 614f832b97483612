# Windows of 64 bits, by MinGW-w64. Programs run under wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
find_program(DATABASE_ENTRY_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH REQUIRED)
# With its own Windows below the build folder, and without what it says of the screen that is missing.
set(CMAKE_CROSSCOMPILING_EMULATOR env WINEDEBUG=-all WINEPREFIX=${CMAKE_BINARY_DIR}/wine ${DATABASE_ENTRY_WINE})
# One program, without the compiler's own libraries beside it.
set(BUILD_SHARED_LIBS OFF CACHE BOOL "Build shared libraries")
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} /usr/x86_64-w64-mingw32/lib/pkgconfig)
