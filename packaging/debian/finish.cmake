# What makes Debian packages of the installed components before they are packed: run by cpack on its own copy of them.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(COMPONENT ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${COMPONENT} UPPER)
    set(ROOT ${CPACK_TEMPORARY_DIRECTORY}/${COMPONENT}/usr)
    set(DOC ${ROOT}/share/doc/${CPACK_DEBIAN_${UPPER}_PACKAGE_NAME})

    # Debian's zsh does not look into site-functions for what packages bring.
    if(EXISTS ${ROOT}/share/zsh/site-functions)
        file(RENAME ${ROOT}/share/zsh/site-functions ${ROOT}/share/zsh/vendor-completions)
    endif()

    # The linker finds the library by itself.
    file(GLOB PROGRAMS ${ROOT}/bin/*)
    foreach(PROGRAM ${PROGRAMS})
        file(RPATH_REMOVE FILE ${PROGRAM})
    endforeach()

    file(GLOB LIBRARIES ${ROOT}/${CPACK_TOVREN_LIBDIR}/*.so.*.*)
    foreach(FILE ${PROGRAMS} ${LIBRARIES})
        run(${CPACK_TOVREN_STRIP} --strip-unneeded --remove-section=.comment --remove-section=.note ${FILE})
    endforeach()
    foreach(FILE ${LIBRARIES})
        run(chmod 644 ${FILE})
    endforeach()
    file(GLOB ARCHIVES ${ROOT}/${CPACK_TOVREN_LIBDIR}/*.a)
    foreach(FILE ${ARCHIVES})
        run(${CPACK_TOVREN_STRIP} --strip-debug --enable-deterministic-archives
            --remove-section=.comment --remove-section=.note ${FILE})
    endforeach()

    file(MAKE_DIRECTORY ${DOC})
    file(COPY ${CPACK_TOVREN_DEBIAN_DIR}/copyright DESTINATION ${DOC} FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    configure_file(${CPACK_TOVREN_DEBIAN_DIR}/changelog ${DOC}/changelog.Debian COPYONLY)
    configure_file(${CPACK_TOVREN_CHANGES} ${DOC}/changelog COPYONLY)
    file(GLOB PAGES ${ROOT}/share/man/*/*)
    foreach(FILE ${DOC}/changelog.Debian ${DOC}/changelog ${PAGES})
        run(gzip -9nf ${FILE})
    endforeach()
endforeach()
