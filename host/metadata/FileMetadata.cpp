#include "metadata/FileMetadata.h"

#include "files/NativePath.h"
#include "metadata/MetadataReaders.h"

#include <QImageReader>

FileMetadata readFileMetadata(const QString &path)
{
    FileMetadata metadata;
    const QByteArray native = nativePath(path);
    // A pipe in a file's place would be waited for until somebody writes to it.
    if (!fileState(native).bFile)
        return metadata;
    readPictureMetadata(native, &metadata);
    if (metadata.dimensions.isEmpty()) {
        // Reads the header alone.
        QImageReader reader(path);
        reader.setDecideFormatFromContent(true);
        metadata.dimensions = reader.size();
        if (reader.transformation().testFlag(QImageIOHandler::TransformationRotate90))
            metadata.dimensions.transpose();
    }
    if (metadata.dimensions.isEmpty())
        readMediaMetadata(native, &metadata);
    return metadata;
}
