#include <cmath>

#include "DialogValues.h"
#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Vec = zVec<double>;
using Fields = std::vector<std::pair<std::string, std::string>>;
using Counts = std::vector<std::int32_t>;

class SectionCommand : public StateTest {
protected:
    void run(const char* command, const Fields& fields) {
        ui.dialogs.push_back(fields);
        call(command);
    }

    void expectSnapshotOf(const PatchList& before) {
        EXPECT_EQ(doc.undoPatches.copy(), before);
        EXPECT_TRUE(doc.patchUndoReady && doc.documentModified);
        EXPECT_FALSE(doc.rebuildOnUndo);
    }

    std::vector<double> numbers(std::size_t section) { return coordinates(doc.patches.at(0).at(section)); }

    /// A closed section between two others; its points have the numbers 0, 1, 2, 3, 0.
    void holdLoop() {
        Patch patch = flatPatch(3, 5);
        patch[1] = {{0, 0, 0}, {1, 5, 0}, {2, 6, 0}, {3, 5, 0}, {0, 0, 0}};
        hold({patch});
    }

    /// The same loop as the middle line of three.
    static Patch transposedLoop() {
        Patch patch = flatPatch(5, 3);
        const PointList loop = {{0, 0, 0}, {1, 5, 0}, {2, 6, 0}, {3, 5, 0}, {0, 0, 0}};
        for (std::size_t n = 0; n < loop.size(); ++n) {
            patch[n][1] = loop[n];
        }
        return patch;
    }
};

using CurveTransformation = SectionCommand;
using FirstPoint = SectionCommand;
using Halving = SectionCommand;
using Prescribing = SectionCommand;
using DeletingCurves = SectionCommand;
using DuplicatingCurves = SectionCommand;
using Weeding = SectionCommand;
using Cylinder = SectionCommand;

} // namespace

// ---- Move, Scaling, Flip, Rotation ----------------------------------------------------------------------------------

TEST_F(CurveTransformation, MovesTheSectionAlone) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    doc.rebuildOnUndo = true;
    run("line.move", {{"deltaZ", "4"}});
    EXPECT_EQ(doc.patches[0][1], (PointList{{0, 1, 4}, {1, 1, 4}, {2, 1, 4}}));
    EXPECT_EQ(doc.patches[0][0], before[0][0]);
    EXPECT_EQ(doc.patches[0][2], before[0][2]);
    expectSnapshotOf(before);
    EXPECT_THAT(heard(), ElementsAre("dialog: CBlockMove -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section"));
    EXPECT_EQ(doc.capture->capturedSection, 1);
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_THAT(viewCalls(), Not(Contains("bounds")));
}

TEST_F(CurveTransformation, MovesALineAndKeepsItCaptured) {
    hold({flatPatch(3, 4), flatPatch(2, 2)});
    const PatchList before = doc.patches;
    captureLine(0, 2);
    capturePoint(0, 1, 2);
    run("line.move", {{"deltaZ", "4"}});
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(doc.patches[0][n][2], (Vec{2, static_cast<double>(n), 4}));
        EXPECT_EQ(doc.patches[0][n][1], before[0][n][1]);
    }
    EXPECT_EQ(doc.patches[1], before[1]);
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 2);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_EQ(doc.capture->capturedPointSection, 1);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{2, 1, 4}));
    expectSnapshotOf(before);
}

TEST_F(CurveTransformation, OfALineOutsideTheZBlockWorksOnTheSectionOfThatNumber) {
    hold({flatPatch(3, 4), flatPatch(2, 2)});
    const PatchList before = doc.patches;
    addToBlock(1);
    captureLine(0, 2);
    run("line.move", {{"deltaZ", "4"}});
    EXPECT_EQ(doc.patches[0][0], before[0][0]);
    EXPECT_EQ(doc.patches[0][1], before[0][1]);
    EXPECT_EQ(doc.patches[0][2], (PointList{{0, 2, 4}, {1, 2, 4}, {2, 2, 4}, {3, 2, 4}}));
    EXPECT_EQ(doc.patches[1], before[1]);
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 2);
    // There is no section with the number of line 3: nothing but the snapshot.
    captureLine(0, 3);
    const PatchList after = doc.patches;
    run("line.move", {{"deltaZ", "4"}});
    EXPECT_EQ(doc.patches, after);
    EXPECT_TRUE(doc.capture->lineCaptured);
}

