#include "slice_points.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "curve_samples.h"

namespace velmora::test {

TEST(SamePoint, IsRelativeToTheLargestCoordinateOfBoth) {
    EXPECT_TRUE(samePoint({1, 0, 0}, {1 + 0.9e-10, 0, 0}));
    EXPECT_FALSE(samePoint({1, 0, 0}, {1 + 1.1e-10, 0, 0}));
    EXPECT_TRUE(samePoint({1, 1e-12, 0}, {1, -5e-11, 0}));
    EXPECT_FALSE(samePoint({1e-12, 0, 0}, {-5e-11, 0, 0}));
    EXPECT_TRUE(samePoint({0, 0, 0}, {-0.0, 0, 0}));
    EXPECT_FALSE(samePoint({0, 0, 0}, {1e-300, 0, 0}));
    EXPECT_FALSE(samePoint({samples::infinite, 0, 0}, {samples::infinite, 0, 0}));
    EXPECT_FALSE(samePoint({samples::notANumber, 0, 0}, {samples::notANumber, 0, 0}));
}

} // namespace velmora::test
