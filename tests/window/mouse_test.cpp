#include <gtest/gtest.h>

#include <QOpenGLWidget>
#include <algorithm>
#include <cmath>
#include <functional>
#include <thread>

#include "Desk.h"
#include "FakeSurface.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "WindowDriver.h"

namespace velmora::test {
namespace {

/// The pixel of the picture that the view shows now.
QColor pixel(WindowDriver& person, int x, int y) {
    return person.ask(
        [x, y] { return WindowDriver::frame().findChild<QOpenGLWidget*>()->grabFramebuffer().pixelColor(x, y); });
}

bool waitForMouseAt(WindowDriver& person, PixelPoint at) {
    return person.waitFor([at] { return WindowDriver::frame().view().lastMousePos == at; });
}

/// Presses at `from` and moves to `to` in one step.
void pressAndMove(WindowDriver& person, PixelPoint from, PixelPoint to) {
    person.move(person.onView(from));
    person.press();
    ASSERT_TRUE(person.waitFor([] { return WindowDriver::frame().view().leftButtonDown; }));
    person.move(person.onView(to));
    ASSERT_TRUE(waitForMouseAt(person, to));
}

/// The release that is no throw: later than the time within which it would be one.
void releaseAtRest(WindowDriver& person) {
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    person.release();
    ASSERT_TRUE(person.waitFor([] { return !WindowDriver::frame().view().leftButtonDown; }));
}

TEST(Mouse, ADragTurnsTheModelAsTheViewsOwnRuleSays) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const Viewport viewport = person.ask([] { return WindowDriver::frame().view().viewport; });
        person.choose({"View", "Rotate"});
        pressAndMove(person, {500, 300}, {560, 340});
        releaseAtRest(person);
        const Matrix4 rotation = person.ask([] { return WindowDriver::frame().view().modelRotation; });

        RecordingUi ui;
        VelmoraDoc document(ui, ".");
        FakeSurface surface;
        VelmoraView view(document, surface);
        document.onNewDocument();
        view.OnSize(viewport.width, viewport.height);
        document.onOpenDocument(desk.model);
        view.OnDraw();
        view.runViewCommand("view.rotate");
        view.OnLeftButtonDown({500, 300});
        view.OnMouseMove({560, 340});
        surface.now = 1000;
        view.OnLeftButtonUp({560, 340});
        EXPECT_NE(rotation, identityMatrix());
        for (std::size_t i = 0; i < rotation.size(); ++i) {
            EXPECT_NEAR(rotation[i], view.modelRotation[i], 1e-9) << i;
        }
    });
}

TEST(Mouse, AThrowSpinsTheModelUntilAClick) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"View", "Rotate"});
        const QPoint from = person.onView({500, 300});
        person.move(from);
        person.settle();
        person.press();
        for (int step = 1; step <= 4; ++step) {
            person.move(from + QPoint(10 * step, 0));
        }
        person.release();
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::frame().view().spinActive; }));
        const auto rotation = [] { return WindowDriver::frame().view().modelRotation; };
        const Matrix4 first = person.ask(rotation);
        EXPECT_TRUE(person.waitFor([&] { return rotation() != first; })) << "it goes on by itself";
        person.press();
        person.settle();
        person.release();
        EXPECT_TRUE(person.waitFor([] { return !WindowDriver::frame().view().spinActive; }));
        const Matrix4 stopped = person.ask(rotation);
        person.settle();
        EXPECT_EQ(person.ask(rotation), stopped);
    });
}

TEST(Mouse, TheZoomRectangleIsDrawnInvertedAndZooms) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const Viewport viewport = person.ask([] { return WindowDriver::frame().view().viewport; });
        person.choose({"View", "Zoom In"});
        pressAndMove(person, {700, 420}, {860, 540});
        ASSERT_TRUE(person.ask([] { return WindowDriver::frame().view().rubberBandShown; }));
        // That part of the view shows nothing: black, inverted to white.
        for (const auto& [x, y] : {std::pair{700, 480}, {860, 480}, {780, 420}, {780, 540}, {700, 420}, {860, 540}}) {
            EXPECT_EQ(pixel(person, x, y), QColor(Qt::white)) << x << ' ' << y;
        }
        for (const auto& [x, y] : {std::pair{701, 480}, {699, 480}, {780, 421}, {780, 541}}) {
            EXPECT_EQ(pixel(person, x, y), QColor(Qt::black)) << x << ' ' << y;
        }
        person.screenshot(QStringLiteral("zoom-rectangle"));
        releaseAtRest(person);
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().view().rubberBandShown; }));
        EXPECT_EQ(pixel(person, 700, 480), QColor(Qt::black));
        const double zoom = person.ask([] { return WindowDriver::frame().view().zoomFactor; });
        EXPECT_NEAR(zoom, std::max(160.0 / viewport.width, 120.0 / viewport.height), 1e-12);
    });
}

