#pragma once

#include <QWidget>

/** The position counter under the strip, for example "3/12". Owner: the full preview. Thread: GUI thread. */
class PreviewLeftNumWin : public QWidget {
    Q_OBJECT

public:
    explicit PreviewLeftNumWin(QWidget *pParent);

    void setNumbers(int nCur, int nTotal);
    int cur() const { return m_nCur; }
    int total() const { return m_nTotal; }

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    int m_nCur = 0;
    int m_nTotal = 0;
};
