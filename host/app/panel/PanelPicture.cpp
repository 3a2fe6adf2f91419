#include "app/panel/PanelPicture.h"

#include "app/ThumbnailSource.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>

namespace {

constexpr int k_nHeight = 176;
constexpr int k_nRadius = 6;
/** One size whatever the panel's width, so that dragging its edge asks for no new pictures. */
constexpr QSize k_pictureSize(256, 256);
constexpr double k_fUnavailableOpacity = 0.4;

} // namespace

PanelPicture::PanelPicture(ThumbnailSource *pThumbnails, QWidget *pParent)
    : QWidget(pParent)
    , m_pThumbnails(pThumbnails)
{
    setObjectName(QStringLiteral("hostPanelPicture"));
    setFixedHeight(k_nHeight);
    setAccessibleName(tr("Preview picture"));
    connect(pThumbnails, &ThumbnailSource::signalChanged, this, QOverload<>::of(&QWidget::update));
}

void PanelPicture::setFile(const FileRecordPtr &pRecord)
{
    m_pRecord = pRecord;
    update();
}

void PanelPicture::paintEvent(QPaintEvent * /*pEvent*/)
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(pTheme->GetWindowBackgroundColor());
    painter.drawRoundedRect(rect(), k_nRadius, k_nRadius);
    if (m_pRecord == nullptr)
        return;
    if (m_pRecord->isUnavailable())
        painter.setOpacity(k_fUnavailableOpacity);
    bool bComing = false;
    const QPixmap pixmap = m_pThumbnails->thumbnail(m_pRecord, k_pictureSize, devicePixelRatioF(), &bComing);
    if (pixmap.isNull()) {
        if (bComing)
            return;
        QFont large = font();
        large.setPixelSize(20);
        large.setBold(true);
        painter.setFont(large);
        painter.setPen(pTheme->GetPlaceholderTextColor());
        painter.drawText(rect(), Qt::AlignCenter, m_pRecord->suffix().toUpper());
        return;
    }
    const QRectF room = QRectF(rect()).adjusted(8, 8, -8, -8);
    QSizeF size = QSizeF(pixmap.size()) / pixmap.devicePixelRatioF();
    if (size.width() > room.width() || size.height() > room.height())
        size.scale(room.size(), Qt::KeepAspectRatio);
    QRectF target(QPointF(), size);
    target.moveCenter(room.center());
    painter.drawPixmap(QRectF(target.toAlignedRect()), pixmap, QRectF(pixmap.rect()));
}
