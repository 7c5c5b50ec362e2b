// Projection and intersection: 100,000 points onto a million triangles, and 200 lines through 200,000 cells.

#include <cmath>
#include <cstdint>
#include <numbers>

#include <benchmark/benchmark.h>

#include "intersection.h"
#include "projection.h"
#include "target_mesh.h"

namespace velmora {
namespace {

/// A body of revolution about the x axis, from x = 0 to 10, with a waved outline, that leaves no edge along an axis.
Patch wavedBody(int sections, int points, double radius) {
    Patch patch;
    for (int n = 0; n < sections; ++n) {
        PointList section;
        const double x = 10.0 * n / (sections - 1);
        for (int m = 0; m < points; ++m) {
            const double angle = 0.1 + 2.0 * std::numbers::pi * m / (points - 1);
            const double r = radius * (1.0 + 0.1 * std::sin(3.0 * x) + 0.03 * std::cos(11.0 * angle));
            section.push_back({x, r * std::cos(angle), r * std::sin(angle)});
        }
        patch.push_back(section);
    }
    return patch;
}

/// Tree and projection together.
void projection(benchmark::State& state) {
    const PatchList model = {wavedBody(317, 317, 1.3), wavedBody(501, 1001, 1.0)};
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        PatchList patches = model;
        PointList missed;
        state.ResumeTiming();
        const TriangleTree target(CellMesh(patches, {true, false}).takeMesh());
        projectPatches(patches, {0}, target, nearestCellHit, missed, [] {}, {});
        benchmark::DoNotOptimize(patches.data());
    }
    state.SetItemsProcessed(state.iterations() * 317 * 317);
}
BENCHMARK(projection)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

void treeOfAMillionTriangles(benchmark::State& state) {
    const PatchList model = {wavedBody(501, 1001, 1.0)};
    const TriangleMesh mesh = CellMesh(model, {false}).takeMesh();
    for ([[maybe_unused]] auto _ : state) {
        const TriangleTree tree(mesh);
        benchmark::DoNotOptimize(&tree);
    }
}
BENCHMARK(treeOfAMillionTriangles)->Unit(benchmark::kMillisecond);

/// 200 lines that leave the body's side like a wing's.
Patch wing() {
    Patch patch;
    for (int n = 0; n < 41; ++n) {
        PointList section;
        for (int m = 0; m < 200; ++m) {
            const double angle = 2.0 * std::numbers::pi * m / 199;
            section.push_back({5.0 + 1.5 * std::cos(angle) + 0.01 * n, 0.2 * std::sin(angle), 0.1 * n});
        }
        patch.push_back(section);
    }
    return patch;
}

void intersection(benchmark::State& state) {
    const PatchList model = {wing(), wavedBody(401, 501, 1.0)};
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        PatchList patches = model;
        PiercingPoints piercing;
        PatchList working;
        state.ResumeTiming();
        findPiercingPoints(patches, {0}, piercing, {});
        const std::int32_t notFound = placePiercingPoints(patches, {true, false}, piercing, 0.0005, working, {});
        state.counters["pierced"] = static_cast<double>(piercing.places.size());
        state.counters["not_found"] = notFound;
    }
}
BENCHMARK(intersection)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmora
