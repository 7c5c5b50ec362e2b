// Picking on a model of 1,000 patches and 2 million points.

#include <benchmark/benchmark.h>

#include <cmath>

#include "PatchIndex.h"

namespace {

using namespace velmora;

/// A sphere-like body of 1,000 patches, 40 by 25 of them, each of 40 by 50 points.
PatchList largeModel() {
    PatchList list;
    for (int strip = 0; strip < 40; ++strip) {
        for (int belt = 0; belt < 25; ++belt) {
            Patch patch;
            for (int n = 0; n < 40; ++n) {
                PointList section;
                for (int m = 0; m < 50; ++m) {
                    const double longitude = (strip + n / 39.0) / 40.0 * 6.28;
                    const double latitude = ((belt + m / 49.0) / 25.0 - 0.5) * 3.1;
                    const double radius = 5.0 + 0.1 * std::sin(9.0 * longitude) * std::cos(7.0 * latitude);
                    section.push_back({radius * std::cos(latitude) * std::cos(longitude), radius * std::sin(latitude),
                                       radius * std::cos(latitude) * std::sin(longitude)});
                }
                patch.push_back(section);
            }
            list.push_back(patch);
        }
    }
    return list;
}

const PatchList& model() {
    static const PatchList list = largeModel();
    return list;
}

PixelLine lineNumber(int i) {
    const double x = 4.0 * std::sin(i * 0.7);
    const double y = 4.0 * std::cos(i * 1.3);
    return {{x, y, 140.0}, {x * 1.2, y * 1.2, -400.0}};
}

void takeModelIn(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        PatchIndex index;
        index.takeIn(model());
        benchmark::DoNotOptimize(index);
    }
}
BENCHMARK(takeModelIn)->Unit(benchmark::kMillisecond);

void pickPatch(benchmark::State& state) {
    PatchIndex index;
    index.takeIn(model());
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(index.pickPatch(model(), lineNumber(++i)));
    }
}
BENCHMARK(pickPatch)->Unit(benchmark::kMillisecond);

void pickPoint(benchmark::State& state) {
    PatchIndex index;
    index.takeIn(model());
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(index.nearest(model(), lineNumber(++i), {}));
    }
}
BENCHMARK(pickPoint)->Unit(benchmark::kMillisecond);

void pickPointByPlainScan(benchmark::State& state) {
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(nearestGridPoint(model(), lineNumber(++i), {}));
    }
}
BENCHMARK(pickPointByPlainScan)->Unit(benchmark::kMillisecond);

} // namespace
