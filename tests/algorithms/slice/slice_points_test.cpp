#include "slice_points.h"

#include <gtest/gtest.h>

namespace velmora::test {

TEST(SamePlane, IsRelativeToTheLargerCoordinate) {
    EXPECT_TRUE(samePlane(1, 1 + 0.9e-10));
    EXPECT_FALSE(samePlane(1, 1 + 1.1e-10));
    EXPECT_TRUE(samePlane(-1e6, -1e6 + 0.9e-4));
    EXPECT_FALSE(samePlane(1e-20, -1e-20));
    EXPECT_TRUE(samePlane(0.0, -0.0));
}

} // namespace velmora::test
