#include "services/mediaplayer/playback/MpvPlayer.h"

#include "services/mediaplayer/playback/PlayerThreads.h"

#include <QPointer>
#include <QTransform>
#include <QtConcurrent>

#include <cmath>

namespace {

// Often enough for a mark that moves smoothly; more would only cost repaints.
constexpr qint64 kPositionStepMsec = 40;

QByteArray seconds(qint64 nMsec)
{
    return QByteArray::number(double(nMsec) / 1000.0, 'f', 3);
}

} // namespace

MpvPlayer::MpvPlayer(PlayerThreads *pThreads, const PlayerSetup &setup, QObject *pParent)
    : QObject(pParent)
    , m_pReaders(pThreads->readers())
    , m_core(pThreads, setup, nullptr)
    , m_setup(setup)
{
    connect(&m_core, &MpvCore::signalReady, this, &MpvPlayer::startCore);
    connect(&m_core, &MpvCore::signalFileLoaded, this, &MpvPlayer::handleFileLoaded);
    connect(&m_core, &MpvCore::signalFileEnded, this, &MpvPlayer::handleFileEnd);
    connect(&m_core, &MpvCore::signalProperty, this, &MpvPlayer::handleProperty);
}

MpvPlayer::~MpvPlayer()
{
    cancelProbe();
}

void MpvPlayer::startCore()
{
    m_core.set("volume", m_fVolume * 100.0);
    m_core.set("mute", m_bMute);
    loadProbed();
}

void MpvPlayer::open(const QString &path, qint64 nStartMsec)
{
    if (m_phase == Phase::Ended && path == m_path) {
        m_phase = Phase::Loaded;
        m_nToldDurationMsec = -1;
        m_nToldPositionMsec = -1;
        seek(nStartMsec);
        play();
        announce();
        return;
    }
    closeFile();
    m_core.begin();
    m_phase = Phase::Opening;
    m_path = path;
    m_nStartMsec = qMax<qint64>(0, nStartMsec);
    m_bPaused = false;
    const auto pCancelled = std::make_shared<std::atomic_bool>(false);
    m_pProbing = pCancelled;
    const QPointer<MpvPlayer> pThis(this);
    QtConcurrent::run(m_pReaders, [pThis, path, pCancelled] {
        if (*pCancelled)
            return;
        const MediaProbe probe = probeMedia(path, [&pCancelled] { return pCancelled->load(); });
        QMetaObject::invokeMethod(
            qApp,
            [pThis, probe, pCancelled] {
                if (pThis == nullptr || *pCancelled)
                    return;
                pThis->m_pProbing.reset();
                pThis->m_probed = probe;
                pThis->loadProbed();
            },
            Qt::QueuedConnection);
    });
}

void MpvPlayer::cancelProbe()
{
    if (m_pProbing != nullptr)
        *m_pProbing = true;
    m_pProbing.reset();
    m_probed.reset();
}

void MpvPlayer::loadProbed()
{
    // Goes on when the core is there, or has closed the file before.
    if (!m_probed.has_value() || m_bCoreBusy)
        return;
    if (!m_probed->bFile || m_core.isBroken()) {
        m_probed.reset();
        handleFileEnd(true);
        return;
    }
    if (!m_core.isReady())
        return;
    const bool bTurns = frames()->turnsFrames();
    frames()->forgetFrames();
    const QByteArray filters =
        m_setup.rendering == Rendering::None || bTurns ? QByteArray() : videoFilters(m_probed->video);
    m_bCoreBusy = true;
    m_core.set("pause", m_bPaused);
    const QByteArray start = m_nStartMsec > 0 ? seconds(m_nStartMsec) : QByteArrayLiteral("none");
    m_core.load(m_probed->native,
                {{"start", start}, {"vf", filters}, {"deinterlace", "no"}, {"sid", "auto"}, {"aid", "auto"}});
    m_nStartMsec = -1;
    m_loaded = *m_probed;
    m_probed.reset();
}

