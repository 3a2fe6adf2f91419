#pragma once

#include "interfaces/data/IFileInfo.h"

#include <QSet>
#include <QString>
#include <QStyledItemDelegate>

class ITSCacheManager;
class PreviewLeftWin;

/**
 * Paints the strip's items. Painting only asks the host's cache and requests what is missing; it listens to the cache
 * while requests are under way and not otherwise.
 *
 * Owner: the strip. Thread: GUI thread.
 */
class PreviewLeftWinItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit PreviewLeftWinItemDelegate(PreviewLeftWin *pView);

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

public Q_SLOTS:
    void cacheMrgLoadFinish(QString cache_key, bool status);

private:
    QRect boxOf(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintPicture(QPainter *pPainter, const QRect &itemRect, const QRect &box, const FileInfoPtr &pInfo) const;
    bool paintThumbnail(QPainter *pPainter, const QRect &box, const FileInfoPtr &pInfo) const;
    void request(const QString &cacheKey, const QSize &size, const FileInfoPtr &pInfo) const;

    PreviewLeftWin *m_pView;
    QSharedPointer<ITSCacheManager> m_pCacheManager;
    mutable QSet<QString> m_pendingKeys;
};
