#include "DialogValues.h"
#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;
using Fields = std::vector<std::pair<std::string, std::string>>;

/// The patch moved in x and y.
Patch movedBy(Patch patch, double x, double y = 0.0) {
    for (PointList& section : patch) {
        for (zVec<double>& p : section) {
            p = p + zVec<double>(x, y, 0);
        }
    }
    return patch;
}

class SplitPatch : public StateTest {};

class MergePatches : public StateTest {
protected:
    void merge(const Fields& fields, const std::vector<std::int32_t>& members) {
        for (const std::int32_t k : members) {
            addToBlock(k);
        }
        doc.capture.holdBlock();
        ui.dialogs.push_back(fields);
        call("block.merge");
    }
};

class MatchBorder : public StateTest {};

} // namespace

// ---- Split ----------------------------------------------------------------------------------------------------------

TEST_F(SplitPatch, AtASectionGivesTwoPatchesAndEmptiesTheZBlock) {
    hold({flatPatch(2, 2), flatPatch(7, 4), flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureSection(1, 3);
    arranged(doc).sectionContinueStatus = "the section";
    addToBlock(2);
    doc.rebuildOnUndo = true;
    call("line.splitPatch");
    ASSERT_EQ(doc.patches.size(), 4U);
    EXPECT_EQ(doc.patches[1].size(), 4U);
    EXPECT_EQ(doc.patches[2].size(), 4U);
    EXPECT_EQ(doc.patches[2][0], before[1][3]);
    EXPECT_EQ(doc.patches[3], before[2]);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady && doc.documentModified);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(block(), IsEmpty());
    EXPECT_EQ(doc.blockList[0], -1);
    EXPECT_EQ(doc.capture->capturedPatch, 1);
    EXPECT_EQ(doc.capture->capturedSection, 3);
    EXPECT_THAT(heard(), ElementsAre("status: the section", "status: Captured section: Patch K=2, Section N=4, Points "
                                                            "M=4  // Press right button to continue "));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section"));
}

TEST_F(SplitPatch, AtALineGivesTwoPatchesAndTheIdlePrompt) {
    hold({flatPatch(3, 6)});
    captureLine(0, 2);
    call("line.splitPatch");
    ASSERT_EQ(doc.patches.size(), 2U);
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{3, 3, 3}));
    EXPECT_EQ(countsOf(doc.patches[1]), (std::vector<std::int32_t>{4, 4, 4}));
    EXPECT_THAT(heard(), ElementsAre("status: For Help, press F1"));
}

TEST_F(SplitPatch, AtALineInThePatchRegimeShowsHowToGoOn) {
    hold({flatPatch(3, 6)});
    captureLine(0, 2);
    doc.capture.holdBlock();
    call("line.splitPatch");
    EXPECT_THAT(heard(), ElementsAre("status: " + doc.capture->continuePrompt));
}

TEST_F(SplitPatch, AtABorderLeavesTheModelButTakesSnapshotPromptAndZBlock) {
    for (const std::int32_t section : {0, 3}) {
        hold({flatPatch(4, 5)});
        const PatchList before = doc.patches;
        captureSection(0, section);
        arranged(doc).sectionContinueStatus = "the section";
        addToBlock(0);
        doc.patchUndoReady = false;
        call("line.splitPatch");
        EXPECT_EQ(doc.patches, before);
        EXPECT_EQ(doc.undoPatches.copy(), before);
        EXPECT_TRUE(doc.patchUndoReady);
        EXPECT_THAT(block(), IsEmpty());
        EXPECT_THAT(heard(),
                    ElementsAre("status: the section",
                                "status: Captured section: Patch K=1, Section N=" + std::to_string(section + 1) +
                                    ", Points M=5  // Press right button to continue "));
    }
}

TEST_F(SplitPatch, WithAFieldCutsItInTheSamePlace) {
    hold({flatPatch(5, 4), flatPatch(2, 2)});
    doc.fieldMode = true;
    doc.fieldPatches = {flatPatch(5, 4, 7), flatPatch(2, 2, 7)};
    captureSection(0, 2);
    call("line.splitPatch");
    ASSERT_EQ(doc.fieldPatches.size(), doc.patches.size());
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        EXPECT_EQ(countsOf(doc.fieldPatches[k]), countsOf(doc.patches[k]));
    }
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
}

