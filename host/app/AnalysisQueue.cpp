#include "app/AnalysisQueue.h"

#include "library/FileTypes.h"
#include "library/Library.h"

#include <QThread>

#include <utility>

namespace {

constexpr int k_nReportMsec = 200;

bool needsAnalysis(const FileRecord &record)
{
    return record.row().analysis == AnalysisState::Waiting && record.row().bAvailable &&
           FileTypes::hasPicture(record.row().nType);
}

} // namespace

AnalysisQueue::AnalysisQueue(Library *pLibrary, QObject *pParent)
    : QObject(pParent)
    , m_pLibrary(pLibrary)
{
    m_pool.setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
    m_reportTimer.setSingleShot(true);
    connect(&m_reportTimer, &QTimer::timeout, this, &AnalysisQueue::report);
    connect(pLibrary, &Library::signalRecords, this, &AnalysisQueue::addRecords);
    connect(pLibrary, &Library::signalRemoved, this, &AnalysisQueue::removeFiles);
    connect(pLibrary, &Library::signalMissing, this, &AnalysisQueue::removeFiles);
    connect(pLibrary, &Library::signalCleared, this, &AnalysisQueue::forgetAll);
}

AnalysisQueue::~AnalysisQueue()
{
    setAnalysis(nullptr);
}

void AnalysisQueue::setAnalysis(IHostAnalysis *pAnalysis)
{
    if (m_pAnalysis != nullptr) {
        m_bCancelled = true;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_waiting.clear();
        }
        m_pool.waitForDone();
        if (!m_finished.isEmpty())
            m_pLibrary->storeAnalysis(std::exchange(m_finished, {}));
    }
    m_pAnalysis = pAnalysis;
    m_bCancelled = false;
    startWorkers();
}

void AnalysisQueue::addRecords(const FileRecordList &records)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const FileRecordPtr &pRecord : records) {
            if (!needsAnalysis(*pRecord) || m_analysed.value(pRecord->fileId()) == pRecord->row().nModifiedMsec)
                continue;
            if (!m_waiting.contains(pRecord->fileId())) {
                m_order.push_back(pRecord->fileId());
                ++m_nOpen;
            }
            m_waiting.insert(pRecord->fileId(), pRecord->row());
        }
    }
    startWorkers();
}

void AnalysisQueue::removeFiles(const QVector<qint64> &fileIds)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const qint64 nId : fileIds)
        m_nOpen -= m_waiting.remove(nId);
}

void AnalysisQueue::forgetAll()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_nOpen -= m_waiting.size();
    m_waiting.clear();
    m_order.clear();
    m_heldBack.clear();
    m_nDone = 0;
}

void AnalysisQueue::raise(const QVector<qint64> &fileIds)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto id = fileIds.crbegin(); id != fileIds.crend(); ++id) {
        if (m_waiting.contains(*id))
            m_order.push_front(*id);
    }
}

void AnalysisQueue::startWorkers()
{
    if (m_pAnalysis == nullptr)
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (m_nWorkers < qMin(m_pool.maxThreadCount(), int(m_waiting.size()))) {
        ++m_nWorkers;
        m_pool.start([this] { work(); });
    }
    if (!m_waiting.isEmpty() && !m_reportTimer.isActive())
        m_reportTimer.start(k_nReportMsec);
}

bool AnalysisQueue::takeNext(FileRow *pFile)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (!m_order.empty() && !m_bCancelled) {
        const qint64 nId = m_order.front();
        m_order.pop_front();
        const auto found = m_waiting.find(nId);
        if (found == m_waiting.end())
            continue;
        if (FileTypes::isConverted(found->nType)) {
            if (m_bConverting) {
                m_heldBack.push_back(nId);
                continue;
            }
            m_bConverting = true;
        }
        *pFile = found.value();
        m_waiting.erase(found);
        return true;
    }
    // Under the lock: whoever adds a file after this starts another worker.
    --m_nWorkers;
    return false;
}

void AnalysisQueue::work()
{
    QThread::currentThread()->setPriority(QThread::LowPriority);
    FileRow file;
    while (takeNext(&file)) {
        const QString path = file.folder + QLatin1Char('/') + file.name;
        const AnalysisOutcome outcome = m_pAnalysis->analyse(path, m_bCancelled);
        if (FileTypes::isConverted(file.nType))
            endConversion();
        QMetaObject::invokeMethod(
            this, [this, file, outcome] { takeOutcome(file, outcome); }, Qt::QueuedConnection);
    }
}

void AnalysisQueue::endConversion()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bConverting = false;
    m_order.insert(m_order.begin(), m_heldBack.begin(), m_heldBack.end());
    m_heldBack.clear();
}

void AnalysisQueue::takeOutcome(const FileRow &file, AnalysisOutcome outcome)
{
    m_nOpen = qMax(0, m_nOpen - 1);
    // Whatever came of it: the last one to end says that nothing is left.
    if (!m_reportTimer.isActive())
        m_reportTimer.start(k_nReportMsec);
    if (outcome == AnalysisOutcome::Cancelled)
        return;
    ++m_nDone;
    FileRow finished = file;
    finished.analysis = outcome == AnalysisOutcome::Done ? AnalysisState::Done : AnalysisState::Impossible;
    m_finished.append(finished);
    m_analysed.insert(file.id, file.nModifiedMsec);
    if (outcome == AnalysisOutcome::Impossible)
        Q_EMIT signalImpossible(file.id);
}

void AnalysisQueue::report()
{
    if (!m_finished.isEmpty())
        m_pLibrary->storeAnalysis(std::exchange(m_finished, {}));
    const bool bBusy = m_nOpen > 0;
    Q_EMIT signalProgress(bBusy ? m_nDone : 0, bBusy ? m_nDone + m_nOpen : 0);
    if (!bBusy)
        m_nDone = 0;
}
