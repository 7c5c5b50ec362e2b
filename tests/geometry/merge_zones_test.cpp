#include "merge_zones.h"

#include <gtest/gtest.h>

#include "small_zones.h"

namespace velmora {
namespace {

using namespace test;
using Numbers = std::vector<std::int32_t>;

std::vector<std::string> titlesOf(const zRegion_fe& region) {
    std::vector<std::string> titles;
    for (const auto& zone : region.blocks) {
        titles.push_back(zone->title);
    }
    return titles;
}

zRegion_fe threeZones() {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 0, "a"));
    region.blocks.push_back(oneTriangle(10, 0, "b"));
    region.blocks.push_back(oneTriangle(20, 0, "c"));
    return region;
}

TEST(MergeZones, PutsNodesAndElementsBehindThoseOfTheFirst) {
    zRegion_fe region = threeZones();
    EXPECT_TRUE(mergeZones(region, 0, 2));
    EXPECT_EQ(titlesOf(region), (std::vector<std::string>{"a", "b"}));
    const zBlock_fe& joined = *region.blocks[0];
    EXPECT_EQ(joined.nodeCount, 6);
    EXPECT_EQ(joined.elementCount, 2);
    EXPECT_EQ(joined.connectivity, (Numbers{0, 1, 2, -1, 3, 4, 5, -1}));
    EXPECT_EQ(joined.variables[0]->data, (std::vector<double>{0, 1, 0, 20, 21, 20}));
    EXPECT_TRUE(consistent(joined));
}

TEST(MergeZones, TakesALowerZoneToo) {
    zRegion_fe region = threeZones();
    EXPECT_TRUE(mergeZones(region, 2, 0));
    EXPECT_EQ(titlesOf(region), (std::vector<std::string>{"b", "c"}));
    EXPECT_EQ(region.blocks[1]->variables[0]->data, (std::vector<double>{20, 21, 20, 0, 1, 0}));
}

TEST(MergeZones, DropsZonesWithoutElements) {
    zRegion_fe region = threeZones();
    region.blocks.push_back(triangleZone("empty", {{1, 2, 3}}, {}));
    EXPECT_TRUE(mergeZones(region, 0, 1));
    EXPECT_EQ(titlesOf(region), (std::vector<std::string>{"a", "c"}));
}

TEST(MergeZones, OfNumbersThatNameNoTwoZonesDoesNothing) {
    for (const auto& [a, b] : {std::pair{0, 0}, std::pair{-1, 1}, std::pair{0, -1}, std::pair{0, 3}, std::pair{3, 0}}) {
        zRegion_fe region = threeZones();
        EXPECT_FALSE(mergeZones(region, a, b));
        EXPECT_EQ(region.blocks.size(), 3U);
    }
    zRegion_fe region = threeZones();
    region.blocks[1] = triangleZone("empty", {{1, 2, 3}}, {});
    EXPECT_FALSE(mergeZones(region, 0, 1));
}

TEST(MergeZones, FieldThatOnlyOneHasIsZeroForTheOther) {
    zRegion_fe region = threeZones();
    region.blocks[0]->addVariable("p")->data = {7, 8, 9};
    EXPECT_TRUE(mergeZones(region, 0, 1));
    ASSERT_EQ(region.blocks[0]->variables.size(), 4U);
    EXPECT_EQ(region.blocks[0]->variables[3]->data, (std::vector<double>{7, 8, 9, 0, 0, 0}));
    EXPECT_EQ(region.blocks[0]->title, "a");
}

} // namespace
} // namespace velmora
