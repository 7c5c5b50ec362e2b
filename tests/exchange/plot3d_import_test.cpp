#include "plot3d_import.h"

#include <array>
#include <functional>

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importPlot3d, text, options);
}

// Two blocks, 3 by 2 and 2 by 2 points. All x of a block, then all y, then all z.
const std::vector<double> firstBlock = {0.5, 1, 2, 0, 1, 2, 0, 0, 0, 1, 1, 1.25, 0, 0, 0, 0, 0, 7};
const std::vector<double> secondBlock = {5, 6, 5, 6, 0, 0, 1, 1, 3, 3, 3, 3.5};
const std::vector<double> firstMarks = {1, 1, 1, 0, 1, 1};
const std::vector<double> secondMarks = {1, 0, 0, 1};

std::string numbers(const std::vector<double>& values) {
    std::string text;
    for (const double value : values) {
        text += std::to_string(value) + ' ';
    }
    return text + '\n';
}

std::string marks(const std::vector<double>& values) {
    std::string text;
    for (const double value : values) {
        text += std::to_string(static_cast<int>(value)) + ' ';
    }
    return text + '\n';
}

std::vector<std::vector<Point>> firstSections() {
    return {{{0.5, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {2, 1.25, 7}}};
}
std::vector<std::vector<Point>> secondSections() {
    return {{{5, 0, 3}, {6, 0, 3}}, {{5, 1, 3}, {6, 1, 3.5}}};
}

void expectBoth(const Imported& file, const std::string& what = {}) {
    ASSERT_THAT(file.model.patches, SizeIs(2)) << what;
    EXPECT_EQ(sectionsOf(file.model.patches[0]), firstSections()) << what;
    EXPECT_EQ(sectionsOf(file.model.patches[1]), secondSections()) << what;
    EXPECT_TRUE(file.record.complete) << what;
    EXPECT_EQ(file.record.found, (Counts{{"zones", 2}, {"patches", 2}, {"sections", 4}, {"points", 10}})) << what;
    EXPECT_EQ(file.record.kept, file.record.found) << what;
}

void expectFirst(const Imported& file, const std::string& what = {}) {
    ASSERT_THAT(file.model.patches, SizeIs(1)) << what;
    EXPECT_EQ(sectionsOf(file.model.patches[0]), firstSections()) << what;
    EXPECT_TRUE(file.record.complete) << what;
}

TEST(Plot3dImport, TextOfSeveralBlocks) {
    const Imported file = read("2\n3 2 1\n2 2 1\n" + numbers(firstBlock) + numbers(secondBlock));
    expectBoth(file);
    EXPECT_EQ(file.record.format, "plot3d");
    EXPECT_TRUE(file.record.lossless);
}

TEST(Plot3dImport, TextOfOneBlockWithAndWithoutTheCount) {
    expectFirst(read("3 2 1\n" + numbers(firstBlock)));
    expectFirst(read("1\n3 2 1\n" + numbers(firstBlock)));
}

TEST(Plot3dImport, BlankedPointsStayAndAreTold) {
    const Imported file =
        read("2 3 2 1 2 2 1\n" + numbers(firstBlock) + marks(firstMarks) + numbers(secondBlock) + marks(secondMarks));
    expectBoth(file);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Blanked points, which stay points: 3"});
    const Imported one = read("3 2 1\n" + numbers(firstBlock) + marks({1, 1, 1, 1, 1, 1}));
    expectFirst(one);
    EXPECT_TRUE(one.record.lossless);
}

TEST(Plot3dImport, RepeatedNumbersAndCommasAreRead) {
    expectFirst(read("3,2,1\n.5,1,2,0.D0,1,2,3*0.0,2*1,1.25\n5*0 7E0"));
}

TEST(Plot3dImport, APlaneGridLiesAtZ0) {
    const Imported file = read("1\n2 2\n0 1 0 1.5\n0 0 1 1\n");
    ASSERT_THAT(file.model.patches, SizeIs(1));
    EXPECT_EQ(sectionsOf(file.model.patches[0]),
              (std::vector<std::vector<Point>>{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1.5, 1, 0}}}));
}

