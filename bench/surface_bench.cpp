// The operations on whole patches: one of 1,000 by 1,000 points, 200 pairs of neighbours, 10,000 sections.

#include <cmath>
#include <cstdint>

#include <benchmark/benchmark.h>

#include "PartRebreaker.h"
#include "coons_rebuild.h"
#include "correct_line.h"
#include "match_border.h"
#include "merge_patches.h"
#include "patch_curves.h"
#include "smooth_patch.h"

namespace velmora {
namespace {

/// A waved patch, unevenly spaced in both directions, that begins at x = `from`.
Patch wavedPatch(int sections, int points, double from = 0) {
    Patch patch;
    for (int n = 0; n < sections; ++n) {
        PointList section;
        for (int m = 0; m < points; ++m) {
            const double u = static_cast<double>(m) / (points - 1);
            const double v = static_cast<double>(n) / (sections - 1);
            section.push_back(
                {from + u + 0.2 * u * (1 - u), 2 * v + 0.3 * v * (1 - v), 0.1 * std::sin(9 * (from + u) + 5 * v)});
        }
        patch.push_back(section);
    }
    return patch;
}

/// Runs `work` on a fresh copy of the patch each time; the copying is not counted.
template <class Work>
void onCopies(benchmark::State& state, const Patch& patch, Work work) {
    while (state.KeepRunning()) {
        state.PauseTiming();
        Patch copy = patch;
        state.ResumeTiming();
        work(copy);
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(patch.size()) * lineCount(patch));
}

/// Argument: the number of sections and of points.
void coons(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    onCopies(state, wavedPatch(size, size), [](Patch& patch) { coonsRebuild(patch); });
}
BENCHMARK(coons)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond);

/// Arguments: the number of sections and of points; 1 for the spline.
void smoothSectionsThenLines(benchmark::State& state) {
    const auto size = static_cast<int>(state.range(0));
    onCopies(state, wavedPatch(size, size), [&state](Patch& patch) {
        bool spline = state.range(1) == 1;
        smoothSections(patch, spline);
        smoothLines(patch, spline);
    });
}
BENCHMARK(smoothSectionsThenLines)
    ->ArgNames({"size", "spline"})
    ->Args({500, 1})
    ->Args({1000, 1})
    ->Args({1000, 0})
    ->Unit(benchmark::kMillisecond);

/// 200 pairs of patches of 100 by 100; argument: 1 to rebuild the inside too.
void matchPairs(benchmark::State& state) {
    const Patch first = wavedPatch(100, 100);
    const Patch second = wavedPatch(100, 100, 1.01);
    const PatchList seconds(200, second);
    while (state.KeepRunning()) {
        state.PauseTiming();
        PatchList copies = seconds;
        state.ResumeTiming();
        for (Patch& copy : copies) {
            benchmark::DoNotOptimize(matchBorder(first, copy, state.range(0) == 1));
        }
    }
    state.SetItemsProcessed(state.iterations() * 200);
}
BENCHMARK(matchPairs)->ArgName("grid")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// 10,000 sections of 100 points, the first 60 to 80; arguments: 1 for the spline, 1 for the search.
void rebreakPart(benchmark::State& state) {
    PartLaw law;
    law.linear = state.range(0) == 0;
    law.fit = state.range(1) == 1;
    law.newCount = 80;
    law.lastPoint = 60;
    law.compression = 1.5;
    onCopies(state, wavedPatch(10000, 100), [&law](Patch& patch) {
        PartRebreaker rebreaker(law);
        for (PointList& section : patch) {
            benchmark::DoNotOptimize(rebreaker.rebuild(section).fitted);
        }
    });
}
BENCHMARK(rebreakPart)
    ->ArgNames({"spline", "fit"})
    ->Args({1, 0})
    ->Args({0, 0})
    ->Args({1, 1})
    ->Unit(benchmark::kMillisecond);

/// A line of 1,000 sections of 1,000 points bent at its middle.
void bendLine(benchmark::State& state) {
    onCopies(state, wavedPatch(1000, 1000), [](Patch& patch) {
        benchmark::DoNotOptimize(correctLine(patch, 500, {300, 600, 601, 400, 0.65}));
    });
}
BENCHMARK(bendLine)->Unit(benchmark::kMillisecond);

/// 200 patches of 100 by 100 into one; argument: 1 to match the spacing.
void mergeBlock(benchmark::State& state) {
    const PatchList list(200, wavedPatch(100, 100));
    MergeMembers members{0, {}};
    for (std::int32_t k = 1; k < 200; ++k) {
        members.others.push_back(k);
    }
    while (state.KeepRunning()) {
        state.PauseTiming();
        PatchList copy = list;
        state.ResumeTiming();
        appendSections(copy, members, {state.range(0) == 1, false});
        removeMerged(copy, members);
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetItemsProcessed(state.iterations() * 200 * 100 * 100);
}
BENCHMARK(mergeBlock)->ArgName("matching")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmora
