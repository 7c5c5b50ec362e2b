#include "GlViewWidget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "Person.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "mode_cursors.h"
#include "small_models.h"

namespace velmora::test {
namespace {

/// The window of a view by itself, 400 by 300 pixels, where there is no OpenGL.
struct WidgetRig {
    RecordingUi ui;
    VelmoraDoc doc{ui, "."};
    GlViewWidget widget;
    VelmoraView view{doc, widget};
    std::vector<std::string> events;

    WidgetRig() {
        doc.onNewDocument();
        widget.resize(400, 300);
        widget.setView(&view);
        widget.show();
        QApplication::processEvents();
        const auto note = [this](auto signal, const char* word) {
            QObject::connect(&widget, signal, &widget, [this, word] { events.emplace_back(word); });
        };
        note(&GlViewWidget::paintBegins, "begins");
        note(&GlViewWidget::paintEnds, "ends");
        note(&GlViewWidget::leftReleased, "released");
        note(&GlViewWidget::contextMenuWanted, "menu");
    }
    ~WidgetRig() { widget.setView(nullptr); }

    void showModel() {
        doc.patches = {flatPatch(3, 4)};
        doc.checkRegularity(doc.patches);
        doc.updateBounds();
        QApplication::processEvents();
        events.clear();
    }
    void mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held, std::uint64_t time = 1) {
        QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
        event.setTimestamp(time);
        QApplication::sendEvent(&widget, &event);
    }
    void press(QPointF at, std::uint64_t time = 1) {
        mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, time);
    }
    void moveTo(QPointF at, std::uint64_t time = 1) {
        mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, time);
    }
    void release(QPointF at, std::uint64_t time = 1) {
        mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, time);
    }
};

TEST(GlViewWidget, TellsTheViewItsSize) {
    WidgetRig rig;
    EXPECT_EQ(rig.view.viewport.width, 400);
    EXPECT_EQ(rig.view.viewport.height, 300);
    rig.widget.resize(200, 500);
    EXPECT_EQ(rig.view.viewport.width, 200);
    EXPECT_EQ(rig.view.viewport.height, 500);
    EXPECT_EQ(rig.view.aspectRatio, 0.4);
    rig.widget.resize(200, 501);
    EXPECT_EQ(rig.view.viewport.height, 501);
    rig.widget.resize(201, 501);
    EXPECT_EQ(rig.view.viewport.width, 201);
}

TEST(GlViewWidget, FollowsTheMouseAndTakesTheKeyboard) {
    const WidgetRig rig;
    EXPECT_TRUE(rig.widget.hasMouseTracking());
    EXPECT_EQ(rig.widget.focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(rig.widget.minimumSize(), QSize(1, 1));
}

TEST(GlViewWidget, WithoutOpenGlThereIsNoContextAndAllElseIs) {
    WidgetRig rig;
    EXPECT_FALSE(rig.widget.hasContext());
    EXPECT_FALSE(rig.widget.createContext());
    EXPECT_FALSE(rig.widget.makeCurrent());
    EXPECT_TRUE(rig.widget.deleteContext());
    EXPECT_TRUE(rig.widget.choosePixelFormat(PixelFormat{}));
    PixelFormat single;
    single.doubleBuffered = false;
    EXPECT_FALSE(rig.widget.choosePixelFormat(single));
    EXPECT_EQ(rig.widget.grab().toImage().pixelColor(200, 150), QColor(Qt::black));
}

TEST(GlViewWidget, SaysWhenItPaintsAndPaintsOnDemand) {
    WidgetRig rig;
    rig.showModel();
    rig.view.setMouseMode(ModeRotate);
    rig.view.SetAxisView(90, {0, 1, 0});
    rig.widget.requestRepaint();
    EXPECT_THAT(rig.events, ::testing::IsEmpty()) << "when the event loop runs";
    EXPECT_TRUE(waitUntil([&] { return rig.events.size() >= 2; }));
    EXPECT_THAT(rig.events, ::testing::ElementsAre("begins", "ends"));
    EXPECT_TRUE(rig.view.viewAlongX) << "a paint computes what it does where nothing is drawn";
}

// ---- Mouse ----------------------------------------------------------------------------------------------------------

TEST(GlViewWidget, APixelCountsFromItsUpperLeftCorner) {
    WidgetRig rig;
    rig.press({10.9, 20.2});
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{10, 20}));
    rig.release({10.9, 20.2});
    rig.mouse(QEvent::MouseMove, {-0.5, 100.0}, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{-1, 100}));
}

