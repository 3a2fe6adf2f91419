#pragma once

#include "interfaces/data/NoteRecord.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

/** What a pack says of one of its files. */
struct PackedFile {
    QString entry;   ///< Where the file stands in the pack.
    QByteArray name; ///< Its name in the library, as bytes.
    qint64 nSize = 0;
    qint64 nModifiedMsec = 0;
    int nMode = 0644; ///< Permission bits.
    QVector<NoteRecord> notes;
    QStringList labels;
    QString previewEntry; ///< Where its preview picture stands; empty: it has none.
};

/** The list of a pack's files with what was added to them, as JSON. Functions of any thread. */
namespace PackManifest {

constexpr qint64 k_nMostBytes = qint64(64) << 20;
constexpr int k_nMostFiles = 200000;

QByteArray write(const QVector<PackedFile> &files);

/**
 * Reads a manifest by a stranger: types, ranges, lengths and names are checked, and nothing may stand in it twice.
 * False with a reason that the user can read.
 */
bool read(const QByteArray &json, QVector<PackedFile> *pFiles, QString *pError);

} // namespace PackManifest
