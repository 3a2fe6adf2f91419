#pragma once

#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/IPreviewNotes.h"

#include <QObject>

/**
 * Root object of the plug-in: what the host reaches through the plug-in loader. Holds next to nothing; what surfaces
 * share lives in PluginInnerData.
 *
 * Owner: the plug-in loader. Thread: GUI thread.
 */
class BigImgPreviewPlugin : public QObject, public IPlugin, public IBigImgPreviewPlugin, public IPreviewNotes {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "Tessaro.Plugin.IBigImgPreviewPlugin/1.0" FILE "BigImgPreviewPlugin.json")
    Q_INTERFACES(IPlugin IBigImgPreviewPlugin IPreviewNotes)

public:
    explicit BigImgPreviewPlugin(QObject *pParent = nullptr);

    QObject *getObject() override;
    QUuid getPluginId() override;
    void getPluginInfo(PluginInfo &info) override;
    bool setPluginManager(IPluginManager *pManager) override;
    bool initialize() override;
    bool extensionsInitialized() override;
    bool aboutToShutdown() override;

    void setDataSource(const QSharedPointer<IPreviewDataSource> &pDataSource) override;
    void clearPreviewData() override;
    IPreviewDbClickWidget *createPreviewDbClickWidget(QWidget *pParent, QVector<qint64> fileIds, int nIndex,
                                                      qint64 nFileId, qint64 nContext) override;
    IPreviewSpaceDialog *createPreviewSpaceDialog(QWidget *pParent, QVector<qint64> fileIds, int nIndex, qint64 nFileId,
                                                  qint64 nContext) override;
    void setMainWindowHandle(IMainWindowHandle *pHandle) override;

    void showNote(qint64 nFileId, int nPosition) override;

private:
    IPluginManager *m_pPluginManager = nullptr;
};
