#pragma once

#include <QString>

class QWidget;

/** Floating notices of the warning kind. */
namespace WaitNotice {

/** A warning over the widget, which closes by itself. */
void showWarning(QWidget *pParent, const QString &text);

/** Tells the user that a file is still loading. */
void show(QWidget *pParent);

} // namespace WaitNotice
