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

} // namespace
} // namespace velmora::test
