# Tests of the reference host's own parts: library, settings service, plug-in manager, grid and previews.
bigimgpreview_test(tst_host_library SOURCES app/tst_host_library.cpp app/LibraryFixture.h LIBRARIES hostlibrary)
bigimgpreview_test(tst_host_scanner SOURCES app/tst_host_scanner.cpp LIBRARIES hostlibrary)
bigimgpreview_test(tst_host_settings SOURCES app/tst_host_settings.cpp LIBRARIES hostsettings_core)
bigimgpreview_test(tst_host_analysis SOURCES app/tst_host_analysis.cpp app/LibraryFixture.h LIBRARIES hostapp_core)
bigimgpreview_test(tst_host_edits SOURCES app/tst_host_edits.cpp app/LibraryFixture.h LIBRARIES hostapp_core)
bigimgpreview_test(tst_host_panel SOURCES app/tst_host_panel.cpp app/LibraryFixture.h LIBRARIES hostapp_core hostbasemodule_core)
bigimgpreview_test(tst_host_watch SOURCES app/tst_host_watch.cpp app/LibraryFixture.h LIBRARIES hostlibrary)
bigimgpreview_test(tst_host_grid SOURCES app/tst_host_grid.cpp LIBRARIES hostapp_core)
bigimgpreview_test(tst_host_previews SOURCES app/tst_host_previews.cpp LIBRARIES hostapp_core)
bigimgpreview_test(tst_host_language SOURCES app/tst_host_language.cpp LIBRARIES hostapp_core)

bigimgpreview_test(tst_host_plugins SOURCES app/tst_host_plugins.cpp LIBRARIES hostapp_core)
# One module for each way in which a plug-in can be of no use.
foreach(fault NONE REFUSES_MANAGER FAILS_INITIALIZE FAILS_EXTENSIONS NO_PLUGIN)
    string(TOLOWER "faulty_${fault}" module)
    add_library(${module} MODULE app/faulty_plugin.cpp)
    bigimgpreview_target(${module})
    target_compile_definitions(${module} PRIVATE "FAULT_${fault}")
    target_link_libraries(${module} PRIVATE BigImgPreviewSdk::Interfaces)
    set_target_properties(${module} PROPERTIES
        PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/faulty_plugins")
    add_dependencies(tst_host_plugins ${module})
endforeach()
target_compile_definitions(tst_host_plugins PRIVATE
    "FAULTY_PLUGINS_DIR=\"${CMAKE_CURRENT_BINARY_DIR}/faulty_plugins\"")
