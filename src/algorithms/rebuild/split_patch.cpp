#include "split_patch.h"

#include "patch_curves.h"

namespace velmora {

namespace {

/// Puts `second` behind patch K.
void insertBehind(PatchList& list, std::int32_t K, Patch second) {
    list.insert(list.begin() + K + 1, std::move(second));
}

} // namespace

bool splitAtSection(PatchList& list, std::int32_t K, std::int32_t N) {
    if (K < 0 || K >= countOf(list)) {
        return false;
    }
    Patch& patch = list[static_cast<std::size_t>(K)];
    if (N <= 0 || N >= countOf(patch) - 1) {
        return false;
    }
    Patch second(patch.begin() + N, patch.end());
    patch.erase(patch.begin() + N + 1, patch.end());
    insertBehind(list, K, std::move(second));
    return true;
}

bool splitAtLine(PatchList& list, std::int32_t K, std::int32_t L) {
    if (K < 0 || K >= countOf(list)) {
        return false;
    }
    Patch& patch = list[static_cast<std::size_t>(K)];
    if (!isGrid(patch) || L <= 0 || L >= lineCount(patch) - 1) {
        return false;
    }
    Patch second;
    second.reserve(patch.size());
    for (PointList& section : patch) {
        second.emplace_back(section.begin() + L, section.end());
        section.erase(section.begin() + L + 1, section.end());
    }
    insertBehind(list, K, std::move(second));
    return true;
}

} // namespace velmora
