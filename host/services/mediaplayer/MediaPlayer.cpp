#include "services/mediaplayer/MediaPlayer.h"

#include "interfaces/plugin/IPluginManager.h"
#include "interfaces/plugin/PluginInfo.h"
#include "services/basemodule/IHostAnalysis.h"
#include "services/mediaplayer/audio/CoverItem.h"
#include "services/mediaplayer/audio/SoundReader.h"
#include "services/mediaplayer/audio/WaveWidget.h"
#include "services/mediaplayer/playback/MpvPlayer.h"
#include "services/mediaplayer/video/VideoArea.h"
#include "theme/TSSkinSetting.h"

#include <QFile>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QImageWriter>

namespace {

// Waveform and cover of a sound at the same time.
constexpr int kReaderThreads = 2;
// A frame file is copied soon after it was asked for.
constexpr int kFrameFilesKept = 8;
// Above this difference what was decoded counts, not what the file says of itself.
constexpr qint64 kDurationErrorMsec = 500;
// PNG with the quickest compression: the user waits for it.
constexpr int kFrameQuality = 80;

} // namespace

struct MediaPlayer::Seat {
    std::unique_ptr<MpvPlayer> pPlayer;
    QPointer<VideoArea> pArea;
    QPointer<WaveWidget> pWave;
    std::unique_ptr<SoundReader> pWaveReader;
    QString wavePath;
    qint64 nExactMsec = 0; ///< Duration of the sound at wavePath, once it was decoded.

    ~Seat()
    {
        // Widgets that were never placed have no other owner.
        if (pArea != nullptr && pArea->parentWidget() == nullptr)
            delete pArea;
        if (pWave != nullptr && pWave->parentWidget() == nullptr)
            delete pWave;
    }
};

MediaPlayer::MediaPlayer(QObject *pParent)
    : MediaPlayer(PlayerSetup(), WaveStore::standardFolder(), pParent)
{
}

MediaPlayer::MediaPlayer(const PlayerSetup &setup, const QString &waveFolder, QObject *pParent)
    : QObject(pParent)
    , m_setup(setup)
    , m_waves(waveFolder)
{
    m_pool.setMaxThreadCount(kReaderThreads);
}

MediaPlayer::~MediaPlayer()
{
    aboutToShutdown();
}

QUuid MediaPlayer::getPluginId()
{
    return QUuid(QStringLiteral("{c2a4e7d8-7a0b-4f5e-9d4e-2f1b6a83c950}"));
}

void MediaPlayer::getPluginInfo(PluginInfo &info)
{
    info.name = QStringLiteral("mediaplayer");
    info.displayName = tr("Media player");
    info.version = QStringLiteral("1.0");
}

bool MediaPlayer::setPluginManager(IPluginManager *pManager)
{
    m_pManager = pManager;
    return pManager != nullptr;
}

bool MediaPlayer::aboutToShutdown()
{
    m_bEnding = true;
    m_lastUsed.clear();
    m_lastSound.clear();
    m_seats.clear();
    m_pCoverReader.reset();
    if (m_pCover != nullptr && m_pCover->scene() == nullptr)
        delete m_pCover;
    m_pool.waitForDone();
    m_threads.endAll();
    return true;
}

void MediaPlayer::moveToEnd(QVector<Seat *> *pSeats, Seat *pSeat)
{
    pSeats->removeOne(pSeat);
    pSeats->append(pSeat);
}

bool MediaPlayer::isCurrent(const Seat *pSeat) const
{
    return !m_lastUsed.isEmpty() && m_lastUsed.constLast() == pSeat;
}

MediaPlayer::Seat *MediaPlayer::seatOf(QWidget *pOwner) const
{
    const auto found = m_seats.find(pOwner);
    return found != m_seats.end() ? found->second.get() : nullptr;
}

MpvPlayer *MediaPlayer::current() const
{
    return m_lastUsed.isEmpty() ? nullptr : m_lastUsed.constLast()->pPlayer.get();
}

