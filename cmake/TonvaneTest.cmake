# tonvane_test(NAME SOURCES ... LINKS target ... [STAGE stage]): one GoogleTest program tests-NAME; each
# of its cases becomes a CTest of the name NAME.Suite.Case with the label of its stage of
# tools/run-tests: quick if not given; no other test runs beside those of another stage. The leak
# sanitizer of a test and of the programs that it starts passes over what the font library never frees.
#
# The sources of the tests compile with GoogleTest and the standard library precompiled, once for all
# programs (tests_precompiled in support/), and without optimisation: templates of matchers are most of
# what they are, and what they measure is in the rooms, which are optimised.
include(GoogleTest)

# What the stages of tools/run-tests build.
foreach(stage quick audio window windows)
    add_custom_target(stage-${stage})
endforeach()

set(tonvane_leaks
    LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.txt:print_suppressions=0)

# Compiles a target's sources as tests.
function(tonvane_test_sources target)
    target_link_libraries(${target} PRIVATE tonvane_compiler GTest::gmock)
    target_compile_options(${target} PRIVATE -O0)
    target_precompile_headers(${target} REUSE_FROM tests_precompiled)
endfunction()

function(tonvane_test name)
    cmake_parse_arguments(TEST "" "STAGE" "SOURCES;LINKS" ${ARGN})
    add_executable(tests-${name} ${TEST_SOURCES})
    tonvane_test_sources(tests-${name})
    target_include_directories(tests-${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(tests-${name} PRIVATE GTest::gmock_main ${TEST_LINKS})
    set(alone ON)
    if(NOT TEST_STAGE)
        set(TEST_STAGE quick)
        set(alone OFF)
    endif()
    add_dependencies(stage-${TEST_STAGE} tests-${name})
    gtest_discover_tests(tests-${name} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 120
        PROPERTIES TIMEOUT 600 RUN_SERIAL "${alone}" LABELS ${TEST_STAGE}
        ENVIRONMENT ${tonvane_leaks})
endfunction()

# tonvane_pytest(NAME FILE PROGRAMS target ... [STAGE stage]): the tests of a Python file as one CTest,
# labelled as above. They find the programs in the folder that TONVANE_BIN names.
function(tonvane_can_test result python)
    execute_process(COMMAND ${python} -c "import pytest, PIL"
        RESULT_VARIABLE code OUTPUT_QUIET ERROR_QUIET)
    if(code)
        set(${result} FALSE PARENT_SCOPE)
    endif()
endfunction()

function(tonvane_pytest name file)
    cmake_parse_arguments(TEST "" "STAGE" "PROGRAMS" ${ARGN})
    find_program(TONVANE_PYTHON python3 HINTS /usr/bin VALIDATOR tonvane_can_test)
    if(NOT TONVANE_PYTHON)
        message(FATAL_ERROR "The tests need a Python 3 with pytest and Pillow (on Debian: "
            "python3-pytest and python3-pil). Install them, or build without: -DTONVANE_TESTS=OFF")
    endif()
    set(alone ON)
    if(NOT TEST_STAGE)
        set(TEST_STAGE quick)
        set(alone OFF)
    endif()
    add_dependencies(stage-${TEST_STAGE} ${TEST_PROGRAMS})
    add_test(NAME ${name} COMMAND ${TONVANE_PYTHON} -m pytest -p no:cacheprovider -q
        ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 1200 RUN_SERIAL ${alone} LABELS ${TEST_STAGE} ENVIRONMENT
        "PYTHONDONTWRITEBYTECODE=1;TONVANE_BIN=${CMAKE_RUNTIME_OUTPUT_DIRECTORY};${tonvane_leaks}")
endfunction()
