// What a command that does nothing leaves of Undo: all of it.

#include <functional>
#include <new>
#include <ostream>

#include "CommandGuard.h"
#include "CommandTest.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

constexpr const char* square = "#VRML V2.0 utf8\n"
                               "Shape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 9 1 0 9 0 1 9 ] }\n"
                               "coordIndex [ 0 1 2 -1 ] } }\n";
constexpr const char* markerPairs = "1\n2\n3\n4\n5\n6\n7\n1 2 3 4 5 6 7\n";

/// A grid of two patches, or two zones, of which the move by ten can be taken back.
class WayBack : public ZoneTest {
protected:
    struct Look {
        PatchList patches;
        zVec<double> lower;
        zVec<double> upper;
    };

    Look look() const { return {doc.patches, doc.boxMin, doc.boxMax}; }

    void holdMovedGrid() {
        hold({flatPatch(3, 4), flatPatch(2, 5, 6)});
        first_ = look();
        runWith("model.move", {{"deltaX", "10"}});
    }

    void holdMovedZones() {
        holdZones({3, 4});
        first_ = look();
        runWith("model.move", {{"deltaX", "10"}});
    }

    /// Undo takes back the move, and the view fits what it brings back.
    void expectMoveTakenBack() {
        const double movedX = doc.structureKind == StructureKind::Structured ? doc.patches[0][0][0].x : node(0, 0).x;
        EXPECT_EQ(movedX, 10.0);
        EXPECT_TRUE(doc.rebuildOnUndo);
        forget();
        run("patch.undo");
        EXPECT_EQ(doc.patches, first_.patches);
        if (doc.structureKind == StructureKind::Unstructured) {
            EXPECT_EQ(node(0, 0).x, 0.0);
        }
        EXPECT_EQ(doc.boxMin, first_.lower);
        EXPECT_EQ(doc.boxMax, first_.upper);
        EXPECT_THAT(viewCalls(), testing::Contains("bounds"));
    }

    void expectNothingMarked() const { EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady || doc.documentModified); }

    void chooseFile(const std::string& name, const std::string& text) { ui.files.push_back({file(name, text)}); }

private:
    Look first_;
};

struct Fruitless {
    const char* name;
    bool zones;
    std::function<void(WayBack&)> run;
};

void PrintTo(const Fruitless& command, std::ostream* out) {
    *out << command.name;
}

class FruitlessCommand : public WayBack, public testing::WithParamInterface<Fruitless> {
public:
    void appendMissing() {
        ui.files.push_back({folder / "missing.apt"});
        run("file.append");
    }
    void appendRefused() {
        chooseFile("pairs.sft", markerPairs);
        run("file.append");
    }
    void appendEmpty() {
        chooseFile("empty.apt", "");
        run("file.append");
    }
    void appendToZones() {
        chooseFile("broken.wrl", "#VRML V2.0 utf8\nShape {");
        run("file.append");
    }
    void pasteTooMany() {
        captureLine(0, 2);
        doc.lineBuffer = {{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}};
        doc.lineBufferFull = true;
        run("line.paste");
    }
    void matchFarBuffer() {
        captureSection(0, 1);
        doc.lineBuffer = {{900, 1, 1}, {901, 1, 1}, {902, 1, 1}, {903, 1, 1}};
        doc.lineBufferFull = true;
        run("buffer.match");
    }
    void matchFarBorders() {
        addToBlock(0);
        addToBlock(1);
        run("block.matchBorder");
    }
    void mergeUneven() {
        addToBlock(0);
        addToBlock(1);
        runWith("block.merge", {{"kind", "1"}});
    }
    void intersectNothing() {
        addToBlock(0);
        run("model.intersection");
    }
    void shiftWithoutAMove() {
        doc.sftOpen = true;
        doc.sftPoints = doc.sftTargets = {{1, 2, 3}};
        addToBlock(0);
        call("model.reflectToSft");
    }
    void turnWithoutAxis() { runWith("model.rotation", {{"x2", "0"}, {"angle", "90"}}); }
};

