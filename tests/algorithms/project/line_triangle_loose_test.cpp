#include "line_triangle_loose.h"

#include <array>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Place = std::array<double, 3>;

constexpr double untouched = -77.5;

struct Hit {
    int code;
    Place at;
};

struct Triangle {
    Place a;
    Place b;
    Place c;
};

Hit intersect(const Triangle& triangle, const Place& direction, const Place& origin) {
    Hit hit{-1, {untouched, untouched, untouched}};
    hit.code = IntersectLineTriangle(triangle.a.data(), triangle.b.data(), triangle.c.data(), direction.data(),
                                     origin.data(), hit.at.data());
    return hit;
}

void expectNear(const Place& actual, const Place& expected, double tolerance) {
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "coordinate " << i;
    }
}

const Triangle flat{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
const Place up{0, 0, 1};

TEST(IntersectLineTriangle, InsideIsThree) {
    const Hit hit = intersect(flat, up, {1, 1, -5});
    EXPECT_EQ(hit.code, 3);
    EXPECT_EQ(hit.at, (Place{1, 1, 0}));
}

TEST(IntersectLineTriangle, OutsideAndParallelAreZero) {
    EXPECT_EQ(intersect(flat, up, {3, 3, -5}).code, 0);
    EXPECT_EQ(intersect(flat, up, {-1, 1, -5}).code, 0);
    EXPECT_EQ(intersect(flat, {1, 0, 0}, {1, 1, 1}).code, 0);
    EXPECT_EQ(intersect(flat, {1, 0, 0}, {-3, 1, 0}).code, 0); // in the plane, across the triangle
}

TEST(IntersectLineTriangle, TheLineHasNoEnds) {
    EXPECT_EQ(intersect(flat, {0, 0, -1}, {1, 1, -5}).code, 3);
    EXPECT_EQ(intersect(flat, up, {1, 1, 5}).code, 3);
}

TEST(IntersectLineTriangle, SlantedLineHitsByHand) {
    const Hit hit = intersect(flat, {0.6, 0, 0.8}, {-2, 1, -4});
    EXPECT_EQ(hit.code, 3);
    expectNear(hit.at, {1, 1, 0}, 1e-15);
}

TEST(IntersectLineTriangle, ThroughAVertexIsOneAndTheHitIsTheVertex) {
    for (const Place& vertex : {flat.a, flat.b, flat.c}) {
        const Hit hit = intersect(flat, up, {vertex[0], vertex[1], 9});
        EXPECT_EQ(hit.code, 1);
        EXPECT_EQ(hit.at, vertex);
    }
}

TEST(IntersectLineTriangle, AlongAnEdgeTheFirstVertexOnTheLineCounts) {
    EXPECT_EQ(intersect(flat, {1, 0, 0}, {-9, 0, 0}).at, flat.a);
    EXPECT_EQ(intersect({flat.c, flat.b, flat.a}, {1, 0, 0}, {-9, 0, 0}).at, flat.b);
}

TEST(IntersectLineTriangle, OriginAtAVertexIsOneWhateverTheDirection) {
    const Hit hit = intersect(flat, {0.6, 0, 0.8}, flat.c);
    EXPECT_EQ(hit.code, 1);
    EXPECT_EQ(hit.at, flat.c);
}

TEST(IntersectLineTriangle, OriginOnAnEdgeIsTwoAndTheHitIsTheOrigin) {
    for (const Place& direction : {up, Place{0.6, 0, 0.8}, Place{0.36, 0.48, 0.8}, Place{-0.28, 0.96, 0}}) {
        for (const Place& origin : {Place{1, 0, 0}, Place{0, 3, 0}, Place{1, 3, 0}}) {
            const Hit hit = intersect(flat, direction, origin);
            EXPECT_EQ(hit.code, 2);
            EXPECT_EQ(hit.at, origin);
        }
    }
}

TEST(IntersectLineTriangle, OriginOnAnEdgesContinuationIsZeroThoughTheLineIsNearTheTriangle) {
    EXPECT_EQ(intersect(flat, up, {5, 0, 0}).code, 0);
    EXPECT_EQ(intersect(flat, {-0.6, 0.8, 0}, {5, 0, 0}).code, 0);
    EXPECT_EQ(intersect(flat, up, {-1, 5, 0}).code, 0);
}

TEST(IntersectLineTriangle, AHitJustOutsideIsInsideWithinTheAreaTolerance) {
    // A hit 2 x 10^-6 sides off an edge of a right triangle raises the sum of the areas by 4 x 10^-6 of them.
    const Triangle unit{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    EXPECT_EQ(intersect(unit, up, {0.3, -2.4e-6, 7}).code, 3);
    EXPECT_EQ(intersect(unit, up, {0.3, -2.6e-6, 7}).code, 0);
    EXPECT_EQ(intersect(unit, up, {0.3, 2.6e-6, 7}).code, 3);
}

TEST(IntersectLineTriangle, OfAPointHitsItsMeanOrNothing) {
    // Three vertices near each other, whose mean is exactly (1 + e, 1 + e, 1).
    const double e = std::ldexp(1.0, -20);
    const Triangle point{{1, 1, 1}, {1 + 3 * e, 1, 1}, {1, 1 + 3 * e, 1}};
    const Hit hit = intersect(point, up, {1 + e, 1 + e, 1});
    EXPECT_EQ(hit.code, 1);
    EXPECT_EQ(hit.at, (Place{1 + e, 1 + e, 1}));
    // Within the triangle, if it were taken as one, but off the mean.
    EXPECT_EQ(intersect(point, up, {1 + e / 2, 1 + e / 2, 1}).code, 0);
}

TEST(IntersectLineTriangle, AtHeightZeroVerticesAreNeverNear) {
    const double e = std::ldexp(1.0, -20);
    const Triangle small{{1, 1, 0}, {1 + 3 * e, 1, 0}, {1, 1 + 3 * e, 0}};
    EXPECT_EQ(intersect(small, up, {1 + e / 2, 1 + e / 2, 1}).code, 3);
    const Triangle none{{1, 1, 0}, {1, 1, 0}, {1, 1, 0}};
    EXPECT_EQ(intersect(none, up, {2, 1, 1}).code, 0);
    EXPECT_EQ(intersect(none, up, {1, 1, 1}).code, 1);
}

TEST(IntersectLineTriangle, NearnessIsRelativeToTheSum) {
    // 4e-6 apart: near at 1 (2 x 2.5e-6), not at 0.5 (1 x 2.5e-6). Off the mean a point is missed, a triangle hit.
    const auto at = [](double p) {
        const Triangle triangle{{p, p, p}, {p + 4e-6, p, p}, {p, p + 4e-6, p}};
        return intersect(triangle, up, {p + 5e-7, p + 5e-7, 9}).code;
    };
    EXPECT_EQ(at(1), 0);
    EXPECT_EQ(at(0.5), 3);
}

// Two vertices in one make a segment, from Q1 to Q2, in the order that the tests say.
const Place q1{1, 1, 1};
const Place q2{3, 1, 1};

TEST(IntersectLineTriangle, OfASegmentNeedNotHitWhereTheLineCrossesIt) {
    // The line goes through the middle of the segment. b = c = 4, the rest of the form 0 but for -g b = -4.
    EXPECT_EQ(intersect({q1, q1, q2}, up, {2, 1, 5}).code, 0);
}

TEST(IntersectLineTriangle, OfASegmentMayHitBesideIt) {
    // Origin (3,5,1): a = e = 4, b = c = f = 0, g = 2, Dz = 0: the form is 0. w = (0, -0.8, 0), and
    // ((Q1-origin).w)/(w.D) = 3.2/0.64 = 5: the hit is (0, 1, 1).
    const Hit hit = intersect({q1, q1, q2}, {-0.6, -0.8, 0}, {3, 5, 1});
    EXPECT_EQ(hit.code, 2);
    expectNear(hit.at, {0, 1, 1}, 1e-14);
}

TEST(IntersectLineTriangle, OfASegmentMeetsTheFormWithEveryTermInIt) {
    // The direction need not be of unit length for this, and whole numbers make the form exact: with a = -2, b = -13,
    // c = -7, e = -5, f = -9, g = -7 it is -52 - 35 + 126 - 91 + 70 - 18 = 0. u = (2, 3, 6)/7, w = (-10, 8, 2)/7,
    // w.D = 40/7, (Q1-origin).w = -40/7: the hit is the origin less the direction.
    const Triangle segment{{1, 2, 3}, {1, 2, 3}, {3, 5, 9}};
    const Hit hit = intersect(segment, {-2, 2, 2}, {-6, 0, -4});
    EXPECT_EQ(hit.code, 2);
    expectNear(hit.at, {-4, -2, -6}, 1e-13);
    // Any one component of the direction changed breaks the form.
    EXPECT_EQ(intersect(segment, {2, 2, 2}, {-6, 0, -4}).code, 0);
    EXPECT_EQ(intersect(segment, {-2, -2, 2}, {-6, 0, -4}).code, 0);
    EXPECT_EQ(intersect(segment, {-2, 2, -2}, {-6, 0, -4}).code, 0);
}

TEST(IntersectLineTriangle, TheSegmentRunsFromTheFirstOfTheTwinsOrFromTheThirdVertex) {
    const Place direction{-0.6, -0.8, 0};
    const Place origin{3, 5, 1};
    // a near b: a to c. a near c: a to b.
    EXPECT_EQ(intersect({q1, q1, q2}, direction, origin).code, 2);
    EXPECT_EQ(intersect({q1, q2, q1}, direction, origin).code, 2);
    // b near c: c to b, so the lone vertex a plays no part: the segment is a point, and its unit vector no number.
    EXPECT_EQ(intersect({q1, q2, q2}, direction, origin).code, 0);
}

TEST(IntersectLineTriangle, OfASegmentAlongTheLineHitsItsFirstEnd) {
    // Beside the line by so little that lengths do not show it, which spares the vertex test.
    const Hit hit = intersect({q1, q1, q2}, {1, 0, 0}, {0, 1 + 1e-9, 1});
    EXPECT_EQ(hit.code, 1);
    EXPECT_EQ(hit.at, q1);
    EXPECT_EQ(intersect({q1, q1, q2}, {1, 0, 0}, {0, 5, 1}).code, 0);
}

TEST(IntersectLineTriangle, OriginOnASegmentIsTwo) {
    const Hit hit = intersect({q1, q1, q2}, {0, 1, 0}, {2, 1, 1});
    EXPECT_EQ(hit.code, 2);
    EXPECT_EQ(hit.at, (Place{2, 1, 1}));
}

TEST(IntersectLineTriangle, CoordinatesThatAreNoNumbersGiveNoHit) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const double bad : {nan, inf}) {
        EXPECT_EQ(intersect({{bad, 0, 0}, {4, 0, 0}, {0, 4, 0}}, up, {1, 1, 1}).code, 0);
        EXPECT_EQ(intersect(flat, {0, 0, bad}, {1, 1, 1}).code, 0);
        EXPECT_EQ(intersect(flat, up, {bad, 1, 1}).code, 0);
    }
}

