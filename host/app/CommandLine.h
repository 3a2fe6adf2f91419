#pragma once

#include "theme/TSSkinSetting.h"

#include <QStringList>

#include <optional>

/** What the user asked for on the command line. */
struct CommandLine {
    QString libraryPath;  ///< Empty: the default.
    QString pluginFolder; ///< Empty: where the program looks by itself.
    QString tourFolder;   ///< Empty: no tour.
    std::optional<TSSkinSetting::Theme> theme;
    QString file;        ///< The file to show at once; empty when folders are to be shown.
    QString pack;        ///< A library pack to import; empty: none.
    QStringList folders; ///< Folders to show; empty: the user's pictures.
    QString error;       ///< What cannot be understood or found; the program ends with it.
    QString information; ///< Text asked for (help, version); the program prints it and ends.
};

/** Reads arguments, the program's name first. Relative paths count from the working folder. */
CommandLine parseCommandLine(const QStringList &arguments);

/** The folders to show when none were asked for: the user's pictures; empty where there is no such folder. */
QStringList defaultFolders();
