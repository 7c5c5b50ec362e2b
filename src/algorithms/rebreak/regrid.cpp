#include "regrid.h"

#include <algorithm>

namespace velmora {

void LawRegridder::regrid(const PatchCurve& curve) {
    const std::int32_t points = curve.count();
    if (points != countOf(law_) || points < 1 || !(law_.back() > 0)) {
        return;
    }
    curve.give(respacer_);
    const bool spline = !(points > 3 && respacer_.hasCoincident(points));
    respacer_.respaceByLaw(spline, points, 0, law_.data());
    curve.take(respacer_);
}

void regridLikeSection(Patch& patch, std::int32_t j) {
    LawRegridder regridder(PatchCurve(patch, false, j).law());
    for (std::int32_t s = 0; s < countOf(patch); ++s) {
        if (s != j) {
            regridder.regrid({patch, false, s});
        }
    }
}

void regridLikeLine(Patch& patch, std::int32_t j) {
    LawRegridder regridder(PatchCurve(patch, true, j).law());
    std::int32_t lines = lineCount(patch);
    for (const PointList& section : patch) {
        lines = std::min(lines, countOf(section));
    }
    for (std::int32_t line = 0; line < lines; ++line) {
        if (line != j) {
            regridder.regrid({patch, true, line});
        }
    }
}

} // namespace velmora
