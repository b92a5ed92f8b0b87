# 64-bit Windows with mingw-w64.
set(TONVANE_MINGW x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(TONVANE_MINGW_FLAGS "")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
