#include "curve_plot.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora {

namespace {

MaybeValue valueAt(const CurveValues& values, PlotQuantity quantity, std::size_t i) {
    switch (quantity) {
    case PlotQuantity::Step:
        return i < values.steps.size() ? MaybeValue(values.steps[i]) : std::nullopt;
    case PlotQuantity::Growth:
        return values.growth[i];
    case PlotQuantity::Curvature:
        return values.curvature[i];
    case PlotQuantity::X:
        return values.points[i].x;
    case PlotQuantity::Y:
        return values.points[i].y;
    case PlotQuantity::Z:
        break;
    }
    return values.points[i].z;
}

double alongAt(const CurveValues& values, PlotQuantity quantity, std::size_t i) {
    return quantity == PlotQuantity::Step ? values.length[i] + 0.5 * values.steps[i] : values.length[i];
}

PlotCurve plotCurve(PlotQuantity quantity, const PointList& points) {
    const CurveValues values = curveValues(points);
    PlotCurve curve;
    bool begins = true;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const MaybeValue value = valueAt(values, quantity, i);
        if (!value || !std::isfinite(*value) || !std::isfinite(alongAt(values, quantity, i))) {
            begins = true;
            continue;
        }
        if (begins) {
            curve.pieces.emplace_back();
            begins = false;
        }
        curve.pieces.back().push_back({alongAt(values, quantity, i), *value, static_cast<std::int32_t>(i)});
    }
    return curve;
}

/// Widens the ranges of the plot by a curve's places.
class Ranges {
public:
    void add(const PlotCurve& curve) {
        for (const auto& piece : curve.pieces) {
            for (const PlotPoint& point : piece) {
                along_ = std::max(along_, point.along);
                lowest_ = std::min(lowest_, point.value);
                highest_ = std::max(highest_, point.value);
            }
        }
    }

    void putInto(CurvePlot& plot) const {
        plot.alongEnd = along_;
        if (lowest_ > highest_) {
            return;
        }
        // What is the same everywhere stands in the middle of the plot, and what is at an end of the range beside the
        // frame, not on it.
        constexpr double margin = 1e-6;
        constexpr double beside = 0.04;
        constexpr double most = std::numeric_limits<double>::max();
        const double room =
            lowest_ < highest_ ? beside * highest_ - beside * lowest_ : std::max(std::abs(lowest_), 1.0) * margin;
        plot.lowest = std::max(lowest_ - room, -most);
        plot.highest = std::min(highest_ + room, most);
    }

private:
    double along_ = 0.0;
    double lowest_ = std::numeric_limits<double>::infinity();
    double highest_ = -std::numeric_limits<double>::infinity();
};

std::string numberOf(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::string numberOf(const MaybeValue& value) {
    return value ? numberOf(*value) : std::string();
}

} // namespace

const char* nameOf(PlotQuantity quantity) {
    switch (quantity) {
    case PlotQuantity::Step:
        return "Step";
    case PlotQuantity::Growth:
        return "Growth";
    case PlotQuantity::Curvature:
        return "Curvature";
    case PlotQuantity::X:
        return "X";
    case PlotQuantity::Y:
        return "Y";
    case PlotQuantity::Z:
        break;
    }
    return "Z";
}

CurvePlot curvePlot(PlotQuantity quantity, const PointList& curve, const std::vector<PointList>& neighbours) {
    CurvePlot plot;
    plot.quantity = quantity;
    plot.hasCurve = !curve.empty();
    plot.curve = plotCurve(quantity, curve);
    Ranges ranges;
    ranges.add(plot.curve);
    for (const PointList& neighbour : neighbours) {
        plot.neighbours.push_back(plotCurve(quantity, neighbour));
        ranges.add(plot.neighbours.back());
    }
    ranges.putInto(plot);
    return plot;
}

std::vector<double> axisMarks(double lowest, double highest, std::int32_t most) {
    const double range = highest - lowest;
    if (!(range > 0.0) || !std::isfinite(range) || most < 1) {
        return {};
    }
    const double power = std::pow(10.0, std::floor(std::log10(range / most)));
    double apart = power;
    for (const double times : {1.0, 2.0, 5.0, 10.0}) {
        apart = times * power;
        if (std::floor(highest / apart) - std::ceil(lowest / apart) + 1.0 <= most) {
            break;
        }
    }
    std::vector<double> marks;
    const double first = std::ceil(lowest / apart);
    const auto count = static_cast<int>(std::clamp(std::floor(highest / apart) - first + 1.0, 0.0, 1.0 * most));
    marks.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        marks.push_back((first + i) * apart + 0.0); // no -0
    }
    return marks;
}

FramePlace placeIn(const PlotFrame& frame, const CurvePlot& plot, double along, double value) {
    const double across = plot.alongEnd > 0.0 ? along / plot.alongEnd : 0.0;
    const double range = plot.highest - plot.lowest;
    const double up = range > 0.0 ? (value - plot.lowest) / range : 0.0;
    return {frame.left + across * frame.width, frame.top + (1.0 - up) * frame.height};
}

std::optional<PlotPoint> nearestIn(const PlotFrame& frame, const CurvePlot& plot, FramePlace place, double reach) {
    std::optional<PlotPoint> nearest;
    double smallest = reach;
    for (const auto& piece : plot.curve.pieces) {
        for (const PlotPoint& point : piece) {
            const FramePlace mark = placeIn(frame, plot, point.along, point.value);
            const double distance = std::hypot(mark.x - place.x, mark.y - place.y);
            if (distance < smallest || (distance == smallest && !nearest)) {
                smallest = distance;
                nearest = point;
            }
        }
    }
    return nearest;
}

std::string curveTable(const CurveValues& values) {
    std::string table = "point,x,y,z,length,step,growth,curvature\n";
    for (std::size_t i = 0; i < values.points.size(); ++i) {
        const zVec<double>& point = values.points[i];
        table += std::to_string(i + 1) + ',' + numberOf(point.x) + ',' + numberOf(point.y) + ',' + numberOf(point.z) +
                 ',' + numberOf(values.length[i]) + ',' +
                 (i < values.steps.size() ? numberOf(values.steps[i]) : std::string()) + ',' +
                 numberOf(values.growth[i]) + ',' + numberOf(values.curvature[i]) + '\n';
    }
    return table;
}

} // namespace velmora
