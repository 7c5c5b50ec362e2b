#include "arranged_capture.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::flatPatch;
using test::twoPatches;
using test::ViewRig;
using ::testing::ElementsAre;

const std::string findPatch = "status: Find patch and click it";
const std::string firstPatchText = "status: Captured patch: Patch K=1 // Press right button to continue ";
const std::string secondPatchText = "status: Captured patch: Patch K=2 // Press right button to continue ";
const std::string notSelected = "message: Patch is not selected. Try again";
const std::string notRemoved = "message: Patch is not removed from zBlock. Try again";
const std::string goOn = "status: Press right button to continue";

/// A pixel that shows nothing.
const zVec<double> nowhere{6.5, 5.5, 0};

/// Two sheets of one patch, one unit before and one behind the plane z = 0; the eye looks down along z.
Patch foldedPatch() {
    Patch patch;
    for (const double z : {1.0, -1.0}) {
        for (int n = 0; n < 2; ++n) {
            const double y = z > 0.0 ? 2.0 * n : 2.0 - 2.0 * n;
            patch.push_back({{0, y, z}, {3, y, z}});
        }
    }
    return patch;
}

/// Picks off the edges of the cells.
std::int32_t patchAt(ViewRig& rig, const zVec<double>& point) {
    return rig.view.PickPatch(rig.pixelOf(point));
}

std::int32_t patchInTheMiddle(const PatchList& model) {
    ViewRig rig;
    rig.show(model);
    rig.useParallelProjection();
    return patchAt(rig, {1.3, 0.9, 0});
}

// ---- Which patch ----------------------------------------------------------------------------------------------------

TEST(PickPatch, PatchInFrontIsTakenWhicheverComesFirst) {
    EXPECT_EQ(patchInTheMiddle({flatPatch(3, 4, 0.0), flatPatch(3, 4, 2.0)}), 1);
    EXPECT_EQ(patchInTheMiddle({flatPatch(3, 4, 2.0), flatPatch(3, 4, 0.0)}), 0);
}

TEST(PickPatch, OfTwoThatHideNeitherTheFirstInTheListIsTaken) {
    EXPECT_EQ(patchInTheMiddle({flatPatch(3, 4, 1.0), flatPatch(3, 4, 1.0)}), 0);
    EXPECT_EQ(patchInTheMiddle({flatPatch(3, 4, 0.0), flatPatch(3, 4, 1.0), flatPatch(3, 4, 1.0)}), 1);
}

TEST(PickPatch, PatchBetweenTheSheetsOfAnotherIsHidden) {
    EXPECT_EQ(patchInTheMiddle({flatPatch(3, 4), foldedPatch()}), 1);
    EXPECT_EQ(patchInTheMiddle({foldedPatch(), flatPatch(3, 4)}), 0);
}

TEST(PickPatch, SheetsOfOnePatchDoNotHideEachOther) {
    // The rear sheet comes first in this patch: its hit is not compared with that of the front one.
    Patch rearFirst = foldedPatch();
    std::reverse(rearFirst.begin(), rearFirst.end());
    EXPECT_EQ(patchInTheMiddle({rearFirst}), 0);
    EXPECT_EQ(patchInTheMiddle({rearFirst, flatPatch(3, 4, -2.0)}), 0);
}

TEST(PickPatch, NothingUnderThePixelIsNone) {
    ViewRig rig;
    rig.show(twoPatches());
    EXPECT_EQ(patchAt(rig, {6.5, 1, 0}), -1);
    EXPECT_EQ(patchAt(rig, {1.3, 0.9, 0}), 0);
    EXPECT_EQ(patchAt(rig, {11.3, 0.9, 0}), 1);
}

TEST(PickPatch, PatchOfOneSectionOrOneLineHasNoCellToHit) {
    EXPECT_EQ(patchInTheMiddle({{{{0, 0.9, 0}, {3, 0.9, 0}}}, {{{1.3, 0, 0}}, {{1.3, 2, 0}}}}), -1);
}

TEST(PickPatch, BothTrianglesOfACellCount) {
    ViewRig rig;
    rig.show({flatPatch(2, 2)});
    EXPECT_EQ(patchAt(rig, {0.8, 0.2, 0}), 0);
    EXPECT_EQ(patchAt(rig, {0.2, 0.8, 0}), 0);
}

TEST(PickPatch, CellsThatAnEditMovedAreFoundAfterTheRedraw) {
    ViewRig rig;
    rig.show(twoPatches());
    EXPECT_EQ(patchAt(rig, {6.5, 1, 0}), -1);
    rig.doc.patches[1] = flatPatch(3, 8);
    rig.redraw();
    EXPECT_EQ(patchAt(rig, {6.5, 0.9, 0}), 1);
}

