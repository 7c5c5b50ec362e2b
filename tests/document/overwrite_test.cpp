#include <algorithm>
#include <fstream>
#include <functional>

#include "CommandTest.h"
#include "file_texts.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
namespace fs = std::filesystem;

/// The question about a file of this name that was read in part, that is of somebody else, or was changed since.
std::string holdsMore(const std::string& name, const char* answer = "no") {
    return "question: " + name + " holds more than was read. Overwrite it? -> " + answer;
}
std::string foreign(const std::string& name, const char* answer = "no") {
    return "question: " + name + " was not opened or saved here. Overwrite it? -> " + answer;
}
std::string changed(const std::string& name, const char* answer = "no") {
    return "question: " + name + " was changed by another program. Overwrite it? -> " + answer;
}
const char* const holdsMorePoints = "question: The file holds more points than were read. Overwrite it? -> ";
const char* const cannotSave = "message: It is impossible to save current file";

const char* const triangleText = "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\n"
                                 "ZONE T=\"s\", N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n";
const char* const fieldText = "TITLE = \"flow\"\nVARIABLES = \"X\", \"Y\", \"Z\", \"P\"\n"
                              "ZONE T=\"ZONE_0\",I=2,J=2,K=1,F= POINT\n0 0 0 10\n1 0 0 11\n0 1 0 12\n1 1 0 13\n";

enum class Model { Grid, Lines, Zones, Field };

/// A command that writes the model, a part of it or the buffer to `target`.
struct Writer {
    const char* name;
    Model model;
    const char* target;
    const char* command;
    bool chooses = true; ///< the target comes from a chooser; else the model's file names it
    bool takesBlock = false;
    bool takesBuffer = false;
    bool endsModified = true;   ///< once it has written, the model counts as saved
    bool takesModelFile = true; ///< without a chooser: the target is the model's own file

    friend void PrintTo(const Writer& writer, std::ostream* out) { *out << writer.name; }
};

const Writer writers[] = {
    {.name = "SaveGrid", .model = Model::Grid, .target = "wing.apt", .command = "file.save", .chooses = false},
    {.name = "SaveLines", .model = Model::Lines, .target = "hull.skl", .command = "file.save", .chooses = false},
    {.name = "SaveZones", .model = Model::Zones, .target = "body.dat", .command = "file.save", .chooses = false},
    {.name = "ExitGrid", .model = Model::Grid, .target = "wing.apt", .command = "file.exit", .chooses = false},
    {.name = "ExitLines", .model = Model::Lines, .target = "hull.skl", .command = "file.exit", .chooses = false},
    {.name = "ExitZones", .model = Model::Zones, .target = "body.dat", .command = "file.exit", .chooses = false},
    {.name = "SaveAsAptOfGrid", .model = Model::Grid, .target = "out.apt", .command = "file.saveAs"},
    {.name = "SaveAsSklOfGrid", .model = Model::Grid, .target = "out.skl", .command = "file.saveAs"},
    {.name = "SaveAsDatOfGrid", .model = Model::Grid, .target = "out.dat", .command = "file.saveAs"},
    {.name = "SaveAsWrlOfGrid", .model = Model::Grid, .target = "out.wrl", .command = "file.saveAs"},
    {.name = "SaveAsStlOfGrid", .model = Model::Grid, .target = "out.stl", .command = "file.saveAs"},
    {.name = "SaveAsSklOfLines", .model = Model::Lines, .target = "out.skl", .command = "file.saveAs"},
    {.name = "SaveAsDatOfZones", .model = Model::Zones, .target = "out.dat", .command = "file.saveAs"},
    {.name = "SaveAsWrlOfZones", .model = Model::Zones, .target = "out.wrl", .command = "file.saveAs"},
    {.name = "SaveAsStlOfZones", .model = Model::Zones, .target = "out.stl", .command = "file.saveAs"},
    {.name = "SaveAsField", .model = Model::Field, .target = "out.dat", .command = "file.saveAsField"},
    {.name = "BlockAptOfGrid",
     .model = Model::Grid,
     .target = "out.apt",
     .command = "block.saveAs",
     .takesBlock = true,
     .endsModified = false},
    {.name = "BlockSklOfLines",
     .model = Model::Lines,
     .target = "out.skl",
     .command = "block.saveAs",
     .takesBlock = true,
     .endsModified = false},
    {.name = "BlockDatOfZones",
     .model = Model::Zones,
     .target = "out.dat",
     .command = "block.saveAs",
     .takesBlock = true,
     .endsModified = false},
    {.name = "BlockWrlOfZones",
     .model = Model::Zones,
     .target = "out.wrl",
     .command = "block.saveAs",
     .takesBlock = true,
     .endsModified = false},
    {.name = "BlockStlOfZones",
     .model = Model::Zones,
     .target = "out.stl",
     .command = "block.saveAs",
     .takesBlock = true,
     .endsModified = false},
    {.name = "BufferExt",
     .model = Model::Grid,
     .target = "out.ext",
     .command = "buffer.saveAs",
     .takesBuffer = true,
     .endsModified = false},
    {.name = "KnifePartBefore",
     .model = Model::Zones,
     .target = "body_1.dat",
     .command = "convert.knife",
     .chooses = false,
     .endsModified = false,
     .takesModelFile = false},
    {.name = "KnifePartAfter",
     .model = Model::Zones,
     .target = "body_2.dat",
     .command = "convert.knife",
     .chooses = false,
     .endsModified = false,
     .takesModelFile = false},
};

