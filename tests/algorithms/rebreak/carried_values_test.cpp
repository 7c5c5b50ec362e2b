#include "carried_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::Pointwise;

std::vector<double> coordinates(const PointList& points, double zVec<double>::*axis = &zVec<double>::x) {
    std::vector<double> values;
    for (const zVec<double>& p : points) {
        values.push_back(p.*axis);
    }
    return values;
}

} // namespace

TEST(CarriedValues, StandBetweenTheirNeighboursByThePartOfTheLength) {
    const PointList points = {{0, 0, 0}, {1, 0, 0}, {4, 0, 0}};
    const PointList values = {{0, 1, 7}, {8, 1, 7}, {20, 1, 7}};
    const PointList found = valuesAlong(points, values, {0, 0.125, 0.25, 0.5, 1});
    EXPECT_THAT(coordinates(found), ElementsAre(0, 4, 8, 12, 20));
    EXPECT_THAT(coordinates(found, &zVec<double>::y), Each(1));
    EXPECT_THAT(coordinates(found, &zVec<double>::z), Each(7));
}

TEST(CarriedValues, OfACurveWithoutLengthArePartedByTheirNumbers) {
    const PointList points(3, {5, 5, 5});
    EXPECT_THAT(chordFractions(points), ElementsAre(0, 0.5, 1));
    EXPECT_THAT(coordinates(valuesAlong(points, {{0, 0, 0}, {2, 0, 0}, {6, 0, 0}}, {0.25, 0.75})), ElementsAre(1, 4));
}

TEST(CarriedValues, ThatAreMissingAreZero) {
    const PointList points = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    EXPECT_THAT(coordinates(valuesAlong(points, {{4, 0, 0}}, {0, 0.25, 1})), ElementsAre(4, 2, 0));
    EXPECT_THAT(coordinates(valuesAlong({}, {}, {0.5})), ElementsAre(0));
}

TEST(CarriedValues, ProgressionsHaveTheirStepsInRatio) {
    // Steps 1, 2 and 4 of 7: the last is 4 times the first.
    EXPECT_THAT(progressionFractions(4, 4.0),
                Pointwise(DoubleNear(1e-12), std::vector<double>{0, 1.0 / 7, 3.0 / 7, 1}));
    EXPECT_THAT(progressionFractions(3, 1.0), ElementsAre(0, 0.5, 1));
}

} // namespace velmora::test
