#pragma once

#include <QString>
#include <QtGlobal>

/** Times as players show them. */
namespace TimeText {

/** Minutes and seconds of a time in milliseconds, rounded to the second: "02:05"; a hundred minutes are "100:00". */
QString minutesAndSeconds(qint64 nMsec);

} // namespace TimeText
