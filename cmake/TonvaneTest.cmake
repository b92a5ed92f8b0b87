# tonvane_test(NAME SOURCES ... LINKS target ... [ALONE]): one GoogleTest program tests-NAME; each of
# its cases becomes a CTest of the name NAME.Suite.Case. ALONE: no other test runs beside them. The
# leak sanitizer of a test and of the programs that it starts passes over what the font library never
# frees.
include(GoogleTest)

function(tonvane_test name)
    cmake_parse_arguments(TEST "ALONE" "" "SOURCES;LINKS" ${ARGN})
    add_executable(tests-${name} ${TEST_SOURCES})
    target_include_directories(tests-${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(tests-${name} PRIVATE tonvane_compiler GTest::gmock_main ${TEST_LINKS})
    target_compile_definitions(tests-${name} PRIVATE
        TONVANE_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
        TONVANE_EXAMPLES="${PROJECT_SOURCE_DIR}/examples")
    gtest_discover_tests(tests-${name} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 120
        PROPERTIES TIMEOUT 600 RUN_SERIAL "${TEST_ALONE}"
        ENVIRONMENT LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.txt:print_suppressions=0)
endfunction()
