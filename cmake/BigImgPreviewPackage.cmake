# Desktop integration and the Debian package: cmake --build build/release --target package
install(FILES "${CMAKE_SOURCE_DIR}/packaging/org.example.BigImagePreview.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${CMAKE_SOURCE_DIR}/packaging/org.example.BigImagePreview.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${CMAKE_SOURCE_DIR}/packaging/org.example.BigImagePreview.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME bigimgpreview)
set(CPACK_PACKAGE_CONTACT "Big Image Preview <maintainer@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_BINARY_DIR}/lib")
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5svg5, libqt5sql5-sqlite, qt5-image-formats-plugins")
include(CPack)
