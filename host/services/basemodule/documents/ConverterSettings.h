#pragma once

#include <QString>

namespace basemodule {

/** How documents are converted; handed in so that tests have their own programs, folders and limits. */
struct ConverterSettings {
    QString folder;            ///< Ours alone: converted documents, and what the programs need while they work.
    QString officeProgram;     ///< LibreOffice; empty: looked for where programs are.
    QString postScriptProgram; ///< Ghostscript; the same.
    int timeLimitMsec = 120000;
    int patienceMsec = 8000; ///< For how long a picture on screen waits for its document.
    qint64 memoryLimit = qint64(3) << 30;
    qint64 fileLimit = qint64(1) << 30; ///< For documents and for what is made of them.
    qint64 diskBudget = qint64(1) << 30;
};

} // namespace basemodule
