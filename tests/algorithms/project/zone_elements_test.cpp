#include "zone_elements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "small_zones.h"

namespace velmora::test {

namespace {

using Vector = zVec<double>;

} // namespace

TEST(ElementCorner, IsReadAtTheNodeOfTheConnectivity) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("z", {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {2, 0, 1}));
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), Vector(7, 8, 9));
    EXPECT_EQ(getElementCorner(region, 0, 0, 2), Vector(4, 5, 6));
    region.blocks[0]->variables[0]->name = "X";
    EXPECT_EQ(getElementCorner(region, 0, 0, 1), Vector(1, 2, 3));
}

TEST(ElementCorner, IsTheMarkerWhereSomethingIsOutOfRange) {
    const Vector marker(-10000000000.0, -10000000000.0, -10000000000.0);
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0));
    EXPECT_EQ(getElementCorner(region, 1, 0, 0), marker);
    EXPECT_EQ(getElementCorner(region, -1, 0, 0), marker);
    EXPECT_EQ(getElementCorner(region, 0, 1, 0), marker);
    EXPECT_EQ(getElementCorner(region, 0, -1, 0), marker);
    EXPECT_EQ(getElementCorner(region, 0, 0, 3), marker);
    EXPECT_EQ(getElementCorner(region, 0, 0, -1), marker);
    region.blocks[0]->connectivity[1] = 3;
    EXPECT_EQ(getElementCorner(region, 0, 0, 1), marker);
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), Vector(0, 0, 0));
    region.blocks[0]->variables[2]->name = "w";
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), marker);
    region.blocks[0]->variables.pop_back();
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), marker);
}

TEST(Corners, AreNoneBelowMinusAThousandMillion) {
    for (double Vector::*const axis : {&Vector::x, &Vector::y, &Vector::z}) {
        Vector corner;
        corner.*axis = -1e9;
        EXPECT_TRUE(isCorner(corner));
        corner.*axis = -1.000001e9;
        EXPECT_FALSE(isCorner(corner));
    }
}

TEST(ElementNormal, IsTheProductOfTheEdgesFromTheFirstCorner) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("z", {{0, 0, 0}, {2, 0, 0}, {0, 3, 0}}, {0, 1, 2}));
    // (0, 3, 0) x (2, 0, 0)
    EXPECT_EQ(elementNormal(region, 0, 0), Vector(0, 0, -6));
    EXPECT_EQ(elementNormal(region, 0, 7), Vector(0, 0, 0));
}

} // namespace velmora::test
