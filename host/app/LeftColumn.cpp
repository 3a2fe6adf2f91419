#include "app/LeftColumn.h"

#include "app/FileGridModel.h"
#include "app/FolderTree.h"
#include "app/LabelList.h"
#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QLabel>
#include <QVBoxLayout>
#include <QVariant>

LeftColumn::LeftColumn(Library *pLibrary, FileGridModel *pModel, QWidget *pParent)
    : QWidget(pParent)
    , m_pLibrary(pLibrary)
    , m_pModel(pModel)
    , m_pFolders(new FolderTree(this))
    , m_pLabelHeading(new QLabel(tr("Labels"), this))
    , m_pLabels(new LabelList(this))
{
    setProperty("area", QStringLiteral("left"));
    setAttribute(Qt::WA_StyledBackground);
    m_pLabelHeading->setProperty("role", QStringLiteral("section"));
    m_pLabelHeading->setContentsMargins(8, 12, 8, 4);
    m_pLabels->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(8, 8, 8, 8);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pFolders, 1);
    pLayout->addWidget(m_pLabelHeading);
    pLayout->addWidget(m_pLabels);
    m_pLabelHeading->hide();
    m_pLabels->hide();
    connectFolders();
    connectLabels();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &LeftColumn::applyTheme);
    applyTheme();
}

void LeftColumn::connectFolders()
{
    connect(m_pLibrary, &Library::signalRecords, m_pFolders, &FolderTree::addFoldersOf);
    connect(m_pFolders, &FolderTree::signalFolderWanted, this, [this](const QString &folder) {
        Q_EMIT signalChosen();
        m_pModel->setFolder(folder);
    });
    connect(m_pFolders, &FolderTree::signalLeft, this, &LeftColumn::signalLeft);
}

void LeftColumn::connectLabels()
{
    connect(m_pLibrary, &Library::signalLabelRecords, this, [this] {
        m_pLabels->setLabels(m_pLibrary->labels());
        m_pLabelHeading->setVisible(!m_pLibrary->labels().isEmpty());
        m_pLabels->setVisible(!m_pLibrary->labels().isEmpty());
    });
    connect(m_pModel, &FileGridModel::signalArranged, m_pLabels, [this] { m_pLabels->setUses(m_pModel->labelUses()); });
    connect(m_pLabels, &LabelList::signalChosen, this, [this](quint64 nLabelId) {
        Q_EMIT signalChosen();
        FileFilter filter = m_pModel->filter();
        filter.nLabelId = nLabelId;
        m_pModel->setFilter(filter);
    });
    connect(m_pLabels, &LabelList::signalColor, m_pLibrary, &Library::setLabelColor);
    connect(m_pLabels, &LabelList::signalDelete, m_pLibrary, &Library::deleteLabel);
    connect(m_pLabels, &LabelList::signalLeft, this, &LeftColumn::signalLeft);
}

void LeftColumn::applyTheme()
{
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(this, QStringLiteral("host"));
}
