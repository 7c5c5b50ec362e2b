#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const dragStatus = "status: Press left button of mouse and drag it";
const char* const leaveQuestion = "question: Regime Add Patch to Block will be canceled. Are you sure?";

class CurveRegime : public StateTest {
protected:
    CurveRegime() { hold({flatPatch(3, 4), flatPatch(5, 2)}); }

    /// What the input dialog shows as it opens; it is then cancelled.
    Lines shown(const char* id) {
        Lines values;
        ui.onDialog = [&values](DialogForm& form) {
            for (const DialogField& field : form.fields) {
                values.push_back(fieldText(field));
            }
        };
        call(id);
        ui.onDialog = nullptr;
        return values;
    }
};

using CaptureSection = CurveRegime;
using CaptureLine = CurveRegime;
using NextCurve = CurveRegime;
using ExitLines = CurveRegime;
using InputSection = CurveRegime;
using InputLine = CurveRegime;
using Regimes = CurveRegime;

} // namespace

// ---- Capture section ------------------------------------------------------------------------------------------------

TEST_F(CaptureSection, ArmsTheSectionAndNothingElse) {
    captureSection(1, 2);
    arranged(doc).pointCaptureArmed = arranged(doc).freePointArmed = arranged(doc).lineCaptureArmed = true;
    call("line.captureSection");
    EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    EXPECT_FALSE(doc.capture->sectionCaptured || doc.capture->lineCaptureArmed || doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->pointCaptureArmed || doc.capture->freePointArmed || doc.capture->patchCaptureArmed);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_EQ(doc.capture->sectionStatus, doc.capture->dragPrompt);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_THAT(viewCalls(), ElementsAre("force section"));
}

TEST_F(CaptureSection, LeavesTheLineFirst) {
    captureLine(0, 2);
    call("line.captureSection");
    EXPECT_FALSE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, -1);
    EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw", "force section"));
}

TEST_F(CaptureSection, LeavesACapturedOrFreePointFirst) {
    for (bool CaptureState::*flag : {&CaptureState::pointCaptured, &CaptureState::freePointHeld}) {
        arranged(doc).*flag = true;
        doc.pointUndoReady = true;
        call("line.captureSection");
        EXPECT_FALSE(doc.capture->pointRegimeActive());
        EXPECT_FALSE(doc.pointUndoReady);
        EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    }
}

TEST_F(CaptureSection, AsksBeforeItEndsTheAddRegimeAndNoLeavesAllAsItWas) {
    captureLine(1, 1);
    arranged(doc).patchCaptureArmed = true;
    call("line.captureSection");
    EXPECT_THAT(heard(), ElementsAre(std::string(leaveQuestion) + " -> no"));
    EXPECT_TRUE(doc.capture->patchCaptureArmed && doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptureArmed);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(CaptureSection, AnsweredWithYesEndsTheAddRegime) {
    arranged(doc).patchCaptureArmed = true;
    addToBlock(1);
    ui.answers = {true};
    call("line.captureSection");
    EXPECT_THAT(heard(), ElementsAre(std::string(leaveQuestion) + " -> yes", dragStatus));
    EXPECT_FALSE(doc.capture->patchCaptureArmed);
    EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    EXPECT_THAT(block(), ElementsAre(1));
}

TEST_F(CaptureSection, InACapturedPatchAsksNothingAndKeepsIt) {
    doc.capture.holdBlock();
    call("line.captureSection");
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_TRUE(doc.capture->patchCaptured);
}

// ---- Capture line ---------------------------------------------------------------------------------------------------

TEST_F(CaptureLine, ArmsTheLineAndNothingElse) {
    captureLine(0, 2);
    arranged(doc).pointCaptureArmed = arranged(doc).freePointArmed = arranged(doc).sectionCaptureArmed = true;
    call("line.captureLine");
    EXPECT_TRUE(doc.capture->lineCaptureArmed);
    EXPECT_FALSE(doc.capture->lineCaptured || doc.capture->sectionCaptureArmed || doc.capture->sectionCaptured);
    EXPECT_FALSE(doc.capture->pointCaptureArmed || doc.capture->freePointArmed || doc.capture->patchCaptureArmed);
    EXPECT_EQ(doc.capture->capturedLine, -1);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_EQ(doc.capture->lineStatus, doc.capture->dragPrompt);
    EXPECT_THAT(heard(), ElementsAre(dragStatus));
    EXPECT_THAT(viewCalls(), ElementsAre("force line"));
}

TEST_F(CaptureLine, LeavesTheSectionFirst) {
    captureSection(0, 2);
    call("line.captureLine");
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_TRUE(doc.capture->lineCaptureArmed);
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw", "force line"));
}

TEST_F(CaptureLine, AsksBeforeItEndsTheAddRegime) {
    arranged(doc).patchCaptureArmed = true;
    call("line.captureLine");
    EXPECT_THAT(heard(), ElementsAre(std::string(leaveQuestion) + " -> no"));
    EXPECT_TRUE(doc.capture->patchCaptureArmed);
    EXPECT_FALSE(doc.capture->lineCaptureArmed);
}

// ---- The next one ---------------------------------------------------------------------------------------------------

TEST_F(NextCurve, ArmsASectionAfterASection) {
    captureSection(0, 1);
    call("line.next");
    EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    EXPECT_FALSE(doc.capture->sectionCaptured || doc.capture->lineCaptureArmed);
}

TEST_F(NextCurve, ArmsALineAfterALine) {
    captureLine(0, 1);
    call("line.next");
    EXPECT_TRUE(doc.capture->lineCaptureArmed);
    EXPECT_FALSE(doc.capture->lineCaptured || doc.capture->sectionCaptureArmed);
}

TEST_F(NextCurve, WithNeitherDoesNothing) {
    arranged(doc).sectionCaptureArmed = true;
    doc.capture.renumberPatch(1);
    call("line.next");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), IsEmpty());
    EXPECT_EQ(doc.capture->capturedPatch, 1);
}

