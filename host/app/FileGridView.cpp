#include "app/FileGridView.h"

#include "app/FileGridDelegate.h"
#include "app/FileGridModel.h"
#include "app/ThumbnailSource.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

FileGridView::FileGridView(FileGridModel *pModel, ThumbnailSource *pThumbnails, QWidget *pParent)
    : QListView(pParent)
    , m_pModel(pModel)
{
    setObjectName(QStringLiteral("hostFileGrid"));
    setAccessibleName(tr("Files"));
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setResizeMode(QListView::Adjust);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Always there, so that the columns do not jump when the first screenful is exceeded.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    setGridSize(FileGridDelegate::cellSize());
    setItemDelegate(new FileGridDelegate(pModel, pThumbnails, this));
    connect(pModel, &QAbstractItemModel::modelAboutToBeReset, this, &FileGridView::keepSelection);
    setModel(pModel);
    connect(pModel, &QAbstractItemModel::modelReset, this, &FileGridView::restoreSelection);
    connect(pThumbnails, &ThumbnailSource::signalChanged, viewport(), QOverload<>::of(&QWidget::update));
    connect(this, &QAbstractItemView::doubleClicked, this, &FileGridView::signalOpen);
}

qint64 FileGridView::currentFileId() const
{
    const FileRecordPtr pRecord = m_pModel->recordAt(currentIndex().row());
    return pRecord != nullptr ? pRecord->fileId() : 0;
}

QVector<qint64> FileGridView::selectedFileIds() const
{
    QVector<qint64> ids;
    const QItemSelection selection = selectionModel() != nullptr ? selectionModel()->selection() : QItemSelection();
    for (const QItemSelectionRange &range : selection) {
        for (int i = range.top(); i <= range.bottom(); ++i)
            ids.append(m_pModel->recordAt(i)->fileId());
    }
    return ids;
}

void FileGridView::selectFile(qint64 nFileId)
{
    const QModelIndex index = m_pModel->index(m_pModel->rowOf(nFileId));
    if (!index.isValid())
        return;
    m_bTouched = true;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void FileGridView::hideEvent(QHideEvent *pEvent)
{
    m_nLeftId = currentFileId();
    m_nLeftScroll = verticalScrollBar()->value();
    QListView::hideEvent(pEvent);
}

void FileGridView::returnTo(qint64 nFileId)
{
    const bool bSame = nFileId == m_nLeftId;
    selectFile(nFileId);
    executeDelayedItemsLayout();
    if (bSame)
        verticalScrollBar()->setValue(m_nLeftScroll);
    else
        scrollTo(currentIndex());
}

QRegion FileGridView::visualRegionForSelection(const QItemSelection &selection) const
{
    // The exact region would be gathered from every selected file, in view or not.
    return selection.isEmpty() ? QRegion() : QRegion(viewport()->rect());
}

void FileGridView::keyPressEvent(QKeyEvent *pEvent)
{
    m_bTouched = true;
    const bool bPlain = pEvent->modifiers() == Qt::NoModifier || pEvent->modifiers() == Qt::KeypadModifier;
    if (bPlain && pEvent->key() == Qt::Key_Space) {
        Q_EMIT signalQuickPreview();
        return;
    }
    if (bPlain && (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)) {
        Q_EMIT signalOpen();
        return;
    }
    QListView::keyPressEvent(pEvent);
}

void FileGridView::mousePressEvent(QMouseEvent *pEvent)
{
    m_bTouched = true;
    QListView::mousePressEvent(pEvent);
}

int FileGridView::columns() const
{
    return qMax(1, viewport()->width() / qMax(1, gridSize().width()));
}

void FileGridView::fitCells()
{
    // The columns share the width evenly; a pixel is left over so that rounding never breaks the last column away.
    const QSize least = FileGridDelegate::cellSize();
    const int nWidth = qMax(least.width(), viewport()->width() - 1);
    const int nColumns = qMax(1, nWidth / least.width());
    const QSize cell(nWidth / nColumns, least.height());
    if (cell != gridSize())
        setGridSize(cell);
}

void FileGridView::resizeEvent(QResizeEvent *pEvent)
{
    fitCells();
    QListView::resizeEvent(pEvent);
}

QModelIndex FileGridView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int nCount = m_pModel->rowCount();
    const int nRow = currentIndex().row();
    if (nCount == 0 || nRow < 0)
        return QListView::moveCursor(action, modifiers);
    const int nPage = qMax(1, viewport()->height() / qMax(1, gridSize().height())) * columns();
    const auto step = [nRow, nCount](int nOffset) {
        const int nTarget = nRow + nOffset;
        return nTarget >= 0 && nTarget < nCount ? nTarget : nRow;
    };
    switch (action) {
    case MoveLeft:
    case MovePrevious:
        return m_pModel->index(step(-1));
    case MoveRight:
    case MoveNext:
        return m_pModel->index(step(1));
    case MoveUp:
        return m_pModel->index(step(-columns()));
    case MoveDown:
        return m_pModel->index(step(columns()));
    case MovePageUp:
        return m_pModel->index(qMax(0, nRow - nPage));
    case MovePageDown:
        return m_pModel->index(qMin(nCount - 1, nRow + nPage));
    case MoveHome:
        return m_pModel->index(0);
    case MoveEnd:
        return m_pModel->index(nCount - 1);
    }
    return {};
}

