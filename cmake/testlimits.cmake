# What the tests of this build may take. Where programs are emulated or watched by a sanitizer, the
# toolchain file or the preset says how many times as long (PLCDEBUG_TIME_FACTOR).
if(NOT DEFINED PLCDEBUG_TIME_FACTOR)
    set(PLCDEBUG_TIME_FACTOR 1)
endif()

# time_limit(RESULT SECONDS)
function(time_limit result seconds)
    math(EXPR limit "${seconds} * ${PLCDEBUG_TIME_FACTOR}")
    set(${result} ${limit} PARENT_SCOPE)
endfunction()

# limit_test(TEST SECONDS)
function(limit_test name seconds)
    time_limit(limit ${seconds})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${limit})
endfunction()
