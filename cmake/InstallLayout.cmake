# Where an installed copy keeps its files, in the usual layout of a Linux
# desktop program. Paths stay relative to the prefix so that the package
# (prefix /usr) and `cmake --install --prefix DIR` share one layout.
include(GNUInstallDirs)
set(ORVANTA_APP_ID org.orvanta.OrvantaContest)
set(ORVANTA_SHARE_DIR ${CMAKE_INSTALL_DATADIR}/orvanta-contest)
set(ORVANTA_HOMEPAGE "https://orvanta-contest.example"
    CACHE STRING "Home page named in the package and the AppStream metadata")

# The program finds its shipped data from its own folder, so the way from
# bin/ to share/orvanta-contest is built into it.
if(IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}" OR IS_ABSOLUTE "${ORVANTA_SHARE_DIR}")
    file(RELATIVE_PATH ORVANTA_DATA_RELATIVE "${CMAKE_INSTALL_FULL_BINDIR}"
         "${CMAKE_INSTALL_FULL_DATADIR}/orvanta-contest")
else()
    file(RELATIVE_PATH ORVANTA_DATA_RELATIVE "/p/${CMAKE_INSTALL_BINDIR}" "/p/${ORVANTA_SHARE_DIR}")
endif()

# orv_install_man(PAGE): installs a manual page (name ending in its section,
# "orvanta-tool.1") compressed as Debian packages carry them.
function(orv_install_man page)
    get_filename_component(_name ${page} NAME)
    string(REGEX REPLACE ".*\\.([0-9])$" "\\1" _section ${_name})
    set(_gz ${CMAKE_CURRENT_BINARY_DIR}/${_name}.gz)
    add_custom_command(
        OUTPUT ${_gz}
        COMMAND gzip -9 -n -c ${page} > ${_gz}
        DEPENDS ${page}
        COMMENT "Compressing ${_name}")
    add_custom_target(man-${_name} ALL DEPENDS ${_gz})
    install(FILES ${_gz} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${_section})
endfunction()
