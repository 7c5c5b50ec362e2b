#include "PatchList.h"

#include <algorithm>

#include "regularity.h"

namespace velmora {

std::int64_t pointTotal(const PatchList& list) {
    std::int64_t total = 0;
    for (const Patch& patch : list) {
        for (const PointList& section : patch) {
            total += static_cast<std::int64_t>(section.size());
        }
    }
    return total;
}

void appendPatches(const PatchList& source, PatchList& destination, std::int32_t first, std::int32_t last) {
    const std::int32_t begin = std::max(first, 0);
    const std::int32_t end = std::min(last, countOf(source));
    if (begin >= end) {
        return;
    }
    destination.reserve(destination.size() + static_cast<std::size_t>(end - begin));
    for (std::int32_t k = begin; k < end; ++k) {
        destination.push_back(source[static_cast<std::size_t>(k)]);
    }
}

void patchBounds(const PatchList& list, zVec<double>& lower, zVec<double>& upper) {
    zVec<double> least = lower; // of its own: the compiler cannot know that no point of the list is `lower`
    zVec<double> largest = upper;
    for (const Patch& patch : list) {
        for (const PointList& section : patch) {
            for (const zVec<double>& p : section) {
                least.x = p.x < least.x ? p.x : least.x;
                least.y = p.y < least.y ? p.y : least.y;
                least.z = p.z < least.z ? p.z : least.z;
                largest.x = p.x > largest.x ? p.x : largest.x;
                largest.y = p.y > largest.y ? p.y : largest.y;
                largest.z = p.z > largest.z ? p.z : largest.z;
            }
        }
    }
    lower = least;
    upper = largest;
}

namespace {

Regularity regularityOf(const Patch& patch) {
    const bool irregular = std::any_of(patch.begin(), patch.end(), [&patch](const PointList& section) {
        return patch.size() < 2 || section.size() != patch.front().size();
    });
    return irregular ? Regularity::Irregular : patch.empty() ? Regularity::Undecided : Regularity::Regular;
}

/// Takes one patch more; false when that decides.
bool goesOn(const Patch& patch, Regularity& result) {
    const Regularity ofPatch = regularityOf(patch);
    result = ofPatch == Regularity::Undecided ? result : ofPatch;
    return ofPatch != Regularity::Irregular;
}

} // namespace

Regularity regularityOf(const PatchList& list, bool* sawRegular) {
    Regularity result = Regularity::Undecided;
    bool saw = false;
    for (const Patch& patch : list) {
        const bool more = goesOn(patch, result);
        saw = saw || result == Regularity::Regular;
        if (!more) {
            break;
        }
    }
    if (sawRegular != nullptr) {
        *sawRegular = saw;
    }
    return result;
}

Regularity regularityOfChosen(const PatchList& list, std::span<const std::int32_t> chosen) {
    Regularity result = Regularity::Undecided;
    for (const std::int32_t patch : chosen) {
        if (!goesOn(list[static_cast<std::size_t>(patch)], result)) {
            break;
        }
    }
    return result;
}

std::int32_t lineCount(const Patch& patch) {
    return patch.empty() ? 0 : countOf(patch.front());
}

} // namespace velmora