MediaPlayer::Seat *MediaPlayer::addSeat(QWidget *pOwner, const PlayerSetup &setup)
{
    if (pOwner == nullptr || m_bEnding)
        return nullptr;
    if (Seat *pThere = seatOf(pOwner)) {
        moveToEnd(&m_lastUsed, pThere);
        return pThere;
    }
    auto pNew = std::make_unique<Seat>();
    Seat *pSeat = pNew.get();
    pSeat->pPlayer = std::make_unique<MpvPlayer>(&m_threads, setup, nullptr);
    const MpvPlayer *pPlayer = pSeat->pPlayer.get();
    connect(pPlayer, &MpvPlayer::signalOpened, this, [this, pSeat](qint64 nMsec) { tellDuration(*pSeat, nMsec); });
    connect(pPlayer, &MpvPlayer::signalPosition, this, [this, pSeat](qint64 nMsec) {
        if (isCurrent(pSeat))
            Q_EMIT m_signals.signal_currentTime(nMsec);
    });
    connect(pPlayer, &MpvPlayer::signalFailed, this,
            [this](const QString &path) { report(tr("%1 cannot be played.").arg(QFileInfo(path).fileName())); });
    connect(pPlayer, &MpvPlayer::signalNoSoundDevice, this, &MediaPlayer::reportNoSoundDevice);
    connect(pOwner, &QObject::destroyed, this, [this, pOwner] { detachOwner(pOwner); });
    m_seats.emplace(pOwner, std::move(pNew));
    moveToEnd(&m_lastUsed, pSeat);
    return pSeat;
}

void MediaPlayer::attachOwner(QWidget *pOwner)
{
    addSeat(pOwner, m_setup);
}

void MediaPlayer::detachOwner(QWidget *pOwner)
{
    const auto found = m_seats.find(pOwner);
    if (found == m_seats.end())
        return;
    // Whoever was there before has the word again, as with two previews of which the later one goes.
    m_lastUsed.removeOne(found->second.get());
    m_lastSound.removeOne(found->second.get());
    pOwner->disconnect(this);
    m_seats.erase(found);
}

QWidget *MediaPlayer::videoWidget(QWidget *pOwner)
{
    Seat *pSeat = seatOf(pOwner);
    if (pSeat == nullptr)
        return nullptr;
    if (pSeat->pArea == nullptr)
        pSeat->pArea = new VideoArea(pSeat->pPlayer.get());
    return pSeat->pArea;
}

void MediaPlayer::resetOwner(QWidget *pOwner)
{
    if (Seat *pSeat = seatOf(pOwner))
        pSeat->pPlayer->forgetFrame();
}

QString MediaPlayer::currentFrame(QWidget *pOwner)
{
    Seat *pSeat = seatOf(pOwner);
    const QImage frame = pSeat != nullptr ? pSeat->pPlayer->currentFrame() : QImage();
    if (frame.isNull() || !m_frames.isValid())
        return QString();
    const auto fileOf = [this](int nNumber) {
        return m_frames.filePath(QStringLiteral("frame-%1.png").arg(nNumber));
    };
    QFile::remove(fileOf(m_nFrames - kFrameFilesKept));
    const QString path = fileOf(m_nFrames++);
    QImageWriter writer(path, QByteArrayLiteral("png"));
    writer.setQuality(kFrameQuality);
    if (writer.write(frame))
        return path;
    report(tr("The frame cannot be kept: %1").arg(writer.errorString()));
    return QString();
}

void MediaPlayer::positionShown(QWidget *)
{
    // Positions come no faster than they can be shown: nothing waits for this.
}

