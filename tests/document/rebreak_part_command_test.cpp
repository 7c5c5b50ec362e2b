#include "DialogValues.h"
#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pointwise;
using Fields = std::vector<std::pair<std::string, std::string>>;

class RebreakPart : public StateTest {
protected:
    /// A section with one of its points, as the user captures them.
    void captureOnSection(std::int32_t section, std::int32_t point) {
        captureSection(0, section);
        capturePoint(0, section, point);
    }
    void captureOnLine(std::int32_t line, std::int32_t section) {
        captureLine(0, line);
        capturePoint(0, section, line);
    }

    void rebreakPart(const Fields& fields) {
        ui.dialogs.push_back(fields);
        call("point.rebreakPart");
    }

    /// What the dialog shows as it opens, "key=value"; it is then cancelled.
    Lines shown() {
        Lines values;
        ui.onDialog = [&values](DialogForm& form) {
            for (const DialogField& field : form.fields) {
                values.push_back(field.key + "=" + fieldText(field));
            }
        };
        call("point.rebreakPart");
        ui.onDialog = nullptr;
        return values;
    }

    std::vector<double> lineHeights(std::size_t line) const {
        std::vector<double> heights;
        for (const PointList& section : doc.patches[0]) {
            heights.push_back(section[line].y);
        }
        return heights;
    }
};

/// The dialog over point 4 of a curve of 10 points in a regular model.
struct RebreakPartDialog : testing::Test {
    RebreakPartDialog() {
        values.isApt = true;
        values.pointNumber = 4;
        values.curveLength = 10;
        fillStretch(values);
    }

    void open() {
        form = describe(values);
        openDialog(form);
    }
    void set(const char* key, const char* text) {
        const auto refusal = setField(form, key, text);
        ASSERT_FALSE(refusal.has_value()) << key << ": " << refusal->message;
    }
    bool on(const char* key) const { return form.find(key)->on; }
    void expectStretch(std::int32_t first, std::int32_t last, std::int32_t count) const {
        EXPECT_EQ(values.law.firstPoint, first);
        EXPECT_EQ(values.law.lastPoint, last);
        EXPECT_EQ(values.law.newCount, count);
    }

    CRebreakPart values;
    DialogForm form;
};

} // namespace

// ---- The dialog -----------------------------------------------------------------------------------------------------

TEST_F(RebreakPartDialog, ChoosingASideRefillsTheStretchAndTheCount) {
    open();
    expectStretch(1, 4, 4);
    set("newCount", "50");
    set("position", "2");
    expectStretch(4, 10, 7);
    set("newCount", "50");
    set("position", "1");
    expectStretch(1, 4, 4);
}

TEST_F(RebreakPartDialog, ChoosingFitRefillsTheStretchAndTheCount) {
    open();
    set("position", "2");
    set("newCount", "50");
    set("style", "2");
    expectStretch(4, 10, 7);
    set("newCount", "20");
    EXPECT_EQ(values.law.newCount, 20);
    set("style", "1");
    EXPECT_EQ(values.law.newCount, 20);
}

TEST_F(RebreakPartDialog, NeverLetsTheStretchBeTyped) {
    open();
    EXPECT_TRUE(setField(form, "firstPoint", "2").has_value());
    EXPECT_TRUE(setField(form, "lastPoint", "3").has_value());
}

TEST_F(RebreakPartDialog, HasTheCountOffForASingleLine) {
    values.lineMode = true;
    open();
    EXPECT_FALSE(on("newCount"));
    set("regime", "2");
    EXPECT_TRUE(on("newCount"));
    set("newCount", "9");
    set("regime", "1");
    EXPECT_FALSE(on("newCount"));
    EXPECT_EQ(values.law.newCount, 4);
}

TEST_F(RebreakPartDialog, HasTheCountOnForSections) {
    open();
    EXPECT_TRUE(on("newCount"));
    set("regime", "2");
    EXPECT_TRUE(on("newCount"));
}

TEST_F(RebreakPartDialog, HasExactnessOnWithSplineOnlyAndCompressionAlways) {
    open();
    EXPECT_TRUE(on("exactness"));
    set("function", "2");
    set("style", "2");
    EXPECT_FALSE(on("exactness"));
    EXPECT_TRUE(on("compression"));
}

