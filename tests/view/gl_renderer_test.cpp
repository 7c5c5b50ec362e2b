#include "GlRenderer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OffscreenGl.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "arranged_capture.h"
#include "pixel_of.h"
#include "small_models.h"

namespace velmora {
namespace {

using namespace test;
using Rgb = std::array<int, 3>;
using ::testing::AnyOf;
using ::testing::Contains;

constexpr int side = 200;

/// A view that is drawn without a display.
struct DrawnRig {
    OffscreenGl gl;
    RecordingUi ui;
    VelmoraDoc document{ui, "."};
    OffscreenSurface surface{side, side};
    VelmoraView view{document, surface};

    explicit DrawnRig(const PatchList& patches) {
        document.onNewDocument();
        view.OnSize(side, side);
        document.patches = patches;
        document.checkRegularity(document.patches);
        document.updateBounds();
        document.surfaceMode = true;
        document.redraw();
        view.runViewCommand("view.orthographic");
        view.OnDraw();
    }
    Rgb at(const zVec<double>& point) {
        view.OnDraw();
        return surface.pixel(pixelOf(view, document, point));
    }
    /// The colours around a place: a line between two rows of pixels may go to either.
    std::vector<Rgb> around(const zVec<double>& point) {
        view.OnDraw();
        const PixelPoint middle = pixelOf(view, document, point);
        std::vector<Rgb> colours;
        for (int y = -1; y <= 1; ++y) {
            for (int x = -1; x <= 1; ++x) {
                colours.push_back(surface.pixel({middle.x + x, middle.y + y}));
            }
        }
        return colours;
    }
    int draws() const { return surface.renderer.modelDraws(); }
};

/// The colour of a patch's front seen straight on: ambient 0.2 of the material and 0.04 of the scene, and its own.
const Rgb frontBlue{189, 189, 255};

/// Two plates one behind the other, 0 to 4 each way; the near one at z = 1.
PatchList plates() {
    PatchList list{flatPatch(5, 5), flatPatch(5, 5)};
    for (PointList& section : list[1]) {
        for (zVec<double>& point : section) {
            point.z = 1.0;
        }
    }
    return list;
}

// ---- The kept picture -----------------------------------------------------------------------------------------------

TEST(GlRenderer, DrawsTheModelOnceForAllThatHappensOverIt) {
    DrawnRig rig({flatPatch(5, 5)});
    ASSERT_EQ(rig.draws(), 1);
    const auto first = rig.surface.pixels();
    EXPECT_EQ(rig.at({1.5, 1.5, 0}), frontBlue);
    rig.view.OnMouseMove({50, 50});
    rig.view.OnMouseMove({90, 50});
    rig.view.OnDraw();
    EXPECT_EQ(rig.surface.pixels(), first) << "the picture is the same";
    arranged(rig.document).pointPicked = true;
    arranged(rig.document).capturedPointPos = {2, 2, 0};
    rig.view.rubberBandShown = true;
    rig.view.rubberStart = {10, 10};
    rig.view.rubberEnd = {60, 60};
    EXPECT_EQ(rig.at({2, 2, 0}), (Rgb{255, 255, 255})) << "over it";
    EXPECT_EQ(rig.draws(), 1);
    arranged(rig.document).pointPicked = false;
    rig.view.rubberBandShown = false;
    rig.view.OnDraw();
    EXPECT_EQ(rig.surface.pixels(), first) << "what was over it leaves no trace";
    EXPECT_EQ(rig.draws(), 1);
}

TEST(GlRenderer, DrawsItAnewWhenItOrTheCameraChanges) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.OnWheel({100, 100}, 1.0);
    rig.view.OnDraw();
    EXPECT_EQ(rig.draws(), 2);
    rig.document.redraw();
    rig.view.OnDraw();
    EXPECT_EQ(rig.draws(), 3);
    rig.view.runViewCommand("view.edges");
    rig.view.OnDraw();
    EXPECT_EQ(rig.draws(), 4);
    rig.view.runViewCommand("view.fillBackFaces");
    rig.view.OnDraw();
    EXPECT_EQ(rig.draws(), 5);
    rig.document.CaptureSection();
    rig.document.toggleSurface();
    rig.view.OnDraw();
    const int wires = rig.draws();
    rig.view.OnLeftButtonDown(pixelOf(rig.view, rig.document, {1, 1, 0}));
    rig.view.OnDraw();
    EXPECT_GT(rig.draws(), wires) << "the captured section is part of the wire picture";
}

TEST(GlRenderer, TellsHowLongTheModelTook) {
    DrawnRig rig({flatPatch(5, 5)});
    EXPECT_GT(rig.surface.renderer.modelTime(), 0.0);
}

TEST(GlRenderer, DrawsAfterAReleaseAsBefore) {
    DrawnRig rig({flatPatch(5, 5)});
    const auto first = rig.surface.pixels();
    rig.surface.renderer.release();
    rig.view.OnDraw();
    EXPECT_EQ(rig.surface.pixels(), first);
    EXPECT_EQ(rig.draws(), 2);
}

TEST(GlRenderer, SmoothsBordersWhereItHasTheSamples) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.SetEulerView({10, 20, 30});
    const auto shades = [&rig] {
        rig.view.OnDraw();
        std::set<int> found;
        const auto pixels = rig.surface.pixels();
        for (std::size_t i = 2; i < pixels.size(); i += 4) {
            found.insert(pixels[i]);
        }
        return found.size();
    };
    const auto rough = shades();
    rig.surface.renderer.useSamples(4);
    EXPECT_GT(shades(), rough) << "between the plate and the ground";
    rig.surface.renderer.useSamples(0);
    EXPECT_EQ(shades(), rough);
}