void MediaPlayer::attachAudioOwner(QWidget *pOwner, bool bWithWave)
{
    PlayerSetup setup = m_setup;
    setup.rendering = Rendering::None;
    Seat *pSeat = addSeat(pOwner, setup);
    if (pSeat == nullptr)
        return;
    moveToEnd(&m_lastSound, pSeat);
    if (!bWithWave || pSeat->pWaveReader != nullptr)
        return;
    pSeat->pWaveReader = std::make_unique<SoundReader>(&m_pool, nullptr);
    connect(pSeat->pWaveReader.get(), &SoundReader::signalWave, this, [this, pSeat](const media::Peaks &peaks) {
        if (pSeat->pWave != nullptr)
            pSeat->pWave->setPeaks(peaks);
        if (!peaks.bComplete)
            return;
        pSeat->nExactMsec = peaks.nDurationMsec;
        const qint64 nToldMsec = pSeat->pPlayer->durationMsec();
        if (nToldMsec >= 0 && qAbs(nToldMsec - pSeat->nExactMsec) > kDurationErrorMsec)
            tellDuration(*pSeat, nToldMsec);
    });
}

void MediaPlayer::setWavePosition(QWidget *pOwner, qint64 nMsec)
{
    const Seat *pSeat = seatOf(pOwner);
    if (pSeat != nullptr && pSeat->pWave != nullptr)
        pSeat->pWave->setPosition(nMsec);
}

void MediaPlayer::setWaveSource(QWidget *pOwner, const QString &path, int)
{
    if (Seat *pSeat = seatOf(pOwner))
        readWave(pSeat, path);
}

void MediaPlayer::readWave(Seat *pSeat, const QString &path)
{
    if (pSeat->pWaveReader == nullptr)
        return;
    pSeat->wavePath = path;
    pSeat->nExactMsec = 0;
    if (pSeat->pWave != nullptr) {
        pSeat->pWave->setPosition(-1);
        pSeat->pWave->setDuration(0);
        pSeat->pWave->setPeaks({});
    }
    if (path.isEmpty())
        pSeat->pWaveReader->cancel();
    else
        pSeat->pWaveReader->readWave(path, &m_waves);
}

void MediaPlayer::setWaveDuration(QWidget *pOwner, qint64 nMsec)
{
    const Seat *pSeat = seatOf(pOwner);
    if (pSeat != nullptr && pSeat->pWave != nullptr)
        pSeat->pWave->setDuration(nMsec);
}

QWidget *MediaPlayer::waveWidget(QWidget *pOwner)
{
    Seat *pSeat = seatOf(pOwner);
    if (pSeat == nullptr || pSeat->pWaveReader == nullptr)
        return nullptr;
    if (pSeat->pWave == nullptr)
        pSeat->pWave = new WaveWidget;
    return pSeat->pWave;
}

void MediaPlayer::initAudioView()
{
    // The item of an earlier view belongs to that view's scene.
    if (!m_bEnding && (m_pCover == nullptr || m_pCover->scene() != nullptr))
        m_pCover = new CoverItem;
}

QGraphicsItem *MediaPlayer::audioItem()
{
    return m_pCover;
}

void MediaPlayer::animateAudioItem(int nState)
{
    if (m_pCover != nullptr)
        m_pCover->step(nState == Playing);
}

double MediaPlayer::audioItemScale()
{
    return m_pCover != nullptr ? m_pCover->scale() : 1.0;
}

void MediaPlayer::layoutAudioItem()
{
    if (m_pCover != nullptr && m_pCover->scene() != nullptr)
        m_pCover->fitInto(m_pCover->scene()->sceneRect());
}

void MediaPlayer::openIn(Seat *pSeat, const QString &path, qint64 nStartMsec)
{
    // One sound at a time, also where a preview forgot to stop the last one.
    for (const auto &other : m_seats) {
        if (other.second.get() != pSeat && other.second->pPlayer->state() != MpvPlayer::Stopped)
            other.second->pPlayer->stop();
    }
    moveToEnd(&m_lastUsed, pSeat);
    pSeat->pPlayer->open(path, nStartMsec);
}

void MediaPlayer::openAndPlay(QWidget *pOwner, const QString &path, int nStartMsec)
{
    Seat *pSeat = seatOf(pOwner);
    if (pSeat != nullptr && !path.isEmpty())
        openIn(pSeat, path, nStartMsec);
}

