#include "PluginTest.h"
#include "common/TimeText.h"
#include "media/MediaButton.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "media/VideoPlayerControlWidget.h"

#include <QHoverEvent>
#include <QSlider>

using Bar = VideoPlayerControlWidget;

class tst_video_bar : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void times()
    {
        const std::pair<qint64, const char *> rows[] = {{-1, "00:00"},      {499, "00:00"},
                                                        {59600, "01:00"},   {125000, "02:05"},
                                                        {3599500, "60:00"}, {Q_INT64_C(6000000000), "100000:00"}};
        for (const auto &[nMsec, pText] : rows)
            QCOMPARE(TimeText::minutesAndSeconds(nMsec), QLatin1String(pText));
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
    }

    void clickSeeks()
    {
        const std::tuple<int, Qt::MouseButton, int> rows[] = {{0, Qt::LeftButton, 0}, // nothing known
                                                              {60000, Qt::LeftButton, 30000},
                                                              {86400000, Qt::LeftButton, 43200000},
                                                              {60000, Qt::RightButton, -1}}; // no seek
        for (const auto &[nDuration, mouseButton, nExpected] : rows) {
            m_pBar->slot_setVideoTotalTime(nDuration);
            QSignalSpy seeks(m_pBar, &Bar::signal_seekPlay);
            QTest::mousePress(m_pProgress, mouseButton, {}, QPoint(m_pProgress->width() / 2, 4));
            QTest::mouseMove(m_pProgress, QPoint(100, 4)); // the handle is not for dragging
            QTest::mouseRelease(m_pProgress, mouseButton, {}, QPoint(100, 4));
            QCOMPARE(seeks.count(), nExpected >= 0 ? 1 : 0);
            if (nExpected >= 0)
                QVERIFY(qAbs(seeks.first().first().toInt() - nExpected) <= nDuration / m_pProgress->width() + 1);
        }
    }

    void muting()
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

    void popupFollowsTheMouse()
    {
        // From the pop-up's corner: up into it, on its edge, beside it.
        for (const auto &[mouse, bStays] :
             {std::pair(QPoint(14, 79), true), {QPoint(14, 80), true}, {QPoint(-2, 79), false}}) {
            hoverButton(QEvent::HoverEnter);
            QVERIFY(m_pSound->isVisible());
            QCursor::setPos(m_pSound->pos() + mouse);
            hoverButton(QEvent::HoverLeave);
            QCOMPARE(m_pSound->isVisible(), bStays);
            QCursor::setPos(m_window->mapToGlobal(QPoint(450, 100)));
            QEvent leave(QEvent::Leave);
            QApplication::sendEvent(m_pSound, &leave);
            QVERIFY(!m_pSound->isVisible());
        }
        m_pBar->SlotShowSoundWin();
        QVERIFY(m_pSound->isVisible());
        m_pBar->hide(); // the next file is a picture
        QVERIFY(!m_pSound->isVisible());
    }

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

BIGIMGPREVIEW_TEST_MAIN(tst_video_bar)
#include "tst_video_bar.moc"
