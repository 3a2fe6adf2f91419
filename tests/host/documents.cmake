# Tests of documents: conversion, page renderer, first pages.
find_package(Qt5 5.15 REQUIRED COMPONENTS Network)
foreach(name tst_documents tst_document_pages)
    bigimgpreview_test(${name} SOURCES documents/${name}.cpp documents/DocumentStage.h HostTestSupport.h
        LIBRARIES hostbasemodule_core sample_documents Qt5::Network TIMEOUT 300)
    target_compile_definitions(${name} PRIVATE SAMPLES_DIR="${BIGIMGPREVIEW_SAMPLES_DIR}")
    add_dependencies(${name} samples)
endforeach()