// One record for the count, one for the extents, one for the numbers of each block.
template <class Real>
std::string records(bool highestFirst, bool counted, bool blanked, int blocks, int markSize = 4) {
    Bytes bytes(highestFirst);
    const auto record = [&](const Bytes& body) {
        const auto mark = [&] {
            markSize == 4 ? bytes.add(static_cast<std::int32_t>(body.text.size()))
                          : bytes.add(static_cast<std::int64_t>(body.text.size()));
        };
        mark();
        bytes.addText(body.text);
        mark();
    };
    if (counted) {
        record(Bytes(highestFirst).add(std::int32_t{blocks}));
    }
    Bytes extents(highestFirst);
    extents.addAll<std::int32_t>({3, 2, 1});
    if (blocks == 2) {
        extents.addAll<std::int32_t>({2, 2, 1});
    }
    record(extents);
    for (int block = 0; block < blocks; ++block) {
        Bytes body(highestFirst);
        body.addAll<Real>(block == 0 ? firstBlock : secondBlock);
        if (blanked) {
            body.addAll<std::int32_t>(block == 0 ? firstMarks : secondMarks);
        }
        record(body);
    }
    return bytes.text;
}

template <class Real>
std::string raw(bool highestFirst, bool counted, bool blanked, int blocks) {
    Bytes bytes(highestFirst);
    if (counted) {
        bytes.add(std::int32_t{blocks});
    }
    bytes.addAll<std::int32_t>({3, 2, 1});
    if (blocks == 2) {
        bytes.addAll<std::int32_t>({2, 2, 1});
    }
    for (int block = 0; block < blocks; ++block) {
        bytes.addAll<Real>(block == 0 ? firstBlock : secondBlock);
        if (blanked) {
            bytes.addAll<std::int32_t>(block == 0 ? firstMarks : secondMarks);
        }
    }
    return bytes.text;
}

TEST(Plot3dImport, EveryBinaryLayoutIsToldByItsSize) {
    for (const bool highestFirst : {false, true}) {
        for (const bool blanked : {false, true}) {
            const std::string what = std::string(highestFirst ? "highest" : "lowest") + (blanked ? " blanked" : "");
            expectBoth(read(raw<float>(highestFirst, true, blanked, 2)), what);
            expectBoth(read(raw<double>(highestFirst, true, blanked, 2)), what);
            expectBoth(read(records<float>(highestFirst, true, blanked, 2)), what);
            expectBoth(read(records<double>(highestFirst, true, blanked, 2)), what);
            expectBoth(read(records<double>(highestFirst, true, blanked, 2, 8)), what);
            for (const bool counted : {false, true}) {
                expectFirst(read(raw<float>(highestFirst, counted, blanked, 1)), what);
                expectFirst(read(raw<double>(highestFirst, counted, blanked, 1)), what);
                expectFirst(read(records<float>(highestFirst, counted, blanked, 1)), what);
                expectFirst(read(records<double>(highestFirst, counted, blanked, 1)), what);
            }
        }
    }
}

TEST(Plot3dImport, BinaryBlankingIsTold) {
    EXPECT_EQ(read(records<float>(true, true, true, 2)).record.changed,
              std::vector<std::string>{"Blanked points, which stay points: 3"});
}

