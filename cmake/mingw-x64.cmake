# 64-bit Windows from Linux; what is built runs under Wine.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(TESSARO_MINGW x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)
