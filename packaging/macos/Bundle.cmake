# The application bundle: Quillo.app with its icon, quilloctl as its helper, and the update framework where one
# is given. Included where the target quillo is made; only on a Mac, for what draws the icon is there.
set(QUILLO_UPDATE_FRAMEWORK "" CACHE PATH
  "Sparkle.framework to carry in the bundle, with the feed and key of QUILLO_UPDATE_FEED and QUILLO_UPDATE_KEY")

set(iconset ${CMAKE_CURRENT_BINARY_DIR}/generated/Quillo.iconset)
set(icns ${CMAKE_CURRENT_BINARY_DIR}/generated/Quillo.icns)
file(MAKE_DIRECTORY ${iconset})
set(drawings "")
foreach(size 16 32 128 256 512)
  math(EXPR twice "${size} * 2")
  list(APPEND drawings
    COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${iconset}/icon_${size}x${size}.png ${icons}/${id}.svg
    COMMAND ${RSVG_CONVERT} -w ${twice} -h ${twice} -o ${iconset}/icon_${size}x${size}@2x.png ${icons}/${id}.svg)
endforeach()
add_custom_command(OUTPUT ${icns} DEPENDS ${icons}/${id}.svg
  ${drawings}
  COMMAND iconutil --convert icns --output ${icns} ${iconset})
target_sources(quillo PRIVATE ${icns})
set_source_files_properties(${icns} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

set_target_properties(quillo PROPERTIES
  OUTPUT_NAME Quillo
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_SOURCE_DIR}/packaging/macos/Info.plist.in
  MACOSX_BUNDLE_ICON_FILE Quillo.icns
  INSTALL_RPATH @executable_path/../Frameworks)
# Not beside the program: from there it would pass for the application itself, which is then taken to be running.
add_custom_command(TARGET quillo POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E make_directory $<TARGET_BUNDLE_CONTENT_DIR:quillo>/Helpers
  COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:quilloctl> $<TARGET_BUNDLE_CONTENT_DIR:quillo>/Helpers/quilloctl)
add_dependencies(quillo quilloctl)
if(QUILLO_UPDATE_FRAMEWORK)
  set(QUILLO_UPDATE_FEED "" CACHE STRING "https address of the update feed")
  set(QUILLO_UPDATE_KEY "" CACHE STRING "public key that updates are signed for")
  if(NOT QUILLO_UPDATE_FEED MATCHES "^https://" OR NOT QUILLO_UPDATE_KEY)
    message(FATAL_ERROR "The update framework needs QUILLO_UPDATE_FEED (https) and QUILLO_UPDATE_KEY.")
  endif()
  set(plist $<TARGET_BUNDLE_CONTENT_DIR:quillo>/Info.plist)
  set(hour 3600)
  add_custom_command(TARGET quillo POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory $<TARGET_BUNDLE_CONTENT_DIR:quillo>/Frameworks
    COMMAND ditto ${QUILLO_UPDATE_FRAMEWORK} $<TARGET_BUNDLE_CONTENT_DIR:quillo>/Frameworks/Sparkle.framework
    COMMAND plutil -replace SUFeedURL -string ${QUILLO_UPDATE_FEED} ${plist}
    COMMAND plutil -replace SUPublicEDKey -string ${QUILLO_UPDATE_KEY} ${plist}
    COMMAND plutil -replace SUScheduledCheckInterval -integer ${hour} ${plist}
    VERBATIM)
endif()
# The permission for Accessibility is granted to what a program's signature requires of it. An ad hoc signature requires
# this very build, and each build would have to be permitted anew; so it is told to require the identifier alone.
# sign-and-notarise replaces it for other people's Macs.
set(QUILLO_SIGN_IDENTITY "-" CACHE STRING "whose signature a build carries: a certificate of the keychain, or - for nobody's")
add_custom_command(TARGET quillo POST_BUILD
  COMMAND codesign --force --sign ${QUILLO_SIGN_IDENTITY} --identifier app.quillo.quilloctl
    "--requirements==designated => identifier \"app.quillo.quilloctl\"" $<TARGET_BUNDLE_CONTENT_DIR:quillo>/Helpers/quilloctl
  COMMAND codesign --force --sign ${QUILLO_SIGN_IDENTITY} --identifier ${id}
    "--requirements==designated => identifier \"${id}\""
    --entitlements ${CMAKE_SOURCE_DIR}/packaging/macos/Quillo.entitlements $<TARGET_BUNDLE_DIR:quillo>
  VERBATIM)
install(TARGETS quillo BUNDLE DESTINATION .)
