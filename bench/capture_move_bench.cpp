// What one move of the mouse costs while a section, a line or a point is captured: the pick, what it highlights, and
// the frame that is painted after it, without the drawing itself. It must not grow with the model.

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "FakeSurface.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"

namespace {

using namespace velmora;

constexpr std::int64_t side = 200; // of a patch, in points

/// Wavy sheets of 40,000 points each, side by side.
PatchList sheets(std::int64_t points) {
    PatchList list;
    for (std::int64_t k = 0; k < points / (side * side); ++k) {
        Patch patch(static_cast<std::size_t>(side));
        for (int n = 0; n < static_cast<int>(side); ++n) {
            for (int m = 0; m < static_cast<int>(side); ++m) {
                patch[static_cast<std::size_t>(n)].emplace_back(2.0 * static_cast<double>(k) + 0.01 * n, 0.1 * m,
                                                                0.2 * std::sin(0.05 * n) * std::cos(0.03 * m));
            }
        }
        list.push_back(std::move(patch));
    }
    return list;
}

struct Desk {
    test::RecordingUi ui;
    VelmoraDoc document{ui, "."};
    test::FakeSurface surface;
    VelmoraView view{document, surface};

    explicit Desk(std::int64_t points) {
        document.onNewDocument();
        document.patches = sheets(points);
        document.checkRegularity(document.patches);
        view.OnSize(800, 600);
        document.updateBounds();
        view.OnDraw();
    }
};

void moves(benchmark::State& state, void (VelmoraDoc::*capture)()) {
    const auto desk = std::make_unique<Desk>(state.range(0));
    (desk->document.*capture)();
    desk->view.OnLeftButtonDown({400, 300});
    desk->view.OnDraw();
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        ++i;
        desk->view.OnMouseMove({100 + i * 37 % 600, 200 + i * 23 % 200});
        desk->view.OnDraw();
        desk->ui.transcript.clear();
    }
}

void sectionMove(benchmark::State& state) {
    moves(state, &VelmoraDoc::CaptureSection);
}
void lineMove(benchmark::State& state) {
    moves(state, &VelmoraDoc::CaptureLine);
}
void pointMove(benchmark::State& state) {
    moves(state, &VelmoraDoc::CapturePoint);
}

BENCHMARK(sectionMove)->Arg(200000)->Arg(2000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(lineMove)->Arg(200000)->Arg(2000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(pointMove)->Arg(200000)->Arg(2000000)->Unit(benchmark::kMicrosecond);

} // namespace
