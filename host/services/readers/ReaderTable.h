#pragma once

#include "media/PeakReader.h"
#include "media/VideoTraits.h"
#include "metadata/MetadataReaders.h"
#include "services/basemodule/decode/MediaReader.h"
#include "services/basemodule/decode/VipsReader.h"

/**
 * The readers that stand on large libraries: loading those takes as long as decoding a photograph. The modules that
 * need them are linked with stand-ins (LazyReaders) of the same names, which load this table's library with the first
 * file that asks for one of them.
 */
struct ReaderTable {
    decltype(&basemodule::readWithVips) readWithVips;
    decltype(&basemodule::readMedia) readMedia;
    decltype(&basemodule::scaledPicture) scaledPicture;
    decltype(&basemodule::inkProfile) inkProfile;
    decltype(&::readMediaMetadata) readMediaMetadata;
    decltype(&media::readPeaks) readPeaks;
    decltype(&media::videoTraits) videoTraits;
};

/** The library's one function. */
extern "C" Q_DECL_EXPORT const ReaderTable *readerTable();
