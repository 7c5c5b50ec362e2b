#include "DialogValues.h"
#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;
using Fields = std::vector<std::pair<std::string, std::string>>;

/// A flat patch whose inner points stand out of the plane.
Patch wrinkled(int sections, int points) {
    Patch patch = flatPatch(sections, points);
    for (std::size_t n = 1; n + 1 < patch.size(); ++n) {
        for (std::size_t m = 1; m + 1 < patch[n].size(); ++m) {
            patch[n][m].z = (n + m) % 2 == 0 ? 0.4 : -0.4;
        }
    }
    return patch;
}

bool isFlat(const Patch& patch) {
    for (const PointList& section : patch) {
        for (const zVec<double>& p : section) {
            if (std::abs(p.z) > 1e-12) {
                return false;
            }
        }
    }
    return true;
}

class CoonsRebuild : public StateTest {};

class Smooth : public StateTest {
protected:
    void smooth(const Fields& fields) {
        ui.dialogs.push_back(fields);
        call("model.smooth");
    }
};

class Interpolate : public StateTest {
protected:
    void interpolate(const Fields& fields) {
        ui.dialogs.push_back(fields);
        call("line.interpolate");
    }
    void fitTo(const zVec<double>& target) {
        doc.pointClipboard = target;
        doc.pointClipboardFull = true;
        interpolate({{"fitToBuffer", "1"}});
    }
};

class CorrectLine : public StateTest {
protected:
    /// A line, or a section, with a free point beside it.
    void holdFree(std::int32_t section, std::int32_t point) {
        arranged(doc).freePointHeld = true;
        doc.capture.showPoint();
        doc.capture.renumberPoint(section, point);
        doc.capture.placePoint(*doc.pointAt(doc.capture->capturedPatch, section, point));
    }
    void correct(const Fields& fields) {
        ui.dialogs.push_back(fields);
        call("line.correct");
    }
};

const Fields threeAndThree = {{"linesBefore", "3"}, {"linesAfter", "3"}, {"power", "1"}};

} // namespace

// ---- Coons ----------------------------------------------------------------------------------------------------------

TEST_F(CoonsRebuild, TakesThePatchesOfTheZBlockOnly) {
    hold({wrinkled(5, 5), wrinkled(4, 6), wrinkled(5, 4)});
    addToBlock(2);
    addToBlock(0);
    const PatchList before = doc.patches;
    doc.rebuildOnUndo = true;
    call("model.coonsRebuild");
    EXPECT_TRUE(isFlat(doc.patches[0]));
    EXPECT_EQ(doc.patches[1], before[1]);
    EXPECT_TRUE(isFlat(doc.patches[2]));
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady && doc.documentModified);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(block(), ElementsAre(2, 0));
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), ElementsAre("redraw")); // and no new box
}

TEST_F(CoonsRebuild, WithoutAZBlockTakesTheWholeModel) {
    hold({wrinkled(5, 5), wrinkled(4, 6)});
    call("model.coonsRebuild");
    EXPECT_TRUE(isFlat(doc.patches[0]) && isFlat(doc.patches[1]));
}

TEST_F(CoonsRebuild, PassesOverEntriesThatNameNoPatch) {
    hold({wrinkled(5, 5), wrinkled(4, 6)});
    addToBlock(-1);
    addToBlock(9);
    addToBlock(1);
    call("model.coonsRebuild");
    EXPECT_FALSE(isFlat(doc.patches[0]));
    EXPECT_TRUE(isFlat(doc.patches[1]));
}

TEST_F(CoonsRebuild, TakesTheCapturedPointAlong) {
    for (const bool free : {false, true}) {
        hold({wrinkled(5, 5)});
        capturePoint(0, 2, 2);
        arranged(doc).pointCaptured = !free;
        arranged(doc).freePointHeld = free;
        call("model.coonsRebuild"); // the middle comes down into the plane of the borders
        EXPECT_NEAR(doc.capture->capturedPointPos.z, 0.0, 1e-12) << free;
        EXPECT_NEAR(doc.capture->pickedPoint.z, 0.0, 1e-12) << free;
    }
}