/// What of the document a declined save must leave.
struct Traces {
    std::string title, path, directory, extension, kinds;
    fs::path chosen;
    bool modified = false;
    PatchList patches, field;
    std::size_t zones = 0;
    PointList buffer;

    bool operator==(const Traces&) const = default;
};

class OverwriteTest : public CommandTest {
protected:
    Traces traces() const {
        return {.title = doc.modelFile.documentTitle,
                .path = doc.modelFile.currentPath,
                .directory = doc.modelFile.currentDirectory,
                .extension = doc.modelFile.fileExtension,
                .kinds = kindsOf(doc),
                .chosen = doc.modelFile.chosenPath,
                .modified = doc.documentModified,
                .patches = doc.patches,
                .field = doc.fieldPatches,
                .zones = doc.feRegion.blocks.size(),
                .buffer = doc.lineBuffer};
    }

    void openModel(Model model) {
        if (model == Model::Grid) {
            open(file("wing.apt", aptText({flatPatch(3, 2), flatPatch(2, 2, 4)})));
        } else if (model == Model::Lines) {
            open(file("hull.skl", sklText({patchOf({1, 2})})));
        } else if (model == Model::Zones) {
            open(file("body.dat", triangleText));
        } else {
            ui.answers = {true};
            ui.files.push_back({file("flow.dat", fieldText)});
            call("file.openField");
        }
    }

    /// The model of the writer is open and changed, its block or buffer filled.
    void prepare(const Writer& writer) {
        openModel(writer.model);
        if (writer.model != Model::Field) {
            runWith("model.move", {{"deltaX", "0.25"}});
        } else {
            doc.documentModified = true;
        }
        if (writer.takesBlock) {
            runWith("patch.inputAndAdd", {{"number", "1"}});
        }
        if (writer.takesBuffer) {
            runWith("line.inputSection", {{"patch", "1"}, {"section", "1"}});
            run("line.copy");
        }
        forget();
    }

    /// Runs the writer with these answers to what it asks, and gives the questions and messages.
    Lines write(const Writer& writer, std::deque<bool> answers) {
        const std::string id = writer.command;
        if (writer.chooses) {
            ui.files.push_back({folder / writer.target});
        }
        ui.answers = std::move(answers);
        if (id == "file.exit") {
            ui.answers.push_front(true);
            saveModified();
        } else if (id == "convert.knife") {
            runWith(id, {{"planeKind", "1"}, {"section", "0.5"}, {"cutKind", "3"}});
        } else {
            run(id);
        }
        Lines lines = heard();
        std::erase_if(lines, [](const std::string& line) {
            return line.find("Overwrite it?") == std::string::npos && !line.starts_with("message: ");
        });
        return lines;
    }

    /// The target becomes a link to a file that this document has opened before, so that one kind of file serves for
    /// all formats: what is asked goes by the file and not by its name.
    void linkTarget(const Writer& writer, const fs::path& opened) {
        fs::remove(folder / writer.target);
        fs::create_symlink(opened, folder / writer.target);
    }

    static bool asked(const Lines& lines) {
        return std::any_of(lines.begin(), lines.end(),
                           [](const auto& line) { return line.find("Overwrite it?") != std::string::npos; });
    }
};

class EachWriter : public OverwriteTest, public testing::WithParamInterface<Writer> {};

