#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "draw_rig.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

// ---- First points ---------------------------------------------------------------------------------------------------

TEST(FirstPoints, RedAtEverySectionAndThenYellowAlongTheFirst) {
    DrawRig rig(squares(1));
    rig.doc.showFirstPoints = true;
    EXPECT_EQ(rig.wire(), joined({{point(6, red, {0, 0, 0}), point(6, red, {0, 1, 0}), point(6, yellow, {0, 0, 0}),
                                   point(6, yellow, {1, 0, 0})},
                                  sectionStrips(0, table[0]),
                                  lineStrips(0, table[0])}));
}

TEST(FirstPoints, GoPatchByPatchAndOnlyWhereShown) {
    DrawRig rig(squares(3));
    rig.doc.showFirstPoints = true;
    rig.doc.showBlockOnly = true;
    rig.block({2, 0});
    EXPECT_THAT(pointsOnly(rig.wire()),
                ElementsAre(point(6, red, {0, 0, 0}), point(6, red, {0, 1, 0}), point(6, yellow, {0, 0, 0}),
                            point(6, yellow, {1, 0, 0}), point(6, red, {20, 0, 0}), point(6, red, {20, 1, 0}),
                            point(6, yellow, {20, 0, 0}), point(6, yellow, {21, 0, 0})));
}

// ---- Double points --------------------------------------------------------------------------------------------------

TEST(DoublePoints, NeighboursAlongASectionMarkTheFormer) {
    DrawRig rig({{{{0, 0, 0}, {0, 0, 0}, {2, 0, 0}, {2, 0, 0}, {2, 0, 0}}, {{9, 9, 9}}}});
    ASSERT_EQ(rig.doc.fileKind, FileKind::Skl);
    rig.doc.showDoublePoints = true;
    EXPECT_THAT(pointsOnly(rig.wire()),
                ElementsAre(point(8, green, {0, 0, 0}), point(8, green, {2, 0, 0}), point(8, green, {2, 0, 0})));
}

TEST(DoublePoints, NeighbouringSectionsCountInAGridOnly) {
    const PatchList model{{{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {1, 1, 0}}}};
    DrawRig rig(model);
    rig.doc.showDoublePoints = true;
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(8, green, {0, 0, 0})));
    rig.doc.fileKind = FileKind::Skl;
    EXPECT_THAT(pointsOnly(rig.wire()), IsEmpty());
}

TEST(DoublePoints, AlongTheSectionsComeBeforeAcrossThem) {
    // Patch 0 is double across, patch 1 along: all of the first kind come first.
    DrawRig rig({{{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {1, 1, 0}}}, {{{5, 0, 0}, {5, 0, 0}}, {{6, 0, 0}, {7, 0, 0}}}});
    rig.doc.showDoublePoints = true;
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(8, green, {5, 0, 0}), point(8, green, {0, 0, 0})));
}

TEST(DoublePoints, HiddenPatchesAreMarkedAcrossTheirSectionsOnly) {
    DrawRig rig({{{{3, 0, 0}, {3, 0, 0}}, {{3, 0, 0}, {4, 0, 0}}}, square(10)});
    rig.doc.showDoublePoints = true;
    rig.doc.showBlockOnly = true;
    rig.block({1});
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(8, green, {3, 0, 0})));
}

TEST(DoublePoints, EndsOfAClosedSectionAreNoNeighbours) {
    DrawRig rig({{{{0, 0, 0}, {1, 0, 0}, {0, 0, 0}}, {{9, 0, 0}}}});
    rig.doc.showDoublePoints = true;
    EXPECT_THAT(pointsOnly(rig.wire()), IsEmpty());
}

// ---- Markers in the zBlock ------------------------------------------------------------------------------------------

std::vector<std::string> markerPoints(double x, const Colour& colour) {
    return {point(3, colour, {x, 0, 0}), point(3, colour, {x + 1, 0, 0}), point(3, colour, {x, 1, 0}),
            point(3, colour, {x + 1, 1, 0})};
}

TEST(BlockMarkers, FirstFiveOfTheBlockInTheirOrder) {
    DrawRig rig(squares(8));
    rig.doc.showZBlockMarkers = true;
    rig.block({7, 0, 2, 6, 1, 3, 4});
    EXPECT_EQ(pointsOnly(rig.wire()), joined({markerPoints(70, blue), markerPoints(0, green), markerPoints(20, red),
                                              markerPoints(60, grey), markerPoints(10, pink)}));
}

