#include "held_marks.h"

#include "view_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "draw_rig.h"
#include "small_zones.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A strip of marks: twice as wide as those of the model.
std::string mark(const Colour& colour, const std::vector<zVec<double>>& points) {
    return "wide " + strip(colour, points);
}

/// Squares of the drawing rig, seen as a surface.
struct HeldRig : ViewRig {
    HeldRig() {
        show(squares(3));
        toggleSurface();
        paint();
    }
    std::vector<std::string> held() {
        paint();
        return dump(view.held());
    }
};

TEST(HeldMarks, AreEmptyWhileNothingIsHeld) {
    HeldRig rig;
    EXPECT_THAT(rig.held(), IsEmpty());
}

TEST(HeldMarks, ShowTheCapturedSectionOrLineWithItsPoints) {
    HeldRig rig;
    rig.call("line.captureSection");
    rig.click({10, 1, 0});
    EXPECT_THAT(rig.held(), ElementsAre(mark(white, {{10, 1, 0}, {11, 1, 0}}), point(5, white, {10, 1, 0}),
                                        point(5, white, {11, 1, 0})));
    rig.call("line.captureLine");
    rig.click({21, 0, 0});
    EXPECT_THAT(rig.held(), ElementsAre(mark(white, {{21, 0, 0}, {21, 1, 0}}), point(5, white, {21, 0, 0}),
                                        point(5, white, {21, 1, 0})));
}

TEST(HeldMarks, OutlineThePatchesOfTheZBlock) {
    HeldRig rig;
    rig.putIntoBlock({1});
    rig.redrawPicture();
    EXPECT_THAT(rig.held(),
                ElementsAre(mark(blockYellow, {{10, 0, 0}, {11, 0, 0}}), mark(blockYellow, {{10, 1, 0}, {11, 1, 0}}),
                            mark(blockYellow, {{10, 0, 0}, {10, 1, 0}}), mark(blockYellow, {{11, 0, 0}, {11, 1, 0}})));
}

TEST(HeldMarks, ShowBufferMarkersAndPairsWithTheFrameFirst) {
    HeldRig rig;
    rig.doc.showBuffer = rig.doc.markersOpen = true;
    rig.doc.lineBuffer = {{1, 2, 3}};
    rig.doc.sftPoints = {{4, 0, 0}};
    rig.doc.sftTargets = {{5, 0, 0}};
    rig.doc.markers = {{6, 0, 0}};
    rig.redrawPicture();
    EXPECT_THAT(rig.held(),
                ElementsAre(point(8, bufferBlue, {1, 2, 3}), point(5, white, {1, 2, 3}), point(6, red, {4, 0, 0}),
                            point(6, yellow, {5, 0, 0}), point(8, bufferBlue, {6, 0, 0}), point(5, white, {6, 0, 0})));
    rig.doc.showBuffer = rig.doc.markersOpen = false;
    rig.redrawPicture();
    EXPECT_THAT(rig.held(), IsEmpty());
}

TEST(HeldMarks, HideWhatStandsOutsideOfTheZBlockWithIt) {
    HeldRig rig;
    rig.call("line.captureSection");
    rig.click({10, 1, 0});
    rig.putIntoBlock({0});
    rig.doc.showBlockOnly = true;
    rig.redrawPicture();
    for (const std::string& line : rig.held()) {
        EXPECT_EQ(line.find("strip 1,1,1,1"), std::string::npos) << line;
    }
}

TEST(HeldMarks, AreNotDrawnOverWiresWhichShowThemThemselves) {
    HeldRig rig;
    rig.call("line.captureSection");
    rig.click({10, 1, 0});
    rig.toggleSurface();
    EXPECT_THAT(rig.held(), IsEmpty());
    EXPECT_EQ(rig.surface.lastFrame.held->batches.size(), 0U);
}

TEST(HeldMarks, AZoneOfTheZBlockGetsItsBox) {
    RecordingUi ui;
    DocumentState doc(ui, ".");
    doc.structureKind = StructureKind::Unstructured;
    doc.feRegion = triangleRegion({{0, 0, 0}, {2, 0, 0}, {0, 3, 4}}, {0, 1, 2});
    doc.blockCount = 1;
    doc.blockList[0] = 0;
    const DrawList list = heldMarks(doc);
    ASSERT_EQ(list.batches.size(), 1U);
    EXPECT_EQ(list.batches[0].primitive, Primitive::Lines);
    EXPECT_EQ(list.batches[0].colour, blockYellow);
    // Twelve edges, each between corners that differ in one coordinate, none twice.
    ASSERT_EQ(list.vertices.size(), 24U);
    std::set<std::string> edges;
    for (std::size_t i = 0; i < list.vertices.size(); i += 2) {
        const zVec<double>& a = list.vertices[i];
        const zVec<double>& b = list.vertices[i + 1];
        EXPECT_EQ((a.x != b.x ? 1 : 0) + (a.y != b.y ? 1 : 0) + (a.z != b.z ? 1 : 0), 1);
        for (const zVec<double>& p : {a, b}) {
            EXPECT_TRUE((p.x == 0 || p.x == 2) && (p.y == 0 || p.y == 3) && (p.z == 0 || p.z == 4));
        }
        edges.insert(text(a) + text(b));
    }
    EXPECT_EQ(edges.size(), 12U);
}

TEST(HeldMarks, TheCapturedPointShowsThroughASurface) {
    HeldRig rig;
    rig.call("point.capture");
    rig.click({11, 1, 0});
    rig.paint();
    EXPECT_THAT(dump(*rig.surface.lastFrame.pointed),
                ElementsAre(point(8, red, {11, 1, 0}), point(6, white, {11, 1, 0})));
    rig.toggleSurface();
    rig.paint();
    EXPECT_THAT(dump(*rig.surface.lastFrame.pointed), IsEmpty());
}

} // namespace
} // namespace velmora