TEST_F(CurveTransformation, OfALineInTheZBlockWorksOnTheLine) {
    hold({flatPatch(3, 4), flatPatch(2, 2)});
    addToBlock(0);
    captureLine(0, 2);
    run("line.move", {{"deltaZ", "4"}});
    EXPECT_EQ(doc.patches[0][0], (PointList{{0, 0, 0}, {1, 0, 0}, {2, 0, 4}, {3, 0, 0}}));
}

TEST_F(CurveTransformation, ScalesASectionAndALine) {
    hold({flatPatch(2, 2)});
    captureSection(0, 1);
    run("line.scaling", {{"yCenter", "2"}, {"scale", "3"}});
    EXPECT_EQ(doc.patches[0][1], (PointList{{0, -1, 0}, {3, -1, 0}}));
    arranged(doc).sectionCaptured = false;
    captureLine(0, 0);
    run("line.scaling", {{"xCenter", "1"}, {"yCenter", "0"}, {"scale", "2"}});
    EXPECT_EQ(doc.patches[0][0][0], (Vec{-1, 0, 0}));
    EXPECT_EQ(doc.patches[0][1][0], (Vec{-1, -2, 0}));
    EXPECT_EQ(doc.patches[0][1][1], (Vec{3, -1, 0}));
}

TEST_F(CurveTransformation, FlipReversesNothing) {
    hold({flatPatch(2, 3)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    run("line.flip", {{"xPlane", "5"}});
    EXPECT_EQ(numbers(1), (std::vector<double>{10, 9, 8}));
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{8, 1, 0}));
}

TEST_F(CurveTransformation, RotatesOrSaysThatThereIsNoAxis) {
    hold({flatPatch(3, 3)});
    captureSection(0, 2);
    run("line.rotation", {{"x1", "0.5"}, {"x2", "0.75"}, {"angle", "90"}});
    for (const Vec& point : doc.patches[0][2]) {
        EXPECT_NEAR(point.y, 0, 2e-6);
        EXPECT_NEAR(point.z, 2, 2e-6);
    }
    heard();
    const PatchList before = doc.patches;
    const PatchList first = doc.undoPatches.copy();
    run("line.rotation", {{"x2", "0.5"}});
    EXPECT_EQ(doc.patches, before);
    EXPECT_THAT(heard(), ElementsAre("dialog: CBlockRotate -> ok", "message: Axis is absent. Rotation is impossible"));
    expectSnapshotOf(first); // Undo is still of the rotation that was done
}

TEST_F(CurveTransformation, WithoutAnAxisALineStaysCaptured) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureLine(0, 1);
    run("line.rotation", {{"x2", "0"}});
    EXPECT_EQ(doc.patches, before);
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptured);
}

TEST_F(CurveTransformation, SharesItsDialogsWithTheModelsCommands) {
    hold({flatPatch(2, 3)});
    captureSection(0, 1);
    run("line.rotation", {{"angle", "90"}}); // (1, 1, 0) stands over the axis's second point
    EXPECT_EQ(doc.dialogs->rotate.x2, 1.5);
    run("model.move", {{"deltaX", "3"}});
    run("line.move", {});
    EXPECT_EQ(doc.dialogs->move.deltaX, 3);
}

TEST_F(CurveTransformation, CancelledTakesNoSnapshot) {
    hold({flatPatch(3, 3)});
    captureSection(0, 1);
    for (const auto command : {"line.move", "line.scaling", "line.flip", "line.rotation", "line.symmetric",
                               "line.prescribe", "line.duplicate"}) {
        call(command);
    }
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
}

