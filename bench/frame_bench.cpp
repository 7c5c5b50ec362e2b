// What a frame costs where the processor draws it, in a window of 1280 by 800: of a model that stands still while the
// mouse moves over it, and of one that is drawn anew, because it turns or comes to rest.

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "OffscreenGl.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "small_zones.h"

namespace {

using namespace velmora;

constexpr int width = 1280;
constexpr int height = 800;
constexpr int side = 200; // of a patch, in points

/// Wavy sheets of 40,000 points each, one above the other.
PatchList sheets(int points) {
    PatchList list;
    for (int k = 0; k < points / (side * side); ++k) {
        Patch patch(static_cast<std::size_t>(side));
        for (int n = 0; n < side; ++n) {
            for (int m = 0; m < side; ++m) {
                patch[static_cast<std::size_t>(n)].emplace_back(
                    0.01 * n, 0.01 * m, 0.02 * k + 0.2 * std::sin(0.05 * n) * std::cos(0.03 * m));
            }
        }
        list.push_back(std::move(patch));
    }
    return list;
}

/// A ball of about that many triangles.
std::unique_ptr<zBlock_fe> ball(int triangles) {
    const int rows = static_cast<int>(std::sqrt(triangles / 4.0));
    const int columns = 2 * rows;
    std::vector<zVec<double>> nodes;
    std::vector<std::int32_t> corners;
    for (int i = 0; i <= rows; ++i) {
        for (int j = 0; j <= columns; ++j) {
            const double u = 3.14159265358979 * i / rows;
            const double v = 2 * 3.14159265358979 * j / columns;
            nodes.emplace_back(std::sin(u) * std::cos(v), std::sin(u) * std::sin(v), std::cos(u));
        }
    }
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            const int a = i * (columns + 1) + j;
            const int b = a + columns + 1;
            corners.insert(corners.end(), {a, b, b + 1, a, b + 1, a + 1});
        }
    }
    return test::triangleZone("ball", nodes, corners);
}

struct Desk {
    test::OffscreenGl gl;
    test::RecordingUi ui;
    VelmoraDoc document{ui, "."};
    test::OffscreenSurface surface{width, height};
    VelmoraView view{document, surface};

    explicit Desk(int points, bool triangles) {
        document.onNewDocument();
        if (triangles) {
            document.feRegion.blocks.push_back(ball(points));
            document.structureKind = StructureKind::Unstructured;
        } else {
            document.patches = sheets(points);
            document.checkRegularity(document.patches);
        }
        view.OnSize(width, height);
        document.updateBounds();
        document.surfaceMode = true;
        document.redraw();
        view.SetEulerView({10, 20, 20});
        view.OnDraw();
    }
};

/// `turns`: the model is seen from another side in each frame.
void frames(benchmark::State& state, bool triangles, bool surface, bool turns) {
    Desk desk(static_cast<int>(state.range(0)), triangles);
    desk.document.surfaceMode = surface;
    desk.document.redraw();
    desk.view.OnDraw();
    desk.view.OnDraw();
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        ++i;
        if (turns) {
            desk.view.modelRotation = desk.view.modelRotation * rotationMatrix(1.0, {0, 1, 0});
        } else {
            desk.view.OnMouseMove({300 + i % 2 * 50, 300});
        }
        desk.view.OnDraw();
    }
}

void triangleFrame(benchmark::State& state) {
    frames(state, true, true, true);
}
void triangleMouse(benchmark::State& state) {
    frames(state, true, true, false);
}
void gridFrame(benchmark::State& state) {
    frames(state, false, true, true);
}
void gridMouse(benchmark::State& state) {
    frames(state, false, true, false);
}
void wireFrame(benchmark::State& state) {
    frames(state, false, false, true);
}
void wireMouse(benchmark::State& state) {
    frames(state, false, false, false);
}

BENCHMARK(triangleFrame)->Arg(1000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(triangleMouse)->Arg(1000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(gridFrame)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(gridMouse)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(wireFrame)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(wireMouse)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

} // namespace
