#include "view_extent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace velmora {
namespace {

TEST(ViewExtent, IsTheMiddleAndAPartOfTheDiagonal) {
    const ViewExtent extent = viewExtentOf({-1, 0, 2}, {3, 4, 14});
    EXPECT_EQ(extent.centre, zVec<double>(1, 2, 8));
    EXPECT_EQ(extent.radius, 0.525 * std::sqrt(16.0 + 16.0 + 144.0));
    EXPECT_EQ(extent.kind, ExtentKind::Usual);
}

TEST(ViewExtent, DiagonalIsThatOfTheRadius) {
    EXPECT_DOUBLE_EQ(diagonalOf(viewExtentOf({0, 0, 0}, {3, 4, 12}).radius), 13.0);
}

TEST(ViewExtent, OnePlaceGetsAHundredthOfItsLargestCoordinate) {
    const ViewExtent extent = viewExtentOf({10, -400, 7}, {10, -400, 7});
    EXPECT_EQ(extent.centre, zVec<double>(10, -400, 7));
    EXPECT_DOUBLE_EQ(extent.radius, 4.0);
    EXPECT_EQ(extent.kind, ExtentKind::None);
}

TEST(ViewExtent, TheOriginAloneGetsARadiusOfOne) {
    const ViewExtent extent = viewExtentOf({0, 0, 0}, {0, 0, 0});
    EXPECT_EQ(extent.radius, 1.0);
    EXPECT_EQ(extent.kind, ExtentKind::None);
}

TEST(ViewExtent, WhatRoundingLeavesIsNoExtent) {
    // The next number after 1e6 is 1.2e-10 away.
    const double next = std::nextafter(1e6, 2e6);
    EXPECT_EQ(viewExtentOf({1e6, 0, 0}, {next, 0, 0}).kind, ExtentKind::None);
    EXPECT_EQ(viewExtentOf({1e6, 0, 0}, {1e6 + 0.001, 0, 0}).kind, ExtentKind::Usual);
}

TEST(ViewExtent, SmallModelsKeepTheirSize) {
    const ViewExtent extent = viewExtentOf({0, 0, 0}, {3e-90, 4e-90, 0});
    EXPECT_DOUBLE_EQ(extent.radius, 0.525 * 5e-90);
    EXPECT_EQ(extent.kind, ExtentKind::Usual);
}

TEST(ViewExtent, VastCoordinatesHaveAFiniteRadius) {
    const ViewExtent extent = viewExtentOf({-3e200, 0, 0}, {3e200, 8e200, 0});
    EXPECT_DOUBLE_EQ(extent.radius, 0.525 * 10e200);
    EXPECT_EQ(extent.centre, zVec<double>(0, 4e200, 0));
    EXPECT_EQ(extent.kind, ExtentKind::Vast);
}

TEST(ViewExtent, NothingMakesItAnythingButFinite) {
    const double large = std::numeric_limits<double>::max();
    const double endless = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const double value : {large, endless, none}) {
        const ViewExtent extent = viewExtentOf({-value, -1, -value}, {value, value, value});
        EXPECT_TRUE(std::isfinite(extent.centre.x + extent.centre.y + extent.centre.z));
        EXPECT_TRUE(std::isfinite(1000.0 * extent.radius)) << value;
        EXPECT_GT(extent.radius, 0.0);
    }
}

} // namespace
} // namespace velmora
