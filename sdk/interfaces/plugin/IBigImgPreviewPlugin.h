#pragma once

#include <QSharedPointer>
#include <QVector>
#include <QtPlugin>

class IMainWindowHandle;
class IPreviewDataSource;
class IPreviewDbClickWidget;
class IPreviewSpaceDialog;
class QWidget;

/**
 * The preview plug-in as the host sees it. The order of the operations is fixed.
 *
 * Calling order: load, IPlugin::setPluginManager, setDataSource, optionally setMainWindowHandle, then any number of
 * previews, clearPreviewData when the host drops its library. One preview is open at a time: opening a second one
 * replaces the file list that an open one steps through. Thread: GUI thread only.
 */
class IBigImgPreviewPlugin {
public:
    /**
     * Hands in the source of file records and actions; kept by a strong reference until clearPreviewData or the next
     * call. The host's settings and base-module plug-ins are looked up on every call, so the plug-in manager must be
     * set before. A null source leaves previews empty.
     */
    virtual void setDataSource(const QSharedPointer<IPreviewDataSource> &pDataSource) = 0;

    /** Releases every record and action object of the host. Waits for a decode that is running. */
    virtual void clearPreviewData() = 0;

    /**
     * Builds the full preview for the host's main area, hidden; the host shows it.
     *
     * @param pParent    Qt parent and owner of the result; with null the caller owns it.
     * @param fileIds    the files in view, in the host's order.
     * @param nIndex     position of the current file in fileIds.
     * @param nFileId    id of the current file.
     * @param nContext   a value of the host's own, kept as given.
     * @return never null.
     */
    virtual IPreviewDbClickWidget *createPreviewDbClickWidget(QWidget *pParent, QVector<qint64> fileIds, int nIndex,
                                                              qint64 nFileId, qint64 nContext) = 0;

    /** Builds the quick preview dialog, hidden; IPreviewSpaceDialog::showPreview shows it. Arguments as above. */
    virtual IPreviewSpaceDialog *createPreviewSpaceDialog(QWidget *pParent, QVector<qint64> fileIds, int nIndex,
                                                          qint64 nFileId, qint64 nContext) = 0;

    /** Hands in the main window (not owned; null to take it back before it is destroyed). */
    virtual void setMainWindowHandle(IMainWindowHandle *pHandle) = 0;

protected:
    ~IBigImgPreviewPlugin() = default;
};

Q_DECLARE_INTERFACE(IBigImgPreviewPlugin, "Tessaro.Plugin.IBigImgPreviewPlugin/1.0")
