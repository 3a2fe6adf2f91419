#include "preview/HubOpenings.h"

#include "image/PreviewResourceThread.h"
#include "plugin/PluginInnerData.h"

namespace {

constexpr int CancelInterval = 100;

} // namespace

HubOpenings::HubOpenings(QObject *pParent)
    : QObject(pParent)
{
    m_cancelTimer.setInterval(CancelInterval);
    connect(&m_cancelTimer, &QTimer::timeout, this, &HubOpenings::cancelAgain);
}

HubOpenings::~HubOpenings()
{
    closeAll();
    PluginInnerData *pData = PluginInnerData::instance();
    QHash<qint64, QWeakPointer<PictureLoad>> left;
    for (auto it = m_loads.cbegin(); it != m_loads.cend(); ++it) {
        pData->endPendingPresentation(it.key());
        left.insert(it.key(), it.value());
    }
    if (left.isEmpty())
        return;
    // Nobody will hear of their ends, but they are to end. What they leave open, their tasks close.
    auto *pTimer = new QTimer(pData);
    connect(pTimer, &QTimer::timeout, pTimer, [pTimer, pData, left] {
        bool bAny = false;
        for (auto it = left.cbegin(); it != left.cend(); ++it) {
            const bool bLoads = !it.value().isNull();
            bAny = bAny || bLoads;
            // The same document may be another surface's by now.
            if (bLoads && !pData->hasRenderEntry(it.key()) && !pData->isPresentationPending(it.key()))
                pData->dropRenderEntry(it.key());
        }
        if (!bAny)
            pTimer->deleteLater();
    });
    pTimer->start(CancelInterval);
}

PreviewResourceThread *HubOpenings::begin(qint64 nFileId, const QString &path)
{
    PluginInnerData::instance()->beginPendingPresentation(nFileId);
    const auto pLoad = QSharedPointer<PictureLoad>::create();
    m_loads.insert(nFileId, pLoad);
    auto *pTask = new PreviewResourceThread(nFileId);
    pTask->setMode(OpenPresentationMode);
    pTask->setPaths(path, QString(), QString());
    pTask->setLoad(pLoad);
    return pTask;
}

bool HubOpenings::end(qint64 nFileId)
{
    const QSharedPointer<PictureLoad> pLoad = m_loads.take(nFileId);
    const bool bWanted = !pLoad || !pLoad->isUnwanted();
    if (bWanted)
        m_opened.insert(nFileId);
    return bWanted;
}

bool HubOpenings::isCancelled(qint64 nFileId) const
{
    const QSharedPointer<PictureLoad> pLoad = m_loads.value(nFileId);
    return pLoad && pLoad->isUnwanted();
}

void HubOpenings::cancelOthers(qint64 nKeptFileId)
{
    for (auto it = m_loads.cbegin(); it != m_loads.cend(); ++it) {
        if (it.key() != nKeptFileId)
            it.value()->setUnwanted();
    }
    cancelAgain();
}

void HubOpenings::closeAll()
{
    cancelAll();
    for (const qint64 nFileId : qAsConst(m_opened))
        PluginInnerData::instance()->dropRenderEntry(nFileId);
    m_opened.clear();
}

void HubOpenings::cancelAgain()
{
    bool bAny = false;
    for (auto it = m_loads.cbegin(); it != m_loads.cend(); ++it) {
        if (!it.value()->isUnwanted())
            continue;
        bAny = true;
        PluginInnerData::instance()->dropRenderEntry(it.key());
    }
    if (!bAny)
        m_cancelTimer.stop();
    else if (!m_cancelTimer.isActive())
        m_cancelTimer.start();
}
