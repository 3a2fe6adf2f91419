# Tests of what users do with files: the actions themselves, packs, and the program's end at any moment of them.
bigimgpreview_test(tst_host_actions SOURCES actions/tst_host_actions.cpp actions/ActionStage.h LIBRARIES hostactions)
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBARCHIVE_FOR_TESTS REQUIRED IMPORTED_TARGET libarchive)
bigimgpreview_test(tst_host_packs SOURCES actions/tst_host_packs.cpp actions/ActionStage.h LIBRARIES hostactions)
target_link_libraries(tst_host_packs PRIVATE PkgConfig::LIBARCHIVE_FOR_TESTS)
bigimgpreview_test(tst_host_kill SOURCES actions/tst_host_kill.cpp actions/ActionStage.h LIBRARIES hostactions TIMEOUT 240)
