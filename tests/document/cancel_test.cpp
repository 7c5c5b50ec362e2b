// Every long command is given up at each word of its progress in turn: document and files are as before then.

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <sstream>

#include "VelmoraDoc.h"
#include "command_rig.h"
#include "messages.h"

namespace velmora::test {
namespace {

/// Presses Cancel when it is asked for the `stopAt`th time, from 0.
class ImpatientUi : public RecordingUi {
public:
    long stopAt = -1;
    long asked = 0;

    bool wantsToStop() override { return asked++ == stopAt; }
};

/// A document on its own, with a file of each type to be read.
struct Desk {
    TemporaryFolder folder;
    ImpatientUi ui;
    RecordingView view;
    VelmoraDoc doc{ui, folder.path()};

    Desk() {
        doc.onNewDocument();
        doc.attachView(view);
    }

    void hold(PatchList model) {
        doc.feRegion.blocks.clear();
        doc.patches = std::move(model);
        doc.modelFile.adopt(folder / "wing.apt");
        doc.retitle();
        doc.updateBounds();
    }

    void addToBlock(std::int32_t part) {
        doc.blockList[static_cast<std::size_t>(doc.blockCount)] = part;
        ++doc.blockCount;
    }

    void run(const std::string& id, const Fields& fields = {}, const std::vector<std::string>& files = {}) {
        ui.answers = {true, true};
        ui.dialogs = {fields};
        ui.files.clear();
        if (!files.empty()) {
            ui.files.push_back({});
        }
        for (const std::string& name : files) {
            ui.files.back().push_back(folder / name);
        }
        doc.runCommand(findCommand(id)->run);
    }
};

/// So many points that a file of them is read and written in several blocks. A facet of STL takes the most room.
Patch largePatch(const std::string& extension = "apt") {
    Patch patch = extension == "stl" ? flatPatch(75, 95) : flatPatch(150, 300);
    for (PointList& section : patch) {
        for (zVec<double>& p : section) {
            p = {p.x / 3.0, p.y / 7.0, std::sin(p.x / 11.0)};
        }
    }
    return patch;
}

/// The folder of a file of every type, each of more than one block; written once.
const std::filesystem::path& filesToRead() {
    static Desk desk;
    static const bool written = [] {
        for (const std::string extension : {"apt", "skl", "dat", "stl", "wrl"}) {
            desk.hold({largePatch(extension)});
            desk.run("file.saveAs", {}, {"large." + extension});
        }
        desk.hold({largePatch()});
        desk.run("file.export", {}, {"large.obj"});
        return true;
    }();
    EXPECT_TRUE(written);
    return desk.folder.path();
}

void copyLarge(Desk& desk, const std::string& name) {
    std::filesystem::copy_file(filesToRead() / name, desk.folder / name);
}

/// All that a user can tell a document by, and every file of its folder.
std::string lookOf(const Desk& desk) {
    const VelmoraDoc& doc = desk.doc;
    std::ostringstream look;
    look.precision(17);
    look << doc.rescueBytes() << Picture::ofAll(doc) << Picture::ofPatches(doc.undoPatches.copy())
         << Picture::ofZones(doc.undoRegion) << Picture::ofPatches(doc.pointUndoPatches.copy())
         << Picture::ofPatches({{doc.lineBuffer, doc.beforeIntersection, doc.afterIntersection}}) << doc.patchUndoReady
         << doc.pointUndoReady << doc.rebuildOnUndo << doc.documentModified << doc.lineBufferFull
         << textOf(doc.structureKind) << textOf(doc.fileKind) << doc.modelFile.documentTitle << doc.modelFile.chosenPath
         << doc.modelFile.openedPath << doc.modelFile.imported << doc.intersectionTolerance << doc.surfaceMode
         << doc.capture->capturedPatch << doc.capture->capturedSection << doc.capture->capturedLine
         << (doc.comparison() != nullptr ? doc.comparison()->mean : -1.0) << doc.boxMin.x << doc.boxMax.x
         << doc.boxMax.z;
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(desk.folder.path())) {
        files[entry.path().filename().string()] = fileText(entry.path());
    }
    for (const auto& [name, text] : files) {
        look << '\n' << name << '\n' << text;
    }
    return look.str();
}

struct LongCommand {
    const char* name;
    std::string id;
    std::function<void(Desk&)> arrange;
    Fields fields = {};
    std::vector<std::string> files = {};
};

// ---- What is there before -------------------------------------------------------------------------------------------

/// A grid that was moved, so that Undo has something, and a second one above it in the zBlock, which is not flat.
void twoGrids(Desk& desk) {
    PatchList grids = {flatPatch(6, 7), flatPatch(4, 5, 2)};
    grids[1][1][2].z += 0.25;
    desk.hold(std::move(grids));
    desk.run("model.move", {{"deltaX", "0.25"}});
    desk.addToBlock(1);
    desk.doc.lineBuffer = {{1, 2, 3}};
}

void oneLargeGrid(Desk& desk, const std::string& extension = "apt") {
    desk.hold({largePatch(extension)});
    writeFileText(desk.folder / "wing.apt", "the old file\n");
}

void triangles(Desk& desk) {
    twoGrids(desk);
    desk.doc.emptyBlock();
    desk.run("convert.toUnstructured");
}

void twoZones(Desk& desk) {
    triangles(desk);
    desk.addToBlock(1);
}

void zonesWithOldParts(Desk& desk) {
    triangles(desk);
    for (const char* const name : {"wing_1.dat", "wing_2.dat"}) {
        writeFileText(desk.folder / name, "the old file\n");
    }
}

void linesOfABody(Desk& desk) {
    Patch lines;
    for (int n = 0; n < 5; ++n) {
        PointList line;
        for (int m = 0; m <= 12 + n; ++m) {
            const double angle = 2.0 * 3.141592653589793 * ((m + 3 * n) % (12 + n)) / (12 + n);
            line.push_back({std::cos(angle), std::sin(angle), static_cast<double>(n)});
        }
        lines.push_back(line);
    }
    desk.hold({lines});
}

void besideA(const char* name, Desk& desk) {
    twoGrids(desk);
    copyLarge(desk, name);
}

void wallThroughAGrid(Desk& desk) {
    const Patch wall = {{{1.25, 1.25, 1}, {2.75, 1.25, 1}}, {{1.25, 1.25, -1}, {2.75, 1.25, -1}}};
    desk.hold({flatPatch(5, 6), wall});
    desk.addToBlock(1);
    desk.doc.interLine = {{7, 8, 9}};
}

void gridOverZones(Desk& desk) {
    twoGrids(desk);
    Desk other;
    other.hold({flatPatch(5, 5, 1)});
    other.run("file.saveAs", {}, {"second.wrl"});
    std::filesystem::copy_file(other.folder / "second.wrl", desk.folder / "second.wrl");
    desk.run("file.appendWrl", {}, {"second.wrl"});
}

std::vector<LongCommand> longCommands() {
    std::vector<LongCommand> commands = {
        {"slicing", "convert.toSkl", triangles, {{"planeAxis", "1"}, {"number", "4"}}},
        {"skinning", "convert.toApt", linesOfABody, {{"pointCount", "9"}, {"align", "1"}}},
        {"smoothing", "model.smooth", twoGrids, {{"regime", "3"}}},
        {"projecting", "model.reflectToApt", twoGrids},
        {"projecting onto zones", "model.reflectToWrl", gridOverZones},
        {"projecting zones", "patch.reflection", twoZones},
        {"intersecting", "model.intersection", wallThroughAGrid},
        {"comparing", "model.compare", twoGrids, {{"target", "2"}}},
        {"comparing zones", "model.compare", twoZones, {{"target", "2"}}},
        {"knife", "convert.knife", triangles, {{"section", "2.5"}}},
        {"knife to files", "convert.knife", triangles, {{"section", "2.5"}, {"cutKind", "3"}}},
        {"knife over files", "convert.knife", zonesWithOldParts, {{"section", "2.5"}, {"cutKind", "3"}}},
        {"saving", "file.save", [](Desk& desk) { oneLargeGrid(desk); }},
        {"exporting", "file.export", [](Desk& desk) { oneLargeGrid(desk); }, {}, {"wing.obj"}},
        {"importing", "file.import", [](Desk& desk) { besideA("large.obj", desk); }, {}, {"large.obj"}},
        {"appending", "file.append", [](Desk& desk) { besideA("large.apt", desk); }, {}, {"large.apt"}},
        {"comparing with a file",
         "model.compare",
         [](Desk& desk) { besideA("large.stl", desk); },
         {{"target", "3"}},
         {"large.stl"}},
        {"opening two",
         "file.open",
         [](Desk& desk) {
             besideA("large.apt", desk);
             std::filesystem::copy_file(desk.folder / "large.apt", desk.folder / "other.apt");
         },
         {},
         {"large.apt", "other.apt"}},
    };
    for (const std::string extension : {"apt", "skl", "dat", "stl", "wrl"}) {
        const std::string large = "large." + extension;
        commands.push_back(
            {"reading", "file.open", [large](Desk& desk) { besideA(large.c_str(), desk); }, {}, {large}});
        commands.push_back({"writing",
                            "file.saveAs",
                            [extension](Desk& desk) { oneLargeGrid(desk, extension); },
                            {},
                            {"new." + extension}});
    }
    return commands;
}

TEST(Cancel, AtAnyWordOfProgressLeavesDocumentAndFilesAsTheyWere) {
    for (const LongCommand& command : longCommands()) {
        SCOPED_TRACE(command.id + ", " + command.name + (command.files.empty() ? "" : " " + command.files.front()));
        long stops = 0;
        bool ended = false;
        for (long at = 0; !ended && !testing::Test::HasFailure(); at += 1 + at / 4) {
            Desk desk;
            command.arrange(desk);
            const std::string before = lookOf(desk);
            desk.ui.transcript.clear();
            desk.ui.stopAt = desk.ui.asked + at;
            desk.run(command.id, command.fields, command.files);
            desk.ui.stopAt = -1;
            EXPECT_EQ(desk.ui.busyDepth, 0);
            ended = desk.doc.status != message::workCancelled;
            if (ended) {
                EXPECT_NE(lookOf(desk), before) << "the command did nothing";
            } else {
                ++stops;
                EXPECT_TRUE(lookOf(desk) == before) << "cancelled at word " << at;
                EXPECT_EQ(desk.ui.transcript.back(), std::string("status: ") + message::workCancelled);
            }
        }
        EXPECT_GE(stops, 1); // a small model is one chunk of the work, which tells its end alone
    }
}

TEST(Cancel, UndoOfTheCommandBeforeStillWorks) {
    Desk desk;
    twoGrids(desk);
    desk.ui.stopAt = desk.ui.asked;
    desk.run("model.smooth", {{"regime", "3"}});
    ASSERT_EQ(desk.doc.status, message::workCancelled);
    desk.run("patch.undo");
    EXPECT_EQ(desk.doc.patches[0], flatPatch(6, 7));
}

} // namespace
} // namespace velmora::test
