#include "app/LabelList.h"

#include "app/LabelColors.h"
#include "theme/TSSkinSetting.h"

#include <QContextMenuEvent>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int k_nIdRole = Qt::UserRole + 1;
constexpr int k_nUsesRole = Qt::UserRole + 2;
constexpr int k_nRowHeight = 28;
constexpr int k_nMostRows = 8;

/** The number of files stands at the end of the line. */
class UsesDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return {QStyledItemDelegate::sizeHint(option, index).width(), k_nRowHeight};
    }

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QString uses = QLocale().toString(index.data(k_nUsesRole).toInt());
        const int nWidth = option.fontMetrics.horizontalAdvance(uses) + 12;
        QStyledItemDelegate::paint(pPainter, option, index);
        QRect place(option.rect.right() - nWidth, option.rect.top(), nWidth - 6, option.rect.height());
        place = QStyle::visualRect(option.direction, option.rect, place);
        pPainter->save();
        QFont small = option.font;
        small.setPixelSize(12);
        pPainter->setFont(small);
        pPainter->setPen(TSSkinSetting::GetInstance()->GetTextColor(1));
        pPainter->drawText(place, int(Qt::AlignVCenter | Qt::AlignTrailing), uses);
        pPainter->restore();
    }
};

} // namespace

LabelList::LabelList(QWidget *pParent)
    : QListView(pParent)
    , m_pModel(new QStandardItemModel(this))
{
    setObjectName(QStringLiteral("hostLabelList"));
    setAccessibleName(tr("Labels"));
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setIconSize(QSize(16, 16));
    setTextElideMode(Qt::ElideRight);
    setItemDelegate(new UsesDelegate(this));
    setModel(m_pModel);
    connect(this, &QAbstractItemView::clicked, this, &LabelList::toggle);
}

QSize LabelList::sizeHint() const
{
    return {120, qBound(1, m_pModel->rowCount(), k_nMostRows) * k_nRowHeight + 4};
}

void LabelList::setLabels(const QVector<LabelRecord> &labels)
{
    m_labels = labels;
    fill();
    const bool bGone = std::none_of(labels.cbegin(), labels.cend(),
                                    [this](const LabelRecord &label) { return label.id == m_nChosen; });
    if (m_nChosen != 0 && bGone)
        choose(0);
}

void LabelList::setUses(const QHash<quint64, int> &uses)
{
    if (uses == m_uses)
        return;
    m_uses = uses;
    for (int i = 0; i < m_pModel->rowCount(); ++i) {
        QStandardItem *pItem = m_pModel->item(i);
        pItem->setData(m_uses.value(pItem->data(k_nIdRole).toULongLong()), k_nUsesRole);
    }
}

void LabelList::fill()
{
    m_pModel->clear();
    for (const LabelRecord &label : qAsConst(m_labels)) {
        auto *pItem = new QStandardItem(LabelColors::spot(LabelColors::colorOf(label)), label.name);
        pItem->setData(label.id, k_nIdRole);
        pItem->setData(m_uses.value(label.id), k_nUsesRole);
        pItem->setToolTip(label.name);
        m_pModel->appendRow(pItem);
        if (label.id == m_nChosen)
            setCurrentIndex(pItem->index());
    }
    updateGeometry();
}

void LabelList::choose(quint64 nLabelId)
{
    if (nLabelId == m_nChosen)
        return;
    m_nChosen = nLabelId;
    clearSelection();
    setCurrentIndex(QModelIndex());
    for (int i = 0; i < m_pModel->rowCount(); ++i) {
        if (m_pModel->item(i)->data(k_nIdRole).toULongLong() == nLabelId)
            setCurrentIndex(m_pModel->index(i, 0));
    }
    Q_EMIT signalChosen(nLabelId);
}

void LabelList::toggle(const QModelIndex &index)
{
    const quint64 nId = index.data(k_nIdRole).toULongLong();
    choose(nId == m_nChosen ? 0 : nId);
}

void LabelList::keyPressEvent(QKeyEvent *pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        toggle(currentIndex());
        return;
    case Qt::Key_Escape:
        choose(0);
        Q_EMIT signalLeft();
        return;
    default:
        QListView::keyPressEvent(pEvent);
    }
}

void LabelList::contextMenuEvent(QContextMenuEvent *pEvent)
{
    const quint64 nId = indexAt(pEvent->pos()).data(k_nIdRole).toULongLong();
    if (nId == 0)
        return;
    QMenu *pMenu = LabelColors::makeMenu(this);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->addSeparator();
    const QAction *pDelete = pMenu->addAction(tr("Delete the label"));
    connect(pMenu, &QMenu::triggered, this, [this, nId, pDelete](const QAction *pAction) {
        if (pAction == pDelete)
            Q_EMIT signalDelete(nId);
        else
            Q_EMIT signalColor(nId, pAction->data().toUInt());
    });
    pMenu->popup(pEvent->globalPos());
}