TEST_F(RebreakPartDialog, OfASklModelFallsBackToTheCapturedSection) {
    values.isApt = false;
    values.regime = 2;
    open();
    EXPECT_EQ(values.regime, 1);
    EXPECT_FALSE(form.find("regime")->choiceOn[1]);
    EXPECT_TRUE(setField(form, "regime", "2").has_value());
}

// ---- Preparing ------------------------------------------------------------------------------------------------------

TEST_F(RebreakPart, OpensWithTheStretchUpToThePoint) {
    hold({flatPatch(6, 9)});
    captureOnSection(2, 3);
    EXPECT_THAT(shown(), ElementsAre("regime=1", "function=1", "style=1", "position=1", "exactness=0", "newCount=4",
                                     "compression=1", "firstPoint=1", "lastPoint=4"));
    EXPECT_FALSE(doc.dialogs->rebreakPart.lineMode);
}

TEST_F(RebreakPart, OpensWithTheStretchBehindThePointWhereAfterWasChosenLast) {
    hold({flatPatch(6, 9)});
    doc.dialogs->rebreakPart.law.after = true;
    captureOnSection(2, 3);
    EXPECT_THAT(shown(), testing::IsSupersetOf({"position=2", "newCount=6", "firstPoint=4", "lastPoint=9"}));
}

TEST_F(RebreakPart, InLineRegimeCountsSections) {
    hold({flatPatch(6, 9)});
    captureOnLine(7, 3);
    EXPECT_THAT(shown(), testing::IsSupersetOf({"newCount=4", "firstPoint=1", "lastPoint=4"}));
    doc.dialogs->rebreakPart.law.after = true;
    EXPECT_THAT(shown(), testing::IsSupersetOf({"newCount=3", "firstPoint=4", "lastPoint=6"}));
}

TEST_F(RebreakPart, DoesNothingWithoutAStructuredModelOrACapture) {
    hold({flatPatch(3, 3)});
    captureOnSection(1, 1);
    doc.structureKind = StructureKind::Unstructured;
    call("point.rebreakPart");
    doc.structureKind = StructureKind::Structured;
    for (const auto& [patch, section, point] : {std::tuple{-1, 1, 1}, {1, 1, 1}, {0, 3, 1}, {0, 1, -1}, {0, 1, 3}}) {
        doc.capture.renumberPatch(patch);
        doc.capture.renumberSection(section);
        doc.capture.renumberPoint(doc.capture->capturedPointSection, point);
        call("point.rebreakPart");
    }
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(RebreakPart, CancelledChangesNothing) {
    hold({flatPatch(3, 6)});
    captureOnSection(1, 3);
    const PatchList before = doc.patches;
    call("point.rebreakPart");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady || doc.documentModified);
}

// ---- Running --------------------------------------------------------------------------------------------------------

TEST_F(RebreakPart, BeforeMovesTheNumberOfThePointWithItsPlace) {
    hold({flatPatch(3, 9)});
    captureOnSection(1, 4);
    const PatchList before = doc.patches;
    doc.rebuildOnUndo = true;
    rebreakPart({{"function", "2"}, {"newCount", "9"}});
    EXPECT_THAT(coordinates(doc.patches[0][1]),
                Pointwise(DoubleNear(1e-12), {0.0, 0.5, 1.0, 1.5, 2.0, 2.5, 3.0, 3.5, 4.0, 5.0, 6.0, 7.0, 8.0}));
    EXPECT_EQ(doc.capture->capturedPoint, 8);
    EXPECT_EQ(*doc.pointAt(0, 1, 8), doc.capture->capturedPointPos);
    EXPECT_EQ(doc.patches[0][0], before[0][0]);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_EQ(doc.pointUndoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady && doc.pointUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_EQ(doc.capture->savedPatch, 0);
    EXPECT_EQ(doc.capture->savedPointSection, 1);
    EXPECT_EQ(doc.capture->savedPoint, 4);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.skl");
    EXPECT_THAT(heard(), ElementsAre("dialog: CRebreakPart -> ok", "title: wing.skl",
                                     "status: Save writes " + (folder / "wing.skl").string()));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section", "set point"));
}

TEST_F(RebreakPart, AfterKeepsTheNumberOfThePoint) {
    hold({flatPatch(3, 9)});
    captureOnSection(1, 6);
    rebreakPart({{"function", "2"}, {"position", "2"}, {"newCount", "5"}});
    EXPECT_THAT(coordinates(doc.patches[0][1]),
                Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 6.5, 7.0, 7.5, 8.0}));
    EXPECT_EQ(doc.capture->capturedPoint, 6);
}

