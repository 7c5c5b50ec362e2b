// What a frame costs where the processor draws it, in a window of 1280 by 800: of a model that stands still while the
// mouse moves over it, of one that is drawn anew, and of the coarse form of it that shows while it turns. The sheets
// are the worst case: all of them are seen through the wires of their backs.

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

/// A ball of patches of 40,000 points each, from pole to pole; its front is outside, or inside.
PatchList patchedBall(int points, bool insideOut) {
    const int count = points / (side * side);
    PatchList list;
    for (int k = 0; k < count; ++k) {
        Patch patch(static_cast<std::size_t>(side));
        for (int n = 0; n < side; ++n) {
            for (int m = 0; m < side; ++m) {
                const double u = 3.14159265358979 * (k + n / (side - 1.0)) / count;
                const double v = (insideOut ? 2 : -2) * 3.14159265358979 * m / (side - 1.0);
                patch[static_cast<std::size_t>(n)].emplace_back(std::sin(u) * std::cos(v), std::sin(u) * std::sin(v),
                                                                std::cos(u));
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

enum class Model { Triangles, Ball, InsideOut, Sheets };

struct Desk {
    test::OffscreenGl gl;
    test::RecordingUi ui;
    VelmoraDoc document{ui, "."};
    test::OffscreenSurface surface{width, height};
    VelmoraView view{document, surface};

    Desk(int points, Model model) {
        document.onNewDocument();
        if (model == Model::Triangles) {
            document.feRegion.blocks.push_back(ball(points));
            document.structureKind = StructureKind::Unstructured;
        } else {
            document.patches = model == Model::Sheets ? sheets(points) : patchedBall(points, model == Model::InsideOut);
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

enum class Act { Mouse, DrawAnew, Turn };

void frames(benchmark::State& state, Model model, bool surface, Act act) {
    Desk desk(static_cast<int>(state.range(0)), model);
    desk.document.surfaceMode = surface;
    desk.document.redraw();
    desk.view.OnDraw();
    desk.view.BeginNavigation(ModeRotate, {300, 300});
    if (act == Act::Turn) {
        desk.view.Navigate({305, 300}); // makes the coarse form
        desk.view.OnDraw();
    }
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        ++i;
        if (act == Act::Mouse) {
            desk.view.OnMouseMove({300 + i % 2 * 50, 300});
        } else if (act == Act::Turn) {
            desk.view.Navigate({300 + i % 2 * 5, 300});
        } else {
            desk.view.modelRotation = desk.view.modelRotation * rotationMatrix(1.0, {0, 1, 0});
        }
        desk.view.OnDraw();
    }
}

void triangleFrame(benchmark::State& state) {
    frames(state, Model::Triangles, true, Act::DrawAnew);
}
void triangleMouse(benchmark::State& state) {
    frames(state, Model::Triangles, true, Act::Mouse);
}
void triangleTurn(benchmark::State& state) {
    frames(state, Model::Triangles, true, Act::Turn);
}
void gridFrame(benchmark::State& state) {
    frames(state, Model::Ball, true, Act::DrawAnew);
}
void gridMouse(benchmark::State& state) {
    frames(state, Model::Ball, true, Act::Mouse);
}
void gridTurn(benchmark::State& state) {
    frames(state, Model::Ball, true, Act::Turn);
}
void insideOutFrame(benchmark::State& state) {
    frames(state, Model::InsideOut, true, Act::DrawAnew);
}
void sheetsFrame(benchmark::State& state) {
    frames(state, Model::Sheets, true, Act::DrawAnew);
}
void wireFrame(benchmark::State& state) {
    frames(state, Model::Ball, false, Act::DrawAnew);
}
void wireTurn(benchmark::State& state) {
    frames(state, Model::Ball, false, Act::Turn);
}

BENCHMARK(triangleFrame)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(triangleMouse)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(triangleTurn)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(gridFrame)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(gridMouse)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(gridTurn)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(insideOutFrame)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(sheetsFrame)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(wireFrame)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(wireTurn)->Arg(100000)->Arg(2000000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

} // namespace
