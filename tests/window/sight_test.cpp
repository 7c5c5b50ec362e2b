#include <gtest/gtest.h>

#include <QLabel>
#include <QOpenGLWidget>
#include <cmath>

#include "Desk.h"
#include "WindowDriver.h"
#include "pixel_of.h"

namespace velmora::test {
namespace {

constexpr int middleButton = 2;
constexpr int wheelUp = 4;

QString modePane(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().findChild<QLabel*>(QStringLiteral("mode"))->text(); });
}

Matrix4 rotationOf(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().view().modelRotation; });
}

/// Drags in steps, as a hand does.
void dragMiddle(WindowDriver& person, PixelPoint from, PixelPoint to) {
    constexpr int steps = 8;
    person.move(person.onView(from));
    person.press(middleButton);
    for (int i = 1; i <= steps; ++i) {
        person.move(person.onView({from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps}));
    }
    person.release(middleButton);
    person.settle();
}

void turnTheWheel(WindowDriver& person, PixelPoint at, int notches) {
    person.move(person.onView(at));
    for (int i = 0; i < notches; ++i) {
        person.press(wheelUp);
        person.release(wheelUp);
    }
    person.settle();
}

TEST(Sight, AnEmptyWindowTellsHowToBegin) {
    runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        EXPECT_TRUE(person.ask(
            [] { return WindowDriver::frame().findChild<QWidget*>(QStringLiteral("startPanel"))->isVisible(); }));
        person.screenshot(QStringLiteral("sight-empty"));
        person.key("F1", "Shift_L");
        person.waitForBox(QStringLiteral("keyListBox"));
        person.screenshot(QStringLiteral("sight-keys"));
        person.key("Escape");
        EXPECT_TRUE(person.waitForNoBox());
    });
}

TEST(Sight, ASectionIsCapturedOnTheSurfaceWithoutAModeOfTheView) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        EXPECT_EQ(modePane(person), QStringLiteral("Key 8: Oblique view"));
        person.key("8");
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().view().zoomFactor != 1.0; }));
        person.screenshot(QStringLiteral("sight-oblique"));
        person.choose({"Edit", "Lines", "Capture", "Section"});
        const Matrix4 before = rotationOf(person);
        dragMiddle(person, {500, 300}, {560, 340});
        EXPECT_NE(rotationOf(person), before);
        // Where a point of the body shows now: the middle of its first patch.
        const auto place = [] {
            MainFrame& frame = WindowDriver::frame();
            const Patch& patch = frame.state().patches.front();
            return pixelOf(frame.view(), frame.state(), patch[patch.size() / 3][patch.front().size() / 2]);
        };
        turnTheWheel(person, person.ask(place), 5);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().view().mouseMode; }), static_cast<int>(ModeSection));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().state().capture->sectionCaptureArmed; }));
        const PixelPoint target = person.ask(place);
        person.move(person.onView({target.x + 3, target.y}));
        person.move(person.onView(target));
        person.settle();
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().view().candidate().has_value(); }));
        EXPECT_TRUE(modePane(person).startsWith(QStringLiteral("Section: Patch K="))) << modePane(person).toStdString();
        const auto pointed = person.ask([] { return *WindowDriver::frame().view().candidate(); });
        person.screenshot(QStringLiteral("sight-hover"));
        person.click(person.onView(target));
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().state().capture->sectionCaptured; }));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().capture->capturedSection; }), pointed.section);
        person.screenshot(QStringLiteral("sight-captured"));
        person.key("e");
        person.settle();
        person.screenshot(QStringLiteral("sight-edges"));
        person.key("e");
        person.key("b");
        person.settle();
        person.screenshot(QStringLiteral("sight-back-faces"));
        person.key("BackSpace");
        person.settle();
        person.key("F", "Shift_L");
        person.settle();
        person.screenshot(QStringLiteral("sight-fit-captured"));
    });
}

TEST(Sight, TheMouseCostsNothingOfTheModel) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const auto draws = [] { return WindowDriver::frame().findChild<GlCanvas*>()->renderer().modelDraws(); };
        person.settle();
        const int before = person.ask(draws);
        EXPECT_GT(before, 0);
        for (int i = 0; i < 20; ++i) {
            person.move(person.onView({300 + 10 * i, 300}));
        }
        person.openMenu(QStringLiteral("View"));
        person.key("Escape");
        person.settle();
        EXPECT_EQ(person.ask(draws), before);
    });
}

} // namespace
} // namespace velmora::test
