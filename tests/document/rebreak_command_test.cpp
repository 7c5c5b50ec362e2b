#include <random>

#include "DialogValues.h"
#include "arranged_capture.h"
#include "file_texts.h"
#include "rebreak_patch_reference.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;
using Fields = std::vector<std::pair<std::string, std::string>>;

class Rebreak : public StateTest {
protected:
    void rebreak(const Fields& fields) {
        ui.dialogs.push_back(fields);
        call("line.rebreak");
    }

    /// What the dialog shows as it opens, "key=value"; it is then cancelled.
    Lines shown() {
        Lines values;
        ui.onDialog = [&values](DialogForm& form) {
            for (const DialogField& field : form.fields) {
                values.push_back(field.key + "=" + fieldText(field));
            }
        };
        call("line.rebreak");
        ui.onDialog = nullptr;
        return values;
    }
};

/// What is told of the captured curve while the dialog is open; the last of it is what OK gives.
class RebreakTried : public Rebreak {
protected:
    RebreakTried() {
        doc.dialogs->onCurveTried = [this](const PointList& curve) { told.push_back(curve); };
    }

    std::vector<PointList> told;
};

using RebreakSection = Rebreak;
using RebreakLine = Rebreak;
using RebreakBlock = Rebreak;

} // namespace

// ---- While the dialog is open ---------------------------------------------------------------------------------------

TEST_F(RebreakTried, EachChangeTellsWhatItMakesOfTheSection) {
    hold({{{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {4, 1, 0}}}});
    const PatchList before = doc.patches;
    captureSection(0, 0);
    ui.onDialog = [this, &before](DialogForm& form) {
        // As it opens: three points in two equal steps.
        ASSERT_EQ(told.size(), 1U);
        EXPECT_EQ(told.back(), (PointList{{0, 0, 0}, {2, 0, 0}, {4, 0, 0}}));
        EXPECT_FALSE(setField(form, "function", "2"));
        EXPECT_FALSE(setField(form, "newCount", "5"));
        EXPECT_EQ(told.back(), (PointList{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}}));
        EXPECT_EQ(doc.patches, before);
    };
    call("line.rebreak");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.dialogs->rebreak.tried);
}

TEST_F(RebreakTried, IsWhatOkGivesOfASectionAndOfALine) {
    const PatchList model = {{{{0, 0, 0}, {1, 0, 2}, {4, 1, 1}, {5, 1, 0}},
                              {{0, 2, 0}, {1, 2, 1}, {4, 3, 1}, {5, 3, 0}},
                              {{0, 7, 1}, {1, 6, 1}, {4, 8, 0}, {5, 9, 0}}}};
    hold(model);
    captureSection(0, 1);
    rebreak({{"newCount", "7"}, {"compression", "3"}, {"firstPoint", "2"}});
    EXPECT_EQ(told.back(), doc.patches[0][1]);
    EXPECT_EQ(doc.patches[0][0], model[0][0]);

    hold(model);
    captureLine(0, 2);
    rebreak({{"regime", "2"}, {"newCount", "5"}, {"compression", "0.5"}});
    PointList line;
    for (const PointList& section : doc.patches[0]) {
        line.push_back(section[2]);
    }
    ASSERT_EQ(line.size(), 5U);
    EXPECT_EQ(told.back(), line);
}

TEST_F(RebreakTried, ACurveThatTheValuesDoNotMeanStaysAsItIs) {
    hold({{{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {4, 1, 0}}}});
    captureSection(0, 0);
    rebreak({{"regime", "2"}, {"firstCurve", "2"}});
    EXPECT_EQ(told.back(), (PointList{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}));
    EXPECT_EQ(told.back(), doc.patches[0][0]);
}

TEST_F(RebreakTried, CountsThatNobodyPlotsAreNotTried) {
    hold({{{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {4, 1, 0}}}});
    captureSection(0, 0);
    ui.onDialog = [this](DialogForm& form) {
        const std::size_t before = told.size();
        EXPECT_FALSE(setField(form, "newCount", "100001"));
        EXPECT_EQ(told.size(), before);
        EXPECT_FALSE(setField(form, "newCount", "100000"));
        EXPECT_EQ(told.back().size(), 100000U);
    };
    call("line.rebreak");
}

// ---- Preparing ------------------------------------------------------------------------------------------------------

