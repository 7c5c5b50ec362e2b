#include <limits>

#include "camera.h"
#include "view_reference.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectMatrix;
using test::expectVector;
using test::sent;

const double root3 = std::sqrt(3.0);

TEST(RotationMatrix, QuarterTurnAboutZTakesXToYExactly) {
    const Matrix4 expected{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    EXPECT_EQ(rotationMatrix(90.0, {0, 0, 1}), expected);
}

TEST(RotationMatrix, QuarterTurnAboutXTakesYToZExactly) {
    const Matrix4 expected{1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(rotationMatrix(90.0, {1, 0, 0}), expected);
}

TEST(RotationMatrix, QuarterTurnAboutYTakesZToXExactly) {
    const Matrix4 expected{0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(rotationMatrix(90.0, {0, 1, 0}), expected);
}

TEST(RotationMatrix, ThirtyDegreesAboutZHaveTheKnownSineAndCosine) {
    const double c = root3 / 2.0;
    expectMatrix(rotationMatrix(30.0, {0, 0, 1}), {c, 0.5, 0, 0, -0.5, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 1e-15);
}

TEST(RotationMatrix, ThirdTurnAboutTheSpaceDiagonalExchangesTheAxes) {
    const Matrix4 turn = rotationMatrix(120.0, {1, 1, 1});
    expectVector(sent(turn, {1, 0, 0}), {0, 1, 0}, 1e-15);
    expectVector(sent(turn, {0, 1, 0}), {0, 0, 1}, 1e-15);
    expectVector(sent(turn, {0, 0, 1}), {1, 0, 0}, 1e-15);
}

TEST(RotationMatrix, LengthOfTheAxisHasNoEffect) {
    expectMatrix(rotationMatrix(37.0, {0, 0, 250.0}), rotationMatrix(37.0, {0, 0, 1}), 1e-15);
    expectMatrix(rotationMatrix(37.0, {3e-4, 4e-4, 0}), rotationMatrix(37.0, {3, 4, 0}), 1e-15);
}

TEST(RotationMatrix, OppositeAxisTurnsTheOtherWay) {
    expectMatrix(rotationMatrix(37.0, {0, -2, 0}), rotationMatrix(-37.0, {0, 2, 0}), 1e-15);
}

TEST(RotationMatrix, QuarterTurnsBeyondAFullTurnStayExact) {
    EXPECT_EQ(rotationMatrix(450.0, {0, 0, 1}), rotationMatrix(90.0, {0, 0, 1}));
    EXPECT_EQ(rotationMatrix(-270.0, {0, 0, 1}), rotationMatrix(90.0, {0, 0, 1}));
    EXPECT_EQ(rotationMatrix(-180.0, {0, 1, 0}), rotationMatrix(180.0, {0, 1, 0}));
    EXPECT_EQ(rotationMatrix(720.0, {0, 1, 0}), identityMatrix());
}

TEST(RotationMatrix, NoTurnAboutNoAxisIsTheIdentity) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(rotationMatrix(0.0, {0, 0, 0}), identityMatrix());
    EXPECT_EQ(rotationMatrix(0.0, {none, none, none}), identityMatrix());
}

TEST(RotationMatrix, TurnsAnyPointAsThePlainFormDoes) {
    const zVec<double> axis{0.3, -1.2, 0.7};
    const zVec<double> point{2.0, 5.0, -4.0};
    for (int degrees = -360; degrees <= 360; degrees += 7) {
        expectVector(sent(rotationMatrix(degrees, axis), point), reference::turned(point, degrees, axis), 1e-13);
    }
}

TEST(Matrix, ProductDoesTheRightFactorFirst) {
    const Matrix4 turnThenMove = translationMatrix({10, 0, 0}) * rotationMatrix(90.0, {0, 0, 1});
    EXPECT_EQ(sent(turnThenMove, {1, 0, 0}), zVec<double>(10, 1, 0));
    const Matrix4 moveThenTurn = rotationMatrix(90.0, {0, 0, 1}) * translationMatrix({10, 0, 0});
    EXPECT_EQ(sent(moveThenTurn, {1, 0, 0}), zVec<double>(0, 11, 0));
}

TEST(Matrix, TranslationAndScaleStandInTheirColumns) {
    EXPECT_EQ(translationMatrix({2, 3, 4}), (Matrix4{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 3, 4, 1}));
    EXPECT_EQ(scaleMatrix({2, 3, 4}), (Matrix4{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}));
}

TEST(OrthographicMatrix, OffCentreBoxGivesTheHandWorkedNumbers) {
    // Width 6 about 1, height 4 about 1, depth 1 to 5.
    const Matrix4 expected{2.0 / 6.0, 0, 0,          0, 0,          2.0 / 4.0,  0,          0,
                           0,         0, -2.0 / 4.0, 0, -2.0 / 6.0, -2.0 / 4.0, -6.0 / 4.0, 1};
    expectMatrix(orthographicMatrix(-2, 4, -1, 3, 1, 5), expected, 1e-15);
}

TEST(FrustumMatrix, OffCentreWindowGivesTheHandWorkedNumbers) {
    const Matrix4 expected{2.0 / 6.0, 0,         0,          0,    0, 2.0 / 4.0, 0,           0,
                           2.0 / 6.0, 2.0 / 4.0, -6.0 / 4.0, -1.0, 0, 0,         -10.0 / 4.0, 0};
    expectMatrix(frustumMatrix(-2, 4, -1, 3, 1, 5), expected, 1e-15);
}

const Viewport window{10, 20, 200, 100};

TEST(ProjectPoint, CentreOfTheClipSpaceIsTheMiddleOfTheWindow) {
    const auto middle = projectPoint({0, 0, 0}, identityMatrix(), identityMatrix(), window);
    ASSERT_TRUE(middle);
    EXPECT_EQ(*middle, zVec<double>(110, 70, 0.5));
}

TEST(ProjectPoint, CornersOfTheBoxAreTheCornersOfTheWindow) {
    const Matrix4 box = orthographicMatrix(-2, 4, -1, 3, 1, 5);
    // The eye looks down -z: depth 0 at z = -1, depth 1 at z = -5.
    const auto lowerNear = projectPoint({-2, -1, -1}, identityMatrix(), box, window);
    const auto upperFar = projectPoint({4, 3, -5}, identityMatrix(), box, window);
    ASSERT_TRUE(lowerNear && upperFar);
    expectVector(*lowerNear, {10, 20, 0}, 1e-13);
    expectVector(*upperFar, {210, 120, 1}, 1e-13);
}

TEST(ProjectPoint, PerspectiveShrinksWithTheDistance) {
    const Matrix4 frustum = frustumMatrix(-2, 4, -1, 3, 1, 5);
    // On the far plane the window is five times as large.
    const auto corner = projectPoint({-10, -5, -5}, identityMatrix(), frustum, window);
    ASSERT_TRUE(corner);
    expectVector(*corner, {10, 20, 1}, 1e-13);
}

TEST(ProjectPoint, PointInTheEyeHasNoImage) {
    EXPECT_FALSE(projectPoint({0, 0, 0}, identityMatrix(), frustumMatrix(-1, 1, -1, 1, 1, 5), window));
}

TEST(UnprojectPoint, GivesBackThePointThatWasProjected) {
    const Matrix4 modelView = translationMatrix({0, 0, -3}) * rotationMatrix(40.0, {1, 2, 3});
    for (const Matrix4& projection : {frustumMatrix(-2, 4, -1, 3, 1, 5), orthographicMatrix(-2, 4, -1, 3, 1, 5)}) {
        const zVec<double> point{0.3, -0.4, 0.5};
        const auto at = projectPoint(point, modelView, projection, window);
        ASSERT_TRUE(at);
        const auto back = unprojectPoint(*at, modelView, projection, window);
        ASSERT_TRUE(back);
        expectVector(*back, point, 1e-13);
    }
}

TEST(UnprojectPoint, MatrixWithoutAnInverseGivesNone) {
    EXPECT_FALSE(unprojectPoint({50, 50, 0.5}, scaleMatrix({1, 1, 0}), identityMatrix(), window));
}

} // namespace
} // namespace velmora
