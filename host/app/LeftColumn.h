#pragma once

#include <QWidget>

class FileGridModel;
class FolderTree;
class LabelList;
class Library;
class QLabel;

/**
 * The left column: folders above, labels below.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class LeftColumn : public QWidget {
    Q_OBJECT

public:
    LeftColumn(Library *pLibrary, FileGridModel *pModel, QWidget *pParent);

    FolderTree *folders() const { return m_pFolders; }
    LabelList *labels() const { return m_pLabels; }

Q_SIGNALS:
    /** Another folder or label was chosen: the list starts over. */
    void signalChosen();
    /** The user is done choosing. */
    void signalLeft();

private:
    void connectFolders();
    void connectLabels();
    void applyTheme();

    Library *m_pLibrary;
    FileGridModel *m_pModel;
    FolderTree *m_pFolders;
    QLabel *m_pLabelHeading;
    LabelList *m_pLabels;
};
