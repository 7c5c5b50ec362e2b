#include <fstream>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "CommandTest.h"
#include "document_fixture.h"
#include "file_texts.h"
#include "rescue_format.h"

namespace velmora::test {

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// Save walks the table "What Save may touch" of docs/architecture.md: every way in which a model gets the path of its
// file against every state of what stands there.

/// What is asked about a file that stands at the path.
enum class Doubt { None, HoldsMore, Foreign, Changed };

struct Way {
    const char* name;
    const char* target; ///< the file that Save writes
    Doubt aboutOwn;     ///< the file is as the document left it
    Doubt aboutAnother; ///< another one stands there, or it was changed
    bool leavesTarget;  ///< it is there when the model has its path

    friend void PrintTo(const Way& way, std::ostream* out) { *out << way.name; }
};

const Way ways[] = {
    {"OpenedWhole", "wing.apt", Doubt::None, Doubt::Changed, true},
    {"OpenedInPart", "wing.apt", Doubt::HoldsMore, Doubt::HoldsMore, true},
    {"OpenedWithAnother", "tail.apt", Doubt::Foreign, Doubt::Foreign, true},
    {"Appended", "wing.apt", Doubt::None, Doubt::Changed, true},
    {"Converted", "wing.dat", Doubt::Foreign, Doubt::Foreign, false},
    {"KindChanged", "wing.skl", Doubt::Foreign, Doubt::Foreign, false},
    {"OpenedAsAnotherKind", "hull.apt", Doubt::Foreign, Doubt::Foreign, false},
    {"SavedAs", "other.apt", Doubt::None, Doubt::Changed, true},
    {"Undone", "wing.apt", Doubt::None, Doubt::Changed, true},
};

const char* const theirs = "of somebody else, who would miss it";

/// Gives up the rights of the superuser, if the tests have them, since they make every file writable.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
        superuser_ = ::geteuid() == 0 && ::seteuid(nobody) == 0;
    }
    ~OrdinaryUser() {
        if (superuser_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool superuser_ = false;
};

class SaveTarget : public CommandTest, public testing::WithParamInterface<Way> {
protected:
    void SetUp() override {
        const std::string name = GetParam().name;
        const fs::path wing =
            file("wing.apt", name == "OpenedInPart" ? brokenSecondCompartment : aptText({flatPatch(3, 3)}));
        const fs::path tail = file("tail.apt", aptText({flatPatch(2, 2, 5)}));
        if (name == "OpenedAsAnotherKind") {
            open(file("hull.skl", sklText({flatPatch(2, 2)})));
        } else if (name == "OpenedWithAnother") {
            openAll({wing, tail});
        } else {
            open(wing);
        }
        if (name == "Appended") {
            ui.files.push_back({tail});
            run("file.append");
        } else if (name == "Converted") {
            run("convert.toUnstructured");
        } else if (name == "KindChanged") {
            doc.patches[0][0].pop_back();
            doc.retitle();
        } else if (name == "SavedAs") {
            ui.files.push_back({folder / "other.apt"});
            run("file.saveAs");
        } else if (name == "Undone") {
            open(tail);
            run("patch.undo");
        }
        EXPECT_EQ(saveTarget(), target());
        EXPECT_EQ(fs::exists(target()), GetParam().leavesTarget);
        doc.documentModified = true;
        forget();
    }

    fs::path target() const { return folder / GetParam().target; }

    void expectAsked(Doubt doubt, bool answer) {
        ui.answers = {answer};
        call("file.save");
        const std::string name = GetParam().target;
        const std::string end = std::string(" Overwrite it? -> ") + (answer ? "yes" : "no");
        const Lines lines = heard();
        if (doubt == Doubt::None) {
            for (const std::string& line : lines) {
                EXPECT_FALSE(line.starts_with("question: ")) << line;
            }
            return;
        }
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.front(), "question: " + name +
                                     (doubt == Doubt::HoldsMore ? " holds more than was read."
                                      : doubt == Doubt::Foreign ? " was not opened or saved here."
                                                                : " was changed by another program.") +
                                     end);
        if (!answer) {
            EXPECT_EQ(lines.size(), 1U);
        }
    }

    /// A file stands at the target; declined it stays, else it is written over.
    void expectKeptOrWritten(Doubt doubt) {
        const std::string before = fileText(target());
        if (doubt != Doubt::None) {
            expectAsked(doubt, false);
            EXPECT_EQ(fileText(target()), before);
            EXPECT_TRUE(doc.documentModified);
        }
        expectAsked(doubt, true);
        EXPECT_NE(fileText(target()), theirs);
        EXPECT_FALSE(doc.documentModified);
        // From now on it is the document's own.
        expectAsked(Doubt::None, false);
    }
};

