#include <algorithm>
#include <functional>

#include "CommandTest.h"
#include "DialogValues.h"
#include "exchange_files.h"
#include "file_texts.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

const char* const idle = "For Help, press F1";
const char* const stlText = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                            "endloop\nendfacet\nendsolid a\n";
const char* const datHead = "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\n";
const char* const gridZone = "ZONE T=\"g\", I=2, J=2, K=1, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
const char* const fieldText = "TITLE = \"flow\"\nVARIABLES = \"X\", \"Y\", \"Z\", \"P\"\n"
                              "ZONE T=\"ZONE_0\",I=2,J=2,K=1,F= POINT\n0 0 0 10\n1 0 0 11\n0 1 0 12\n1 1 0 13\n";

/// What the document says of its file.
struct Names {
    std::string title, path, extension, structure, kind;
};

class FileEvents : public CommandTest {
public:
    void runFile(const std::string& id, const fs::path& path) {
        ui.answers = {true};
        ui.files.push_back({path});
        run(id);
        ui.answers.clear();
    }

    void openGrid() { runFile("file.open", file("small.apt", aptText({flatPatch(2, 2)}))); }

    void type(bool lines) {
        ui.answers = {true};
        ui.onRegularInput = [lines](CRegularInput& table) {
            table.regularPatches.assign(1, lines ? patchOf({1, 2}) : flatPatch(2, 2));
            return true;
        };
        run("file.new");
        ui.answers.clear();
    }

    void turnIntoCylinder() {
        runWith("line.inputSection", {{"patch", "1"}, {"section", "2"}});
        ui.answers = {true};
        run("line.cylinder");
        ui.answers.clear();
    }

    /// Gives the first section five points, by way of the buffer.
    void lengthenASection() {
        runFile("buffer.open", file("more.ext", "0 0 0\n1 0 0\n2 0 0\n3 0 0\n4 0 0\n"));
        runWith("line.inputSection", {{"patch", "1"}, {"section", "1"}});
        run("line.paste");
        run("line.exit");
    }

    void expectNames(const Names& names) const {
        EXPECT_EQ(doc.modelFile.documentTitle, names.title);
        EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + names.path);
        EXPECT_EQ(doc.modelFile.currentDirectory, shownFolder());
        if (!names.extension.empty()) {
            EXPECT_EQ(doc.modelFile.fileExtension, names.extension);
        }
        EXPECT_EQ(textOf(doc.structureKind), names.structure);
        EXPECT_EQ(textOf(doc.fileKind), names.kind);
    }

    using CommandTest::doc;
    using CommandTest::extentStatus;
    using CommandTest::folder;
    using CommandTest::ui;
    using CommandTest::view;
};

// ---- What may have gone before ------------------------------------------------------------------

struct Before {
    const char* name;
    void (*happen)(FileEvents&);
    bool patches = true; ///< it leaves a structured model that can be edited
};

/// The idle prompt, or in its place what there is to say of a model that is a single place, or no grid any more.
void expectIdle(const FileEvents& t) {
    EXPECT_TRUE(t.doc.status == idle || t.doc.status == t.extentStatus() || t.doc.status == "The grid became triangles")
        << t.doc.status;
}

/// What is said of the file that was read, and of the one that Save will write.
bool tellsOfFile(const std::string& status) {
    return status.find("Save writes ") != std::string::npos || status.starts_with("Line 2 does not name") ||
           status.starts_with("Patch 1: its header") || status.starts_with("Titles of zones");
}

std::string longApt() {
    std::string text = "2 100502\n";
    for (int i = 0; i < 2 * 100502; ++i) {
        text += std::to_string(i % 100502) + (i < 100502 ? " 0 0\n" : " 1 0\n");
    }
    return text;
}

const Before befores[] = {
    {.name = "Nothing", .happen = [](FileEvents&) {}, .patches = false},
    {.name = "GridReadInPart", .happen = [](FileEvents& t) { t.open(t.file("bad.apt", brokenSecondCompartment)); }},
    {.name = "LinesReadInPart",
     .happen = [](FileEvents& t) { t.open(t.file("bad.skl", "2\n1\n0 0 0\n2\n0 1 0\n1 1 0\n1\n")); }},
    {.name = "BadFileAppended",
     .happen =
         [](FileEvents& t) {
             t.openGrid();
             t.runFile("file.append", t.file("bad.apt", brokenSecondCompartment));
         }},
    {.name = "NothingOfABadFile",
     .happen = [](FileEvents& t) { t.open(t.file("bad.apt", "2 2\n0 0 0\n")); },
     .patches = false},
    {.name = "AFileThatIsNotThere", .happen = [](FileEvents& t) { t.open(t.folder / "absent.apt"); }, .patches = false},
    {.name = "ThinnedGrid", .happen = [](FileEvents& t) { t.open(t.file("long.apt", longApt())); }},
    {.name = "Field",
     .happen = [](FileEvents& t) { t.runFile("file.openField", t.file("f.dat", fieldText)); },
     .patches = false},
    {.name = "ClosedField",
     .happen =
         [](FileEvents& t) {
             t.runFile("file.openField", t.file("f.dat", fieldText));
             t.run("file.closeField");
         },
     .patches = false},
    {.name = "BadField",
     .happen = [](FileEvents& t) { t.runFile("file.openField", t.file("f.dat", "TITLE\nVARIABLES\n")); },
     .patches = false},
    {.name = "NamedGrid", .happen = [](FileEvents& t) { t.open(t.file("old.grd", "")); }, .patches = false},
    {.name = "Zones", .happen = [](FileEvents& t) { t.open(t.file("body.stl", stlText)); }, .patches = false},
    {.name = "Untitled", .happen = [](FileEvents& t) { t.type(true); }},
};