TEST(PickPatch, NeitherZBlockNorCaptureNarrowIt) {
    ViewRig rig;
    rig.show(twoPatches());
    test::arranged(rig.doc).patchCaptured = rig.doc.showBlockOnly = true;
    rig.doc.capture.renumberPatch(1);
    rig.putIntoBlock({1});
    EXPECT_EQ(patchAt(rig, {1.3, 0.9, 0}), 0);
}

TEST(PickPatch, ShowsTheWaitCursorWhileItLooks) {
    ViewRig rig;
    rig.show(twoPatches());
    patchAt(rig, {1.3, 0.9, 0});
    EXPECT_EQ(rig.ui.busyCalls, 1);
    EXPECT_EQ(rig.ui.busyDepth, 0);
}

// ---- The patch regime's press, drag and release ---------------------------------------------------------------------

struct PatchRig : ViewRig {
    PatchRig() {
        show(twoPatches());
        call("patch.capture");
        ui.transcript.clear();
    }
    std::vector<std::int32_t> block() const { return {doc.blockList.begin(), doc.blockList.begin() + doc.blockCount}; }
};

const zVec<double> onFirst{1.3, 0.9, 0};
const zVec<double> onSecond{11.3, 0.9, 0};

TEST(PatchRegime, PressFindsThePatchAndTheReleaseTakesItIntoTheBlock) {
    PatchRig rig;
    const int repaints = rig.surface.repaints;
    rig.press(onSecond);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_TRUE(rig.doc.capture->patchCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->patchCaptured);
    EXPECT_THAT(rig.block(), ElementsAre());
    EXPECT_THAT(rig.ui.transcript, ElementsAre(secondPatchText));
    EXPECT_GT(rig.surface.repaints, repaints);
    // Yellow from the press on.
    EXPECT_EQ(rig.view.list().batches.at(3).colour, (Colour{1.0F, 1.0F, 0.1F, 1.0F}));
    rig.release(onSecond);
    EXPECT_FALSE(rig.doc.capture->patchCaptureArmed);
    EXPECT_TRUE(rig.doc.capture->patchCaptured);
    EXPECT_THAT(rig.block(), ElementsAre(1));
    EXPECT_THAT(rig.ui.transcript, ElementsAre(secondPatchText, secondPatchText));
    EXPECT_EQ(rig.view.mouseMode, ModePatch);
    EXPECT_FALSE(rig.view.leftButtonDown);
}

TEST(PatchRegime, PressOnNothingIsToldAndAbandoned) {
    PatchRig rig;
    rig.press(nowhere);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(notSelected));
    EXPECT_EQ(rig.doc.capture->capturedPatch, -1);
    EXPECT_FALSE(rig.view.leftButtonDown);
    EXPECT_FALSE(rig.surface.confined);
    // Neither a move nor the release belongs to a press any more.
    rig.view.OnMouseMove(rig.pixelOf(onFirst));
    rig.release(onFirst);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(notSelected));
    EXPECT_TRUE(rig.doc.capture->patchCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->patchCaptured);
    EXPECT_THAT(rig.block(), ElementsAre());
    rig.click(onFirst);
    EXPECT_THAT(rig.block(), ElementsAre(0));
}

TEST(PatchRegime, CursorIsStillConfinedWhileTheBoxStands) {
    PatchRig rig;
    bool confined = false;
    rig.ui.whileBoxStands = [&] { confined = rig.surface.confined; };
    rig.press(nowhere);
    EXPECT_TRUE(confined);
    EXPECT_FALSE(rig.surface.confined);
}

TEST(PatchRegime, DragShowsTheTextAndKeepsThePatchOfThePress) {
    PatchRig rig;
    rig.press(onFirst);
    rig.view.OnMouseMove(rig.pixelOf(onSecond));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(firstPatchText, firstPatchText));
    rig.release(onSecond);
    EXPECT_THAT(rig.block(), ElementsAre(0));
}

TEST(PatchRegime, ClickOnAMemberChangesNothingInTheBlock) {
    PatchRig rig;
    rig.click(onSecond);
    rig.call("patch.addToBlock");
    rig.click(onFirst);
    rig.call("patch.addToBlock");
    rig.ui.transcript.clear();
    rig.click(onSecond);
    EXPECT_THAT(rig.block(), ElementsAre(1, 0));
    EXPECT_THAT(rig.ui.transcript, ElementsAre(secondPatchText)) << "of the press; the release has nothing to add";
    EXPECT_TRUE(rig.doc.capture->patchCaptured);
}

TEST(PatchRegime, OutsideItsModeAClickPicksNothing) {
    PatchRig rig;
    rig.view.setMouseMode(ModeShift);
    rig.click(onFirst);
    EXPECT_TRUE(rig.doc.capture->patchCaptureArmed);
    EXPECT_EQ(rig.doc.capture->capturedPatch, -1);
}

