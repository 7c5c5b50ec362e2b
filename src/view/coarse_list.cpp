#include "coarse_list.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "DocumentState.h"
#include "draw_lists.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Cubes along the longest side of a box: few enough that their numbers fit into 63 bits.
constexpr int mostCubes = 1000;
constexpr int fewestCubes = 8;
/// Triangles that a closed surface gives for each cube of one side, squared: it crosses six such squares, and each
/// cube on it gives two.
constexpr double trianglesOfSquare = 12.0;

/// Each `step`th of `count` numbers and the last.
std::vector<std::size_t> thinned(std::size_t count, std::size_t step) {
    std::vector<std::size_t> kept;
    for (std::size_t i = 0; i + 1 < count; i += step) {
        kept.push_back(i);
    }
    if (count > 0) {
        kept.push_back(count - 1);
    }
    return kept;
}

Patch thinnedPatch(const Patch& patch, std::size_t step) {
    Patch thin;
    for (const std::size_t n : thinned(patch.size(), step)) {
        PointList& section = thin.emplace_back();
        for (const std::size_t m : thinned(patch[n].size(), step)) {
            section.push_back(patch[n][m]);
        }
    }
    return thin;
}

DrawList coarsePatches(const DocumentState& document, int number, std::size_t vertices) {
    const double all = 2.0 * static_cast<double>(pointTotal(document.patches));
    const double share = all / static_cast<double>(std::max<std::size_t>(1, vertices));
    const auto step = static_cast<std::size_t>(std::max(1.0, std::ceil(std::sqrt(share))));
    PatchList thin;
    thin.reserve(document.patches.size());
    std::transform(document.patches.begin(), document.patches.end(), std::back_inserter(thin),
                   [step](const Patch& patch) { return thinnedPatch(patch, step); });
    return buildPatchPicture(document, thin, number);
}

/// The nodes of one zone, brought together in cubes.
class NodeCubes {
public:
    NodeCubes(const ZoneCoordinates& at, const zVec<double>& lower, double side);

    std::int32_t cubeOf(std::int32_t node) const { return cubes_[static_cast<std::size_t>(node)]; }
    const zVec<double>& middle(std::int32_t cube) const { return middles_[static_cast<std::size_t>(cube)]; }

private:
    std::vector<std::int32_t> cubes_; ///< per node
    std::vector<zVec<double>> middles_;
};

NodeCubes::NodeCubes(const ZoneCoordinates& at, const zVec<double>& lower, double side) {
    const std::size_t count = at.x->data.size();
    std::unordered_map<std::int64_t, std::int32_t> known;
    std::vector<double> members;
    cubes_.reserve(count);
    for (std::size_t node = 0; node < count; ++node) {
        const zVec<double> p(at.x->data[node], at.y->data[node], at.z->data[node]);
        const auto along = [side](double value, double from) {
            return static_cast<std::int64_t>(std::clamp((value - from) / side, 0.0, 2.0 * mostCubes));
        };
        const std::int64_t key =
            (along(p.x, lower.x) * 4 * mostCubes + along(p.y, lower.y)) * 4 * mostCubes + along(p.z, lower.z);
        const auto [place, isNew] = known.try_emplace(key, static_cast<std::int32_t>(middles_.size()));
        const auto cube = static_cast<std::size_t>(place->second);
        if (isNew) {
            middles_.emplace_back();
            members.push_back(0.0);
        }
        middles_[cube] = middles_[cube] + p;
        members[cube] += 1.0;
        cubes_.push_back(place->second);
    }
    for (std::size_t cube = 0; cube < middles_.size(); ++cube) {
        middles_[cube] = middles_[cube] / members[cube];
    }
}

/// Cubes that a triangle lies between, turned so that the lowest comes first: the same triangle has the same ones.
using CubeTriangle = std::array<std::int32_t, 3>;

struct CubeTriangleHash {
    std::size_t operator()(const CubeTriangle& t) const {
        std::uint64_t h = static_cast<std::uint32_t>(t[0]);
        h = h * 0x9E3779B97F4A7C15ULL + static_cast<std::uint32_t>(t[1]);
        h = h * 0x9E3779B97F4A7C15ULL + static_cast<std::uint32_t>(t[2]);
        return static_cast<std::size_t>(h ^ (h >> 29U));
    }
};

void addCoarseZone(DrawList& list, const zBlock_fe& zone, const NodeCubes& cubes, bool withNormals) {
    std::unordered_set<CubeTriangle, CubeTriangleHash> drawn;
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        CubeTriangle t{};
        for (std::size_t i = 0; i < 3; ++i) {
            t.at(i) = cubes.cubeOf(zone.connectivity[entry + i]);
        }
        if (t[0] == t[1] || t[1] == t[2] || t[2] == t[0]) {
            continue;
        }
        std::rotate(t.begin(), std::min_element(t.begin(), t.end()), t.end());
        if (!drawn.insert(t).second) {
            continue;
        }
        const zVec<double> normal =
            unitOf(cross(cubes.middle(t[1]) - cubes.middle(t[0]), cubes.middle(t[2]) - cubes.middle(t[0])));
        for (const std::int32_t cube : t) {
            if (withNormals) {
                list.vertex(cubes.middle(cube), normal);
            } else {
                list.vertex(cubes.middle(cube));
            }
        }
    }
}

DrawList coarseZones(const DocumentState& document, int number, std::size_t vertices) {
    const zVec<double> size = document.boxMax - document.boxMin;
    const double longest = std::max({size.x, size.y, size.z});
    const double wanted = std::sqrt(static_cast<double>(vertices) / 3.0 / trianglesOfSquare);
    const double side = longest / std::clamp(std::floor(wanted), 1.0 * fewestCubes, 1.0 * mostCubes);
    const std::vector<bool> inBlock = document.blockMask();
    const bool withNormals = number == 4;
    DrawList list;
    list.number = number;
    PatchColours colours(document);
    for (std::int32_t k = 0; k < document.partCount(); ++k) {
        const zBlock_fe& zone = *document.feRegion.blocks[static_cast<std::size_t>(k)];
        if (document.showBlockOnly && !inBlock[static_cast<std::size_t>(k)]) {
            continue;
        }
        const Colour colour = colours.next(k);
        if (const ZoneCoordinates at = coordinatesOf(zone.variables); at && side > 0.0 && std::isfinite(side)) {
            list.begin(Primitive::Triangles, colour).lit = withNormals;
            addCoarseZone(list, zone, NodeCubes(at, document.boxMin, side), withNormals);
        }
    }
    return list;
}

} // namespace

DrawList buildCoarseList(const DocumentState& document, int number, std::size_t vertices) {
    switch (number) {
    case 1:
    case 2:
        return coarsePatches(document, number, vertices);
    case 3:
    case 4:
        return coarseZones(document, number, vertices);
    default:
        return {};
    }
}

} // namespace velmora
