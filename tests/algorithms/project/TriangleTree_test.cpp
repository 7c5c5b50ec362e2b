#include "TriangleTree.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "parallel.h"
#include "projection_reference.h"
#include "random_numbers.h"
#include "slivers.h"
#include "target_mesh.h"

namespace velmora::test {

namespace {

using testing::IsEmpty;
using Vector = zVec<double>;

/// Whole numbers touch each other and the axes; others hardly ever do.
Vector wholeVector(int size) {
    return {static_cast<double>(pick(2 * size + 1) - size), static_cast<double>(pick(2 * size + 1) - size),
            static_cast<double>(pick(2 * size + 1) - size)};
}

bool sameBits(const Vector& a, const Vector& b) {
    const auto same = [](double p, double q) { return p == q || (std::isnan(p) && std::isnan(q)); };
    return same(a.x, b.x) && same(a.y, b.y) && same(a.z, b.z);
}

/// Triangles over shared points about `centre`, with repeated points, flat ones and thin ones among them.
TriangleMesh anyMesh(int points, int triangles, const Vector& centre, double size, bool whole) {
    TriangleMesh mesh;
    for (int i = 0; i < points; ++i) {
        mesh.addPoint(centre + (whole ? wholeVector(3) * size : anyVector(size)));
    }
    for (int i = 0; i < triangles; ++i) {
        mesh.addTriangle(pick(points), pick(points), pick(points));
    }
    return mesh;
}

Vector pointOf(const TriangleMesh& mesh, int triangle, std::size_t corner) {
    const double* const p = mesh.corner(triangle, corner);
    return {p[0], p[1], p[2]};
}

Vector unit(const Vector& v) {
    return reference::unitOf(v);
}

/// A line with something in common with the mesh, or not.
std::pair<Vector, Vector> anyLine(const TriangleMesh& mesh, const Vector& centre, double size) {
    const int t = pick(mesh.triangleCount());
    const Vector a = pointOf(mesh, t, 0);
    const Vector b = pointOf(mesh, t, 1);
    const Vector c = pointOf(mesh, t, 2);
    const Vector axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, -1}};
    switch (pick(8)) {
    case 7: { // along the plane of an edge's axis, to within rounding or not quite
        const Vector tilt = anyVector(std::pow(10.0, -pick(20)));
        return {unit(axes[pick(3)] + tilt), centre + wholeVector(3) * size};
    }
    case 0:
        return {axes[pick(3)], a}; // through a vertex, along an axis
    case 1:
        return {axes[pick(3)], centre + wholeVector(3) * size};
    case 2:
        return {unit(b - a), a}; // along an edge
    case 3:
        return {unit(anyVector(1)), a + (b - a) * 0.5}; // from an edge
    case 4: {
        const Vector origin = centre + anyVector(3 * size);
        return {unit((a + b + c) * (1.0 / 3.0) - origin), origin};
    }
    case 5:
        return {unit(anyVector(1)), centre + anyVector(1000 * size)}; // from far away
    default:
        return {unit(anyVector(1)), centre + anyVector(size)};
    }
}

void expectAllHits(const TriangleTree& tree, const Vector& direction, const Vector& origin) {
    std::vector<LineHit> found;
    tree.findHits(direction, origin, found);
    std::size_t next = 0;
    for (int t = 0; t < tree.mesh().triangleCount(); ++t) {
        Vector hit;
        const TriangleMesh& mesh = tree.mesh();
        if (!reference::hits({pointOf(mesh, t, 0), pointOf(mesh, t, 1), pointOf(mesh, t, 2)}, direction, origin, hit)) {
            continue;
        }
        ASSERT_LT(next, found.size()) << "triangle " << t << " was not found";
        ASSERT_EQ(found[next].triangle, t);
        ASSERT_TRUE(sameBits(found[next].place, hit));
        ++next;
    }
    ASSERT_EQ(next, found.size());
}

} // namespace

TEST(TriangleTree, FindsWhatTestingEveryTriangleFinds) {
    for (int round = 0; round < 400; ++round) {
        const double size = std::pow(10.0, pick(13) - 6);
        const Vector centre = pick(2) == 0 ? Vector() : anyVector(std::pow(10.0, pick(5)) * size);
        const TriangleTree tree(anyMesh(4 + pick(40), 1 + pick(120), centre, size, pick(2) == 0));
        for (int i = 0; i < 25; ++i) {
            const auto [direction, origin] = anyLine(tree.mesh(), centre, size);
            ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, direction, origin)) << "round " << round;
        }
    }
}