void FileGridView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    Q_EMIT signalSelectionChanged();
}

void FileGridView::keepSelection()
{
    m_nKeptCurrentId = currentFileId();
    m_nKeptRow = currentIndex().row();
    keepPlace();
    m_keptIds = selectedFileIds();
}

void FileGridView::keepPlace()
{
    m_bTouched = m_bTouched || verticalScrollBar()->value() > 0;
    const QRect current = visualRect(currentIndex());
    const QModelIndex anchor = current.intersects(viewport()->rect())
                                   ? currentIndex()
                                   : indexAt(QPoint(gridSize().width() / 2, gridSize().height() / 2));
    const FileRecordPtr pAnchor = m_pModel->recordAt(anchor.row());
    m_nAnchorId = pAnchor != nullptr ? pAnchor->fileId() : 0;
    m_nAnchorTop = visualRect(anchor).top();
}

void FileGridView::restorePlace()
{
    executeDelayedItemsLayout();
    const QModelIndex anchor = m_pModel->index(m_pModel->rowOf(m_nAnchorId));
    if (!m_bTouched)
        verticalScrollBar()->setValue(0);
    else if (anchor.isValid())
        verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(anchor).top() - m_nAnchorTop);
    else
        scrollTo(currentIndex());
}

void FileGridView::restoreSelection()
{
    const int nCount = m_pModel->rowCount();
    if (nCount == 0) {
        startOver();
        return;
    }
    if (!m_bTouched) {
        selectionModel()->setCurrentIndex(m_pModel->index(0), QItemSelectionModel::ClearAndSelect);
        restorePlace();
        return;
    }
    QVector<int> rows;
    for (const qint64 nId : qAsConst(m_keptIds)) {
        const int nRow = m_pModel->rowOf(nId);
        if (nRow >= 0)
            rows.append(nRow);
    }
    std::sort(rows.begin(), rows.end());
    QItemSelection selection;
    for (int i = 0; i < rows.size();) {
        int nEnd = i;
        while (nEnd + 1 < rows.size() && rows.at(nEnd + 1) == rows.at(nEnd) + 1)
            ++nEnd;
        selection.append(QItemSelectionRange(m_pModel->index(rows.at(i)), m_pModel->index(rows.at(nEnd))));
        i = nEnd + 1;
    }
    // A file that went away hands the place over to the one that now stands there.
    int nCurrent = m_pModel->rowOf(m_nKeptCurrentId);
    if (nCurrent < 0)
        nCurrent = qBound(0, m_nKeptRow, nCount - 1);
    const QModelIndex current = m_pModel->index(nCurrent);
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    if (selection.isEmpty())
        selection.append(QItemSelectionRange(current));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    restorePlace();
}