// ---- Surfaces -------------------------------------------------------------------------------------------------------

TEST(GlRenderer, EdgesAreDarkerThanTheSurfaceAndOnlyThere) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.runViewCommand("view.edges");
    // Three tenths of the patch's colour, unlit; 76.5 goes to either side.
    EXPECT_THAT(rig.around({1.5, 2.0, 0}), Contains(AnyOf(Rgb{38, 38, 76}, Rgb{38, 38, 77})));
    EXPECT_EQ(rig.at({1.5, 1.5, 0}), frontBlue);
}

TEST(GlRenderer, BackFacesAreFilledInADarkerShadeOnlyWhenTheyAreToBe) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.runViewCommand("view.right");
    EXPECT_EQ(rig.at({1.5, 1.5, 0}), (Rgb{0, 0, 0}));
    EXPECT_THAT(rig.around({1.5, 2.0, 0}), Contains(frontBlue)) << "wires";
    rig.view.runViewCommand("view.fillBackFaces");
    // Half of (0.5, 0.5, 1), and 0.24 of ambient light.
    EXPECT_EQ(rig.at({1.5, 1.5, 0}), (Rgb{125, 125, 189}));
    rig.view.runViewCommand("view.left");
    EXPECT_EQ(rig.at({1.5, 1.5, 0}), frontBlue) << "the front is as ever";
}

// ---- Marks ----------------------------------------------------------------------------------------------------------

TEST(GlRenderer, AMarkOnTheSurfaceIsSeenAndBehindItDimmed) {
    DrawnRig rig(plates());
    const auto hold = [&rig](std::int32_t patch) {
        arranged(rig.document).sectionCaptured = true;
        arranged(rig.document).capturedPatch = patch;
        arranged(rig.document).capturedSection = 2;
        rig.document.redraw();
    };
    hold(1);
    EXPECT_THAT(rig.around({1.5, 2, 1}), Contains(Rgb{255, 255, 255}));
    hold(0);
    // Four tenths of white.
    EXPECT_THAT(rig.around({1.5, 2, 0}), Contains(Rgb{102, 102, 102}));
    EXPECT_THAT(rig.around({1.5, 2, 0}), ::testing::Not(Contains(Rgb{255, 255, 255})));
    rig.view.runViewCommand("view.right");
    EXPECT_THAT(rig.around({1.5, 2, 0}), Contains(Rgb{255, 255, 255})) << "from the other side it is in front";
}

TEST(GlRenderer, ACapturedPointBehindTheSurfaceIsNotLost) {
    DrawnRig rig(plates());
    arranged(rig.document).pointPicked = true;
    arranged(rig.document).capturedPointPos = {2, 2, 0};
    EXPECT_EQ(rig.at({2, 2, 0}), (Rgb{102, 102, 102}));
    arranged(rig.document).capturedPointPos = {2, 2, 1};
    EXPECT_EQ(rig.at({2, 2, 1}), (Rgb{255, 255, 255}));
}

} // namespace
} // namespace velmora
