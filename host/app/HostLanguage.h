#pragma once

#include <QSettings>
#include <QString>

/** The language of the texts, by the code of a translation; the empty code is the system's language. GUI thread only.
 */
namespace HostLanguage {

/** As chosen; the system's language for a code that no translation has. */
QString remembered(const QSettings &ini);
void remember(QSettings *pIni, const QString &code);

/** Whether there are texts in this language: the system's, English, or one of the translations. */
bool isKnown(const QString &code);

/**
 * Makes it the program's language: QLocale(), which plug-ins go by as well, the host's texts, and Qt's own where its
 * translations are installed. Once, before the first window and before plug-ins are loaded.
 */
void install(const QString &code);

} // namespace HostLanguage
