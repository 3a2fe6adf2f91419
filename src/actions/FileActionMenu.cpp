#include "actions/FileActionMenu.h"

#include "actions/FileActionController.h"
#include "actions/FileActionType.h"
#include "common/TSCustomMenu.h"
#include "plugin/PluginInnerData.h"

#include <QPainterPath>
#include <QRegion>

#include <functional>

namespace {

constexpr int CornerRadius = 8;

/** Adds entries with texts in the widget's words, whose functions act on the file that the menu was opened for. */
class Builder {
public:
    Builder(const FileActionType &type, FileActionController *pController)
        : m_type(type)
        , m_pController(pController)
        , m_nFileId(PluginInnerData::instance()->currentFileId())
    {
    }

    QString text(const char *pSource) const { return m_type.text(pSource); }

    QAction *add(QMenu *pMenu, const char *pText, const std::function<void()> &run) const
    {
        QAction *pAction = pMenu->addAction(text(pText));
        if (!run)
            return pAction;
        QObject::connect(pAction, &QAction::triggered, m_pController, [run, nFileId = m_nFileId] {
            // The host may have taken the file away while the menu was open.
            if (PluginInnerData::instance()->currentFileId() == nFileId)
                run();
        });
        return pAction;
    }

    QAction *add(QMenu *pMenu, const char *pText, void (FileActionController::*pOperation)()) const
    {
        return add(pMenu, pText, [pController = m_pController, pOperation] { (pController->*pOperation)(); });
    }

    QMenu *addMenu(QMenu *pMenu, const char *pText) const
    {
        QMenu *pSubMenu = pMenu->addMenu(text(pText));
        // The theme draws smooth corners, which would be black outside else.
        pSubMenu->setAttribute(Qt::WA_TranslucentBackground);
        return pSubMenu;
    }

private:
    const FileActionType &m_type;
    FileActionController *m_pController;
    qint64 m_nFileId;
};

QMenu *addExportMenu(QMenu *pMenu, const Builder &builder)
{
    QMenu *pExport = builder.addMenu(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Export File"));
    builder.add(pExport, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Export Library Pack"),
                &FileActionController::exportToPackage);
    builder.add(pExport, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Export to Computer"),
                &FileActionController::exportToComputer);
    return pExport;
}

QMenu *addCopyMenu(QMenu *pMenu, const Builder &builder)
{
    QMenu *pCopy = builder.addMenu(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Copy/Paste"));
    builder.add(pCopy, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Copy the File"), &FileActionController::copyFile);
    builder.add(pCopy, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Copy File Path"), &FileActionController::copyFilePath);
    QAction *pCopyTag =
        builder.add(pCopy, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Copy Labels"), &FileActionController::copyTag);
    pCopyTag->setEnabled(PluginInnerData::instance()->reloadCurrentTags() > 0);
    builder.add(pCopy, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Paste Labels"), &FileActionController::pasteTag);
    return pCopy;
}

bool hasSettings(const FileActionType &type)
{
    if (!type.bFixedCoverHidesSettings)
        return true;
    const FileInfoPtr pInfo = PluginInnerData::instance()->currentFileInfo();
    return pInfo && !pInfo->isPreviewPictureFixed();
}

void roundCorners(QMenu *pMenu)
{
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(0, 0), pMenu->sizeHint()), CornerRadius, CornerRadius);
    pMenu->setMask(QRegion(path.toFillPolygon().toPolygon()));
}

/** The sizes that the style sheet gives are final once a menu has been laid out. */
void layOutOffScreen(QMenu *pMenu)
{
    pMenu->setAttribute(Qt::WA_DontShowOnScreen);
    pMenu->show();
    pMenu->hide();
    pMenu->setAttribute(Qt::WA_DontShowOnScreen, false);
}

} // namespace

TSCustomMenu *FileActionMenu::create(const FileActionType &type, const FileActionHooks &hooks,
                                     const QKeySequence &recycleKey, FileActionController *pController,
                                     QWidget *pWidget)
{
    const Builder builder(type, pController);
    auto *pMenu = new TSCustomMenu(pWidget);
    const auto open = [pController] {
        pController->defaultOpen();
    };
    builder.add(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Open with Default App"),
                type.bOpensFile ? std::function<void()>(open) : std::function<void()>());
    builder.add(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Open File Location"),
                &FileActionController::checkFilePath);
    QVector<QMenu *> rounded = {pMenu, addExportMenu(pMenu, builder), addCopyMenu(pMenu, builder)};
    if (hasSettings(type)) {
        QMenu *pSettings = builder.addMenu(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "File Settings"));
        builder.add(pSettings, type.pCoverItem, hooks.setCover);
        if (type.bSettingsRounded)
            rounded.append(pSettings);
    }
    builder.add(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Delete Permanently"),
                &FileActionController::deleteComplete);
    QAction *pRecycle = builder.add(pMenu, QT_TRANSLATE_NOOP("ImgPreviewWidget", "Delete to Recycle Bin"),
                                    &FileActionController::removeToRecycle);
    pRecycle->setShortcut(recycleKey);
    // Some desktops leave the keys out of context menus.
    pRecycle->setShortcutVisibleInContextMenu(true);

    layOutOffScreen(pMenu);
    for (QMenu *pRounded : qAsConst(rounded))
        roundCorners(pRounded);
    return pMenu;
}
