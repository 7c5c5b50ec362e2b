// The report of large models, and the distance of many points from a large surface.

#include <cmath>
#include <memory>
#include <numbers>

#include <benchmark/benchmark.h>

#include "compare.h"
#include "model_report.h"

namespace velmora {
namespace {

/// A point of an egg with waves.
zVec<double> eggPoint(double u, double v) {
    const double r = 1 + 0.1 * std::sin(9 * u) * std::sin(7 * v);
    return {2 * r * std::cos(u), r * std::sin(u) * std::cos(v), r * std::sin(u) * std::sin(v)};
}

/// The egg's surface as patches of `sections` by `points`, one beside the other along u.
PatchList eggPatches(int patches, int sections, int points) {
    PatchList model;
    for (int k = 0; k < patches; ++k) {
        Patch patch;
        for (int n = 0; n < sections; ++n) {
            PointList section;
            for (int m = 0; m < points; ++m) {
                const double u = std::numbers::pi * (k + static_cast<double>(n) / (sections - 1)) / patches;
                section.push_back(eggPoint(u, 2 * std::numbers::pi * m / (points - 1)));
            }
            patch.push_back(section);
        }
        model.push_back(patch);
    }
    return model;
}

/// The egg of about `triangles` triangles, with shared nodes or, as from an STL file, three nodes for each.
zRegion_fe eggZone(int triangles, bool shared) {
    const int side = static_cast<int>(std::sqrt(triangles / 2.0));
    const std::int32_t elements = 2 * side * side;
    const std::int32_t nodes = shared ? (side + 1) * (side + 1) : 3 * elements;
    auto zone = std::make_unique<zBlock_fe>(nodes, 4 * elements, elements);
    for (const char* const name : {"x", "y", "z"}) {
        zone->addVariable(name);
    }
    std::int32_t used = 0;
    auto entry = zone->connectivity.begin();
    const auto put = [&](int i, int j) {
        const std::int32_t node = shared ? i * (side + 1) + j : used++;
        const zVec<double> p = eggPoint(std::numbers::pi * i / side, 2 * std::numbers::pi * j / side);
        zone->variables[0]->data[static_cast<std::size_t>(node)] = p.x;
        zone->variables[1]->data[static_cast<std::size_t>(node)] = p.y;
        zone->variables[2]->data[static_cast<std::size_t>(node)] = p.z;
        *entry++ = node;
    };
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            put(i, j), put(i + 1, j), put(i + 1, j + 1), ++entry;
            put(i, j), put(i + 1, j + 1), put(i, j + 1), ++entry;
        }
    }
    zRegion_fe region;
    region.blocks.push_back(std::move(zone));
    return region;
}

/// Argument: patches that 2.4 million points are in.
void reportOfPatches(benchmark::State& state) {
    const int patches = static_cast<int>(state.range(0));
    const PatchList model = eggPatches(patches, 1200 / patches, 2000);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(modelReport(model, {}, 2.0).area);
    }
    state.SetItemsProcessed(state.iterations() * pointTotal(model));
}
BENCHMARK(reportOfPatches)->ArgName("patches")->Arg(1)->Arg(300)->Unit(benchmark::kMillisecond);

/// A million triangles; argument: 1 for shared nodes.
void reportOfTriangles(benchmark::State& state) {
    const zRegion_fe model = eggZone(1'000'000, state.range(0) == 1);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(modelReport({}, model, 2.0).area);
    }
    state.SetItemsProcessed(state.iterations() * model.blocks[0]->elementCount);
}
BENCHMARK(reportOfTriangles)->ArgName("shared")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

/// 200,000 points to a million triangles, the tree included; argument: how far the points stand off, in thousandths.
void compare(benchmark::State& state) {
    PatchList points = eggPatches(1, 400, 500);
    const double scale = 1.0 + 0.001 * static_cast<double>(state.range(0));
    for (PointList& section : points[0]) {
        for (zVec<double>& point : section) {
            point = point * scale;
        }
    }
    const zRegion_fe surface = eggZone(1'000'000, true);
    for ([[maybe_unused]] auto _ : state) {
        const NearestTree tree(surfaceTriangles({}, surface, {false}));
        benchmark::DoNotOptimize(comparePatches(points, {true}, tree).largest);
    }
    state.SetItemsProcessed(state.iterations() * pointTotal(points));
}
BENCHMARK(compare)->ArgName("off")->Arg(0)->Arg(1)->Arg(100)->Arg(2000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmora
