#include <cmath>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TriangleTree.h"
#include "line_triangle_bounded.h"
#include "projection.h"
#include "projection_reference.h"
#include "small_models.h"
#include "small_zones.h"
#include "target_mesh.h"
#include "zone_elements.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vector = zVec<double>;

std::mt19937& generator() {
    static std::mt19937 random(20240817);
    return random;
}

double number(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(generator());
}

int pick(int count) {
    return std::uniform_int_distribution<int>(0, count - 1)(generator());
}

Vector anyVector(double size) {
    return {number(-size, size), number(-size, size), number(-size, size)};
}

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

/// A wavy patch; its points are shaken where `shake` says so.
Patch wave(int sections, int points, double height, double shake) {
    Patch patch = flatPatch(sections, points);
    for (PointList& section : patch) {
        for (Vector& p : section) {
            p.z = height + 0.3 * std::sin(p.x + 0.5 * p.y);
            p = p + anyVector(shake);
        }
    }
    return patch;
}

/// The cells of a patch as a zone.
std::unique_ptr<zBlock_fe> zoneOf(const Patch& patch, const std::string& title) {
    std::vector<Vector> nodes;
    std::vector<std::int32_t> corners;
    const int points = lineCount(patch);
    for (int n = 0; n < countOf(patch); ++n) {
        for (int m = 0; m < points; ++m) {
            nodes.push_back(patch[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)]);
            if (n > 0 && m > 0) {
                const int d = n * points + m;
                corners.insert(corners.end(), {d - points - 1, d - points, d - 1, d - points, d, d - 1});
            }
        }
    }
    return triangleZone(title, nodes, corners);
}

Vector nodeOf(const zRegion_fe& region, int zone, int node) {
    Vector p;
    EXPECT_EQ(region.getNode(zone, node, p.x, p.y, p.z), 0);
    return p;
}

/// Projects patch 0 on the other ones as the command does; gives the points that missed.
PointList project(PatchList& patches, int* misses = nullptr) {
    std::vector<bool> mask(patches.size(), false);
    mask[0] = true;
    const TriangleTree target(CellMesh(patches, mask).takeMesh());
    PointList missed;
    int calls = 0;
    reflectPatches(patches, {0}, target, nearestCellHit, missed, [&calls] { ++calls; }, {});
    if (misses != nullptr) {
        *misses = calls;
    }
    return missed;
}

Patch lifted(Patch patch, double z) {
    for (PointList& section : patch) {
        for (Vector& p : section) {
            p.z += z;
        }
    }
    return patch;
}

} // namespace

// ---- The tree -------------------------------------------------------------------------------------------------------

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

TEST(TriangleHit, BesideTheTriangleIsOneWithinItsMargin) {
    const double a[] = {1e3, 0, 0};
    const double b[] = {1e3 + 1, 0, 0};
    const double c[] = {1e3, 1, 0};
    const double up[] = {0, 0, 1};
    const double onEdge[] = {1e3 + 0.5, -1e-7, 7};
    double place[3];
    EXPECT_TRUE(hitsWithinReach(a, b, c, up, onEdge, place));
    const double outside[] = {1e3 + 0.5, -0.1, 7};
    EXPECT_FALSE(hitsWithinReach(a, b, c, up, outside, place));
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

TEST(CellMesh, NamesTheCellOfEachTriangle) {
    const PatchList patches = {flatPatch(2, 2), flatPatch(3, 3), flatPatch(1, 4), flatPatch(2, 3)};
    const CellMesh cells(patches, {false, true, false, false});
    const CellAddress last = cells.cellOf(5);
    EXPECT_EQ(cells.cellOf(1).K, 0);
    EXPECT_EQ(last.K, 3);
    EXPECT_EQ(last.N, 0);
    EXPECT_EQ(last.M, 1);
}

TEST(CellMesh, HasNoCellWhereARaggedSectionHasNoPoint) {
    PatchList patches = {flatPatch(3, 4)};
    patches[0][1].resize(2);
    EXPECT_EQ(CellMesh(patches, {false}).takeMesh().triangleCount(), 2 * 2);
}

// ---- Zone elements --------------------------------------------------------------------------------------------------

TEST(ElementCorner, IsReadAtTheNodeOfTheConnectivity) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("z", {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {2, 0, 1}));
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), Vector(7, 8, 9));
    EXPECT_EQ(getElementCorner(region, 0, 0, 2), Vector(4, 5, 6));
    region.blocks[0]->variables[0]->name = "X";
    EXPECT_EQ(getElementCorner(region, 0, 0, 1), Vector(1, 2, 3));
}

