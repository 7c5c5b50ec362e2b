#include <cmath>

#include "DialogValues.h"
#include "arranged_capture.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vec = zVec<double>;
using Fields = std::vector<std::pair<std::string, std::string>>;
using Numbers = std::vector<std::int32_t>;

class Transformation : public ZoneTest {
protected:
    void run(const char* command, const Fields& fields) {
        ui.dialogs.push_back(fields);
        call(command);
    }

    void expectSnapshotOf(const PatchList& before) {
        EXPECT_EQ(doc.undoPatches.copy(), before);
        EXPECT_TRUE(doc.patchUndoReady && doc.rebuildOnUndo && doc.documentModified);
    }
};

using TransformationOfZones = Transformation;
using Convertation = Transformation;
using LastFirstSwitch = Transformation;

constexpr const char* const transformations[] = {"model.scaling", "model.move", "model.rotation", "model.flip",
                                                 "model.symmetric"};

} // namespace

// ---- What is common -------------------------------------------------------------------------------------------------

TEST_F(Transformation, CancelledChangesNothing) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    for (const auto command : transformations) {
        call(command);
    }
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_THAT(heard(), ElementsAre("dialog: CScaling -> cancel", "dialog: CBlockMove -> cancel",
                                     "dialog: CBlockRotate -> cancel", "dialog: CFlipBlock -> cancel",
                                     "dialog: CSymmetricBlock -> cancel"));
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(Transformation, WithoutAModelAsksNothing) {
    for (const auto command : transformations) {
        call(command);
    }
    call("model.convertation");
    call("model.lastFirstSwitch");
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Transformation, FitsTheViewAnewAndAgainWhenUndone) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    run("model.move", {{"deltaX", "5"}});
    EXPECT_EQ(doc.boxMin, (Vec{5, 0, 0}));
    EXPECT_EQ(doc.boxMax, (Vec{6, 1, 0}));
    EXPECT_THAT(viewCalls(), ElementsAre("bounds", "redraw"));
    expectSnapshotOf(before);
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.boxMin, (Vec{0, 0, 0}));
    EXPECT_THAT(viewCalls(), ElementsAre("bounds"));
    EXPECT_FALSE(doc.rebuildOnUndo);
}

TEST_F(Transformation, ThatKeepsTheNumbersMarksTheDocumentAllTheSame) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    run("model.scaling", {});
    run("model.move", {});
    EXPECT_EQ(doc.patches, before);
    expectSnapshotOf(before);
}

TEST_F(Transformation, TakesTheZBlocksPatchesAndKeepsTheirPlaces) {
    hold({flatPatch(2, 2, 0), flatPatch(2, 2, 1), flatPatch(2, 2, 2)});
    addToBlock(2);
    addToBlock(0);
    run("model.move", {{"deltaZ", "10"}});
    EXPECT_EQ(doc.patches[0][0][0].z, 10);
    EXPECT_EQ(doc.patches[1][0][0].z, 1);
    EXPECT_EQ(doc.patches[2][0][0].z, 12);
    EXPECT_EQ(block(), (Numbers{2, 0}));
}

TEST_F(Transformation, TakesTheCapturedPointAlongAndMakesItsUndoReady) {
    hold({flatPatch(2, 2)});
    capturePoint(0, 1, 1);
    run("model.scaling", {{"scale", "3"}});
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{3, 3, 0}));
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_TRUE(doc.pointUndoReady);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    call("patch.undo");
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{1, 1, 0}));
}

TEST_F(Transformation, WorksOnLinesAndWithASectionCaptured) {
    hold({patchOf({2, 3})});
    captureSection(0, 1);
    run("model.move", {{"deltaY", "1"}});
    EXPECT_EQ(doc.patches[0][1][2], (Vec{2, 2, 0}));
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, 1);
}

// ---- Each of them ---------------------------------------------------------------------------------------------------

