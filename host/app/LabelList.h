#pragma once

#include "library/LabelRecord.h"

#include <QHash>
#include <QListView>

class QStandardItemModel;

/**
 * The labels of the library with the number of their files. One that is chosen narrows the view; chosen again it lets
 * go.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class LabelList : public QListView {
    Q_OBJECT

public:
    explicit LabelList(QWidget *pParent);

    void setLabels(const QVector<LabelRecord> &labels);
    void setUses(const QHash<quint64, int> &uses);

    quint64 chosen() const { return m_nChosen; }
    void choose(quint64 nLabelId);

    QSize sizeHint() const override;

Q_SIGNALS:
    /** 0: none. */
    void signalChosen(quint64 nLabelId);
    void signalColor(quint64 nLabelId, quint32 nColor);
    void signalDelete(quint64 nLabelId);
    /** The user is done choosing. */
    void signalLeft();

protected:
    void keyPressEvent(QKeyEvent *pEvent) override;
    void contextMenuEvent(QContextMenuEvent *pEvent) override;

private:
    void fill();
    void toggle(const QModelIndex &index);

    QStandardItemModel *m_pModel;
    QVector<LabelRecord> m_labels;
    QHash<quint64, int> m_uses;
    quint64 m_nChosen = 0;
};
