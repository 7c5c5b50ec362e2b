#include "CommandTest.h"
#include "arranged_capture.h"

namespace velmora::test {

namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

using Numbers = std::vector<double>;

/// The field values' x of a section.
Numbers valuesOf(const PatchList& field, std::size_t patch, std::size_t section) {
    return coordinates(field.at(patch).at(section));
}

/// A model with field values: at point (n, m) of patch k stands the value (10 m, n, k).
class FieldValues : public CommandTest {
protected:
    void holdField(PatchList model) {
        hold(std::move(model));
        doc.fieldPatches.clear();
        for (std::size_t k = 0; k < doc.patches.size(); ++k) {
            Patch& field = doc.fieldPatches.emplace_back();
            for (std::size_t n = 0; n < doc.patches[k].size(); ++n) {
                PointList& values = field.emplace_back();
                for (std::size_t m = 0; m < doc.patches[k][n].size(); ++m) {
                    values.emplace_back(10.0 * static_cast<double>(m), static_cast<double>(n), static_cast<double>(k));
                }
            }
        }
        doc.fieldLoaded = true;
        doc.fieldCount = 3;
        doc.retitle();
        ASSERT_TRUE(doc.fieldMode);
        forget();
    }

    void expectShapeOfTheModel() {
        ASSERT_EQ(doc.fieldPatches.size(), doc.patches.size());
        for (std::size_t k = 0; k < doc.patches.size(); ++k) {
            EXPECT_EQ(countsOf(doc.fieldPatches[k]), countsOf(doc.patches[k]));
        }
    }
};

} // namespace

// ---- Commands that are on with a field ------------------------------------------------------------------------------

TEST_F(FieldValues, FlipTurnsValuesAndPointsAlike) {
    holdField({flatPatch(2, 3), flatPatch(2, 4)});
    addToBlock(0);
    run("model.flip"); // called off
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 10, 20));
    runWith("model.flip", {});
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(20, 10, 0));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 1, 1), ElementsAre(0, 10, 20, 30));
}

TEST_F(FieldValues, FirstLastInSectionTurnsValuesAndPointsAlike) {
    holdField({flatPatch(2, 3)});
    captureSection(0, 1);
    capturePoint(0, 1, 0);
    run("point.reverseSection");
    EXPECT_THAT(coordinates(doc.patches[0][1]), ElementsAre(2, 1, 0));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(20, 10, 0));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 0), ElementsAre(0, 10, 20));
}

TEST_F(FieldValues, KnifePartDropsTheValuesOfThePointsThatGo) {
    holdField({flatPatch(2, 5)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    runWith("point.knifePart", {{"choice", "1"}});
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(20, 30, 40));
    expectShapeOfTheModel();
}

TEST_F(FieldValues, PastePartTakesTheValuesOfThePartItReplaces) {
    holdField({flatPatch(2, 5)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    // From the captured point at x = 2 to 4: the values 20 to 40. The new points stand at 1/4 and 1 of the new length.
    doc.lineBuffer = {{2.5, 1, 0}, {4, 1, 0}};
    doc.lineBufferFull = true;
    runWith("point.pastePart", {{"choice", "2"}});
    EXPECT_THAT(coordinates(doc.patches[0][1]), ElementsAre(0, 1, 2, 2.5, 4));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 10, 20, 25, 40));
    // Before it the values 0 to 20; the first new point stands at the beginning.
    capturePoint(0, 1, 2);
    doc.lineBuffer = {{0, 1, 0}};
    runWith("point.pastePart", {{"choice", "1"}});
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 20, 25, 40));
    expectShapeOfTheModel();
}

TEST_F(FieldValues, PasteOfAnotherNumberOfPointsInterpolates) {
    holdField({flatPatch(2, 5)});
    captureSection(0, 1);
    doc.lineBuffer = {{0, 1, 9}, {1, 1, 9}, {8, 1, 9}};
    doc.lineBufferFull = true;
    run("line.paste");
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 5, 40));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 0), ElementsAre(0, 10, 20, 30, 40));
    expectShapeOfTheModel();
}

