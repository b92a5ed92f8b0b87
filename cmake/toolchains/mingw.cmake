# What both Windows toolchains share: mingw-w64 with POSIX threads, as Debian names it. Everything is
# linked statically, so that a program needs no DLL but those of the system.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${TONVANE_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TONVANE_MINGW}-g++-posix)
set(CMAKE_Fortran_COMPILER ${TONVANE_MINGW}-gfortran-posix)
set(CMAKE_RC_COMPILER ${TONVANE_MINGW}-windres)
foreach(language C CXX Fortran)
    set(CMAKE_${language}_FLAGS_INIT "${TONVANE_MINGW_FLAGS}")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Nothing of the building machine but its programs.
set(CMAKE_FIND_ROOT_PATH /usr/${TONVANE_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
