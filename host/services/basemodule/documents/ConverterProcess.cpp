#include "services/basemodule/documents/ConverterProcess.h"

#include <QElapsedTimer>

#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace basemodule {

namespace {

// How soon a cancelled program is noticed.
constexpr int kLookMsec = 25;
constexpr int kStartMsec = 10000;

// Called between fork and exec: system calls only.
void limit(int nResource, qint64 nValue)
{
    const struct rlimit bound = {rlim_t(nValue), rlim_t(nValue)};
    ::setrlimit(__rlimit_resource_t(nResource), &bound);
}

void writeFile(const char *pPath, const char *pBytes, size_t nBytes)
{
    const int nFile = ::open(pPath, O_WRONLY | O_CLOEXEC);
    if (nFile < 0)
        return;
    const ssize_t nWritten = ::write(nFile, pBytes, nBytes);
    static_cast<void>(nWritten); // without its names the program still runs
    ::close(nFile);
}

QByteArray mapOf(unsigned nId)
{
    return QByteArray::number(nId) + ' ' + QByteArray::number(nId) + " 1";
}

} // namespace

ConverterProcess::ConverterProcess(const Limits &limits)
    : m_limits(limits)
    , m_userMap(mapOf(::getuid()))
    , m_groupMap(mapOf(::getgid()))
{
    setStandardInputFile(nullDevice());
    setStandardOutputFile(nullDevice());
    setStandardErrorFile(nullDevice());
}

ConverterProcess::~ConverterProcess()
{
    if (state() != NotRunning)
        killGroup(processId());
}

void ConverterProcess::cutNetwork() const
{
    if (::unshare(CLONE_NEWNET) == 0)
        return;
    // Not the administrator: a user namespace of its own gives the right, where the system allows them.
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return;
    writeFile("/proc/self/setgroups", "deny", 4);
    writeFile("/proc/self/uid_map", m_userMap.constData(), size_t(m_userMap.size()));
    writeFile("/proc/self/gid_map", m_groupMap.constData(), size_t(m_groupMap.size()));
}

void ConverterProcess::setupChildProcess()
{
    ::setsid();
    cutNetwork();
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_AS, m_limits.memory);
    limit(RLIMIT_FSIZE, m_limits.fileSize);
    // A program that outlives us, because we were killed, ends by itself.
    limit(RLIMIT_CPU, m_limits.timeMsec / 1000 + 1);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void ConverterProcess::killGroup(qint64 nGroup)
{
    if (nGroup > 0)
        ::kill(pid_t(-nGroup), SIGKILL);
    if (state() != NotRunning)
        waitForFinished(-1);
}

ConverterProcess::End ConverterProcess::runToEnd(const QString &program, const QStringList &arguments,
                                                 const std::function<bool()> &cancelled)
{
    QElapsedTimer clock;
    clock.start();
    start(program, arguments, QIODevice::NotOpen);
    if (!waitForStarted(kStartMsec)) {
        killGroup(processId());
        return End::NotStarted;
    }
    const qint64 nGroup = processId();
    End end = End::Finished;
    while (state() != NotRunning && !waitForFinished(kLookMsec)) {
        if (cancelled())
            end = End::Cancelled;
        else if (clock.elapsed() > m_limits.timeMsec)
            end = End::TimedOut;
        if (end != End::Finished)
            break;
    }
    // Also after a good end: whatever the program started goes with it.
    killGroup(nGroup);
    return end == End::Finished && exitStatus() == CrashExit ? End::Crashed : end;
}

} // namespace basemodule
