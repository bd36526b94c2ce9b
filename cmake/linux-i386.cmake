# 32-bit x86: another size of pointers, sizes and times. SSE2 keeps single-precision arithmetic to one rounding
# per step, which the x87 unit does not. A 64-bit kernel runs these programs without an emulator.
set(QSA_ARCH i386)
set(QSA_TRIPLET i686-linux-gnu)
set(QSA_DEBIAN_TRIPLET i386-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/linux-cross.cmake)
