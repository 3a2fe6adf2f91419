#include "app/FileGridView.h"

#include "app/FileGridDelegate.h"
#include "app/FileGridModel.h"
#include "app/ThumbnailSource.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

FileGridView::FileGridView(FileGridModel *pModel, ThumbnailSource *pThumbnails, QWidget *pParent)
    : UniformGrid(FileGridDelegate::cellSize(), pParent)
    , m_pModel(pModel)
{
    setObjectName(QStringLiteral("hostFileGrid"));
    setAccessibleName(tr("Files"));
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
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
    // Where it is there already, the files selected with it stay.
    if (index != currentIndex() || !selectionModel()->isSelected(index))
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void FileGridView::hideEvent(QHideEvent *pEvent)
{
    m_nLeftId = currentFileId();
    m_nLeftScroll = verticalScrollBar()->value();
    UniformGrid::hideEvent(pEvent);
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
    UniformGrid::keyPressEvent(pEvent);
}

void FileGridView::mousePressEvent(QMouseEvent *pEvent)
{
    m_bTouched = true;
    UniformGrid::mousePressEvent(pEvent);
}

void FileGridView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    UniformGrid::selectionChanged(selected, deselected);
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
                                   : indexAt(QRect(QPoint(), FileGridDelegate::cellSize()).center());
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