TEST(TriangleTree, OfThousandsOfTrianglesFindsWhatTestingEveryOneFinds) {
    for (const std::size_t threads : {1, 2, 7}) {
        const ThreadCountScope scope(threads);
        for (const bool whole : {false, true}) { // whole numbers put many of them into one place
            const Vector centre(5, -2, 1);
            const TriangleTree tree(anyMesh(whole ? 40 : 3000, 9000, centre, 2.0, whole));
            for (int i = 0; i < 20; ++i) {
                const auto [direction, origin] = anyLine(tree.mesh(), centre, 2.0);
                ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, direction, origin)) << threads << " threads, line " << i;
            }
        }
    }
}

TEST(TriangleTree, FindsHitsOnTheBordersOfSmoothGrids) {
    for (int round = 0; round < 40; ++round) {
        const PatchList patches = {wave(12, 15, number(-1, 1), 0.01), wave(9, 9, 0, 0), flatPatch(7, 8, 1.5)};
        const TriangleTree tree(CellMesh(patches, std::vector<bool>(3, false)).takeMesh());
        for (int i = 0; i < 60; ++i) {
            const int t = pick(tree.mesh().triangleCount());
            const Vector a = pointOf(tree.mesh(), t, 0);
            const Vector b = pointOf(tree.mesh(), t, 1);
            // Through an edge and a little beside it: the test lets some of these through.
            const Vector at = a + (b - a) * number(0, 1) + anyVector(2e-6);
            const Vector direction = unit(anyVector(1));
            ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, direction, at + direction * number(-5, 5)));
            ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, {0, 0, 1}, at));
        }
    }
}

TEST(TriangleTree, FindsInSliversWhatTestingEveryTriangleFinds) {
    for (const bool parallel : {true, false}) {
        for (int round = 0; round < 6; ++round) {
            const TriangleTree tree(meshOf(parallel ? parallelSlivers(300) : crossingSlivers(300)));
            for (int i = 0; i < 60; ++i) {
                const int t = pick(tree.mesh().triangleCount());
                const Vector a = pointOf(tree.mesh(), t, 0);
                const Vector b = pointOf(tree.mesh(), t, 1);
                const Vector c = pointOf(tree.mesh(), t, 2);
                const Vector at = a + (b - a) * number(0, 0.9) + (c - a) * number(-0.01, 0.1);
                const Vector direction = unit(pick(3) == 0 ? cross(b - a, c - a) : anyVector(1));
                ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, direction, at + direction * number(-5, 5)));
                ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, unit(b - a), at)) << "along the sliver";
            }
        }
    }
}

TEST(TriangleTree, TestsTrianglesBeyondAnyBoundWithEveryLine) {
    const double huge = 1e200;
    TriangleMesh mesh;
    for (const Vector& p : {Vector(huge, 0, 0), Vector(0, huge, 0), Vector(0, 0, huge), Vector(1e-170, 0, 0),
                            Vector(0, 1e-170, 0), Vector(0, 0, 1e-170), Vector(1, 1, 1), Vector(1 + 1e-9, 1, 1),
                            Vector(2, 3, 4), Vector(3, 5, 7 + 1e-12), Vector(4, 7, 10)}) {
        mesh.addPoint(p);
    }
    mesh.addTriangle(0, 1, 2);
    mesh.addTriangle(3, 4, 5);
    mesh.addTriangle(6, 7, 8);
    mesh.addTriangle(8, 6, 7);
    mesh.addTriangle(8, 9, 10);
    mesh.addTriangle(6, 8, 10);
    const TriangleTree tree(mesh);
    for (int i = 0; i < 2000; ++i) {
        const auto [direction, origin] = anyLine(mesh, {}, 3);
        ASSERT_NO_FATAL_FAILURE(expectAllHits(tree, direction, origin));
    }
}

TEST(TriangleTree, OfNoTrianglesFindsNone) {
    std::vector<LineHit> hits = {{}};
    TriangleTree(TriangleMesh()).findHits({0, 0, 1}, {}, hits);
    EXPECT_THAT(hits, IsEmpty());
}

TEST(TriangleTree, FindsNoneAlongADirectionThatIsNotANumber) {
    const PatchList patches = {flatPatch(3, 3)};
    const TriangleTree tree(CellMesh(patches, {false}).takeMesh());
    const double none = std::numeric_limits<double>::quiet_NaN();
    std::vector<LineHit> hits;
    tree.findHits({none, none, none}, {0.5, 0, 0}, hits);
    EXPECT_THAT(hits, IsEmpty());
}

TEST(TriangleTree, HoldsManyTrianglesInOnePlace) {
    TriangleMesh mesh;
    for (const Vector& p : {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)}) {
        mesh.addPoint(p);
    }
    for (int i = 0; i < 1000; ++i) {
        mesh.addTriangle(0, 1, 2);
    }
    std::vector<LineHit> hits;
    TriangleTree(mesh).findHits({0, 0, 1}, {0.2, 0.2, 5}, hits);
    ASSERT_EQ(hits.size(), 1000U);
    EXPECT_EQ(hits[999].triangle, 999);
}

} // namespace velmora::test
