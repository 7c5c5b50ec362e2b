#include "smooth_patch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "curve_tolerances.h"
#include "parallel.h"
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

constexpr std::size_t curvesOfChunk = 4;

/// What a thread needs to smooth one curve after the other.
struct Smoother {
    Respacer respacer;
    std::vector<double> law;
};

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
    const auto inner = static_cast<std::size_t>(curves - 2);
    std::vector<Smoother> smoothers(workersFor(inner, curvesOfChunk));
    // From the first curve with repeated points on, this one included, all go along the chords. The number of sections
    // rules how many points are looked at, for sections too: wanted.
    std::vector<std::uint8_t> coincident(inner, 0);
    if (spline && sections > 3) {
        forEachChunk(inner, curvesOfChunk, [&](std::size_t begin, std::size_t end, std::size_t worker) {
            Respacer& respacer = smoothers[worker].respacer;
            for (std::size_t i = begin; i < end; ++i) {
                PatchCurve(patch, lines, static_cast<std::int32_t>(i) + 1).give(respacer);
                coincident[i] = respacer.hasCoincident(sections) ? 1 : 0;
            }
        });
    }
    const auto firstCoincident = std::find(coincident.begin(), coincident.end(), 1);
    const auto splines = spline ? static_cast<std::size_t>(firstCoincident - coincident.begin()) : 0;
    forEachChunk(
        inner, curvesOfChunk,
        [&](std::size_t begin, std::size_t end, std::size_t worker) {
            auto& [respacer, law] = smoothers[worker];
            law.resize(first.size());
            for (std::size_t i = begin; i < end; ++i) {
                const auto number = static_cast<std::int32_t>(i) + 1;
                for (std::size_t j = 0; j < law.size(); ++j) {
                    law[j] = first[j] + (last[j] - first[j]) * number / (curves - 1);
                }
                const PatchCurve curve(patch, lines, number);
                curve.give(respacer);
                // A repeated point that was not looked at has no spline through it: this curve alone goes along the
                // chords.
                respacer.respaceByLaw(i < splines && !respacer.hasZeroChord(), points, 0, law.data());
                curve.take(respacer);
            }
        },
        report);
    spline = spline && splines == inner;
}

} // namespace

void smoothSections(Patch& patch, bool& spline, const ReportProgress& report) {
    smoothCurves(patch, false, spline, report);
}

void smoothLines(Patch& patch, bool& spline, const ReportProgress& report) {
    smoothCurves(patch, true, spline, report);
}

} // namespace velmora
