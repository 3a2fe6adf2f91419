#include "services/readers/ReaderTable.h"

const ReaderTable *readerTable()
{
    static const ReaderTable table{&basemodule::readWithVips, &basemodule::readMedia, &basemodule::scaledPicture,
                                   &basemodule::inkProfile,   &readMediaMetadata,     &media::readPeaks,
                                   &media::videoTraits};
    return &table;
}