TEST_F(SectionCommand, OnACurveThatIsNotThereDoesNothing) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    for (const auto& [patch, curve] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 3}}) {
        for (const bool section : {true, false}) {
            arranged(doc).sectionCaptured = arranged(doc).lineCaptured = false;
            section ? captureSection(patch, curve) : captureLine(patch, curve);
            for (const auto command :
                 {"line.move", "line.scaling", "line.flip", "line.rotation", "line.symmetric", "line.firstPoint",
                  "line.knife", "line.prescribe", "line.delete", "line.duplicate", "line.weeding", "line.cylinder"}) {
                call(command);
            }
        }
    }
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(SectionCommand, OnALineOfAModelThatIsNoGridDoesNothing) {
    hold({flatPatch(3, 3), patchOf({2, 3})});
    const PatchList before = doc.patches;
    captureLine(0, 1);
    for (const auto command : {"line.move", "line.firstPoint", "line.weeding"}) {
        call(command);
    }
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_THAT(heard(), IsEmpty());
}

// ---- Symmetric ------------------------------------------------------------------------------------------------------

TEST_F(SectionCommand, SymmetricDoublesTheSectionAndMakesLinesOfTheGrid) {
    hold({flatPatch(3, 10)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    run("line.symmetric", {{"plane", "3"}, {"zPlane", "1"}});
    ASSERT_EQ(countsOf(doc.patches[0]), (Counts{10, 20, 10}));
    EXPECT_EQ(doc.patches[0][1][9], (Vec{9, 1, 0}));
    EXPECT_EQ(doc.patches[0][1][10], (Vec{9, 1, 2}));
    EXPECT_EQ(doc.patches[0][1][19], (Vec{0, 1, 2}));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_THAT(heard(), ElementsAre("dialog: CSymmetricBlock -> ok", "message: APT format may be violated",
                                     "title: wing.skl", "status: Save writes " + (folder / "wing.skl").string()));
    expectSnapshotOf(before);
}

TEST_F(SectionCommand, SymmetricOfALineTakesTheSnapshotAlone) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureLine(0, 1);
    run("line.symmetric", {});
    EXPECT_EQ(doc.patches, before);
    expectSnapshotOf(before);
    EXPECT_THAT(heard(), ElementsAre("dialog: CSymmetricBlock -> ok"));
}

// ---- First point ----------------------------------------------------------------------------------------------------

TEST_F(FirstPoint, WithoutAPointOffersTheSwitchAlone) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    Lines live;
    ui.onDialog = [&live](DialogForm& form) {
        for (const DialogField& field : form.fields) {
            if (field.on && !field.readOnly) {
                live.push_back(field.key);
            }
        }
        EXPECT_EQ(form.find("kind")->choiceOn, (std::vector<bool>{true, false}));
        EXPECT_TRUE(form.okOn);
    };
    run("line.firstPoint", {});
    EXPECT_THAT(live, ElementsAre("kind", "makeLoop"));
    EXPECT_EQ(numbers(1), (std::vector<double>{4, 3, 2, 1, 0}));
    EXPECT_EQ(doc.dialogs->firstPoint.kind, 1);
    EXPECT_THAT(heard(), ElementsAre("dialog: CFirstPoint -> ok"));
}

TEST_F(FirstPoint, AtAnEndOfTheSectionIsNotInside) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    for (const int point : {0, 4}) {
        capturePoint(0, 1, point);
        run("line.firstPoint", {});
        EXPECT_FALSE(doc.dialogs->firstPoint.pointInside);
        EXPECT_EQ(doc.dialogs->firstPoint.kind, 1);
    }
}

