#include <algorithm>

#include "arranged_capture.h"
#include "file_texts.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const removalAnswered = "question: Current geometry will be removed. Are you sure -> yes";
const char* const removalDeclined = "question: Current geometry will be removed. Are you sure -> no";
const char* const cancelled = "message: Open procedure is canceled";

class FileCommands : public StateTest {
protected:
    std::filesystem::path write(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        return folder / name;
    }

    std::filesystem::path writeApt(const std::string& name, const PatchList& list) {
        return write(name, aptText(list));
    }

    std::filesystem::path writeSkl(const std::string& name, const PatchList& list) {
        return write(name, sklText(list));
    }

    /// Runs Open on these files and gives what was heard, the recent files left out.
    Lines open(const std::vector<std::filesystem::path>& paths) {
        ui.files.push_back(paths);
        call("file.open");
        Lines lines = heard();
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const std::string& line) { return line.starts_with("recent: "); }),
                    lines.end());
        return lines;
    }

    /// The same without the line of the chooser.
    Lines openHeard(const std::vector<std::filesystem::path>& paths) {
        Lines lines = open(paths);
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const std::string& line) { return line.starts_with("chooser: "); }),
                    lines.end());
        return lines;
    }

    void expectKinds(StructureKind structure, FileKind file) const {
        EXPECT_EQ(doc.structureKind, structure);
        EXPECT_EQ(doc.fileKind, file);
        EXPECT_EQ(doc.secondKind, SecondKind::None);
    }

    void armEverything() {
        arranged(doc).pointCaptureArmed = arranged(doc).pointCaptured = arranged(doc).freePointArmed =
            arranged(doc).freePointHeld = true;
        arranged(doc).patchCaptureArmed = arranged(doc).patchCaptured = true;
        arranged(doc).sectionCaptureArmed = arranged(doc).sectionCaptured = true;
        doc.capture.renumberPatch(1);
        doc.capture.renumberSection(1);
        doc.capture.renumberPoint(1, 1);
        addToBlock(0);
    }

    void expectIdle() const {
        EXPECT_FALSE(doc.capture->pointRegimeActive());
        EXPECT_FALSE(doc.capture->curveRegimeActive());
        EXPECT_FALSE(doc.capture->patchRegimeActive());
        EXPECT_EQ(doc.blockCount, 0);
        for (const std::int32_t number :
             {doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint,
              doc.capture->capturedSection, doc.capture->capturedLine}) {
            EXPECT_EQ(number, -1);
        }
    }
};

using New = FileCommands;
using Open = FileCommands;
using OpenList = FileCommands;
using FailedRead = FileCommands;
using OpenByPath = FileCommands;

} // namespace

// ---- New ------------------------------------------------------------------------------------------------------------

TEST_F(New, OfAnEmptyDocumentShowsThePointTableWithoutAQuestion) {
    call("file.new");
    EXPECT_THAT(heard(), ElementsAre("dialog: CRegularInput -> cancel"));
    EXPECT_FALSE(doc.patchUndoReady);
}

TEST_F(New, AnsweredWithNoChangesNothing) {
    hold({flatPatch(2, 3)});
    captureSection(0, 1);
    const PatchList before = doc.patches;
    call("file.new");
    EXPECT_THAT(heard(), ElementsAre(removalDeclined));
    EXPECT_EQ(doc.patches, before);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_TRUE(doc.capture->sectionCaptured);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_FALSE(doc.documentModified);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(New, AnsweredWithYesEmptiesTheDocument) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    doc.showBlockOnly = doc.rebuildOnUndo = true;
    doc.fieldLoaded = doc.fieldMode = doc.cbcAppended = doc.gridNamed = true;
    doc.fieldPatches = {flatPatch(2, 2)};
    ui.answers = {true};
    call("file.new");
    EXPECT_EQ(ui.transcript.front(), removalAnswered);
    EXPECT_TRUE(doc.patches.empty());
    expectKinds(StructureKind::None, FileKind::None);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_TRUE(doc.fieldPatches.empty());
    for (const bool flag :
         {doc.showBlockOnly, doc.rebuildOnUndo, doc.fieldLoaded, doc.fieldMode, doc.cbcAppended, doc.gridNamed}) {
        EXPECT_FALSE(flag);
    }
    EXPECT_THAT(view.calls, testing::Contains("redraw"));
}