INSTANTIATE_TEST_SUITE_P(Writers, EachWriter, testing::ValuesIn(writers),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace

TEST_P(EachWriter, WritesAFileThatIsNotThereWithoutAQuestion) {
    prepare(GetParam());
    fs::remove(folder / GetParam().target);
    EXPECT_FALSE(asked(write(GetParam(), {})));
    EXPECT_GT(fileText(folder / GetParam().target).size(), 20U);
    EXPECT_EQ(doc.documentModified, !GetParam().endsModified);
}

TEST_P(EachWriter, WritesInThePlaceOfAFileThatIsGoneWithoutAQuestion) {
    open(file("more.apt", brokenSecondCompartment));
    prepare(GetParam());
    linkTarget(GetParam(), folder / "more.apt");
    fs::remove(folder / "more.apt");
    EXPECT_FALSE(asked(write(GetParam(), {})));
    EXPECT_GT(fileText(folder / "more.apt").size(), 20U);
}

TEST_P(EachWriter, LeavesAFileOfSomebodyElseWhenItIsDeclined) {
    prepare(GetParam());
    fs::remove(folder / GetParam().target);
    writeFileText(folder / "theirs.txt", "of somebody else");
    linkTarget(GetParam(), folder / "theirs.txt");
    const Traces before = traces();
    // That a file of this name was opened tells nothing of where a link leads now.
    const bool known = !GetParam().chooses && GetParam().takesModelFile;
    const std::string name = GetParam().target;
    EXPECT_THAT(write(GetParam(), {false}), ElementsAre(known ? changed(name) : foreign(name)));
    EXPECT_EQ(fileText(folder / "theirs.txt"), "of somebody else");
    EXPECT_TRUE(fs::is_symlink(folder / GetParam().target));
    EXPECT_TRUE(traces() == before);
    EXPECT_FALSE(fs::exists(folder / "body_1.dat") && !fs::is_symlink(folder / "body_1.dat"));
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_P(EachWriter, WritesOverAFileOfSomebodyElseAfterAYesAndAsksOnce) {
    prepare(GetParam());
    fs::remove(folder / GetParam().target);
    writeFileText(folder / GetParam().target, "of somebody else, and longer than the model's file was");
    const Lines lines = write(GetParam(), {true});
    EXPECT_TRUE(asked(lines));
    EXPECT_THAT(lines, Not(Contains(cannotSave)));
    EXPECT_THAT(fileText(folder / GetParam().target), Not(testing::HasSubstr("somebody else")));
    EXPECT_EQ(doc.documentModified, !GetParam().endsModified);
    // It is the document's own from now on.
    doc.documentModified = true;
    EXPECT_FALSE(asked(write(GetParam(), {})));
}

TEST_P(EachWriter, AsksBeforeItWritesOverItsOwnFileThatAnotherProgramChanged) {
    prepare(GetParam());
    fs::remove(folder / GetParam().target);
    ASSERT_FALSE(asked(write(GetParam(), {})));
    std::ofstream(folder / GetParam().target, std::ios::app) << "more\n";
    const std::string theirs = fileText(folder / GetParam().target);
    doc.documentModified = true;
    forget();
    EXPECT_THAT(write(GetParam(), {false}), ElementsAre(changed(GetParam().target)));
    EXPECT_EQ(fileText(folder / GetParam().target), theirs);
    EXPECT_TRUE(doc.documentModified);
}

TEST_P(EachWriter, FailsAtAFolderWithoutAQuestion) {
    prepare(GetParam());
    fs::remove(folder / GetParam().target);
    fs::create_directory(folder / GetParam().target);
    const PatchList patches = doc.patches;
    const Lines lines = write(GetParam(), {});
    EXPECT_FALSE(asked(lines));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0] == cannotSave || lines[0].starts_with("message: \n--- Error Message ---\n\nFile Error"));
    EXPECT_TRUE(fs::is_empty(folder / GetParam().target));
    EXPECT_EQ(doc.patches, patches);
    EXPECT_EQ(ui.busyDepth, 0);
}

// ---- The ways in which less is read than a file holds -------------------------------------------

namespace {

/// `count` lines of the point (0, 0, 0).
std::string points(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "0 0 0\n";
    }
    return text;
}

std::string repeated(int times, const std::string& text) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

const char* const head = "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\n";
const char* const smallCompartment = "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
const char* const smallLines = "2\n1\n0 0 0\n2\n0 1 0\n1 1 0\n";

// 201,004 points are one step above what is read whole: every second one of a long section stays, and the last.
std::string longApt() {
    return "2 100502\n" + points(2 * 100502);
}
std::string longDat() {
    return head + std::string("ZONE T=\"g\", I=100502, J=2, K=1, F=POINT\n") + points(2 * 100502);
}
const char* const longStatus = "status: Points in the file: 201004, kept: 100504";

// 571 patches of 65 by 65 are too short to be thinned: the last one is cut behind its section 58, at 2,412,020 points.
std::string largeApt() {
    return repeated(571, "65 65\n" + points(65 * 65));
}
std::string largeDat() {
    return head + repeated(571, "ZONE T=\"g\", I=65, J=65, K=1, F=POINT\n" + points(65 * 65));
}
const char* const largeStatus = "status: Points in the file: 2412475, kept: 2412020";

struct Incomplete {
    const char* name;
    const char* file;
    std::string (*text)();
    const char* status = nullptr; ///< what the status line tells of it
    bool thinned = false;

    std::string question() const { return thinned ? holdsMorePoints + std::string("no") : holdsMore(file); }
    friend void PrintTo(const Incomplete& incomplete, std::ostream* out) { *out << incomplete.name; }
};

