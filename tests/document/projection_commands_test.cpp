#include <cmath>
#include <filesystem>

#include "DialogValues.h"
#include "command_table.h"
#include "small_zones.h"
#include "vectors.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Vector = zVec<double>;
using Fields = std::vector<std::pair<std::string, std::string>>;

const char* const someMiss = "message: Attention. Some initial vectors are not crossed with target surface";

/// Two triangles over the square from the origin to (side, side), at a height.
const char* const squareWrl = "#VRML V2.0 utf8\nShape {\n  geometry IndexedFaceSet {\n    coord Coordinate {\n"
                              "      point [\n0 0 2\n4 0 2\n4 4 2\n0 4 2\n      ]\n    }\n"
                              "    coordIndex [ 0 1 2 -1 0 2 3 -1 ]\n  }\n}\n";

class ReferenceFiles : public StateTest {
protected:
    std::filesystem::path file(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        return folder / name;
    }
    void appendWrl(const std::filesystem::path& path) {
        ui.files.push_back({path});
        call("file.appendWrl");
    }
};

class Reflection : public ReferenceFiles {
protected:
    /// The zBlock's patch 0 at height 0, another patch at a height above it.
    void holdPair(double height, int points = 3) {
        hold({flatPatch(3, 3), flatPatch(3, points, height)});
        addToBlock(0);
    }
};

class ZoneReflection : public ZoneTest {};

class Intersection : public StateTest {
protected:
    /// A wall of lines that run down through the plate at y = 1.
    static Patch wall(const std::vector<double>& x, const std::vector<double>& heights, double y = 1.25) {
        Patch patch;
        for (const double z : heights) {
            PointList section;
            for (const double at : x) {
                section.push_back({at, y, z});
            }
            patch.push_back(section);
        }
        return patch;
    }
    void intersect(const Fields& fields) {
        ui.dialogs.push_back(fields);
        call("model.intersection");
    }
};

const Fields before = {{"insideSide", "1"}, {"insidePoints", "5"}, {"outsideSide", "1"}, {"outsidePoints", "4"}};

} // namespace

// ---- Append wrl, Close wrl, Append dat, Close dat -------------------------------------------------------------------

TEST_F(ReferenceFiles, AppendWrlOpensASecondGeometryBesideTheModel) {
    hold({flatPatch(2, 2)});
    appendWrl(file("square.wrl", squareWrl));
    EXPECT_EQ(doc.secondKind, SecondKind::Wrl);
    ASSERT_EQ(doc.referenceRegion.blocks.size(), 1U);
    EXPECT_EQ(doc.referenceRegion.blocks[0]->elementCount, 2);
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 1"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_EQ(doc.undoPatches.copy(), doc.patches);
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(ui.busyDepth, 0);
    ASSERT_EQ(ui.requests.size(), 1U);
    EXPECT_EQ(ui.requests[0].types[0].extension, "wrl");
    EXPECT_EQ(ui.requests[0].command, "file.appendWrl");
}

TEST_F(ReferenceFiles, AFurtherFileComesBehindTheFirst) {
    hold({flatPatch(2, 2)});
    const auto path = file("square.wrl", squareWrl);
    appendWrl(path);
    appendWrl(path);
    EXPECT_EQ(doc.referenceRegion.blocks.size(), 2U);
    // One that is no longer open does not come back.
    doc.secondKind = SecondKind::None;
    appendWrl(path);
    EXPECT_EQ(doc.referenceRegion.blocks.size(), 1U);
}

