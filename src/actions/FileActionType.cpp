#include "actions/FileActionType.h"

#include <QCoreApplication>

QString FileActionType::text(const char *pSource) const
{
    const QString own = QCoreApplication::translate(pContext, pSource);
    return own != QString::fromUtf8(pSource) ? own : QCoreApplication::translate(image().pContext, pSource);
}

const FileActionType &FileActionType::image()
{
    static const FileActionType type = {
        "ImgPreviewWidget",
        "image",
        QT_TRANSLATE_NOOP("ImgPreviewWidget", "Set the Preview Image"),
        QT_TRANSLATE_NOOP("ImgPreviewWidget", "Image cover set successfully"),
        true,
        true,
        false,
    };
    return type;
}

const FileActionType &FileActionType::presentation()
{
    static const FileActionType type = {
        "PPtPreviewWidget",
        "ppt",
        QT_TRANSLATE_NOOP("PPtPreviewWidget", "Current Page Set the Preview Image"),
        QT_TRANSLATE_NOOP("PPtPreviewWidget", "Presentation cover set successfully"),
        true,
        false,
        false,
    };
    return type;
}

const FileActionType &FileActionType::video()
{
    static const FileActionType type = {
        "VideoPreviewWidget",
        "video",
        QT_TRANSLATE_NOOP("VideoPreviewWidget", "Current Frame Set the Preview Image"),
        QT_TRANSLATE_NOOP("VideoPreviewWidget", "Video cover set successfully"),
        false, // meant: the entry is there and does nothing
        false,
        true,
    };
    return type;
}

const FileActionType &FileActionType::audio()
{
    static const FileActionType type = {
        "AudioPreviewWidget",
        "audio",
        QT_TRANSLATE_NOOP("AudioPreviewWidget", "Set the Audio Preview Image"),
        QT_TRANSLATE_NOOP("AudioPreviewWidget", "Audio cover set successfully"),
        true,
        false,
        true,
    };
    return type;
}
