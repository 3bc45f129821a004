# `cpack -G DEB` makes a Debian package of what `cmake --install` puts into
# the prefix /usr. Its dependencies are read from the shared libraries the
# programs link (dpkg-shlibdeps), so they follow the build machine's Qt,
# SQLite and curl instead of a list kept by hand.
set(CPACK_PACKAGE_NAME orvanta-contest)
set(CPACK_PACKAGE_VENDOR "The OrvantaContest developers")
set(CPACK_PACKAGE_CONTACT "OrvantaContest maintainers <maintainers@users.noreply.c-seed-f255239c.example>"
    CACHE STRING "Maintainer named in the Debian package")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "log VHF, UHF and microwave contests")
set(CPACK_PACKAGE_DESCRIPTION
    "OrvantaContest logs amateur-radio contests on the bands from 50 MHz to 47 GHz,\n"
    "where each QSO scores by the distance between two Maidenhead locators. It\n"
    "checks call and locator, finds duplicates, keeps the running score, and\n"
    "writes EDI (REG1TEST), ADIF and text entry files. orvanta-tool works on the\n"
    "same logs from the command line.")
string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_PACKAGE_HOMEPAGE_URL ${ORVANTA_HOMEPAGE})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Release builds carry debug information; the package does not.
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The country list comes from the Debian package that keeps CTY.DAT current,
# the map's coastlines and borders from GSHHG; a shared contest meets on a
# PostgreSQL server, which one machine of the station runs.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "hamradio-files, gmt-gshhg-low")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS postgresql)

# A native package carries its changelog, in Debian's format, compressed.
configure_file(data/package/changelog.in ${PROJECT_BINARY_DIR}/package/changelog @ONLY)
add_custom_command(
    OUTPUT ${PROJECT_BINARY_DIR}/package/changelog.gz
    COMMAND gzip -9 -n -c ${PROJECT_BINARY_DIR}/package/changelog > ${PROJECT_BINARY_DIR}/package/changelog.gz
    DEPENDS ${PROJECT_BINARY_DIR}/package/changelog)
add_custom_target(package-changelog ALL DEPENDS ${PROJECT_BINARY_DIR}/package/changelog.gz)
install(FILES ${PROJECT_BINARY_DIR}/package/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orvanta-contest)

include(CPack)