TEST_F(ReferenceFiles, ThatCannotBeReadChangeNothing) {
    hold({flatPatch(2, 2)});
    call("file.appendWrl");
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 0"));
    appendWrl(file("square.stl", squareWrl));
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 1", "message: This file's type is not supported by Sorvane"));
    appendWrl(folder / "absent.wrl");
    EXPECT_EQ(heard().size(), 2U);
    appendWrl(file("cut.wrl", std::string(squareWrl).substr(0, 90)));
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 1", "status: Face sets: 1, kept: 0 (the file ends within it)",
                                     "message: Open procedure is canceled"));
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    EXPECT_THAT(doc.referenceRegion.blocks, IsEmpty());
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(ReferenceFiles, CloseWrlEmptiesIt) {
    hold({flatPatch(2, 2)});
    appendWrl(file("square.wrl", squareWrl));
    view.calls.clear();
    call("file.closeWrl");
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    EXPECT_THAT(doc.referenceRegion.blocks, IsEmpty());
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    EXPECT_TRUE(isCommandOff(doc, "file.closeWrl"));
}

TEST_F(ReferenceFiles, AppendDatLeavesNoSecondGridOpen) {
    hold({flatPatch(2, 2)});
    ui.files.push_back({file("g.dat", "VARIABLES = \"x\", \"y\", \"z\"\nZONE I=2, J=2, K=1, F=POINT\n"
                                      "0 0 1\n1 0 1\n0 1 1\n1 1 1\n")});
    call("file.appendDat");
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 1"));
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    EXPECT_THAT(doc.referencePatches, IsEmpty());
    EXPECT_TRUE(isCommandOff(doc, "file.closeDat"));
    addToBlock(0);
    EXPECT_TRUE(isCommandOff(doc, "model.reflectToDat"));
    EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 2)});
}

TEST_F(ReferenceFiles, AppendDatTellsWhatIsWrongWithTheFile) {
    hold({flatPatch(2, 2)});
    ui.files.push_back({file("g.dat", "VARIABLES = \"x\", \"y\"\nZONE I=2, J=2, F=POINT\n0 0\n1 0\n0 1\n1 1\n")});
    call("file.appendDat");
    const Lines said = heard();
    ASSERT_EQ(said.size(), 3U);
    EXPECT_THAT(said[1], testing::HasSubstr("missing coordinate(s):  'z'"));
    EXPECT_EQ(said[2], "status: missing coordinate(s):  'z'");
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    call("file.appendDat");
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 0"));
}

TEST_F(ReferenceFiles, AppendDatOfAFileWithoutGridsIsCanceled) {
    hold({flatPatch(2, 2)});
    ui.files.push_back({file("g.dat", "")});
    call("file.appendDat");
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 1", "message: Open procedure is canceled"));
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 2)});
}

TEST_F(ReferenceFiles, CloseDatClosesASecondGrid) {
    hold({flatPatch(2, 2)});
    doc.referencePatches = {flatPatch(2, 2)};
    doc.secondKind = SecondKind::Dat;
    call("file.closeDat");
    EXPECT_THAT(doc.referencePatches, IsEmpty());
    EXPECT_EQ(doc.secondKind, SecondKind::None);
}

// ---- Reflection to apt ----------------------------------------------------------------------------------------------

TEST_F(Reflection, ToAptMovesTheBlockAndKeepsIt) {
    holdPair(2);
    call("model.reflectToApt");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 3, 2));
    EXPECT_EQ(doc.patches[1], flatPatch(3, 3, 2));
    EXPECT_THAT(block(), ElementsAre(0));
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(ui.busyCalls, 1);
    EXPECT_EQ(ui.busyDepth, 0);
    EXPECT_THAT(doc.lineBuffer, IsEmpty());
    call("patch.undo");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 3));
}

TEST_F(Reflection, ToAptTellsOnceWhatMissed) {
    holdPair(2, 2);
    doc.lineBuffer = {{9, 9, 9}};
    doc.lineBufferFull = true;
    call("model.reflectToApt");
    EXPECT_THAT(heard(), ElementsAre(someMiss));
    EXPECT_THAT(doc.lineBuffer, ElementsAre(Vector(2, 0, 0), Vector(2, 1, 0), Vector(2, 2, 0)));
    EXPECT_TRUE(doc.lineBufferFull);
    EXPECT_EQ(doc.patches[0][1][1], Vector(1, 1, 2));
    EXPECT_EQ(doc.patches[0][1][2], Vector(2, 1, 0));
}

