#pragma once

#include "metadata/FileMetadata.h"

#include <QByteArray>

/** Adds what a picture says of itself: size, time, camera, exposure, colour profile. Any thread. */
void readPictureMetadata(const QByteArray &native, FileMetadata *pMetadata);

/** Adds what a video or sound says of itself: duration, codec, size. Any thread. */
void readMediaMetadata(const QByteArray &native, FileMetadata *pMetadata);

/** The name of an embedded colour profile; empty where it cannot be read. */
QString colorProfileName(const QByteArray &profile);
