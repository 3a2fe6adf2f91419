#pragma once

#include <QAtomicInt>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QRunnable>
#include <QSharedPointer>
#include <QSize>
#include <QString>
#include <QVector>

/** What a loader task does. */
enum PreviewLoadMode {
    LoadImageMode = 0,
    OpenPresentationMode = 1,
    RenderPresentationPageMode = 2,
    CancelPresentationsMode = 3,
    LoadNothingMode = 4
};

/**
 * One load of a picture, a page or a document, as its task and the widget that waits for it share it. Thread: any;
 * what it carries is the task's until the picture is announced.
 */
class PictureLoad {
public:
    /** Nobody looks at the file any more: the task stops where it can. */
    void setUnwanted() { m_state.testAndSetOrdered(Wanted, Unwanted); }
    /** Somebody looks at it again, in vain where the task has stopped already. */
    void setWanted() { m_state.testAndSetOrdered(Unwanted, Wanted); }
    bool isUnwanted() const { return m_state.loadAcquire() != Wanted; }
    /** Asked by the task: true when the load is unwanted, and from then on. */
    bool giveUp() { return m_state.testAndSetOrdered(Unwanted, GivenUp) || isGivenUp(); }
    bool isGivenUp() const { return m_state.loadAcquire() == GivenUp; }

    QVector<QImage> levels; ///< Reduced levels of the picture.
    QSize originalSize;     ///< Of the picture that a rendition stands for; empty where it is that picture, or unknown.

private:
    enum State { Wanted, Unwanted, GivenUp };
    QAtomicInt m_state{Wanted};
};

/**
 * The background job of the plug-in: decodes one picture, or drives the host's presentation renderer, on the global
 * thread pool. Holds values only and never touches a widget; its signals cross into the GUI thread by queued calls.
 *
 * Owner: the thread pool, which deletes it when it has run.
 */
class PreviewResourceThread : public QObject, public QRunnable {
    Q_OBJECT

public:
    explicit PreviewResourceThread(qint64 fileId);

    void setMode(int nMode) { m_mode = nMode; }
    void setPaths(const QString &srcPath, const QString &hdPath, const QString &thumbPath);
    void setFrameIndex(int nFrameIndex) { m_frameIndex = nFrameIndex; }
    /** Physical pixels that the page is to fit into; without them it has its own size. */
    void setFrameSize(const QSize &pixelSize) { m_frameSize = pixelSize; }
    /**
     * Where the reduced levels of the picture or page are put before it is announced; a load given up is announced as
     * unreadable.
     */
    void setLoad(const QSharedPointer<PictureLoad> &pLoad) { m_pLoad = pLoad; }

    void run() override;

Q_SIGNALS:
    void signal_resLoadEnd();
    void signal_imageReadEnd(qint64 fileId, QImage img, QString loadPath, bool bSrcImg);
    void signal_pptLoadEnd(qint64 fileId, QString path, bool bOk);
    void signal_pptFrameLoadEnd(qint64 fileId, QPixmap pixmap);
    void signal_pptCancelEnd();

private:
    void readImage();
    bool isGivenUp() const { return m_pLoad && m_pLoad->giveUp(); }
    QImage readFirst(const QStringList &paths, int *pRead, QImage *pFirstLevel);
    void openPresentation();
    void renderPage();

    int m_mode = LoadNothingMode;
    QString m_srcPath;
    QString m_hdPath;
    QString m_thumbPath;
    QImage m_image;
    qint64 m_fileId;
    int m_frameIndex = 0;
    QSize m_frameSize;
    QPixmap m_framePixmap;
    QSharedPointer<PictureLoad> m_pLoad;
};