TEST_F(Transformation, ScalesFromTheCentre) {
    hold({flatPatch(2, 2)});
    run("model.scaling", {{"xCenter", "1"}, {"yCenter", "0"}, {"zCenter", "2"}, {"scale", "3"}});
    EXPECT_EQ(doc.patches[0], (Patch{{{-2, 0, -4}, {1, 0, -4}}, {{-2, 3, -4}, {1, 3, -4}}}));
}

TEST_F(Transformation, RotatesAboutTheAxis) {
    hold({{{{0, 1, 0}, {0.5, 1, 0}}, {{0, 2, 0}, {0.5, 2, 0}}}});
    run("model.rotation", {{"angle", "90"}});
    for (std::size_t n = 0; n < 2; ++n) {
        EXPECT_NEAR(doc.patches[0][n][0].y, 0, 2e-6);
        EXPECT_NEAR(doc.patches[0][n][1].z, static_cast<double>(n) + 1, 1e-12);
    }
    EXPECT_EQ(doc.patches[0][0][0].y, std::cos(90 * 0.01745329));
    EXPECT_THAT(heard(), ElementsAre("dialog: CBlockRotate -> ok"));
}

TEST_F(Transformation, RotationLeavesAMovedAxisPointInTheDialog) {
    hold({flatPatch(2, 3)}); // (1, 1, 0) stands over the second point of the axis
    run("model.rotation", {{"angle", "90"}});
    EXPECT_EQ(doc.dialogs->rotate.x2, 1.5);
    EXPECT_EQ(doc.dialogs->rotate.y2, 0);
    EXPECT_EQ(fieldText(*doc.dialogs->form("CBlockRotate")->find("x2")), "1.5");
}

TEST_F(Transformation, RotationLeavesEachCoordinateOfAMovedAxisPointInTheDialog) {
    // (-1, 1, 0) stands over the second point of the axis, which goes to one and a half times its place.
    hold({{{{-1, 1, 0}, {-2, 1, 0}}, {{-1, 1, 1}, {-2, 1, 1}}}});
    run("model.rotation", {{"x2", "0"}, {"y2", "1"}, {"z2", "0"}, {"angle", "90"}});
    EXPECT_EQ(zVec<double>(doc.dialogs->rotate.x2, doc.dialogs->rotate.y2, doc.dialogs->rotate.z2),
              zVec<double>(0, 1.5, 0));
    hold({{{{-1, 0, 1}, {-2, 0, 1}}, {{-1, 1, 1}, {-2, 1, 1}}}});
    run("model.rotation", {{"x2", "0"}, {"y2", "0"}, {"z2", "1"}, {"angle", "90"}});
    EXPECT_EQ(zVec<double>(doc.dialogs->rotate.x2, doc.dialogs->rotate.y2, doc.dialogs->rotate.z2),
              zVec<double>(0, 0, 1.5));
}

TEST_F(Transformation, RotationWithoutAnAxisEndsAfterTheSnapshot) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    capturePoint(0, 1, 1);
    run("model.rotation", {{"x2", "0"}, {"angle", "90"}});
    EXPECT_EQ(doc.patches, before);
    expectSnapshotOf(before);
    EXPECT_FALSE(doc.pointUndoReady);
    EXPECT_THAT(heard(), ElementsAre("dialog: CBlockRotate -> ok", "message: Axis is absent. Rotation is impossible"));
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(Transformation, FlipReflectsAndReversesEachSection) {
    hold({flatPatch(2, 3)});
    run("model.flip", {{"plane", "2"}, {"yPlane", "2"}});
    EXPECT_EQ(doc.patches[0], (Patch{{{2, 4, 0}, {1, 4, 0}, {0, 4, 0}}, {{2, 3, 0}, {1, 3, 0}, {0, 3, 0}}}));
}

TEST_F(Transformation, FlipDropsTheCapturedPoint) {
    hold({flatPatch(2, 3)});
    capturePoint(0, 1, 1);
    run("model.flip", {});
    EXPECT_FALSE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.capture->capturedPoint, -1);
    EXPECT_FALSE(doc.pointUndoReady);
}

