# Install rules and the Debian package of Brizalog.
#
#   cmake --install build [--prefix DIR]   the programs in bin/, the menu entry, icon, metainfo,
#                                          the user unit of the headless logger and the README
#                                          with its screenshots, which is the manual
#   make package                           build/brizalog_<version>_<arch>.deb (CPack)

include(GNUInstallDirs)

# An installed copy never keeps its files beside itself: the program knows the bin folder it is
# installed into, and takes ~/Brizalog there.
target_compile_definitions(brizalog_app PRIVATE
    BRIZALOG_INSTALL_BINDIR="${CMAKE_INSTALL_FULL_BINDIR}")

set(BRIZALOG_APP_ID org.brizalog.Brizalog)
# Debian's documentation folder is named by the package, in lower case.
set(BRIZALOG_DOCDIR ${CMAKE_INSTALL_DATADIR}/doc/brizalog)

install(TARGETS brizalog brizalog-logger brizalog-boardsim brizalog-script
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES data/${BRIZALOG_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES data/${BRIZALOG_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES data/brizalog.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The user guide of Help > Brizalog manual is this README with its screenshots, which it names
# as docs/NAME.png: installed in the documentation folder, and copied to manual/ beside the
# program in a build, where the program looks first.
target_compile_definitions(brizalog_app PRIVATE
    BRIZALOG_INSTALL_DOCDIR="${CMAKE_INSTALL_FULL_DATADIR}/doc/brizalog")
file(GLOB BRIZALOG_MANUAL_IMAGES CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}
    ${CMAKE_CURRENT_SOURCE_DIR}/docs/*.png)
set(BRIZALOG_MANUAL_COPIES)
foreach(source README.md ${BRIZALOG_MANUAL_IMAGES})
    set(copy ${CMAKE_CURRENT_BINARY_DIR}/manual/${source})
    add_custom_command(OUTPUT ${copy}
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${CMAKE_CURRENT_SOURCE_DIR}/${source} ${copy}
        DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    list(APPEND BRIZALOG_MANUAL_COPIES ${copy})
endforeach()
add_custom_target(brizalog_manual ALL DEPENDS ${BRIZALOG_MANUAL_COPIES})
add_dependencies(brizalog brizalog_manual)
install(FILES README.md DESTINATION ${BRIZALOG_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${BRIZALOG_DOCDIR}/docs FILES_MATCHING PATTERN "*.png")

# The user unit names the logger by its installed path, which is known only when installing:
# the prefix of `cmake --install` or the /usr of the package.
install(CODE "
    set(BRIZALOG_BINDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    set(BRIZALOG_DOCDIR \"\${CMAKE_INSTALL_PREFIX}/${BRIZALOG_DOCDIR}\")
    configure_file(\"${CMAKE_CURRENT_SOURCE_DIR}/data/brizalog-logger.service.in\"
        \"${CMAKE_CURRENT_BINARY_DIR}/install/brizalog-logger.service\" @ONLY)
")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/install/brizalog-logger.service
    DESTINATION lib/systemd/user)

# What a Debian package needs beside the programs: the copyright file, and the changelog and
# manual pages compressed without a time stamp, so that the same sources give the same package.
configure_file(data/copyright ${CMAKE_CURRENT_BINARY_DIR}/install/copyright COPYONLY)
set(BRIZALOG_COMPRESSED)
foreach(source data/changelog data/man/brizalog.1 data/man/brizalog-logger.1
        data/man/brizalog-boardsim.1 data/man/brizalog-script.1)
    get_filename_component(name ${source} NAME)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/install/${name}.gz)
    add_custom_command(OUTPUT ${output}
        COMMAND gzip -9 -n -c ${CMAKE_CURRENT_SOURCE_DIR}/${source} > ${output}
        DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    list(APPEND BRIZALOG_COMPRESSED ${output})
endforeach()
add_custom_target(brizalog_compressed_docs ALL DEPENDS ${BRIZALOG_COMPRESSED})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/install/copyright
    ${CMAKE_CURRENT_BINARY_DIR}/install/changelog.gz DESTINATION ${BRIZALOG_DOCDIR})
list(FILTER BRIZALOG_COMPRESSED INCLUDE REGEX "\\.1\\.gz$")
install(FILES ${BRIZALOG_COMPRESSED} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# ---- The Debian package ------------------------------------------------------------------------
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brizalog)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(BRIZALOG_MAINTAINER "Brizalog developers <brizalog@users.noreply.github.com>" CACHE STRING
    "The Maintainer of the Debian package: name and mail address")
# A build folder configured before the package named a real maintainer still holds the
# placeholder of that time in its cache; it gives way to the real address.
if(BRIZALOG_MAINTAINER MATCHES "\\.invalid>$")
    set(BRIZALOG_MAINTAINER "Brizalog developers <brizalog@users.noreply.github.com>" CACHE STRING
        "The Maintainer of the Debian package: name and mail address" FORCE)
endif()
set(CPACK_PACKAGE_CONTACT "${BRIZALOG_MAINTAINER}")
set(CPACK_PACKAGE_VENDOR "Brizalog")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "data logger for wind, solar and battery installations")
set(CPACK_PACKAGE_DESCRIPTION
"Brizalog logs a small renewable-energy installation (wind turbines, a battery
bank, solar panels, DC and 240 VAC loads) or a Current Cost household energy
meter from a serial port. It shows the readings live, writes averaged records
to plain-text daily logs, totals watt-hours and draws the logged history.
.
The package holds the desktop program, the headless logger brizalog-logger
with a systemd user unit, the board simulator and the scenario runner.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries' own packages and versions, as dpkg-shlibdeps finds them in the programs: Qt 6
# Core, Gui, Widgets and Serial Port, and the C and C++ run-times. Print Support is named
# itself, as the printing of charts needs it whether or not a program links it yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6printsupport6 (>= 6.4)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "desktop-file-utils")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

# ---- Checks of what is installed (ctest) -------------------------------------------------------
add_test(NAME install.desktop_entry
    COMMAND desktop-file-validate ${CMAKE_CURRENT_SOURCE_DIR}/data/${BRIZALOG_APP_ID}.desktop)
add_test(NAME install.metainfo
    COMMAND appstreamcli validate --no-net --pedantic
        ${CMAKE_CURRENT_SOURCE_DIR}/data/${BRIZALOG_APP_ID}.metainfo.xml)
add_test(NAME install.package
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/tests/package/check_package.sh ${CMAKE_BINARY_DIR}
        ${PROJECT_VERSION})
set_tests_properties(install.package PROPERTIES TIMEOUT 300)
