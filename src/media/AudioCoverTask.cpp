#include "media/AudioCoverTask.h"

#include "actions/TsQtUtils.h"

#include <QPainter>
#include <QSvgRenderer>

namespace {

constexpr int CoverSide = 360;

bool isSvg(const QString &path)
{
    return path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive);
}

QImage renderSvg(const QString &path, const QSize &size)
{
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return {};
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    return picture;
}

QImage middleOf(const QImage &picture, const QSize &size)
{
    return picture.copy(TsQtUtils::centredSquare(picture.size()))
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

AudioCoverTask::AudioCoverTask(const QStringList &paths, const QImage &picture, const QSize &labelSize)
    : m_paths(paths)
    , m_picture(picture)
    , m_labelSize(labelSize)
{
}

QImage AudioCoverTask::coverOf(const QImage &picture)
{
    const QSize side(CoverSide, CoverSide);
    return picture.isNull() || picture.size() == side ? picture : middleOf(picture, side);
}

QImage AudioCoverTask::readPicture(const QString &path) const
{
    if (isSvg(path))
        return renderSvg(path, QSize(CoverSide, CoverSide));
    // Formats that can are spared most of what would be thrown away.
    const QSize size = TsQtUtils::pictureSize(path);
    if (qMin(size.width(), size.height()) <= 2 * CoverSide)
        return TsQtUtils::readPicture(path);
    return TsQtUtils::readPicture(path, size.scaled(2 * CoverSide, 2 * CoverSide, Qt::KeepAspectRatioByExpanding));
}

void AudioCoverTask::run()
{
    QImage picture;
    QImage label;
    for (const QString &path : qAsConst(m_paths)) {
        picture = readPicture(path);
        if (picture.isNull())
            continue;
        // Lines are drawn for each size: they would blur.
        if (isSvg(path))
            label = renderSvg(path, m_labelSize);
        break;
    }
    if (picture.isNull())
        picture = m_picture;
    if (picture.isNull())
        Q_EMIT signal_audioCoverReady({}, {});
    else
        Q_EMIT signal_audioCoverReady(coverOf(picture), label.isNull() ? middleOf(picture, m_labelSize) : label);
}