TEST_F(Transformation, FlipTellsWhatIsStillHeldInPlaceOfThePoint) {
    hold({flatPatch(2, 3)});
    run("point.capture", {});
    doc.capture.holdPoint(0, 1, 1, doc.patches[0][1][1]);
    doc.capture.describePoint(false);
    doc.status = doc.capture->pointContinueStatus;
    run("model.flip", {});
    EXPECT_EQ(doc.status, idlePrompt);
    run("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    const std::string section = doc.status;
    doc.capture.holdPoint(0, 1, 1, doc.patches[0][1][1]);
    doc.capture.describePoint(true);
    doc.status = doc.capture->pointContinueStatus;
    run("model.flip", {});
    EXPECT_EQ(doc.status, section);
    run("model.flip", {});
    EXPECT_EQ(doc.status, section) << "without a point nothing is told anew";
}

TEST_F(Transformation, FlipAndSymmetricHaveTheirOwnPlanes) {
    hold({flatPatch(2, 2)});
    run("model.flip", {{"plane", "3"}, {"zPlane", "4"}});
    EXPECT_EQ(doc.dialogs->symmetric.plane, 1);
    EXPECT_EQ(doc.dialogs->symmetric.zPlane, 0);
    EXPECT_EQ(doc.patches[0][0][0].z, 8);
}

TEST_F(Transformation, SymmetricAddsTheImagesAndKeepsTheZBlock) {
    hold({flatPatch(2, 3, 0), flatPatch(2, 3, 1), flatPatch(2, 3, 2)});
    const PatchList before = doc.patches;
    for (const int patch : {0, 1, 2}) {
        addToBlock(patch);
    }
    run("model.symmetric", {{"xPlane", "-1"}});
    ASSERT_EQ(doc.patches.size(), 6U);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(doc.patches[k], before[k]);
        // The same order of sections and points.
        EXPECT_EQ(doc.patches[3 + k][1][2], (Vec{-4, 1, static_cast<double>(k)}));
        EXPECT_EQ(doc.patches[3 + k][0][0], (Vec{-2, 0, static_cast<double>(k)}));
    }
    EXPECT_EQ(block(), (Numbers{0, 1, 2}));
    EXPECT_EQ(doc.boxMin.x, -4);
    expectSnapshotOf(before);
}

TEST_F(Transformation, SymmetricWithoutAZBlockDoublesTheModel) {
    hold({flatPatch(2, 2, 0), flatPatch(2, 2, 1)});
    run("model.symmetric", {});
    EXPECT_EQ(doc.patches.size(), 4U);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

// ---- Zones ----------------------------------------------------------------------------------------------------------

TEST_F(TransformationOfZones, MovesEveryNodeOfAllZones) {
    holdZones({3, 2});
    run("model.move", {{"deltaZ", "7"}});
    EXPECT_EQ(node(0, 2), (Vec{2, 0, 7}));
    EXPECT_EQ(node(1, 1), (Vec{1, 1, 7}));
    EXPECT_THAT(viewCalls(), ElementsAre("bounds", "redraw"));
    call("patch.undo");
    EXPECT_EQ(node(1, 1), (Vec{1, 1, 0}));
    EXPECT_THAT(viewCalls(), ElementsAre("bounds"));
}

TEST_F(TransformationOfZones, OfAZBlockNormallyTakesTheFirstZoneAlone) {
    holdZones({3, 3, 3});
    addToBlock(2);
    addToBlock(0);
    run("model.move", {{"deltaZ", "7"}});
    EXPECT_EQ(node(2, 0).z, 7);
    EXPECT_EQ(node(0, 0).z, 0);
    EXPECT_EQ(node(1, 0).z, 0);
}

TEST_F(TransformationOfZones, OfALongZBlockGoesOnBehindThePositionThatTheNodesCountTo) {
    holdZones({3, 3, 3, 3, 9, 3});
    call("block.invert");
    run("model.scaling", {{"zCenter", "1"}, {"scale", "0"}});
    std::vector<double> heights;
    for (std::int32_t zone = 0; zone < 6; ++zone) {
        heights.push_back(node(zone, 1).z);
    }
    // Zone 0 has 3 nodes: the walk goes on at position 4.
    EXPECT_EQ(heights, (std::vector<double>{1, 0, 0, 0, 1, 0}));
}

TEST_F(TransformationOfZones, FollowsTheCapturedNodeAndRemembersWhereItWas) {
    holdZones({3, 3});
    captureNode(1, 2);
    run("model.scaling", {{"scale", "2"}});
    EXPECT_EQ(doc.undoNode, (Vec{2, 1, 0}));
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{4, 2, 0}));
    EXPECT_EQ(doc.capture->pickedPoint, (Vec{4, 2, 0}));
    EXPECT_TRUE(doc.pointUndoReady);
    call("patch.undo");
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{2, 1, 0}));
}

