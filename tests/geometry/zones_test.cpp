#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "zRegion.h"
#include "zone_conversion.h"

namespace velmora {
namespace {

using testing::ElementsAre;

TEST(Array, AnElementStandsAtItsStrides) {
    const zArray<double> array(3, 4, 2, "p");
    EXPECT_EQ(array.si, 1);
    EXPECT_EQ(array.sj, 3);
    EXPECT_EQ(array.sk, 12);
    EXPECT_EQ(array.size, 24);
    EXPECT_EQ(array.data.size(), 24U);
    EXPECT_EQ(array.name, "p");
}

TEST(Array, ExtentsWithoutRoomOrBelowZeroMakeAnEmptyOne) {
    EXPECT_EQ(zArray<double>(-3, 4, 2, "p").size, 0);
    EXPECT_EQ(zArray<double>(-3, 4, 2, "p").ni, 0);
    EXPECT_EQ(zArray<double>(5376, 1344, 0, "p").data.size(), 0U);
    EXPECT_EQ(zArray<double>(65536, 65536, 1, "p").size, 0);
    EXPECT_EQ(zArray<double>(2147483647, 2147483647, 2147483647, "p").size, 0);
}

TEST(Array, GivenValuesAreCutOrFilledUp) {
    EXPECT_THAT(zArray<double>(2, 1, 1, "p", {1, 2, 3}).data, ElementsAre(1, 2));
    EXPECT_THAT(zArray<double>(3, 1, 1, "p", {1, 2}).data, ElementsAre(1, 2, 0));
}

TEST(Zone, TheTotalIsTheProductOfTheExtents) {
    EXPECT_EQ(zBlock(3, 4, 2).total, 24);
    EXPECT_EQ(zBlock(3, 4, 0).total, 0);
    EXPECT_EQ(zBlock(100000, 100000, 1).total, 0);
}

template <class Zone>
void expectLookUps(Zone& zone) {
    zone.title = "old";
    zArray<double>* const x = zone.addVariable("x");
    EXPECT_EQ(zone.title, "old");
    EXPECT_EQ(zone.addVariable("X"), x);
    EXPECT_EQ(zone.title, "X");
    EXPECT_EQ(zone.variables.size(), 1U);
    EXPECT_EQ(x->name, "x");
    EXPECT_EQ(zone.findVariable("y"), nullptr);
    EXPECT_EQ(zone.title, "X");
    EXPECT_EQ(zone.findVariable("x"), x);
    EXPECT_EQ(zone.title, "x");
    EXPECT_EQ(variableNamed(zone.variables, "X"), x);
    EXPECT_EQ(zone.title, "x");
}

TEST(Zone, ALookUpThatFindsGivesTheZoneTheNameLookedFor) {
    zBlock structured(2, 3, 1);
    expectLookUps(structured);
    EXPECT_EQ(structured.variables[0]->size, 6);
    zBlock_fe unstructured(4, 8, 2);
    expectLookUps(unstructured);
    EXPECT_EQ(unstructured.variables[0]->size, 4);
    EXPECT_THAT(unstructured.variables[0]->data, ElementsAre(0, 0, 0, 0));
}

TEST(Zone, CoordinatesAreFoundOnlyTogether) {
    zBlock zone(2, 2, 1);
    zone.addVariable("Y");
    zone.addVariable("p");
    zone.addVariable("x");
    EXPECT_FALSE(coordinatesOf(zone.variables));
    EXPECT_EQ(coordinatesOf(zone.variables).y, nullptr);
    zone.addVariable("z");
    const ZoneCoordinates found = coordinatesOf(zone.variables);
    ASSERT_TRUE(found);
    EXPECT_EQ(found.y, zone.variables[0].get());
    EXPECT_EQ(found.x, zone.variables[2].get());
    EXPECT_EQ(found.z, zone.variables[3].get());
}

std::unique_ptr<zBlock_fe> triangle() {
    auto zone = std::make_unique<zBlock_fe>(3, 4, 1);
    zone->title = "t";
    zone->connectivity = {0, 1, 2, -1};
    zone->addVariable("x")->data = {0, 1, 2};
    zone->addVariable("y")->data = {3, 4, 5};
    zone->addVariable("Z")->data = {6, 7, 8};
    return zone;
}

TEST(Consistent, EveryCornerMustBeANode) {
    EXPECT_TRUE(consistent(*triangle()));
    for (const std::int32_t node : {-1, 3, 2147483647}) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const auto zone = triangle();
            zone->connectivity[corner] = node;
            EXPECT_FALSE(consistent(*zone));
            EXPECT_FALSE(elementInRange(*zone, 0));
        }
    }
    const auto zone = triangle();
    zone->connectivity[3] = 99;
    EXPECT_TRUE(consistent(*zone));
}

