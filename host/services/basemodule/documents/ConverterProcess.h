#pragma once

#include <QByteArray>
#include <QProcess>

#include <functional>

namespace basemodule {

/**
 * One run of a program on a file that nobody trusts: in a process group and session of its own that is killed whole,
 * with limits of time, memory and file size, and without a network where the system lets us cut it.
 *
 * Owner: the conversion that waits for it. Thread: that one, which has to live as long: the program dies with it.
 */
class ConverterProcess final : public QProcess {
    Q_OBJECT

public:
    struct Limits {
        int timeMsec = 0;
        qint64 memory = 0;
        qint64 fileSize = 0;
    };
    enum class End { Finished, Crashed, TimedOut, Cancelled, NotStarted };

    explicit ConverterProcess(const Limits &limits);
    ~ConverterProcess() override;

    /** Runs the program until it ends or `cancelled` says so. Nothing of its group is left afterwards. */
    End runToEnd(const QString &program, const QStringList &arguments, const std::function<bool()> &cancelled);

protected:
    void setupChildProcess() override;

private:
    void cutNetwork() const;
    void killGroup(qint64 nGroup);

    const Limits m_limits;
    const QByteArray m_userMap;
    const QByteArray m_groupMap;
};

} // namespace basemodule
