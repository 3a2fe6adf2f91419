#include "TestMain.h"
#include "interfaces/data/IFileInformationProvider.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/IPluginManager.h"
#include "interfaces/plugin/IPreviewNotes.h"
#include "interfaces/services/IBaseModulePlugin.h"
#include "interfaces/services/IDataCenterPlugin.h"
#include "interfaces/services/ISettingPlugin.h"
#include "interfaces/services/ISettingsObject.h"
#include "interfaces/services/ITsMediaPlayerPlugin.h"
#include "interfaces/surfaces/IMainWindowHandle.h"

#include <cstring>

namespace {
/**
 * Position, from 0, of a virtual operation in its interface's table. In the C++ ABI of this platform a pointer to a
 * virtual member function holds one more than the byte offset of its entry.
 */
template <class Function>
int position(Function function)
{
    static_assert(std::is_member_function_pointer<Function>::value, "an operation of an interface");
    std::ptrdiff_t entry = 0;
    std::memcpy(&entry, &function, sizeof(entry));
    return entry % 2 == 1 ? int((entry - 1) / std::ptrdiff_t(sizeof(void *))) : -1;
}
} // namespace

/**
 * Hosts and plug-ins are built apart and find each other's operations by position: moving one breaks every host in the
 * field without a compiler noticing.
 */
class tst_sdk_tables : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void positions_data();
    void positions();
    void interfaceIds();
    void noteRecordIsFixed();
};

void tst_sdk_tables::positions_data()
{
#if !defined(__GXX_ABI_VERSION) || defined(__arm__) || defined(__aarch64__)
    QSKIP("pointers to member functions are laid out differently here");
#endif
    QTest::addColumn<int>("actual");
    QTest::addColumn<int>("expected");
    // Interfaces count their operations from 1, the media player from 0.
#define FROM_ONE(operation, number) QTest::newRow(#operation) << position(&operation) + 1 << number
#define FROM_ZERO(operation, number) QTest::newRow(#operation) << position(&ITsMediaPlayerPlugin::operation) << number

    FROM_ONE(IPlugin::getObject, 1);
    FROM_ONE(IPlugin::getPluginId, 2);
    FROM_ONE(IPlugin::getPluginInfo, 3);
    FROM_ONE(IPlugin::setPluginManager, 4);
    FROM_ONE(IPlugin::initialize, 5);
    FROM_ONE(IPlugin::extensionsInitialized, 6);
    FROM_ONE(IPlugin::aboutToShutdown, 7);

    FROM_ONE(IBigImgPreviewPlugin::setDataSource, 1);
    FROM_ONE(IBigImgPreviewPlugin::clearPreviewData, 2);
    FROM_ONE(IBigImgPreviewPlugin::createPreviewDbClickWidget, 3);
    FROM_ONE(IBigImgPreviewPlugin::createPreviewSpaceDialog, 4);
    FROM_ONE(IBigImgPreviewPlugin::setMainWindowHandle, 5);

    FROM_ONE(IPreviewDataSource::commentAction, 15);
    FROM_ONE(IPreviewDataSource::tagAction, 18);
    FROM_ONE(ISettingsObject::isLeftColumnShown, 48);
    FROM_ONE(ISettingsObject::isRightPanelHidden, 50);
    FROM_ONE(ISettingPlugin::settingsObject, 2);
    FROM_ONE(ISettingPlugin::shortcutSetting, 4);
    FROM_ONE(IBaseModulePlugin::cacheManager, 1);
    FROM_ONE(IDataCenterPlugin::dataCenter, 5);

    FROM_ONE(IMainWindowHandle::moveBy, 1);
    FROM_ONE(IMainWindowHandle::isMaximized, 2);
    FROM_ONE(IMainWindowHandle::minimize, 3);
    FROM_ONE(IMainWindowHandle::toggleMaximized, 4);
    FROM_ONE(IMainWindowHandle::close, 5);

    FROM_ZERO(getSignalObject, 0);
    FROM_ZERO(attachOwner, 3);
    FROM_ZERO(detachOwner, 4);
    FROM_ZERO(videoWidget, 5);
    FROM_ZERO(resetOwner, 6);
    FROM_ZERO(currentFrame, 7);
    FROM_ZERO(positionShown, 8);
    FROM_ZERO(attachAudioOwner, 9);
    FROM_ZERO(setWavePosition, 13);
    FROM_ZERO(setWaveSource, 14);
    FROM_ZERO(setWaveDuration, 15);
    FROM_ZERO(waveWidget, 16);
    FROM_ZERO(initAudioView, 18);
    FROM_ZERO(audioItem, 20);
    FROM_ZERO(animateAudioItem, 21);
    FROM_ZERO(audioItemScale, 22);
    FROM_ZERO(layoutAudioItem, 25);
    FROM_ZERO(openAndPlay, 26);
    FROM_ZERO(openAudio, 27);
    FROM_ZERO(play, 28);
    FROM_ZERO(pause, 29);
    FROM_ZERO(stop, 30);
    FROM_ZERO(seek, 31);
    FROM_ZERO(setMute, 32);
    FROM_ZERO(setVolume, 33);
    FROM_ZERO(state, 35);
    FROM_ZERO(videoWidth, 36);
    FROM_ZERO(videoHeight, 37);
#undef FROM_ONE
#undef FROM_ZERO
}

void tst_sdk_tables::positions()
{
    QFETCH(int, actual);
    QFETCH(int, expected);
    QCOMPARE(actual, expected);
}

void tst_sdk_tables::interfaceIds()
{
    QCOMPARE(qobject_interface_iid<IPlugin *>(), "KOR.Core.IPlugin/1.0");
    QCOMPARE(qobject_interface_iid<IBigImgPreviewPlugin *>(), "Tessaro.Plugin.IBigImgPreviewPlugin/1.0");
    QCOMPARE(qobject_interface_iid<IPreviewNotes *>(), "Tessaro.Plugin.IPreviewNotes/1.0");
    QCOMPARE(qobject_interface_iid<IBaseModulePlugin *>(), "Tessaro.Plugin.IBaseModulePlugin/1.0");
    QCOMPARE(qobject_interface_iid<ISettingPlugin *>(), "Tessaro.Plugin.ISettingPlugin/1.0");
    QCOMPARE(qobject_interface_iid<IDataCenterPlugin *>(), "Tessaro.Plugin.IDataCenterPlugin/1.0");
    QCOMPARE(qobject_interface_iid<ITsMediaPlayerPlugin *>(), "Tessaro.Plugin.ITsMediaPlayerPlugin/1.0");
}

void tst_sdk_tables::noteRecordIsFixed()
{
    QCOMPARE(sizeof(NoteRecord), sizeof(QRect) + 8 + sizeof(void *));
    QCOMPARE(offsetof(NoteRecord, rect), size_t(0));
    QCOMPARE(offsetof(NoteRecord, value), size_t(16));
    QCOMPARE(offsetof(NoteRecord, text), size_t(24));
}

BIGIMGPREVIEW_TEST_MAIN(tst_sdk_tables)
#include "tst_sdk_tables.moc"
