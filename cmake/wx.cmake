# The toolkit, as system headers: its own code gives old-style-cast and conversion warnings.
find_package(wxWidgets 3.2 REQUIRED COMPONENTS core base)

function(add_wx_target name)
    add_library(${name} INTERFACE)
    target_include_directories(${name} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
    target_compile_definitions(${name} INTERFACE ${wxWidgets_DEFINITIONS})
    target_compile_options(${name} INTERFACE ${wxWidgets_CXX_FLAGS})
    target_link_directories(${name} INTERFACE ${wxWidgets_LIBRARY_DIRS})
    target_link_libraries(${name} INTERFACE ${ARGN})
endfunction()

# wx_base: strings, files, configuration; no window. wx_gui: everything.
set(wx_libraries ${wxWidgets_LIBRARIES})
add_wx_target(wx_gui ${wx_libraries})
list(FILTER wx_libraries EXCLUDE REGEX "_core-")
add_wx_target(wx_base ${wx_libraries})
