#pragma once

#include <QLayout>
#include <QVector>

/** Lays widgets out like words: side by side, wrapped at the right end, in the reading direction. GUI thread only. */
class FlowLayout : public QLayout {
public:
    explicit FlowLayout(int nSpacing);
    ~FlowLayout() override;

    void addItem(QLayoutItem *pItem) override { m_items.append(pItem); }
    int count() const override { return m_items.size(); }
    QLayoutItem *itemAt(int nIndex) const override { return m_items.value(nIndex); }
    QLayoutItem *takeAt(int nIndex) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int nWidth) const override { return arrange(QRect(0, 0, nWidth, 0), false); }
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    int arrange(const QRect &rect, bool bApply) const;

    const int m_nSpacing;
    QVector<QLayoutItem *> m_items;
};
