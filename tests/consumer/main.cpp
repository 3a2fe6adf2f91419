#include <QApplication>
#include <QPluginLoader>
#include <QTextStream>

#include <interfaces/plugin/IBigImgPreviewPlugin.h>
#include <interfaces/plugin/IPlugin.h>
#include <interfaces/plugin/PluginInfo.h>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    // Without prefix and suffix: the loader adds what the platform has.
    QPluginLoader loader(QStringLiteral(PLUGIN_DIR "/bigimgpreview"));
    auto *plugin = qobject_cast<IPlugin *>(loader.instance());
    if (plugin == nullptr || qobject_cast<IBigImgPreviewPlugin *>(loader.instance()) == nullptr) {
        QTextStream(stderr) << loader.errorString() << '\n';
        return 1;
    }
    PluginInfo info;
    plugin->getPluginInfo(info);
    QTextStream(stdout) << info.name << ' ' << info.version << '\n';
    return info.name.isEmpty() ? 1 : 0;
}
