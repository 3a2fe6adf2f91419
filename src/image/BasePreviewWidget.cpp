#include "image/BasePreviewWidget.h"

#include "common/WaitNotice.h"
#include "interfaces/services/IShortcutSetting.h"
#include "plugin/PluginInnerData.h"

#include <QKeySequence>
#include <QMouseEvent>
#include <QShortcut>

BasePreviewWidget::BasePreviewWidget(QWidget *pParent)
    : QWidget(pParent)
{
    const QString keyText = PluginInnerData::instance()->shortcutText(IShortcutSetting::MoveToRecycleBin);
    m_shortcut = new QShortcut(QKeySequence::fromString(keyText, QKeySequence::PortableText), this, nullptr, nullptr,
                               Qt::WindowShortcut);
    // A key held down a moment too long is not to reach the files behind the first one.
    m_shortcut->setAutoRepeat(false);
}

void BasePreviewWidget::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    Q_UNUSED(pEvent)
    if (PluginInnerData::instance()->isLoading())
        WaitNotice::show(this);
    else if (m_bDoubleClickEnabled)
        Q_EMIT signal_PreviewWidgetDoubleClicked();
}

void BasePreviewWidget::connectRecycleKeys(const std::function<void()> &call, bool bHostKey)
{
    m_shortcut->setEnabled(bHostKey);
    if (bHostKey) {
        connect(m_shortcut, &QShortcut::activated, this, call);
        // Where the host's key is the delete key already, a second one would make both ambiguous.
        if (m_shortcut->key() == QKeySequence(Qt::Key_Delete))
            return;
    }
    auto *pDelete = new QShortcut(QKeySequence(Qt::Key_Delete), this);
    pDelete->setAutoRepeat(false);
    connect(pDelete, &QShortcut::activated, this, call);
}
