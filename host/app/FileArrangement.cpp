#include "app/FileArrangement.h"

#include <algorithm>
#include <iterator>

namespace {

using Compare = bool (*)(const FileRecordPtr &, const FileRecordPtr &);

bool nameBefore(const FileRecordPtr &pLeft, const FileRecordPtr &pRight)
{
    const int nOrder = pLeft->sortKey().compare(pRight->sortKey());
    return nOrder != 0 ? nOrder < 0 : pLeft->fileId() < pRight->fileId();
}

template <typename Value, Value FileRow::*pMember, bool bDescending>
bool valueBefore(const FileRecordPtr &pLeft, const FileRecordPtr &pRight)
{
    const Value left = pLeft->row().*pMember;
    const Value right = pRight->row().*pMember;
    if (left == right)
        return nameBefore(pLeft, pRight);
    return bDescending ? left > right : left < right;
}

Compare compareFor(FileOrder order)
{
    switch (order) {
    case FileOrder::Name:
        return &nameBefore;
    case FileOrder::NewestFirst:
        return &valueBefore<qint64, &FileRow::nModifiedMsec, true>;
    case FileOrder::OldestFirst:
        return &valueBefore<qint64, &FileRow::nModifiedMsec, false>;
    case FileOrder::LargestFirst:
        return &valueBefore<qint64, &FileRow::nSize, true>;
    case FileOrder::Type:
        return &valueBefore<qint64, &FileRow::nType, false>;
    }
    return &nameBefore;
}

/** The last list with the changes merged in; order stays. */
FileRecordList merged(const FileArrangement &last, const FileChanges &changes)
{
    if (changes.isEmpty())
        return last.all;
    QHash<qint64, FileRecordPtr> latest;
    for (const FileRecordPtr &pRecord : changes.records) {
        if (!changes.gone.contains(pRecord->fileId()))
            latest.insert(pRecord->fileId(), pRecord);
    }
    FileRecordList added(latest.cbegin(), latest.cend());
    const Compare before = compareFor(last.order);
    std::sort(added.begin(), added.end(), before);
    FileRecordList kept;
    kept.reserve(last.all.size());
    for (const FileRecordPtr &pRecord : last.all) {
        if (!latest.contains(pRecord->fileId()) && !changes.gone.contains(pRecord->fileId()))
            kept.append(pRecord);
    }
    FileRecordList result;
    result.reserve(kept.size() + added.size());
    std::merge(kept.cbegin(), kept.cend(), added.cbegin(), added.cend(), std::back_inserter(result), before);
    return result;
}

/** The filter in the form in which it is asked a hundred thousand times. */
class Wanted {
public:
    explicit Wanted(const FileFilter &filter)
        : m_filter(filter)
        , m_words(filter.text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
    {
    }

    bool operator()(const FileRecord &record) const
    {
        return isInFolder(record.row().folder) &&
               (m_filter.kind == FileTypes::Kind::Any || FileTypes::kindOf(record.row().nType) == m_filter.kind) &&
               hasLabel(record) && std::all_of(m_words.cbegin(), m_words.cend(), [&record](const QString &word) {
                   return hasWord(record, word);
               });
    }

private:
    bool isInFolder(const QString &folder) const
    {
        const int nLength = m_filter.folder.size();
        return nLength == 0 || (folder.startsWith(m_filter.folder) &&
                                (folder.size() == nLength || folder.at(nLength) == QLatin1Char('/') ||
                                 m_filter.folder.endsWith(QLatin1Char('/'))));
    }

    bool hasLabel(const FileRecord &record) const
    {
        if (m_filter.nLabelId == 0)
            return true;
        const TagRecordList labels = record.tags();
        return std::any_of(labels.cbegin(), labels.cend(),
                           [this](const TagRecordPtr &pLabel) { return pLabel->id == m_filter.nLabelId; });
    }

    static bool hasWord(const FileRecord &record, const QString &word)
    {
        if (record.row().name.contains(word, Qt::CaseInsensitive))
            return true;
        const TagRecordList labels = record.tags();
        return std::any_of(labels.cbegin(), labels.cend(), [&word](const TagRecordPtr &pLabel) {
            return pLabel->name.contains(word, Qt::CaseInsensitive);
        });
    }

    const FileFilter &m_filter;
    const QStringList m_words;
};

/** Tells what the receiver has to show anew. */
void compareRows(const FileRecordList &before, FileArrangement *pNext)
{
    const FileRecordList &files = pNext->files;
    pNext->bSameRows = before.size() == files.size() && std::equal(before.cbegin(), before.cend(), files.cbegin(),
                                                                   [](const FileRecordPtr &a, const FileRecordPtr &b) {
                                                                       return a == b || a->fileId() == b->fileId();
                                                                   });
    for (int i = 0; pNext->bSameRows && i < files.size(); ++i) {
        const int nFirst = i;
        while (i < files.size() && before.at(i) != files.at(i))
            ++i;
        if (i > nFirst)
            pNext->changedRows.append({nFirst, i - 1});
    }
}

} // namespace

FileArrangement arrange(const FileArrangement &last, const FileChanges &changes, const FileFilter &filter,
                        FileOrder order)
{
    FileArrangement next;
    next.order = order;
    next.all = merged(last, changes);
    if (order != last.order)
        std::sort(next.all.begin(), next.all.end(), compareFor(order));
    const Wanted isWanted(filter);
    next.files.reserve(next.all.size());
    for (const FileRecordPtr &pRecord : qAsConst(next.all)) {
        const TagRecordList labels = pRecord->tags();
        for (const TagRecordPtr &pLabel : labels)
            ++next.labelUses[pLabel->id];
        if (isWanted(*pRecord))
            next.files.append(pRecord);
    }
    compareRows(last.files, &next);
    next.rows.reserve(next.files.size());
    for (int i = 0; i < next.files.size(); ++i)
        next.rows.insert(next.files.at(i)->fileId(), i);
    return next;
}
