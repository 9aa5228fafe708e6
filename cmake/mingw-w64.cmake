# Cross-compiling the core, the command line and their tests for 64-bit
# Windows with Debian's MinGW-w64 compiler (POSIX threads, for std::thread),
# statically linked, the tests run through Wine.
#
# The Windows builds of the libraries come from scripts/windows-deps.sh; its
# install folder is SD_WINDOWS_DEPS (a cache variable or the environment).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(SD_MINGW_TRIPLE x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${SD_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${SD_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${SD_MINGW_TRIPLE}-windres)

if(NOT SD_WINDOWS_DEPS AND DEFINED ENV{SD_WINDOWS_DEPS})
  set(SD_WINDOWS_DEPS $ENV{SD_WINDOWS_DEPS})
endif()
set(SD_WINDOWS_DEPS "${SD_WINDOWS_DEPS}" CACHE PATH "Windows builds of the libraries")

# Headers and libraries only from the compiler's own folder and the cache;
# programs (cmake, wine) from this machine.
set(CMAKE_FIND_ROOT_PATH /usr/${SD_MINGW_TRIPLE} ${SD_WINDOWS_DEPS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
set(ZLIB_USE_STATIC_LIBS ON)

# One exe that needs only the system's DLLs: no libstdc++, libgcc or
# winpthread DLL beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")

find_program(SD_WINE NAMES wine wine64)
if(SD_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${SD_WINE})
endif()
