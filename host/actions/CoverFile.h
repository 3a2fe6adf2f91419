#pragma once

#include "actions/ActionTask.h"
#include "actions/Leftovers.h"

#include <QImage>

#include <functional>

/** Reads any picture upright, fitted into a square of this side; null when it cannot or when the flag is set. */
using PictureReaderFunction =
    std::function<QImage(const QString &path, int nLongestSide, const std::atomic_bool &cancelled)>;

/** A preview picture made ready for the library: written, complete, not yet in use. */
struct PreparedCover {
    std::shared_ptr<Leftover> pFile; ///< Null when there is none.
    QString suffix;
};

/**
 * Makes a preview picture of a picture of any kind and size. On failure the outcome tells why and nothing is left.
 * Worker thread of the action.
 */
PreparedCover prepareCover(const QString &picturePath, const QString &coverFolder, const Leftovers &leftovers,
                           const PictureReaderFunction &read, const ActionTask &task, ActionOutcome *pOutcome);
