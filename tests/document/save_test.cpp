#include "document_fixture.h"
#include "file_texts.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

const char* const cannotSave = "message: It is impossible to save current file";
const char* const overwriteAnswered = "question: wing.apt holds more than was read. Overwrite it? -> yes";
const char* const overwriteDeclined = "question: wing.apt holds more than was read. Overwrite it? -> no";
const char* const exitAnswered = "question: Save data before exit -> yes";
const char* const exitDeclined = "question: Save data before exit -> no";

class SaveTest : public DocumentTest {
protected:
    void openText(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        open(folder / name);
        forget();
    }
    void openApt(const std::string& name, const PatchList& list) { openText(name, aptText(list)); }
    void openSkl(const std::string& name, const PatchList& list) { openText(name, sklText(list)); }

    Lines saveAs(const std::string& name) {
        ui.files.push_back({folder / name});
        call("file.saveAs");
        return heard();
    }

    /// What the folder holds, with its folders, in order.
    Lines files() const {
        Lines names;
        for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
            if (entry.is_regular_file()) {
                names.push_back(fs::relative(entry.path(), folder.path()).string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// The model that the file gives when it is opened.
    PatchList reread(const std::string& name) const {
        RecordingUi other;
        VelmoraDoc reader(other, folder.path());
        reader.onOpenDocument(folder / name);
        return reader.patches;
    }

    Lines offered() {
        call("file.saveAs");
        Lines types;
        for (const FileType& type : ui.requests.back().types) {
            types.push_back(type.extension);
        }
        return types;
    }

    void removeFolder() { fs::remove_all(folder / "sub"); }
};

using Save = SaveTest;
using SaveAs = SaveTest;
using Leaving = SaveTest;
using IncompleteFile = SaveTest;

} // namespace

// ---- Save -----------------------------------------------------------------------------------------------------------

TEST_F(Save, WritesTheFormatOfTheKindWithSixteenDigits) {
    openApt("wing.apt", {flatPatch(2, 1, 0.5)});
    call("file.save");
    EXPECT_EQ(fileText(folder / "wing.apt"), "2 1\n"
                                             "0.0000000000000000e+00 0.0000000000000000e+00 5.0000000000000000e-01\n"
                                             "0.0000000000000000e+00 1.0000000000000000e+00 5.0000000000000000e-01\n");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_F(Save, WritesSklForASklModel) {
    openSkl("hull.skl", {patchOf({1, 2})});
    call("file.save");
    EXPECT_EQ(fileText(folder / "hull.skl"), "2\n1\n"
                                             "0.0000000000000000e+00 0.0000000000000000e+00 0.0000000000000000e+00\n"
                                             "2\n"
                                             "0.0000000000000000e+00 1.0000000000000000e+00 0.0000000000000000e+00\n"
                                             "1.0000000000000000e+00 1.0000000000000000e+00 0.0000000000000000e+00\n");
}

TEST_F(Save, GoesToTheFileAsItWasChosen) {
    fs::create_directory(folder / "Data");
    openApt("Data/Wing.APT", {flatPatch(2, 2)});
    doc.patches[0][0][0].x = 42;
    call("file.save");
    EXPECT_THAT(files(), ElementsAre("Data/Wing.APT"));
    EXPECT_EQ(reread("Data/Wing.APT"), doc.patches);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "data/wing.apt");
}

TEST_F(Save, ClearsModified) {
    openApt("wing.apt", {flatPatch(2, 2)});
    doc.documentModified = true;
    call("file.save");
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(Save, ThatFailsSaysSoAndLeavesTheModelChanged) {
    fs::create_directory(folder / "sub");
    openApt("sub/wing.apt", {flatPatch(2, 2)});
    removeFolder();
    doc.documentModified = true;
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre(cannotSave));
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_F(Save, NeverPutsSklTextIntoAnAptFile) {
    openApt("wing.apt", {flatPatch(2, 2)});
    const std::string before = fileText(folder / "wing.apt");
    doc.patches[0][0].push_back({9, 9, 9});
    doc.retitle();
    call("file.save");
    EXPECT_THAT(files(), ElementsAre("wing.apt", "wing.skl"));
    EXPECT_EQ(fileText(folder / "wing.apt"), before);
    EXPECT_EQ(reread("wing.skl"), doc.patches);
}

TEST_F(Save, OfARegularSklFileWritesAnAptFileAndLeavesTheOther) {
    openSkl("hull.skl", {flatPatch(3, 2)});
    const std::string before = fileText(folder / "hull.skl");
    call("file.save");
    EXPECT_THAT(files(), ElementsAre("hull.apt", "hull.skl"));
    EXPECT_EQ(fileText(folder / "hull.skl"), before);
    EXPECT_EQ(doc.modelFile.documentTitle, "hull.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "hull.apt");
}

TEST_F(Save, AfterAnAppendGoesToTheFirstFile) {
    fs::create_directory(folder / "sub");
    openApt("wing.apt", {flatPatch(2, 2)});
    const std::string tail = aptText({flatPatch(3, 3)});
    writeFileText(folder / "sub/tail.apt", tail);
    ui.files.push_back({folder / "sub/tail.apt"});
    call("file.append");
    call("file.save");
    EXPECT_EQ(reread("wing.apt"), doc.patches);
    EXPECT_EQ(fileText(folder / "sub/tail.apt"), tail);
}

TEST_F(Save, EndsTheTitleWrong) {
    openText("wing.apt", brokenSecondCompartment);
    EXPECT_EQ(doc.modelFile.documentTitle, "Wrong");
    ui.answers = {true};
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre(overwriteAnswered, "title: wing.apt"));
}

TEST_F(Save, AfterASaveAsToSklOfAnAptModelGoesBackToApt) {
    openApt("wing.apt", {flatPatch(2, 2)});
    saveAs("lines.skl");
    const std::string lines = fileText(folder / "lines.skl");
    doc.patches[0][0][0].x = 7;
    call("file.save");
    EXPECT_THAT(files(), ElementsAre("lines.apt", "lines.skl", "wing.apt"));
    EXPECT_EQ(fileText(folder / "lines.skl"), lines);
    EXPECT_EQ(reread("lines.apt"), doc.patches);
    EXPECT_EQ(doc.modelFile.documentTitle, "lines.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "lines.apt");
}

// ---- Save As --------------------------------------------------------------------------------------------------------

TEST_F(SaveAs, OffersTypesByTheKind) {
    openApt("Wing.apt", {flatPatch(2, 2)});
    EXPECT_THAT(offered(), ElementsAre("apt", "skl", "dat", "wrl", "stl"));
    doc.fileKind = FileKind::Skl;
    EXPECT_THAT(offered(), ElementsAre("skl"));
    doc.fileKind = FileKind::None;
    doc.structureKind = StructureKind::Unstructured;
    EXPECT_THAT(offered(), ElementsAre("dat", "wrl", "stl"));
    EXPECT_EQ(ui.requests.back().mode, ChooserMode::SaveAs);
    EXPECT_FALSE(ui.requests.back().multiple);
    EXPECT_EQ(ui.requests.back().proposed, folder / "Wing.apt");
}

TEST_F(SaveAs, CancelledChangesNothing) {
    openApt("wing.apt", {flatPatch(2, 2)});
    doc.documentModified = true;
    call("file.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 0"));
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
}

TEST_F(SaveAs, ToAptTakesTheNameAndRecordsTheDirectory) {
    fs::create_directory(folder / "Sub");
    openApt("wing.apt", {flatPatch(2, 2)});
    doc.documentModified = true;
    const Lines lines = saveAs("Sub/Fine.APT");
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], "chooser: Save As -> 1");
    EXPECT_EQ(lines[1], "title: fine.apt");
    ASSERT_TRUE(lines[2].starts_with("recent: "));
    EXPECT_TRUE(fs::equivalent(lines[2].substr(8), folder / "Sub")) << lines[2];
    // The file comes last and stands on top of the list.
    ASSERT_TRUE(lines[3].starts_with("recent: "));
    EXPECT_TRUE(fs::equivalent(lines[3].substr(8), folder / "Sub/Fine.APT")) << lines[3];
    EXPECT_EQ(lines[4], "status: Save writes " + (folder / "Sub/Fine.APT").string());
    EXPECT_FALSE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "sub/fine.apt");
    EXPECT_EQ(doc.modelFile.currentDirectory, shownFolder() + "sub/");
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_THAT(files(), ElementsAre("Sub/Fine.APT", "wing.apt"));
    EXPECT_EQ(reread("Sub/Fine.APT"), doc.patches);
}

