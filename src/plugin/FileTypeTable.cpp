#include "plugin/FileTypeTable.h"

#include <initializer_list>

namespace {

constexpr qint64 GifType = 30;
constexpr qint64 PsdType = 120;
constexpr qint64 PptType = 192;
constexpr qint64 PptxType = 193;

struct TypeName {
    const char *pExtension;
    qint64 nTypeId;
};

struct TypeRow {
    qint32 nGroup;
    qint32 nFlags;
    std::initializer_list<TypeName> types;
};

QHash<qint64, FileTypeEntry> buildTable()
{
    // The ids are the host's and the extensions its spelling of them: neither is to be tidied up.
    const std::initializer_list<TypeRow> rows = {
        {1,
         17,
         {{"bmp", 1},
          {"png", 10},
          {"jpg", 20},
          {"jpeg", 21},
          {"jpe", 22},
          {"jfif", 23},
          {"gif", 30},
          {"tif", 40},
          {"tiff", 41},
          {"ico", 50},
          {"icon", 51},
          {"webp", 60},
          {"svg", 100}}},
        {1, 1, {{"dib", 2},    {"rle", 3},    {"cdr", 110},   {"psd", 120},   {"psb", 121},  {"ai", 130},
                {"pdf", 131},  {"eps", 132},  {"dds", 140},   {"tga", 150},   {"hdr", 160},  {"heic", 170},
                {"exr", 180},  {"doc", 190},  {"docx", 191},  {"ppt", 192},   {"pptx", 193}, {"xls", 194},
                {"xlsx", 195}, {"arw", 340},  {"cr2", 350},   {"cr3", 351},   {"crw", 352},  {"dng", 360},
                {"nef", 390},  {"rw2", 450},  {"dcr", 484},   {"psdt", 1200}, {"jpf", 1201}, {"jpx", 1202},
                {"jp2", 1203}, {"j2c", 1204}, {"j2k", 1205},  {"jpc", 1206},  {"jps", 1207}, {"pcx", 1208},
                {"pbm", 1209}, {"pgm", 1210}, {"ppm", 1211},  {"pnm", 1212},  {"pam", 1214}, {"sct", 1215},
                {"mpo", 1216}, {"wmf", 1217}, {"miff", 1219}, {"pdd", 1220}}},
        {1, 9, {{"ttf", 200}, {"otf", 201}, {"ttc", 202}}},
        {1,
         5,
         {{"mp3", 210},
          {"wav", 211},
          {"ogg", 620},
          {"flac", 660},
          {"m4a", 670},
          {"ape", 750},
          {"aac", 751},
          {"aiff", 752},
          {"amr", 754}}},
        {1, 3, {{"mp4", 220}, {"mov", 221},  {"mpg", 222},  {"mkv", 223}, {"3g2p", 224}, {"asf", 225},
                {"dv", 226},  {"f4v", 227},  {"m2ts", 228}, {"m4v", 229}, {"mxf", 230},  {"gov", 231},
                {"swf", 232}, {"trp", 233},  {"ts", 234},   {"vob", 235}, {"webm", 236}, {"wmv", 237},
                {"rm", 238},  {"rmvb", 239}, {"flv", 640},  {"avi", 650}}},
        {2,
         0,
         {{"icns", 300},
          {"base64", 310},
          {"obj", 320},
          {"3fr", 330},
          {"erf", 370},
          {"mrw", 380},
          {"nrw", 400},
          {"orf", 410},
          {"pef", 420},
          {"raf", 430},
          {"raw", 440},
          {"sr2", 460},
          {"srw", 470},
          {"x3f", 480},
          {"mos", 482},
          {"kdc", 483}}},
        {3, 0, {{"xmind", 690}, {"potx", 700}, {"txt", 710}, {"key", 720}, {"numbers", 730}, {"pages", 740}}},
        {4, 0, {{"afdesign", 800}, {"afphoto", 810},  {"afpub", 820},   {"c4d", 830},  {"clip", 840},
                {"dwg", 850},      {"fig", 860},      {"graffle", 870}, {"idml", 880}, {"indd", 890},
                {"indt", 900},     {"mindnode", 910}, {"pxd", 920},     {"prd", 930},  {"sketch", 940},
                {"skt", 950},      {"skp", 960},      {"xd", 970},      {"eddx", 980}, {"emmx", 990}}},
        {5, 0, {{"html", 1100}, {"woff", 1110}, {"zip", 1120}, {"lnk", 3000}}},
    };
    QHash<qint64, FileTypeEntry> table;
    for (const TypeRow &row : rows) {
        for (const TypeName &type : row.types)
            table.insert(type.nTypeId, {QString::fromLatin1(type.pExtension), row.nGroup, row.nFlags});
    }
    return table;
}

// Filled when the library is loaded.
const QHash<qint64, FileTypeEntry> g_fileTypeTable = buildTable();

bool hasFlag(qint64 nTypeId, FileTypeFlag flag)
{
    const auto it = FileTypeTable().constFind(nTypeId);
    return it != FileTypeTable().constEnd() && (it->flags & flag) != 0;
}

} // namespace

const QHash<qint64, FileTypeEntry> &FileTypeTable()
{
    return g_fileTypeTable;
}

bool isPreviewableType(qint64 nTypeId)
{
    return (FileTypeTable().value(nTypeId).group & 1) != 0 && hasFlag(nTypeId, PreviewableFlag);
}

bool isVideoType(qint64 nTypeId)
{
    return hasFlag(nTypeId, VideoFlag);
}

bool isAudioType(qint64 nTypeId)
{
    return hasFlag(nTypeId, AudioFlag);
}

bool isGifType(qint64 nTypeId)
{
    return nTypeId == GifType;
}

bool isPresentationType(qint64 nTypeId)
{
    return nTypeId == PptType || nTypeId == PptxType;
}

bool isPsdType(qint64 nTypeId)
{
    return nTypeId == PsdType;
}