const Incomplete incompleteFiles[] = {
    {.name = "ThinnedApt", .file = "more.apt", .text = longApt, .status = longStatus, .thinned = true},
    {.name = "ThinnedDat", .file = "more.dat", .text = longDat, .status = longStatus, .thinned = true},
    {.name = "FailedApt",
     .file = "more.apt",
     .text = [] { return std::string(brokenSecondCompartment); },
     .status = "status: Points in the file: 8, kept: 4"},
    {.name = "FailedSkl", .file = "more.skl", .text = [] { return smallLines + std::string("1\n2\n0 0 0\n1 0\n"); }},
    {.name = "SklWithoutItsLastCount", .file = "more.skl", .text = [] { return smallLines + std::string("1\n"); }},
    {.name = "AptWithHalfAHeaderBehind",
     .file = "more.apt",
     .text = [] { return smallCompartment + std::string("2\n"); }},
    {.name = "AptWithHalfAHeaderAtItsVeryEnd",
     .file = "more.apt",
     .text = [] { return smallCompartment + std::string("2"); }},
    {.name = "AptWithAWordBehind", .file = "more.apt", .text = [] { return smallCompartment + std::string("end\n"); }},
    {.name = "SklWithAWordBehind", .file = "more.skl", .text = [] { return smallLines + std::string("end\n"); }},
};

const Incomplete cutFiles[] = {
    {.name = "CutApt", .file = "more.apt", .text = largeApt, .status = largeStatus, .thinned = true},
    {.name = "CutDat", .file = "more.dat", .text = largeDat, .status = largeStatus, .thinned = true},
};

class EachIncomplete : public OverwriteTest, public testing::WithParamInterface<Incomplete> {
protected:
    void SetUp() override {
        file(GetParam().file, GetParam().text());
        size_ = fs::file_size(folder / GetParam().file);
    }

    void expectUntouched() const { EXPECT_EQ(fs::file_size(folder / GetParam().file), size_); }

    std::string asExtension() const { return fs::path(GetParam().file).extension().string().substr(1); }

    Lines saveAs() {
        ui.files.push_back({folder / GetParam().file});
        run("file.saveAs");
        return heard();
    }

    void expectQuestionByItsModel() {
        open(folder / GetParam().file);
        if (GetParam().status != nullptr) {
            EXPECT_THAT(heard(), Contains(testing::StartsWith(GetParam().status)));
        } else {
            EXPECT_THAT(heard(), Not(Contains(testing::StartsWith("status: Points in the file"))));
        }
        const Traces before = traces();
        EXPECT_THAT(saveAs(), ElementsAre("chooser: Save As -> 1", GetParam().question()));
        expectUntouched();
        EXPECT_TRUE(traces() == before);
        if (asExtension() == textOf(doc.fileKind)) {
            run("file.save");
            EXPECT_THAT(heard(), ElementsAre(GetParam().question()));
            expectUntouched();
            runWith("patch.inputAndAdd", {{"number", "1"}});
            forget();
            ui.files.push_back({folder / GetParam().file});
            run("block.saveAs");
            EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", GetParam().question()));
            expectUntouched();
        }
    }

private:
    std::uintmax_t size_ = 0;
};

/// The same for files that are too large to be gone through in every way.
class EachCutFile : public EachIncomplete {};

INSTANTIATE_TEST_SUITE_P(Files, EachCutFile, testing::ValuesIn(cutFiles),
                         [](const auto& instance) { return std::string(instance.param.name); });

INSTANTIATE_TEST_SUITE_P(Files, EachIncomplete, testing::ValuesIn(incompleteFiles),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace

TEST_P(EachIncomplete, IsAskedAboutByTheModelThatCameFromIt) {
    expectQuestionByItsModel();
}

TEST_P(EachCutFile, IsAskedAboutByTheModelThatCameFromIt) {
    expectQuestionByItsModel();
}

TEST_P(EachIncomplete, IsAskedAboutWhenItWasAppended) {
    openModel(Model::Grid);
    ui.files.push_back({folder / GetParam().file});
    run("file.append");
    if (GetParam().status != nullptr) {
        EXPECT_THAT("status: " + doc.status, testing::StartsWith(GetParam().status));
    }
    forget();
    run("file.save"); // over the file of the model, or under the name of its new kind
    EXPECT_FALSE(asked(heard()));
    expectUntouched();
    EXPECT_THAT(saveAs(), ElementsAre("chooser: Save As -> 1", GetParam().question()));
    expectUntouched();
}

TEST_P(EachIncomplete, IsAskedAboutBehindAWholeFileOfAList) {
    const std::string whole = "first." + asExtension();
    openModel(asExtension() == "skl" ? Model::Lines : Model::Grid);
    ui.files.push_back({folder / whole});
    run("file.saveAs");
    ui.answers = {true};
    ui.files.push_back({folder / whole, folder / GetParam().file});
    run("file.open");
    forget();
    EXPECT_THAT(saveAs(), ElementsAre("chooser: Save As -> 1", GetParam().question()));
    expectUntouched();
    ui.files.push_back({folder / whole});
    run("file.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", foreign(whole))); // it is one of several
}