TEST_F(RebreakSection, OpensWithTheNumbersOfTheSection) {
    hold({flatPatch(2, 2), flatPatch(6, 4)});
    captureSection(1, 2);
    addToBlock(0);
    EXPECT_THAT(shown(), ElementsAre("regime=1", "function=1", "style=1", "exactness=0", "newCount=4", "compression=1",
                                     "firstPoint=1", "lastPoint=4", "capturedNumber=3", "firstCurve=1", "lastCurve=6",
                                     "patchNumber=2", "useBlock=0"));
    EXPECT_FALSE(doc.dialogs->rebreak.lineMode);
    EXPECT_TRUE(doc.dialogs->rebreak.isApt);
    EXPECT_EQ(doc.dialogs->rebreak.blockCount, 1);
}

TEST_F(RebreakSection, OpensWithTheLengthOfTheCapturedSection) {
    hold({patchOf({3, 7, 5})});
    captureSection(0, 1);
    EXPECT_THAT(shown(), testing::IsSupersetOf({"newCount=7", "lastPoint=7", "lastCurve=3"}));
    EXPECT_FALSE(doc.dialogs->rebreak.isApt);
}

TEST_F(RebreakLine, OpensWithTheNumbersOfTheLine) {
    hold({flatPatch(2, 2), flatPatch(6, 4)});
    captureLine(1, 2);
    EXPECT_THAT(shown(), ElementsAre("regime=1", "function=1", "style=1", "exactness=0", "newCount=6", "compression=1",
                                     "firstPoint=1", "lastPoint=6", "capturedNumber=3", "firstCurve=1", "lastCurve=4",
                                     "patchNumber=2", "useBlock=0"));
    EXPECT_TRUE(doc.dialogs->rebreak.lineMode);
}

TEST_F(RebreakSection, KeepsWhatThePreparationDoesNotSet) {
    hold({flatPatch(6, 4)});
    captureSection(0, 1);
    rebreak({{"regime", "2"},
             {"function", "2"},
             {"compression", "3"},
             {"newCount", "5"},
             {"firstCurve", "4"},
             {"firstPoint", "2"}});
    captureSection(0, 0);
    EXPECT_THAT(shown(), ElementsAre("regime=1", // the model is skl now
                                     "function=2", "style=1", "exactness=0", "newCount=4", "compression=3",
                                     "firstPoint=1", "lastPoint=4", "capturedNumber=1", "firstCurve=1", "lastCurve=6",
                                     "patchNumber=1", "useBlock=0"));
}

TEST_F(Rebreak, DoesNothingWithoutAStructuredModelOrACapture) {
    hold({flatPatch(3, 3)});
    captureSection(0, 1);
    doc.structureKind = StructureKind::Unstructured;
    call("line.rebreak");
    doc.structureKind = StructureKind::Structured;
    for (const auto& [patch, section] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 3}}) {
        captureSection(patch, section);
        call("line.rebreak");
    }
    arranged(doc).sectionCaptured = false;
    for (const auto& [patch, line] : {std::pair{-1, 0}, {1, 0}, {0, -1}}) {
        captureLine(patch, line);
        call("line.rebreak");
    }
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(Rebreak, CancelledChangesNothing) {
    hold({flatPatch(3, 3)});
    captureSection(0, 1);
    const PatchList before = doc.patches;
    call("line.rebreak");
    EXPECT_THAT(heard(), ElementsAre("dialog: CRebreak -> cancel"));
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

// ---- Running --------------------------------------------------------------------------------------------------------

TEST_F(RebreakSection, RespacesItAndKeepsTheCapture) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    const PatchList before = doc.patches;
    doc.rebuildOnUndo = true;
    rebreak({{"compression", "8"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{5, 5, 5}));
    const double unit = 4.0 / 15.0;
    EXPECT_THAT(coordinates(doc.patches[0][1]), Pointwise(DoubleNear(1e-9), {0.0, unit, 3 * unit, 7 * unit, 4.0}));
    EXPECT_EQ(doc.patches[0][0], before[0][0]);
    EXPECT_EQ(doc.patches[0][2], before[0][2]);
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady && doc.documentModified);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(heard(), ElementsAre("dialog: CRebreak -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section"));
}

