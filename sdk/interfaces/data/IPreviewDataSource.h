#pragma once

#include "interfaces/ReservedOperation.h"
#include "interfaces/data/IFileInfo.h"
#include "interfaces/data/TagRecord.h"

#include <QSharedPointer>

class ICommentAction;
class IExportAction;
class IFileAction;
class IFileInformationProvider;
class IFileListProvider;
class IRecycleAction;
class IRemoveAction;
class ITagAction;

/**
 * The host's library as the preview sees it: records and action objects. The positions of the operations are fixed.
 *
 * Owner: shared between host and plug-in; the plug-in lets go in clearPreviewData. Thread: GUI thread only. Any
 * operation may answer null or empty: the preview then does without.
 */
class IPreviewDataSource {
public:
    /** 1: the object that announces removed files; owned by the source. */
    virtual IFileListProvider *fileListProvider() = 0;

    /** 2: the object that gives records for a list of ids; owned by the source. */
    virtual IFileInformationProvider *fileInformationProvider() = 0;

    /**
     * 3: the record of one file, null for an unknown id. Where pTags is not null the file's labels are appended
     * to it. The record should be the same object as in the list given last, or equal in id.
     */
    virtual FileInfoPtr fileInfo(qint64 nFileId, TagRecordList *pTags) = 0;

    /** 4: true while the host forbids deleting files; delete requests then stop silently. */
    virtual bool isDeletingBlocked() = 0;

    /** 5: a fresh object for one export. */
    virtual QSharedPointer<IExportAction> exportAction() = 0;

    /** 6: a fresh object for one permanent removal. */
    virtual QSharedPointer<IRemoveAction> removeAction() = 0;

    /** 7: a fresh object for one move to the recycle bin. */
    virtual QSharedPointer<IRecycleAction> recycleAction() = 0;

    /** 8: a fresh object for one change of a file's preview picture. */
    virtual QSharedPointer<IFileAction> fileAction() = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(9)
    BIGIMGPREVIEW_RESERVED_OPERATION(10)
    BIGIMGPREVIEW_RESERVED_OPERATION(11)
    BIGIMGPREVIEW_RESERVED_OPERATION(12)
    BIGIMGPREVIEW_RESERVED_OPERATION(13)
    BIGIMGPREVIEW_RESERVED_OPERATION(14)

    /** 15: the object that stores region notes. */
    virtual QSharedPointer<ICommentAction> commentAction() = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(16)
    BIGIMGPREVIEW_RESERVED_OPERATION(17)

    /** 18: the object that links labels with files; asked for once, when the source is handed in. */
    virtual QSharedPointer<ITagAction> tagAction() = 0;

protected:
    ~IPreviewDataSource() = default;
};