TEST_F(SplitPatch, UndoneBringsTheFieldBackToo) {
    hold({flatPatch(5, 4), flatPatch(2, 2)});
    doc.fieldMode = true;
    const PatchList field = {flatPatch(5, 4, 7), flatPatch(2, 2, 7)};
    doc.fieldPatches = field;
    captureSection(0, 2);
    call("line.splitPatch");
    call("patch.undo");
    EXPECT_EQ(doc.fieldPatches, field);
    EXPECT_TRUE(doc.fieldMode);
}

TEST_F(SplitPatch, WithoutAFieldLeavesTheFieldListAlone) {
    hold({flatPatch(5, 4)});
    doc.fieldPatches = {flatPatch(5, 4, 7)};
    captureSection(0, 2);
    call("line.splitPatch");
    EXPECT_EQ(doc.fieldPatches.size(), 1U);
}

// ---- Merge ----------------------------------------------------------------------------------------------------------

TEST_F(MergePatches, BySectionsOfFiveAndFiveGivesNineWhateverIsTicked) {
    for (const char* deleteDouble : {"0", "1"}) {
        for (const double gap : {4.0, 6.0}) {
            doc.blockCount = 0;
            hold({flatPatch(5, 4), movedBy(flatPatch(5, 4), 0, gap)});
            const PatchList before = doc.patches;
            doc.rebuildOnUndo = true;
            merge({{"deleteDouble", deleteDouble}}, {0, 1});
            ASSERT_EQ(doc.patches.size(), 1U);
            ASSERT_EQ(doc.patches[0].size(), 9U);
            EXPECT_EQ(doc.patches[0][5], before[1][1]);
            EXPECT_EQ(doc.undoPatches.copy(), before);
            EXPECT_TRUE(doc.patchUndoReady);
            EXPECT_FALSE(doc.rebuildOnUndo);
        }
    }
}

TEST_F(MergePatches, EndsTheZBlockAndItsRegime) {
    hold({flatPatch(2, 3), flatPatch(2, 3), flatPatch(4, 4)});
    doc.showBlockOnly = true;
    const std::uint64_t revision = doc.geometryRevision();
    merge({}, {1, 0});
    EXPECT_NE(doc.geometryRevision(), revision);
    EXPECT_EQ(doc.patches.size(), 2U);
    EXPECT_THAT(block(), IsEmpty());
    EXPECT_EQ(doc.blockList[0], -1);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_FALSE(doc.capture->patchCaptured || doc.showBlockOnly);
    EXPECT_THAT(heard(), ElementsAre("dialog: CMerge -> ok", "status: For Help, press F1"));
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw", "redraw"));
}

TEST_F(MergePatches, LeavesTheSectionOrLineRegime) {
    hold({flatPatch(2, 3), flatPatch(2, 3)});
    captureSection(0, 1);
    merge({}, {0, 1});
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, -1);
}

TEST_F(MergePatches, FollowsTheOrderOfTheZBlock) {
    hold({flatPatch(2, 3, 1), flatPatch(2, 3, 2), flatPatch(2, 3, 3), flatPatch(2, 3, 4)});
    merge({}, {2, 3, 0});
    ASSERT_EQ(doc.patches.size(), 2U);
    EXPECT_EQ(doc.patches[0], flatPatch(2, 3, 2));
    EXPECT_THAT(coordinates({doc.patches[1][0][0], doc.patches[1][2][0], doc.patches[1][3][0]}, &zVec<double>::z),
                ElementsAre(3, 4, 1));
}

TEST_F(MergePatches, OfDifferentPointCountsStopsBeforeAnythingChanged) {
    hold({flatPatch(2, 3), flatPatch(2, 4)});
    const PatchList before = doc.patches;
    merge({{"matching", "1"}}, {0, 1});
    EXPECT_THAT(heard(), ElementsAre("dialog: CMerge -> ok", "message: APT format is violated. Merge is impossible"));
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_THAT(block(), ElementsAre(0, 1));
    EXPECT_TRUE(doc.capture->patchCaptured);
}

