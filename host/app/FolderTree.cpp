#include "app/FolderTree.h"

#include "app/HostIcons.h"
#include "theme/TSSkinSetting.h"

#include <QDir>
#include <QKeyEvent>
#include <QStandardItemModel>

namespace {

constexpr int k_nFolderRole = Qt::UserRole + 1;
constexpr int k_nIndentation = 16;
constexpr int k_nIconSize = 16;

/** A name that stays on its line. */
QString lineOf(QString name)
{
    return name.replace(QLatin1Char('\n'), QChar(0x23CE));
}

} // namespace

FolderTree::FolderTree(QWidget *pParent)
    : QTreeView(pParent)
    , m_pModel(new QStandardItemModel(this))
{
    setObjectName(QStringLiteral("hostFolderTree"));
    setAccessibleName(tr("Folders"));
    setHeaderHidden(true);
    setFrameShape(QFrame::NoFrame);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideMiddle);
    setUniformRowHeights(true);
    setIndentation(k_nIndentation);
    setIconSize(QSize(k_nIconSize, k_nIconSize));
    setModel(m_pModel);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &FolderTree::applyTheme);
}

QStandardItem *FolderTree::addItem(QStandardItem *pParent, const QString &name, const QString &folder)
{
    auto *pItem = new QStandardItem(HostIcons::icon(QStringLiteral("host_folder.svg")), lineOf(name));
    pItem->setData(folder, k_nFolderRole);
    pItem->setToolTip(QDir::toNativeSeparators(folder));
    int nRow = 0;
    // Few beside each other: a search from the start is fast enough, and keeps them in order.
    while (pParent != m_pModel->invisibleRootItem() && nRow < pParent->rowCount() &&
           pParent->child(nRow)->text().localeAwareCompare(pItem->text()) < 0)
        ++nRow;
    pParent->insertRow(pParent == m_pModel->invisibleRootItem() ? pParent->rowCount() : nRow, pItem);
    m_items.insert(folder, pItem);
    return pItem;
}

void FolderTree::setRoots(const QStringList &folders)
{
    const QSignalBlocker quiet(this);
    m_pModel->clear();
    m_items.clear();
    m_lastFolder.clear();
    QStandardItem *pTop = m_pModel->invisibleRootItem();
    if (folders.size() > 1)
        addItem(pTop, tr("All folders"), QString());
    for (const QString &folder : folders) {
        const QString name = QDir(folder).dirName();
        addItem(pTop, name.isEmpty() ? folder : name, folder);
    }
    setCurrentIndex(m_pModel->index(0, 0));
}

QStandardItem *FolderTree::itemOf(const QString &folder)
{
    if (QStandardItem *pKnown = m_items.value(folder))
        return pKnown;
    const int nSlash = folder.lastIndexOf(QLatin1Char('/'));
    const QString parentFolder = nSlash > 0 ? folder.left(nSlash) : QStringLiteral("/");
    // A folder outside the opened ones has no place here.
    QStandardItem *pParent = parentFolder != folder ? itemOf(parentFolder) : nullptr;
    if (pParent == nullptr)
        return nullptr;
    QStandardItem *pItem = addItem(pParent, folder.mid(nSlash + 1), folder);
    if (pParent->rowCount() == 1 && pParent->parent() == nullptr)
        expand(pParent->index());
    return pItem;
}

QString FolderTree::folderAt(const QPoint &position) const
{
    return indexAt(position).data(k_nFolderRole).toString();
}

void FolderTree::addFoldersOf(const FileRecordList &records)
{
    for (const FileRecordPtr &pRecord : records) {
        const QString &folder = pRecord->row().folder;
        if (folder == m_lastFolder)
            continue;
        m_lastFolder = folder;
        itemOf(folder);
    }
}

void FolderTree::keyPressEvent(QKeyEvent *pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Escape:
        Q_EMIT signalLeft();
        return;
    default:
        QTreeView::keyPressEvent(pEvent);
    }
}

void FolderTree::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    const bool bEverything = current.row() == 0 && !current.parent().isValid();
    if (current.isValid())
        Q_EMIT signalFolderWanted(bEverything ? QString() : current.data(k_nFolderRole).toString());
}

void FolderTree::applyTheme()
{
    for (QStandardItem *pItem : qAsConst(m_items))
        pItem->setIcon(HostIcons::icon(QStringLiteral("host_folder.svg")));
}
