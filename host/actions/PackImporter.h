#pragma once

#include "actions/ActionTask.h"
#include "actions/CoverFile.h"
#include "actions/PackReader.h"
#include "actions/UniqueFd.h"
#include "library/LibraryKeeping.h"

/**
 * Unpacks a pack into a hidden folder beside the place where its files will stand, puts them on the disk and makes
 * everything ready for the library to take over: all of it or nothing.
 *
 * Owner: the action's work. Thread: the action's worker; takeImport afterwards.
 */
class PackImporter {
public:
    PackImporter(const QString &packPath, const QString &parentFolder, const QString &coverFolder,
                 std::shared_ptr<const Leftovers> pLeftovers, PictureReaderFunction readPicture);

    ActionOutcome run(ActionTask &task);

    /** What the library is to take over; removes itself when nobody does. */
    LibraryImport takeImport();

private:
    bool prepare();
    bool begin(const QString &entry);
    bool write(const char *pData, qint64 nBytes);
    bool end();
    bool readPreviews(ActionTask &task);
    void addRows();
    QByteArray freeName(const QByteArray &wanted);
    QByteArray finalFolder() const;
    void fail(int nCode, const QString &reason);
    void failWithErrno(int nError);
    bool goOn(ActionTask &task);

    const QString m_packPath;
    const QString m_parentFolder;
    const QString m_coverFolder;
    const std::shared_ptr<const Leftovers> m_pLeftovers;
    const PictureReaderFunction m_readPicture;
    PackReader m_reader;
    ActionOutcome m_outcome;
    std::shared_ptr<Leftover> m_pStaging;
    std::shared_ptr<Leftover> m_pPreviews;
    UniqueFd m_folder;
    UniqueFd m_file;
    QHash<QString, int> m_fileOfEntry; ///< Position in the manifest; previews count from the number of files on.
    QVector<QByteArray> m_names;       ///< Of files, then of previews, in their folders.
    QSet<QString> m_usedNames;
    QVector<PreparedCover> m_covers;
    int m_nCurrent = -1;
    qint64 m_nBytes = 0;
    LibraryImport m_import;
};
