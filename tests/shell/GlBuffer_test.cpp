#include "GlBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

} // namespace
} // namespace velmora::test
