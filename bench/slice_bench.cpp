// From triangles to lines to a grid, and the knife: a million triangles, 100 planes, 20,000 lines.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>

#include <benchmark/benchmark.h>

#include "cut_zones.h"
#include "line_joiner.h"
#include "lines_to_grid.h"
#include "slice_surface.h"
#include "vectors.h"

namespace velmora {
namespace {

/// A closed tube with waves along x, of two triangles a quad. With `shared` the quads share their nodes; else each
/// triangle has its own, as from an STL file, and with a `crack` those of every second quad stand off.
zRegion_fe tube(int rows, int around, bool shared, double crack = 0) {
    const std::int32_t triangles = 2 * rows * around;
    const std::int32_t nodes = shared ? (rows + 1) * around : 3 * triangles;
    auto zone = std::make_unique<zBlock_fe>(nodes, 4 * triangles, triangles);
    for (const char* const name : {"x", "y", "z"}) {
        zone->addVariable(name);
    }
    std::int32_t used = 0;
    const auto put = [&](int row, int column, double shift) {
        const double u = 6.283185307179586 * (column % around) / around;
        const double r = 1 + 0.2 * std::sin(0.02 * row);
        const std::int32_t node = shared ? row * around + column % around : used++;
        const auto at = static_cast<std::size_t>(node);
        zone->variables[0]->data[at] = 10.0 * row / rows;
        zone->variables[1]->data[at] = r * std::cos(u) + shift;
        zone->variables[2]->data[at] = r * std::sin(u) + shift;
        return node;
    };
    auto entry = zone->connectivity.begin();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < around; ++column) {
            const double shift = column % 2 == 0 ? 0 : crack;
            for (const auto& [i, j] : {std::pair(0, 0), {0, 1}, {1, 0}, {-1, 0}, {1, 0}, {0, 1}, {1, 1}, {-1, 0}}) {
                *entry++ = i < 0 ? -1 : put(row + i, column + j, shift);
            }
        }
    }
    zRegion_fe region;
    region.blocks.push_back(std::move(zone));
    return region;
}

SlicePlan planOf(std::int32_t planes) {
    SlicePlan plan;
    plan.planes = planes;
    plan.border = 0.1;
    return plan;
}

/// Arguments: triangles; 1 for shared nodes. 100 planes.
void slice(benchmark::State& state) {
    const int side = static_cast<int>(std::sqrt(static_cast<double>(state.range(0)) / 2));
    const zRegion_fe body = tube(side, side, state.range(1) == 1);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(sliceSurface(body, planOf(100)).sections.data());
    }
    state.SetItemsProcessed(state.iterations() * 2 * side * side);
}
BENCHMARK(slice)
    ->ArgNames({"triangles", "shared"})
    ->Args({10000, 1})
    ->Args({100000, 1})
    ->Args({1000000, 1})
    ->Args({1000000, 0})
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

/// A million triangles; argument: planes. 28 million points come out for 20,000 of them.
void slicePlanes(benchmark::State& state) {
    const zRegion_fe body = tube(707, 707, true);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(sliceSurface(body, planOf(static_cast<std::int32_t>(state.range(0)))).sections.data());
    }
}
BENCHMARK(slicePlanes)
    ->ArgName("planes")
    ->Arg(1000)
    ->Arg(20000)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// The least that 100 planes can cost: each triangle's range of planes, and where these meet two of its edges. Nothing
/// is chained or kept.
void bareSlice(benchmark::State& state) {
    const int side = static_cast<int>(std::sqrt(static_cast<double>(state.range(0)) / 2));
    const zRegion_fe body = tube(side, side, true);
    const zBlock_fe& zone = *body.blocks[0];
    constexpr int planes = 100;
    constexpr double step = 10.0 / (planes - 1);
    for ([[maybe_unused]] auto _ : state) {
        zVec<double> sum;
        for (std::size_t i = 0; i < zone.connectivity.size(); i += 4) {
            std::array<zVec<double>, 3> corners;
            for (std::size_t k = 0; k < 3; ++k) {
                const auto node = static_cast<std::size_t>(zone.connectivity[i + k]);
                corners[k] = {zone.variables[0]->data[node], zone.variables[1]->data[node],
                              zone.variables[2]->data[node]};
            }
            std::sort(corners.begin(), corners.end(), [](const auto& a, const auto& b) { return a.x < b.x; });
            const auto end = static_cast<int>(std::ceil(corners[2].x / step));
            for (int plane = static_cast<int>(std::ceil(corners[0].x / step)); plane < end; ++plane) {
                const double x = plane * step;
                const auto meet = [x](const zVec<double>& a, const zVec<double>& b) {
                    return a + (b - a) * ((x - a.x) / (b.x - a.x));
                };
                sum = sum + meet(corners[0], corners[2]);
                sum = sum + (x < corners[1].x ? meet(corners[0], corners[1]) : meet(corners[1], corners[2]));
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(bareSlice)->ArgName("triangles")->Arg(1000000)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

/// Arguments: pieces in a plane; 1 to join them all, else none.
void sliceCracked(benchmark::State& state) {
    const zRegion_fe body = tube(4, static_cast<int>(state.range(0)), false, 1e-6);
    SlicePlan plan = planOf(3);
    plan.precision = state.range(1) == 1 ? 1e-5 : 1e-9;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(sliceSurface(body, plan).sections.data());
    }
}
BENCHMARK(sliceCracked)
    ->ArgNames({"pieces", "join"})
    ->Args({1000, 1})
    ->Args({10000, 1})
    ->Args({100000, 1})
    ->Args({10000, 0})
    ->Args({100000, 0})
    ->Unit(benchmark::kMillisecond);

/// 20,000 lines of 100 points to 50; argument: 1 for the spline.
void linesToGrid(benchmark::State& state) {
    Patch lines;
    for (int n = 0; n < 20000; ++n) {
        PointList line;
        for (int m = 0; m < 100; ++m) {
            line.push_back({0.001 * n, std::cos(0.06 * m), std::sin(0.06 * m) + 0.0001 * n});
        }
        lines.push_back(line);
    }
    const PatchList model = {lines};
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(velmora::linesToGrid(model, 50, state.range(0) == 1).data());
    }
}
BENCHMARK(linesToGrid)->ArgName("spline")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

/// The splitting and keeping of the knife alone; argument: triangles. The plane stands along the tube.
void knife(benchmark::State& state) {
    const int side = static_cast<int>(std::sqrt(static_cast<double>(state.range(0)) / 2));
    const zRegion_fe body = tube(side, side, true);
    KnifePlane plane;
    plane.axis = 1;
    plane.section = 0.1;
    while (state.KeepRunning()) {
        state.PauseTiming();
        zRegion_fe copy;
        copyRegion(body, copy);
        state.ResumeTiming();
        splitZones(copy, plane);
        keepSide(copy, plane, Side::Before);
        benchmark::DoNotOptimize(copy.blocks.data());
    }
    state.SetItemsProcessed(state.iterations() * 2 * side * side);
}
BENCHMARK(knife)->ArgName("triangles")->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmora
