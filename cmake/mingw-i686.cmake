# Cross-build for 32-bit Windows: only compiled and linked, to check 32-bit sizes. SSE2
# keeps single-precision arithmetic to one rounding per step, which the x87 unit does not.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
