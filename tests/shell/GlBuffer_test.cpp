#include "GlBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>

namespace velmora::test {
namespace {

using testing::ElementsAre;

constexpr Colour red{1.0F, 0.0F, 0.0F, 1.0F};
constexpr Colour green{0.0F, 1.0F, 0.0F, 1.0F};

void addBatch(DrawList& list, Primitive primitive, const Colour& colour, int vertices) {
    list.begin(primitive, colour);
    for (int i = 0; i < vertices; ++i) {
        list.vertex({static_cast<double>(i), 0.0, 0.0});
    }
}

TEST(JoinBatches, SinglePointsOfOneLookBecomeOneRange) {
    DrawList list;
    for (int i = 0; i < 3; ++i) {
        list.point({1.0, 2.0, 3.0}, 6.0F, red);
    }
    const auto runs = joinBatches(list);
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_THAT(runs[0].first, ElementsAre(0));
    EXPECT_THAT(runs[0].counts, ElementsAre(3));
}

TEST(StripIn, FindsABatchInItsRunAlone) {
    DrawList list;
    addBatch(list, Primitive::LineStrip, red, 4);
    addBatch(list, Primitive::LineStrip, red, 3);
    addBatch(list, Primitive::LineStrip, green, 2);
    const auto runs = joinBatches(list);
    ASSERT_EQ(runs.size(), 2U);
    EXPECT_EQ(stripIn(runs[0], 0), 0U);
    EXPECT_EQ(stripIn(runs[0], 4), 1U);
    EXPECT_EQ(stripIn(runs[0], 7), std::nullopt);
    EXPECT_EQ(stripIn(runs[1], 7), 0U);
    EXPECT_EQ(stripIn(runs[1], 4), std::nullopt);
}

TEST(StripIn, FindsNoneAmongSeparatePrimitives) {
    DrawList list;
    addBatch(list, Primitive::Triangles, red, 3);
    EXPECT_EQ(stripIn(joinBatches(list).at(0), 0), std::nullopt);
}

TEST(JoinBatches, StripsOfOneLookStayApartInOneCall) {
    DrawList list;
    addBatch(list, Primitive::LineStrip, red, 4);
    addBatch(list, Primitive::LineStrip, red, 3);
    const auto runs = joinBatches(list);
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_THAT(runs[0].first, ElementsAre(0, 4));
    EXPECT_THAT(runs[0].counts, ElementsAre(4, 3));
}

TEST(JoinBatches, TheOrderOfLooksStays) {
    DrawList list;
    list.point({}, 5.0F, red);
    list.point({}, 8.0F, red);
    list.point({}, 5.0F, red);
    EXPECT_EQ(joinBatches(list).size(), 3U) << "the same look again behind another is not drawn before it";
}

TEST(JoinBatches, EveryPartOfALookSeparates) {
    const auto runsWith = [](const std::function<void(DrawBatch&)>& change) {
        DrawList list;
        addBatch(list, Primitive::Triangles, red, 3);
        addBatch(list, Primitive::Triangles, red, 3);
        change(list.batches.back());
        return joinBatches(list).size();
    };
    EXPECT_EQ(runsWith([](DrawBatch&) {}), 1U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.primitive = Primitive::Points; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.colour = green; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.pointSize = 2.0F; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.lineWidth = 2.0F; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.lit = true; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.readable = true; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.hasNormals = true; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.outlineFront = true; }), 2U);
    EXPECT_EQ(runsWith([](DrawBatch& b) { b.framing = true; }), 2U);
}

TEST(JoinBatches, BatchesWithoutVerticesAreLeftOut) {
    DrawList list;
    addBatch(list, Primitive::LineStrip, red, 2);
    addBatch(list, Primitive::Points, green, 0);
    addBatch(list, Primitive::LineStrip, red, 2);
    const auto runs = joinBatches(list);
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_THAT(runs[0].counts, ElementsAre(2, 2));
    EXPECT_TRUE(joinBatches(DrawList{}).empty());
}

// ---- Pieces ---------------------------------------------------------------------------------------------------------

