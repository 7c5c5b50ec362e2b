#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "arranged_capture.h"
#include "draw_rig.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ---- Sections and lines ---------------------------------------------------------------------------------------------

TEST(WireList, GridShowsSectionsAndThenLines) {
    const DrawRig rig({flatPatch(2, 3)});
    EXPECT_THAT(rig.wire(),
                ElementsAre(strip(table[0], {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}),
                            strip(table[0], {{0, 1, 0}, {1, 1, 0}, {2, 1, 0}}), strip(table[0], {{0, 0, 0}, {0, 1, 0}}),
                            strip(table[0], {{1, 0, 0}, {1, 1, 0}}), strip(table[0], {{2, 0, 0}, {2, 1, 0}})));
}

TEST(WireList, SectionsOfAllPatchesComeBeforeAnyLine) {
    const DrawRig rig(squares(2));
    EXPECT_EQ(rig.wire(), joined({sectionStrips(0, table[0]), sectionStrips(10, table[1]), lineStrips(0, table[0]),
                                  lineStrips(10, table[1])}));
}

TEST(WireList, SectionLinesShowNoLines) {
    const DrawRig rig({{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}}}});
    ASSERT_EQ(rig.doc.fileKind, FileKind::Skl);
    EXPECT_THAT(rig.wire(), ElementsAre(strip(table[0], {{0, 0, 0}, {1, 0, 0}}), strip(table[0], {{0, 1, 0}})));
}

TEST(WireList, PatchOfOneSectionIsOneStrip) {
    const DrawRig rig({flatPatch(1, 3)});
    EXPECT_THAT(rig.wire(), ElementsAre(strip(table[0], {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}})));
}

TEST(WireList, EmptySectionsAndPatchesAreNothing) {
    DrawRig rig({{}, {{}, {}}, {{}, {{1, 2, 3}}}});
    EXPECT_THAT(rig.wire(), ElementsAre(strip(table[2], {{1, 2, 3}})));
    rig.doc.showFirstPoints = rig.doc.showDoublePoints = rig.doc.showZBlockMarkers = true;
    rig.block({0, 1});
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(6, red, {1, 2, 3})));
}

TEST(WireList, NumbersAreThoseOfKindAndMode) {
    DrawRig rig(squares(1));
    EXPECT_EQ(listNumberFor(rig.doc), 1);
    rig.doc.surfaceMode = true;
    EXPECT_EQ(listNumberFor(rig.doc), 2);
    rig.doc.fileKind = FileKind::Skl;
    EXPECT_EQ(listNumberFor(rig.doc), 1);
    rig.doc.surfaceMode = false;
    EXPECT_EQ(listNumberFor(rig.doc), 1);
    rig.doc.structureKind = StructureKind::None;
    EXPECT_EQ(listNumberFor(rig.doc), 0);
    EXPECT_EQ(buildDrawList(rig.doc, 0).batches.size(), 0U);
    EXPECT_EQ(buildDrawList(rig.doc, 1).number, 1);
    EXPECT_EQ(buildDrawList(rig.doc, 2).number, 2);
}

TEST(DrawListMemory, ListInUsedMemoryIsTheListInFreshMemory) {
    DrawRig rig(squares(3));
    rig.doc.showFirstPoints = true;
    const DrawList fresh = buildDrawList(rig.doc, 1);
    const DrawList again = buildDrawList(rig.doc, 1, buildDrawList(rig.doc, 2));
    EXPECT_EQ(dump(again), dump(fresh));
    EXPECT_EQ(again.number, 1);
    EXPECT_TRUE(again.normals.empty());
    EXPECT_EQ(again.vertices.size(), fresh.vertices.size());
    const DrawList surface = buildDrawList(rig.doc, 2, buildDrawList(rig.doc, 1));
    EXPECT_EQ(dump(surface), dump(buildDrawList(rig.doc, 2)));
    EXPECT_TRUE(buildDrawList(rig.doc, 0, buildDrawList(rig.doc, 1)).batches.empty());
}

// ---- Colours --------------------------------------------------------------------------------------------------------