/// An Append that gives nothing.
class FruitlessAppend : public FruitlessCommand {};

std::string nameOfFruitless(const testing::TestParamInfo<Fruitless>& info) {
    return info.param.name;
}

FruitlessCommand& asCommand(WayBack& test) {
    return dynamic_cast<FruitlessCommand&>(test);
}

const std::vector<Fruitless> fruitlessAppends = {
    {"AppendOfAMissingFile", false, [](WayBack& t) { asCommand(t).appendMissing(); }},
    {"AppendOfAnotherType", false, [](WayBack& t) { asCommand(t).appendRefused(); }},
    {"AppendOfAnEmptyFile", false, [](WayBack& t) { asCommand(t).appendEmpty(); }},
    {"AppendToZonesOfABrokenFile", true, [](WayBack& t) { asCommand(t).appendToZones(); }},
};

const std::vector<Fruitless> fruitless = {
    {"PasteOfAnotherLength", false, [](WayBack& t) { asCommand(t).pasteTooMany(); }},
    {"MatchOfAFarBuffer", false, [](WayBack& t) { asCommand(t).matchFarBuffer(); }},
    {"MatchOfFarBorders", false, [](WayBack& t) { asCommand(t).matchFarBorders(); }},
    {"MergeOfUnevenPatches", false, [](WayBack& t) { asCommand(t).mergeUneven(); }},
    {"IntersectionWithNothing", false, [](WayBack& t) { asCommand(t).intersectNothing(); }},
    {"ShiftOfMarkersThatStandStill", false, [](WayBack& t) { asCommand(t).shiftWithoutAMove(); }},
    {"ShiftOfMarkersThatStandStillOfZones", true, [](WayBack& t) { asCommand(t).shiftWithoutAMove(); }},
    {"RotationWithoutAnAxis", false, [](WayBack& t) { asCommand(t).turnWithoutAxis(); }},
    {"InvisibleRemove", true, [](WayBack& t) { t.run("model.invisibleRemove"); }},
};

} // namespace

// Some of these commands take a snapshot before they find that they cannot be done; the work that it would replace is
// the user's, and counts for more.
TEST_P(FruitlessCommand, LeavesWhatTheCommandBeforeItDidToUndo) {
    if (GetParam().zones) {
        holdMovedZones();
    } else {
        holdMovedGrid();
    }
    GetParam().run(*this);
    EXPECT_TRUE(ui.gaveUp || ui.refused);
    expectMoveTakenBack();
}

// A command that is refused may leave its snapshot where it replaces none.
TEST_P(FruitlessCommand, LeavesTheModelAndUndoOffUnlessItIsRefused) {
    if (GetParam().zones) {
        holdZones({3, 4});
    } else {
        hold({flatPatch(3, 4), flatPatch(2, 5, 6)});
    }
    const PatchList before = doc.patches;
    GetParam().run(*this);
    EXPECT_TRUE(ui.gaveUp || ui.refused);
    EXPECT_EQ(doc.patches, before);
    if (!ui.refused) {
        expectNothingMarked();
    }
}

INSTANTIATE_TEST_SUITE_P(Of, FruitlessCommand, testing::ValuesIn(fruitless), nameOfFruitless);
INSTANTIATE_TEST_SUITE_P(OfAppend, FruitlessCommand, testing::ValuesIn(fruitlessAppends), nameOfFruitless);