TEST_F(FirstPoint, OfALoopBeginsAtTheCapturedPointUpwards) {
    holdLoop();
    const PatchList before = doc.patches;
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    run("line.firstPoint", {});
    EXPECT_TRUE(doc.dialogs->firstPoint.closed && doc.dialogs->firstPoint.pointInside);
    EXPECT_EQ(numbers(1), (std::vector<double>{2, 3, 0, 1, 2}));
    expectSnapshotOf(before);
    EXPECT_EQ(doc.capture->savedPatch, 0);
    EXPECT_EQ(doc.capture->savedPointSection, 1);
    EXPECT_EQ(doc.capture->savedPoint, 2);
    // The number stays and names another point.
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{0, 0, 0}));
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CFirstPoint -> ok",
                            "status: Captured point: (Patch K=1, Section N=2, Point M=3) X=0.000000, Y=0.000000, "
                            "Z=0.000000 // Press right button to continue "));
}

TEST_F(FirstPoint, OfALoopBeginsAtTheCapturedPointDownwards) {
    holdLoop();
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    run("line.firstPoint", {{"sortKind", "2"}});
    EXPECT_EQ(numbers(1), (std::vector<double>{2, 1, 0, 3, 2}));
    EXPECT_EQ(doc.patches[0][1].size(), 5U);
}

TEST_F(FirstPoint, OfAnOpenSectionNeedsMakeLoop) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    const PatchList before = doc.patches;
    ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(form.find("kind")->choiceOn, (std::vector<bool>{false, true}));
        EXPECT_FALSE(form.okOn);
        EXPECT_FALSE(form.find("sortKind")->on);
        EXPECT_TRUE(form.find("makeLoop")->on);
    };
    run("line.firstPoint", {});
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    run("line.firstPoint", {{"makeLoop", "1"}, {"sortKind", "1"}});
    // Point 4 takes the place of point 0, then 2 3 4 1 2.
    EXPECT_EQ(numbers(1), (std::vector<double>{2, 3, 0, 1, 2}));
}

TEST_F(FirstPoint, MakesALoopOfASectionThatIsTurnedRound) {
    hold({flatPatch(3, 5)});
    captureSection(0, 1);
    run("line.firstPoint", {{"makeLoop", "1"}});
    EXPECT_EQ(numbers(1), (std::vector<double>{0, 3, 2, 1, 0}));
}

TEST_F(FirstPoint, OfAClosedSectionHasMakeLoopOff) {
    holdLoop();
    captureSection(0, 1);
    ui.onDialog = [](DialogForm& form) { EXPECT_FALSE(form.find("makeLoop")->on); };
    call("line.firstPoint");
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
}

TEST_F(FirstPoint, WorksOnALineWithThePointsNumberAlongIt) {
    hold({transposedLoop()});
    captureLine(0, 1);
    capturePoint(0, 2, 1);
    run("line.firstPoint", {});
    std::vector<double> line;
    for (const PointList& section : doc.patches[0]) {
        line.push_back(section[1].x);
    }
    EXPECT_EQ(line, (std::vector<double>{2, 3, 0, 1, 2}));
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_EQ(doc.capture->capturedPointSection, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.capture->capturedPointPos, (Vec{0, 0, 0}));
}

// ---- Knife ----------------------------------------------------------------------------------------------------------

TEST_F(Halving, KeepsTheSideThatDoesNotGoAway) {
    const auto kept = [this](int count, const char* choice) {
        hold({patchOf({count, 9})});
        captureSection(0, 0);
        run("line.knife", {{"choice", choice}});
        return numbers(0);
    };
    using Points = std::vector<double>;
    EXPECT_EQ(kept(7, "2"), (Points{0, 1, 2, 3}));
    EXPECT_EQ(kept(7, "1"), (Points{3, 4, 5, 6}));
    EXPECT_EQ(kept(8, "2"), (Points{0, 1, 2, 3}));
    EXPECT_EQ(kept(8, "1"), (Points{4, 5, 6, 7}));
}

