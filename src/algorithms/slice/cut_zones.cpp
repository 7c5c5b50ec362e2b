#include "cut_zones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "corner_box.h"
#include "same_point.h"
#include "segment_tests.h"
#include "slice_points.h"
#include "vectors.h"

namespace velmora {

namespace {

bool between(double value, double a, double b) {
    return (a <= value && value <= b) || (b <= value && value <= a);
}

/// The cut of an edge from the one side of the plane to the other.
std::optional<zVec<double>> edgeCut(const KnifePlane& plane, const zVec<double>& from, const zVec<double>& to) {
    if (sideOf(plane, from) * sideOf(plane, to) >= 0) {
        return std::nullopt;
    }
    if (plane.axis > 2) {
        return segmentPlane(from, to, plane.point, plane.normal);
    }
    const double start = along(from, plane.axis);
    const double t = (plane.section - start) / (along(to, plane.axis) - start);
    zVec<double> cut = from + (to - from) * t;
    along(cut, plane.axis) = plane.section;
    return cut;
}

/// How the plane cuts one triangle.
struct TriangleSplit {
    int lone = -1; ///< the corner that stands alone; with one cut the start of the edge that is cut; -1 for no cut
    int cuts = 0;
    zVec<double> first; ///< on the edge that leaves the lone corner
    zVec<double> second;
};

TriangleSplit splitOf(const KnifePlane& plane, const std::array<zVec<double>, 3>& corners) {
    std::array<std::optional<zVec<double>>, 3> cut;
    TriangleSplit split;
    for (std::size_t edge = 0; edge < 3; ++edge) {
        cut[edge] = edgeCut(plane, corners[edge], corners[(edge + 1) % 3]);
        split.cuts += cut[edge] ? 1 : 0;
    }
    for (std::size_t edge = 0; edge < 3; ++edge) {
        const std::size_t before = (edge + 2) % 3; // the edge that comes back to this one's start
        if (cut[edge] && (split.cuts == 1 || cut[before])) {
            split.lone = static_cast<int>(edge);
            split.first = *cut[edge];
            split.second = cut[before].value_or(zVec<double>());
            break;
        }
    }
    return split;
}

/// A zone's triangles with their corners.
class ZoneTriangles {
public:
    explicit ZoneTriangles(const zBlock_fe& zone) : zone_(zone), axes_(zoneAxes(zone)) {}

    explicit operator bool() const { return axes_[0] != nullptr; }

    std::array<zVec<double>, 3> corners(std::int32_t element) const {
        std::array<zVec<double>, 3> at;
        const std::int32_t* nodes = &zone_.connectivity[std::size_t{4} * static_cast<std::size_t>(element)];
        for (zVec<double>& corner : at) {
            const std::int32_t node = *nodes++;
            corner = {axes_[0][node], axes_[1][node], axes_[2][node]};
        }
        return at;
    }

private:
    const zBlock_fe& zone_;
    std::array<const double*, 3> axes_;
};

struct ElementSplit {
    std::int32_t element;
    TriangleSplit split;
};

/// The splits of a zone in the order of its triangles.
std::vector<ElementSplit> splitsOf(const zBlock_fe& zone, const KnifePlane& plane, const ReportProgress& progress) {
    constexpr std::int32_t reports = 50;
    std::vector<ElementSplit> splits;
    const ZoneTriangles triangles(zone);
    const std::int32_t stride = zone.elementCount / reports + 1;
    for (std::int32_t element = 0; triangles && element < zone.elementCount; ++element) {
        const TriangleSplit split = splitOf(plane, triangles.corners(element));
        if (split.lone >= 0) {
            splits.push_back({element, split});
        }
        if (progress && element % stride == 0) {
            progress(static_cast<double>(element) / zone.elementCount);
        }
    }
    return splits;
}

/// Adds nodes and triangles to a zone of which the room was counted.
class ZoneGrowth {
public:
    ZoneGrowth(zBlock_fe& zone, std::int32_t newNodes, std::int32_t newElements)
        : zone_(zone), nextNode_(zone.nodeCount),
          nextEntry_(std::size_t{4} * static_cast<std::size_t>(zone.elementCount)) {
        zone.nodeCount += newNodes;
        zone.elementCount += newElements;
        zone.connectivitySize = 4 * zone.elementCount;
        zone.connectivity.resize(static_cast<std::size_t>(zone.connectivitySize), -1);
        for (auto& variable : zone.variables) {
            variable =
                std::make_unique<zArray<double>>(zone.nodeCount, 1, 1, variable->name, std::move(variable->data));
        }
        axes_ = {zone.findVariable("x"), zone.findVariable("y"), zone.findVariable("z")};
    }

    void split(const ElementSplit& found) {
        std::int32_t* const corners = &zone_.connectivity[std::size_t{4} * static_cast<std::size_t>(found.element)];
        const auto lone = static_cast<std::size_t>(found.split.lone);
        std::int32_t& b = corners[(lone + 1) % 3];
        std::int32_t& c = corners[(lone + 2) % 3];
        const std::int32_t oldB = b;
        const std::int32_t oldC = c;
        b = addNode(found.split.first);
        if (found.split.cuts == 1) {
            addTriangle(b, oldB, oldC);
            return;
        }
        c = addNode(found.split.second);
        addTriangle(b, oldB, oldC);
        addTriangle(b, oldC, c);
    }

private:
    std::int32_t addNode(const zVec<double>& at) {
        const auto node = static_cast<std::size_t>(nextNode_);
        axes_[0]->data[node] = at.x;
        axes_[1]->data[node] = at.y;
        axes_[2]->data[node] = at.z;
        return nextNode_++;
    }

