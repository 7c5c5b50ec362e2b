#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "PatchList.h"

namespace velmora {

/// The points of the curve along which two bodies meet, ready to be compared with the points of grids.
class JointPoints {
public:
    explicit JointPoints(const PointList& points);

    /// Whether a point of the joint differs from `p` by less than `nearZero` in each coordinate.
    bool holds(const zVec<double>& p) const;
    /// The first point of the section that the joint holds.
    std::optional<std::int32_t> firstOn(const PointList& section) const;
    /// Fills `numbers` with the points whose x is from `low` to `high`, rising.
    void inRange(double low, double high, std::vector<std::int32_t>& numbers) const;
    const zVec<double>& operator[](std::int32_t i) const { return points_[static_cast<std::size_t>(i)]; }

private:
    PointList points_;
    std::vector<std::pair<double, std::int32_t>> byX_;
};

/// Erases the sections without a point of the joint.
void keepJointSections(Patch& patch, const JointPoints& joint);

/// Moves, in each section, the begin of the first edge that a point of the joint is on to that place. A section of
/// which an end of an edge already is such a point before stays.
void snapSections(Patch& patch, const JointPoints& joint, double tolerance);

/// Cuts each section at its first point of the joint: with `keepBefore` it keeps what stands before, else what stands
/// behind, with that point. A section without such a point stays.
void trimSections(Patch& patch, const JointPoints& joint, bool keepBefore);

/// Gives every section `count` points in equal steps along its spline. A section of one point gets `count` copies of
/// it; one without points stays.
void respaceSections(Patch& patch, std::int32_t count);

} // namespace velmora
