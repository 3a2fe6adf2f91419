#pragma once

#include "services/basemodule/decode/PictureFormat.h"
#include "services/basemodule/documents/ConverterSettings.h"
#include "services/basemodule/documents/PdfStore.h"

#include <functional>

namespace basemodule {

class ConverterSlot;

/** What came of a conversion. */
struct Conversion {
    enum Outcome {
        Done,
        Impossible,  ///< The document itself is at fault.
        Unavailable, ///< The program, the disk or the time: another try may do better.
        Cancelled
    };
    Outcome outcome = Unavailable;
    QString pdf; ///< Of a conversion that is done.
};

/**
 * Makes a PDF file of one document: reads it into a private copy, looks whether its content was converted before, has
 * the program do it otherwise, and gives the result to the store. The document itself is not open while that goes on.
 *
 * Owner: the converter. Thread: one of its workers.
 */
class ConversionJob {
public:
    using Cancelled = std::function<bool()>;

    ConversionJob(const FileKey &key, Extent extent, PictureFormat format, const QString &program,
                  const ConverterSettings &settings, PdfStore &store, const Cancelled &cancelled);

    Conversion run();

private:
    /** The document's copy, and its digest; not done when the file cannot be read as it was seen. */
    Conversion::Outcome copyDocument(const QString &target, QByteArray *pDigest) const;
    Conversion::Outcome convert(const ConverterSlot &slot, const QString &document, const QString &made) const;
    Conversion::Outcome runOffice(const ConverterSlot &slot, const QString &document, const QString &filter) const;
    Conversion::Outcome runPostScript(const ConverterSlot &slot, const QString &document, const QString &made) const;
    Conversion::Outcome runProgram(const ConverterSlot &slot, const QStringList &arguments, int *pExitCode) const;
    QString suffix() const;

    const FileKey m_key;
    const Extent m_extent;
    const PictureFormat m_format;
    const QString m_program;
    const ConverterSettings &m_settings;
    PdfStore &m_store;
    const Cancelled m_cancelled;
};

} // namespace basemodule
