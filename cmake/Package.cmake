# What an installation holds besides the programs, the templates and the help
# (the icons and the desktop entry are installed with the desktop program),
# and the Debian package made of it: `cpack -G DEB` in the build folder.

# The man pages name the places the package puts things.
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(SD_HELP_DIR ${CPACK_PACKAGING_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/standards-desk/help/standards-desk)
set(SD_DOC_DIR ${CPACK_PACKAGING_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/doc/standards-desk)
set(SD_GENERATED ${CMAKE_BINARY_DIR}/share)

# The man pages and the AppStream metadata carry the version and the date.
foreach(page standards-desk standards-desk-cli)
  configure_file(${PROJECT_SOURCE_DIR}/resources/man/${page}.1.in ${SD_GENERATED}/man/man1/${page}.1 @ONLY)
  install(FILES ${SD_GENERATED}/man/man1/${page}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/resources/standards-desk.metainfo.xml.in
               ${SD_GENERATED}/metainfo/com.vandix.StandardsDesk.metainfo.xml @ONLY)
install(FILES ${SD_GENERATED}/metainfo/com.vandix.StandardsDesk.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
file(WRITE ${SD_GENERATED}/doc/copyright
     "Standards Desk ${PROJECT_VERSION}\n\nLicense: ${SD_LICENSE_SPDX}\n ${SD_LICENSE_TEXT}\n")
install(FILES ${SD_GENERATED}/doc/copyright ${PROJECT_SOURCE_DIR}/docs/json.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/standards-desk)

# Shell completion, made by the command line from its own command tree.
if(UNIX)
  set(SD_COMPLETIONS ${SD_GENERATED}/completions)
  set(SD_COMPLETION_FILES)
  foreach(shell bash zsh fish)
    set(file ${SD_COMPLETIONS}/standards-desk-cli.${shell})
    add_custom_command(OUTPUT ${file}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${SD_COMPLETIONS}
      COMMAND sh -c "\"$1\" completion ${shell} > \"$2\"" sh $<TARGET_FILE:standards-desk-cli> ${file}
      DEPENDS standards-desk-cli
      COMMENT "Making the ${shell} completion of standards-desk-cli"
      VERBATIM)
    list(APPEND SD_COMPLETION_FILES ${file})
  endforeach()
  add_custom_target(sd_completions ALL DEPENDS ${SD_COMPLETION_FILES})
  install(FILES ${SD_COMPLETIONS}/standards-desk-cli.bash
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME standards-desk-cli)
  install(FILES ${SD_COMPLETIONS}/standards-desk-cli.zsh
          DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions RENAME _standards-desk-cli)
  install(FILES ${SD_COMPLETIONS}/standards-desk-cli.fish
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()

set(CPACK_PACKAGE_NAME standards-desk)
set(CPACK_PACKAGE_VENDOR VANDIX)
set(CPACK_PACKAGE_CONTACT "VANDIX CAD administration <cad-admin@vandix.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Keep the drafting standards of a shared datafiles folder")
set(CPACK_PACKAGE_DESCRIPTION
    "Standards Desk is the administration tool for the drafting standards of a plant-design\n"
    "drafting suite: clients and standards in a shared datafiles folder, every page of a\n"
    "standard, the comparison of two standards, drawings and archives. It comes with the\n"
    "standards-desk-cli command line for scripts.")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
# The libraries (Qt 6, libzip, libcurl, {fmt}, libuuid) from the programs
# themselves; xdg-open opens drawings, folders and help pages.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "xdg-utils")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core")
include(CPack)
