#pragma once

#include <QStyledItemDelegate>

class FileGridModel;
class ThumbnailSource;

/**
 * Draws one file of the grid: thumbnail, name, selection and hover frame. All cells have one size, so nothing is
 * measured for files that are not painted.
 *
 * Owner: FileGridView. Thread: GUI thread only.
 */
class FileGridDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    FileGridDelegate(const FileGridModel *pModel, ThumbnailSource *pThumbnails, QObject *pParent);

    /** The least size of a cell; the view may make it wider. */
    static QSize cellSize();
    static QSize thumbnailSize();

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintFrame(QPainter *pPainter, const QStyleOptionViewItem &option, const QRect &card) const;
    void paintPlaceholder(QPainter *pPainter, const QRect &area, const QString &suffix, bool bComing) const;

    const FileGridModel *m_pModel;
    ThumbnailSource *m_pThumbnails;
};
