// Presentations: the first page of one converted before, of a new one, the next page, and memory of a long one.
#include "Documents.h"
#include "Ratio.h"
#include "services/basemodule/BaseModule.h"
#include "services/basemodule/documents/PresentationRenderer.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>

#include <future>
#include <memory>
#include <poppler-qt5.h>

namespace {

constexpr QSize ScreenPage(1920, 1080);
constexpr double FirstPageGraceMsec = 50.0;
constexpr double NextPageMsec = 50.0;
constexpr double CancelMsec = 300.0;
constexpr int PatienceMsec = 600000;
constexpr double MemoryBudgetMegabytes = 100.0;
constexpr int LongDeckPages = 300;
constexpr int Rounds = 7;

double msec(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/** Poppler alone: the page of a PDF file, opened for it. */
QImage renderWithPoppler(const QString &pdf, int nPage)
{
    const std::unique_ptr<Poppler::Document> document(Poppler::Document::load(pdf));
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    const std::unique_ptr<Poppler::Page> page(document->page(nPage));
    const double fDpi = 72.0 * ScreenPage.width() / page->pageSizeF().width();
    return page->renderToImage(fDpi, fDpi);
}

/** The office program alone, on a profile that is warm from the second time on. */
bool convert(const QString &document, const QTemporaryDir &folder)
{
    QProcess office;
    office.setStandardOutputFile(QProcess::nullDevice());
    office.setStandardErrorFile(QProcess::nullDevice());
    const QString profile = QUrl::fromLocalFile(folder.filePath(QStringLiteral("profile"))).toString();
    office.start(QStringLiteral("soffice"),
                 {QStringLiteral("-env:UserInstallation=") + profile, QStringLiteral("--headless"),
                  QStringLiteral("--convert-to"), QStringLiteral("pdf"), QStringLiteral("--outdir"), folder.path(),
                  document});
    return office.waitForFinished(PatienceMsec) && office.exitCode() == 0;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024.0;
    }
    return 0.0;
}

class Stage {
public:
    Stage()
        : m_module({m_folder.filePath(QStringLiteral("r")), m_folder.filePath(QStringLiteral("t")),
                    m_folder.filePath(QStringLiteral("d"))},
                   patientSettings(), nullptr)
    {
    }

    basemodule::PresentationRenderer &renderer()
    {
        return *static_cast<basemodule::PresentationRenderer *>(m_module.presentationRenderer());
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    const QTemporaryDir &folder() const { return m_folder; }

    /** A deck with some work on each slide, unlike every other. */
    QString deck(int nSlides, int nVariant)
    {
        const QString file = path(QStringLiteral("deck%1_%2.pptx").arg(nSlides).arg(nVariant));
        documents::writeDeck(file, {nSlides, QSize(1280, 720 + nVariant), {}, 0, 60});
        return file;
    }

    bool showFirst(const QString &document)
    {
        return renderer().openDocument(1, document) && !renderer().renderPage(1, 0, ScreenPage).isNull();
    }

private:
    static basemodule::ConverterSettings patientSettings()
    {
        basemodule::ConverterSettings settings;
        settings.timeLimitMsec = PatienceMsec;
        return settings;
    }

    QTemporaryDir m_folder;
    basemodule::BaseModule m_module;
};

bool benchFirstPages(Stage &stage)
{
    std::vector<double> known;
    std::vector<double> unknown;
    if (!stage.showFirst(stage.deck(20, 0)) || !convert(stage.deck(20, 0), stage.folder()))
        return false;
    for (int i = 1; i <= Rounds; ++i) {
        const QString document = stage.deck(20, i);
        const bool bOursFirst = i % 2 == 0;
        double fOurs = 0.0;
        double fOffice = 0.0;
        for (const bool bOurs : {bOursFirst, !bOursFirst}) {
            QElapsedTimer timer;
            timer.start();
            if (!(bOurs ? stage.showFirst(document) : convert(document, stage.folder())))
                return false;
            (bOurs ? fOurs : fOffice) = msec(timer);
        }
        unknown.push_back(fOurs / fOffice);
        stage.renderer().closeAllDocuments();
        QElapsedTimer timer;
        timer.start();
        if (!stage.showFirst(document))
            return false;
        const double fKnown = msec(timer);
        stage.renderer().closeAllDocuments();
        timer.start();
        if (renderWithPoppler(stage.path(QStringLiteral("deck20_%1.pdf").arg(i)), 0).isNull())
            return false;
        known.push_back((fKnown - FirstPageGraceMsec) / msec(timer));
    }
    Ratio::report("first page, converted before (less 50 ms) / Poppler", median(known), 1.3);
    Ratio::report("first page, new document / soffice --convert-to pdf", median(unknown), 1.15);
    return true;
}

/** Whether a process works below this folder. */
bool isAtWork(const QString &folder)
{
    QDirIterator processes(QStringLiteral("/proc"), QDir::Dirs | QDir::NoDotAndDotDot);
    while (processes.hasNext()) {
        QFile command(processes.next() + QStringLiteral("/cmdline"));
        if (command.open(QIODevice::ReadOnly) && command.readAll().contains(QFile::encodeName(folder)))
            return true;
    }
    return false;
}

bool benchCancel(Stage &stage)
{
    const QString document = stage.deck(LongDeckPages, 1);
    std::vector<double> ends;
    for (int i = 0; i < Rounds; ++i) {
        auto opening = std::async(std::launch::async, [&] { return stage.renderer().openDocument(1, document); });
        QElapsedTimer timer;
        timer.start();
        while (!isAtWork(stage.folder().path()) && timer.elapsed() < PatienceMsec)
            QThread::msleep(5);
        QThread::msleep(ulong(100 * i)); // early and late in a conversion
        timer.start();
        stage.renderer().closeAllDocuments();
        opening.wait();
        while (isAtWork(stage.folder().path()) && timer.elapsed() < PatienceMsec)
            QThread::msleep(1);
        ends.push_back(msec(timer));
        if (opening.get())
            return false;
    }
    Ratio::report("end of a cancelled conversion / 300 ms", *std::max_element(ends.begin(), ends.end()) / CancelMsec,
                  1.0);
    return true;
}

bool benchLongDeck(Stage &stage)
{
    const QString document = stage.deck(LongDeckPages, 0);
    const double fBefore = residentMegabytes();
    if (!stage.showFirst(document))
        return false;
    std::vector<double> steps;
    double fMost = 0.0;
    for (int nPage = 1; nPage < LongDeckPages; ++nPage) {
        QElapsedTimer patience;
        patience.start();
        // As long as somebody looks at a page, and longer on a busy machine.
        while (!stage.renderer().ahead().isIdle() && patience.elapsed() < 3000)
            QThread::msleep(5);
        QElapsedTimer timer;
        timer.start();
        const QImage page = stage.renderer().renderPage(1, nPage, ScreenPage);
        steps.push_back(msec(timer));
        if (page.isNull())
            return false;
        fMost = std::max(fMost, residentMegabytes() - double(page.sizeInBytes()) / (1 << 20));
    }
    Ratio::report("next page, rendered ahead / 50 ms", median(steps) / NextPageMsec, 1.0);
    Ratio::report("memory of 300 pages beyond the one shown / 100 MB", (fMost - fBefore) / MemoryBudgetMegabytes, 1.0);
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    Stage stage;
    if (!benchFirstPages(stage) || !benchCancel(stage) || !benchLongDeck(stage)) {
        std::puts("a document could not be converted");
        return 2;
    }
    return Ratio::allPassed() ? 0 : 1;
}