TEST(Consistent, TheCountsMustFitTheArrays) {
    auto zone = triangle();
    zone->elementCount = 2;
    EXPECT_FALSE(consistent(*zone));
    EXPECT_FALSE(elementInRange(*zone, 1));
    EXPECT_FALSE(elementInRange(*zone, -1));
    zone = triangle();
    zone->connectivitySize = 8;
    EXPECT_FALSE(consistent(*zone));
    zone = triangle();
    zone->variables[1]->data.pop_back();
    EXPECT_FALSE(consistent(*zone));
    zone = triangle();
    zone->nodeCount = 4;
    EXPECT_FALSE(consistent(*zone));
    EXPECT_TRUE(consistent(zBlock_fe(0, 0, 0)));
    EXPECT_TRUE(consistent(zBlock_fe(-1, -1, -1)));
}

zRegion_fe regionOfTwo() {
    zRegion_fe region;
    region.title = "r";
    region.words = {1, 2, 3};
    region.blocks.push_back(triangle());
    region.blocks.push_back(triangle());
    region.blocks[1]->title = "u";
    return region;
}

TEST(Region, ItsWordsBeginAtZero) {
    EXPECT_THAT(zRegion().words, ElementsAre(0, 0, 0));
    EXPECT_THAT(zRegion_fe().words, ElementsAre(0, 0, 0));
}

TEST(Region, ANodeIsReadAndWrittenByName) {
    zRegion_fe region = regionOfTwo();
    double x = 0;
    double y = 0;
    double z = 0;
    EXPECT_EQ(region.getNode(1, 2, x, y, z), 0);
    EXPECT_EQ(x, 2);
    EXPECT_EQ(y, 5);
    EXPECT_EQ(z, 8);
    EXPECT_EQ(region.setNode(1, 2, 10, 11, 12), 0);
    EXPECT_EQ(region.getNode(1, 2, x, y, z), 0);
    EXPECT_EQ(z, 12);
    EXPECT_EQ(region.getNode(0, 2, x, y, z), 0);
    EXPECT_EQ(z, 8);
    EXPECT_EQ(region.blocks[1]->title, "u");
}

TEST(Region, ANodeOutsideIsNeitherReadNorWritten) {
    zRegion_fe region = regionOfTwo();
    region.blocks[1]->variables.pop_back();
    double x = 7;
    double y = 7;
    double z = 7;
    for (const auto& [block, node] : std::vector<std::pair<int, int>>{{-1, 0}, {2, 0}, {0, 3}, {0, -1}, {1, 0}}) {
        EXPECT_EQ(region.getNode(block, node, x, y, z), -1);
        EXPECT_EQ(region.setNode(block, node, x, y, z), -1);
    }
    EXPECT_EQ(x + y + z, 21);
    EXPECT_THAT(region.blocks[0]->variables[0]->data, ElementsAre(0, 1, 2));
    region.blocks[0]->variables[2]->name = "w";
    EXPECT_EQ(region.getNode(0, 0, x, y, z), -1);
    EXPECT_EQ(zRegion_fe().getNode(0, 0, x, y, z), -1);
}