TEST_F(MergePatches, ByLinesOfDifferentSectionCountsStopsBeforeAnythingChanged) {
    hold({flatPatch(2, 3), flatPatch(3, 3)});
    const PatchList before = doc.patches;
    merge({{"kind", "2"}}, {0, 1});
    EXPECT_THAT(heard(), ElementsAre("dialog: CMerge -> ok",
                                     "message: Merging is imposible. Patches contain different number of sections"));
    EXPECT_EQ(doc.patches, before);
    EXPECT_THAT(block(), ElementsAre(0, 1));
}

TEST_F(MergePatches, ByLinesAppendsThem) {
    hold({flatPatch(3, 4), movedBy(flatPatch(3, 3), 3)});
    merge({{"kind", "2"}}, {0, 1});
    EXPECT_EQ(doc.patches, PatchList{flatPatch(3, 6)});
}

TEST_F(MergePatches, WithMatchingMovesThePointsAlongTheAppendedSections) {
    Patch base = flatPatch(2, 5);
    base[1][1].x = 0.5;
    hold({base, movedBy(flatPatch(3, 5), 0, 1)});
    merge({{"matching", "1"}}, {0, 1});
    for (const std::size_t n : {2U, 3U}) {
        EXPECT_THAT(coordinates(doc.patches[0][n]), Pointwise(DoubleNear(1e-9), {0.0, 0.5, 2.0, 3.0, 4.0}));
    }
}

TEST_F(MergePatches, SwitchesDoublePointsEvenWhenItStops) {
    hold({flatPatch(2, 3), flatPatch(2, 4)});
    merge({{"showDouble", "1"}}, {0, 1});
    EXPECT_TRUE(doc.showDoublePoints);
    doc.patches[1] = flatPatch(2, 3);
    ui.dialogs.push_back({{"showDouble", "0"}});
    call("block.merge");
    EXPECT_FALSE(doc.showDoublePoints);
    EXPECT_EQ(doc.patches.size(), 1U);
}

TEST_F(MergePatches, AndViewFeaturesShareTheBoxOfDoublePoints) {
    hold({flatPatch(2, 3), flatPatch(2, 3)});
    ui.dialogs.push_back({{"showDoublePoints", "1"}});
    call("view.features");
    EXPECT_TRUE(doc.dialogs->merge.showDouble);
    merge({{"showDouble", "0"}}, {0, 1});
    EXPECT_FALSE(doc.dialogs->features.showDoublePoints);
}

TEST_F(MergePatches, CancelledChangesNothing) {
    hold({flatPatch(2, 3), flatPatch(2, 3)});
    addToBlock(0);
    addToBlock(1);
    call("block.merge");
    EXPECT_EQ(doc.patches.size(), 2U);
    EXPECT_THAT(block(), ElementsAre(0, 1));
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(MergePatches, WithoutABasePatchChangesNothing) {
    hold({flatPatch(2, 3), flatPatch(2, 3)});
    merge({}, {7, 1});
    EXPECT_EQ(doc.patches.size(), 2U);
    EXPECT_FALSE(doc.patchUndoReady);
}

TEST_F(MergePatches, BySectionsMatchingTakesTheFieldValuesAlong) {
    hold({flatPatch(2, 5), movedBy(flatPatch(3, 5), 0, 1)});
    doc.patches[0][1][1].x = 0.5;
    doc.fieldMode = true;
    doc.fieldPatches = {flatPatch(2, 5, 7), flatPatch(3, 5, 8)};
    merge({{"matching", "1"}}, {0, 1});
    ASSERT_EQ(doc.fieldPatches.size(), 1U);
    EXPECT_EQ(countsOf(doc.fieldPatches[0]), countsOf(doc.patches[0]));
    // The points of a straight section move to 0, 1/8, 4/8, 6/8 and 1 of its length, and the values with them.
    EXPECT_THAT(coordinates(doc.fieldPatches[0][3]),
                Pointwise(DoubleNear(1e-12), std::vector<double>{0, 0.5, 2, 3, 4}));
    EXPECT_THAT(coordinates(doc.fieldPatches[0][3], &zVec<double>::z), Each(8));
}

TEST_F(MergePatches, ByLinesDropsTheFieldsFirstLineAsTheGridDoes) {
    for (const bool ticked : {false, true}) {
        doc.blockCount = 0;
        doc.fieldMode = false;
        hold({flatPatch(3, 4), movedBy(flatPatch(3, 3), 3)});
        doc.fieldMode = true;
        doc.fieldPatches = {flatPatch(3, 4, 7), flatPatch(3, 3, 8)};
        merge({{"kind", "2"}, {"deleteDouble", ticked ? "1" : "0"}}, {0, 1});
        EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>(3, 6)));
        EXPECT_EQ(countsOf(doc.fieldPatches[0]), (std::vector<std::int32_t>(3, 6)));
    }
}

