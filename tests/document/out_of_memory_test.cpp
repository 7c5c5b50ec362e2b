// Every allocation of a command fails in turn: the document is as it was before the command then.

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <string_view>

#include "CommandGuard.h"
#include "document_commands.h"
#include "document_fixture.h"
#include "own_allocation.h"

namespace {

/// How many allocations still succeed; below 0 all of them do.
std::atomic<long> allocationsLeft{-1};

} // namespace

void* velmora::test::allocate(std::size_t size) {
    const long left = allocationsLeft.load();
    if (left == 0) {
        throw std::bad_alloc();
    }
    if (left > 0) {
        allocationsLeft = left - 1;
    }
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void velmora::test::release(void* memory) {
    std::free(memory);
}

namespace velmora::test {
namespace {

using Work = std::function<void(VelmoraDoc&)>;

/// Answers everything with yes or OK, and keeps nothing.
class SilentUi : public UserInterface {
public:
    std::filesystem::path file;

    void showMessage(const Message&) override {}
    bool ask(const std::string&) override { return true; }
    void showStatus(const std::string&) override {}
    void showTitle(const std::string&) override {}
    bool showDialog(DialogForm&) override { return true; }
    bool showRegularInput(CRegularInput&) override { return false; }
    std::vector<std::filesystem::path> chooseFiles(const FileRequest&) override { return {file}; }
    void setBusy(bool) override {}
    void showProgress(double) override {}
    void addRecentFile(const std::filesystem::path&) override {}
};

/// Runs a command by its row, without a guard of its own.
void run(VelmoraDoc& doc, std::string_view id) {
    const auto rows = documentCommands();
    std::find_if(rows.begin(), rows.end(), [id](const Command& row) { return id == row.id; })->run(doc);
}

struct Bench {
    TemporaryFolder folder;
    SilentUi ui;
    RecordingView view;
    VelmoraDoc doc{ui, folder.path()};

    explicit Bench(const Work& arrange) {
        ui.file = folder / "other.apt";
        writeFileText(ui.file, "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
        doc.onNewDocument();
        doc.attachView(view);
        doc.patches = {flatPatch(4, 5), flatPatch(3, 6), flatPatch(3, 6)};
        for (PointList& section : doc.patches[2]) {
            for (zVec<double>& point : section) {
                point = point + zVec<double>(0.3, 0.2, 1.5);
            }
        }
        doc.modelFile.adopt(folder / "A model with a long name.apt");
        doc.retitle();
        doc.updateBounds();
        doc.documentModified = false;
        arrange(doc);
    }
};

/// All that a user can tell a document by.
struct Look {
    std::string model;
    PatchList patches;
    StructureKind structure;
    FileKind file;
    std::string title;
    std::filesystem::path path;
    std::string status;
    std::vector<std::int32_t> numbers;
    std::vector<bool> flags;
    std::vector<std::int32_t> block;

    explicit Look(const VelmoraDoc& doc)
        : model(doc.rescueBytes()), patches(doc.patches), structure(doc.structureKind), file(doc.fileKind),
          title(doc.modelFile.documentTitle), path(doc.modelFile.chosenPath),
          status(doc.status), numbers{doc.capture->capturedPatch, doc.capture->capturedPointSection,
                                      doc.capture->capturedPoint, doc.capture->capturedSection,
                                      doc.capture->capturedLine},
          flags{doc.documentModified,         doc.surfaceMode,           doc.capture->pointCaptured,
                doc.capture->sectionCaptured, doc.capture->lineCaptured, doc.capture->patchCaptured},
          block(doc.blockList.begin(), doc.blockList.begin() + doc.blockCount) {}

    friend bool operator==(const Look&, const Look&) = default;
};

void expectStrong(const char* name, const Work& arrange, const Work& run) {
    SCOPED_TRACE(name);
    int failures = 0;
    for (long count = 0; count < 100000; count += count < 150 ? 1 : 1 + count / 20) {
        Bench bench(arrange);
        const Look before(bench.doc);
        const PatchList pointUndo = bench.doc.pointUndoPatches.copy();
        bool failed = false;
        try {
            const CommandGuard guard(bench.doc);
            allocationsLeft = count;
            run(bench.doc);
            allocationsLeft = -1;
        } catch (const std::bad_alloc&) {
            allocationsLeft = -1;
            failed = true;
        }
        if (!failed) {
            EXPECT_GT(failures, 3) << "too few allocations to tell anything";
            return;
        }
        ++failures;
        const Look after(bench.doc);
        ASSERT_TRUE(after == before) << "allocation " << count;
        EXPECT_TRUE(!bench.doc.patchUndoReady || !bench.doc.undoPatches.empty() || !bench.doc.undoRegion.blocks.empty())
            << count;
        EXPECT_TRUE(!bench.doc.pointUndoReady || bench.doc.pointUndoPatches.copy() == pointUndo) << count;
    }
    FAIL() << "the command never came to its end";
}

const Work nothing = [](VelmoraDoc&) {};

void holdFirstSection(VelmoraDoc& doc) {
    doc.dialogs->inputSection.patch = 1;
    doc.dialogs->inputSection.section = 2;
    run(doc, "line.inputSection");
}

void putIntoBlock(VelmoraDoc& doc) {
    doc.dialogs->inputPatch.number = 2;
    run(doc, "patch.inputAndAdd");
}

TEST(OutOfMemory, CommandsOnTheWholeModelLeaveItAsItWas) {
    expectStrong("Move", nothing, [](VelmoraDoc& doc) { run(doc, "model.move"); });
    expectStrong("Symmetric", nothing, [](VelmoraDoc& doc) { run(doc, "model.symmetric"); });
    expectStrong("Flip", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "model.flip"); });
    expectStrong("Convertation", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "model.convertation"); });
    expectStrong("Last/First", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "model.lastFirstSwitch"); });
    expectStrong("Smooth", nothing, [](VelmoraDoc& doc) { run(doc, "model.smooth"); });
    expectStrong("Coons", nothing, [](VelmoraDoc& doc) { run(doc, "model.coonsRebuild"); });
    expectStrong("To triangles", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "convert.toUnstructured"); });
}

