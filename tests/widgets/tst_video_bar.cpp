#include "PluginTest.h"
#include "common/TimeText.h"
#include "media/MediaButton.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "media/VideoPlayerControlWidget.h"
#include "theme/TSSkinSetting.h"

#include <QHoverEvent>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QSlider>

using Bar = VideoPlayerControlWidget;
Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

/** What a bar consists of, from left to right. */
struct Parts {
    explicit Parts(const Bar &bar)
        : buttons(bar.findChildren<MediaButton *>())
        , labels(bar.findChildren<TimeLabel *>())
        , progress(bar.findChild<QSlider *>(QString(), Qt::FindDirectChildrenOnly))
        , sound(bar.findChild<SoundControlWin *>())
    {
        const auto isLeft = [](const QWidget *pLeft, const QWidget *pRight) {
            return pLeft->x() < pRight->x();
        };
        std::sort(buttons.begin(), buttons.end(), isLeft);
        std::sort(labels.begin(), labels.end(), isLeft);
    }
    MediaButton *play() const { return buttons.at(0); }
    MediaButton *volume() const { return buttons.at(1); }
    MediaButton *loop() const { return buttons.at(2); }

    QList<MediaButton *> buttons;
    QList<TimeLabel *> labels;
    QSlider *progress;
    SoundControlWin *sound;
};

QVector<float> floats(const QSignalSpy &spy)
{
    QVector<float> values;
    for (const QList<QVariant> &call : spy)
        values.append(call.first().toFloat());
    return values;
}

} // namespace

class tst_video_bar : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void timeText_data();
    void timeText();
    void geometry();
    void iconsFollowTheTheme();
    void times();
    void longTimesAreNotCut();
    void clickSeeks_data();
    void clickSeeks();
    void buttonsSignal();
    void muting();
    void mutedByTheSlider();
    void popupFollowsTheMouse_data();
    void popupFollowsTheMouse();
    void popupGoesWithTheBar();
    void methodOrder();

protected:
    void init() override
    {
        PluginTest::init();
        m_window.reset(new QWidget);
        m_pBar = new Bar(m_window.data());
        m_pBar->setGeometry(0, 300, 900, 40);
        m_window->resize(900, 400);
        m_window->move(100, 100);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.data()));
        QCursor::setPos(m_window->mapToGlobal(QPoint(450, 100)));
    }
    void cleanup() override
    {
        m_window.reset();
        TSSkinSetting::GetInstance()->SetTheme(TSSkinSetting::DarkTheme);
        PluginTest::cleanup();
    }

private:
    static void hover(QWidget *pWidget, QEvent::Type type)
    {
        QHoverEvent event(type, QPointF(1, 1), QPointF(-1, -1));
        QApplication::sendEvent(pWidget, &event);
    }

    QScopedPointer<QWidget> m_window;
    Bar *m_pBar = nullptr;
};

void tst_video_bar::timeText_data()
{
    QTest::addColumn<qint64>("msec");
    QTest::addColumn<QString>("text");
    const auto row = [](qint64 nMsec, const char *pText) {
        QTest::newRow(pText) << nMsec << QString::fromLatin1(pText);
    };
    row(0, "00:00");
    row(499, "00:00");
    row(500, "00:01");
    row(59600, "01:00");
    row(125000, "02:05");
    row(3599500, "60:00");
    row(6000000, "100:00");
    row(-1, "00:00");
    row(Q_INT64_C(6000000000), "100000:00");
}

void tst_video_bar::timeText()
{
    QFETCH(qint64, msec);
    QTEST(TimeText::minutesAndSeconds(msec), "text");
}

void tst_video_bar::geometry()
{
    const Parts parts(*m_pBar);
    QCOMPARE(parts.play()->geometry(), QRect(18, 13, 14, 14));
    QCOMPARE(parts.volume()->geometry(), QRect(52, 13, 16, 13));
    QCOMPARE(parts.labels.at(0)->geometry(), QRect(83, 1, 45, 38));
    QCOMPARE(parts.labels.at(1)->geometry(), QRect(128, 1, 40, 38));
    QCOMPARE(parts.progress->geometry(), QRect(183, 16, 900 - 183 - 54, 8));
    QCOMPARE(parts.loop()->geometry(), QRect(900 - 34, 13, 14, 14));
    QCOMPARE(parts.sound->size(), QSize(28, 80));
    QVERIFY(!parts.sound->isVisible());
    QCOMPARE(m_pBar->volume(), 50);
    // Black in both themes.
    QCOMPARE(m_window->grab().toImage().pixelColor(5, 320), QColor(Qt::black));
}

