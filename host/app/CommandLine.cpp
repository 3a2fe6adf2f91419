#include "app/CommandLine.h"

#include "actions/PackArchive.h"
#include "files/NativePath.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

void readPlaces(const QStringList &places, CommandLine *pResult)
{
    QStringList files;
    for (const QString &place : places) {
        // Paths are compared later: the shortest spelling of each.
        const QString path = QDir::cleanPath(QDir().absoluteFilePath(place));
        const FileState state = fileState(nativePath(path));
        if (state.bFolder)
            pResult->folders.append(path);
        else if (state.bFile && PackFormat::isPackName(path))
            pResult->pack = path;
        else if (state.bFile)
            files.append(path);
        else
            pResult->error = Words::tr("There is no file or folder %1").arg(QDir::toNativeSeparators(place));
    }
    if (files.isEmpty())
        return;
    // A file comes with its folder, so further places have nowhere to be shown beside it.
    if (files.size() > 1 || !pResult->folders.isEmpty())
        pResult->error = Words::tr("Name one file, or any number of folders");
    pResult->file = files.first();
}

void readTheme(const QString &name, CommandLine *pResult)
{
    if (name == QLatin1String("dark"))
        pResult->theme = TSSkinSetting::DarkTheme;
    else if (name == QLatin1String("light"))
        pResult->theme = TSSkinSetting::LightTheme;
    else if (!name.isEmpty())
        pResult->error = Words::tr("There is no theme %1: dark or light").arg(name);
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    CommandLine result;
    QCommandLineParser parser;
    parser.setApplicationDescription(Words::tr("Shows folders of files and previews them."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QString file = Words::tr("file");
    const QString folder = Words::tr("folder");
    const QCommandLineOption library(QStringLiteral("library"), Words::tr("Keep the library in this file."), file);
    const QCommandLineOption plugins(QStringLiteral("plugins"), Words::tr("Load the plug-ins of this folder."), folder);
    const QCommandLineOption tour(QStringLiteral("tour"),
                                  Words::tr("Show everything by itself, with pictures of each step in "
                                            "this folder."),
                                  folder);
    const QCommandLineOption theme(QStringLiteral("theme"), Words::tr("Start with this theme: dark or light."),
                                   Words::tr("name"));
    parser.addOptions({library, plugins, tour, theme});
    parser.addPositionalArgument(QStringLiteral("place"),
                                 Words::tr("A file to preview, folders to show, or a library pack to import."),
                                 QStringLiteral("[FILE|FOLDER…]"));
    if (!parser.parse(arguments)) {
        result.error = parser.errorText();
        return result;
    }
    if (parser.isSet(help))
        result.information = parser.helpText();
    if (parser.isSet(version))
        result.information = QCoreApplication::applicationName() + QLatin1Char(' ') +
                             QCoreApplication::applicationVersion() + QLatin1Char('\n');
    result.libraryPath = parser.value(library);
    result.pluginFolder = parser.value(plugins);
    result.tourFolder = parser.value(tour);
    readTheme(parser.value(theme), &result);
    readPlaces(parser.positionalArguments(), &result);
    return result;
}

QStringList defaultFolders()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    // Without a picture folder of its own the desktop answers with the home folder: far too much to index unasked.
    const bool bOwn = QFileInfo(pictures).isDir() && QDir(pictures) != QDir::home();
    return bOwn ? QStringList{pictures} : QStringList();
}
