# The program's icon; and what makes it at home on a free desktop: its entry in the menu, its page in software centres,
# its place on the session bus, its manual page.
# Included where quillo_app_gui is made, which gets the icon's pictures for desktops that know none of it. The bundle
# for a Mac is made in macos/Bundle.cmake.
include(GNUInstallDirs)
find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert is needed to draw the application's icon (Debian: librsvg2-bin, Homebrew: librsvg).")
endif()

set(id app.quillo.Quillo)
set(icons ${CMAKE_SOURCE_DIR}/packaging/icons)
set(drawn ${CMAKE_CURRENT_BINARY_DIR}/generated/icons)
file(MAKE_DIRECTORY ${drawn})
set(pictures "")
foreach(size 16 22 24 32 48 64 128 256)
  set(picture ${drawn}/${id}-${size}.png)
  add_custom_command(OUTPUT ${picture} DEPENDS ${icons}/${id}.svg
    COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${picture} ${icons}/${id}.svg)
  list(APPEND pictures ${picture})
  if(NOT APPLE)
    install(FILES ${picture} RENAME ${id}.png
      DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endif()
endforeach()
if(APPLE)  # for the menu bar, which colours it; twice as large as it shows
  set(picture ${drawn}/tray-mask.png)
  add_custom_command(OUTPUT ${picture} DEPENDS ${icons}/${id}-symbolic.svg
    COMMAND ${RSVG_CONVERT} -w 36 -h 36 -o ${picture} ${icons}/${id}-symbolic.svg)
  list(APPEND pictures ${picture})
endif()
qt_add_resources(quillo_app_gui icons PREFIX /icons BASE ${drawn} FILES ${pictures})
if(APPLE)
  return()
endif()

install(FILES ${icons}/${id}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${icons}/${id}-symbolic.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/linux/${id}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/linux/${id}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/quillo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# Who calls Quillo on the session bus while it does not run (a notification that is clicked) has it started, from where it
# is installed: that is known when it is.
set(service ${CMAKE_CURRENT_BINARY_DIR}/generated/${id}.service)
install(CODE "
  set(quillo_folder \"${CMAKE_INSTALL_BINDIR}\")
  cmake_path(ABSOLUTE_PATH quillo_folder BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\" NORMALIZE)
  file(REMOVE \"${service}\")  # root's, where root installed before
  configure_file(\"${CMAKE_SOURCE_DIR}/packaging/linux/${id}.service.in\" \"${service}\" @ONLY)")
install(FILES ${service} DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
