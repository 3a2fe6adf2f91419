# The plug-in's core without a window.
foreach(name tst_shared_state tst_loader tst_zoom tst_method_order)
    bigimgpreview_test(${name} SOURCES ${name}.cpp LIBRARIES bigimgpreview_core)
endforeach()
