# What a desktop and a shell know of the programs.
install(
    FILES desktop/plchost.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
    COMPONENT plchost)
install(
    FILES desktop/example.plcdebug.plchost.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
    COMPONENT plchost)
install(
    FILES desktop/plchost.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
    COMPONENT plchost)

# The shell reads the options from each program's own help.
function(add_completion program component)
    file(CONFIGURE OUTPUT completions/${program} CONTENT "complete -F _longopt @program@\n" @ONLY)
    install(
        FILES ${CMAKE_CURRENT_BINARY_DIR}/completions/${program}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        COMPONENT ${component})
endfunction()
add_completion(plchost plchost)
add_completion(plcasm plchost)
add_completion(plcwatch plcdebug-tools)
add_completion(plcdebug-check plcdebug-tools)