TEST_F(SaveAs, ToSklKeepsTheKindApt) {
    openApt("wing.apt", {flatPatch(2, 2)});
    saveAs("lines.skl");
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "lines.skl");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "lines.skl");
    EXPECT_EQ(doc.modelFile.fileExtension, "skl");
    EXPECT_TRUE(fileText(folder / "lines.skl").starts_with("2\n2\n"));
}

TEST_F(SaveAs, OfASklModelToSklWritesIt) {
    openSkl("hull.skl", {patchOf({2, 3})});
    saveAs("other.skl");
    EXPECT_EQ(reread("other.skl"), doc.patches);
    EXPECT_EQ(doc.modelFile.documentTitle, "other.skl");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

TEST_F(SaveAs, OfASklModelToAptIsRefusedAndLeavesTheName) {
    openSkl("hull.skl", {patchOf({2, 3})});
    doc.documentModified = true;
    EXPECT_THAT(saveAs("Other.apt"),
                ElementsAre("chooser: Save As -> 1", "message: This model cannot be saved as apt"));
    EXPECT_THAT(files(), ElementsAre("hull.skl"));
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "hull.skl");
    EXPECT_EQ(doc.modelFile.fileExtension, "skl");
    EXPECT_EQ(doc.modelFile.documentTitle, "hull.skl");
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(SaveAs, ToAnUnknownTypeIsRefusedAndLeavesTheName) {
    openApt("wing.apt", {flatPatch(2, 2)});
    EXPECT_THAT(saveAs("wing.txt"), ElementsAre("chooser: Save As -> 1", "message: This model cannot be saved as txt"));
    EXPECT_THAT(files(), ElementsAre("wing.apt"));
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(SaveAs, OfAGridWithoutATriangleThatHasANormalToStlIsRefused) {
    openApt("dot.apt", {{{{1, 2, 3}, {1, 2, 3}}, {{1, 2, 3}, {1, 2, 3}}}});
    EXPECT_THAT(saveAs("dot.stl"), ElementsAre("chooser: Save As -> 1", "message: This model cannot be saved as stl"));
    EXPECT_THAT(files(), ElementsAre("dot.apt"));
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.modelFile.documentTitle, "dot.apt");
}

TEST_F(SaveAs, ThatFailsLeavesTheNameAndTheModelChanged) {
    openApt("wing.apt", {flatPatch(2, 2)});
    doc.documentModified = true;
    EXPECT_THAT(saveAs("absent/fine.apt"), ElementsAre("chooser: Save As -> 1", cannotSave));
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_THAT(files(), ElementsAre("wing.apt"));
}

TEST_F(SaveAs, EndsTheTitleWrong) {
    openText("wing.apt", brokenSecondCompartment);
    EXPECT_THAT(saveAs("other.apt"), testing::Contains("title: other.apt"));
    doc.retitle();
    EXPECT_EQ(doc.modelFile.documentTitle, "other.apt");
    doc.patches[0][0].pop_back(); // a model whose title is wrong would keep its title
    doc.retitle();
    EXPECT_EQ(doc.modelFile.documentTitle, "other.skl");
}

// ---- Leaving --------------------------------------------------------------------------------------------------------

TEST_F(Leaving, AnEmptyDocumentAsksNothing) {
    doc.documentModified = true;
    EXPECT_TRUE(doc.saveModified());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Leaving, AnUnmodifiedModelAsksNothing) {
    openApt("wing.apt", {flatPatch(2, 2)});
    EXPECT_TRUE(doc.saveModified());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Leaving, AnsweredWithNoSavesNothing) {
    openApt("wing.apt", {flatPatch(2, 2)});
    const std::string before = fileText(folder / "wing.apt");
    doc.patches[0][0][0].x = 5;
    doc.documentModified = true;
    EXPECT_TRUE(doc.saveModified());
    EXPECT_THAT(heard(), ElementsAre(exitDeclined));
    EXPECT_EQ(fileText(folder / "wing.apt"), before);
}

TEST_F(Leaving, AnsweredWithYesSaves) {
    openApt("wing.apt", {flatPatch(2, 2)});
    doc.patches[0][0][0].x = 5;
    doc.documentModified = true;
    ui.answers = {true};
    EXPECT_TRUE(doc.saveModified());
    EXPECT_THAT(heard(), ElementsAre(exitAnswered));
    EXPECT_EQ(reread("wing.apt"), doc.patches);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(Leaving, StaysOpenWhenSavingFails) {
    fs::create_directory(folder / "sub");
    openApt("sub/wing.apt", {flatPatch(2, 2)});
    removeFolder();
    doc.documentModified = true;
    ui.answers = {true};
    EXPECT_FALSE(doc.saveModified());
    EXPECT_THAT(heard(), ElementsAre(exitAnswered, cannotSave));
}

TEST_F(Leaving, StaysOpenWhenOverwritingIsDeclined) {
    openText("wing.apt", brokenSecondCompartment);
    doc.documentModified = true;
    ui.answers = {true, false};
    EXPECT_FALSE(doc.saveModified());
    EXPECT_THAT(heard(), ElementsAre(exitAnswered, overwriteDeclined));
    EXPECT_EQ(fileText(folder / "wing.apt"), brokenSecondCompartment);
    EXPECT_TRUE(doc.documentModified);
}

// ---- Files that hold more than the model ----------------------------------------------------------------------------

TEST_F(IncompleteFile, IsNotOverwrittenWithoutAYes) {
    openText("wing.apt", brokenSecondCompartment);
    doc.documentModified = true;
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre(overwriteDeclined));
    EXPECT_EQ(fileText(folder / "wing.apt"), brokenSecondCompartment);
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.documentTitle, "Wrong");
}