TEST(Mouse, ADragStaysInsideTheView) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const Viewport viewport = person.ask([] { return WindowDriver::frame().view().viewport; });
        person.choose({"View", "Shift"});
        pressAndMove(person, {500, 300}, {500, 400});
        person.move(person.onView({500, viewport.height + 10}));
        EXPECT_TRUE(waitForMouseAt(person, {500, viewport.height - 1}));
        EXPECT_TRUE(person.waitFor([] {
            const QWidget* view = WindowDriver::frame().centralWidget();
            return view->rect().contains(view->mapFromGlobal(QCursor::pos()));
        })) << "the cursor itself is kept inside";
        releaseAtRest(person);
        const QPoint outside = person.onView({500, viewport.height + 10});
        person.move(outside);
        person.settle();
        EXPECT_EQ(person.ask([] { return QCursor::pos(); }), outside) << "and free again";
    });
}

// ---- Interrupted drags ----------------------------------------------------------------------------------------------

/// The frame with a model in the mode "Shift", and a person who need not wait long: each look waits for what it wants.
void shiftAround(const std::function<void(WindowDriver&)>& drag) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(50);
        person.choose({"View", "Shift"});
        drag(person);
    });
}

double viewCentre(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().view().viewCentreX; });
}

/// Expects that moves without a button move nothing, and that the next drag works.
void expectFree(WindowDriver& person) {
    // A window that has just come back may miss the first of them.
    const auto isFree = [] { return !WindowDriver::frame().view().leftButtonDown; };
    for (int step = 0; step < 100 && !person.ask(isFree); ++step) {
        person.move(person.onView({300 + step % 2, 200}));
        person.settle();
    }
    ASSERT_TRUE(person.ask(isFree));
    const double before = viewCentre(person);
    person.move(person.onView({400, 200}));
    ASSERT_TRUE(waitForMouseAt(person, {400, 200}));
    EXPECT_EQ(viewCentre(person), before);
    pressAndMove(person, {400, 200}, {420, 200});
    EXPECT_EQ(viewCentre(person), before - 20.0);
    releaseAtRest(person);
}

TEST(Mouse, TheRightButtonInADragOpensNoMenuAndEndsNothing) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(50);
        person.choose({"Edit", "Lines", "Input", "Section..."});
        person.waitForBox(QStringLiteral("CInputSection"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        person.choose({"View", "Shift"});
        pressAndMove(person, {300, 200}, {320, 200});
        const double before = viewCentre(person);
        person.press(WindowDriver::rightButton);
        person.release(WindowDriver::rightButton);
        person.settle();
        EXPECT_TRUE(person.ask([] { return WindowDriver::openedMenu() == nullptr; }));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().view().leftButtonDown; }));
        person.move(person.onView({340, 200}));
        ASSERT_TRUE(waitForMouseAt(person, {340, 200}));
        EXPECT_EQ(viewCentre(person), before - 20.0);
        releaseAtRest(person);
        person.click(person.onView({300, 200}), WindowDriver::rightButton);
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
    });
}

TEST(Mouse, ADialogOpenedByAKeyInADragTakesTheReleaseAndLeavesNothingHeld) {
    shiftAround([](WindowDriver& person) {
        pressAndMove(person, {300, 200}, {320, 200});
        person.key("o", "Control_L");
        person.waitForBox(QStringLiteral("questionBox"));
        person.release();
        person.key("n", "Alt_L");
        ASSERT_TRUE(person.waitForNoBox());
        expectFree(person);
    });
}

TEST(Mouse, AWindowPutAwayInADragLeavesNothingHeld) {
    shiftAround([](WindowDriver& person) {
        pressAndMove(person, {300, 200}, {320, 200});
        person.ask([] { WindowDriver::frame().showMinimized(); });
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::frame().isMinimized(); }));
        person.release();
        person.ask([] {
            WindowDriver::frame().showMaximized();
            WindowDriver::frame().activateWindow();
        });
        person.waitForFrame();
        expectFree(person);
    });
}

TEST(Mouse, EveryModeHasItsOwnCursor) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const auto shape = [] { return WindowDriver::frame().centralWidget()->cursor().shape(); };
        EXPECT_EQ(person.ask(shape), Qt::ArrowCursor);
        person.choose({"View", "Rotate"});
        EXPECT_EQ(person.ask(shape), Qt::BitmapCursor);
        person.choose({"View", "Rotate"});
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().view().mouseMode; }), static_cast<int>(ModeNone));
    });
}

} // namespace
} // namespace velmora::test
