#include "FakePlayer.h"

#include <utility>

void FakePlayer::attachOwner(QWidget *pOwner)
{
    owners.insert(pOwner);
    note(QStringLiteral("attach"));
}

void FakePlayer::detachOwner(QWidget *pOwner)
{
    owners.remove(pOwner);
    openPath.clear();
    note(QStringLiteral("detach"));
}

QWidget *FakePlayer::videoWidget(QWidget *pOwner)
{
    return hasWidgets && owners.contains(pOwner) ? new QWidget : nullptr;
}

void FakePlayer::resetOwner(QWidget *pOwner)
{
    Q_UNUSED(pOwner)
    note(QStringLiteral("reset"));
}

QString FakePlayer::currentFrame(QWidget *pOwner)
{
    note(QStringLiteral("frame"));
    return owners.contains(pOwner) ? framePicture : QString();
}

void FakePlayer::positionShown(QWidget *pOwner)
{
    Q_UNUSED(pOwner)
    note(QStringLiteral("shown"));
}

void FakePlayer::attachAudioOwner(QWidget *pOwner, bool bWithWave)
{
    owners.insert(pOwner);
    note(QStringLiteral("attach audio %1").arg(bWithWave));
}

void FakePlayer::setWavePosition(QWidget *pOwner, qint64 nMsec)
{
    Q_UNUSED(pOwner)
    note(QStringLiteral("wave position %1").arg(nMsec));
}

void FakePlayer::setWaveSource(QWidget *pOwner, const QString &path, int nWidth)
{
    Q_UNUSED(pOwner)
    note(QStringLiteral("wave source %1 %2").arg(path, nWidth > 0 ? QStringLiteral("wide") : QStringLiteral("?")));
}

void FakePlayer::setWaveDuration(QWidget *pOwner, qint64 nMsec)
{
    Q_UNUSED(pOwner)
    note(QStringLiteral("wave duration %1").arg(nMsec));
}

QWidget *FakePlayer::waveWidget(QWidget *pOwner)
{
    if (!hasWidgets || !owners.contains(pOwner))
        return nullptr;
    wave = new FakeWave;
    return wave;
}

void FakePlayer::initAudioView()
{
    note(QStringLiteral("init view"));
}

QGraphicsItem *FakePlayer::audioItem()
{
    pItem = hasWidgets ? new QGraphicsRectItem(-90, -90, 180, 180) : nullptr;
    return pItem;
}

void FakePlayer::animateAudioItem(int nState)
{
    note(QStringLiteral("animate %1").arg(nState));
}

void FakePlayer::layoutAudioItem()
{
    note(QStringLiteral("lay out item"));
}

void FakePlayer::openAndPlay(QWidget *pOwner, const QString &path, int nStartMsec)
{
    note(QStringLiteral("open %1 %2").arg(path).arg(nStartMsec));
    if (!opensFiles || !owners.contains(pOwner))
        return;
    openPath = path;
    now = Playing;
}

void FakePlayer::openAudio(const QString &path)
{
    note(QStringLiteral("open %1").arg(path));
    if (!opensFiles)
        return;
    openPath = path;
    now = Playing;
}

void FakePlayer::play()
{
    note(QStringLiteral("play"));
    if (now == Paused)
        now = Playing;
}

void FakePlayer::pause()
{
    note(QStringLiteral("pause"));
    if (now == Playing)
        now = Paused;
}

void FakePlayer::stop(QWidget *pOwner)
{
    Q_UNUSED(pOwner)
    note(QStringLiteral("stop"));
    now = Stopped;
    openPath.clear();
}

void FakePlayer::seek(int nMsec)
{
    note(QStringLiteral("seek %1").arg(nMsec));
}

void FakePlayer::setMute(bool bMute)
{
    note(QStringLiteral("mute %1").arg(bMute));
}

void FakePlayer::setVolume(float fVolume)
{
    note(QStringLiteral("volume %1").arg(double(fVolume), 0, 'f', 2));
}

QStringList FakePlayer::takeCalls()
{
    return std::exchange(calls, {});
}

QStringList FakePlayer::callsOf(const QStringList &words) const
{
    QStringList found;
    for (const QString &call : calls) {
        if (words.contains(call.section(QLatin1Char(' '), 0, 0)))
            found.append(call);
    }
    return found;
}
