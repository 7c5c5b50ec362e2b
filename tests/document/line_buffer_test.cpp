#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* aptNotice = "message: APT format may be violated";

class LineBuffer : public StateTest {
protected:
    void fill(PointList points) {
        doc.lineBuffer = std::move(points);
        doc.lineBufferFull = true;
    }

    static PointList row(int count, double y) {
        PointList points;
        for (int i = 0; i < count; ++i) {
            points.push_back({static_cast<double>(i), y, 0.5});
        }
        return points;
    }
};

class PartOfSection : public LineBuffer {
protected:
    void take(std::int32_t section, std::int32_t point) {
        captureSection(0, section);
        capturePoint(0, section, point);
    }

    void choose(const char* choice) { ui.dialogs.push_back({{"choice", choice}}); }

    std::vector<double> numbers(std::size_t section) { return coordinates(doc.patches[0][section]); }
};

} // namespace

// ---- Copy -----------------------------------------------------------------------------------------------------------

TEST_F(LineBuffer, CopyTakesTheSectionsPointsInOrderInPlaceOfWhatWasThere) {
    hold({flatPatch(3, 4)});
    fill({{9, 9, 9}});
    captureSection(0, 1);
    call("line.copy");
    EXPECT_EQ(doc.lineBuffer, doc.patches[0][1]);
    EXPECT_TRUE(doc.lineBufferFull);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section"));
}

TEST_F(LineBuffer, CopyOfALineTakesOnePointOfEachSection) {
    hold({flatPatch(3, 4)});
    captureLine(0, 2);
    call("line.copy");
    EXPECT_EQ(doc.lineBuffer, (PointList{{2, 0, 0}, {2, 1, 0}, {2, 2, 0}}));
}

TEST_F(LineBuffer, CopyOfALineReadsTheSectionsThatReachIt) {
    hold({patchOf({3, 2, 4})});
    captureLine(0, 2);
    call("line.copy");
    EXPECT_EQ(doc.lineBuffer, (PointList{{2, 0, 0}, {2, 2, 0}}));
}

TEST_F(LineBuffer, CopyWithoutACaptureEmptiesItAndCallsItFull) {
    hold({flatPatch(3, 4)});
    doc.lineBuffer = row(2, 0);
    call("line.copy");
    EXPECT_THAT(doc.lineBuffer, IsEmpty());
    EXPECT_TRUE(doc.lineBufferFull);
}

// ---- Paste ----------------------------------------------------------------------------------------------------------

TEST_F(LineBuffer, PasteOnASectionSaysThatAptMayBeViolatedEvenWhenItIsNot) {
    hold({flatPatch(3, 4)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    fill(row(4, 7));
    doc.rebuildOnUndo = true;
    call("line.paste");
    EXPECT_EQ(doc.patches[0][1], row(4, 7));
    EXPECT_EQ(doc.patches[0].size(), 3U);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_THAT(heard(), ElementsAre(aptNotice));
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(LineBuffer, PasteOfAnotherLengthOnASectionTurnsAptToSkl) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    fill(row(6, 7));
    call("line.paste");
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{4, 6, 4}));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_THAT(heard(),
                ElementsAre(aptNotice, "title: wing.skl", "status: Save writes " + (folder / "wing.skl").string()));
}

TEST_F(LineBuffer, PasteOfFewerPointsKeepsTheCapturedPointInsideTheSection) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    capturePoint(0, 1, 3);
    fill({{8, 8, 8}, {9, 9, 9}});
    call("line.paste");
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.capture->capturedPointPos, zVec<double>(9, 9, 9));
}

TEST_F(LineBuffer, PasteOnALineReplacesItsPointInEachSection) {
    hold({flatPatch(3, 4)});
    captureLine(0, 2);
    fill(row(3, 7));
    call("line.paste");
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(doc.patches[0][n][2], row(3, 7)[n]);
        EXPECT_EQ(doc.patches[0][n][1].x, 1);
    }
    EXPECT_THAT(heard(), ElementsAre(aptNotice));
}

