# Windows x64 from Linux, with mingw-w64 (posix threads) and the Qt that packaging/windows/build-qt made. Test programs
# run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT BIGIMGPREVIEW_WINDOWS_QT)
    if(DEFINED ENV{XDG_CACHE_HOME})
        set(cache "$ENV{XDG_CACHE_HOME}")
    else()
        set(cache "$ENV{HOME}/.cache")
    endif()
    set(BIGIMGPREVIEW_WINDOWS_QT "${cache}/bigimgpreview/windows-qt-5.15.8/qt" CACHE PATH "Qt for Windows")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BIGIMGPREVIEW_WINDOWS_QT)
if(NOT EXISTS "${BIGIMGPREVIEW_WINDOWS_QT}/lib/cmake/Qt5")
    message(FATAL_ERROR "There is no Qt for Windows in ${BIGIMGPREVIEW_WINDOWS_QT}: ./test --windows makes it")
endif()

# Headers and libraries of Windows alone; programs of this machine alone.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 "${BIGIMGPREVIEW_WINDOWS_QT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
list(APPEND CMAKE_PREFIX_PATH "${BIGIMGPREVIEW_WINDOWS_QT}")
# Translations are compiled by this machine's own programs; the file names are those of Debian's Qt.
file(GLOB linguist_tools /usr/lib/*/cmake/Qt5LinguistTools)
list(GET linguist_tools 0 linguist_tools)
set(Qt5LinguistTools_DIR "${linguist_tools}" CACHE PATH "Qt's translation tools")

set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/../packaging/windows/run-in-wine;${BIGIMGPREVIEW_WINDOWS_QT}")
