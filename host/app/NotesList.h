#pragma once

#include "library/FileRecord.h"

#include <QListWidget>

class Library;

/**
 * The notes of one file, for the information panel: number, colour and beginning of each text. As high as its notes, up
 * to a limit; hidden where there are none. Follows the library: notes that a preview stores appear at once.
 *
 * Owner: the panel. Thread: GUI thread only.
 */
class NotesList : public QListWidget {
    Q_OBJECT

public:
    explicit NotesList(Library *pLibrary, QWidget *pParent = nullptr);

    /** Lists the notes of this file; 0 for none. */
    void setFile(qint64 nFileId);
    qint64 fileId() const { return m_nFileId; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /** The user wants to see this note on its picture. */
    void signalNoteActivated(qint64 nFileId, int nPosition);

private:
    void takeRecords(const FileRecordList &records);
    void refresh();
    void applyTheme();

    Library *m_pLibrary;
    qint64 m_nFileId = 0;
    QVector<NoteRecord> m_notes;
};
