#include "preview/PresentationOpenings.h"

#include "image/PreviewResourceThread.h"
#include "plugin/PluginInnerData.h"

namespace {

constexpr int CancelInterval = 100;

} // namespace

PresentationOpenings::PresentationOpenings(QObject *pParent)
    : QObject(pParent)
{
    m_cancelTimer.setInterval(CancelInterval);
    connect(&m_cancelTimer, &QTimer::timeout, this, &PresentationOpenings::cancelAgain);
}

PresentationOpenings::~PresentationOpenings()
{
    closeAll();
    // Nobody will hear of their ends; what an opening leaves behind, its task closes.
    for (auto it = m_loads.cbegin(); it != m_loads.cend(); ++it)
        PluginInnerData::instance()->endPendingPresentation(it.key());
}

PreviewResourceThread *PresentationOpenings::begin(qint64 nFileId, const QString &path)
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

bool PresentationOpenings::end(qint64 nFileId)
{
    const QSharedPointer<PictureLoad> pLoad = m_loads.take(nFileId);
    const bool bWanted = !pLoad || !pLoad->isUnwanted();
    if (bWanted)
        m_opened.insert(nFileId);
    return bWanted;
}

bool PresentationOpenings::isCancelled(qint64 nFileId) const
{
    const QSharedPointer<PictureLoad> pLoad = m_loads.value(nFileId);
    return pLoad && pLoad->isUnwanted();
}

void PresentationOpenings::cancelOthers(qint64 nKeptFileId)
{
    for (auto it = m_loads.cbegin(); it != m_loads.cend(); ++it) {
        if (it.key() != nKeptFileId)
            it.value()->setUnwanted();
    }
    cancelAgain();
}

void PresentationOpenings::closeAll()
{
    cancelAll();
    for (const qint64 nFileId : qAsConst(m_opened))
        PluginInnerData::instance()->dropRenderEntry(nFileId);
    m_opened.clear();
}

void PresentationOpenings::cancelAgain()
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