TEST_F(NextCurve, LeavesAFreePointFirst) {
    captureSection(0, 1);
    arranged(doc).freePointHeld = true;
    call("line.next");
    EXPECT_FALSE(doc.capture->freePointHeld);
    EXPECT_TRUE(doc.capture->sectionCaptureArmed);
    EXPECT_THAT(heard(), ElementsAre("status: Press right button to continue", dragStatus));
}

// ---- Exit -----------------------------------------------------------------------------------------------------------

TEST_F(ExitLines, ForgetsASectionCapturedOrArmed) {
    for (bool CaptureState::*flag : {&CaptureState::sectionCaptured, &CaptureState::sectionCaptureArmed}) {
        captureSection(0, 1);
        arranged(doc).sectionCaptured = false;
        arranged(doc).*flag = true;
        doc.capture.showPoint();
        call("line.exit");
        EXPECT_FALSE(doc.capture->curveRegimeActive());
        EXPECT_EQ(doc.capture->capturedSection, -1);
        EXPECT_EQ(doc.capture->capturedPatch, -1);
        EXPECT_FALSE(doc.capture->pointPicked);
        EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
    }
}

TEST_F(ExitLines, ForgetsALineCapturedOrArmed) {
    for (bool CaptureState::*flag : {&CaptureState::lineCaptured, &CaptureState::lineCaptureArmed}) {
        captureLine(0, 1);
        arranged(doc).lineCaptured = false;
        arranged(doc).*flag = true;
        call("line.exit");
        EXPECT_FALSE(doc.capture->curveRegimeActive());
        EXPECT_EQ(doc.capture->capturedLine, -1);
        EXPECT_EQ(doc.capture->capturedPatch, -1);
        EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
    }
}

TEST_F(ExitLines, LeavesTheNumberOfACurveThatWasNotInHand) {
    captureSection(0, 1);
    doc.capture.renumberLine(2);
    call("line.exit");
    EXPECT_EQ(doc.capture->capturedLine, 2);
}

TEST_F(ExitLines, LeavesAPointFirst) {
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    call("line.exit");
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_FALSE(doc.capture->sectionCaptured);
}

TEST_F(ExitLines, InAPatchComesBackToPatchModeAndItsStatus) {
    for (bool CaptureState::*flag : {&CaptureState::patchCaptured, &CaptureState::patchCaptureArmed}) {
        captureSection(0, 1);
        arranged(doc).*flag = true;
        arranged(doc).blockStatus = "the patch ";
        call("line.exit");
        EXPECT_THAT(heard(), ElementsAre("status: the patch "));
        EXPECT_EQ(viewCalls().front(), "set patch");
        EXPECT_EQ(doc.capture->capturedPatch, -1);
        arranged(doc).*flag = false;
    }
}

TEST_F(ExitLines, TakesPatchesThatLostAllSectionsOutOfTheZBlock) {
    doc.patches = {flatPatch(2, 2), Patch(), flatPatch(2, 2), Patch()};
    for (const std::int32_t patch : {3, 2, 1, 0}) {
        addToBlock(patch);
    }
    captureSection(2, 1);
    call("line.exit");
    EXPECT_THAT(block(), ElementsAre(2, 0));
    EXPECT_EQ(doc.blockList[2], -1);
}

TEST_F(ExitLines, WithNoCurveInHandLeavesTheZBlockAlone) {
    doc.patches = {Patch()};
    addToBlock(0);
    call("line.exit");
    EXPECT_THAT(block(), ElementsAre(0));
}

TEST_F(ExitLines, ByTheMenuLeavesTheRegime) {
    captureLine(0, 1);
    call("line.exit");
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_EQ(doc.capture->capturedLine, -1);
}

// ---- Input section --------------------------------------------------------------------------------------------------

TEST_F(InputSection, OpensWithTheCountsOfTheModel) {
    EXPECT_THAT(shown("line.inputSection"), ElementsAre("1", "2", "1", "3"));
}

