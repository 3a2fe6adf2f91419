# Tests of the media player service and of the readers of video and sound files.
foreach(name tst_media_player tst_media_sound tst_media_files)
    bigimgpreview_test(${name} SOURCES media/${name}.cpp media/MediaStage.h
        LIBRARIES hostmediaplayer_core hostbasemodule_core TIMEOUT 180)
    target_compile_definitions(${name} PRIVATE
        MEDIA_DIR="${BIGIMGPREVIEW_MEDIA_DIR}" FFMPEG_PROGRAM="${FFMPEG_PROGRAM}")
    add_dependencies(${name} media_samples)
endforeach()
