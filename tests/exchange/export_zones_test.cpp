#include "export_zones.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "exchange_tools.h"
#include "small_zones.h"

namespace velmora {
namespace {

using test::Point;
using testing::ElementsAre;
using testing::SizeIs;

ExchangeModel zoneModel(const std::vector<zVec<double>>& nodes, const std::vector<std::int32_t>& corners) {
    ExchangeModel model;
    model.region = test::triangleRegion(nodes, corners);
    return model;
}

TEST(ExportZones, GridsBecomeTrianglesUnderTheirNumbers) {
    ExchangeModel model;
    model.patches = {{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 1, 0}}},
                     {{{0, 0, 0}}},
                     {{{0, 0, 1}, {1, 0, 1}}, {{0, 1, 1}, {1, 1, 1}}}};
    const ExportZones zones(model, false);
    ASSERT_THAT(zones.zones(), SizeIs(2));
    EXPECT_EQ(zones.zones()[0]->title, "Patch 1");
    EXPECT_EQ(zones.zones()[1]->title, "Patch 3");
    EXPECT_EQ(zones.points(), 8);
    EXPECT_EQ(zones.triangles(), 4);
}

TEST(ExportZones, EqualPointsMergeInACopy) {
    const ExchangeModel model =
        zoneModel({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 3, 4, 5});
    const ExportZones zones(model, true);
    ASSERT_THAT(zones.zones(), SizeIs(1));
    EXPECT_THAT(test::nodesOf(*zones.zones()[0]),
                ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{0, 1, 0}, Point{1, 1, 0}));
    EXPECT_THAT(test::trianglesOf(*zones.zones()[0]),
                ElementsAre(std::array<std::int32_t, 3>{0, 1, 2}, std::array<std::int32_t, 3>{1, 3, 2}));
    EXPECT_EQ(model.region.blocks[0]->nodeCount, 6);
    EXPECT_EQ(ExportZones(model, false).zones()[0], model.region.blocks[0].get());
}

TEST(ExportZones, TheLargestMoveIsTheDistanceToThePointAsWritten) {
    // With 6 digits 1234567 becomes 1234570, 0.1234567 becomes 0.123457: 3 along x, 3e-7 along y.
    const ExchangeModel model = zoneModel({{0, 0, 0}, {1, 0, 0}, {1234567, 0.1234567, 0}}, {0, 1, 2});
    EXPECT_NEAR(largestMove(model, 6, false), 3.0, 1e-12);
    EXPECT_EQ(largestMove(model, 7, false), 0.0);
    EXPECT_EQ(largestMove(model, 17, false), 0.0);
    ExchangeModel grid;
    grid.patches = {{{{0, 0, 0}, {0.1234567, 0.7654323, 0}}}};
    EXPECT_NEAR(largestMove(grid, 6, false), std::hypot(3e-7, 3e-7), 1e-15);
}

TEST(ExportZones, SinglePrecisionMovesByHalfItsStep) {
    // 2^24 + 1 has no room in 24 bits and becomes 2^24.
    const ExchangeModel model = zoneModel({{0, 0, 0}, {1, 0, 0}, {16777217.0, 0.5, 0}}, {0, 1, 2});
    EXPECT_EQ(largestMove(model, 7, true), 1.0);
    EXPECT_TRUE(std::isinf(largestMove(zoneModel({{0, 0, 0}, {1, 0, 0}, {1e39, 0, 0}}, {0, 1, 2}), 7, true)));
}

} // namespace
} // namespace velmora
