#pragma once

#include <QHash>
#include <QReadWriteLock>
#include <QString>

/**
 * Which files have a preview picture chosen by the user, and where it stands. A new picture has a new path, so that
 * what was made of the old one is not taken for it.
 *
 * Owner: shared by the library and its records. Thread: any.
 */
class CoverBook {
public:
    /** Empty where the file has none. */
    QString path(qint64 nFileId) const
    {
        const QReadLocker lock(&m_lock);
        return m_paths.value(nFileId);
    }

    /** An empty path takes the entry out. */
    void set(qint64 nFileId, const QString &path)
    {
        const QWriteLocker lock(&m_lock);
        if (path.isEmpty())
            m_paths.remove(nFileId);
        else
            m_paths.insert(nFileId, path);
    }

private:
    mutable QReadWriteLock m_lock;
    QHash<qint64, QString> m_paths;
};