void tst_video_bar::iconsFollowTheTheme()
{
    const Parts parts(*m_pBar);
    const auto sheets = [&parts] {
        QStringList texts;
        for (const MediaButton *pButton : parts.buttons)
            texts.append(pButton->styleSheet());
        return texts;
    };
    const auto expected = [](const char *pFolder) {
        QStringList texts;
        for (const char *pName : {"preview_video_stop.svg", "preview_voice.svg", "preview_loop_normal.svg"}) {
            texts.append(QStringLiteral("background-color:rgba(0,0,0,0);border:0px;image:url(:/bigimgpreview/%1/%2);")
                             .arg(QLatin1String(pFolder), QLatin1String(pName)));
        }
        return texts;
    };
    QCOMPARE(sheets(), expected("dark"));
    TSSkinSetting::GetInstance()->SetTheme(TSSkinSetting::LightTheme);
    QCOMPARE(sheets(), expected("light"));
}

void tst_video_bar::times()
{
    const Parts parts(*m_pBar);
    m_pBar->slot_setVideoTotalTime(125000);
    QCOMPARE(parts.labels.at(0)->text(), QStringLiteral("0:0 / "));
    QCOMPARE(parts.labels.at(1)->text(), QStringLiteral("02:05"));
    QCOMPARE(parts.progress->maximum(), 125000);
    m_pBar->slot_updatePlayPos(59600);
    QCOMPARE(parts.labels.at(0)->text(), QStringLiteral("01:00 / "));
    QCOMPARE(parts.labels.at(1)->text(), QStringLiteral("02:05"));
    QCOMPARE(parts.progress->value(), 59600);
    m_pBar->slot_stopPlay();
    QCOMPARE(parts.play()->iconName(), QStringLiteral("preview_video_play.svg"));
    QCOMPARE(parts.progress->value(), 125000);
    m_pBar->slot_setVideoTotalTime(-1); // a player that does not know
    QCOMPARE(parts.progress->maximum(), 0);
}

void tst_video_bar::longTimesAreNotCut()
{
    const Parts parts(*m_pBar);
    m_pBar->slot_setVideoTotalTime(36000000);
    m_pBar->slot_updatePlayPos(35000000);
    for (const TimeLabel *pLabel : parts.labels)
        QVERIFY(pLabel->width() >= pLabel->fontMetrics().horizontalAdvance(pLabel->text()));
    m_pBar->slot_setVideoTotalTime(1000);
    QCOMPARE(parts.labels.at(0)->width(), 45);
}

void tst_video_bar::clickSeeks_data()
{
    QTest::addColumn<int>("duration");
    QTest::addColumn<double>("at");
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("expected"); // -1: no seek
    QTest::newRow("nothing known") << 0 << 0.5 << Qt::LeftButton << 0;
    QTest::newRow("start") << 60000 << 0.0 << Qt::LeftButton << 0;
    QTest::newRow("middle") << 60000 << 0.5 << Qt::LeftButton << 30000;
    QTest::newRow("a day") << 86400000 << 0.5 << Qt::LeftButton << 43200000;
    QTest::newRow("right button") << 60000 << 0.5 << Qt::RightButton << -1;
}

void tst_video_bar::clickSeeks()
{
    QFETCH(int, duration);
    QFETCH(double, at);
    QFETCH(Qt::MouseButton, button);
    QFETCH(int, expected);
    const Parts parts(*m_pBar);
    if (duration > 0)
        m_pBar->slot_setVideoTotalTime(duration);
    QSignalSpy seeks(m_pBar, &Bar::signal_seekPlay);
    QSignalSpy presses(m_pBar, &Bar::signal_VideoSliderPressed);
    const int nX = int(parts.progress->width() * at);
    QTest::mouseClick(parts.progress, button, {}, QPoint(nX, 4));
    QCOMPARE(seeks.count(), expected >= 0 ? 1 : 0);
    if (expected >= 0) {
        // One pixel of the slider is this much.
        const int nPixel = duration / parts.progress->width() + 1;
        QVERIFY(qAbs(seeks.first().first().toInt() - expected) <= nPixel);
        QVERIFY(qAbs(parts.progress->value() - expected) <= nPixel);
    }
    // Dragging the handle moves nothing but the handle.
    QTest::mousePress(parts.progress, Qt::LeftButton, {}, QPoint(nX, 4));
    seeks.clear();
    QTest::mouseMove(parts.progress, QPoint(100, 4));
    QTest::mouseRelease(parts.progress, Qt::LeftButton, {}, QPoint(100, 4));
    QVERIFY(seeks.isEmpty() && presses.isEmpty());
}