TEST(BlockMarkers, AreOffWithoutTheirFlagAndWithoutABlock) {
    DrawRig rig(squares(2));
    rig.block({1});
    EXPECT_THAT(pointsOnly(rig.wire()), IsEmpty());
    rig.doc.showZBlockMarkers = true;
    rig.block({});
    EXPECT_THAT(pointsOnly(rig.wire()), IsEmpty());
}

// Whichever patch they are captured in, and whatever the regime.
TEST(BlockMarkers, LeaveOutTheCapturedSectionAndLine) {
    DrawRig rig({flatPatch(3, 3)});
    rig.doc.showZBlockMarkers = true;
    rig.block({0});
    rig.doc.capture.renumberSection(1);
    rig.doc.capture.renumberLine(2);
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(3, blue, {0, 0, 0}), point(3, blue, {1, 0, 0}),
                                                    point(3, blue, {0, 2, 0}), point(3, blue, {1, 2, 0})));
}

// ---- Buffer, markers, clipboard -------------------------------------------------------------------------------------

TEST(Buffer, PointsAreWhiteAndThenBlueOneByOne) {
    DrawRig rig(squares(1));
    rig.doc.showBuffer = true;
    rig.doc.lineBuffer = {{1, 2, 3}, {4, 5, 6}};
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(5, white, {1, 2, 3}), point(8, bufferBlue, {1, 2, 3}),
                                                    point(5, white, {4, 5, 6}), point(8, bufferBlue, {4, 5, 6})));
}

// The larger, later point of a pair leaves the smaller one visible; all other points show over those before them.
TEST(Buffer, SecondPointOfAPairFramesTheFirst) {
    DrawRig rig(squares(1));
    rig.doc.showBuffer = rig.doc.showFirstPoints = rig.doc.showDoublePoints = true;
    rig.doc.lineBuffer = {{1, 2, 3}, {4, 5, 6}};
    rig.doc.pointClipboardFull = true;
    int framing = 0;
    for (const DrawBatch& batch : buildDrawList(rig.doc, 1).batches) {
        EXPECT_EQ(batch.framing, batch.pointSize == 8.0F);
        framing += batch.framing ? 1 : 0;
    }
    EXPECT_EQ(framing, 2) << "the point of the buffer behind the first, and the clipboard";
}

TEST(Buffer, FirstPointIsOnlyRedWithFirstPointsOn) {
    DrawRig rig(PatchList{});
    rig.doc.structureKind = StructureKind::Structured;
    rig.doc.showBuffer = true;
    rig.doc.showFirstPoints = true;
    rig.doc.lineBuffer = {{1, 2, 3}, {4, 5, 6}};
    EXPECT_THAT(rig.wire(),
                ElementsAre(point(6, red, {1, 2, 3}), point(5, white, {4, 5, 6}), point(8, bufferBlue, {4, 5, 6})));
    rig.doc.lineBuffer.clear();
    EXPECT_THAT(rig.wire(), IsEmpty());
}

/// A document with something in every buffer.
struct FullBufferRig : DrawRig {
    FullBufferRig() : DrawRig(squares(1)) {
        doc.lineBuffer = {{1, 0, 0}};
        doc.sftPoints = {{2, 0, 0}, {2, 1, 0}};
        doc.sftTargets = {{3, 0, 0}};
        doc.interLine = {{4, 0, 0}};
        doc.pointClipboard = {5, 0, 0};
        doc.markers = {{6, 0, 0}};
    }
};

TEST(Buffer, ShowsBufferPairsInterLineAndClipboardInTheirOrder) {
    FullBufferRig rig;
    rig.doc.showBuffer = true;
    rig.doc.pointClipboardFull = true;
    EXPECT_THAT(pointsOnly(rig.wire()),
                ElementsAre(point(5, white, {1, 0, 0}), point(8, bufferBlue, {1, 0, 0}), point(6, red, {2, 0, 0}),
                            point(6, red, {2, 1, 0}), point(6, yellow, {3, 0, 0}), point(5, white, {4, 0, 0}),
                            point(8, bufferBlue, {4, 0, 0}), point(5, white, {5, 0, 0}), point(8, green, {5, 0, 0})));
}

