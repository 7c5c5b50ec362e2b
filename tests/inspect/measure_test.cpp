#include "measure.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::DoubleEq;
using testing::Eq;
using testing::Optional;

const auto none = Eq(std::nullopt);

/// Section n, point m stands at (m, n, 0); point (1, 1) is lifted by 1.
PatchList hill() {
    Patch patch = flatPatch(3, 4);
    patch[1][1].z = 1.0;
    return {flatPatch(2, 2), patch};
}

Measurement between(const PatchList& patches, const std::array<int, 3>& a, const std::array<int, 3>& b) {
    return measure(patches, *gridPlace(patches, a[0], a[1], a[2]), *gridPlace(patches, b[0], b[1], b[2]), {});
}

MeasuredPlace at(double x, double y, double z) {
    return {{x, y, z}, std::nullopt};
}

} // namespace

TEST(Measure, DistanceAndDeltaRunFromTheFirstPlaceToTheSecond) {
    const Measurement result = measure({}, at(1, 2, 3), at(4, -2, 3), {});
    EXPECT_EQ(result.distance, 5.0);
    EXPECT_EQ(result.delta, Vector(3, -4, 0));
    EXPECT_THAT(result.along, none);
    EXPECT_THAT(result.angle, none);
}

TEST(Measure, AlongASectionItsStepsAdd) {
    const Measurement result = between(hill(), {1, 1, 0}, {1, 1, 3});
    EXPECT_EQ(result.distance, 3.0);
    EXPECT_THAT(result.along, Optional(DoubleEq(2.0 * std::sqrt(2.0) + 1.0)));
    EXPECT_THAT(between(hill(), {1, 1, 3}, {1, 1, 0}).along, result.along);
}

TEST(Measure, AlongALineItsStepsAdd) {
    const Measurement result = between(hill(), {1, 2, 1}, {1, 0, 1});
    EXPECT_EQ(result.delta, Vector(0, -2, 0));
    EXPECT_THAT(result.along, Optional(DoubleEq(2.0 * std::sqrt(2.0))));
}

TEST(Measure, PlacesOnNoCommonCurveHaveNoLengthAlong) {
    EXPECT_THAT(between(hill(), {1, 0, 0}, {1, 1, 1}).along, none);
    EXPECT_THAT(between(hill(), {0, 1, 1}, {1, 1, 1}).along, none) << "another patch";
    const PatchList patches = hill();
    EXPECT_THAT(measure(patches, *gridPlace(patches, 1, 0, 0), at(3, 0, 0), {}).along, none);
    EXPECT_THAT(measure(patches, at(3, 0, 0), *gridPlace(patches, 1, 0, 0), {}).along, none);
}

TEST(Measure, APlaceMeasuredFromItself) {
    const Measurement result = between(hill(), {1, 1, 1}, {1, 1, 1});
    EXPECT_EQ(result.distance, 0.0);
    EXPECT_THAT(result.along, Optional(0.0));
}

TEST(Measure, SectionsOfDifferentLengthsHaveNoLinesAcrossThem) {
    PatchList patches = hill();
    patches[1][1].resize(2);
    EXPECT_THAT(between(patches, {1, 0, 2}, {1, 2, 2}).along, none);
    EXPECT_THAT(between(patches, {1, 0, 1}, {1, 2, 1}).along, none);
    EXPECT_THAT(between(patches, {1, 2, 0}, {1, 2, 3}).along, Optional(3.0));
}

TEST(Measure, TheAngleStandsAtTheSecondPlace) {
    const MeasuredPlace b = at(1, 1, 1);
    EXPECT_THAT(measure({}, at(3, 1, 1), b, at(1, 1, 6)).angle, Optional(90.0));
    EXPECT_THAT(measure({}, at(3, 1, 1), b, at(2, 2, 1)).angle, Optional(DoubleEq(45.0)));
    EXPECT_THAT(measure({}, at(3, 1, 1), b, at(0, 1, 1)).angle, Optional(180.0));
    EXPECT_THAT(measure({}, at(3, 1, 1), b, at(9, 1, 1)).angle, Optional(0.0));
}

TEST(Measure, ThereIsNoAngleWhereTwoPlacesAreOne) {
    EXPECT_THAT(measure({}, at(1, 1, 1), at(1, 1, 1), at(2, 2, 2)).angle, none);
    EXPECT_THAT(measure({}, at(2, 2, 2), at(1, 1, 1), at(1, 1, 1)).angle, none);
    EXPECT_THAT(measure({}, at(2, 2, 2), at(1, 1, 1), at(2, 2, 2)).angle, Optional(0.0)) << "A is C, but not B";
}

TEST(Measure, IsTrueAtAnySize) {
    for (const double size : {1e-300, 1e-200, 1e200, 1e300}) {
        const Measurement found = measure({}, at(3 * size, 0, 0), at(0, 0, 0), at(0, 4 * size, 0));
        EXPECT_DOUBLE_EQ(found.distance, 3 * size);
        EXPECT_THAT(found.angle, Optional(90.0)) << size;
        EXPECT_DOUBLE_EQ(measure({}, at(3 * size, 0, 0), at(0, 4 * size, 0), {}).distance, 5 * size);
    }
}

TEST(Measure, InWords) {
    Measurement found = measure({}, at(0, 0, 0), at(3, -4, 0), {});
    EXPECT_EQ(measuredText(found, 1.0), "Distance 5: X 3, Y -4, Z 0");
    found.along = 5.25;
    found.angle = 60.0;
    EXPECT_EQ(measuredText(found, 1.0), "Distance 5: X 3, Y -4, Z 0; along the curve 5.25; angle 60 degrees");
}

TEST(Measure, WhatRoundingLeavesIsNoLength) {
    Measurement found = measure({}, at(0, 0, 0), at(1.5, -2.2e-16, 0.0), {});
    EXPECT_EQ(measuredText(found, 1.0), "Distance 1.5: X 1.5, Y 0, Z 0");
    EXPECT_EQ(measuredText(found, 1e-4), "Distance 1.5: X 1.5, Y -2.2e-16, Z 0") << "of a small model it is one";
    EXPECT_EQ(lengthText(0.99e-12, 1.0), "0");
    EXPECT_EQ(lengthText(1.01e-12, 1.0), "1.01e-12");
}

TEST(Measure, PlacesThatAreNotThere) {
    const PatchList patches = hill();
    EXPECT_TRUE(gridPlace(patches, 1, 2, 3));
    EXPECT_FALSE(gridPlace(patches, 2, 0, 0));
    EXPECT_FALSE(gridPlace(patches, -1, 0, 0));
    EXPECT_FALSE(gridPlace(patches, 1, 3, 0));
    EXPECT_FALSE(gridPlace(patches, 1, -1, 0));
    EXPECT_FALSE(gridPlace(patches, 1, 2, 4));
    EXPECT_FALSE(gridPlace(patches, 1, 2, -1));
    const zRegion_fe region = triangleRegion({{0, 0, 0}, {1, 0, 0}, {0, 1, 7}}, {0, 1, 2});
    EXPECT_EQ(nodePlace(region, 0, 2)->point, Vector(0, 1, 7));
    EXPECT_FALSE(nodePlace(region, 0, 3));
    EXPECT_FALSE(nodePlace(region, 0, -1));
    EXPECT_FALSE(nodePlace(region, 1, 0));
}

} // namespace velmora::test
