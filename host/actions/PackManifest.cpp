#include "actions/PackManifest.h"

#include "actions/PackArchive.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cmath>

namespace {

constexpr int k_nVersion = 1;
constexpr int k_nMostNotes = 10000;
constexpr int k_nMostLabels = 1000;
constexpr int k_nLongestLabel = 1000;
constexpr int k_nLongestNote = 1000000;
constexpr int k_nLongestName = 255;
constexpr double k_fLargestExact = 9007199254740992.0;

QString formatName()
{
    return QStringLiteral("bigimgpreview-pack");
}

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(PackManifest)
};

QJsonObject noteObject(const NoteRecord &note)
{
    return {{QStringLiteral("x"), note.rect.x()},          {QStringLiteral("y"), note.rect.y()},
            {QStringLiteral("width"), note.rect.width()},  {QStringLiteral("height"), note.rect.height()},
            {QStringLiteral("color"), qint64(note.value)}, {QStringLiteral("text"), note.text}};
}

QJsonObject fileObject(const PackedFile &file)
{
    QJsonArray notes;
    for (const NoteRecord &note : file.notes)
        notes.append(noteObject(note));
    QJsonObject object{
        {QStringLiteral("entry"), file.entry}, {QStringLiteral("name"), QString::fromUtf8(file.name)},
        {QStringLiteral("size"), file.nSize},  {QStringLiteral("modified"), file.nModifiedMsec},
        {QStringLiteral("mode"), file.nMode},  {QStringLiteral("labels"), QJsonArray::fromStringList(file.labels)},
        {QStringLiteral("notes"), notes}};
    // A name that is no text survives as bytes.
    if (QString::fromUtf8(file.name).toUtf8() != file.name)
        object.insert(QStringLiteral("nameBytes"), QString::fromLatin1(file.name.toBase64()));
    if (!file.previewEntry.isEmpty())
        object.insert(QStringLiteral("preview"), file.previewEntry);
    return object;
}

/** Takes values out of one object and remembers whether all were what they should be. */
class ObjectReader {
public:
    explicit ObjectReader(const QJsonValue &value)
        : m_object(value.toObject())
        , m_bValid(value.isObject())
    {
    }

    bool isValid() const { return m_bValid; }
    void require(bool bCondition) { m_bValid = m_bValid && bCondition; }

    QString text(const char *key, int nLongest)
    {
        const QJsonValue value = m_object.value(QLatin1String(key));
        QString result = value.toString();
        require((value.isString() || value.isUndefined()) && result.size() <= nLongest);
        return result;
    }

    qint64 number(const char *key, double fLeast, double fMost)
    {
        const QJsonValue value = m_object.value(QLatin1String(key));
        const double fNumber = value.toDouble(std::nan(""));
        const bool bGood = fNumber >= fLeast && fNumber <= fMost && fNumber == std::floor(fNumber);
        require(bGood);
        return bGood ? qint64(fNumber) : 0;
    }

    QJsonArray array(const char *key, int nMost)
    {
        const QJsonValue value = m_object.value(QLatin1String(key));
        require(value.isArray() && value.toArray().size() <= nMost);
        return isValid() ? value.toArray() : QJsonArray();
    }

private:
    const QJsonObject m_object;
    bool m_bValid;
};

bool isUsableName(const QByteArray &name)
{
    return !name.isEmpty() && name.size() <= k_nLongestName && name != "." && name != ".." && !name.contains('/') &&
           !name.contains('\0');
}

bool isEntryIn(const QString &entry, const char *folder)
{
    return entry.startsWith(QLatin1String(folder)) && entry.count(QLatin1Char('/')) == 1 &&
           !entry.endsWith(QLatin1Char('/'));
}

