# The Debian packages, one a component of the installation: `cpack` in the build folder writes them. README.md of the
# folder above says what is in each.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tovren)
set(CPACK_PACKAGE_VENDOR TOVREN)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL library development command)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/without_scripts.cmake)
set(CPACK_TOVREN_DEBIAN_DIR ${CMAKE_CURRENT_LIST_DIR})
set(CPACK_TOVREN_CHANGES ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(CPACK_TOVREN_LIBDIR ${CMAKE_INSTALL_LIBDIR})
set(CPACK_TOVREN_STRIP ${CMAKE_STRIP})

set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE tovren)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "TOVREN developers <developers@tovren.example>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(TOVREN_DEBIAN_VERSION ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(TOVREN_DEBIAN_LIBRARY libtovren${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${TOVREN_LIB_DIR})

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${TOVREN_DEBIAN_LIBRARY})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/triggers)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "tovren (= ${TOVREN_DEBIAN_VERSION})")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
"library that knows programmable logic devices and their flashes
It gives a device-programming tool its knowledge: which serial flash a device
of a chain carries, which programming record serves a family, a device or a
part, and what all the names of a part are.

The databases that it reads are in the package tovren.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtovren-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${TOVREN_DEBIAN_LIBRARY} (= ${TOVREN_DEBIAN_VERSION}), tovren (= ${TOVREN_DEBIAN_VERSION}), nettle-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"development files of the tovren library
Headers, the CMake package and the pkg-config files of libtovren, which knows
programmable logic devices and their serial flashes, and the standalone host:
an archive of the services that the library imports.")

set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME tovren)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMMAND_PACKAGE_DEPENDS "${TOVREN_DEBIAN_LIBRARY} (= ${TOVREN_DEBIAN_VERSION})")
set(CPACK_DEBIAN_COMMAND_DESCRIPTION
"identify serial flashes and look up programming records
The command answers which serial flash a device of a programming chain
carries by the bytes that the flash answers, which programming record serves a
family, a device or a part, and what a name means.

The package holds the databases too, as well as manual pages and completion
for bash, zsh and fish.")

include(CPack)
