#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "draw_rig.h"
#include "small_zones.h"

namespace velmora {
namespace {

using namespace test;

constexpr Colour blue{0.5F, 0.5F, 1.0F, 1.0F};
constexpr Colour green{0.5F, 1.0F, 0.5F, 1.0F};
constexpr Colour yellow{1.0F, 1.0F, 0.1F, 1.0F};

/// A document of one-triangle zones at x = 0, 10, 20 and so on.
struct ZoneRig : DrawRig {
    explicit ZoneRig(int zones) : DrawRig({}) {
        doc.structureKind = StructureKind::Unstructured;
        for (int k = 0; k < zones; ++k) {
            doc.feRegion.blocks.push_back(oneTriangle(10.0 * k));
        }
    }
};

TEST(ZoneLists, AreChosenByTheSurfaceMode) {
    ZoneRig rig(1);
    EXPECT_EQ(listNumberFor(rig.doc), 3);
    rig.doc.surfaceMode = true;
    EXPECT_EQ(listNumberFor(rig.doc), 4);
}

TEST(ZoneLists, WireDrawsEachTriangleInTheZonesColour) {
    const ZoneRig rig(2);
    const DrawList list = buildDrawList(rig.doc, 3);
    EXPECT_EQ(list.number, 3);
    ASSERT_EQ(list.batches.size(), 2U);
    EXPECT_EQ(list.batches[0].primitive, Primitive::Triangles);
    EXPECT_EQ(list.batches[0].colour, blue);
    EXPECT_EQ(list.batches[1].colour, green);
    EXPECT_FALSE(list.batches[0].lit);
    EXPECT_FALSE(list.batches[0].hasNormals);
    const std::vector<zVec<double>> corners = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {10, 0, 0}, {11, 0, 0}, {10, 1, 0}};
    EXPECT_EQ(list.vertices, corners);
}

// At the corner between the edges (1, 0, 0) and (-1, 1, 0) the normal is their cross product, (0, 0, 1); it is the
// same at the two others.
TEST(ZoneLists, SurfaceGivesEachCornerItsOwnNormal) {
    const ZoneRig rig(1);
    const DrawList list = buildDrawList(rig.doc, 4);
    EXPECT_EQ(list.number, 4);
    ASSERT_EQ(list.normals.size(), 3U);
    for (const zVec<double>& normal : list.normals) {
        EXPECT_NEAR(normal.z, 1.0, 1e-15);
    }
    EXPECT_TRUE(list.batches[0].lit);
}

TEST(ZoneLists, MembersOfTheZBlockAreYellow) {
    ZoneRig rig(2);
    rig.doc.capture.holdBlock();
    rig.block({1});
    const DrawList list = buildDrawList(rig.doc, 3);
    EXPECT_EQ(list.batches[0].colour, blue);
    EXPECT_EQ(list.batches[1].colour, yellow);
}

TEST(ZoneLists, BlockOnlyLeavesTheOthersOut) {
    ZoneRig rig(3);
    rig.doc.showBlockOnly = true;
    rig.block({2});
    const DrawList list = buildDrawList(rig.doc, 4);
    ASSERT_EQ(list.batches.size(), 1U);
    EXPECT_EQ(list.vertices.front(), (zVec<double>(20, 0, 0)));
}

TEST(ZoneLists, WireShowsTheBufferAndSurfaceDoesNot) {
    ZoneRig rig(1);
    rig.doc.showBuffer = true;
    rig.doc.lineBuffer = {{1, 2, 3}};
    rig.doc.sftPoints = {{4, 5, 6}};
    rig.doc.interLine = {{7, 8, 9}};
    rig.doc.pointClipboardFull = true;
    // The triangle; white and blue at the buffer's point; red at the pair's; white and green at the clipboard's.
    EXPECT_EQ(buildDrawList(rig.doc, 3).batches.size(), 6U);
    EXPECT_EQ(buildDrawList(rig.doc, 4).batches.size(), 1U);
}

TEST(ZoneLists, ZoneWithoutCoordinatesIsPassedOver) {
    ZoneRig rig(2);
    rig.doc.feRegion.blocks[0]->variables.clear();
    const DrawList list = buildDrawList(rig.doc, 3);
    ASSERT_EQ(list.batches.size(), 1U);
    EXPECT_EQ(list.batches[0].colour, green);
}

TEST(WireList, ShowsTheReferenceSurfaceInRed) {
    DrawRig rig({square(0)});
    rig.doc.referenceRegion.blocks.push_back(oneTriangle(3));
    EXPECT_THAT(rig.wire(), testing::SizeIs(4));
    rig.doc.secondKind = SecondKind::Wrl;
    const DrawList list = buildDrawList(rig.doc, 1);
    ASSERT_EQ(list.batches.size(), 5U);
    EXPECT_EQ(list.batches.back().primitive, Primitive::Triangles);
    EXPECT_EQ(list.batches.back().colour, (Colour{1.0F, 0.0F, 0.0F, 1.0F}));
}

} // namespace
} // namespace velmora
