#include "library/FileTypes.h"

#include <QHash>

namespace {

struct SuffixEntry {
    const char *suffix;
    qint64 nType;
};

// Numbers are stored in libraries: never renumber, only add. The last block maps picture formats without a number of
// their own to the number of a format that previews treat alike.
const SuffixEntry k_suffixes[] = {
    {"bmp", 1},        {"dib", 2},       {"rle", 3},      {"png", 10},    {"jpg", 20},     {"jpeg", 21},
    {"jpe", 22},       {"jfif", 23},     {"gif", 30},     {"tif", 40},    {"tiff", 41},    {"ico", 50},
    {"icon", 51},      {"webp", 60},     {"svg", 100},    {"cdr", 110},   {"psd", 120},    {"psb", 121},
    {"ai", 130},       {"pdf", 131},     {"eps", 132},    {"dds", 140},   {"tga", 150},    {"hdr", 160},
    {"heic", 170},     {"exr", 180},     {"doc", 190},    {"docx", 191},  {"ppt", 192},    {"pptx", 193},
    {"xls", 194},      {"xlsx", 195},    {"ttf", 200},    {"otf", 201},   {"ttc", 202},    {"mp3", 210},
    {"wav", 211},      {"mp4", 220},     {"mov", 221},    {"mpg", 222},   {"mkv", 223},    {"3g2p", 224},
    {"asf", 225},      {"dv", 226},      {"f4v", 227},    {"m2ts", 228},  {"m4v", 229},    {"mxf", 230},
    {"gov", 231},      {"swf", 232},     {"trp", 233},    {"ts", 234},    {"vob", 235},    {"webm", 236},
    {"wmv", 237},      {"rm", 238},      {"rmvb", 239},   {"icns", 300},  {"base64", 310}, {"obj", 320},
    {"3fr", 330},      {"arw", 340},     {"cr2", 350},    {"cr3", 351},   {"crw", 352},    {"dng", 360},
    {"erf", 370},      {"mrw", 380},     {"nef", 390},    {"nrw", 400},   {"orf", 410},    {"pef", 420},
    {"raf", 430},      {"raw", 440},     {"rw2", 450},    {"sr2", 460},   {"srw", 470},    {"x3f", 480},
    {"mos", 482},      {"kdc", 483},     {"dcr", 484},    {"ogg", 620},   {"flv", 640},    {"avi", 650},
    {"flac", 660},     {"m4a", 670},     {"xmind", 690},  {"potx", 700},  {"txt", 710},    {"key", 720},
    {"numbers", 730},  {"pages", 740},   {"ape", 750},    {"aac", 751},   {"aiff", 752},   {"amr", 754},
    {"afdesign", 800}, {"afphoto", 810}, {"afpub", 820},  {"c4d", 830},   {"clip", 840},   {"dwg", 850},
    {"fig", 860},      {"graffle", 870}, {"idml", 880},   {"indd", 890},  {"indt", 900},   {"mindnode", 910},
    {"pxd", 920},      {"prd", 930},     {"sketch", 940}, {"skt", 950},   {"skp", 960},    {"xd", 970},
    {"eddx", 980},     {"emmx", 990},    {"html", 1100},  {"woff", 1110}, {"zip", 1120},   {"psdt", 1200},
    {"jpf", 1201},     {"jpx", 1202},    {"jp2", 1203},   {"j2c", 1204},  {"j2k", 1205},   {"jpc", 1206},
    {"jps", 1207},     {"pcx", 1208},    {"pbm", 1209},   {"pgm", 1210},  {"ppm", 1211},   {"pnm", 1212},
    {"pam", 1214},     {"sct", 1215},    {"mpo", 1216},   {"wmf", 1217},  {"miff", 1219},  {"pdd", 1220},
    {"lnk", 3000},

    {"apng", 10},      {"svgz", 100},    {"heif", 170},   {"hif", 170},   {"avif", 170},   {"jxl", 170},
    {"mpeg", 222},     {"3gp", 224},     {"3g2", 224},    {"mts", 228},   {"ogv", 620},    {"oga", 620},
    {"opus", 620},     {"aif", 752},     {"htm", 1100},   {"cur", 50},    {"pfm", 1212},
};

QHash<QString, qint64> suffixTable()
{
    QHash<QString, qint64> table;
    for (const SuffixEntry &entry : k_suffixes)
        table.insert(QLatin1String(entry.suffix), entry.nType);
    return table;
}

} // namespace

qint64 FileTypes::typeOfSuffix(const QString &suffix)
{
    static const QHash<QString, qint64> table = suffixTable();
    return table.value(suffix.toLower(), Unknown);
}

QString FileTypes::suffixOfName(const QString &fileName)
{
    const int nDot = fileName.lastIndexOf(QLatin1Char('.'));
    return nDot > 0 ? fileName.mid(nDot + 1) : QString();
}

bool FileTypes::isPicture(qint64 nType)
{
    const bool bCommon = nType >= 1 && nType < 190;
    const bool bCamera = nType == 300 || (nType >= 330 && nType < 500);
    const bool bFurther = nType >= 1200 && nType <= 1220;
    return bCommon || bCamera || bFurther;
}

bool FileTypes::hasPicture(qint64 nType)
{
    const bool bOffice = nType >= 190 && nType <= 195;
    const bool bFont = nType >= 200 && nType <= 202;
    const Kind kind = kindOf(nType);
    return isPicture(nType) || bOffice || bFont || kind == Kind::Video || kind == Kind::Sound;
}

bool FileTypes::isConverted(qint64 nType)
{
    switch (nType) {
    case 110:  // cdr
    case 132:  // eps
    case 1217: // wmf
        return true;
    default:
        return nType >= 190 && nType <= 195; // doc to xlsx
    }
}

bool FileTypes::isDrawing(qint64 nType)
{
    switch (nType) {
    case Svg:
    case 110:  // cdr
    case 130:  // ai
    case 132:  // eps
    case 1217: // wmf
        return true;
    default:
        return false;
    }
}

FileTypes::Kind FileTypes::kindOf(qint64 nType)
{
    struct Range {
        qint64 nFirst;
        qint64 nLast;
        Kind kind;
    };
    // In order; the first that holds the number counts.
    static const Range ranges[] = {
        {120, 121, Kind::Document},   {130, 132, Kind::Document},   {110, 110, Kind::Document},
        {1, 189, Kind::Picture},      {190, 195, Kind::Document},   {210, 211, Kind::Sound},
        {220, 239, Kind::Video},      {300, 319, Kind::Picture},    {330, 499, Kind::Camera},
        {620, 620, Kind::Video},      {640, 650, Kind::Video},      {660, 670, Kind::Sound},
        {690, 740, Kind::Document},   {750, 754, Kind::Sound},      {800, 980, Kind::Document},
        {1100, 1100, Kind::Document}, {1200, 1200, Kind::Document}, {1201, 1219, Kind::Picture},
        {1220, 1220, Kind::Document},
    };
    for (const Range &range : ranges) {
        if (nType >= range.nFirst && nType <= range.nLast)
            return range.kind;
    }
    return Kind::Other;
}