/// The section strips of all squares in the colours given, and then their lines.
std::vector<std::string> coloured(const std::vector<std::pair<int, Colour>>& patches) {
    std::vector<std::string> all;
    for (const auto& [k, colour] : patches) {
        all = joined({all, sectionStrips(10.0 * k, colour)});
    }
    for (const auto& [k, colour] : patches) {
        all = joined({all, lineStrips(10.0 * k, colour)});
    }
    return all;
}

TEST(PatchColour, CyclesThroughFiveInAFullDrawing) {
    const DrawRig rig(squares(12));
    std::vector<std::pair<int, Colour>> expected;
    for (int k = 0; k < 12; ++k) {
        expected.emplace_back(k, table[k % 5]);
    }
    EXPECT_EQ(rig.wire(), coloured(expected));
}

TEST(PatchColour, SkippedPatchesCountInTheFirstCycle) {
    const DrawRig rig(squares(5));
    PatchColours colours(rig.doc);
    EXPECT_EQ(colours.next(1), table[1]);
    EXPECT_EQ(colours.next(3), table[3]);
}

TEST(PatchColour, BaseMovesByOneCycleForADrawnPatch) {
    const DrawRig rig(squares(9));
    PatchColours colours(rig.doc);
    EXPECT_EQ(colours.next(0), table[0]);
    EXPECT_EQ(colours.next(7), table[2]);
    EXPECT_EQ(colours.next(8), table[3]);
}

// Patch 11 stands at place 6 of the cycle that begins at 5; patch 12 moves the base on to 10.
TEST(PatchColour, PlacePastTheCycleKeepsTheColourDrawnBefore) {
    const DrawRig rig(squares(14));
    PatchColours colours(rig.doc);
    EXPECT_EQ(colours.next(0), table[0]);
    EXPECT_EQ(colours.next(11), table[0]);
    EXPECT_EQ(colours.next(12), table[2]);
    EXPECT_EQ(colours.next(13), table[3]);
}

TEST(PatchColour, CapturedPatchIsYellowWhileTheRegimeIsArmed) {
    DrawRig rig(squares(3));
    arranged(rig.doc).patchCaptureArmed = true;
    rig.doc.capture.renumberPatch(1);
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}, {1, blockYellow}, {2, table[2]}}));
}

TEST(PatchColour, BlockIsYellowTooWhileTheRegimeIsArmed) {
    DrawRig rig(squares(3));
    arranged(rig.doc).patchCaptureArmed = true;
    rig.doc.capture.renumberPatch(1);
    rig.block({2});
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}, {1, blockYellow}, {2, blockYellow}}));
}

TEST(PatchColour, OnlyTheBlockIsYellowInTheCapturedRegime) {
    DrawRig rig(squares(3));
    rig.doc.capture.holdBlock();
    rig.doc.capture.renumberPatch(1);
    rig.block({2});
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}, {1, table[1]}, {2, blockYellow}}));
}

TEST(PatchColour, NothingIsYellowInTheCapturedRegimeWithoutABlock) {
    DrawRig rig(squares(2));
    rig.doc.capture.holdBlock();
    rig.doc.capture.renumberPatch(1);
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}, {1, table[1]}}));
}

// Commands work on it in every regime: it is never there without its colour.
TEST(PatchColour, BlockIsYellowOutsideThePatchRegimeToo) {
    DrawRig rig(squares(2));
    rig.doc.capture.renumberPatch(0);
    arranged(rig.doc).sectionCaptured = true;
    rig.block({1});
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}, {1, blockYellow}}));
}

TEST(PatchColour, PatchToRemoveIsDarkYellowBeforeAnyOtherHighlight) {
    DrawRig rig(squares(3));
    rig.doc.capture.holdBlock();
    rig.doc.capture.armRemoval();
    rig.doc.takePick({Pick::Target::Removal, true, 1, -1, -1, 0, {}});
    rig.block({0, 1});
    EXPECT_EQ(rig.wire(), coloured({{0, blockYellow}, {1, removedYellow}, {2, table[2]}}));
    rig.doc.capture.releaseRemoval();
    EXPECT_EQ(rig.wire(), coloured({{0, blockYellow}, {1, blockYellow}, {2, table[2]}}));
}

TEST(BlockOnly, ShowsNothingWithAnEmptyBlock) {
    DrawRig rig(squares(3));
    rig.doc.showBlockOnly = true;
    EXPECT_THAT(rig.wire(), IsEmpty());
    EXPECT_THAT(rig.surface(), IsEmpty());
}

