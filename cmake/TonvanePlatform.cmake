# TONVANE_PLATFORM is the ending of the source files that are there once for each platform, as in
# SocketPosix.cpp and SocketWindows.cpp.
if(WIN32)
    set(TONVANE_PLATFORM Windows)
    # What is found otherwise where programs are built for the machine that builds them.
    if(CMAKE_CROSSCOMPILING)
        list(APPEND CMAKE_MODULE_PATH ${PROJECT_SOURCE_DIR}/cmake/windows)
    endif()
    # Windows 7 and later; UTF-16 entry points where the names alone do not say which.
    add_compile_definitions(_WIN32_WINNT=0x0601 WINVER=0x0601 UNICODE _UNICODE NOMINMAX)
else()
    set(TONVANE_PLATFORM Posix)
endif()

# Unpacked source packages, shared by all builds that name the same folder.
set(TONVANE_SOURCE_PACKAGES ${PROJECT_BINARY_DIR}/source-packages CACHE PATH
    "Where the sources of libraries are put that are built with the programs")