// ---- A part of the model, an export and the buffer are less than the model --------------------------------------------

TEST_F(OverwriteTest, TheBlockIsAskedAboutOverTheFileOfTheWholeModel) {
    openModel(Model::Grid);
    runWith("patch.inputAndAdd", {{"number", "1"}});
    const std::string whole = fileText(folder / "wing.apt");
    const auto saveBlock = [&](bool answer) {
        forget();
        ui.answers = {answer};
        ui.files.push_back({folder / "wing.apt"});
        run("block.saveAs");
        return heard();
    };
    EXPECT_THAT(saveBlock(false), ElementsAre("chooser: Save As -> 1", holdsMore("wing.apt")));
    EXPECT_EQ(fileText(folder / "wing.apt"), whole);
    EXPECT_THAT(saveBlock(true), ElementsAre("chooser: Save As -> 1", holdsMore("wing.apt", "yes")));
    const auto lines = [&] {
        const std::string text = fileText(folder / "wing.apt");
        return std::count(text.begin(), text.end(), '\n');
    };
    EXPECT_EQ(lines(), 7) << "the first patch alone";
    EXPECT_FALSE(asked(saveBlock(false))) << "it holds a block of this document now";
    run("file.save");
    EXPECT_FALSE(asked(heard())) << "all of the model leaves nothing out";
    EXPECT_EQ(lines(), 12);
    EXPECT_THAT(saveBlock(false), ElementsAre("chooser: Save As -> 1", holdsMore("wing.apt")));
}

TEST_F(OverwriteTest, AChooserThatAsksDoesNotKnowThatAPartIsLessThanTheModel) {
    ui.chooserAsks = true;
    openModel(Model::Grid);
    runWith("patch.inputAndAdd", {{"number", "1"}});
    forget();
    ui.files.push_back({folder / "wing.apt"});
    run("block.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", holdsMore("wing.apt")));
}

TEST_F(OverwriteTest, AnExportIsAskedAboutOverAnyFileButOneOfItsOwn) {
    openModel(Model::Zones);
    const auto exportTo = [&](const char* name) {
        forget();
        ui.files.push_back({folder / name});
        runWith("file.export", {});
        Lines lines = heard();
        std::erase_if(lines, [](const std::string& line) { return !line.starts_with("question: "); });
        return lines;
    };
    EXPECT_THAT(exportTo("body.dat"), ElementsAre(holdsMore("body.dat")));
    EXPECT_EQ(fileText(folder / "body.dat"), triangleText);
    EXPECT_THAT(exportTo("out.stl"), IsEmpty());
    EXPECT_THAT(exportTo("out.stl"), IsEmpty()) << "it holds an export of this document";
    file("theirs.stl", "of somebody else");
    EXPECT_THAT(exportTo("theirs.stl"), ElementsAre(foreign("theirs.stl")));
    ui.files.push_back({folder / "saved.stl"});
    run("file.saveAs");
    EXPECT_THAT(exportTo("saved.stl"), ElementsAre(holdsMore("saved.stl")));
}

TEST_F(OverwriteTest, TrianglesThatTheWriterLeavesOutAreAskedAbout) {
    const std::string text = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                             "endloop\nendfacet\nendsolid a\n";
    open(file("a.stl", text));
    runWith("model.scaling", {{"scale", "0"}});
    forget();
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre(holdsMore("a.stl")));
    EXPECT_EQ(fileText(folder / "a.stl"), text);
    ui.answers.push_back(true);
    run("file.save");
    EXPECT_THAT(heard(), testing::Contains(holdsMore("a.stl", "yes")));
    runWith("model.move", {{"deltaX", "1"}});
    forget();
    run("file.save");
    EXPECT_THAT(heard(), testing::Not(testing::Contains(testing::StartsWith("question: "))))
        << "the file that is there holds no more";
}

TEST_F(OverwriteTest, ExportOfTheBlockAloneTellsThatAnEmptyOneIsAll) {
    const char* const told = "message: The zBlock is empty: the whole model is written";
    openModel(Model::Grid);
    ui.files = {{folder / "all.stl"}, {folder / "part.stl"}};
    runWith("file.export", {{"onlyBlock", "1"}});
    EXPECT_THAT(heard(), Contains(told));
    addToBlock(0);
    runWith("file.export", {{"onlyBlock", "1"}});
    EXPECT_THAT(heard(), testing::Not(Contains(told)));
}

