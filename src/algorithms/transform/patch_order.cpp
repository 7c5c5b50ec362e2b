#include "patch_order.h"

#include <algorithm>
#include <cmath>

namespace velmora {

bool hasEqualSections(const Patch& patch) {
    return std::all_of(patch.begin(), patch.end(),
                       [&patch](const PointList& section) { return section.size() == patch.front().size(); });
}

Patch transposed(const Patch& patch) {
    if (patch.empty()) {
        return {};
    }
    const auto shortest = std::min_element(patch.begin(), patch.end(),
                                           [](const PointList& a, const PointList& b) { return a.size() < b.size(); });
    Patch lines(shortest->size());
    for (std::size_t j = 0; j < lines.size(); ++j) {
        lines[j].reserve(patch.size());
        for (const PointList& section : patch) {
            lines[j].push_back(section[j]);
        }
    }
    return lines;
}

bool transposePatches(PatchList& list, const std::vector<bool>& chosen) {
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (chosen[k] && !hasEqualSections(list[k])) {
            return false;
        }
    }
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (chosen[k] && lineCount(list[k]) > 0) {
            list[k] = transposed(list[k]);
        }
    }
    return true;
}

void reverseSections(Patch& patch) {
    std::reverse(patch.begin(), patch.end());
}

void reverseLines(Patch& patch) {
    for (PointList& section : patch) {
        std::reverse(section.begin(), section.end());
    }
}

void weed(Patch& patch) {
    for (PointList& section : patch) {
        PointList kept;
        kept.reserve(section.size() / 2 + 1);
        for (std::size_t m = 0; m < section.size(); m += 2) {
            kept.push_back(m + 2 == section.size() ? section.back() : section[m]);
        }
        section.swap(kept);
    }
}

bool extrapolate(Patch& patch, bool beyondLast, double coefficient) {
    if (patch.size() < 2) {
        return false;
    }
    const PointList& border = beyondLast ? patch.back() : patch.front();
    const PointList& inner = beyondLast ? patch[patch.size() - 2] : patch[1];
    PointList section(std::min(border.size(), inner.size()));
    for (std::size_t j = 0; j < section.size(); ++j) {
        section[j] = border[j] + (border[j] - inner[j]) * coefficient;
    }
    patch.insert(beyondLast ? patch.end() : patch.begin(), std::move(section));
    return true;
}

Patch revolved(const PointList& profile) {
    constexpr double radiansPerDegree = 0.0174533;
    Patch body;
    body.reserve(profile.size());
    for (const zVec<double>& p : profile) {
        const double radius = std::sqrt(p.z * p.z + p.y * p.y);
        PointList circle;
        for (int degrees = -90; degrees <= 270; degrees += 5) {
            const double angle = degrees * radiansPerDegree;
            circle.push_back({p.x, radius * std::sin(angle), radius * std::cos(angle)});
        }
        body.push_back(std::move(circle));
    }
    return body;
}

} // namespace velmora
