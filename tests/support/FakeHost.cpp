#include "FakeHost.h"

FakeHost::FakeHost()
    : cache(QSharedPointer<FakeCacheManager>::create())
    , source(QSharedPointer<FakeDataSource>::create(desk))
    , player(std::make_unique<FakePlayer>())
{
    setting.settings = &settings;
    setting.shortcuts = &shortcuts;
    base.cache = cache;
    base.decoder = &decoder;
    base.renderer = &renderer;
    center.center = QSharedPointer<QObject>::create();
    registry.insert(QStringLiteral("ISettingPlugin"), {&setting});
    registry.insert(QStringLiteral("IBaseModulePlugin"), {&base});
    registry.insert(QStringLiteral("IDataCenterPlugin"), {&center});
    registry.insert(QStringLiteral("ITsMediaPlayerPlugin"), {player.get()});
}

FakeHost::~FakeHost()
{
    decoder.openGates();
    renderer.openGate.open();
    renderer.renderGate.open();
}

QList<IPlugin *> FakeHost::getPlugins(const QString &className)
{
    return registry.value(className);
}

QSharedPointer<FakeFileInfo> FakeHost::addFile(qint64 nId, qint64 nType, const QString &path)
{
    const auto pFile = QSharedPointer<FakeFileInfo>::create(nId, nType, path);
    source->putFile(pFile);
    return pFile;
}

QSharedPointer<FakeFileInfo> FakeHost::addPicture(qint64 nId, qint64 nType, const QString &path,
                                                  const FakePicture &picture)
{
    decoder.setPicture(path, picture);
    return addFile(nId, nType, path);
}

QSharedPointer<Gate> FakeHost::addSlowPicture(qint64 nId, qint64 nType, const QString &path, FakePicture picture)
{
    picture.gate = QSharedPointer<Gate>::create();
    picture.gate->close();
    addPicture(nId, nType, path, picture);
    return picture.gate;
}

void FakeHost::removeFiles(const QVector<qint64> &fileIds)
{
    for (const qint64 nFileId : fileIds)
        source->removeFile(nFileId);
    source->files.announceRemoved(fileIds);
}

void FakeHost::removePlayer()
{
    registry.remove(QStringLiteral("ITsMediaPlayerPlugin"));
    player.reset();
}
