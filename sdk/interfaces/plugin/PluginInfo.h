#pragma once

#include <QString>
#include <QUrl>

/** What a plug-in says of itself; filled by IPlugin::getPluginInfo. Texts are translated by the plug-in. */
struct PluginInfo {
    QString name;        ///< Product name.
    QString displayName; ///< Name to show in lists of plug-ins.
    QString version;     ///< Version text, for example "1.0".
    QString author;      ///< Author's short name.
    QUrl homePage;       ///< Web address with more information; may be empty.
};
