#include "Documents.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <memory>

namespace documents {

namespace {

constexpr qint64 kEmuPerPixel = 9525;
constexpr const char *kHeader = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
const QByteArray kOffice = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const QByteArray kPackage = "http://schemas.openxmlformats.org/package/2006/";
const QByteArray kDrawing = "http://schemas.openxmlformats.org/drawingml/2006/main";
const QByteArray kTypes = "application/vnd.openxmlformats-officedocument.";

/** Writes a zip package, entry by entry. */
class Package {
public:
    explicit Package(const QString &path)
        : m_archive(::archive_write_new())
    {
        ::archive_write_set_format_zip(m_archive.get());
        m_bOk = ::archive_write_open_filename(m_archive.get(), QFile::encodeName(path).constData()) == ARCHIVE_OK;
    }

    void add(const QByteArray &name, const QByteArray &content) { add(name, content, content.size()); }

    /** The content again and again, up to this size. */
    void add(const QByteArray &name, const QByteArray &content, qint64 nSize)
    {
        struct archive_entry *pEntry = ::archive_entry_new();
        ::archive_entry_set_pathname(pEntry, name.constData());
        ::archive_entry_set_filetype(pEntry, AE_IFREG);
        ::archive_entry_set_perm(pEntry, 0644);
        ::archive_entry_set_size(pEntry, nSize);
        m_bOk = m_bOk && ::archive_write_header(m_archive.get(), pEntry) == ARCHIVE_OK;
        ::archive_entry_free(pEntry);
        for (qint64 nLeft = nSize; m_bOk && nLeft > 0; nLeft -= content.size()) {
            const auto nBytes = size_t(std::min<qint64>(nLeft, content.size()));
            m_bOk = ::archive_write_data(m_archive.get(), content.constData(), nBytes) == la_ssize_t(nBytes);
        }
    }

    void addTypes(const QByteArray &overrides)
    {
        add("[Content_Types].xml",
            kHeader + ("<Types xmlns=\"" + kPackage +
                       "content-types\"><Default Extension=\"rels\" ContentType=\"application/"
                       "vnd.openxmlformats-package.relationships+xml\"/><Default Extension=\"xml\" "
                       "ContentType=\"application/xml\"/>" +
                       overrides + "</Types>"));
    }

    void addRelations(const QByteArray &name, const QByteArray &relations)
    {
        add(name,
            kHeader + ("<Relationships xmlns=\"" + kPackage + "relationships\">" + relations + "</Relationships>"));
    }