TEST_F(TransformationOfZones, FlipChangesTheCoordinateAloneAndDropsTheNode) {
    holdZones({3});
    captureNode(0, 2);
    doc.undoNode = {9, 9, 9};
    run("model.flip", {{"xPlane", "1"}});
    EXPECT_EQ(node(0, 0), (Vec{2, 0, 0}));
    EXPECT_EQ(node(0, 2), (Vec{0, 0, 0}));
    EXPECT_EQ(doc.undoNode, (Vec{9, 9, 9}));
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{0, 0, 0}));
    EXPECT_FALSE(doc.capture->pointCaptured || doc.pointUndoReady);
    EXPECT_EQ(doc.capture->capturedPoint, -1);
}

TEST_F(TransformationOfZones, SymmetricAddsAZoneForEachWithItsTitle) {
    holdZones({3, 4});
    run("model.symmetric", {{"plane", "2"}, {"yPlane", "5"}});
    EXPECT_EQ(nodeCounts(), (Numbers{3, 4, 3, 4}));
    EXPECT_EQ(node(1, 3), (Vec{3, 1, 0}));
    EXPECT_EQ(node(3, 3), (Vec{3, 9, 0}));
    EXPECT_EQ(doc.feRegion.blocks[3]->title, "zone1_simm");
    EXPECT_EQ(doc.feRegion.blocks[3]->connectivity, doc.feRegion.blocks[1]->connectivity);
}

TEST_F(TransformationOfZones, RotatesThemOrSaysThatThereIsNoAxis) {
    holdZones({3});
    run("model.rotation", {{"x2", "0"}, {"z2", "1"}, {"angle", "180"}});
    EXPECT_NEAR(node(0, 2).x, -2, 1e-6);
    EXPECT_NEAR(node(0, 2).y, 0, 1e-6);
    heard();
    run("model.rotation", {{"z2", "0"}});
    EXPECT_THAT(heard(), ElementsAre("dialog: CBlockRotate -> ok", "message: Axis is absent. Rotation is impossible"));
}

TEST_F(TransformationOfZones, OfNoZonesEndsAfterTheSnapshot) {
    holdZones({});
    run("model.move", {});
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

// ---- Convertation ---------------------------------------------------------------------------------------------------

TEST_F(Convertation, ExchangesSectionsAndLinesAndTheCapture) {
    hold({flatPatch(2, 3), flatPatch(4, 5)});
    const PatchList before = doc.patches;
    captureSection(1, 2);
    capturePoint(1, 2, 4);
    call("model.convertation");
    EXPECT_EQ(countsOf(doc.patches[0]), (Numbers{2, 2, 2}));
    EXPECT_EQ(countsOf(doc.patches[1]), (Numbers{4, 4, 4, 4, 4}));
    EXPECT_EQ(doc.patches[1][4][2], before[1][2][4]);
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 2);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_EQ(doc.capture->capturedPointSection, 4);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, before[1][2][4]);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set line", "set point"));
    call("model.convertation");
    EXPECT_EQ(doc.patches, before);
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, 2);
    EXPECT_EQ(doc.capture->capturedLine, -1);
    EXPECT_EQ(doc.capture->capturedPoint, 4);
}