TEST_P(FruitlessAppend, LeavesTheCapturedPointItsUndoAndTheZBlock) {
    if (GetParam().zones) {
        holdZones({3, 4});
        addToBlock(1);
        captureNode(0, 1);
        doc.capture.holdPoint(0, -1, 1, node(0, 1));
    } else {
        hold({flatPatch(3, 4), flatPatch(2, 5, 6)});
        addToBlock(1);
        captureSection(0, 1);
        capturePoint(0, 1, 1);
    }
    doc.showBlockOnly = true;
    runWith("point.edit", {{"z", "5"}});
    GetParam().run(*this);
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.capture->sectionCaptured, !GetParam().zones);
    EXPECT_EQ(doc.capture->capturedPatch, 0);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_TRUE(doc.inBlock(1) && doc.showBlockOnly);
    EXPECT_TRUE(isCommandOff(doc, "patch.undo"));
    ASSERT_FALSE(isCommandOff(doc, "point.undo"));
    run("point.undo");
    EXPECT_EQ(doc.positionAt(0, 1, 1)->z, 0.0);
}

TEST_P(FruitlessAppend, LeavesTheCapturedSectionAndTheUndoOfPatches) {
    if (GetParam().zones) {
        holdMovedZones();
    } else {
        holdMovedGrid();
        captureSection(0, 1);
    }
    addToBlock(1);
    GetParam().run(*this);
    EXPECT_EQ(doc.capture->sectionCaptured, !GetParam().zones);
    EXPECT_TRUE(doc.inBlock(1));
    expectMoveTakenBack();
}

INSTANTIATE_TEST_SUITE_P(Of, FruitlessAppend, testing::ValuesIn(fruitlessAppends), nameOfFruitless);

// The guard around the line in which the command runs must not take the older snapshot for one of that line.
TEST_F(WayBack, ExceptionBehindARefusedCommandLeavesTheModel) {
    holdMovedZones();
    try {
        const CommandGuard guard(*document_);
        run("model.invisibleRemove");
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
        EXPECT_EQ(node(0, 0).x, 10.0);
    }
}

TEST_F(WayBack, MarkersThatAreReadLeaveTheBoxToUndo) {
    holdMovedGrid();
    chooseFile("pairs.sft", markerPairs);
    run("file.appendSft");
    ASSERT_TRUE(doc.sftOpen);
    expectMoveTakenBack();
}

TEST_F(WayBack, SecondSurfaceLeavesModelAndBoxToUndo) {
    holdMovedGrid();
    chooseFile("square.wrl", square);
    run("file.appendWrl");
    ASSERT_EQ(doc.referenceRegion.blocks.size(), 1U);
    expectMoveTakenBack();
}

TEST_F(WayBack, ScalingByOneLeavesWhatTheCommandBeforeItDidToUndo) {
    holdMovedGrid();
    runWith("model.scaling", {{"scale", "1"}});
    expectMoveTakenBack();
}

TEST_F(WayBack, OpenOfTheSameFileCanBeTakenBack) {
    const auto path = file("wing.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    open(path);
    runWith("model.scaling", {{"scale", "2"}});
    runWith("model.scaling", {{"scale", "0.5"}});
    ui.answers = {true};
    ui.files.push_back({path});
    run("file.open");
    EXPECT_EQ(doc.undoPath, path);
    EXPECT_TRUE(doc.patchUndoReady);
}

// ---- Undo of the point ----------------------------------------------------------------------------------------------

TEST_F(WayBack, TransformationWithACapturedPointTurnsUndoOfThePointNotOn) {
    for (const char* const id : {"model.scaling", "model.move", "model.rotation", "model.symmetric"}) {
        hold({flatPatch(3, 4)});
        capturePoint(0, 1, 1);
        runWith(id, {});
        EXPECT_TRUE(isCommandOff(doc, "point.undo")) << id;
        run("patch.undo");
    }
}

TEST_F(WayBack, TransformationOfZonesWithACapturedNodeTurnsUndoOfThePointNotOn) {
    holdZones({3});
    captureNode(0, 1);
    runWith("model.move", {{"deltaX", "10"}});
    EXPECT_TRUE(isCommandOff(doc, "point.undo"));
    run("patch.undo");
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{1, 0, 0}));
}

