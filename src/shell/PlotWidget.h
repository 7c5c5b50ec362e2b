#pragma once

#include <QWidget>
#include <optional>

#include "curve_plot.h"

namespace velmora {

/// Draws a plot: the curve with its points, its neighbours behind it in grey, round numbers at both axes. The point
/// under the cursor is marked.
class PlotWidget : public QWidget {
    Q_OBJECT

public:
    explicit PlotWidget(QWidget* parent = nullptr);

    void showPlot(CurvePlot plot);
    const CurvePlot& plot() const { return plot_; }
    /// Marks the point of the curve; -1 for none.
    void mark(std::int32_t point);
    PlotFrame frame() const;
    /// What stands in the place of a curve that is not there, or has nothing to show.
    QString hint() const;

    QSize sizeHint() const override { return {420, 240}; }

signals:
    /// The cursor came to a point of the curve, or left it (-1).
    void pointedAt(std::int32_t point);
    void pointChosen(std::int32_t point);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    std::optional<PlotPoint> pointAt(const QPointF& position) const;
    void drawAxes(QPainter& painter) const;
    void drawCurve(QPainter& painter, const PlotCurve& curve, const QColor& colour, bool points) const;

    CurvePlot plot_;
    std::int32_t marked_ = -1;
};

} // namespace velmora
