# bigimgpreview_test(NAME SOURCES source… [LIBRARIES library…] [ARGUMENTS argument…] [XVFB] [TIMEOUT seconds])
#
# A test program, run offscreen with settings and data folders of its own. XVFB runs it in a real window on a private
# display instead and gives it the label `xvfb`. Programs for Windows run in real windows on the display at hand.
#
# BIGIMGPREVIEW_RUN_TEST comes before a test program in a command line, BIGIMGPREVIEW_TEST_DRIVE before a path of this
# machine that is compiled into one.
find_program(XVFB_RUN xvfb-run)
if(CMAKE_CROSSCOMPILING AND WIN32)
    set(BIGIMGPREVIEW_RUN_TEST "${CMAKE_SOURCE_DIR}/packaging/windows/run-test-in-wine" "${BIGIMGPREVIEW_WINDOWS_QT}")
    set(BIGIMGPREVIEW_TEST_DRIVE "Z:")
endif()

set(BIGIMGPREVIEW_TEST_ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
    # The libraries are not instrumented; cmake/TsanQt.cpp tells the sanitizer how Qt orders threads.
    "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan.supp:ignore_noninstrumented_modules=1:second_deadlock_stack=1"
    "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "LC_ALL=C.UTF-8"
    "QT_NO_GLIB=1"
    "NO_AT_BRIDGE=1"
    # Without a bus libdbus forks to start one, and the fork's memory allocator is locked for ever now and then under asan.
    "DBUS_SESSION_BUS_ADDRESS=disabled:")

function(bigimgpreview_register_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "XVFB" "TIMEOUT" "COMMAND")
    set(serial OFF)
    set(home "${CMAKE_BINARY_DIR}/tests/home/${name}")
    file(MAKE_DIRECTORY "${home}/data" "${home}/config" "${home}/cache" "${home}/runtime")
    file(CHMOD "${home}/runtime" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set(environment ${BIGIMGPREVIEW_TEST_ENVIRONMENT}
        "XDG_DATA_HOME=${home}/data" "XDG_CONFIG_HOME=${home}/config" "XDG_CACHE_HOME=${home}/cache"
        "XDG_RUNTIME_DIR=${home}/runtime")
    if(WIN32)
        set(arg_XVFB OFF)
        # Programs that share a Windows compete for its one keyboard.
        set(serial ON)
    endif()
    if(arg_XVFB AND NOT XVFB_RUN)
        message(STATUS "xvfb-run is missing: no test ${name}")
        return()
    endif()
    if(arg_XVFB)
        list(PREPEND arg_COMMAND "${XVFB_RUN}" -a -s "-screen 0 1920x1080x24 -nolisten tcp")
        # Nothing of ours draws with OpenGL, and its software driver leaves memory behind when it is unloaded, where the
        # leak sanitizer can no longer name it.
        list(APPEND environment "QT_QPA_PLATFORM=xcb" "QT_XCB_GL_INTEGRATION=none")
    elseif(WIN32)
        list(APPEND environment "QT_QPA_PLATFORM=windows"
            "BIGIMGPREVIEW_WINE=${CMAKE_BINARY_DIR}/wine")
    else()
        list(APPEND environment "QT_QPA_PLATFORM=offscreen")
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        math(EXPR arg_TIMEOUT "${arg_TIMEOUT} * 5")
    endif()
    add_test(NAME ${name} COMMAND ${arg_COMMAND})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "${environment}" TIMEOUT ${arg_TIMEOUT} RUN_SERIAL "${serial}")
    if(arg_XVFB)
        set_tests_properties(${name} PROPERTIES LABELS xvfb)
    endif()
endfunction()

function(bigimgpreview_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "XVFB" "TIMEOUT" "SOURCES;LIBRARIES;ARGUMENTS")
    add_executable(${name} ${arg_SOURCES})
    bigimgpreview_target(${name})
    target_link_libraries(${name} PRIVATE testsupport ${arg_LIBRARIES})
    set(options)
    if(arg_XVFB)
        list(APPEND options XVFB)
    endif()
    if(arg_TIMEOUT)
        list(APPEND options TIMEOUT ${arg_TIMEOUT})
    endif()
    bigimgpreview_register_test(${name}
        COMMAND ${BIGIMGPREVIEW_RUN_TEST} $<TARGET_FILE:${name}> ${arg_ARGUMENTS} ${options})
endfunction()
