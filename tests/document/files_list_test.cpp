#include <algorithm>
#include <filesystem>
#include <sstream>

#include "DialogValues.h"
#include "file_types.h"
#include "state_fixture.h"
#include "volumes.h"

namespace velmora::test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// A folder with files of several types and two folders in it, and its own "drives".
class PlacesTest : public testing::Test {
protected:
    PlacesTest() {
        for (const char* name : {"wing.apt", "Body.SKL", "flow.dat", "scene.vrml", "marks.apm", "notes.txt", "plain"}) {
            writeFileText(folder / name, "x");
        }
        fs::create_directories(folder / "b inner" / "deep");
        fs::create_directory(folder / "A outer");
        fs::create_directory(folder / ".hidden");
    }

    VolumeList volumes() {
        return [this] { return mounted; };
    }

    dlgFolder chooser() { return dlgFolder(ui, root(), volumes()); }

    dlgFilesList list() {
        dlgFilesList made(ui, root(), volumes());
        for (const char* extension : {"apt", "skl", "dat", "vrml", "apm"}) {
            made.names.add(extension);
        }
        return made;
    }

    fs::path root() const { return folder.path().lexically_normal(); }
    Lines heard() { return std::exchange(ui.transcript, {}); }

    TemporaryFolder folder;
    RecordingUi ui;
    std::vector<fs::path> mounted = {"/", "/no/such/stick"};
};

} // namespace

// ---- Names ----------------------------------------------------------------------------------------------------------

TEST(Names, TakeNoneTwiceWhateverItsCase) {
    Names names;
    EXPECT_TRUE(names.add("Apt"));
    EXPECT_FALSE(names.add("aPT"));
    EXPECT_TRUE(names.add("skl"));
    EXPECT_THAT(names.list(), ElementsAre("apt", "skl"));
    EXPECT_TRUE(names.contains("SKL"));
    EXPECT_FALSE(names.contains("sk"));
}

TEST(ProjectList, StartsUntitledWithTheExtensionsOfTheDocument) {
    RecordingUi ui;
    const DocumentState doc(ui, {});
    EXPECT_EQ(doc.dialogs->filesList.name.text, "untitled");
    EXPECT_THAT(doc.dialogs->filesList.names.list(), ElementsAre("apt", "skl", "dat", "vrml", "apm"));
    EXPECT_THAT(doc.dialogs->filesList.projectList, IsEmpty());
    EXPECT_TRUE(fs::is_directory(doc.dialogs->filesList.currentDirectory()))
        << "where there is no folder, that of the program";
}

// ---- Volumes --------------------------------------------------------------------------------------------------------

TEST(Volumes, AreTheRootAndWhatHoldsFilesOfAUser) {
    std::istringstream mounts("sysfs /sys sysfs rw 0 0\n"
                              "/dev/sda2 / ext4 rw 0 0\n"
                              "/dev/sda1 /boot/efi vfat rw 0 0\n"
                              "/dev/sda3 /home ext4 rw 0 0\n"
                              "tmpfs /run tmpfs rw 0 0\n"
                              "/dev/loop3 /snap/tool/12 squashfs ro 0 0\n"
                              "/dev/sdb1 /media/ann/My\\040stick vfat rw 0 0\n"
                              "host:/models /mnt/models nfs4 rw 0 0\n"
                              "/dev/sda3 /home ext4 rw 0 0\n"
                              "broken\n"
                              "\n");
    EXPECT_THAT(volumesOf(mounts), ElementsAre("/", "/home", "/media/ann/My stick", "/mnt/models"));
}

TEST(Volumes, KeepABackslashThatIsNoEscape) {
    std::istringstream mounts(
        "/dev/sdb1 /media/a\\04 vfat\n/dev/sdb2 /media/b\\999 vfat\n/dev/sdb3 /media/c\\134 vfat\n");
    EXPECT_THAT(volumesOf(mounts), ElementsAre("/", "/media/a\\04", "/media/b\\999", "/media/c\\"));
}

TEST(Volumes, OfThisMachineAreFoldersFromTheRootOn) {
    const std::vector<fs::path> volumes = mountedVolumes();
    ASSERT_FALSE(volumes.empty());
    EXPECT_EQ(volumes.front(), "/");
    EXPECT_TRUE(
        std::all_of(volumes.begin(), volumes.end(), [](const fs::path& path) { return fs::is_directory(path); }));
}

// ---- Order ----------------------------------------------------------------------------------------------------------

TEST(SortByName, GoesByTheLettersWhateverTheirCase) {
    Lines names = {"b", "C", "a", "B", "A"};
    sortByName(names);
    EXPECT_THAT(names, ElementsAre("A", "a", "B", "b", "C"));
}

// ---- The folder chooser ---------------------------------------------------------------------------------------------

TEST_F(PlacesTest, FoldersStandInBracketsByNameBehindTheOneAbove) {
    EXPECT_THAT(chooser().folderLines(), ElementsAre("[..]", "[A outer]", "[b inner]"));
    EXPECT_EQ(dlgFolder(ui, "/", volumes()).folderLines().front().find("[..]"), std::string::npos)
        << "nothing is above the root";
}

