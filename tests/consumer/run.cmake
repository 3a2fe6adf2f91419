# Installs the build into a folder of its own, then builds and runs the consumer against it. For Windows it unpacks the zip
# that users get in place of installing.
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")
if(TOOLCHAIN)
    execute_process(COMMAND "${CMAKE_CPACK_COMMAND}" --config "${BINARY_DIR}/CPackConfig.cmake" -B "${WORK_DIR}/package"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(GLOB archive "${WORK_DIR}/package/*.zip")
    file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${WORK_DIR}")
    cmake_path(GET archive STEM LAST_ONLY folder)
    file(RENAME "${WORK_DIR}/${folder}" "${prefix}")
else()
    execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BINARY_DIR}" --prefix "${prefix}"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${CONSUMER_SOURCE}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
    "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" "-DBIGIMGPREVIEW_WINDOWS_QT=${WINDOWS_QT}" "-DDRIVE=${DRIVE}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}/build" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(program "${WORK_DIR}/build/consumer")
if(TOOLCHAIN)
    # As its maker would: the SDK's libraries stand beside the program.
    file(GLOB libraries "${prefix}/bin/*.dll")
    file(COPY ${libraries} DESTINATION "${WORK_DIR}/build")
    string(APPEND program ".exe")
endif()
execute_process(COMMAND ${RUN} "${program}" COMMAND_ERROR_IS_FATAL ANY)
