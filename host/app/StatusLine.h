#pragma once

#include <QWidget>

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

    /** What went wrong: stays, with earlier ones in the tool tip, until clearProblems. */
    void addProblem(const QString &message);
    void clearProblems();
    void setMessage(const QString &message);

private:
    void showText();

    QLabel *m_pText;
    QProgressBar *m_pProgress;
    QLabel *m_pCounts;
    QString m_message;
    QStringList m_problems;
};
