#pragma once

#include "TestFiles.h"
#include "actions/HostDataSource.h"
#include "library/Library.h"

#include <QtTest>

#include <memory>

/** A library on real files with its data source, and shorthands for asking its actions. */
class ActionStage {
public:
    /** In a folder of its own, or in one that another stage (or process) works in, too. */
    explicit ActionStage(const QString &folder = QString())
        : m_folder(folder.isEmpty() ? m_ownFolder.path() : folder)
    {
        QDir().mkpath(filesFolder());
        QDir().mkpath(path(QStringLiteral("target")));
    }

    QString path(const QString &name) const { return m_folder + QLatin1Char('/') + name; }
    QString filesFolder() const { return path(QStringLiteral("files")); }
    QString file(const char *pName) const { return filesFolder() + QLatin1Char('/') + QString::fromUtf8(pName); }
    QString target() const { return path(QStringLiteral("target")); }

    QString write(const QString &name, const QByteArray &content = QByteArrayLiteral("content")) const
    {
        const QString filePath = filesFolder() + QLatin1Char('/') + name;
        return writeFile(filePath, content) ? filePath : QString();
    }

    /** Opens the library, or opens it again as after a restart, and shows the files. */
    bool open()
    {
        source.reset();
        library.reset();
        library = std::make_unique<Library>();
        library->open(path(QStringLiteral("library.sqlite")));
        source = std::make_unique<HostDataSource>(library.get());
        return show(filesFolder()) && QTest::qWaitFor([this] { return !source->runner()->isRunning(); });
    }

    bool show(const QString &folder)
    {
        QSignalSpy ended(library.get(), &Library::signalScanEnded);
        m_records.clear();
        const auto connection = QObject::connect(library.get(), &Library::signalRecords, library.get(),
                                                 [this](const FileRecordList &records) { m_records += records; });
        library->showFolders({folder});
        const bool bEnded = ended.wait(20000);
        QObject::disconnect(connection);
        return bEnded;
    }

    /** The file of this name in view; null when there is none. */
    FileRecordPtr record(const QString &name) const
    {
        for (const FileRecordPtr &pRecord : m_records) {
            if (pRecord->fileName() == name)
                return library->record(pRecord->fileId());
        }
        return {};
    }
    qint64 id(const QString &name) const { return record(name) != nullptr ? record(name)->fileId() : 0; }
    qint64 id(const char *pName) const { return id(QString::fromUtf8(pName)); }
    QVector<qint64> allIds() const
    {
        QVector<qint64> ids;
        for (const FileRecordPtr &pRecord : m_records)
            ids.append(pRecord->fileId());
        return ids;
    }

    ResponseInfoPtr exportTo(const QString &place, const QVector<qint64> &ids, bool bPack)
    {
        const auto pAction = source->exportAction();
        return wait(pAction.data(), &IExportAction::signalExportResult,
                    [&] { return pAction->requestExport(place, ids, bPack); });
    }
    ResponseInfoPtr remove(const QVector<qint64> &ids)
    {
        const auto pAction = source->removeAction();
        return wait(pAction.data(), &IRemoveAction::signalRemoveResult, [&] { return pAction->requestRemove(ids); });
    }
    ResponseInfoPtr recycle(const QVector<qint64> &ids)
    {
        const auto pAction = source->recycleAction();
        return wait(pAction.data(), &IRecycleAction::signalRecycleResult, [&] { return pAction->requestRecycle(ids); });
    }
    ResponseInfoPtr setCover(qint64 nId, const QString &picture)
    {
        const auto pAction = source->fileAction();
        return wait(pAction.data(), &IFileAction::signalFileResult,
                    [&] { return pAction->setFileCover(nId, picture); });
    }
    /** The folder of the imported files, or empty with *pError. */
    QString import(const QString &pack, const QString &parent, QString *pError)
    {
        bool bDone = false;
        QString folder;
        source->importPack(
            pack, parent, [](const ActionProgress &) {},
            [&](const QString &newFolder, int, const QString &error) {
                folder = newFolder;
                *pError = error;
                bDone = true;
            });
        return QTest::qWaitFor([&] { return bDone; }, 20000) ? folder : QStringLiteral("no answer");
    }

    static QStringList namesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    std::unique_ptr<Library> library;
    std::unique_ptr<HostDataSource> source;

private:
    template <class Action, class Signal, class Request>
    static ResponseInfoPtr wait(Action *pAction, Signal result, Request request)
    {
        QSignalSpy results(pAction, result);
        const qint64 nId = request();
        if (nId <= 0 || !QTest::qWaitFor([&] { return !results.isEmpty(); }, 20000) || results.first().at(0) != nId)
            return {};
        return results.first().at(1).template value<ResponseInfoPtr>();
    }

    QTemporaryDir m_ownFolder;
    const QString m_folder;
    FileRecordList m_records;
};
