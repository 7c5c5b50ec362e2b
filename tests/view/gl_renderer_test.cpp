#include "GlRenderer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <set>

#include "DialogValues.h"
#include "Digest.h"
#include "OffscreenGl.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "arranged_capture.h"
#include "pixel_of.h"
#include "small_models.h"
#include "value_colours.h"

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

TEST(GlRenderer, TheAxesKeepTheirShapeSeenFromVeryNear) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.runViewCommand("view.perspective");
    const auto axes = [&rig] {
        rig.view.OnDraw();
        std::set<std::pair<int, int>> places;
        for (int y = 0; y < 80; ++y) {
            for (int x = 0; x < 80; ++x) {
                const Rgb colour = rig.surface.pixel({x, y});
                if (colour == Rgb{255, 0, 0} || colour == Rgb{0, 255, 0}) {
                    places.emplace(x, y);
                }
            }
        }
        return places;
    };
    const auto before = axes();
    EXPECT_GT(before.size(), 60U) << "two arms of 36 pixels";
    rig.view.zoomFactor = 1e-3;
    rig.view.UpdateProjection();
    EXPECT_EQ(axes(), before);
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

// Two places 2 apart: the label "2", a block of 8 by 8, stands 10 to the right of their middle and 6 above it, in
// yellow on a black ground that is larger by 3.
TEST(GlRenderer, ALabelOfWhatIsMeasuredStandsBesideItsPlaceOnBlack) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.runViewCommand("view.measure");
    for (const zVec<double>& place : {zVec<double>(1, 2, 0), {3, 2, 0}}) {
        const PixelPoint pixel = pixelOf(rig.view, rig.document, place);
        rig.view.OnLeftButtonDown(pixel);
        rig.view.OnLeftButtonUp(pixel);
    }
    rig.view.OnDraw();
    const PixelPoint middle = pixelOf(rig.view, rig.document, {2, 2, 0});
    const auto at = [&](int right, int up) { return rig.surface.pixel({middle.x + right, middle.y - up}); };
    const Rgb yellow{255, 255, 0};
    const Rgb black{0, 0, 0};
    EXPECT_EQ(at(14, 10), yellow);
    EXPECT_EQ(at(11, 8), yellow);
    EXPECT_EQ(at(16, 12), yellow);
    EXPECT_EQ(at(9, 10), black);
    EXPECT_EQ(at(19, 10), black);
    EXPECT_EQ(at(14, 16), black);
    EXPECT_EQ(at(14, 4), black);
    EXPECT_EQ(at(4, 10), frontBlue) << "left of it the model";
    EXPECT_EQ(at(24, 10), frontBlue);
}

// The back of one plate, its edges 9 pixels thick, just behind the front of another one: nothing of it shows.
TEST(GlRenderer, ThickLinesOfTheBackStayBehindTheFrontThatHidesThem) {
    Patch front = flatPatch(5, 5);
    Patch back = flatPatch(5, 5);
    std::reverse(back.begin(), back.end());
    for (PointList& section : back) {
        for (zVec<double>& point : section) {
            point.z -= 0.01;
        }
    }
    DrawnRig rig({front, back});
    rig.surface.scale = 9.0;
    for (const double turn : {0.0, 40.0, 65.0}) {
        rig.view.SetEulerView({turn, 0.0, 0.0});
        const Rgb alone = rig.at({1.5, 1.5, 0});
        for (const zVec<double>& place : {zVec<double>(1.5, 2, 0), {1.5, 2.03, 0}, {1.5, 1.97, 0}, {2, 1.5, 0}}) {
            const Rgb seen = rig.at(place);
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_NEAR(seen.at(i), alone.at(i), 6) << turn << ' ' << place.x << ' ' << place.y;
            }
        }
    }
}

/// All cells of the plate are squares: aspect 1, the upper one of two bands up to 2.
void colourByAspect(DrawnRig& rig) {
    CColours& colours = rig.document.dialogs->colours;
    colours.quantity = CColours::firstOfReport;
    colours.bands = 2;
    colours.automatic = false;
    colours.least = 0.0;
    colours.most = 2.0;
    rig.document.redrawPicture();
}

TEST(GlRenderer, AColourThatStandsForAValueIsReadFromAnySide) {
    DrawnRig rig({flatPatch(5, 5)});
    rig.view.runViewCommand("view.fillBackFaces");
    colourByAspect(rig);
    const Colour band = ValueScale(0.0, 2.0, 2).colourOf(1);
    const double degree = std::numbers::pi / 180.0;
    for (const double turn : {0.0, 30.0, 60.0, 75.0, 85.0, 105.0, 150.0, 180.0}) {
        rig.view.SetEulerView({turn, 0.0, 0.0});
        const Rgb seen = rig.at({1.5, 1.5, 0});
        // Four fifths wherever the face looks, and the light's share; it shines from near the eye.
        const double share = 0.8 + 0.2 * std::abs(std::cos(turn * degree));
        for (std::size_t i = 0; i < 3; ++i) {
            const double full = 255.0 * static_cast<double>(band.at(i));
            EXPECT_NEAR(seen.at(i), share * full, 4.0) << turn;
            EXPECT_GE(seen.at(i), 0.8 * full - 1.0) << turn;
            EXPECT_LE(seen.at(i), full + 1.0) << turn;
        }
    }
}

