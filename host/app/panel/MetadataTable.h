#pragma once

#include "library/FileRecord.h"
#include "metadata/FileMetadata.h"

#include <QWidget>

class QGridLayout;

/**
 * What is known of a file, one line for each thing that is known.
 *
 * Owner: InfoPanel. Thread: GUI thread only.
 */
class MetadataTable : public QWidget {
    Q_OBJECT

public:
    explicit MetadataTable(QWidget *pParent);

    void showFile(const FileRecord &record, const FileMetadata &metadata);
    void clear();

private:
    void addLine(const QString &name, const QString &value);

    QGridLayout *m_pLayout;
};

/** A duration as "1:02:03" or "2:03". */
QString durationText(qint64 nMsec);
