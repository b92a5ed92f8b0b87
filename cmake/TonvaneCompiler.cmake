# Compiler settings shared by every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# What has been compiled before comes from the compiler cache, where there is one.
find_program(TONVANE_CCACHE ccache)
if(TONVANE_CCACHE)
    foreach(language C CXX)
        if(NOT CMAKE_${language}_COMPILER_LAUNCHER)
            # A precompiled header is a part of what it is compiled into.
            set(CMAKE_${language}_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
                CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
                ${TONVANE_CCACHE})
        endif()
    endforeach()
endif()

add_library(tonvane_compiler INTERFACE)
target_compile_options(tonvane_compiler INTERFACE
    -Wall -Wextra -Werror -Wshadow -Wconversion -Wno-sign-conversion
    # No fused multiply-add and no reassociation: one input has one result on every machine.
    -ffp-contract=off
    # Nothing reads errno or floating point traps; without them sqrt is one instruction.
    -fno-math-errno -fno-trapping-math
    # g++ 12 sees overlaps in its own std::string operator+ (GCC bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_definitions(tonvane_compiler INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(TONVANE_SANITIZE)
    add_compile_options(-fsanitize=${TONVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TONVANE_SANITIZE})
endif()
if(TONVANE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES Clang)
        message(FATAL_ERROR "TONVANE_FUZZ needs clang: libFuzzer is a part of its run-time")
    endif()
    # The coverage counters that libFuzzer steers by, in every room.
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-fsanitize=fuzzer-no-link>)
    add_link_options($<$<LINK_LANGUAGE:C,CXX>:-fsanitize=fuzzer-no-link>)
endif()
