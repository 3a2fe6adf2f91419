#include "theme/TSSkinSetting.h"
#include "theme/ThemeColors.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QWidget>
#include <QtTest>

#include <cmath>

namespace {

/** Relative luminance of an opaque colour, as the accessibility guidelines define it. */
double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double a = luminance(one), b = luminance(other);
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

/** What is seen of a translucent colour on an opaque ground. */
QColor over(const QColor &color, double alpha, const QColor &ground)
{
    const auto mix = [alpha](double top, double bottom) {
        return top * alpha + bottom * (1.0 - alpha);
    };
    return QColor::fromRgbF(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                            mix(color.blueF(), ground.blueF()));
}

QStringList iconNames()
{
    QStringList names;
    const auto add = [&names](const char *prefix, const char *icons, const QStringList &suffixes) {
        for (const QString &icon : QString::fromLatin1(icons).split(QLatin1Char(' '))) {
            for (const QString &suffix : suffixes)
                names << QLatin1String(prefix) + icon + suffix + QStringLiteral(".svg");
        }
    };
    const QString normal = QStringLiteral("_normal");
    add("preview_", "whole adapt actual rotate flip cut mark narrow enlarge back hide previous next loop",
        {normal, QStringLiteral("_select")});
    add("title_window_", "minisize maxsize restore close", {normal, QStringLiteral("_hover")});
    add("preview_", "video_play video_stop audio_play audio_stop voice mute", {QString()});
    add("", "playnav_voice playnav_mute remind_success_icon remind_error_icon file_index_lose loading_logo",
        {QString()});
    add("", "loading_border nav_logo mainbody_close", {QString()});
    add("host_", "folder folder_open search sort_up sort_down settings theme info label grid refresh", {QString()});
    add("host_", "image video audio document filter check chevron_right chevron_down", {QString()});
    return names;
}

} // namespace

