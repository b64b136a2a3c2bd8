# Installation of Zorvik and its Debian package.
#
# Layout under the install prefix (for the Debian package, /usr):
#   lib/zorvik/zorvik, zorvik-probe, zorvik-cli   the programs, in their own program folder
#   lib/zorvik/Help/index.html ...                 the manual, where HELP looks for it
#   bin/zorvik, bin/zorvik-probe, bin/zorvik-cli   relative symbolic links to the programs
#   share/applications/<app id>.desktop            menu entry, opens .wdf files
#   share/icons/hicolor/{scalable,NxN}/apps/       the icon
#   share/metainfo/<app id>.metainfo.xml           software-centre description
#   share/mime/packages/<app id>.xml               the .wdf file type
#   share/man/man1/*.1.gz                          manual pages
#
# The programs find their folder through the executable's real path (the symbolic links in
# bin/ are followed), so Help/ and ZORVIK.INI are looked for beside the real file.
include(GNUInstallDirs)

# The program folder. Debian keeps a package's own programs in /usr/lib/<package>; the same
# relative folder is used whatever the prefix, so that the links in bin/ are relative.
set(ZORVIK_INSTALL_PROGRAMDIR "lib/zorvik" CACHE STRING
    "Folder of the programs and their Help/ manual, relative to the install prefix")
set(ZORVIK_WDF_MIME_TYPE "application/x-zorvik-wdf")
# Date of the release PROJECT_VERSION names: shown in the software centre and man pages.
set(ZORVIK_RELEASE_DATE "2026-11-22")

set(zorvik_programs zorvik zorvik-probe zorvik-cli)
set(zorvik_pkg_src ${PROJECT_SOURCE_DIR}/packaging)
set(zorvik_pkg_bin ${PROJECT_BINARY_DIR}/packaging)
set(zorvik_sharedir ${CMAKE_INSTALL_DATAROOTDIR})

if(IS_ABSOLUTE "${ZORVIK_INSTALL_PROGRAMDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}")
    message(FATAL_ERROR "ZORVIK_INSTALL_PROGRAMDIR and CMAKE_INSTALL_BINDIR must be relative "
                        "to the install prefix")
endif()
# The program folder as the package installs it, named in the man pages and maintainer scripts.
set(ZORVIK_PROGRAM_DIR_ABS "/usr/${ZORVIK_INSTALL_PROGRAMDIR}")

# --- programs and the links to them in bin/ ---------------------------------------------------
file(RELATIVE_PATH zorvik_link_base "/prefix/${CMAKE_INSTALL_BINDIR}"
     "/prefix/${ZORVIK_INSTALL_PROGRAMDIR}")
