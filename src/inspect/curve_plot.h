#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "curve_values.h"

namespace velmora {

/// What a plot shows of a curve, over the length along it.
enum class PlotQuantity { Step, Growth, Curvature, X, Y, Z };

inline constexpr PlotQuantity plotQuantities[] = {PlotQuantity::Step, PlotQuantity::Growth, PlotQuantity::Curvature,
                                                  PlotQuantity::X,    PlotQuantity::Y,      PlotQuantity::Z};

/// "Step", "Growth", "Curvature", "X", "Y", "Z".
const char* nameOf(PlotQuantity quantity);

/// A place of a plot: how far along the curve, and the value there.
struct PlotPoint {
    double along = 0.0;
    double value = 0.0;
    std::int32_t point = 0; ///< of the curve, from 0; of a step its first one
};

/// A curve of a plot: pieces of points in order. Where a point has no value a piece ends.
struct PlotCurve {
    std::vector<std::vector<PlotPoint>> pieces;
};

/// Of the captured curve, and of those beside it to compare with. All are finite.
struct CurvePlot {
    PlotQuantity quantity = PlotQuantity::Step;
    PlotCurve curve;
    std::vector<PlotCurve> neighbours;
    double alongEnd = 0.0; ///< the length of the longest curve
    double lowest = 0.0;   ///< of what is shown: a little less than the lowest of all values
    double highest = 0.0;  ///< a little more than the highest
    bool hasCurve = false; ///< there is one, be it without a value
};

/// A step stands at the middle between its points. Of values that are not finite there is none.
CurvePlot curvePlot(PlotQuantity quantity, const PointList& curve, const std::vector<PointList>& neighbours);

/// Round numbers from `lowest` to `highest`, `most` of them at most, for the marks of an axis: 1, 2 or 5 times a power
/// of ten apart. None when the range is empty or not finite.
std::vector<double> axisMarks(double lowest, double highest, std::int32_t most);

/// Where the window of a plot shows a place: its corner, from the upper left, and its size.
struct PlotFrame {
    double left = 0.0;
    double top = 0.0;
    double width = 1.0;
    double height = 1.0;
};

/// The place of a value in the frame, x to the right and y downward.
struct FramePlace {
    double x = 0.0;
    double y = 0.0;
};
FramePlace placeIn(const PlotFrame& frame, const CurvePlot& plot, double along, double value);

/// The point of the curve whose mark is nearest to a place of the frame, within `reach` of it.
std::optional<PlotPoint> nearestIn(const PlotFrame& frame, const CurvePlot& plot, FramePlace place, double reach);

/// The numbers of a curve as a table for other programs: a line of names, then a line for each point. A value that is
/// not there is left empty.
std::string curveTable(const CurveValues& values);

} // namespace velmora
