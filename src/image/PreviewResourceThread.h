#pragma once

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QRunnable>
#include <QSharedPointer>
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
    /** Where the picture's reduced levels are put before it is announced; shared with the receiver. */
    void setLevelsTarget(const QSharedPointer<QVector<QImage>> &pLevels) { m_pLevels = pLevels; }

    void run() override;

Q_SIGNALS:
    void signal_resLoadEnd();
    void signal_imageReadEnd(qint64 fileId, QImage img, QString loadPath, bool bSrcImg);
    void signal_pptLoadEnd(qint64 fileId, QString path, bool bOk);
    void signal_pptFrameLoadEnd(qint64 fileId, QPixmap pixmap);
    void signal_pptCancelEnd();

private:
    void readImage();
    void renderPage();

    int m_mode = LoadNothingMode;
    QString m_srcPath;
    QString m_hdPath;
    QString m_thumbPath;
    QImage m_image;
    qint64 m_fileId;
    int m_frameIndex = 0;
    QPixmap m_framePixmap;
    QSharedPointer<QVector<QImage>> m_pLevels;
};
