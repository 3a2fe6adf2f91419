// The shared state's small actions on the current file: its path, its labels, its region notes.
#include "common/Platform.h"
#include "interfaces/actions/ITagAction.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "plugin/PluginInnerData.h"

#include <QClipboard>
#include <QDebug>
#include <QGuiApplication>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

#include <memory>

void PluginInnerData::copyFile()
{
    if (!m_pCurrentFileInfo)
        return;
    auto pMimeData = std::make_unique<QMimeData>();
    pMimeData->setUrls({QUrl::fromLocalFile(m_pCurrentFileInfo->filePath())});
    Platform::addCopyFormats(pMimeData.get());
    QGuiApplication::clipboard()->setMimeData(pMimeData.release());
}

void PluginInnerData::copyFilePath()
{
    if (m_pCurrentFileInfo)
        QGuiApplication::clipboard()->setText(m_pCurrentFileInfo->filePath());
}

void PluginInnerData::copyTags()
{
    QClipboard *pClipboard = QGuiApplication::clipboard();
    pClipboard->clear();
    reloadCurrentTags();
    QStringList ids;
    for (const TagRecordPtr &pTag : qAsConst(m_currentTags)) {
        if (pTag)
            ids.append(QString::number(pTag->id));
    }
    pClipboard->setText(ids.join(QLatin1Char(',')));
}

void PluginInnerData::pasteTags()
{
    if (!m_pTagAction)
        return;
    TagRecordList tags;
    const QStringList parts = QGuiApplication::clipboard()->text().split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        auto pTag = QSharedPointer<TagRecord>::create();
        pTag->id = part.toULongLong();
        tags.append(pTag);
    }
    const qint64 nActionId = m_pTagAction->associateTagsWithFiles({m_nCurrentFileId}, tags);
    if (nActionId < 1)
        qDebug("files associate tags action id <= 0");
    m_nTagActionId = nActionId;
    connect(m_pTagAction.data(), &ITagAction::signalTagResult, this, &PluginInnerData::handleTagResult,
            Qt::UniqueConnection);
}

void PluginInnerData::handleTagResult(qint64 nActionId, const ResponseInfoPtr &pInfo)
{
    if (nActionId < 1 || nActionId != m_nTagActionId || !pInfo)
        return;
    m_nTagActionId = 0;
    const bool bAllFiles =
        pInfo->failedFiles().isEmpty() && pInfo->skippedFiles().isEmpty() && pInfo->missingFiles().isEmpty();
    if (pInfo->returnCode() == IResponseInfo::Success && bAllFiles)
        Q_EMIT signalUpdateRightPanel(m_nCurrentFileId);
}

bool PluginInnerData::sendNotes(qint64 *pActionId)
{
    if (!m_pDataSource)
        return false;
    const std::optional<qint64> actionId = m_noteStore.send(m_pDataSource.data(), m_nCurrentFileId, noteList());
    *pActionId = actionId.value_or(0);
    return actionId.has_value();
}

void PluginInnerData::addOrModifyNote(int nKey, const QString &text, const QRect &rect, quint32 nValue)
{
    if (text.isEmpty())
        return;
    const bool bNew = !m_notes.contains(nKey);
    m_notes.insert(nKey, {rect, nValue, text});
    qint64 nActionId = 0;
    if (sendNotes(&nActionId) && nActionId < 1)
        qDebug(bNew ? "modify(add) comment action id <= 0" : "modify comment action id <= 0");
}

void PluginInnerData::deleteNote(int nKey)
{
    if (m_notes.remove(nKey) == 0)
        return;
    qint64 nActionId = 0;
    if (sendNotes(&nActionId) && nActionId < 1)
        qDebug("modify(del) comment action id <= 0");
}

void PluginInnerData::numberNotes(const QVector<NoteRecord> &notes)
{
    m_notes.clear();
    for (int i = 0; i < notes.size(); ++i)
        m_notes.insert(i, notes.at(i));
}

void PluginInnerData::renumberNotes()
{
    numberNotes(noteList());
}

QVector<NoteRecord> PluginInnerData::noteList() const
{
    const QList<NoteRecord> notes = m_notes.values();
    return {notes.cbegin(), notes.cend()};
}

bool PluginInnerData::setNotesOfFile(qint64 nFileId, const QVector<NoteRecord> &notes)
{
    if (nFileId == m_nCurrentFileId)
        numberNotes(notes);
    return m_pDataSource && m_noteStore.send(m_pDataSource.data(), nFileId, notes).value_or(0) > 0;
}

void PluginInnerData::takeStoredNotes(qint64 nFileId)
{
    if (nFileId != m_nCurrentFileId || !m_pDataSource)
        return;
    // What the host made of the list is what counts: it may have left something out.
    if (const FileInfoPtr pInfo = m_pDataSource->fileInfo(nFileId, nullptr))
        numberNotes(pInfo->notes());
}
