#include "actions/PackImporter.h"

#include "actions/FileCopy.h"
#include "actions/PackArchive.h"
#include "actions/TargetNames.h"
#include "files/NativePath.h"
#include "library/FileTypes.h"
#include "library/FolderScanner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(PackImporter)
};

} // namespace

PackImporter::PackImporter(const QString &packPath, const QString &parentFolder, const QString &coverFolder,
                           std::shared_ptr<const Leftovers> pLeftovers, PictureReaderFunction readPicture)
    : m_packPath(packPath)
    , m_parentFolder(parentFolder)
    , m_coverFolder(coverFolder)
    , m_pLeftovers(std::move(pLeftovers))
    , m_readPicture(std::move(readPicture))
    , m_reader(packPath)
{
}

void PackImporter::fail(int nCode, const QString &reason)
{
    m_outcome.addError(nCode,
                       Words::tr("The pack %1 cannot be imported: %2").arg(QFileInfo(m_packPath).fileName(), reason));
}

void PackImporter::failWithErrno(int nError)
{
    const IoStatus status = IoStatus::ofErrno(nError, m_parentFolder);
    fail(status.outcomeCode(), status.error);
}

bool PackImporter::goOn(ActionTask &task)
{
    if (!task.isCancelled())
        return true;
    m_outcome.addError(ActionOutcome::Cancelled, Words::tr("Cancelled"));
    return false;
}