TEST_F(RebreakSection, WithAnotherCountTurnsAnAptModelIntoSklWithItsTitle) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    rebreak({{"newCount", "9"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{5, 9, 5}));
    EXPECT_THAT(coordinates(doc.patches[0][1]),
                Pointwise(DoubleNear(1e-9), {0.0, 0.5, 1.0, 1.5, 2.0, 2.5, 3.0, 3.5, 4.0}));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.skl");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.skl");
    EXPECT_THAT(heard(), ElementsAre("dialog: CRebreak -> ok", "title: wing.skl",
                                     "status: Save writes " + (folder / "wing.skl").string()));
}

TEST_F(RebreakSection, UndoneRestoresKindTitleAndViewWithoutANewBox) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    const PatchList before = doc.patches;
    rebreak({{"newCount", "9"}});
    viewCalls();
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_THAT(viewCalls(), testing::Not(testing::Contains("bounds")));
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(RebreakSection, OfAllSectionsKeepsTheModelApt) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    rebreak({{"regime", "2"}, {"newCount", "9"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{9, 9, 9}));
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Rebreak, LastCurveFieldHasNoEffect) {
    hold({flatPatch(10, 5)});
    captureSection(0, 1);
    rebreak({{"regime", "2"}, {"newCount", "9"}, {"firstCurve", "3"}, {"lastCurve", "5"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{5, 5, 9, 9, 9, 9, 9, 9, 9, 9}));
}

TEST_F(RebreakSection, TakesTheOneThatWasTypedAsCaptured) {
    hold({flatPatch(4, 5)});
    captureSection(0, 1);
    rebreak({{"capturedNumber", "4"}, {"newCount", "6"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{5, 5, 5, 6}));
    EXPECT_EQ(doc.capture->capturedSection, 3);
}

TEST_F(RebreakSection, BeyondTheLastMeansTheLastAlsoJustBeyond) {
    for (const char* number : {"5", "6", "1000000"}) {
        hold({flatPatch(4, 5)});
        captureSection(0, 1);
        rebreak({{"capturedNumber", number}, {"newCount", "6"}});
        EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{5, 5, 5, 6})) << number;
        EXPECT_EQ(doc.capture->capturedSection, 3) << number;
    }
}

TEST_F(RebreakSection, FirstCurveBeyondTheLastMeansTheLastAlsoJustBeyond) {
    for (const char* number : {"4", "5", "6", "1000000"}) {
        hold({flatPatch(4, 5)});
        captureSection(0, 1);
        rebreak({{"regime", "2"}, {"firstCurve", number}, {"newCount", "6"}});
        EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{5, 5, 5, 6})) << number;
        EXPECT_EQ(doc.capture->capturedSection, 1) << number;
    }
}

TEST_F(RebreakSection, CutsTheStretchAndLeavesItCutInTheDialog) {
    hold({flatPatch(2, 5)});
    captureSection(0, 0);
    rebreak({{"firstPoint", "20"}, {"lastPoint", "30"}, {"newCount", "3"}});
    EXPECT_THAT(coordinates(doc.patches[0][0]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 3.5, 4.0}));
    EXPECT_EQ(doc.dialogs->rebreak.law.firstPoint, 4);
    EXPECT_EQ(doc.dialogs->rebreak.law.lastPoint, 5);
}

