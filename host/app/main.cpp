#include "app/CommandLine.h"
#include "app/HostLanguage.h"
#include "app/HostSession.h"
#include "app/Tour.h"
#include "settings/HostSettings.h"

#include <QApplication>
#include <QTextCodec>
#include <QTextStream>

namespace {

/** Says on the console what happened and gives the exit code: 2 for arguments that cannot be understood. */
int answerOnConsole(const CommandLine &commandLine)
{
    constexpr int k_nUsageError = 2;
    if (commandLine.error.isEmpty()) {
        QTextStream(stdout) << commandLine.information;
        return EXIT_SUCCESS;
    }
    QTextStream(stderr) << QCoreApplication::applicationName() << QStringLiteral(": ") << commandLine.error
                        << QLatin1Char('\n');
    return k_nUsageError;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Videos are drawn off screen: no window has to wait for OpenGL.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#ifdef Q_OS_UNIX
    // File names are UTF-8 on today's systems also where the locale is not, as in containers and service sessions.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("bigimgpreview-host"));
    QApplication::setApplicationDisplayName(QStringLiteral("Big Image Preview"));
    QApplication::setApplicationVersion(QStringLiteral(BIGIMGPREVIEW_VERSION));
    QApplication::setStyle(QStringLiteral("Fusion"));

    // Before anything that reads or shows texts, plug-ins among them.
    HostLanguage::install(HostLanguage::remembered(QSettings(HostSettings::defaultPath(), QSettings::IniFormat)));
    const CommandLine commandLine = parseCommandLine(QApplication::arguments());
    if (!commandLine.error.isEmpty() || !commandLine.information.isEmpty())
        return answerOnConsole(commandLine);

    HostSession session(commandLine, QApplication::applicationDirPath());
    session.start();
    std::unique_ptr<Tour> pTour;
    if (!commandLine.tourFolder.isEmpty()) {
        pTour = std::make_unique<Tour>(&session, commandLine.tourFolder);
        pTour->start();
    }
    return QApplication::exec();
}
