# Installation (cmake --install) and the Debian package (cpack -G DEB).
# The simulator of the server tool stays out of both: it is a development
# tool that lives in the build tree (build/sim-root), and an installed Lumex
# runs the real helpers under /usr/libexec/orvane.
include(GNUInstallDirs)

install(TARGETS lumex lumex-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumex)
set(CPACK_PACKAGE_VENDOR Tarn)
set(CPACK_PACKAGE_CONTACT "Lumex maintainers <lumex@tarn.com>")
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
# dpkg-shlibdeps finds the shared libraries (Qt, GStreamer, libplist,
# FluidSynth, xcb); what is loaded at run time it cannot see: the GStreamer
# elements of the capture pipelines (x264enc: ugly; voaacenc: bad; avenc_aac:
# libav; qtmux, ximagesrc, v4l2src, pulsesrc, level, jpegenc: good; appsink,
# test sources, decodebin: base; pipewiresrc for the screen on Wayland), the
# countdown's sound font, and pkexec for the camera agent's helpers.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, gstreamer1.0-plugins-bad, gstreamer1.0-plugins-ugly, gstreamer1.0-libav, gstreamer1.0-pipewire, timgm6mb-soundfont, pkexec")
# Qt's own texts (standard buttons) in the user's language, the Wayland
# platform and the desktop portal.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland, xdg-desktop-portal")

include(CPack)
