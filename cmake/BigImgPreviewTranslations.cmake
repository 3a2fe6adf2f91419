# bigimgpreview_translations(TARGET NAME SOURCES): compiles the .ts files of SOURCES/translations into TARGET of the
# present folder, under :/NAME/translations of the resource NAME_translations. A static TARGET needs Q_INIT_RESOURCE.
#
# Target `update_translations` writes new and changed texts of the sources into the .ts files, to be translated there.
add_custom_target(update_translations)

function(bigimgpreview_translations target name sources)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/translations")
    file(GLOB ts_files CONFIGURE_DEPENDS "${sources}/translations/*.ts")
    set_source_files_properties(${ts_files} PROPERTIES OUTPUT_LOCATION "${folder}")
    qt5_add_translation(qm_files ${ts_files})
    set(entries "")
    foreach(qm_file ${qm_files})
        get_filename_component(file_name "${qm_file}" NAME)
        string(APPEND entries "<file>${file_name}</file>")
    endforeach()
    # rcc runs here rather than through AUTORCC because what it reads is itself made at build time.
    set(qrc "${folder}/${name}_translations.qrc")
    file(CONFIGURE OUTPUT "${qrc}" CONTENT "<RCC><qresource prefix=\"/${name}/translations\">@entries@</qresource></RCC>\n"
        @ONLY)
    set(source "${folder}/qrc_${name}_translations.cpp")
    add_custom_command(
        OUTPUT "${source}"
        COMMAND Qt5::rcc --name "${name}_translations" --output "${source}" "${qrc}"
        DEPENDS "${qrc}" ${qm_files}
        VERBATIM)
    set_source_files_properties("${source}" PROPERTIES SKIP_AUTOGEN ON SKIP_PRECOMPILE_HEADERS ON)
    target_sources(${target} PRIVATE "${source}")

    add_custom_target(update_${name}_translations
        COMMAND Qt5::lupdate -no-obsolete -locations none "${sources}" -ts ${ts_files}
        VERBATIM)
    add_dependencies(update_translations update_${name}_translations)
endfunction()
