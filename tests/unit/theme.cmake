# The colour table is private to the theme library, so the test compiles its reader a second time.
bigimgpreview_test(tst_theme
    SOURCES "${CMAKE_CURRENT_LIST_DIR}/tst_theme.cpp" "${CMAKE_SOURCE_DIR}/sdk/theme/ThemeColors.cpp"
    LIBRARIES BigImgPreviewSdk::Theme Qt5::Svg)
