# The documents, each with the package that it is about. Between themselves they refer to each other
# as they lie in the checkout; installed they lie in the folders of their packages.
set(documents_of_libplcdebug-dev
    CHANGELOG.md docs/formats.md docs/integration.md docs/limits.md docs/performance.md
    docs/robustness.md)
set(documents_of_plcdebug-tools docs/hostcheck.md docs/plants.md docs/plcwatch.md docs/remote.md)
set(documents_of_plchost docs/plchost.md docs/statement-list.md)
set(document_packages libplcdebug-dev plcdebug-tools plchost)
set(installed_packages libplcdebug-dev)
if(PLCDEBUG_PROGRAMS)
    set(installed_packages ${document_packages})
endif()

foreach(package ${installed_packages})
    foreach(document ${documents_of_${package}})
        set(source ${PROJECT_SOURCE_DIR}/${document})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
        file(READ ${source} text)
        string(REPLACE "](docs/" "](" text "${text}")
        foreach(other ${document_packages})
            if(NOT other STREQUAL package)
                foreach(target ${documents_of_${other}})
                    get_filename_component(target ${target} NAME)
                    string(REPLACE "](${target}" "](../${other}/${target}" text "${text}")
                endforeach()
            endif()
        endforeach()
        string(REPLACE "](../include/" "](../../../include/" text "${text}")
        string(REPLACE "](../examples/collect_values.py" "](../plcdebug-tools/collect_values.py" text "${text}")
        string(REPLACE "](../examples/" "](../libplcdebug-dev/" text "${text}")
        string(REPLACE "](../samples/broker" "](../plcdebug-tools/broker" text "${text}")
        string(REPLACE "](../languages/" "](../../plcdebug/languages/" text "${text}")
        get_filename_component(name ${document} NAME)
        file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/documents/${name} "${text}")
        install(
            FILES ${CMAKE_CURRENT_BINARY_DIR}/documents/${name}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
            COMPONENT ${package})
    endforeach()
endforeach()
