# What makes the program at home on a free desktop: its icon, its entry in the menu, its page in software centres.
# Included where quillo_app_gui is made, which gets the icon's pictures for desktops that know none of it.
include(GNUInstallDirs)
find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert is needed to draw the application's icon (Debian: librsvg2-bin).")
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
  install(FILES ${picture} RENAME ${id}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
qt_add_resources(quillo_app_gui icons PREFIX /icons BASE ${drawn} FILES ${pictures})

install(FILES ${icons}/${id}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${icons}/${id}-symbolic.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/linux/${id}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/linux/${id}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