TEST(MergeDialog, OfASklModelAllowsSectionsOnly) {
    CMerge values;
    values.isApt = false;
    values.kind = 2;
    values.aptControl = values.matching = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_EQ(values.kind, 1);
    EXPECT_FALSE(values.aptControl);
    EXPECT_TRUE(values.matching);
    EXPECT_FALSE(form.find("kind")->choiceOn[1]);
    EXPECT_FALSE(form.find("aptControl")->on || form.find("matching")->on);
    EXPECT_TRUE(form.find("showDouble")->on && form.find("deleteDouble")->on);
}

// ---- Match border ---------------------------------------------------------------------------------------------------

TEST_F(MatchBorder, PutsTheBorderOfTheSecondOntoTheFirst) {
    hold({flatPatch(3, 4), movedBy(flatPatch(3, 4), 3.05)});
    addToBlock(0);
    addToBlock(1);
    const PatchList before = doc.patches;
    doc.rebuildOnUndo = true;
    call("block.matchBorder");
    EXPECT_EQ(doc.patches[0], before[0]);
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(doc.patches[1][n][0], before[0][n][3]);
        EXPECT_EQ(doc.patches[1][n][1], before[1][n][1]);
    }
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(block(), ElementsAre(0, 1));
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(MatchBorder, OfThreePatchesMatchesThemInTurn) {
    const Patch a = flatPatch(3, 2);
    hold({movedBy(a, 2.06), movedBy(a, 1.04), a});
    for (const std::int32_t k : {2, 1, 0}) {
        addToBlock(k);
    }
    call("block.matchBorder");
    EXPECT_EQ(doc.patches[1][0][0].x, 1.0);
    EXPECT_EQ(doc.patches[1][0][1].x, 2.04);
    EXPECT_EQ(doc.patches[0][0][0].x, 2.04);
}

TEST_F(MatchBorder, TooFarStopsAndLeavesWhatWasDone) {
    const Patch a = flatPatch(3, 2);
    hold({a, movedBy(a, 1.04), movedBy(a, 8), movedBy(a, 9.02)});
    for (std::int32_t k = 0; k < 4; ++k) {
        addToBlock(k);
    }
    const PatchList before = doc.patches;
    call("block.matchBorder");
    EXPECT_THAT(heard(), ElementsAre("message: Matching is impossible"));
    EXPECT_EQ(ui.severities.back(), Severity::Warning) << "the first pair stays matched";
    EXPECT_EQ(doc.patches[1][0][0].x, 1.0);
    EXPECT_EQ(doc.patches[2], before[2]);
    EXPECT_EQ(doc.patches[3], before[3]);
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(MatchBorder, OfOnePatchTakesTheSnapshotOnly) {
    hold({flatPatch(3, 2)});
    addToBlock(0);
    call("block.matchBorder");
    EXPECT_EQ(doc.patches, doc.undoPatches.copy());
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(MatchBorder, AndGridGivesTheRestOfTheSecondTheSpacingOfTheBorder) {
    Patch a = flatPatch(5, 3);
    for (const std::size_t j : {0U, 1U, 2U}) {
        a[2][j].y = 2.2;
    }
    hold({a, movedBy(flatPatch(5, 3), 2.02)});
    addToBlock(0);
    addToBlock(1);
    call("block.matchBorderAndGrid");
    for (const std::size_t j : {0U, 1U, 2U}) {
        EXPECT_NEAR(doc.patches[1][2][j].y, 2.2, 1e-9);
    }
}

TEST_F(MatchBorder, PassesOverEntriesThatNameNoPatch) {
    hold({flatPatch(3, 2), movedBy(flatPatch(3, 2), 1.04)});
    addToBlock(0);
    addToBlock(9);
    addToBlock(1);
    call("block.matchBorder");
    EXPECT_EQ(doc.patches, doc.undoPatches.copy());
    EXPECT_THAT(heard(), IsEmpty());
}

} // namespace velmora::test
