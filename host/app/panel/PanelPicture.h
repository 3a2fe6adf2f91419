#pragma once

#include "library/FileRecord.h"

#include <QWidget>

class ThumbnailSource;

/**
 * The preview picture of a file, as large as the panel is wide.
 *
 * Owner: InfoPanel. Thread: GUI thread only.
 */
class PanelPicture : public QWidget {
    Q_OBJECT

public:
    PanelPicture(ThumbnailSource *pThumbnails, QWidget *pParent);

    /** Null: nothing. */
    void setFile(const FileRecordPtr &pRecord);

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    ThumbnailSource *m_pThumbnails;
    FileRecordPtr m_pRecord;
};
