#include "TestMain.h"
#include "common/TSMessageBox.h"
#include "common/TsProgressDialog.h"
#include "image/CColorPntBtn.h"
#include "image/CNoteInputWidget.h"
#include "image/CNoteWidget.h"
#include "image/ImgPreviewWidget.h"
#include "image/NoteInfoShowWidget.h"
#include "image/PreviewResourceThread.h"
#include "media/AudioPlayerControlWidget.h"
#include "media/AudioPreviewWidget.h"
#include "media/PPtPreviewWidget.h"
#include "media/VideoPlayerControlWidget.h"
#include "media/VideoPlayerWidget.h"
#include "media/VideoPreviewWidget.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "preview/PreviewDbClickWidget.h"
#include "preview/PreviewLeftWin.h"
#include "preview/PreviewSpaceDialog.h"
#include "preview/TSHidenSideWidget.h"

#include <QMetaMethod>

Q_DECLARE_METATYPE(const QMetaObject *)

/** Signals and slots that others call by their number keep it: name, arguments and order. */
class tst_method_order : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void methodOrder_data();
    void methodOrder();
};

void tst_method_order::methodOrder_data()
{
    QTest::addColumn<const QMetaObject *>("meta");
    QTest::addColumn<QString>("expected");
    QTest::newRow("hub")
        << &MiddleResourcePreviewWidget::staticMetaObject
        << QStringLiteral(
               "signal_exitCurWidget() siganl_updateLeftList() signal_SourcePreviewFullScreen() signal_deletedFile() "
               "signal_nextSource() signal_previousSource() signal_up_Key_Pressed() signal_down_Key_Pressed() "
               "signal_left_Key_Pressed() signal_right_Key_Pressed() signal_forbidden_right(bool) "
               "signal_left_chenged() "
               "signal_right_changed() signal_start_left_side_timer() signal_start_right_side_timer() "
               "signal_stop_side_timer() signal_close_space_dialog() slot_switchPreviewWidget(int) "
               "slot_fullViewBtnClicked() slot_returnBtnClicked() slot_previewResource() slot_exitCurPreview_Key() "
               "slot_exitCurPreview_ByDBClicked() slot_UpKey() slot_DownKey() slot_leftKey() slot_rightKey() "
               "slot_tabKey() "
               "slot_spaceKey() slot_fullPreview_key() slot_orgPreview_key() slot_adaptPreview_key() "
               "slot_zoomOut_key() "
               "slot_zoomIn_key() slot_imgLoadEnd() slot_pptLoadEnd(qlonglong,QString,bool) slot_pptCancelEnd() "
               "slot_pptFrameReadEnd() slot_side_triggered(QWidget*,bool)");
    QTest::newRow("picture")
        << &ImgPreviewWidget::staticMetaObject
        << QStringLiteral(
               "signal_quit() signal_img_preview_update() signal_load_img_end() slot_fullPreviewBtnClicked() "
               "slot_adaptWidthBtnClicked() slot_NormalBtnClicked() slot_RotateBtnCllicked() "
               "slot_HorizonalRotateBtnClicked() slot_cutBtnClicked() slot_EditBtnClicked() slot_ZoomOutBtnClicked() "
               "slot_ZoomInBtnClicked() slot_cutPushBtnClicked() slot_cancelPushBtnClicked() "
               "slot_viewWeelChanged(bool) "
               "slot_setSavedImgFlat(bool) slot_defaultOpen() slot_checkFilePath() slot_exportToPackage() "
               "slot_exportToComputer() slot_copyFile() slot_copyFilePath() slot_copyTag() slot_pasteTag() "
               "slot_setCover() "
               "slot_deleteComplete() slot_removeToRecycle() slot_PreviewTimerout() slot_saveNoteInfo(NoteRegin*) "
               "slot_deleteNoteInfo(int) slot_acceptMousePosFromNoteWidget(QPoint) "
               "slot_imgReadEnd(qlonglong,QImage,QString,bool)");
    QTest::newRow("video bar")
        << &VideoPlayerControlWidget::staticMetaObject
        << QStringLiteral("signal_setPlayStatus(int) signal_PlayPause() signal_seekPlay(int) signal_stopPlay() "
                          "signal_setVolume(float) signal_setReplay(bool) signal_VideoSliderPressed() "
                          "signal_VideoSliderReleased() slot_setVideoTotalTime(int) slot_updatePlayPos(int) "
                          "slot_stopPlay() SlotSoundChange(int) SlotShowSoundWin() slot_recycleBtnClicked() "
                          "slot_playOrpauseBtnClicked() slot_sliderPressed() slot_sliderReleased() "
                          "SlotVolumClick()");
    QTest::newRow("video") << &VideoPlayerWidget::staticMetaObject
                           << QStringLiteral(
                                  "signal_sizeAdaptToVideoFrame() slot_TotalTimeChanged(qlonglong) "
                                  "slot_currentTimeChanged(qlonglong) slot_delayStartPlayer() slot_seekPlayPos(int) "
                                  "slot_pauseOrPlay() slot_setPlayerToTheStatus(int) slot_receivedStopSignal() "
                                  "slot_setVolume(float) slot_setPlayRecycle(bool) slot_timerout() "
                                  "slot_muteBtnClicked() slot_VideoSliderPressed() slot_VideoSliderReleased()");
    QTest::newRow("video page") << &VideoPreviewWidget::staticMetaObject
                                << QStringLiteral(
                                       "slot_AdaptBtnClicked() slot_NormalBtnClicked() "
                                       "slot_defaultOpen() slot_checkFilePath() slot_exportToPackage() "
                                       "slot_exportToComputer() slot_copyFile() slot_copyFilePath() slot_copyTag() "
                                       "slot_pasteTag() slot_setCurFramToCover() slot_deleteComplete() "
                                       "slot_removeToRecycle()");
    QTest::newRow("audio") << &AudioPlayerControlWidget::staticMetaObject
                           << QStringLiteral("signal_animationUpdate(int) slot_setAudioTotalTime(qlonglong) "
                                             "slot_seekPlay(qlonglong) SlotSoundChange(int) slot_delayStartPlayer() "
                                             "slot_updateWave(qlonglong) slot_pauseOrPlay() SlotVolumClick() "
                                             "slot_cycleBtnClicked() slot_timerout() slot_animationTimerout()");
    QTest::newRow("audio page")
        << &AudioPreviewWidget::staticMetaObject
        << QStringLiteral("slot_animationRotate(int) slot_defaultOpen() "
                          "slot_checkFilePath() slot_exportToPackage() slot_exportToComputer() slot_copyFile() "
                          "slot_copyFilePath() slot_copyTag() slot_pasteTag() slot_setCover() "
                          "slot_deleteComplete() slot_removeToRecycle()");
    QTest::newRow("presentation page")
        << &PPtPreviewWidget::staticMetaObject
        << QStringLiteral("signal_start_load_ppt_frame() signal_ppt_frame_read_end() slot_fullPreviewBtnClicked() "
                          "slot_adaptWidthBtnClicked() slot_NormalBtnClicked() slot_leftBtnClicked() "
                          "slot_rightBtnClicked() slot_ZoomOutBtnClicked() slot_ZoomInBtnClicked() "
                          "slot_viewWeelChanged(bool) slot_defaultOpen() slot_checkFilePath() "
                          "slot_exportToPackage() slot_exportToComputer() slot_copyFile() slot_copyFilePath() "
                          "slot_copyTag() slot_pasteTag() slot_setCover() slot_deleteComplete() "
                          "slot_removeToRecycle() slot_PreviewTimerout() "
                          "slot_pptFrameReadEnd(qlonglong,QPixmap) slot_switchFrameReadEnd(qlonglong,QPixmap)");
    QTest::newRow("loader") << &PreviewResourceThread::staticMetaObject
                            << QStringLiteral("signal_resLoadEnd() signal_imageReadEnd(qlonglong,QImage,QString,bool) "
                                              "signal_pptLoadEnd(qlonglong,QString,bool) "
                                              "signal_pptFrameLoadEnd(qlonglong,QPixmap) signal_pptCancelEnd()");
    QTest::newRow("dialog")
        << &PreviewSpaceDialog::staticMetaObject
        << QStringLiteral("slot_close_hide() slot_show_left_source() slot_show_right_source() slot_show_up_source() "
                          "slot_show_down_source() onProviderRemoveFiles(QVector<qint64>)");
    QTest::newRow("base") << &BasePreviewWidget::staticMetaObject
                          << QStringLiteral("signal_PreviewWidgetDoubleClicked() signal_deleteFile()");
    QTest::newRow("overlay") << &CNoteWidget::staticMetaObject
                             << QStringLiteral("signal_saveNoteInfo(NoteRegin*) signal_deleteNoteInfo(int) "
                                               "signal_sendMousePos(QPoint) cancelSelectedRect() "
                                               "slotCloseWindow(QWidget*) slot_saveNoteInfo(QString) "
                                               "slot_deleteNote() slot_updateRegionColor(QColor)");
    QTest::newRow("card") << &CNoteInputWidget::staticMetaObject
                          << QStringLiteral("signal_saveNoteInfo(QString) signal_deleteNote() "
                                            "signal_changeRegionColor(QColor) slot_saveNoteInfo() slot_deletNote() "
                                            "slot_switchToEdit() slot_changeRegionColor(QColor)");
    QTest::newRow("edit page") << &NoteInfoEditWidget::staticMetaObject
                               << QStringLiteral("signal_OKBtnClicked() signal_changeRegionColor(QColor) "
                                                 "slot_textEditChanged() slot_ColorBtnClicked(QColor)");
    QTest::newRow("show page") << &NoteInfoShowWidget::staticMetaObject
                               << QStringLiteral("signal_DelBtnClicked() signal_EditBtnClicked()");
    QTest::newRow("colour") << &CColorPntBtn::staticMetaObject
                            << QStringLiteral("signal_ColorBtnClicked(QColor) slot_Clicked()");
    QTest::newRow("window")
        << &PreviewDbClickWidget::staticMetaObject
        << QStringLiteral("signal_showResource() SlotRecvShowSource(int,int,qlonglong) slot_close_hide() "
                          "slot_show_left_source() slot_show_right_source() slot_show_up_source() "
                          "slot_show_down_source() slot_left_changed() onProviderRemoveFiles(QVector<qint64>)");
    QTest::newRow("strip") << &PreviewLeftWin::staticMetaObject
                           << QStringLiteral(
                                  "SigShowResource(int,int,qlonglong) selectionChanged(QItemSelection,QItemSelection) "
                                  "slotThumbnailLoad()");
    QTest::newRow("handle") << &TSHidenSideWidget::staticMetaObject
                            << QStringLiteral(
                                   "signalLeftClicked() signalRightClicked() signalTriggered(QWidget*,bool) "
                                   "signalTriggered(QWidget*) slotStartTimer() slotStopTimer() slotShowTimerTimeout() "
                                   "slotHideTimerTimeout()");
    QTest::newRow("left handle") << &TSLeftHidenSideWidget::staticMetaObject
                                 << QStringLiteral("slotShowTimerTimeout() slotHideTimerTimeout()");
    QTest::newRow("box") << &TSMessageBox::staticMetaObject
                         << QStringLiteral(
                                "signExecInThread(TSMessageBox::Mode,QString,QString,QWidget*) "
                                "signalResult(TSMessageBox::ReturnValue) on_confirm_btn_clicked() on_ok_btn_clicked() "
                                "on_cancel_btn_clicked() on_btn_close_clicked() "
                                "slotExecInThread(TSMessageBox::Mode,QString,QString,QWidget*)");
    QTest::newRow("progress") << &TsProgressDialog::staticMetaObject
                              << QStringLiteral("userCancle() slotCloseBtnClicked(bool)");
}

void tst_method_order::methodOrder()
{
    QFETCH(const QMetaObject *, meta);
    QStringList names;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
        names.append(QString::fromLatin1(meta->method(i).methodSignature()));
    QTEST(names.join(QLatin1Char(' ')).replace(QStringLiteral("qint64,"), QStringLiteral("qlonglong,")), "expected");
}

BIGIMGPREVIEW_TEST_MAIN(tst_method_order)
#include "tst_method_order.moc"
