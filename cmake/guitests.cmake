# Tests that open windows. Every test process gets an X server, a window manager and an empty home
# of its own (scripts/with-x), so they may run at the same time.
#
# add_gui_tests(NAME PREFIX gui. SOURCES FILE... LIBRARIES TARGET... [TIMEOUT SECONDS])
# The sources hold the main function: the toolkit has to be set up before the first test.
function(add_gui_tests name)
    cmake_parse_arguments(arg "" "PREFIX;TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    if(NOT DEFINED arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    time_limit(limit ${arg_TIMEOUT})
    time_limit(discovery_limit 60)
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} plcdebug_warnings GTest::gmock)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support)
    set(runner ${PROJECT_SOURCE_DIR}/scripts/with-x ${CMAKE_CROSSCOMPILING_EMULATOR})
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${runner}")
    gtest_discover_tests(
        ${name}
        TEST_PREFIX ${arg_PREFIX}
        NO_PRETTY_VALUES
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT ${discovery_limit}
        PROPERTIES TIMEOUT ${limit})
endfunction()
