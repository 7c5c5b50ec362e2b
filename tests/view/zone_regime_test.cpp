#include "picking.h"
#include "view_rig.h"

// Points and patches of an unstructured model under the mouse: its nodes and zones.

namespace velmora {
namespace {

using test::expectVector;
using test::TemporaryFolder;
using test::ViewRig;
using test::writeFileText;

/// Two triangles, one a zone, with legs of two units: the corner of the first at the origin, that of the second at
/// (10, 0, 0). The file is opened as a user opens one.
struct ZoneRig : ViewRig {
    ZoneRig() {
        const TemporaryFolder folder;
        writeFileText(folder / "two.dat", "TITLE = \"two\"\nVARIABLES = \"X\", \"Y\", \"Z\"\n" + zone(0) + zone(10));
        open(folder / "two.dat");
        paint();
        ui.transcript.clear();
        EXPECT_EQ(doc.feRegion.blocks.size(), 2U);
    }

    static std::string zone(int x) {
        const std::string left = std::to_string(x) + " 0 0\n";
        const std::string right = std::to_string(x + 2) + " 0 0\n";
        const std::string top = std::to_string(x) + " 2 0\n";
        return "ZONE N = 3, E = 1, DATAPACKING = POINT, ZONETYPE = FETRIANGLE\n" + left + right + top + "1 2 3\n";
    }

    /// Captures the node at `point` and moves it along x.
    void moveNode(const zVec<double>& point, const char* x) {
        call("point.capture");
        click(point);
        ASSERT_TRUE(doc.capture->pointCaptured);
        ui.dialogs.push_back({{"x", x}});
        call("point.edit");
    }
};

TEST(PickNode, FreeOneMayLieOutsideTheZBlock) {
    for (const bool free : {false, true}) {
        ZoneRig rig;
        rig.putIntoBlock({0});
        rig.doc.capture.holdBlock();
        free ? rig.doc.capture.armFreePoint() : rig.doc.capture.armPoint();
        EXPECT_EQ(rig.pick({10, 0, 0}), free);
    }
}

TEST(PickNode, TakesTheNearestNodeOfAnyZone) {
    ZoneRig rig;
    rig.call("point.capture");
    EXPECT_TRUE(rig.pick({12, 0, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 1);
    EXPECT_EQ(rig.doc.capture->capturedPointPos, (zVec<double>{12, 0, 0}));
    EXPECT_EQ(rig.doc.capture->pickedPoint, (zVec<double>{12, 0, 0}));
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    EXPECT_TRUE(rig.pick({0, 2, 0})) << "no node binds the next click to its zone";
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 2);
}

TEST(PickNode, BesideAllNodesKeepsTheZoneAndLosesThePick) {
    ZoneRig rig;
    rig.call("point.capture");
    ASSERT_TRUE(rig.pick({10, 0, 0}));
    EXPECT_FALSE(rig.pick({3, 1, 0}));
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 1) << "of the nearest, (2, 0, 0)";
    EXPECT_EQ(rig.doc.capture->capturedPointPos, (zVec<double>{10, 0, 0}));
}

TEST(PickNode, PassesWithinAHundredthOfTheDiagonal) {
    ZoneRig rig;
    rig.call("point.capture");
    const PixelPoint corner = rig.pixelOf({2, 0, 0});
    const PixelPoint beside{corner.x + 2, corner.y + 3};
    const auto nearest = nearestNode(rig.doc.feRegion, rig.view.PixelRay(beside.x, beside.y), {});
    ASSERT_TRUE(nearest);
    ASSERT_GT(nearest->distance, 0.0);
    rig.doc.boxMin = {0, 0, 0};
    rig.doc.boxMax = {nearest->distance * 100.0 * (1.0 + 1e-9), 0, 0};
    EXPECT_TRUE(rig.view.PickPoint(beside));
    rig.doc.boxMax = {nearest->distance * 100.0 * (1.0 - 1e-9), 0, 0};
    EXPECT_FALSE(rig.view.PickPoint(beside));
}

TEST(PickNode, StaysInTheZonesOfTheBlockInThePatchRegime) {
    ZoneRig rig;
    rig.call("patch.capture");
    rig.click({10.4, 0.6, 0});
    ASSERT_TRUE(rig.doc.capture->patchCaptured);
    ASSERT_EQ(rig.doc.blockList[0], 1);
    rig.call("point.capture");
    EXPECT_FALSE(rig.pick({2, 0, 0}));
    EXPECT_TRUE(rig.pick({12, 0, 0}));
    rig.call("point.exit");
    rig.call("patch.exit");
    rig.call("point.capture");
    EXPECT_TRUE(rig.pick({2, 0, 0}));
}

TEST(NodeRegime, AClickBesideStaysArmedWithThePromptAndTheNextIsTaken) {
    ZoneRig rig;
    rig.call("point.capture");
    rig.ui.transcript.clear();
    rig.click({5, 1, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptureArmed);
    EXPECT_FALSE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.ui.transcript.back(), "status: Press left button of mouse and drag it");
    rig.click({10, 2, 0});
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_FALSE(rig.doc.capture->pointCaptureArmed);
}

TEST(NodeRegime, ANodeIsPickedWhereItWasMovedToAndNoMoreWhereItWas) {
    ZoneRig rig;
    rig.moveNode({2, 0, 0}, "3.5");
    rig.call("point.exit");
    rig.call("point.capture");
    EXPECT_FALSE(rig.pick({2, 0, 0}));
    EXPECT_TRUE(rig.pick({3.5, 0, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 1);
    EXPECT_EQ(rig.doc.capture->capturedPointPos, (zVec<double>{3.5, 0, 0}));
}

TEST(NodeRegime, AZoneIsPickedAsItStandsAfterANodeMovedAndAfterUndo) {
    ZoneRig rig;
    // Between the old edge and the new one.
    const zVec<double> gained{2.5, 0.3, 0};
    EXPECT_EQ(rig.view.PickPatch(rig.pixelOf(gained)), -1);
    rig.moveNode({2, 0, 0}, "4");
    EXPECT_EQ(rig.view.PickPatch(rig.pixelOf(gained)), 0);
    rig.call("point.undo");
    EXPECT_EQ(rig.view.PickPatch(rig.pixelOf(gained)), -1);
    EXPECT_EQ(rig.view.PickPatch(rig.pixelOf({0.5, 0.5, 0})), 0);
    rig.call("point.exit");
    rig.call("point.capture");
    EXPECT_TRUE(rig.pick({2, 0, 0}));
}

TEST(ZoneRegime, AClickTakesTheZoneIntoTheBlockAndOneOnNothingIsTold) {
    ZoneRig rig;
    rig.call("patch.capture");
    rig.ui.transcript.clear();
    rig.click({5, 1, 0});
    EXPECT_EQ(rig.ui.count("message: Patch is not selected. Try again"), 1U);
    EXPECT_TRUE(rig.doc.capture->patchCaptureArmed);
    EXPECT_EQ(rig.doc.blockCount, 0);
    rig.click({10.4, 0.6, 0});
    EXPECT_EQ(rig.doc.blockCount, 1);
    EXPECT_EQ(rig.doc.blockList[0], 1);
    EXPECT_EQ(rig.ui.count("status: Captured patch: Patch K=2 // Press right button to continue "), 2U)
        << "at the press and at the release";
}

} // namespace
} // namespace velmora