TEST(ElementCorner, IsTheMarkerWhereSomethingIsOutOfRange) {
    const Vector marker(-10000000000.0, -10000000000.0, -10000000000.0);
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0));
    EXPECT_EQ(getElementCorner(region, 1, 0, 0), marker);
    EXPECT_EQ(getElementCorner(region, -1, 0, 0), marker);
    EXPECT_EQ(getElementCorner(region, 0, 1, 0), marker);
    EXPECT_EQ(getElementCorner(region, 0, -1, 0), marker);
    EXPECT_EQ(getElementCorner(region, 0, 0, 3), marker);
    EXPECT_EQ(getElementCorner(region, 0, 0, -1), marker);
    region.blocks[0]->connectivity[1] = 3;
    EXPECT_EQ(getElementCorner(region, 0, 0, 1), marker);
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), Vector(0, 0, 0));
    region.blocks[0]->variables[2]->name = "w";
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), marker);
    region.blocks[0]->variables.pop_back();
    EXPECT_EQ(getElementCorner(region, 0, 0, 0), marker);
}

TEST(ElementNormal, IsTheProductOfTheEdgesFromTheFirstCorner) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("z", {{0, 0, 0}, {2, 0, 0}, {0, 3, 0}}, {0, 1, 2}));
    // (0, 3, 0) x (2, 0, 0)
    EXPECT_EQ(elementNormal(region, 0, 0), Vector(0, 0, -6));
    EXPECT_EQ(elementNormal(region, 0, 7), Vector(0, 0, 0));
}

TEST(ZoneMesh, LeavesOutElementsWithoutACorner) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("z", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-2e9, 0, 0}}, {0, 1, 2, 0, 1, 3}));
    region.blocks.push_back(oneTriangle(5));
    EXPECT_EQ(zoneMesh(region, {false, false}).triangleCount(), 2);
    EXPECT_EQ(zoneMesh(region, {true, false}).triangleCount(), 1);
}

// ---- Reflection to patches ------------------------------------------------------------------------------------------

