# The plug-in's core without a window.
foreach(name tst_shared_state tst_loader tst_zoom tst_method_order)
    bigimgpreview_test(${name} SOURCES ${name}.cpp LIBRARIES bigimgpreview_core)
endforeach()
target_compile_definitions(tst_method_order PRIVATE "BIGIMGPREVIEW_SOURCE_DIR=\"${CMAKE_SOURCE_DIR}\"")
