#include "grid_builder.h"

#include <limits>

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora {
namespace {

using test::Point;
using testing::ElementsAre;
using testing::IsEmpty;

// Points (i, 10 j, 100 k), i first.
GridBlock blockOf(std::int64_t i, std::int64_t j, std::int64_t k) {
    GridBlock block;
    block.i = i;
    block.j = j;
    block.k = k;
    for (std::int64_t c = 0; c < k; ++c) {
        for (std::int64_t b = 0; b < j; ++b) {
            for (std::int64_t a = 0; a < i; ++a) {
                block.x.push_back(static_cast<double>(a));
                block.y.push_back(static_cast<double>(10 * b));
                block.z.push_back(static_cast<double>(100 * c));
            }
        }
    }
    return block;
}

PatchList patchesWith(const GridBlock& block, bool volumeFaces, GridTally& tally) {
    ImportOptions options;
    options.volumeFaces = volumeFaces;
    return patchesOf(block, options, tally);
}

PatchList surfaces(const GridBlock& block) {
    GridTally tally;
    return patchesWith(block, false, tally);
}

TEST(GridBuilder, IByJBecomesJSectionsOfIPoints) {
    const PatchList patches = surfaces(blockOf(3, 2, 1));
    ASSERT_EQ(patches.size(), 1U);
    EXPECT_THAT(test::sectionsOf(patches[0]),
                ElementsAre(ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{2, 0, 0}),
                            ElementsAre(Point{0, 10, 0}, Point{1, 10, 0}, Point{2, 10, 0})));
}

TEST(GridBuilder, AnIndexOfLength1IsDropped) {
    EXPECT_THAT(
        test::sectionsOf(surfaces(blockOf(2, 1, 2)).at(0)),
        ElementsAre(ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}), ElementsAre(Point{0, 0, 100}, Point{1, 0, 100})));
    EXPECT_THAT(
        test::sectionsOf(surfaces(blockOf(1, 2, 2)).at(0)),
        ElementsAre(ElementsAre(Point{0, 0, 0}, Point{0, 10, 0}), ElementsAre(Point{0, 0, 100}, Point{0, 10, 100})));
    for (const auto& [i, j, k] : {std::array<int, 3>{3, 1, 1}, {1, 3, 1}, {1, 1, 3}}) {
        const PatchList patches = surfaces(blockOf(i, j, k));
        ASSERT_EQ(patches.at(0).size(), 1U);
        EXPECT_EQ(patches[0][0].size(), 3U);
    }
    EXPECT_THAT(test::sectionsOf(surfaces(blockOf(1, 1, 1)).at(0)), ElementsAre(ElementsAre(Point{0, 0, 0})));
}

TEST(GridBuilder, AVolumeIsLeftOutUnlessItsFacesAreAskedFor) {
    GridTally tally;
    EXPECT_THAT(patchesWith(blockOf(2, 2, 2), false, tally), IsEmpty());
    EXPECT_EQ(tally.volumes, 1);
}

// By the right hand: the direction of the points, then that of the sections, gives the outside. Of a block of 3 by 3 by
// 3 points with axes along x, y, z the six outsides are -x, x, -y, y, -z, z.
TEST(GridBuilder, TheSixFacesLookOutwards) {
    GridTally tally;
    const PatchList patches = patchesWith(blockOf(3, 3, 3), true, tally);
    ASSERT_EQ(patches.size(), 6U);
    const std::array<zVec<double>, 6> outside = {
        zVec<double>{-1, 0, 0}, {1, 0, 0}, {0, -1, 0}, {0, 1, 0}, {0, 0, -1}, {0, 0, 1}};
    const std::array<zVec<double>, 6> middle = {
        zVec<double>{0, 10, 100}, {2, 10, 100}, {1, 0, 100}, {1, 20, 100}, {1, 10, 0}, {1, 10, 200}};
    for (std::size_t face = 0; face < 6; ++face) {
        const Patch& patch = patches[face];
        ASSERT_EQ(patch.size(), 3U);
        EXPECT_EQ(patch[1][1], middle[face]) << face;
        const zVec<double> normal = cross(patch[0][1] - patch[0][0], patch[1][0] - patch[0][0]);
        EXPECT_GT(dot(normal, outside[face]), 0.0) << face;
        EXPECT_EQ(dot(normal, normal), dot(normal, outside[face]) * dot(normal, outside[face])) << face;
    }
}