TEST_F(Halving, MakesLinesOfAGridAndIsUndone) {
    hold({flatPatch(3, 7)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    run("line.knife", {{"choice", "2"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (Counts{7, 4, 7}));
    EXPECT_THAT(heard(), ElementsAre("dialog: CBeforeAfter -> ok", "title: wing.skl",
                                     "status: Save writes " + (folder / "wing.skl").string()));
    expectSnapshotOf(before);
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(Halving, CancelledTakesNoSnapshot) {
    hold({flatPatch(3, 7)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    call("line.knife");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
}

// ---- Prescribe ------------------------------------------------------------------------------------------------------

TEST_F(Prescribing, SetsTheTickedCoordinatesOfASection) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    run("line.prescribe", {{"useY", "1"}, {"y", "7"}, {"useZ", "1"}});
    EXPECT_EQ(doc.patches[0][1], (PointList{{0, 7, 0}, {1, 7, 0}, {2, 7, 0}}));
    expectSnapshotOf(before);
    EXPECT_THAT(heard(), ElementsAre("dialog: CPrescribe -> ok"));
}

TEST_F(Prescribing, SetsALineWhateverTheZBlockHolds) {
    hold({flatPatch(3, 3), flatPatch(2, 2)});
    addToBlock(1);
    captureLine(0, 1);
    run("line.prescribe", {{"useX", "1"}, {"x", "-4"}});
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(numbers(n), (std::vector<double>{0, -4, 2}));
    }
}

TEST_F(Prescribing, OfNothingTickedKeepsThePoints) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    run("line.prescribe", {});
    EXPECT_EQ(doc.patches, before);
    EXPECT_TRUE(doc.patchUndoReady);
}

// ---- Delete ---------------------------------------------------------------------------------------------------------

TEST_F(DeletingCurves, WalksThroughThePatch) {
    hold({flatPatch(4, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 2);
    call("line.delete");
    EXPECT_EQ(doc.patches[0][2], before[0][3]);
    EXPECT_EQ(doc.capture->capturedSection, 2);
    expectSnapshotOf(before);
    call("line.delete");
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_EQ(countsOf(doc.patches[0]), (Counts{3, 3}));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(DeletingCurves, LeavesAGridTwoSections) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 0);
    call("line.delete");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(heard(), ElementsAre("message: Procedure canceled. Number of section must not be less than 2"));
}

TEST_F(DeletingCurves, OfThePatchsLastSectionRemovesThePatchAndRenumbersTheZBlock) {
    hold({patchOf({3, 4}), patchOf({5}), patchOf({2}), patchOf({7})});
    for (const int patch : {3, 1, 0, 2}) {
        addToBlock(patch);
    }
    captureSection(1, 0);
    call("line.delete");
    ASSERT_EQ(doc.patches.size(), 3U);
    EXPECT_EQ(countsOf(doc.patches[1]), (Counts{2}));
    EXPECT_EQ(block(), (Counts{2, 0, 1}));
    EXPECT_EQ(doc.blockList[3], -1);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
}

TEST_F(DeletingCurves, OfTheLastSectionOfTheLastPatchEmptiesTheDocument) {
    hold({patchOf({3})});
    const PatchList before = doc.patches;
    doc.secondKind = SecondKind::Wrl;
    doc.capture.holdBlock();
    addToBlock(0);
    captureSection(0, 0);
    call("line.delete");
    EXPECT_THAT(doc.patches, IsEmpty());
    EXPECT_EQ(kindsOf(doc), "nonnonnon");
    EXPECT_FALSE(doc.capture->sectionCaptured || doc.capture->patchCaptured);
    EXPECT_THAT(block(), IsEmpty());
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

TEST_F(DeletingCurves, ThatMakesLinesEqualMakesAGridOfThem) {
    hold({patchOf({3, 3, 4})});
    captureSection(0, 2);
    call("line.delete");
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_THAT(heard(), ElementsAre("title: wing.apt", "status: Save writes " + (folder / "wing.apt").string()));
}

TEST_F(DeletingCurves, TakesTheLinesPointOutOfEachSection) {
    hold({flatPatch(3, 4)});
    captureLine(0, 1);
    call("line.delete");
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(numbers(n), (std::vector<double>{0, 2, 3}));
    }
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
    doc.capture.renumberLine(2);
    call("line.delete");
    EXPECT_EQ(doc.capture->capturedLine, 1);
}

TEST_F(DeletingCurves, LeavesTwoLines) {
    hold({flatPatch(3, 2)});
    const PatchList before = doc.patches;
    captureLine(0, 1);
    call("line.delete");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.capture->lineCaptured);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(heard(), ElementsAre("message: Procedure canceled. Number of lines must not be less than 2"));
}

// ---- Duplicate ------------------------------------------------------------------------------------------------------

TEST_F(DuplicatingCurves, PutsCopiesOfTheSectionBehindIt) {
    hold({flatPatch(3, 2)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    run("line.duplicate", {{"duplicateCount", "3"}});
    ASSERT_EQ(doc.patches[0].size(), 5U);
    EXPECT_EQ(doc.patches[0][1], before[0][1]);
    EXPECT_EQ(doc.patches[0][2], before[0][1]);
    EXPECT_EQ(doc.patches[0][3], before[0][1]);
    EXPECT_EQ(doc.patches[0][4], before[0][2]);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    expectSnapshotOf(before);
}

TEST_F(DuplicatingCurves, PutsCopiesOfTheLinesPointBehindItInEachSection) {
    hold({flatPatch(3, 3)});
    captureLine(0, 1);
    run("line.duplicate", {{"duplicateCount", "2"}});
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(numbers(n), (std::vector<double>{0, 1, 1, 2}));
    }
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(DuplicatingCurves, OnceDoesNothingAndTakesNoSnapshot) {
    hold({flatPatch(3, 3)});
    captureSection(0, 1);
    run("line.duplicate", {{"duplicateCount", "1"}});
    EXPECT_EQ(doc.patches[0].size(), 3U);
    EXPECT_FALSE(doc.patchUndoReady);
}

// ---- Weeding --------------------------------------------------------------------------------------------------------

TEST_F(Weeding, TakesEverySecondPointOfEverySection) {
    hold({flatPatch(2, 7), flatPatch(3, 8)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    call("line.weeding");
    EXPECT_EQ(numbers(0), (std::vector<double>{0, 2, 4, 6}));
    EXPECT_EQ(coordinates(doc.patches[1][2]), (std::vector<double>{0, 2, 4, 7}));
    EXPECT_EQ(doc.patches[1].size(), 3U);
    expectSnapshotOf(before);
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Weeding, WithALineTakesEverySecondSection) {
    hold({flatPatch(7, 3)});
    captureLine(0, 1);
    call("line.weeding");
    EXPECT_EQ(countsOf(doc.patches[0]), (Counts{3, 3, 3, 3}));
    EXPECT_EQ(doc.patches[0][3][0].y, 6);
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
}

TEST_F(Weeding, TakesTheZBlockAlone) {
    hold({flatPatch(2, 5), flatPatch(2, 5)});
    addToBlock(1);
    captureSection(0, 1);
    call("line.weeding");
    EXPECT_EQ(countsOf(doc.patches[0]), (Counts{5, 5}));
    EXPECT_EQ(countsOf(doc.patches[1]), (Counts{3, 3}));
}

TEST_F(Weeding, LeavesThePointRegime) {
    hold({flatPatch(2, 5)});
    captureSection(0, 1);
    capturePoint(0, 1, 3);
    call("line.weeding");
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(Weeding, OfTwoSectionsLeavesTheLastWhichIsNoGrid) {
    hold({flatPatch(2, 3)});
    captureLine(0, 1);
    call("line.weeding");
    ASSERT_EQ(doc.patches[0].size(), 1U);
    EXPECT_EQ(doc.patches[0][0][0].y, 1);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

// ---- Cylinder -------------------------------------------------------------------------------------------------------

TEST_F(Cylinder, ReplacesTheModelByABodyOfRevolution) {
    Patch patch = flatPatch(2, 2);
    patch[1] = {{1, 3, 4}, {2, 0, 2}};
    hold({patch, flatPatch(2, 2)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    ui.answers = {true};
    call("line.cylinder");
    ASSERT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(countsOf(doc.patches[0]), (Counts{73, 73}));
    const double start = -90 * 0.0174533;
    EXPECT_EQ(doc.patches[0][0][0], (Vec{1, 5 * std::sin(start), 5 * std::cos(start)}));
    EXPECT_EQ(doc.patches[0][1][18], (Vec{2, 0, 2}));
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "Untitled.apt");
    EXPECT_EQ(doc.boxMax.x, 2);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    expectSnapshotOf(before);
    EXPECT_THAT(heard(),
                ElementsAre("question: Current geometry will be removed. Are you sure -> yes", "title: Untitled.apt"));
    EXPECT_THAT(viewCalls(), Contains("bounds"));
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Cylinder, AnsweredNoChangesNothingAndTakesNoSnapshot) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    call("line.cylinder");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(Cylinder, TakesItsProfileBeforeThePatchRegimeIsLeft) {
    hold({flatPatch(2, 2), flatPatch(2, 4, 3)});
    doc.capture.holdBlock();
    addToBlock(0);
    captureSection(1, 1);
    capturePoint(1, 1, 1);
    ui.answers = {true};
    call("line.cylinder");
    EXPECT_EQ(doc.patches.at(0).size(), 4U);
    EXPECT_THAT(block(), IsEmpty());
    EXPECT_EQ(doc.capture->capturedPatch, -1);
    EXPECT_FALSE(doc.capture->pointRegimeActive() || doc.capture->curveRegimeActive());
}

TEST_F(Cylinder, TakesALineAsItsProfile) {
    hold({flatPatch(3, 2)});
    captureLine(0, 1);
    ui.answers = {true};
    call("line.cylinder");
    EXPECT_EQ(countsOf(doc.patches[0]), (Counts{73, 73, 73}));
    EXPECT_EQ(doc.patches[0][2][5].x, 1);
}

// ---- The captured point goes with its curve -------------------------------------------------------------------------

TEST_F(DeletingCurves, TheCapturedPointIsThatOfTheNextSection) {
    hold({flatPatch(4, 3)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    call("line.delete");
    EXPECT_EQ(doc.capture->capturedPointPos, Vec(2, 2, 0));
    EXPECT_EQ(doc.capture->pickedPoint, Vec(2, 2, 0));
}

TEST_F(DeletingCurves, TheCapturedPointStaysInsideWhenTheLastLineGoes) {
    hold({flatPatch(3, 5)});
    captureLine(0, 4);
    capturePoint(0, 1, 4);
    call("line.delete");
    EXPECT_EQ(doc.capture->capturedLine, 3);
    EXPECT_EQ(doc.capture->capturedPoint, 3);
    EXPECT_EQ(doc.capture->capturedPointPos, Vec(3, 1, 0));
}

TEST_F(Halving, KeepsTheCapturedPointInside) {
    hold({flatPatch(2, 6)});
    captureSection(0, 0);
    capturePoint(0, 0, 5);
    run("line.knife", {{"choice", "2"}});
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, Vec(2, 0, 0));
}

TEST_F(FirstPoint, OfALineSavesTheAddressInTheModelAndNamesTheLine) {
    hold({transposedLoop()});
    captureLine(0, 1);
    capturePoint(0, 2, 1);
    run("line.firstPoint", {{"sortKind", "1"}});
    EXPECT_EQ(doc.capture->savedPointSection, 2);
    EXPECT_EQ(doc.capture->savedPoint, 1);
    EXPECT_THAT(doc.status, testing::StartsWith("Captured point: (Patch K=1, Line N=2, Point M=3)"));
}

} // namespace velmora::test
