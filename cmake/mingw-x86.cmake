# 32-bit Windows from Linux; built, never run here.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(TESSARO_MINGW i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
