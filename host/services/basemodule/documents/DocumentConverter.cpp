#include "services/basemodule/documents/DocumentConverter.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>

namespace basemodule {

namespace {

// A conversion that is looked at, one that was just given up, and one in the background.
constexpr int kWorkers = 3;
constexpr size_t kMostFailures = 1000;
// An answer that changes without a word is noticed after this time.
constexpr std::chrono::milliseconds kLook(50);

QString findOffice()
{
    for (const char *pName : {"soffice", "libreoffice"}) {
        const QString found = QStandardPaths::findExecutable(QString::fromLatin1(pName));
        if (found.isEmpty())
            continue;
        // Without the two programs in front of it: quicker, and it dies with us.
        const QString program = QFileInfo(QFileInfo(found).canonicalFilePath()).path() + QStringLiteral("/soffice.bin");
        return QFileInfo(program).isExecutable() ? program : found;
    }
    return {};
}

QString executable(const QString &configured)
{
    return QFileInfo(configured).isExecutable() ? configured : QString();
}

} // namespace

DocumentConverter::DocumentConverter(const ConverterSettings &settings)
    : m_settings(settings)
    , m_store(settings.folder, settings.diskBudget)
{
    m_workers.setMaxThreadCount(kWorkers);
}

DocumentConverter::~DocumentConverter()
{
    shutdown();
}

void DocumentConverter::setProblemHandler(const ProblemHandler &handler)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_problemHandler = handler;
}

QString DocumentConverter::programFor(PictureFormat format) const
{
    // Looked for anew each time: it may be installed while we run.
    if (format == PictureFormat::Office)
        return m_settings.officeProgram.isEmpty() ? findOffice() : executable(m_settings.officeProgram);
    return m_settings.postScriptProgram.isEmpty() ? QStandardPaths::findExecutable(QStringLiteral("gs"))
                                                  : executable(m_settings.postScriptProgram);
}

bool DocumentConverter::isProgramMissing(PictureFormat format) const
{
    const bool bNeedsOne = format == PictureFormat::Office || format == PictureFormat::PostScript;
    return bNeedsOne && programFor(format).isEmpty();
}

void DocumentConverter::reportMissing(PictureFormat format, DocumentWait wait)
{
    ProblemHandler handler;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        bool &bReported = format == PictureFormat::Office ? m_bOfficeReported : m_bPostScriptReported;
        // Whoever looks at such a document is told again: what is in sight may be about something else by now.
        if ((bReported && wait == DocumentWait::Worker) || !m_problemHandler)
            return;
        bReported = true;
        handler = m_problemHandler;
    }
    handler(
        format == PictureFormat::Office
            ? tr("Presentations and office documents have no pages: LibreOffice is missing. "
                 "Please install the packages %1.")
                  .arg(QStringLiteral("libreoffice-impress-nogui, libreoffice-writer-nogui, libreoffice-calc-nogui"))
            : tr("PostScript files have no pages: Ghostscript is missing. Please install the package %1.")
                  .arg(QStringLiteral("ghostscript")));
}

QString DocumentConverter::firstPage(const QString &path, const DecodeRequest &request)
{
    QElapsedTimer clock;
    clock.start();
    const auto proceed = [&] {
        const bool bPatient = request.wait != DocumentWait::Picture || clock.elapsed() < m_settings.patienceMsec;
        return bPatient && request.proceed();
    };
    return convert(path, Extent::FirstPage, request.wait, proceed).pdf;
}