TEST(Plot3dImport, AVolumeGivesItsFacesWhenAsked) {
    // 2 by 2 by 2 points of the unit cube.
    const std::string text = "2 2 2\n0 1 0 1 0 1 0 1\n0 0 1 1 0 0 1 1\n0 0 0 0 1 1 1 1\n";
    const Imported without = read(text);
    EXPECT_TRUE(without.model.empty());
    EXPECT_FALSE(without.record.complete);
    EXPECT_THAT(without.record.reasons, ElementsAre("Volume zones, whose faces were not asked for: 1"));
    EXPECT_EQ(found(without, "patches"), 6);
    ImportOptions faces;
    faces.volumeFaces = true;
    const Imported with = read(text, faces);
    EXPECT_THAT(with.model.patches, SizeIs(6));
    EXPECT_TRUE(with.record.complete);
    EXPECT_FALSE(with.record.lossless) << "a save has no volume";
    EXPECT_THAT(with.record.changed, ElementsAre("Volumes of which only the outer faces are kept: 1"));
    EXPECT_EQ(kept(with, "points"), 24);
}

TEST(Plot3dImport, TheScaleIsThatOfEveryCoordinate) {
    ImportOptions options;
    options.scale = 2.0;
    const Imported file = read("3 2 1\n" + numbers(firstBlock), options);
    EXPECT_EQ(sectionsOf(file.model.patches.at(0))[1], (std::vector<Point>{{0, 2, 0}, {2, 2, 0}, {4, 2.5, 14}}));
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Coordinates scaled"});
}

TEST(Plot3dImport, AFileThatIsCutKeepsItsWholeBlocks) {
    const std::string text = "2\n3 2 1\n2 2 1\n" + numbers(firstBlock) + numbers(secondBlock);
    const std::string binary = records<double>(true, true, false, 2);
    const std::string single = records<float>(false, true, true, 2);
    const std::string bare = raw<float>(false, true, false, 2);
    for (const std::string& cut :
         std::vector<std::string>{text.substr(0, text.size() - 12), binary.substr(0, binary.size() - 9),
                                  single.substr(0, single.size() - 30), bare.substr(0, bare.size() - 1)}) {
        const Imported file = read(cut);
        ASSERT_THAT(file.model.patches, SizeIs(1));
        EXPECT_EQ(sectionsOf(file.model.patches[0]), firstSections());
        EXPECT_FALSE(file.record.complete);
        EXPECT_THAT(file.record.reasons, testing::Contains("Blocks that are not there or not whole: 1"));
        EXPECT_EQ(found(file, "patches"), 2);
        EXPECT_EQ(kept(file, "patches"), 1);
    }
}

// The words of doubles that are round numbers make singles that somebody may have meant, but for every second one,
// which is 0. Nothing of such a file is whole.
TEST(Plot3dImport, ABlockOfDoublesThatIsCutIsNotTakenForSingles) {
    constexpr int across = 41;
    constexpr int along = 33;
    using Coordinate = std::function<double(int, int)>;
    const std::vector<std::array<Coordinate, 3>> grids = {
        {[](int i, int) { return 0.5 * i; }, [](int, int j) { return 0.25 * j; },
         [](int i, int j) { return 0.125 * (i * j % 7); }},
        {[](int i, int) { return i; }, [](int, int j) { return 2.0 * j; }, [](int i, int j) { return i * j % 5; }},
        {[](int i, int) { return 1000.0 + 0.5 * i; }, [](int, int j) { return 2000.0 + 0.5 * j; },
         [](int, int) { return 0.0; }},
        {[](int i, int) { return 12.5 * i; }, [](int, int j) { return 3.2 * j; }, [](int i, int) { return 0.1 * i; }}};
    for (std::size_t number = 0; number < grids.size(); ++number) {
        for (const bool highestFirst : {false, true}) {
            Bytes bytes(highestFirst);
            bytes.addAll<std::int32_t>({2, across, along, 1, 21, 17, 1});
            for (const Coordinate& coordinate : grids[number]) {
                for (int j = 0; j < along; ++j) {
                    for (int i = 0; i < across; ++i) {
                        bytes.add(coordinate(i, j));
                    }
                }
            }
            const Imported file = read(bytes.text.substr(0, bytes.text.size() - 1001));
            EXPECT_TRUE(file.model.empty()) << number << highestFirst;
            EXPECT_FALSE(file.record.complete) << number << highestFirst;
        }
    }
}

