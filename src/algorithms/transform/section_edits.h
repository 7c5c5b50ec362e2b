#pragma once

#include <cstdint>
#include <optional>

#include "point_transforms.h"

namespace velmora {

/// A side of a point of a section.
enum class Side { Before, After };

/// One half of a section: with After as what goes away its first half, with Before its second one. Of an odd number
/// of points both halves hold the middle one.
PointList withoutHalf(const PointList& section, Side removed);

/// The section without what stands on a side of point `point`, which stays. With a point outside the section it
/// stays whole.
PointList withoutSide(const PointList& section, std::int32_t point, Side removed);

/// The same with `part` in the place of what went away.
PointList withSideReplaced(const PointList& section, std::int32_t point, Side replaced, const PointList& part);

/// The section, and behind it its reflection from the last point back to the first.
PointList withMirrorImage(const PointList& section, const CoordinatePlane& plane);

/// Whether the ends of a section coincide: less than `nearZero` apart in each coordinate. False without points.
bool isClosed(const PointList& section);

/// A closed section renumbered so that point `first` begins and ends it, with rising or falling numbers. The point
/// that the closed section has twice is left out once, so that the count stays. With a point outside the section it
/// stays as it is.
PointList loopFrom(const PointList& section, std::int32_t first, bool rising);

/// Values for the coordinates of points; a coordinate without one stays.
struct PrescribedValues {
    std::optional<double> x;
    std::optional<double> y;
    std::optional<double> z;
};
void prescribe(zVec<double>& point, const PrescribedValues& values);

/// The points of `target` as a curve of `count` points should take them over: as they are, or from the last to the
/// first, whichever of the two lies closer to `curve` by the mean distance, point by point. None when the numbers of
/// points differ or that distance is above 0.1.
std::optional<PointList> matchedPoints(const PointList& curve, const PointList& target);

} // namespace velmora
