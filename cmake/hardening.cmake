# Debian's flags for packages, with all of the hardening.
# debian_flags(VARIABLE KIND...)
function(debian_flags variable)
    foreach(kind IN LISTS ARGN)
        execute_process(
            COMMAND ${CMAKE_COMMAND} -E env DEB_BUILD_MAINT_OPTIONS=hardening=+all
                    dpkg-buildflags --get ${kind}
            WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
            OUTPUT_VARIABLE flags
            COMMAND_ERROR_IS_FATAL ANY)
        separate_arguments(flags UNIX_COMMAND "${flags}")
        list(APPEND all ${flags})
    endforeach()
    set(${variable} ${all} PARENT_SCOPE)
endfunction()
debian_flags(compiled CXXFLAGS CPPFLAGS)
debian_flags(linked LDFLAGS)
add_compile_options(${compiled})
add_link_options(${linked})