// Six digits of coordinates of a survey leave nothing of the shape: a warning alone would come too late.
TEST_F(OverwriteTest, AFileWhosePointsWouldMoveCanBeKept) {
    const std::string text = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 1000000.25 0 0\nvertex 1000001.25 0 0\n"
                             "vertex 1000000.25 1 0\nendloop\nendfacet\nendsolid a\n";
    open(file("survey.stl", text));
    doc.documentModified = true;
    forget();
    ui.callsOff = true;
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre("message: With 6 digits points move by up to 1.25"));
    EXPECT_EQ(fileText(folder / "survey.stl"), text);
    EXPECT_TRUE(doc.documentModified);
    ui.files.push_back({folder / "new.stl"}); // where nothing can be lost it is told alone
    run("file.saveAs");
    EXPECT_TRUE(fs::exists(folder / "new.stl"));
    ui.callsOff = false;
    ui.files.push_back({folder / "new.stl"});
    run("file.saveAs");
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(OverwriteTest, AFailedWriteOfZonesIsToldByTheNameOfTheFile) {
    openModel(Model::Zones);
    fs::remove(folder / "body.dat");
    fs::create_directory(folder / "body.dat");
    run("file.save");
    EXPECT_EQ(doc.status, "body.dat was not written");
}

TEST_F(OverwriteTest, NoPartOfTheKnifeIsWrittenWhereTheOtherCannotBe) {
    openModel(Model::Zones);
    file("body_1.dat", "of somebody else");
    fs::create_directory(folder / "body_2.dat");
    forget();
    ui.answers = {true};
    runWith("convert.knife", {{"planeKind", "1"}, {"section", "0.5"}, {"cutKind", "3"}});
    EXPECT_THAT(heard(), Contains("message: It is impossible to save current file"));
    EXPECT_EQ(doc.status, "body_2.dat was not written");
    EXPECT_EQ(fileText(folder / "body_1.dat"), "of somebody else");
}

// What a program that is killed in the middle leaves behind is the files under their names, and no third one.
TEST_F(OverwriteTest, TheKnifePutsNoSecondNameBesideTheFilesThatItReplaces) {
    openModel(Model::Zones);
    file("body_1.dat", "of somebody else");
    file("body_2.dat", "of somebody else");
    ui.answers = {true, true};
    runWith("convert.knife", {{"planeKind", "1"}, {"section", "0.5"}, {"cutKind", "3"}});
    EXPECT_NE(fileText(folder / "body_1.dat"), "of somebody else");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 3);
}

// ---- What a file tells of itself ------------------------------------------------------------------------------------

TEST_F(OverwriteTest, AChangeThatPutsTheTimeBackIsAChange) {
    const fs::path path = file("wing.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    open(path);
    const auto time = fs::last_write_time(path);
    std::fstream(path, std::ios::in | std::ios::out).seekp(4) << "7";
    fs::last_write_time(path, time);
    doc.documentModified = true;
    forget();
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre(changed("wing.apt")));
}

TEST_F(OverwriteTest, OtherPermissionsOrASecondNameAreNoChange) {
    const fs::path path = file("wing.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    open(path);
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    forget();
    run("file.save");
    EXPECT_FALSE(asked(heard()));
    fs::create_hard_link(path, folder / "other.apt");
    run("file.save");
    EXPECT_FALSE(asked(heard()));
}

TEST_F(OverwriteTest, TheBufferIsAskedAboutOverTheFileOfAModel) {
    openModel(Model::Lines);
    runWith("line.inputSection", {{"patch", "1"}, {"section", "1"}});
    run("line.copy");
    const std::string whole = fileText(folder / "hull.skl");
    forget();
    ui.files.push_back({folder / "hull.skl"});
    run("buffer.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", holdsMore("hull.skl")));
    EXPECT_EQ(fileText(folder / "hull.skl"), whole);
}

TEST_F(OverwriteTest, TheBufferGoesBackToTheFileThatItCameFromWithoutAQuestion) {
    openModel(Model::Grid);
    ui.files.push_back({file("points.ext", "0 0 0\n1 2 3\n")});
    run("buffer.open");
    forget();
    ui.files.push_back({folder / "points.ext"});
    run("buffer.saveAs");
    EXPECT_FALSE(asked(heard()));
}

TEST_F(OverwriteTest, APartOfTheKnifeIsAskedAboutOverAFileOfTheWholeModel) {
    openModel(Model::Zones);
    for (const char* name : {"body_1.dat", "body.dat"}) {
        ui.answers = {true};
        ui.files.push_back({folder / name});
        run("file.saveAs");
    }
    const std::string whole = fileText(folder / "body_1.dat");
    forget();
    ui.answers = {false};
    runWith("convert.knife", {{"planeKind", "1"}, {"section", "0.5"}, {"cutKind", "3"}});
    EXPECT_THAT(heard(), Contains(holdsMore("body_1.dat")));
    EXPECT_EQ(fileText(folder / "body_1.dat"), whole);
}

TEST_F(OverwriteTest, ALinkThatGivesTheModelsFileAnotherTypeIsAskedAbout) {
    openModel(Model::Zones);
    fs::create_symlink(folder / "body.dat", folder / "body.stl");
    forget();
    ui.files.push_back({folder / "body.stl"});
    run("file.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", holdsMore("body.stl")));
    EXPECT_EQ(fileText(folder / "body.dat"), triangleText);
}

