#pragma once

class QObject;

/**
 * Lets the plug-in's texts appear in the language of QLocale(), for as long as the owner lives. Languages without a
 * translation keep the English texts. GUI thread.
 */
void installPluginTranslation(QObject *pOwner);