class tst_theme : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { TSSkinSetting::GetInstance()->SetTheme(TSSkinSetting::DarkTheme); }

    void contrastOfTextAndIcons()
    {
        for (const auto theme : {TSSkinSetting::DarkTheme, TSSkinSetting::LightTheme}) {
            const ThemeColors &c = themeColors(theme);
            const auto add = [theme](const QByteArray &pair, const QColor &front, const QColor &ground, double least) {
                const QColor opaque =
                    over(ground, ground.alphaF(), theme == TSSkinSetting::DarkTheme ? Qt::white : Qt::black);
                const double found = contrast(front, opaque);
                QVERIFY2(found >= least, qPrintable(QStringLiteral("%1 %2 is only %3 : 1")
                                                        .arg(QLatin1String(themeFolder(theme)), QLatin1String(pair))
                                                        .arg(found, 0, 'f', 2)));
            };
            const std::pair<const char *, QColor> grounds[] = {{"window", c.window},
                                                               {"left column", c.leftColumn},
                                                               {"right column", c.rightColumn},
                                                               {"title bar", c.titleBar},
                                                               {"pop-up", c.popupBackground},
                                                               {"input", c.inputAndButton},
                                                               {"hover", c.hover},
                                                               {"selected row", c.selection},
                                                               {"notice", c.notification1},
                                                               {"warning notice", c.notification2}};
            for (const auto &[pGround, ground] : grounds) {
                const QByteArray place = QByteArray(" on ") + pGround;
                add("text" + place, c.text, ground, 4.5);
                add("secondary text" + place, c.secondaryText, ground, 4.5);
                add("icon" + place, c.icon, ground, 3.0);
            }
            add("text on accent", c.textOnMain, c.main, 4.5);
            add("text on badge", c.text, c.badge, 4.5);
            add("placeholder text", c.placeholderText, c.placeholderBackground, 4.5);
            add("accent on title bar", c.main, c.titleBar, 3.0);
            add("danger on title bar", c.danger, c.titleBar, 3.0);
            add("danger on window", c.danger, c.window, 3.0);
            add("success on notice", c.success, c.notification1, 3.0);
            add("warning on notice", c.warning, c.notification2, 3.0);
            add("edge arrow", c.sideArrow, c.sideMain, 3.0);
            add("media icon on the control bar", c.mediaIcon, Qt::black, 4.5);
            add("media text on the control bar", c.mediaText, Qt::black, 4.5);
            add("media secondary text on the control bar", c.mediaSecondaryText, Qt::black, 4.5);
            add("highlight on the control bar", c.mediaHighlight, Qt::black, 3.0);
            add("highlight on the volume slider", c.mediaHighlight, c.mediaPopup, 3.0);
        }
    }

    // The buttons may lie straight on a photo: stroke and disc must differ whatever is behind.
    void toolbarIconsStayReadableOnAnyPicture()
    {
        for (const auto theme : {TSSkinSetting::DarkTheme, TSSkinSetting::LightTheme}) {
            TSSkinSetting::GetInstance()->SetTheme(theme);
            for (const char *pName : {"preview_enlarge_normal.svg", "preview_enlarge_select.svg"}) {
                for (const Qt::GlobalColor picture : {Qt::black, Qt::gray, Qt::white}) {
                    QImage image(104, 104, QImage::Format_ARGB32_Premultiplied);
                    image.fill(picture);
                    QPainter painter(&image);
                    const QString path = TSSkinSetting::GetInstance()->GetResourceAbsolutePath(QLatin1String(pName));
                    QSvgRenderer(path).render(&painter);
                    painter.end();
                    const QColor stroke = image.pixelColor(47, 47); // the cross in the lens
                    const QColor disc = image.pixelColor(52, 8);
                    QVERIFY2(contrast(stroke, disc) >= 3.0, qPrintable(QString::number(contrast(stroke, disc))));
                }
            }
        }
    }

    void everyIconDraws()
    {
        for (const auto theme : {TSSkinSetting::DarkTheme, TSSkinSetting::LightTheme}) {
            TSSkinSetting::GetInstance()->SetTheme(theme);
            for (const QString &name : iconNames()) {
                const QString path = TSSkinSetting::GetInstance()->GetResourceAbsolutePath(name);
                QCOMPARE(path, QStringLiteral(":/bigimgpreview/%1/%2").arg(themeFolder(theme), name));
                QCOMPARE(TSSkinSetting::GetInstance()->GetResourcePath(name),
                         QStringLiteral("image:url(%1);").arg(path));
                QSvgRenderer renderer(path);
                QVERIFY2(renderer.isValid(), qPrintable(path));
                QImage image(renderer.defaultSize(), QImage::Format_ARGB32_Premultiplied);
                image.fill(Qt::transparent);
                const QImage empty = image;
                QPainter painter(&image);
                renderer.render(&painter);
                painter.end();
                QVERIFY2(image != empty, qPrintable(path));
                QVERIFY2(qAlpha(image.pixel(0, 0)) < 128, qPrintable(path)); // drawn to the very corner: cut off
            }
        }
    }

    void styleSheetsAreFilledIn()
    {
        static const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
        for (const auto theme : {TSSkinSetting::DarkTheme, TSSkinSetting::LightTheme}) {
            TSSkinSetting::GetInstance()->SetTheme(theme);
            for (const char *pName : {"menu", "host", "tooltip"}) {
                const QString styleSheet = TSSkinSetting::GetInstance()->GetStyleSheet(QLatin1String(pName));
                QVERIFY(!styleSheet.isEmpty());
                QVERIFY2(!styleSheet.contains(QLatin1Char('@')),
                         qPrintable(styleSheet.mid(styleSheet.indexOf(QLatin1Char('@')), 30)));
                for (auto it = url.globalMatch(styleSheet); it.hasNext();) {
                    const QString image = it.next().captured(1);
                    QVERIFY2(QFile::exists(image), qPrintable(image));
                }
                QWidget widget;
                TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(&widget, QLatin1String(pName));
                QCOMPARE(widget.styleSheet(), styleSheet);
            }
        }
    }

    void setThemeEmitsOncePerChange()
    {
        TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
        QSignalSpy spy(pSkin, &TSSkinSetting::signalThemeChanged);
        pSkin->SetTheme(TSSkinSetting::LightTheme);
        pSkin->SetTheme(TSSkinSetting::LightTheme);
        QCOMPARE(spy.count(), 1);
        pSkin->SetTheme(TSSkinSetting::DarkTheme);
        QCOMPARE(spy.count(), 2);
    }
};

QTEST_MAIN(tst_theme)
#include "tst_theme.moc"
