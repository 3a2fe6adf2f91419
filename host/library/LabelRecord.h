#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

/** One label of the library with what the host shows of it. A plain value; crosses threads. */
struct LabelRecord {
    quint64 id = 0;
    QString name;
    quint32 color = 0; ///< 0xRRGGBB; 0: the user chose none.
};

Q_DECLARE_METATYPE(LabelRecord)
Q_DECLARE_METATYPE(QVector<LabelRecord>)
