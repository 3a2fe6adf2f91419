#include "services/basemodule/documents/PdfStore.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

namespace basemodule {

PdfStore::PdfStore(const QString &folder, qint64 nBudget)
    : m_folder(folder + QStringLiteral("/pages"))
    , m_nBudget(nBudget)
{
}

QString PdfStore::linkPath(const FileKey &key) const
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(key.path.toUtf8());
    for (const qint64 nPart : {key.size, key.modified, qint64(key.inode)})
        hash.addData('/' + QByteArray::number(nPart));
    return m_folder + QLatin1Char('/') + QString::fromLatin1(hash.result().toHex()) + QStringLiteral(".link");
}

QString PdfStore::pdfPath(const QByteArray &digest, Extent extent) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(digest) +
           (extent == Extent::Whole ? QStringLiteral(".pdf") : QStringLiteral("-first.pdf"));
}

QString PdfStore::find(const FileKey &key, Extent extent) const
{
    // The link's target is the digest itself, not a path: it is read, never followed.
    const QString target = QFile::symLinkTarget(linkPath(key));
    return target.isEmpty() ? QString() : findContent(QFileInfo(target).fileName().toLatin1(), extent);
}

QString PdfStore::findContent(const QByteArray &digest, Extent extent) const
{
    for (const Extent candidate : {Extent::Whole, extent}) {
        QFile file(pdfPath(digest, candidate));
        if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
            continue;
        // What was used last is pruned last.
        file.setFileTime(QDateTime::currentDateTime(), QFileDevice::FileModificationTime);
        return file.fileName();
    }
    return {};
}

QString PdfStore::keep(const QString &madePath, const QByteArray &digest, Extent extent)
{
    const QString path = pdfPath(digest, extent);
    if (!QDir().mkpath(m_folder))
        return {};
    QFile::setPermissions(m_folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    if (std::rename(QFile::encodeName(madePath).constData(), QFile::encodeName(path).constData()) != 0)
        return {};
    prune(path);
    return path;
}

void PdfStore::link(const FileKey &key, const QByteArray &digest)
{
    const QString path = linkPath(key);
    if (QFile::symLinkTarget(path).endsWith(QString::fromLatin1(digest)))
        return;
    QFile::remove(path);
    QFile::link(QString::fromLatin1(digest), path);
}

void PdfStore::discard(const QString &pdfPath)
{
    if (pdfPath.startsWith(m_folder))
        QFile::remove(pdfPath);
}

void PdfStore::prune(const QString &keptPath)
{
    const QMutexLocker lock(&m_pruning);
    const QDir folder(m_folder);
    const QFileInfoList files =
        folder.entryInfoList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Time); // the newest first
    qint64 nKept = QFileInfo(keptPath).size();
    bool bRemoved = false;
    for (const QFileInfo &file : files) {
        if (file.filePath() == keptPath)
            continue;
        nKept += file.size();
        if (nKept > m_nBudget)
            bRemoved |= QFile::remove(file.filePath());
    }
    if (!bRemoved)
        return;
    const QStringList links = folder.entryList({QStringLiteral("*.link")}, QDir::System | QDir::Files);
    for (const QString &link : links) {
        const QByteArray digest = QFileInfo(QFile::symLinkTarget(folder.filePath(link))).fileName().toLatin1();
        if (!QFile::exists(pdfPath(digest, Extent::Whole)) && !QFile::exists(pdfPath(digest, Extent::FirstPage)))
            QFile::remove(folder.filePath(link));
    }
}

} // namespace basemodule
