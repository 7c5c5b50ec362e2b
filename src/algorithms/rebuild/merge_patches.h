#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "PatchList.h"

namespace velmora {

/// Patches to be joined: the first of them takes in the others in order.
struct MergeMembers {
    std::int32_t base = -1; ///< -1 when there is none
    std::vector<std::int32_t> others;
};

/// The members that a zBlock names. A negative entry repeats the patch before it; a number without a patch in `list` is
/// passed over.
MergeMembers mergeMembers(const PatchList& list, std::span<const std::int32_t> block);

/// Whether the members fit for merging by sections (equal points in their first sections) or by lines (equal numbers of
/// sections).
bool canMerge(const PatchList& list, const MergeMembers& members, bool lines);

/// What joining patches does beside it.
struct MergeOptions {
    bool matching = false;  ///< the appended curves take the spacing of the base's last one
    bool keepFirst = false; ///< the first curve of an added patch is appended too
};

/// Appends the members' sections to the base patch, each patch's first one left out. `values`, if there are any, have
/// the shape of the list; with matching they go along with the points of the appended curves, and stay where they are.
void appendSections(PatchList& list, const MergeMembers& members, const MergeOptions& options,
                    PatchList* values = nullptr);
/// Appends the members' lines to the base patch, section by section, each patch's first one left out.
void appendLines(PatchList& list, const MergeMembers& members, const MergeOptions& options,
                 PatchList* values = nullptr);

/// Removes the patches that the base took in; the base's own number falls with them.
void removeMerged(PatchList& list, const MergeMembers& members);

} // namespace velmora
