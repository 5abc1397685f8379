set(ZYR_TRIPLET i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR X86)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake)

# SSE2 arithmetic gives the same bits as the 64-bit builds. A host program may call in on a stack that is aligned
# to 4 bytes only, so every entry realigns it.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
