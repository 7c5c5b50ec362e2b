// What the view and the document do to a model of two million points: both display lists, a pick under the mouse and
// the snapshot for undo. The bare forms beside them are the least that each can cost: a pass over the points, and a
// copy of them into memory that is there already.

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "draw_lists.h"
#include "picking.h"

namespace {

using namespace velmora;

constexpr int patchCount = 1000;
constexpr int sectionCount = 50;
constexpr int pointCount = 40;
constexpr std::int64_t points = std::int64_t{patchCount} * sectionCount * pointCount;

PatchList makeModel() {
    PatchList patches(patchCount, Patch(sectionCount));
    for (int k = 0; k < patchCount; ++k) {
        for (int n = 0; n < sectionCount; ++n) {
            PointList& section = patches[static_cast<std::size_t>(k)][static_cast<std::size_t>(n)];
            section.reserve(pointCount);
            for (int m = 0; m < pointCount; ++m) {
                const double u = 0.1 * n;
                const double v = 0.15 * m;
                section.emplace_back(k + std::cos(u) * std::cos(v), std::sin(u) * std::cos(v), -std::sin(v) / 3.0);
            }
        }
    }
    return patches;
}

struct Fixture {
    test::RecordingUi ui;
    VelmoraDoc doc{ui, "."};

    Fixture() {
        doc.onNewDocument();
        doc.patches = makeModel();
        doc.checkRegularity(doc.patches);
        doc.updateBounds();
    }
};

/// A fresh document for each benchmark: none pays for what another left behind.
VelmoraDoc& freshDocument(Fixture& fixture) {
    fixture.doc.undoPatches = {};
    return fixture.doc;
}

Fixture& fixture() {
    static Fixture instance;
    return instance;
}

/// `again`: into the memory of the list before, as the view does at each redraw.
void buildList(benchmark::State& state, int number, bool again) {
    const VelmoraDoc& doc = fixture().doc;
    DrawList list;
    for ([[maybe_unused]] auto _ : state) {
        list = again ? buildDrawList(doc, number, std::move(list)) : buildDrawList(doc, number);
        benchmark::DoNotOptimize(list.vertices.data());
    }
    state.counters["vertices"] = static_cast<double>(list.vertices.size());
    state.counters["batches"] = static_cast<double>(list.batches.size());
    state.SetItemsProcessed(state.iterations() * points);
}

void wireList(benchmark::State& state) {
    buildList(state, 1, true);
}

void wireListAnew(benchmark::State& state) {
    buildList(state, 1, false);
}

void surfaceList(benchmark::State& state) {
    buildList(state, 2, true);
}

void surfaceListAnew(benchmark::State& state) {
    buildList(state, 2, false);
}

void wireListWithOverlays(benchmark::State& state) {
    fixture().doc.showFirstPoints = fixture().doc.showDoublePoints = true;
    buildList(state, 1, true);
    fixture().doc.showFirstPoints = fixture().doc.showDoublePoints = false;
}

void normalsOnly(benchmark::State& state) {
    const PatchList& patches = freshDocument(fixture()).patches;
    for ([[maybe_unused]] auto _ : state) {
        zVec<double> sum;
        for (const Patch& patch : patches) {
            for (std::size_t n = 0; n < patch.size(); ++n) {
                for (std::size_t m = 0; m < patch[n].size(); ++m) {
                    sum = sum + gridNormal(patch, n, m);
                }
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * points);
}

void barePass(benchmark::State& state) {
    const PatchList& patches = freshDocument(fixture()).patches;
    for ([[maybe_unused]] auto _ : state) {
        double sum = 0.0;
        for (const Patch& patch : patches) {
            for (const PointList& section : patch) {
                for (const zVec<double>& point : section) {
                    sum += point.x + point.y + point.z;
                }
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * points);
}

void pointPick(benchmark::State& state) {
    const PatchList& patches = freshDocument(fixture()).patches;
    const PixelLine line{{500.3, 0.4, 3000.0}, {500.1, 0.2, -9000.0}};
    for ([[maybe_unused]] auto _ : state) {
        const auto nearest = nearestGridPoint(patches, line, {});
        benchmark::DoNotOptimize(nearest->distance);
    }
    state.SetItemsProcessed(state.iterations() * points);
}

void bareCopy(benchmark::State& state) {
    const PatchList& patches = freshDocument(fixture()).patches;
    PatchList copy = patches;
    for ([[maybe_unused]] auto _ : state) {
        copy = patches;
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetItemsProcessed(state.iterations() * points);
}

// All of each snapshot but the first is shared with the one before.
void undoSnapshot(benchmark::State& state) {
    VelmoraDoc& doc = freshDocument(fixture());
    for ([[maybe_unused]] auto _ : state) {
        doc.SavePatchUndo();
        benchmark::DoNotOptimize(doc.undoPatches.size());
    }
    state.SetItemsProcessed(state.iterations() * points);
}

void listNumber(benchmark::State& state) {
    VelmoraDoc& doc = freshDocument(fixture());
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(listNumberFor(doc));
    }
}

BENCHMARK(barePass)->Unit(benchmark::kMillisecond);
BENCHMARK(wireList)->Unit(benchmark::kMillisecond);
BENCHMARK(wireListAnew)->Unit(benchmark::kMillisecond);
BENCHMARK(wireListWithOverlays)->Unit(benchmark::kMillisecond);
BENCHMARK(normalsOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(surfaceList)->Unit(benchmark::kMillisecond);
BENCHMARK(surfaceListAnew)->Unit(benchmark::kMillisecond);
BENCHMARK(pointPick)->Unit(benchmark::kMillisecond);
BENCHMARK(bareCopy)->Unit(benchmark::kMillisecond);
BENCHMARK(undoSnapshot)->Unit(benchmark::kMillisecond);
BENCHMARK(listNumber)->Unit(benchmark::kMicrosecond);

} // namespace
