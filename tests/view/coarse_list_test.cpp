#include "coarse_list.h"

#include "view_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "draw_rig.h"
#include "small_zones.h"

namespace velmora {
namespace {

using namespace test;

/// A square plate from 0 to `side` at z = 0 of two triangles a cell, its front up.
zRegion_fe plate(int side) {
    std::vector<zVec<double>> nodes;
    std::vector<std::int32_t> corners;
    for (int i = 0; i <= side; ++i) {
        for (int j = 0; j <= side; ++j) {
            nodes.emplace_back(j, i, 0);
        }
    }
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            const int a = i * (side + 1) + j;
            const int b = a + side + 1;
            corners.insert(corners.end(), {a, a + 1, b + 1, a, b + 1, b});
        }
    }
    return triangleRegion(nodes, corners);
}

struct PlateRig : ViewRig {
    explicit PlateRig(int side) {
        doc.structureKind = StructureKind::Unstructured;
        doc.feRegion = plate(side);
        updateBounds();
    }
};

TEST(CoarseList, OfAGridTakesEachSoManySectionsAndPointsAndTheLast) {
    DrawRig rig({flatPatch(201, 201)});
    // 80,802 vertices for 2,000 are 40.4 for one: each seventh row of each seventh point. 0 to 196 are 29, and the
    // last.
    const DrawList list = buildCoarseList(rig.doc, 2, 2000);
    EXPECT_EQ(list.number, 2);
    EXPECT_EQ(list.batches.size(), 29U);
    EXPECT_EQ(list.vertices.size(), 29U * 60U);
    EXPECT_EQ(list.normals.size(), list.vertices.size());
    EXPECT_TRUE(list.batches.front().lit);
    EXPECT_EQ(list.batches.front().colour, table[0]);
    const auto [least, most] = std::minmax_element(list.vertices.begin(), list.vertices.end(),
                                                   [](const auto& a, const auto& b) { return a.x + a.y < b.x + b.y; });
    EXPECT_EQ(*least, zVec<double>(0, 0, 0));
    EXPECT_EQ(*most, zVec<double>(200, 200, 0));
}

TEST(CoarseList, OfAGridThatIsSmallEnoughIsTheListItself) {
    DrawRig rig(squares(3));
    EXPECT_EQ(dump(buildCoarseList(rig.doc, 2, 1000)), rig.surface());
    EXPECT_EQ(dump(buildCoarseList(rig.doc, 1, 1000)), rig.wire());
}

TEST(CoarseList, KeepsTheColoursOfTheZBlockAndWhatItHides) {
    DrawRig rig(squares(3));
    rig.block({1});
    rig.doc.showBlockOnly = true;
    const DrawList list = buildCoarseList(rig.doc, 1, 1000);
    ASSERT_EQ(list.batches.size(), 4U);
    EXPECT_EQ(list.batches[0].colour, blockYellow);
    EXPECT_EQ(list.vertices[0].x, 10.0);
}

TEST(CoarseList, OfAGridHasNoOverlays) {
    DrawRig rig(squares(1));
    rig.doc.showFirstPoints = rig.doc.showDoublePoints = true;
    EXPECT_EQ(buildCoarseList(rig.doc, 2, 1000).batches.size(), 1U);
}

TEST(CoarseList, OfZonesHasFewerTrianglesThatCoverTheSameAndShowTheSameSide) {
    const PlateRig rig(300);
    const DrawList list = buildCoarseList(rig.doc, 4, 36'000);
    // sqrt(36000 / 3 / 12) is 31: cubes of 300 / 31. The plate crosses 32 of them each way, the last by its border.
    ASSERT_EQ(list.batches.size(), 1U);
    EXPECT_TRUE(list.batches[0].lit);
    EXPECT_EQ(list.vertices.size() / 3, 31U * 31U * 2U);
    double area = 0.0;
    for (std::size_t i = 0; i < list.vertices.size(); i += 3) {
        const auto& a = list.vertices[i];
        const auto& b = list.vertices[i + 1];
        const auto& c = list.vertices[i + 2];
        area += 0.5 * ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x));
        EXPECT_EQ(list.normals[i], zVec<double>(0, 0, 1));
    }
    // The middles of the border's cubes stand half a cube inside, but for the last, which are on the border.
    EXPECT_GT(area, 0.9 * 300 * 300);
    EXPECT_LE(area, 300.0 * 300);
}

TEST(CoarseList, OfNothingIsEmpty) {
    DrawRig rig({});
    EXPECT_EQ(buildCoarseList(rig.doc, 0, 1000).number, 0);
    EXPECT_TRUE(buildCoarseList(rig.doc, 2, 1000).batches.empty());
}

// ---- When it is drawn -----------------------------------------------------------------------------------------------

struct SlowRig : ViewRig {
    SlowRig() { show({flatPatch(301, 301)}); }

    const DrawList* drawn() {
        paint();
        return surface.lastFrame.coarse;
    }
    void turn() {
        view.BeginNavigation(ModeRotate, {300, 300});
        view.Navigate({310, 300});
    }
};

TEST(CoarseFrame, IsDrawnWhileTheCameraMovesAndTheModelTakesTooLong) {
    SlowRig rig;
    rig.surface.modelTook = 61.0;
    EXPECT_EQ(rig.drawn(), nullptr) << "at rest";
    rig.turn();
    EXPECT_EQ(rig.surface.restsAwaited, 1);
    const DrawList* const coarse = rig.drawn();
    ASSERT_NE(coarse, nullptr);
    EXPECT_LT(coarse->vertices.size(), rig.view.list().vertices.size());
    EXPECT_GT(coarse->vertices.size(), 0U);
    const auto revision = rig.surface.lastFrame.coarseRevision;
    rig.view.Navigate({320, 300});
    rig.paint();
    EXPECT_EQ(rig.surface.lastFrame.coarseRevision, revision) << "it is made once";
    const int repaints = rig.surface.repaints;
    rig.view.EndNavigation();
    EXPECT_GT(rig.surface.repaints, repaints);
    EXPECT_EQ(rig.drawn(), nullptr) << "at rest again";
}

TEST(CoarseFrame, IsNotDrawnOfAModelThatIsFastEnough) {
    SlowRig rig;
    rig.surface.modelTook = 60.0;
    rig.turn();
    EXPECT_EQ(rig.drawn(), nullptr);
}

TEST(CoarseFrame, ComesInDragsOfTheLeftButtonAndWithTheWheelToo) {
    SlowRig rig;
    rig.surface.modelTook = 100.0;
    rig.view.OnWheel({300, 300}, 1.0);
    EXPECT_NE(rig.drawn(), nullptr);
    rig.view.OnRest();
    EXPECT_EQ(rig.drawn(), nullptr);
    rig.view.setMouseMode(ModeRotate);
    rig.drag({300, 300}, {320, 300});
    EXPECT_NE(rig.drawn(), nullptr);
}

TEST(CoarseFrame, IsMadeAnewOfANewPicture) {
    SlowRig rig;
    rig.surface.modelTook = 100.0;
    rig.turn();
    rig.paint();
    const auto revision = rig.surface.lastFrame.coarseRevision;
    rig.toggleSurface();
    ASSERT_NE(rig.drawn(), nullptr);
    EXPECT_NE(rig.surface.lastFrame.coarseRevision, revision);
    EXPECT_EQ(rig.drawn()->number, 2);
}

} // namespace
} // namespace velmora