// Singles with something behind them keep their grid all the same.
TEST(Plot3dImport, SinglesWithBytesBehindThemStaySingles) {
    const Imported file = read(raw<float>(false, true, false, 2) + "end!");
    ASSERT_THAT(file.model.patches, SizeIs(2));
    EXPECT_EQ(sectionsOf(file.model.patches[0]), firstSections());
    EXPECT_EQ(sectionsOf(file.model.patches[1]), secondSections());
    EXPECT_THAT(file.record.reasons, testing::Contains("Bytes behind the last block: 4"));
}

// A file that lacks its last number fits another layout to the byte: one block of i by j points under its count is then
// a grid of 1 by i by j points without one, with every coordinate in the place of the one before it.
TEST(Plot3dImport, AFileWithoutItsLastNumberIsNotTakenForAWholeOneOfAnotherKind) {
    std::vector<double> cut = firstBlock;
    cut.pop_back();
    const Imported text = read("1\n3 2 1\n" + numbers(cut));
    EXPECT_FALSE(text.record.complete);
    EXPECT_FALSE(text.record.lossless);
    EXPECT_THAT(text.record.reasons, ElementsAre(testing::HasSubstr("a larger file whose end is missing")));
    for (const bool highestFirst : {false, true}) {
        for (const bool blanked : {false, true}) {
            for (const bool isDouble : {false, true}) {
                const std::string bytes =
                    isDouble ? raw<double>(highestFirst, true, blanked, 1) : raw<float>(highestFirst, true, blanked, 1);
                const std::size_t last = blanked || !isDouble ? 4 : 8;
                const Imported binary = read(bytes.substr(0, bytes.size() - last));
                EXPECT_FALSE(binary.record.complete) << highestFirst << blanked << isDouble;
                EXPECT_FALSE(binary.record.lossless) << highestFirst << blanked << isDouble;
                EXPECT_FALSE(binary.record.reasons.empty()) << highestFirst << blanked << isDouble;
                EXPECT_TRUE(binary.model.empty()) << "no block is whole";
            }
        }
    }
}

TEST(Plot3dImport, AFileWithoutItsLastMarkIsNotTakenForAWholeOneOfAnotherKind) {
    const Imported file = read("1\n3 2 1\n" + numbers(firstBlock) + marks({1, 1, 1, 0, 1}));
    EXPECT_FALSE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_FALSE(file.record.reasons.empty());
}

// Cut behind any number: it is told, but where the marks begin, as a file without marks is a whole one.
TEST(Plot3dImport, NoFileThatIsCutIsTakenForAWholeOne) {
    const std::string head = "2\n3 2 1\n2 2 1\n";
    std::vector<double> all = firstBlock;
    all.insert(all.end(), secondBlock.begin(), secondBlock.end());
    for (std::size_t count = 0; count < all.size(); ++count) {
        const Imported file = read(head + numbers({all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)}));
        EXPECT_FALSE(file.record.complete) << count;
        EXPECT_FALSE(file.record.reasons.empty()) << count;
    }
    for (const bool isDouble : {false, true}) {
        const std::string bytes = isDouble ? raw<double>(false, true, false, 2) : raw<float>(false, true, false, 2);
        // As long as all of it in single precision: there the numbers alone could tell.
        const std::size_t half = raw<float>(false, true, false, 2).size();
        for (std::size_t size = 16; size < bytes.size(); ++size) {
            if (size != half) {
                EXPECT_FALSE(read(bytes.substr(0, size)).record.complete) << isDouble << ' ' << size;
            }
        }
    }
    for (const bool counted : {false, true}) {
        const std::string bytes = records<double>(true, counted, false, 1);
        for (std::size_t size = 30; size < bytes.size(); ++size) {
            EXPECT_FALSE(read(bytes.substr(0, size)).record.complete) << counted << ' ' << size;
        }
    }
}

