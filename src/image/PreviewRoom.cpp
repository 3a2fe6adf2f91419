#include "image/PreviewRoom.h"

#include "common/PlaceholderPainter.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>

PreviewRoom::PreviewRoom(QWidget *pParent)
    : BasePreviewWidget(pParent)
{
    // The surface is as large as the host's window, however small; what a page needs does not count.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &PreviewRoom::makePlaceholder);
}

void PreviewRoom::showFile(const QString &path)
{
    m_filePath = path;
    makePlaceholder();
}

void PreviewRoom::clearPreview()
{
    m_filePath.clear();
    makePlaceholder();
}

void PreviewRoom::setPlaceholderShown(bool bShown)
{
    if (bShown == m_bPlaceholderShown)
        return;
    m_bPlaceholderShown = bShown;
    makePlaceholder();
}

void PreviewRoom::makePlaceholder()
{
    m_placeholder = QPixmap();
    if (m_bPlaceholderShown && !m_filePath.isEmpty())
        m_placeholder = QPixmap::fromImage(PlaceholderPainter::paintSuffix(m_filePath, devicePixelRatioF()));
    update();
}

void PreviewRoom::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    if (m_placeholder.isNull())
        return;
    const QSize own = m_placeholder.size() / m_placeholder.devicePixelRatio();
    const bool bFits = own.width() <= width() && own.height() <= height();
    const QSize size = bFits ? own : own.scaled(this->size(), Qt::KeepAspectRatio);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size),
                       m_placeholder);
}
