#include "HostUser.h"

#include "OpenPreview.h"
#include "app/FileGridModel.h"
#include "app/FileGridView.h"
#include "app/HostSession.h"
#include "app/MainWindow.h"

#include <QWindow>
#include <QtTest>

using namespace OpenPreview;

HostUser::HostUser(const QString &place, const QString &pluginFolder, const QString &library)
{
    CommandLine commandLine;
    commandLine.libraryPath = library.isEmpty() ? m_folder.filePath(QStringLiteral("library.db")) : library;
    commandLine.pluginFolder = pluginFolder;
    if (QFileInfo(place).isDir())
        commandLine.folders = QStringList(place);
    else
        commandLine.file = place;
    m_pSession = std::make_unique<HostSession>(commandLine, QCoreApplication::applicationDirPath());
    m_pSession->start();
}

HostUser::~HostUser() = default;

FileGridView *HostUser::grid() const
{
    return m_pSession->window()->grid();
}

void HostUser::end()
{
    m_pSession.reset();
}

int HostUser::fileCount() const
{
    return m_pSession->model().rowCount();
}

int HostUser::row() const
{
    return grid()->currentIndex().row();
}

QString HostUser::nameAt(int nRow) const
{
    const FileRecordPtr pRecord = m_pSession->model().recordAt(nRow);
    return pRecord != nullptr ? pRecord->fileName() : QString();
}

bool HostUser::showFolder(const QString &folder)
{
    m_pSession->library()->showFolders({folder});
    return QTest::qWaitFor(
        [this] {
            return !m_pSession->library()->isScanning() && m_pSession->library()->count() > 0 &&
                   fileCount() == m_pSession->library()->count();
        },
        PatienceMsec);
}

bool HostUser::select(const QString &name)
{
    int nRow = 0;
    while (nRow < fileCount() && nameAt(nRow) != name)
        ++nRow;
    const QModelIndex index = m_pSession->model().index(nRow);
    if (!index.isValid() || !makeActive(m_pSession->window()))
        return false;
    grid()->scrollTo(index);
    const QPoint place = grid()->viewport()->mapTo(m_pSession->window(), grid()->visualRect(index).center());
    QTest::mouseClick(m_pSession->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    return row() == nRow;
}

bool HostUser::open(const QString &name)
{
    if (!select(name))
        return false;
    key(Qt::Key_Space);
    return waitForPicture();
}

bool HostUser::returnToGrid()
{
    return leave() && makeActive(m_pSession->window()) && grid()->hasFocus();
}
