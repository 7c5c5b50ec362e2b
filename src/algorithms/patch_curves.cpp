#include "patch_curves.h"

#include <algorithm>

namespace velmora {

bool isGrid(const Patch& patch) {
    return lineCount(patch) > 0 && std::all_of(patch.begin(), patch.end(), [&patch](const PointList& section) {
               return section.size() == patch.front().size();
           });
}

Patch transposed(const Patch& patch) {
    Patch turned(static_cast<std::size_t>(lineCount(patch)));
    for (PointList& section : turned) {
        section.reserve(patch.size());
    }
    for (const PointList& section : patch) {
        for (std::size_t j = 0; j < turned.size(); ++j) {
            turned[j].push_back(section[j]);
        }
    }
    return turned;
}

void reversePoints(Patch& patch) {
    for (PointList& section : patch) {
        std::reverse(section.begin(), section.end());
    }
}

} // namespace velmora
