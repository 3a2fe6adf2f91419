# The samples that only an office program can write, and a font of the system. Run as a script: cmake -DSOFFICE=… -DFOLDER=…
set(profile "${FOLDER}/.profile")
foreach(pair deck.pptx:ppt text.docx:doc table.xlsx:xls)
    string(REPLACE ":" ";" pair "${pair}")
    list(GET pair 0 document)
    list(GET pair 1 format)
    execute_process(
        COMMAND "${SOFFICE}" "-env:UserInstallation=file://${profile}" --headless --convert-to ${format}
                --outdir "${FOLDER}" "${FOLDER}/${document}"
        OUTPUT_QUIET ERROR_QUIET RESULT_VARIABLE result)
    string(REGEX REPLACE "\\..*" ".${format}" made "${document}")
    if(NOT result EQUAL 0 OR NOT EXISTS "${FOLDER}/${made}")
        message(FATAL_ERROR "${made} cannot be made")
    endif()
endforeach()
file(REMOVE_RECURSE "${profile}")
file(COPY_FILE "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf" "${FOLDER}/font.ttf")
