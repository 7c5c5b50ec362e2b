#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "PatchList.h"
#include "TriangleTree.h"
#include "progress.h"
#include "zRegion.h"

namespace velmora {

/// Picks, of the hits of one line by rising triangle number (at least one), the place where the point goes.
using HitChoice = std::function<zVec<double>(const zVec<double>& origin, const std::vector<LineHit>& hits)>;

/// The hit nearest to the origin, of equal distances the first. With none nearer than 1e8 it is the first of all. The
/// two triangles of a cell, 2 c and 2 c + 1, give at most one hit: the second counts when the first is not hit.
zVec<double> nearestCellHit(const zVec<double>& origin, const std::vector<LineHit>& hits);

/// The hit with the smallest squared distance to the origin, of equal ones the last. With none up to 1e20 it is the
/// first of all.
zVec<double> nearestElementHit(const zVec<double>& origin, const std::vector<LineHit>& hits);

/// The unit direction across a grid at point M of section N: the step to the next section (in the last one from the
/// section before) x the step to the next point (at the last one from the point before). None where a step is missing;
/// not a number where the product is zero.
std::optional<zVec<double>> gridDirection(const Patch& patch, std::int32_t N, std::int32_t M);

/// Moves every point of the patches `chosen`, each along the line through it across its patch, to a hit with the
/// target. All directions are those of the patches as they were. A point without a direction stays; one whose line
/// meets nothing stays too and is put behind `missed`; with such points `firstMiss` is called once, at the end. Numbers
/// of no patch are passed over. `choice` is called by several threads at a time. `progress` may be empty.
void projectPatches(PatchList& patches, const std::vector<std::int32_t>& chosen, const TriangleTree& target,
                    const HitChoice& choice, PointList& missed, const std::function<void()>& firstMiss,
                    const ReportProgress& progress);

/// Moves the nodes of the zones `chosen` to the other zones, each along the mean of the normals of its elements, to the
/// nearest hit that is another place than its own. A node of one element alone stays, as does one whose line meets
/// nothing. Nothing happens when all zones are chosen or none, or the first zone of the region lacks x, y or z.
void projectZones(zRegion_fe& region, const std::vector<std::int32_t>& chosen, const ReportProgress& progress);

} // namespace velmora
