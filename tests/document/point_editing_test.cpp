#include <gmock/gmock.h>

#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "arranged_capture.h"
#include "small_models.h"
#include "status_texts.h"

namespace velmora {
namespace {

using test::arranged;
using test::flatPatch;
using test::holdPoint;
using testing::Contains;
using testing::Not;

const std::string aptQuestion = "question: APT format will be violated. Are you sure? ";

/// A 3 by 4 patch on which point (section, point) is captured, as after a click and its release.
struct CapturedPoint : testing::Test {
    test::RecordingUi ui;
    VelmoraDoc doc{ui, "/documents"};

    CapturedPoint() {
        doc.onNewDocument();
        doc.patches = {flatPatch(3, 4), flatPatch(3, 4, 5.0)};
        doc.modelFile.chosenPath = "/models/flat.apt";
        doc.retitle();
        doc.updateBounds();
    }

    void capture(std::int32_t patch, std::int32_t section, std::int32_t point) {
        test::holdPoint(doc, patch, section, point);
        doc.capture.describePoint(true);
        ui.transcript.clear();
    }

    const PointList& section(std::size_t k, std::size_t n) const { return doc.patches[k][n]; }
};

// ---- Delete ---------------------------------------------------------------------------------------------------------

TEST_F(CapturedPoint, DeleteAsksAndNoChangesNothing) {
    capture(0, 1, 2);
    const PatchList before = doc.patches;
    doc.DeletePoint();
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.pointUndoReady);
    EXPECT_THAT(ui.transcript,
                testing::ElementsAre(aptQuestion + " -> no", "status: " + doc.capture->pointContinueStatus));
}

TEST_F(CapturedPoint, DeleteTakesTheNextPointAndTurnsTheGridIntoSections) {
    capture(0, 1, 2);
    ui.answers = {true};
    doc.DeletePoint();
    EXPECT_EQ(section(0, 1), (PointList{{0, 1, 0}, {1, 1, 0}, {3, 1, 0}}));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "flat.skl");
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{3, 1, 0}));
    EXPECT_TRUE(doc.pointUndoReady);
    EXPECT_EQ(doc.capture->savedPoint, 2);
    EXPECT_EQ(doc.capture->savedPointSection, 1);
    EXPECT_EQ(doc.capture->savedPatch, 0);
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Section N=2, Point M=3) X=3.000000, Y=1.000000, Z=0.000000 "
                          "// Press right button to continue ");
}

TEST_F(CapturedPoint, DeleteRefusesTheEndsOfASectionAndLeavesTheRegime) {
    for (const std::int32_t end : {0, 3}) {
        capture(0, 1, end);
        ui.answers = {true};
        doc.DeletePoint();
        EXPECT_EQ(ui.count("message:  Procedure is canceled. It's impossible to delete the first (last) point "), 1U);
        EXPECT_EQ(section(0, 1).size(), 4U);
        EXPECT_FALSE(doc.capture->pointCaptured);
    }
}

TEST_F(CapturedPoint, DeleteRefusesASectionOfTwoPoints) {
    doc.patches = {flatPatch(3, 2)};
    doc.retitle();
    capture(0, 1, 1);
    ui.answers = {true};
    doc.DeletePoint();
    EXPECT_EQ(section(0, 1).size(), 2U);
    EXPECT_EQ(ui.count("message:  Procedure is canceled. It's impossible to delete the first (last) point "), 1U);
}

TEST_F(CapturedPoint, UndoPointBringsADeletedPointBack) {
    capture(0, 1, 2);
    const PatchList before = doc.patches;
    ui.answers = {true};
    doc.DeletePoint();
    doc.UndoPoint();
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
}

// ---- Duplicate ------------------------------------------------------------------------------------------------------

