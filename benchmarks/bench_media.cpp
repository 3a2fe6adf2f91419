// The media player against the mpv program and a bare player core: first frame, first sound, frames shown, processor
// time, seeking, memory; waveforms against ffmpeg. Needs a screen, for the program has no software output without one.
#include "PlayerRivals.h"
#include "Ratio.h"
#include "services/mediaplayer/audio/SoundReader.h"
#include "services/mediaplayer/audio/WaveStore.h"
#include "services/mediaplayer/playback/MpvPlayer.h"
#include "services/mediaplayer/playback/PlayerThreads.h"
#include "services/mediaplayer/video/VideoArea.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <ctime>
#include <unistd.h>

namespace {

constexpr int PatienceMsec = 60000;
const QSize VideoSize(1280, 720);
constexpr int SmoothRate = 60;
constexpr int SmoothSeconds = 6;
// Of the smooth video, well after its beginning.
constexpr int MeasuredMsec = 4000;
constexpr int LeftBefore = 50;
constexpr int LeftMore = 200;

template <class Condition>
bool waitFor(Condition condition)
{
    QTimer patience;
    patience.setSingleShot(true);
    patience.start(PatienceMsec);
    // A dispatcher may go to sleep after the event that was waited for.
    QTimer look;
    look.start(1);
    while (patience.isActive()) {
        if (condition())
            return true;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return false;
}

void pass(int nMsec)
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(nMsec);
    waitFor([&timer] { return !timer.isActive(); });
}

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

bool runFfmpeg(const QStringList &arguments)
{
    QProcess ffmpeg;
    ffmpeg.setProcessChannelMode(QProcess::ForwardedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SVT_LOG"), QStringLiteral("1")); // an encoder that tells too much
    ffmpeg.setProcessEnvironment(environment);
    ffmpeg.start(QStringLiteral("ffmpeg"), QStringList{QStringLiteral("-nostdin"), QStringLiteral("-v"),
                                                       QStringLiteral("error"), QStringLiteral("-y")} +
                                               arguments);
    return ffmpeg.waitForFinished(-1) && ffmpeg.exitCode() == 0;
}

/** Our player in a window as a preview has it: ready before a file is opened. */
class Stage : public QObject {
public:
    explicit Stage(Rendering rendering)
        : m_player(&m_threads, {rendering, QByteArrayLiteral("null")}, nullptr)
        , m_area(&m_player)
    {
        m_area.resize(VideoSize);
        m_area.installEventFilter(this);
        if (rendering != Rendering::None)
            m_area.show();
        m_player.warmUp();
        waitFor([this] { return m_player.frames()->core() != nullptr; });
        // The signal that the core is there comes through the events.
        pass(20);
    }

    MpvPlayer &player() { return m_player; }
    int paintedFrames() const { return m_nFrames; }
    QImage frame() const { return m_player.frames()->frame(); }

    /** Opens a file; seconds until a frame was painted or, without a picture, until it plays. */
    double open(const QString &path, bool bPicture)
    {
        PlayingWatch watch(m_player.frames()->core());
        QElapsedTimer timer;
        timer.start();
        m_player.open(path, 0);
        const bool bBegun = waitFor([&] { return bPicture ? m_nFrames > 0 : watch.hasBegun(); });
        return bBegun ? double(timer.nsecsElapsed()) / 1e9 : -1.0;
    }

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override
    {
        if (pEvent->type() != QEvent::Paint)
            return false;
        const qint64 nKey = frame().cacheKey();
        // Passing it on first makes the painting part of the time.
        pWatched->removeEventFilter(this);
        QCoreApplication::sendEvent(pWatched, pEvent);
        pWatched->installEventFilter(this);
        if (!frame().isNull() && nKey != m_nLastKey) {
            m_nLastKey = nKey;
            ++m_nFrames;
        }
        return true;
    }

private:
    PlayerThreads m_threads;
    MpvPlayer m_player;
    VideoArea m_area;
    int m_nFrames = 0;
    qint64 m_nLastKey = 0;
};

class MediaBench {
public:
    bool makeClips() const;
    void measureStarts() const;
    void measurePlaying() const;
    void measureSeeking() const;
    void measureWaveforms() const;
    void measureLeaving() const;

private:
    QString clip(const char *pName) const { return m_folder.filePath(QLatin1String(pName)); }
    bool make(const char *pName, const char *pSource, const char *pEncoder) const;
    void measureWaveform(const char *pName, const char *pTitle) const;

    QTemporaryDir m_folder;
    const QStringList m_x11{QStringLiteral("--vo=x11"),
                            QStringLiteral("--geometry=%1x%2").arg(VideoSize.width()).arg(VideoSize.height())};
};

bool MediaBench::make(const char *pName, const char *pSource, const char *pEncoder) const
{
    QStringList arguments{QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QLatin1String(pSource)};
    arguments += QString::fromLatin1(pEncoder).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return runFfmpeg(arguments + QStringList{clip(pName)});
}

bool MediaBench::makeClips() const
{
    const char *pH264 = "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -g 50";
    // Black in the middle of its first half, white in that of its second: a frame tells which half it is from.
    const char *pHalves = "testsrc2=s=1920x1080:r=25:d=8,drawbox=x=860:y=440:w=200:h=200:t=fill:color=black,"
                          "drawbox=x=860:y=440:w=200:h=200:t=fill:color=white:enable='gte(t,4)'";
    const char *pNoise = "anoisesrc=r=44100:d=60:a=0.4";
    bool bMade =
        make("h264.mp4", "testsrc2=s=1920x1080:r=25:d=2", pH264) &&
        make("hevc.mp4", "testsrc2=s=3840x2160:r=25:d=2",
             "-c:v libx265 -preset ultrafast -pix_fmt yuv420p -x265-params log-level=none") &&
        make("vp9.webm", "testsrc2=s=1920x1080:r=25:d=2",
             "-c:v libvpx-vp9 -deadline realtime -cpu-used 8 -row-mt 1 -b:v 4M") &&
        make("av1.mkv", "testsrc2=s=1920x1080:r=25:d=2", "-c:v libsvtav1 -preset 12") &&
        make("smooth.mp4",
             qPrintable(QStringLiteral("testsrc2=s=1920x1080:r=%1:d=%2").arg(SmoothRate).arg(SmoothSeconds)), pH264) &&
        make("halves.mp4", pHalves, pH264) && make("song.mp3", "sine=f=440:d=5", "") &&
        make("song.m4a", "sine=f=440:d=5", "") && make("minute.mp3", pNoise, "-ac 2 -q:a 4") &&
        make("minute.flac", pNoise, "-ac 2");
    for (const QLatin1String suffix : {QLatin1String("mp3"), QLatin1String("flac")}) {
        bMade = bMade && runFfmpeg({QStringLiteral("-stream_loop"), QStringLiteral("59"), QStringLiteral("-i"),
                                    clip("minute.") + suffix, QStringLiteral("-c"), QStringLiteral("copy"),
                                    clip("hour.") + suffix});
    }
    return bMade;
}

void MediaBench::measureStarts() const
{
    struct Start {
        const char *pName;
        const char *pTitle;
        bool bPicture;
    };
    const Start starts[] = {
        {"h264.mp4", "first frame, 1080p H.264 / mpv program", true},
        {"hevc.mp4", "first frame, 4K HEVC / mpv program", true},
        {"vp9.webm", "first frame, 1080p VP9 / mpv program", true},
        {"av1.mkv", "first frame, 1080p AV1 / mpv program", true},
        {"song.mp3", "first sound, MP3 / mpv program", false},
        {"song.m4a", "first sound, AAC / mpv program", false},
    };
    for (const Start &start : starts) {
        const QString path = clip(start.pName);
        const auto ours = [&] {
            return Stage(start.bPicture ? Rendering::Software : Rendering::None).open(path, start.bPicture);
        };
        const auto theirs = [&] {
            PlayerProgram program(path, m_x11);
            return program.secondsUntil(start.bPicture ? "first video frame after restart shown"
                                                       : "playback restart complete");
        };
        Ratio(start.pTitle, 1.3, 5).compare(ours, theirs);
    }
}

void MediaBench::measurePlaying() const
{
    const QString path = clip("smooth.mp4");
    std::vector<double> shown;
    const auto ours = [&] {
        Stage stage(Rendering::Software);
        stage.open(path, true);
        pass(500);
        const double fBefore = processorSeconds();
        const int nBefore = stage.paintedFrames();
        QElapsedTimer timer;
        timer.start();
        pass(MeasuredMsec);
        const double fSeconds = double(timer.nsecsElapsed()) / 1e9;
        shown.push_back((stage.paintedFrames() - nBefore) / (SmoothRate * fSeconds));
        return (processorSeconds() - fBefore) / fSeconds;
    };
    std::vector<double> shownByProgram;
    const auto theirs = [&] {
        PlayerProgram program(path,
                              m_x11 + QStringList{QStringLiteral("--term-status-msg=dropped=${frame-drop-count};")});
        program.secondsUntil("first video frame after restart shown");
        pass(500);
        const double fBefore = program.processorSeconds();
        QElapsedTimer timer;
        timer.start();
        pass(MeasuredMsec);
        const double fUsed = (program.processorSeconds() - fBefore) / (double(timer.nsecsElapsed()) / 1e9);
        const int nDropped = program.droppedFrames();
        shownByProgram.push_back(1.0 - double(qMax(0, nDropped)) / (SmoothRate * SmoothSeconds));
        return nDropped < 0 ? -1.0 : fUsed;
    };
    Ratio("1080p60 H.264 playing, processor time / mpv program", 1.15, 5).compare(ours, theirs);
    std::sort(shown.begin(), shown.end());
    std::sort(shownByProgram.begin(), shownByProgram.end());
    const double fOurs = shown[shown.size() / 2];
    const double fTheirs = shownByProgram[shownByProgram.size() / 2];
    std::printf("1080p60 H.264: %.1f %% of the frames shown, by the mpv program %.1f %%\n", fOurs * 100.0,
                fTheirs * 100.0);
    Ratio::report("1080p60 H.264, frames shown by mpv program / ours", fTheirs / fOurs, 1.01);
}

void MediaBench::measureSeeking() const
{
    Stage stage(Rendering::Software);
    stage.open(clip("halves.mp4"), true);
    stage.player().pause();
    PlayerCore core(clip("halves.mp4"));
    core.setPaused(true);
    // From one half to the other and to another place every time; never to where it would end.
    int nOurs = 0;
    int nTheirs = 0;
    const auto target = [](int nTurn) {
        return (nTurn % 2 == 0 ? 5.3 : 1.3) + 0.36 * (nTurn % 5);
    };
    const auto ours = [&] {
        const double fTarget = target(nOurs);
        const bool bSecondHalf = nOurs++ % 2 == 0;
        stage.player().play();
        pass(150);
        QElapsedTimer timer;
        timer.start();
        stage.player().seek(qint64(fTarget * 1000.0));
        int nPainted = stage.paintedFrames();
        const bool bSeen = waitFor([&] {
            if (stage.paintedFrames() == nPainted)
                return false;
            nPainted = stage.paintedFrames();
            const QImage frame = stage.frame();
            return (qGray(frame.pixel(frame.rect().center())) > 128) == bSecondHalf;
        });
        const double fSeconds = double(timer.nsecsElapsed()) / 1e9;
        stage.player().pause();
        return bSeen ? fSeconds : -1.0;
    };
    const auto theirs = [&] {
        core.setPaused(false);
        pass(150);
        const double fSeconds = core.seek(target(nTheirs++));
        core.setPaused(true);
        return fSeconds;
    };
    Ratio("seek while playing to the next frame / bare core", 1.3).compare(ours, theirs);
}

void MediaBench::measureWaveform(const char *pName, const char *pTitle) const
{
    const QString path = clip(pName);
    QThreadPool pool;
    const auto ours = [&] {
        const QTemporaryDir folder;
        WaveStore store(folder.path());
        SoundReader reader(&pool, nullptr);
        bool bComplete = false;
        QObject::connect(&reader, &SoundReader::signalWave, &reader,
                         [&bComplete](const media::Peaks &peaks) { bComplete = peaks.bComplete; });
        QElapsedTimer timer;
        timer.start();
        reader.readWave(path, &store);
        const bool bRead = waitFor([&bComplete] { return bComplete; });
        const double fSeconds = double(timer.nsecsElapsed()) / 1e9;
        pool.waitForDone();
        return bRead ? fSeconds : -1.0;
    };
    const auto theirs = [&] {
        QElapsedTimer timer;
        timer.start();
        const bool bRead =
            runFfmpeg({QStringLiteral("-i"), path, QStringLiteral("-f"), QStringLiteral("null"), QStringLiteral("-")});
        return bRead ? double(timer.nsecsElapsed()) / 1e9 : -1.0;
    };
    // Long enough to tell with one round.
    Ratio(pTitle, 2.0, 1).compare(ours, theirs);
}

void MediaBench::measureWaveforms() const
{
    measureWaveform("hour.mp3", "waveform of an hour, MP3 / ffmpeg to nothing");
    measureWaveform("hour.flac", "waveform of an hour, FLAC / ffmpeg to nothing");
}

void MediaBench::measureLeaving() const
{
    const auto cycles = [this](int nCount) {
        for (int i = 0; i < nCount; ++i)
            Stage(Rendering::Software).open(clip("h264.mp4"), true);
        return residentMegabytes();
    };
    const double fBefore = cycles(LeftBefore);
    Ratio::report("memory after 200 more videos opened and left / 10 MB", (cycles(LeftMore) - fBefore) / 10.0, 1.0);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        std::puts("a screen is needed: xvfb-run bench_media");
        return 2;
    }
    application.setQuitOnLastWindowClosed(false);
    MediaBench bench;
    if (!bench.makeClips())
        return 2;
    bench.measureStarts();
    bench.measurePlaying();
    bench.measureSeeking();
    bench.measureLeaving();
    bench.measureWaveforms();
    return Ratio::allPassed() ? 0 : 1;
}