// ---- Commands that begin another model ----------------------------------------------------------

struct Beginning {
    const char* name;
    void (*run)(FileEvents&);
    Names names;
    const char* afterEdit = nullptr; ///< title and file once a section has another length than the others
    bool ofPatches = false;          ///< the command works on a structured model
};

const Beginning beginnings[] = {
    {.name = "OpenGrid",
     .run = [](FileEvents& t) { t.openGrid(); },
     .names = {"small.apt", "small.apt", "apt", "str", "apt"},
     .afterEdit = "small.skl"},
    {.name = "OpenGridByPath",
     .run = [](FileEvents& t) { t.open(t.file("Small.APT", aptText({flatPatch(2, 2)}))); },
     .names = {"small.apt", "small.apt", "apt", "str", "apt"},
     .afterEdit = "small.skl"},
    {.name = "OpenLines",
     .run =
         [](FileEvents& t) {
             t.runFile("file.open", t.file("hull.skl", sklText({patchOf({1, 2})})));
         },
     .names = {"hull.skl", "hull.skl", "skl", "str", "skl"},
     .afterEdit = "hull.skl"},
    {.name = "OpenGridOfTecplot",
     .run = [](FileEvents& t) { t.runFile("file.open", t.file("g.dat", datHead + std::string(gridZone))); },
     .names = {"g.apt", "g.apt", "dat", "str", "apt"},
     .afterEdit = "g.skl"},
    {.name = "OpenTriangles",
     .run = [](FileEvents& t) { t.runFile("file.open", t.file("s.stl", stlText)); },
     .names = {"s.dat", "s.stl", "stl", "uns", "non"}},
    {.name = "OpenField",
     .run = [](FileEvents& t) { t.runFile("file.openField", t.file("flow.dat", fieldText)); },
     .names = {"flow.dat", "flow.dat", "dat", "str", "apt"}},
    {.name = "NameGrid",
     .run = [](FileEvents& t) { t.runFile("file.open", t.file("net.grd", "")); },
     .names = {"net.dat", "net.grd", "grd", "uns", "non"}},
    {.name = "TypeGrid",
     .run = [](FileEvents& t) { t.type(false); },
     .names = {"Untitled.apt", "Untitled.apt", "apt", "str", "apt"},
     .afterEdit = "untitled.skl"},
    {.name = "TypeLines",
     .run = [](FileEvents& t) { t.type(true); },
     .names = {"Untitled.skl", "Untitled.skl", "skl", "str", "skl"},
     .afterEdit = "untitled.skl"},
    {.name = "Cylinder",
     .run = [](FileEvents& t) { t.turnIntoCylinder(); },
     .names = {"Untitled.apt", "Untitled.apt", "apt", "str", "apt"},
     .afterEdit = "untitled.skl",
     .ofPatches = true},
};

} // namespace

TEST(FileEventPairs, EveryBeginningForgetsWhatWasThereBefore) {
    for (const Before& before : befores) {
        for (const Beginning& beginning : beginnings) {
            if (beginning.ofPatches && !before.patches) {
                continue;
            }
            SCOPED_TRACE(std::string(before.name) + ", " + beginning.name);
            class Pair : public FileEvents {
                void TestBody() override {}
            } t;
            before.happen(t);
            t.ui.transcript.clear();
            beginning.run(t);
            const Names& names = beginning.names;
            t.expectNames(names);
            // Where Save goes, and what a file lost, is told; of what was captured before nothing is left.
            if (!tellsOfFile(t.doc.status)) {
                expectIdle(t);
            }
            EXPECT_THAT(t.ui.transcript, Not(Contains(StartsWith("status: Points in the file"))));
            EXPECT_EQ(t.doc.fieldMode, beginning.name == std::string("OpenField"));
            EXPECT_TRUE(t.doc.gridNamed || beginning.name != std::string("NameGrid"));
            EXPECT_EQ(t.doc.patches.empty(), names.structure == "uns");
            if (beginning.afterEdit != nullptr) {
                t.lengthenASection();
                t.expectNames({beginning.afterEdit, beginning.afterEdit, "", "str", "skl"});
                t.ui.transcript.clear();
                t.run("file.save");
                EXPECT_THAT(t.ui.transcript, Not(Contains(StartsWith("question: "))));
                EXPECT_THAT(t.ui.transcript, Not(Contains(StartsWith("message: "))));
                EXPECT_EQ(t.doc.modelFile.documentTitle, beginning.afterEdit);
            }
        }
    }
}

// ---- Commands that go on with the model ---------------------------------------------------------

