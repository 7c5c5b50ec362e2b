#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// A place to measure from. Numbers count from 0.
struct MeasuredPlace {
    zVec<double> point;
    /// Patch, section and point of a point of the grid.
    std::optional<std::array<std::int32_t, 3>> address;
};

/// The point of the grid; none when it is not there.
std::optional<MeasuredPlace> gridPlace(const PatchList& patches, std::int32_t K, std::int32_t N, std::int32_t M);
/// The node of a zone; none when it is not there.
std::optional<MeasuredPlace> nodePlace(const zRegion_fe& region, std::int32_t zone, std::int32_t node);

struct Measurement {
    double distance = 0.0;
    zVec<double> delta;          ///< from the first place to the second
    std::optional<double> along; ///< along the section, else the line, that both lie on
    std::optional<double> angle; ///< at the second place, in degrees; none when another one is the same point
};

/// From `a` to `b`; with `c` the angle between the directions from `b` to `a` and to `c`.
Measurement measure(const PatchList& patches, const MeasuredPlace& a, const MeasuredPlace& b,
                    const std::optional<MeasuredPlace>& c);

/// A length as a person reads it: none where it is below what rounding leaves of numbers as large as `radius`.
std::string lengthText(double length, double radius);
/// All the numbers, of a model of that radius.
std::string measuredText(const Measurement& measurement, double radius);

} // namespace velmora