// What was lost on the way in comes before the stranger's file, as with Open.
TEST_F(OverwriteTest, AnImportedFileIsAskedAboutByWhatWasLostOfIt) {
    const std::string square = "OFF\n4 1 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n";
    file("square.off", square);
    fs::create_symlink(folder / "square.off", folder / "square.stl");
    file("three.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n1 1 0\n3 0 1 2\n");
    fs::create_symlink(folder / "three.off", folder / "three.stl");
    for (const bool lossy : {true, false}) {
        const std::string name = lossy ? "square" : "three";
        ui.answers = {true};
        ui.files.push_back({folder / (name + ".off")});
        runWith("file.import", {});
        ui.answers.clear();
        forget();
        ui.files.push_back({folder / (name + ".stl")});
        runWith("file.export", {});
        EXPECT_THAT(heard(), Contains(lossy ? holdsMore(name + ".stl") : foreign(name + ".stl")));
    }
    EXPECT_EQ(fileText(folder / "square.off"), square);
}

TEST_F(OverwriteTest, ATypeWithoutANameIsRefusedInAWholeSentence) {
    openModel(Model::Zones);
    forget();
    ui.files.push_back({folder / "out"});
    run("file.saveAs");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1",
                                     "message: This model cannot be saved as a file without an extension"));
    ui.answers = {true};
    ui.files.push_back({folder / "out"});
    run("file.import");
    EXPECT_THAT(heard(), Contains("message: Files without an extension cannot be imported"));
}

TEST_F(OverwriteTest, ATriangulatedModelAsksBeforeItIsSavedOverTheThinnedFileItCameFrom) {
    open(file("more.dat", longDat()));
    EXPECT_EQ(doc.modelFile.documentTitle, "more.apt");
    run("convert.toUnstructured");
    EXPECT_EQ(doc.modelFile.documentTitle, "more.dat");
    forget();
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre(holdsMorePoints + std::string("no")));
    EXPECT_EQ(fs::file_size(folder / "more.dat"), longDat().size());
    ui.answers = {true};
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre(holdsMorePoints + std::string("yes"), "message: DAT file is written"));
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre("message: DAT file is written"));
}

TEST_F(OverwriteTest, BothPartsOfTheKnifeAreAskedAboutBeforeOneIsWritten) {
    openModel(Model::Zones);
    forget();
    for (const char* part : {"body_1.dat", "body_2.dat"}) {
        writeFileText(folder / part, "of somebody else");
    }
    const Writer& knife = *std::find_if(std::begin(writers), std::end(writers), [](const Writer& writer) {
        return std::string(writer.name) == "KnifePartBefore";
    });
    EXPECT_THAT(write(knife, {true, false}), ElementsAre(foreign("body_1.dat", "yes"), foreign("body_2.dat")));
    EXPECT_EQ(fileText(folder / "body_1.dat"), "of somebody else");
    EXPECT_EQ(fileText(folder / "body_2.dat"), "of somebody else");
    EXPECT_THAT(write(knife, {true, true}),
                ElementsAre(foreign("body_1.dat", "yes"), foreign("body_2.dat", "yes"),
                            "message: Parts are saved in dat format with indexes _1 and _2"));
    EXPECT_NE(fileText(folder / "body_1.dat"), "of somebody else");
    EXPECT_NE(fileText(folder / "body_2.dat"), "of somebody else");
}

TEST_F(OverwriteTest, ARefusedFieldFileIsNotAskedAbout) {
    open(file("more.apt", brokenSecondCompartment));
    openModel(Model::Lines);
    for (const char* target : {"more.apt", "more.dat"}) {
        if (!fs::exists(folder / target)) {
            fs::create_symlink(folder / "more.apt", folder / target);
        }
        forget();
        ui.files.push_back({folder / target});
        call("file.saveAsField");
        EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", "message: Wrong file Extension"));
        EXPECT_EQ(fileText(folder / "more.apt"), brokenSecondCompartment);
    }
}

// ---- Files of which nothing came into the model ---------------------------------------------------------------------

namespace {

/// A file that cannot be read whole, and gives no model.
struct Failing {
    const char* name;
    const char* file;
    std::string text;

    friend void PrintTo(const Failing& failing, std::ostream* out) { *out << failing.name; }
};

const Failing failingFiles[] = {
    {.name = "Dat",
     .file = "bad.dat",
     .text = triangleText + std::string("ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n1\n")},
    {.name = "DatWithoutCoordinates", .file = "bad.dat", .text = "ZONE I=3, J=2, K=1, F=POINT\n1 2 3\n"},
    {.name = "Wrl",
     .file = "bad.wrl",
     .text = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 5 1 0 5 0 1 5 ] } "
             "coordIndex [ 0 1 4 -1 ] } }\n"},
};

