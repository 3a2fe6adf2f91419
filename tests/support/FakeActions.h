#pragma once

#include "FakeRecords.h"
#include "interfaces/actions/ICommentAction.h"
#include "interfaces/actions/IExportAction.h"
#include "interfaces/actions/IFileAction.h"
#include "interfaces/actions/IRecycleAction.h"
#include "interfaces/actions/IRemoveAction.h"
#include "interfaces/actions/ITagAction.h"

#include <functional>

/** When a request is answered. */
enum class Reply {
    InsideRequest, ///< Before the request has returned its id, or the cancellation: the harshest host.
    Queued,        ///< On the next turn of the event loop.
    OnDemand,      ///< When the test calls answer().
    Twice,         ///< On the next turn of the event loop, two times.
    Never,         ///< Accepted and forgotten.
    RefuseZero,    ///< Refused with id 0.
    RefuseNegative ///< Refused with id -1.
};

Q_DECLARE_METATYPE(Reply)

enum class ActionKind { Export, Remove, Recycle, File, Comment, Tag };

/** One request as it reached the host. */
struct ActionRequest {
    ActionKind kind = ActionKind::Export;
    qint64 id = 0;
    QVector<qint64> fileIds;
    QString path;
    bool bPackage = false;
    QVector<NoteRecord> notes;
    TagRecordList tags;
};

/**
 * Where the fake actions of one host keep their requests and learn how to answer. Owner: FakeHost. GUI thread only.
 *
 * Every request, refused ones too, stands in `requests`; the answer is `response`, or success where that is null.
 */
class ActionDesk : public QObject {
    Q_OBJECT

public:
    using Answer = std::function<void(qint64 nActionId, const ResponseInfoPtr &pResponse)>;
    using Progress = std::function<void(qint64 nActionId, double nProgress, int nTotal, int nAlready)>;

    /** Called by the actions: enters a request and returns the action id to give back. */
    qint64 enter(ActionRequest request, const Answer &answer, const Progress &progress = {});
    void cancel(qint64 nActionId);

    /** Answers the request that stands at this position; an answer to an action that is gone is dropped. */
    void answer(int nRequest, const ResponseInfoPtr &pResponse = FakeResponse::success());
    void report(int nRequest, double nProgress, int nTotal = 1, int nAlready = 0);

    /** Requests of one kind, in order. */
    QVector<ActionRequest> of(ActionKind kind) const;

    /** Where set, told of every accepted list of notes before it is answered: the host's store. */
    std::function<void(qint64 nFileId, const QVector<NoteRecord> &notes)> storeNotes;

    Reply reply = Reply::Queued;
    bool answersCancel = true; ///< A cancelled request gets its result, with code 1: inside, or on the next turn.
    ResponseInfoPtr response;
    QVector<ActionRequest> requests;
    QVector<qint64> cancelled;

private:
    struct Line {
        Answer answer;
        Progress progress;
    };

    void answerQueued(int nRequest, const ResponseInfoPtr &pResponse);

    QVector<Line> m_lines;
    qint64 m_nextId = 1;
};

/** Fresh action objects that enter their requests at the desk, which must outlive them. */
QSharedPointer<IExportAction> makeExportAction(ActionDesk &desk);
QSharedPointer<IRemoveAction> makeRemoveAction(ActionDesk &desk);
QSharedPointer<IRecycleAction> makeRecycleAction(ActionDesk &desk);
QSharedPointer<IFileAction> makeFileAction(ActionDesk &desk);
QSharedPointer<ICommentAction> makeCommentAction(ActionDesk &desk);
QSharedPointer<ITagAction> makeTagAction(ActionDesk &desk);
