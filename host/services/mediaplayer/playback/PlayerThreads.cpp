#include "services/mediaplayer/playback/PlayerThreads.h"

#include "services/mediaplayer/playback/PlayerThread.h"

namespace {

// More than anybody opens before the first of them answers.
constexpr int kMostReaders = 8;
constexpr int kIdleReaderMsec = 1000;

} // namespace

PlayerThreads::PlayerThreads()
{
    m_readers.setMaxThreadCount(kMostReaders);
    m_readers.setExpiryTimeout(kIdleReaderMsec);
}

PlayerThreads::~PlayerThreads()
{
    endAll();
}

PlayerThread *PlayerThreads::create(const PlayerSetup &setup)
{
    auto *pThread = new PlayerThread(setup);
    m_threads.append(pThread);
    // Removed in the GUI thread when run() has returned, or waited for in endAll.
    QObject::connect(pThread, &QThread::finished, pThread, [this, pThread] {
        m_threads.removeOne(pThread);
        pThread->wait();
        pThread->deleteLater();
    });
    return pThread;
}

void PlayerThreads::end(PlayerThread *pThread)
{
    pThread->quit();
    if (pThread->hasBegun())
        return;
    m_threads.removeOne(pThread);
    delete pThread;
}

void PlayerThreads::endAll()
{
    for (PlayerThread *pThread : qAsConst(m_threads))
        pThread->quit();
    for (PlayerThread *pThread : qAsConst(m_threads)) {
        pThread->wait();
        delete pThread;
    }
    m_threads.clear();
}