TEST_F(CapturedPoint, DuplicateByOneDoesNothingAndTakesNoSnapshot) {
    capture(0, 1, 2);
    ui.dialogs = {{}};
    doc.DuplicatePoint();
    EXPECT_EQ(section(0, 1).size(), 4U);
    EXPECT_TRUE(doc.pointUndoPatches.empty());
    EXPECT_THAT(ui.transcript, Not(Contains(testing::StartsWith("question"))));
}

TEST_F(CapturedPoint, DuplicateByThreeAddsTwoCopiesInPlace) {
    capture(0, 1, 1);
    ui.dialogs = {{{"duplicateCount", "3"}}};
    ui.answers = {true};
    doc.DuplicatePoint();
    EXPECT_EQ(section(0, 1), (PointList{{0, 1, 0}, {1, 1, 0}, {1, 1, 0}, {1, 1, 0}, {2, 1, 0}, {3, 1, 0}}));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_TRUE(doc.pointUndoReady);
    EXPECT_EQ(doc.status, doc.capture->pointContinueStatus);
}

TEST_F(CapturedPoint, DuplicateCancelledShowsTheContinuePromptAgain) {
    capture(0, 1, 1);
    doc.DuplicatePoint();
    EXPECT_THAT(ui.transcript,
                testing::ElementsAre("dialog: Cduplicate -> cancel", "status: " + doc.capture->pointContinueStatus));
}

// ---- Cut, Copy, Paste -----------------------------------------------------------------------------------------------

TEST_F(CapturedPoint, CutKeepsThePointAndCapturesTheNextOne) {
    capture(0, 1, 1);
    ui.answers = {true};
    doc.CutPoint();
    EXPECT_TRUE(doc.pointClipboardFull);
    EXPECT_EQ(doc.pointClipboard, (zVec<double>{1, 1, 0}));
    EXPECT_EQ(section(0, 1), (PointList{{0, 1, 0}, {2, 1, 0}, {3, 1, 0}}));
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{2, 1, 0}));
}

TEST_F(CapturedPoint, CutOfOneOfTheLastTwoPointsMovesToTheSectionBefore) {
    for (const std::int32_t point : {2, 3}) {
        doc.patches = {flatPatch(3, 4)};
        doc.retitle();
        capture(0, 1, point);
        ui.answers = {true};
        doc.CutPoint();
        EXPECT_EQ(doc.capture->capturedPointSection, 0);
        EXPECT_EQ(doc.capture->capturedPoint, 0);
        EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{0, 0, 0}));
        EXPECT_TRUE(doc.capture->pointCaptured);
    }
}

TEST_F(CapturedPoint, CutOfTheLastPointOfTheFirstSectionRemovesItAndSaysThatItIsCancelled) {
    capture(0, 0, 3);
    ui.answers = {true};
    doc.CutPoint();
    EXPECT_EQ(section(0, 0).size(), 3U);
    EXPECT_EQ(ui.count("message:  Procedure is canceled. It's impossible to delete the last point "), 1U);
    EXPECT_FALSE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.capture->capturedPoint, -1);
    EXPECT_EQ(doc.capture->capturedPointSection, -1);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    // Undo point is the way back.
    EXPECT_TRUE(doc.pointUndoReady);
    doc.UndoPoint();
    EXPECT_EQ(section(0, 0).size(), 4U);
}

TEST_F(CapturedPoint, CutInTheLineRegimeLeavesTheLineAndCutsTheCapturedPoint) {
    test::holdLine(doc, doc.capture->capturedPatch, 1);
    capture(1, 2, 1);
    ui.answers = {true};
    doc.CutPoint();
    EXPECT_FALSE(doc.capture->lineCaptured);
    EXPECT_EQ(section(1, 2), (PointList{{0, 2, 5}, {2, 2, 5}, {3, 2, 5}}));
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
}

TEST_F(CapturedPoint, CutInTheLineRegimeStillShowsThePoint) {
    capture(0, 1, 2);
    test::holdLine(doc, doc.capture->capturedPatch, 2);
    ui.answers = {true};
    doc.CutPoint();
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_TRUE(doc.capture->pointPicked);
}

