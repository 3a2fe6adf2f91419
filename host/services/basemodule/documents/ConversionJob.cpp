#include "services/basemodule/documents/ConversionJob.h"

#include "services/basemodule/documents/ConverterProcess.h"
#include "services/basemodule/documents/ConverterSlot.h"
#include "services/basemodule/documents/DocumentPackage.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

namespace basemodule {

namespace {

constexpr qint64 kBlock = qint64(1) << 20;
// Says that a new profile is made and that it wants to be started again.
constexpr int kStartAgain = 81;
constexpr int kMostStarts = 3;

bool isPdf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(1024).contains("%PDF-");
}

/** The export filter that can stop after the first page; empty where the program is to choose. */
QString firstPageFilter(const QString &suffix)
{
    const QString range = QStringLiteral(":{\"PageRange\":{\"type\":\"string\",\"value\":\"1\"}}");
    if (suffix.startsWith(QLatin1String("doc")))
        return QStringLiteral("pdf:writer_pdf_Export") + range;
    if (suffix.startsWith(QLatin1String("xls")))
        return QStringLiteral("pdf:calc_pdf_Export") + range;
    return {};
}

/** No screen, no session, no way around the settings; temporary files where they are cleared away. */
QProcessEnvironment quietEnvironment(const QString &work)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *pName : {"DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "SESSION_MANAGER", "http_proxy",
                              "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY", "HTTPS_PROXY", "LD_PRELOAD"})
        environment.remove(QString::fromLatin1(pName));
    environment.insert(QStringLiteral("SAL_USE_VCLPLUGIN"), QStringLiteral("svp"));
    for (const char *pName : {"TMPDIR", "TMP", "TEMP"})
        environment.insert(QString::fromLatin1(pName), work);
    return environment;
}

} // namespace

ConversionJob::ConversionJob(const FileKey &key, Extent extent, PictureFormat format, const QString &program,
                             const ConverterSettings &settings, PdfStore &store, const Cancelled &cancelled)
    : m_key(key)
    , m_extent(extent)
    , m_format(format)
    , m_program(program)
    , m_settings(settings)
    , m_store(store)
    , m_cancelled(cancelled)
{
}

QString ConversionJob::suffix() const
{
    switch (m_format) {
    case PictureFormat::Pdf:
        return QStringLiteral("pdf");
    case PictureFormat::PostScript:
        return QStringLiteral("eps");
    default: {
        // A package under another name is told by its content; the name only helps with the rest.
        const QString suffix = QFileInfo(m_key.path).suffix().toLower();
        return isOfficeSuffix(suffix) ? suffix : QStringLiteral("office");
    }
    }
}

Conversion ConversionJob::run()
{
    Conversion result;
    const auto slot = ConverterSlot::acquire(m_settings.folder);
    if (!slot)
        return result;
    const QString document = slot->work() + QStringLiteral("/document.") + suffix();
    QByteArray digest;
    result.outcome = copyDocument(document, &digest);
    if (result.outcome != Conversion::Done)
        return result;
    result.pdf = m_store.findContent(digest, m_extent);
    if (result.pdf.isEmpty()) {
        const QString made = slot->work() + QStringLiteral("/out/document.pdf");
        result.outcome = convert(*slot, document, made);
        if (result.outcome != Conversion::Done)
            return result;
        result.pdf = m_store.keep(made, digest, m_extent);
    }
    if (result.pdf.isEmpty())
        result.outcome = Conversion::Unavailable;
    else
        m_store.link(m_key, digest);
    return result;
}

Conversion::Outcome ConversionJob::copyDocument(const QString &target, QByteArray *pDigest) const
{
    const auto pSource = openRegularFile(m_key.path);
    QFile copy(target);
    if (!pSource || pSource->size() > m_settings.fileLimit)
        return Conversion::Impossible;
    if (!copy.open(QIODevice::WriteOnly))
        return Conversion::Unavailable;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (QByteArray block = pSource->read(kBlock); !block.isEmpty(); block = pSource->read(kBlock)) {
        if (m_cancelled())
            return Conversion::Cancelled;
        hash.addData(block);
        if (copy.write(block) != block.size())
            return Conversion::Unavailable;
    }
    // Reading ends without a word where the disk fails: half a document is not to be taken for all of it.
    if (!copy.flush() || copy.size() != m_key.size)
        return Conversion::Unavailable;
    *pDigest = hash.result().toHex();
    // A file that is being written to is neither in the state that was asked for nor in any other.
    return fileKey(m_key.path) == m_key ? Conversion::Done : Conversion::Unavailable;
}

