#pragma once

#include <QDockWidget>
#include <vector>

#include "PatchList.h"
#include "PlotWidget.h"

class QComboBox;

namespace velmora {

/// The plot of the captured section or line, else of the line buffer.
class CurvePlotPanel : public QDockWidget {
    Q_OBJECT

public:
    explicit CurvePlotPanel(QWidget* parent = nullptr);

    void showCurve(PointList curve, std::vector<PointList> neighbours);
    const PointList& curve() const { return curve_; }
    PlotWidget& plot() { return *plot_; }

signals:
    void pointChosen(std::int32_t point);
    /// The numbers of the curve are to go to a file.
    void tableWanted();
    /// The plot is to go to a file as a picture.
    void pictureWanted();

private:
    void showPlot();

    QComboBox* quantity_;
    PlotWidget* plot_;
    PointList curve_;
    std::vector<PointList> neighbours_;
};

} // namespace velmora
