# Installation (cmake --install) and the Debian package (cpack -G DEB).
# The simulator of the server tool stays out of both: it is a development
# tool that lives in the build tree (build/sim-root), and an installed Lumex
# runs the real helpers under /usr/libexec/orvane.
include(GNUInstallDirs)

install(TARGETS lumex lumex-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# What Debian asks of every package besides the programs: the licence in
# its machine-readable copyright format, the changelog, and a manual page for
# each program. The pages are written in scdoc's format (docs/man) and
# turned into roff at build time; everything is compressed as Debian's
# checker wants it (gzip -9, no name or time stamp).
find_program(LUMEX_SCDOC scdoc REQUIRED)
find_program(LUMEX_GZIP gzip REQUIRED)
set(LUMEX_DEBIAN_DIR ${PROJECT_SOURCE_DIR}/resources/debian)
set(LUMEX_DOC_DIR ${CMAKE_BINARY_DIR}/doc)
# The changelog's latest entry is the release being built; its date stamps
# the manual pages, so a rebuild makes the same pages.
find_program(LUMEX_DPKG_PARSECHANGELOG dpkg-parsechangelog REQUIRED)
execute_process(COMMAND ${LUMEX_DPKG_PARSECHANGELOG} -l ${LUMEX_DEBIAN_DIR}/changelog -S Version
    OUTPUT_VARIABLE LUMEX_CHANGELOG_VERSION OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${LUMEX_DPKG_PARSECHANGELOG} -l ${LUMEX_DEBIAN_DIR}/changelog -S Timestamp
    OUTPUT_VARIABLE LUMEX_RELEASE_EPOCH OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT LUMEX_CHANGELOG_VERSION STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR "resources/debian/changelog describes ${LUMEX_CHANGELOG_VERSION}, the project is "
        "${PROJECT_VERSION}: add the release's entry (dch -v ${PROJECT_VERSION})")
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${LUMEX_DEBIAN_DIR}/changelog)
set(LUMEX_DOC_FILES)
foreach(page lumex.1 lumex-cli.1)
    add_custom_command(OUTPUT ${LUMEX_DOC_DIR}/${page}.gz
        COMMAND ${CMAKE_COMMAND} -E make_directory ${LUMEX_DOC_DIR}
        COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${LUMEX_RELEASE_EPOCH}
            sh -c "\"$0\" <\"$1\" >\"$2\"" ${LUMEX_SCDOC} ${PROJECT_SOURCE_DIR}/docs/man/${page}.scd ${LUMEX_DOC_DIR}/${page}
        COMMAND ${LUMEX_GZIP} -9nkf ${LUMEX_DOC_DIR}/${page}
        DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/${page}.scd
        VERBATIM)
    list(APPEND LUMEX_DOC_FILES ${LUMEX_DOC_DIR}/${page}.gz)
    install(FILES ${LUMEX_DOC_DIR}/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
add_custom_command(OUTPUT ${LUMEX_DOC_DIR}/changelog.gz
    COMMAND ${CMAKE_COMMAND} -E make_directory ${LUMEX_DOC_DIR}
    COMMAND ${CMAKE_COMMAND} -E copy ${LUMEX_DEBIAN_DIR}/changelog ${LUMEX_DOC_DIR}/changelog
    COMMAND ${LUMEX_GZIP} -9nkf ${LUMEX_DOC_DIR}/changelog
    DEPENDS ${LUMEX_DEBIAN_DIR}/changelog
    VERBATIM)
add_custom_target(lumex_docs ALL DEPENDS ${LUMEX_DOC_FILES} ${LUMEX_DOC_DIR}/changelog.gz)
install(FILES ${LUMEX_DEBIAN_DIR}/copyright ${LUMEX_DOC_DIR}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/lumex)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumex)
set(CPACK_PACKAGE_VENDOR Tarn)
# The project's team address, never one person's.
set(CPACK_PACKAGE_CONTACT "Lumex Maintainers <lumex-maintainers@tarn.com>")
set(CPACK_PACKAGE_HOMEPAGE_URL https://tarn.com/lumex/)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Recording client for a media-processing server")
set(CPACK_PACKAGE_DESCRIPTION
    "Lumex signs in to a media-processing server, offers its workflows, records
from a camera the server drives, this computer's camera and microphone, or
the screen, with a countdown, a timer and pause/resume, and publishes the
recording with a title and a description. Movie files can be submitted too.
lumex-cli runs every server operation from a shell.")
set(CPACK_PACKAGE_INSTALL_DIRECTORY lumex)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/package)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# dpkg-shlibdeps finds the shared libraries (Qt, GStreamer,
# FluidSynth, xcb); what is loaded at run time it cannot see: the GStreamer
# elements of the capture pipelines (x264enc: ugly; voaacenc: bad; avenc_aac:
# libav; qtmux, ximagesrc, v4l2src, pulsesrc, level, jpegenc: good; appsink,
# test sources, decodebin: base; pipewiresrc for the screen on Wayland), the
# countdown's synthesiser (opened at run time, so dpkg-shlibdeps cannot see
# it) and sound font, and pkexec for the camera agent's helpers.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, gstreamer1.0-plugins-bad, gstreamer1.0-plugins-ugly, gstreamer1.0-libav, gstreamer1.0-pipewire, libfluidsynth3, timgm6mb-soundfont, pkexec")
# Qt's own texts (standard buttons) in the user's language, the Wayland
# platform and the desktop portal.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland, xdg-desktop-portal")

include(CPack)
