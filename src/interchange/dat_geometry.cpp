#include "dat_geometry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "PatchThinner.h"
#include "large_memory.h"

namespace velmora {

namespace {

// The first layer of a zone of which every point exists.
struct ZoneGrid {
    ZoneCoordinates coordinates;
    std::int32_t sections = 0;
    std::int32_t points = 0; // per section

    std::int64_t size() const { return std::int64_t{sections} * points; }
};

// The grid has no coordinates when the zone makes no patch.
ZoneGrid gridOf(const zBlock& zone) {
    ZoneGrid grid{coordinatesOf(zone.variables), zone.jmax, zone.imax};
    if (grid.sections <= 0 || grid.points <= 0) {
        grid.sections = grid.points = 0;
    }
    const std::array<const zArray<double>*, 3> arrays{grid.coordinates.x, grid.coordinates.y, grid.coordinates.z};
    const bool complete =
        grid.coordinates && std::all_of(arrays.begin(), arrays.end(), [&grid](const zArray<double>* array) {
            return std::cmp_greater_equal(array->data.size(), grid.size());
        });
    return complete ? grid : ZoneGrid{};
}

ZoneRefusal refusalOf(const ZoneVariables& variables) {
    if (variables.size() < 3) {
        return ZoneRefusal::TooFewVariables;
    }
    return coordinatesOf(variables) ? ZoneRefusal::None : ZoneRefusal::CoordinatesAbsent;
}

// Yields a grid's points in the order of the sections.
class GridPoints {
public:
    GridPoints(const ZoneGrid& grid, ZoneDetail detail)
        : coordinates_(grid.coordinates), replacesMissing_(detail == ZoneDetail::Thinned) {}

    bool operator()(zVec<double>& point) {
        point = {valueOf(*coordinates_.x), valueOf(*coordinates_.y), valueOf(*coordinates_.z)};
        ++index_;
        return true;
    }

    std::int64_t replaced() const { return replaced_; }

private:
    double valueOf(const zArray<double>& array) {
        const double value = array.data[index_];
        if (replacesMissing_ && value < missingCoordinate) {
            ++replaced_;
            return 0.0;
        }
        return value;
    }

    ZoneCoordinates coordinates_;
    bool replacesMissing_;
    std::size_t index_ = 0;
    std::int64_t replaced_ = 0;
};

PatchThinner thinnerFor(std::int64_t points, ZoneDetail detail) {
    if (detail == ZoneDetail::Whole) {
        return PatchThinner::keepingAll();
    }
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    return PatchThinner(static_cast<std::int32_t>(std::min(points, most)));
}

} // namespace

ZonePatches zonesToPatches(const zRegion& region, ZoneDetail detail) {
    ZonePatches result;
    if (region.blocks.empty()) {
        return result;
    }
    result.refusal = refusalOf(region.blocks.front()->variables);
    if (result.refusal != ZoneRefusal::None) {
        return result;
    }
    std::vector<ZoneGrid> grids;
    for (const auto& zone : region.blocks) {
        grids.push_back(gridOf(*zone));
        result.pointsRead += grids.back().size();
    }
    makeRoomForPieces(static_cast<std::size_t>(result.pointsRead) * sizeof(zVec<double>));
    PatchThinner thinner = thinnerFor(result.pointsRead, detail);
    for (const ZoneGrid& grid : grids) {
        if (!grid.coordinates) {
            ++result.zonesLeftOut;
            continue;
        }
        Patch patch;
        GridPoints points(grid, detail);
        thinner.takePatch(grid.sections, grid.points, points, patch);
        result.numbersReplaced += points.replaced();
        result.patches.push_back(std::move(patch));
    }
    result.pointsKept = thinner.kept();
    result.thinned = thinner.thinned();
    result.cutAtLimit = thinner.cutAtLimit();
    return result;
}

} // namespace velmora
