#pragma once

#include "services/basemodule/decode/DecodeRequest.h"
#include "services/basemodule/documents/ConversionJob.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace basemodule {

/**
 * Turns documents of other programs into PDF files: presentations and office documents through LibreOffice, PostScript
 * through Ghostscript, each once for its content. Whoever wants a document waits in `convert`; those who want the same
 * one share a conversion, which is killed when the last of them gives up.
 *
 * Owner: the base module. Thread: any.
 */
class DocumentConverter {
    Q_DECLARE_TR_FUNCTIONS(DocumentConverter)

public:
    using Proceed = std::function<bool()>;
    using ProblemHandler = std::function<void(const QString &)>;

    explicit DocumentConverter(const ConverterSettings &settings);
    ~DocumentConverter();

    /** Waits for the document, until `proceed` says no. Called often meanwhile, it may block as well. */
    Conversion convert(const QString &path, Extent extent, DocumentWait wait, const Proceed &proceed);

    /** A PDF file that starts with the document's first page, as the request wants it; empty when there is none. */
    QString firstPage(const QString &path, const DecodeRequest &request);

    /** Whether a conversion fails for want of a program rather than for the document. */
    bool isProgramMissing(PictureFormat format) const;

    /** A result that turned out to be unusable is made anew the next time. */
    void discard(const QString &pdf) { m_store.discard(pdf); }

    /** After an answer of `proceed` changed. */
    void wake() { m_changed.notify_all(); }

    /** Is told of each missing program, once for the background and whenever somebody looks; in any thread. */
    void setProblemHandler(const ProblemHandler &handler);

    /** Kills what runs and waits for its end; nothing is converted afterwards. */
    void shutdown();

private:
    struct Job {
        FileKey key;
        Extent extent = Extent::Whole;
        std::atomic_bool bCancelled{false};
        bool bDone = false;
        int nUsers = 0;
        Conversion result;
    };
    using JobPointer = std::shared_ptr<Job>;

    QString programFor(PictureFormat format) const;
    void reportMissing(PictureFormat format, DocumentWait wait);
    bool isKnownToFail(const FileKey &key) const;
    JobPointer join(const FileKey &key, Extent extent, PictureFormat format, const QString &program);
    void work(const JobPointer &pJob, PictureFormat format, const QString &program);
    Conversion waitFor(const JobPointer &pJob, const Proceed &proceed);
    bool takeTurn(const Proceed &proceed);
    void endTurn();

    const ConverterSettings m_settings;
    PdfStore m_store;
    QThreadPool m_workers;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::list<JobPointer> m_jobs;
    std::deque<FileKey> m_failed; ///< Documents that are at fault, so that nobody waits for them twice.
    bool m_bTurnTaken = false;    ///< A background conversion is under way.
    bool m_bStop = false;
    ProblemHandler m_problemHandler;
    bool m_bOfficeReported = false;
    bool m_bPostScriptReported = false;
};

} // namespace basemodule