/// A lit strip of quads along X of which the first `front` look up and the others down.
GlRun bentStrip(DrawList& list, int quads, int front) {
    list.begin(Primitive::QuadStrip, red).lit = true;
    double x = 0.0;
    for (int i = 0; i <= quads; ++i) {
        list.vertex({x, 1.0, 0.0});
        list.vertex({x, 0.0, 0.0});
        x += i < front ? 1.0 : -1.0;
    }
    GlRun run = joinBatches(list).at(0);
    run.pieces = piecesOf(run, list);
    return run;
}

const Eye above{.parallel = true, .place = {0.0, 0.0, 1.0}};

TEST(Pieces, OfAStripShareTheTwoVerticesBetweenThem) {
    DrawList list;
    const GlRun run = bentStrip(list, 99, 99);
    std::vector<int> first;
    std::vector<int> counts;
    for (const GlPiece& piece : run.pieces) {
        first.push_back(piece.first);
        counts.push_back(piece.count);
    }
    EXPECT_THAT(first, ElementsAre(0, 64, 128, 192));
    EXPECT_THAT(counts, ElementsAre(66, 66, 66, 8));
}

TEST(Pieces, ThatShowTheOtherSideAloneAreLeftOut) {
    DrawList list;
    const GlRun run = bentStrip(list, 99, 99);
    const GlRanges fronts = facingRanges(run, above, Facing::Front);
    EXPECT_THAT(fronts.first, ElementsAre(0)) << "neighbours are one range";
    EXPECT_THAT(fronts.counts, ElementsAre(200));
    EXPECT_THAT(facingRanges(run, above, Facing::Back).first, testing::IsEmpty());
}

TEST(Pieces, InDoubtAreDrawnForBothSides) {
    DrawList list;
    // The bend stands in the second piece, quads 32 to 63.
    const GlRun run = bentStrip(list, 128, 40);
    const GlRanges fronts = facingRanges(run, above, Facing::Front);
    EXPECT_THAT(fronts.first, ElementsAre(0));
    EXPECT_THAT(fronts.counts, ElementsAre(130));
    const GlRanges backs = facingRanges(run, above, Facing::Back);
    EXPECT_THAT(backs.first, ElementsAre(64));
    EXPECT_THAT(backs.counts, ElementsAre(258 - 64));
}

TEST(Pieces, OfTwoStripsStayApart) {
    DrawList list;
    bentStrip(list, 10, 10);
    const GlRun run = bentStrip(list, 10, 10);
    const GlRanges fronts = facingRanges(run, above, Facing::Front);
    EXPECT_THAT(fronts.first, ElementsAre(0, 22));
    EXPECT_THAT(fronts.counts, ElementsAre(22, 22));
}

// ---- Edges ----------------------------------------------------------------------------------------------------------

/// Strips of quads that look up, one beside the other, each going on where the one before ended.
GlRun plate(DrawList& list, int strips, int quads) {
    for (int n = 0; n < strips; ++n) {
        list.begin(Primitive::QuadStrip, red).lit = true;
        for (int m = 0; m <= quads; ++m) {
            list.vertex({1.0 * m, 0.0 - n, 0.0});
            list.vertex({1.0 * m, -1.0 - n, 0.0});
        }
    }
    GlRun run = joinBatches(list).at(0);
    run.pieces = piecesOf(run, list);
    return run;
}

const Eye below{.parallel = true, .place = {0.0, 0.0, -1.0}};

using Line = std::array<zVec<double>, 2>;

/// The lines that the context would draw of edges.
std::vector<Line> linesOf(const GlEdges& edges, const DrawList& list) {
    std::vector<Line> lines;
    const auto at = [&list](int vertex) { return list.vertices.at(static_cast<std::size_t>(vertex)); };
    for (std::size_t i = 0; i < edges.rungs.first.size(); ++i) {
        for (int k = 0; k + 1 < edges.rungs.counts[i]; k += 2) {
            lines.push_back({at(edges.rungs.first[i] + k), at(edges.rungs.first[i] + k + 1)});
        }
    }
    for (const int row : {0, 1}) {
        const GlRanges& ranges = edges.rows.at(static_cast<std::size_t>(row));
        for (std::size_t i = 0; i < ranges.first.size(); ++i) {
            for (int k = ranges.first[i]; k + 1 < ranges.first[i] + ranges.counts[i]; ++k) {
                lines.push_back({at(row + 2 * k), at(row + 2 * k + 2)});
            }
        }
    }
    return lines;
}

