#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QSize>
#include <QString>

#include <atomic>

/** What a file says of itself. What it does not say is empty. A plain value; crosses threads. */
struct FileMetadata {
    QSize dimensions; ///< Upright, in pixels.
    QDateTime taken;
    QString camera;
    QString lens;
    QString exposure; ///< Time, aperture, sensitivity and focal length in one line.
    QString colorProfile;
    qint64 nDurationMsec = 0;
    QString codec;
    double fFramesPerSecond = 0.0;
    qint64 nBitsPerSecond = 0; ///< Of everything in the file.
    int nSamplesPerSecond = 0;
    QString channels; ///< As "stereo" or "5.1".
    QString title;
    QString artist;
    QString album;
    QString year;
    QString genre;
};

Q_DECLARE_METATYPE(FileMetadata)

/** Reads it from the file; any thread; takes time. Damaged files give what could be read. No handle stays open. */
FileMetadata readFileMetadata(const QString &path);