TEST_F(FieldValues, PasteIntoALineInterpolatesAlongTheLine) {
    holdField({flatPatch(3, 4)});
    captureLine(0, 2);
    doc.lineBuffer = {{2, 0, 0}, {2, 0.5, 0}, {2, 2, 0}};
    doc.lineBufferFull = true;
    run("line.paste");
    // Along the line the values' y run 0, 1, 2.
    EXPECT_EQ(doc.fieldPatches[0][0][2].y, 0);
    EXPECT_EQ(doc.fieldPatches[0][1][2].y, 0.5);
    EXPECT_EQ(doc.fieldPatches[0][2][2].y, 2);
    EXPECT_EQ(doc.fieldPatches[0][1][2].x, 20);
}

TEST_F(FieldValues, BufferMergeGivesThePointsBehindTheLastNoValue) {
    holdField({flatPatch(2, 3)});
    captureSection(0, 1);
    doc.lineBuffer = {{3, 1, 0}, {4, 1, 0}};
    doc.lineBufferFull = true;
    run("buffer.merge");
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 10, 20, 0, 0));
    expectShapeOfTheModel();
}

TEST_F(FieldValues, RebreakPartInterpolatesOverTheStretch) {
    holdField({flatPatch(2, 5)});
    captureSection(0, 1);
    capturePoint(0, 1, 4);
    runWith("point.rebreakPart", {{"function", "2"}, {"newCount", "4"}, {"compression", "4"}});
    // Steps of 4/7, 8/7 and 16/7 along the section from 0 to 4.
    EXPECT_THAT(coordinates(doc.patches[0][1]), Pointwise(DoubleNear(1e-12), Numbers{0, 4.0 / 7, 12.0 / 7, 4}));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), Pointwise(DoubleNear(1e-12), Numbers{0, 40.0 / 7, 120.0 / 7, 40}));
    expectShapeOfTheModel();
}

TEST_F(FieldValues, RebreakPartLeavesTheValuesBeyondTheStretch) {
    holdField({flatPatch(2, 6)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    runWith("point.rebreakPart", {{"function", "2"}, {"newCount", "2"}});
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 20, 30, 40, 50));
}

TEST_F(FieldValues, CorrectLineInterpolatesOnBothSidesOfTheCut) {
    holdField({flatPatch(3, 5)});
    captureLine(0, 3);
    arranged(doc).freePointHeld = true;
    doc.capture.renumberPoint(0, 1);
    runWith("line.correct", {{"linesBefore", "3"}, {"linesAfter", "4"}});
    expectShapeOfTheModel();
    // On straight sections the values are 10 times the place along them, whatever the cut.
    for (std::size_t n = 0; n < 3; ++n) {
        for (std::size_t m = 0; m < 6; ++m) {
            EXPECT_NEAR(doc.fieldPatches[0][n][m].x, 10 * doc.patches[0][n][m].x, 1e-9);
            EXPECT_EQ(doc.fieldPatches[0][n][m].y, static_cast<double>(n));
        }
    }
}

TEST_F(FieldValues, MatchBorderAndGridMovesTheValuesWithThePoints) {
    Patch second = flatPatch(3, 4);
    for (PointList& section : second) {
        for (zVec<double>& p : section) {
            p.y += 2.05;
        }
    }
    Patch first = flatPatch(3, 4);
    first[2][1].x = 0.9;
    holdField({first, second});
    addToBlock(0);
    addToBlock(1);
    run("block.matchBorderAndGrid");
    // The other sections of the second take the border's spacing: 0, 0.3, 2/3 and 1 of the length.
    for (std::size_t n = 1; n < 3; ++n) {
        EXPECT_THAT(coordinates(doc.patches[1][n]), Pointwise(DoubleNear(1e-9), Numbers{0, 0.9, 2, 3}));
        EXPECT_THAT(valuesOf(doc.fieldPatches, 1, n), Pointwise(DoubleNear(1e-9), Numbers{0, 9, 20, 30}));
    }
    EXPECT_THAT(valuesOf(doc.fieldPatches, 1, 0), ElementsAre(0, 10, 20, 30));
}