TEST(GlViewWidget, ADragStaysInsideWhereverTheMouseGoes) {
    WidgetRig rig;
    rig.showModel();
    rig.view.setMouseMode(ModeShift);
    rig.press({100, 100});
    struct Case {
        QPointF to;
        PixelPoint at;
    };
    const Case cases[] = {
        {.to = {-50, 100}, .at = {0, 100}},   {.to = {100, -50}, .at = {100, 0}},
        {.to = {450, 100}, .at = {399, 100}}, {.to = {100, 350}, .at = {100, 299}},
        {.to = {399, 299}, .at = {399, 299}},
    };
    for (const Case& c : cases) {
        rig.moveTo(c.to);
        EXPECT_EQ(rig.view.lastMousePos, c.at);
        EXPECT_TRUE(rig.widget.rect().contains(rig.widget.mapFromGlobal(QCursor::pos())) || c.to == QPointF(399, 299));
    }
    rig.release({450, 100});
    rig.moveTo({450, 100});
    EXPECT_EQ(rig.view.lastMousePos, (PixelPoint{450, 100})) << "free again";
}

TEST(GlViewWidget, TheCursorItselfIsPulledBack) {
    WidgetRig rig;
    rig.showModel();
    rig.view.setMouseMode(ModeShift);
    rig.press({100, 100});
    rig.moveTo({450, -20});
    EXPECT_EQ(rig.widget.mapFromGlobal(QCursor::pos()), QPoint(399, 0));
    rig.release({399, 0});
    QCursor::setPos(rig.widget.mapToGlobal(QPoint(200, 200)));
    rig.mouse(QEvent::MouseMove, {450, 100}, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(rig.widget.mapFromGlobal(QCursor::pos()), QPoint(200, 200)) << "only in a drag";
}

TEST(GlViewWidget, SaysThatTheLeftButtonCameUpWhenTheViewHasDealtWithIt) {
    WidgetRig rig;
    rig.press({100, 100});
    EXPECT_TRUE(rig.view.leftButtonDown);
    bool down = true;
    QObject::connect(&rig.widget, &GlViewWidget::leftReleased, &rig.widget, [&] { down = rig.view.leftButtonDown; });
    rig.release({100, 100});
    EXPECT_FALSE(down);
    EXPECT_THAT(rig.events, ::testing::Contains("released"));
    rig.events.clear();
    rig.mouse(QEvent::MouseButtonRelease, {1, 1}, Qt::RightButton, Qt::NoButton);
    EXPECT_THAT(rig.events, ::testing::Not(::testing::Contains("released")));
}

TEST(GlViewWidget, TheClockIsTheTimeOfTheEventsAndNeverGoesBack) {
    WidgetRig rig;
    rig.press({100, 100}, 5000);
    EXPECT_EQ(rig.widget.clock(), 5000);
    EXPECT_EQ(rig.view.lastMoveClock, 5000);
    rig.moveTo({150, 100}, 5020);
    EXPECT_EQ(rig.view.lastMoveClock, 5020);
    rig.moveTo({200, 100}, 4000);
    EXPECT_EQ(rig.widget.clock(), 5020);
    rig.release({200, 100}, 5030);
    EXPECT_EQ(rig.widget.clock(), 5030);
}

TEST(GlViewWidget, AThrowSpinsTheModelByTicksUntilAClick) {
    struct Case {
        std::uint64_t pause; ///< between the last move and the release, in milliseconds
        bool spins;
    };
    for (const Case& c : {Case{.pause = 49, .spins = true}, Case{.pause = 50, .spins = false}}) {
        WidgetRig rig;
        rig.showModel();
        rig.view.setMouseMode(ModeRotate);
        rig.press({200, 150}, 1000);
        rig.moveTo({230, 150}, 1010);
        rig.release({240, 150}, 1010 + c.pause);
        EXPECT_EQ(rig.view.spinActive, c.spins) << c.pause;
        if (!c.spins) {
            continue;
        }
        const Matrix4 before = rig.view.modelRotation;
        EXPECT_TRUE(waitUntil([&] { return rig.view.modelRotation != before; }));
        rig.press({200, 150}, 2000);
        rig.release({200, 150}, 2000);
        EXPECT_FALSE(rig.view.spinActive);
        QApplication::processEvents();
        rig.events.clear();
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 40) {
            QApplication::processEvents();
        }
        EXPECT_THAT(rig.events, ::testing::IsEmpty()) << "the ticks have ended";
    }
}

TEST(GlViewWidget, ContextMenusAreAskedForAtTheirPlaceOnTheScreen) {
    WidgetRig rig;
    QPoint asked;
    QObject::connect(&rig.widget, &GlViewWidget::contextMenuWanted, &rig.widget,
                     [&asked](const QPoint& at) { asked = at; });
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 6}, {105, 206});
    QApplication::sendEvent(&rig.widget, &event);
    EXPECT_EQ(asked, QPoint(105, 206));
}

// ---- Wheel and middle button ----------------------------------------------------------------------------------------

void wheel(WidgetRig& rig, QPointF at, int units) {
    QWheelEvent event(at, rig.widget.mapToGlobal(at), {}, {0, units}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&rig.widget, &event);
}

