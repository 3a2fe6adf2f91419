#pragma once

#include "library/FileRecord.h"
#include "metadata/FileMetadata.h"

#include <QScrollArea>
#include <QThreadPool>
#include <QTimer>

#include <functional>

class ElidedLabel;
class LabelEditor;
class Library;
class MetadataTable;
class NameEdit;
class NotesList;
class PanelPicture;
class QLabel;
class QPushButton;
class QVBoxLayout;
class ThumbnailSource;

/**
 * The right column: what is known of the current file, its labels and its notes. Reads the file on a thread of its own,
 * and only when the user stays on it.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class InfoPanel : public QScrollArea {
    Q_OBJECT

public:
    InfoPanel(Library *pLibrary, ThumbnailSource *pThumbnails, QWidget *pParent);
    ~InfoPanel() override;

    /** Shows this file; 0: none. The same file again brings the panel up to date. */
    void showFile(qint64 nFileId);
    qint64 fileId() const { return m_nFileId; }

    /** With more than one selected file labels go to all of them. */
    void setSelection(const QVector<qint64> &fileIds) { m_selection = fileIds; }

    /** Reads what a file says of itself; called on a thread. Empty: nothing is read, and nobody reads any more. */
    using MetadataReader = std::function<FileMetadata(const QString &path)>;
    void setMetadataReader(const MetadataReader &reader);

    /** Puts the cursor into the name. */
    void editName();

    /** Places for more: under the preview picture, and under the number of notes. */
    QVBoxLayout *pictureExtras() const { return m_pPictureExtras; }
    QVBoxLayout *noteExtras() const { return m_pNoteExtras; }

Q_SIGNALS:
    /** The user is done here; the keys belong to the files again. */
    void signalLeft();
    /** The file is about to get another name: whoever plays it lets go. */
    void signalRenaming(qint64 nFileId);
    /** The user wants the file's own picture back in place of the chosen one. */
    void signalRemoveCover(qint64 nFileId);
    /** The user wants to see this note on its picture. */
    void signalNoteActivated(qint64 nFileId, int nPosition);

protected:
    bool event(QEvent *pEvent) override;

private:
    void buildLayout();
    void connectLibrary();
    void connectEdits();
    QWidget *buildMissing();
    QPushButton *buildRemoveCover();
    void forgetMissing();
    QLabel *addHeading(const QString &text);
    void applyTheme();
    void showRecord();
    void read();
    void takeMetadata(int nGeneration, const FileMetadata &metadata);
    QVector<qint64> labelTargets() const;

    Library *m_pLibrary;
    QWidget *m_pContent;
    QVBoxLayout *m_pLayout;
    PanelPicture *m_pPicture;
    QVBoxLayout *m_pPictureExtras;
    QPushButton *m_pRemoveCover;
    NameEdit *m_pName;
    QLabel *m_pNameFault;
    QWidget *m_pMissing;
    MetadataTable *m_pMetadata;
    LabelEditor *m_pLabels;
    QLabel *m_pNotes;
    NotesList *m_pNotesList;
    QVBoxLayout *m_pNoteExtras;
    QLabel *m_pNothing;
    QVector<QWidget *> m_parts; ///< Shown while there is a file.
    QThreadPool m_pool;
    QTimer m_readTimer;
    qint64 m_nFileId = 0;
    qint64 m_nRenameId = 0;
    qint64 m_nReadId = 0; ///< The file that m_read tells of.
    qint64 m_nReadModified = 0;
    FileMetadata m_read;
    MetadataReader m_metadataReader;
    QVector<qint64> m_selection;
    int m_nGeneration = 0;
};