/// All edges of a plate of unit squares.
std::vector<Line> edgesOfPlate(int strips, int quads) {
    std::vector<Line> lines;
    for (int n = 0; n <= strips; ++n) {
        for (int m = 0; m <= quads; ++m) {
            if (m < quads) {
                lines.push_back({zVec<double>(m, -n, 0), zVec<double>(m + 1, -n, 0)});
            }
            if (n < strips) {
                lines.push_back({zVec<double>(m, -n, 0), zVec<double>(m, -n - 1, 0)});
            }
        }
    }
    return lines;
}

TEST(Edges, OfAPlateAreAllThereAndEachOnce) {
    for (const bool oddStart : {false, true}) {
        DrawList list;
        if (oddStart) {
            list.point({9.0, 9.0, 9.0}, 6.0F, green);
        }
        plate(list, 3, 70);
        GlRun run = joinBatches(list).back();
        run.pieces = piecesOf(run, list);
        const GlSide fronts = edgesOf(run, above, Facing::Front);
        EXPECT_THAT(linesOf(fronts.certain, list), testing::UnorderedElementsAreArray(edgesOfPlate(3, 70)));
        EXPECT_THAT(fronts.doubtful.first, testing::IsEmpty());
        const GlSide backs = edgesOf(run, above, Facing::Back);
        EXPECT_THAT(linesOf(backs.certain, list), testing::IsEmpty());
        EXPECT_THAT(backs.doubtful.first, testing::IsEmpty());
        EXPECT_EQ(linesOf(edgesOf(run, below, Facing::Back).certain, list).size(), edgesOfPlate(3, 70).size());
    }
}

TEST(Edges, OfTheRowBetweenTwoStripsAreDrawnWhereOnlyOneIs) {
    DrawList list;
    plate(list, 1, 10);
    // The next strip begins with the same row and goes back under it: it shows its back.
    list.begin(Primitive::QuadStrip, red).lit = true;
    for (int m = 0; m <= 10; ++m) {
        list.vertex({1.0 * m, -1.0, 0.0});
        list.vertex({1.0 * m, 0.0, -1.0});
    }
    GlRun run = joinBatches(list).at(0);
    run.pieces = piecesOf(run, list);
    EXPECT_THAT(linesOf(edgesOf(run, above, Facing::Front).certain, list),
                testing::UnorderedElementsAreArray(edgesOfPlate(1, 10)));
    EXPECT_EQ(linesOf(edgesOf(run, above, Facing::Back).certain, list).size(), 31U);
}

TEST(Edges, OfStripsThatDoNotGoOnAreThoseOfEach) {
    DrawList list;
    plate(list, 1, 10);
    list.begin(Primitive::QuadStrip, red).lit = true;
    for (int m = 0; m <= 10; ++m) {
        list.vertex({1.0 * m, -1.0, m == 5 ? 0.001 : 0.0});
        list.vertex({1.0 * m, -2.0, 0.0});
    }
    GlRun run = joinBatches(list).at(0);
    run.pieces = piecesOf(run, list);
    EXPECT_EQ(linesOf(edgesOf(run, above, Facing::Front).certain, list).size(), 62U);
}

TEST(Edges, InDoubtAreLeftToTheFaces) {
    DrawList list;
    // The bend stands in the second piece of five, quads 32 to 63.
    const GlRun run = bentStrip(list, 160, 40);
    const GlSide fronts = edgesOf(run, above, Facing::Front);
    EXPECT_EQ(linesOf(fronts.certain, list).size(), 32U * 3 + 1);
    EXPECT_THAT(fronts.doubtful.first, ElementsAre(64));
    EXPECT_THAT(fronts.doubtful.counts, ElementsAre(66));
    const GlSide backs = edgesOf(run, above, Facing::Back);
    EXPECT_EQ(linesOf(backs.certain, list).size(), 96U * 3 + 1);
    EXPECT_THAT(backs.doubtful.first, ElementsAre(64));
}

} // namespace
} // namespace velmora::test
