// The picture widget's file commands and note commands.
#include "actions/TsQtUtils.h"
#include "common/CResourceItem.h"
#include "image/ImgPreviewWidget.h"
#include "image/TSLargePreviewView.h"
#include "plugin/PluginInnerData.h"

#include <QDebug>
#include <QDesktopServices>
#include <QUrl>

void ImgPreviewWidget::slot_defaultOpen()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(PluginInnerData::instance()->currentFilePath()));
}

void ImgPreviewWidget::slot_checkFilePath()
{
    QString path = PluginInnerData::instance()->currentFilePath();
    if (path.isEmpty()) {
        qInfo("file path is empty");
        return;
    }
    path.replace(QLatin1String("\\"), QLatin1String("/"));
    path.replace(QLatin1String("\\\\"), QLatin1String("/"));
    TsQtUtils::showInGraphicalShell(path);
}

void ImgPreviewWidget::slot_exportToPackage()
{
}

void ImgPreviewWidget::slot_exportToComputer()
{
}

void ImgPreviewWidget::slot_copyFile()
{
}

void ImgPreviewWidget::slot_copyFilePath()
{
    PluginInnerData::instance()->copyFilePath();
}

void ImgPreviewWidget::slot_copyTag()
{
    PluginInnerData::instance()->copyTags();
}

void ImgPreviewWidget::slot_pasteTag()
{
    PluginInnerData::instance()->pasteTags();
}

void ImgPreviewWidget::slot_setCover()
{
}

void ImgPreviewWidget::slot_deleteComplete()
{
}

void ImgPreviewWidget::slot_removeToRecycle()
{
}

void ImgPreviewWidget::slot_saveNoteInfo(NoteRegin *pNoteRegion)
{
    if (pNoteRegion == nullptr || m_imageItem == nullptr)
        return;
    const auto toPicture = [this](const QPoint &viewPoint) {
        const QPointF point = m_imageItem->toPicturePixels(m_imageItem->mapFromScene(m_view->mapToScene(viewPoint)));
        return QPoint(int(point.x()), int(point.y()));
    };
    const QPoint start = toPicture(pNoteRegion->ptStart);
    const QPoint end = toPicture(pNoteRegion->ptEnd);
    const QRect rect(start.x(), start.y(), end.x() - start.x(), end.y() - start.y());
    const QColor &color = pNoteRegion->color;
    const quint32 nPacked = quint32(color.red()) | quint32(color.green()) << 8U | quint32(color.blue()) << 16U;
    PluginInnerData::instance()->addOrModifyNote(pNoteRegion->nId, pNoteRegion->strText, rect, nPacked);
}

void ImgPreviewWidget::slot_deleteNoteInfo(int nId)
{
    PluginInnerData::instance()->deleteNote(nId);
}

void ImgPreviewWidget::slot_acceptMousePosFromNoteWidget(QPoint noteWidgetMousePos)
{
    Q_UNUSED(noteWidgetMousePos)
}