TEST(IntersectLineTriangle, WithoutAHitThePlaceIsNotTouched) {
    EXPECT_EQ(intersect(flat, up, {3, 3, -5}).at, (Place{untouched, untouched, untouched}));
}

/// Lines through a known place of random triangles, given by its share of each vertex.
TEST(IntersectLineTriangle, FindsThePlaceThatTheLineWasDrawnThrough) {
    std::mt19937_64 engine(51);
    std::uniform_real_distribution<double> real(-5, 5);
    const auto place = [&] { return Place{real(engine), real(engine), real(engine)}; };
    int tried = 0;
    for (int run = 0; run < 5000; ++run) {
        const Triangle t{place(), place(), place()};
        const double u = real(engine) / 5;
        const double v = real(engine) / 5;
        const double w = 1 - u - v;
        Place direction = place();
        const double length = std::hypot(direction[0], direction[1], direction[2]);
        Place origin{};
        Place target{};
        for (std::size_t i = 0; i < 3; ++i) {
            direction[i] /= length;
            target[i] = t.a[i] * w + t.b[i] * u + t.c[i] * v;
            origin[i] = target[i] - direction[i] * 3;
        }
        const double least = std::min({u, v, w});
        if (std::abs(least) < 1e-3) {
            continue; // too close to an edge to say
        }
        const Hit hit = intersect(t, direction, origin);
        ++tried;
        ASSERT_EQ(hit.code, least > 0 ? 3 : 0) << "run " << run;
        if (hit.code == 3) {
            expectNear(hit.at, target, 1e-6);
        }
    }
    EXPECT_GT(tried, 4000);
}

} // namespace
} // namespace velmora
