#pragma once

#include "FakeDataSource.h"
#include "FakeDecoder.h"
#include "FakePlayer.h"
#include "FakePlugins.h"
#include "FakeServices.h"
#include "interfaces/plugin/IPluginManager.h"

#include <memory>

/**
 * A whole host in memory. As made, every service is there, quick and successful; a test says what is different:
 *
 *     FakeHost host;
 *     host.registry.remove(QStringLiteral("ISettingPlugin"));         // no such plug-in
 *     host.base.decoder = nullptr;                                    // a plug-in without the service
 *     host.source->absent.insert(SourcePart::TagAction);              // a source without the action
 *     host.desk.reply = Reply::OnDemand;                              // late answers; also twice, never, refused
 *     host.desk.response = FakeResponse::failure(5);                  // failures
 *     const auto gate = host.addSlowPicture(1, nType, path);                 // a decode that waits for gate->open()
 *
 * The plug-in must let go of the host (clearPreviewData) before it is destroyed. GUI thread only.
 */
class FakeHost final : public IPluginManager {
public:
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost &) = delete;
    FakeHost &operator=(const FakeHost &) = delete;

    QList<IPlugin *> getPlugins(const QString &className) override;

    /** Adds a record; the returned one may still be changed. */
    QSharedPointer<FakeFileInfo> addFile(qint64 nId, qint64 nType, const QString &path);
    /** Adds a record and a picture that the decoder makes of its path. */
    QSharedPointer<FakeFileInfo> addPicture(qint64 nId, qint64 nType, const QString &path,
                                            const FakePicture &picture = {});
    /** As addPicture, but decoding waits until the returned gate is opened. */
    QSharedPointer<Gate> addSlowPicture(qint64 nId, qint64 nType, const QString &path, FakePicture picture = {});

    /** Takes files out of the library and announces it, as a host does after a deletion. */
    void removeFiles(const QVector<qint64> &fileIds);
    /** The host unloads its media player. */
    void removePlayer();

    QHash<QString, QList<IPlugin *>> registry; ///< Plug-ins by class name of the interface.

    ActionDesk desk;
    FakeSettings settings;
    FakeShortcuts shortcuts;
    FakeDecoder decoder;
    FakeRenderer renderer;
    FakeMainWindow window;
    QSharedPointer<FakeCacheManager> cache;
    QSharedPointer<FakeDataSource> source;

    FakeSettingPlugin setting;
    FakeBaseModulePlugin base;
    FakeDataCenterPlugin center;
    std::unique_ptr<FakePlayer> player;
};
