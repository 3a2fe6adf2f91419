#include "TestMain.h"

namespace {
const QString root = QStringLiteral(BIGIMGPREVIEW_SOURCE_DIR);

struct Floor {
    const char *pattern; ///< Path of a file, from the project's folder.
    int number;
};

// The first line that fits counts. A file may include its own floor and those below.
const Floor floors[] = {
    {"^src/plugin/BigImgPreviewPlugin\\.", 6},
    {"^src/preview/(Middle|Hub|TSHidenSide)", 4},
    {"^src/preview/", 5},
    {"^src/image/(BasePreviewWidget|OriginalSize|PictureDecoder|PreviewResourceThread|\\w+Task)\\.", 2},
    {"^src/(image|media)/", 3},
    {"^src/actions/TsQtUtils\\.", 0},
    {"^src/actions/", 2},
    {"^src/plugin/", 1},
    {"^src/common/", 0},
};

int floorOf(const QString &path)
{
    for (const Floor &floor : floors) {
        if (QRegularExpression(QLatin1String(floor.pattern)).match(path).hasMatch())
            return floor.number;
    }
    return -1;
}

struct Arrow {
    QString from;
    QString name; ///< As written.
    QString to;   ///< Path from the project's folder; empty for a header that is not ours.
};

QString resolve(const QString &from, const QString &name)
{
    const QStringList folders{QFileInfo(from).path(), QStringLiteral("sdk"), QStringLiteral("src"),
                              QStringLiteral("host")};
    for (const QString &folder : folders) {
        const QString path = QDir::cleanPath(folder + QLatin1Char('/') + name);
        if (QFileInfo::exists(root + QLatin1Char('/') + path))
            return path;
    }
    return {};
}

QVector<Arrow> arrowsOf(const QString &room)
{
    static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"]"),
                                            QRegularExpression::MultilineOption);
    QVector<Arrow> arrows;
    QDirIterator files(root + QLatin1Char('/') + room, {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        const QString from = QDir(root).relativeFilePath(path);
        auto matches = include.globalMatch(QString::fromUtf8(readFile(path)));
        while (matches.hasNext()) {
            const auto match = matches.next();
            const QString name = match.captured(1);
            arrows.append({from, name, resolve(from, name)});
        }
    }
    return arrows;
}

/** The code without its comments and texts. */
QString bareCode(const QString &path)
{
    static const QRegularExpression ignored(QStringLiteral("//[^\\n]*|/\\*.*?\\*/|\"(?:[^\"\\\\\\n]|\\\\.)*\""),
                                            QRegularExpression::DotMatchesEverythingOption);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).remove(ignored) : QString();
}

bool isStandardHeader(const QString &name)
{
    return !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('.')) && name.at(0).isLower();
}

bool isQtHeader(const QString &name)
{
    return name.startsWith(QLatin1Char('Q')) || name.startsWith(QLatin1String("qt"));
}

QString text(const Arrow &arrow)
{
    return QStringLiteral("%1 includes %2").arg(arrow.from, arrow.name);
}
} // namespace

/** Includes go down or stay on their floor; docs/ARCHITECTURE.md tells the floors. */
class tst_floors : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void roomsKeepApart_data()
    {
        const auto row = columns<QString, QStringList>("room", "allowed");
        row("sdk", "sdk", QStringList{QStringLiteral("sdk/")});
        row("src", "src", QStringList{QStringLiteral("src/"), QStringLiteral("sdk/")});
        row("host", "host", QStringList{QStringLiteral("host/"), QStringLiteral("sdk/")});
    }

    void roomsKeepApart()
    {
        const auto [room, allowed] = currentRow<QString, QStringList>();
        QStringList wrong;
        for (const Arrow &arrow : arrowsOf(room)) {
            const bool ours = !arrow.to.isEmpty();
            const bool fits = std::any_of(allowed.begin(), allowed.end(),
                                          [&arrow](const QString &folder) { return arrow.to.startsWith(folder); });
            if (ours && !fits)
                wrong.append(text(arrow));
            const bool known = ours || isQtHeader(arrow.name) || isStandardHeader(arrow.name);
            // What belongs to one system stands in the platform's own files.
            const bool seam = QFileInfo(arrow.from).fileName().startsWith(QLatin1String("Platform"));
            const bool intrinsics = arrow.name == QLatin1String("emmintrin.h");
            const bool form = arrow.name.startsWith(QLatin1String("ui_"));
            if (room != QLatin1String("host") && !known && !seam && !intrinsics && !form)
                wrong.append(text(arrow));
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    void pluginFloors()
    {
        QStringList wrong;
        for (const Arrow &arrow : arrowsOf(QStringLiteral("src"))) {
            const int from = floorOf(arrow.from);
            const int to = floorOf(arrow.to);
            if (arrow.to.startsWith(QLatin1String("src/")) && to > from)
                wrong.append(QStringLiteral("%1 (floor %2 to %3)").arg(text(arrow)).arg(from).arg(to));
            // A common widget has never heard of files or hosts: of the SDK it knows the theme.
            const bool sdk = arrow.to.startsWith(QLatin1String("sdk/"));
            if (from == 0 && sdk && !arrow.to.startsWith(QLatin1String("sdk/theme/")))
                wrong.append(text(arrow));
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }

    void namesOfOtherCompilers()
    {
        // Macros of the Windows headers, words that only one compiler knows, and questions which system this is.
        static const QRegularExpression refused(QStringLiteral(
            "\\b(near|far|interface|small|hyper|__attribute__|__builtin_\\w+|__typeof__|alloca|Q_OS_\\w+|_WIN32|"
            "__linux__|and|or|not|xor|bitand|bitor|compl|and_eq|or_eq|not_eq|ssize_t|M_PI|__restrict\\w*)\\b|"
            "\\w[ ,*&](min|max)\\b"));
        QStringList wrong;
        for (const char *pRoom : {"sdk", "src"}) {
            QDirIterator files(root + QLatin1Char('/') + QLatin1String(pRoom),
                               {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (files.hasNext()) {
                const QString path = files.next();
                const auto match = refused.match(bareCode(path));
                if (match.hasMatch())
                    wrong.append(path + QStringLiteral(": ") + match.captured());
            }
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_floors)
#include "tst_floors.moc"