TEST_F(FieldValues, BlockPasteDropsTheValuesOfWhatItReplaces) {
    hold({flatPatch(2, 2)});
    addToBlock(0);
    run("block.copy");
    doc.emptyBlock();
    holdField({flatPatch(2, 3), flatPatch(2, 4)});
    addToBlock(0);
    run("block.paste");
    expectShapeOfTheModel();
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(0, 10, 20, 30));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 1, 1), ElementsAre(0, 0));
}

TEST_F(FieldValues, ConvertToGridInterpolatesAndTurnsThemWithTheirSections) {
    holdField({flatPatch(2, 5)});
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    run("point.reverseSection");
    runWith("point.knifePart", {{"choice", "2"}}); // lines now: points 4, 3 and 2 are left
    call("line.exit");
    runWith("convert.toApt", {{"pointCount", "3"}, {"approximation", "2"}});
    EXPECT_THAT(coordinates(doc.patches[0][1]), ElementsAre(2, 3, 4)); // turned as the section before runs
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 0), ElementsAre(0, 20, 40));
    EXPECT_THAT(valuesOf(doc.fieldPatches, 0, 1), ElementsAre(20, 30, 40));
}

// ---- Undo -----------------------------------------------------------------------------------------------------------

TEST_F(FieldValues, UndoBringsThemBackWithTheirPoints) {
    holdField({flatPatch(2, 5)});
    const PatchList before = doc.fieldPatches;
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    runWith("point.knifePart", {{"choice", "1"}});
    run("patch.undo");
    EXPECT_EQ(doc.fieldPatches, before);
    expectShapeOfTheModel();
    captureSection(0, 1);
    capturePoint(0, 1, 4);
    runWith("point.rebreakPart", {{"newCount", "9"}});
    EXPECT_NE(doc.fieldPatches, before);
    run("point.undo");
    EXPECT_EQ(doc.fieldPatches, before);
}

TEST_F(FieldValues, UndoOfOpenBringsThemBackWithTheirModel) {
    holdField({flatPatch(2, 3)});
    doc.fieldTitleLine = "TITLE";
    const PatchList before = doc.fieldPatches;
    ui.answers = {true};
    ui.files = {{file("other.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n")}};
    run("file.open");
    ASSERT_FALSE(doc.fieldMode);
    ASSERT_TRUE(doc.fieldPatches.empty());
    run("patch.undo");
    EXPECT_EQ(doc.fieldPatches, before);
    EXPECT_TRUE(doc.fieldLoaded && doc.fieldMode);
    EXPECT_EQ(doc.fieldTitleLine, "TITLE");
    EXPECT_EQ(doc.fieldCount, 3);
}

TEST_F(FieldValues, CloseOfAModelWithUnsavedChangesCanBeTakenBack) {
    holdField({flatPatch(2, 3)});
    doc.modelFile.setTitle("wing.dat");
    runWith("model.move", {{"deltaX", "1"}});
    const PatchList moved = doc.patches;
    const PatchList values = doc.fieldPatches;
    run("file.closeField");
    EXPECT_TRUE(doc.holdsNothing());
    EXPECT_FALSE(doc.documentModified); // there is nothing that a save could write
    run("patch.undo");
    EXPECT_EQ(doc.patches, moved);
    EXPECT_EQ(doc.fieldPatches, values);
    EXPECT_TRUE(doc.fieldLoaded && doc.fieldMode && doc.documentModified);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
}

TEST_F(FieldValues, CloseOfAModelThatItsFileHoldsLeavesNoUndo) {
    holdField({flatPatch(2, 3)});
    runWith("model.move", {{"deltaX", "1"}});
    doc.documentModified = false; // it was saved
    run("file.closeField");
    EXPECT_FALSE(doc.patchUndoReady);
}

} // namespace velmora::test
