#include "app/HostLanguage.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

QString key()
{
    return QStringLiteral("window/language");
}

void load(const QString &filePath)
{
    auto *pTranslator = new QTranslator(QCoreApplication::instance());
    if (pTranslator->load(filePath))
        QCoreApplication::installTranslator(pTranslator);
    else
        delete pTranslator;
}

} // namespace

// The resource lies in a static library, where nothing else refers to it. Its function is global.
static void initResource()
{
    Q_INIT_RESOURCE(bigimgpreview_host_translations);
}

QString HostLanguage::remembered(const QSettings &ini)
{
    const QString code = ini.value(key()).toString();
    return isKnown(code) ? code : QString();
}

void HostLanguage::remember(QSettings *pIni, const QString &code)
{
    pIni->setValue(key(), code);
}

bool HostLanguage::isKnown(const QString &code)
{
    return code.isEmpty() || code == QLatin1String("en") || code == QLatin1String("zh_CN");
}

void HostLanguage::install(const QString &code)
{
    initResource();
    const QLocale system = QLocale::system();
    const QLocale chosen(code);
    // Who reads English in another country keeps that country's dates and numbers where English has them.
    if (!code.isEmpty())
        QLocale::setDefault(chosen.language() == QLocale::English ? QLocale(QLocale::English, system.country())
                                                                  : chosen);
    // The language of texts may differ from that of numbers. Only the first one counts: the source is English.
    const QLocale language(QLocale().uiLanguages().value(0));
    const bool bSimplified = language.script() == QLocale::SimplifiedHanScript;
    const QString name = bSimplified ? QStringLiteral("zh_CN") : language.name();
    load(QStringLiteral("%1/qtbase_%2.qm").arg(QLibraryInfo::location(QLibraryInfo::TranslationsPath), name));
    load(QStringLiteral(":/bigimgpreview_host/translations/host_%1.qm").arg(name));
}
