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

Q_DECLARE_METATYPE(const QMetaObject *)

namespace {

template <class... Class>
QVector<const QMetaObject *> metaObjectsOf()
{
    return {&Class::staticMetaObject...};
}

} // namespace

/** Signals and slots that others call by their number keep it: name, arguments and order as in method_order.txt. */
class tst_method_order : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void methodOrder_data()
    {
        QTest::addColumn<const QMetaObject *>("meta");
        for (const QMetaObject *pMeta :
             metaObjectsOf<MiddleResourcePreviewWidget, ImgPreviewWidget, VideoPlayerControlWidget, VideoPlayerWidget,
                           VideoPreviewWidget, AudioPlayerControlWidget, AudioPreviewWidget, PPtPreviewWidget,
                           PreviewResourceThread, PreviewSpaceDialog, BasePreviewWidget, CNoteWidget, CNoteInputWidget,
                           NoteInfoEditWidget, NoteInfoShowWidget, CColorPntBtn, PreviewDbClickWidget, PreviewLeftWin,
                           TSHidenSideWidget, TSLeftHidenSideWidget, TSMessageBox, TsProgressDialog>())
            QTest::newRow(pMeta->className()) << pMeta;
    }

    void methodOrder()
    {
        QFETCH(const QMetaObject *, meta);
        QString methods = QLatin1String(meta->className()) + QLatin1Char('\n');
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            methods += QLatin1String("    ") + QLatin1String(meta->method(i).methodSignature()) + QLatin1Char('\n');
        methods.replace(QStringLiteral("qint64,"), QStringLiteral("qlonglong,"));
        const QString path = QStringLiteral(BIGIMGPREVIEW_SOURCE_DIR "/tests/unit/method_order.txt");
        const QRegularExpression section(QStringLiteral("^%1\n( .*\n)+").arg(QLatin1String(meta->className())),
                                         QRegularExpression::MultilineOption);
        QCOMPARE(methods, section.match(QString::fromUtf8(readFile(path))).captured());
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_method_order)
#include "tst_method_order.moc"
