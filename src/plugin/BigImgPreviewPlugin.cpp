#include "plugin/BigImgPreviewPlugin.h"

#include "interfaces/plugin/PluginInfo.h"
#include "plugin/PluginInnerData.h"
#include "plugin/PluginTranslation.h"
#include "preview/PreviewDbClickWidget.h"
#include "preview/PreviewSpaceDialog.h"

namespace {

void prepareSharedState(const QVector<qint64> &fileIds, int nIndex, qint64 nFileId, qint64 nContext)
{
    PluginInnerData *pData = PluginInnerData::instance();
    pData->setFileList(fileIds, nIndex, nContext);
    pData->setCurrentFile(nFileId);
}

} // namespace

BigImgPreviewPlugin::BigImgPreviewPlugin(QObject *pParent)
    : QObject(pParent)
{
    installPluginTranslation(this);
}

QObject *BigImgPreviewPlugin::getObject()
{
    return this;
}

QUuid BigImgPreviewPlugin::getPluginId()
{
    return QUuid(QStringLiteral("{9D47E94E-361D-40D8-151E-B7507AB42B78}"));
}

void BigImgPreviewPlugin::getPluginInfo(PluginInfo &info)
{
    info.name = tr("Big Image Preview");
    info.displayName = tr("Big Image Preview");
    info.version = QStringLiteral("1.0");
    info.author = QStringLiteral("nd");
    info.homePage = QUrl(QStringLiteral("https://bigimgpreview.example/"));
}

bool BigImgPreviewPlugin::setPluginManager(IPluginManager *pManager)
{
    if (pManager == nullptr)
        return false;
    m_pPluginManager = pManager;
    return true;
}

bool BigImgPreviewPlugin::initialize()
{
    return true;
}

bool BigImgPreviewPlugin::extensionsInitialized()
{
    return true;
}

bool BigImgPreviewPlugin::aboutToShutdown()
{
    return true;
}

void BigImgPreviewPlugin::setDataSource(const QSharedPointer<IPreviewDataSource> &pDataSource)
{
    PluginInnerData *pData = PluginInnerData::instance();
    pData->setPluginManager(m_pPluginManager);
    pData->setDataSource(pDataSource);
}

void BigImgPreviewPlugin::clearPreviewData()
{
    PluginInnerData::instance()->clearPreviewData();
}

IPreviewDbClickWidget *BigImgPreviewPlugin::createPreviewDbClickWidget(QWidget *pParent, QVector<qint64> fileIds,
                                                                       int nIndex, qint64 nFileId, qint64 nContext)
{
    prepareSharedState(fileIds, nIndex, nFileId, nContext);
    return new PreviewDbClickWidget(pParent);
}

IPreviewSpaceDialog *BigImgPreviewPlugin::createPreviewSpaceDialog(QWidget *pParent, QVector<qint64> fileIds,
                                                                   int nIndex, qint64 nFileId, qint64 nContext)
{
    prepareSharedState(fileIds, nIndex, nFileId, nContext);
    return new PreviewSpaceDialog(pParent);
}

void BigImgPreviewPlugin::setMainWindowHandle(IMainWindowHandle *pHandle)
{
    PluginInnerData::instance()->setMainWindowHandle(pHandle);
}

void BigImgPreviewPlugin::showNote(qint64 nFileId, int nPosition)
{
    PluginInnerData::instance()->noteStore()->requestShow(nFileId, nPosition);
}
