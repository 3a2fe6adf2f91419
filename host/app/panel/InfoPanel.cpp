#include "app/panel/InfoPanel.h"

#include "app/NotesList.h"
#include "app/panel/LabelEditor.h"
#include "app/panel/MetadataTable.h"
#include "app/panel/NameEdit.h"
#include "app/panel/PanelPicture.h"
#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QVariant>

namespace {

constexpr int k_nMargin = 16;
constexpr int k_nReadDelayMsec = 120;

} // namespace

InfoPanel::InfoPanel(Library *pLibrary, ThumbnailSource *pThumbnails, QWidget *pParent)
    : QScrollArea(pParent)
    , m_pLibrary(pLibrary)
    , m_pContent(new QWidget(this))
    , m_pLayout(new QVBoxLayout(m_pContent))
    , m_pPicture(new PanelPicture(pThumbnails, m_pContent))
    , m_pPictureExtras(new QVBoxLayout)
    , m_pRemoveCover(buildRemoveCover())
    , m_pName(new NameEdit(m_pContent))
    , m_pNameFault(new QLabel(m_pContent))
    , m_pMissing(buildMissing())
    , m_pMetadata(new MetadataTable(m_pContent))
    , m_pLabels(new LabelEditor(m_pContent))
    , m_pNotes(new QLabel(m_pContent))
    , m_pNotesList(new NotesList(pLibrary, m_pContent))
    , m_pNoteExtras(new QVBoxLayout)
    , m_pNothing(new QLabel(tr("Select a file to see what is known of it."), m_pContent))
{
    setObjectName(QStringLiteral("hostInfoPanel"));
    setProperty("area", QStringLiteral("right"));
    setAttribute(Qt::WA_StyledBackground);
    setAccessibleName(tr("Information about the file"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    verticalScrollBar()->setFocusPolicy(Qt::NoFocus);
    m_pool.setMaxThreadCount(1);
    m_readTimer.setSingleShot(true);
    connect(&m_readTimer, &QTimer::timeout, this, &InfoPanel::read);
    buildLayout();
    setWidget(m_pContent);
    connectLibrary();
    connectEdits();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &InfoPanel::applyTheme);
    applyTheme();
    showRecord();
}

InfoPanel::~InfoPanel()
{
    m_pool.waitForDone();
}

QWidget *InfoPanel::buildMissing()
{
    auto *pBox = new QWidget(m_pContent);
    auto *pText = new QLabel(tr("This file is missing. Its labels and notes are kept for when it comes back."), pBox);
    pText->setProperty("role", QStringLiteral("fault"));
    pText->setWordWrap(true);
    auto *pForget = new QPushButton(tr("Forget it"), pBox);
    pForget->setObjectName(QStringLiteral("hostForgetButton"));
    pForget->setToolTip(tr("Takes the selected missing files out of the library"));
    connect(pForget, &QPushButton::clicked, this, &InfoPanel::forgetMissing);
    auto *pLayout = new QVBoxLayout(pBox);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(pText);
    pLayout->addWidget(pForget, 0, Qt::AlignLeading);
    return pBox;
}

QPushButton *InfoPanel::buildRemoveCover()
{
    auto *pButton = new QPushButton(tr("Remove preview picture"), m_pContent);
    pButton->setObjectName(QStringLiteral("hostRemoveCoverButton"));
    pButton->setToolTip(tr("Shows the file by its own picture again"));
    connect(pButton, &QPushButton::clicked, this, [this] {
        Q_EMIT signalRemoveCover(m_nFileId);
        Q_EMIT signalLeft();
    });
    return pButton;
}

void InfoPanel::forgetMissing()
{
    QVector<qint64> missing;
    const QVector<qint64> targets = labelTargets();
    for (const qint64 nId : targets) {
        const FileRecordPtr pRecord = m_pLibrary->record(nId);
        if (pRecord != nullptr && pRecord->isUnavailable())
            missing.append(nId);
    }
    m_pLibrary->forgetFiles(missing);
    Q_EMIT signalLeft();
}

QLabel *InfoPanel::addHeading(const QString &text)
{
    auto *pHeading = new QLabel(text, m_pContent);
    pHeading->setProperty("role", QStringLiteral("section"));
    m_pLayout->addSpacing(8);
    m_pLayout->addWidget(pHeading);
    m_parts.append(pHeading);
    return pHeading;
}

void InfoPanel::buildLayout()
{
    m_pContent->setObjectName(QStringLiteral("hostInfoContent"));
    m_pNameFault->setProperty("role", QStringLiteral("fault"));
    m_pNotes->setProperty("role", QStringLiteral("secondary"));
    m_pNotes->setObjectName(QStringLiteral("hostNoteCount"));
    m_pNothing->setProperty("role", QStringLiteral("secondary"));
    m_pNothing->setAlignment(Qt::AlignCenter);
    for (QLabel *pLabel : {m_pNameFault, m_pNothing}) {
        pLabel->setWordWrap(true);
        pLabel->setTextFormat(Qt::PlainText);
    }
    m_pLayout->setContentsMargins(k_nMargin, k_nMargin, k_nMargin, k_nMargin);
    m_pLayout->setSpacing(8);
    m_pLayout->addWidget(m_pPicture);
    m_pLayout->addWidget(m_pRemoveCover, 0, Qt::AlignLeading);
    m_pLayout->addLayout(m_pPictureExtras);
    m_pLayout->addWidget(m_pName);
    m_pLayout->addWidget(m_pNameFault);
    m_pLayout->addWidget(m_pMissing);
    m_parts = {m_pPicture, m_pName, m_pMetadata, m_pLabels, m_pNotes};
    addHeading(tr("Labels"));
    m_pLayout->addWidget(m_pLabels);
    addHeading(tr("Notes"));
    m_pLayout->addWidget(m_pNotes);
    m_pLayout->addWidget(m_pNotesList);
    m_pLayout->addLayout(m_pNoteExtras);
    addHeading(tr("Details"));
    m_pLayout->addWidget(m_pMetadata);
    m_pLayout->addStretch(1);
    m_pLayout->addWidget(m_pNothing, 1);
}

void InfoPanel::connectLibrary()
{
    connect(m_pLibrary, &Library::signalLabelRecords, this,
            [this] { m_pLabels->setKnownLabels(m_pLibrary->labels()); });
    connect(m_pLibrary, &Library::signalRecords, this, [this](const FileRecordList &records) {
        for (const FileRecordPtr &pRecord : records) {
            if (pRecord->fileId() == m_nFileId) {
                showRecord();
                return;
            }
        }
    });
    connect(m_pLibrary, &Library::signalRemoved, this, [this](const QVector<qint64> &fileIds) {
        if (fileIds.contains(m_nFileId))
            showFile(0);
    });
    connect(m_pLibrary, &Library::signalCleared, this, [this] { showFile(0); });
    connect(m_pLibrary, &Library::signalRenamed, this, [this](qint64 nActionId, qint64 nFileId, const QString &error) {
        if (nActionId != m_nRenameId || nFileId != m_nFileId || error.isEmpty())
            return;
        m_pName->reset();
        m_pNameFault->setText(error);
        m_pNameFault->show();
    });
}

void InfoPanel::connectEdits()
{
    connect(m_pName, &NameEdit::signalRename, this, [this](const QString &name) {
        m_pNameFault->hide();
        Q_EMIT signalRenaming(m_nFileId);
        m_nRenameId = m_pLibrary->renameFile(m_nFileId, name);
    });
    connect(m_pNotesList, &NotesList::signalNoteActivated, this, &InfoPanel::signalNoteActivated);
    connect(m_pName, &NameEdit::signalLeft, this, &InfoPanel::signalLeft);
    connect(m_pLabels, &LabelEditor::signalAdd, this, [this](const QString &name) {
        m_pLibrary->addLabels(labelTargets(), {TagRecordPtr(new TagRecord{0, name})});
    });
    connect(m_pLabels, &LabelEditor::signalRemove, this,
            [this](quint64 nLabelId) { m_pLibrary->removeLabels(labelTargets(), {nLabelId}); });
    connect(m_pLabels, &LabelEditor::signalColor, m_pLibrary, &Library::setLabelColor);
}

QVector<qint64> InfoPanel::labelTargets() const
{
    return m_selection.contains(m_nFileId) ? m_selection : QVector<qint64>{m_nFileId};
}

void InfoPanel::applyTheme()
{
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(this, QStringLiteral("host"));
}

void InfoPanel::showFile(qint64 nFileId)
{
    if (nFileId != m_nFileId) {
        m_pNameFault->clear();
        m_pNameFault->hide();
        verticalScrollBar()->setValue(0);
    }
    m_nFileId = nFileId;
    m_pNotesList->setFile(nFileId);
    showRecord();
}

void InfoPanel::showRecord()
{
    const FileRecordPtr pRecord = m_pLibrary->record(m_nFileId);
    for (QWidget *pPart : qAsConst(m_parts))
        pPart->setVisible(pRecord != nullptr);
    m_pNameFault->setVisible(pRecord != nullptr && !m_pNameFault->text().isEmpty());
    m_pNothing->setVisible(pRecord == nullptr);
    m_pMissing->setVisible(pRecord != nullptr && pRecord->isUnavailable());
    m_pRemoveCover->setVisible(pRecord != nullptr && !pRecord->coverPath().isEmpty());
    m_pPicture->setFile(pRecord);
    ++m_nGeneration;
    if (pRecord == nullptr)
        return;
    m_pName->setName(pRecord->fileName(), !pRecord->isUnavailable());
    m_pLabels->setLabels(pRecord->tags());
    const int nNotes = pRecord->notes().size();
    m_pNotes->setText(nNotes == 0 ? tr("No notes") : nNotes == 1 ? tr("1 note") : tr("%1 notes").arg(nNotes));
    const bool bRead = m_nReadId == m_nFileId && m_nReadModified == pRecord->row().nModifiedMsec;
    m_pMetadata->showFile(*pRecord, bRead ? m_read : FileMetadata());
    if (!bRead && !pRecord->isUnavailable())
        m_readTimer.start(k_nReadDelayMsec);
}

void InfoPanel::read()
{
    const FileRecordPtr pRecord = m_pLibrary->record(m_nFileId);
    if (pRecord == nullptr || !isVisible() || !m_metadataReader)
        return;
    m_pool.clear();
    m_pool.start([this, read = m_metadataReader, nGeneration = m_nGeneration, path = pRecord->filePath()] {
        const FileMetadata metadata = read(path);
        QMetaObject::invokeMethod(
            this, [this, nGeneration, metadata] { takeMetadata(nGeneration, metadata); }, Qt::QueuedConnection);
    });
}

void InfoPanel::setMetadataReader(const MetadataReader &reader)
{
    m_pool.clear();
    m_pool.waitForDone();
    m_metadataReader = reader;
}

void InfoPanel::takeMetadata(int nGeneration, const FileMetadata &metadata)
{
    const FileRecordPtr pRecord = m_pLibrary->record(m_nFileId);
    if (nGeneration != m_nGeneration || pRecord == nullptr)
        return;
    m_read = metadata;
    m_nReadId = m_nFileId;
    m_nReadModified = pRecord->row().nModifiedMsec;
    m_pMetadata->showFile(*pRecord, metadata);
}

void InfoPanel::editName()
{
    m_pName->beginEdit();
}

bool InfoPanel::event(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::Show && m_nReadId != m_nFileId)
        m_readTimer.start(k_nReadDelayMsec);
    if (pEvent->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(pEvent)->key() == Qt::Key_Escape) {
        Q_EMIT signalLeft();
        return true;
    }
    return QScrollArea::event(pEvent);
}