TEST_F(CapturedPoint, CopyTwiceKeepsTheLastPointAndTakesNoSnapshot) {
    capture(0, 1, 1);
    doc.CopyPoint();
    capture(0, 2, 3);
    doc.CopyPoint();
    EXPECT_EQ(doc.pointClipboard, (zVec<double>{3, 2, 0}));
    EXPECT_FALSE(doc.pointUndoReady);
}

TEST_F(CapturedPoint, PasteOverwritesWithoutAQuestion) {
    capture(0, 1, 1);
    doc.CopyPoint();
    capture(0, 2, 3);
    doc.PastePoint();
    EXPECT_EQ(section(0, 2)[3], (zVec<double>{1, 1, 0}));
    EXPECT_EQ(section(0, 2).size(), 4U);
    EXPECT_EQ(doc.capture->pickedPoint, (zVec<double>{1, 1, 0}));
    EXPECT_TRUE(doc.pointUndoReady);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.capture->savedPoint, 3);
    EXPECT_THAT(ui.transcript, Not(Contains(testing::StartsWith("question"))));
}

TEST_F(CapturedPoint, TheStatusOfAnEditNamesTheLineInTheLineRegime) {
    test::holdLine(doc, doc.capture->capturedPatch, 3);
    capture(0, 1, 3);
    ui.dialogs = {{{"x", "9"}}};
    doc.EditPoint();
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Line N=4, Point M=2) X=9.000000, Y=1.000000, Z=0.000000 "
                          "// Press right button to continue ");
}

// ---- Find -----------------------------------------------------------------------------------------------------------

TEST_F(CapturedPoint, FindCapturesByNumber) {
    capture(0, 1, 1);
    test::arranged(doc).pointPicked = false;
    ui.dialogs = {{{"K", "2"}, {"N", "3"}, {"M", "4"}}};
    doc.FindPoint();
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_EQ(doc.capture->capturedPointSection, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 3);
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{3, 2, 5}));
    EXPECT_TRUE(doc.capture->pointPicked);
    EXPECT_FALSE(doc.pointUndoReady);
}

TEST_F(CapturedPoint, FindClampsWhatIsTypedAndNeverRefuses) {
    capture(0, 0, 0);
    ui.dialogs = {{{"K", "99"}, {"N", "-4"}, {"M", "77"}}};
    doc.FindPoint();
    EXPECT_EQ(doc.regularFindValues.K, 2);
    EXPECT_EQ(doc.regularFindValues.N, 1);
    EXPECT_EQ(doc.regularFindValues.M, 4);
    EXPECT_EQ(doc.regularFindValues.Kmax, 2);
    EXPECT_EQ(doc.regularFindValues.Nmax, 3);
    EXPECT_EQ(doc.regularFindValues.Mmax, 4);
    EXPECT_THAT(ui.transcript, Not(Contains(testing::StartsWith("refused"))));
}

TEST_F(CapturedPoint, FindTakesANumberOfAnySize) {
    capture(0, 1, 2);
    ui.dialogs = {{{"K", "99999999999999999999"}, {"N", "-99999999999999999999"}, {"M", "2147483648"}}};
    doc.FindPoint();
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_EQ(doc.capture->capturedPointSection, 0);
    EXPECT_EQ(doc.capture->capturedPoint, 3);
    EXPECT_THAT(ui.transcript, Contains("dialog: CRegularFind -> ok"));
}