TEST_F(New, LeavesTheRegimes) {
    hold({flatPatch(2, 3)});
    armEverything();
    ui.answers = {true};
    call("file.new");
    expectIdle();
}

TEST_F(New, LetsGoOfTheCapturedSectionAndOfTheZBlock) {
    hold({flatPatch(2, 3), flatPatch(2, 2)});
    addToBlock(1);
    doc.capture.holdBlock();
    captureSection(1, 1);
    ui.answers = {true};
    call("file.new");
    expectIdle();
    EXPECT_EQ(doc.status, idlePrompt);
}

TEST_F(New, OfAModelSeenByItsZBlockAloneShowsTheNextOneWhole) {
    hold({flatPatch(2, 3), flatPatch(2, 2)});
    addToBlock(1);
    doc.capture.holdBlock();
    doc.showBlockOnly = true;
    ui.answers = {true};
    call("file.new");
    EXPECT_FALSE(doc.showBlockOnly);
    EXPECT_EQ(doc.blockCount, 0);
}

TEST_F(New, NamesTheModelInTheDocumentsFolderWhereverTheOneBeforeStood) {
    std::filesystem::create_directory(folder / "sub");
    open({writeApt("sub/wing.apt", {flatPatch(2, 3)})});
    ASSERT_TRUE(doc.modelFile.currentDirectory.ends_with("/sub/"));
    ui.answers = {true};
    ui.onRegularInput = [](CRegularInput& table) {
        EXPECT_TRUE(table.chooseAction(CRegularInput::InputAfter));
        table.typed = {1, 2, 3};
        table.act([](CRegularFind&) { return false; });
        return true;
    };
    call("file.new");
    ASSERT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(doc.modelFile.currentDirectory, lowerCase(folder.path().string()) + "/");
    EXPECT_EQ(doc.modelFile.currentPath, doc.modelFile.currentDirectory + doc.modelFile.documentTitle);
}

TEST_F(New, CanBeUndone) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    ui.answers = {true};
    call("file.new");
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.boxMax, zVec<double>(2, 1, 0));
}

// ---- Open -----------------------------------------------------------------------------------------------------------

TEST_F(Open, OffersEightTypesInOrder) {
    call("file.open");
    ASSERT_EQ(ui.requests.size(), 1U);
    const FileRequest& request = ui.requests.front();
    EXPECT_EQ(request.mode, ChooserMode::Open);
    EXPECT_TRUE(request.multiple);
    Lines types;
    for (const FileType& type : request.types) {
        types.push_back(type.extension + " " + type.typeName);
    }
    EXPECT_THAT(types, ElementsAre("apt Geometry", "skl Sections", "dat TechPlot", "wrl Unstructured",
                                   "stl Unstructured", "apm Markers", "fld FlowField", "grd Unstructured"));
}

TEST_F(Open, ReadsAnAptFile) {
    const PatchList model = {flatPatch(2, 3), flatPatch(4, 2, 5.0)};
    EXPECT_THAT(open({writeApt("wing.apt", model)}), ElementsAre("chooser: Open -> 1", "title: wing.apt"));
    EXPECT_EQ(doc.patches, model);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
    EXPECT_EQ(doc.modelFile.currentDirectory, shownFolder());
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_EQ(doc.boxMax, zVec<double>(2, 3, 5));
    EXPECT_TRUE(doc.surfaceMode);
    EXPECT_FALSE(doc.documentModified);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_THAT(view.calls, testing::IsSupersetOf({"bounds", "redraw"}));
    EXPECT_EQ(ui.busyDepth, 0);
    EXPECT_EQ(ui.busyCalls, 1);
}

TEST_F(Open, ReadsASklFile) {
    const PatchList model = {patchOf({3, 2, 4})};
    EXPECT_THAT(openHeard({writeSkl("hull.skl", model)}), ElementsAre("title: hull.skl"));
    EXPECT_EQ(doc.patches, model);
    expectKinds(StructureKind::Structured, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "hull.skl");
}

