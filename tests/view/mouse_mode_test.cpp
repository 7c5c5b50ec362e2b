#include "arranged_capture.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::twoPatches;
using test::ViewRig;
using ::testing::ElementsAre;

TEST(SetMouseMode, OtherModeIsTakenWithItsCursor) {
    ViewRig rig;
    rig.view.setMouseMode(ModeScale);
    EXPECT_EQ(rig.view.mouseMode, ModeScale);
    EXPECT_EQ(rig.surface.cursor, ModeScale);
    rig.view.setMouseMode(ModeRotate);
    EXPECT_EQ(rig.view.mouseMode, ModeRotate);
    EXPECT_EQ(rig.surface.cursor, ModeRotate);
}

TEST(SetMouseMode, OtherModeIsTakenInsideARegimeToo) {
    ViewRig rig;
    rig.doc.capture.keepPoint();
    rig.view.setMouseMode(ModeRotate);
    EXPECT_EQ(rig.view.mouseMode, ModeRotate);
}

TEST(SetMouseMode, SameModeWithoutARegimeGoesIdleWithThePreviousCursor) {
    ViewRig rig;
    rig.view.setMouseMode(ModeRotate);
    rig.view.setMouseMode(ModeRotate);
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_EQ(rig.surface.cursor, ModeNone);
}

TEST(SetMouseMode, PreviousCursorIsTheOneBeforeTheOneShown) {
    ViewRig rig;
    rig.view.setMouseMode(ModeShift);
    rig.view.setMouseMode(ModeScale);
    rig.view.setMouseMode(ModeScale);
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_EQ(rig.surface.cursor, ModeShift);
    // Now the scale cursor is the previous one.
    rig.view.setMouseMode(ModeNone);
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_EQ(rig.surface.cursor, ModeScale);
}

struct Toggle {
    bool CaptureState::*flag;
    int mode;
};

const Toggle toggles[] = {
    {&CaptureState::pointCaptureArmed, ModePoint},     {&CaptureState::pointCaptured, ModePoint},
    {&CaptureState::sectionCaptureArmed, ModeSection}, {&CaptureState::sectionCaptured, ModeSection},
    {&CaptureState::lineCaptureArmed, ModeLine},       {&CaptureState::lineCaptured, ModeLine},
    {&CaptureState::patchCaptureArmed, ModePatch},     {&CaptureState::patchCaptured, ModePatch},
};

TEST(SetMouseMode, SameModeGoesBackToWhatTheRegimeNeeds) {
    for (const Toggle& toggle : toggles) {
        ViewRig rig;
        test::arranged(rig.doc).*toggle.flag = true;
        rig.view.setMouseMode(ModeRotate);
        rig.view.setMouseMode(ModeRotate);
        EXPECT_EQ(rig.view.mouseMode, toggle.mode);
        EXPECT_EQ(rig.surface.cursor, toggle.mode);
    }
}

TEST(SetMouseMode, PointGoesBeforeSectionBeforeLineBeforePatch) {
    for (std::size_t first = 0; first < std::size(toggles); ++first) {
        ViewRig rig;
        for (std::size_t i = first; i < std::size(toggles); ++i) {
            test::arranged(rig.doc).*toggles[i].flag = true;
        }
        rig.view.setMouseMode(ModeShift);
        rig.view.setMouseMode(ModeShift);
        EXPECT_EQ(rig.view.mouseMode, toggles[first].mode) << first;
    }
}

TEST(SetMouseMode, FreePointAloneCountsForNoRegime) {
    ViewRig rig;
    test::arranged(rig.doc).freePointArmed = test::arranged(rig.doc).freePointHeld = true;
    rig.view.setMouseMode(ModeRotate);
    rig.view.setMouseMode(ModeRotate);
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
}

TEST(SetMouseMode, StopsASpin) {
    ViewRig rig;
    rig.view.spinActive = true;
    rig.surface.timerRuns = true;
    rig.view.setMouseMode(ModeScale);
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.surface.timerRuns);
}

TEST(SetMouseMode, StopsASpinWhenItTogglesToo) {
    ViewRig rig;
    rig.view.setMouseMode(ModeRotate);
    rig.view.spinActive = true;
    rig.surface.timerRuns = true;
    rig.view.setMouseMode(ModeRotate);
    EXPECT_FALSE(rig.view.spinActive);
    EXPECT_FALSE(rig.surface.timerRuns);
}

