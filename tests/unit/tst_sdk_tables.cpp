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

/** Positions of operations in their tables, counted from 1. */
template <class... Function>
QVector<int> numbers(Function... operations)
{
    return {position(operations) + 1 ...};
}
} // namespace

/**
 * Hosts and plug-ins are built apart and find each other's operations by position: moving one breaks every host in the
 * field without a compiler noticing.
 */
class tst_sdk_tables : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void positions()
    {
        QCOMPARE(numbers(&IPlugin::getObject, &IPlugin::getPluginId, &IPlugin::getPluginInfo,
                         &IPlugin::setPluginManager, &IPlugin::initialize, &IPlugin::extensionsInitialized,
                         &IPlugin::aboutToShutdown),
                 (QVector<int>{1, 2, 3, 4, 5, 6, 7}));
        using Preview = IBigImgPreviewPlugin;
        QCOMPARE(numbers(&Preview::setDataSource, &Preview::clearPreviewData, &Preview::createPreviewDbClickWidget,
                         &Preview::createPreviewSpaceDialog, &Preview::setMainWindowHandle),
                 (QVector<int>{1, 2, 3, 4, 5}));
        using Window = IMainWindowHandle;
        QCOMPARE(
            numbers(&Window::moveBy, &Window::isMaximized, &Window::minimize, &Window::toggleMaximized, &Window::close),
            (QVector<int>{1, 2, 3, 4, 5}));
        QCOMPARE(numbers(&IPreviewDataSource::commentAction, &IPreviewDataSource::tagAction), (QVector<int>{15, 18}));
        QCOMPARE(numbers(&ISettingsObject::isLeftColumnShown, &ISettingsObject::isRightPanelHidden),
                 (QVector<int>{48, 50}));
        QCOMPARE(numbers(&ISettingPlugin::settingsObject, &ISettingPlugin::shortcutSetting), (QVector<int>{2, 4}));
        QCOMPARE(numbers(&IBaseModulePlugin::cacheManager, &IDataCenterPlugin::dataCenter), (QVector<int>{1, 5}));
        using Player = ITsMediaPlayerPlugin;
        QCOMPARE(numbers(&Player::getSignalObject, &Player::attachOwner, &Player::detachOwner, &Player::videoWidget,
                         &Player::resetOwner, &Player::currentFrame, &Player::positionShown, &Player::attachAudioOwner,
                         &Player::setWavePosition, &Player::setWaveSource, &Player::setWaveDuration,
                         &Player::waveWidget, &Player::initAudioView, &Player::audioItem, &Player::animateAudioItem,
                         &Player::audioItemScale, &Player::layoutAudioItem, &Player::openAndPlay, &Player::openAudio,
                         &Player::play, &Player::pause, &Player::stop, &Player::seek, &Player::setMute,
                         &Player::setVolume, &Player::state, &Player::videoWidth, &Player::videoHeight),
                 (QVector<int>{1,  4,  5,  6,  7,  8,  9,  10, 14, 15, 16, 17, 19, 21,
                               22, 23, 26, 27, 28, 29, 30, 31, 32, 33, 34, 36, 37, 38}));
    }

    void interfaceIds()
    {
        QCOMPARE(qobject_interface_iid<IPlugin *>(), "KOR.Core.IPlugin/1.0");
        QCOMPARE(qobject_interface_iid<IBigImgPreviewPlugin *>(), "Tessaro.Plugin.IBigImgPreviewPlugin/1.0");
        QCOMPARE(qobject_interface_iid<IPreviewNotes *>(), "Tessaro.Plugin.IPreviewNotes/1.0");
        QCOMPARE(qobject_interface_iid<IBaseModulePlugin *>(), "Tessaro.Plugin.IBaseModulePlugin/1.0");
        QCOMPARE(qobject_interface_iid<ISettingPlugin *>(), "Tessaro.Plugin.ISettingPlugin/1.0");
        QCOMPARE(qobject_interface_iid<IDataCenterPlugin *>(), "Tessaro.Plugin.IDataCenterPlugin/1.0");
        QCOMPARE(qobject_interface_iid<ITsMediaPlayerPlugin *>(), "Tessaro.Plugin.ITsMediaPlayerPlugin/1.0");
    }

    void noteRecordIsFixed()
    {
        QCOMPARE(sizeof(NoteRecord), sizeof(QRect) + 8 + sizeof(void *));
        QCOMPARE(offsetof(NoteRecord, rect), size_t(0));
        QCOMPARE(offsetof(NoteRecord, value), size_t(16));
        QCOMPARE(offsetof(NoteRecord, text), size_t(24));
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_sdk_tables)
#include "tst_sdk_tables.moc"
