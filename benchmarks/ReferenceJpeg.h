#pragma once

#include <QString>

/** Decodes a JPEG file with the plain library into screen pixels and throws them away: the yardstick. */
bool decodeWithLibjpeg(const QString &path);

/** Writes a picture of about this size that looks and compresses like a photograph; no two seeds alike. */
bool writePhoto(const QString &path, int nWidth, int nHeight, unsigned nSeed);
