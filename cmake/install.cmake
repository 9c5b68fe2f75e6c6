# What `cmake --install` puts where, and the Debian package that `cpack` makes of it.
include(GNUInstallDirs)

set(packaging ${CMAKE_SOURCE_DIR}/packaging)
install(TARGETS quorvex kdvbase RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${packaging}/forum.ini ${packaging}/message.xsl ${packaging}/readme.txt
        DESTINATION ${CMAKE_INSTALL_DATADIR}/quorvex)
install(FILES ${packaging}/quorvex.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/quorvex.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        RENAME ru.quorvex.Quorvex.metainfo.xml)
install(FILES ${packaging}/icons/quorvex.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${packaging}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES docs/guide.md docs/export.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

# Debian keeps pages and change logs compressed, without the time of compression.
function(install_compressed file folder name)
  set(packed ${CMAKE_BINARY_DIR}/installed/${folder}/${name}.gz)
  get_filename_component(packed_folder ${packed} DIRECTORY)
  file(MAKE_DIRECTORY ${packed_folder})
  add_custom_command(OUTPUT ${packed} COMMAND gzip -9nc ${file} > ${packed} DEPENDS ${file} VERBATIM)
  set_property(GLOBAL APPEND PROPERTY FORUM_PACKED ${packed})
  install(FILES ${packed} DESTINATION ${folder})
endfunction()

foreach(page quorvex.1 kdvbase.1)
  install_compressed(${packaging}/man/${page} ${CMAKE_INSTALL_DATADIR}/man/man1 ${page})
  install_compressed(${packaging}/man/ru/${page} ${CMAKE_INSTALL_DATADIR}/man/ru/man1 ${page})
endforeach()
install_compressed(${packaging}/changelog ${CMAKE_INSTALL_DOCDIR} changelog)
get_property(packed_files GLOBAL PROPERTY FORUM_PACKED)
add_custom_target(packed_files ALL DEPENDS ${packed_files})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvex)
set(CPACK_PACKAGE_CONTACT "Quorvex developers <developers@quorvex.ru>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "reader and archiver of Russian-language web forums")
set(CPACK_PACKAGE_DESCRIPTION
    "Quorvex keeps every message of a web forum in one Access-format file and
shows the archive as threads, by date and by author. It downloads new
messages page by page, searches the whole archive, deletes messages and
exports threads to XML. Bases that are twenty years old open with no other
product installed.

The package holds the desktop program quorvex and the command line kdvbase.")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The picture formats and the screen of a Qt program are plug-ins, which no library names.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xsltproc")  # makes pages of exported threads
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
include(CPack)