    bool close() { return ::archive_write_close(m_archive.get()) == ARCHIVE_OK && m_bOk; }

private:
    struct Closer {
        void operator()(struct archive *pArchive) const { ::archive_write_free(pArchive); }
    };
    const std::unique_ptr<struct archive, Closer> m_archive;
    bool m_bOk = false;
};

QByteArray number(qint64 nValue)
{
    return QByteArray::number(nValue);
}

QByteArray override(const QByteArray &part, const QByteArray &type)
{
    return "<Override PartName=\"" + part + "\" ContentType=\"" + kTypes + type + "\"/>";
}

QByteArray relation(const QByteArray &id, const QByteArray &type, const QByteArray &target)
{
    return "<Relationship Id=\"" + id + "\" Type=\"" + kOffice + '/' + type + "\" Target=\"" + target + "\"/>";
}

QByteArray box(qint64 nX, qint64 nY, qint64 nWidth, qint64 nHeight)
{
    return "<a:xfrm><a:off x=\"" + number(nX) + "\" y=\"" + number(nY) + "\"/><a:ext cx=\"" + number(nWidth) +
           "\" cy=\"" + number(nHeight) + "\"/></a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom>";
}

QByteArray shape(int nId, const QByteArray &box, const QByteArray &fill, const QByteArray &text)
{
    return "<p:sp><p:nvSpPr><p:cNvPr id=\"" + number(nId) + "\" name=\"s\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr>" +
           box + fill + "</p:spPr><p:txBody><a:bodyPr/><a:p><a:r><a:rPr sz=\"9600\"/><a:t>" + text +
           "</a:t></a:r></a:p></p:txBody></p:sp>";
}

QByteArray slide(const Deck &deck, int nSlide)
{
    const qint64 nWidth = deck.pixels.width() * kEmuPerPixel;
    const qint64 nHeight = deck.pixels.height() * kEmuPerPixel;
    const QByteArray color = QByteArray::number(slideColor(nSlide) & 0xffffffU, 16).rightJustified(6, '0');
    QByteArray shapes =
        shape(2, box(0, 0, nWidth / 2, nHeight), "<a:solidFill><a:srgbClr val=\"" + color + "\"/></a:solidFill>", {}) +
        shape(3, box(nWidth / 2, 0, nWidth / 2, nHeight), "<a:noFill/>", number(nSlide + 1));
    for (int i = 0; i < deck.nShapes; ++i) {
        shapes += shape(10 + i, box(nWidth / 2 + i % 50 * nWidth / 110, nHeight / 2 + i / 50 * 90000, 80000, 80000),
                        "<a:gradFill><a:gsLst><a:gs pos=\"0\"><a:srgbClr val=\"204060\"/></a:gs><a:gs pos=\"100000\">"
                        "<a:srgbClr val=\"c0e0ff\"/></a:gs></a:gsLst><a:lin ang=\"2700000\"/></a:gradFill>",
                        {});
    }
    if (!deck.linkedPicture.isEmpty()) {
        shapes += "<p:pic><p:nvPicPr><p:cNvPr id=\"9\" name=\"p\"/><p:cNvPicPr/><p:nvPr/></p:nvPicPr><p:blipFill>"
                  "<a:blip r:link=\"link\"/><a:stretch><a:fillRect/></a:stretch></p:blipFill><p:spPr>" +
                  box(0, 0, nWidth / 2, nHeight) + "</p:spPr></p:pic>";
    }
    return kHeader + ("<p:sld xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\" xmlns:a=\"" +
                      kDrawing + "\" xmlns:r=\"" + kOffice +
                      "\"><p:cSld><p:spTree><p:nvGrpSpPr><p:cNvPr id=\"1\" name=\"\"/><p:cNvGrpSpPr/><p:nvPr/>"
                      "</p:nvGrpSpPr><p:grpSpPr/>" +
                      shapes + "</p:spTree></p:cSld></p:sld>");
}

} // namespace

quint32 slideColor(int nSlide)
{
    static const std::array<quint32, 4> colors{0xffc00000, 0xff00a000, 0xff0000c0, 0xffc0a000};
    return colors.at(size_t(nSlide) % colors.size());
}

bool writeDeck(const QString &path, const Deck &deck)
{
    Package package(path);
    const QByteArray presentation = "presentationml.";
    QByteArray types = override("/ppt/presentation.xml", presentation + "presentation.main+xml");
    QByteArray list;
    QByteArray relations;
    for (int i = 1; i <= deck.nSlides; ++i) {
        const QByteArray name = "s" + number(i);
        types += override("/ppt/slides/" + name + ".xml", presentation + "slide+xml");
        list += "<p:sldId id=\"" + number(255 + i) + "\" r:id=\"" + name + "\"/>";
        relations += relation(name, "slide", "slides/" + name + ".xml");
    }
    package.addTypes(types);
    package.addRelations("_rels/.rels", relation("r", "officeDocument", "ppt/presentation.xml"));
    package.add("ppt/presentation.xml",
                kHeader + ("<p:presentation xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\" "
                           "xmlns:r=\"" +
                           kOffice + "\"><p:sldIdLst>" + list + "</p:sldIdLst><p:sldSz cx=\"" +
                           number(deck.pixels.width() * kEmuPerPixel) + "\" cy=\"" +
                           number(deck.pixels.height() * kEmuPerPixel) + "\"/></p:presentation>"));
    package.addRelations("ppt/_rels/presentation.xml.rels", relations);
    for (int i = 0; i < deck.nSlides; ++i) {
        const QByteArray name = "s" + number(i + 1) + ".xml";
        package.add("ppt/slides/" + name, slide(deck, i));
        if (!deck.linkedPicture.isEmpty()) {
            QByteArray link = relation("link", "image", deck.linkedPicture);
            package.addRelations("ppt/slides/_rels/" + name + ".rels",
                                 link.replace("/>", " TargetMode=\"External\"/>"));
        }
    }
    if (deck.nZeroBytes > 0)
        package.add("ppt/media/nothing.bin", QByteArray(1 << 20, '\0'), deck.nZeroBytes);
    return package.close();
}

bool writeMacroDeck(const QString &path, const QString &madeFile)
{
    const QByteArray office = "urn:oasis:names:tc:opendocument:xmlns:";
    const QByteArray kind = "application/vnd.oasis.opendocument.presentation";
    const QByteArray script = "xmlns:library=\"http://openoffice.org/2000/library\"";
    const QByteArray xlink = "xmlns:xlink=\"http://www.w3.org/1999/xlink\"";
    Package package(path);
    package.add("mimetype", kind);
    // A text, not the parts of one: they would be gone by the time it is put together.
    const auto entry = [](const QByteArray &name, const QByteArray &type) -> QByteArray {
        return "<manifest:file-entry manifest:full-path=\"" + name + "\" manifest:media-type=\"" + type + "\"/>";
    };
    QByteArray entries = entry("/", kind);
    for (const char *pName :
         {"content.xml", "Basic/script-lc.xml", "Basic/Standard/script-lb.xml", "Basic/Standard/M.xml"})
        entries += entry(pName, "text/xml");
    package.add("META-INF/manifest.xml",
                kHeader + ("<manifest:manifest xmlns:manifest=\"" + office +
                           "manifest:1.0\" manifest:version=\"1.2\">" + entries + "</manifest:manifest>"));
    package.add("content.xml",
                kHeader +
                    ("<office:document-content xmlns:office=\"" + office + "office:1.0\" xmlns:draw=\"" + office +
                     "drawing:1.0\" xmlns:script=\"" + office +
                     "script:1.0\" xmlns:dom=\"http://www.w3.org/2001/xml-events\" " + xlink +
                     " office:version=\"1.2\"><office:scripts><office:event-listeners><script:event-listener "
                     "script:language=\"ooo:script\" script:event-name=\"dom:load\" xlink:href=\""
                     "vnd.sun.star.script:Standard.M.Main?language=Basic&amp;location=document\"/>"
                     "</office:event-listeners></office:scripts><office:body><office:presentation>"
                     "<draw:page draw:name=\"p\"/></office:presentation></office:body></office:document-content>"));
    package.add("Basic/script-lc.xml",
                kHeader + ("<library:libraries " + script + ' ' + xlink +
                           "><library:library library:name=\"Standard\" library:link=\"false\"/></library:libraries>"));
    package.add("Basic/Standard/script-lb.xml",
                kHeader + ("<library:library " + script +
                           " library:name=\"Standard\" library:readonly=\"false\" library:passwordprotected=\"false\">"
                           "<library:element library:name=\"M\"/></library:library>"));
    package.add("Basic/Standard/M.xml",
                kHeader + ("<script:module xmlns:script=\"http://openoffice.org/2000/script\" script:name=\"M\" "
                           "script:language=\"StarBasic\">Sub Main\nOpen &quot;" +
                           QFile::encodeName(madeFile) +
                           "&quot; For Output As #1\nPrint #1, 1\nClose #1\nEnd Sub\n</script:module>"));
    return package.close();
}

bool writeText(const QString &path, int nPages)
{
    Package package(path);
    package.addTypes(override("/word/document.xml", "wordprocessingml.document.main+xml"));
    package.addRelations("_rels/.rels", relation("r", "officeDocument", "word/document.xml"));
    QByteArray body;
    for (int i = 1; i <= nPages; ++i) {
        body += "<w:p><w:pPr><w:shd w:val=\"clear\" w:fill=\"00A000\"/></w:pPr><w:r><w:rPr><w:sz w:val=\"144\"/>"
                "</w:rPr><w:t>Page " +
                number(i) + "</w:t></w:r><w:r><w:br w:type=\"page\"/></w:r></w:p>";
    }
    package.add("word/document.xml",
                kHeader + ("<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
                           "<w:body>" +
                           body + "</w:body></w:document>"));
    return package.close();
}

bool writeTable(const QString &path, int nRows)
{
    Package package(path);
    package.addTypes(override("/xl/workbook.xml", "spreadsheetml.sheet.main+xml") +
                     override("/xl/sheet1.xml", "spreadsheetml.worksheet+xml"));
    package.addRelations("_rels/.rels", relation("r", "officeDocument", "xl/workbook.xml"));
    const QByteArray space = "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"";
    package.add("xl/workbook.xml", kHeader + ("<workbook " + space + " xmlns:r=\"" + kOffice +
                                              "\"><sheets><sheet name=\"Numbers\" sheetId=\"1\" r:id=\"a\"/></sheets>"
                                              "</workbook>"));
    package.addRelations("xl/_rels/workbook.xml.rels", relation("a", "worksheet", "sheet1.xml"));
    QByteArray rows;
    for (int i = 1; i <= nRows; ++i) {
        rows += "<row r=\"" + number(i) + "\"><c r=\"A" + number(i) + "\"><v>" + number(i) + "</v></c><c r=\"B" +
                number(i) + "\"><v>" + number(qint64(i) * i) + "</v></c></row>";
    }
    package.add("xl/sheet1.xml",
                kHeader + ("<worksheet " + space + "><sheetData>" + rows + "</sheetData></worksheet>"));
    return package.close();
}

QByteArray drawing()
{
    return QByteArrayLiteral("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 300 200\n%%EndComments\n"
                             "0 0.63 0 setrgbcolor 0 0 150 200 rectfill\n"
                             "0 0 0.75 setrgbcolor 225 100 60 0 360 arc fill\nshowpage\n%%EOF\n");
}

QByteArray lockedPackage()
{
    constexpr int kSector = 512;
    constexpr int kStreamSectors = 8;
    constexpr quint32 kEnd = 0xfffffffe;
    constexpr quint32 kFree = 0xffffffff;
    QByteArray file(kSector * (1 + 2 + 2 * kStreamSectors), '\0');
    const auto put = [&file](int nAt, auto nValue) {
        const auto nStored = qToLittleEndian(nValue);
        file.replace(nAt, int(sizeof(nStored)), reinterpret_cast<const char *>(&nStored), int(sizeof(nStored)));
    };
    file.replace(0, 8, QByteArrayLiteral("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"));
    for (const auto &[nAt, nValue] : {std::pair(24, 0x3e), {26, 3}, {28, 0xfffe}, {30, 9}, {32, 6}})
        put(nAt, quint16(nValue));
    for (const auto &[nAt, nValue] : {std::pair(44, 1U), {48, 1U}, {56, 4096U}, {60, kEnd}, {68, kEnd}, {76, 0U}})
        put(nAt, quint32(nValue));
    std::fill(file.begin() + 80, file.begin() + kSector, '\xff');
    // The table of sectors: itself, the directory, two streams.
    std::fill(file.begin() + kSector, file.begin() + 2 * kSector, '\xff');
    put(kSector, quint32(0xfffffffd));
    put(kSector + 4, kEnd);
    for (int i = 2; i < 2 + 2 * kStreamSectors; ++i)
        put(kSector + 4 * i, (i - 1) % kStreamSectors == 0 ? kEnd : quint32(i + 1));
    const auto entry = [&](int nEntry, const QString &name, char cType, quint32 nRight, quint32 nChild, quint32 nStart,
                           quint32 nSize) {
        const int nAt = 2 * kSector + 128 * nEntry;
        for (int i = 0; i < name.size(); ++i)
            put(nAt + 2 * i, name.at(i).unicode());
        put(nAt + 64, quint16(2 * name.size() + 2));
        file[nAt + 66] = cType;
        file[nAt + 67] = 1;
        put(nAt + 68, kFree);
        put(nAt + 72, nRight);
        put(nAt + 76, nChild);
        put(nAt + 116, nStart);
        put(nAt + 120, nSize);
    };
    constexpr quint32 kStream = kStreamSectors * kSector;
    entry(0, QStringLiteral("Root Entry"), 5, kFree, 1, kEnd, 0);
    entry(1, QStringLiteral("EncryptionInfo"), 2, 2, kFree, 2, kStream);
    entry(2, QStringLiteral("EncryptedPackage"), 2, kFree, kFree, 2 + kStreamSectors, kStream);
    put(3 * kSector, quint32(0x00040004));
    put(3 * kSector + 4, quint32(0x40));
    return file;
}

} // namespace documents

