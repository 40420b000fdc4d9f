# The Debian packages, one for each component.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS changelog)
file(STRINGS changelog newest LIMIT_COUNT 1)
if(NOT newest MATCHES "[(]${PROJECT_VERSION}-(.+)[)]")
    message(FATAL_ERROR "packaging/changelog says \"${newest}\", but this is ${PROJECT_VERSION}")
endif()
set(package_release ${CMAKE_MATCH_1})
execute_process(
    COMMAND dpkg-parsechangelog --file ${CMAKE_CURRENT_SOURCE_DIR}/changelog --show-field Timestamp
    OUTPUT_VARIABLE package_date
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
add_subdirectory(man)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGE_CONTACT "plcdebug authors <authors@plcdebug.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${package_release})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
if(CMAKE_CROSSCOMPILING)
    string(REGEX REPLACE "-.*" "" CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${CMAKE_LIBRARY_ARCHITECTURE})
    foreach(folder lib usr/lib)
        list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
             ${CMAKE_SYSROOT}/${folder}/${CMAKE_LIBRARY_ARCHITECTURE})
    endforeach()
    set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_BINARY_DIR}/cross.cmake)
    configure_file(cross.cmake.in ${CPACK_PROJECT_CONFIG_FILE} @ONLY)
endif()
configure_file(finish-packages.cmake.in finish-packages.cmake @ONLY)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/finish-packages.cmake)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Else cpack puts it before each package's own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

# compressed(FILE RESULT): of the build folder, the same at each build.
function(compressed file result)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    execute_process(
        COMMAND gzip -9 --no-name --stdout ${file}
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
        OUTPUT_FILE ${CMAKE_CURRENT_BINARY_DIR}/${result} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
compressed(changelog changelog.Debian.gz)
compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz)

# add_package(COMPONENT NAME SECTION DEPENDS SUMMARY LINE...)
function(add_package component name section depends summary)
    string(TOUPPER CPACK_DEBIAN_${component} prefix)
    set(${prefix}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(${prefix}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(${prefix}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    # The first line of a description is its summary.
    list(JOIN ARGN "\n" text)
    set(${prefix}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
    install(
        FILES copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz
              ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name}
        COMPONENT ${component})
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
endfunction()

set(this_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(this_library "libplcdebug (= ${this_version})")
add_package(
    library libplcdebug libs ""
    "PLC debugger plug-in for machine-control programs"
    "A shared library that a machine-control program loads. It opens one"
    "window in which the operator watches and changes operands of the running"
    "PLC."
    ""
    "Its name has no version because the boundary between it and its hosts"
    "fixes the name: a host loads libplcdebug.so.")
install(
    FILES libplcdebug.lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    RENAME libplcdebug
    COMPONENT library)
add_package(
    development libplcdebug-dev libdevel "${this_library}, libgtk-3-dev"
    "PLC debugger plug-in, files for integrators"
    "The header of the host boundary, its CMake package and pkg-config file,"
    "the pages for integrators and the smallest host.")
add_package(
    tools plcdebug-tools utils "${this_library}"
    "watch machines and check the PLC debugger, from the command line"
    "plcwatch watches a soft PLC, a recording, a Modbus device or a machine"
    "behind an MQTT broker, without a window. plcdebug-check puts a build of the"
    "debugger library through what a host does; libplcdebug-hostcheck.so, loaded"
    "in its place, judges a host. Sample programs for the soft PLC come along.")
add_package(
    host plchost utils "${this_library}, plcdebug-tools (= ${this_version})"
    "reference host of the PLC debugger"
    "A small bottling line with its soft PLC, to try the debugger on, and"
    "plcasm, which checks statement lists.")

# These had files that plcdebug-tools has now.
set(CPACK_DEBIAN_TOOLS_PACKAGE_BREAKS "libplcdebug-dev (<< 1.14.0-1~), plchost (<< 1.14.0-1~)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_REPLACES ${CPACK_DEBIAN_TOOLS_PACKAGE_BREAKS})

include(CPack)
