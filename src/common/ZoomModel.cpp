#include "common/ZoomModel.h"

#include <cmath>
#include <utility>

namespace {

constexpr double WheelStep = 0.03;
constexpr int WheelOutFloor = 6;
constexpr int WheelInCeiling = 800;
constexpr int WheelInRoom = 5;

bool fitsAtActualSize(const QSizeF &view, const QSizeF &picture)
{
    return view.width() >= picture.width() && view.height() >= picture.height();
}

} // namespace

ZoomModel::ZoomModel(QVector<int> zoomSteps)
    : m_zoomSteps(std::move(zoomSteps))
{
}

int ZoomModel::roundedPercent(double fScale)
{
    return int(std::floor(fScale * 100.0 + 0.5));
}

std::optional<double> ZoomModel::zoomInTarget() const
{
    const int p = percent();
    for (int i = 0; i + 1 < m_zoomSteps.size(); ++i) {
        const int a = m_zoomSteps.at(i);
        const int b = m_zoomSteps.at(i + 1);
        if (p == a || (p > a && p < b))
            return b / 100.0;
    }
    return std::nullopt;
}

std::optional<double> ZoomModel::zoomOutTarget() const
{
    const int p = percent();
    for (int i = m_zoomSteps.size() - 1; i > 0; --i) {
        const int a = m_zoomSteps.at(i - 1);
        const int b = m_zoomSteps.at(i);
        if (p == b || (p > a && p < b))
            return a / 100.0;
    }
    return std::nullopt;
}

std::optional<double> ZoomModel::wheelTarget(bool bZoomIn) const
{
    const int p = percent();
    if (bZoomIn ? WheelInCeiling - p < WheelInRoom : p < WheelOutFloor)
        return std::nullopt;
    return m_scale + (bZoomIn ? WheelStep : -WheelStep);
}

std::optional<double> ZoomModel::fitToWindowTarget(const QSizeF &view, const QSizeF &picture)
{
    if (picture.isEmpty() || fitsAtActualSize(view, picture))
        return std::nullopt;
    if (view.width() / view.height() > picture.width() / picture.height())
        return qMin(picture.height(), view.height()) / picture.height();
    return qMin(picture.width(), view.width()) / picture.width();
}

std::optional<double> ZoomModel::fitToWidthTarget(const QSizeF &view, const QSizeF &picture)
{
    if (picture.isEmpty() || fitsAtActualSize(view, picture))
        return std::nullopt;
    return view.width() / picture.width();
}