TEST_F(RebreakPart, OfAllSectionsKeepsTheModelRegular) {
    hold({flatPatch(3, 9), flatPatch(2, 2)});
    captureOnSection(1, 4);
    rebreakPart({{"regime", "2"}, {"newCount", "9"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{13, 13, 13}));
    EXPECT_EQ(doc.patches[1], flatPatch(2, 2));
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(RebreakPart, UndonePointBringsModelAndAddressBack) {
    hold({flatPatch(3, 9)});
    captureOnSection(1, 4);
    const PatchList before = doc.patches;
    rebreakPart({{"newCount", "9"}});
    call("point.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.capture->capturedPoint, 4);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(RebreakPart, OfALineRespacesItsSectionsAndKeepsTheGrid) {
    Patch patch = flatPatch(5, 3);
    patch[1][1].y = 0.25;
    hold({patch});
    captureOnLine(1, 2);
    rebreakPart({{"function", "2"}});
    EXPECT_THAT(lineHeights(1), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0}));
    EXPECT_TRUE(doc.capture->lineCaptured);
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_EQ(doc.capture->capturedSection, -1);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.capture->capturedPointSection, 2);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set line", "set point"));
}

TEST_F(RebreakPart, OfAllLinesChangesTheNumberOfSectionsAndMovesThePointsOwn) {
    hold({flatPatch(5, 3)});
    captureOnLine(1, 2);
    rebreakPart({{"regime", "2"}, {"function", "2"}, {"newCount", "5"}});
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>(7, 3)));
    EXPECT_THAT(lineHeights(0), Pointwise(DoubleNear(1e-12), {0.0, 0.5, 1.0, 1.5, 2.0, 3.0, 4.0}));
    EXPECT_EQ(doc.capture->capturedPointSection, 4);
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{1, 2, 0}));
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(RebreakPart, OfALineInAPatchOutsideTheZBlockWorksOnTheSectionOfThatNumber) {
    hold({flatPatch(6, 4), flatPatch(2, 2)});
    captureOnLine(1, 2);
    addToBlock(1);
    const PatchList before = doc.patches;
    rebreakPart({{"function", "2"}, {"compression", "2"}});
    EXPECT_NE(doc.patches[0][1], before[0][1]);
    EXPECT_EQ(doc.patches[0][2], before[0][2]);
    EXPECT_EQ(doc.capture->capturedLine, 1);
    EXPECT_TRUE(doc.capture->lineCaptured);
}

// ---- Messages -------------------------------------------------------------------------------------------------------

TEST_F(RebreakPart, FitTooCloseToTheBorderStopsBeforeTheSnapshot) {
    for (const std::int32_t point : {1, 6, 7}) { // numbers 2, 7 and 8 of 9: below 3 or above 6
        hold({flatPatch(3, 9)});
        captureOnSection(1, point);
        const PatchList before = doc.patches;
        rebreakPart({{"style", "2"}});
        EXPECT_THAT(heard(), ElementsAre("dialog: CRebreakPart -> ok",
                                         "message: Regime FIT is impossible. Point is too close to the border"));
        EXPECT_EQ(doc.patches, before);
        EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady);
    }
}

TEST_F(RebreakPart, FitAtTheThirdPointAndAtTheThirdFromTheEndButOneIsAllowed) {
    for (const std::int32_t point : {2, 5}) {
        hold({flatPatch(3, 9)});
        captureOnSection(1, point);
        rebreakPart({{"style", "2"}});
        EXPECT_THAT(heard(), ElementsAre("dialog: CRebreakPart -> ok"));
        doc.pointUndoReady = false;
    }
}

