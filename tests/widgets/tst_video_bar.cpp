#include "PluginTest.h"
#include "common/TimeText.h"
#include "media/MediaButton.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "media/VideoPlayerControlWidget.h"

#include <QHoverEvent>
#include <QSignalSpy>
#include <QSlider>

using Bar = VideoPlayerControlWidget;

class tst_video_bar : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void timeText_data();
    void timeText();
    void times();
    void clickSeeks_data();
    void clickSeeks();
    void muting();
    void popupFollowsTheMouse_data();
    void popupFollowsTheMouse();

protected:
    void init() override
    {
        PluginTest::init();
        m_window.reset(new QWidget);
        m_pBar = new Bar(m_window.data());
        m_pBar->setGeometry(0, 300, 900, 40);
        m_window->setGeometry(100, 100, 900, 400);
        m_window->show();
        m_pSound = m_pBar->findChild<SoundControlWin *>();
        m_pVolume = button("preview_voice");
        m_pProgress = m_pBar->findChild<QSlider *>(QString(), Qt::FindDirectChildrenOnly);
    }
    void cleanup() override
    {
        m_window.reset();
        PluginTest::cleanup();
    }

private:
    MediaButton *button(const char *pIcon) const
    {
        const auto buttons = m_pBar->findChildren<MediaButton *>();
        const auto it = std::find_if(buttons.begin(), buttons.end(), [pIcon](const MediaButton *pButton) {
            return pButton->iconName().startsWith(QLatin1String(pIcon));
        });
        return it == buttons.end() ? nullptr : *it;
    }
    QString labels() const
    {
        const auto labels = m_pBar->findChildren<TimeLabel *>();
        return labels.at(0)->text() + labels.at(1)->text();
    }
    void hoverButton(QEvent::Type type)
    {
        QHoverEvent event(type, QPointF(1, 1), QPointF(-1, -1));
        QApplication::sendEvent(m_pVolume, &event);
    }

    QScopedPointer<QWidget> m_window;
    Bar *m_pBar = nullptr;
    SoundControlWin *m_pSound = nullptr;
    MediaButton *m_pVolume = nullptr;
    QSlider *m_pProgress = nullptr;
};

void tst_video_bar::timeText_data()
{
    QTest::addColumn<qint64>("msec");
    QTest::addColumn<QString>("text");
    const auto row = [](qint64 nMsec, const char *pText) {
        QTest::newRow(pText) << nMsec << QString::fromLatin1(pText);
    };
    row(-1, "00:00");
    row(499, "00:00");
    row(59600, "01:00");
    row(125000, "02:05");
    row(3599500, "60:00");
    row(Q_INT64_C(6000000000), "100000:00");
}

void tst_video_bar::timeText()
{
    QFETCH(qint64, msec);
    QTEST(TimeText::minutesAndSeconds(msec), "text");
}

void tst_video_bar::times()
{
    m_pBar->slot_setVideoTotalTime(125000);
    QCOMPARE(labels(), QStringLiteral("0:0 / 02:05"));
    m_pBar->slot_updatePlayPos(59600);
    QCOMPARE(labels(), QStringLiteral("01:00 / 02:05"));
    QCOMPARE(m_pProgress->value(), 59600);
    m_pBar->slot_stopPlay();
    QVERIFY(button("preview_video_play") != nullptr);
    QCOMPARE(m_pProgress->value(), 125000);
    // Hours are not cut, and a player may not know.
    m_pBar->slot_updatePlayPos(35000000);
    const auto *pLabel = m_pBar->findChild<TimeLabel *>();
    QVERIFY(pLabel->width() >= pLabel->fontMetrics().horizontalAdvance(pLabel->text()));
    m_pBar->slot_setVideoTotalTime(-1);
    QCOMPARE(m_pProgress->maximum(), 0);
    QCOMPARE(pLabel->width(), 45);
}

