#pragma once

#include <QString>

class QWidget;

/**
 * File dialogs that wait for the user in an event loop of their own, as the desktop's do. Each gives an empty text when
 * the user cancels, and when the asking widget goes away meanwhile: the caller must then not touch itself.
 */
namespace FileChooser {

/** A file to write; a name without a suffix gets that of the filter, such as "*.zip". */
QString saveFile(QWidget *pAsker, const QString &caption, const QString &start, const QString &filter);

QString folder(QWidget *pAsker, const QString &caption, const QString &start);

/** A file to read, in a dialog over no window. */
QString openFile(QWidget *pAsker, const QString &caption, const QString &start, const QString &filter);

} // namespace FileChooser
