// Tells the thread sanitizer what Qt does. Qt itself is not instrumented and locks with system calls of its own, so
// that without help every mutex, pool task and queued signal of ours would look like a race. Linked into a program,
// these definitions stand before those of the Qt libraries, note the order that Qt guarantees, and call the original.

#if defined(__SANITIZE_THREAD__)

#include <QCoreApplication>
#include <QEvent>
#include <QMutex>
#include <QObject>
#include <QReadWriteLock>
#include <QThread>
#include <QThreadPool>

#include <cstring>
#include <dlfcn.h>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <sanitizer/tsan_interface.h>

namespace {
int queuedSignals; ///< Stands for all queued signals, calls and events together.

template <class Function>
Function original(const char *symbol)
{
    void *const address = dlsym(RTLD_NEXT, symbol);
    Function function;
    static_assert(sizeof(function) == sizeof(address), "a plain function");
    std::memcpy(&function, &address, sizeof(function));
    return function;
}

/** Stands in the pool for a runnable, to see it begin and end. */
class Watched final : public QRunnable {
public:
    Watched(QThreadPool *pPool, QRunnable *pRunnable)
        : m_pPool(pPool)
        , m_pRunnable(pRunnable)
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        s_waiting[pRunnable] = this;
    }

    static Watched *take(QRunnable *pRunnable)
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        const auto found = s_waiting.find(pRunnable);
        return found == s_waiting.end() ? nullptr : found->second;
    }

    void run() override
    {
        __tsan_acquire(this);
        forget();
        const bool deletes = m_pRunnable->autoDelete();
        m_pRunnable->run();
        if (deletes) {
            delete m_pRunnable;
        }
        __tsan_release(m_pPool);
    }

    ~Watched() override { forget(); }

private:
    void forget()
    {
        const std::lock_guard<std::mutex> lock(s_mutex);
        const auto found = s_waiting.find(m_pRunnable);
        if (found != s_waiting.end() && found->second == this) {
            s_waiting.erase(found);
        }
    }

    static std::mutex s_mutex;
    static std::map<QRunnable *, Watched *> s_waiting;

    QThreadPool *m_pPool;
    QRunnable *m_pRunnable;
};

std::mutex Watched::s_mutex;
std::map<QRunnable *, Watched *> Watched::s_waiting;
} // namespace

void noteDelivery()
{
    __tsan_acquire(&queuedSignals);
}

void QMutex::lock() noexcept
{
    static const auto next = original<void (*)(QMutex *)>("_ZN6QMutex4lockEv");
    next(this);
    __tsan_acquire(this);
}

bool QMutex::tryLock(int timeout) noexcept
{
    static const auto next = original<bool (*)(QMutex *, int)>("_ZN6QMutex7tryLockEi");
    const bool locked = next(this, timeout);
    if (locked) {
        __tsan_acquire(this);
    }
    return locked;
}

void QMutex::unlock() noexcept
{
    static const auto next = original<void (*)(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    next(this);
}

void QReadWriteLock::lockForRead()
{
    static const auto next = original<void (*)(QReadWriteLock *)>("_ZN14QReadWriteLock11lockForReadEv");
    next(this);
    __tsan_acquire(this);
}

void QReadWriteLock::lockForWrite()
{
    static const auto next = original<void (*)(QReadWriteLock *)>("_ZN14QReadWriteLock12lockForWriteEv");
    next(this);
    __tsan_acquire(this);
}

void QReadWriteLock::unlock()
{
    static const auto next = original<void (*)(QReadWriteLock *)>("_ZN14QReadWriteLock6unlockEv");
    __tsan_release(this);
    next(this);
}

QThread *QThread::createThreadImpl(std::future<void> &&function)
{
    static const auto next =
        original<QThread *(*)(std::future<void> &&)>("_ZN7QThread16createThreadImplEOSt6futureIvE");
    auto work = std::make_shared<std::future<void>>(std::move(function));
    return next(std::async(std::launch::deferred, [work] {
        work->get();
        __tsan_release(QThread::currentThread());
    }));
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto next = original<bool (*)(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool done = next(this, deadline);
    __tsan_acquire(this);
    return done;
}

void QThreadPool::start(QRunnable *pRunnable, int nPriority)
{
    static const auto next = original<void (*)(QThreadPool *, QRunnable *, int)>("_ZN11QThreadPool5startEP9QRunnablei");
    auto *const pWatched = new Watched(this, pRunnable);
    __tsan_release(pWatched);
    next(this, pWatched, nPriority);
}

bool QThreadPool::tryTake(QRunnable *pRunnable)
{
    static const auto next = original<bool (*)(QThreadPool *, QRunnable *)>("_ZN11QThreadPool7tryTakeEP9QRunnable");
    Watched *const pWatched = Watched::take(pRunnable);
    if (pWatched == nullptr || !next(this, pWatched)) {
        return false;
    }
    delete pWatched;
    return true;
}

bool QThreadPool::waitForDone(int nMsecs)
{
    static const auto next = original<bool (*)(QThreadPool *, int)>("_ZN11QThreadPool11waitForDoneEi");
    const bool done = next(this, nMsecs);
    __tsan_acquire(this);
    return done;
}

void QMetaObject::activate(QObject *pSender, const QMetaObject *pMeta, int nSignal, void **ppArguments)
{
    static const auto next =
        original<void (*)(QObject *, const QMetaObject *, int, void **)>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&queuedSignals);
    next(pSender, pMeta, nSignal, ppArguments);
}

bool QMetaObject::invokeMethodImpl(QObject *pObject, QtPrivate::QSlotObjectBase *pSlot, Qt::ConnectionType type,
                                   void *pResult)
{
    static const auto next = original<bool (*)(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    __tsan_release(&queuedSignals);
    return next(pObject, pSlot, type, pResult);
}

void QCoreApplication::postEvent(QObject *pReceiver, QEvent *pEvent, int nPriority)
{
    static const auto next =
        original<void (*)(QObject *, QEvent *, int)>("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&queuedSignals);
    next(pReceiver, pEvent, nPriority);
}

bool QObject::event(QEvent *pEvent)
{
    static const auto next = original<bool (*)(QObject *, QEvent *)>("_ZN7QObject5eventEP6QEvent");
    __tsan_acquire(&queuedSignals);
    const bool recognised = next(this, pEvent);
    // What a thread's event loop did is done for whoever waits for that thread.
    __tsan_release(QThread::currentThread());
    return recognised;
}

#endif