TEST(Region, ACopiedZoneIsDeep) {
    const zRegion_fe source = regionOfTwo();
    zRegion_fe destination;
    copyBlock(source, destination, 1);
    copyBlock(source, destination, 2);
    copyBlock(source, destination, -1);
    ASSERT_EQ(destination.blocks.size(), 1U);
    EXPECT_EQ(destination.blocks[0]->title, "u");
    EXPECT_EQ(destination.blocks[0]->connectivitySize, 4);
    EXPECT_TRUE(consistent(*destination.blocks[0]));
    destination.blocks[0]->variables[0]->data[0] = 99;
    destination.blocks[0]->connectivity[0] = 2;
    EXPECT_EQ(source.blocks[1]->variables[0]->data[0], 0);
    EXPECT_EQ(source.blocks[1]->connectivity[0], 0);
}

TEST(Region, ACopyTakesTheOtherRegionsPlace) {
    const zRegion_fe source = regionOfTwo();
    zRegion_fe destination = regionOfTwo();
    destination.blocks.push_back(triangle());
    destination.title = "old";
    destination.words = {};
    copyRegion(source, destination);
    EXPECT_EQ(destination.blocks.size(), 2U);
    EXPECT_EQ(destination.title, "r");
    EXPECT_THAT(destination.words, ElementsAre(1, 2, 3));
    copyRegion(destination, destination);
    EXPECT_EQ(destination.blocks.size(), 2U);
    copyRegion(zRegion_fe(), destination);
    EXPECT_EQ(destination.blocks.size(), 2U);
    EXPECT_EQ(destination.title, "r");
}

// Two sections of three points with x the section, y the point, z 9.
const Patch patch{{{0, 0, 9}, {0, 1, 9}, {0, 2, 9}}, {{1, 0, 9}, {1, 1, 9}, {1, 2, 9}}};

TEST(PatchesToRegion, APatchIsAZoneOfItsPoints) {
    zRegion region;
    EXPECT_TRUE(patchesToRegion({patch, patch}, region));
    ASSERT_EQ(region.blocks.size(), 2U);
    const zBlock& zone = *region.blocks[1];
    EXPECT_EQ(zone.title, "Patch_add1");
    EXPECT_EQ(zone.imax, 3);
    EXPECT_EQ(zone.jmax, 2);
    EXPECT_EQ(zone.kmax, 1);
    ASSERT_EQ(zone.variables.size(), 3U);
    EXPECT_EQ(zone.variables[0]->name, "x");
    EXPECT_THAT(zone.variables[0]->data, ElementsAre(0, 0, 0, 1, 1, 1));
    EXPECT_THAT(zone.variables[1]->data, ElementsAre(0, 1, 2, 0, 1, 2));
    EXPECT_THAT(zone.variables[2]->data, ElementsAre(9, 9, 9, 9, 9, 9));
}

