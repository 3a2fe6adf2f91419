#pragma once

#include <QSizeF>
#include <QVector>

#include <optional>

/**
 * The zoom rules of picture and page views, as values: which step comes next, how far the wheel may go, what fits.
 * Knows no widget and no timer. Scales are factors, 1.0 being 100 %; steps are percent.
 */
class ZoomModel {
public:
    explicit ZoomModel(QVector<int> zoomSteps);

    double scale() const { return m_scale; }
    void setScale(double fScale) { m_scale = fScale; }

    /** The present scale in whole percent, halves upward. */
    int percent() const { return roundedPercent(m_scale); }
    static int roundedPercent(double fScale);

    /** The scale that one step in or out leads to; nothing beyond the ends of the list. */
    std::optional<double> zoomInTarget() const;
    std::optional<double> zoomOutTarget() const;

    /** The scale after one notch of the wheel; nothing where the wheel may go no further. */
    std::optional<double> wheelTarget(bool bZoomIn) const;

    /** The scale at which the whole picture is seen; nothing when it fits at actual size. */
    static std::optional<double> fitToWindowTarget(const QSizeF &view, const QSizeF &picture);

    /** The scale at which the picture is as wide as the view; nothing when it fits at actual size. */
    static std::optional<double> fitToWidthTarget(const QSizeF &view, const QSizeF &picture);

private:
    QVector<int> m_zoomSteps;
    double m_scale = 1.0;
};
