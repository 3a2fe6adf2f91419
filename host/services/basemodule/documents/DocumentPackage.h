#pragma once

#include <QByteArray>

namespace basemodule {

/**
 * Whether a zip package is complete and unpacks to a sensible size, told from its table of contents: a torn one and a
 * bomb are refused before any program is started on them. True for what is no zip package at all.
 *
 * @param nativePath in the file system's own bytes.
 */
bool isSoundPackage(const QByteArray &nativePath);

} // namespace basemodule
