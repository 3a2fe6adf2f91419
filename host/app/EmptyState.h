#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/**
 * Stands where the grid would, when there is nothing to show: says why and what to do.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class EmptyState : public QWidget {
    Q_OBJECT

public:
    explicit EmptyState(QWidget *pParent);

    void showText(const QString &title, const QString &hint, bool bOfferFolder);

Q_SIGNALS:
    void signalChooseFolder();

private:
    QLabel *m_pTitle;
    QLabel *m_pHint;
    QPushButton *m_pButton;
};
