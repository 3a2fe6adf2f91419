#pragma once

#include "interfaces/surfaces/IPreviewDbClickWidget.h"
#include "interfaces/surfaces/IPreviewSpaceDialog.h"
#include "library/FileRecord.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class FileGridModel;
class IBigImgPreviewPlugin;
class IHostAnalysis;
class IMainWindowHandle;
class IPreviewDataSource;
class IPreviewNotes;

/**
 * Opens the preview plug-in's surfaces over the main window, one at a time, and follows what the user looks at:
 * tells the window which file it is and the base module which ones come next.
 *
 * Owner: HostSession. Thread: GUI thread only.
 */
class PreviewController : public QObject {
    Q_OBJECT

public:
    PreviewController(QWidget *pWindow, const FileGridModel *pModel, QObject *pParent);
    ~PreviewController() override;

    /** Hands the host's objects to the plug-in; null where there is no plug-in. */
    void setPlugin(IBigImgPreviewPlugin *pPlugin, const QSharedPointer<IPreviewDataSource> &pDataSource,
                   IMainWindowHandle *pHandle);
    void setAnalysis(IHostAnalysis *pAnalysis);
    /** Null with a plug-in that shows no single notes. */
    void setNotes(IPreviewNotes *pNotes) { m_pNotes = pNotes; }

    bool isAvailable() const { return m_pPlugin != nullptr; }
    /** The open surface; null when there is none. */
    QWidget *dialog() const
    {
        return m_pFull != nullptr ? static_cast<QWidget *>(m_pFull.data()) : static_cast<QWidget *>(m_pDialog.data());
    }
    /** Raises the open preview above everything else and gives it the keys. */
    void bringToFront();
    bool isOpen() const { return dialog() != nullptr; }

    /** Opens the quick preview on a file of the model; false when it cannot be opened or one is open already. */
    bool openQuickPreview(qint64 nFileId);

    /** The same for the full preview, which whoever receives signalFullPreviewOpened must give a place. */
    bool openFullPreview(qint64 nFileId);

    /** Stops a video or sound on show, whose file is about to get another name. */
    void releaseFile(qint64 nFileId);
    /** Opens what was stopped so again, under the name that the file has now. */
    void takeFileBack(qint64 nFileId);

    /** The library is another one now: the ids of an open preview mean nothing in it, or other files. */
    void drop();

    /** Shows one note of a file: in the open preview, or in a quick preview that is opened for it. */
    void showNote(qint64 nFileId, int nPosition);

    /** Deletes an open surface and takes everything back from the plug-in. Nothing can be opened afterwards. */
    void shutdown();

Q_SIGNALS:
    /** The user looks at this file now. */
    void signalFileShown(qint64 nFileId);
    void signalFullPreviewOpened(IPreviewDbClickWidget *pPreview);
    /** The full preview is left and about to be deleted. */
    void signalFullPreviewLeft();
    void signalClosed(qint64 nFileId);
    /** These files are to be analysed before the others. */
    void signalAnalysisWanted(const QVector<qint64> &fileIds);

private:
    template <typename Surface>
    void connectSurface(Surface *pSurface);
    void begin(qint64 nFileId);
    void follow(qint64 nFileId);
    void announceFileShown();
    void announceFilesAhead();
    void close(qint64 nFileId);

    QWidget *m_pWindow;
    const FileGridModel *m_pModel;
    IBigImgPreviewPlugin *m_pPlugin = nullptr;
    IHostAnalysis *m_pAnalysis = nullptr;
    IPreviewNotes *m_pNotes = nullptr;
    QPointer<IPreviewSpaceDialog> m_pDialog;
    QPointer<IPreviewDbClickWidget> m_pFull;
    QTimer m_aheadTimer;
    qint64 m_nShownId = 0;
    qint64 m_nReleasedId = 0; ///< Stopped, because its file gets another name.
    int m_nDirection = 1;
};