    void addTriangle(std::int32_t a, std::int32_t b, std::int32_t c) {
        for (const std::int32_t node : {a, b, c, -1}) {
            zone_.connectivity[nextEntry_++] = node;
        }
    }

    zBlock_fe& zone_;
    std::int32_t nextNode_;
    std::size_t nextEntry_;
    std::array<zArray<double>*, 3> axes_{};
};

void splitZone(zBlock_fe& zone, const KnifePlane& plane, const ReportProgress& progress) {
    const std::vector<ElementSplit> splits = splitsOf(zone, plane, progress);
    std::int64_t added = 0;
    for (const ElementSplit& split : splits) {
        added += split.split.cuts == 1 ? 1 : 2; // as many nodes as triangles
    }
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    if (splits.empty() || zone.nodeCount + added > most || 4 * (zone.elementCount + added) > most) {
        return;
    }
    ZoneGrowth growth(zone, static_cast<std::int32_t>(added), static_cast<std::int32_t>(added));
    for (const ElementSplit& split : splits) {
        growth.split(split);
    }
}

} // namespace

KnifePlane planeThrough(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c) {
    KnifePlane plane;
    plane.axis = 3;
    plane.point = {(a.x + b.x + c.x) / 3.0, (a.y + b.y + c.y) / 3.0, (a.z + b.z + c.z) / 3.0};
    plane.normal = {(c.z - a.z) * (b.y - a.y) - (b.z - a.z) * (c.y - a.y),
                    (b.z - a.z) * (c.x - a.x) - (c.z - a.z) * (b.x - a.x),
                    (c.y - a.y) * (b.x - a.x) - (b.y - a.y) * (c.x - a.x)};
    plane.normal = unitVector(plane.normal);
    return plane;
}

zVec<double> unitVector(const zVec<double>& vector) {
    const double largest = std::max({std::abs(vector.x), std::abs(vector.y), std::abs(vector.z)});
    if (!(largest > 0.0) || !std::isfinite(largest)) {
        return {};
    }
    // Squares of very small and very large numbers are no numbers.
    const bool squaresHold = largest > 1e-100 && largest < 1e100;
    const zVec<double> v = squaresHold ? vector : vector / largest;
    const double length = lengthOf(v);
    return std::isfinite(length) ? v / length : zVec<double>();
}

int sideOf(const KnifePlane& plane, const zVec<double>& point) {
    const double over =
        plane.axis > 2 ? dot(point - plane.point, plane.normal) : along(point, plane.axis) - plane.section;
    return over > nearZero ? 1 : over < -nearZero ? -1 : 0;
}

std::optional<zVec<double>> segmentPlane(const zVec<double>& p1, const zVec<double>& p2, const zVec<double>& point,
                                         const zVec<double>& normal) {
    constexpr double parallelTolerance = 1e-14;
    if (samePoint(p1, p2)) {
        return samePoint(p1, point) ? std::optional(p1) : std::nullopt;
    }
    if (samePoint(point, p1)) {
        return p1;
    }
    if (samePoint(point, p2)) {
        return p2;
    }
    const zVec<double> d = p2 - p1;
    const double s = dot(d, normal);
    if (s == 0.0) {
        const zVec<double> across = cross(d, p1 - point);
        return std::fabs(std::fabs(dot(normal, across)) - lengthOf(across)) < parallelTolerance
                   ? std::optional((p1 + p2) * 0.5)
                   : std::nullopt;
    }
    const zVec<double> cut = p1 + d * (dot(point - p1, normal) / s);
    const bool inside = between(cut.x, p1.x, p2.x) && between(cut.y, p1.y, p2.y) && between(cut.z, p1.z, p2.z);
    return inside ? std::optional(cut) : std::nullopt;
}

void splitZones(zRegion_fe& region, const KnifePlane& plane, const ReportProgress& progress) {
    const auto zones = static_cast<double>(region.blocks.size());
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const auto offset = static_cast<double>(k);
        splitZone(*region.blocks[k], plane,
                  progress ? ReportProgress([&](double part) { progress((offset + part) / zones); }) : progress);
    }
}

namespace {

/// A corner of the triangle stands on that side of the plane.
bool standsOn(const ZoneTriangles& triangles, std::int32_t element, const KnifePlane& plane, Side side) {
    const int wanted = side == Side::Before ? -1 : 1;
    const auto corners = triangles.corners(element);
    return std::any_of(corners.begin(), corners.end(),
                       [&](const zVec<double>& corner) { return sideOf(plane, corner) == wanted; });
}

} // namespace

bool standsOn(const zRegion_fe& region, const KnifePlane& plane, Side side) {
    return std::any_of(region.blocks.begin(), region.blocks.end(), [&](const auto& zone) {
        const ZoneTriangles triangles(*zone);
        std::int32_t element = 0;
        while (triangles && element < zone->elementCount && !standsOn(triangles, element, plane, side)) {
            ++element;
        }
        return triangles && element < zone->elementCount;
    });
}

void keepSide(zRegion_fe& region, const KnifePlane& plane, Side kept) {
    for (const auto& zone : region.blocks) {
        const ZoneTriangles triangles(*zone);
        if (!triangles) {
            continue;
        }
        std::int32_t count = 0;
        for (std::int32_t element = 0; element < zone->elementCount; ++element) {
            if (standsOn(triangles, element, plane, kept)) {
                std::copy_n(zone->connectivity.begin() + 4 * std::ptrdiff_t{element}, 4,
                            zone->connectivity.begin() + 4 * std::ptrdiff_t{count});
                ++count;
            }
        }
        zone->elementCount = count;
    }
}

} // namespace velmora
