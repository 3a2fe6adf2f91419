#pragma once

#include "interfaces/data/TagRecord.h"
#include "library/LabelRecord.h"

#include <QWidget>

class FlowLayout;
class QCompleter;
class QLineEdit;
class QStringListModel;

/**
 * The labels of the files shown: takes away, adds by name and completes while the user types.
 *
 * Owner: InfoPanel. Thread: GUI thread only.
 */
class LabelEditor : public QWidget {
    Q_OBJECT

public:
    explicit LabelEditor(QWidget *pParent);

    /** All labels of the library, for colours and completion. */
    void setKnownLabels(const QVector<LabelRecord> &labels);

    /** The labels of the file shown. */
    void setLabels(const TagRecordList &labels);

Q_SIGNALS:
    void signalAdd(const QString &name);
    void signalRemove(quint64 nLabelId);
    void signalColor(quint64 nLabelId, quint32 nColor);

private:
    void addTyped();
    void showChips();

    FlowLayout *m_pChips;
    QLineEdit *m_pInput;
    QCompleter *m_pCompleter;
    QStringListModel *m_pNames;
    QVector<LabelRecord> m_known;
    TagRecordList m_labels;
};
