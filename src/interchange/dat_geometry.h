#pragma once

#include <cstdint>
#include <string_view>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// What the user is told of a region that makes no model.
inline constexpr std::string_view tooFewVariablesMessage =
    "Irregular structure of DAT file. The number of variables < 3";
inline constexpr std::string_view coordinatesAbsentMessage =
    "Irregular structure of DAT file. Variables X or Y or Z are absent";

/// A coordinate below this one stands for a value that is not there.
inline constexpr double missingCoordinate = -1e8;

/// Why a region makes no model; told by its first zone.
enum class ZoneRefusal {
    None,
    TooFewVariables,   ///< less than 3: `tooFewVariablesMessage`
    CoordinatesAbsent, ///< no x, y or z: `coordinatesAbsentMessage`
};

/// What the user is told of a refusal; nothing with None.
constexpr std::string_view messageOf(ZoneRefusal refusal) {
    return refusal == ZoneRefusal::TooFewVariables     ? tooFewVariablesMessage
           : refusal == ZoneRefusal::CoordinatesAbsent ? coordinatesAbsentMessage
                                                       : std::string_view();
}

/// How much of the zones becomes patches.
enum class ZoneDetail {
    Thinned, ///< as a model that is opened: thinned by its size, cut at the limit, missing coordinates set to 0
    Whole,   ///< every point as it is
};

/// The patches of a region's zones.
struct ZonePatches {
    ZoneRefusal refusal = ZoneRefusal::None; ///< other than None: there are no patches
    PatchList patches;
    std::int64_t pointsRead = 0; ///< in the first layers of the zones that became patches; decides on the thinning
    std::int64_t pointsKept = 0; ///< in `patches`
    std::int32_t zonesLeftOut = 0;
    std::int64_t numbersReplaced = 0; ///< coordinates below `missingCoordinate` that became 0
    bool thinned = false;             ///< points or sections were left out to thin the model
    bool cutAtLimit = false;          ///< sections were left out because `keptPointLimit` was reached
};

/// Makes a patch of the first layer of each zone, in order: jmax sections of imax points from the fields x, y, z,
/// letters of either case being equal. A zone without points gives a patch without sections. Left out is a zone that
/// lacks one of the fields or of which one of the three holds fewer than imax * jmax values. A region without zones
/// has no patches and is not refused. No zone is changed, not even its title.
///
/// Unlike those of an .apt file the phases of the thinning run on from zone to zone. Once `keptPointLimit` is reached,
/// of each further zone only the first row is looked at, and kept if the phases keep it.
ZonePatches zonesToPatches(const zRegion& region, ZoneDetail detail);

} // namespace velmora