void MediaPlayer::openAudio(const QString &path)
{
    if (m_lastSound.isEmpty() || path.isEmpty())
        return;
    Seat *pSeat = m_lastSound.constLast();
    // A sound that is only repeated keeps what is shown of it.
    const bool bAgain = pSeat->pPlayer->path() == path;
    if (!bAgain && pSeat->wavePath != path)
        readWave(pSeat, path);
    if (!bAgain)
        showCover(path);
    openIn(pSeat, path, 0);
}

void MediaPlayer::showCover(const QString &path)
{
    if (m_pCover == nullptr)
        return;
    m_pCover->setDefaultPicture(QFileInfo(path).suffix());
    const QList<IPlugin *> plugins =
        m_pManager != nullptr ? m_pManager->getPlugins(QStringLiteral("IBaseModulePlugin")) : QList<IPlugin *>();
    auto *pPictures = plugins.isEmpty() ? nullptr : qobject_cast<IHostAnalysis *>(plugins.first()->getObject());
    if (pPictures == nullptr)
        return;
    m_pCoverReader = std::make_unique<SoundReader>(&m_pool, nullptr);
    connect(m_pCoverReader.get(), &SoundReader::signalCover, this, [this](const QImage &cover) {
        if (m_pCover != nullptr && !cover.isNull())
            m_pCover->setPicture(cover);
    });
    // The square is cut out of the picture: its short side is what counts.
    const int nSide = int(CoverItem::kSide * 2 * TSSkinSetting::GetInstance()->GetDpi());
    m_pCoverReader->readCover(path, nSide,
                              [pPictures](const QString &file, int nLongestSide, const std::atomic_bool &cancelled) {
                                  return pPictures->readPicture(file, nLongestSide, cancelled);
                              });
}

void MediaPlayer::play()
{
    if (MpvPlayer *pPlayer = current())
        pPlayer->play();
}

void MediaPlayer::pause()
{
    if (MpvPlayer *pPlayer = current())
        pPlayer->pause();
}

void MediaPlayer::stop(QWidget *pOwner)
{
    if (Seat *pSeat = seatOf(pOwner))
        pSeat->pPlayer->stop();
}

void MediaPlayer::seek(int nMsec)
{
    if (MpvPlayer *pPlayer = current())
        pPlayer->seek(nMsec);
}

void MediaPlayer::setMute(bool bMute)
{
    if (MpvPlayer *pPlayer = current())
        pPlayer->setMute(bMute);
}

void MediaPlayer::setVolume(float fVolume)
{
    if (MpvPlayer *pPlayer = current())
        pPlayer->setVolume(double(fVolume));
}

int MediaPlayer::state()
{
    const MpvPlayer *pPlayer = current();
    return pPlayer != nullptr ? int(pPlayer->state()) : int(Stopped);
}

int MediaPlayer::videoWidth()
{
    const MpvPlayer *pPlayer = current();
    return pPlayer != nullptr ? qMax(0, pPlayer->videoSize().width()) : 0;
}

int MediaPlayer::videoHeight()
{
    const MpvPlayer *pPlayer = current();
    return pPlayer != nullptr ? qMax(0, pPlayer->videoSize().height()) : 0;
}

void MediaPlayer::tellDuration(const Seat &seat, qint64 nMsec)
{
    if (!isCurrent(&seat))
        return;
    const bool bExactKnown = seat.nExactMsec > 0 && seat.wavePath == seat.pPlayer->path();
    const bool bGuess = bExactKnown && qAbs(seat.nExactMsec - nMsec) > kDurationErrorMsec;
    Q_EMIT m_signals.signal_TotalTimeChanged(bGuess ? seat.nExactMsec : nMsec);
}

void MediaPlayer::report(const QString &problem)
{
    if (m_problemHandler)
        m_problemHandler(problem);
}

void MediaPlayer::reportNoSoundDevice()
{
    if (m_bNoSoundTold)
        return;
    m_bNoSoundTold = true;
    report(tr("There is no sound device: videos and sounds play silently."));
}
