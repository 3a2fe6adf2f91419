# bigimgpreview_target(TARGET): what every target of the project has in common.
function(bigimgpreview_target target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_TO_ASCII
        QT_NO_CAST_FROM_ASCII
        QT_NO_KEYWORDS
        QT_USE_QSTRINGBUILDER
        QT_DEPRECATED_WARNINGS
        QT_DISABLE_DEPRECATED_BEFORE=0x050C00)
    if(WIN32)
        target_compile_definitions(${target} PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT)
    endif()
    if(MSVC)
        set(options /W4 /WX /utf-8 /permissive- /guard:cf)
    else()
        set(options -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
    endif()
    # Not for the resource compiler.
    target_compile_options(${target} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${options}>")
endfunction()

# bigimgpreview_windows_library(TARGET DESCRIPTION): what a DLL of ours has besides: version information, the linker's
# protections, a name without "lib", and the compiler's runtime inside, so that it needs nothing but Qt and Windows.
function(bigimgpreview_windows_library target description)
    if(NOT WIN32)
        return()
    endif()
    set(file_description "${description}")
    string(REPLACE "." "," file_version "${PROJECT_VERSION},0")
    configure_file("${CMAKE_SOURCE_DIR}/cmake/BigImgPreviewVersion.rc.in"
        "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc" @ONLY)
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
    set_target_properties(${target} PROPERTIES PREFIX "")
    if(MSVC)
        target_link_options(${target} PRIVATE /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA /GUARD:CF /CETCOMPAT)
    else()
        target_link_options(${target} PRIVATE
            -static -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va -Wl,--exclude-libs,ALL)
    endif()
endfunction()

# bigimgpreview_plugin(TARGET [FOLDER]): a module that a host loads at run time; target `plugins` builds all of them. One
# that is no plug-in but loaded by one stands in a folder below them.
add_custom_target(plugins)
function(bigimgpreview_plugin target)
    bigimgpreview_target(${target})
    add_dependencies(plugins ${target})
    set(folder "")
    set(rpath "$ORIGIN/../..")
    if(ARGC GREATER 1)
        set(folder "/${ARGV1}")
        set(rpath "$ORIGIN/../../..")
    endif()
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY "${BIGIMGPREVIEW_PLUGIN_OUTPUT_DIRECTORY}${folder}"
        RUNTIME_OUTPUT_DIRECTORY "${BIGIMGPREVIEW_PLUGIN_OUTPUT_DIRECTORY}${folder}"
        INSTALL_RPATH "${rpath}")
    # A symbol that is missing is told by the linker, not by the host that loads the module. Sanitizers leave their own
    # symbols to the program.
    if(UNIX AND NOT APPLE AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    bigimgpreview_windows_library(${target} "Preview surfaces")
    install(TARGETS ${target}
        LIBRARY DESTINATION "${BIGIMGPREVIEW_PLUGIN_INSTALL_DIR}${folder}"
        RUNTIME DESTINATION "${BIGIMGPREVIEW_PLUGIN_INSTALL_DIR}${folder}")
endfunction()

# bigimgpreview_precompile(TARGET header…): precompiled headers where they are switched on.
function(bigimgpreview_precompile target)
    if(BIGIMGPREVIEW_PCH)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
