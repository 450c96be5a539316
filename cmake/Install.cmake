# What `cmake --install` puts where, and the Debian package CPack makes of
# it. Paths are relative to the prefix: /usr for the package, /usr/local by
# default (the doctor flags a rule left there).

include(GNUInstallDirs)

set(ORVANE_APP_ID com.orvane.keyboardstudio)
set(ORVANE_PACKAGE_NAME orvane-keyboard-studio)
set(ORVANE_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${ORVANE_PACKAGE_NAME})
set(_pkg ${CMAKE_CURRENT_SOURCE_DIR}/packaging)
set(_gen ${CMAKE_CURRENT_BINARY_DIR}/packaging)

install(TARGETS orvane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${_pkg}/${ORVANE_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${_pkg}/${ORVANE_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${_pkg}/70-orvane.rules DESTINATION lib/udev/rules.d)
install(FILES ${_pkg}/icons/${ORVANE_APP_ID}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The bitmap icons are drawn from the SVG at build time.
find_program(ORVANE_RSVG_CONVERT rsvg-convert)
if(ORVANE_RSVG_CONVERT)
  set(_icons)
  foreach(size 16 22 24 32 48 64 128 256 512)
    set(_png ${_gen}/icons/${size}x${size}/${ORVANE_APP_ID}.png)
    add_custom_command(OUTPUT ${_png}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${_gen}/icons/${size}x${size}
      COMMAND ${ORVANE_RSVG_CONVERT} -w ${size} -h ${size} -o ${_png} ${_pkg}/icons/${ORVANE_APP_ID}.svg
      DEPENDS ${_pkg}/icons/${ORVANE_APP_ID}.svg VERBATIM)
    list(APPEND _icons ${_png})
    install(FILES ${_png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endforeach()
  add_custom_target(orvane_icons ALL DEPENDS ${_icons})
else()
  message(WARNING "rsvg-convert not found (Debian: librsvg2-bin): only the SVG icon will be installed")
endif()

# Debian wants the changelog and man page compressed, without a time stamp.
set(_compressed)
foreach(_file debian/changelog orvane.1)
  get_filename_component(_name ${_file} NAME)
  add_custom_command(OUTPUT ${_gen}/${_name}.gz
    COMMAND ${CMAKE_COMMAND} -E make_directory ${_gen}
    COMMAND sh -c "gzip -9nc \"$0\" > \"$1\"" ${_pkg}/${_file} ${_gen}/${_name}.gz
    DEPENDS ${_pkg}/${_file} VERBATIM)
  list(APPEND _compressed ${_gen}/${_name}.gz)
endforeach()
add_custom_target(orvane_docs ALL DEPENDS ${_compressed})
install(FILES ${_gen}/changelog.gz ${_pkg}/debian/copyright DESTINATION ${ORVANE_DOC_DIR})
install(FILES ${_gen}/orvane.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${ORVANE_PACKAGE_NAME})
set(CPACK_PACKAGE_VENDOR Orvane)
set(CPACK_PACKAGE_CONTACT "Orvane <support@orvane.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "configure Orvane mechanical keyboards")
set(CPACK_PACKAGE_DESCRIPTION "Orvane Keyboard Studio sets the keys, lights and macros of the Orvane
keyboards (ORVANE M61, W61, K68 and the 61-key CNC). It finds a plugged-in
keyboard at once, follows plugging and unplugging, and keeps each keyboard
family's settings in the user's data folder.

A udev rule gives the user at the screen access to these keyboards, and to
nothing else, and the command orvane --doctor says what stands in the way
when the keyboard cannot be reached.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://orvane.com/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time, so dpkg-shlibdeps cannot see them: the platform plugins
# (xcb and offscreen; wayland, so that a Wayland session gets a native
# window) and the CJK font the Chinese texts need.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${_pkg}/debian/postinst ${_pkg}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