TEST(GridBuilder, TheFacesHaveTheOrderOfTheIndices) {
    GridTally tally;
    const PatchList patches = patchesWith(blockOf(2, 3, 4), true, tally);
    std::vector<std::pair<std::size_t, std::size_t>> sizes; // sections, points
    for (const Patch& patch : patches) {
        sizes.emplace_back(patch.size(), patch[0].size());
    }
    using Size = std::pair<std::size_t, std::size_t>;
    EXPECT_THAT(sizes, ElementsAre(Size(4, 3), Size(4, 3), Size(4, 2), Size(4, 2), Size(3, 2), Size(3, 2)));
    // Low i looks to -x: its sections run against j.
    EXPECT_THAT(test::sectionsOf(patches[0])[1], ElementsAre(Point{0, 20, 100}, Point{0, 10, 100}, Point{0, 0, 100}));
    EXPECT_THAT(test::sectionsOf(patches[5])[1], ElementsAre(Point{0, 10, 300}, Point{1, 10, 300}));
}

TEST(GridBuilder, ABlockThatIsNotFiniteStaysOut) {
    GridBlock block = blockOf(2, 2, 1);
    block.y[3] = std::numeric_limits<double>::infinity();
    GridTally tally;
    EXPECT_THAT(patchesWith(block, false, tally), IsEmpty());
    EXPECT_EQ(tally.notFinite, 1);
    GridTally scaled;
    ImportOptions options;
    options.scale = 1e308;
    EXPECT_THAT(patchesOf(blockOf(2, 2, 1), options, scaled), IsEmpty());
    EXPECT_EQ(scaled.notFinite, 1);
}

TEST(GridBuilder, CountsAreThoseOfThePatches) {
    Counts promised;
    countBlock(blockOf(2, 3, 4), promised);
    GridTally tally;
    Counts made;
    countPatches(patchesWith(blockOf(2, 3, 4), true, tally), made);
    // 2 faces of 3 by 4, 2 of 2 by 4, 2 of 2 by 3 points; 4, 4 and 3 sections.
    EXPECT_EQ(promised, (Counts{{"patches", 6}, {"sections", 22}, {"points", 52}}));
    EXPECT_EQ(made, promised);
}

// Points along x, sections along y: the window shows +z as the front, so both triangles look there.
TEST(GridBuilder, TheTrianglesOfAPatchLookToTheFront) {
    const auto zone = trianglesOfPatch(surfaces(blockOf(2, 2, 1)).at(0), "cell");
    ASSERT_NE(zone, nullptr);
    EXPECT_EQ(zone->title, "cell");
    // a = (0, 0), b = (0, 10), c = (1, 10), d = (1, 0): (a, c, b) and (a, d, c)
    EXPECT_THAT(test::nodesOf(*zone), ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{0, 10, 0}, Point{1, 10, 0}));
    EXPECT_THAT(test::trianglesOf(*zone),
                ElementsAre(std::array<std::int32_t, 3>{0, 3, 2}, std::array<std::int32_t, 3>{0, 1, 3}));
}

TEST(GridBuilder, APatchWithoutCellsGivesNoTriangles) {
    EXPECT_EQ(trianglesOfPatch({}, ""), nullptr);
    EXPECT_EQ(trianglesOfPatch({{{0, 0, 0}, {1, 0, 0}}}, ""), nullptr);
    EXPECT_EQ(trianglesOfPatch({{{0, 0, 0}}, {{1, 0, 0}}}, ""), nullptr);
    EXPECT_EQ(trianglesOfPatch({{{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0}}}, ""), nullptr);
}

} // namespace
} // namespace velmora
