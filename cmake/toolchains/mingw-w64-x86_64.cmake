# Cross build for 64-bit Windows with Debian's MinGW-w64 (g++-mingw-w64-x86-64-posix): the
# "posix" thread model gives std::thread and std::mutex. Everything the toolchain brings
# (libstdc++, libgcc, winpthreads) is linked statically, so KrGeL.dll and the programs import
# system DLLs only. Programs run through Wine, which ctest uses as the emulator.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(KRGEL_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${KRGEL_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KRGEL_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${KRGEL_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${KRGEL_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

find_program(KRGEL_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(KRGEL_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${KRGEL_WINE})
endif()
