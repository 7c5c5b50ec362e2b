#include "ZoneIndex.h"

#include <algorithm>
#include <array>
#include <utility>

#include "vectors.h"

namespace velmora {

namespace {

using Vec = zVec<double>;

constexpr std::size_t elementsInRun = 64;

Vec nodeAt(const ZoneCoordinates& at, std::int32_t node) {
    const auto index = static_cast<std::size_t>(node);
    return {at.x->data[index], at.y->data[index], at.z->data[index]};
}

std::size_t elementCountOf(const zBlock_fe& zone) {
    return zone.connectivity.size() / 4;
}

std::array<Vec, 3> cornersOf(const zBlock_fe& zone, const ZoneCoordinates& at, std::size_t element) {
    const std::int32_t* nodes = &zone.connectivity[4 * element];
    return {nodeAt(at, nodes[0]), nodeAt(at, nodes[1]), nodeAt(at, nodes[2])};
}

} // namespace

std::optional<NearestPoint> nearestNode(const zRegion_fe& region, const PixelLine& line, const PickFilter& filter) {
    const LineDistance distanceTo(line);
    NearestSearch search(distanceTo);
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const zBlock_fe& zone = *region.blocks[k];
        const ZoneCoordinates at = coordinatesOf(zone.variables);
        if (!at) {
            return std::nullopt;
        }
        if (!filter.patches.empty() && !filter.patches[k]) {
            continue;
        }
        for (std::int32_t node = 0; node < zone.nodeCount; ++node) {
            search.look(static_cast<std::int32_t>(k), -1, node, nodeAt(at, node));
        }
    }
    return search.result();
}

void NodeIndex::takeIn(const zRegion_fe& region) {
    complete_ = true;
    nodes_.clear();
    for (const auto& zone : region.blocks) {
        PointList nodes;
        if (const ZoneCoordinates at = coordinatesOf(zone->variables)) {
            nodes.reserve(static_cast<std::size_t>(zone->nodeCount));
            for (std::int32_t node = 0; node < zone->nodeCount; ++node) {
                nodes.push_back(nodeAt(at, node));
            }
        } else {
            complete_ = false;
        }
        nodes_.push_back({std::move(nodes)});
    }
    index_.takeIn(nodes_);
}

std::optional<NearestPoint> NodeIndex::nearest(const PixelLine& line, const PickFilter& filter) const {
    PickFilter zones;
    zones.patches = filter.patches;
    auto nearest = complete_ ? index_.nearest(nodes_, line, zones) : std::nullopt;
    if (nearest) {
        nearest->section = -1;
    }
    return nearest;
}

void ZoneIndex::takeIn(const zRegion_fe& region) {
    zones_.clear();
    for (const auto& zone : region.blocks) {
        zones_.push_back(entryOf(*zone));
    }
}

ZoneIndex::ZoneEntry ZoneIndex::entryOf(const zBlock_fe& zone) {
    ZoneEntry entry;
    entry.at = coordinatesOf(zone.variables);
    const std::size_t elements = entry.at ? elementCountOf(zone) : 0;
    PickExtent whole;
    for (std::size_t first = 0; first < elements; first += elementsInRun) {
        Run run{first, std::min(first + elementsInRun, elements), {}};
        PickExtent extent;
        for (std::size_t element = run.firstElement; element < run.lastElement; ++element) {
            const auto corners = cornersOf(zone, entry.at, element);
            for (const Vec& corner : corners) {
                extent.add(corner);
            }
            if (isOddTriangle({&corners[0], &corners[1], &corners[2]})) {
                entry.oddElements.push_back(element);
            }
        }
        run.box = extent.triangleBox();
        whole.add(run.box);
        entry.runs.push_back(run);
    }
    entry.box = whole.boxOfBoxes();
    return entry;
}

template <class Visit>
bool ZoneIndex::anyHit(const zRegion_fe& region, std::size_t zone, const Vec& origin, const Vec& direction,
                       Visit visit) const {
    const zBlock_fe& block = *region.blocks[zone];
    const ZoneEntry& entry = zones_[zone];
    const auto visitElement = [&](std::size_t element) {
        const auto v = cornersOf(block, entry.at, element);
        const TriangleHit hit = sightHitsTriangle({&v[0], &v[1], &v[2]}, direction, origin);
        return hit.code != 0 && visit(hit.point, element);
    };
    if (std::any_of(entry.oddElements.begin(), entry.oddElements.end(), visitElement)) {
        return true;
    }
    if (entry.runs.empty() || entry.box.missedBy(origin, direction)) {
        return false;
    }
    for (const Run& run : entry.runs) {
        if (run.box.missedBy(origin, direction)) {
            continue;
        }
        for (std::size_t element = run.firstElement; element < run.lastElement; ++element) {
            if (visitElement(element)) {
                return true;
            }
        }
    }
    return false;
}

bool ZoneIndex::isVisible(const zRegion_fe& region, std::size_t zone, const Vec& hit, const Vec& direction) const {
    for (std::size_t k = 0; k < zones_.size(); ++k) {
        if (k != zone && anyHit(region, k, hit, direction,
                                [&](const Vec& other, std::size_t) { return dot(other - hit, direction) < 0.0; })) {
            return false;
        }
    }
    return true;
}

std::int32_t ZoneIndex::pickZone(const zRegion_fe& region, const PixelLine& line) const {
    const Vec direction = sightDirection(line.nearPoint, line.farPoint);
    for (std::size_t k = 0; k < zones_.size(); ++k) {
        if (anyHit(region, k, line.nearPoint, direction,
                   [&](const Vec& hit, std::size_t) { return isVisible(region, k, hit, direction); })) {
            return static_cast<std::int32_t>(k);
        }
    }
    return -1;
}

std::optional<FirstTriangle> ZoneIndex::firstTriangle(const zRegion_fe& region, const PixelLine& line) const {
    const Vec direction = line.farPoint - line.nearPoint;
    std::optional<FirstTriangle> first;
    double depth = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < zones_.size(); ++k) {
        anyHit(region, k, line.nearPoint, direction, [&](const Vec& hit, std::size_t element) {
            const double behind = dot(hit - line.nearPoint, direction);
            if (behind >= 0.0 && behind < depth) {
                depth = behind;
                first = FirstTriangle{static_cast<std::int32_t>(k), element, hit};
            }
            return false; // all are looked at
        });
    }
    return first;
}

bool ZoneIndex::hides(const zRegion_fe& region, const PixelLine& line, const Vec& point, double margin) const {
    const Vec direction = line.farPoint - line.nearPoint;
    const double least = margin * lengthOf(direction);
    for (std::size_t k = 0; k < zones_.size(); ++k) {
        if (anyHit(region, k, point, direction,
                   [&](const Vec& hit, std::size_t) { return dot(point - hit, direction) > least; })) {
            return true;
        }
    }
    return false;
}

} // namespace velmora
