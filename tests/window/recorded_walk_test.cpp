#include <gtest/gtest.h>

#include <QDockWidget>
#include <chrono>
#include <cstdio>
#include <optional>

#include "DocumentState.h"
#include "WindowDriver.h"
#include "large_body.h"
#include "pixel_of.h"
#include "temporary_folder.h"

// A piece of work from a scanned body to the saved grid, with mouse and keys alone, as a person does it. How long each
// step took is printed; what the screen showed is kept as pictures.

namespace velmora::test {
namespace {

constexpr int middleButton = 2;
constexpr int side = 708; // of the body: a million triangles

/// Tells how long each step took, from what the person did to what they were waiting for.
class Stopwatch {
public:
    explicit Stopwatch(WindowDriver& person) : person_(person) {}

    void step(const char* name, const std::function<void()>& act, const std::function<bool()>& done) {
        const auto begin = std::chrono::steady_clock::now();
        act();
        EXPECT_TRUE(person_.waitFor(done)) << name;
        // The program is through with what it does in one go, the paint among it. What it posts to itself is left to
        // its own loop: a message's box that opened within the question would keep the answer until somebody closes it.
        person_.ask([] {});
        person_.ask([] {});
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
        std::printf("  %-42s %6.2f s\n", name, took.count());
        EXPECT_LT(took.count(), 20.0) << name;
    }

private:
    WindowDriver& person_;
};

const DocumentState& state() {
    return WindowDriver::frame().state();
}

/// A point that is near the middle of the picture and in front of all that lie there: its section, and where it shows.
struct Front {
    std::int32_t section = -1;
    PixelPoint pixel;
};

Front frontOfTheGrid() {
    MainFrame& frame = WindowDriver::frame();
    VelmoraView& view = frame.view();
    view.ApplyModelTransform(state().modelCenter);
    const double x = 0.5 * view.viewport.width;
    const double y = 0.5 * view.viewport.height;
    Front best;
    double nearest = 2.0;
    const Patch& patch = state().patches.front();
    for (std::size_t n = 0; n < patch.size(); ++n) {
        for (const zVec<double>& point : patch[n]) {
            const auto at = projectPoint(point, view.modelViewMatrix, view.projectionMatrix, view.viewport);
            if (at && std::hypot(at->x - x, at->y - y) < 60.0 && at->z < nearest) {
                nearest = at->z;
                best = {static_cast<std::int32_t>(n), pixelOf(view, state(), point)};
            }
        }
    }
    return best;
}

void typeInto(WindowDriver& person, const QString& field, const std::string& text) {
    person.clickWidget(field);
    person.key("a", "Control_L");
    person.type(text);
}

void turnByHand(WindowDriver& person) {
    person.move(person.onView({500, 320}));
    person.press(middleButton);
    for (int i = 1; i <= 12; ++i) {
        person.move(person.onView({500 + 6 * i, 320 + 3 * i}));
    }
    person.release(middleButton);
}

TEST(RecordedWalk, FromAMillionTrianglesToTheSavedGridWithoutAModeOfNavigation) {
    const TemporaryFolder folder;
    const std::filesystem::path body = writeLargeBody(folder / "body.dat", side);
    runProgram({}, [&](WindowDriver& person) {
        person.rest = std::chrono::milliseconds(60);
        person.waitForFrame();
        Stopwatch watch(person);

        person.key("o", "Control_L");
        person.waitForBox(QStringLiteral("fileChooser"));
        person.type(body.string());
        watch.step(
            "open a million triangles", [&] { person.key("Return"); },
            [] { return QApplication::activeModalWidget() == nullptr && !state().feRegion.blocks.empty(); });
        EXPECT_EQ(person.ask([] { return state().feRegion.blocks.front()->elementCount; }), 2 * (side - 1) * side);
        watch.step(
            "oblique view", [&] { person.key("8"); }, [] { return WindowDriver::frame().view().zoomFactor != 1.0; });
        person.screenshot(QStringLiteral("walk-1-body"));

        const Matrix4 before = person.ask([] { return WindowDriver::frame().view().modelRotation; });
        watch.step(
            "turn by the middle button", [&] { turnByHand(person); },
            [before] {
                return WindowDriver::frame().view().modelRotation != before &&
                       !WindowDriver::frame().view().isNavigating();
            });
        person.screenshot(QStringLiteral("walk-2-turned"));

        person.choose({"Transformations", "Convert to", "SKL..."});
        person.waitForBox(QStringLiteral("CConvert_to_SKL"));
        typeInto(person, QStringLiteral("number"), "60");
        watch.step(
            "slice by 60 planes", [&] { person.key("Return"); },
            [] { return state().fileKind == FileKind::Skl && state().patches.size() == 1; });
        // Lines have no surface: the view says so once, and shows the lines.
        person.waitForBox(QStringLiteral("messageBox"));
        person.key("Return");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(person.ask([] { return state().patches.front().size(); }), 60U);
        person.screenshot(QStringLiteral("walk-3-slices"));

        person.choose({"Transformations", "Convert to", "APT..."});
        person.waitForBox(QStringLiteral("CConvert_SKL_to_APT"));
        typeInto(person, QStringLiteral("pointCount"), "161");
        person.clickWidget(QStringLiteral("align"));
        watch.step(
            "skin them", [&] { person.key("Return"); }, [] { return state().fileKind == FileKind::Apt; });
        person.key("s");
        EXPECT_TRUE(person.waitFor([] { return state().surfaceMode; }));
        person.screenshot(QStringLiteral("walk-4-skin"));

        person.choose({"Edit", "Lines", "Capture", "Section"});
        const Front front = person.ask(frontOfTheGrid);
        ASSERT_GE(front.section, 0);
        watch.step(
            "the section under the mouse is marked",
            [&] {
                person.move(person.onView({front.pixel.x + 2, front.pixel.y}));
                person.move(person.onView(front.pixel));
            },
            [] { return WindowDriver::frame().view().candidate().has_value(); });
        person.screenshot(QStringLiteral("walk-5-hover"));
        watch.step(
            "and captured by a click", [&] { person.click(person.onView(front.pixel)); },
            [] { return state().capture->sectionCaptured; });
        EXPECT_EQ(person.ask([] { return state().capture->capturedSection; }), front.section);

        person.click(person.onView(front.pixel), WindowDriver::rightButton);
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
        person.clickEntry(QStringLiteral("Rebreak..."));
        person.waitForBox(QStringLiteral("CRebreak"));
        person.clickWidget(QStringLiteral("regime.2"));
        typeInto(person, QStringLiteral("newCount"), "41");
        watch.step(
            "the new spacing is shown", [&] { person.key("Tab"); },
            [] { return state().patches.front().front().size() == 41; });
        person.screenshot(QStringLiteral("walk-6-tried"));
        watch.step(
            "and taken", [&] { person.key("Return"); },
            [] { return QApplication::activeModalWidget() == nullptr && state().patchUndoReady; });
        EXPECT_EQ(person.ask([] { return state().patches.front().back().size(); }), 41U);

        watch.step(
            "measure: the curve plot",
            [&] {
                person.choose({"Options", "Curve plot"});
            },
            [] {
                return WindowDriver::frame()
                    .findChild<QDockWidget*>(QStringLiteral("options.curvePlot.panel"))
                    ->isVisible();
            });
        person.screenshot(QStringLiteral("walk-7-plot"));
        watch.step(
            "save", [&] { person.key("s", "Control_L"); }, [] { return !state().documentModified; });
        EXPECT_TRUE(std::filesystem::exists(folder / "body.apt"));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().session().journal().lines(); }),
                  (std::vector<std::string>{"run file.open file=" + body.string(), "run convert.toSkl number=60",
                                            "run convert.toApt pointCount=161 align=1", "run view.surface",
                                            "run line.captureSection",
                                            "capture section 1 " + std::to_string(front.section + 1),
                                            "run line.rebreak regime=2 newCount=41", "run file.save"}));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().view().mouseMode; }), static_cast<int>(ModeSection))
            << "no mode of navigation was needed";
    });
}

} // namespace
} // namespace velmora::test
