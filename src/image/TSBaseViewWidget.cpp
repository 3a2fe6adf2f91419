#include "image/TSBaseViewWidget.h"

#include "ui_TSBaseViewWidget.h"

#include <QDebug>

TSBaseViewWidget::TSBaseViewWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_ui(std::make_unique<Ui::TSBaseViewWidget>())
{
    m_ui->setupUi(this);
}

TSBaseViewWidget::~TSBaseViewWidget()
{
    qDebug("TSBaseViewWidget::~destory();");
}

void TSBaseViewWidget::mousePressEvent(QMouseEvent *pEvent)
{
    QWidget::mousePressEvent(pEvent);
}
