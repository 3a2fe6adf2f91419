#include "plugin/PluginTranslation.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

// The resource lies in a static library, where nothing else refers to it. Its function is global.
static void initResource()
{
    Q_INIT_RESOURCE(bigimgpreview_translations);
}

void installPluginTranslation(QObject *pOwner)
{
    initResource();
    // The language of texts may differ from that of numbers. Only the first one counts: the source is English, and
    // whoever reads English first has no use for the translation of a second language.
    const QLocale language(QLocale().uiLanguages().value(0));
    const bool bSimplified = language.script() == QLocale::SimplifiedHanScript;
    const QString name = bSimplified ? QStringLiteral("zh_CN") : language.name();
    auto *pTranslator = new QTranslator(pOwner);
    if (pTranslator->load(QStringLiteral(":/bigimgpreview/translations/bigimgpreview_%1.qm").arg(name)))
        QCoreApplication::installTranslator(pTranslator);
}