void MpvPlayer::closeFile()
{
    cancelProbe();
    if (m_bCoreBusy)
        m_core.command({"stop"});
    m_phase = Phase::Idle;
    m_path.clear();
    m_videoSize = QSize();
    m_nDurationMsec = 0;
    m_nToldDurationMsec = -1;
    m_nToldPositionMsec = -1;
    m_toldSize = QSize();
    m_bDurationKnown = false;
    m_bHasVideo = false;
    m_bTracksKnown = false;
    m_tracks.clear();
    forgetFrame();
}

void MpvPlayer::stop()
{
    closeFile();
}

void MpvPlayer::forgetFrame()
{
    if (m_phase == Phase::Loaded)
        return;
    frames()->forgetFrames();
    Q_EMIT signalFrameForgotten();
}

void MpvPlayer::play()
{
    m_bPaused = false;
    m_core.set("pause", false);
}

void MpvPlayer::pause()
{
    m_bPaused = true;
    m_core.set("pause", true);
}

void MpvPlayer::seek(qint64 nMsec)
{
    const qint64 nTarget = qMax<qint64>(0, nMsec);
    if (m_phase == Phase::Opening)
        m_nStartMsec = nTarget;
    if (m_phase == Phase::Ended) {
        m_phase = Phase::Loaded;
        pause();
    }
    m_nToldPositionMsec = -1;
    if (m_phase == Phase::Loaded)
        m_core.command({"seek", seconds(nTarget), "absolute+exact"});
}

void MpvPlayer::setVolume(double fVolume)
{
    m_fVolume = std::isfinite(fVolume) ? qBound(0.0, fVolume, 1.0) : 0.0;
    m_core.set("volume", m_fVolume * 100.0);
}

MpvPlayer::State MpvPlayer::state() const
{
    if (m_phase == Phase::Idle || m_phase == Phase::Ended)
        return Stopped;
    return m_bPaused ? Paused : Playing;
}

void MpvPlayer::handleFileLoaded()
{
    // A file that was left while the core opened it is closed in a moment.
    if (m_phase != Phase::Opening || m_probed.has_value() || m_pProbing != nullptr)
        return;
    m_phase = Phase::Loaded;
    if (m_nStartMsec >= 0)
        seek(m_nStartMsec);
    announce();
}

void MpvPlayer::handleFileEnd(bool bFailed)
{
    m_bCoreBusy = false;
    m_reportedSize = QSize();
    if (m_probed.has_value()) {
        loadProbed();
        return;
    }
    if (m_pProbing != nullptr || m_phase == Phase::Idle)
        return;
    const QString path = m_path;
    const bool bNeverOpen = m_phase == Phase::Opening;
    closeFile();
    if (bFailed || bNeverOpen)
        Q_EMIT signalFailed(path);
}

void MpvPlayer::handleProperty(const QByteArray &name, const QVariant &value)
{
    if (name == "current-ao") {
        if (value.toString() == QLatin1String("null") && m_setup.soundOutput != "null")
            Q_EMIT signalNoSoundDevice();
        return;
    }
    if (name == "dwidth")
        m_reportedSize.setWidth(value.toInt());
    if (name == "dheight")
        m_reportedSize.setHeight(value.toInt());
    // What is reported before the file is open still belongs to the last one.
    if (m_phase != Phase::Loaded && m_phase != Phase::Ended)
        return;
    if (name == "time-pos" && value.isValid()) {
        takePosition(value.toDouble());
    } else if (name == "duration") {
        m_bDurationKnown = true;
        m_nDurationMsec = qMax<qint64>(0, std::llround(value.toDouble() * 1000.0));
        announce();
    } else if (name == "eof-reached") {
        takeEnd(value.toBool());
    } else if (name == "dheight") {
        announce();
    } else if (name == "track-list") {
        takeTracks(value.toList());
    } else if (name == "video-frame-info/interlaced" && value.toBool()) {
        m_core.set("deinterlace", true);
    } else if (name == "video-params/gamma") {
        const QString gamma = value.toString();
        takeRange(gamma == QLatin1String("pq") || gamma == QLatin1String("hlg"));
    }
}