TEST(GridDirection, IsTheProductOfBothStepsOfLengthOne) {
    Patch patch = flatPatch(3, 3);
    patch[1][2].z = 1;
    // Inside: steps (0, 1, 0) across and (1, 0, 1) along: (1, 0, -1).
    const auto direction = gridDirection(patch, 1, 1);
    ASSERT_TRUE(direction.has_value());
    EXPECT_DOUBLE_EQ(direction->x, std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(direction->z, -std::sqrt(0.5));
    // Last section, last point: both steps from the one before, (0, 1, -1) x (1, 0, 0).
    const auto corner = gridDirection(patch, 2, 2);
    ASSERT_TRUE(corner.has_value());
    EXPECT_DOUBLE_EQ(corner->y, -std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(corner->z, -std::sqrt(0.5));
}

TEST(GridDirection, IsNoneWithOneSectionOrOnePoint) {
    EXPECT_FALSE(gridDirection(flatPatch(1, 3), 0, 1).has_value());
    EXPECT_FALSE(gridDirection(flatPatch(3, 1), 1, 0).has_value());
    Patch ragged = flatPatch(3, 3);
    ragged[0].resize(2);
    ragged[2].resize(2);
    EXPECT_FALSE(gridDirection(ragged, 1, 2).has_value());
}

TEST(Reflection, MovesEachPointToTheNearestHitInFrontOrBehind) {
    PatchList patches = {lifted(flatPatch(2, 2), 2), lifted(flatPatch(2, 2), 5), lifted(flatPatch(2, 2), -0.5)};
    EXPECT_THAT(project(patches), IsEmpty());
    EXPECT_EQ(patches[0], lifted(flatPatch(2, 2), -0.5));
}

TEST(Reflection, KeepsTheFirstOfTwoPatchesAtTheSameDistance) {
    for (const double first : {-1.0, 1.0}) {
        PatchList patches = {flatPatch(2, 2), lifted(flatPatch(2, 2), first), lifted(flatPatch(2, 2), -first)};
        project(patches);
        EXPECT_EQ(patches[0], lifted(flatPatch(2, 2), first));
    }
}

TEST(Reflection, LeavesWhatMissesWhereItIsAndListsIt) {
    Patch target = lifted(flatPatch(2, 3), 1);
    PatchList patches = {flatPatch(2, 4), target};
    int misses = 0;
    const PointList missed = project(patches, &misses);
    EXPECT_THAT(missed, ElementsAre(Vector(3, 0, 0), Vector(3, 1, 0)));
    EXPECT_EQ(misses, 1);
    EXPECT_EQ(patches[0][0][3], Vector(3, 0, 0));
    EXPECT_EQ(patches[0][0][2], Vector(2, 0, 1));
    EXPECT_EQ(patches[1], target);
}

TEST(Reflection, TakesTheFirstHitOfAllWhenNoneIsNear) {
    PatchList patches = {flatPatch(2, 2), lifted(flatPatch(2, 2), 3e8), lifted(flatPatch(2, 2), -2e8)};
    project(patches);
    EXPECT_EQ(patches[0][0][0].z, 3e8);
}

TEST(Reflection, TakesDirectionsFromThePatchAsItWas) {
    // Moved points would tilt the directions of their neighbours.
    PatchList patches = {flatPatch(3, 3), lifted(flatPatch(3, 3), 1)};
    patches[1][1][1].z = 2;
    project(patches);
    for (const PointList& section : patches[0]) {
        for (const Vector& p : section) {
            EXPECT_EQ(p.x, std::round(p.x));
            EXPECT_EQ(p.y, std::round(p.y));
        }
    }
}

TEST(Reflection, SkipsPointsOfOneSectionOrOnePoint) {
    PatchList patches = {flatPatch(1, 3), lifted(flatPatch(3, 3), 1)};
    EXPECT_THAT(project(patches), IsEmpty());
    EXPECT_EQ(patches[0], flatPatch(1, 3));
    patches[0] = flatPatch(3, 1);
    EXPECT_THAT(project(patches), IsEmpty());
    EXPECT_EQ(patches[0], flatPatch(3, 1));
}

TEST(Reflection, OfAPointWithTheSameNeighboursMisses) {
    PatchList patches = {{{{1, 1, 0}, {1, 1, 0}}, {{1, 1, 0}, {1, 1, 0}}}, lifted(flatPatch(3, 3), 1)};
    EXPECT_EQ(project(patches).size(), 4U);
    EXPECT_EQ(patches[0][1][1], Vector(1, 1, 0));
}

TEST(Reflection, PassesOverNumbersOfNoPatch) {
    PatchList patches = {flatPatch(2, 2)};
    const TriangleTree target{TriangleMesh()};
    PointList missed;
    reflectPatches(patches, {-1, 4}, target, nearestCellHit, missed, [] {}, {});
    EXPECT_THAT(missed, IsEmpty());
}

TEST(Reflection, TellsProgressThatNeverFalls) {
    PatchList patches = {flatPatch(30, 40), lifted(flatPatch(30, 40), 1)};
    const TriangleTree target(CellMesh(patches, {true, false}).takeMesh());
    PointList missed;
    std::vector<double> told;
    reflectPatches(
        patches, {0}, target, nearestCellHit, missed, [] {}, [&told](double f) { told.push_back(f); });
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.size(), 100U);
    EXPECT_EQ(told.back(), 1.0);
}

TEST(Reflection, IsThatOfTestingEveryTriangle) {
    for (int round = 0; round < 60; ++round) {
        const double shake = pick(2) == 0 ? 0.0 : 0.05;
        PatchList patches = {wave(6, 7, 0, shake), wave(7, 6, number(-1, 1), shake), flatPatch(5, 5, number(-1, 1)),
                             wave(4, 4, 0.5, shake)};
        PatchList plain = patches;
        const std::vector<std::int32_t> block =
            pick(2) == 0 ? std::vector<std::int32_t>{0} : std::vector<std::int32_t>{3, 0};
        std::vector<bool> mask(4, false);
        for (const std::int32_t k : block) {
            mask[static_cast<std::size_t>(k)] = true;
        }
        const TriangleTree target(CellMesh(patches, mask).takeMesh());
        PointList missed;
        reflectPatches(patches, block, target, nearestCellHit, missed, [] {}, {});
        ASSERT_EQ(missed, reference::reflectToApt(plain, block)) << round;
        ASSERT_EQ(patches, plain) << round;
    }
}

// ---- Reflection to zones --------------------------------------------------------------------------------------------

TEST(ReflectionToElements, KeepsTheLastOfTwoAtTheSameDistance) {
    for (const double last : {-1.0, 1.0}) {
        PatchList patches = {flatPatch(2, 2)};
        zRegion_fe region;
        region.blocks.push_back(zoneOf(lifted(flatPatch(2, 2), -last), "first"));
        region.blocks.push_back(zoneOf(lifted(flatPatch(2, 2), last), "last"));
        const TriangleTree target(zoneMesh(region, {false, false}));
        PointList missed;
        reflectPatches(patches, {0}, target, nearestElementHit, missed, [] {}, {});
        EXPECT_EQ(patches[0], lifted(flatPatch(2, 2), last));
    }
}

TEST(ReflectionToElements, IsThatOfTestingEveryTriangle) {
    for (int round = 0; round < 60; ++round) {
        const double shake = pick(2) == 0 ? 0.0 : 0.05;
        PatchList patches = {wave(6, 7, 0, shake), wave(4, 4, 0.5, shake)};
        zRegion_fe region;
        region.blocks.push_back(zoneOf(wave(6, 6, number(-1, 1), shake), "a"));
        region.blocks.push_back(zoneOf(flatPatch(4, 5, number(-1, 1)), "b"));
        PatchList plain = patches;
        const TriangleTree target(zoneMesh(region, {false, false}));
        PointList missed;
        reflectPatches(patches, {0, 1}, target, nearestElementHit, missed, [] {}, {});
        ASSERT_EQ(missed, reference::reflectToWrl(plain, {0, 1}, region)) << round;
        ASSERT_EQ(patches, plain) << round;
    }
}

// ---- Reflection of zones --------------------------------------------------------------------------------------------

TEST(ReflectZones, MovesNodesOfTwoElementsAtLeast) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("own", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {0, 1, 2, 1, 3, 2}));
    region.blocks.push_back(zoneOf(lifted(flatPatch(3, 3), 2), "target"));
    reflectZones(region, {0}, {});
    EXPECT_EQ(nodeOf(region, 0, 0), Vector(0, 0, 0));
    EXPECT_EQ(nodeOf(region, 0, 1), Vector(1, 0, 2));
    EXPECT_EQ(nodeOf(region, 0, 2), Vector(0, 1, 2));
    EXPECT_EQ(nodeOf(region, 0, 3), Vector(1, 1, 0));
}

