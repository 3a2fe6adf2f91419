#pragma once

#include "library/FileRecord.h"
#include "library/FileTypes.h"

#include <QHash>
#include <QSet>

/** Which files the user wants to see. A plain value. */
struct FileFilter {
    QString folder; ///< With its sub-folders; empty: all.
    QString text;   ///< Words that name or labels must contain, all of them.
    FileTypes::Kind kind = FileTypes::Kind::Any;
    quint64 nLabelId = 0; ///< 0: with any label or none.

    bool operator==(const FileFilter &other) const
    {
        return folder == other.folder && text == other.text && kind == other.kind && nLabelId == other.nLabelId;
    }
    /** Whether the user narrowed the view by more than a folder. */
    bool isNarrowed() const { return !text.isEmpty() || kind != FileTypes::Kind::Any || nLabelId != 0; }
};

/** In which order the user wants to see them. */
enum class FileOrder { Name, NewestFirst, OldestFirst, LargestFirst, Type };

/** Files in order, and those of them that are wanted. A plain value of shared parts: cheap to copy, crosses threads. */
struct FileArrangement {
    FileRecordList all; ///< In `order`.
    FileOrder order = FileOrder::Name;
    FileRecordList files;                 ///< The wanted ones of them.
    QHash<qint64, int> rows;              ///< Places in `files` by id.
    QHash<quint64, int> labelUses;        ///< Files in `all` by label.
    bool bSameRows = false;               ///< The wanted files are those of the last arrangement, in the same order…
    QVector<QPair<int, int>> changedRows; ///< …and these runs of them, first and last, have new records.
};

/** What happened since an arrangement was made. */
struct FileChanges {
    FileRecordList records; ///< New or changed files; of several for one file the last counts.
    QSet<qint64> gone;

    bool isEmpty() const { return records.isEmpty() && gone.isEmpty(); }
};

/** Makes the next arrangement of the last one. Takes time in proportion to the files; any thread. */
FileArrangement arrange(const FileArrangement &last, const FileChanges &changes, const FileFilter &filter,
                        FileOrder order);