TEST_F(IncompleteFile, IsAskedAboutOnce) {
    openText("wing.apt", brokenSecondCompartment);
    ui.answers = {true};
    call("file.save");
    EXPECT_EQ(reread("wing.apt"), doc.patches);
    forget();
    call("file.save");
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(IncompleteFile, OfSklIsAskedAboutToo) {
    // The second section of the second compartment is missing, and the sections differ in length.
    openText("hull.skl", "2\n1\n0 0 0\n2\n0 0 0\n1 0 0\n2\n1\n0 0 0\n");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("question: hull.skl holds more than was read. Overwrite it? -> no"));
}

TEST_F(IncompleteFile, IsAskedAboutBySaveAsOverIt) {
    openText("wing.apt", brokenSecondCompartment);
    doc.documentModified = true;
    EXPECT_THAT(saveAs("wing.apt"), ElementsAre("chooser: Save As -> 1", overwriteDeclined));
    EXPECT_EQ(fileText(folder / "wing.apt"), brokenSecondCompartment);
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(IncompleteFile, IsAskedAboutUnderTheNameOfALinkToo) {
    openText("wing.apt", brokenSecondCompartment);
    fs::create_symlink(folder / "wing.apt", folder / "link.apt");
    EXPECT_THAT(saveAs("link.apt"), ElementsAre("chooser: Save As -> 1",
                                                "question: link.apt holds more than was read. Overwrite it? -> no"));
    EXPECT_EQ(fileText(folder / "wing.apt"), brokenSecondCompartment);
    ui.answers = {true};
    saveAs("link.apt");
    EXPECT_EQ(reread("wing.apt"), doc.patches);
    EXPECT_EQ(saveAs("wing.apt")[1], "title: wing.apt"); // no question any more
}

TEST_F(IncompleteFile, IsNoMatterForASaveAsElsewhere) {
    openText("wing.apt", brokenSecondCompartment);
    EXPECT_EQ(saveAs("other.apt")[1], "title: other.apt");
    EXPECT_EQ(reread("other.apt"), doc.patches);
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("status: Save writes " + (folder / "other.apt").string()));
    EXPECT_EQ(fileText(folder / "wing.apt"), brokenSecondCompartment);
}

