#pragma once

#include <QSplitter>

/**
 * A splitter whose edges are hairlines in the theme's colour, without a style sheet that would reach the previews
 * placed in it. GUI thread only.
 */
class PaneSplitter : public QSplitter {
    Q_OBJECT

public:
    explicit PaneSplitter(QWidget *pParent);

protected:
    QSplitterHandle *createHandle() override;
};
