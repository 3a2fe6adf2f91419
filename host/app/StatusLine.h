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

    /** Pictures being made: how many of how many; 0 of 0 when none are. */
    void setAnalysis(int nDone, int nTotal);

    /** What went wrong: stays, with earlier ones in the tool tip. */
    void addProblem(const QString &message);

    void removeProblem(const QString &message);

    /** What went wrong with the folders in view: stays until they are looked at again. */
    void addScanProblem(const QString &message);
    void clearScanProblems();
    void setMessage(const QString &message);

private:
    void showText();
    void showProgress();

    ElidedLabel *m_pText;
    QProgressBar *m_pProgress;
    QLabel *m_pCounts;
    QString m_message;
    QString m_analysisText; ///< Shown while there is nothing else to say.
    int m_nAnalysed = 0;
    int m_nToAnalyse = 0;
    bool m_bScanning = false;
    QStringList m_problems;
    QStringList m_scanProblems;
};