TEST_F(InputSection, OpensWithWhatIsCaptured) {
    captureSection(1, 3);
    EXPECT_THAT(shown("line.inputSection"), ElementsAre("2", "2", "4", "5"));
}

TEST_F(InputSection, CancelledChangesNothing) {
    captureLine(0, 1);
    call("line.inputSection");
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputSection -> cancel"));
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(InputSection, HoldsTheSection) {
    arranged(doc).pointCaptureArmed = arranged(doc).freePointArmed = arranged(doc).patchCaptureArmed = true;
    arranged(doc).sectionCaptureArmed = arranged(doc).lineCaptureArmed = true;
    ui.dialogs.push_back({{"patch", "2"}, {"section", "4"}});
    call("line.inputSection");
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptureArmed || doc.capture->lineCaptured || doc.capture->lineCaptureArmed);
    EXPECT_FALSE(doc.capture->pointCaptureArmed || doc.capture->freePointArmed || doc.capture->patchCaptureArmed);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_EQ(doc.capture->capturedSection, 3);
    const std::string text = "Captured section: Patch K=2, Section N=4, Points M=2  // Press right button to continue ";
    EXPECT_EQ(doc.capture->sectionContinueStatus, text);
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputSection -> ok", "status: " + text));
    EXPECT_THAT(viewCalls(), ElementsAre("force section", "redraw", "set section"));
}

TEST_F(InputSection, AsksNothingOfTheAddRegime) {
    arranged(doc).patchCaptureArmed = true;
    ui.dialogs.push_back({});
    call("line.inputSection");
    EXPECT_EQ(heard().front(), "dialog: CInputSection -> ok");
}

TEST_F(InputSection, LeavesPointAndLine) {
    captureLine(0, 1);
    capturePoint(0, 1, 1);
    ui.dialogs.push_back({{"patch", "1"}, {"section", "3"}});
    call("line.inputSection");
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_FALSE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, -1);
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedSection, 2);
}

TEST_F(InputSection, OutsideTheZBlockIsRefusedByTheDialog) {
    addToBlock(1);
    doc.capture.holdBlock();
    ui.dialogs.push_back({{"patch", "1"}});
    call("line.inputSection");
    EXPECT_THAT(heard(), ElementsAre("refused: OK: Number of inputted patch is out of Block",
                                     "dialog: CInputSection -> cancel"));
    EXPECT_FALSE(doc.capture->sectionCaptured);
}

TEST_F(InputSection, KeepsItsNumbersForTheNextTime) {
    ui.dialogs.push_back({{"patch", "2"}, {"section", "4"}});
    call("line.inputSection");
    call("line.exit");
    EXPECT_THAT(shown("line.inputSection"), ElementsAre("2", "2", "4", "5"));
}

// ---- Input line -----------------------------------------------------------------------------------------------------

TEST_F(InputLine, OpensWithTheCountsOfTheModel) {
    EXPECT_THAT(shown("line.inputLine"), ElementsAre("1", "2", "1", "4"));
}

TEST_F(InputLine, OpensWithWhatIsCaptured) {
    captureLine(1, 1);
    EXPECT_THAT(shown("line.inputLine"), ElementsAre("2", "2", "2", "2"));
}

TEST_F(InputLine, HoldsTheLine) {
    ui.dialogs.push_back({{"patch", "1"}, {"line", "4"}});
    call("line.inputLine");
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->lineCaptureArmed || doc.capture->sectionCaptured || doc.capture->sectionCaptureArmed);
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedLine, 3);
    const std::string text = "Captured line: Patch K=1, Line N=4  // Press right button to continue ";
    EXPECT_EQ(doc.capture->lineContinueStatus, text);
    EXPECT_THAT(heard(), ElementsAre("dialog: CInputLine -> ok", "status: " + text));
    EXPECT_THAT(viewCalls(), ElementsAre("force line", "redraw", "set line"));
}

TEST_F(InputLine, LeavesASectionOrALine) {
    captureSection(0, 2);
    ui.dialogs.push_back({{"patch", "1"}, {"line", "4"}});
    call("line.inputLine");
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_EQ(doc.capture->capturedLine, 3);
    viewCalls();
    ui.dialogs.push_back({{"patch", "1"}, {"line", "2"}});
    call("line.inputLine");
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_EQ(viewCalls().front(), "reset"); // the line regime was left and entered again
}

TEST_F(Regimes, EndEachByItsOwnExit) {
    arranged(doc).pointCaptured = arranged(doc).sectionCaptured = arranged(doc).patchCaptured = true;
    call("point.exit");
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_TRUE(doc.capture->sectionCaptured && doc.capture->patchCaptured);
    call("line.exit");
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_TRUE(doc.capture->patchCaptured);
    call("patch.exit");
    EXPECT_FALSE(doc.capture->patchRegimeActive());
}

} // namespace velmora::test
