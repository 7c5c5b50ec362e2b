#include <limits>

#include "CommandTest.h"
#include "arranged_capture.h"
#include "count_limit.h"
#include "memory_state.h"
#include "small_zones.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

/// The text of a refusal in a field from `least` on when `largest` fit.
std::string tooMany(int least, int largest) {
    return "There is not enough free memory for so many. Please enter an integer between " + std::to_string(least) +
           " and " + std::to_string(largest) + ".";
}

constexpr const char* notEnough = "There is not enough free memory for this model.";

/// A document on a machine with little memory.
class MemoryLimits : public CommandTest {
protected:
    /// Half of what is free holds so many bytes and a bit more, which is not enough for one more of anything.
    void giveRoom(double bytes) {
        doc.freeMemory = [bytes] { return static_cast<std::uint64_t>(2 * bytes + 2); };
    }

    /// The command refuses `count` of `key` with the largest number that fits, changes nothing, and takes that number.
    void expectLargest(const std::string& id, const std::string& key, int least, int largest,
                       const std::vector<std::pair<std::string, std::string>>& before = {}) {
        const PatchList model = doc.patches;
        auto fields = before;
        fields.emplace_back(key, std::to_string(largest + 1));
        forget();
        runWith(id, fields);
        EXPECT_THAT(heard(), Contains("refused: OK: " + tooMany(least, largest)));
        EXPECT_EQ(doc.patches, model);
        EXPECT_FALSE(doc.patchUndoReady || doc.pointUndoReady || doc.documentModified);
        fields.back().second = std::to_string(largest);
        ui.answers = {true};
        runWith(id, fields);
        EXPECT_THAT(heard(), Not(Contains(HasSubstr("refused"))));
        EXPECT_NE(doc.patches, model);
    }
};

} // namespace

// ---- The rule -------------------------------------------------------------------------------------------------------

TEST(CountLimit, WhatFitsIsTaken) {
    EXPECT_FALSE(refuseTooMany({{"n", 10, 1, 8.0}}, 80.0));
    EXPECT_FALSE(refuseTooMany({{"n", 1000000, 1, 8.0}}, MemoryRoom().free));
}

TEST(CountLimit, OneTooManyIsRefusedWithTheLargestThatFits) {
    const auto refusal = refuseTooMany({{"n", 11, 2, 8.0}}, 87.9);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->key, "n");
    EXPECT_EQ(refusal->message, tooMany(2, 10));
}

TEST(CountLimit, WithoutRoomForTheLeastNumberNoNumberIsOffered) {
    const auto refusal = refuseTooMany({{"n", 2, 2, 8.0}}, 15.0);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->message, notEnough);
}

TEST(CountLimit, OfTwoCountsTheOneThatTakesMoreThanTheOtherLeavesIsRefused) {
    // 3 of 10 bytes leave 70 of 100.
    const auto refusal = refuseTooMany({{"few", 3, 1, 10.0}, {"many", 8, 1, 10.0}}, 100.0);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->key, "many");
    EXPECT_EQ(refusal->message, tooMany(1, 7));
    EXPECT_FALSE(refuseTooMany({{"few", 3, 1, 10.0}, {"many", 7, 1, 10.0}}, 100.0));
}

TEST(CountLimit, OfTwoLargeCountsEachIsGrantedHalf) {
    const auto first = refuseTooMany({{"one", 90, 1, 10.0}, {"other", 90, 1, 10.0}}, 100.0);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->key, "one");
    EXPECT_EQ(first->message, tooMany(1, 5));
    const auto second = refuseTooMany({{"one", 5, 1, 10.0}, {"other", 90, 1, 10.0}}, 100.0);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->key, "other");
    EXPECT_EQ(second->message, tooMany(1, 5));
}

TEST(CountLimit, ACopyOfPatchesTakesAtLeastItsPoints) {
    EXPECT_GE(bytesOf({flatPatch(10, 100)}), 1000.0 * sizeof(zVec<double>));
    EXPECT_LE(bytesOf({flatPatch(10, 100)}), 1100.0 * sizeof(zVec<double>));
}

TEST(MemoryState, AMachineHasMemoryOfWhichAPartIsAvailable) {
    EXPECT_GT(memoryState().total, std::uint64_t{1} << 20U);
    EXPECT_LE(memoryState().available, memoryState().total);
    EXPECT_GT(availableMemory(), 0U);
}

// ---- Every count ----------------------------------------------------------------------------------------------------