TEST(ReflectZones, IgnoresAHitAtTheNodeItself) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
    region.blocks.push_back(zoneOf(lifted(flatPatch(3, 3), 5e-7), "touches"));
    region.blocks.push_back(zoneOf(lifted(flatPatch(3, 3), -4), "target"));
    reflectZones(region, {0}, {});
    EXPECT_EQ(nodeOf(region, 0, 4), Vector(1, 1, -4));
}

TEST(ReflectZones, KeepsTheFirstOfTwoAtTheSameDistance) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
    region.blocks.push_back(zoneOf(lifted(flatPatch(3, 3), 1), "first"));
    region.blocks.push_back(zoneOf(lifted(flatPatch(3, 3), -1), "last"));
    reflectZones(region, {0}, {});
    EXPECT_EQ(nodeOf(region, 0, 4), Vector(1, 1, 1));
}

TEST(ReflectZones, DoesNothingWithoutOthersOrChosenOnesOrCoordinates) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(flatPatch(3, 3), "own"));
    region.blocks.push_back(zoneOf(lifted(flatPatch(3, 3), 1), "target"));
    reflectZones(region, {0, 1}, {});
    reflectZones(region, {}, {});
    reflectZones(region, {7, -1}, {});
    EXPECT_EQ(nodeOf(region, 0, 4), Vector(1, 1, 0));
    region.blocks[0]->variables[0]->name = "u";
    reflectZones(region, {1}, {});
    EXPECT_EQ(nodeOf(region, 1, 4), Vector(1, 1, 1));
}

TEST(ReflectZones, IsThatOfTestingEveryTriangle) {
    for (int round = 0; round < 40; ++round) {
        zRegion_fe region;
        const double shake = pick(2) == 0 ? 0.0 : 0.05;
        for (const double height : {0.0, number(-1, 1), number(-1, 1), 0.4}) {
            region.blocks.push_back(zoneOf(wave(5, 5, height, shake), "z"));
        }
        zRegion_fe plain;
        copyRegion(region, plain);
        reflectZones(region, {2, 0}, {});
        reference::reflectZones(plain, {2, 0});
        for (int zone = 0; zone < 4; ++zone) {
            for (int node = 0; node < 25; ++node) {
                ASSERT_EQ(nodeOf(region, zone, node), nodeOf(plain, zone, node)) << round;
            }
        }
    }
}

} // namespace velmora::test