TEST(OutOfMemory, CommandsOnSectionsLeaveTheModelAsItWas) {
    expectStrong("Rebreak", holdFirstSection, [](VelmoraDoc& doc) {
        doc.dialogs->rebreak.law.newCount = 40;
        run(doc, "line.rebreak");
    });
    expectStrong("Weeding", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "line.weeding"); });
    expectStrong("Duplicate", holdFirstSection, [](VelmoraDoc& doc) {
        doc.dialogs->duplicate.duplicateCount = 30;
        run(doc, "line.duplicate");
    });
    expectStrong("Delete", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "line.delete"); });
    expectStrong("Split", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "line.splitPatch"); });
    expectStrong("Interpolate", holdFirstSection, [](VelmoraDoc& doc) { run(doc, "line.interpolate"); });
}

TEST(OutOfMemory, CommandsOnTheBlockLeaveTheModelAsItWas) {
    expectStrong("Delete", putIntoBlock, [](VelmoraDoc& doc) { run(doc, "block.delete"); });
    expectStrong("Extract", putIntoBlock, [](VelmoraDoc& doc) { run(doc, "block.extract"); });
    expectStrong("Reflection", putIntoBlock, [](VelmoraDoc& doc) { run(doc, "patch.reflection"); });
}

TEST(OutOfMemory, OpenAndUndoLeaveTheModelAsItWas) {
    expectStrong("Open", holdFirstSection, [](VelmoraDoc& doc) { doc.openFiles(); });
    expectStrong(
        "Undo", [](VelmoraDoc& doc) { run(doc, "model.move"); }, [](VelmoraDoc& doc) { doc.UndoPatch(); });
    expectStrong(
        "Undo of a conversion", [](VelmoraDoc& doc) { run(doc, "convert.toUnstructured"); },
        [](VelmoraDoc& doc) { doc.UndoPatch(); });
}

/// A snapshot for Undo point that shares its patches with the one that the command takes.
void takePointSnapshot(VelmoraDoc& doc) {
    doc.SavePointUndo();
    doc.pointUndoReady = true;
}

TEST(OutOfMemory, CommandsWhoseSnapshotIsSharedLeaveTheModelAsItWas) {
    expectStrong("Move", takePointSnapshot, [](VelmoraDoc& doc) { run(doc, "model.move"); });
    expectStrong("To triangles", takePointSnapshot, [](VelmoraDoc& doc) { run(doc, "convert.toUnstructured"); });
    const Work moveOnceMore = [](VelmoraDoc& doc) {
        takePointSnapshot(doc);
        run(doc, "model.move");
    };
    expectStrong("Undo", moveOnceMore, [](VelmoraDoc& doc) { doc.UndoPatch(); });
    expectStrong("Undo point", moveOnceMore, [](VelmoraDoc& doc) { doc.UndoPoint(); });
}

TEST(OutOfMemory, AGuardWithinAGuardPutsTheModelBackOnce) {
    Bench bench(nothing);
    const Look before(bench.doc);
    try {
        const CommandGuard outer(bench.doc);
        const CommandGuard inner(bench.doc);
        bench.doc.dialogs->move.deltaX = 3;
        run(bench.doc, "model.move");
        ASSERT_NE(bench.doc.patches, before.patches);
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
        EXPECT_TRUE(Look(bench.doc) == before);
    }
}

TEST(OutOfMemory, WithoutAnExceptionTheGuardChangesNothing) {
    Bench bench(nothing);
    const PatchList before = bench.doc.patches;
    {
        const CommandGuard guard(bench.doc);
        bench.doc.dialogs->move.deltaX = 3;
        run(bench.doc, "model.move");
    }
    EXPECT_NE(bench.doc.patches, before);
    EXPECT_TRUE(bench.doc.patchUndoReady);
    bench.doc.UndoPatch();
    EXPECT_EQ(bench.doc.patches, before);
}

TEST(CauseOf, NamesWhatAUserCanMakeSenseOf) {
    EXPECT_EQ(causeOf(std::bad_alloc()), "out of memory");
    EXPECT_EQ(causeOf(std::length_error("vector")), "more than fits");
    EXPECT_EQ(causeOf(std::runtime_error("the pen is dry")), "the pen is dry");
}

} // namespace
} // namespace velmora::test
