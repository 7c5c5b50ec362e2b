#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Undo : public StateTest {
protected:
    Undo() { hold({flatPatch(3, 4), flatPatch(2, 2)}); }

    /// A point edit as commands make it: snapshot, flag, address, change.
    void movePoint(double x) {
        savePointUndo();
        doc.pointUndoReady = true;
        doc.capture.savePoint();
        doc.pointAt(doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint)->x = x;
    }

    /// A patch edit as commands make it.
    void removeFirstPatch() {
        savePatchUndo();
        doc.patchUndoReady = true;
        doc.rebuildOnUndo = false;
        doc.patches.erase(doc.patches.begin());
        doc.retitle();
    }

    void expectNothingToUndo() const {
        EXPECT_FALSE(doc.pointUndoReady || doc.patchUndoReady);
        EXPECT_TRUE(doc.pointUndoPatches.empty());
        EXPECT_TRUE(doc.undoPatches.empty());
    }
};

using Snapshots = Undo;
using UndoPoint = Undo;
using UndoPatch = Undo;

} // namespace

// ---- Snapshots ------------------------------------------------------------------------------------------------------

TEST_F(Snapshots, CopyTheModelAndMarkItModified) {
    const PatchList before = doc.patches;
    savePointUndo();
    EXPECT_EQ(doc.pointUndoPatches.copy(), before);
    EXPECT_TRUE(doc.undoPatches.empty());
    EXPECT_TRUE(doc.documentModified);
    doc.documentModified = false;
    savePatchUndo();
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.documentModified);
    doc.patches[0][0][0].x = 99;
    EXPECT_EQ(doc.pointUndoPatches.copy(), before);
    EXPECT_EQ(doc.undoPatches.copy(), before);
}

TEST_F(Snapshots, SetNoUndoFlag) {
    savePointUndo();
    savePatchUndo();
    EXPECT_FALSE(doc.pointUndoReady || doc.patchUndoReady);
}

TEST_F(Snapshots, ReplaceTheOnesBefore) {
    savePatchUndo();
    savePointUndo();
    doc.patches = {flatPatch(2, 2)};
    savePatchUndo();
    savePointUndo();
    EXPECT_EQ(doc.undoPatches.copy(), doc.patches);
    EXPECT_EQ(doc.pointUndoPatches.copy(), doc.patches);
}