TEST_F(WayBack, EditOfANodeIsTakenBack) {
    holdZones({3});
    captureNode(0, 1);
    doc.capture.holdPoint(0, -1, 1, node(0, 1));
    runWith("point.edit", {{"z", "5"}});
    ASSERT_EQ(node(0, 1).z, 5.0);
    run("point.undo");
    EXPECT_EQ(node(0, 1).z, 0.0);
}

TEST_F(WayBack, EditOfAPointThatWasLeftDoesNotComeBackWithTheNextOne) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "5"}});
    run("point.exit");
    capturePoint(0, 2, 2);
    runWith("model.move", {{"deltaX", "1"}});
    EXPECT_TRUE(isCommandOff(doc, "point.undo"));
}

// A command that leaves the regime of the point lets go of its Undo, whatever it comes to.
TEST_F(WayBack, RefusedDeleteOfASectionLeavesTheRegimeOfThePoint) {
    hold({flatPatch(2, 4)});
    captureSection(0, 1);
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "5"}});
    ASSERT_TRUE(doc.pointUndoReady);
    run("line.delete");
    ASSERT_TRUE(ui.refused);
    ASSERT_FALSE(doc.capture->pointCaptured);
    EXPECT_FALSE(doc.pointUndoReady);
}

TEST_F(WayBack, ScalingByOneLeavesTheEditOfAPointToUndo) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "5"}});
    runWith("model.scaling", {{"scale", "1"}});
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_TRUE(doc.pointUndoIsNewer);
    run("point.undo");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 4));
}

// OK on the numbers as they stood.
TEST_F(WayBack, EditThatChangesNothingLeavesWhatWasBeforeItToUndo) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "5"}});
    capturePoint(0, 2, 2);
    runWith("point.edit", {});
    ASSERT_TRUE(doc.pointUndoReady);
    run("point.undo");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 4));
    EXPECT_EQ(doc.capture->capturedPointSection, 1) << "the point that was edited";
    EXPECT_EQ(doc.capture->capturedPoint, 1);
}

TEST_F(WayBack, EditThatChangesNothingLeavesTheUndoOfPatches) {
    holdMovedGrid();
    const PatchList moved = doc.patches;
    capturePoint(0, 1, 1);
    runWith("point.edit", {});
    EXPECT_FALSE(doc.pointUndoReady);
    EXPECT_EQ(doc.patches, moved);
    expectMoveTakenBack();
}

TEST_F(WayBack, UndoOfThePointFitsTheModelAnewWhenATransformationGoesWithIt) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "0.5"}});
    runWith("model.scaling", {{"scale", "1000"}});
    ASSERT_GT(doc.boxMax.x, 1000.0);
    forget();
    run("point.undo");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 4));
    EXPECT_EQ(doc.boxMax, (zVec<double>{3, 2, 0}));
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(viewCalls(), testing::Contains("bounds"));
}

TEST_F(WayBack, UndoOfThePointLeavesTheViewWhereTheTransformationCameBefore) {
    holdMovedGrid();
    const PatchList moved = doc.patches;
    const zVec<double> upper = doc.boxMax;
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "0.5"}});
    forget();
    run("point.undo");
    EXPECT_EQ(doc.patches, moved);
    EXPECT_EQ(doc.boxMax, upper);
    EXPECT_THAT(viewCalls(), testing::Not(testing::Contains("bounds")));
}

// ---- The captured point is one of the model ---------------------------------------------------------------------------

