#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class Library;

/**
 * Says at the top of the window that the library file cannot be used, and offers the ways to go on: to try again, to
 * put it aside and begin a new one, or to look at files without keeping anything.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class LibraryBanner : public QWidget {
    Q_OBJECT

public:
    LibraryBanner(Library *pLibrary, QWidget *pParent);

private:
    void showFault(const QString &path, const QString &reason);
    void applyTheme();

    Library *m_pLibrary;
    QLabel *m_pText;
    QPushButton *m_pRetry;
    QPushButton *m_pStartNew;
    QPushButton *m_pDismiss;
};