TEST(BlockOnly, MembersOutsideTheModelAreNothing) {
    DrawRig rig(squares(2));
    rig.doc.showBlockOnly = true;
    rig.doc.showZBlockMarkers = true;
    rig.block({-1, 7, 1});
    EXPECT_EQ(joined({sectionStrips(10, table[1]), lineStrips(10, table[1])}).size() + 4, rig.wire().size());
}

// ---- The captured section and line ----------------------------------------------------------------------------------

TEST(CapturedSection, IsAWhiteStripUnderWhitePoints) {
    for (const auto flag : {&CaptureState::sectionCaptureArmed, &CaptureState::sectionCaptured}) {
        DrawRig rig(squares(2));
        arranged(rig.doc).*flag = true;
        rig.doc.capture.renumberPatch(1);
        rig.doc.capture.renumberSection(1);
        EXPECT_EQ(rig.wire(), joined({sectionStrips(0, table[0]),
                                      {strip(table[1], {{10, 0, 0}, {11, 0, 0}}), point(6, white, {10, 1, 0}),
                                       point(6, white, {11, 1, 0}), strip(white, {{10, 1, 0}, {11, 1, 0}})},
                                      lineStrips(0, table[0]),
                                      lineStrips(10, table[1])}));
    }
}

TEST(CapturedSection, KeepsThePatchColourInOtherRegimes) {
    DrawRig rig(squares(2));
    rig.doc.capture.renumberPatch(1);
    rig.doc.capture.renumberSection(1);
    rig.doc.capture.renumberLine(0);
    arranged(rig.doc).pointCaptured = arranged(rig.doc).pointCaptureArmed = arranged(rig.doc).patchCaptured = true;
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}, {1, table[1]}}));
}

TEST(CapturedSection, WithoutPointsIsNothing) {
    DrawRig rig({{{}, {{1, 0, 0}}}});
    holdSection(rig.doc, 0, 0);
    EXPECT_THAT(rig.wire(), ElementsAre(strip(table[0], {{1, 0, 0}})));
}

TEST(CapturedLine, IsAWhiteStripUnderWhitePoints) {
    for (const auto flag : {&CaptureState::lineCaptureArmed, &CaptureState::lineCaptured}) {
        DrawRig rig(squares(2));
        arranged(rig.doc).*flag = true;
        rig.doc.capture.renumberPatch(0);
        rig.doc.capture.renumberLine(1);
        EXPECT_EQ(rig.wire(), joined({sectionStrips(0, table[0]),
                                      sectionStrips(10, table[1]),
                                      {strip(table[0], {{0, 0, 0}, {0, 1, 0}}), point(6, white, {1, 0, 0}),
                                       point(6, white, {1, 1, 0}), strip(white, {{1, 0, 0}, {1, 1, 0}})},
                                      lineStrips(10, table[1])}));
    }
}

TEST(CapturedLine, DoesNotWhitenTheSectionOfItsNumber) {
    DrawRig rig(squares(1));
    arranged(rig.doc).lineCaptured = true;
    rig.doc.capture.renumberPatch(0);
    rig.doc.capture.renumberSection(0);
    rig.doc.capture.renumberLine(-1);
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}}));
}

// ---- The second geometry --------------------------------------------------------------------------------------------

TEST(SecondGeometry, StructuredOneIsRedBehindTheModel) {
    DrawRig rig(squares(1));
    rig.doc.referencePatches = {square(50), {{{0, 0, 5}, {1, 0, 5}}, {{0, 1, 5}}}};
    EXPECT_EQ(rig.wire(), coloured({{0, table[0]}}));
    rig.doc.secondKind = SecondKind::Dat;
    EXPECT_EQ(rig.wire(), joined({coloured({{0, table[0]}}),
                                  sectionStrips(50, red),
                                  lineStrips(50, red),
                                  {strip(red, {{0, 0, 5}, {1, 0, 5}}), strip(red, {{0, 1, 5}}),
                                   strip(red, {{0, 0, 5}, {0, 1, 5}}), strip(red, {{1, 0, 5}})}}));
}

} // namespace
} // namespace velmora
