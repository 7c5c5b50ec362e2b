#include "arranged_capture.h"
#include "state_fixture.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Numbers = std::vector<std::int32_t>;

/// Patches that are told apart by their height: patch k is flat at z = k.
PatchList stack(int count) {
    PatchList patches;
    for (int k = 0; k < count; ++k) {
        patches.push_back(flatPatch(2, 3, k));
    }
    return patches;
}

std::vector<double> heights(const PatchList& patches) {
    std::vector<double> values;
    for (const Patch& patch : patches) {
        values.push_back(patch.at(0).at(0).z);
    }
    return values;
}

using Heights = std::vector<double>;

class Block : public ZoneTest {
protected:
    void select(const Numbers& numbers) {
        for (const std::int32_t number : numbers) {
            addToBlock(number);
        }
    }

    void expectIdle() {
        EXPECT_FALSE(doc.capture->pointRegimeActive() || doc.capture->curveRegimeActive() ||
                     doc.capture->patchRegimeActive());
        EXPECT_FALSE(doc.showBlockOnly || doc.capture->patchRemoving);
        EXPECT_EQ(doc.capture->capturedPatch, -1);
        EXPECT_THAT(block(), IsEmpty());
        EXPECT_THAT(doc.blockList, testing::Each(-1));
        EXPECT_EQ(doc.status, "For Help, press F1");
    }

    void expectNoModel() {
        EXPECT_EQ(doc.structureKind, StructureKind::None);
        EXPECT_EQ(doc.fileKind, FileKind::None);
        EXPECT_EQ(doc.secondKind, SecondKind::None);
    }
};

using BlockInvert = Block;
using BlockExtract = Block;
using BlockDelete = Block;
using BlockClipboard = Block;
using BlockSave = Block;
using Extrapolation = Block;

} // namespace

// ---- Invert ---------------------------------------------------------------------------------------------------------

