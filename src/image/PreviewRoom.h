#pragma once

#include "image/BasePreviewWidget.h"

#include <QPixmap>

/** A page of the hub for files that have no player or renderer of their own: shows the file's suffix. */
class PreviewRoom : public BasePreviewWidget {
    Q_OBJECT

public:
    explicit PreviewRoom(QWidget *pParent);

    void showFile(const QString &path);
    /** Forgets the file. */
    void clearPreview();

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    void makePlaceholder();

    QPixmap m_placeholder;
};
