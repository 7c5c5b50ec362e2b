#include "smooth_patch.h"

#include <algorithm>

#include "ProgressCounter.h"
#include "curve_tolerances.h"
#include "patch_curves.h"

namespace velmora {

namespace {

/// Positions along a border in parts of its length.
std::vector<double> borderLaw(const Patch& patch, bool lines, std::int32_t curve) {
    std::vector<double> law = ConstPatchCurve(patch, lines, curve).law();
    const double total = law.back();
    for (std::size_t j = 0; j < law.size(); ++j) {
        law[j] =
            total < shortLineLength ? static_cast<double>(j) / static_cast<double>(law.size() - 1) : law[j] / total;
    }
    return law;
}

void smoothCurves(Patch& patch, bool lines, bool& spline, const ReportProgress& report) {
    if (!isGrid(patch)) {
        return;
    }
    const std::int32_t sections = countOf(patch);
    const std::int32_t curves = lines ? lineCount(patch) : sections;
    const std::int32_t points = lines ? sections : lineCount(patch);
    if (curves < 3) {
        return;
    }
    const std::vector<double> first = borderLaw(patch, lines, 0);
    const std::vector<double> last = borderLaw(patch, lines, curves - 1);
    std::vector<double> law(first.size());
    Respacer respacer;
    ProgressCounter progress(report, curves - 2);
    for (std::int32_t i = 1; i < curves - 1; ++i) {
        for (std::size_t j = 0; j < law.size(); ++j) {
            law[j] = first[j] + (last[j] - first[j]) * i / (curves - 1);
        }
        const PatchCurve curve(patch, lines, i);
        curve.give(respacer);
        // The number of sections rules how many points are looked at, for sections too: wanted.
        if (sections > 3 && respacer.hasCoincident(sections)) {
            spline = false;
        }
        // A repeated point that was not looked at has no spline through it: this curve alone goes along the chords.
        respacer.respaceByLaw(spline && !respacer.hasZeroChord(), points, 0, law.data());
        curve.take(respacer);
        progress.advance();
    }
}

} // namespace

void smoothSections(Patch& patch, bool& spline, const ReportProgress& report) {
    smoothCurves(patch, false, spline, report);
}

void smoothLines(Patch& patch, bool& spline, const ReportProgress& report) {
    smoothCurves(patch, true, spline, report);
}

} // namespace velmora
