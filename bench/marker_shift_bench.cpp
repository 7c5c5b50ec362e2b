#include <cstdint>
#include <random>

#include <benchmark/benchmark.h>

#include "marker_shift.h"

namespace velmora {
namespace {

constexpr std::size_t pointCount = 1000000;

/// Points in rows, as those of patches are, over a square that reaches beyond the markers'.
PointList rowsOfPoints() {
    PointList points;
    points.reserve(pointCount);
    for (std::size_t n = 0; n < 1000; ++n) {
        for (std::size_t m = 0; m < pointCount / 1000; ++m) {
            points.push_back({0.5 * static_cast<double>(m) - 250.0, 0.5 * static_cast<double>(n) - 250.0, 0.0});
        }
    }
    return points;
}

struct Pairs {
    PointList initial;
    PointList shifted;

    explicit Pairs(std::int64_t count) {
        std::mt19937 engine(1);
        std::uniform_real_distribution<double> place(-200.0, 200.0);
        std::uniform_real_distribution<double> move(-5.0, 5.0);
        for (std::int64_t i = 0; i < count; ++i) {
            shifted.push_back({place(engine), place(engine), place(engine)});
            initial.push_back(shifted.back() + zVec<double>(move(engine), move(engine), move(engine)));
        }
    }
};

/// A million points as "Reflection to sft" moves them in a principal view: two planes, each fitted and applied.
/// Argument: pairs of markers.
void shiftAsSeen(benchmark::State& state) {
    const Pairs pairs(state.range(0));
    const PointList points = rowsOfPoints();
    MarkerShift shift;
    while (state.KeepRunning()) {
        state.PauseTiming();
        PointList moved = points;
        state.ResumeTiming();
        shift.PrepareShift(3, pairs.initial, pairs.shifted, [](ShiftTrouble) {});
        shift.ApplyShift(moved, 3, 0, false, pairs.shifted);
        shift.PrepareShift(1, pairs.initial, pairs.shifted, [](ShiftTrouble) {});
        shift.ApplyShift(moved, 1, 3, true, pairs.shifted);
        benchmark::DoNotOptimize(moved.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(pointCount));
}
BENCHMARK(shiftAsSeen)->ArgName("pairs")->Arg(20)->Arg(200)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmora
