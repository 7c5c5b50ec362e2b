#include "vectors.h"

#include <cmath>

#include <gtest/gtest.h>

namespace velmora::test {

using Vector = zVec<double>;

TEST(Vectors, LengthOfThreeFourTwelveIsThirteen) {
    EXPECT_EQ(lengthOf({3, 4, 12}), 13.0);
    EXPECT_EQ(unitOf({3, 0, 4}), Vector(0.6, 0, 0.8));
    EXPECT_TRUE(std::isnan(unitOf({0, 0, 0}).x));
}

TEST(Vectors, DistanceIsTheLengthBetweenBoth) {
    EXPECT_EQ(distance({1, 2, 3}, {4, 6, 15}), 13.0);
    EXPECT_EQ(squaredDistance({1, 2, 3}, {4, 6, 15}), 169.0);
}

TEST(Vectors, CosineIsOneAlongZeroAcrossAndNoNumberWithoutALength) {
    EXPECT_EQ(cosine({2, 0, 0}, {5, 0, 0}), 1.0);
    EXPECT_EQ(cosine({2, 0, 0}, {-5, 0, 0}), -1.0);
    EXPECT_EQ(cosine({2, 0, 0}, {0, 3, 4}), 0.0);
    EXPECT_TRUE(std::isnan(cosine({0, 0, 0}, {1, 0, 0})));
}

TEST(Vectors, DivideComponentByComponent) {
    EXPECT_EQ(Vector(3, -6, 9) / 3, Vector(1, -2, 3));
    EXPECT_EQ((Vector(5, 0, 0) / 49).x, 5.0 / 49.0);
}

TEST(Vectors, AxesCountFromZero) {
    Vector point(1, 2, 3);
    const Vector& seen = point;
    EXPECT_EQ(along(seen, 0), 1);
    EXPECT_EQ(along(seen, 1), 2);
    EXPECT_EQ(along(seen, 2), 3);
    along(point, 1) = 7;
    EXPECT_EQ(point, Vector(1, 7, 3));
    const double row[] = {4, 5, 6};
    EXPECT_EQ(vectorAt(row), Vector(4, 5, 6));
}

} // namespace velmora::test