TEST_F(MemoryLimits, DuplicateOfAPointCountsPoints) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    giveRoom(9 * bytesOfPoint);
    expectLargest("point.duplicate", "duplicateCount", 1, 9);
}

TEST_F(MemoryLimits, DuplicateOfASectionCountsItsPoints) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    giveRoom(9 * (bytesOfSection + 4 * bytesOfPoint));
    expectLargest("line.duplicate", "duplicateCount", 1, 9);
}

TEST_F(MemoryLimits, RebreakCountsTheCurvesThatGetSoManyPoints) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    giveRoom(9 * bytesOfPoint);
    expectLargest("line.rebreak", "newCount", 2, 9, {{"regime", "1"}});
}

TEST_F(MemoryLimits, RebreakOfAllSectionsCountsThem) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    giveRoom(3 * 7 * bytesOfPoint);
    expectLargest("line.rebreak", "newCount", 2, 7, {{"regime", "2"}});
}

TEST_F(MemoryLimits, RebreakOfTheZBlockCountsTheSectionsOfItsPatches) {
    hold({flatPatch(3, 4), flatPatch(5, 4)});
    addToBlock(0);
    addToBlock(1);
    captureSection(0, 1);
    giveRoom(8 * 6 * bytesOfPoint);
    expectLargest("line.rebreak", "newCount", 2, 6, {{"regime", "2"}, {"useBlock", "1"}});
}

TEST_F(MemoryLimits, RebreakPartCountsTheSectionsThatGetSoManyPoints) {
    hold({flatPatch(3, 6)});
    captureSection(0, 1);
    capturePoint(0, 1, 4);
    giveRoom(3 * 7 * bytesOfPoint);
    expectLargest("point.rebreakPart", "newCount", 2, 7, {{"regime", "2"}});
}

TEST_F(MemoryLimits, ConvertToGridCountsAllSections) {
    hold({patchOf({3, 4}), patchOf({5, 6, 7})});
    giveRoom(5 * 11 * bytesOfPoint);
    expectLargest("convert.toApt", "pointCount", 2, 11);
}

TEST_F(MemoryLimits, CorrectLineCountsTheLinesOfBothSides) {
    hold({flatPatch(4, 5)});
    captureLine(0, 3);
    arranged(doc).freePointHeld = true;
    doc.capture.renumberPoint(1, 1);
    giveRoom(4 * 20 * bytesOfPoint);
    // With 2 lines behind 18 are left.
    expectLargest("line.correct", "linesBefore", 1, 18, {{"linesAfter", "2"}});
}

TEST_F(MemoryLimits, IntersectionCountsLinesInsideAndSectionsOutside) {
    const Patch wall = {{{1.25, 1.25, 1}, {2.75, 1.25, 1}}, {{1.25, 1.25, -1}, {2.75, 1.25, -1}}};
    hold({wall, flatPatch(4, 5)});
    addToBlock(0);
    // 2 lines of 10 points; 4 sections have room for 30 points.
    giveRoom((2 * 10 + 4 * 30) * bytesOfPoint);
    expectLargest("model.intersection", "outsidePoints", 2, 30, {{"insidePoints", "10"}});
}

TEST_F(MemoryLimits, PlanesOfTheSlicerCountTheirSections) {
    doc.feRegion = triangleRegion({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2});
    doc.structureKind = StructureKind::Unstructured;
    doc.modelFile.chosenPath = folder / "wing.dat";
    updateBounds();
    // Each plane between the ends cuts the one triangle.
    giveRoom(50 * (bytesOfSection + bytesOfPoint));
    expectLargest("convert.toSkl", "number", 0, 50);
}

TEST_F(MemoryLimits, CoonsRebuildAndInterpolateAreRefusedWithoutRoomToWork) {
    hold({flatPatch(5, 5)});
    captureSection(0, 2);
    const PatchList model = doc.patches;
    giveRoom(bytesOf(model));
    run("model.coonsRebuild");
    EXPECT_THAT(heard(), Contains(std::string("message: ") + notEnough));
    runWith("line.interpolate", {{"coefficient", "0.5"}});
    EXPECT_THAT(heard(), Contains(std::string("refused: OK: ") + notEnough));
    EXPECT_EQ(doc.patches, model);
    EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    giveRoom(5 * bytesOf(model));
    run("model.coonsRebuild");
    EXPECT_TRUE(doc.patchUndoReady);
}

} // namespace velmora::test