void tst_video_bar::clickSeeks_data()
{
    QTest::addColumn<int>("duration");
    QTest::addColumn<bool>("left");
    QTest::addColumn<int>("expected"); // -1: no seek
    QTest::newRow("nothing known") << 0 << true << 0;
    QTest::newRow("a minute") << 60000 << true << 30000;
    QTest::newRow("a day") << 86400000 << true << 43200000;
    QTest::newRow("right button") << 60000 << false << -1;
}

void tst_video_bar::clickSeeks()
{
    QFETCH(int, duration);
    QFETCH(bool, left);
    QFETCH(int, expected);
    m_pBar->slot_setVideoTotalTime(duration);
    QSignalSpy seeks(m_pBar, &Bar::signal_seekPlay);
    const QPoint middle(m_pProgress->width() / 2, 4);
    QTest::mousePress(m_pProgress, left ? Qt::LeftButton : Qt::RightButton, {}, middle);
    QTest::mouseMove(m_pProgress, QPoint(100, 4)); // the handle is not for dragging
    QTest::mouseRelease(m_pProgress, left ? Qt::LeftButton : Qt::RightButton, {}, QPoint(100, 4));
    QCOMPARE(seeks.count(), expected >= 0 ? 1 : 0);
    if (expected >= 0)
        QVERIFY(qAbs(seeks.first().first().toInt() - expected) <= duration / m_pProgress->width() + 1);
}

void tst_video_bar::muting()
{
    QSignalSpy volumes(m_pBar, &Bar::signal_setVolume);
    m_pSound->setSoundValue(30);
    QTest::mouseClick(m_pVolume, Qt::LeftButton);
    QCOMPARE(m_pVolume->iconName(), QStringLiteral("preview_mute.svg"));
    QTest::mouseClick(m_pVolume, Qt::LeftButton);
    QCOMPARE(m_pVolume->iconName(), QStringLiteral("preview_voice.svg"));
    QCOMPARE(m_pBar->volume(), 30);
    QCOMPARE(volumes.count(), 3);
    QVERIFY(volumes.at(1).first().toFloat() == 0.0F && volumes.at(2).first().toFloat() == 0.3F);
    // Silence by the slider: a click brings back what the last click has saved.
    m_pSound->setSoundValue(20);
    m_pSound->setSoundValue(0);
    QTest::mouseClick(m_pVolume, Qt::LeftButton);
    QCOMPARE(m_pBar->volume(), 30);
}

void tst_video_bar::popupFollowsTheMouse_data()
{
    QTest::addColumn<QPoint>("mouse"); // from the pop-up's corner
    QTest::addColumn<bool>("stays");
    QTest::newRow("up into the pop-up") << QPoint(14, 79) << true;
    QTest::newRow("on its edge") << QPoint(14, 80) << true;
    QTest::newRow("beside it") << QPoint(-2, 79) << false;
}

void tst_video_bar::popupFollowsTheMouse()
{
    QFETCH(QPoint, mouse);
    QFETCH(bool, stays);
    hoverButton(QEvent::HoverEnter);
    QVERIFY(m_pSound->isVisible());
    QCOMPARE(m_pSound->pos(), m_pVolume->mapToGlobal(QPoint(-6, -80)));
    QCursor::setPos(m_pSound->pos() + mouse);
    hoverButton(QEvent::HoverLeave);
    QCOMPARE(m_pSound->isVisible(), stays);
    QCursor::setPos(m_window->mapToGlobal(QPoint(450, 100)));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(m_pSound, &leave);
    QVERIFY(!m_pSound->isVisible());
    m_pBar->SlotShowSoundWin();
    QVERIFY(m_pSound->isVisible());
    m_pBar->hide(); // the next file is a picture
    QVERIFY(!m_pSound->isVisible());
}

BIGIMGPREVIEW_TEST_MAIN(tst_video_bar)
#include "tst_video_bar.moc"