TEST(PatchesToRegion, TheFirstZoneGivesTheNumberOfFields) {
    zRegion region;
    region.blocks.push_back(std::make_unique<zBlock>(1, 1, 1));
    for (const char* const name : {"a", "b", "c", "d", "e"}) {
        region.blocks[0]->addVariable(name);
    }
    EXPECT_TRUE(patchesToRegion({patch}, region));
    ASSERT_EQ(region.blocks.size(), 2U);
    EXPECT_EQ(region.blocks[1]->title, "Patch_add0");
    ASSERT_EQ(region.blocks[1]->variables.size(), 5U);
    EXPECT_EQ(region.blocks[1]->variables[3]->name, "Func_0");
    EXPECT_EQ(region.blocks[1]->variables[4]->name, "Func_1");
    EXPECT_THAT(region.blocks[1]->variables[4]->data, ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST(PatchesToRegion, ARegionOfTooFewFieldsIsRefusedUnlessNothingIsToBeAdded) {
    zRegion region;
    region.blocks.push_back(std::make_unique<zBlock>(1, 1, 1));
    region.blocks[0]->addVariable("x");
    EXPECT_FALSE(patchesToRegion({patch}, region));
    EXPECT_EQ(region.blocks.size(), 1U);
    EXPECT_TRUE(patchesToRegion({}, region));
    EXPECT_EQ(irregularRegionMessage, "Irregular structure of REGION. The number of variables < 3");
}

TEST(PatchesToRegion, APointThatAShorterSectionLacksIsTheOrigin) {
    zRegion region;
    EXPECT_TRUE(
        patchesToRegion({{{{1, 1, 1}, {2, 2, 2}}, {{3, 3, 3}}, {{4, 4, 4}, {5, 5, 5}, {6, 6, 6}}}, {}, {{}}}, region));
    ASSERT_EQ(region.blocks.size(), 3U);
    EXPECT_THAT(region.blocks[0]->variables[0]->data, ElementsAre(1, 2, 3, 0, 4, 5));
    EXPECT_EQ(region.blocks[1]->total, 0);
    EXPECT_EQ(region.blocks[2]->total, 0);
    EXPECT_EQ(region.blocks[2]->jmax, 1);
}

TEST(PatchesToZones, EveryZoneIsTitledZ) {
    zRegion region;
    patchesToZones({patch, patch}, region);
    ASSERT_EQ(region.blocks.size(), 2U);
    EXPECT_EQ(region.blocks[0]->title, "z");
    EXPECT_EQ(region.blocks[1]->title, "z");
    EXPECT_THAT(region.blocks[0]->variables[0]->data, ElementsAre(0, 0, 0, 1, 1, 1));
}

TEST(RegionToSurface, APatchOf3By2PointsIsFourTriangles) {
    zRegion region;
    patchesToRegion({patch}, region);
    region.blocks[0]->addVariable("p")->data = {1, 2, 3, 4, 5, 6};
    zRegion_fe surface;
    EXPECT_TRUE(regionToSurface(region, surface));
    ASSERT_EQ(surface.blocks.size(), 1U);
    const zBlock_fe& zone = *surface.blocks[0];
    EXPECT_EQ(zone.title, "Patch___0");
    EXPECT_EQ(zone.nodeCount, 6);
    EXPECT_EQ(zone.elementCount, 4);
    EXPECT_EQ(zone.connectivitySize, 16);
    EXPECT_THAT(zone.connectivity, ElementsAre(0, 1, 3, -1, 3, 1, 4, -1, 1, 2, 4, -1, 4, 2, 5, -1));
    ASSERT_EQ(zone.variables.size(), 4U);
    EXPECT_THAT(zone.variables[0]->data, ElementsAre(0, 0, 0, 1, 1, 1));
    EXPECT_EQ(zone.variables[3]->name, "p");
    EXPECT_THAT(zone.variables[3]->data, ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(region.blocks[0]->title, "Patch_add0");
}

std::unique_ptr<zBlock> gridZone(std::int32_t imax, std::int32_t jmax, std::int32_t kmax) {
    auto zone = std::make_unique<zBlock>(imax, jmax, kmax);
    zone->addVariable("X");
    zone->addVariable("Y");
    zone->addVariable("Z");
    return zone;
}

TEST(RegionToSurface, OneCellIsTwoTrianglesAndTheDepthPlaysNoPart) {
    zRegion region;
    region.blocks.push_back(gridZone(2, 2, 3));
    region.blocks[0]->variables[0]->data = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    zRegion_fe surface;
    regionToSurface(region, surface);
    ASSERT_EQ(surface.blocks.size(), 1U);
    EXPECT_EQ(surface.blocks[0]->nodeCount, 4);
    EXPECT_THAT(surface.blocks[0]->connectivity, ElementsAre(0, 1, 2, -1, 2, 1, 3, -1));
    EXPECT_THAT(surface.blocks[0]->variables[0]->data, ElementsAre(1, 2, 3, 4));
}

TEST(RegionToSurface, ZonesOfOneRowAreLeftOutAndCounted) {
    zRegion region;
    region.blocks.push_back(gridZone(5, 1, 1));
    region.blocks.push_back(gridZone(1, 5, 1));
    region.blocks.push_back(gridZone(2, 2, 1));
    zRegion_fe surface;
    EXPECT_TRUE(regionToSurface(region, surface));
    ASSERT_EQ(surface.blocks.size(), 1U);
    EXPECT_EQ(surface.blocks[0]->title, "Patch___2");
}

TEST(RegionToSurface, ZonesWhoseArraysAreTooShortAreLeftOut) {
    zRegion region;
    region.blocks.push_back(gridZone(3, 3, 0));
    region.blocks.push_back(gridZone(3, 3, 1));
    region.blocks[1]->variables[2]->data.pop_back();
    region.blocks.push_back(gridZone(100000, 100000, 1));
    zRegion_fe surface;
    EXPECT_TRUE(regionToSurface(region, surface));
    EXPECT_TRUE(surface.blocks.empty());
}

TEST(RegionToSurface, NothingHappensWithoutCoordinatesInTheFirstZone) {
    zRegion region;
    zRegion_fe surface;
    EXPECT_TRUE(regionToSurface(region, surface));
    region.blocks.push_back(gridZone(2, 2, 1));
    region.blocks.push_back(gridZone(2, 2, 1));
    region.blocks[0]->variables[1]->name = "w";
    EXPECT_TRUE(regionToSurface(region, surface));
    region.blocks[0]->variables.pop_back();
    EXPECT_TRUE(regionToSurface(region, surface));
    EXPECT_TRUE(surface.blocks.empty());
}

/// What `zoneBounds` is to give, value by value.
void widenPlainly(const std::vector<double>& values, double& low, double& high) {
    for (const double value : values) {
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
}

TEST(Zone, BoundsAreThoseOfOneValueAfterTheOtherToTheSignOfAZero) {
    std::mt19937 random(37);
    const std::vector<double> pool = {0.0,
                                      -0.0,
                                      1.5,
                                      -1.5,
                                      -2.0,
                                      3.0,
                                      std::numeric_limits<double>::quiet_NaN(),
                                      std::numeric_limits<double>::infinity()};
    for (int round = 0; round < 5000 && !testing::Test::HasFailure(); ++round) {
        const auto nodes = static_cast<std::int32_t>(random() % 14);
        auto zone = std::make_unique<zBlock_fe>(nodes, 0, 0);
        zVec<double> expectedLower(1.0, 0.0, -0.0);
        zVec<double> expectedUpper(-1.0, -0.0, 0.0);
        zVec<double> lower = expectedLower;
        zVec<double> upper = expectedUpper;
        double* const lows[] = {&expectedLower.x, &expectedLower.y, &expectedLower.z};
        double* const highs[] = {&expectedUpper.x, &expectedUpper.y, &expectedUpper.z};
        const std::size_t kinds = 2 + random() % (pool.size() - 1);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            std::vector<double>& values = zone->addVariable(std::string(1, static_cast<char>('x' + axis)))->data;
            for (double& value : values) {
                value = pool[random() % kinds];
            }
            widenPlainly(values, *lows[axis], *highs[axis]);
        }
        zRegion_fe region;
        region.blocks.push_back(std::move(zone));
        zoneBounds(region, lower, upper);
        const auto bits = [](const zVec<double>& p) {
            return std::array{std::bit_cast<std::uint64_t>(p.x), std::bit_cast<std::uint64_t>(p.y),
                              std::bit_cast<std::uint64_t>(p.z)};
        };
        EXPECT_EQ(bits(lower), bits(expectedLower));
        EXPECT_EQ(bits(upper), bits(expectedUpper));
    }
}

} // namespace
} // namespace velmora
