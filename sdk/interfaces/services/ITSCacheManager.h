#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"
#include "interfaces/data/IFileInfo.h"

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSize>

/** One request for a thumbnail; made by ITSCacheManager::createRequest. */
struct ThumbnailRequest {
    QString cacheKey;     ///< Key under which the picture will be found.
    FileInfoPtr fileInfo; ///< The file.
    QSize size;           ///< Wanted size in device-independent pixels.
    double dpi = 1.0;     ///< Physical pixels for each of them.
};

/**
 * The host's thumbnail cache: a lookup that answers at once, and requests that are served in the background.
 *
 * Owner: shared with the base-module plug-in. Thread: GUI thread only; signals are emitted there.
 */
class BIGIMGPREVIEW_SDK_EXPORT ITSCacheManager : public QObject {
    Q_OBJECT

public:
    /** Answer of lookup. */
    enum LookupState {
        Unavailable = 0, ///< There is no picture and there will be none.
        Found = 1,       ///< The picture was handed out.
        NotYetThere = 2  ///< Not in memory: submit a request and wait for signalLoadPixmapFinished.
    };

    explicit ITSCacheManager(QObject *pParent = nullptr);
    ~ITSCacheManager() override;

    /** The key of a file's picture at a size in device-independent pixels; empty for a null record. */
    virtual QString cacheKey(const FileInfoPtr &pInfo, const QSize &size) const = 0;

    /** Looks a key up in memory; on Found the picture is written to *pPixmap. Returns a LookupState. */
    virtual int lookup(const QString &cacheKey, QPixmap *pPixmap) = 0;

    /** Describes a request; nothing is started. */
    virtual ThumbnailRequest createRequest(const FileInfoPtr &pInfo, const QSize &size, double fDpi) const = 0;

    /** Starts a request. A key that is under way already is not started twice. */
    virtual void submitRequest(const ThumbnailRequest &request) = 0;

    /**
     * The file's large picture from memory, for files that need no loader; null when there is none. At most as large as
     * a screen, and in the format RGB32 or ARGB32_Premultiplied, because it is shown as it comes.
     */
    virtual QImage largePicture(const FileInfoPtr &pInfo) const = 0;

Q_SIGNALS:
    /** A request ended; bStatus is false when no picture could be made. */
    void signalLoadPixmapFinished(QString cacheKey, bool bStatus);
};
