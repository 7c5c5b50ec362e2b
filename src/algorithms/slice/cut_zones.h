#pragma once

#include <optional>

#include "progress.h"
#include "section_edits.h"
#include "zRegion.h"
#include "zVec.h"

namespace velmora {

/// The plane of a cut through triangles: across an axis, or through a point with a normal.
struct KnifePlane {
    int axis = 0; ///< 0 x, 1 y, 2 z; 3 any plane
    double section = 0.0;
    zVec<double> point;
    zVec<double> normal; ///< of length 1; one without length has no sides
};

/// The vector at length 1; zeros for one whose length is 0 or not finite.
zVec<double> unitVector(const zVec<double>& vector);

/// The mean of three points and the unit normal of their plane; a normal of zeros when they stand on a line.
KnifePlane planeThrough(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c);

/// On which side of the plane a point lies: -1 before it, 1 after it, 0 within `nearZero` of it or without a number.
int sideOf(const KnifePlane& plane, const zVec<double>& point);

/// Where the segment from `p1` to `p2` meets the plane through `point` with the unit `normal`; none when it does not.
/// Points that `samePoint` takes for one count as one; of a segment in the plane it is the middle.
std::optional<zVec<double>> segmentPlane(const zVec<double>& p1, const zVec<double>& p2, const zVec<double>& point,
                                         const zVec<double>& normal);

/// Splits the triangles that the plane crosses, so that it runs along edges; every triangle is looked at once, its
/// pieces are not. No edge is cut at an end that lies on the plane.
///
/// A triangle with two edges cut keeps the piece at its lone corner. Two new nodes come behind the zone's, at the edge
/// that leaves that corner and at the one that comes back to it, and two triangles behind the zone's: first node,
/// second and third corner; first node, third corner, second node. A triangle with one edge cut keeps the piece at that
/// edge's start, and the other one comes behind: the node, the edge's end, the opposite corner. The pieces run round as
/// the triangle did. No node is shared; fields other than x, y, z are 0 there. The title of a zone that was split
/// becomes "z".
///
/// Zones without coordinates stay as they are, as do those that would outgrow 32 bits. Takes the time of copying the
/// zones that are split.
void splitZones(zRegion_fe& region, const KnifePlane& plane, const ReportProgress& progress = {});

/// Whether a triangle has a corner on that side of the plane: the part there is not empty.
bool standsOn(const zRegion_fe& region, const KnifePlane& plane, Side side);

/// Keeps, in order, the triangles with at least one corner on that side of the plane, and all nodes. Zones without
/// coordinates stay as they are.
void keepSide(zRegion_fe& region, const KnifePlane& plane, Side kept);

} // namespace velmora
