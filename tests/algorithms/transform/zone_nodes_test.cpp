#include "zone_nodes.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Vec = zVec<double>;
using Zones = std::vector<std::int32_t>;

/// A zone of `nodes` nodes with the named fields; field f has the value 10 f + n in node n.
std::unique_ptr<zBlock_fe> zoneOf(int nodes, const std::vector<std::string>& fields) {
    auto zone = std::make_unique<zBlock_fe>(nodes, 4, 1);
    zone->title = "wing";
    zone->connectivity = {0, 1, 2, -1};
    for (std::size_t f = 0; f < fields.size(); ++f) {
        std::vector<double> values;
        for (int n = 0; n < nodes; ++n) {
            values.push_back(10.0 * static_cast<double>(f) + n);
        }
        zone->variables.push_back(std::make_unique<zArray<double>>(nodes, 1, 1, fields[f], values));
    }
    return zone;
}

zRegion_fe regionOf(const std::vector<int>& nodeCounts) {
    zRegion_fe region;
    for (const int nodes : nodeCounts) {
        region.blocks.push_back(zoneOf(nodes, {"x", "y", "z"}));
    }
    return region;
}

Vec nodeOf(const zRegion_fe& region, std::int32_t zone, std::int32_t node) {
    Vec at;
    EXPECT_EQ(zoneNodeCoords(region, zone, node, at.x, at.y, at.z), 0);
    return at;
}

TEST(ZoneNodeCoords, GoByTheFieldsNamesInEitherCase) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(3, {"p", "Z", "y", "X"}));
    EXPECT_EQ(nodeOf(region, 0, 2), (Vec{32, 22, 12}));
    EXPECT_EQ(setZoneNodeCoords(region, 0, 2, 1, 2, 3), 0);
    EXPECT_EQ(nodeOf(region, 0, 2), (Vec{1, 2, 3}));
    EXPECT_EQ(region.blocks[0]->variables[0]->data[2], 2);
}

TEST(ZoneNodeCoords, LeaveAnAbsentCoordinateUntouched) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(3, {"x", "y", "p"}));
    Vec at{7, 7, 7};
    EXPECT_EQ(zoneNodeCoords(region, 0, 1, at.x, at.y, at.z), 0);
    EXPECT_EQ(at, (Vec{1, 11, 7}));
}

TEST(ZoneNodeCoords, AreRefusedOutsideTheRegionAndForFewerThanThreeFields) {
    zRegion_fe region = regionOf({3});
    region.blocks.push_back(zoneOf(3, {"x", "y"}));
    Vec at{7, 7, 7};
    for (const auto& [zone, node] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {0, 3}, {1, 0}}) {
        EXPECT_EQ(zoneNodeCoords(region, zone, node, at.x, at.y, at.z), -1);
        EXPECT_EQ(setZoneNodeCoords(region, zone, node, 0, 0, 0), -1);
    }
    EXPECT_EQ(at, (Vec{7, 7, 7}));
}

TEST(CloneZoneMirror, TakesOverAllButTheValues) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(3, {"x", "y", "z", "p"}));
    EXPECT_EQ(cloneZoneMirror(region, 0), 2);
    const zBlock_fe& clone = *region.blocks[1];
    EXPECT_EQ(clone.title, "wing_simm");
    EXPECT_EQ(region.blocks[0]->title, "wing");
    EXPECT_EQ(clone.nodeCount, 3);
    EXPECT_EQ(clone.elementCount, 1);
    EXPECT_EQ(clone.connectivitySize, 4);
    EXPECT_EQ(clone.connectivity, (std::vector<std::int32_t>{0, 1, 2, -1}));
    ASSERT_EQ(clone.variables.size(), 3U);
    EXPECT_EQ(clone.variables[2]->name, "z");
    EXPECT_EQ(clone.variables[2]->data, (std::vector<double>{0, 0, 0}));
    EXPECT_TRUE(consistent(clone));
}

TEST(CloneZoneMirror, OfNoZoneAddsNothing) {
    zRegion_fe region = regionOf({3});
    EXPECT_EQ(cloneZoneMirror(region, -1), 1);
    EXPECT_EQ(cloneZoneMirror(region, 1), 1);
}