Conversion DocumentConverter::convert(const QString &path, Extent wanted, DocumentWait wait, const Proceed &proceed)
{
    Conversion result;
    const FileKey key = fileKey(path);
    const PictureFormat format = key.isNull() ? PictureFormat::Unknown : pictureFormat(path);
    result.outcome = Conversion::Impossible;
    if (format != PictureFormat::Office && format != PictureFormat::PostScript && format != PictureFormat::Pdf)
        return result;
    // Whoever sees the first page of a presentation will turn to the next.
    const Extent extent = isPresentationSuffix(QFileInfo(path).suffix()) ? Extent::Whole : wanted;
    result.pdf = m_store.find(key, extent);
    if (!result.pdf.isEmpty()) {
        result.outcome = Conversion::Done;
        return result;
    }
    if (isKnownToFail(key))
        return result;
    result.outcome = Conversion::Unavailable;
    if (wait == DocumentWait::Nobody)
        return result;
    const QString program = format == PictureFormat::Pdf ? QString() : programFor(format);
    if (program.isEmpty() && format != PictureFormat::Pdf) {
        reportMissing(format, wait);
        return result;
    }
    const bool bTurn = wait == DocumentWait::Worker;
    result.outcome = Conversion::Cancelled;
    if (bTurn && !takeTurn(proceed))
        return result;
    if (const JobPointer pJob = join(key, extent, format, program))
        result = waitFor(pJob, proceed);
    if (bTurn)
        endTurn();
    return result;
}

bool DocumentConverter::isKnownToFail(const FileKey &key) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::find(m_failed.begin(), m_failed.end(), key) != m_failed.end();
}

bool DocumentConverter::takeTurn(const Proceed &proceed)
{
    // Asked without the lock: it may take its time.
    while (proceed()) {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (m_bStop)
            return false;
        if (!m_bTurnTaken) {
            m_bTurnTaken = true;
            return true;
        }
        m_changed.wait_for(lock, kLook);
    }
    return false;
}

void DocumentConverter::endTurn()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bTurnTaken = false;
    }
    m_changed.notify_all();
}

DocumentConverter::JobPointer DocumentConverter::join(const FileKey &key, Extent extent, PictureFormat format,
                                                      const QString &program)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_bStop)
        return {};
    for (const JobPointer &pJob : m_jobs) {
        const bool bServes = pJob->extent == Extent::Whole || pJob->extent == extent;
        if (pJob->key == key && bServes && !pJob->bCancelled) {
            ++pJob->nUsers;
            return pJob;
        }
    }
    const auto pJob = std::make_shared<Job>();
    pJob->key = key;
    pJob->extent = extent;
    pJob->nUsers = 1;
    m_jobs.push_back(pJob);
    m_workers.start([this, pJob, format, program] { work(pJob, format, program); });
    return pJob;
}

void DocumentConverter::work(const JobPointer &pJob, PictureFormat format, const QString &program)
{
    const auto cancelled = [&pJob] {
        return pJob->bCancelled.load();
    };
    Conversion result;
    result.outcome = Conversion::Cancelled;
    if (!cancelled())
        result = ConversionJob(pJob->key, pJob->extent, format, program, m_settings, m_store, cancelled).run();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        pJob->result = result;
        pJob->bDone = true;
        m_jobs.remove(pJob);
        if (result.outcome == Conversion::Impossible) {
            m_failed.push_back(pJob->key);
            if (m_failed.size() > kMostFailures)
                m_failed.pop_front();
        }
    }
    m_changed.notify_all();
}

Conversion DocumentConverter::waitFor(const JobPointer &pJob, const Proceed &proceed)
{
    bool bProceed = true;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!pJob->bDone && bProceed && !m_bStop) {
        m_changed.wait_for(lock, kLook);
        lock.unlock();
        bProceed = proceed();
        lock.lock();
    }
    if (--pJob->nUsers == 0 && !pJob->bDone)
        pJob->bCancelled = true;
    Conversion cancelled;
    cancelled.outcome = Conversion::Cancelled;
    return pJob->bDone ? pJob->result : cancelled;
}

void DocumentConverter::shutdown()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bStop = true;
        for (const JobPointer &pJob : m_jobs)
            pJob->bCancelled = true;
    }
    m_changed.notify_all();
    m_workers.waitForDone();
}

} // namespace basemodule