namespace {

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

bool makeDocuments(const QString &folder, const QString &nastyFolder)
{
    using namespace documents;
    const QDir good(folder);
    const QDir nasty(nastyFolder);
    if (!good.mkpath(QStringLiteral(".")) || !nasty.mkpath(QStringLiteral(".")))
        return false;
    bool bOk = writeDeck(good.filePath(QStringLiteral("deck.pptx")), Deck());
    bOk &= writeText(good.filePath(QStringLiteral("text.docx")), 3);
    bOk &= writeTable(good.filePath(QStringLiteral("table.xlsx")), 300);
    bOk &= write(good.filePath(QStringLiteral("drawing.eps")), drawing());
    const QByteArray deck = read(good.filePath(QStringLiteral("deck.pptx")));
    bOk &= write(nasty.filePath(QStringLiteral("truncated_deck.pptx")), deck.left(deck.size() * 6 / 10));
    bOk &= write(nasty.filePath(QStringLiteral("stub_deck.pptx")), deck.left(40));
    bOk &= write(nasty.filePath(QStringLiteral("zero_deck.pptx")), QByteArray());
    bOk &= write(nasty.filePath(QStringLiteral("text_named.pptx")), QByteArrayLiteral("This is no presentation.\n"));
    bOk &= write(nasty.filePath(QStringLiteral("pptx_named.ppt")), deck);
    bOk &= write(nasty.filePath(QStringLiteral("pptx_named.docx")), deck);
    bOk &= write(nasty.filePath(QStringLiteral("locked.pptx")), lockedPackage());
    bOk &= write(nasty.filePath(QStringLiteral("endless.eps")), QByteArrayLiteral("%!PS\n{ } loop\n"));
    bOk &= write(nasty.filePath(QStringLiteral("broken.ttf")), QByteArray("\0\x01\0\0\0\x10", 6) + deck);
    Deck bomb;
    bomb.nZeroBytes = qint64(400) << 20;
    bOk &= writeDeck(nasty.filePath(QStringLiteral("bomb.pptx")), bomb);
    Deck empty;
    empty.nSlides = 0;
    return bOk && writeDeck(nasty.filePath(QStringLiteral("no_slides.pptx")), empty);
}
