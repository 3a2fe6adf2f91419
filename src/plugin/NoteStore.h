#pragma once

#include "interfaces/data/IResponseInfo.h"
#include "interfaces/data/NoteRecord.h"

#include <QHash>
#include <QObject>
#include <QSharedPointer>
#include <QVector>

#include <optional>

class ICommentAction;
class IPreviewDataSource;

/**
 * Sends lists of region notes to the host and keeps each until the host has stored it: a file that is shown again
 * before the answer, or after a failure, shows the notes that the user made and not those of an older record.
 *
 * Owner: PluginInnerData. Thread: GUI thread.
 */
class NoteStore : public QObject {
    Q_OBJECT

public:
    /** Replaces a file's notes. Returns the host's action id, below 1 when refused; nothing when nobody stores notes.
     */
    std::optional<qint64> send(IPreviewDataSource *pSource, qint64 nFileId, const QVector<NoteRecord> &notes);

    /** The list of a file that the host has not stored yet, else the one that the host's record gives. */
    QVector<NoteRecord> newest(qint64 nFileId, const QVector<NoteRecord> &ofRecord) const;

    /** Lets go of the host's objects; answers that come later mean nothing. */
    void clear();

    /** Asks the preview that is open to show one note of a file. */
    void requestShow(qint64 nFileId, int nPosition);
    /** The note that was asked for and not shown yet; -1 where it is of another file. Forgets it. */
    int takeRequested(qint64 nFileId);

Q_SIGNALS:
    /** The host has stored the newest list of the file. */
    void signal_stored(qint64 nFileId);
    /** The newest list of the file was refused, or could not be stored. */
    void signal_failed(qint64 nFileId);
    void signal_showRequested(qint64 nFileId);

private:
    struct Request {
        qint64 nFileId = 0;
        qint64 nActionId = 0; ///< 0 until the host has given it.
        QSharedPointer<ICommentAction> pAction;
        QMetaObject::Connection connection;
    };
    struct Unstored {
        quint64 nSerial = 0;
        QVector<NoteRecord> notes;
    };

    void take(quint64 nSerial, qint64 nActionId, const ResponseInfoPtr &pInfo);
    void finish(quint64 nSerial, bool bStored);

    QHash<quint64, Request> m_requests;
    QHash<qint64, Unstored> m_unstored;
    QHash<qint64, bool> m_early; ///< Answers that came while a request was being sent.
    quint64 m_nLastSerial = 0;
    bool m_bSending = false;
    qint64 m_nRequestedFile = -1;
    int m_nRequestedNote = -1;
};
