#include "app/PaneSplitter.h"

#include "theme/TSSkinSetting.h"

#include <QPainter>

namespace {

class HairlineHandle final : public QSplitterHandle {
public:
    explicit HairlineHandle(QSplitter *pParent)
        : QSplitterHandle(Qt::Horizontal, pParent)
    {
        setAttribute(Qt::WA_Hover);
    }

protected:
    void paintEvent(QPaintEvent * /*pEvent*/) override
    {
        const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
        QPainter(this).fillRect(rect(), underMouse() ? pTheme->GetMainColor() : pTheme->GetCommonColor(2));
    }
};

} // namespace

PaneSplitter::PaneSplitter(QWidget *pParent)
    : QSplitter(Qt::Horizontal, pParent)
{
    setHandleWidth(1);
    setChildrenCollapsible(false);
}

QSplitterHandle *PaneSplitter::createHandle()
{
    return new HairlineHandle(this);
}