namespace {

/// What becomes of a model from a file of the stem "x", be it that its title is Wrong.
struct Going {
    const char* name;
    void (*run)(FileEvents&);
    Names names;
    bool edited = true;       ///< a change of its kind then gives the title its extension
    bool keepsStatus = false; ///< the counts of what was read stay in the status line
};

const Going goings[] = {
    {.name = "Save",
     .run =
         [](FileEvents& t) {
             t.ui.answers = {true};
             t.run("file.save");
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"},
     .keepsStatus = true},
    {.name = "SaveAsGrid",
     .run = [](FileEvents& t) { t.runFile("file.saveAs", t.folder / "Y.apt"); },
     .names = {"y.apt", "y.apt", "apt", "str", "apt"},
     .keepsStatus = true},
    {.name = "SaveAsLines",
     .run = [](FileEvents& t) { t.runFile("file.saveAs", t.folder / "Y.skl"); },
     .names = {"y.skl", "y.skl", "skl", "str", "apt"},
     .keepsStatus = true},
    {.name = "SaveAsTriangles",
     .run = [](FileEvents& t) { t.runFile("file.saveAs", t.folder / "y.STL"); },
     .names = {"y.stl", "y.stl", "stl", "uns", "non"},
     .keepsStatus = true},
    {.name = "SaveAsTrianglesAndUndo",
     .run =
         [](FileEvents& t) {
             t.runFile("file.saveAs", t.folder / "Y.wrl");
             t.run("patch.undo");
         },
     .names = {"y.apt", "y.apt", "wrl", "str", "apt"}},
    {.name = "SaveAsGridOfTecplot",
     .run =
         [](FileEvents& t) {
             t.runFile("file.saveAs", t.folder / "y.dat");
             t.run("file.save");
         },
     .names = {"y.apt", "y.apt", "dat", "str", "apt"},
     .keepsStatus = true},
    {.name = "ToTriangles",
     .run = [](FileEvents& t) { t.run("convert.toUnstructured"); },
     .names = {"x.dat", "x.dat", "apt", "uns", "non"}},
    {.name = "ToLines",
     .run =
         [](FileEvents& t) {
             t.run("convert.toUnstructured");
             t.runWith("convert.toSkl", {{"number", "2"}, {"border", "0.1"}});
         },
     .names = {"x.skl", "x.skl", "apt", "str", "skl"},
     .edited = false},
    {.name = "ToLinesAndGrid",
     .run =
         [](FileEvents& t) {
             t.run("convert.toUnstructured");
             t.runWith("convert.toSkl", {{"number", "2"}, {"border", "0.1"}});
             t.runWith("convert.toApt", {{"pointCount", "5"}});
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"},
     .edited = false},
    {.name = "Append",
     .run = [](FileEvents& t) { t.runFile("file.append", t.file("tail.apt", aptText({flatPatch(3, 2)}))); },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"}},
    {.name = "AppendLines",
     .run =
         [](FileEvents& t) {
             t.runFile("file.append", t.file("tail.skl", sklText({patchOf({1, 2})})));
         },
     .names = {"x.skl", "x.skl", "skl", "str", "skl"}},
    {.name = "AppendTriangles",
     .run =
         [](FileEvents& t) {
             t.runFile("file.append", t.file("tail.dat", datHead + std::string("ZONE N=3, E=1, F=FEPOINT, "
                                                                               "ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n"
                                                                               "1 2 3\n")));
         },
     .names = {"x.dat", "x.apt", "dat", "uns", "apt"}},
    {.name = "AppendGridOfTecplot",
     .run = [](FileEvents& t) { t.runFile("file.append", t.file("tail.dat", datHead + std::string(gridZone))); },
     .names = {"x.apt", "x.apt", "dat", "str", "apt"}},
    {.name = "NewAndUndo",
     .run =
         [](FileEvents& t) {
             t.ui.answers = {true};
             t.run("file.new");
             t.run("patch.undo");
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"}},
    {.name = "OpenAndUndo",
     .run =
         [](FileEvents& t) {
             t.runFile("file.open", t.file("other.stl", stlText));
             t.run("patch.undo");
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"}},
    {.name = "OpenFieldAndUndo",
     .run =
         [](FileEvents& t) {
             t.runFile("file.openField", t.file("other.dat", fieldText));
             t.run("patch.undo");
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"}},
    {.name = "CylinderAndUndo",
     .run =
         [](FileEvents& t) {
             t.turnIntoCylinder();
             t.run("patch.undo");
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"}},
    {.name = "ToTrianglesAndUndo",
     .run =
         [](FileEvents& t) {
             t.run("convert.toUnstructured");
             t.run("patch.undo");
         },
     .names = {"x.apt", "x.apt", "apt", "str", "apt"}},
};

} // namespace

TEST(FileEventPairs, EveryCommandThatGoesOnGivesTheModelItsName) {
    const std::pair<const char*, std::string> files[] = {
        {"whole", aptText({flatPatch(2, 2)})}, {"in part", brokenSecondCompartment}, {"thinned", longApt()}};
    for (const auto& [kind, text] : files) {
        for (const Going& going : goings) {
            SCOPED_TRACE(std::string(kind) + ", " + going.name);
            class Pair : public FileEvents {
                void TestBody() override {}
            } t;
            t.open(t.file("X.apt", text));
            EXPECT_EQ(t.doc.modelFile.documentTitle, kind == std::string("in part") ? "Wrong" : "x.apt");
            const std::string status = t.doc.status;
            t.ui.transcript.clear();
            going.run(t);
            t.ui.answers.clear();
            t.expectNames(going.names);
            if (going.keepsStatus && !tellsOfFile(t.doc.status)) {
                EXPECT_EQ(t.doc.status, status);
            } else if (!tellsOfFile(t.doc.status)) {
                expectIdle(t);
            }
            EXPECT_THAT(t.ui.transcript, Not(Contains(StartsWith("status: Points in the file"))));
            EXPECT_FALSE(t.doc.fieldMode || t.doc.fieldLoaded || t.doc.fieldOpening);
            EXPECT_EQ(t.doc.feRegion.blocks.empty(), going.names.structure == "str");
            if (going.edited && going.names.structure == "str") {
                const std::string lines = going.names.title.substr(0, 1) + ".skl";
                t.lengthenASection();
                t.expectNames({lines, lines, "", "str", "skl"});
            }
        }
    }
}

// ---- What the file commands ask their chooser ---------------------------------------------------

namespace {

struct Asking {
    const char* command;
    void (*prepare)(FileEvents&);
    ChooserMode mode;
    bool multiple;
    std::vector<std::string> extensions;
    const char* proposed; ///< in the folder of the model; with a "/" as it is; empty for none
};

void openZones(FileEvents& t) {
    t.open(t.file("Body.stl", stlText));
}
void openField(FileEvents& t) {
    t.runFile("file.openField", t.file("Flow.dat", fieldText));
}
void openSmall(FileEvents& t) {
    t.openGrid();
}
void captureCurve(FileEvents& t) {
    t.openGrid();
    t.runWith("line.inputSection", {{"patch", "1"}, {"section", "1"}});
    t.run("line.copy");
}
/// A grid of its own among lines.
void selectGridOfLines(FileEvents& t) {
    t.open(t.file("Hull.skl", sklText({patchOf({1, 2}), flatPatch(2, 2)})));
    t.runWith("patch.inputAndAdd", {{"number", "2"}});
}
void selectLines(FileEvents& t) {
    t.open(t.file("Hull.skl", sklText({patchOf({1, 2}), flatPatch(2, 2)})));
    t.runWith("patch.inputAndAdd", {{"number", "1"}});
}
void selectZone(FileEvents& t) {
    openZones(t);
    t.runWith("patch.inputAndAdd", {{"number", "1"}});
}
void nameGrid(FileEvents& t) {
    t.open(t.file("net.grd", ""));
}

/// Those for which the program is built with a reader or a writer.
std::vector<std::string> among(std::vector<std::string> types, const std::vector<std::string_view>& known) {
    std::erase_if(types, [&known](const std::string& type) {
        return std::find(known.begin(), known.end(), type) == known.end();
    });
    return types;
}
std::vector<std::string> exportTypes(const std::vector<std::string>& types) {
    return among(types, exportExtensions());
}
const std::vector<std::string> importTypes =
    among({"stl", "obj", "ply", "off", "gltf", "glb",  "3mf", "wrl",  "iv",  "dat", "plt",
           "tec", "x",   "xyz", "p3d", "fmt",  "cgns", "stp", "step", "igs", "iges"},
          importExtensions());

const Asking askings[] = {
    {"file.open",
     openSmall,
     ChooserMode::Open,
     true,
     {"apt", "skl", "dat", "wrl", "stl", "apm", "fld", "grd"},
     "small.apt"},
    {"file.append", openSmall, ChooserMode::Append, false, {"apt", "skl", "dat"}, "small.apt"},
    {"file.append", openZones, ChooserMode::Append, false, {"dat", "wrl", "stl"}, "Body.stl"},
    {"file.import", openSmall, ChooserMode::Import, false, importTypes, "small.apt"},
    {"file.export", openSmall, ChooserMode::Export, false,
     exportTypes({"p3d", "xyz", "dat", "cgns", "stl", "obj", "ply", "wrl"}), "small.apt"},
    {"file.export", openZones, ChooserMode::Export, false, exportTypes({"stl", "obj", "ply", "wrl", "dat", "cgns"}),
     "Body.stl"},
    {"file.saveAs", openSmall, ChooserMode::SaveAs, false, {"apt", "skl", "dat", "wrl", "stl"}, "small.apt"},
    {"file.saveAs", openZones, ChooserMode::SaveAs, false, {"dat", "wrl", "stl"}, "Body.stl"},
    {"file.openField", openSmall, ChooserMode::Open, true, {"dat"}, "small.apt"},
    {"file.saveAsField", openField, ChooserMode::SaveAs, false, {"dat"}, "Flow.dat"},
    {"file.appendWrl", openSmall, ChooserMode::Append, false, {"wrl"}, ""},
    {"file.appendDat", openSmall, ChooserMode::Append, false, {"dat"}, ""},
    {"file.appendSft", openSmall, ChooserMode::Append, false, {"sft"}, ""},
    {"file.appendCbc", nameGrid, ChooserMode::Append, false, {"cbc", "bc"}, ""},
    {"file.openApm", openSmall, ChooserMode::Open, false, {"apm"}, "Markers.apm"},
    {"buffer.open", captureCurve, ChooserMode::Open, false, {"ext"}, "Line_buf.ext"},
    {"buffer.saveAs", captureCurve, ChooserMode::SaveAs, false, {"ext"}, "Line_buf.ext"},
    {"block.saveAs", selectLines, ChooserMode::SaveAs, false, {"skl"}, "Hull.skl"},
    {"block.saveAs", selectGridOfLines, ChooserMode::SaveAs, false, {"apt"}, "Hull.apt"},
    {"block.saveAs", selectZone, ChooserMode::SaveAs, false, {"dat", "wrl", "stl"}, "Body.stl"},
};

} // namespace

TEST(FileEventPairs, EveryCommandAsksItsChooserForItsFiles) {
    for (const Asking& asking : askings) {
        SCOPED_TRACE(asking.command);
        class Asked : public FileEvents {
            void TestBody() override {}
        } t;
        asking.prepare(t);
        t.ui.requests.clear();
        t.ui.answers = {true};
        t.run(asking.command);
        ASSERT_EQ(t.ui.requests.size(), 1U);
        const FileRequest& request = t.ui.requests.front();
        EXPECT_EQ(request.mode, asking.mode);
        EXPECT_EQ(request.multiple, asking.multiple);
        EXPECT_EQ(request.command, asking.command);
        std::vector<std::string> extensions;
        for (const FileType& type : request.types) {
            extensions.push_back(type.extension);
        }
        EXPECT_EQ(extensions, asking.extensions);
        // The buffer and the markers have a name of their own, without a folder.
        const std::string proposed = asking.proposed;
        const bool bare = proposed.empty() || proposed.starts_with("Line_buf") || proposed.starts_with("Markers");
        EXPECT_EQ(request.proposed, bare ? fs::path(proposed) : t.folder / proposed);
    }
}

// ---- What they leave behind ---------------------------------------------------------------------

namespace {

using Traces = FileEvents;

} // namespace

TEST_F(Traces, ANewModelIsDrawnAndCountsAsChanged) {
    openGrid();
    doc.dialogs->regularInput.typed = {1, 2, 3};
    viewCalls();
    ui.onRegularInput = [](CRegularInput& table) {
        EXPECT_EQ(table.typed, zVec<double>());
        table.regularPatches.assign(1, flatPatch(2, 3, 7));
        return true;
    };
    ui.answers = {true};
    run("file.new");
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.boxMax, zVec<double>(2, 1, 7));
    EXPECT_THAT(viewCalls(), testing::IsSupersetOf({"bounds", "redraw"}));
    EXPECT_THAT(heard(), Contains("title: Untitled.apt"));
}

TEST_F(Traces, ANewModelThatIsCancelledLeavesNothingOfWhatWasTyped) {
    ui.onRegularInput = [](CRegularInput& table) {
        table.regularPatches.assign(1, flatPatch(2, 3));
        return false;
    };
    run("file.new");
    EXPECT_TRUE(doc.patches.empty());
    EXPECT_EQ(doc.structureKind, StructureKind::None);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(Traces, AnEmptyTableIsNoModelAndNotChanged) {
    ui.onRegularInput = [](CRegularInput&) { return true; };
    run("file.new");
    EXPECT_EQ(doc.structureKind, StructureKind::None);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(Traces, NewTellsThatNothingIsCapturedAnyMore) {
    openGrid();
    runWith("line.inputSection", {{"patch", "1"}, {"section", "1"}});
    ASSERT_NE(doc.status, idle);
    forget();
    ui.answers = {true};
    run("file.new");
    EXPECT_EQ(doc.status, idle);
    EXPECT_EQ(ui.count(std::string("status: ") + idle), 1U);
    // Where nothing was captured the status line is left alone.
    openGrid();
    forget();
    ui.answers = {true};
    run("file.new");
    EXPECT_EQ(ui.count(std::string("status: ") + idle), 0U);
}

// The user's data win: a model goes only when a file gave another.
TEST_F(Traces, OpenThatGivesNothingLeavesModelRegimesAndUndo) {
    const std::vector<std::vector<fs::path>> choices = {{}, {folder / "absent.apt"}, {folder / "notes.txt"}};
    for (const char* command : {"file.open", "file.openField"}) {
        for (const auto& chosen : choices) {
            SCOPED_TRACE(command + std::to_string(chosen.size()));
            openGrid();
            runWith("line.inputSection", {{"patch", "1"}, {"section", "1"}});
            forget();
            const bool ready = doc.patchUndoReady;
            ui.answers = {true};
            ui.files.push_back(chosen);
            run(command);
            EXPECT_TRUE(doc.capture->sectionCaptured);
            EXPECT_EQ(doc.capture->capturedPatch, 0);
            EXPECT_FALSE(doc.fieldOpening);
            EXPECT_EQ(doc.patchUndoReady, ready);
            EXPECT_THAT(ui.transcript, Not(Contains(StartsWith("recent: "))));
            EXPECT_THAT(ui.transcript, Not(Contains(StartsWith("title: "))));
            EXPECT_EQ(ui.count("message: Open procedure is canceled"), chosen.empty() ? 0U : 1U);
            EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 2)});
            EXPECT_EQ(doc.modelFile.documentTitle, "small.apt");
        }
    }
}

TEST_F(Traces, OpenRecordsTheFirstFileAsItWasChosen) {
    runFile("file.open", file("Wing.APT", aptText({flatPatch(2, 2)})));
    EXPECT_EQ(ui.count("recent: " + (folder / "Wing.APT").string()), 1U);
    runFile("file.openField", file("Flow.DAT", fieldText));
    EXPECT_EQ(ui.count("recent: " + (folder / "Flow.DAT").string()), 1U);
}

TEST_F(Traces, OpeningByPathOfAFileThatIsNotThereLeavesTheModelAsItWas) {
    openGrid();
    const PatchList before = doc.patches;
    const zVec<double> box = doc.boxMax;
    forget();
    open(folder / "absent.apt");
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.boxMax, box);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_EQ(doc.modelFile.documentTitle, "small.apt");
    EXPECT_EQ(saveTarget(), folder / "small.apt");
}

TEST_F(Traces, AnAppendedFileThatFailsInAppendModeEndsIt) {
    openGrid();
    runFile("file.append", file("bad.apt", brokenSecondCompartment));
    runFile("file.append", folder / "absent.stl");
    open(file("bad2.apt", brokenSecondCompartment));
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "bad2.apt");
}

TEST_F(Traces, AListOfThinnedFilesTellsTheCountsOfAllOnceAndTheNextFileItsOwn) {
    const fs::path first = file("first.apt", longApt());
    const fs::path second = file("second.apt", aptText({flatPatch(2, 2)}));
    ui.files.push_back({first, second});
    run("file.open");
    const std::string target = "Save writes " + second.string();
    EXPECT_EQ(doc.status, "Points in the file: 201008, kept: 100508. " + target);
    runFile("file.append", second);
    EXPECT_EQ(doc.status, target);
    runFile("file.append", file("bad.apt", brokenSecondCompartment));
    EXPECT_EQ(doc.status, "Points in the file: 8, kept: 4. Patch 2: no point can be read in line 10. " + target);
    open(second);
    EXPECT_EQ(doc.status, idle);
    open(first);
    EXPECT_EQ(doc.status, "Points in the file: 201004, kept: 100504");
}

TEST_F(Traces, TheTitleOfZonesIsThatOfTheFirstFile) {
    open(file("a.dat", "TITLE = \"first\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE N=3, E=1, F=FEPOINT, "
                       "ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n"));
    EXPECT_EQ(doc.feRegion.title, "first");
    runFile("file.append", file("b.dat", "TITLE = \"second\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE N=3, E=1, "
                                         "F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n"));
    EXPECT_EQ(doc.feRegion.title, "first");
    runFile("file.open", folder / "b.dat");
    EXPECT_EQ(doc.feRegion.title, "second");
}

// ---- Field files --------------------------------------------------------------------------------

TEST_F(Traces, OpenFieldThatIsCancelledLeavesTheFieldThatWasThere) {
    openField(*this);
    ASSERT_EQ(doc.fieldPatches.size(), 1U);
    ui.answers = {true};
    run("file.openField");
    EXPECT_EQ(doc.fieldPatches.size(), 1U);
    EXPECT_TRUE(doc.fieldLoaded && doc.fieldMode && doc.fieldOpening);
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
}

TEST_F(Traces, SaveFieldThatIsRefusedLeavesTheModelChangedAndItsNames) {
    openGrid();
    runWith("model.move", {{"deltaX", "1"}});
    ASSERT_TRUE(doc.documentModified);
    ui.files.push_back({folder / "out.APT"});
    call("file.saveAsField");
    EXPECT_THAT(heard(), Contains("message: Wrong file Extension"));
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    ui.files.push_back({folder / "out.TXT"});
    call("file.saveAsField");
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_EQ(doc.modelFile.documentTitle, "small.apt");
}

TEST_F(Traces, CloseFieldLeavesNothingCapturedSelectedOrShown) {
    openField(*this);
    runWith("patch.inputAndAdd", {{"number", "1"}});
    ASSERT_NE(doc.status, idle);
    doc.showBlockOnly = true;
    forget();
    run("file.closeField");
    EXPECT_EQ(doc.status, idle);
    EXPECT_THAT(doc.blockList, testing::Each(-1));
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_FALSE(doc.showBlockOnly || doc.capture->patchCaptured || doc.capture->patchCaptureArmed ||
                 doc.capture->patchRemoving);
    EXPECT_THAT(view.calls, testing::IsSupersetOf({"reset", "redraw"}));
    EXPECT_EQ(ui.count(std::string("status: ") + idle), 1U);
}

// ---- Conversions --------------------------------------------------------------------------------

TEST_F(Traces, EveryConversionIsDrawnAndCanBeUndoneWithoutANewBox) {
    openGrid();
    runWith("model.move", {{"deltaX", "1"}}); // its Undo would fit the view
    const struct {
        const char* command;
        std::vector<std::pair<std::string, std::string>> fields;
    } steps[] = {
        {"convert.toUnstructured", {}}, {"convert.toSkl", {{"number", "2"}}}, {"convert.toApt", {{"pointCount", "3"}}}};
    const std::string targets[] = {"dat", "skl", ""}; // back in the file that was opened
    for (const auto& step : steps) {
        SCOPED_TRACE(step.command);
        forget();
        ui.dialogs.clear();
        runWith(step.command, step.fields);
        EXPECT_THAT(view.calls, Contains("redraw"));
        EXPECT_TRUE(doc.patchUndoReady);
        EXPECT_FALSE(doc.rebuildOnUndo);
        const std::string& target = targets[&step - steps];
        EXPECT_EQ(doc.status, target.empty() ? idle : "Save writes " + (folder / ("small." + target)).string());
        EXPECT_THAT(heard(), Contains(std::string("status: ") + idle)) << "what was captured is gone";
        EXPECT_TRUE(doc.documentModified);
    }
}

TEST_F(Traces, ConversionToLinesEmptiesTheZBlockAndThePatchesThatWereThere) {
    openZones(*this);
    runWith("patch.inputAndAdd", {{"number", "1"}});
    run("block.only");
    runWith("convert.toSkl", {{"number", "2"}});
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_FALSE(doc.showBlockOnly);
    EXPECT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(doc.partCount(), 1);
}

// Of the triangle (0, 0, 0), (1, 0, 0), (0, 1, 0) the plane x = c leaves the points (c, 0) and (c, 1 - c).
TEST_F(Traces, ConversionToLinesTakesItsPlanesFromTheDialog) {
    openZones(*this);
    runWith("convert.toSkl", {{"number", "2"}, {"borderApproach", "2"}, {"yourMin", "0.25"}, {"yourMax", "0.75"}});
    ASSERT_EQ(doc.patches.size(), 1U);
    ASSERT_EQ(doc.patches[0].size(), 2U);
    EXPECT_NEAR(doc.patches[0][0].front().x, 0.25, 1e-9);
    EXPECT_NEAR(doc.patches[0][1].front().x, 0.75, 1e-9);
    run("patch.undo");
    runWith("convert.toSkl",
            {{"planeAxis", "2"}, {"number", "2"}, {"borderApproach", "2"}, {"yourMin", "0.125"}, {"yourMax", "0.5"}});
    ASSERT_EQ(doc.patches[0].size(), 2U);
    EXPECT_NEAR(doc.patches[0][0].front().y, 0.125, 1e-9);
    EXPECT_NEAR(doc.patches[0][1].front().y, 0.5, 1e-9);
}

// ---- Points beside the model --------------------------------------------------------------------

TEST_F(Traces, PointFilesAreDrawnAndLeaveTheModel) {
    openGrid();
    runWith("model.move", {{"deltaX", "1"}});
    ASSERT_TRUE(doc.rebuildOnUndo);
    const PatchList before = doc.patches;
    const std::pair<const char*, fs::path> steps[] = {
        {"file.appendSft", file("m.sft", "1\n2\n3\n4\n5\n6\n7\n1 2 3 4 5 6 7\n")},
        {"file.openApm", file("m.apm", "1 2 3\n")},
        {"file.closeSft", {}},
        {"file.closeApm", {}}};
    for (const auto& [command, path] : steps) {
        SCOPED_TRACE(command);
        forget();
        if (path.empty()) {
            run(command);
        } else {
            runFile(command, path);
        }
        EXPECT_THAT(view.calls, Contains("redraw"));
        EXPECT_TRUE(doc.rebuildOnUndo); // Undo is still of the move, and fits the view
        EXPECT_EQ(doc.patches, before);
        EXPECT_EQ(doc.modelFile.documentTitle, "small.apt");
    }
}

TEST_F(Traces, ACancelledChooserOfPairsLeavesTheBoxToUndo) {
    openGrid();
    const double radius = doc.modelRadius;
    runWith("model.scaling", {{"scale", "100"}});
    ASSERT_GT(doc.modelRadius, 2.0 * radius);
    run("file.appendSft");
    EXPECT_TRUE(doc.rebuildOnUndo);
    run("patch.undo");
    EXPECT_EQ(doc.modelRadius, radius);
}

TEST_F(Traces, MarkersStayWhenTheirNextFileIsNotThere) {
    openGrid();
    runFile("file.openApm", file("m.apm", "1 2 3\n"));
    runFile("file.openApm", folder / "absent.apm");
    EXPECT_THAT(heard(), Contains("message: It is impossible to open selected file"));
    EXPECT_EQ(doc.markers, (PointList{{1, 2, 3}}));
    EXPECT_TRUE(doc.markersOpen);
}

TEST_F(Traces, AppendCbcAsksAndIsDrawn) {
    nameGrid(*this);
    forget();
    run("file.appendCbc");
    EXPECT_THAT(heard(), testing::ElementsAre("chooser: Append -> 0"));
    EXPECT_THAT(viewCalls(), Contains("redraw"));
    EXPECT_TRUE(doc.cbcAppended);
}

TEST_F(Traces, AGridSavedAsTrianglesIsDrawnAndItsUndoBringsTheGridBack) {
    openGrid();
    const PatchList before = doc.patches;
    forget();
    runFile("file.saveAs", folder / "out.stl");
    EXPECT_THAT(view.calls, testing::IsSupersetOf({"bounds", "redraw"}));
    EXPECT_FALSE(doc.documentModified);
    run("patch.undo");
    EXPECT_EQ(doc.patches, before);
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(Traces, UndoOfAnEditKeepsTheFileOfTheModelThoughAnotherWasRemovedBefore) {
    open(file("first.apt", aptText({flatPatch(3, 3)})));
    open(file("second.apt", aptText({flatPatch(2, 2)})));
    runWith("model.move", {{"deltaX", "1"}});
    run("patch.undo");
    EXPECT_EQ(doc.patches, PatchList{flatPatch(2, 2)});
    expectNames({"second.apt", "second.apt", "apt", "str", "apt"});
}

TEST_F(Traces, UndoOfANodeThatWasMovedGoesBackToItsPlace) {
    openZones(*this);
    doc.capture.armPoint();
    take({.target = Pick::Target::Node, .found = true, .patch = 0, .point = 1, .position = {1, 0, 0}});
    doc.capture.releasePoint();
    runWith("point.edit", {{"x", "5"}});
    call("file.save");
    EXPECT_FALSE(doc.documentModified);
    arranged(doc).pointPicked = false;
    run("point.undo");
    EXPECT_EQ(doc.capture->capturedPointPos, zVec<double>(1, 0, 0));
    EXPECT_EQ(doc.capture->pickedPoint, zVec<double>(1, 0, 0));
    EXPECT_TRUE(doc.documentModified);
    EXPECT_TRUE(doc.capture->pointPicked);
    EXPECT_FALSE(doc.pointUndoReady || doc.patchUndoReady);
    EXPECT_TRUE(doc.pointUndoRegion.blocks.empty() && doc.undoRegion.blocks.empty());
}

TEST_F(Traces, EitherUndoEmptiesTheSnapshotsOfZonesToo) {
    openZones(*this);
    runWith("model.move", {{"deltaX", "1"}});
    ASSERT_FALSE(doc.undoRegion.blocks.empty());
    savePointUndo();
    doc.pointUndoReady = true;
    run("patch.undo");
    EXPECT_TRUE(doc.undoRegion.blocks.empty());
    EXPECT_TRUE(doc.pointUndoRegion.blocks.empty());
    EXPECT_FALSE(doc.pointUndoReady);
}

TEST_F(Traces, ASnapshotOfOneKindEmptiesThatOfTheOther) {
    openGrid();
    savePatchUndo();
    run("convert.toUnstructured");
    savePatchUndo();
    EXPECT_TRUE(doc.undoPatches.empty());
    EXPECT_EQ(doc.undoRegion.blocks.size(), 1U);
    runWith("convert.toSkl", {{"number", "2"}});
    savePatchUndo();
    EXPECT_EQ(doc.undoPatches.size(), 1U);
    EXPECT_TRUE(doc.undoRegion.blocks.empty());
}

// ---- A second geometry --------------------------------------------------------------------------

TEST_F(Traces, ASecondGeometryTakesTheTitleOfItsFirstFileAndLeavesTheNamesOfTheModel) {
    const auto wrl = [](const char* title) {
        return "#VRML V2.0 utf8\nWorldInfo { title \"" + std::string(title) +
               "\" }\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 5 1 0 5 0 1 5 ] } "
               "coordIndex [ 0 1 2 -1 ] } }\n";
    };
    openGrid();
    const PatchList before = doc.patches;
    runFile("file.appendWrl", file("a.wrl", wrl("first")));
    runFile("file.appendWrl", file("b.wrl", wrl("second")));
    EXPECT_EQ(doc.referenceRegion.blocks.size(), 2U);
    EXPECT_EQ(doc.secondKind, SecondKind::Wrl);
    EXPECT_EQ(doc.patches, before);
    expectNames({"small.apt", "small.apt", "apt", "str", "apt"});
    forget();
    run("file.closeWrl");
    EXPECT_THAT(view.calls, Contains("redraw"));
    EXPECT_TRUE(doc.referenceRegion.blocks.empty());
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    runFile("file.appendWrl", file("c.wrl", wrl("third")));
    EXPECT_EQ(doc.referenceRegion.blocks.size(), 1U);
}

TEST_F(Traces, AppendDatChecksTheVariablesOfItsGrid) {
    openGrid();
    runFile("file.appendDat", file("none.dat", "ZONE I=3, J=2, K=1, F=POINT\n1 2 3\n"));
    EXPECT_THAT(heard(), Contains("message: Irregular structure of DAT file. The number of variables < 3"));
    runFile("file.appendDat", file("good.dat", datHead + std::string(gridZone)));
    EXPECT_THAT(heard(), Not(Contains(StartsWith("message: "))));
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    expectNames({"small.apt", "small.apt", "apt", "str", "apt"});
}

} // namespace velmora::test