void tst_video_bar::buttonsSignal()
{
    const Parts parts(*m_pBar);
    QSignalSpy plays(m_pBar, &Bar::signal_PlayPause);
    QSignalSpy loops(m_pBar, &Bar::signal_setReplay);
    QTest::mouseClick(parts.play(), Qt::LeftButton);
    QCOMPARE(plays.count(), 1);
    QTest::mouseClick(parts.loop(), Qt::LeftButton);
    QCOMPARE(parts.loop()->iconName(), QStringLiteral("preview_loop_select.svg"));
    QTest::mouseClick(parts.loop(), Qt::LeftButton);
    QCOMPARE(parts.loop()->iconName(), QStringLiteral("preview_loop_normal.svg"));
    QCOMPARE(loops.count(), 2);
    QVERIFY(loops.at(0).first().toBool() && !loops.at(1).first().toBool());
    // The keys stay with the preview.
    for (const MediaButton *pButton : parts.buttons)
        QVERIFY(pButton->focusPolicy() == Qt::NoFocus && !pButton->accessibleName().isEmpty());
}

void tst_video_bar::muting()
{
    const Parts parts(*m_pBar);
    QSignalSpy volumes(m_pBar, &Bar::signal_setVolume);
    parts.sound->setSoundValue(30);
    QTest::mouseClick(parts.volume(), Qt::LeftButton);
    QCOMPARE(parts.volume()->iconName(), QStringLiteral("preview_mute.svg"));
    QCOMPARE(m_pBar->volume(), 0);
    QTest::mouseClick(parts.volume(), Qt::LeftButton);
    QCOMPARE(parts.volume()->iconName(), QStringLiteral("preview_voice.svg"));
    QCOMPARE(m_pBar->volume(), 30);
    QCOMPARE(floats(volumes), (QVector<float>{0.3F, 0.0F, 0.3F}));
}

void tst_video_bar::mutedByTheSlider()
{
    const Parts parts(*m_pBar);
    QTest::mouseClick(parts.volume(), Qt::LeftButton); // saves 50
    QTest::mouseClick(parts.volume(), Qt::LeftButton);
    parts.sound->setSoundValue(20);
    parts.sound->setSoundValue(0);
    QCOMPARE(parts.volume()->iconName(), QStringLiteral("preview_mute.svg"));
    QTest::mouseClick(parts.volume(), Qt::LeftButton);
    QCOMPARE(m_pBar->volume(), 50);
}

void tst_video_bar::popupFollowsTheMouse_data()
{
    QTest::addColumn<QPoint>("mouse"); // from the pop-up's corner
    QTest::addColumn<bool>("stays");
    QTest::newRow("up into the pop-up") << QPoint(14, 79) << true;
    QTest::newRow("on its edge") << QPoint(14, 80) << true;
    QTest::newRow("beside it") << QPoint(-2, 79) << false;
    QTest::newRow("down") << QPoint(14, 100) << false;
}

void tst_video_bar::popupFollowsTheMouse()
{
    QFETCH(QPoint, mouse);
    QFETCH(bool, stays);
    const Parts parts(*m_pBar);
    hover(parts.volume(), QEvent::HoverEnter);
    QVERIFY(parts.sound->isVisible());
    const QPoint button = parts.volume()->mapToGlobal(QPoint(0, 0));
    QCOMPARE(parts.sound->pos(), QPoint(button.x() - 6, button.y() - 80));
    QCursor::setPos(parts.sound->pos() + mouse);
    hover(parts.volume(), QEvent::HoverLeave);
    QCOMPARE(parts.sound->isVisible(), stays);
    // Off the pop-up again.
    QCursor::setPos(m_window->mapToGlobal(QPoint(450, 100)));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(parts.sound, &leave);
    QVERIFY(!parts.sound->isVisible());
    m_pBar->SlotShowSoundWin();
    QCOMPARE(parts.sound->pos(), QPoint(button.x() - 6, m_pBar->mapToGlobal(QPoint(0, 0)).y() - 80));
}

void tst_video_bar::popupGoesWithTheBar()
{
    const Parts parts(*m_pBar);
    hover(parts.volume(), QEvent::HoverEnter);
    QVERIFY(parts.sound->isVisible());
    QVERIFY(parts.sound->testAttribute(Qt::WA_ShowWithoutActivating));
    m_pBar->hide();
    QVERIFY(!parts.sound->isVisible());
}

void tst_video_bar::methodOrder()
{
    QStringList names;
    for (int i = Bar::staticMetaObject.methodOffset(); i < Bar::staticMetaObject.methodCount(); ++i)
        names.append(QString::fromLatin1(Bar::staticMetaObject.method(i).methodSignature()));
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("signal_setPlayStatus(int) signal_PlayPause() signal_seekPlay(int) signal_stopPlay() "
                            "signal_setVolume(float) signal_setReplay(bool) signal_VideoSliderPressed() "
                            "signal_VideoSliderReleased() slot_setVideoTotalTime(int) slot_updatePlayPos(int) "
                            "slot_stopPlay() SlotSoundChange(int) SlotShowSoundWin() slot_recycleBtnClicked() "
                            "slot_playOrpauseBtnClicked() slot_sliderPressed() slot_sliderReleased() "
                            "SlotVolumClick()"));
}

BIGIMGPREVIEW_TEST_MAIN(tst_video_bar)
#include "tst_video_bar.moc"