TEST_F(Reflection, ToAptEmptiesTheBufferOfTheRunBefore) {
    holdPair(2);
    doc.lineBuffer = {{9, 9, 9}};
    doc.lineBufferFull = true;
    call("model.reflectToApt");
    EXPECT_THAT(doc.lineBuffer, IsEmpty());
    EXPECT_FALSE(doc.lineBufferFull);
}

TEST_F(Reflection, ToAptWithAllPatchesSelectedMovesNothing) {
    holdPair(2);
    addToBlock(1);
    call("model.reflectToApt");
    EXPECT_THAT(heard(), ElementsAre(someMiss));
    EXPECT_EQ(doc.lineBuffer.size(), 18U);
    EXPECT_EQ(doc.patches, (PatchList{flatPatch(3, 3), flatPatch(3, 3, 2)}));
}

TEST_F(Reflection, ToAptOnARaggedTargetUsesTheCellsThatAreThere) {
    Patch target = flatPatch(3, 3, 2);
    target[1].resize(2);
    hold({flatPatch(3, 3), target});
    addToBlock(0);
    call("model.reflectToApt");
    EXPECT_EQ(doc.patches[0][0][1], Vector(1, 0, 2));
    EXPECT_EQ(doc.patches[0][0][2], Vector(2, 0, 0));
}

TEST_F(Reflection, ToAptTakesTheCapturedPointAlong) {
    holdPair(2);
    capturePoint(0, 1, 1);
    call("model.reflectToApt");
    EXPECT_EQ(doc.capture->capturedPointPos, Vector(1, 1, 2));
}

// ---- Reflection to wrl ----------------------------------------------------------------------------------------------

TEST_F(Reflection, ToWrlUsesTheReferenceGeometryUp) {
    holdPair(9);
    appendWrl(file("square.wrl", squareWrl));
    forget();
    EXPECT_FALSE(isCommandOff(doc, "model.reflectToWrl"));
    call("model.reflectToWrl");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 3, 2));
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    EXPECT_THAT(doc.referenceRegion.blocks, IsEmpty());
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(isCommandOff(doc, "model.reflectToWrl"));
    call("patch.undo");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 3));
}

TEST_F(Reflection, ToWrlShowsTheWholeModelAgain) {
    holdPair(9);
    appendWrl(file("square.wrl", squareWrl));
    doc.showBlockOnly = true;
    call("model.reflectToWrl");
    EXPECT_FALSE(doc.showBlockOnly) << "of the zBlock, empty now, nothing would be seen";
}

TEST_F(Reflection, ToWrlUsesItUpAlsoWhenNothingWasHit) {
    hold({flatPatch(2, 2), {{{90, 0, 0}, {91, 0, 0}}, {{90, 1, 0}, {91, 1, 0}}}});
    addToBlock(1);
    appendWrl(file("square.wrl", squareWrl));
    forget();
    call("model.reflectToWrl");
    EXPECT_THAT(heard(), ElementsAre(someMiss));
    EXPECT_EQ(doc.lineBuffer.size(), 4U);
    EXPECT_TRUE(doc.lineBufferFull);
    EXPECT_EQ(doc.secondKind, SecondKind::None);
}

TEST_F(Reflection, ToWrlWithoutAZBlockMovesAllPatches) {
    hold({flatPatch(2, 2), flatPatch(2, 2, 1)});
    appendWrl(file("square.wrl", squareWrl));
    call("model.reflectToWrl");
    EXPECT_EQ(doc.patches, (PatchList{flatPatch(2, 2, 2), flatPatch(2, 2, 2)}));
}

