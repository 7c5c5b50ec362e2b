#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "point_transforms.h"
#include "zRegion.h"

namespace velmora {

/// Reads the coordinates of a node: each field of the zone whose name is x, y or z, in either case, gives its
/// coordinate; one that the zone does not have stays untouched. -1, and nothing is read, when there is no such zone
/// or node or the zone has fewer than 3 fields; else 0.
int zoneNodeCoords(const zRegion_fe& region, std::int32_t zone, std::int32_t node, double& x, double& y, double& z);
/// The same with writing.
int setZoneNodeCoords(zRegion_fe& region, std::int32_t zone, std::int32_t node, double x, double y, double z);

/// Puts an unfilled likeness of a zone behind the last: the same counts and connectivity, its title followed by
/// "_simm", and the first three fields by name, all zeros. The new number of zones; without such a zone nothing is
/// added.
std::int32_t cloneZoneMirror(zRegion_fe& region, std::int32_t zone);

/// The zones of a zBlock that a transformation reaches. One counter serves the walk over `block` and the nodes of a
/// zone: after a zone of P nodes the walk goes on behind position P of the block, and it ends where that is no
/// progress. So of a zBlock normally the first zone alone is treated. Numbers of no zone are passed over.
std::vector<std::int32_t> zonesReached(const zRegion_fe& region, std::span<const std::int32_t> block);

/// Maps the nodes of the zones, zone by zone. False when the map ended the work; what was done before stays done.
bool transformZones(zRegion_fe& region, const std::vector<std::int32_t>& zones, const PointMap& map);

/// Exchanges the second and the third corner of each triangle: the zone shows its other side.
void turnTriangles(zBlock_fe& zone);

/// Puts the mirror image of each of the zones behind the last.
void mirrorZones(zRegion_fe& region, const std::vector<std::int32_t>& zones, const CoordinatePlane& plane);

} // namespace velmora
