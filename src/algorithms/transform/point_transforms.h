#pragma once

#include <functional>
#include <optional>

#include "PatchList.h"

namespace velmora {

/// Where a transformation takes a point; none when it cannot be carried out, which ends the work.
using PointMap = std::function<std::optional<zVec<double>>(const zVec<double>&)>;

/// A plane on which one coordinate is constant.
struct CoordinatePlane {
    double zVec<double>::*axis = &zVec<double>::x;
    double value = 0.0;
};

/// `point` moved away from `centre` to `scale` times its distance, on each axis alike.
zVec<double> scaledPoint(const zVec<double>& point, const zVec<double>& centre, double scale);

/// The mirror image of `point`.
zVec<double> reflectedPoint(const zVec<double>& point, const CoordinatePlane& plane);

/// The foot of the perpendicular from `point` on the line from `a` to `b`, and the distance to it. The result is 0,
/// and nothing is written, when `a` and `b` are closer than 1e-6; 2 when `a` or `b` is the foot to within a ten
/// thousandth of the angle; 1 when the foot lies beyond `b`; else -1. Beyond the ends the foot is computed by way of
/// single precision, so that it is less exact there. For a point in `a` or `b` itself `foot` and `distance` stay as
/// they were and the result is -1.
int axisFoot(const zVec<double>& a, const zVec<double>& b, const zVec<double>& point, zVec<double>& foot,
             double& distance);

/// A turn by `degrees` about the line from `from` to `to`.
struct RotationAxis {
    zVec<double> from;
    zVec<double> to{1.0, 0.0, 0.0};
    double degrees = 0.0;
};

/// `point` after the turn; none when the ends of the axis are closer than 1e-6. When the foot of the point falls on
/// the end of the axis, that end moves away to one and a half times the length, and stays there for later calls. A
/// point closer than 1e-4 to the axis stays where it is, as does one whose foot is not a number.
std::optional<zVec<double>> rotatePoint(const zVec<double>& point, RotationAxis& axis);

/// Maps all points. False when the map ended the work; the list then stays as it was.
bool transformPoints(PointList& points, const PointMap& map);
bool transformPatch(Patch& patch, const PointMap& map);

} // namespace velmora
