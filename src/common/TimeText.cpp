#include "common/TimeText.h"

namespace {

constexpr int SecondsPerMinute = 60;

QString field(qint64 nValue)
{
    return QStringLiteral("%1").arg(nValue, 2, 10, QLatin1Char('0'));
}

} // namespace

QString TimeText::minutesAndSeconds(qint64 nMsec)
{
    // A player that does not know a time yet may say so with a negative one.
    const qint64 nSeconds = qRound64(double(qMax<qint64>(nMsec, 0)) / 1000.0);
    return field(nSeconds / SecondsPerMinute) + QLatin1Char(':') + field(nSeconds % SecondsPerMinute);
}
