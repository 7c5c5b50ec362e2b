#include "NearestTree.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "nearest_on_triangle.h"
#include "vectors.h"

namespace velmora::test {

namespace {

using samples::Source;
using Vector = zVec<double>;

Vector anyVector(Source& source, double size) {
    return {source.real(-size, size), source.real(-size, size), source.real(-size, size)};
}

/// Triangles over shared points about `centre`, with segments and points among them; whole ones repeat and touch.
TriangleMesh anyMesh(Source& source, int points, int triangles, const Vector& centre, double size) {
    TriangleMesh mesh;
    const bool whole = source.once(2);
    const bool flat = source.once(4);
    for (int i = 0; i < points; ++i) {
        Vector p = anyVector(source, whole ? 3 : 1);
        p = whole ? Vector(std::round(p.x), std::round(p.y), std::round(p.z)) : p;
        p.z = flat ? 0 : p.z;
        mesh.addPoint(centre + p * size);
    }
    for (int i = 0; i < triangles; ++i) {
        mesh.addTriangle(source.whole(0, points - 1), source.whole(0, points - 1), source.whole(0, points - 1));
    }
    return mesh;
}

Vector cornerOf(const TriangleMesh& mesh, int triangle, std::size_t corner) {
    return vectorAt(mesh.corner(triangle, corner));
}

double distanceByScanning(const TriangleMesh& mesh, const Vector& point) {
    double least = std::numeric_limits<double>::infinity();
    for (int t = 0; t < mesh.triangleCount(); ++t) {
        least = std::min(least, distance(point, nearestOnTriangle(point, cornerOf(mesh, t, 0), cornerOf(mesh, t, 1),
                                                                  cornerOf(mesh, t, 2))));
    }
    return least;
}

} // namespace

TEST(NearestTree, FindsWhatScanningAllTrianglesFinds) {
    Source source(11);
    for (int round = 0; round < 400; ++round) {
        const double size = std::pow(10.0, source.whole(0, 12) - 6);
        const Vector centre = source.once(2) ? Vector() : anyVector(source, size * std::pow(10.0, source.whole(0, 5)));
        const TriangleMesh mesh = anyMesh(source, 4 + source.whole(0, 39), 1 + source.whole(0, 119), centre, size);
        const NearestTree tree(mesh);
        for (int i = 0; i < 40; ++i) {
            Vector point = centre + anyVector(source, size * std::pow(10.0, source.whole(0, 7) - 2));
            if (source.once(4)) {
                point = cornerOf(mesh, source.whole(0, mesh.triangleCount() - 1), 1);
            } else if (source.once(3)) { // on a face, or hardly off it
                const int t = source.whole(0, mesh.triangleCount() - 1);
                point = (cornerOf(mesh, t, 0) + cornerOf(mesh, t, 1) + cornerOf(mesh, t, 2)) * (1.0 / 3.0) +
                        anyVector(source, source.once(2) ? 0.0 : 1e-7 * size);
            }
            ASSERT_EQ(tree.distanceFrom(point), distanceByScanning(mesh, point)) << "round " << round;
        }
    }
}

TEST(NearestTree, FindsInSliversWhatScanningAllTrianglesFinds) {
    Source source(12);
    for (const bool parallel : {true, false}) {
        for (const double size : {1e-3, 1.0, 1e6}) {
            TriangleMesh mesh;
            for (int i = 0; i < 400; ++i) {
                const Vector a = anyVector(source, 0.5 * size);
                const Vector along = parallel ? Vector(1, 1, 1) : anyVector(source, 1);
                mesh.addPoint(a);
                mesh.addPoint(a + along * size);
                mesh.addPoint(a + anyVector(source, 1e-4 * size));
                mesh.addTriangle(3 * i, 3 * i + 1, 3 * i + 2);
            }
            const NearestTree tree(mesh);
            for (int i = 0; i < 300; ++i) {
                const int t = source.whole(0, mesh.triangleCount() - 1);
                const Vector off = anyVector(source, size * std::pow(10.0, source.whole(0, 8) - 8));
                const Vector point =
                    cornerOf(mesh, t, 0) + (cornerOf(mesh, t, 1) - cornerOf(mesh, t, 0)) * source.real(0, 1) + off;
                ASSERT_EQ(tree.distanceFrom(point), distanceByScanning(mesh, point)) << parallel << ' ' << size;
            }
        }
    }
}

TEST(NearestTree, ACornerIsAtDistanceZero) {
    TriangleMesh mesh;
    mesh.addPoint({0.1, 0.2, 0.3});
    mesh.addPoint({1.1, 0.2, 0.3});
    mesh.addPoint({0.1, 1.2, 0.7});
    mesh.addTriangle(0, 1, 2);
    EXPECT_EQ(NearestTree(mesh).distanceFrom({1.1, 0.2, 0.3}), 0.0);
}

TEST(NearestTree, ManyEqualTriangles) {
    TriangleMesh mesh;
    mesh.addPoint({1, 0, 0});
    mesh.addPoint({2, 0, 0});
    for (int i = 0; i < 1000; ++i) {
        mesh.addTriangle(0, 1, 1);
    }
    EXPECT_EQ(NearestTree(mesh).distanceFrom({0, 0, 0}), 1.0);
    EXPECT_EQ(NearestTree(mesh).distanceFrom({1.5, 3, 4}), 5.0);
}

TEST(NearestTree, OnePointAsATriangle) {
    TriangleMesh mesh;
    mesh.addPoint({1, 2, 2});
    mesh.addTriangle(0, 0, 0);
    EXPECT_EQ(NearestTree(mesh).distanceFrom({0, 0, 0}), 3.0);
}

TEST(NearestTree, WhatIsNotFinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TriangleMesh mesh;
    mesh.addPoint({0, 0, 0});
    mesh.addPoint({nan, 0, 0});
    mesh.addPoint({0, 0, 5});
    mesh.addTriangle(0, 0, 1);
    EXPECT_TRUE(NearestTree(mesh).empty());
    EXPECT_EQ(NearestTree(mesh).distanceFrom({1, 1, 1}), std::numeric_limits<double>::infinity());
    mesh.addTriangle(2, 2, 2);
    EXPECT_FALSE(NearestTree(mesh).empty());
    EXPECT_EQ(NearestTree(mesh).distanceFrom({0, 0, 0}), 5.0);
    EXPECT_TRUE(std::isnan(NearestTree(mesh).distanceFrom({0, nan, 0})));
    EXPECT_TRUE(std::isnan(NearestTree(mesh).distanceFrom({0, 0, std::numeric_limits<double>::infinity()})));
}

TEST(NearestTree, ModelsOfAnySizeAndPointsOfAnyDistance) {
    for (const double size : {1e-150, 1e-30, 1.0, 1e30, 1e100}) {
        TriangleMesh mesh;
        for (int i = 0; i < 20; ++i) {
            mesh.addPoint({size * i, size, 0});
        }
        for (int i = 0; i + 1 < 20; ++i) {
            mesh.addTriangle(i, i + 1, i + 1);
        }
        EXPECT_DOUBLE_EQ(NearestTree(mesh).distanceFrom({7.5 * size, 3 * size, 0}), 2 * size);
        EXPECT_DOUBLE_EQ(NearestTree(mesh).distanceFrom({1e25 * size, size, 0}), 1e25 * size);
    }
}

} // namespace velmora::test