TEST_F(RebreakSection, WithFitTakesTheSpacingOfTheCapturedOne) {
    Patch patch = flatPatch(3, 5);
    patch[1] = {{0, 1, 0}, {1, 1, 0}, {4, 1, 0}, {6, 1, 0}, {8, 1, 0}};
    hold({patch});
    captureSection(0, 1);
    rebreak({{"regime", "2"}, {"function", "2"}, {"newCount", "50"}, {"style", "2"}});
    for (const std::size_t n : {0U, 2U}) {
        EXPECT_THAT(coordinates(doc.patches[0][n]), Pointwise(DoubleNear(1e-12), {0.0, 0.5, 2.0, 3.0, 4.0})) << n;
    }
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(RebreakSection, OfNoLengthAsTheLawGivesEqualSteps) {
    for (const char* const function : {"1", "2"}) {
        Patch patch = flatPatch(3, 5);
        patch[0][1].x = 0.5;
        patch[1].assign(5, {7, 1, 0});
        hold({patch});
        captureSection(0, 1);
        rebreak({{"regime", "2"}, {"function", function}, {"style", "2"}});
        for (std::size_t m = 0; m < 5; ++m) {
            EXPECT_NEAR(doc.patches[0][0][m].x, static_cast<double>(m), 1e-12) << function;
            EXPECT_EQ(doc.patches[0][0][m].y, 0) << function;
            EXPECT_EQ(doc.patches[0][1][m], patch[1][m]) << function;
        }
    }
}

TEST_F(RebreakLine, OfNoLengthAsTheLawGivesEqualSteps) {
    Patch patch = flatPatch(5, 3);
    patch[1][0].y = 0.5;
    for (PointList& section : patch) {
        section[1] = {1, 7, 0};
    }
    hold({patch});
    captureLine(0, 1);
    rebreak({{"regime", "2"}, {"function", "2"}, {"style", "2"}});
    for (std::size_t n = 0; n < 5; ++n) {
        EXPECT_NEAR(doc.patches[0][n][0].y, static_cast<double>(n), 1e-12);
        EXPECT_EQ(doc.patches[0][n][1], patch[n][1]);
    }
}

TEST_F(RebreakSection, OfOtherPatchesIsNotTouched) {
    const Patch other = flatPatch(3, 3, 8.0);
    hold({other, flatPatch(3, 5), other});
    captureSection(1, 0);
    addToBlock(0);
    rebreak({{"regime", "2"}, {"newCount", "7"}});
    EXPECT_EQ(doc.patches[0], other);
    EXPECT_EQ(countsOf(doc.patches[1]), (std::vector<std::int32_t>{7, 7, 7}));
    EXPECT_EQ(doc.patches[2], other);
    EXPECT_THAT(block(), ElementsAre(0));
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

TEST_F(RebreakLine, ByItselfKeepsTheNumberOfSections) {
    Patch patch = flatPatch(4, 3);
    for (std::size_t n = 0; n < 4; ++n) {
        patch[n][1].y = static_cast<double>(n * n);
    }
    hold({patch});
    captureLine(0, 1);
    rebreak({{"function", "2"}});
    for (std::size_t n = 0; n < 4; ++n) {
        EXPECT_NEAR(doc.patches[0][n][1].y, 3.0 * static_cast<double>(n), 1e-12);
        EXPECT_EQ(doc.patches[0][n][0], patch[n][0]);
        EXPECT_EQ(doc.patches[0][n][2], patch[n][2]);
    }
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set line"));
}

TEST_F(RebreakLine, OfAllLinesChangesTheNumberOfSectionsAndStaysRegular) {
    hold({flatPatch(5, 3)});
    captureLine(0, 1);
    rebreak({{"regime", "2"}, {"newCount", "9"}});
    EXPECT_EQ(countsOf(doc.patches[0]), std::vector<std::int32_t>(9, 3));
    EXPECT_THAT(coordinates(doc.patches[0][1], &zVec<double>::y), Each(DoubleNear(0.5, 1e-9)));
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(RebreakLine, TypedAsCapturedBecomesTheCapturedLine) {
    hold({flatPatch(3, 5)});
    captureLine(0, 1);
    rebreak({{"capturedNumber", "4"}});
    EXPECT_EQ(doc.capture->capturedLine, 3);
}

TEST_F(RebreakLine, OneTypedAsCapturedLeavesTheCapturedLine) {
    hold({flatPatch(3, 5)});
    captureLine(0, 2);
    rebreak({{"capturedNumber", "1"}});
    EXPECT_EQ(doc.capture->capturedLine, 2);
}

TEST_F(RebreakLine, BeyondTheLastMeansTheLast) {
    for (const char* number : {"6", "99"}) {
        hold({flatPatch(3, 5)});
        captureLine(0, 1);
        rebreak({{"capturedNumber", number}});
        EXPECT_EQ(doc.capture->capturedLine, 4);
    }
}

TEST_F(RebreakLine, SetsTheCapturedSectionTooButNeverOutsideThePatch) {
    hold({flatPatch(3, 5)});
    captureLine(0, 1);
    rebreak({{"capturedNumber", "2"}});
    EXPECT_EQ(doc.capture->capturedSection, 1);
    rebreak({{"capturedNumber", "5"}});
    EXPECT_EQ(doc.capture->capturedSection, 2);
}

TEST_F(RebreakLine, HasItsStretchCappedAtTheNumberOfSections) {
    hold({flatPatch(4, 3)});
    captureLine(0, 1);
    const PatchList before = doc.patches;
    rebreak({{"regime", "2"}, {"newCount", "9"}, {"firstPoint", "50"}, {"lastPoint", "60"}});
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.dialogs->rebreak.law.firstPoint, 4);
    EXPECT_EQ(doc.dialogs->rebreak.law.lastPoint, 4);
    rebreak({{"regime", "2"}, {"newCount", "9"}, {"lastPoint", "60"}});
    EXPECT_EQ(doc.patches[0].size(), 9U);
}

// ---- The zBlock -----------------------------------------------------------------------------------------------------

TEST_F(RebreakBlock, TakesEachPatchOfItInItsFullLength) {
    hold({flatPatch(2, 5), flatPatch(3, 9), flatPatch(2, 4), flatPatch(4, 3)});
    captureSection(0, 1);
    addToBlock(3);
    addToBlock(1);
    const PatchList before = doc.patches;
    rebreak({{"regime", "2"}, {"useBlock", "1"}, {"newCount", "5"}});
    EXPECT_EQ(doc.patches[0], before[0]);
    EXPECT_EQ(doc.patches[2], before[2]);
    ASSERT_EQ(countsOf(doc.patches[1]), std::vector<std::int32_t>(3, 5));
    ASSERT_EQ(countsOf(doc.patches[3]), std::vector<std::int32_t>(4, 5));
    EXPECT_THAT(coordinates(doc.patches[1][2]), Pointwise(DoubleNear(1e-9), {0.0, 2.0, 4.0, 6.0, 8.0}));
    EXPECT_THAT(coordinates(doc.patches[3][3]), Pointwise(DoubleNear(1e-9), {0.0, 0.5, 1.0, 1.5, 2.0}));
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_EQ(doc.dialogs->rebreak.law.lastPoint, 9);
    EXPECT_EQ(doc.dialogs->rebreak.lastCurve, 3);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_THAT(block(), ElementsAre(3, 1));
}

TEST_F(RebreakBlock, InLineRegimeTakesTheNumberOfSectionsAsLength) {
    hold({flatPatch(5, 2), flatPatch(3, 4)});
    captureLine(0, 1);
    addToBlock(0);
    addToBlock(1);
    rebreak({{"regime", "2"}, {"useBlock", "1"}, {"newCount", "9"}});
    EXPECT_EQ(countsOf(doc.patches[0]), std::vector<std::int32_t>(9, 2));
    EXPECT_EQ(countsOf(doc.patches[1]), std::vector<std::int32_t>(9, 4));
    EXPECT_EQ(doc.dialogs->rebreak.law.lastPoint, 3);
    EXPECT_EQ(doc.dialogs->rebreak.lastCurve, 4);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(RebreakBlock, KeepsAFirstPointThatWasCutForThePatchesThatFollow) {
    hold({flatPatch(2, 5), flatPatch(2, 9)});
    captureSection(1, 0);
    addToBlock(0);
    addToBlock(1);
    rebreak({{"regime", "2"}, {"firstPoint", "6"}, {"useBlock", "1"}, {"newCount", "3"}});
    EXPECT_THAT(coordinates(doc.patches[0][0]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 3.5, 4.0}));
    EXPECT_THAT(coordinates(doc.patches[1][0]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 5.5, 8.0}));
    EXPECT_EQ(doc.dialogs->rebreak.law.firstPoint, 4);
}

TEST_F(RebreakBlock, PassesOverEntriesThatNameNoPatch) {
    hold({flatPatch(2, 5), flatPatch(2, 9)});
    captureSection(0, 0);
    addToBlock(-1);
    addToBlock(7);
    addToBlock(1);
    rebreak({{"regime", "2"}, {"useBlock", "1"}, {"newCount", "3"}});
    EXPECT_EQ(countsOf(doc.patches[0]), std::vector<std::int32_t>(2, 5));
    EXPECT_EQ(countsOf(doc.patches[1]), std::vector<std::int32_t>(2, 3));
}

TEST_F(RebreakBlock, ThatIsNotTickedLeavesTheZBlockAlone) {
    hold({flatPatch(2, 5), flatPatch(2, 9)});
    captureSection(0, 0);
    addToBlock(1);
    rebreak({{"regime", "2"}, {"newCount", "3"}});
    EXPECT_EQ(countsOf(doc.patches[0]), std::vector<std::int32_t>(2, 3));
    EXPECT_EQ(countsOf(doc.patches[1]), std::vector<std::int32_t>(2, 9));
}

// ---- Against the plain form -----------------------------------------------------------------------------------------

namespace {

class RebreakAgainstThePlainForm : public Rebreak, public testing::WithParamInterface<bool> {
protected:
    int whole(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine_); }

    Patch randomPatch() {
        std::uniform_real_distribution<double> away(-0.3, 0.3);
        Patch patch = flatPatch(whole(2, 6), whole(2, 9));
        for (PointList& section : patch) {
            for (zVec<double>& p : section) {
                p = p + zVec<double>(away(engine_), away(engine_), away(engine_));
            }
        }
        return patch;
    }

    /// What the dialog held as OK was pressed.
    reference::RebreakFields taken() const {
        const CRebreak& v = asAccepted_;
        return {v.regime,         v.law.linear ? 2 : 1, v.law.fitToLawCurve ? 2 : 1,
                v.law.exactness,  v.law.newCount,       v.law.compression,
                v.law.firstPoint, v.law.lastPoint,      v.capturedNumber,
                v.firstCurve};
    }

    void runRandomly() {
        const int regime = whole(1, 2);
        const Fields wishes = {
            {"regime", std::to_string(regime)},           {"function", std::to_string(whole(1, 2))},
            {"newCount", std::to_string(whole(2, 12))},   {"compression", std::to_string(whole(1, 30) * 0.1)},
            {"exactness", std::to_string(whole(0, 20))},  {"firstPoint", std::to_string(whole(1, 11))},
            {"lastPoint", std::to_string(whole(1, 11))},  {"capturedNumber", std::to_string(whole(1, 11))},
            {"firstCurve", std::to_string(whole(1, 11))}, {"style", std::to_string(whole(1, 2))},
            {"useBlock", std::to_string(whole(0, 1))}};
        // Some of these are off and are refused; what the form holds after them is what counts.
        ui.onDialog = [this, wishes](DialogForm& form) {
            for (const auto& [key, text] : wishes) {
                setField(form, key, text);
            }
            copyOf(form);
        };
        rebreak({});
        ui.onDialog = nullptr;
    }

    CRebreak asAccepted_;
    std::mt19937 engine_{17};

private:
    void copyOf(const DialogForm& form) {
        DialogForm copy = describe(asAccepted_);
        for (std::size_t i = 0; i < form.fields.size(); ++i) {
            const auto& from = form.fields[i].value;
            auto& to = copy.fields[i].value;
            if (const auto* whole = std::get_if<std::int32_t*>(&from)) {
                *std::get<std::int32_t*>(to) = **whole;
            } else if (const auto* real = std::get_if<double*>(&from)) {
                *std::get<double*>(to) = **real;
            } else {
                *std::get<bool*>(to) = *std::get<bool*>(from);
            }
        }
    }
};

} // namespace