// ---- Removing from the zBlock ---------------------------------------------------------------------------------------

struct RemovalRig : PatchRig {
    explicit RemovalRig(const std::vector<std::int32_t>& members) {
        test::arranged(doc).patchCaptureArmed = false;
        doc.capture.holdBlock();
        putIntoBlock(members);
        call("patch.removeFromBlock");
        ui.transcript.clear();
    }
};

TEST(PatchRemoval, PressShowsThePatchDarkAndTheReleaseTakesItOut) {
    RemovalRig rig({1, 0});
    rig.press(onSecond);
    EXPECT_EQ(rig.doc.capture->patchToRemove, 1);
    EXPECT_TRUE(rig.doc.capture->patchRemoving);
    EXPECT_THAT(rig.block(), ElementsAre(1, 0));
    EXPECT_THAT(rig.ui.transcript, ElementsAre(findPatch));
    EXPECT_EQ(rig.view.mouseMode, ModePatch);
    EXPECT_EQ(rig.view.list().batches.at(3).colour, (Colour{0.4F, 0.4F, 0.0F, 1.0F}));
    rig.release(onSecond);
    EXPECT_FALSE(rig.doc.capture->patchRemoving);
    EXPECT_THAT(rig.block(), ElementsAre(0));
    EXPECT_TRUE(rig.doc.capture->patchCaptured);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(findPatch, goOn));
}

TEST(PatchRemoval, PressOnNothingIsToldAndTheNextClickStillRemoves) {
    RemovalRig rig({1, 0});
    rig.press(nowhere);
    EXPECT_THAT(rig.ui.transcript, ElementsAre(notRemoved, findPatch));
    rig.release(nowhere);
    EXPECT_TRUE(rig.doc.capture->patchRemoving);
    EXPECT_THAT(rig.block(), ElementsAre(1, 0));
    rig.click(onFirst);
    EXPECT_FALSE(rig.doc.capture->patchRemoving);
    EXPECT_THAT(rig.block(), ElementsAre(1));
}

TEST(PatchRemoval, PatchOutsideTheBlockLeavesTheBlockAsItWas) {
    RemovalRig rig({1});
    rig.click(onFirst);
    EXPECT_FALSE(rig.doc.capture->patchRemoving);
    EXPECT_TRUE(rig.doc.capture->patchCaptured);
    EXPECT_THAT(rig.block(), ElementsAre(1));
}

TEST(PatchRemoval, LastOneOutEndsTheRegime) {
    RemovalRig rig({1});
    rig.doc.showBlockOnly = true;
    rig.click(onSecond);
    EXPECT_FALSE(rig.doc.capture->patchRemoving || rig.doc.capture->patchCaptured ||
                 rig.doc.capture->patchCaptureArmed);
    EXPECT_THAT(rig.block(), ElementsAre());
    EXPECT_FALSE(rig.doc.showBlockOnly);
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_EQ(rig.ui.transcript.back(), "status: Choose any item from menu to continue");
}

// ---- Several regimes in one press -----------------------------------------------------------------------------------

// Flags of several regimes are never armed together by the menus, but each looks at the press for itself.
TEST(RegimePress, GoesThroughPointSectionAndLineInThisOrder) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.call("point.capture");
    test::arranged(rig.doc).sectionCaptureArmed = test::arranged(rig.doc).lineCaptureArmed = true;
    rig.ui.transcript.clear();
    rig.press({12, 1, 0});
    const std::string section = "status: Captured section: Patch K=2, Section N=2, Points M=4";
    const std::string line = "status: Captured line: Patch K=2, Line N=3, Points M=3 ";
    EXPECT_THAT(rig.ui.transcript, ElementsAre(section, line));
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, -1) << "the line pick comes behind the point pick";
    rig.ui.transcript.clear();
    rig.view.OnMouseMove(rig.pixelOf({11, 2, 0}));
    // The pick of the line has put the mouse into the line mode; a drag serves all the same.
    EXPECT_THAT(
        rig.ui.transcript,
        ElementsAre("status: Captured point: (Patch K=2, Section N=3, Point M=2) X=11.000000, Y=2.000000, Z=0.000000",
                    "status: Captured section: Patch K=2, Section N=3, Points M=4",
                    "status: Captured line: Patch K=2, Line N=2, Points M=3 "));
}

TEST(RegimePress, RemovalKeepsTheReleaseFromTakingASection) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.call("line.captureSection");
    rig.doc.capture.armRemoval();
    rig.click({1.3, 0.9, 0});
    EXPECT_FALSE(rig.doc.capture->patchRemoving);
    EXPECT_TRUE(rig.doc.capture->sectionCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->sectionCaptured);
}

} // namespace
} // namespace velmora
