find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
# The theme's tables are private to its library, so the test compiles the table's reader itself.
add_executable(tst_theme "${CMAKE_CURRENT_LIST_DIR}/tst_theme.cpp" "${CMAKE_SOURCE_DIR}/sdk/theme/ThemeColors.cpp")
bigimgpreview_target(tst_theme)
target_link_libraries(tst_theme PRIVATE BigImgPreviewSdk::Theme Qt5::Svg Qt5::Test)
add_test(NAME tst_theme COMMAND tst_theme)
set_tests_properties(tst_theme PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