// What the command before did can still be taken back.
TEST_F(LineBuffer, PasteOfAWrongLengthOnALineIsRefusedAndLeavesUndo) {
    hold({flatPatch(3, 4)});
    captureLine(0, 2);
    fill(row(4, 7));
    const PatchList first = doc.patches;
    runWith("model.move", {{"deltaX", "1"}});
    const PatchList before = doc.patches;
    forget();
    call("line.paste");
    EXPECT_EQ(doc.patches, before);
    EXPECT_THAT(
        heard(),
        ElementsAre(aptNotice, "message: Paste is impossible. Number of points is not equal to number of sections"));
    EXPECT_TRUE(doc.patchUndoReady && doc.rebuildOnUndo);
    EXPECT_EQ(doc.undoPatches.copy(), first);
}

TEST_F(LineBuffer, PasteOnALineThatNotEverySectionReachesIsRefused) {
    hold({patchOf({3, 2, 3})});
    captureLine(0, 2);
    const PatchList before = doc.patches;
    for (const int count : {2, 3}) {
        fill(row(count, 7));
        call("line.paste");
        EXPECT_EQ(doc.patches, before);
    }
}

// ---- Points by hand, Clear, Reverse ---------------------------------------------------------------------------------

TEST_F(LineBuffer, GrowsByThePickedPointOfEachCall) {
    hold({flatPatch(3, 4)});
    arranged(doc).pickedPoint = {1, 2, 3};
    call("buffer.addPoint");
    arranged(doc).pickedPoint = {4, 5, 6};
    call("buffer.addPoint");
    EXPECT_EQ(doc.lineBuffer, (PointList{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_TRUE(doc.lineBufferFull);
    EXPECT_TRUE(doc.showBuffer);
    EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "redraw"));
}

TEST_F(LineBuffer, IsClearedAfterAQuestion) {
    fill(row(3, 0));
    ui.answers = {false, true};
    call("buffer.clear");
    EXPECT_EQ(doc.lineBuffer.size(), 3U);
    EXPECT_TRUE(doc.lineBufferFull);
    call("buffer.clear");
    EXPECT_THAT(doc.lineBuffer, IsEmpty());
    EXPECT_FALSE(doc.lineBufferFull);
    EXPECT_THAT(heard(), ElementsAre("question: All points from buffer will be deleted. Are you sure -> no",
                                     "question: All points from buffer will be deleted. Are you sure -> yes"));
}

TEST_F(LineBuffer, IsReversed) {
    fill({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    call("buffer.reverse");
    EXPECT_EQ(coordinates(doc.lineBuffer), (std::vector<double>{3, 2, 1}));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

// ---- Files ----------------------------------------------------------------------------------------------------------

TEST_F(LineBuffer, GoesToAFileAndBack) {
    const PointList points = {{1.0 / 3.0, -2, 1e-300}, {4, 5, 6}};
    fill(points);
    ui.files = {{folder / "curve.ext"}, {folder / "curve.ext"}};
    call("buffer.saveAs");
    EXPECT_EQ(fileText(folder / "curve.ext"), "3.3333333333333331e-01 -2.0000000000000000e+00 1.0000000000000000e-300\n"
                                              "4.0000000000000000e+00 5.0000000000000000e+00 6.0000000000000000e+00\n");
    doc.lineBuffer.clear();
    doc.lineBufferFull = false;
    call("buffer.open");
    EXPECT_EQ(doc.lineBuffer, points);
    EXPECT_TRUE(doc.lineBufferFull);
    EXPECT_TRUE(doc.showBuffer);
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", "chooser: Open -> 1"));
    for (const FileRequest& request : ui.requests) {
        EXPECT_EQ(request.proposed, "Line_buf.ext");
        ASSERT_EQ(request.types.size(), 1U);
        EXPECT_EQ(request.types[0].extension, "ext");
        EXPECT_EQ(request.types[0].typeName, "Velmora Geometry");
    }
}

TEST_F(LineBuffer, OpenCalledOffLeavesThePointsThatAreThere) {
    for (const bool full : {false, true}) {
        doc.lineBuffer = row(3, 0);
        doc.lineBufferFull = full;
        doc.showBuffer = false;
        call("buffer.open");
        EXPECT_EQ(doc.lineBuffer, row(3, 0));
        EXPECT_EQ(doc.lineBufferFull, full);
        EXPECT_FALSE(doc.showBuffer);
    }
}

TEST_F(LineBuffer, OpenOfAFileWithoutPointsKeepsTheFlag) {
    writeFileText(folder / "half.ext", "1 2\n");
    ui.files = {{folder / "half.ext"}};
    call("buffer.open");
    EXPECT_THAT(doc.lineBuffer, IsEmpty());
    EXPECT_FALSE(doc.lineBufferFull);
    EXPECT_FALSE(doc.showBuffer);
}

TEST_F(LineBuffer, OpenLeavesOutAPointThatIsNotComplete) {
    writeFileText(folder / "cut.ext", "1 2 3\n4 5\n");
    ui.files = {{folder / "cut.ext"}};
    call("buffer.open");
    EXPECT_EQ(doc.lineBuffer, (PointList{{1, 2, 3}}));
    EXPECT_THAT(heard(), ElementsAre("chooser: Open -> 1", "status: The last point in line 3 has 2 of its 3 numbers"));
    // What was left out stands in the file alone.
    ui.files = {{folder / "cut.ext"}};
    call("buffer.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1",
                                     "question: cut.ext holds more than was read. Overwrite it? -> no"));
    EXPECT_EQ(fileText(folder / "cut.ext"), "1 2 3\n4 5\n");
}

TEST_F(LineBuffer, OpenAndSaveSayWhatIsImpossible) {
    fill(row(1, 0));
    ui.files = {{folder / "absent" / "x.ext"}, {folder / "absent.ext"}};
    call("buffer.saveAs");
    call("buffer.open");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", "message: It is impossible to save current file",
                                     "chooser: Open -> 1", "message: It is impossible to open selected file"));
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_F(LineBuffer, SaveCancelledWritesNothing) {
    fill(row(1, 0));
    call("buffer.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 0"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

// ---- Merge and Match ------------------------------------------------------------------------------------------------

TEST_F(LineBuffer, MergeAppendsItToTheSection) {
    hold({flatPatch(3, 2)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    fill({{8, 8, 8}, {9, 9, 9}});
    call("buffer.merge");
    EXPECT_EQ(doc.patches[0][1], (PointList{{0, 1, 0}, {1, 1, 0}, {8, 8, 8}, {9, 9, 9}}));
    EXPECT_THAT(heard(),
                ElementsAre(aptNotice, "title: wing.skl", "status: Save writes " + (folder / "wing.skl").string()));
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
}

TEST_F(LineBuffer, MatchGivesTheSectionItsPointsInTheCloserDirection) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    fill({{2, 1.05, 0}, {1, 1.05, 0}, {0, 1.05, 0}});
    call("buffer.match");
    EXPECT_EQ(doc.patches[0][1], (PointList{{0, 1.05, 0}, {1, 1.05, 0}, {2, 1.05, 0}}));
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set section"));
}

TEST_F(LineBuffer, MatchWorksOnALine) {
    hold({flatPatch(3, 3)});
    captureLine(0, 1);
    fill({{1, 0, 0.05}, {1, 1, 0.05}, {1, 2, 0.05}});
    call("buffer.match");
    EXPECT_EQ(doc.patches[0][2], (PointList{{0, 2, 0}, {1, 2, 0.05}, {2, 2, 0}}));
}

TEST_F(LineBuffer, MatchIsImpossibleBeyondATenthAndWithAnotherCount) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    captureSection(0, 1);
    for (const PointList& points : {row(2, 1), row(3, 1)}) { // the second is half a unit away in z
        doc.patchUndoReady = false;
        fill(points);
        call("buffer.match");
        EXPECT_EQ(doc.patches, before);
        EXPECT_TRUE(doc.patchUndoReady);
        EXPECT_THAT(heard(), ElementsAre("message: Matching is impossible"));
    }
}

// ---- Parts of a section ---------------------------------------------------------------------------------------------

TEST_F(PartOfSection, PasteAfterDropsWhatFollowsThePoint) {
    hold({flatPatch(3, 4)});
    take(1, 1);
    fill(row(3, 1));
    choose("2");
    call("point.pastePart");
    EXPECT_EQ(numbers(1), (std::vector<double>{0, 1, 0, 1, 2}));
    EXPECT_EQ(doc.capture->capturedPoint, 1);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_THAT(heard(), ElementsAre("dialog: CBeforeAfter -> ok", "title: wing.skl",
                                     "status: Save writes " + (folder / "wing.skl").string()));
}

TEST_F(PartOfSection, PasteBeforeRaisesTheCapturedNumberByOneHoweverLongTheBuffer) {
    hold({flatPatch(3, 4)});
    take(1, 2);
    fill(row(3, 1));
    choose("1");
    call("point.pastePart");
    EXPECT_EQ(numbers(1), (std::vector<double>{0, 1, 2, 2, 3}));
    EXPECT_EQ(doc.capture->capturedPoint, 3);
}

TEST_F(PartOfSection, PasteAtTheEndsKeepsTheWholeSection) {
    hold({flatPatch(3, 3)});
    fill({{8, 0, 0}});
    take(0, 2);
    choose("2");
    call("point.pastePart");
    EXPECT_EQ(numbers(0), (std::vector<double>{0, 1, 2, 8}));
    take(1, 0);
    choose("1");
    call("point.pastePart");
    EXPECT_EQ(numbers(1), (std::vector<double>{8, 0, 1, 2}));
}

TEST_F(PartOfSection, PasteCancelledTakesNoSnapshot) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    take(1, 1);
    fill(row(3, 1));
    call("point.pastePart");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_TRUE(doc.undoPatches.empty());
}

TEST_F(PartOfSection, TheDialogOpensOnTheSideOfTheLastRunOfAnyCommand) {
    hold({flatPatch(3, 8)});
    Lines shown;
    ui.onDialog = [&shown](DialogForm& form) { shown.push_back(fieldText(*form.find("choice"))); };
    take(1, 4);
    ui.dialogs.push_back({});
    call("point.copyPart");
    EXPECT_TRUE(doc.partAfter && !doc.partBefore);
    choose("1");
    call("point.copyPart");
    EXPECT_TRUE(doc.partBefore && !doc.partAfter);
    choose("2");
    call("point.knifePart");
    call("point.pastePart"); // cancelled: the side stays
    EXPECT_TRUE(doc.partAfter && !doc.partBefore);
    EXPECT_THAT(shown, ElementsAre("2", "2", "1", "2"));
}

TEST_F(PartOfSection, KnifeMeansWhatGoesAway) {
    hold({flatPatch(3, 4)});
    take(0, 1);
    choose("2");
    call("point.knifePart");
    EXPECT_EQ(numbers(0), (std::vector<double>{0, 1}));
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CBeforeAfter -> ok", "title: wing.skl",
                            "status: Captured point: (Patch K=1, Section N=1, Point M=2) X=1.000000, Y=0.000000, "
                            "Z=0.000000 // Press right button to continue ",
                            "status: Save writes " + (folder / "wing.skl").string()));
    take(1, 2);
    choose("1");
    call("point.knifePart");
    EXPECT_EQ(numbers(1), (std::vector<double>{2, 3}));
    // The point at which was cut is the first one now.
    EXPECT_EQ(doc.capture->capturedPoint, 0);
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>{2, 1, 0}));
    EXPECT_TRUE(doc.capture->pointCaptured);
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Section N=2, Point M=1) X=2.000000, Y=1.000000, Z=0.000000 // "
                          "Press right button to continue ");
}

