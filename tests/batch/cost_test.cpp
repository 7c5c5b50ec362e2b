// What it costs to open a model that nobody looks at, in counts that are the same on every machine: bytes of memory
// asked for, the most that was held at once, and bytes read from files.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <optional>
#include <string>

#include <malloc.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include "NumberWriter.h"
#include "SessionFixture.h"
#include "TextStream.h"
#include "apt.h"
#include "own_allocation.h"
#include "zSTLReader.h"

namespace {

struct Cost {
    std::int64_t asked = 0; ///< bytes of memory in all
    std::int64_t held = 0;  ///< of them still held
    std::int64_t most = 0;  ///< the most that was held at once
    std::int64_t read = 0;  ///< bytes from files
};
Cost counts;

} // namespace

void* velmora::test::allocate(std::size_t size) {
    void* const memory = std::malloc(std::max<std::size_t>(size, 1));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    counts.asked += static_cast<std::int64_t>(size);
    counts.held += static_cast<std::int64_t>(malloc_usable_size(memory));
    counts.most = std::max(counts.most, counts.held);
    return memory;
}

void velmora::test::release(void* memory) {
    if (memory != nullptr) {
        counts.held -= static_cast<std::int64_t>(malloc_usable_size(memory));
        std::free(memory);
    }
}

// Takes the place of the system's function.
extern "C" ssize_t read(int descriptor, void* buffer, size_t count) {
    const ssize_t taken = ::syscall(SYS_read, descriptor, buffer, count);
    counts.read += std::max<ssize_t>(taken, 0);
    return taken;
}

namespace velmora::test {
namespace {

/// What the work adds to the counts; `most` is what it held at once beyond what was held before.
template <class Work>
Cost costOf(Work work) {
    const Cost before = counts;
    counts.most = counts.held;
    work();
    return {counts.asked - before.asked, counts.held - before.held, counts.most - before.held,
            counts.read - before.read};
}

constexpr std::int64_t bytesOfPoint = sizeof(zVec<double>);
/// Three corners of its own, coordinate by coordinate, and a row of four node numbers.
constexpr std::int64_t bytesOfTriangle = 9 * sizeof(double) + 4 * sizeof(std::int32_t);

class CostTest : public SessionFixture {
protected:
    static constexpr std::int64_t triangles = 30'000;
    static constexpr int patches = 10;
    static constexpr int sections = 60;
    static constexpr int points = 100;
    static constexpr std::int64_t bytesOfFacets = triangles * bytesOfTriangle;
    static constexpr std::int64_t bytesOfGrid = std::int64_t{patches} * sections * points * bytesOfPoint;

    CostTest() {
        ::setenv("VELMORA_THREADS", "1", 1); // threads of their own would share the counts
        std::string text = "solid strip\n";
        for (std::int64_t i = 0; i < triangles; ++i) {
            const std::string x = std::to_string(i);
            text += "facet normal 0 0 1\nouter loop\nvertex " + x + " 0 0\nvertex " + x + ".5 0 0\nvertex " + x +
                    " 1 0\nendloop\nendfacet\n";
        }
        writeFileText(facets, text + "endsolid strip\n");
        writeFileText(grid, aptText(PatchList(patches, flatPatch(sections, points))));
    }

    void open(const std::filesystem::path& path) { must("open " + file(path.filename().string())); }

    /// The picture of the model, as a paint that is seen makes it.
    void makePicture() {
        session.run(++number, [](Session& all) -> MaybeFailure {
            all.view().list();
            return std::nullopt;
        });
    }

    /// A click beside the model, which takes nothing and leaves the regime as it is.
    void clickBeside() {
        must("mouse down 400 20");
        must("mouse up 400 20");
    }

    /// What it costs to move a section of the patch, by another way each time.
    Cost moveSectionOf(int patch) {
        must("run line.inputSection patch=" + std::to_string(patch) + " section=3");
        const std::string line = "run line.move deltaX=" + std::to_string(++moves_);
        return costOf([&] { must(line); });
    }

    static constexpr std::int64_t bytesOfPatch = bytesOfGrid / patches;
    int moves_ = 0;