INSTANTIATE_TEST_SUITE_P(Ways, SaveTarget, testing::ValuesIn(ways),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace

TEST_P(SaveTarget, ThatIsAbsentIsWritten) {
    fs::remove(target());
    expectAsked(Doubt::None, false);
    EXPECT_GT(fileText(target()).size(), 20U);
    EXPECT_FALSE(doc.documentModified);
}

TEST_P(SaveTarget, ThatIsTheFileItCameFromIsAskedAboutOnlyIfItHoldsMore) {
    if (GetParam().leavesTarget) {
        expectKeptOrWritten(GetParam().aboutOwn);
    }
}

TEST_P(SaveTarget, ThatIsOfSomebodyElseIsAskedAbout) {
    fs::remove(target());
    writeFileText(target(), theirs);
    expectKeptOrWritten(GetParam().aboutAnother);
}

TEST_P(SaveTarget, ThatWasChangedSinceIsAskedAbout) {
    if (GetParam().leavesTarget) {
        std::ofstream(target(), std::ios::app) << "1 1\n0 0 0\n";
        expectKeptOrWritten(GetParam().aboutAnother);
    }
}

TEST_P(SaveTarget, ThatIsALinkIsAskedAboutForWhereItLeadsAndStaysALink) {
    fs::remove(target());
    writeFileText(folder / "far.txt", theirs);
    fs::create_symlink("far.txt", target());
    expectKeptOrWritten(GetParam().aboutAnother);
    EXPECT_TRUE(fs::is_symlink(target()));
    EXPECT_NE(fileText(folder / "far.txt"), theirs);
}

TEST_P(SaveTarget, ThatIsAFolderIsNotAskedAboutAndFails) {
    fs::remove(target());
    fs::create_directory(target());
    expectAsked(Doubt::None, true);
    EXPECT_TRUE(fs::is_empty(target()));
    EXPECT_TRUE(doc.documentModified);
}

TEST_P(SaveTarget, ThatMayNotBeWrittenStaysAndTheModelIsChanged) {
    fs::remove(target());
    writeFileText(target(), theirs);
    ASSERT_EQ(::chmod(target().c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    {
        const OrdinaryUser user;
        expectAsked(GetParam().aboutAnother, true);
    }
    EXPECT_EQ(fileText(target()), theirs);
    EXPECT_TRUE(doc.documentModified);
}

TEST_P(SaveTarget, IsNamedInTheStatusLineWhereItIsNotTheFileThatWasOpened) {
    fs::remove(target());
    showStatus("before");
    call("file.save");
    const bool opened = std::string(GetParam().target) == "wing.apt";
    EXPECT_EQ(doc.status, opened ? "before" : "Save writes " + target().string());
}

TEST_F(CommandTest, WhereSaveWritesIsToldRightAfterEachChangeOfKind) {
    open(file("wing.apt", aptText({flatPatch(3, 3)})));
    forget();
    run("convert.toUnstructured");
    EXPECT_EQ(doc.status, "Save writes " + (folder / "wing.dat").string());
    runWith("convert.toSkl", {{"number", "4"}});
    EXPECT_EQ(doc.status, "Save writes " + (folder / "wing.skl").string());
    forget();
    run("view.fit");
    EXPECT_THAT(heard(), IsEmpty()) << "what did not change is not told again";
    runWith("convert.toApt", {});
    EXPECT_EQ(doc.status, "For Help, press F1") << "it is the file that was opened again";
}

TEST_F(CommandTest, AnEditThatMakesLinesOfAGridTellsWhereTheyGo) {
    open(file("wing.apt", aptText({flatPatch(3, 4)})));
    runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
    forget();
    runWith("line.rebreak", {{"newCount", "7"}});
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(ui.count("status: Save writes " + (folder / "wing.skl").string()), 1U);
    EXPECT_EQ(doc.status, "Save writes " + (folder / "wing.skl").string());
    run("view.fit");
    EXPECT_THAT(doc.status, testing::HasSubstr("Section N=2, Points M=7")) << "until the next command";
    runWith("line.rebreak", {{"newCount", "9"}});
    EXPECT_THAT(doc.status, testing::HasSubstr("Section N=2, Points M=9"));
    run("patch.undo");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_THAT(doc.status, testing::Not(testing::HasSubstr("Save writes")));
}

TEST_F(CommandTest, AnEmptyModelIsNeverWritten) {
    open(file("wing.apt", aptText({flatPatch(2, 2)})));
    const std::string before = fileText(folder / "wing.apt");
    doc.patches.clear();
    doc.documentModified = true;
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("message: There is nothing to save"));
    call("file.saveAs");
    EXPECT_THAT(heard(), ElementsAre("message: There is nothing to save"));
    EXPECT_EQ(fileText(folder / "wing.apt"), before);
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(CommandTest, ABinaryStlFileLeavesNoEmptyModelThatCouldBeSavedOverIt) {
    open(file("wing.apt", aptText({flatPatch(2, 2)})));
    std::string binary(84 + 50, '\0');
    binary[80] = 1;
    forget();
    open(file("body.stl", binary));
    EXPECT_THAT(heard(), Contains("message: Open procedure is canceled"));
    EXPECT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(saveTarget(), folder / "wing.apt");
    call("file.save");
    EXPECT_EQ(fileText(folder / "body.stl"), binary);
}

TEST_F(CommandTest, ANumberThatIsNotFiniteIsRefusedWithItsPlaceAndTheFileStays) {
    open(file("wing.apt", aptText({flatPatch(2, 2)})));
    const std::string before = fileText(folder / "wing.apt");
    doc.patches[0][1][0].z = 1.0 / 0.0;
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("message: It is impossible to save current file",
                                     "status: Patch 1, section 2, point 1: the number is not finite, and could not be "
                                     "read again"));
    EXPECT_EQ(fileText(folder / "wing.apt"), before);
}

TEST_F(CommandTest, AChooserThatAsksByItselfIsNotAskedAgainForTheSameReason) {
    ui.chooserAsks = true;
    open(file("wing.apt", aptText({flatPatch(2, 2)})));
    writeFileText(folder / "other.apt", theirs);
    forget();
    ui.files.push_back({folder / "other.apt"});
    call("file.saveAs");
    EXPECT_NE(fileText(folder / "other.apt"), theirs);
    // A change by another program is another reason.
    std::ofstream(folder / "other.apt", std::ios::app) << theirs;
    forget();
    ui.files.push_back({folder / "other.apt"});
    call("file.saveAs");
    EXPECT_THAT(heard(), Contains("question: other.apt was changed by another program. Overwrite it? -> no"));
    // And Save has no chooser.
    open(file("hull.skl", sklText({flatPatch(2, 2)})));
    writeFileText(folder / "hull.apt", theirs);
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("question: hull.apt was not opened or saved here. Overwrite it? -> no"));
}

TEST_F(DocumentTest, ARescuedImportedModelIsStillInNoFileAndSaveHitsNone) {
    const fs::path foreign = file("Untitled.dat", "somebody's");
    ui.files.push_back({file("box.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n")});
    runWith("file.import", {});
    ASSERT_TRUE(doc.modelFile.imported);
    auto copy = decodeRescue(doc.rescueBytes());
    ASSERT_TRUE(copy);
    RecordingUi person;
    VelmoraDoc other(person, folder.path());
    other.onNewDocument();
    other.takeRescued(std::move(*copy));
    EXPECT_TRUE(other.documentModified);
    EXPECT_TRUE(other.modelFile.imported);
    person.transcript.clear();
    other.saveModel();
    EXPECT_EQ(person.transcript, Lines{"chooser: Save As -> 0"});
    EXPECT_EQ(fileText(foreign), "somebody's");
    EXPECT_TRUE(other.documentModified);
}

} // namespace velmora::test
