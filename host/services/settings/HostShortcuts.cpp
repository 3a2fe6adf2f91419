#include "settings/HostShortcuts.h"

#include <QCoreApplication>
#include <QKeySequence>

#include <algorithm>
#include <iterator>

namespace {

struct ShortcutEntry {
    int nId;
    const char *iniKey;
    const char *defaultKey;
    const char *name;
    const char *description;
};

const ShortcutEntry k_shortcuts[] = {
    {IShortcutSetting::ZoomIn, "zoomIn", "+", QT_TRANSLATE_NOOP("HostShortcuts", "Zoom in"),
     QT_TRANSLATE_NOOP("HostShortcuts", "Show the picture larger")},
    {IShortcutSetting::ZoomOut, "zoomOut", "-", QT_TRANSLATE_NOOP("HostShortcuts", "Zoom out"),
     QT_TRANSLATE_NOOP("HostShortcuts", "Show the picture smaller")},
    {IShortcutSetting::FitToWindow, "fitToWindow", "F", QT_TRANSLATE_NOOP("HostShortcuts", "Fit to window"),
     QT_TRANSLATE_NOOP("HostShortcuts", "Show the whole picture")},
    {IShortcutSetting::ActualSize, "actualSize", "1", QT_TRANSLATE_NOOP("HostShortcuts", "Actual size"),
     QT_TRANSLATE_NOOP("HostShortcuts", "Show one pixel of the picture for each pixel of the screen")},
    {IShortcutSetting::FitToWidth, "fitToWidth", "W", QT_TRANSLATE_NOOP("HostShortcuts", "Fit to width"),
     QT_TRANSLATE_NOOP("HostShortcuts", "Show the picture as wide as the window")},
    {IShortcutSetting::MoveToRecycleBin, "moveToRecycleBin", "Del",
     QT_TRANSLATE_NOOP("HostShortcuts", "Move to recycle bin"),
     QT_TRANSLATE_NOOP("HostShortcuts", "Move the file to the recycle bin")},
};

const ShortcutEntry *findEntry(int nShortcutId)
{
    const auto pFound = std::find_if(std::begin(k_shortcuts), std::end(k_shortcuts),
                                     [nShortcutId](const ShortcutEntry &entry) { return entry.nId == nShortcutId; });
    return pFound != std::end(k_shortcuts) ? pFound : nullptr;
}

QString iniKey(const ShortcutEntry &entry)
{
    return QStringLiteral("shortcuts/") + QLatin1String(entry.iniKey);
}

/** The portable text of a single key with its modifiers; null when the text names none. */
QString normalizedKey(const QString &text)
{
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    const bool bOneKey =
        sequence.count() == 1 && (uint(sequence[0]) & ~uint(Qt::KeyboardModifierMask)) != Qt::Key_unknown;
    return bOneKey ? sequence.toString(QKeySequence::PortableText) : QString();
}

} // namespace

HostShortcuts::HostShortcuts(const QString &iniPath)
    : m_ini(iniPath, QSettings::IniFormat)
{
}

bool HostShortcuts::isShortcutEnabled() const
{
    return m_ini.value(QStringLiteral("shortcuts/enabled"), true).toBool();
}

QString HostShortcuts::storedKey(int nShortcutId) const
{
    const ShortcutEntry *pEntry = findEntry(nShortcutId);
    const QString defaultKey = QLatin1String(pEntry->defaultKey);
    if (!m_ini.contains(iniKey(*pEntry)))
        return defaultKey;
    const QString text = m_ini.value(iniKey(*pEntry)).toString();
    if (text.isEmpty())
        return text;
    const QString key = normalizedKey(text);
    return key.isNull() ? defaultKey : key;
}

ShortcutRecord HostShortcuts::shortcut(int nShortcutId) const
{
    const ShortcutEntry *pEntry = findEntry(nShortcutId);
    if (pEntry == nullptr)
        return {};
    QString key = storedKey(nShortcutId);
    for (const ShortcutEntry &other : k_shortcuts) {
        if (!key.isEmpty() && other.nId != nShortcutId && storedKey(other.nId) == key)
            key = QLatin1String(pEntry->defaultKey);
    }
    return {QCoreApplication::translate("HostShortcuts", pEntry->name),
            QCoreApplication::translate("HostShortcuts", pEntry->description), key};
}

bool HostShortcuts::setKeySequence(int nShortcutId, const QString &keySequence)
{
    const ShortcutEntry *pEntry = findEntry(nShortcutId);
    const QString key = normalizedKey(keySequence);
    if (pEntry == nullptr || (key.isNull() && !keySequence.isEmpty()))
        return false;
    m_ini.setValue(iniKey(*pEntry), keySequence.isEmpty() ? QStringLiteral("") : key);
    return true;
}