TEST_F(Open, LowersTitleAndPathButKeepsTheFilesSpelling) {
    std::filesystem::create_directory(folder / "Data");
    openHeard({writeApt("Data/Wing.APT", {flatPatch(2, 3)})});
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "data/wing.apt");
    EXPECT_EQ(doc.modelFile.currentDirectory, shownFolder() + "data/");
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "Data/Wing.APT");
    expectKinds(StructureKind::Structured, FileKind::Apt);
}

TEST_F(Open, OfARegularSklFileTakesTheKindAndTitleApt) {
    EXPECT_THAT(
        openHeard({writeSkl("hull.skl", {flatPatch(3, 4)})}),
        ElementsAre("title: hull.skl", "title: hull.apt", "status: Save writes " + (folder / "hull.apt").string()));
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "hull.apt");
}

TEST_F(Open, OfAnAptFileWithAPatchOfOneSectionTakesTheKindTitleAndPathSkl) {
    EXPECT_THAT(
        openHeard({writeApt("wing.apt", {flatPatch(2, 3), flatPatch(1, 3)})}),
        ElementsAre("title: wing.apt", "title: wing.skl", "status: Save writes " + (folder / "wing.skl").string()));
    expectKinds(StructureKind::Structured, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.skl");
}

TEST_F(Open, CancelledWithoutAModelChangesNothing) {
    EXPECT_THAT(open({}), ElementsAre("chooser: Open -> 0"));
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    EXPECT_EQ(doc.modelFile.currentPath, "");
    expectKinds(StructureKind::None, FileKind::None);
}

TEST_F(Open, AnsweredWithNoStopsBeforeTheChooser) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    EXPECT_THAT(open({folder / "other.apt"}), ElementsAre(removalDeclined));
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_FALSE(doc.patchUndoReady);
}

// The user's data win: the yes is to another model, and there is none.
TEST_F(Open, CancelledAfterYesLeavesTheModel) {
    hold({flatPatch(2, 3)});
    armEverything();
    const PatchList before = doc.patches;
    doc.showBlockOnly = doc.rebuildOnUndo = doc.fieldOpening = true;
    ui.answers = {true};
    const Lines lines = open({});
    EXPECT_THAT(lines, ElementsAre(removalAnswered, "chooser: Open -> 0"));
    EXPECT_EQ(doc.patches, before);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_TRUE(doc.showBlockOnly && doc.rebuildOnUndo && doc.fieldOpening);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Open, OverAModelReplacesItAndCanBeUndone) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    const PatchList model = {flatPatch(5, 5)};
    ui.answers = {true};
    EXPECT_THAT(open({writeApt("body.apt", model)}),
                ElementsAre(removalAnswered, "chooser: Open -> 1", "title: body.apt"));
    EXPECT_EQ(doc.patches, model);
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(Open, LeavesTheRegimesOfTheModelBefore) {
    hold({flatPatch(2, 3)});
    armEverything();
    ui.answers = {true};
    open({writeApt("body.apt", {flatPatch(3, 3)})});
    expectIdle();
}

TEST_F(Open, OfAnEmptyAptFileIsCancelledAndGivesNoTitle) {
    EXPECT_THAT(openHeard({write("none.apt", "")}), ElementsAre(cancelled));
    expectKinds(StructureKind::None, FileKind::None);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
}

TEST_F(Open, OfAnEmptySklFileIsCancelledAndGivesNoTitle) {
    EXPECT_THAT(openHeard({write("none.skl", "")}), ElementsAre(cancelled));
    expectKinds(StructureKind::None, FileKind::None);
}

TEST_F(Open, OfAnUnsupportedTypeSaysSoAndIsCancelled) {
    for (const char* name : {"markers.apm", "flow.fld", "notes.txt", "noextension"}) {
        EXPECT_THAT(openHeard({write(name, "2 2\n")}),
                    ElementsAre("message: This file's type is not supported by Sorvane", cancelled))
            << name;
        expectKinds(StructureKind::None, FileKind::None);
        EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    }
}

TEST_F(Open, OfAFileThatIsNotThereIsCancelled) {
    EXPECT_THAT(openHeard({folder / "absent.apt"}),
                ElementsAre("message: It is impossible to open selected file", cancelled));
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    EXPECT_THAT(openHeard({folder / "absent.skl"}),
                ElementsAre("message: It is impossible to open selected file", cancelled));
}