TEST_F(Reflection, ToWrlOfAModelOfZonesGoesOntoTheOtherZonesAndLeavesTheReference) {
    hold({flatPatch(2, 2), flatPatch(2, 2, 3)});
    appendWrl(file("square.wrl", squareWrl));
    call("convert.toUnstructured");
    ASSERT_EQ(doc.feRegion.blocks.size(), 2U);
    addToBlock(0);
    call("model.reflectToWrl");
    EXPECT_EQ(doc.secondKind, SecondKind::Wrl);
    EXPECT_EQ(doc.referenceRegion.blocks.size(), 1U);
    EXPECT_EQ(block(), std::vector<std::int32_t>{0});
    // Two triangles make the square: the two nodes that they share move up, onto the other zone and not the reference.
    std::vector<double> heights;
    zVec<double> at;
    for (int node = 0; doc.feRegion.getNode(0, node, at.x, at.y, at.z) == 0; ++node) {
        heights.push_back(at.z);
    }
    EXPECT_THAT(heights, testing::UnorderedElementsAre(0, 0, 3, 3));
}

TEST_F(Reflection, ToDatMovesNothing) {
    holdPair(2);
    call("model.reflectToDat");
    EXPECT_EQ(doc.patches[0], flatPatch(3, 3));
    EXPECT_FALSE(doc.documentModified);
}

// ---- Reflection of zones --------------------------------------------------------------------------------------------

TEST_F(ZoneReflection, MovesTheNodesOfTheBlockOntoTheOtherZones) {
    holdZones({3});
    doc.feRegion.blocks.clear();
    doc.feRegion.blocks.push_back(
        triangleZone("own", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {0, 1, 2, 1, 3, 2}));
    doc.feRegion.blocks.push_back(triangleZone("target", {{-5, -5, 3}, {9, -5, 3}, {-5, 9, 3}}, {0, 1, 2}));
    addToBlock(0);
    doc.lineBuffer = {{9, 9, 9}};
    call("model.reflectToApt");
    EXPECT_EQ(node(0, 0), Vector(0, 0, 0));
    EXPECT_EQ(node(0, 1), Vector(1, 0, 3));
    EXPECT_EQ(doc.lineBuffer.size(), 1U);
    EXPECT_THAT(heard(), IsEmpty());
    call("patch.undo");
    EXPECT_EQ(node(0, 1), Vector(1, 0, 0));
}

// ---- Intersection ---------------------------------------------------------------------------------------------------

TEST_F(Intersection, CutsBothBodiesAlongTheJoint) {
    hold({wall({0.25, 1.25, 2.75}, {2, 1, -1, -2}), flatPatch(4, 4), flatPatch(2, 2, 50)});
    addToBlock(0);
    doc.intersectionTolerance = 0.001;
    intersect(before);
    EXPECT_THAT(heard(), Contains("dialog: CIntersection -> ok"));
    const Vector joint[] = {{0.25, 1.25, 0}, {1.25, 1.25, 0}, {2.75, 1.25, 0}};
    EXPECT_THAT(doc.interLine, testing::ElementsAreArray(joint));
    EXPECT_EQ(doc.beforeIntersection[0], Vector(0.25, 1.25, 1));
    EXPECT_EQ(doc.afterIntersection[0], Vector(0.25, 1.25, -1));
    // The wall: a section for each line, from its begin to the joint.
    EXPECT_THAT(countsOf(doc.patches[0]), ElementsAre(5, 5, 5));
    for (std::size_t line = 0; line < 3; ++line) {
        EXPECT_EQ(doc.patches[0][line].front().z, 2);
        EXPECT_LT(distance(doc.patches[0][line].back(), joint[line]), 1e-12);
    }
    // The plate: one section at y = 1.25 for all three, up to the first point of the joint.
    for (const PointList& section : doc.patches[1]) {
        EXPECT_EQ(countOf(section), 4);
        EXPECT_EQ(section.front().x, 0);
        EXPECT_LT(distance(section.back(), joint[0]), 1e-12);
    }
    EXPECT_FALSE(doc.patches[1].empty());
    EXPECT_THAT(doc.patches[2], IsEmpty());
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_EQ(doc.intersectionTolerance, 0.001);
    EXPECT_FALSE(doc.interPatches.empty());
    call("patch.undo");
    EXPECT_EQ(doc.patches[1], flatPatch(4, 4));
}

