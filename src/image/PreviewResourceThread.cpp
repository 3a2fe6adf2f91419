#include "image/PreviewResourceThread.h"

#include "common/PictureLevels.h"
#include "image/OriginalSize.h"
#include "image/PictureDecoder.h"
#include "plugin/PluginInnerData.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <QSet>
#include <QThreadPool>

#include <utility>

namespace {

bool isRawCameraSuffix(const QString &suffix)
{
    static const QSet<QString> suffixes = {QStringLiteral("rw2"), QStringLiteral("nef"), QStringLiteral("dng"),
                                           QStringLiteral("dcr"), QStringLiteral("cr3"), QStringLiteral("cr2"),
                                           QStringLiteral("crw"), QStringLiteral("arw")};
    return suffixes.contains(suffix);
}

} // namespace

PreviewResourceThread::PreviewResourceThread(qint64 fileId)
    : m_fileId(fileId)
{
}

void PreviewResourceThread::setPaths(const QString &srcPath, const QString &hdPath, const QString &thumbPath)
{
    m_srcPath = srcPath;
    m_hdPath = hdPath;
    m_thumbPath = thumbPath;
}

void PreviewResourceThread::run()
{
    switch (m_mode) {
    case LoadImageMode:
        readImage();
        break;
    case OpenPresentationMode:
        openPresentation();
        break;
    case RenderPresentationPageMode:
        renderPage();
        break;
    case CancelPresentationsMode:
        PluginInnerData::instance()->closeAllPresentations();
        Q_EMIT signal_pptCancelEnd();
        break;
    default:
        break;
    }
}

QImage PreviewResourceThread::readFirst(const QStringList &paths, int *pRead, QImage *pFirstLevel)
{
    const char *const failures[] = {"load src file failed ", "load file hd img failed ", "load file thumb img failed "};
    const auto isUnwanted = [this] {
        return isGivenUp();
    };
    for (int i = 0; i < paths.size(); ++i) {
        PictureDecoder::Picture picture = PictureDecoder::decode(paths.at(i), isUnwanted);
        if (isGivenUp())
            return {};
        if (!picture.image.isNull()) {
            *pRead = i;
            *pFirstLevel = picture.firstLevel;
            // For a page, pixels leave the worker as the screen wants them, with all that would cost the GUI thread
            // time.
            return m_pLoad ? PictureLevels::toScreenFormat(std::move(picture.image), picture.bOpaque) : picture.image;
        }
        qInfo("%s", failures[i]);
    }
    return {};
}

void PreviewResourceThread::readImage()
{
    // A raw file is shown through the large preview that the host developed from it, and counts as its source.
    const bool bRaw = isRawCameraSuffix(QFileInfo(m_srcPath).suffix().toLower());
    const QStringList paths{bRaw ? m_hdPath : m_srcPath, m_hdPath, m_thumbPath};
    int nRead = -1;
    QImage firstLevel;
    m_image = readFirst(paths, &nRead, &firstLevel);
    if (m_image.isNull()) // nothing was read, nobody waits for it, or there was no memory for the conversion
        nRead = -1;
    if (m_pLoad && !m_pLoad->isGivenUp())
        m_pLoad->levels = PictureLevels::build(m_image, *PluginInnerData::instance()->pictureMemory(), firstLevel);
    if (m_pLoad && nRead >= 0 && paths.at(nRead) != m_srcPath)
        m_pLoad->originalSize = OriginalSize::find(bRaw ? QString() : m_srcPath, paths.at(nRead), m_image.size());
    Q_EMIT signal_imageReadEnd(m_fileId, m_image, paths.value(nRead), nRead == 0);
}

void PreviewResourceThread::openPresentation()
{
    // A conversion is waited for, not worked at: meanwhile the pool's other tasks have a thread more.
    QThreadPool::globalInstance()->releaseThread();
    const bool bOk = PluginInnerData::instance()->openPresentation(m_fileId, m_srcPath, [this] { return isGivenUp(); });
    QThreadPool::globalInstance()->reserveThread();
    Q_EMIT signal_pptLoadEnd(m_fileId, m_srcPath, bOk);
}

void PreviewResourceThread::renderPage()
{
    QImage page;
    if (!isGivenUp())
        page = PluginInnerData::instance()->renderPresentationPage(m_fileId, m_frameIndex, m_frameSize);
    page = PictureLevels::toScreenFormat(std::move(page));
    if (m_pLoad && !isGivenUp())
        m_pLoad->levels = PictureLevels::build(page, *PluginInnerData::instance()->pictureMemory());
    // The pool is waited for when the application object is half gone, and then no pixmap may be made.
    if (QCoreApplication::closingDown() || QCoreApplication::instance() == nullptr)
        return;
    m_framePixmap = QPixmap::fromImage(page, Qt::NoOpaqueDetection);
    Q_EMIT signal_pptFrameLoadEnd(m_fileId, m_framePixmap);
}