TEST_F(Open, TellsTheCountsOfAModelThatWasThinned) {
    // 201,004 points are a little too many, so every second point of a long section stays, and its last.
    const int points = 100502;
    std::string text = "2 " + std::to_string(points) + "\n";
    for (int i = 0; i < 2 * points; ++i) {
        text += "0 0 0\n";
    }
    showStatus("before");
    open({write("large.apt", text)});
    EXPECT_THAT(countsOf(doc.patches.at(0)), ElementsAre(50252, 50252));
    EXPECT_NE(doc.status.find("201004"), std::string::npos) << doc.status;
    EXPECT_NE(doc.status.find("100504"), std::string::npos) << doc.status;
}

TEST_F(Open, OfAModelThatWasReadWholeTellsNoCounts) {
    showStatus("before");
    open({writeApt("wing.apt", {flatPatch(70, 70)})});
    EXPECT_EQ(doc.status, "For Help, press F1");
}

// ---- List mode ------------------------------------------------------------------------------------------------------

TEST_F(OpenList, ReadsFilesOfTheFirstOnesTypeIntoOneModelAndTellsOfOthers) {
    const Patch first = flatPatch(2, 2);
    const Patch second = flatPatch(3, 3, 1.0);
    EXPECT_THAT(
        openHeard({writeApt("a.apt", {first}), writeSkl("b.skl", {patchOf({4, 5})}), writeApt("c.APT", {second})}),
        ElementsAre("title: a.apt", "title: c.apt",
                    "status: b.skl was not opened: it is of another type than the first. Save writes " +
                        (folder / "c.APT").string()));
    EXPECT_EQ(doc.patches, (PatchList{first, second}));
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "c.apt");
}

TEST_F(OpenList, TakesPathAndExtensionOfLoadedFilesOnly) {
    openHeard({writeApt("a.apt", {flatPatch(2, 2)}), writeSkl("b.skl", {patchOf({4, 5})})});
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "a.apt");
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_EQ(doc.modelFile.documentTitle, "a.apt");
}

TEST_F(OpenList, OfSklFilesReadsThemAll) {
    openHeard({writeSkl("a.skl", {patchOf({2, 3})}), writeApt("b.apt", {flatPatch(2, 2)}),
               writeSkl("c.skl", {flatPatch(2, 2)})});
    EXPECT_EQ(doc.patches.size(), 2U);
    expectKinds(StructureKind::Structured, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "c.skl");
}

TEST_F(OpenList, StopsAtAFirstFileThatGivesNoModel) {
    EXPECT_THAT(openHeard({write("a.apm", ""), writeApt("b.apt", {flatPatch(2, 2)})}),
                ElementsAre("message: This file's type is not supported by Sorvane", cancelled,
                            "status: b.apt was not opened: the first file gave no model"));
    EXPECT_TRUE(doc.patches.empty());
}

TEST_F(OpenList, KeepsWhatItHasWhenALaterFileIsWrong) {
    EXPECT_THAT(openHeard({writeApt("a.apt", {flatPatch(2, 2)}), write("b.apt", "2 2\n0 0 0\n")}),
                testing::Contains("message: Body of APT file is wrong. Compartment N= 1"));
    EXPECT_EQ(doc.patches.size(), 1U);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    // Nothing of the second became the model, and so it does not give its name.
    EXPECT_EQ(doc.modelFile.documentTitle, "a.apt");
    EXPECT_EQ(saveTarget(), folder / "a.apt");
}

// ---- Reads that fail ------------------------------------------------------------------------------------------------