TEST(Buffer, EmptyClipboardIsNotShown) {
    FullBufferRig rig;
    rig.doc.showBuffer = true;
    const auto points = pointsOnly(rig.wire());
    EXPECT_THAT(points, ::testing::Not(::testing::Contains(point(8, green, {5, 0, 0}))));
}

TEST(Buffer, NothingOfItIsShownWithoutItsFlag) {
    FullBufferRig rig;
    rig.doc.pointClipboardFull = true;
    EXPECT_THAT(pointsOnly(rig.wire()), IsEmpty());
}

TEST(Markers, AreShownInTheStyleOfTheBufferByTheirOwnFlag) {
    FullBufferRig rig;
    rig.doc.markersOpen = true;
    EXPECT_THAT(pointsOnly(rig.wire()), ElementsAre(point(5, white, {6, 0, 0}), point(8, bufferBlue, {6, 0, 0})));
    rig.doc.markers.push_back({7, 0, 0});
    rig.doc.showFirstPoints = true;
    const auto points = pointsOnly(rig.wire());
    ASSERT_GE(points.size(), 3U);
    EXPECT_THAT(std::vector<std::string>(points.end() - 3, points.end()),
                ElementsAre(point(6, red, {6, 0, 0}), point(5, white, {7, 0, 0}), point(8, bufferBlue, {7, 0, 0})));
}

// ---- All together ---------------------------------------------------------------------------------------------------

TEST(WireList, OverlaysComeInTheirOrderBeforeTheStrips) {
    FullBufferRig rig;
    rig.doc.patches = {{{{9, 0, 0}, {9, 0, 0}}, {{8, 1, 0}, {9, 1, 0}}}};
    rig.doc.showFirstPoints = rig.doc.showDoublePoints = rig.doc.showZBlockMarkers = rig.doc.showBuffer = true;
    rig.doc.markersOpen = rig.doc.pointClipboardFull = true;
    rig.block({0});
    const std::vector<std::string> expected = {
        point(6, red, {9, 0, 0}), point(6, red, {8, 1, 0}), point(6, yellow, {9, 0, 0}), point(6, yellow, {9, 0, 0}),
        // double points
        point(8, green, {9, 0, 0}),
        // markers in the zBlock
        point(3, blue, {9, 0, 0}), point(3, blue, {9, 0, 0}), point(3, blue, {8, 1, 0}), point(3, blue, {9, 1, 0}),
        // buffer: every line begins with a red point
        point(6, red, {1, 0, 0}), point(6, red, {2, 0, 0}), point(6, red, {2, 1, 0}), point(6, yellow, {3, 0, 0}),
        point(6, red, {4, 0, 0}), point(5, white, {5, 0, 0}), point(8, green, {5, 0, 0}),
        // markers
        point(6, red, {6, 0, 0}),
        // sections and lines
        strip(blockYellow, {{9, 0, 0}, {9, 0, 0}}), strip(blockYellow, {{8, 1, 0}, {9, 1, 0}}),
        strip(blockYellow, {{9, 0, 0}, {8, 1, 0}}), strip(blockYellow, {{9, 0, 0}, {9, 1, 0}})};
    EXPECT_THAT(rig.wire(), ElementsAreArray(expected));
}

TEST(SurfaceList, OverlaysComeInTheirOrderBehindTheStrips) {
    FullBufferRig rig;
    rig.doc.patches = {{{{9, 0, 0}, {9, 0, 0}}, {{8, 1, 0}, {9, 1, 0}}}};
    rig.doc.showFirstPoints = rig.doc.showDoublePoints = rig.doc.showZBlockMarkers = rig.doc.showBuffer = true;
    rig.doc.markersOpen = rig.doc.pointClipboardFull = true;
    rig.block({0});
    const auto lines = rig.surface();
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines.front().starts_with("quads "));
    // No interLine, no markers, none in the zBlock; the double points come last.
    EXPECT_THAT(std::vector<std::string>(lines.begin() + 1, lines.end()),
                ElementsAre(point(6, red, {9, 0, 0}), point(6, red, {8, 1, 0}), point(6, yellow, {9, 0, 0}),
                            point(6, yellow, {9, 0, 0}), point(6, red, {1, 0, 0}), point(6, red, {2, 0, 0}),
                            point(6, red, {2, 1, 0}), point(6, yellow, {3, 0, 0}), point(5, white, {5, 0, 0}),
                            point(8, green, {5, 0, 0}), point(8, green, {9, 0, 0})));
}

} // namespace
} // namespace velmora
