#pragma once

#include <QWidget>

class ElidedLabel;
class QLabel;
class QProgressBar;

/**
 * The line at the bottom: what goes on or went wrong at the left, counts at the right.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class StatusLine : public QWidget {
    Q_OBJECT

public:
    explicit StatusLine(QWidget *pParent);

    void setCounts(int nFiles, int nSelected);

    /** While files are looked for; how many there will be is not known before. */
    void setScanning(bool bScanning, int nFiles);

    /** What went wrong: stays, with earlier ones in the tool tip. */
    void addProblem(const QString &message);

    /** What went wrong with the folders in view: stays until they are looked at again. */
    void addScanProblem(const QString &message);
    void clearScanProblems();
    void setMessage(const QString &message);

private:
    void showText();

    ElidedLabel *m_pText;
    QProgressBar *m_pProgress;
    QLabel *m_pCounts;
    QString m_message;
    QStringList m_problems;
    QStringList m_scanProblems;
};
