#pragma once

#include "image/BasePreviewWidget.h"

#include <QPixmap>

/** A page of the hub that shows the suffix of a file for which there is no player or renderer. */
class PreviewRoom : public BasePreviewWidget {
    Q_OBJECT

public:
    explicit PreviewRoom(QWidget *pParent);

    void showFile(const QString &path);
    /** Forgets the file. */
    void clearPreview();

Q_SIGNALS:
    /** The file has a new preview picture. */
    void signal_previewPictureChanged();

protected:
    /** False while the page shows the file itself. */
    void setPlaceholderShown(bool bShown);
    void paintEvent(QPaintEvent *pEvent) override;

private:
    void makePlaceholder();

    QPixmap m_placeholder;
    bool m_bPlaceholderShown = true;
};
