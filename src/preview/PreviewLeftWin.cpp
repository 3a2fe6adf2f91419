#include "preview/PreviewLeftWin.h"

#include "common/TSScrollBar.h"
#include "plugin/PluginInnerData.h"
#include "preview/PreviewLeftWinItemDelegate.h"
#include "preview/PreviewLeftWinModel.h"
#include "theme/TSSkinSetting.h"

#include <QMouseEvent>

PreviewLeftWin::PreviewLeftWin(QWidget *pParent)
    : QListView(pParent)
    , m_pModel(new PreviewLeftWinModel(this))
    , m_pDelegate(new PreviewLeftWinItemDelegate(this))
    , m_pScrollBar(new TSScrollBar(Qt::Vertical, this))
{
    setAttribute(Qt::WA_TranslucentBackground, false);
    setAcceptDrops(false);
    setDragEnabled(false);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    setDropIndicatorShown(false);
    setMouseTracking(true);
    setAutoFillBackground(true);
    setViewMode(QListView::ListMode);
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Snap);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setFocusPolicy(Qt::ClickFocus);
    setContentsMargins(0, 0, 0, 0);
    setSpacing(1);
    // All rows are alike: a list of any length is laid out without asking for each.
    setUniformItemSizes(true);
    setStyleSheet(QStringLiteral("QListView{border:none;background-color:rgba(0,0,0,0);}"
                                 "QListView::item:selected{background-color:rgba(0,0,0,0);border:0px solid;}"));
    m_pScrollBar->attach(this, 0, 0);
    setModel(m_pModel);
    setItemDelegate(m_pDelegate);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &PreviewLeftWin::slotThumbnailLoad);
}

void PreviewLeftWin::reload()
{
    m_hovered = QModelIndex();
    m_pModel->clear();
    m_pModel->setList();
    clearSelection();
    const int nRow = PluginInnerData::instance()->indexOfCurrent();
    if (nRow < 0)
        return;
    const QModelIndex index = m_pModel->index(nRow, 0);
    setCurrentIndex(index);
    // Before it is shown, a long list would be laid out for a size that it will not have.
    if (isVisible())
        scrollTo(index);
}

void PreviewLeftWin::selectPrevious()
{
    if (currentIndex().isValid())
        selectRow(currentIndex().row() - 1);
}

void PreviewLeftWin::selectNext()
{
    if (currentIndex().isValid())
        selectRow(currentIndex().row() + 1);
}

void PreviewLeftWin::selectRow(int nRow)
{
    if (nRow < 0 || nRow >= m_pModel->rowCount())
        return;
    setCurrentIndex(m_pModel->index(nRow, 0));
    viewport()->update();
}

void PreviewLeftWin::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    const QModelIndexList indexes = selectionModel()->selectedIndexes();
    if (indexes.size() != 1)
        return;
    const int nRow = indexes.first().row();
    const auto pInfo = indexes.first().data(PreviewLeftWinModel::FileInfoRole).value<FileInfoPtr>();
    if (!pInfo)
        return;
    const qint64 nFileId = pInfo->fileId();
    PluginInnerData::instance()->setCurrentFile(nFileId, nRow);
    Q_EMIT SigShowResource(nRow + 1, m_pModel->rowCount(), nFileId);
}

QItemSelectionModel::SelectionFlags PreviewLeftWin::selectionCommand(const QModelIndex &index,
                                                                     const QEvent *pEvent) const
{
    // One file is always on show: a click with the control key does not take its frame away.
    const QItemSelectionModel::SelectionFlags command = QListView::selectionCommand(index, pEvent);
    return command.testFlag(QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate : command;
}

void PreviewLeftWin::slotThumbnailLoad()
{
    viewport()->update();
}

void PreviewLeftWin::mouseMoveEvent(QMouseEvent *pEvent)
{
    m_hovered = indexAt(pEvent->pos());
    viewport()->update();
    // Not the list's own handling, which would show every file that a held button passes over.
}

void PreviewLeftWin::mousePressEvent(QMouseEvent *pEvent)
{
    viewport()->update();
    QListView::mousePressEvent(pEvent);
}

void PreviewLeftWin::leaveEvent(QEvent *pEvent)
{
    m_hovered = QModelIndex();
    viewport()->update();
    QListView::leaveEvent(pEvent);
}

void PreviewLeftWin::keyPressEvent(QKeyEvent *pEvent)
{
    viewport()->update();
    QListView::keyPressEvent(pEvent);
}

void PreviewLeftWin::keyReleaseEvent(QKeyEvent *pEvent)
{
    viewport()->update();
    QListView::keyReleaseEvent(pEvent);
}

void PreviewLeftWin::showEvent(QShowEvent *pEvent)
{
    QListView::showEvent(pEvent);
    // The file was chosen when the list had no size yet, or while the column was folded away.
    scrollTo(currentIndex());
}

void PreviewLeftWin::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // Under a mouse that rests, another item comes to lie.
    if (m_hovered.isValid())
        m_hovered = indexAt(viewport()->mapFromGlobal(QCursor::pos()));
}
