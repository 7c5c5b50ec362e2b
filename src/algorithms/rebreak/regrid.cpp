#include "regrid.h"

#include <algorithm>

#include "carried_values.h"

namespace velmora {

void LawRegridder::regrid(const PatchCurve& curve, const PatchCurve* values) {
    const std::int32_t points = curve.count();
    if (points != countOf(law_) || points < 1 || !(law_.back() > 0)) {
        return;
    }
    curve.give(respacer_);
    const bool spline = !(points > 3 && respacer_.hasCoincident(points));
    if (values != nullptr) {
        const PointList carried =
            valuesAlong(curve.points(), values->points(), respacer_.fractionsByLaw(spline, points, law_.data()));
        for (std::int32_t i = 0; i < points; ++i) {
            (*values)[i] = carried[static_cast<std::size_t>(i)];
        }
    }
    respacer_.respaceByLaw(spline, points, 0, law_.data());
    curve.take(respacer_);
}

void regridCurve(LawRegridder& regridder, Patch& patch, Patch* values, bool line, std::int32_t index) {
    if (values == nullptr) {
        regridder.regrid({patch, line, index});
        return;
    }
    const PatchCurve along(*values, line, index);
    regridder.regrid({patch, line, index}, &along);
}

void regridLikeSection(Patch& patch, std::int32_t j, Patch* values) {
    LawRegridder regridder(PatchCurve(patch, false, j).law());
    for (std::int32_t s = 0; s < countOf(patch); ++s) {
        if (s != j) {
            regridCurve(regridder, patch, values, false, s);
        }
    }
}

void regridLikeLine(Patch& patch, std::int32_t j, Patch* values) {
    LawRegridder regridder(PatchCurve(patch, true, j).law());
    std::int32_t lines = lineCount(patch);
    for (const PointList& section : patch) {
        lines = std::min(lines, countOf(section));
    }
    for (std::int32_t line = 0; line < lines; ++line) {
        if (line != j) {
            regridCurve(regridder, patch, values, true, line);
        }
    }
}

} // namespace velmora
