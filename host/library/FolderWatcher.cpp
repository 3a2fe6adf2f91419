#include "library/FolderWatcher.h"

#include "files/NativePath.h"

#include <QSocketNotifier>

#include <array>

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace {

// Long enough to gather what one command does, short enough to seem at once.
constexpr int k_nReportDelayMsec = 300;
constexpr int k_nPollMsec = 4000;
// A file that is rewritten in place leaves no trace in its folder: each folder is reported from time to time, however
// it looks. Reported folders are listed, so only so many with each poll.
constexpr int k_nPollsForAll = 4;
constexpr int k_nMostWithOnePoll = 200;

} // namespace

FolderWatcher::FolderWatcher(QObject *pParent)
    : QObject(pParent)
    , m_reportTimer(this)
    , m_pollTimer(this)
{
    m_reportTimer.setSingleShot(true);
    m_reportTimer.setInterval(k_nReportDelayMsec);
    m_pollTimer.setInterval(k_nPollMsec);
    connect(&m_reportTimer, &QTimer::timeout, this, [this] {
        QStringList folders;
        {
            const QMutexLocker lock(&m_mutex);
            folders = QStringList(m_changed.cbegin(), m_changed.cend());
            m_changed.clear();
        }
        if (!folders.isEmpty())
            Q_EMIT signalChanged(folders);
    });
    connect(&m_pollTimer, &QTimer::timeout, this, &FolderWatcher::poll);
#ifdef Q_OS_LINUX
    m_nSystem = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_nSystem >= 0) {
        auto *pNotifier = new QSocketNotifier(m_nSystem, QSocketNotifier::Read, this);
        connect(pNotifier, &QSocketNotifier::activated, this, &FolderWatcher::readEvents);
    }
#endif
}

FolderWatcher::~FolderWatcher()
{
    qDeleteAll(findChildren<QSocketNotifier *>());
#ifdef Q_OS_LINUX
    if (m_nSystem >= 0)
        ::close(m_nSystem);
#endif
}

int FolderWatcher::addToSystem(const QString &folder)
{
#ifdef Q_OS_LINUX
    // Not IN_MODIFY: a file that is being written is looked at when it is finished.
    constexpr quint32 k_nEvents = IN_CREATE | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE |
                                  IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    if (m_nSystem >= 0 && m_folders.size() < m_nSystemLimit)
        return ::inotify_add_watch(m_nSystem, nativePath(folder).constData(), k_nEvents);
#else
    Q_UNUSED(folder)
#endif
    return -1;
}

void FolderWatcher::removeFromSystem(int nWatch)
{
#ifdef Q_OS_LINUX
    if (nWatch >= 0)
        ::inotify_rm_watch(m_nSystem, nWatch);
#else
    Q_UNUSED(nWatch)
#endif
}

qint64 FolderWatcher::stateOf(const QString &folder)
{
    const FileState state = fileState(nativePath(folder));
    return state.bFolder ? state.nModifiedMsec : -1;
}

void FolderWatcher::add(const QString &folder)
{
    const QMutexLocker lock(&m_mutex);
    // Also one that is known: a drive put in its place is another folder, of which the system tells nothing by itself.
    const int nBefore = m_watches.value(folder, -1);
    m_folders.remove(nBefore);
    const int nWatch = addToSystem(folder);
    if (nWatch != nBefore)
        removeFromSystem(nBefore);
    if (nWatch >= 0) {
        // A folder that was moved is known to the system under the same number still.
        m_watches.remove(m_folders.value(nWatch));
        m_watches.insert(folder, nWatch);
        m_folders.insert(nWatch, folder);
        m_polled.remove(folder);
        return;
    }
    m_watches.insert(folder, -1);
    if (m_polled.isEmpty())
        QMetaObject::invokeMethod(&m_pollTimer, QOverload<>::of(&QTimer::start), Qt::QueuedConnection);
    m_polled.insert(folder, stateOf(folder));
}

bool FolderWatcher::contains(const QString &folder) const
{
    const QMutexLocker lock(&m_mutex);
    return m_watches.contains(folder);
}

void FolderWatcher::clear()
{
    const QMutexLocker lock(&m_mutex);
    for (const int nWatch : qAsConst(m_watches))
        removeFromSystem(nWatch);
    m_watches.clear();
    m_folders.clear();
    m_polled.clear();
    m_changed.clear();
}

void FolderWatcher::report(const QString &folder)
{
    if (folder.isEmpty())
        return;
    m_changed.insert(folder);
    if (!m_reportTimer.isActive())
        m_reportTimer.start();
}

void FolderWatcher::leave(const QString &folder)
{
    // What is below has gone with it and is found at its new place, where there is one.
    const QString below = folder + QLatin1Char('/');
    for (auto entry = m_watches.begin(); entry != m_watches.end();) {
        if (entry.key() != folder && !entry.key().startsWith(below)) {
            ++entry;
            continue;
        }
        removeFromSystem(entry.value());
        m_folders.remove(entry.value());
        m_polled.remove(entry.key());
        entry = m_watches.erase(entry);
    }
}

void FolderWatcher::readEvents()
{
#ifdef Q_OS_LINUX
    constexpr size_t k_nBufferBytes = 64 << 10;
    alignas(inotify_event) std::array<char, k_nBufferBytes> buffer;
    const QMutexLocker lock(&m_mutex);
    for (;;) {
        const ssize_t nRead = ::read(m_nSystem, buffer.data(), buffer.size());
        if (nRead <= 0)
            return;
        for (ssize_t nPosition = 0; nPosition < nRead;) {
            const auto *pEvent = reinterpret_cast<const inotify_event *>(buffer.data() + nPosition);
            nPosition += ssize_t(sizeof(inotify_event) + pEvent->len);
            if ((pEvent->mask & IN_Q_OVERFLOW) != 0) {
                // Events were lost: anything may have changed.
                for (const QString &folder : qAsConst(m_folders))
                    report(folder);
                continue;
            }
            const QString folder = m_folders.value(pEvent->wd);
            report(folder);
            // The system drops its watch with the last three; whoever looks at the folder again then gets a new one.
            if ((pEvent->mask & (IN_MOVE_SELF | IN_DELETE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0 && !folder.isEmpty())
                leave(folder);
        }
    }
#endif
}

void FolderWatcher::poll()
{
    const QMutexLocker lock(&m_mutex);
    if (m_polled.isEmpty())
        m_pollTimer.stop();
    const int nTurns = qMax(k_nPollsForAll, m_polled.size() / k_nMostWithOnePoll);
    int nTurn = ++m_nPolls % nTurns;
    for (auto entry = m_polled.begin(); entry != m_polled.end(); ++entry) {
        const qint64 nState = stateOf(entry.key());
        if (nTurn++ % nTurns == 0 || nState != entry.value())
            report(entry.key());
        entry.value() = nState;
    }
}