namespace {

struct WrongFile {
    const char* name;
    const char* file;
    const char* text;
    std::vector<std::string> messages;
    std::size_t patches;
};

class WrongFiles : public FileCommands, public testing::WithParamInterface<WrongFile> {};

const WrongFile wrongFiles[] = {
    {"AptWithTooFewLines",
     "a.apt",
     "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n2 2\n0 0 0\n",
     {"message: Body of APT file is wrong. Compartment N= 2", cancelled},
     0},
    {"AptWithABadPoint", "a.apt", brokenSecondCompartment, {"message: Body of APT file is wrong. Compartment N= 2"}, 1},
    {"AptWithABadHeader",
     "a.apt",
     "2 99999999999\n0 0 0\n",
     {"message: Header of APT file is wrong. Compartment N= 1",
      "message: Header of APT file is wrong. Compartment N= 1", cancelled},
     0},
    {"SklWithABadLineHeader",
     "a.skl",
     "1\n1\n0 0 0\n2\n1\n0 0 0\nx\n",
     {"message: Line header of SLK file is wrong. Compartment N= 2"},
     1},
    {"SklWithABadPoint",
     "a.skl",
     "2\n1\n0 0 0\n2\n0 0 0\n1 0\n",
     {"message: Body of SLK file is wrong. Compartment N= 1", cancelled},
     0},
};

} // namespace

TEST_P(WrongFiles, GetTheirMessagesAndTheTitleWrongWhereAPartBecameTheModel) {
    Lines lines = openHeard({write(GetParam().file, GetParam().text)});
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line) { return !line.starts_with("message: "); }),
                lines.end());
    EXPECT_EQ(lines, GetParam().messages);
    EXPECT_EQ(doc.patches.size(), GetParam().patches);
    EXPECT_EQ(doc.structureKind, GetParam().patches == 0 ? StructureKind::None : StructureKind::Structured);
    EXPECT_EQ(doc.modelFile.documentTitle, GetParam().patches == 0 ? "Untitled" : "Wrong");
}

TEST_P(WrongFiles, AreSaidTheSameWayByPath) {
    StateTest::open(write(GetParam().file, GetParam().text));
    Lines lines = heard();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line) { return !line.starts_with("message: "); }),
                lines.end());
    EXPECT_EQ(lines, GetParam().messages);
    EXPECT_EQ(doc.modelFile.documentTitle, GetParam().patches == 0 ? "Untitled" : "Wrong");
}

INSTANTIATE_TEST_SUITE_P(Files, WrongFiles, testing::ValuesIn(wrongFiles),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(FailedRead, LeavesThePatchesBeforeItWithTheirKind) {
    openHeard({write("a.apt", brokenSecondCompartment)});
    EXPECT_EQ(doc.patches, (PatchList{flatPatch(2, 2)}));
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_TRUE(doc.surfaceMode);
}

TEST_F(FailedRead, TellsTheCountsOfWhatWasReadInPart) {
    openHeard({write("a.apt", brokenSecondCompartment)});
    EXPECT_NE(doc.status.find("8"), std::string::npos) << doc.status;
    EXPECT_NE(doc.status.find("4"), std::string::npos) << doc.status;
}

TEST_F(FailedRead, KeepsTheTitleWrongThroughEditsAndUndo) {
    openHeard({write("a.apt", brokenSecondCompartment)});
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.patches[0][0].pop_back();
    doc.retitle();
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "Wrong");
    call("patch.undo");
    EXPECT_EQ(doc.modelFile.documentTitle, "Wrong");
}

TEST_F(FailedRead, LosesTheTitleWrongAtTheNextOpen) {
    openHeard({write("a.apt", brokenSecondCompartment)});
    ui.answers = {true};
    EXPECT_THAT(openHeard({writeApt("b.apt", {flatPatch(2, 2)})}), testing::Contains("title: b.apt"));
    EXPECT_EQ(doc.modelFile.documentTitle, "b.apt");
}

TEST_F(FailedRead, ThatGaveNothingLeavesTheTitle) {
    openHeard({write("a.apt", "2 2\n")});
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    EXPECT_EQ(doc.status, "Patch 1: its header tells of 4 lines of points, which end in line 2; and 1 more");
    EXPECT_THAT(openHeard({writeApt("b.apt", {flatPatch(2, 2)})}), testing::Contains("title: b.apt"));
    doc.retitle();
    EXPECT_EQ(doc.modelFile.documentTitle, "b.apt");
}

// ---- Opening by path ------------------------------------------------------------------------------------------------

