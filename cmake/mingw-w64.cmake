# Cross-compiles for Windows with Debian's mingw-w64 (POSIX threads flavour): for 64-bit programs, or what
# mingw-w64-x86.cmake asks for.
if(NOT MORQUIL_MINGW_PROCESSOR)
    set(MORQUIL_MINGW_PROCESSOR x86_64)
endif()
set(mingw ${MORQUIL_MINGW_PROCESSOR}-w64-mingw32)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${MORQUIL_MINGW_PROCESSOR})
set(CMAKE_C_COMPILER ${mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