TEST(ZonesReached, AreTheFirstAloneWhenItHasAsManyNodesAsTheZBlockHasZones) {
    const zRegion_fe region = regionOf({3, 3, 3, 3});
    const Zones block = {2, 0, 1};
    EXPECT_EQ(zonesReached(region, block), (Zones{2}));
}

TEST(ZonesReached, GoOnBehindThePositionThatTheNodesCountTo) {
    // After zone 0 with 2 nodes the walk is at position 3 of the block; that zone's 9 nodes end it.
    const zRegion_fe region = regionOf({2, 9, 9, 9, 9});
    const Zones block = {0, 1, 2, 3, 4};
    EXPECT_EQ(zonesReached(region, block), (Zones{0, 3}));
}

TEST(ZonesReached, EndWhereThePositionDoesNotGrow) {
    // From position 0 the 3 nodes lead to position 4, from there the 2 nodes back to 3: no progress.
    const zRegion_fe region = regionOf({3, 2, 2, 2, 2, 2});
    const Zones block = {0, 1, 2, 3, 4, 5};
    EXPECT_EQ(zonesReached(region, block), (Zones{0, 4}));
}

TEST(ZonesReached, PassOverNumbersOfNoZoneAndZonesWithoutNodes) {
    const zRegion_fe region = regionOf({0, 5});
    const Zones block = {-1, 7, 1};
    EXPECT_EQ(zonesReached(region, block), (Zones{1}));
    const Zones emptyFirst = {0, 1};
    EXPECT_EQ(zonesReached(region, emptyFirst), (Zones{0, 1}));
}

TEST(TransformZones, MapsTheNodesOfTheZonesNamed) {
    zRegion_fe region = regionOf({3, 3});
    EXPECT_TRUE(transformZones(region, {1}, [](const Vec& p) { return std::optional(p + Vec{100, 0, 0}); }));
    EXPECT_EQ(nodeOf(region, 0, 1), (Vec{1, 11, 21}));
    EXPECT_EQ(nodeOf(region, 1, 1), (Vec{101, 11, 21}));
}

TEST(TransformZones, ThatIsEndedKeepsWhatWasDone) {
    zRegion_fe region = regionOf({3});
    int left = 1;
    EXPECT_FALSE(transformZones(
        region, {0}, [&left](const Vec& p) { return left-- > 0 ? std::optional(p * 2.0) : std::optional<Vec>(); }));
    EXPECT_EQ(nodeOf(region, 0, 0), (Vec{0, 20, 40}));
    EXPECT_EQ(nodeOf(region, 0, 1), (Vec{1, 11, 21}));
}

TEST(TransformZones, SkipsAZoneWithoutCoordinates) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(3, {"x", "y"}));
    EXPECT_TRUE(transformZones(region, {0}, [](const Vec&) { return std::optional<Vec>(); }));
}

TEST(MirrorZones, PutsTheImagesBehindTheLast) {
    zRegion_fe region = regionOf({3, 2});
    mirrorZones(region, {0, 1}, {&Vec::y, 5.0});
    ASSERT_EQ(region.blocks.size(), 4U);
    EXPECT_EQ(nodeOf(region, 0, 2), (Vec{2, 12, 22}));
    EXPECT_EQ(nodeOf(region, 2, 2), (Vec{2, -2, 22}));
    EXPECT_EQ(nodeOf(region, 3, 1), (Vec{1, -1, 21}));
}

TEST(TurnTriangles, ExchangesTheSecondAndTheThirdCorner) {
    zBlock_fe zone(4, 8, 2);
    zone.connectivity = {0, 1, 2, -1, 3, 2, 1, -1};
    turnTriangles(zone);
    EXPECT_EQ(zone.connectivity, (std::vector<std::int32_t>{0, 2, 1, -1, 3, 1, 2, -1}));
    turnTriangles(zone);
    EXPECT_EQ(zone.connectivity, (std::vector<std::int32_t>{0, 1, 2, -1, 3, 2, 1, -1}));
    zBlock_fe empty(0, 0, 0);
    turnTriangles(empty);
    EXPECT_TRUE(empty.connectivity.empty());
}

} // namespace
} // namespace velmora