Conversion::Outcome ConversionJob::convert(const ConverterSlot &slot, const QString &document,
                                           const QString &made) const
{
    const QString folder = QFileInfo(made).path();
    if (!QDir().mkpath(folder))
        return Conversion::Unavailable;
    if (m_format == PictureFormat::Pdf)
        return QFile::rename(document, made) ? Conversion::Done : Conversion::Unavailable;
    if (!isSoundPackage(QFile::encodeName(document)))
        return Conversion::Impossible;
    Conversion::Outcome outcome = Conversion::Impossible;
    if (m_format == PictureFormat::PostScript) {
        outcome = runPostScript(slot, document, made);
    } else {
        const QString filter = m_extent == Extent::FirstPage ? firstPageFilter(suffix()) : QString();
        outcome = runOffice(slot, document, filter.isEmpty() ? QStringLiteral("pdf") : filter);
        // The name promised another kind of document than it holds.
        if (outcome == Conversion::Done && !filter.isEmpty() && !isPdf(made))
            outcome = runOffice(slot, document, QStringLiteral("pdf"));
    }
    if (outcome == Conversion::Done && !isPdf(made))
        return Conversion::Impossible;
    return outcome;
}

Conversion::Outcome ConversionJob::runOffice(const ConverterSlot &slot, const QString &document,
                                             const QString &filter) const
{
    const QStringList arguments{QStringLiteral("-env:UserInstallation=") + QString::fromLatin1(slot.profileUrl()),
                                QStringLiteral("--headless"),
                                QStringLiteral("--norestore"),
                                QStringLiteral("--nologo"),
                                QStringLiteral("--nodefault"),
                                QStringLiteral("--nolockcheck"),
                                QStringLiteral("--convert-to"),
                                filter,
                                QStringLiteral("--outdir"),
                                slot.work() + QStringLiteral("/out"),
                                document};
    for (int nStart = 0; nStart < kMostStarts; ++nStart) {
        if (!slot.prepareProfile())
            return Conversion::Unavailable;
        int nExitCode = 0;
        const Conversion::Outcome outcome = runProgram(slot, arguments, &nExitCode);
        if (outcome != Conversion::Done) {
            slot.discardProfile();
            return outcome;
        }
        if (nExitCode != kStartAgain)
            return Conversion::Done;
    }
    return Conversion::Unavailable;
}

Conversion::Outcome ConversionJob::runPostScript(const ConverterSlot &slot, const QString &document,
                                                 const QString &made) const
{
    int nExitCode = 0;
    return runProgram(slot,
                      {QStringLiteral("-q"), QStringLiteral("-dSAFER"), QStringLiteral("-dBATCH"),
                       QStringLiteral("-dNOPAUSE"), QStringLiteral("-dEPSCrop"), QStringLiteral("-dLastPage=1"),
                       QStringLiteral("-sDEVICE=pdfwrite"), QStringLiteral("-sOutputFile=") + made, document},
                      &nExitCode);
}

Conversion::Outcome ConversionJob::runProgram(const ConverterSlot &slot, const QStringList &arguments,
                                              int *pExitCode) const
{
    ConverterProcess process({m_settings.timeLimitMsec, m_settings.memoryLimit, m_settings.fileLimit});
    process.setProcessEnvironment(quietEnvironment(slot.work()));
    process.setWorkingDirectory(slot.work());
    switch (process.runToEnd(m_program, arguments, m_cancelled)) {
    case ConverterProcess::End::Finished:
        *pExitCode = process.exitCode();
        return Conversion::Done;
    case ConverterProcess::End::Cancelled:
        return Conversion::Cancelled;
    default:
        return Conversion::Unavailable;
    }
}

} // namespace basemodule
