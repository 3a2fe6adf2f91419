#include "actions/FolderExport.h"

#include "files/NativePath.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

// Files above this size are put on the disk one by one, smaller ones together.
constexpr qint64 k_nLarge = qint64(8) << 20;
constexpr int k_nMostTogether = 2000;
constexpr qint64 k_nMostBytesTogether = qint64(64) << 20;
/** Copying is not the end: until everything has its name there is something left to do. */
constexpr double k_fLastPercentBeforeEnd = 99.0;

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(FolderExport)
};

} // namespace

ByteMeter::ByteMeter(ActionTask &task, const FileRecordList &files)
    : m_task(task)
    , m_nTotalFiles(files.size())
{
    for (const FileRecordPtr &pRecord : files)
        m_nTotalBytes += pRecord->row().nSize;
}

bool ByteMeter::add(qint64 nBytes)
{
    m_nBytes += nBytes;
    const double fShare = m_nTotalBytes > 0 ? double(m_nBytes) / double(m_nTotalBytes)
                                            : double(m_nFiles) / double(qMax(1, m_nTotalFiles));
    report(qBound(0.0, fShare, 1.0) * k_fLastPercentBeforeEnd);
    return !m_task.isCancelled();
}

void ByteMeter::fileDone()
{
    ++m_nFiles;
    add(0);
}

void ByteMeter::finish()
{
    report(100.0);
}

void ByteMeter::report(double fPercent)
{
    m_task.report({fPercent, m_nTotalFiles, m_nFiles});
}

FolderExport::FolderExport(const QString &folder, FileRecordList files, const Leftovers &leftovers)
    : m_folder(nativePath(folder))
    , m_files(std::move(files))
    , m_leftovers(leftovers)
{
}

void FolderExport::fail(const IoStatus &status, const FileRecordPtr &pRecord)
{
    const qint64 nId = pRecord != nullptr ? pRecord->fileId() : 0;
    m_outcome.addError(status.outcomeCode(), status.error, nId);
    if (status.kind == IoStatus::Missing && nId != 0)
        m_outcome.missing.append(nId);
}

bool FolderExport::prepare()
{
    const QString what = QFile::decodeName(m_folder);
    m_target.reset(::open(m_folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (m_target.isValid()) {
        m_pStaging = m_leftovers.make(m_folder);
        if (::mkdir(m_pStaging->path().constData(), 0700) == 0)
            m_staging.reset(::open(m_pStaging->path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
    if (!m_staging.isValid()) {
        fail(IoStatus::ofErrno(errno, what));
        return false;
    }
    m_pPublisher = std::make_unique<TargetNames::Publisher>(m_target.get());
    return true;
}

ActionOutcome FolderExport::run(ActionTask &task)
{
    if (!prepare())
        return m_outcome;
    ByteMeter meter(task, m_files);
    bool bGoOn = true;
    for (int i = 0; bGoOn && i < m_files.size(); ++i) {
        bGoOn = copyNext(i, &meter);
        const bool bEnough = m_written.size() >= k_nMostTogether || m_nWrittenBytes >= k_nMostBytesTogether;
        if (bGoOn && bEnough)
            bGoOn = publish(&meter);
    }
    if (bGoOn)
        bGoOn = publish(&meter);
    if (bGoOn && !isTargetStillThere())
        fail({IoStatus::Failed, Words::tr("The folder %1 went away").arg(QFile::decodeName(m_folder))});
    if (m_outcome.nCode == ActionOutcome::Done)
        meter.finish();
    return m_outcome;
}

bool FolderExport::copyNext(int nIndex, ByteMeter *pMeter)
{
    const FileRecordPtr &pRecord = m_files.at(nIndex);
    const QByteArray source = nativePath(pRecord->filePath());
    const QByteArray staged = QByteArray::number(nIndex);
    const bool bSync = m_files.size() == 1 || pRecord->row().nSize >= k_nLarge;
    const IoStatus status =
        copyFile(source, m_staging.get(), staged, bSync, [pMeter](qint64 nBytes) { return pMeter->add(nBytes); });
    if (!status.isDone()) {
        ::unlinkat(m_staging.get(), staged.constData(), 0);
        fail(status, pRecord);
        // What is wrong with one file leaves the others alone; a full disk and the user's word do not.
        return status.kind == IoStatus::Missing || status.kind == IoStatus::Failed;
    }
    m_bUnsynced = m_bUnsynced || !bSync;
    m_nWrittenBytes += pRecord->row().nSize;
    m_written.append({pRecord, staged, source.mid(source.lastIndexOf('/') + 1)});
    pMeter->fileDone();
    return pMeter->add(0) || (fail({IoStatus::Cancelled, Words::tr("Cancelled")}), false);
}

bool FolderExport::publish(ByteMeter *pMeter)
{
    if (m_bUnsynced && ::syncfs(m_staging.get()) != 0) {
        fail(IoStatus::ofErrno(errno, QFile::decodeName(m_folder)));
        return false;
    }
    for (const Written &file : qAsConst(m_written)) {
        if (!pMeter->add(0)) {
            fail({IoStatus::Cancelled, Words::tr("Cancelled")});
            return false;
        }
        QByteArray name;
        const int nError = m_pPublisher->publish(m_staging.get(), file.stagedName, file.finalName, &name);
        if (nError != 0)
            fail(IoStatus::ofErrno(nError == ENOENT ? EIO : nError, file.pRecord->fileName()), file.pRecord);
    }
    m_written.clear();
    m_nWrittenBytes = 0;
    m_bUnsynced = false;
    ::fsync(m_target.get());
    return true;
}

bool FolderExport::isTargetStillThere() const
{
    struct stat open = {};
    struct stat named = {};
    return ::fstat(m_target.get(), &open) == 0 && ::stat(m_folder.constData(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}
