#include "actions/FileChooser.h"

#include "theme/TSSkinSetting.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

#include <memory>

namespace {

/** The static functions of QFileDialog keep the dialog on the stack, where a parent that goes would delete it. */
QString run(QWidget *pAsker, std::unique_ptr<QFileDialog> pOwned)
{
    const QPointer<QFileDialog> pDialog(pOwned.release());
    // Where the desktop has no dialog of its own; a window's style may be made for anything but dialogs.
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(pDialog, QStringLiteral("host"));
    QObject::connect(pAsker, &QObject::destroyed, pDialog.data(), &QDialog::reject);
    const int nResult = pDialog->exec();
    if (!pDialog)
        return {};
    const QString path = nResult == QDialog::Accepted ? pDialog->selectedFiles().value(0) : QString();
    delete pDialog.data();
    return path;
}

} // namespace

QString FileChooser::saveFile(QWidget *pAsker, const QString &caption, const QString &start, const QString &filter)
{
    auto pDialog = std::make_unique<QFileDialog>(pAsker, caption, start, filter);
    pDialog->setAcceptMode(QFileDialog::AcceptSave);
    pDialog->setDefaultSuffix(filter.section(QLatin1Char('.'), -1));
    return run(pAsker, std::move(pDialog));
}

QString FileChooser::folder(QWidget *pAsker, const QString &caption, const QString &start)
{
    // A dialog that starts at a file, such as the pack written last, would offer that file as the folder.
    const QFileInfo info(start);
    const QString folder = info.isFile() ? info.absolutePath() : start;
    auto pDialog = std::make_unique<QFileDialog>(pAsker, caption, folder);
    pDialog->setFileMode(QFileDialog::Directory);
    pDialog->setOption(QFileDialog::ShowDirsOnly);
    return run(pAsker, std::move(pDialog));
}

QString FileChooser::openFile(QWidget *pAsker, const QString &caption, const QString &start, const QString &filter)
{
    auto pDialog = std::make_unique<QFileDialog>(nullptr, caption, start, filter);
    pDialog->setFileMode(QFileDialog::ExistingFile);
    return run(pAsker, std::move(pDialog));
}
