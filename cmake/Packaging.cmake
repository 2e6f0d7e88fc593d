# Installation into the standard XDG places under the prefix, and the Debian package.
#   cmake --install build --prefix /usr        (or DESTDIR=... for a staging root)
#   cd build && cpack -G DEB                   (see scripts/package)
include(GNUInstallDirs)

set(ZLECANKI_PACKAGING_DIR ${PROJECT_SOURCE_DIR}/packaging)
set(ZLECANKI_VERSION ${PROJECT_VERSION})
set(ZLECANKI_HELP_PATH ${CMAKE_INSTALL_FULL_DATADIR}/zlecanki/zlecanki.htm)
set(ZLECANKI_SERVICE_PATH ${CMAKE_INSTALL_FULL_DATADIR}/dbus-1/services/pl.kontorian.Zlecanki.service)

install(TARGETS zlecanki RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The program looks for its help page in ../share/zlecanki beside its own folder.
install(FILES ${PROJECT_SOURCE_DIR}/src/app/help/zlecanki.htm DESTINATION ${CMAKE_INSTALL_DATADIR}/zlecanki)
install(FILES ${ZLECANKI_PACKAGING_DIR}/pl.kontorian.Zlecanki.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${ZLECANKI_PACKAGING_DIR}/zlecanki.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${ZLECANKI_PACKAGING_DIR}/pl.kontorian.Zlecanki.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)

# The D-Bus service file lets a call of another suite program start the automation object.
set(ZLECANKI_AUTOMATION_EXEC ${CMAKE_INSTALL_FULL_BINDIR}/zlecanki)
configure_file(${PROJECT_SOURCE_DIR}/data/pl.kontorian.Zlecanki.service.in
               ${PROJECT_BINARY_DIR}/packaging/pl.kontorian.Zlecanki.service @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packaging/pl.kontorian.Zlecanki.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)

# The manual page carries the version and the help page's installed path; compressed as
# Debian keeps them.
configure_file(${ZLECANKI_PACKAGING_DIR}/zlecanki.1 ${PROJECT_BINARY_DIR}/packaging/zlecanki.1 @ONLY)
find_program(GZIP_PROGRAM gzip REQUIRED)
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/packaging/zlecanki.1.gz
  COMMAND ${GZIP_PROGRAM} -9 -n -c ${PROJECT_BINARY_DIR}/packaging/zlecanki.1 > ${PROJECT_BINARY_DIR}/packaging/zlecanki.1.gz
  DEPENDS ${PROJECT_BINARY_DIR}/packaging/zlecanki.1
  VERBATIM)
add_custom_target(zlecanki_manpage ALL DEPENDS ${PROJECT_BINARY_DIR}/packaging/zlecanki.1.gz)
install(FILES ${PROJECT_BINARY_DIR}/packaging/zlecanki.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# Debian package. Shared libraries the program links are found by dpkg-shlibdeps; what it
# loads at run time (the SQLite driver plugin, the fonts of the slips) is named here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zlecanki)
set(CPACK_PACKAGE_VENDOR "Kontorian")
set(CPACK_PACKAGE_CONTACT "Zlecanki <zlecanki@kontorian.pl>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "payment documents of a small Polish firm on the standard slips")
set(CPACK_PACKAGE_DESCRIPTION "Zlecanki keeps, for each firm, a small database of payment documents \
(bank transfers, bank deposit slips, postal orders, ZUS and tax transfers), the firm's data with \
its bank accounts and running balances, contractors and monthly scheduled payments, and prints \
every document on the standard Polish slips with the amount spelled out in words.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.kontorian.pl/zlecanki")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Firms on an office server need Qt's PostgreSQL driver plugin, which shlibdeps cannot see.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, libqt6sql6-psql, fonts-liberation2, libcups2")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, xdg-utils, dbus-user-session, cups-client")
set(CPACK_STRIP_FILES ON)
include(CPack)
