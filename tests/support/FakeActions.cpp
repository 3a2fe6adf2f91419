#include "FakeActions.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <iterator>

qint64 ActionDesk::enter(ActionRequest request, const Answer &answer, const Progress &progress)
{
    const int nRequest = requests.size();
    const bool refused = reply == Reply::RefuseZero || reply == Reply::RefuseNegative;
    request.id = refused ? (reply == Reply::RefuseZero ? 0 : -1) : m_nextId++;
    requests.append(request);
    m_lines.append({answer, progress});

    const ResponseInfoPtr pResponse = response ? response : FakeResponse::success();
    if (reply == Reply::InsideRequest) {
        this->answer(nRequest, pResponse);
    } else if (reply == Reply::Queued || reply == Reply::Twice) {
        answerQueued(nRequest, pResponse);
    }
    if (reply == Reply::Twice)
        answerQueued(nRequest, pResponse);
    return request.id;
}

void ActionDesk::cancel(qint64 nActionId)
{
    cancelled.append(nActionId);
    const auto found = std::find_if(requests.cbegin(), requests.cend(),
                                    [nActionId](const ActionRequest &request) { return request.id == nActionId; });
    const int nRequest = int(std::distance(requests.cbegin(), found));
    if (answersCancel && nRequest < requests.size() && reply == Reply::InsideRequest)
        answer(nRequest, FakeResponse::failure(1));
    else if (answersCancel && nRequest < requests.size())
        answerQueued(nRequest, FakeResponse::failure(1));
}

void ActionDesk::answerQueued(int nRequest, const ResponseInfoPtr &pResponse)
{
    QTimer::singleShot(0, this, [this, nRequest, pResponse] { answer(nRequest, pResponse); });
}

void ActionDesk::answer(int nRequest, const ResponseInfoPtr &pResponse)
{
    const Answer send = m_lines.at(nRequest).answer;
    send(requests.at(nRequest).id, pResponse);
}

void ActionDesk::report(int nRequest, double nProgress, int nTotal, int nAlready)
{
    const Progress send = m_lines.at(nRequest).progress;
    Q_ASSERT_X(send, "ActionDesk::report", "this kind of request has no progress");
    send(requests.at(nRequest).id, nProgress, nTotal, nAlready);
}

QVector<ActionRequest> ActionDesk::of(ActionKind kind) const
{
    QVector<ActionRequest> result;
    std::copy_if(requests.begin(), requests.end(), std::back_inserter(result),
                 [kind](const ActionRequest &request) { return request.kind == kind; });
    return result;
}

namespace {
/** What the actions have in common: entering a request together with the signals that will answer it. */
template <class Interface>
class FakeAction : public Interface {
public:
    explicit FakeAction(ActionDesk &desk)
        : m_desk(desk)
    {
    }

protected:
    template <class... Signals>
    qint64 enter(ActionKind kind, const QVector<qint64> &fileIds, ActionRequest request, Signals... answers)
    {
        request.kind = kind;
        request.fileIds = fileIds;
        return m_desk.enter(request, emitter(answers)...);
    }

    ActionDesk &m_desk;

private:
    /** A function that emits a signal of this action, or does nothing when the action is gone. */
    template <class... Arguments>
    auto emitter(void (Interface::*answer)(Arguments...))
    {
        return [action = QPointer<Interface>(this), answer](Arguments... arguments) {
            if (action)
                (action.data()->*answer)(arguments...);
        };
    }
};

template <class Interface>
class FakeCancellableAction : public FakeAction<Interface> {
public:
    using FakeAction<Interface>::FakeAction;
    void requestCancel(qint64 nActionId) override { this->m_desk.cancel(nActionId); }
};

class FakeExportAction final : public FakeCancellableAction<IExportAction> {
public:
    using FakeCancellableAction::FakeCancellableAction;
    qint64 requestExport(const QString &path, const QVector<qint64> &fileIds, bool bPackage) override
    {
        ActionRequest request;
        request.path = path;
        request.bPackage = bPackage;
        return enter(ActionKind::Export, fileIds, request, &IExportAction::signalExportResult,
                     &IExportAction::signalExportProgress);
    }
};

class FakeRemoveAction final : public FakeCancellableAction<IRemoveAction> {
public:
    using FakeCancellableAction::FakeCancellableAction;
    qint64 requestRemove(const QVector<qint64> &fileIds) override
    {
        return enter(ActionKind::Remove, fileIds, {}, &IRemoveAction::signalRemoveResult,
                     &IRemoveAction::signalRemoveProgress);
    }
};

class FakeRecycleAction final : public FakeCancellableAction<IRecycleAction> {
public:
    using FakeCancellableAction::FakeCancellableAction;
    qint64 requestRecycle(const QVector<qint64> &fileIds) override
    {
        return enter(ActionKind::Recycle, fileIds, {}, &IRecycleAction::signalRecycleResult,
                     &IRecycleAction::signalRecycleProgress);
    }
};

class FakeFileAction final : public FakeCancellableAction<IFileAction> {
public:
    using FakeCancellableAction::FakeCancellableAction;
    qint64 setFileCover(qint64 nFileId, const QString &path) override
    {
        ActionRequest request;
        request.path = path;
        return enter(ActionKind::File, {nFileId}, request, &IFileAction::signalFileResult);
    }
};

class FakeCommentAction final : public FakeAction<ICommentAction> {
public:
    using FakeAction::FakeAction;
    qint64 setCommentsOfFile(qint64 nFileId, const QVector<NoteRecord> &notes) override
    {
        ActionRequest request;
        request.notes = notes;
        const bool bRefused = m_desk.reply == Reply::RefuseZero || m_desk.reply == Reply::RefuseNegative;
        if (m_desk.storeNotes && !bRefused)
            m_desk.storeNotes(nFileId, notes);
        return enter(ActionKind::Comment, {nFileId}, request, &ICommentAction::signalCommentResult);
    }
};

class FakeTagAction final : public FakeAction<ITagAction> {
public:
    using FakeAction::FakeAction;
    qint64 associateTagsWithFiles(const QVector<qint64> &fileIds, const TagRecordList &tags) override
    {
        ActionRequest request;
        request.tags = tags;
        return enter(ActionKind::Tag, fileIds, request, &ITagAction::signalTagResult);
    }
};
} // namespace

QSharedPointer<IExportAction> makeExportAction(ActionDesk &desk)
{
    return QSharedPointer<FakeExportAction>::create(desk);
}

QSharedPointer<IRemoveAction> makeRemoveAction(ActionDesk &desk)
{
    return QSharedPointer<FakeRemoveAction>::create(desk);
}

QSharedPointer<IRecycleAction> makeRecycleAction(ActionDesk &desk)
{
    return QSharedPointer<FakeRecycleAction>::create(desk);
}

QSharedPointer<IFileAction> makeFileAction(ActionDesk &desk)
{
    return QSharedPointer<FakeFileAction>::create(desk);
}

QSharedPointer<ICommentAction> makeCommentAction(ActionDesk &desk)
{
    return QSharedPointer<FakeCommentAction>::create(desk);
}

QSharedPointer<ITagAction> makeTagAction(ActionDesk &desk)
{
    return QSharedPointer<FakeTagAction>::create(desk);
}
