#pragma once

#include "library/FileRecord.h"

#include <QStringList>

#include <memory>

/** One file that comes with what users added to it elsewhere. A plain value; crosses threads. */
struct ImportedFile {
    FileRow row; ///< Without id; where the file will stand.
    QVector<NoteRecord> notes;
    QStringList labels;
    QString coverFile; ///< A finished preview picture that the library takes over; empty: none.
    QString coverSuffix;
};

/** Files that stand, complete, in a folder which is to become a folder of the library. */
struct LibraryImport {
    QByteArray stagedFolder; ///< Native path.
    QByteArray finalFolder;  ///< Native path; must not exist.
    QVector<ImportedFile> files;

    /** Kept until the library is done: removes the staged files when the import fails. */
    std::vector<std::shared_ptr<void>> guards;
};
