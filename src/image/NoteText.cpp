#include "image/NoteText.h"

#include <cmath>

namespace {

constexpr int LongestShown = 4000;

} // namespace

QString NoteText::forDisplay(const QString &text)
{
    QString shown = text.left(LongestShown);
    for (QChar &c : shown) {
        const bool bSeparates = c == QLatin1Char('\n') || c == QLatin1Char('\t');
        if (c.category() == QChar::Other_Control && !bSeparates)
            c = QLatin1Char(' ');
    }
    return text.size() > LongestShown ? shown + QChar(0x2026) : shown;
}

quint32 NoteText::packed(const QColor &color)
{
    return quint32(color.red()) | quint32(color.green()) << 8U | quint32(color.blue()) << 16U;
}

QColor NoteText::unpacked(quint32 nValue)
{
    return QColor(int(nValue & 0xFFU), int((nValue >> 8U) & 0xFFU), int((nValue >> 16U) & 0xFFU));
}

QColor NoteText::contrast(const QColor &background)
{
    // Relative luminance; beyond this one black stands out more than white.
    const auto linear = [](double fPart) {
        return fPart <= 0.03928 ? fPart / 12.92 : std::pow((fPart + 0.055) / 1.055, 2.4);
    };
    const double fLuminance =
        0.2126 * linear(background.redF()) + 0.7152 * linear(background.greenF()) + 0.0722 * linear(background.blueF());
    return fLuminance > 0.179 ? QColor(Qt::black) : QColor(Qt::white);
}
