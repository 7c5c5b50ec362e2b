#pragma once

#include <cstdint>

#include "zRegion.h"

namespace velmora {

/// Stands in all three coordinates for a corner that is not there.
inline constexpr double absentCorner = -1e10;
/// A coordinate below this one makes a corner none.
inline constexpr double leastCoordinate = -1e9;

/// Whether a corner can be used: no coordinate below `leastCoordinate`.
bool isCorner(const zVec<double>& corner);

/// For callers who have no zone in hand, which today are tests alone: corner 0, 1 or 2 of an element, all counted from
/// 0. Every coordinate is `absentCorner` when an index is out of range, the zone has fewer than 3 variables or lacks x,
/// y or z, or the element names a node that is not there.
zVec<double> getElementCorner(const zRegion_fe& region, std::int32_t zone, std::int32_t element, std::int32_t corner);

/// The same for the zone itself, whose coordinates the caller has looked up.
zVec<double> elementCorner(const zBlock_fe& zone, const ZoneCoordinates& at, std::int32_t element, std::int32_t corner);

/// With the corners A, B, C: (C - A) x (B - A), not normalised. Zero when A or C is not there.
zVec<double> elementNormal(const zRegion_fe& region, std::int32_t zone, std::int32_t element);
zVec<double> elementNormal(const zBlock_fe& zone, const ZoneCoordinates& at, std::int32_t element);

} // namespace velmora
