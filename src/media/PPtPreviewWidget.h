#pragma once

#include "image/PreviewRoom.h"

/** The hub's page for presentation files. */
class PPtPreviewWidget : public PreviewRoom {
    Q_OBJECT

public:
    explicit PPtPreviewWidget(QWidget *pParent);

    /** Where the document stands; without pages it stands at both ends. */
    bool isFirstPage() const { return m_nPageIndex <= 0; }
    bool isLastPage() const { return m_nPageIndex >= m_nPageCount - 1; }

private:
    int m_nPageCount = 0;
    int m_nPageIndex = 0;
};
