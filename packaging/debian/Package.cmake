# What the Debian package has beyond an installation, and how CPack makes it.
find_program(BRISALON_RSVG rsvg-convert REQUIRED)

# Desktops that cannot draw the scalable icon take the nearest of these.
set(pictures)
foreach(side IN ITEMS 16 22 24 32 48 64 128 256 512)
    set(picture ${CMAKE_CURRENT_BINARY_DIR}/brisalon-${side}.png)
    add_custom_command(OUTPUT ${picture}
        COMMAND ${BRISALON_RSVG} --width ${side} --height ${side} --output ${picture} ${logo}
        DEPENDS ${logo}
        VERBATIM)
    list(APPEND pictures ${picture})
    install(FILES ${picture} RENAME brisalon.png DESTINATION ${icons}/${side}x${side}/apps)
endforeach()
add_custom_target(icons ALL DEPENDS ${pictures})

set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc/brisalon)
install(FILES debian/copyright DESTINATION ${documents})
brisalon_install_compressed(debian/changelog ${documents})

# The libraries that the program links are found by dpkg-shlibdeps; these are the rest.
file(STRINGS debian/loaded-by-name loadedByName)
list(JOIN loadedByName ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brisalon)
set(CPACK_PACKAGE_CONTACT "Brisalon <packages@brisalon.app>")
set(CPACK_PACKAGE_HOMEPAGE_URL https://brisalon.app)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "shows as a map what fills a disk")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Brisalon scans the home folder, the whole disk or any folder, and draws what
it found as a map in which every rectangle is space really used. Caches, logs,
installers, build products and other well-known space hogs are recognised by
their paths and coloured accordingly.
.
It never starts a scan by itself, and never deletes anything outright: what is
chosen is moved to the Trash, after a question.")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
