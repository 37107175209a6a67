# Takes the maintainer scripts out again that cpack gives a package with a library: they do what the trigger does.
foreach(PACKAGE ${CPACK_PACKAGE_FILES})
    set(FOLDER ${PACKAGE}.unpacked)
    file(REMOVE_RECURSE ${FOLDER})
    execute_process(COMMAND dpkg-deb --raw-extract ${PACKAGE} ${FOLDER} COMMAND_ERROR_IS_FATAL ANY)
    if(EXISTS ${FOLDER}/DEBIAN/postinst)
        file(REMOVE ${FOLDER}/DEBIAN/postinst ${FOLDER}/DEBIAN/postrm)
        execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${FOLDER} ${PACKAGE}
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    endif()
    file(REMOVE_RECURSE ${FOLDER})
endforeach()
