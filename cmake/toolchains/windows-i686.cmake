# 32-bit Windows with mingw-w64.
set(TONVANE_MINGW i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
# The x87 unit rounds to other bits than SSE2; and callbacks of the system may come in on a stack
# that is aligned to four bytes only.
set(TONVANE_MINGW_FLAGS "-msse2 -mfpmath=sse -mstackrealign")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