bool PackImporter::prepare()
{
    const QByteArray parent = nativePath(m_parentFolder);
    QDir().mkpath(m_parentFolder);
    struct statvfs space = {};
    if (::statvfs(parent.constData(), &space) == 0 &&
        m_reader.totalBytes() / qint64(space.f_frsize) > qint64(space.f_bavail)) {
        failWithErrno(ENOSPC);
        return false;
    }
    m_pStaging = m_pLeftovers->make(parent);
    QDir().mkpath(m_coverFolder);
    m_pPreviews = m_pLeftovers->make(QFile::encodeName(m_coverFolder));
    if (::mkdir(m_pStaging->path().constData(), 0755) != 0 || ::mkdir(m_pPreviews->path().constData(), 0700) != 0) {
        failWithErrno(errno);
        return false;
    }
    m_folder.reset(::open(m_pStaging->path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const QVector<PackedFile> &files = m_reader.files();
    m_names.resize(2 * files.size());
    for (int i = 0; i < files.size(); ++i) {
        m_fileOfEntry.insert(files.at(i).entry, i);
        m_names[i] = freeName(files.at(i).name);
        if (files.at(i).previewEntry.isEmpty())
            continue;
        m_fileOfEntry.insert(files.at(i).previewEntry, files.size() + i);
        m_names[files.size() + i] = QByteArray::number(i);
    }
    return true;
}

QByteArray PackImporter::freeName(const QByteArray &wanted)
{
    QByteArray name = wanted;
    for (int nNumber = 1; m_usedNames.contains(QString::fromUtf8(name).toCaseFolded()); ++nNumber)
        name = TargetNames::numbered(wanted, nNumber);
    m_usedNames.insert(QString::fromUtf8(name).toCaseFolded());
    return name;
}

bool PackImporter::begin(const QString &entry)
{
    m_nCurrent = m_fileOfEntry.value(entry, -1);
    const bool bPreview = m_nCurrent >= m_reader.files().size();
    const QByteArray path = (bPreview ? m_pPreviews : m_pStaging)->path() + '/' + m_names.value(m_nCurrent);
    m_file.reset(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!m_file.isValid())
        failWithErrno(errno);
    return m_file.isValid();
}

bool PackImporter::write(const char *pData, qint64 nBytes)
{
    while (nBytes > 0) {
        const ssize_t nWritten = ::write(m_file.get(), pData, size_t(nBytes));
        if (nWritten < 0) {
            failWithErrno(errno);
            return false;
        }
        pData += nWritten;
        nBytes -= nWritten;
        m_nBytes += nWritten;
    }
    return true;
}

bool PackImporter::end()
{
    if (m_nCurrent < m_reader.files().size()) {
        const PackedFile &file = m_reader.files().at(m_nCurrent);
        struct timespec times[2] = {};
        times[0].tv_nsec = UTIME_NOW;
        times[1].tv_sec = time_t(file.nModifiedMsec / 1000 - (file.nModifiedMsec % 1000 < 0 ? 1 : 0));
        times[1].tv_nsec = long((file.nModifiedMsec - qint64(times[1].tv_sec) * 1000) * 1000000);
        // The owner can always read and replace what was imported; foreign programs become no programs.
        if (::fchmod(m_file.get(), mode_t((file.nMode & 0666) | 0600)) != 0 || ::futimens(m_file.get(), times) != 0)
            errno = 0;
    }
    m_file.reset();
    return true;
}

ActionOutcome PackImporter::run(ActionTask &task)
{
    QString error;
    if (!m_reader.check(&error)) {
        fail(ActionOutcome::Failed, error);
        return m_outcome;
    }
    if (!goOn(task) || !prepare())
        return m_outcome;
    const int nTotal = m_reader.files().size();
    int nFiles = 0;
    PackReader::Sink sink;
    sink.begin = [this](const QString &entry) {
        return begin(entry);
    };
    sink.data = [&](const char *pData, qint64 nBytes) {
        const double fShare = double(m_nBytes) / double(qMax<qint64>(1, m_reader.totalBytes()));
        task.report({qMin(99.0, 99.0 * fShare), nTotal, nFiles});
        return write(pData, nBytes) && goOn(task);
    };
    sink.end = [&] {
        nFiles += m_nCurrent < nTotal ? 1 : 0;
        return end() && goOn(task);
    };
    if (!m_reader.unpack(sink, &error)) {
        if (!error.isEmpty())
            fail(ActionOutcome::Failed, error);
        return m_outcome;
    }
    if (!readPreviews(task))
        return m_outcome;
    if (::syncfs(m_folder.get()) != 0) {
        failWithErrno(errno);
        return m_outcome;
    }
    addRows();
    task.report({100.0, nTotal, nTotal});
    return m_outcome;
}

bool PackImporter::readPreviews(ActionTask &task)
{
    const int nFiles = m_reader.files().size();
    m_covers.resize(nFiles);
    for (int i = 0; i < nFiles; ++i) {
        if (m_names.at(nFiles + i).isEmpty())
            continue;
        // A picture by a stranger is read and written anew like any other; one that cannot be is left out.
        ActionOutcome ignored;
        m_covers[i] = prepareCover(QFile::decodeName(m_pPreviews->path() + '/' + m_names.at(nFiles + i)), m_coverFolder,
                                   *m_pLeftovers, m_readPicture, task, &ignored);
        if (!goOn(task))
            return false;
    }
    return true;
}

QByteArray PackImporter::finalFolder() const
{
    const QByteArray parent = nativePath(m_parentFolder);
    const QString packName = QFileInfo(m_packPath).fileName();
    const QString stem = PackFormat::isPackName(packName) ? packName.chopped(PackFormat::suffix().size()) : packName;
    const QByteArray wanted = TargetNames::portable(stem.toUtf8());
    QByteArray path = parent + '/' + wanted;
    struct stat state = {};
    for (int nNumber = 1; ::lstat(path.constData(), &state) == 0; ++nNumber)
        path = parent + '/' + TargetNames::numbered(wanted, nNumber);
    return path;
}

void PackImporter::addRows()
{
    m_import.stagedFolder = m_pStaging->path();
    m_import.finalFolder = finalFolder();
    const QString folder = QFile::decodeName(m_import.finalFolder);
    const QVector<PackedFile> &files = m_reader.files();
    for (int i = 0; i < files.size(); ++i) {
        ImportedFile file;
        file.row = readFileRow(QFile::decodeName(m_import.stagedFolder), QFile::decodeName(m_names.at(i)));
        file.row.folder = folder;
        file.notes = files.at(i).notes;
        file.labels = files.at(i).labels;
        if (m_covers.at(i).pFile != nullptr) {
            file.coverFile = QFile::decodeName(m_covers.at(i).pFile->path());
            file.coverSuffix = m_covers.at(i).suffix;
            m_import.guards.push_back(m_covers.at(i).pFile);
        }
        m_import.files.append(file);
    }
    m_import.guards.push_back(m_pStaging);
}

LibraryImport PackImporter::takeImport()
{
    return std::move(m_import);
}
