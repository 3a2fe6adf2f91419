#include "PlayerRivals.h"

#include <QCoreApplication>
#include <QFile>

#include <mpv/client.h>
#include <unistd.h>

namespace {

constexpr int PatienceMsec = 60000;

void setFlag(mpv_handle *pCore, const char *pName, bool bValue)
{
    int nFlag = bValue ? 1 : 0;
    mpv_set_property(pCore, pName, MPV_FORMAT_FLAG, &nFlag);
}

} // namespace

PlayerProgram::PlayerProgram(const QString &path, const QStringList &options)
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_sinceStart.start();
    m_process.start(QStringLiteral("mpv"), QStringList{QStringLiteral("--no-config"), QStringLiteral("--ao=null"),
                                                       QStringLiteral("--msg-level=cplayer=v")} +
                                               options + QStringList{path});
}

PlayerProgram::~PlayerProgram()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool PlayerProgram::read()
{
    const int nLeft = int(PatienceMsec - m_sinceStart.elapsed());
    const bool bMore = nLeft > 0 && m_process.waitForReadyRead(nLeft);
    m_log += m_process.readAll();
    return bMore;
}

double PlayerProgram::secondsUntil(const QByteArray &logged)
{
    while (!m_log.contains(logged)) {
        if (!read())
            return -1.0;
    }
    return double(m_sinceStart.nsecsElapsed()) / 1e9;
}

int PlayerProgram::droppedFrames()
{
    while (m_process.state() != QProcess::NotRunning && read()) {
    }
    const int nAt = m_log.lastIndexOf("dropped=");
    return nAt >= 0 ? m_log.mid(nAt + 8, 12).split(';').constFirst().toInt() : -1;
}

double PlayerProgram::processorSeconds() const
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(m_process.processId()));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    // The second field may hold blanks; it ends with the last bracket.
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return (fields.value(11).toDouble() + fields.value(12).toDouble()) / double(sysconf(_SC_CLK_TCK));
}

PlayerCore::PlayerCore(const QString &path)
    : m_pCore(mpv_create())
{
    for (const char *pOption : {"config", "terminal"})
        mpv_set_option_string(m_pCore, pOption, "no");
    for (const char *pOption : {"vo", "ao"})
        mpv_set_option_string(m_pCore, pOption, "null");
    mpv_initialize(m_pCore);
    const QByteArray file = QFile::encodeName(path);
    const char *load[] = {"loadfile", file.constData(), nullptr};
    mpv_command(m_pCore, load);
    waitForRestart();
}

PlayerCore::~PlayerCore()
{
    mpv_terminate_destroy(m_pCore);
}

bool PlayerCore::waitForRestart()
{
    for (;;) {
        const mpv_event_id id = mpv_wait_event(m_pCore, PatienceMsec / 1000.0)->event_id;
        if (id == MPV_EVENT_PLAYBACK_RESTART)
            return true;
        if (id == MPV_EVENT_NONE || id == MPV_EVENT_END_FILE || id == MPV_EVENT_SHUTDOWN)
            return false;
    }
}

void PlayerCore::setPaused(bool bPaused)
{
    setFlag(m_pCore, "pause", bPaused);
}

double PlayerCore::seek(double fSeconds)
{
    while (mpv_wait_event(m_pCore, 0)->event_id != MPV_EVENT_NONE) {
    }
    const QByteArray target = QByteArray::number(fSeconds, 'f', 3);
    const char *command[] = {"seek", target.constData(), "absolute+exact", nullptr};
    QElapsedTimer timer;
    timer.start();
    mpv_command_async(m_pCore, 0, command);
    return waitForRestart() ? double(timer.nsecsElapsed()) / 1e9 : -1.0;
}

PlayingWatch::PlayingWatch(mpv_handle *pCore)
    : m_pClient(mpv_create_client(pCore, nullptr))
    , m_thread([this] {
        while (!m_bEnough) {
            if (mpv_wait_event(m_pClient, 0.05)->event_id != MPV_EVENT_PLAYBACK_RESTART)
                continue;
            m_bBegun = true;
            // Whoever waits for events looks again.
            QMetaObject::invokeMethod(
                qApp, [] {}, Qt::QueuedConnection);
        }
    })
{
}

PlayingWatch::~PlayingWatch()
{
    m_bEnough = true;
    mpv_wakeup(m_pClient);
    m_thread.join();
    mpv_destroy(m_pClient);
}
