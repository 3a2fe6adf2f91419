#include "media/CoverArt.h"

namespace media {

QByteArray embeddedCover(const AVFormatContext &input)
{
    QByteArray largest;
    for (unsigned i = 0; i < input.nb_streams; ++i) {
        const AVStream &stream = *input.streams[i];
        // Some files hold a small icon beside the cover.
        if (isAttachedPicture(stream) && stream.attached_pic.size > largest.size())
            largest = QByteArray(reinterpret_cast<const char *>(stream.attached_pic.data), stream.attached_pic.size);
    }
    return largest;
}

} // namespace media