TEST_F(BlockInvert, SelectsTheOthersInRisingOrder) {
    hold(stack(5));
    select({3, 1});
    call("block.invert");
    EXPECT_EQ(block(), (Numbers{0, 2, 4}));
    EXPECT_EQ(doc.blockList[3], -1);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(BlockInvert, OfNothingSelectsAllAndOfAllNothing) {
    hold(stack(3));
    doc.showBlockOnly = true;
    call("block.invert");
    EXPECT_EQ(block(), (Numbers{0, 1, 2}));
    EXPECT_TRUE(doc.showBlockOnly);
    call("block.invert");
    EXPECT_THAT(block(), IsEmpty());
    EXPECT_FALSE(doc.showBlockOnly);
}

TEST_F(BlockInvert, CountsZonesOfAnUnstructuredModel) {
    holdZones({3, 3, 3});
    select({1});
    call("block.invert");
    EXPECT_EQ(block(), (Numbers{0, 2}));
}

TEST_F(BlockInvert, BeyondTheCapacityIsRefusedAndLeavesTheSelection) {
    hold(PatchList(blockCapacity + 2, flatPatch(2, 2)));
    select({7});
    call("block.invert");
    EXPECT_EQ(block(), (Numbers{7}));
    EXPECT_THAT(heard(), ElementsAre("message: It is impossible to add one more zBlock"));
    select({8});
    call("block.invert");
    EXPECT_EQ(doc.blockCount, blockCapacity);
}

// ---- Extract --------------------------------------------------------------------------------------------------------

TEST_F(BlockExtract, KeepsTheZBlockInTheOrderOfTheModel) {
    hold(stack(5));
    select({4, 0, 2});
    doc.capture.holdBlock();
    doc.showBlockOnly = true;
    doc.rebuildOnUndo = true;
    call("block.extract");
    EXPECT_EQ(heights(doc.patches), (Heights{0, 2, 4}));
    expectIdle();
    EXPECT_EQ(heights(doc.undoPatches.copy()), (Heights{0, 1, 2, 3, 4}));
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(viewCalls(), ElementsAre("reset", "redraw"));
}

TEST_F(BlockExtract, LeavesThePointAndTheSectionRegime) {
    hold(stack(3));
    select({1});
    captureSection(1, 0);
    capturePoint(1, 0, 0);
    call("block.extract");
    expectIdle();
    EXPECT_EQ(doc.capture->capturedSection, -1);
}

TEST_F(BlockExtract, FollowsTheKindOfWhatIsLeft) {
    hold({patchOf({3, 4}), flatPatch(2, 3)});
    ASSERT_EQ(doc.fileKind, FileKind::Skl);
    select({1});
    call("block.extract");
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(BlockExtract, UndoneBringsAllBackAndAnEmptyZBlock) {
    hold(stack(3));
    select({1});
    call("block.extract");
    call("patch.undo");
    EXPECT_EQ(heights(doc.patches), (Heights{0, 1, 2}));
    EXPECT_THAT(block(), IsEmpty());
    EXPECT_FALSE(doc.patchUndoReady);
}

TEST_F(BlockExtract, KeepsZonesInTheOrderOfTheZBlock) {
    holdZones({3, 4, 5, 6});
    select({3, 1});
    call("block.extract");
    EXPECT_EQ(nodeCounts(), (Numbers{6, 4}));
    EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
    expectIdle();
    call("patch.undo");
    EXPECT_EQ(nodeCounts(), (Numbers{3, 4, 5, 6}));
}

// ---- Delete ---------------------------------------------------------------------------------------------------------

TEST_F(BlockDelete, RemovesExactlyItsPatchesInWhateverOrderTheyStand) {
    hold(stack(9));
    select({5, 2, 7});
    doc.capture.holdBlock();
    doc.showBlockOnly = true;
    call("block.delete");
    EXPECT_EQ(heights(doc.patches), (Heights{0, 1, 3, 4, 6, 8}));
    expectIdle();
    EXPECT_EQ(doc.undoPatches.size(), 9U);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
}

TEST_F(BlockDelete, LeavesEveryRegime) {
    hold(stack(3));
    select({1});
    arranged(doc).patchCaptureArmed = true;
    captureLine(2, 0);
    capturePoint(2, 0, 0);
    call("block.delete");
    expectIdle();
    EXPECT_EQ(doc.capture->capturedLine, -1);
}

TEST_F(BlockDelete, OfAllPatchesLeavesNoModelAndIsUndone) {
    hold(stack(2));
    doc.secondKind = SecondKind::Wrl;
    select({1, 0});
    doc.capture.holdBlock();
    call("block.delete");
    EXPECT_THAT(doc.patches, IsEmpty());
    expectNoModel();
    expectIdle();
    call("patch.undo");
    EXPECT_EQ(heights(doc.patches), (Heights{0, 1}));
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_THAT(block(), IsEmpty());
}

TEST_F(BlockDelete, FollowsTheKindOfWhatIsLeft) {
    hold({patchOf({3, 3}), patchOf({3, 4})});
    select({1});
    call("block.delete");
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(BlockDelete, RemovesZones) {
    holdZones({3, 4, 5});
    select({2, 0});
    call("block.delete");
    EXPECT_EQ(nodeCounts(), (Numbers{4}));
    EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
    expectIdle();
    call("patch.undo");
    EXPECT_EQ(nodeCounts(), (Numbers{3, 4, 5}));
}

TEST_F(BlockDelete, OfAllZonesLeavesNoModel) {
    holdZones({3, 4});
    call("block.invert");
    call("block.delete");
    EXPECT_THAT(doc.feRegion.blocks, IsEmpty());
    expectNoModel();
    expectIdle();
}

// ---- Copy and Paste -------------------------------------------------------------------------------------------------

TEST_F(BlockClipboard, CopyKeepsTheOrderOfTheZBlockAndOutlivesIt) {
    hold(stack(3));
    select({2, 0});
    call("block.copy");
    EXPECT_EQ(heights(doc.blockClipboard), (Heights{2, 0}));
    EXPECT_TRUE(doc.blockClipboardFull);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    call("patch.exit");
    EXPECT_EQ(heights(doc.blockClipboard), (Heights{2, 0}));
    EXPECT_TRUE(doc.blockClipboardFull);
}

TEST_F(BlockClipboard, CopyTakesThePlaceOfTheCopyBefore) {
    hold(stack(3));
    select({2, 0});
    call("block.copy");
    call("block.invert"); // patch 1 alone
    call("block.copy");
    EXPECT_EQ(heights(doc.blockClipboard), (Heights{1}));
}

TEST_F(BlockClipboard, CopyOfAnEmptyZBlockDoesNothing) {
    hold(stack(3));
    doc.blockClipboard = stack(1);
    call("block.copy");
    EXPECT_EQ(doc.blockClipboard.size(), 1U);
    EXPECT_FALSE(doc.blockClipboardFull);
}

TEST_F(BlockClipboard, PasteReplacesTheZBlockAndSelectsWhatWasPasted) {
    hold(stack(4));
    select({3, 1});
    call("block.copy");
    doc.blockCount = 0;
    doc.blockList.fill(-1);
    select({2, 0});
    captureSection(1, 0);
    call("block.paste");
    EXPECT_EQ(heights(doc.patches), (Heights{1, 3, 3, 1}));
    EXPECT_EQ(block(), (Numbers{2, 3}));
    EXPECT_TRUE(doc.capture->patchCaptured);
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_EQ(heights(doc.undoPatches.copy()), (Heights{0, 1, 2, 3}));
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(viewCalls(), Contains("set patch"));
}

TEST_F(BlockClipboard, PasteWithoutAZBlockAppends) {
    hold(stack(2));
    doc.blockClipboard = {flatPatch(2, 3, 7)};
    doc.blockClipboardFull = true;
    call("block.paste");
    EXPECT_EQ(heights(doc.patches), (Heights{0, 1, 7}));
    EXPECT_EQ(block(), (Numbers{2}));
}

TEST_F(BlockClipboard, PasteOfLinesIntoAGridMakesLinesOfIt) {
    hold(stack(2));
    doc.blockClipboard = {patchOf({3, 4})};
    call("block.paste");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.skl");
}

TEST_F(BlockClipboard, PasteIntoNothingMakesAStructuredModel) {
    doc.blockClipboard = stack(2);
    call("block.paste");
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "Untitled.apt");
    EXPECT_EQ(block(), (Numbers{0, 1}));
    EXPECT_TRUE(doc.capture->patchCaptured);
    EXPECT_FALSE(doc.patchUndoReady);
}

// ---- Save As --------------------------------------------------------------------------------------------------------

TEST_F(BlockSave, WritesTheZBlockInItsOrderAndLeavesTheModel) {
    hold({flatPatch(2, 2, 0), flatPatch(2, 2, 1), flatPatch(2, 2, 2)});
    select({2, 0});
    doc.capture.holdBlock();
    ui.files = {{folder / "part.apt"}};
    call("block.saveAs");
    EXPECT_EQ(doc.blockKind, FileKind::Apt);
    EXPECT_EQ(fileText(folder / "part.apt"), "2 2\n"
                                             "0.0000000000000000e+00 0.0000000000000000e+00 2.0000000000000000e+00\n"
                                             "1.0000000000000000e+00 0.0000000000000000e+00 2.0000000000000000e+00\n"
                                             "0.0000000000000000e+00 1.0000000000000000e+00 2.0000000000000000e+00\n"
                                             "1.0000000000000000e+00 1.0000000000000000e+00 2.0000000000000000e+00\n"
                                             "2 2\n"
                                             "0.0000000000000000e+00 0.0000000000000000e+00 0.0000000000000000e+00\n"
                                             "1.0000000000000000e+00 0.0000000000000000e+00 0.0000000000000000e+00\n"
                                             "0.0000000000000000e+00 1.0000000000000000e+00 0.0000000000000000e+00\n"
                                             "1.0000000000000000e+00 1.0000000000000000e+00 0.0000000000000000e+00\n");
    EXPECT_EQ(doc.patches.size(), 3U);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
    EXPECT_TRUE(doc.capture->patchCaptured);
    EXPECT_EQ(block(), (Numbers{2, 0}));
    EXPECT_FALSE(doc.documentModified);
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1"));
    EXPECT_EQ(ui.requests.at(0).proposed, folder / "wing.apt");
}

TEST_F(BlockSave, GoesByTheRegularityOfItsPatchesAlone) {
    hold({flatPatch(2, 2), patchOf({1, 2})});
    ASSERT_EQ(doc.fileKind, FileKind::Skl);
    select({0});
    call("block.saveAs");
    EXPECT_EQ(doc.blockKind, FileKind::Apt);
    doc.blockCount = 0;
    select({1});
    ui.files = {{folder / "lines.skl"}};
    call("block.saveAs");
    EXPECT_EQ(doc.blockKind, FileKind::Skl);
    EXPECT_EQ(ui.requests.at(0).types.at(0).extension, "apt");
    EXPECT_EQ(ui.requests.at(1).types.at(0).extension, "skl");
    EXPECT_TRUE(fileText(folder / "lines.skl").starts_with("2\n1\n"));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

TEST_F(BlockSave, CancelledWritesNothing) {
    hold(stack(2));
    select({1});
    call("block.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 0"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(BlockSave, ThatFailsSaysSo) {
    hold(stack(2));
    select({1});
    ui.files = {{folder / "absent" / "part.apt"}};
    call("block.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", "message: It is impossible to save current file"));
}

TEST_F(BlockSave, WritesZonesUnderTheTitleOfTheirModel) {
    holdZones({3, 4});
    doc.feRegion.title = "Hull and keel";
    select({1});
    ui.files = {{folder / "part.dat"}};
    call("block.saveAs");
    EXPECT_NE(fileText(folder / "part.dat").find("\"Hull and keel\""), std::string::npos);
}

TEST_F(BlockSave, WritesZonesInTheOrderOfTheZBlock) {
    holdZones({3, 4, 5});
    select({2, 0});
    ui.files = {{folder / "part.dat"}};
    call("block.saveAs");
    const std::string text = fileText(folder / "part.dat");
    EXPECT_LT(text.find("zone2"), text.find("zone0"));
    EXPECT_EQ(text.find("zone1"), std::string::npos);
    EXPECT_EQ(nodeCounts(), (Numbers{3, 4, 5}));
    std::vector<std::string> offered;
    for (const FileType& type : ui.requests.at(0).types) {
        offered.push_back(type.extension);
    }
    EXPECT_THAT(offered, ElementsAre("dat", "wrl", "stl"));
}

// ---- Extrapolate ----------------------------------------------------------------------------------------------------

TEST_F(Extrapolation, AddsASectionBeforeTheFirstOfEachPatchOfTheZBlock) {
    hold(stack(3));
    select({2, 0});
    ui.dialogs.push_back({{"coefficient", "0.5"}});
    call("block.extrapolate");
    EXPECT_EQ(countsOf(doc.patches[0]), (Numbers{3, 3, 3}));
    EXPECT_EQ(countsOf(doc.patches[1]), (Numbers{3, 3}));
    EXPECT_EQ(doc.patches[2][0], (PointList{{0, -0.5, 2}, {1, -0.5, 2}, {2, -0.5, 2}}));
    EXPECT_EQ(heights(doc.undoPatches.copy()), (Heights{0, 1, 2}));
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(heard(), ElementsAre("dialog: CExtrapolation -> ok"));
    EXPECT_THAT(viewCalls(), Not(Contains("bounds")));
    EXPECT_EQ(block(), (Numbers{2, 0}));
}

TEST_F(Extrapolation, TakesTheOtherBordersByItsKind) {
    const auto grown = [this](const char* kind) {
        hold({flatPatch(2, 3)});
        doc.blockCount = 0;
        select({0});
        ui.dialogs.push_back({{"kind", kind}, {"coefficient", "2"}});
        call("block.extrapolate");
        return doc.patches[0];
    };
    EXPECT_EQ(grown("2"), (Patch{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}},
                                 {{0, 1, 0}, {1, 1, 0}, {2, 1, 0}},
                                 {{0, 3, 0}, {1, 3, 0}, {2, 3, 0}}}));
    EXPECT_EQ(grown("3"),
              (Patch{{{-2, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {{-2, 1, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}}}));
    EXPECT_EQ(grown("4"),
              (Patch{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {4, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {2, 1, 0}, {4, 1, 0}}}));
}

TEST_F(Extrapolation, SkipsAPatchOfOneSection) {
    hold({patchOf({3}), flatPatch(2, 3)});
    select({0, 1});
    ui.dialogs.push_back({});
    call("block.extrapolate");
    EXPECT_EQ(countsOf(doc.patches[0]), (Numbers{3}));
    EXPECT_EQ(countsOf(doc.patches[1]), (Numbers{3, 3, 3}));
}

TEST_F(Extrapolation, LeavesPointAndCurveButNotThePatchRegime) {
    hold(stack(2));
    select({0});
    doc.capture.holdBlock();
    captureSection(0, 0);
    capturePoint(0, 0, 0);
    ui.dialogs.push_back({});
    call("block.extrapolate");
    EXPECT_FALSE(doc.capture->pointRegimeActive() || doc.capture->curveRegimeActive());
    EXPECT_TRUE(doc.capture->patchCaptured);
}

TEST_F(Extrapolation, WithoutAZBlockChangesNothingAndCancelledTakesNoSnapshot) {
    hold(stack(2));
    const PatchList before = doc.patches;
    call("block.extrapolate");
    EXPECT_FALSE(doc.patchUndoReady);
    for (const char* kind : {"1", "3"}) {
        ui.dialogs.push_back({{"kind", kind}});
        call("block.extrapolate");
        EXPECT_EQ(doc.patches, before);
    }
}

TEST_F(Extrapolation, OfLinesLeavesAZBlockThatIsNoGridAlone) {
    hold({patchOf({3, 4})});
    const PatchList before = doc.patches;
    select({0});
    ui.dialogs.push_back({{"kind", "4"}});
    call("block.extrapolate");
    EXPECT_EQ(doc.patches, before);
}

} // namespace velmora::test
