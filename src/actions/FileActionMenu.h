#pragma once

#include <QKeySequence>
#include <QString>

class FileActionController;
class QWidget;
class TSCustomMenu;
struct FileActionHooks;
struct FileActionType;

/** Builds the file menu of a type widget, afresh for each right click. */
namespace FileActionMenu {

/** A menu on the current file, owned by the widget; its entries do nothing once another file is the current one. */
TSCustomMenu *create(const FileActionType &type, const FileActionHooks &hooks, const QKeySequence &recycleKey,
                     FileActionController *pController, QWidget *pWidget);

} // namespace FileActionMenu
