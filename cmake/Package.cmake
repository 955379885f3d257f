# `cpack` in the build folder makes a Debian package of what Install.cmake installs.

set(TALIRO_MAINTAINER "The Taliro authors <authors@taliro.com>" CACHE STRING "who answers for the package")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME taliro)
set(CPACK_PACKAGE_CONTACT "${TALIRO_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "compact file browser one keystroke away")
set(CPACK_PACKAGE_DESCRIPTION "Taliro lives in the tray. One shortcut, pressed in any application,
brings it up as a popover under its icon or as a panel at the pointer, to
look into folders, drag items out into other applications, and drop files,
pictures, text and links in. The same shortcut puts it away again.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
# What is loaded while running, and so not found by looking at the programs.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "adwaita-icon-theme, dbus-user-session, fonts-inter, gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, \
gstreamer1.0-pulseaudio, qt6-image-formats-plugins, udisks2, xdg-desktop-portal, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "ffmpegthumbnailer, gstreamer1.0-libav, pkexec")

include(CPack)