TEST_F(Convertation, TellsTheSectionThatBecameALineAndTheLineThatBecameASection) {
    hold({flatPatch(4, 3)});
    run("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    EXPECT_THAT(doc.status, testing::StartsWith("Captured section: Patch K=1, Section N=2, Points M=3 "));
    call("model.convertation");
    EXPECT_THAT(doc.status, testing::StartsWith("Captured line: Patch K=1, Line N=2, Points M=3 "));
    call("model.convertation");
    EXPECT_THAT(doc.status, testing::StartsWith("Captured section: Patch K=1, Section N=2, Points M=3 "));
}

TEST_F(Convertation, LeavesTheUndoStateAndTheBox) {
    hold({flatPatch(2, 3)});
    doc.boxMax = {9, 9, 9};
    call("model.convertation");
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_THAT(doc.undoPatches.copy(), IsEmpty());
    EXPECT_EQ(doc.boxMax, (Vec{9, 9, 9}));
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(Convertation, OfAZBlockLeavesTheOthersAndStillExchangesTheCapture) {
    hold({flatPatch(2, 3), flatPatch(4, 5)});
    const PatchList before = doc.patches;
    addToBlock(0);
    captureLine(1, 3);
    capturePoint(1, 2, 3);
    call("model.convertation");
    EXPECT_EQ(doc.patches[0].size(), 3U);
    EXPECT_EQ(doc.patches[1], before[1]);
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedSection, 3);
    EXPECT_EQ(doc.capture->capturedPointSection, 3);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, before[1][3][2]);
}

TEST_F(Convertation, ExchangesAFreePointToo) {
    hold({flatPatch(2, 3)});
    capturePoint(0, 1, 2);
    arranged(doc).pointCaptured = false;
    arranged(doc).freePointHeld = true;
    call("model.convertation");
    EXPECT_EQ(doc.capture->capturedPointSection, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
}

TEST_F(Convertation, RefusesLines) {
    hold({patchOf({3, 2})});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    call("model.convertation");
    EXPECT_EQ(doc.patches, before);
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

// ---- Last/First switch ----------------------------------------------------------------------------------------------

TEST_F(LastFirstSwitch, TurnsRoundTheSectionsAndTheirNumbers) {
    hold({flatPatch(4, 3)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    run("model.lastFirstSwitch", {});
    EXPECT_EQ(doc.patches[0][0], flatPatch(4, 3)[3]);
    EXPECT_EQ(doc.capture->capturedSection, 2);
    EXPECT_EQ(doc.capture->capturedPointSection, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{2, 1, 0}));
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(LastFirstSwitch, TurnsRoundTheLinesAndTheirNumbers) {
    hold({flatPatch(4, 3)});
    captureLine(0, 0);
    capturePoint(0, 1, 0);
    run("model.lastFirstSwitch", {{"kind", "2"}});
    EXPECT_EQ(coordinates(doc.patches[0][1]), (std::vector<double>{2, 1, 0}));
    EXPECT_EQ(doc.capture->capturedLine, 2);
    EXPECT_EQ(doc.capture->capturedPointSection, 1);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{0, 1, 0}));
}

TEST_F(LastFirstSwitch, OfTheOtherDirectionKeepsTheCurvesNumber) {
    hold({flatPatch(4, 3)});
    captureLine(0, 0);
    run("model.lastFirstSwitch", {{"kind", "1"}});
    EXPECT_EQ(doc.capture->capturedLine, 0);
    arranged(doc).lineCaptured = false;
    captureSection(0, 1);
    run("model.lastFirstSwitch", {{"kind", "2"}});
    EXPECT_EQ(doc.capture->capturedSection, 1);
}

TEST_F(LastFirstSwitch, TakesTheZBlockAlone) {
    hold({flatPatch(2, 2), flatPatch(2, 2)});
    const PatchList before = doc.patches;
    addToBlock(1);
    run("model.lastFirstSwitch", {});
    EXPECT_EQ(doc.patches[0], before[0]);
    EXPECT_EQ(doc.patches[1][0], before[1][1]);
}

TEST_F(LastFirstSwitch, CancelledChangesNothing) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    call("model.lastFirstSwitch");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.documentModified);
}

} // namespace velmora::test
