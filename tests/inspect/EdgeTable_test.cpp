#include "EdgeTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::ElementsAre;

/// One edge with its uses: faces, and whether each runs from the higher number.
struct SeenEdge {
    int lower;
    int higher;
    std::vector<std::pair<int, bool>> uses;
    bool operator==(const SeenEdge&) const = default;
};

std::vector<SeenEdge> edgesOf(int points, const std::vector<Face>& faces) {
    std::vector<SeenEdge> seen;
    EdgeTable(points, faces).forEach([&seen](int lower, int higher, std::span<const EdgeUse> uses) {
        seen.push_back({lower, higher, {}});
        for (const EdgeUse& use : uses) {
            seen.back().uses.emplace_back(use.face(), use.runsDown());
        }
    });
    return seen;
}

const std::vector<Face> twoTriangles = {{{0, 1, 2, -1}}, {{2, 1, 3, -1}}};

} // namespace

TEST(EdgeTable, NamesTheFacesOfEachEdge) {
    EXPECT_THAT(edgesOf(4, twoTriangles), ElementsAre(SeenEdge{0, 1, {{0, false}}}, SeenEdge{0, 2, {{0, true}}},
                                                      SeenEdge{1, 2, {{0, false}, {1, true}}},
                                                      SeenEdge{1, 3, {{1, false}}}, SeenEdge{2, 3, {{1, true}}}));
}

TEST(EdgeTable, AnEdgeCountsEachTimeItOccursInAnOutline) {
    EXPECT_THAT(edgesOf(4, {{{0, 1, 0, 3}}}),
                ElementsAre(SeenEdge{0, 1, {{0, false}, {0, true}}}, SeenEdge{0, 3, {{0, false}, {0, true}}}));
}

TEST(EdgeTable, OpenEdgesOccurOnce) {
    const EdgeTable edges(5, twoTriangles);
    EXPECT_TRUE(edges.isOpen(0, 1));
    EXPECT_TRUE(edges.isOpen(1, 0));
    EXPECT_TRUE(edges.isOpen(3, 2));
    EXPECT_FALSE(edges.isOpen(1, 2));
    EXPECT_FALSE(edges.isOpen(0, 3)) << "there is no such edge";
    EXPECT_FALSE(edges.isOpen(3, 4)) << "there is no such edge";
}

TEST(EdgeTable, WithoutFacesThereIsNoEdge) {
    EXPECT_TRUE(edgesOf(0, {}).empty());
    EXPECT_TRUE(edgesOf(3, {{{1, 1, 2, -1}}}).empty());
}

} // namespace velmora::test
