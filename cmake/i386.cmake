# Builds for 32 bits: Debian's cross compiler, with the C and C++ libraries that it brings, and all
# other libraries and headers from a folder that scripts/i386-sysroot makes.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER i686-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(scripts ${CMAKE_CURRENT_LIST_DIR}/../scripts)
if(NOT CMAKE_SYSROOT) # this file is read several times
    execute_process(
        COMMAND ${scripts}/i386-sysroot
        OUTPUT_VARIABLE CMAKE_SYSROOT
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    set(PLCDEBUG_SYSROOT ${CMAKE_SYSROOT} CACHE PATH "What this build has found its libraries in")
    if(NOT PLCDEBUG_SYSROOT STREQUAL CMAKE_SYSROOT)
        message(FATAL_ERROR "The libraries for 32 bits lie elsewhere now: delete ${CMAKE_BINARY_DIR}")
    endif()
endif()
set(libraries ${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE})
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${libraries}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
set(wxWidgets_CONFIG_EXECUTABLE ${libraries}/wx/config/gtk3-unicode-3.2)
set(wxWidgets_CONFIG_OPTIONS --prefix=${CMAKE_SYSROOT}/usr --exec-prefix=${CMAKE_SYSROOT}/usr)

# What is built is tried where it lies: with this loader, by the kernel if that runs 32-bit programs.
set(PLCDEBUG_LOADER ${CMAKE_SYSROOT}/lib/ld-linux.so.2)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_BINARY_DIR}/run)
execute_process(COMMAND ${scripts}/runs-i386 RESULT_VARIABLE kernel_does_not)
if(kernel_does_not)
    set(PLCDEBUG_RUN_BY qemu-i386-static)
    set(PLCDEBUG_TIME_FACTOR 5)
    set(emulator qemu-i386-static)
else()
    set(PLCDEBUG_RUN_BY "the kernel")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/run-i386.in ${CMAKE_CROSSCOMPILING_EMULATOR} @ONLY
               FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
