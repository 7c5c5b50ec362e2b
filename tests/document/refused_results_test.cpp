#include <limits>

#include "CommandTest.h"
#include "finite_model.h"
#include "small_zones.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::Not;
using testing::StartsWith;

constexpr double infinity = std::numeric_limits<double>::infinity();
const std::string notFinite =
    "message: The result would hold numbers that are too large or no numbers. The model stays as it is.";

using RefusedResult = CommandTest;

} // namespace

TEST(FiniteModel, OneNumberThatIsInfiniteOrNoneIsFound) {
    PatchList patches = {flatPatch(2, 3), flatPatch(3, 3)};
    EXPECT_TRUE(isFinite(patches));
    EXPECT_TRUE(isFinite(PatchList()));
    for (const double bad : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        for (double zVec<double>::*const axis : {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z}) {
            patches[1][2][2].*axis = bad;
            EXPECT_FALSE(isFinite(patches));
            patches[1][2][2].*axis = 1e308;
            EXPECT_TRUE(isFinite(patches));
        }
    }
    zRegion_fe zones = triangleRegion({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2});
    EXPECT_TRUE(isFinite(zones));
    zones.blocks[0]->variables[1]->data[2] = infinity;
    EXPECT_FALSE(isFinite(zones));
}

TEST_F(RefusedResult, LeavesModelSnapshotMarkCaptureAndBox) {
    hold({flatPatch(3, 3, 1e200)});
    runWith("model.move", {{"deltaX", "1"}});
    doc.documentModified = false;
    capturePoint(0, 1, 1);
    addToBlock(0);
    const PatchList model = doc.patches;
    const PatchList before = doc.undoPatches.copy();
    const zVec<double> upper = doc.boxMax;
    const zVec<double> position = doc.capture->capturedPointPos;
    const std::string status = doc.status;
    forget();
    runWith("model.scaling", {{"scale", "1e150"}});
    EXPECT_THAT(heard(), Contains(notFinite));
    EXPECT_EQ(doc.patches, model);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.documentModified);
    EXPECT_EQ(doc.capture->capturedPointPos, position);
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(block(), std::vector<std::int32_t>{0});
    EXPECT_EQ(doc.boxMax, upper);
    EXPECT_EQ(doc.status, status);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    run("patch.undo");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(RefusedResult, OfZonesLeavesThem) {
    doc.feRegion = triangleRegion({{0, 0, 1e200}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2});
    doc.structureKind = StructureKind::Unstructured;
    updateBounds();
    runWith("model.scaling", {{"scale", "1e150"}});
    EXPECT_THAT(heard(), Contains(notFinite));
    EXPECT_EQ(nodeOf(doc.feRegion, 0, 0), (zVec<double>{0, 0, 1e200}));
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
}

TEST_F(RefusedResult, OfACurveLeavesTheCurve) {
    hold({flatPatch(3, 3, 1e200)});
    captureSection(0, 1);
    const PatchList model = doc.patches;
    runWith("line.scaling", {{"scale", "1e150"}});
    EXPECT_THAT(heard(), Contains(notFinite));
    EXPECT_EQ(doc.patches, model);
}

TEST_F(RefusedResult, AModelThatHeldSuchANumberBeforeCanBeEdited) {
    hold({flatPatch(3, 3)});
    doc.patches[0][2][2].x = infinity;
    runWith("model.move", {{"deltaX", "1"}});
    EXPECT_THAT(heard(), Not(Contains(StartsWith("message"))));
    EXPECT_EQ(doc.patches[0][0][0].x, 1);
}

TEST_F(RefusedResult, ADragThatLeavesTheNumbersBendsNothing) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    capturePoint(0, 1, 1);
    const PatchList model = doc.patches;
    prepareDragCorrection();
    bendCapturedCurve({infinity, 0, 0}, 3);
    EXPECT_EQ(doc.patches, model);
}

} // namespace velmora::test