TEST_F(OpenByPath, AsksNothingAndRecordsThePathAsChosen) {
    hold({flatPatch(2, 3)});
    armEverything();
    const PatchList model = {flatPatch(4, 4)};
    const auto path = writeApt("Body.APT", model);
    StateTest::open(path);
    Lines lines = heard();
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& line) { return line.starts_with("status: "); }),
                lines.end());
    EXPECT_THAT(lines, ElementsAre("title: body.apt", "recent: " + path.string()));
    EXPECT_EQ(doc.patches, model);
    EXPECT_TRUE(ui.requests.empty());
    EXPECT_TRUE(doc.surfaceMode);
    EXPECT_EQ(doc.boxMax, zVec<double>(3, 3, 0));
    expectIdle();
}

TEST_F(OpenByPath, ForgetsWhatWasLoadedBefore) {
    hold({flatPatch(2, 3)});
    doc.secondKind = SecondKind::Wrl;
    doc.fieldLoaded = doc.fieldMode = doc.fieldOpening = true;
    StateTest::open(writeApt("body.apt", {flatPatch(4, 4)}));
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_FALSE(doc.fieldLoaded || doc.fieldMode || doc.fieldOpening);
    EXPECT_EQ(doc.modelFile.documentTitle, "body.apt");
}

TEST_F(OpenByPath, OfAFileThatGivesNoModelIsCancelledAfterTheReadersMessageAndLeavesTheModel) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    StateTest::open(folder / "absent.apt");
    const Lines lines = heard();
    const auto reader = std::find(lines.begin(), lines.end(), "message: It is impossible to open selected file");
    const auto command = std::find(lines.begin(), lines.end(), cancelled);
    ASSERT_NE(reader, lines.end());
    ASSERT_NE(command, lines.end());
    EXPECT_LT(reader, command);
    EXPECT_EQ(doc.patches, before);
    expectKinds(StructureKind::Structured, FileKind::Apt);
}

TEST_F(OpenByPath, OfAFileWithoutAPointLeavesTheModel) {
    hold({flatPatch(2, 3)});
    doc.documentModified = true;
    writeFileText(folder / "empty.skl", "1\n-2\n");
    StateTest::open(folder / "empty.skl");
    EXPECT_THAT(heard(), testing::Contains(cancelled));
    EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 3)});
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(OpenByPath, OfAnUnsupportedTypeIsCancelled) {
    StateTest::open(folder / "notes.txt");
    const Lines lines = heard();
    EXPECT_EQ(lines.front(), "message: This file's type is not supported by Sorvane");
    EXPECT_EQ(lines.back(), cancelled);
}

TEST_F(OpenByPath, UndoBringsTheModelBackUnderItsOwnFile) {
    const auto wing = writeApt("wing.apt", {flatPatch(2, 3)});
    const auto body = writeApt("body.apt", {flatPatch(4, 4)});
    StateTest::open(wing);
    savePointUndo();
    doc.pointUndoReady = true;
    StateTest::open(body);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.pointUndoReady);
    EXPECT_TRUE(doc.pointUndoPatches.empty());
    call("patch.undo");
    EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 3)});
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    const std::string before = fileText(body);
    call("file.save");
    EXPECT_EQ(fileText(body), before);
}

TEST_F(OpenByPath, IntoAnEmptyDocumentLeavesNothingToUndo) {
    StateTest::open(writeApt("body.apt", {flatPatch(4, 4)}));
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_TRUE(doc.undoPatches.empty());
}

TEST_F(Open, UndoAfterItNeverSavesOverTheFileOpenedLast) {
    const auto wing = writeApt("wing.apt", {flatPatch(2, 3)});
    const auto broken = write("broken.apt", "2 2\n0 0 0\n");
    StateTest::open(wing);
    ui.answers = {true};
    open({broken});
    call("patch.undo");
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    call("file.save");
    EXPECT_EQ(fileText(broken), "2 2\n0 0 0\n");
}

TEST_F(Open, OfAFileWithTextBehindItsEndAsksBeforeSavingOverIt) {
    const std::string text = "2 1\n0 0 0\n1 0 0\nmore\n";
    const auto path = write("more.apt", text);
    StateTest::open(path);
    EXPECT_EQ(doc.modelFile.documentTitle, "more.apt");
    ui.answers = {false};
    call("file.save");
    EXPECT_EQ(fileText(path), text);
    EXPECT_EQ(ui.count("question: more.apt holds more than was read. Overwrite it? -> no"), 1U);
}

} // namespace velmora::test