void middle(WidgetRig& rig, QEvent::Type type, QPointF at, Qt::KeyboardModifiers keys = Qt::NoModifier,
            Qt::MouseButtons held = Qt::MiddleButton) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::MiddleButton;
    QMouseEvent event(type, at, rig.widget.mapToGlobal(at), button, held, keys);
    QApplication::sendEvent(&rig.widget, &event);
}

TEST(GlViewWidget, TheWheelZoomsByNotchesOf120) {
    WidgetRig rig;
    rig.showModel();
    wheel(rig, {100, 100}, 120);
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0 / 1.2);
    wheel(rig, {100, 100}, -60);
    EXPECT_DOUBLE_EQ(rig.view.zoomFactor, 1.0 / std::sqrt(1.2));
}

TEST(GlViewWidget, TheKeysHeldAsTheMiddleButtonGoesDownSayWhatItDoes) {
    struct Case {
        Qt::KeyboardModifiers keys;
        MouseMode act;
    };
    for (const Case& c :
         {Case{Qt::NoModifier, ModeRotate}, Case{Qt::ShiftModifier, ModeShift}, Case{Qt::ControlModifier, ModeScale}}) {
        WidgetRig rig;
        rig.showModel();
        const double centre = rig.view.viewCentreX;
        middle(rig, QEvent::MouseButtonPress, {100, 100}, c.keys);
        EXPECT_EQ(rig.widget.cursor().pixmap().toImage(), cursorOf(c.act).pixmap().toImage());
        middle(rig, QEvent::MouseMove, {130, 140});
        EXPECT_EQ(rig.view.modelRotation != identityMatrix(), c.act == ModeRotate);
        EXPECT_EQ(rig.view.viewCentreX != centre, c.act == ModeShift);
        EXPECT_EQ(rig.view.zoomFactor != 1.0, c.act == ModeScale);
        middle(rig, QEvent::MouseButtonRelease, {130, 140}, Qt::NoModifier, Qt::NoButton);
        EXPECT_FALSE(rig.view.isNavigating());
    }
}

TEST(GlViewWidget, NeitherMenuNorLeftButtonComeBetween) {
    WidgetRig rig;
    rig.showModel();
    middle(rig, QEvent::MouseButtonPress, {100, 100});
    QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 6}, {105, 206});
    QApplication::sendEvent(&rig.widget, &menu);
    rig.press({100, 100});
    EXPECT_FALSE(rig.view.leftButtonDown);
    EXPECT_THAT(rig.events, ::testing::Not(::testing::Contains("menu")));
}

TEST(GlViewWidget, AReleaseThatSomebodyElseTookEndsTheTurn) {
    WidgetRig rig;
    rig.showModel();
    middle(rig, QEvent::MouseButtonPress, {100, 100});
    middle(rig, QEvent::MouseMove, {150, 100}, Qt::NoModifier, Qt::NoButton);
    EXPECT_FALSE(rig.view.isNavigating());
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
}

TEST(GlViewWidget, EachModeHasItsCursor) {
    WidgetRig rig;
    for (const MouseMode mode : {ModeRotate, ModeLine, ModeNone, ModeZoomIn}) {
        rig.widget.showCursor(mode);
        EXPECT_EQ(rig.widget.cursor().shape(), cursorOf(mode).shape());
        EXPECT_EQ(rig.widget.cursor().hotSpot(), cursorOf(mode).hotSpot());
        EXPECT_EQ(rig.widget.cursor().pixmap().toImage(), cursorOf(mode).pixmap().toImage());
    }
}

TEST(GlViewWidget, WithoutAViewItDoesNothing) {
    WidgetRig rig;
    rig.widget.setView(nullptr);
    rig.events.clear();
    rig.press({100, 100});
    rig.moveTo({150, 100});
    rig.release({150, 100});
    QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 6}, {5, 6});
    QApplication::sendEvent(&rig.widget, &menu);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&rig.widget, &escape);
    rig.widget.resize(100, 100);
    rig.widget.startTimer(1);
    rig.widget.requestRepaint();
    QApplication::processEvents();
    rig.widget.stopTimer();
    EXPECT_THAT(rig.events, ::testing::IsEmpty());
    EXPECT_FALSE(rig.view.leftButtonDown);
    EXPECT_EQ(rig.view.viewport.width, 400);
}

TEST(GlViewWidget, EscIsLeftAloneWhileItIsMeantOtherwise) {
    WidgetRig rig;
    bool otherwise = true;
    rig.widget.keepOpenWhile([&otherwise] { return otherwise; });
    const auto press = [&rig] {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(&rig.widget, &escape);
        QApplication::processEvents();
    };
    press();
    EXPECT_TRUE(rig.widget.isVisible());
    otherwise = false;
    press();
    EXPECT_FALSE(rig.widget.isVisible());
}

} // namespace
} // namespace velmora::test
