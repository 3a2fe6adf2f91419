// What the file actions do with the host's answers.
#include "actions/FileActionController.h"
#include "actions/HostRequest.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/TSMessageBox.h"
#include "common/TsProgressDialog.h"
#include "plugin/PluginInnerData.h"

#include <QDebug>
#include <QDesktopServices>
#include <QUrl>
#include <QWidget>

namespace {

/** A host that answers without a result has failed. */
constexpr int NoReturnCode = -1;

void viewExportFolder(const QString &path, bool bPackage)
{
    QString text = QStringLiteral("file:") + path;
    if (bPackage)
        text.truncate(text.lastIndexOf(QLatin1Char('/')));
    QDesktopServices::openUrl(QUrl(text));
}

} // namespace

void FileActionController::handleProgress(Kind kind, double fProgress, int nTotal, int nAlready)
{
    static const char *const prefixes[] = {"export pkg:nProgess=", "remove file:nProgess=", "recycle file:nProgess="};
    qDebug().nospace() << prefixes[kind] << fProgress << ",nTotal=" << nTotal << ",nAlready=" << nAlready;
    TsProgressDialog *pDialog = m_dialogs[kind];
    if (pDialog == nullptr)
        return;
    // Cut off, not rounded; a number that is none counts as nothing.
    const int nPercent = fProgress > 0.0 ? int(qMin(fProgress, 100.0)) : 0;
    pDialog->setStatusText(text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Completed(%1%)")).arg(nPercent));
    pDialog->setValue(nPercent);
}

void FileActionController::handleResult(Kind kind, const ResponseInfoPtr &pInfo)
{
    static const char *const prefixes[] = {
        "export pkg retCode:", "remove file retCode:", "recycle file retCode:", "set cover action response "};
    const int nCode = pInfo ? pInfo->returnCode() : NoReturnCode;
    qDebug().nospace() << prefixes[kind] << nCode;
    const bool bSuccess = nCode == IResponseInfo::Success && pInfo->errorList().isEmpty();
    const QPointer<FileActionController> pThis(this);
    switch (kind) {
    case ExportKind:
        handleExported(pInfo, bSuccess);
        break;
    case RecycleKind:
        if (!bSuccess) {
            showNotice(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Operation exception"),
                       QT_TRANSLATE_NOOP("ImgPreviewWidget", "Failed to delete file, the file is currently occupied!"));
        }
        m_bFinished = true;
        closeDialog(kind);
        break;
    case RemoveKind:
        m_bFinished = true;
        closeDialog(kind);
        break;
    default:
        handleCoverSet(bSuccess);
        break;
    }
    if (pThis)
        m_requests[kind]->release();
}

void FileActionController::handleExported(const ResponseInfoPtr &pInfo, bool bSuccess)
{
    if (!bSuccess) {
        qDebug().nospace() << "export pkg err:" << (pInfo ? pInfo->errorMessage() : QString());
        closeDialog(ExportKind);
        if (pInfo && pInfo->returnCode() == IResponseInfo::InsufficientDiskSpace) {
            showNotice(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Insufficient Disk Space"),
                       QT_TRANSLATE_NOOP("ImgPreviewWidget", "This disk has insufficient space remaining. Please "
                                                             "select another disk."));
        }
        return;
    }
    m_bFinished = true;
    closeDialog(ExportKind);
    // The question is made and not opened: an export ends without one. It goes with its window.
    auto *pBox = new TSMessageBox(m_pWidget->window());
    pBox->setMessage(TSMessageBox::YesNoMode, text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Export Complete")),
                     text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Do you hope to view the export file(s) in folder?")),
                     m_pWidget);
    pBox->setButtonTexts(text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Yes")),
                         text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "No")), QString());
    connect(pBox, &TSMessageBox::signalResult, pBox,
            [path = m_exportPath, bPackage = m_bExportPackage](TSMessageBox::ReturnValue value) {
                if (value == TSMessageBox::YesValue)
                    viewExportFolder(path, bPackage);
            });
}

void FileActionController::handleCoverSet(bool bSuccess)
{
    m_bFinished = true;
    if (!bSuccess)
        return;
    auto *pNotice = new CNotificationFloatingWidget(m_pWidget);
    pNotice->setContent(QStringLiteral("remind_success_icon.svg"), text(m_type.pCoverDone));
    pNotice->show();
    if (m_hooks.refresh && m_nCoverFileId == PluginInnerData::instance()->currentFileId())
        m_hooks.refresh();
}

void FileActionController::closeDialog(Kind kind)
{
    if (TsProgressDialog *pDialog = m_dialogs[kind])
        pDialog->close();
    m_dialogs[kind].clear();
}

void FileActionController::showNotice(const char *pTitle, const char *pText)
{
    auto *pBox = new TSMessageBox(m_pWidget->window());
    pBox->setMessage(TSMessageBox::OkMode, text(pTitle), text(pText), m_pWidget);
    pBox->setButtonTexts(QString(), QString(), text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "OK")));
    pBox->showModal();
}