TEST_F(CapturedPoint, FindFixesWhatTheRegimeFixes) {
    const auto liveFields = [this] {
        std::string live;
        ui.onDialog = [&live](DialogForm& form) {
            for (const char* key : {"K", "N", "M"}) {
                live += form.find(key)->on ? key : "";
            }
        };
        doc.FindPoint();
        return live;
    };
    capture(0, 1, 1);
    EXPECT_EQ(liveFields(), "KNM");
    doc.capture.holdBlock();
    EXPECT_EQ(liveFields(), "NM");
    test::arranged(doc).sectionCaptured = true;
    EXPECT_EQ(liveFields(), "M");
    test::arranged(doc).sectionCaptured = test::arranged(doc).patchCaptured = false;
    test::arranged(doc).lineCaptured = true;
    EXPECT_EQ(liveFields(), "N");
}

TEST_F(CapturedPoint, FindCancelledLeavesAllAsItWas) {
    capture(0, 1, 1);
    doc.FindPoint();
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.status, doc.capture->pointContinueStatus);
}

// ---- Drag -----------------------------------------------------------------------------------------------------------

TEST_F(CapturedPoint, DragSpreadsTheNeighbourhoodOverAHundredByAHundredPoints) {
    capture(0, 1, 1);
    doc.DragPoint();
    ASSERT_EQ(doc.dragPatches.size(), 1U);
    ASSERT_EQ(doc.dragPatches[0].size(), 100U);
    for (const PointList& row : doc.dragPatches[0]) {
        ASSERT_EQ(row.size(), 100U);
    }
    // The chords between the neighbours: from (0, 0) to (2, 2) in a flat patch.
    EXPECT_EQ(doc.dragPatches[0].front().front(), (zVec<double>{0, 0, 0}));
    EXPECT_EQ(doc.dragPatches[0].back().back(), (zVec<double>{2, 2, 0}));
    EXPECT_TRUE(doc.capture->pointDragging);
    EXPECT_TRUE(doc.pointUndoReady);
    EXPECT_EQ(doc.status, "Press left button of mouse and drag it");
    EXPECT_EQ(doc.dragStart, (zVec<double>{1, 1, 0}));
}

TEST_F(CapturedPoint, DragOfTheFirstPointStaysInItsCell) {
    capture(0, 0, 0);
    doc.DragPoint();
    EXPECT_EQ(doc.dragPatches[0].front().front(), (zVec<double>{0, 0, 0}));
    EXPECT_EQ(doc.dragPatches[0].back().back(), (zVec<double>{1, 1, 0}));
}

TEST_F(CapturedPoint, DragEndsAtOnceWithOneSectionOrOnePoint) {
    doc.patches = {flatPatch(1, 4), flatPatch(3, 1)};
    capture(0, 0, 1);
    doc.DragPoint();
    EXPECT_FALSE(doc.capture->pointDragging);
    capture(1, 1, 0);
    doc.DragPoint();
    EXPECT_FALSE(doc.capture->pointDragging);
    EXPECT_FALSE(doc.pointUndoReady);
    EXPECT_TRUE(ui.transcript.empty());
}

TEST_F(CapturedPoint, AnUnusedBendEndsWithItsRegime) {
    capture(0, 1, 2);
    doc.prepareDragCorrection();
    EXPECT_TRUE(doc.capture->dragCorrectsLine);
    doc.ExitPointRegime();
    EXPECT_FALSE(doc.capture->dragCorrectsLine);
    test::arranged(doc).dragCorrectsLine = true;
    doc.leaveRegimes();
    EXPECT_FALSE(doc.capture->dragCorrectsLine);
}

TEST_F(CapturedPoint, TheReleaseEndsADrag) {
    test::holdSection(doc, doc.capture->capturedPatch, 1);
    capture(0, 1, 1);
    doc.DragPoint();
    doc.capture.placePoint({1.5, 1, 0});
    doc.placeDraggedPoint(doc.capture->capturedPointPos);
    doc.moveRegimeAtRelease();
    EXPECT_FALSE(doc.capture->pointDragging);
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(section(0, 1)[1], (zVec<double>{1.5, 1, 0}));
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Section N=2, Point M=2) X=1.500000, Y=1.000000, Z=0.000000 "
                          "// Press right button to continue ");
}

} // namespace
} // namespace velmora
