#pragma once

#include <QString>

/** Damaged, lying and oddly named files, made in `folder` from the good samples beside it. False when one failed. */
bool makeNastyFiles(const QString &samples, const QString &folder);