TEST_F(PlacesTest, AFolderThatIsChosenIsEntered) {
    dlgFolder place = chooser();
    EXPECT_TRUE(place.chooseLine("[b inner]"));
    EXPECT_EQ(place.folder(), root() / "b inner");
    EXPECT_TRUE(place.chooseLine("[deep]"));
    EXPECT_TRUE(place.chooseLine("[..]"));
    EXPECT_TRUE(place.chooseLine("[..]"));
    EXPECT_EQ(place.folder(), root());
    EXPECT_FALSE(place.chooseLine("[gone]"));
    EXPECT_FALSE(place.chooseLine("wing.apt"));
    EXPECT_EQ(place.folder(), root());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(PlacesTest, ADriveThatIsNotThereIsToldAndTheDrivesAreListedAnew) {
    dlgFolder place = chooser();
    EXPECT_THAT(place.drives(), ElementsAre("/", "/no/such/stick"));
    mounted = {"/"};
    EXPECT_FALSE(place.changeDrive("/no/such/stick"));
    EXPECT_THAT(heard(), ElementsAre("message: Drive  '/no/such/stick'  not available"));
    EXPECT_EQ(place.folder(), root());
    EXPECT_THAT(place.drives(), ElementsAre("/"));
    EXPECT_TRUE(place.chooseLine("[-/-]"));
    EXPECT_EQ(place.folder(), "/");
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(PlacesTest, APathThatCannotBeEnteredIsToldMadeAndEnteredWithoutAChoice) {
    dlgFolder place = chooser();
    EXPECT_TRUE(place.typePath(" new/place "));
    EXPECT_THAT(heard(), ElementsAre("message: Directory  'new/place'  not found\nWould you like to create it?"));
    EXPECT_EQ(place.folder(), root() / "new" / "place");
    EXPECT_TRUE(fs::is_directory(root() / "new" / "place"));
    EXPECT_TRUE(place.typePath("../../b inner/"));
    EXPECT_EQ(place.folder(), root() / "b inner") << "no separator stays at its end";
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(PlacesTest, APathThatCannotBeMadeLeavesTheChooserWhereItIs) {
    dlgFolder place = chooser();
    EXPECT_FALSE(place.typePath("wing.apt/inside"));
    EXPECT_EQ(heard().size(), 1U);
    EXPECT_FALSE(place.typePath("  "));
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(place.folder(), root());
}

// ---- The project list -----------------------------------------------------------------------------------------------

TEST_F(PlacesTest, TheLeftListShowsFilesOfTheExtensionsThenFoldersThenDrives) {
    EXPECT_THAT(list().fileLines(), ElementsAre("Body.SKL", "flow.dat", "marks.apm", "scene.vrml", "wing.apt", "[..]",
                                                "[A outer]", "[b inner]", "[-/-]", "[-/no/such/stick-]"));
}

TEST_F(PlacesTest, ALineGoesToTheListOrIsEntered) {
    dlgFilesList files = list();
    files.addLine("wing.apt");
    files.addLine("[b inner]");
    EXPECT_EQ(files.currentDirectory(), root() / "b inner");
    files.addLine("[..]");
    files.addLine("Body.SKL");
    EXPECT_THAT(files.projectList, ElementsAre(root() / "wing.apt", root() / "Body.SKL"));
    files.addLine("[-/no/such/stick-]");
    EXPECT_THAT(heard(), ElementsAre("message: Drive  '/no/such/stick'  not available"));
    EXPECT_EQ(files.currentDirectory(), root());
    files.addLine(std::nullopt);
    EXPECT_THAT(heard(), ElementsAre("message: Text is not selected"));
    EXPECT_EQ(files.projectList.size(), 2U);
}

TEST_F(PlacesTest, AllFilesGoToTheListAndNoFolder) {
    dlgFilesList files = list();
    files.addAll();
    EXPECT_THAT(files.projectList, ElementsAre(root() / "Body.SKL", root() / "flow.dat", root() / "marks.apm",
                                               root() / "scene.vrml", root() / "wing.apt"));
    files.addLine("[A outer]");
    EXPECT_THAT(heard(), IsEmpty());
    files.addAll();
    EXPECT_THAT(heard(), ElementsAre("message: List is empty"));
    EXPECT_EQ(files.projectList.size(), 5U);
}

TEST_F(PlacesTest, LinesAreTakenOutOneByOneAndAllAtOnce) {
    dlgFilesList files = list();
    files.addAll();
    files.removeLine(1);
    EXPECT_EQ(files.projectList[1], root() / "marks.apm");
    files.removeLine(std::nullopt);
    files.removeLine(4);
    EXPECT_THAT(heard(), ElementsAre("message: Text is not selected", "message: Text is not selected"));
    EXPECT_EQ(files.projectList.size(), 4U);
    files.removeAll();
    EXPECT_THAT(files.projectList, IsEmpty());
    EXPECT_THAT(heard(), IsEmpty());
    files.removeAll();
    EXPECT_THAT(heard(), ElementsAre("message: List is empty"));
}

TEST_F(PlacesTest, ADirectoryThatIsTypedIsEnteredIfItCanBe) {
    dlgFilesList files = list();
    files.typeDirectory("b inner");
    EXPECT_EQ(files.currentDirectory(), root() / "b inner");
    files.typeDirectory("/no/such/place");
    EXPECT_EQ(files.currentDirectory(), root() / "b inner");
    EXPECT_FALSE(fs::exists("/no/such/place"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(PlacesTest, ANameLosesItsBlanksAndGivesItsFolderToTheProject) {
    dlgFilesList files = list();
    files.typeName("  wing body ");
    EXPECT_EQ(files.name.text, "wing body");
    EXPECT_TRUE(files.projectPath.empty());
    files.typeName("models/2 / wing");
    EXPECT_EQ(files.name.text, "wing");
    EXPECT_THAT(heard(), ElementsAre("message: Directory  'models/2 /'  not found\nWould you like to create it?"));
    EXPECT_EQ(files.projectPath, root() / "models" / "2 ");
    EXPECT_EQ(files.currentDirectory(), root()) << "the lists stay";
}

TEST_F(PlacesTest, OkNeedsANameAndFiles) {
    dlgFilesList files = list();
    files.typeName("");
    EXPECT_FALSE(files.accept());
    EXPECT_THAT(heard(), ElementsAre("message: Insert name, please"));
    files.name.text = " \t";
    EXPECT_FALSE(files.accept()) << "blanks are no name";
    EXPECT_THAT(heard(), ElementsAre("message: Insert name, please"));
    files.typeName("wing");
    EXPECT_FALSE(files.accept());
    EXPECT_THAT(heard(), ElementsAre("message: List is empty"));
    files.addLine("wing.apt");
    EXPECT_TRUE(files.accept());
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(PlacesTest, BrowsingStartsInTheCurrentDirectoryAndMovesNothingElse) {
    dlgFilesList files = list();
    dlgFolder place = files.browse();
    EXPECT_EQ(place.folder(), root());
    place.chooseLine("[b inner]");
    EXPECT_EQ(files.currentDirectory(), root());
}

// ---- Several files by path ------------------------------------------------------------------------------------------

TEST_F(StateTest, SeveralFilesByPathJoinTheFirstIfTheyAreOfItsType) {
    const std::string grid = "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
    writeFileText(folder / "a.apt", grid);
    writeFileText(folder / "b.APT", grid + grid);
    writeFileText(folder / "c.skl", "1\n2\n0 0 0\n1 0 0\n");
    openAll({folder / "a.apt", folder / "c.skl", folder / "b.APT"});
    EXPECT_EQ(doc.patches.size(), 3U);
    EXPECT_EQ(doc.modelFile.documentTitle, "b.apt");
    EXPECT_EQ(ui.count("recent: " + (folder / "a.apt").string()), 1U);
    EXPECT_EQ(ui.count("recent: " + (folder / "b.APT").string()), 0U);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(StateTest, EachOfSeveralFilesThatGivesNothingIsTold) {
    const std::string grid = "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
    const auto good = file("good.apt", grid);
    const auto bad = file("bad.apt", "none");
    openAll({good, bad});
    EXPECT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(doc.modelFile.documentTitle, "good.apt");
    EXPECT_THAT(doc.status, testing::HasSubstr("bad.apt gave nothing"));
}

// The first file decides whether there is a model.
TEST_F(StateTest, WhatStandsBehindAFirstFileThatGivesNothingIsNotOpenedAndTold) {
    const auto missing = folder / "missing.apt";
    openAll({missing, file("good.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n")});
    EXPECT_TRUE(doc.holdsNothing());
    EXPECT_EQ(doc.status, "good.apt was not opened: the first file gave no model");
}

TEST_F(StateTest, NoFileByPathChangesNothing) {
    hold({flatPatch(2, 2)});
    openAll({});
    EXPECT_EQ(doc.patches.size(), 1U);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(StateTest, ProgressOfReadingAndWritingGoesToTheUser) {
    // More than two blocks of the reader, less than the limit of points.
    Patch patch = flatPatch(200, 250, 0.12345678901234567);
    hold({patch});
    doc.documentModified = true;
    call("file.save");
    const std::vector<double> written = std::exchange(ui.progress, {});
    ASSERT_GE(written.size(), 2U);
    EXPECT_TRUE(std::is_sorted(written.begin(), written.end()));
    open(folder / "wing.apt");
    ASSERT_GE(ui.progress.size(), 2U);
    EXPECT_TRUE(std::is_sorted(ui.progress.begin(), ui.progress.end()));
    for (const auto& told : {written, ui.progress}) {
        EXPECT_GE(told.front(), 0.0);
        EXPECT_LE(told.back(), 1.0);
    }
    EXPECT_EQ(ui.busyDepth, 0);
}

} // namespace velmora::test
