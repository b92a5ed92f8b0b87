# tonvane_header_only(NAME FOLDER TARGET): the header-only library NAME of the building machine, whose
# headers are in the folder FOLDER among the system's, as the imported target TARGET. Only that folder
# becomes visible, through a link: the headers beside it are those of another system.
function(tonvane_header_only name folder target)
    if(NOT TARGET ${target})
        find_path(TONVANE_${name}_HEADERS ${folder} PATHS /usr/include /usr/local/include
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
        if(NOT TONVANE_${name}_HEADERS)
            message(FATAL_ERROR "The headers of ${name} were not found")
        endif()
        set(place ${PROJECT_BINARY_DIR}/headers/${name})
        file(MAKE_DIRECTORY ${place})
        file(CREATE_LINK ${TONVANE_${name}_HEADERS}/${folder} ${place}/${folder} SYMBOLIC)
        add_library(${target} INTERFACE IMPORTED GLOBAL)
        target_include_directories(${target} SYSTEM INTERFACE ${place})
    endif()
    set(${name}_FOUND TRUE PARENT_SCOPE)
endfunction()