    std::filesystem::path facets = folder / "facets.stl";
    std::filesystem::path grid = folder / "grid.apt";
};

TEST_F(CostTest, FacetsTakeHardlyMoreMemoryThanTheReaderAsksFor) {
    const Cost reading = costOf([&] {
        zRegion_fe region;
        zSTLReader().read(facets, region);
    });
    const Cost opening = costOf([&] { open(facets); });
    EXPECT_GE(reading.asked, bytesOfFacets);
    EXPECT_LE(opening.asked, reading.asked + bytesOfFacets / 10);
}

TEST_F(CostTest, GridTakesHardlyMoreMemoryThanTheReaderAsksFor) {
    const Cost reading = costOf([&] {
        PatchList model;
        readApt(grid, model);
    });
    const Cost opening = costOf([&] { open(grid); });
    EXPECT_GE(reading.asked, bytesOfGrid);
    EXPECT_LE(opening.asked, reading.asked + bytesOfGrid / 8);
}

TEST_F(CostTest, GridNeverTakesMuchMoreThanTheModelAndABlockOfTheFile) {
    const Cost opening = costOf([&] { open(grid); });
    EXPECT_GE(opening.held, bytesOfGrid);
    EXPECT_LE(opening.most, bytesOfGrid * 11 / 10 + static_cast<std::int64_t>(TextStream::defaultBlockSize));
}

TEST_F(CostTest, ASmallFileTakesNoLargeBlock) {
    const std::filesystem::path small = writeFileText(folder / "small.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    PatchList model;
    const Cost reading = costOf([&] { readApt(small, model); });
    EXPECT_EQ(pointTotal(model), 4);
    EXPECT_LE(reading.most, 20'000);
}

TEST_F(CostTest, PictureIsMadeWhenItIsAskedForAndOnce) {
    open(facets);
    const Cost first = costOf([&] { makePicture(); });
    const Cost second = costOf([&] { makePicture(); });
    EXPECT_GE(first.held, triangles * 3 * bytesOfPoint);
    EXPECT_LE(second.asked, bytesOfFacets / 100);
}

TEST_F(CostTest, IndexOfThePicksIsMadeByTheFirstClickAndOnce) {
    open(facets);
    must("run point.capture");
    const Cost first = costOf([&] { clickBeside(); });
    const Cost second = costOf([&] { clickBeside(); });
    EXPECT_GE(first.held, bytesOfFacets / 10);
    EXPECT_LE(second.asked, bytesOfFacets / 50);
}

TEST_F(CostTest, CapturingByNumberLeavesTheIndexOfThePicks) {
    open(grid);
    must("run point.capture");
    const Cost index = costOf([&] { clickBeside(); });
    must("run line.inputSection patch=2 section=4");
    must("run line.inputSection patch=3 section=5");
    must("run point.capture");
    const Cost again = costOf([&] { clickBeside(); });
    EXPECT_LE(again.asked, index.held / 4);
}

TEST_F(CostTest, SavingTheBlockHoldsABlockOfTheFileAndNoPatches) {
    open(grid);
    for (int patch = 1; patch <= patches; ++patch) {
        must("run patch.inputAndAdd number=" + std::to_string(patch));
    }
    const Cost saving = costOf([&] { must("run block.saveAs file=" + file("copy.apt")); });
    EXPECT_GT(std::filesystem::file_size(folder / "copy.apt"), 0U);
    EXPECT_LE(saving.most, bytesOfGrid / 10 + static_cast<std::int64_t>(NumberWriter::defaultBlockSize));
}

TEST_F(CostTest, SavingHoldsABlockOfTheFileAndNoMoreOfTheModel) {
    open(grid);
    const Cost saving = costOf([&] { must("run file.saveAs file=" + file("copy.apt")); });
    EXPECT_GT(std::filesystem::file_size(folder / "copy.apt"), 0U);
    EXPECT_LE(saving.most, bytesOfGrid / 10 + static_cast<std::int64_t>(NumberWriter::defaultBlockSize));
}

TEST_F(CostTest, CommandOnOnePatchKeepsThatPatchForUndoAndNoOther) {
    open(grid);
    const Cost first = moveSectionOf(2);
    const Cost second = moveSectionOf(2);
    const Cost onAnother = moveSectionOf(5);
    const Cost line = costOf([&] { must("run line.inputSection patch=5 section=4"); }); // changes nothing
    EXPECT_GE(first.held, bytesOfGrid);                                                 // nothing yet to share with
    for (const Cost& cost : {second, onAnother}) {
        EXPECT_GE(cost.asked - line.asked, bytesOfPatch * 9 / 10);
        EXPECT_LE(cost.asked - line.asked, bytesOfPatch * 12 / 10);
        EXPECT_LE(cost.held, bytesOfPatch / 10); // the patch of the snapshot before went
    }
}

TEST_F(CostTest, UndoOfACommandOnOnePatchCopiesNoPatch) {
    open(grid);
    moveSectionOf(2);
    moveSectionOf(3);
    const Cost line = costOf([&] { must("run line.inputSection patch=5 section=4"); });
    const Cost undo = costOf([&] { must("run patch.undo"); });
    EXPECT_LE(undo.asked - line.asked, bytesOfPatch / 2);
    EXPECT_LE(undo.held, bytesOfPatch / 10 - bytesOfGrid); // the snapshot went
}

TEST_F(CostTest, FacetsAreReadInOnePass) {
    const auto size = static_cast<std::int64_t>(std::filesystem::file_size(facets));
    const Cost opening = costOf([&] { open(facets); });
    EXPECT_EQ(opening.read, size);
}

TEST_F(CostTest, GridIsReadInOnePassWhenEachPointHasALineOfItsOwn) {
    const auto size = static_cast<std::int64_t>(std::filesystem::file_size(grid));
    const Cost opening = costOf([&] { open(grid); });
    EXPECT_EQ(opening.read, size);
}

} // namespace
} // namespace velmora::test