TEST_F(Snapshots, OfAnEmptyModelHoldNothing) {
    savePatchUndo();
    doc.patches.clear();
    savePatchUndo();
    EXPECT_TRUE(doc.undoPatches.empty());
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(Snapshots, OfNoStructuredModelHoldNothing) {
    doc.structureKind = StructureKind::None;
    savePatchUndo();
    savePointUndo();
    EXPECT_TRUE(doc.undoPatches.empty());
    EXPECT_TRUE(doc.pointUndoPatches.empty());
    EXPECT_TRUE(doc.documentModified);
}

// ---- Undo point -----------------------------------------------------------------------------------------------------

TEST_F(UndoPoint, WithoutASnapshotDoesNothing) {
    const PatchList before = doc.patches;
    arranged(doc).savedPatch = 1;
    doc.patchUndoReady = true;
    call("point.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.capture->savedPatch, 1);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(UndoPoint, RestoresTheModelAndThePoint) {
    const PatchList before = doc.patches;
    capturePoint(0, 1, 2);
    movePoint(77);
    doc.capture.placePoint({77, 1, 0});
    call("point.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.capture->pickedPoint, zVec<double>(2, 1, 0));
    EXPECT_EQ(doc.capture->capturedPointPos, zVec<double>(2, 1, 0));
    EXPECT_TRUE(doc.capture->pointPicked);
    expectNothingToUndo();
    const std::string text = "Captured point: (Patch K=1, Section N=2, Point M=3) X=2.000000, Y=1.000000, Z=0.000000";
    EXPECT_EQ(doc.capture->pointStatus, text);
    EXPECT_THAT(heard(), ElementsAre("status: " + text + " // Press right button to continue "));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set point"));
}

TEST_F(UndoPoint, GoesBackToTheSavedAddressAndForgetsIt) {
    capturePoint(0, 1, 2);
    movePoint(77);
    doc.capture.renumberPatch(1);
    arranged(doc).capturedPointSection = arranged(doc).capturedPoint = 0;
    call("point.undo");
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedPointSection, 1);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    for (const std::int32_t number : {doc.capture->savedPatch, doc.capture->savedPointSection, doc.capture->savedPoint,
                                      doc.capture->savedSection, doc.capture->savedLine}) {
        EXPECT_EQ(number, -1);
    }
}

TEST_F(UndoPoint, TakesSavedSectionAndLineOnlyWhenTheyAreNotNegative) {
    capturePoint(0, 1, 2);
    movePoint(77);
    doc.capture.renumberSection(5);
    doc.capture.renumberLine(6);
    call("point.undo");
    EXPECT_EQ(doc.capture->capturedSection, 5);
    EXPECT_EQ(doc.capture->capturedLine, 6);
    movePoint(77);
    arranged(doc).savedSection = 0;
    arranged(doc).savedLine = 1;
    call("point.undo");
    EXPECT_EQ(doc.capture->capturedSection, 0);
    EXPECT_EQ(doc.capture->capturedLine, 1);
}

TEST_F(UndoPoint, TurnsTheKindBack) {
    capturePoint(0, 1, 2);
    movePoint(77);
    doc.patches[0][1].pop_back();
    doc.retitle();
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.skl");
    call("point.undo");
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(UndoPoint, OfTwoEditsTakesBackTheSecondAndThenNothing) {
    capturePoint(0, 1, 2);
    movePoint(70);
    const PatchList afterFirst = doc.patches;
    movePoint(80);
    call("point.undo");
    EXPECT_EQ(doc.patches, afterFirst);
    call("point.undo");
    EXPECT_EQ(doc.patches, afterFirst);
}

TEST_F(UndoPoint, TakesTheUndoOfPatchesWithIt) {
    removeFirstPatch();
    capturePoint(0, 0, 0);
    movePoint(70);
    call("point.undo");
    expectNothingToUndo();
    EXPECT_EQ(doc.patches.size(), 1U);
}

TEST_F(UndoPoint, WithNoPointCapturedLeavesThePickWhereItWas) {
    capturePoint(0, 1, 2);
    movePoint(77);
    arranged(doc).pointCaptured = false;
    doc.capture.placePoint({5, 5, 5});
    call("point.undo");
    EXPECT_EQ(doc.capture->pickedPoint, zVec<double>(5, 5, 5));
    EXPECT_EQ(doc.capture->capturedPointPos, zVec<double>(5, 5, 5));
    EXPECT_TRUE(doc.capture->pointPicked);
}

TEST_F(UndoPoint, WithNoSavedAddressDoesNotReadOutsideTheModel) {
    const PatchList before = doc.patches;
    capturePoint(0, 1, 2);
    savePointUndo();
    doc.pointUndoReady = true;
    doc.patches.clear();
    call("point.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
}

TEST_F(UndoPoint, BehindACommandOfPatchesLeavesNoNumberOfAPatchThatIsGone) {
    capturePoint(0, 1, 2);
    movePoint(77);
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.patches.push_back(flatPatch(5, 5, 9.0));
    addToBlock(0);
    addToBlock(2);
    doc.capture.holdBlock();
    doc.showBlockOnly = true;
    call("point.undo");
    EXPECT_EQ(doc.patches.size(), 2U);
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_EQ(doc.blockList[0], -1);
    EXPECT_FALSE(doc.showBlockOnly);
}

TEST_F(UndoPoint, OfAPointAloneKeepsTheZBlock) {
    capturePoint(0, 1, 2);
    movePoint(77);
    addToBlock(1);
    doc.showBlockOnly = true;
    call("point.undo");
    EXPECT_EQ(doc.blockCount, 1);
    EXPECT_EQ(doc.blockList[0], 1);
    EXPECT_TRUE(doc.showBlockOnly);
}

TEST_F(UndoPoint, BehindACommandOfPatchesKeepsTheCapturedCurveInsideTheModelThatComesBack) {
    capturePoint(0, 1, 2);
    movePoint(77);
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.patches[0] = flatPatch(9, 4);
    captureSection(0, 8);
    arranged(doc).savedPatch = arranged(doc).savedPointSection = arranged(doc).savedPoint = 0;
    arranged(doc).savedSection = arranged(doc).savedLine = -1;
    call("point.undo");
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, 2); // the last of three
}

// ---- Undo patch -----------------------------------------------------------------------------------------------------

TEST_F(UndoPatch, RestoresTheModelKindAndTitle) {
    const PatchList before = doc.patches;
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.patches[0][0].pop_back();
    doc.retitle();
    forget();
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    expectNothingToUndo();
    // Nothing was read or written here: where Save goes is told.
    EXPECT_THAT(heard(), ElementsAre("title: wing.apt", "status: For Help, press F1",
                                     "status: Save writes " + (folder / "wing.apt").string()));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(UndoPatch, WithoutASnapshotKeepsTheModel) {
    const PatchList before = doc.patches;
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    expectNothingToUndo();
}

TEST_F(UndoPatch, InThePatchRegimeAsksToContinueAndEmptiesTheZBlock) {
    removeFirstPatch();
    doc.capture.holdBlock();
    addToBlock(0);
    addToBlock(1);
    call("patch.undo");
    EXPECT_EQ(doc.capture->undoStatus, doc.capture->continuePrompt);
    EXPECT_THAT(heard(), ElementsAre("status: Press right button to continue"));
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_EQ(doc.blockList[0], -1);
    EXPECT_EQ(doc.blockList[1], -1);
    EXPECT_TRUE(doc.capture->patchCaptured);
}

TEST_F(UndoPatch, KeepsTheSectionOrLineCaptured) {
    removeFirstPatch();
    captureSection(0, 1);
    call("patch.undo");
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, 1);
}

TEST_F(UndoPatch, TakesTheUndoOfPointsWithIt) {
    removeFirstPatch();
    capturePoint(0, 0, 1);
    movePoint(70);
    call("patch.undo");
    expectNothingToUndo();
    EXPECT_EQ(doc.patches.size(), 2U);
    EXPECT_EQ(doc.capture->capturedPointPos, doc.patches[0][0][1]);
}

TEST_F(UndoPatch, TakesTheCapturedPointToWhereItStandsInTheModelThatComesBack) {
    removeFirstPatch();
    capturePoint(0, 0, 1);
    doc.capture.placePoint({5, 5, 5});
    call("patch.undo");
    EXPECT_EQ(doc.capture->capturedPointPos, doc.patches[0][0][1]);
    EXPECT_EQ(doc.capture->pickedPoint, doc.patches[0][0][1]);
}

TEST_F(UndoPatch, KeepsWhatIsCapturedInsideASmallerModel) {
    hold({flatPatch(2, 3)});
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.patches = {flatPatch(2, 3), flatPatch(9, 9)};
    captureSection(1, 8);
    capturePoint(1, 8, 8);
    doc.capture.renumberLine(7);
    doc.showBlockOnly = true;
    call("patch.undo");
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_EQ(doc.capture->capturedLine, 2);
    EXPECT_EQ(doc.capture->capturedPointSection, 1);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, doc.patches[0][1][2]);
    EXPECT_FALSE(doc.showBlockOnly);
}

TEST_F(UndoPatch, FitsTheViewAnewOnlyWhenTheExtentHadChanged) {
    removeFirstPatch();
    doc.rebuildOnUndo = true;
    call("patch.undo");
    EXPECT_THAT(viewCalls(), ElementsAre("bounds"));
    EXPECT_FALSE(doc.rebuildOnUndo);
    removeFirstPatch();
    call("patch.undo");
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(UndoPatch, BringsBackAModelThatWasRemoved) {
    const PatchList before = doc.patches;
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.patches.clear();
    doc.forgetKinds();
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(UndoPatch, OfTwoCommandsTakesBackTheSecond) {
    removeFirstPatch();
    const PatchList afterFirst = doc.patches;
    removeFirstPatch();
    call("patch.undo");
    EXPECT_EQ(doc.patches, afterFirst);
    call("patch.undo");
    EXPECT_EQ(doc.patches, afterFirst);
}

} // namespace velmora::test
