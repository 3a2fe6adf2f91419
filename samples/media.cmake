# Short videos and sounds, made while building like the pictures. Each line of the table below is one file: its name and
# the encoder's arguments. Run as a script: cmake -DFFMPEG=… -DTARGET=folder -P media.cmake
set(video "-f;lavfi;-i;testsrc2=s=320x240:r=25:d=2")
set(tone "-f;lavfi;-i;sine=f=440:r=44100:d=2")
set(h264 "-c:v;libx264;-preset;ultrafast;-pix_fmt;yuv420p;-g;25")
set(seconds "-f;lavfi;-i;color=c=black:s=320x240:r=25:d=6")

function(make name)
    execute_process(COMMAND "${FFMPEG}" -nostdin -v error -y ${ARGN} "${TARGET}/${name}" RESULT_VARIABLE result
        ERROR_VARIABLE problem)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${name}: ${problem}")
    endif()
endfunction()

file(MAKE_DIRECTORY "${TARGET}")
make(plain.mp4 ${video} ${tone} ${h264} -c:a aac -movflags +faststart)
make(vp9.webm ${video} ${tone} -c:v libvpx-vp9 -deadline realtime -cpu-used 8 -c:a libopus)
make(silent.mkv ${video} ${h264} -an)
# Each second has a shade of its own, so that a frame tells its time.
make(shades.mp4 -f lavfi -i "nullsrc=s=160x120:r=10:d=5,geq=lum='40+40*floor(T)':cb=128:cr=128" ${h264} -g 50)
make(turned.mp4 -i "${TARGET}/plain.mp4" -c copy -metadata:s:v rotate=90)
make(anamorphic.mp4 ${video} ${h264} -aspect 16:9)
make(interlaced.mpg ${video} -vf "interlace" -c:v mpeg2video -flags +ildct+ilme -b:v 2M)
make(dark-start.mp4 ${seconds} -vf "drawbox=x=40:y=40:w=160:h=120:color=white:t=fill:enable='gte(t,3.2)'" ${h264})
make(highrange.mkv ${video} -c:v libx265 -preset ultrafast -pix_fmt yuv420p10le -x265-params "log-level=none:colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc")
make(hybridlog.mkv ${video} -c:v libx265 -preset ultrafast -pix_fmt yuv420p10le -x265-params "log-level=none:colorprim=bt2020:transfer=arib-std-b67:colormatrix=bt2020nc")
make(sound.ogg ${tone} -c:a libvorbis)
make(film.ogg ${video} ${tone} -c:v libtheora -c:a libvorbis)
make(tone.wav ${tone})
make(tone.flac ${tone} -metadata title=Tone -metadata artist=Nobody)
make(eight.wav -f lavfi -i "sine=f=300:r=48000:d=1,pan=7.1|c0=c0|c1=c0|c2=c0|c3=c0|c4=c0|c5=c0|c6=c0|c7=c0")
# Loud, silent, loud: its waveform is known.
make(steps.wav -f lavfi -i "sine=f=440:r=8000:d=3,volume='if(between(t,1,2),0,7)':eval=frame")
make(cover.png -f lavfi -i "color=c=red:s=300x200:d=1" -frames:v 1)
make(covered.mp3 ${tone} -i "${TARGET}/cover.png" -map 0 -map 1 -c:a libmp3lame -c:v mjpeg -disposition:v attached_pic -metadata title=Covered)
# No frame tells how long it is: the decoder alone knows.
make(variable.mp3 -f lavfi -i "anoisesrc=r=44100:d=20,volume='if(lt(t,10),0,1)':eval=frame" -c:a libmp3lame -q:a 2 -write_xing 0)
file(WRITE "${TARGET}/words.srt" "1\n00:00:00,000 --> 00:00:02,000\nWords\n")
make(tracks.mkv ${video} ${tone} -i "${TARGET}/words.srt" -f lavfi -i "sine=f=880:r=44100:d=2" -map 0 -map 1 -map 3 -map 2 ${h264} -c:a aac -c:s srt -metadata:s:a:0 language=eng -metadata:s:a:1 language=deu -metadata:s:s:0 language=fra)
# An hour that no index tells the places of; the second one does not even tell that it is an hour.
make(part.mp4 -f lavfi -i "testsrc=s=64x48:r=2:d=20" -c:v libx264 -preset ultrafast -pix_fmt yuv420p -g 10)
make(hour.ts -stream_loop 179 -i "${TARGET}/part.mp4" -c copy)
make(hour.mkv -stream_loop 179 -i "${TARGET}/part.mp4" -c copy -f matroska -live 1)
make(first.ts ${video} ${h264})
make(second.ts -f lavfi -i "testsrc2=s=640x360:r=25:d=2" ${h264})
execute_process(COMMAND "${CMAKE_COMMAND}" -E cat "${TARGET}/first.ts" "${TARGET}/second.ts"
    OUTPUT_FILE "${TARGET}/resized.ts")
file(REMOVE "${TARGET}/first.ts" "${TARGET}/second.ts" "${TARGET}/words.srt" "${TARGET}/part.mp4")
