#pragma once

#include <cstdint>
#include <vector>

#include "zVec.h"

namespace velmora {

/// A section: its points in order.
using PointList = std::vector<zVec<double>>;
/// A patch: its sections in order. Line j of a patch is point j of each section in turn; it is not stored.
using Patch = std::vector<PointList>;
/// A structured model, addressed as list[K][N][M]: patch, section, point, from 0.
using PatchList = std::vector<Patch>;

/// Coordinate differences and distances below this count as zero (model units).
inline constexpr double nearZero = 1e-8;

/// The number of elements of a sequence as the 32-bit signed count that addresses use.
template <class Sequence>
std::int32_t countOf(const Sequence& sequence) {
    return static_cast<std::int32_t>(sequence.size());
}

/// Points of all sections of all patches.
std::int64_t pointTotal(const PatchList& list);

/// Deep-copies patches `first` up to but not including `last` of `source` to the end of `destination`, which may
/// be the same list. Nothing happens with `first` not less than `last`; indices outside `source` are cut to it.
void appendPatches(const PatchList& source, PatchList& destination, std::int32_t first, std::int32_t last);

/// Widens the box `lower`, `upper` by every point of `list`. A coordinate that is not a number widens nothing.
void patchBounds(const PatchList& list, zVec<double>& lower, zVec<double>& upper);

/// What the section counts of a list say about its kind.
enum class Regularity {
    Undecided, ///< no patch, or only patches without sections: the kind stays what it was
    Regular,   ///< every patch with sections has two or more of them, all of the same number of points
    Irregular, ///< some patch has one section only, or sections of different numbers of points
};

/// Looks at section counts only; stops at the first irregular patch. A patch without sections passes unseen.
/// `sawRegular`, if given, becomes true when a regular patch was met on the way, also on the way to Irregular.
Regularity regularityOf(const PatchList& list, bool* sawRegular = nullptr);

/// How many points the sections of a patch have that are complete in the lines' sense: those of its first section.
std::int32_t lineCount(const Patch& patch);

} // namespace velmora
