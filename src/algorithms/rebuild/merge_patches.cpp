#include "merge_patches.h"

#include <algorithm>

#include "regrid.h"

namespace velmora {

namespace {

Patch& patchOf(PatchList& list, std::int32_t k) {
    return list[static_cast<std::size_t>(k)];
}

/// The spacing of the base's last section or line; none when the base has no such curve.
std::vector<double> lawOfLastCurve(const Patch& base, bool line) {
    const std::int32_t curves = line ? lineCount(base) : countOf(base);
    if (curves < 1 || (line && !isGrid(base))) {
        return {};
    }
    return ConstPatchCurve(base, line, curves - 1).law();
}

Patch* valuesOf(PatchList* values, std::int32_t k) {
    return values != nullptr ? &patchOf(*values, k) : nullptr;
}

} // namespace

MergeMembers mergeMembers(const PatchList& list, std::span<const std::int32_t> block) {
    MergeMembers members;
    const auto exists = [&list](std::int32_t k) { return k >= 0 && k < countOf(list); };
    if (block.empty() || !exists(block.front())) {
        return members;
    }
    members.base = block.front();
    std::int32_t k = members.base;
    for (const std::int32_t entry : block.subspan(1)) {
        k = entry < 0 ? k : entry;
        if (exists(k)) {
            members.others.push_back(k);
        }
    }
    return members;
}

bool canMerge(const PatchList& list, const MergeMembers& members, bool lines) {
    const auto count = [&list, lines](std::int32_t k) {
        const Patch& patch = list[static_cast<std::size_t>(k)];
        return lines ? countOf(patch) : lineCount(patch);
    };
    return std::all_of(members.others.begin(), members.others.end(),
                       [&](std::int32_t k) { return count(k) == count(members.base); });
}

void appendSections(PatchList& list, const MergeMembers& members, const MergeOptions& options, PatchList* values) {
    Patch& base = patchOf(list, members.base);
    LawRegridder regridder(lawOfLastCurve(base, false));
    for (const std::int32_t k : members.others) {
        Patch& added = patchOf(list, k);
        const std::int32_t count =
            countOf(added); // the base may be one of the others: its size is taken before it grows
        for (std::int32_t s = options.keepFirst ? 0 : 1; s < count; ++s) {
            if (options.matching) {
                regridCurve(regridder, added, valuesOf(values, k), false, s);
            }
            base.push_back(PointList(added[static_cast<std::size_t>(s)]));
        }
    }
}

void appendLines(PatchList& list, const MergeMembers& members, const MergeOptions& options, PatchList* values) {
    Patch& base = patchOf(list, members.base);
    LawRegridder regridder(lawOfLastCurve(base, true));
    for (const std::int32_t k : members.others) {
        Patch& added = patchOf(list, k);
        const std::int32_t first = options.keepFirst ? 0 : 1;
        const std::int32_t lines = lineCount(added);
        for (std::int32_t j = first; options.matching && isGrid(added) && j < lines; ++j) {
            regridCurve(regridder, added, valuesOf(values, k), true, j);
        }
        for (std::size_t i = 0; i < std::min(base.size(), added.size()); ++i) {
            const PointList points = added[i];
            if (first < countOf(points)) {
                base[i].insert(base[i].end(), points.begin() + first, points.end());
            }
        }
    }
}

void removeMerged(PatchList& list, const MergeMembers& members) {
    std::vector<bool> merged(list.size(), false);
    for (const std::int32_t k : members.others) {
        merged[static_cast<std::size_t>(k)] = k != members.base;
    }
    PatchList kept;
    kept.reserve(list.size());
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (!merged[k]) {
            kept.push_back(std::move(list[k]));
        }
    }
    list = std::move(kept);
}

} // namespace velmora
