#pragma once

#include <QWidget>

#include <memory>

class QPointF;
class QRectF;

namespace Ui {
class TSBaseViewWidget;
}

/** Base of playing surfaces: a plain widget with a name and a size, and the operations that a surface offers. */
class TSBaseViewWidget : public QWidget {
    Q_OBJECT

public:
    explicit TSBaseViewWidget(QWidget *pParent);
    ~TSBaseViewWidget() override;

    virtual void startPlay() = 0;
    virtual void stopPlay() = 0;
    virtual void setViewRect(const QRectF &rect) = 0;
    virtual bool isPlaying() = 0;
    virtual void viewMousePress(const QPointF &point) = 0;

protected:
    void mousePressEvent(QMouseEvent *pEvent) override;

private:
    std::unique_ptr<Ui::TSBaseViewWidget> m_ui;
};
