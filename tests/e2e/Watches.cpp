#include "Watches.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QEventLoop>
#include <QFileInfo>

#include <ctime>

namespace {

constexpr int BeatMsec = 10;

/** Counts the timer events of the whole program while it lives. */
class TimerFilter : public QObject {
public:
    TimerFilter(QMap<QString, int> *pTimers, const QObject *pOwn)
        : m_pTimers(pTimers)
        , m_pOwn(pOwn)
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override
    {
        // Qt sweeps its own pixmap cache half a minute after it was last used.
        const bool bOurs = pWatched != m_pOwn && !pWatched->inherits("QPMCache");
        if (pEvent->type() == QEvent::Timer && bOurs) {
            const QObject *pOwner = pWatched->inherits("QTimer") && pWatched->parent() ? pWatched->parent() : pWatched;
            ++(*m_pTimers)[QLatin1String(pOwner->metaObject()->className())];
        }
        return false;
    }

private:
    QMap<QString, int> *m_pTimers;
    const QObject *m_pOwn;
};

double cpuMsec()
{
    return 1000.0 * double(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

Heartbeat::Heartbeat()
{
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                     [this] { m_nWorst = qMax(m_nWorst, m_clock.restart() - BeatMsec); });
    m_clock.start();
    m_timer.start(BeatMsec);
}

QString Idleness::text() const
{
    QStringList parts{QStringLiteral("%1 ms of CPU").arg(fCpuMsec)};
    for (auto it = timers.begin(); it != timers.end(); ++it)
        parts.append(it.key() + QStringLiteral(" x ") + QString::number(it.value()));
    return parts.join(QStringLiteral(", "));
}

Idleness watchIdle(int nMsec)
{
    Idleness idleness;
    QEventLoop loop;
    QTimer end;
    QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
    end.setSingleShot(true);
    const TimerFilter filter(&idleness.timers, &end);
    const double fBefore = cpuMsec();
    end.start(nMsec);
    loop.exec();
    idleness.fCpuMsec = cpuMsec() - fBefore;
    return idleness;
}

QStringList openFilesIn(const QString &folder)
{
    QStringList files;
    const QDir handles(QStringLiteral("/proc/self/fd"));
    const QFileInfoList entries = handles.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.symLinkTarget().startsWith(folder))
            files.append(entry.symLinkTarget());
    }
    return files;
}
