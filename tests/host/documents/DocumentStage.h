#pragma once

#include "../HostTestSupport.h"
#include "Documents.h"
#include "TestFiles.h"
#include "services/basemodule/documents/ConverterSlot.h"
#include "services/basemodule/documents/PdfStore.h"
#include "services/basemodule/documents/PresentationRenderer.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QPainter>
#include <QPdfWriter>

#include <csignal>
#include <future>

inline QString document(const char *pName)
{
    const QString name = QString::fromUtf8(pName);
    return QStringLiteral(SAMPLES_DIR "/") +
           (QFile::exists(QStringLiteral(SAMPLES_DIR "/documents/") + name) ? QStringLiteral("documents/")
                                                                            : QStringLiteral("nasty-documents/")) +
           name;
}

/**
 * A base module with folders of its own. With `script` a shell script stands for LibreOffice: it writes its number into
 * a log, and finds the folder for its result in $out and a document of six pages in $pages.
 */
struct DocumentStage {
    static constexpr int kPages = 6;

    QTemporaryDir folder;
    QString log = folder.filePath(QStringLiteral("log"));
    std::unique_ptr<basemodule::BaseModule> module;

    explicit DocumentStage(const char *pScript = nullptr, int nTimeLimitMsec = 600000)
    {
        basemodule::ConverterSettings settings;
        settings.timeLimitMsec = nTimeLimitMsec;
        settings.patienceMsec = 60000;
        settings.fileLimit = qint64(64) << 20;
        if (pScript)
            settings.officeProgram = writeProgram(pScript);
        module = std::make_unique<basemodule::BaseModule>(
            basemodule::CacheFolders{folder.filePath(QStringLiteral("r")), folder.filePath(QStringLiteral("t")),
                                     folder.filePath(QStringLiteral("d"))},
            settings, nullptr);
    }

    basemodule::PresentationRenderer &renderer() const
    {
        return *static_cast<basemodule::PresentationRenderer *>(module->presentationRenderer());
    }
    std::future<bool> open(qint64 nId, const QString &path) const
    {
        return std::async(std::launch::async, [=] { return renderer().openDocument(nId, path); });
    }

    /** A deck that nobody has converted before. */
    QString deck(int nVariant = 0) const
    {
        const QString path = folder.filePath(QStringLiteral("deck%1.pptx").arg(nVariant));
        documents::Deck wanted;
        wanted.nSlides = 1;
        wanted.nShapes = nVariant;
        documents::writeDeck(path, wanted);
        return path;
    }

    /** Numbers of the processes that were started. */
    QVector<int> started() const
    {
        QVector<int> numbers;
        for (const QByteArray &line : readFile(log).split('\n')) {
            if (!line.isEmpty())
                numbers.append(line.toInt());
        }
        return numbers;
    }
    bool isAnyAlive() const
    {
        const QVector<int> numbers = started();
        return std::any_of(numbers.begin(), numbers.end(), [](int nPid) {
            const QByteArray state = readFile(QStringLiteral("/proc/%1/stat").arg(nPid));
            return !state.isEmpty() && !state.contains(") Z ");
        });
    }

    /** Files in the converter's work folders. */
    QStringList leftovers() const
    {
        QStringList found;
        QDirIterator it(folder.filePath(QStringLiteral("d")), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            if (it.next().contains(QLatin1String("/work")))
                found.append(it.filePath());
        }
        return found;
    }

private:
    QString writeProgram(const char *pScript) const
    {
        const QString pages = folder.filePath(QStringLiteral("pages.pdf"));
        QPdfWriter pdf(pages);
        pdf.setPageSize(QPageSize(QSizeF(254, 142.875), QPageSize::Millimeter));
        pdf.setPageMargins(QMarginsF());
        QPainter painter(&pdf);
        for (int i = 0; i < kPages; ++i) {
            if (i > 0)
                pdf.newPage();
            painter.fillRect(0, 0, pdf.width() / 2, pdf.height(), QColor(documents::slideColor(i)));
        }
        painter.end();
        const QString path = folder.filePath(QStringLiteral("office"));
        writeFile(path, "#!/bin/sh\nfor a; do [ \"$p\" = --outdir ] && out=$a; p=$a; done\npages='" +
                            QFile::encodeName(pages) + "'\nlog='" + QFile::encodeName(log) +
                            "'\necho $$ >> \"$log\"\n" + pScript + '\n');
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        return path;
    }
};

/** A script that converts, and one that never does and has a child that would outlive it. */
constexpr const char *kConverts = "cp \"$pages\" \"$out/document.pdf\"";
constexpr const char *kHangs = "sleep 300 & echo $! >> \"$log\"; wait";

/** Whether the left half of a page has the colour of a slide. */
inline bool showsSlide(const QImage &page, int nSlide)
{
    return !page.isNull() && page.pixel(page.width() / 8, page.height() / 3) == documents::slideColor(nSlide);
}