TEST(GlRenderer, OtherSurfacesAreShadedAsEverBesideOneThatIsRead) {
    PatchList patches{flatPatch(5, 5), flatPatch(5, 5)};
    for (PointList& section : patches[1]) {
        for (zVec<double>& point : section) {
            point.x += 5.0;
        }
    }
    DrawnRig rig(patches);
    rig.view.runViewCommand("view.fillBackFaces");
    const zVec<double> other{6.5, 1.5, 0};
    const std::vector<zVec<double>> turns{{0, 0, 0}, {60, 0, 0}, {120, 0, 0}, {180, 0, 0}};
    const auto seen = [&] {
        std::vector<Rgb> colours;
        for (const zVec<double>& turn : turns) {
            rig.view.SetEulerView(turn);
            colours.push_back(rig.at(other));
        }
        return colours;
    };
    const std::vector<Rgb> before = seen();
    // The first patch alone was compared, and has a value.
    rig.document.foundComparison = Comparison{{true, false}, std::vector<double>(25, 1.0), 1.0, 1.0, 0.0, {}};
    rig.document.comparedDigest = geometryDigest(rig.document.patches, rig.document.feRegion);
    rig.document.dialogs->colours.quantity = 2;
    rig.document.redrawPicture();
    ASSERT_FALSE(rig.view.list().batches.empty());
    ASSERT_TRUE(rig.view.list().batches.front().readable);
    EXPECT_EQ(seen(), before);
}

/// A plate of 20 by 20 squares; with a column doubled in each stretch of its strips their faces are looked at one by
/// one.
Patch finePlate(bool doubled) {
    Patch plate = flatPatch(21, 21);
    for (PointList& section : plate) {
        for (std::size_t m = 15; doubled && m > 0; m -= 5) {
            section.insert(section.begin() + static_cast<std::ptrdiff_t>(m), section[m]);
        }
    }
    return plate;
}

/// A plate seen from behind, then with its edges from the front, then with both.
std::vector<std::vector<std::uint8_t>> picturesOf(const Patch& plate) {
    DrawnRig rig({plate});
    std::vector<std::vector<std::uint8_t>> pictures;
    const auto take = [&](const zVec<double>& angles) {
        rig.view.SetEulerView(angles);
        rig.view.OnDraw();
        pictures.push_back(rig.surface.pixels());
    };
    take({10.0, 160.0, 20.0});
    rig.view.runViewCommand("view.edges");
    take({10.0, 30.0, 20.0});
    rig.view.runViewCommand("view.perspective");
    rig.view.runViewCommand("view.fillBackFaces");
    take({10.0, 160.0, 20.0});
    return pictures;
}

/// Whether a pixel of one picture is found in the other, there or beside it: a line between two rows of pixels goes to
/// either, by the end that it is drawn from.
bool isFoundNear(const std::vector<std::uint8_t>& one, const std::vector<std::uint8_t>& other, int x, int y) {
    const auto value = [](const std::vector<std::uint8_t>& picture, int column, int row, int channel) {
        const std::size_t pixel = static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column);
        return static_cast<int>(picture[pixel * 4 + static_cast<std::size_t>(channel)]);
    };
    for (int row = std::max(0, y - 1); row <= std::min(side - 1, y + 1); ++row) {
        for (int column = std::max(0, x - 1); column <= std::min(side - 1, x + 1); ++column) {
            bool same = true;
            for (int channel = 0; channel < 3; ++channel) {
                same = same && std::abs(value(one, x, y, channel) - value(other, column, row, channel)) <= 8;
            }
            if (same) {
                return true;
            }
        }
    }
    return false;
}

TEST(GlRenderer, EdgesDrawnOnceLookLikeTheOutlinesOfTheirFaces) {
    const auto once = picturesOf(finePlate(false));
    const auto outlines = picturesOf(finePlate(true));
    for (std::size_t i = 0; i < once.size(); ++i) {
        int missing = 0;
        int different = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                missing += isFoundNear(outlines[i], once[i], x, y) ? 0 : 1;
                const std::size_t at = static_cast<std::size_t>(y * side + x) * 4;
                different += once[i][at + 2] == outlines[i][at + 2] ? 0 : 1;
            }
        }
        EXPECT_LT(missing, 10) << i << ": at the rim the last pixel of a line is there from one end alone";
        // Beside a face without area the context leaves some pixels of its outlines out.
        EXPECT_LT(different, side * side / 40) << i;
        EXPECT_GT(std::set<std::uint8_t>(once[i].begin(), once[i].end()).size(), 3U) << "something is drawn";
    }
    EXPECT_NE(once[0], once[1]);
    EXPECT_NE(once[0], once[2]);
}

TEST(GlRenderer, EdgesFadeWhereTheyWouldHideTheSurface) {
    // Of 300 squares across 200 pixels no edge is seen; of 60 each takes part of its colour.
    const auto darkest = [](int squares) {
        DrawnRig rig({flatPatch(squares + 1, squares + 1)});
        const auto bare = rig.surface.pixels();
        rig.view.runViewCommand("view.edges");
        rig.view.OnDraw();
        const auto pixels = rig.surface.pixels();
        int least = 255;
        for (std::size_t i = 2; i < pixels.size(); i += 4) {
            least = bare[i] > 0 ? std::min<int>(least, pixels[i]) : least;
        }
        return least;
    };
    EXPECT_EQ(darkest(300), 255);
    EXPECT_GT(darkest(60), 90);
    EXPECT_LT(darkest(60), 250);
    EXPECT_LT(darkest(10), 78);
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
