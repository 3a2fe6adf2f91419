#pragma once

#include "interfaces/services/ITSCacheManager.h"

#include <QObject>
#include <QSet>

/**
 * Thumbnails for painting: answers from the base module's cache and asks it for what is missing. Without a base
 * module every file has no thumbnail.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class ThumbnailSource : public QObject {
    Q_OBJECT

public:
    explicit ThumbnailSource(QObject *pParent = nullptr);

    void setCache(const QSharedPointer<ITSCacheManager> &pCache);

    /** The thumbnail when it is in memory; null otherwise, and then *pbComing tells whether one is on its way. */
    QPixmap thumbnail(const FileInfoPtr &pInfo, const QSize &size, double fDpi, bool *pbComing);

    /** Whether requested thumbnails are still on their way. */
    bool isBusy() const { return !m_requested.isEmpty(); }

Q_SIGNALS:
    /** Thumbnails arrived, or turned out not to come: paint again. */
    void signalChanged();

private:
    QSharedPointer<ITSCacheManager> m_pCache;
    QSet<QString> m_requested;
};
