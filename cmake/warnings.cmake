# Warnings for our own code; they are errors where PLCDEBUG_WERROR is on (the presets).
add_library(plcdebug_warnings INTERFACE)
if(CMAKE_UNITY_BUILD) # sources compiled as one shadow each other's names
    return()
endif()
target_compile_options(
    plcdebug_warnings
    INTERFACE
        -Wall
        -Wextra
        -Wpedantic
        -Wshadow
        -Wconversion
        -Wsign-conversion
        -Wcast-qual
        $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
        $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
        $<$<BOOL:${PLCDEBUG_WERROR}>:-Werror>)
