#include "arranged_capture.h"
#include "document_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PatchRegime : public DocumentTest {
protected:
    PatchRegime() { hold({flatPatch(2, 2), flatPatch(3, 3), flatPatch(4, 4)}); }

    void input(const char* number) {
        ui.dialogs.push_back({{"number", number}});
        call("patch.inputAndAdd");
    }
};

using InputPatch = PatchRegime;
using ExitPatches = PatchRegime;
using EndBlock = PatchRegime;
using LeaveRegimes = PatchRegime;

void expectEmptyBlock(const DocumentState& doc) {
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_EQ(doc.blockList[0], -1);
    EXPECT_EQ(doc.blockList[1], -1);
}

} // namespace

// ---- Input and add --------------------------------------------------------------------------------------------------

TEST_F(InputPatch, ShowsTheNumberOfPatches) {
    std::string maximum;
    ui.onDialog = [&maximum](DialogForm& form) { maximum = fieldText(*form.find("maximum")); };
    call("patch.inputAndAdd");
    EXPECT_EQ(maximum, "3");
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputPatch -> cancel"));
    EXPECT_FALSE(doc.capture->patchCaptured);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(InputPatch, AddsThePatchToTheZBlock) {
    arranged(doc).sectionCaptureArmed = arranged(doc).pointCaptureArmed = arranged(doc).patchCaptureArmed = true;
    input("2");
    EXPECT_TRUE(doc.capture->patchCaptured);
    EXPECT_FALSE(doc.capture->patchCaptureArmed || doc.capture->sectionCaptureArmed || doc.capture->pointCaptureArmed);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_THAT(block(), ElementsAre(1));
    const std::string text = "Captured patch: Patch K=2 // Press right button to continue ";
    EXPECT_EQ(doc.capture->blockStatus, text);
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputPatch -> ok", "status: " + text));
    EXPECT_THAT(viewCalls(), ElementsAre("force patch", "redraw", "set patch"));
}

TEST_F(InputPatch, KeepsTheOrderOfCapture) {
    input("3");
    input("1");
    input("2");
    EXPECT_THAT(block(), ElementsAre(2, 0, 1));
}

TEST_F(InputPatch, OfAPatchOfTheZBlockOnlyRedraws) {
    input("3");
    input("1");
    heard();
    viewCalls();
    input("3");
    EXPECT_THAT(block(), ElementsAre(2, 0));
    EXPECT_EQ(doc.capture->capturedPatch, 2);
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputPatch -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("force patch", "redraw", "set patch"));
}

TEST_F(InputPatch, LeavesPointSectionAndLine) {
    captureSection(0, 1);
    capturePoint(0, 1, 1);
    input("2");
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    captureLine(0, 1);
    input("3");
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_EQ(doc.capture->capturedPatch, 2);
}

TEST_F(InputPatch, RefusesOneMoreThanTheZBlockHolds) {
    doc.patches.assign(blockCapacity + 1, Patch());
    for (std::int32_t k = 0; k < blockCapacity; ++k) {
        addToBlock(k);
    }
    input("5001");
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputPatch -> ok", "message: It is impossible to add one more zBlock"));
    EXPECT_EQ(doc.blockCount, blockCapacity);
    EXPECT_FALSE(doc.inBlock(blockCapacity));
    input("5000");
    EXPECT_TRUE(doc.capture->patchCaptured); // it is in already
}

TEST_F(InputPatch, OfANumberAboveTheMaximumIsCorrectedAndNotTaken) {
    input("4");
    EXPECT_THAT(heard(),
                ElementsAre("refused: OK: Number of inputted patch is corrected", "dialog: CInputPatch -> cancel"));
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_FALSE(doc.capture->patchCaptured);
}

// ---- Exits ----------------------------------------------------------------------------------------------------------

TEST_F(ExitPatches, EmptiesTheZBlockAndEndsTheRegime) {
    input("2");
    input("1");
    doc.showBlockOnly = doc.pointUndoReady = arranged(doc).pointPicked = true;
    viewCalls();
    call("patch.exit");
    EXPECT_FALSE(doc.capture->patchRegimeActive());
    EXPECT_FALSE(doc.showBlockOnly || doc.pointUndoReady || doc.capture->pointPicked);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    expectEmptyBlock(doc);
    EXPECT_EQ(doc.capture->removeStatus, "Choose any item from menu to continue");
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
}

TEST_F(ExitPatches, LeavesASectionOrLineFirst) {
    doc.capture.holdBlock();
    captureSection(0, 1);
    call("patch.exit");
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_EQ(doc.capture->capturedSection, -1);
    doc.capture.holdBlock();
    captureLine(0, 1);
    call("patch.exit");
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_FALSE(doc.capture->patchRegimeActive());
}

TEST_F(ExitPatches, LeavesAPointOfTheirPatchesToo) {
    input("2");
    capturePoint(1, 1, 1);
    call("patch.exit");
    EXPECT_FALSE(doc.capture->pointCaptured);
    EXPECT_FALSE(doc.capture->pointPicked);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_EQ(doc.status, "For Help, press F1");
}

TEST_F(PatchRegime, AnotherCaptureEndsARemoval) {
    input("2");
    call("patch.removeFromBlock");
    EXPECT_TRUE(doc.capture->patchRemoving);
    call("line.captureSection");
    EXPECT_FALSE(doc.capture->patchRemoving);
    call("line.exit");
    call("patch.removeFromBlock");
    call("point.capture");
    EXPECT_FALSE(doc.capture->patchRemoving);
}

TEST_F(EndBlock, ClearsTheRegimeAndTheZBlock) {
    input("2");
    arranged(doc).removeStatus = "as it was";
    doc.showBlockOnly = arranged(doc).patchCaptureArmed = doc.pointUndoReady = arranged(doc).pointPicked = true;
    viewCalls();
    doc.EndBlockRegime();
    EXPECT_FALSE(doc.capture->patchRegimeActive());
    EXPECT_FALSE(doc.showBlockOnly || doc.pointUndoReady || doc.capture->pointPicked);
    expectEmptyBlock(doc);
    EXPECT_EQ(doc.capture->removeStatus, "as it was");
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
}

TEST_F(EndBlock, OfAnEmptyZBlockAsksForAMenuItem) {
    doc.EndBlockRegime();
    EXPECT_EQ(doc.capture->removeStatus, "Choose any item from menu to continue");
}

TEST_F(LeaveRegimes, LeavesEveryOneAndForgetsAllAddresses) {
    arranged(doc).patchCaptured = arranged(doc).patchCaptureArmed = true;
    addToBlock(1);
    captureSection(0, 1);
    captureLine(0, 1);
    capturePoint(0, 1, 1);
    arranged(doc).freePointHeld = arranged(doc).freePointArmed = arranged(doc).sectionCaptureArmed =
        arranged(doc).lineCaptureArmed = true;
    leaveRegimes();
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_FALSE(doc.capture->patchRegimeActive());
    for (const std::int32_t number :
         {doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint,
          doc.capture->capturedSection, doc.capture->capturedLine}) {
        EXPECT_EQ(number, -1);
    }
    expectEmptyBlock(doc);
}

TEST_F(LeaveRegimes, WithNoneActiveSaysNothing) {
    leaveRegimes();
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), IsEmpty());
}

} // namespace velmora::test
