#include "media/MediaStyle.h"

#include "theme/TSSkinSetting.h"

namespace {

constexpr double GrooveAlpha = 0.2;
constexpr int PopupBackground = 3;

const TSSkinSetting *skin()
{
    return TSSkinSetting::GetInstance();
}

QString grooveColor()
{
    QColor color = skin()->GetMediaSliderColor();
    color.setAlphaF(GrooveAlpha);
    return color.name(QColor::HexArgb);
}

QString highlightColor()
{
    return skin()->GetMediaHighlightColor().name();
}

} // namespace

QString MediaStyle::icon(const QString &iconName)
{
    // The text is a bare list of declarations: nothing in it may end a rule.
    return QStringLiteral("background-color:rgba(0,0,0,0);border:0px;") +
           skin()->GetResourcePath(iconName).remove(QLatin1Char('}'));
}

QString MediaStyle::bar(const QString &objectName)
{
    // Black in both themes, as what is played is seen best beside it.
    const QColor background(Qt::black);
    const QColor border(Qt::black);
    return QLatin1Char('#') + objectName + QStringLiteral("{background-color:") + background.name(QColor::HexArgb) +
           QStringLiteral(";border-top:1px solid;border-left:0px solid;border-right:0px;border-bottom:0px;"
                          "border-color:") +
           border.name() + QStringLiteral(";}");
}

QString MediaStyle::label(int nColor)
{
    return QStringLiteral("color:%1;font-size:12px;").arg(skin()->GetMediaColorList().value(nColor).name());
}

QString MediaStyle::progressSlider()
{
    return QStringLiteral("QSlider::groove:horizontal{height:8px;left:5px; right:5px;background:%1;}"
                          "                           QSlider::handle:horizontal{width:8px;height:8px;background:%2;}"
                          "                           QSlider::sub-page:horizontal{background:%3;}")
        .arg(grooveColor(), highlightColor(), highlightColor());
}

QString MediaStyle::soundWindow()
{
    return QStringLiteral("QWidget{background:%1;border:1px solid;border-color:%2;border-radius:4px;}")
        .arg(skin()->GetMediaColorList().value(PopupBackground).name(),
             skin()->GetPopupWinBorderColor().name(QColor::HexArgb));
}

QString MediaStyle::soundSlider()
{
    return QStringLiteral(
               "QSlider{border-color:transparent;} QSlider::groove:vertical{width:6px;background:%1;border-radius:2px;}"
               "                           QSlider::handle:vertical{height:10px;width:10px;margin:0px -2px 0px "
               "-2px;border-radius:5px;background:%2;}"
               "                           QSlider::add-page:vertical{background:%3;}")
        .arg(grooveColor(), highlightColor(), highlightColor());
}