TEST(ForcedMouseMode, IsNeverTakenForAToggle) {
    for (const MouseMode mode : {ModePoint, ModePatch, ModeSection, ModeLine, ModeRotate, ModeNone}) {
        ViewRig rig;
        rig.doc.capture.keepPoint();
        test::arranged(rig.doc).sectionCaptured = true;
        rig.view.forceMouseMode(mode);
        EXPECT_EQ(rig.view.mouseMode, mode);
        rig.view.forceMouseMode(mode);
        EXPECT_EQ(rig.view.mouseMode, mode);
        EXPECT_EQ(rig.surface.cursor, mode);
    }
}

TEST(ResetMouseMode, FreesTheCursorAndShowsTheArrow) {
    ViewRig rig;
    rig.doc.capture.keepPoint();
    rig.view.setMouseMode(ModePoint);
    rig.surface.confined = true;
    rig.view.resetMouseMode();
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_EQ(rig.surface.cursor, ModeNone);
    EXPECT_FALSE(rig.surface.confined);
}

// ---- The mode after a redraw ----------------------------------------------------------------------------------------

struct RedrawRig : ViewRig {
    RedrawRig() {
        show(twoPatches());
        view.setMouseMode(ModeRotate);
        surface.cursors.clear();
    }
};

TEST(Redraw, LeavesAViewModeAloneOutsideARegime) {
    RedrawRig rig;
    rig.redraw();
    EXPECT_EQ(rig.view.mouseMode, ModeRotate);
    EXPECT_TRUE(rig.surface.cursors.empty());
}

TEST(Redraw, LeavesAViewModeAloneInAnArmedRegime) {
    RedrawRig rig;
    test::arranged(rig.doc).pointCaptureArmed = test::arranged(rig.doc).sectionCaptureArmed =
        test::arranged(rig.doc).patchCaptureArmed = true;
    test::arranged(rig.doc).freePointArmed = true;
    rig.redraw();
    EXPECT_EQ(rig.view.mouseMode, ModeRotate);
}

TEST(Redraw, PutsTheCapturedRegimesOnInTheirOrder) {
    RedrawRig rig;
    test::arranged(rig.doc).patchCaptured = test::arranged(rig.doc).sectionCaptured =
        test::arranged(rig.doc).lineCaptured = test::arranged(rig.doc).pointCaptured = true;
    rig.redraw();
    EXPECT_THAT(rig.surface.cursors, ElementsAre(ModePatch, ModeSection, ModeLine, ModePoint));
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
}

TEST(Redraw, EachCapturedRegimeTakesTheMouseBack) {
    const Toggle captured[] = {{&CaptureState::patchCaptured, ModePatch},
                               {&CaptureState::sectionCaptured, ModeSection},
                               {&CaptureState::lineCaptured, ModeLine},
                               {&CaptureState::pointCaptured, ModePoint}};
    for (const Toggle& regime : captured) {
        RedrawRig rig;
        test::arranged(rig.doc).*regime.flag = true;
        rig.redraw();
        EXPECT_EQ(rig.view.mouseMode, regime.mode);
        rig.redraw();
        EXPECT_EQ(rig.view.mouseMode, regime.mode);
    }
}

TEST(Redraw, FreePointWithoutACapturedPointEndsInTheLineMode) {
    RedrawRig rig;
    test::arranged(rig.doc).freePointHeld = true;
    rig.redraw();
    EXPECT_THAT(rig.surface.cursors, ElementsAre(ModePoint, ModeLine));
    EXPECT_EQ(rig.view.mouseMode, ModeLine);
}

TEST(Redraw, FreePointBesideACapturedPointStaysInThePointMode) {
    RedrawRig rig;
    test::arranged(rig.doc).freePointHeld = test::arranged(rig.doc).pointCaptured = true;
    rig.redraw();
    EXPECT_THAT(rig.surface.cursors, ElementsAre(ModePoint, ModePoint));
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
}

TEST(Redraw, AsksForARepaint) {
    RedrawRig rig;
    const int before = rig.surface.repaints;
    rig.redraw();
    EXPECT_EQ(rig.surface.repaints, before + 1);
}

} // namespace
} // namespace velmora
