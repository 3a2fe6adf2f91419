#pragma once

#include "actions/ActionRunner.h"
#include "actions/CoverFile.h"
#include "actions/Leftovers.h"
#include "interfaces/actions/IExportAction.h"
#include "interfaces/actions/IFileAction.h"
#include "interfaces/actions/IRecycleAction.h"
#include "interfaces/actions/IRemoveAction.h"
#include "library/FileRecord.h"

#include <QPointer>

class Library;

/**
 * What all actions on files work with. The actions hold it shared, because previews may keep them longer than the host
 * keeps its data source.
 *
 * Owner: HostDataSource and its actions. Thread: GUI thread only, except what is handed to workers by value.
 */
struct ActionDesk {
    QPointer<Library> pLibrary;
    QPointer<ActionRunner> pRunner;
    std::shared_ptr<const Leftovers> pLeftovers;
    PictureReaderFunction readPicture;
    /** By file: the latest request whose picture was handed to the library. */
    std::shared_ptr<QHash<qint64, qint64>> pCoverRequests = std::make_shared<QHash<qint64, qint64>>();

    /** The records of these files; the ids that the library does not hold are left out. */
    FileRecordList records(const QVector<qint64> &fileIds) const;

    /** Splits off the files that the user protected from deleting. */
    FileRecordList deletable(const FileRecordList &files, ActionOutcome *pRefused) const;
};

using ActionDeskPtr = std::shared_ptr<const ActionDesk>;

/** Exports to a folder or into a pack. Owner: shared with the preview. Thread: GUI thread only. */
class HostExportAction final : public IExportAction {
    Q_OBJECT

public:
    explicit HostExportAction(ActionDeskPtr pDesk);
    qint64 requestExport(const QString &path, const QVector<qint64> &fileIds, bool bPackage) override;
    void requestCancel(qint64 nActionId) override;

private:
    const ActionDeskPtr m_pDesk;
};

/** Deletes files for good; the library forgets them. Owner: shared with the preview. Thread: GUI thread only. */
class HostRemoveAction final : public IRemoveAction {
    Q_OBJECT

public:
    explicit HostRemoveAction(ActionDeskPtr pDesk);
    qint64 requestRemove(const QVector<qint64> &fileIds) override;
    void requestCancel(qint64 nActionId) override;

private:
    const ActionDeskPtr m_pDesk;
};

/**
 * Moves files to the desktop's recycle bin; the library keeps what it knows of them. What a cancel left out counts as
 * skipped, not as failed: it is no fault to be told of.
 *
 * Owner: shared with the preview. Thread: GUI thread only.
 */
class HostRecycleAction final : public IRecycleAction {
    Q_OBJECT

public:
    explicit HostRecycleAction(ActionDeskPtr pDesk);
    qint64 requestRecycle(const QVector<qint64> &fileIds) override;
    void requestCancel(qint64 nActionId) override;

private:
    const ActionDeskPtr m_pDesk;
};

/** Sets and takes away preview pictures. Owner: shared with the preview. Thread: GUI thread only. */
class HostFileAction final : public IFileAction {
    Q_OBJECT

public:
    explicit HostFileAction(ActionDeskPtr pDesk);
    qint64 setFileCover(qint64 nFileId, const QString &path) override;
    void requestCancel(qint64 nActionId) override;

private:
    const ActionDeskPtr m_pDesk;
};
