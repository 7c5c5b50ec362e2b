#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "exchange_model.h"

namespace velmora {

/// The triangles of a model as they are written: those of its zones, or of its grids by `trianglesOfPatch`, titled
/// "Patch 1" and so on. With `merge` equal points of a zone are one. What need not be made anew is the model's own.
class ExportZones {
public:
    ExportZones(const ExchangeView& model, bool merge);

    const std::vector<const zBlock_fe*>& zones() const { return zones_; }
    std::int64_t points() const;
    std::int64_t triangles() const;

private:
    std::vector<std::unique_ptr<zBlock_fe>> made_;
    std::vector<const zBlock_fe*> zones_;
};

/// A copy of a zone in which points that are equal to the bit are one; the first one's values count.
std::unique_ptr<zBlock_fe> mergedZone(const zBlock_fe& zone);

/// A point of a zone.
zVec<double> pointOf(const ZoneCoordinates& nodes, std::int32_t node);

/// Calls `take` for each triangle with its three nodes.
void forTriangles(const zBlock_fe& zone, const std::function<void(const std::int32_t* nodes)>& take);

/// The largest distance between a point of the model and the point as written with so many significant digits, or, as
/// 7 digits of a binary number, in single precision. 0 for 17 digits, which give every double back; infinite when a
/// coordinate has no room in single precision.
double largestMove(const ExchangeView& model, int digits, bool single);
/// The same of the zones of a file in text, where it is above `tolerance`; else perhaps less: coordinates that are too
/// small to move so far are not looked at one by one.
double largestMove(const zRegion& grids, const zRegion_fe& triangles, int digits, double tolerance);

} // namespace velmora
