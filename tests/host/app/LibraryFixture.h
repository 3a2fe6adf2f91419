#pragma once

#include "TestMain.h"
#include "library/Library.h"

#include <functional>

/** A library file and a folder of files, both real and both gone with it. */
class LibraryFixture {
public:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString files(const QString &name = QString()) const
    {
        return name.isEmpty() ? path(QStringLiteral("files")) : path(QStringLiteral("files/") + name);
    }

    void write(const QString &name, const QByteArray &content = QByteArrayLiteral("x")) const
    {
        QVERIFY(writeFile(files(name), content));
    }

    /** Opens the library and shows the folder; the one before is closed first. */
    void open()
    {
        library.reset();
        library = std::make_unique<Library>();
        library->open(path(QStringLiteral("library.sqlite")));
        QSignalSpy ended(library.get(), &Library::signalScanEnded);
        library->showFolders({files()});
        QVERIFY(ended.wait());
    }

    /** The record of a file in view, by its path below the folder; null when there is none. */
    FileRecordPtr record(const QString &name) const
    {
        const QVector<FileRecordPtr> all = library->records();
        for (const FileRecordPtr &pRecord : all) {
            if (pRecord->filePath() == files(name))
                return pRecord;
        }
        return {};
    }

    qint64 id(const QString &name) const
    {
        const FileRecordPtr pRecord = record(name);
        return pRecord != nullptr ? pRecord->fileId() : 0;
    }

    /** Gives the file a label and waits until it has it. */
    void label(const QString &name, const QString &labelName) const
    {
        const int nBefore = record(name)->tags().size();
        library->addLabels({id(name)}, {TagRecordPtr(new TagRecord{0, labelName})});
        QTRY_COMPARE(record(name)->tags().size(), nBefore + 1);
    }

    std::unique_ptr<Library> library;

private:
    QTemporaryDir m_folder;
};

/** Base of the tests of the library: every test function begins with a fresh one, and what it lists in write(). */
class LibraryTest : public LoggedTest {
protected:
    void init() override
    {
        LoggedTest::init();
        m_place = std::make_unique<LibraryFixture>();
    }
    void cleanup() override
    {
        m_place.reset();
        LoggedTest::cleanup();
    }

    Library *library() const { return m_place->library.get(); }
    QString files(const char *pName) const { return m_place->files(QString::fromUtf8(pName)); }
    FileRecordPtr record(const char *pName) const { return m_place->record(QString::fromUtf8(pName)); }
    qint64 id(const char *pName) const { return m_place->id(QString::fromUtf8(pName)); }
    void write(const char *pName, const QByteArray &content = QByteArrayLiteral("x")) const
    {
        m_place->write(QString::fromUtf8(pName), content);
    }

    std::unique_ptr<LibraryFixture> m_place;
};
