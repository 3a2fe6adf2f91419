#include "library/LibraryStore.h"

#include <QCoreApplication>
#include <QVariant>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(LibraryStore)
};

} // namespace

QHash<qint64, TagRecordList> LibraryStore::allLabels()
{
    QHash<qint64, TagRecordList> labels;
    QHash<quint64, TagRecordPtr> shared;
    QSqlQuery query = prepared(QStringLiteral("SELECT file_id, label_id, name FROM file_labels"
                                              " JOIN labels ON labels.id = label_id ORDER BY file_id, name"));
    if (!exec(&query))
        return labels;
    while (query.next()) {
        TagRecordPtr &pLabel = shared[query.value(1).toULongLong()];
        if (pLabel == nullptr)
            pLabel = TagRecordPtr(new TagRecord{query.value(1).toULongLong(), query.value(2).toString()});
        labels[query.value(0).toLongLong()].append(pLabel);
    }
    return labels;
}

quint64 LibraryStore::labelId(const TagRecord &label)
{
    if (label.name.isEmpty())
        return label.id;
    QSqlQuery add = prepared(QStringLiteral("INSERT OR IGNORE INTO labels (name) VALUES (?)"));
    add.addBindValue(label.name);
    QSqlQuery find = prepared(QStringLiteral("SELECT id FROM labels WHERE name = ?"));
    find.addBindValue(label.name);
    return exec(&add) && exec(&find) && find.next() ? find.value(0).toULongLong() : 0;
}

bool LibraryStore::addLabels(const QVector<qint64> &fileIds, const TagRecordList &labels)
{
    return beginTransaction() && finishTransaction(writeLabels(fileIds, labels));
}

bool LibraryStore::writeLabels(const QVector<qint64> &fileIds, const TagRecordList &labels)
{
    QSqlQuery link = prepared(QStringLiteral("INSERT INTO file_labels (file_id, label_id) VALUES (?, ?)"
                                             " ON CONFLICT DO NOTHING"));
    QSet<quint64> done;
    for (const TagRecordPtr &pLabel : labels) {
        const quint64 nLabelId = pLabel != nullptr ? labelId(*pLabel) : 0;
        if (nLabelId != 0 && done.contains(nLabelId))
            continue;
        done.insert(nLabelId);
        if (nLabelId == 0) {
            m_lastError = Words::tr("a label is neither named nor known");
            return false;
        }
        for (const qint64 nFileId : fileIds) {
            link.bindValue(0, nFileId);
            link.bindValue(1, nLabelId);
            if (!exec(&link))
                return false;
        }
    }
    return true;
}

QVector<LabelRecord> LibraryStore::labelRecords()
{
    QVector<LabelRecord> records;
    QSqlQuery query = prepared(QStringLiteral("SELECT id, name, color FROM labels ORDER BY name COLLATE NOCASE"));
    if (!exec(&query))
        return records;
    while (query.next())
        records.append(LabelRecord{query.value(0).toULongLong(), query.value(1).toString(), query.value(2).toUInt()});
    return records;
}

bool LibraryStore::removeLabels(const QVector<qint64> &fileIds, const QVector<quint64> &labelIds)
{
    if (!beginTransaction())
        return false;
    QSqlQuery query = prepared(QStringLiteral("DELETE FROM file_labels WHERE file_id = ? AND label_id = ?"));
    bool bDone = true;
    for (const qint64 nFileId : fileIds) {
        for (const quint64 nLabelId : labelIds) {
            query.bindValue(0, nFileId);
            query.bindValue(1, nLabelId);
            bDone = bDone && exec(&query);
        }
    }
    return finishTransaction(bDone);
}

bool LibraryStore::setLabelColor(quint64 nLabelId, quint32 nColor)
{
    QSqlQuery query = prepared(QStringLiteral("UPDATE labels SET color = ? WHERE id = ?"));
    query.addBindValue(nColor);
    query.addBindValue(nLabelId);
    return exec(&query);
}

bool LibraryStore::deleteLabel(quint64 nLabelId)
{
    // The links to files go with it.
    QSqlQuery query = prepared(QStringLiteral("DELETE FROM labels WHERE id = ?"));
    query.addBindValue(nLabelId);
    return exec(&query);
}
