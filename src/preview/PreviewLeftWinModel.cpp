#include "preview/PreviewLeftWinModel.h"

#include "plugin/PluginInnerData.h"

PreviewLeftWinModel::PreviewLeftWinModel(QObject *pParent)
    : QAbstractListModel(pParent)
{
    qRegisterMetaType<FileInfoPtr>("QSharedPointer<const IFileInfo>");
}

int PreviewLeftWinModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_files.size();
}

QVariant PreviewLeftWinModel::data(const QModelIndex &index, int nRole) const
{
    const int nRow = index.row();
    if (nRole != FileInfoRole || nRow < 0 || nRow >= m_files.size())
        return {};
    return QVariant::fromValue(m_files.at(nRow));
}

void PreviewLeftWinModel::clear()
{
    if (m_files.isEmpty())
        return;
    beginResetModel();
    m_files.clear();
    endResetModel();
}

void PreviewLeftWinModel::setList()
{
    beginResetModel();
    m_files = PluginInnerData::instance()->fileInformationList();
    endResetModel();
}