// ---- Smooth ---------------------------------------------------------------------------------------------------------

TEST_F(Smooth, OfSectionsMovesTheirPointsAndLeavesTheBorders) {
    hold({flatPatch(5, 5)});
    doc.patches[0][2][2].x = 2.4;
    const PatchList before = doc.patches;
    smooth({});
    EXPECT_THAT(coordinates(doc.patches[0][2]), Pointwise(DoubleNear(1e-9), {0.0, 1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(doc.patches[0][0], before[0][0]);
    EXPECT_EQ(doc.patches[0][4], before[0][4]);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(heard(), ElementsAre("dialog: CSmooth -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(Smooth, OfLinesMovesPointsAlongTheLines) {
    hold({flatPatch(5, 5)});
    doc.patches[0][2][2].y = 2.4;
    smooth({{"regime", "2"}});
    EXPECT_NEAR(doc.patches[0][2][2].y, 2.0, 1e-9);
}

TEST_F(Smooth, RegimesThreeAndFourAreTheTwoOrders) {
    Patch patch = wrinkled(5, 6);
    const auto result = [&](const Fields& first, const Fields& second) {
        hold({patch});
        smooth(first);
        if (!second.empty()) {
            smooth(second);
        }
        return doc.patches;
    };
    const Fields sections = {{"regime", "1"}};
    const Fields lines = {{"regime", "2"}};
    const PatchList sectionsThenLines = result(sections, lines);
    const PatchList linesThenSections = result(lines, sections);
    EXPECT_EQ(result({{"regime", "3"}}, {}), sectionsThenLines);
    EXPECT_EQ(result({{"regime", "4"}}, {}), linesThenSections);
    EXPECT_NE(sectionsThenLines, linesThenSections);
}

TEST_F(Smooth, CoincidentPointsTurnItToLinearForWhatFollowsAndTheNextCall) {
    const Patch curved = wrinkled(5, 6);
    Patch doubled = flatPatch(5, 6);
    doubled[1][2] = doubled[1][1];
    hold({curved, doubled, curved});
    smooth({});
    EXPECT_NE(doc.patches[0], doc.patches[2]); // by spline, and along the chords
    EXPECT_EQ(doc.dialogs->smooth.function, 2);
    const Patch alongChords = doc.patches[2];
    hold({curved});
    smooth({});
    EXPECT_EQ(doc.patches[0], alongChords);
}

TEST_F(Smooth, CancelledChangesNothing) {
    hold({wrinkled(5, 5)});
    const PatchList before = doc.patches;
    call("model.smooth");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
}

// ---- Interpolate ----------------------------------------------------------------------------------------------------

TEST_F(Interpolate, MovesTheCapturedSection) {
    hold({flatPatch(4, 3)});
    captureSection(0, 1);
    const PatchList before = doc.patches;
    doc.rebuildOnUndo = true;
    interpolate({{"coefficient", "0.5"}});
    EXPECT_THAT(coordinates(doc.patches[0][1], &zVec<double>::y), Each(1.5));
    EXPECT_EQ(doc.patches[0][2], before[0][2]);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_EQ(doc.capture->capturedSection, 1);
    EXPECT_THAT(heard(), ElementsAre("dialog: CInterpolate -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section"));
}

TEST_F(Interpolate, MovesTheCapturedLineAmongLines) {
    hold({flatPatch(3, 4)});
    captureLine(0, 1);
    interpolate({{"coefficient", "-1"}});
    for (const PointList& section : doc.patches[0]) {
        EXPECT_THAT(coordinates(section), ElementsAre(0, 0, 2, 3));
    }
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set line"));
}

// Exchanging sections and lines leaves the patches outside of the zBlock as they are and exchanges the capture all the
// same: the number of the line is that of a section then. Wanted.
TEST_F(Interpolate, OfALineOutsideTheZBlockMovesTheSectionOfItsNumber) {
    hold({flatPatch(4, 4), flatPatch(4, 4, 1)});
    addToBlock(1);
    captureLine(0, 1);
    interpolate({{"coefficient", "0.5"}});
    EXPECT_THAT(coordinates(doc.patches[0][1], &zVec<double>::y), Each(1.5));
    EXPECT_THAT(coordinates(doc.patches[0][1]), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(doc.patches[1], flatPatch(4, 4, 1));
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
}

TEST_F(Interpolate, OfThreeLinesWorksWhereThreeSectionsAreMissing) {
    hold({flatPatch(2, 3)});
    captureLine(0, 2);
    interpolate({{"coefficient", "0.5"}});
    EXPECT_THAT(coordinates(doc.patches[0][0]), ElementsAre(0, 1, 2.5));
}

TEST_F(Interpolate, FitsToThePointInTheClipboard) {
    hold({flatPatch(4, 3)});
    captureSection(0, 1);
    fitTo({1, 1.25, 0});
    EXPECT_THAT(coordinates(doc.patches[0][1], &zVec<double>::y), Each(1.25));
}

TEST_F(Interpolate, OffersTheFitOnlyWithAPointInTheClipboard) {
    hold({flatPatch(4, 3)});
    captureSection(0, 1);
    doc.dialogs->interpolate.fitToBuffer = true;
    doc.lineBufferFull = true; // the line buffer does not count
    interpolate({{"fitToBuffer", "1"}});
    EXPECT_EQ(heard()[0], "refused: fitToBuffer=1: The field is off.");
    EXPECT_FALSE(doc.dialogs->interpolate.fitToBuffer);
}

TEST_F(Interpolate, WithFewerThanThreeSectionsSaysSoAfterTheSnapshot) {
    hold({flatPatch(2, 5)});
    captureSection(0, 0);
    interpolate({{"coefficient", "0.5"}});
    EXPECT_THAT(heard(), ElementsAre("dialog: CInterpolate -> ok",
                                     "message: Number of section in patch less than 3. Interpolation impossible"));
    EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 5)});
    EXPECT_TRUE(doc.patchUndoReady);
}

TEST_F(Interpolate, ToAPointTooFarSaysSo) {
    hold({flatPatch(4, 3)});
    captureLine(0, 1);
    fitTo({1, 1, 5});
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CInterpolate -> ok",
                            "message: Correct interpolation is impossible. Target point is too far from line"));
    EXPECT_EQ(doc.patches, PatchList{flatPatch(4, 3)});
    EXPECT_EQ(doc.capture->capturedLine, 1);
}

TEST_F(Interpolate, ToAPointAtADoubleLineSaysSo) {
    hold({flatPatch(4, 3)});
    doc.patches[0][2] = doc.patches[0][1];
    captureSection(0, 1);
    fitTo({1, 1, 0});
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CInterpolate -> ok", "message: Correct interpolation is impossible. Double line"));
}

TEST_F(Interpolate, OfABorderOnItsNeighbourStopsWithoutAWord) {
    hold({flatPatch(4, 3)});
    doc.patches[0][1] = doc.patches[0][0];
    captureSection(0, 0);
    fitTo({1, 3, 0});
    EXPECT_THAT(heard(), ElementsAre("dialog: CInterpolate -> ok"));
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(Interpolate, CancelledChangesNothing) {
    hold({flatPatch(4, 3)});
    captureSection(0, 1);
    call("line.interpolate");
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
}

TEST(InterpolateDialog, TickingTheFitTurnsTheCoefficientOff) {
    CInterpolate values;
    values.pointClipboardFull = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_TRUE(form.find("coefficient")->on && form.find("fitToBuffer")->on);
    ASSERT_FALSE(setField(form, "fitToBuffer", "1").has_value());
    EXPECT_FALSE(form.find("coefficient")->on);
    EXPECT_THAT(form.notices, ElementsAre("Coefficient is changed in range (-1; 1)"));
    for (const char* text : {"-1.001", "1.001"}) {
        ASSERT_FALSE(setField(form, "fitToBuffer", "0").has_value());
        EXPECT_TRUE(setField(form, "coefficient", text).has_value());
    }
}

// ---- Correct line ---------------------------------------------------------------------------------------------------

TEST_F(CorrectLine, BendsTheLineThroughTheFreePoint) {
    hold({flatPatch(3, 5)});
    captureLine(0, 3);
    holdFree(0, 1);
    const PatchList before = doc.patches;
    doc.rebuildOnUndo = true;
    correct(threeAndThree);
    const Patch& patch = doc.patches[0];
    EXPECT_THAT(coordinates({patch[0][2], patch[1][2], patch[2][2]}), Pointwise(DoubleNear(1e-12), {1.0, 2.0, 3.0}));
    EXPECT_EQ(doc.capture->capturedLine, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointSection, 0);
    EXPECT_TRUE(doc.capture->lineCaptured && doc.capture->freePointHeld);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_EQ(doc.pointUndoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady && doc.pointUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_EQ(doc.capture->savedPatch, 0);
    EXPECT_EQ(doc.capture->savedPointSection, 0);
    EXPECT_EQ(doc.capture->savedPoint, 1);
    EXPECT_THAT(heard(), ElementsAre("dialog: CCorrectLine -> ok"));
    EXPECT_EQ(viewCalls().front(), "redraw");
}

TEST_F(CorrectLine, FillsTheDialogFromTheLineEachTime) {
    hold({flatPatch(3, 8)});
    captureLine(0, 3);
    holdFree(0, 1);
    doc.dialogs->correctLine = {77, 78, 9};
    Lines values;
    ui.onDialog = [&values](DialogForm& form) {
        for (const DialogField& field : form.fields) {
            values.push_back(field.key + "=" + fieldText(field));
        }
    };
    call("line.correct");
    EXPECT_THAT(values, ElementsAre("linesBefore=4", "linesAfter=5", "power=0.65"));
}

TEST_F(CorrectLine, WithTheFilledValuesKeepsTheNumberOfPoints) {
    hold({flatPatch(3, 8)});
    captureLine(0, 3);
    holdFree(1, 5);
    correct({});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>(3, 8)));
    EXPECT_EQ(doc.capture->capturedLine, 3);
    EXPECT_NEAR(doc.patches[0][1][3].x, 5.0, 1e-9);
    EXPECT_NEAR(doc.patches[0][0][3].x, 3.0, 1e-9);
}

TEST_F(CorrectLine, OfFiveBeforeAndSixAfterGivesTenPoints) {
    hold({flatPatch(4, 7)});
    captureLine(0, 4);
    holdFree(3, 2);
    correct({{"linesBefore", "5"}, {"linesAfter", "6"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>(4, 10)));
    EXPECT_EQ(doc.capture->capturedLine, 4);
    EXPECT_EQ(doc.capture->capturedPoint, 4);
}

TEST_F(CorrectLine, OfASectionWorksAcrossThePatch) {
    hold({flatPatch(5, 3)});
    captureSection(0, 3);
    holdFree(1, 0); // point 0 of section 1: the section at y = 3 shall begin at y = 1
    correct(threeAndThree);
    const PointList& section = doc.patches[0][2];
    EXPECT_THAT(coordinates(section, &zVec<double>::y), Pointwise(DoubleNear(1e-12), {1.0, 2.0, 3.0}));
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_FALSE(doc.capture->lineCaptured);
    EXPECT_EQ(doc.capture->capturedSection, 2);
    EXPECT_EQ(doc.capture->capturedPointSection, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 0);
    EXPECT_EQ(doc.capture->capturedLine, -1);
    EXPECT_NEAR(doc.capture->capturedPointPos.y, 1.0, 1e-12);
}

TEST_F(CorrectLine, WithThePointOnItHasNoActionAndLeavesModelAndCapture) {
    for (const bool section : {false, true}) {
        hold({flatPatch(4, 5)});
        arranged(doc).lineCaptured = arranged(doc).sectionCaptured = false;
        arranged(doc).capturedLine = arranged(doc).capturedSection = -1;
        section ? captureSection(0, 2) : captureLine(0, 2);
        holdFree(2, 2);
        const PatchList before = doc.patches;
        correct({});
        EXPECT_THAT(heard(), ElementsAre("message: Correction of line has no action"));
        ui.dialogs.clear();
        EXPECT_EQ(doc.patches, before);
        EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady || doc.documentModified);
        EXPECT_EQ(section ? doc.capture->capturedSection : doc.capture->capturedLine, 2);
        EXPECT_EQ(section ? doc.capture->sectionCaptured : doc.capture->lineCaptured, true);
        EXPECT_EQ(section ? doc.capture->lineCaptured : doc.capture->sectionCaptured, false);
    }
}

TEST_F(CorrectLine, CancelledLeavesModelAndCapture) {
    for (const bool section : {false, true}) {
        hold({flatPatch(4, 5)});
        arranged(doc).lineCaptured = arranged(doc).sectionCaptured = false;
        arranged(doc).capturedLine = arranged(doc).capturedSection = -1;
        section ? captureSection(0, 1) : captureLine(0, 1);
        holdFree(3, 2);
        const PatchList before = doc.patches;
        call("line.correct");
        EXPECT_THAT(heard(), ElementsAre("dialog: CCorrectLine -> cancel"));
        EXPECT_EQ(doc.patches, before);
        EXPECT_EQ(doc.capture->capturedPoint, 2);
        EXPECT_EQ(doc.capture->capturedPointSection, 3);
        EXPECT_EQ(section ? doc.capture->capturedSection : doc.capture->capturedLine, 1);
        EXPECT_EQ(section ? doc.capture->capturedLine : doc.capture->capturedSection, -1);
        EXPECT_THAT(viewCalls(), IsEmpty());
    }
}

TEST_F(CorrectLine, InThePatchThatIsNoGridDoesNothing) {
    hold({flatPatch(3, 5)});
    doc.patches[0][1].pop_back();
    captureSection(0, 1);
    holdFree(0, 3);
    const PatchList before = doc.patches;
    correct(threeAndThree);
    EXPECT_EQ(doc.patches, before);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(CorrectLine, UndoneBringsTheModelBack) {
    hold({flatPatch(3, 5)});
    captureLine(0, 3);
    holdFree(0, 1);
    const PatchList before = doc.patches;
    correct(threeAndThree);
    call("point.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady);
}

TEST_F(CorrectLine, UndoneCapturesTheLineOrTheSectionOfBefore) {
    for (const std::int32_t line : {3, 0}) {
        hold({flatPatch(3, 5)});
        captureLine(0, line);
        holdFree(0, 1);
        correct({{"linesBefore", "3"}, {"linesAfter", "4"}, {"power", "1"}});
        ASSERT_EQ(doc.capture->capturedLine, 2);
        call("point.undo");
        EXPECT_EQ(doc.capture->capturedLine, line);
        EXPECT_EQ(doc.capture->savedLine, -1);
        call("line.exit");
    }
    hold({flatPatch(5, 3)});
    captureSection(0, 3);
    holdFree(1, 0);
    correct(threeAndThree);
    ASSERT_EQ(doc.capture->capturedSection, 2);
    call("point.undo");
    EXPECT_EQ(doc.capture->capturedSection, 3);
    EXPECT_EQ(doc.capture->savedSection, -1);
}

} // namespace velmora::test
