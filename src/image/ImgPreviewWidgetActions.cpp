// The picture widget's file commands and note commands.
#include "actions/FileActionController.h"
#include "common/CResourceItem.h"
#include "image/ImgPreviewWidget.h"
#include "image/PictureNotes.h"
#include "plugin/PluginInnerData.h"

#include <QContextMenuEvent>
#include <QShortcut>

void ImgPreviewWidget::createFileActions()
{
    FileActionHooks hooks;
    hooks.beforeRemoval = [this] {
        releaseAnimation();
    };
    hooks.setCover = [this] {
        slot_setCover();
    };
    hooks.refresh = [this] {
        refreshCurrentFile();
    };
    m_pFileActions = new FileActionController(FileActionType::image(), hooks, this);
}

void ImgPreviewWidget::contextMenuEvent(QContextMenuEvent *pEvent)
{
    pEvent->accept();
    if (m_bContextMenuEnabled)
        m_pFileActions->showMenu(m_shortcut->key());
}

void ImgPreviewWidget::releaseAnimation()
{
    cancelAnimationTask();
    if (m_imageItem != nullptr && m_imageItem->hasAnimation())
        m_imageItem->releaseAnimation();
}

void ImgPreviewWidget::refreshCurrentFile()
{
    PluginInnerData *pData = PluginInnerData::instance();
    pData->reloadCurrentTags();
    // A picture that shows the file itself has not changed, and keeps its zoom.
    const bool bOwnPicture = m_openMode != OpenHostRendition && m_filePath == pData->currentFilePath();
    if (m_imageItem != nullptr && !bOwnPicture && !pData->isLoadingFor(pData->currentFileId(), this))
        loadImage(m_filePath, 0, 1, m_loadFactor, 0);
    Q_EMIT signal_img_preview_update();
}

void ImgPreviewWidget::slot_defaultOpen()
{
    m_pFileActions->defaultOpen();
}

void ImgPreviewWidget::slot_checkFilePath()
{
    m_pFileActions->checkFilePath();
}

void ImgPreviewWidget::slot_exportToPackage()
{
    m_pFileActions->exportToPackage();
}

void ImgPreviewWidget::slot_exportToComputer()
{
    m_pFileActions->exportToComputer();
}

void ImgPreviewWidget::slot_copyFile()
{
    m_pFileActions->copyFile();
}

void ImgPreviewWidget::slot_copyFilePath()
{
    m_pFileActions->copyFilePath();
}

void ImgPreviewWidget::slot_copyTag()
{
    m_pFileActions->copyTag();
}

void ImgPreviewWidget::slot_pasteTag()
{
    m_pFileActions->pasteTag();
}

void ImgPreviewWidget::slot_setCover()
{
    m_pFileActions->chooseCover();
}

void ImgPreviewWidget::slot_deleteComplete()
{
    m_pFileActions->deleteComplete();
}

void ImgPreviewWidget::slot_removeToRecycle()
{
    m_pFileActions->removeToRecycle();
}

void ImgPreviewWidget::slot_saveNoteInfo(NoteRegin *pNoteRegion)
{
    // Saving makes the overlay's regions anew: a copy outlives them.
    if (pNoteRegion != nullptr)
        m_pNotes->save(NoteRegin(*pNoteRegion));
}

void ImgPreviewWidget::slot_deleteNoteInfo(int nId)
{
    m_pNotes->remove(nId);
}

void ImgPreviewWidget::slot_acceptMousePosFromNoteWidget(QPoint noteWidgetMousePos)
{
    m_pNotes->acceptMousePos(noteWidgetMousePos);
}