bool readNote(const QJsonValue &value, NoteRecord *pNote)
{
    constexpr double k_fMost = 1 << 24;
    ObjectReader reader(value);
    const int nX = int(reader.number("x", -k_fMost, k_fMost));
    const int nY = int(reader.number("y", -k_fMost, k_fMost));
    const int nWidth = int(reader.number("width", 0, k_fMost));
    const int nHeight = int(reader.number("height", 0, k_fMost));
    pNote->rect = QRect(nX, nY, nWidth, nHeight);
    pNote->value = quint32(reader.number("color", 0, double(0xFFFFFFFFU)));
    pNote->text = reader.text("text", k_nLongestNote);
    return reader.isValid();
}

bool readFile(const QJsonValue &value, PackedFile *pFile)
{
    ObjectReader reader(value);
    pFile->entry = reader.text("entry", 2 * k_nLongestName);
    const QString bytes = reader.text("nameBytes", 2 * k_nLongestName);
    pFile->name = reader.text("name", k_nLongestName).toUtf8();
    if (!bytes.isEmpty())
        pFile->name = QByteArray::fromBase64(bytes.toLatin1());
    pFile->nSize = reader.number("size", 0, k_fLargestExact);
    pFile->nModifiedMsec = reader.number("modified", -k_fLargestExact, k_fLargestExact);
    pFile->nMode = int(reader.number("mode", 0, 01777)) & 0777;
    pFile->previewEntry = reader.text("preview", 2 * k_nLongestName);
    reader.require(isUsableName(pFile->name) && isEntryIn(pFile->entry, PackFormat::k_szFiles));
    reader.require(pFile->previewEntry.isEmpty() || isEntryIn(pFile->previewEntry, PackFormat::k_szPreviews));
    const QJsonArray labels = reader.array("labels", k_nMostLabels);
    for (const QJsonValue &label : labels) {
        reader.require(label.isString() && !label.toString().isEmpty() && label.toString().size() <= k_nLongestLabel);
        pFile->labels.append(label.toString());
    }
    const QJsonArray notes = reader.array("notes", k_nMostNotes);
    for (const QJsonValue &entry : notes) {
        NoteRecord note;
        reader.require(readNote(entry, &note));
        pFile->notes.append(note);
    }
    return reader.isValid();
}

} // namespace

QByteArray PackManifest::write(const QVector<PackedFile> &files)
{
    QJsonArray list;
    for (const PackedFile &file : files)
        list.append(fileObject(file));
    const QJsonObject top{{QStringLiteral("format"), formatName()},
                          {QStringLiteral("version"), k_nVersion},
                          {QStringLiteral("created"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
                          {QStringLiteral("files"), list}};
    return QJsonDocument(top).toJson(QJsonDocument::Indented);
}

bool PackManifest::read(const QByteArray &json, QVector<PackedFile> *pFiles, QString *pError)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    ObjectReader top(document.object());
    top.require(document.isObject() && top.text("format", 100) == formatName());
    const qint64 nVersion = top.number("version", 1, 1000000);
    const QJsonArray list = top.array("files", k_nMostFiles);
    if (!top.isValid() || list.isEmpty()) {
        *pError = Words::tr("its list of files is damaged");
        return false;
    }
    if (nVersion > k_nVersion) {
        *pError = Words::tr("it was made by a newer version of the program");
        return false;
    }
    QSet<QString> entries;
    for (int i = 0; i < list.size(); ++i) {
        PackedFile file;
        if (!readFile(list.at(i), &file)) {
            *pError = Words::tr("entry %1 of its list of files is damaged").arg(i + 1);
            return false;
        }
        const int nBefore = entries.size();
        entries.insert(file.entry.toLower());
        if (!file.previewEntry.isEmpty())
            entries.insert(file.previewEntry.toLower());
        if (entries.size() != nBefore + (file.previewEntry.isEmpty() ? 1 : 2)) {
            *pError = Words::tr("its list names %1 twice").arg(file.entry);
            return false;
        }
        pFiles->append(file);
    }
    return true;
}