void MpvPlayer::takePosition(double fSeconds)
{
    if (m_phase != Phase::Loaded)
        return;
    const qint64 nMsec = qMax<qint64>(0, std::llround(fSeconds * 1000.0));
    const bool bNear = m_nToldPositionMsec >= 0 && qAbs(nMsec - m_nToldPositionMsec) < kPositionStepMsec;
    if (bNear && !m_bPaused)
        return;
    m_nToldPositionMsec = nMsec;
    Q_EMIT signalPosition(nMsec);
}

void MpvPlayer::takeEnd(bool bReached)
{
    if (bReached && m_phase == Phase::Loaded)
        m_phase = Phase::Ended;
}

void MpvPlayer::takeRange(bool bHighRange)
{
    // Some files tell it in their frames only.
    if (!bHighRange || m_loaded.video.bHighRange || frames()->turnsFrames())
        return;
    m_loaded.video.bHighRange = true;
    m_core.set("vf", videoFilters(m_loaded.video));
}

void MpvPlayer::takeTracks(const QVariantList &tracks)
{
    const bool bFirst = !m_bTracksKnown;
    m_bTracksKnown = true;
    m_tracks = tracks;
    m_bHasVideo = false;
    bool bSubtitlesShown = false;
    qint64 nFirstSubtitles = 0;
    for (const QVariant &track : tracks) {
        const QVariantMap map = track.toMap();
        const QString type = map.value(QStringLiteral("type")).toString();
        const bool bSelected = map.value(QStringLiteral("selected")).toBool();
        m_bHasVideo = m_bHasVideo || (bSelected && type == QLatin1String("video"));
        if (type != QLatin1String("sub"))
            continue;
        bSubtitlesShown = bSubtitlesShown || bSelected;
        if (nFirstSubtitles == 0)
            nFirstSubtitles = map.value(QStringLiteral("id")).toLongLong();
    }
    // The core leaves embedded ones out that are not marked as wanted.
    if (bFirst && !bSubtitlesShown && nFirstSubtitles > 0)
        selectTrack(QStringLiteral("sub"), nFirstSubtitles);
    announce();
}

void MpvPlayer::announce()
{
    if (m_phase != Phase::Loaded)
        return;
    const bool bSizeKnown = m_bTracksKnown && (!m_bHasVideo || !m_reportedSize.isEmpty());
    if (!bSizeKnown || !m_bDurationKnown)
        return;
    m_videoSize = m_bHasVideo ? m_reportedSize : QSize();
    if (m_nDurationMsec == m_nToldDurationMsec && m_videoSize == m_toldSize)
        return;
    m_nToldDurationMsec = m_nDurationMsec;
    m_toldSize = m_videoSize;
    Q_EMIT signalOpened(m_nDurationMsec);
}

QImage MpvPlayer::currentFrame()
{
    if (m_phase == Phase::Idle || m_phase == Phase::Opening || frames()->frame().isNull())
        return {};
    QImage image = m_core.screenshot();
    if (image.isNull())
        return {};
    if (frames()->turnsFrames() && m_loaded.video.nRotation != 0)
        image = image.transformed(QTransform().rotate(m_loaded.video.nRotation));
    // Pixels that are not square are shown stretched.
    if (!m_videoSize.isEmpty() && image.size() != m_videoSize)
        image = image.scaled(m_videoSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}

void MpvPlayer::selectTrack(const QString &type, qint64 nId)
{
    const QByteArray id = nId > 0 ? QByteArray::number(nId) : QByteArrayLiteral("no");
    m_core.set(type == QLatin1String("audio") ? "aid" : "sid", id);
}