TEST_F(Intersection, KeepsTheOtherSidesWithAfter) {
    hold({wall({0.5}, {2, 1, -1, -2}), flatPatch(4, 4)});
    addToBlock(0);
    // One line becomes one section: too few to be re-spaced.
    intersect({{"outsidePoints", "4"}});
    EXPECT_THAT(heard(),
                Contains("message: The rest part of compartment is too small for rebreak. Procedure canceled"));
    EXPECT_THAT(doc.patches[0][0], ElementsAre(Vector(0.5, 1.25, 0), Vector(0.5, 1.25, -1), Vector(0.5, 1.25, -2)));
    EXPECT_EQ(doc.patches[1].size(), 1U);
    EXPECT_LT(distance(doc.patches[1][0].front(), {0.5, 1.25, 0}), 1e-12);
    EXPECT_EQ(doc.patches[1][0].back().x, 3);
}

TEST_F(Intersection, CancelledLeavesThePatches) {
    const PatchList model = {wall({0.25, 1.25}, {1, -1}), flatPatch(4, 4)};
    hold(model);
    addToBlock(0);
    call("model.intersection");
    EXPECT_EQ(doc.patches, model);
    EXPECT_THAT(heard(), ElementsAre("dialog: CIntersection -> cancel"));
    EXPECT_THAT(block(), ElementsAre(0));
    EXPECT_EQ(doc.interLine.size(), 2U);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_F(Intersection, TellsWhichLineWasNotFoundCountedFromOne) {
    hold({flatPatch(4, 4), wall({0.25, 1.25, 77}, {1, -1})});
    addToBlock(1);
    call("model.intersection");
    EXPECT_THAT(heard(), ElementsAre("message: Intersection with line 3 from patch 2 is not found",
                                     "message: Intersection impossible. Not all lines from zBlock intersected with "
                                     "body"));
    EXPECT_EQ(doc.interLine.size(), 2U);
    EXPECT_EQ(doc.beforeIntersection.size(), 2U);
    EXPECT_EQ(doc.patches[0], flatPatch(4, 4));
}

TEST_F(Intersection, TellsOfALineThatOnlyRepeatsAPoint) {
    hold({flatPatch(4, 4), wall({0.25}, {1, 1, 1})});
    addToBlock(1);
    call("model.intersection");
    EXPECT_THAT(heard(), ElementsAre("message: Intersection is impossible. Double point.",
                                     "message: Intersection impossible. Not all lines from zBlock intersected with "
                                     "body"));
}

TEST_F(Intersection, OfAZBlockWithoutLinesLeavesTheOtherPatches) {
    const PatchList model = {flatPatch(4, 4), Patch()};
    hold(model);
    addToBlock(1);
    call("model.intersection");
    EXPECT_THAT(heard(), ElementsAre("message: Intersection impossible. Not all lines from zBlock intersected with "
                                     "body"));
    EXPECT_EQ(doc.patches, model);
}

TEST_F(Intersection, OfAnEmptyZBlockStillShowsTheDialog) {
    hold({flatPatch(4, 4), flatPatch(2, 2, 1)});
    doc.interLine = {{1, 1, 1}};
    call("model.intersection");
    EXPECT_THAT(heard(), ElementsAre("dialog: CIntersection -> cancel"));
    EXPECT_THAT(doc.interLine, IsEmpty());
}

TEST_F(Intersection, OffersTheToleranceAndKeepsTheChoices) {
    hold({wall({0.25, 1.25}, {1, -1}), flatPatch(4, 4)});
    addToBlock(0);
    doc.intersectionTolerance = 0.002;
    std::string offered;
    ui.onDialog = [&offered](DialogForm& form) { offered = fieldText(*form.find("tolerance")); };
    intersect({{"insideSide", "1"}, {"outsideSide", "1"}, {"tolerance", "0.01"}});
    EXPECT_EQ(offered, "0.002");
    EXPECT_EQ(doc.intersectionTolerance, 0.01);
    EXPECT_EQ(doc.dialogs->intersection.insideSide, 1);
    EXPECT_EQ(doc.dialogs->intersection.outsideSide, 1);
}

TEST_F(Intersection, LeavesTheRegimes) {
    hold({wall({0.25, 1.25}, {1, -1}), flatPatch(4, 4)});
    addToBlock(0);
    doc.capture.holdBlock();
    capturePoint(0, 0, 1);
    intersect({});
    EXPECT_FALSE(doc.capture->patchCaptured || doc.capture->pointCaptured);
    EXPECT_EQ(doc.blockCount, 0);
}

TEST_F(Intersection, OfSectionsOfDifferentLengthsGivesAModel) {
    Patch ragged = wall({0.25, 1.25, 2.5}, {1, -1});
    ragged[1].pop_back();
    Patch plate = flatPatch(4, 4);
    plate[3].resize(2);
    hold({ragged, plate});
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    addToBlock(0);
    intersect({});
    EXPECT_EQ(doc.interLine.size(), 2U);
    EXPECT_EQ(doc.patches[0].size(), 2U);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(Intersection, OfWingAndBodyIsCleanJoint) {
    // The upper half of the example's wing, moved aft, through the middle of its body.
    open(std::filesystem::path(VELMORA_EXAMPLES) / "wing.apt");
    Patch wing = doc.patches.at(0);
    for (PointList& section : wing) {
        section.resize(31);
        for (Vector& p : section) {
            p.x += 5;
        }
    }
    open(std::filesystem::path(VELMORA_EXAMPLES) / "body.apt");
    const Patch middle = doc.patches.at(1);
    doc.patches = {middle, wing};
    addToBlock(1);
    forget();
    intersect({{"insidePoints", "25"}, {"outsidePoints", "33"}});
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    const Patch& body = doc.patches[0];
    ASSERT_EQ(body.size(), 31U);
    ASSERT_EQ(doc.patches[1].size(), 31U);
    for (std::size_t i = 0; i < 31; ++i) {
        const Vector& p = doc.interLine[i];
        // On the body: it is elliptical, 0.8 by 0.95, and its chords between 49 points are up to 0.3 percent inside.
        const double shape = p.z * p.z / 0.64 + p.y * p.y / 0.9025;
        EXPECT_LE(shape, 1 + 1e-12);
        EXPECT_GE(shape, 0.99);
        // On the wing: between the two points of its line that stand on either side.
        const Vector chord = doc.afterIntersection[i] - doc.beforeIntersection[i];
        EXPECT_LT(distance(p, doc.beforeIntersection[i]) + distance(p, doc.afterIntersection[i]),
                  std::sqrt(dot(chord, chord)) + 1e-12);
        EXPECT_LT(doc.beforeIntersection[i].z, p.z);
        // Both bodies begin at the joint and have the counts that were asked for; the rest is outside, or beyond. The
        // wing's lines come from the trailing edge to the nose, the body's sections from fore to aft.
        const PointList& across = body[30 - i];
        EXPECT_LT(distance(across.front(), p), 1e-9);
        EXPECT_LT(distance(doc.patches[1][i].front(), p), 1e-9);
        EXPECT_EQ(countOf(across), 33);
        EXPECT_EQ(countOf(doc.patches[1][i]), 25);
        EXPECT_LT(distance(doc.patches[1][i].back(), wing.back()[i]), 1e-12);
        EXPECT_NEAR(across.back().y, -0.95, 1e-9);
    }
}

/// Three lines that come down through one cell of a plate, at its places of `joint`; the second one bends before it
/// does.
class IntersectionOfOneCell : public Intersection, public testing::WithParamInterface<std::pair<int, int>> {
protected:
    const PointList joint = {{1.25, 1.25, 0}, {1.75, 1.75, 0}, {1.6, 1.1, 0}};

    Patch bentWall() const {
        Patch patch;
        for (const double z : {3, 2, 1, -1, -2}) {
            PointList section;
            for (const Vector& p : joint) {
                section.push_back({p.x, p.y, z});
            }
            patch.push_back(section);
        }
        // Made longer, each of these two chords would meet the plate too, at x = 2.25 and at x = 0.25.
        patch[0][1].x = 3.75;
        patch[1][1].x = 3.25;
        return patch;
    }

    /// Equal steps from one point to another.
    static PointList steps(const Vector& from, const Vector& to) { return {from, (from + to) * 0.5, to}; }

    PatchList expected(bool inBefore, bool outBefore) const {
        Patch wallLeft;
        for (const Vector& p : joint) {
            wallLeft.push_back(steps({p.x, p.y, inBefore ? 3.0 : 0.0}, {p.x, p.y, inBefore ? 0.0 : -2.0}));
        }
        if (inBefore) {
            // Half of the bent line's length lies on its second chord, behind the first.
            const double first = std::sqrt(1.25);
            const double f = ((first + 2.5) / 2 - first) / 2.5;
            wallLeft[1] = {{3.75, 1.75, 3}, {3.25 - 1.5 * f, 1.75, 2 - 2 * f}, joint[1]};
        }
        Patch plateLeft;
        for (const std::size_t i : {2, 0, 1}) {
            const Vector end = {outBefore ? 0.0 : 4.0, joint[i].y, 0};
            plateLeft.push_back(outBefore ? steps(end, joint[i]) : steps(joint[i], end));
        }
        return {wallLeft, plateLeft};
    }
};

TEST_P(IntersectionOfOneCell, KeepsTheSidesThatAreChosen) {
    const auto [inside, outside] = GetParam();
    hold({bentWall(), flatPatch(4, 5)});
    addToBlock(0);
    intersect({{"insideSide", std::to_string(inside)},
               {"insidePoints", "3"},
               {"outsideSide", std::to_string(outside)},
               {"outsidePoints", "3"}});
    EXPECT_THAT(heard(), ElementsAre("dialog: CIntersection -> ok", "status: For Help, press F1"));
    EXPECT_EQ(doc.interLine, joint);
    EXPECT_EQ(doc.beforeIntersection[1], Vector(1.75, 1.75, 1));
    EXPECT_EQ(doc.afterIntersection[1], Vector(1.75, 1.75, -1));
    const PatchList wanted = expected(inside == 1, outside == 1);
    ASSERT_EQ(doc.patches.size(), wanted.size());
    for (std::size_t k = 0; k < wanted.size(); ++k) {
        ASSERT_EQ(countsOf(doc.patches[k]), countsOf(wanted[k])) << k;
        for (std::size_t n = 0; n < wanted[k].size(); ++n) {
            for (std::size_t m = 0; m < wanted[k][n].size(); ++m) {
                EXPECT_LT(distance(doc.patches[k][n][m], wanted[k][n][m]), 1e-9) << k << n << m;
            }
        }
    }
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

INSTANTIATE_TEST_SUITE_P(AllFourSides, IntersectionOfOneCell,
                         testing::Values(std::pair(1, 1), std::pair(1, 2), std::pair(2, 1), std::pair(2, 2)));

TEST_F(Intersection, ShowsItsPiercingPointsAlsoWhenItIsCancelledOrRefused) {
    hold({wall({0.25, 1.25}, {1, -1}), flatPatch(4, 4)});
    addToBlock(0);
    call("model.intersection");
    EXPECT_THAT(viewCalls(), Contains("redraw"));
    hold({wall({0.25, 77}, {1, -1}), flatPatch(4, 4)});
    call("model.intersection");
    EXPECT_THAT(viewCalls(), Contains("redraw"));
}

} // namespace velmora::test