TEST_F(IncompleteFile, ThatWasAppendedIsNoMatterForTheFirstFile) {
    openApt("wing.apt", {flatPatch(2, 2)});
    writeFileText(folder / "tail.apt", brokenSecondCompartment);
    ui.files.push_back({folder / "tail.apt"});
    call("file.append");
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("title: wing.apt"));
    EXPECT_EQ(reread("wing.apt"), doc.patches);
}

TEST_F(IncompleteFile, IsStillAskedAboutAfterNewWasUndone) {
    openText("wing.apt", brokenSecondCompartment);
    ui.answers = {true};
    call("file.new");
    call("patch.undo");
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre(overwriteDeclined));
    EXPECT_EQ(fileText(folder / "wing.apt"), brokenSecondCompartment);
}

TEST_F(IncompleteFile, IsStillAskedAboutAfterAnOpenWasUndone) {
    openText("wing.apt", brokenSecondCompartment);
    ui.answers = {true};
    writeFileText(folder / "other.apt", aptText({flatPatch(2, 2)}));
    ui.files.push_back({folder / "other.apt"});
    call("file.open");
    call("patch.undo");
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre(overwriteDeclined));
}

TEST_F(IncompleteFile, ThatWasRepairedAndOpenedAgainIsSavedWithoutAQuestion) {
    openText("wing.apt", brokenSecondCompartment);
    writeFileText(folder / "wing.apt", aptText({flatPatch(2, 2)}));
    ui.answers = {true};
    ui.files.push_back({folder / "wing.apt"});
    call("file.open");
    forget();
    call("file.save");
    EXPECT_THAT(heard(), IsEmpty());
}

} // namespace velmora::test