TEST_P(RebreakAgainstThePlainForm, GivesTheSameModel) {
    const bool lines = GetParam();
    for (int round = 0; round < 400; ++round) {
        hold({randomPatch(), randomPatch(), randomPatch()});
        const PatchList before = doc.patches;
        doc.blockCount = 0;
        addToBlock(2);
        addToBlock(0);
        const int K = whole(0, 2);
        const int curves =
            lines ? lineCount(before[static_cast<std::size_t>(K)]) : countOf(before[static_cast<std::size_t>(K)]);
        int curve = whole(0, curves - 1);
        lines ? captureLine(K, curve) : captureSection(K, curve);
        doc.dialogs->rebreak = {};
        runRandomly();

        reference::RebreakFields fields = taken();
        PatchList expected = before;
        const std::vector<int> targets = asAccepted_.useBlock ? std::vector<int>{2, 0} : std::vector<int>{K};
        for (const int k : targets) {
            const Patch& patch = before[static_cast<std::size_t>(k)];
            if (asAccepted_.useBlock) {
                fields.lastPoint = lines ? countOf(patch) : lineCount(patch);
            }
            expected = reference::withPatch(expected, static_cast<std::size_t>(k),
                                            lines ? reference::rebreakLinesOf(patch, fields, curve)
                                                  : reference::rebreakSectionsOf(patch, fields, curve));
        }
        ASSERT_EQ(doc.patches, expected) << "round " << round;
        if (doc.patches != before) { // else the way back of the round before stays
            ASSERT_EQ(doc.undoPatches.copy(), before);
        }
        if (lines) {
            ASSERT_EQ(doc.capture->capturedLine, curve) << "round " << round;
        }
        ASSERT_NE(doc.sectionAt(K, doc.capture->capturedSection), nullptr) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Regimes, RebreakAgainstThePlainForm, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Lines" : "Sections"; });

} // namespace velmora::test