class EachFailing : public OverwriteTest, public testing::WithParamInterface<Failing> {
protected:
    void SetUp() override { file(GetParam().file, GetParam().text); }

    void expectQuestion() {
        forget();
        ui.files.push_back({folder / GetParam().file});
        run("file.saveAs");
        EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", foreign(GetParam().file)));
        EXPECT_EQ(fileText(folder / GetParam().file), GetParam().text);
    }
};

INSTANTIATE_TEST_SUITE_P(Files, EachFailing, testing::ValuesIn(failingFiles),
                         [](const auto& instance) { return std::string(instance.param.name); });

} // namespace

TEST_P(EachFailing, IsAskedAboutAfterItWasOpened) {
    open(folder / GetParam().file);
    openModel(Model::Zones);
    expectQuestion();
}

TEST_P(EachFailing, IsAskedAboutAfterItWasAppended) {
    openModel(Model::Zones);
    ui.files.push_back({folder / GetParam().file});
    run("file.append");
    if (GetParam().name != std::string("DatWithoutCoordinates")) { // its zones are taken as they are there
        expectQuestion();
    }
    EXPECT_EQ(fileText(folder / GetParam().file), GetParam().text);
}

TEST_P(EachFailing, IsNotAskedAboutOnceItIsRepairedAndReadAgain) {
    open(folder / GetParam().file);
    const std::string name = GetParam().file;
    if (name == "bad.dat") {
        file(name, triangleText);
        open(folder / name);
    } else {
        openModel(Model::Zones);
        doc.feRegion.title.clear(); // that of a scene is not read
        ui.files.push_back({folder / "good.wrl"});
        run("file.saveAs");
        fs::rename(folder / "good.wrl", folder / name);
        open(folder / name);
    }
    ASSERT_EQ(doc.structureKind, StructureKind::Unstructured);
    ui.files.push_back({folder / name});
    forget();
    run("file.saveAs");
    EXPECT_FALSE(asked(heard()));
}

TEST_F(OverwriteTest, ABadFileBehindAGoodOneOfAListIsNotSavedOverWithoutAYes) {
    const std::string bad = triangleText + std::string("ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n1\n");
    ui.files.push_back({file("good.dat", triangleText), file("bad.dat", bad)});
    run("file.open");
    EXPECT_EQ(doc.feRegion.blocks.size(), 1U);
    forget();
    run("file.save");
    EXPECT_THAT(heard(), ElementsAre(foreign("good.dat"))); // one of several, and the bad one gave it no name
    EXPECT_EQ(fileText(folder / "good.dat"), triangleText);
    EXPECT_EQ(fileText(folder / "bad.dat"), bad);
}

TEST_F(OverwriteTest, AFieldFileWithTextBehindItsEndIsAskedAbout) {
    for (const bool behind : {false, true}) {
        const std::string text = fieldText + std::string(behind ? "\nnotes\n" : "\n\n");
        ui.answers = {true};
        ui.files.push_back({file("flow.dat", text)});
        call("file.openField");
        ASSERT_TRUE(doc.fieldMode);
        forget();
        ui.files.push_back({folder / "flow.dat"});
        run("file.saveAsField");
        EXPECT_EQ(asked(heard()), behind);
        EXPECT_EQ(fileText(folder / "flow.dat") == text, behind);
    }
}

TEST_F(OverwriteTest, AFieldFileThatFailedIsAskedAbout) {
    const std::string text = fieldText + std::string("ZONE T=\"ZONE_1\",I=2,J=2,K=1,F= POINT\n0 0\n");
    ui.files.push_back({file("bad.dat", text)});
    call("file.openField");
    openModel(Model::Field);
    ui.answers.clear();
    forget();
    ui.files.push_back({folder / "bad.dat"});
    run("file.saveAsField");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", foreign("bad.dat")));
    EXPECT_EQ(fileText(folder / "bad.dat"), text);
}

TEST_F(OverwriteTest, AnIncompleteFileThatIsGoneIsWrittenByItsModelWithoutAQuestion) {
    open(file("more.apt", brokenSecondCompartment));
    ASSERT_FALSE(doc.patches.empty());
    fs::remove(folder / "more.apt");
    forget();
    run("file.save");
    EXPECT_FALSE(asked(heard()));
    EXPECT_TRUE(fs::exists(folder / "more.apt"));
}

TEST_F(OverwriteTest, AFileThatCouldNotBeOpenedIsThatOfAStrangerOnceItIsThere) {
    for (const char* name : {"absent.apt", "absent.skl"}) {
        open(folder / name);
        openModel(Model::Grid);
        writeFileText(folder / name, "of somebody else");
        forget();
        ui.files.push_back({folder / name});
        run("file.saveAs");
        EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", foreign(name)));
    }
}

} // namespace velmora::test
