# Installation, and the Debian package that `cpack -G DEB` makes of it. vspack looks for the
# launcher, verify.jar and JVM files where these rules put them, seen from its own directory.
include(GNUInstallDirs)

install(TARGETS launcher DESTINATION lib/vessant)
if(TARGET vspack)
  install(TARGETS vspack)
endif()
if(TARGET verify_jar)
  install(FILES ${CMAKE_BINARY_DIR}/share/verify.jar DESTINATION ${CMAKE_INSTALL_DATADIR}/vessant)
endif()
install(DIRECTORY examples/jvm DESTINATION ${CMAKE_INSTALL_DATADIR}/vessant
    FILES_MATCHING PATTERN "*.jvm")
install(FILES README.md docs/authors.md docs/users.md
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vessant)

set(CPACK_PACKAGE_NAME vessant)
set(CPACK_PACKAGE_CONTACT "The Vessant developers <vessant@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "native front door of Java installers, and its packer")
set(CPACK_PACKAGE_DESCRIPTION
    "An installer is one file that finds a fitting Java, or brings one, and starts a Java program \
with it. vspack makes such files from a jar, checks them, and tells what they would do.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES OFF) # both programs are stripped, and the launcher's note must stay
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS default-jdk-headless)
include(CPack)
