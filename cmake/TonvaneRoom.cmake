# tonvane_room(NAME [NUMERIC] SOURCES ... [DEPENDS room ...] [LINKS target ...])
#
# One folder under src/ as one static library tonvane::NAME. DEPENDS names the rooms below that it
# may include; LINKS names outside libraries. What is declared here is also written to
# <build>/rooms/NAME, where the structure test reads it. A NUMERIC room computes: its branches tell a fuzz
# target nothing of its input, so it goes without counters for them, and optimised.
#
# With TONVANE_UNITY a room compiles in batches of sources, which takes a third of the time, because the
# headers are most of it. So a name in an unnamed namespace is unique in its room.
option(TONVANE_UNITY "Compile several sources of a room at once" OFF)

function(tonvane_room name)
    cmake_parse_arguments(ROOM "NUMERIC" "" "SOURCES;DEPENDS;LINKS" ${ARGN})
    add_library(tonvane_${name} STATIC ${ROOM_SOURCES})
    add_library(tonvane::${name} ALIAS tonvane_${name})
    target_include_directories(tonvane_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(tonvane_${name} PRIVATE $<BUILD_INTERFACE:tonvane_compiler> ${ROOM_LINKS})
    set_target_properties(tonvane_${name} PROPERTIES UNITY_BUILD ${TONVANE_UNITY})
    if(ROOM_NUMERIC AND TONVANE_FUZZ)
        target_compile_options(tonvane_${name} PRIVATE -fno-sanitize=fuzzer-no-link -O2)
    endif()
    foreach(dependency IN LISTS ROOM_DEPENDS)
        target_link_libraries(tonvane_${name} PUBLIC tonvane::${dependency})
    endforeach()
    list(JOIN ROOM_DEPENDS "\n" lines)
    file(WRITE ${PROJECT_BINARY_DIR}/rooms/${name} "${lines}\n")
endfunction()
