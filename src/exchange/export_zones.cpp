#include "export_zones.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>

#include "grid_builder.h"
#include "mesh_builder.h"

namespace velmora {

namespace {

double asText(double value, int digits) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::general, digits).ptr;
    double result = value;
    std::from_chars(text.begin(), end, result);
    return result;
}

} // namespace

ExportZones::ExportZones(const ExchangeView& model, bool merge) {
    int number = 0;
    for (const Patch& patch : model.patches) {
        std::unique_ptr<zBlock_fe> zone = trianglesOfPatch(patch, "Patch " + std::to_string(++number));
        if (zone != nullptr) {
            made_.push_back(merge ? mergedZone(*zone) : std::move(zone));
            zones_.push_back(made_.back().get());
        }
    }
    for (const auto& zone : model.region.blocks) {
        if (!coordinatesOf(zone->variables) || !consistent(*zone)) {
            continue;
        }
        if (merge) {
            made_.push_back(mergedZone(*zone));
        }
        zones_.push_back(merge ? made_.back().get() : zone.get());
    }
}

std::int64_t ExportZones::points() const {
    std::int64_t sum = 0;
    for (const zBlock_fe* const zone : zones_) {
        sum += zone->nodeCount;
    }
    return sum;
}

std::int64_t ExportZones::triangles() const {
    std::int64_t sum = 0;
    for (const zBlock_fe* const zone : zones_) {
        sum += zone->elementCount;
    }
    return sum;
}

std::unique_ptr<zBlock_fe> mergedZone(const zBlock_fe& zone) {
    const ZoneCoordinates nodes = coordinatesOf(zone.variables);
    const EqualPoints equal = findEqualPoints(nodes.x->data, nodes.y->data, nodes.z->data);
    auto merged = std::make_unique<zBlock_fe>(equal.count, zone.connectivitySize, zone.elementCount);
    merged->title = zone.title;
    for (const auto& variable : zone.variables) {
        auto field = std::make_unique<zArray<double>>(equal.count, 1, 1, variable->name);
        std::int32_t kept = 0;
        for (std::size_t node = 0; node < equal.place.size(); ++node) {
            if (equal.place[node] == kept) {
                field->data[static_cast<std::size_t>(kept++)] = variable->data[node];
            }
        }
        merged->variables.push_back(std::move(field));
    }
    std::transform(
        zone.connectivity.begin(), zone.connectivity.end(), merged->connectivity.begin(),
        [&equal](std::int32_t node) { return node < 0 ? node : equal.place[static_cast<std::size_t>(node)]; });
    return merged;
}

zVec<double> pointOf(const ZoneCoordinates& nodes, std::int32_t node) {
    const auto i = static_cast<std::size_t>(node);
    return {nodes.x->data[i], nodes.y->data[i], nodes.z->data[i]};
}

void forTriangles(const zBlock_fe& zone, const std::function<void(const std::int32_t* nodes)>& take) {
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        take(&zone.connectivity[entry]);
    }
}

namespace {

/// Takes points and keeps how far writing moves them.
class MoveOfPoints {
public:
    MoveOfPoints(int digits, bool single) : digits_(digits), single_(single) {}

    void take(double x, double y, double z) {
        const zVec<double> move(written(x) - x, written(y) - y, written(z) - z);
        const bool finite = std::isfinite(move.x) && std::isfinite(move.y) && std::isfinite(move.z);
        largest_ =
            finite ? std::max(largest_, std::hypot(move.x, move.y, move.z)) : std::numeric_limits<double>::infinity();
    }
    double largest() const { return largest_; }

private:
    double written(double value) const {
        return single_ ? static_cast<double>(static_cast<float>(value)) : asText(value, digits_);
    }

    int digits_;
    bool single_;
    double largest_ = 0.0;
};

/// Calls `take` with the coordinates of each point of the zones.
template <class Zones, class Take>
void forPoints(const Zones& zones, const Take& take) {
    for (const auto& zone : zones) {
        const ZoneCoordinates nodes = coordinatesOf(zone->variables);
        const std::size_t count =
            nodes ? std::min({nodes.x->data.size(), nodes.y->data.size(), nodes.z->data.size()}) : 0;
        for (std::size_t node = 0; node < count; ++node) {
            take(nodes.x->data[node], nodes.y->data[node], nodes.z->data[node]);
        }
    }
}

} // namespace

double largestMove(const ExchangeView& model, int digits, bool single) {
    constexpr int digitsOfDouble = 17;
    MoveOfPoints move(digits, single);
    if (!single && digits >= digitsOfDouble) {
        return move.largest();
    }
    for (const Patch& patch : model.patches) {
        for (const PointList& section : patch) {
            std::for_each(section.begin(), section.end(), [&move](const zVec<double>& p) { move.take(p.x, p.y, p.z); });
        }
    }
    forPoints(model.region.blocks, [&move](double x, double y, double z) { move.take(x, y, z); });
    return move.largest();
}

double largestMove(const zRegion& grids, const zRegion_fe& triangles, int digits, double tolerance) {
    // A coordinate moves by half a unit of its last digit at most, a point by the root of three times that.
    double largest = 0.0;
    const auto look = [&largest](double x, double y, double z) {
        largest = std::max({largest, std::abs(x), std::abs(y), std::abs(z)});
    };
    forPoints(grids.blocks, look);
    forPoints(triangles.blocks, look);
    if (largest * std::pow(10.0, 1 - digits) < tolerance) {
        return 0.0;
    }
    MoveOfPoints move(digits, false);
    const auto take = [&move](double x, double y, double z) { move.take(x, y, z); };
    forPoints(grids.blocks, take);
    forPoints(triangles.blocks, take);
    return move.largest();
}

} // namespace velmora