TEST_F(RebreakPart, FitThatFailsSaysSoOnceAndRebuilds) {
    hold({flatPatch(4, 9)});
    captureOnSection(1, 4);
    rebreakPart({{"regime", "2"}, {"style", "2"}, {"compression", "4"}, {"newCount", "3"}});
    // Two steps over a length of 4 never end on a step of 1 with the last one the longer.
    EXPECT_THAT(heard(), ElementsAre("dialog: CRebreakPart -> ok", "message: It is impossible to fit parts"));
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>(4, 7)));
}

TEST_F(RebreakPart, AStretchOfOnePointSaysWhichSectionAndLeavesIt) {
    hold({flatPatch(3, 5)});
    captureOnSection(1, 0);
    const PatchList before = doc.patches;
    rebreakPart({{"newCount", "4"}});
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CRebreakPart -> ok", "message: Line  2  is of zero length. APT may be violated"));
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.capture->capturedPoint, 0);
    EXPECT_TRUE(doc.patchUndoReady);
}

TEST_F(RebreakPart, SectionsOfNoLengthStayAndTheFirstIsNamedOnce) {
    Patch patch = flatPatch(4, 6);
    for (const std::size_t n : {1U, 2U}) {
        patch[n][1] = patch[n][2] = patch[n][0];
    }
    hold({patch});
    captureOnSection(0, 2);
    rebreakPart({{"regime", "2"}, {"newCount", "5"}});
    EXPECT_EQ(heard()[1], "message: Line  2  is of zero length. APT may be violated");
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{8, 6, 6, 8}));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.capture->capturedPoint, 4);
}

TEST_F(RebreakPart, LinesOfNoLengthAreNamedAndTheGridStaysWhole) {
    Patch patch = flatPatch(6, 4);
    patch[1][2] = patch[2][2] = patch[0][2];
    hold({patch});
    captureOnLine(0, 2);
    rebreakPart({{"regime", "2"}, {"newCount", "5"}});
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CRebreakPart -> ok", "message: Line  3  is of zero length. APT may be violated"));
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>(8, 4)));
    for (std::size_t n = 0; n < 5; ++n) {
        EXPECT_EQ(doc.patches[0][n][2], patch[0][2]);
    }
    EXPECT_EQ(doc.patches[0][5][2], patch[3][2]);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(RebreakPart, ACapturedSectionOfNoLengthAmongAllKeepsThePointsNumber) {
    Patch patch = flatPatch(3, 6);
    patch[1][1] = patch[1][2] = patch[1][0];
    hold({patch});
    captureOnSection(1, 2);
    rebreakPart({{"regime", "2"}, {"newCount", "5"}});
    EXPECT_THAT(heard(), testing::Contains("message: Line  2  is of zero length. APT may be violated"));
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{8, 6, 8}));
    EXPECT_EQ(doc.patches[0][1], patch[1]);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
}

TEST_F(RebreakPart, ItsTwoMessagesComeInTheOrderOfTheSections) {
    const std::string unfitted = "message: It is impossible to fit parts";
    for (const std::size_t flat : {0U, 1U, 2U}) {
        Patch patch = flatPatch(3, 9);
        for (std::size_t m = 1; m < 5; ++m) {
            patch[flat][m] = patch[flat][0];
        }
        hold({patch});
        doc.status = idlePrompt;
        captureOnSection(flat == 1 ? 0 : 1, 4);
        // Two steps over a length of 4 never end on a step of 1 with the last one the longer.
        rebreakPart({{"regime", "2"}, {"style", "2"}, {"compression", "4"}, {"newCount", "3"}});
        const std::string ofFlat =
            "message: Line  " + std::to_string(flat + 1) + "  is of zero length. APT may be violated";
        EXPECT_THAT(heard(), testing::ElementsAre("dialog: CRebreakPart -> ok", flat == 0 ? ofFlat : unfitted,
                                                  flat == 0 ? unfitted : ofFlat, testing::StartsWith("title: "),
                                                  testing::StartsWith("status: Save writes ")))
            << flat;
    }
}

} // namespace velmora::test