TEST_F(WayBack, RebreakTakesTheCapturedPointAlongAndKeepsItInside) {
    hold({{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {8, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {2, 1, 0}, {8, 1, 0}}}});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    runWith("line.rebreak", {{"newCount", "5"}, {"function", "2"}});
    ASSERT_EQ(doc.patches[0][1].size(), 5U);
    EXPECT_EQ(doc.patches[0][1][2], (zVec<double>{4, 1, 0}));
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{4, 1, 0}));
    EXPECT_EQ(doc.capture->pickedPoint, (zVec<double>{4, 1, 0})) << "what Edit shows, and writes with OK";
    runWith("line.rebreak", {{"newCount", "2"}});
    ASSERT_EQ(doc.patches[0][1].size(), 2U);
    EXPECT_EQ(doc.capture->capturedPoint, 1) << "the last one";
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{8, 1, 0}));
}

TEST_F(WayBack, TransformationTakesAFreePointAlong) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    run("point.free.line");
    doc.capture.take(
        {.target = Pick::Target::Point, .found = true, .patch = 0, .section = 2, .point = 3, .position = {3, 2, 0}});
    ASSERT_TRUE(doc.capture.releaseFreePoint());
    runWith("model.move", {{"deltaX", "10"}});
    ASSERT_TRUE(doc.capture->freePointHeld);
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{13, 2, 0}));
    EXPECT_EQ(doc.capture->pickedPoint, (zVec<double>{13, 2, 0}));
}

// The command of a drag is through before the mouse moves.
TEST_F(WayBack, DragBehindAnotherCommandIsTakenBackAlone) {
    holdMovedGrid();
    const PatchList moved = doc.patches;
    capturePoint(0, 1, 1);
    run("point.drag");
    placeDraggedPoint({11, 1, 3});
    ASSERT_NE(doc.patches, moved);
    run("point.undo");
    EXPECT_EQ(doc.patches, moved);
}

// ---- Commands that take themselves back -----------------------------------------------------------------------------

TEST_F(WayBack, ConvertationBehindAnotherCommandIsTakenBackAlone) {
    hold({flatPatch(3, 4)});
    runWith("model.move", {{"deltaX", "10"}});
    const PatchList moved = doc.patches;
    run("model.convertation");
    ASSERT_NE(doc.patches, moved);
    run("patch.undo");
    EXPECT_EQ(doc.patches, moved);
}

TEST_F(WayBack, LastFirstSwitchBehindAnEditOfAPointIsTakenBackAlone) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    runWith("point.edit", {{"z", "5"}});
    const PatchList edited = doc.patches;
    runWith("model.lastFirstSwitch", {{"kind", "2"}});
    ASSERT_NE(doc.patches, edited);
    EXPECT_FALSE(doc.pointUndoIsNewer);
    run("patch.undo");
    EXPECT_EQ(doc.patches, edited);
}

TEST_F(WayBack, SectionTurnedRoundBehindAnotherCommandIsTakenBackAlone) {
    holdMovedGrid();
    const PatchList moved = doc.patches;
    captureSection(0, 1);
    capturePoint(0, 1, 1);
    run("point.reverseSection");
    ASSERT_NE(doc.patches, moved);
    ASSERT_EQ(doc.capture->capturedPoint, 2);
    run("patch.undo");
    EXPECT_EQ(doc.patches, moved);
    EXPECT_EQ(doc.capture->capturedPoint, 1);

    runWith("point.edit", {{"z", "5"}});
    const PatchList edited = doc.patches;
    ASSERT_NE(edited, moved);
    run("point.reverseSection");
    ASSERT_NE(doc.patches, edited);
    run("point.undo");
    EXPECT_EQ(doc.patches, edited);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
}

TEST_F(WayBack, ConvertationAloneTakesNoSnapshotAndIsTakenBackByItself) {
    hold({flatPatch(3, 4)});
    const PatchList before = doc.patches;
    run("model.convertation");
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_TRUE(doc.documentModified);
    run("model.convertation");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(WayBack, LastFirstSwitchWithoutASnapshotTakesNone) {
    hold({flatPatch(3, 4)});
    runWith("model.lastFirstSwitch", {{"kind", "1"}});
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_TRUE(doc.documentModified);
}

} // namespace velmora::test
