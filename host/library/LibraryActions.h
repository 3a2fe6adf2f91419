#pragma once

#include "interfaces/actions/ICommentAction.h"
#include "interfaces/actions/ITagAction.h"

#include <QPointer>
#include <QSet>

class Library;

/** The library's answer to a request: immutable. */
class LibraryResponse final : public IResponseInfo {
public:
    /** Success, or a failure with this message for these files. */
    static QSharedPointer<const IResponseInfo> make(bool bDone, const QString &error, const QVector<qint64> &fileIds);

    int returnCode() const override { return m_nReturnCode; }
    QString errorMessage() const override { return m_errors.join(QLatin1Char('\n')); }
    QStringList errorList() const override { return m_errors; }
    QVector<qint64> failedFiles() const override { return m_failed; }
    QVector<qint64> skippedFiles() const override { return {}; }
    QVector<qint64> missingFiles() const override { return {}; }

private:
    int m_nReturnCode = Success;
    QStringList m_errors;
    QVector<qint64> m_failed;
};

/** Stores region notes in the library. Owner: shared with the preview. Thread: GUI thread only. */
class LibraryCommentAction final : public ICommentAction {
    Q_OBJECT

public:
    explicit LibraryCommentAction(Library *pLibrary);
    qint64 setCommentsOfFile(qint64 nFileId, const QVector<NoteRecord> &notes) override;

private:
    const QPointer<Library> m_pLibrary;
    QSet<qint64> m_running;
};

/** Links labels with files in the library. Owner: shared with the preview. Thread: GUI thread only. */
class LibraryTagAction final : public ITagAction {
    Q_OBJECT

public:
    explicit LibraryTagAction(Library *pLibrary);
    qint64 associateTagsWithFiles(const QVector<qint64> &fileIds, const TagRecordList &tags) override;

private:
    const QPointer<Library> m_pLibrary;
    QSet<qint64> m_running;
};
