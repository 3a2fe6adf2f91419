# The zip for developers of hosts on Windows: cmake --build build/windows --target package
install(FILES "${CMAKE_SOURCE_DIR}/packaging/windows/README.md" "${CMAKE_SOURCE_DIR}/docs/HOST_GUIDE.md" DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME bigimgpreview)
set(CPACK_PACKAGE_FILE_NAME "bigimgpreview-${PROJECT_VERSION}-windows-x64")
if(MINGW)
    string(APPEND CPACK_PACKAGE_FILE_NAME "-mingw")
endif()
set(CPACK_STRIP_FILES ON)
include(CPack)