TEST_F(PartOfSection, KnifeBeforeTheFirstPointKeepsTheSection) {
    hold({flatPatch(3, 4)});
    const PatchList before = doc.patches;
    take(0, 0);
    choose("1");
    call("point.knifePart");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(PartOfSection, KnifeCancelledTakesNoSnapshotAndIsUndone) {
    hold({flatPatch(3, 4)});
    const PatchList before = doc.patches;
    take(0, 1);
    call("point.knifePart");
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_EQ(doc.patches, before);
    choose("2");
    call("point.knifePart");
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(PartOfSection, NothingReadsPastTheSectionWhenTheNumberLiesBeyondIt) {
    hold({flatPatch(3, 4)});
    take(1, 3);
    doc.patches[0][1].resize(1);
    const PatchList after = doc.patches;
    fill(row(2, 0));
    for (const auto command : {"point.knifePart", "point.copyPart", "point.pastePart", "point.reverseSection"}) {
        choose("2");
        call(command);
    }
    EXPECT_EQ(doc.patches, after);
}

TEST_F(PartOfSection, CopyMeansWhatIsCopiedAndTakesNoSnapshot) {
    hold({flatPatch(3, 4)});
    const PatchList before = doc.patches;
    take(1, 1);
    choose("1");
    call("point.copyPart");
    EXPECT_EQ(coordinates(doc.lineBuffer), (std::vector<double>{0, 1}));
    EXPECT_TRUE(doc.lineBufferFull);
    choose("2");
    call("point.copyPart");
    EXPECT_EQ(coordinates(doc.lineBuffer), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Section N=2, Point M=2) X=1.000000, Y=1.000000, Z=0.000000 // "
                          "Press right button to continue ");
}

TEST_F(PartOfSection, CopyCancelledLeavesTheBuffer) {
    hold({flatPatch(3, 4)});
    take(1, 1);
    fill(row(1, 9));
    call("point.copyPart");
    EXPECT_EQ(doc.lineBuffer, row(1, 9));
}

TEST_F(PartOfSection, ReversedKeepsTheSamePointCapturedWithoutUndo) {
    hold({flatPatch(3, 4)});
    take(1, 1);
    call("point.reverseSection");
    EXPECT_EQ(numbers(1), (std::vector<double>{3, 2, 1, 0}));
    EXPECT_EQ(numbers(0), (std::vector<double>{0, 1, 2, 3}));
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(*doc.pointAt(0, 1, doc.capture->capturedPoint), doc.capture->capturedPointPos);
    EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady);
    EXPECT_TRUE(doc.documentModified);
    EXPECT_THAT(heard(), IsEmpty());
}

// ---- Commands without a target --------------------------------------------------------------------------------------

TEST_F(LineBuffer, CommandsOnACurveThatIsNotThereDoNothing) {
    hold({flatPatch(3, 3)});
    const PatchList before = doc.patches;
    fill(row(3, 0));
    for (const auto& [patch, curve] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 3}}) {
        for (const bool section : {true, false}) {
            arranged(doc).sectionCaptured = arranged(doc).lineCaptured = false;
            section ? captureSection(patch, curve) : captureLine(patch, curve);
            call("line.paste");
            call("buffer.match");
            call("buffer.merge");
            call("point.pastePart");
            call("point.copyPart");
            call("point.knifePart");
            call("point.reverseSection");
        }
    }
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    EXPECT_THAT(heard(), IsEmpty());
}

} // namespace velmora::test
