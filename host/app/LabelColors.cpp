#include "app/LabelColors.h"

#include "theme/TSSkinSetting.h"

#include <QCoreApplication>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

namespace {

struct Choice {
    QRgb color;
    const char *pName;
};

const Choice k_choices[] = {
    {0xE5484D, QT_TRANSLATE_NOOP("LabelColors", "Red")},    {0xF0762B, QT_TRANSLATE_NOOP("LabelColors", "Orange")},
    {0xE0A526, QT_TRANSLATE_NOOP("LabelColors", "Yellow")}, {0x37A667, QT_TRANSLATE_NOOP("LabelColors", "Green")},
    {0x16A3A0, QT_TRANSLATE_NOOP("LabelColors", "Teal")},   {0x3E86F0, QT_TRANSLATE_NOOP("LabelColors", "Blue")},
    {0x8E5BD0, QT_TRANSLATE_NOOP("LabelColors", "Violet")}, {0xDB4E8E, QT_TRANSLATE_NOOP("LabelColors", "Pink")},
};

} // namespace

QVector<QColor> LabelColors::palette()
{
    QVector<QColor> colors;
    for (const Choice &choice : k_choices)
        colors.append(QColor(choice.color));
    return colors;
}

QColor LabelColors::colorOf(const LabelRecord &label)
{
    constexpr quint64 k_nChoices = sizeof(k_choices) / sizeof(k_choices[0]);
    return label.color != 0 ? QColor(QRgb(label.color)) : QColor(k_choices[(label.id + 4) % k_nChoices].color);
}

QIcon LabelColors::spot(const QColor &color)
{
    // Drawn large: the icon is scaled down as sharp as the screen is.
    constexpr int k_nSide = 64;
    QPixmap pixmap(k_nSide, k_nSide);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QRectF(12, 12, k_nSide - 24, k_nSide - 24));
    return QIcon(pixmap);
}

QMenu *LabelColors::makeMenu(QWidget *pParent)
{
    auto *pMenu = new QMenu(pParent);
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(pMenu, QStringLiteral("menu"));
    for (const Choice &choice : k_choices)
        pMenu->addAction(spot(QColor(choice.color)), QCoreApplication::translate("LabelColors", choice.pName))
            ->setData(uint(choice.color & 0xFFFFFF));
    return pMenu;
}