// A plane grid under its count, with marks, has as many numbers as a grid of 1 by i by j points without either.
TEST(Plot3dImport, AFileThatTwoLayoutsTakeIsOfNeitherForSure) {
    const Imported file = read("1 2 2\n0 1 0 1\n0 0 1 1\n1 1 1 1\n");
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre(testing::HasSubstr("More than one layout takes the whole file")));
    // Coordinates that are no marks leave one of them.
    const Imported sure = read("1 2 2\n0 1 0 1\n0 0 1 1\n1 1 1 1.5\n");
    EXPECT_TRUE(sure.record.complete);
    EXPECT_TRUE(sure.record.lossless);
}

TEST(Plot3dImport, CountsThatOnlyALargerFileCouldHaveRaiseNoDoubt) {
    // The first coordinate would do as a third count; nearly all of such a file would be missing.
    const Imported plane = read("1\n2 2\n5 6 5 6.5\n0 0 1 1\n");
    EXPECT_TRUE(plane.record.complete);
    EXPECT_EQ(kept(plane, "points"), 4);
}

TEST(Plot3dImport, TextBehindTheNumbersEndsThem) {
    const Imported file = read("2\n3 2 1\n2 2 1\n" + numbers(firstBlock) + "5 6 x");
    EXPECT_THAT(file.model.patches, SizeIs(1));
    EXPECT_THAT(file.record.reasons, ElementsAre("Blocks that are not there or not whole: 1",
                                                 "Something that is no number ends the file early"));
}

TEST(Plot3dImport, ABlockThatIsNotFiniteStaysOut) {
    std::vector<double> bad = firstBlock;
    bad[4] = std::numeric_limits<double>::infinity();
    const Imported file = read("2\n3 2 1\n2 2 1\n" + numbers(bad) + numbers(secondBlock));
    ASSERT_THAT(file.model.patches, SizeIs(1));
    EXPECT_EQ(sectionsOf(file.model.patches[0]), secondSections());
    EXPECT_THAT(file.record.reasons, ElementsAre("Grids with coordinates that are not finite: 1"));
}

TEST(Plot3dImport, CountsThatTheFileDoesNotHaveAskForNoMemory) {
    for (const char* const text :
         {"2147483647 2147483647 2147483647\n1 2 3\n", "2147483647\n1 1 1\n", "1000000 1000000 1\n0\n",
          "1\n65536 65536 1\n0 0 0\n", "9 1 1 99999999999*0.0", "-1 5 1 0 0 0", "0 5 1", "1.5 2 1 0 0 0 0 0 0"}) {
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty()) << text;
        EXPECT_FALSE(file.record.complete) << text;
    }
    const Imported binary = read(Bytes().addAll<std::int32_t>({1, 2147483647, 2147483647, 1, 0, 0}).text);
    EXPECT_TRUE(binary.model.empty());
    EXPECT_FALSE(binary.record.complete);
}

TEST(Plot3dImport, WhatIsNoGridGivesNothing) {
    for (const std::string& text :
         std::vector<std::string>{std::string("x"), std::string("C 0 0 0\n"), std::string("0.1 0.2 0.3\n0.2 0.2 0.3\n"),
                                  std::string(1, '\0'), std::string("\0\1\2\3\4\5\6\7\1\1\1\1", 12)}) {
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty());
        EXPECT_FALSE(file.record.complete);
        EXPECT_THAT(file.record.reasons, ElementsAre("No layout of PLOT3D fits the file"));
    }
    const Imported nothing = read("");
    EXPECT_TRUE(nothing.record.complete);
    EXPECT_THAT(nothing.record.reasons, IsEmpty());
    EXPECT_EQ(kept(nothing, "points"), 0);
}

} // namespace
} // namespace velmora::test
