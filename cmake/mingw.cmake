# What the two mingw-w64 toolchain files share; TESSARO_MINGW names the compilers' prefix.
#
# The posix flavour is the one with std::thread and thread_local objects that are destroyed.
# Everything of the compiler is linked in, so that programs and libraries need nothing that a plain
# Windows lacks.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${TESSARO_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TESSARO_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${TESSARO_MINGW}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

list(APPEND CMAKE_FIND_ROOT_PATH /usr/${TESSARO_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
