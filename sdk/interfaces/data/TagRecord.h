#pragma once

#include <QMetaType>
#include <QSharedPointer>
#include <QString>
#include <QVector>

/** One label of the host's library. Immutable once shared. */
struct TagRecord {
    quint64 id = 0; ///< The host's number of the label.
    QString name;   ///< Text to show; empty when only the id is known.
};

using TagRecordPtr = QSharedPointer<const TagRecord>;
using TagRecordList = QVector<TagRecordPtr>;

Q_DECLARE_METATYPE(TagRecordPtr)
