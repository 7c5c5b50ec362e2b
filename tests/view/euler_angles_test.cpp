#include <limits>

#include "camera.h"
#include "view_reference.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectMatrix;
using test::expectVector;

/// The rotation by x about X, then y about Y, then z about Z, in degrees, column by column from the plain form.
Matrix4 rotationOf(const zVec<double>& degrees) {
    Matrix4 m = identityMatrix();
    const zVec<double> units[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (std::size_t column = 0; column < 3; ++column) {
        const zVec<double> image = reference::eulerTurned(units[column], degrees);
        m[4 * column] = image.x;
        m[4 * column + 1] = image.y;
        m[4 * column + 2] = image.z;
    }
    return m;
}

/// The matrix that the view makes of three angles.
Matrix4 viewRotation(const zVec<double>& degrees) {
    return rotationMatrix(degrees.z, {0, 0, 1}) * rotationMatrix(degrees.y, {0, 1, 0}) *
           rotationMatrix(degrees.x, {1, 0, 0});
}

/// Distance between two angles on the circle.
double apart(double a, double b) {
    return std::abs(std::remainder(a - b, 360.0));
}

TEST(EulerAngles, IdentityHasNone) {
    EXPECT_EQ(eulerAngles(identityMatrix()), zVec<double>(0, 0, 0));
}

TEST(EulerAngles, SingleAxisTurnsGiveTheirAngle) {
    expectVector(eulerAngles(rotationOf({25, 0, 0})).value(), {25, 0, 0}, 1e-10);
    expectVector(eulerAngles(rotationOf({0, 25, 0})).value(), {0, 25, 0}, 1e-10);
    expectVector(eulerAngles(rotationOf({0, 0, 25})).value(), {0, 0, 25}, 1e-10);
    expectVector(eulerAngles(rotationOf({-25, 0, 0})).value(), {-25, 0, 0}, 1e-10);
    expectVector(eulerAngles(rotationOf({0, 0, -25})).value(), {0, 0, -25}, 1e-10);
}

TEST(EulerAngles, IsoViewComesBack) {
    expectVector(eulerAngles(rotationOf({10, 20, 20})).value(), {10, 20, 20}, 1e-10);
}

// The candidates of Z lie between -90 and 270 degrees, and its sign changes on the way out.
TEST(EulerAngles, ZBeyondARightAngleComesOutAFullTurnLower) {
    expectVector(eulerAngles(rotationOf({0, 0, 120})).value(), {0, 0, -240}, 1e-10);
    expectVector(eulerAngles(rotationOf({0, 0, -120})).value(), {0, 0, -120}, 1e-10);
}

// The candidates of X lie between -90 and 270 degrees.
TEST(EulerAngles, XBelowMinusARightAngleComesOutAFullTurnHigher) {
    expectVector(eulerAngles(rotationOf({-120, 0, 0})).value(), {240, 0, 0}, 1e-10);
    expectVector(eulerAngles(rotationOf({120, 0, 0})).value(), {120, 0, 0}, 1e-10);
}

// The first candidate of Y has a positive cosine and is tried first.
TEST(EulerAngles, YBeyondARightAngleBecomesHalfTurnsOfXAndZ) {
    const zVec<double> angles = eulerAngles(rotationOf({0, 150, 0})).value();
    EXPECT_NEAR(angles.y, 30.0, 1e-10);
    EXPECT_LT(apart(angles.x, 180.0), 1e-10);
    EXPECT_LT(apart(angles.z, 180.0), 1e-10);
}

TEST(EulerAngles, RoundTripOverAGridGivesAnglesBack) {
    for (int x = -180; x < 180; x += 15) {
        for (int y = -75; y <= 75; y += 15) {
            for (int z = -180; z < 180; z += 15) {
                const zVec<double> given(x, y, z);
                const auto found = eulerAngles(rotationOf(given));
                ASSERT_TRUE(found) << x << " " << y << " " << z;
                // 0.0001 degrees and less count as none.
                ASSERT_LT(apart(found->x, x), 1e-4) << x << " " << y << " " << z;
                ASSERT_NEAR(found->y, y, 1e-4) << x << " " << y << " " << z;
                ASSERT_LT(apart(found->z, z), 1e-4) << x << " " << y << " " << z;
            }
        }
    }
}

TEST(EulerAngles, RoundTripOverAGridRebuildsTheMatrix) {
    for (int x = -180; x <= 180; x += 15) {
        for (int y = -180; y <= 180; y += 15) {
            for (int z = -180; z <= 180; z += 15) {
                const Matrix4 matrix = viewRotation({1.0 * x, 1.0 * y, 1.0 * z});
                const auto found = eulerAngles(matrix);
                ASSERT_TRUE(found) << x << " " << y << " " << z;
                expectMatrix(viewRotation(*found), matrix, 5e-5 + 1e-6);
                ASSERT_FALSE(::testing::Test::HasFailure()) << x << " " << y << " " << z;
            }
        }
    }
}

// With Y at a right angle only the difference or the sum of X and Z shows; X becomes 0.
TEST(EulerAngles, RightAngleOfYPutsAllOfTheRestIntoZ) {
    expectVector(eulerAngles(viewRotation({0, 90, 0})).value(), {0, 90, 0}, 1e-10);
    expectVector(eulerAngles(viewRotation({30, 90, 0})).value(), {0, 90, -30}, 1e-6);
    expectVector(eulerAngles(viewRotation({0, 90, 30})).value(), {0, 90, 30}, 1e-6);
    expectVector(eulerAngles(viewRotation({20, 90, 70})).value(), {0, 90, 50}, 1e-6);
    expectVector(eulerAngles(viewRotation({30, -90, 0})).value(), {0, -90, 30}, 1e-6);
    expectVector(eulerAngles(viewRotation({20, -90, 50})).value(), {0, -90, 70}, 1e-6);
}

// The cosine in the matrix can come out a rounding error above 1.
TEST(EulerAngles, RightAngleOfYWithXAndZTakenTogetherIsFound) {
    expectVector(eulerAngles(viewRotation({-105, -90, 105})).value(), {0, -90, 0}, 1e-5);
    expectVector(eulerAngles(viewRotation({105, 90, 105})).value(), {0, 90, 0}, 1e-5);
}

TEST(EulerAngles, MinusRightAngleOfYHasNoXAndNoZ) {
    expectVector(eulerAngles(viewRotation({0, -90, 0})).value(), {0, -90, 0}, 1e-10);
}

TEST(EulerAngles, RightAnglesOfXAndZHaveTheirOwnBranch) {
    expectVector(eulerAngles(viewRotation({90, 0, 0})).value(), {90, 0, 0}, 1e-10);
    expectVector(eulerAngles(viewRotation({-90, 0, 0})).value(), {-90, 0, 0}, 1e-10);
    // Z: the candidate 90 is tried first, the sign changes on the way out.
    expectVector(eulerAngles(viewRotation({0, 0, 90})).value(), {0, 0, 90}, 1e-10);
    expectVector(eulerAngles(viewRotation({0, 0, -90})).value(), {0, 0, -90}, 1e-10);
}

TEST(EulerAngles, HalfTurnAboutYIsHalfTurnsOfXAndZ) {
    // Y = 0 is tried before Y = 180, and the turn by 180 of Z changes its sign.
    expectVector(eulerAngles(viewRotation({0, 180, 0})).value(), {180, 0, -180}, 1e-10);
}

TEST(EulerAngles, LessThanATenThousandthOfADegreeIsExactlyNone) {
    EXPECT_EQ(eulerAngles(rotationOf({0.00009, 0, 0})).value(), zVec<double>(0, 0, 0));
    EXPECT_EQ(eulerAngles(rotationOf({0, -0.00009, 0})).value(), zVec<double>(0, 0, 0));
    EXPECT_EQ(eulerAngles(rotationOf({0, 0, 0.00009})).value(), zVec<double>(0, 0, 0));
    EXPECT_NEAR(eulerAngles(rotationOf({0.00011, 0, 0})).value().x, 0.00011, 1e-9);
}

TEST(EulerAngles, NoAngleComesOutAsMinusZero) {
    const zVec<double> angles = eulerAngles(identityMatrix()).value();
    EXPECT_FALSE(std::signbit(angles.x));
    EXPECT_FALSE(std::signbit(angles.y));
    EXPECT_FALSE(std::signbit(angles.z));
}

TEST(EulerAngles, TranslationOfTheMatrixIsNotLookedAt) {
    const Matrix4 moved = translationMatrix({5, 6, 7}) * viewRotation({10, 20, 30});
    expectVector(eulerAngles(moved).value(), {10, 20, 30}, 1e-10);
}

TEST(EulerAngles, MatrixThatIsNoRotationHasNoAngles) {
    EXPECT_FALSE(eulerAngles(scaleMatrix({2, 2, 2})));
    EXPECT_FALSE(eulerAngles(scaleMatrix({1, 1, -1})));
    EXPECT_FALSE(eulerAngles(scaleMatrix({0, 0, 0})));
    EXPECT_FALSE(eulerAngles(scaleMatrix({1.0001, 1, 1})));
    Matrix4 broken = identityMatrix();
    broken[0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(eulerAngles(broken));
}

TEST(EulerAngles, DeviationBelowTheToleranceStillFits) {
    EXPECT_TRUE(eulerAngles(scaleMatrix({1.00004, 1, 1})));
    EXPECT_FALSE(eulerAngles(scaleMatrix({1.00006, 1, 1})));
}

} // namespace
} // namespace velmora
