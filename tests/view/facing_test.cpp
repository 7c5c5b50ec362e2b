#include "facing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "draw_lists.h"
#include "vectors.h"

namespace velmora {
namespace {

DrawList triangles(const std::vector<zVec<double>>& corners) {
    DrawList list;
    list.begin(Primitive::Triangles, {1, 1, 1, 1});
    list.addVertices(corners);
    return list;
}

FaceCone coneOf(const std::vector<zVec<double>>& corners) {
    return faceCone(triangles(corners), Primitive::Triangles, 0, corners.size());
}

const Eye above{.parallel = true, .place = {0, 0, 1}};
const Eye below{.parallel = true, .place = {0, 0, -1}};
const Eye beside{.parallel = true, .place = {1, 0, 0}};

TEST(Facing, OfOneTriangleIsTheSideThatItShows) {
    const FaceCone cone = coneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    EXPECT_EQ(facingOf(cone, above), Facing::Front);
    EXPECT_EQ(facingOf(cone, below), Facing::Back);
    EXPECT_EQ(facingOf(cone, beside), Facing::Mixed) << "on edge nobody can tell";
}

TEST(Facing, IsMixedOfFacesThatShowBothSides) {
    const FaceCone cone = coneOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {0, 1, 0}, {1, 0, 0}});
    EXPECT_EQ(facingOf(cone, above), Facing::Mixed);
    EXPECT_EQ(facingOf(cone, below), Facing::Mixed);
}

TEST(Facing, LeavesOutPlacesAndDoubtsNeedles) {
    const std::vector<zVec<double>> plain = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    std::vector<zVec<double>> withPlace = plain;
    withPlace.insert(withPlace.end(), 3, {0.2, 0.2, 0});
    EXPECT_EQ(facingOf(coneOf(withPlace), above), Facing::Front);
    std::vector<zVec<double>> withNeedle = plain;
    withNeedle.insert(withNeedle.end(), {{0, 0, 0}, {1, 0, 0}, {0.5, 0, 1e-9}});
    EXPECT_EQ(facingOf(coneOf(withNeedle), above), Facing::Mixed);
}

TEST(Facing, OfAnEyeNearByTakesTheSizeIntoAccount) {
    // A large plate is seen from in front wherever the eye stands above it, but the ball about it reaches far.
    const FaceCone cone = coneOf({{-10, -10, 0}, {10, -10, 0}, {0, 10, 0}});
    EXPECT_EQ(facingOf(cone, {.parallel = false, .place = {0, 0, 1}}), Facing::Mixed);
    EXPECT_EQ(facingOf(cone, {.parallel = false, .place = {0, 0, 100}}), Facing::Front);
    EXPECT_EQ(facingOf(cone, {.parallel = false, .place = {0, 0, -100}}), Facing::Back);
}

TEST(Facing, EyesAreWhereTheMatricesSayTheyAre) {
    const Matrix4 modelView = translationMatrix({1, 2, -20}) * rotationMatrix(90, {0, 1, 0});
    const Eye eye = eyeOf(modelView, frustumMatrix(-1, 1, -1, 1, 1, 100));
    ASSERT_FALSE(eye.parallel);
    // The model view matrix brings the eye to the origin.
    const zVec<double>& p = eye.place;
    EXPECT_NEAR(modelView[0] * p.x + modelView[4] * p.y + modelView[8] * p.z + modelView[12], 0.0, 1e-12);
    EXPECT_NEAR(modelView[1] * p.x + modelView[5] * p.y + modelView[9] * p.z + modelView[13], 0.0, 1e-12);
    EXPECT_NEAR(modelView[2] * p.x + modelView[6] * p.y + modelView[10] * p.z + modelView[14], 0.0, 1e-12);
    const Eye parallel = eyeOf(modelView, orthographicMatrix(-1, 1, -1, 1, 1, 100));
    EXPECT_TRUE(parallel.parallel);
    // Turned by 90 degrees about Y, the axis -X of the model looks at the eye.
    EXPECT_NEAR(parallel.place.x, -1.0, 1e-12);
}

/// What is said of a strip is true of each of its triangles, however the quads are parted.
TEST(Facing, IsNeverWrongAboutAnyTriangle) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> bend(-0.3, 0.3);
    std::uniform_real_distribution<double> place(-6.0, 6.0);
    int certain = 0;
    for (int round = 0; round < 2000; ++round) {
        DrawList list;
        list.begin(Primitive::QuadStrip, {1, 1, 1, 1});
        for (int i = 0; i < 6; ++i) {
            list.vertex({0.5 * i, bend(random), bend(random)});
            list.vertex({0.5 * i, 1.0 + bend(random), bend(random)});
        }
        const Eye eye{.parallel = round % 2 == 0,
                      .place = unitOf({place(random), place(random), place(random)}) * (round % 2 == 0 ? 1.0 : 8.0)};
        const Facing facing = facingOf(faceCone(list, Primitive::QuadStrip, 0, list.vertices.size()), eye);
        certain += facing == Facing::Mixed ? 0 : 1;
        for (std::size_t i = 0; i + 3 < list.vertices.size() && facing != Facing::Mixed; i += 2) {
            const auto& v = list.vertices;
            for (const auto& [a, b, c] : {std::array{v[i], v[i + 1], v[i + 3]},
                                          {v[i], v[i + 3], v[i + 2]},
                                          {v[i], v[i + 1], v[i + 2]},
                                          {v[i + 1], v[i + 3], v[i + 2]}}) {
                const zVec<double> towards = eye.parallel ? eye.place : eye.place - a;
                EXPECT_EQ(dot(cross(b - a, c - a), towards) > 0.0, facing == Facing::Front) << round;
            }
        }
    }
    EXPECT_GT(certain, 200) << "and it is not always in doubt";
}

} // namespace
} // namespace velmora
