#pragma once

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QTimer>

/** Beats every ten milliseconds in the GUI thread and tells how late the latest beat was. */
class Heartbeat {
public:
    Heartbeat();
    qint64 worstDelayMsec() const { return m_nWorst; }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_nWorst = 0;
};

/** What the process did while nothing was asked of it. */
struct Idleness {
    QMap<QString, int> timers; ///< Timer events by receiver (for a QTimer its owner); those of this program left out.
    double fCpuMsec = 0.0;     ///< Of all threads.
    QString text() const;
};

/** Lets the event loop run for so long and watches. */
Idleness watchIdle(int nMsec);

/** The files below this folder that the process holds open. */
QStringList openFilesIn(const QString &folder);