file(MAKE_DIRECTORY ${zorvik_pkg_bin}/bin)
set(ZORVIK_INSTALLED_PROGRAMS "")
foreach(program IN LISTS zorvik_programs)
    if(NOT TARGET ${program})
        continue()
    endif()
    list(APPEND ZORVIK_INSTALLED_PROGRAMS ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${ZORVIK_INSTALL_PROGRAMDIR})
    # The link is made once here and installed as a link (file(INSTALL) keeps links as they are).
    file(CREATE_LINK "${zorvik_link_base}/${program}" ${zorvik_pkg_bin}/bin/${program} SYMBOLIC)
    install(FILES ${zorvik_pkg_bin}/bin/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
endforeach()

# --- the manual ---------------------------------------------------------------------------------
# Whatever help/ holds is installed as Help/; without it the program shows its own page saying
# that the manual is missing, so an absent or empty folder is no error.
install(CODE "
    set(ZORVIK_HELP_SOURCE \"${PROJECT_SOURCE_DIR}/help\")
    set(ZORVIK_HELP_DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${ZORVIK_INSTALL_PROGRAMDIR}/Help\")
    include(\"${zorvik_pkg_src}/InstallHelp.cmake\")
")

# --- desktop entry, metainfo, file type -------------------------------------------------------
configure_file(${zorvik_pkg_src}/zorvik.desktop.in
               ${zorvik_pkg_bin}/${ZORVIK_APP_ID}.desktop @ONLY)
configure_file(${zorvik_pkg_src}/zorvik.metainfo.xml.in
               ${zorvik_pkg_bin}/${ZORVIK_APP_ID}.metainfo.xml @ONLY)
configure_file(${zorvik_pkg_src}/zorvik-mime.xml.in ${zorvik_pkg_bin}/${ZORVIK_APP_ID}.xml @ONLY)
install(FILES ${zorvik_pkg_bin}/${ZORVIK_APP_ID}.desktop
        DESTINATION ${zorvik_sharedir}/applications)
install(FILES ${zorvik_pkg_bin}/${ZORVIK_APP_ID}.metainfo.xml
        DESTINATION ${zorvik_sharedir}/metainfo)
install(FILES ${zorvik_pkg_bin}/${ZORVIK_APP_ID}.xml DESTINATION ${zorvik_sharedir}/mime/packages)

# --- icons --------------------------------------------------------------------------------------
set(ZORVIK_ICON_SIZES 16 32 48 64 128 256)
install(FILES ${zorvik_pkg_src}/icons/zorvik.svg
        DESTINATION ${zorvik_sharedir}/icons/hicolor/scalable/apps RENAME ${ZORVIK_APP_ID}.svg)
foreach(size IN LISTS ZORVIK_ICON_SIZES)
    install(FILES ${zorvik_pkg_src}/icons/png/zorvik-${size}.png
            DESTINATION ${zorvik_sharedir}/icons/hicolor/${size}x${size}/apps
            RENAME ${ZORVIK_APP_ID}.png)
endforeach()

# --- man pages, compressed as Debian keeps them -----------------------------------------------
find_program(ZORVIK_GZIP_EXECUTABLE gzip)
foreach(program IN LISTS ZORVIK_INSTALLED_PROGRAMS)
    set(page ${zorvik_pkg_bin}/man/${program}.1)
    configure_file(${zorvik_pkg_src}/man/${program}.1.in ${page} @ONLY)
    if(ZORVIK_GZIP_EXECUTABLE)
        # -n: no name or time stamp inside, so that the same page gives the same file.
        execute_process(COMMAND ${ZORVIK_GZIP_EXECUTABLE} -9 -n -k -f ${page}
                        RESULT_VARIABLE gzip_result)
        if(gzip_result EQUAL 0)
            set(page ${page}.gz)
        endif()
    endif()
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

# --- copyright notice ---------------------------------------------------------------------------
configure_file(${zorvik_pkg_src}/copyright.in ${zorvik_pkg_bin}/copyright @ONLY)
install(FILES ${zorvik_pkg_bin}/copyright DESTINATION ${zorvik_sharedir}/doc/zorvik)

# --- caches of a live system --------------------------------------------------------------------
# A plain `cmake --install` into a live system refreshes the desktop, file-type and icon caches
# when their tools are there. Staged installs (DESTDIR, the Debian package) leave that to the
# target system: on Debian the packages that own those caches refresh them through dpkg triggers
# on their folders, so the package itself needs no maintainer script for it.
install(CODE "
    if(\"\$ENV{DESTDIR}\" STREQUAL \"\")
        set(share \"\${CMAKE_INSTALL_PREFIX}/${zorvik_sharedir}\")
        find_program(update_mime update-mime-database)
        find_program(update_desktop update-desktop-database)
        find_program(update_icons gtk-update-icon-cache)
        if(update_mime)
            execute_process(COMMAND \${update_mime} \"\${share}/mime\")
        endif()
        if(update_desktop)
            execute_process(COMMAND \${update_desktop} -q \"\${share}/applications\")
        endif()
        if(update_icons AND EXISTS \"\${share}/icons/hicolor/index.theme\")
            execute_process(COMMAND \${update_icons} -q -t -f \"\${share}/icons/hicolor\")
        endif()
    endif()
")

# --- what the packaging tests need to know about this build -------------------------------------
file(CONFIGURE OUTPUT ${zorvik_pkg_bin}/PackagingFacts.cmake @ONLY CONTENT [[
# Written by cmake/Packaging.cmake: facts of this build for the packaging tests.
set(ZORVIK_APP_ID "@ZORVIK_APP_ID@")
set(ZORVIK_VERSION "@PROJECT_VERSION@")
set(ZORVIK_INSTALLED_PROGRAMS "@ZORVIK_INSTALLED_PROGRAMS@")
set(ZORVIK_ICON_SIZES "@ZORVIK_ICON_SIZES@")
set(ZORVIK_WDF_MIME_TYPE "@ZORVIK_WDF_MIME_TYPE@")
set(ZORVIK_HELP_SOURCE "@PROJECT_SOURCE_DIR@/help")
]])

# --- Debian package -----------------------------------------------------------------------------
# `cpack -G DEB` in the build folder writes zorvik_<version>_<arch>.deb.
set(ZORVIK_DEB_MAINTAINER "${ZORVIK_COMPANY}" CACHE STRING
    "Maintainer field of the Debian package: \"Name <address>\"")
configure_file(${zorvik_pkg_src}/debian/postrm.in ${zorvik_pkg_bin}/debian/postrm @ONLY
               FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                WORLD_READ WORLD_EXECUTE)

set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGE_NAME "zorvik")
set(CPACK_PACKAGE_VENDOR "${ZORVIK_COMPANY}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${ZORVIK_DEB_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "front panel for a hand-held probe oscilloscope")
set(CPACK_PACKAGE_DESCRIPTION
    "Zorvik shows the trace of the Zorvik hand-held probe oscilloscope,
connected by a serial line, on an instrument-like front panel of knobs,
slides and lit buttons: volts and time per division, offset, pan and
inversion, cursors with time, frequency and voltage readouts, a
reference trace kept in waveform data files (.wdf), and printing of the
window with a print preview.")
if(TARGET zorvik-probe OR TARGET zorvik-cli)
    string(APPEND CPACK_PACKAGE_DESCRIPTION "\n.")
endif()
if(TARGET zorvik-probe)
    string(APPEND CPACK_PACKAGE_DESCRIPTION "
zorvik-probe is a virtual probe on a pseudo-terminal, for trying Zorvik
without the instrument; zorvik --demo runs it inside the program.")
endif()
if(TARGET zorvik-cli)
    string(APPEND CPACK_PACKAGE_DESCRIPTION "
zorvik-cli captures and decodes the probe's data stream on the command
line.")
endif()
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME "DEB-DEFAULT")
set(CPACK_DEBIAN_PACKAGE_SECTION "electronics")
set(CPACK_DEBIAN_PACKAGE_PRIORITY "optional")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ZORVIK_DEB_MAINTAINER}")
# Library dependencies come from dpkg-shlibdeps (package dpkg-dev) on the built programs.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# qt6-wayland: native windows on a Wayland desktop (without it Qt falls back to XWayland).
# hicolor-icon-theme: the icon theme the icons go into; its trigger refreshes the icon cache.
# shared-mime-info, desktop-file-utils: the .wdf file type and "Open with Zorvik" in file
# managers. xdg-utils: external links of the manual open in the desktop's browser.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "qt6-wayland, hicolor-icon-theme, shared-mime-info, desktop-file-utils, xdg-utils")
# cups: printing to a printer (without one, PRINT writes a PDF file).
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cups")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${zorvik_pkg_bin}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_SOURCE_GENERATOR "TGZ")
set(CPACK_SOURCE_IGNORE_FILES "/\\\\.git/" "/build[^/]*/" "/\\\\.cache/")

include(CPack)
