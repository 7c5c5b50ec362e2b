#include "slice_surface.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "parallel.h"
#include "random_patches.h"
#include "slice_bodies.h"
#include "slice_reference.h"

namespace velmora::test {

namespace {

using samples::sameBits;
using samples::Source;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Point = zVec<double>;

SlicePlan planAlong(int axis, std::int32_t planes) {
    SlicePlan plan;
    plan.axis = axis;
    plan.planes = planes;
    return plan;
}

SlicePlan manualPlan(int axis, std::int32_t planes, double lower, double upper) {
    SlicePlan plan = planAlong(axis, planes);
    plan.manual = true;
    plan.lower = lower;
    plan.upper = upper;
    return plan;
}

/// The coordinate of the plane of each section.
std::vector<double> planesOf(const Patch& sections, double Point::*axis) {
    std::vector<double> planes;
    for (const PointList& section : sections) {
        planes.push_back(section.front().*axis);
    }
    return planes;
}

double lengthOf(const PointList& section) {
    double length = 0;
    for (std::size_t i = 1; i < section.size(); ++i) {
        length += std::sqrt(dot(section[i] - section[i - 1], section[i] - section[i - 1]));
    }
    return length;
}

reference::Slicing plainly(const SlicePlan& plan) {
    return {"xyz"[plan.axis], plan.planes, plan.manual, plan.lower, plan.upper, plan.border, plan.precision};
}

testing::AssertionResult slicesAsThePlainRule(const zRegion_fe& region, const SlicePlan& plan) {
    int left = -1;
    const Patch expected = reference::PlainSlicer(plainly(plan)).run(region, left);
    const SliceResult found = sliceSurface(region, plan);
    if (found.linesLeft != left) {
        return testing::AssertionFailure() << found.linesLeft << " lines left against " << left;
    }
    return sameBits(found.sections, expected);
}

/// Any plan over a body of that half size around `middle`.
SlicePlan anyPlan(Source& source, double middle, double size) {
    SlicePlan plan = planAlong(source.whole(0, 2), source.whole(0, 9));
    plan.manual = source.once(2);
    plan.border = source.once(3) ? 0 : source.real(0, 2);
    plan.lower = middle - size * source.whole(0, 4) / 4;
    plan.upper = source.once(6) ? plan.lower : middle + size * source.whole(-1, 4) / 4;
    const double precisions[] = {1e-10, 0.0001, 0.3 * size, 2 * size};
    plan.precision = std::clamp(precisions[source.whole(0, 3)], 1e-10, 100.0);
    return plan;
}

double anySize(Source& source) {
    const double sizes[] = {1, 1, 1, 1e-7, 1e5, 1e-150, 1e150, 1e-305, 1e300};
    return sizes[source.whole(0, 8)];
}

/// Many small triangles apart from each other, their corners on a lattice of that width.
zRegion_fe manyPieces(Source& source, int pieces, double lattice) {
    std::vector<Point> nodes;
    std::vector<std::int32_t> corners;
    for (int i = 0; i < pieces; ++i) {
        const auto n = static_cast<std::int32_t>(nodes.size());
        const double x = lattice * source.whole(-30, 30);
        const double y = lattice * source.whole(-30, 30);
        nodes.insert(nodes.end(), {{x, y, -1}, {x + lattice * source.whole(-2, 2), y + lattice, 1}, {x, y, 1}});
        corners.insert(corners.end(), {n, n + 1, n + 2});
    }
    return triangleRegion(nodes, corners);
}

} // namespace

TEST(SliceSurface, BoxGivesAClosedOutlineForEachPlane) {
    SlicePlan plan = planAlong(2, 5);
    plan.border = 0.2;
    const Patch sections = sliceSurface(box(2, 3, 8), plan).sections;
    // Steps of 2; the end planes move in by 0.4.
    EXPECT_THAT(planesOf(sections, &Point::z), ElementsAre(0.4, 2, 4, 6, 7.6));
    for (const PointList& section : sections) {
        EXPECT_THAT(section, SizeIs(9)); // eight sides are cut, and the start comes again
        EXPECT_NEAR(lengthOf(section), 10, 1e-12);
        EXPECT_EQ(section.front(), section.back());
    }
}

TEST(SliceSurface, EachAxisHasItsPlanes) {
    SlicePlan plan = planAlong(0, 3);
    plan.border = 0.5;
    EXPECT_THAT(planesOf(sliceSurface(box(4, 2, 2), plan).sections, &Point::x), ElementsAre(1, 2, 3));
    plan.axis = 1;
    EXPECT_THAT(planesOf(sliceSurface(box(4, 2, 2), plan).sections, &Point::y), ElementsAre(0.5, 1, 1.5));
}

TEST(SliceSurface, ManualPlanesStandAtTheirEnds) {
    SlicePlan plan = manualPlan(2, 3, 1, 3);
    plan.border = 5; // of no effect
    EXPECT_THAT(planesOf(sliceSurface(box(1, 1, 4), plan).sections, &Point::z), ElementsAre(1, 2, 3));
}

TEST(SliceSurface, NoPlaneAndOnePlaneCutNothing) {
    for (const std::int32_t planes : {0, 1}) {
        EXPECT_THAT(sliceSurface(box(1, 1, 1), planAlong(2, planes)).sections, IsEmpty());
        EXPECT_THAT(sliceSurface(box(1, 1, 1), manualPlan(2, planes, 0.2, 0.8)).sections, IsEmpty());
    }
}

TEST(SliceSurface, TriangleInThePlaneIsNotCut) {
    const zRegion_fe flat = triangleRegion({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}}, {0, 1, 2});
    EXPECT_THAT(sliceSurface(flat, manualPlan(2, 2, 1, 1)).sections, IsEmpty());
}

TEST(SliceSurface, CornerThatOnlyTouchesIsALineOfThatPointTwice) {
    const zRegion_fe up = triangleRegion({{0, 0, 1}, {1, 0, 2}, {0, 1, 2}}, {0, 1, 2});
    const Patch sections = sliceSurface(up, manualPlan(2, 2, 1, 3)).sections;
    ASSERT_THAT(sections, SizeIs(1));
    EXPECT_THAT(sections[0], ElementsAre(Point(0, 0, 1), Point(0, 0, 1)));
}

TEST(SliceSurface, CornerOnThePlaneCountsForTheEdgeThatLeavesIt) {
    // Corners below, on and above the plane z = 0: the cut runs from the corner to the middle of the long edge.
    const zRegion_fe region = triangleRegion({{0, 0, -1}, {1, 0, 0}, {0, 0, 1}}, {0, 1, 2});
    const Patch sections = sliceSurface(region, manualPlan(2, 2, 0, 5)).sections;
    ASSERT_THAT(sections, SizeIs(1));
    EXPECT_THAT(sections[0], ElementsAre(Point(0, 0, 0), Point(1, 0, 0)));
}

TEST(SliceSurface, OutlinesOfOnePlaneStandNextToEachOther) {
    zRegion_fe region = box(1, 1, 4);
    zRegion_fe other = box(1, 1, 4);
    for (double& x : other.blocks[0]->variables[0]->data) {
        x += 3;
    }
    region.blocks.push_back(std::move(other.blocks[0]));
    const Patch sections = sliceSurface(region, manualPlan(2, 2, 1, 3)).sections;
    ASSERT_THAT(sections, SizeIs(4));
    EXPECT_THAT(planesOf(sections, &Point::z), ElementsAre(1, 1, 3, 3));
    EXPECT_LT(sections[0][0].x, 2);
    EXPECT_GT(sections[1][0].x, 2);
}

TEST(SliceSurface, PrecisionJoinsPiecesWithADoubledPoint) {
    // Two upright walls with a gap of 0.01 between them.
    const zRegion_fe walls =
        triangleRegion({{0, 0, 0}, {1, 0, 0}, {1, 0, 2}, {0, 0, 2}, {1.01, 0, 0}, {2, 0, 0}, {2, 0, 2}, {1.01, 0, 2}},
                       {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7});
    SlicePlan plan = manualPlan(2, 2, 1, 5);
    EXPECT_THAT(sliceSurface(walls, plan).sections, SizeIs(2));
    plan.precision = 0.02;
    const Patch joined = sliceSurface(walls, plan).sections;
    ASSERT_THAT(joined, SizeIs(1));
    EXPECT_THAT(joined[0], SizeIs(6));
    EXPECT_NEAR(lengthOf(joined[0]), 2, 1e-12);
}

TEST(SliceSurface, LinesStartAsTheOneBeforeThem) {
    // The walls' triangles run opposite ways round.
    const zRegion_fe walls =
        triangleRegion({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}, {0, 0, 2}, {1, 0, 2}, {1, 0, 3}, {0, 0, 3}},
                       {0, 1, 2, 0, 2, 3, 4, 6, 5, 4, 7, 6});
    const Patch sections = sliceSurface(walls, manualPlan(2, 2, 0.5, 2.5)).sections;
    ASSERT_THAT(sections, SizeIs(2));
    EXPECT_GT((sections[0][1].x - sections[0][0].x) * (sections[1][1].x - sections[1][0].x), 0);
}

TEST(SliceSurface, ZonesWithoutCoordinatesAreLeftOut) {
    zRegion_fe region = box(1, 1, 2);
    auto bare = triangleZone("bare", {{0, 0, 0}, {1, 0, 0}, {0, 0, 2}}, {0, 1, 2});
    bare->variables.pop_back();
    region.blocks.insert(region.blocks.begin(), std::move(bare));
    auto renamed = triangleZone("renamed", {{0, 0, 0}, {1, 0, 0}, {0, 0, 2}}, {0, 1, 2});
    renamed->variables[2]->name = "w";
    region.blocks.push_back(std::move(renamed));
    region.blocks.push_back(std::make_unique<zBlock_fe>(0, 0, 0));
    EXPECT_THAT(sliceSurface(region, manualPlan(2, 2, 0.5, 1)).sections, SizeIs(2));
    EXPECT_THAT(sliceSurface({}, manualPlan(2, 20, 0.5, 1)).sections, IsEmpty());
    EXPECT_THAT(sliceSurface({}, planAlong(2, 20)).sections, IsEmpty());
}

TEST(SliceSurface, FigureEightAndTJunctionEnd) {
    // Upright walls over the edges of two triangles with a common corner, and one that ends in the middle of another.
    const std::vector<std::array<double, 4>> edges = {{0, 0, 1, 1}, {1, 1, 0, 2}, {0, 2, 0, 0}, {1, 1, 2, 0},
                                                      {2, 0, 2, 2}, {2, 2, 1, 1}, {2, 2, 5, 2}, {3, 3, 3, 2}};
    std::vector<Point> nodes;
    std::vector<std::int32_t> corners;
    for (const auto& [x1, y1, x2, y2] : edges) {
        const auto n = static_cast<std::int32_t>(nodes.size());
        nodes.insert(nodes.end(), {{x1, y1, 0}, {x2, y2, 0}, {x2, y2, 2}, {x1, y1, 2}});
        corners.insert(corners.end(), {n, n + 1, n + 2, n, n + 2, n + 3});
    }
    const zRegion_fe region = triangleRegion(nodes, corners);
    EXPECT_TRUE(slicesAsThePlainRule(region, manualPlan(2, 3, 0.5, 1.5)));
    EXPECT_FALSE(sliceSurface(region, manualPlan(2, 3, 0.5, 1.5)).sections.empty());
}

TEST(SliceSurface, TellsItsProgressUpToOneAndNeverBack) {
    std::vector<double> told;
    sliceSurface(box(1, 1, 1), manualPlan(2, 7, 0.1, 0.9), [&told](double fraction) { told.push_back(fraction); });
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1);
}

TEST(SliceSurfaceAgainstThePlainRule, ClosedAndCrackedBodies) {
    Source source(61);
    for (int round = 0; round < 1500; ++round) {
        const double size = anySize(source);
        const double middle = source.once(3) ? size * source.whole(-40, 40) : 0;
        const double cracks[] = {0, 0, 1e-16, 3e-11, 1e-10, 1e-9, 1e-4, 0.05};
        const zRegion_fe body = anyBody(source, middle, size, cracks[source.whole(0, 7)]);
        ASSERT_TRUE(slicesAsThePlainRule(body, anyPlan(source, middle, size))) << "round " << round;
    }
}

TEST(SliceSurfaceAgainstThePlainRule, TrianglesThatShareFewNodes) {
    Source source(62);
    int longest = 0;
    for (int round = 0; round < 3000; ++round) {
        const double size = anySize(source);
        const zRegion_fe soup = anySoup(source, size, round % 3 == 0);
        const SlicePlan plan = anyPlan(source, 0, 2 * size);
        ASSERT_TRUE(slicesAsThePlainRule(soup, plan)) << "round " << round;
        for (const PointList& section : sliceSurface(soup, plan).sections) {
            longest = std::max(longest, samples::countOf(samples::Column(section.size())));
        }
    }
    EXPECT_GT(longest, 8); // lines do run over several triangles
}

TEST(SliceSurfaceAgainstThePlainRule, HundredsOfPiecesInAPlane) {
    Source source(63);
    for (int round = 0; round < 16; ++round) {
        const double lattices[] = {1, 0.01, 1e6, 1e-9};
        const double lattice = lattices[round % 4];
        const zRegion_fe pieces = manyPieces(source, source.whole(60, 200), lattice);
        SlicePlan plan = manualPlan(2, source.whole(2, 4), -0.5, 0.75);
        plan.precision = std::clamp(lattice * source.real(0, 3), 1e-10, 100.0);
        ASSERT_TRUE(slicesAsThePlainRule(pieces, plan)) << "round " << round;
        plan.upper = -0.5; // every plane is the same
        ASSERT_TRUE(slicesAsThePlainRule(pieces, plan)) << "round " << round;
        plan.upper = -0.5 + 1e-11; // planes that count as one
        ASSERT_TRUE(slicesAsThePlainRule(pieces, plan)) << "round " << round;
    }
}

TEST(SliceSurfaceAgainstThePlainRule, SeveralZones) {
    Source source(64);
    for (int round = 0; round < 200; ++round) {
        zRegion_fe region = anyBody(source, 0, 1, 0);
        zRegion_fe more = anySoup(source, 0.5, false);
        region.blocks.push_back(std::move(more.blocks[0]));
        region.blocks.push_back(std::make_unique<zBlock_fe>(3, 4, 0));
        ASSERT_TRUE(slicesAsThePlainRule(region, anyPlan(source, 0, 1))) << "round " << round;
    }
}

namespace {

/// The triangles of a square of cells whose corners rise by chance.
zRegion_fe roughSquare(Source& source, std::int32_t side) {
    std::vector<Point> nodes;
    std::vector<std::int32_t> corners;
    for (std::int32_t row = 0; row <= side; ++row) {
        for (std::int32_t column = 0; column <= side; ++column) {
            nodes.emplace_back(row, column, source.real(0, 3));
            if (row < side && column < side) {
                const std::int32_t n = row * (side + 1) + column;
                corners.insert(corners.end(), {n, n + 1, n + side + 1, n + side + 1, n + 1, n + side + 2});
            }
        }
    }
    return triangleRegion(nodes, corners);
}

void expectTheSameWithAnyThreads(const zRegion_fe& body, int axis, int planes) {
    SlicePlan plan = planAlong(axis, planes);
    plan.precision = 0.005;
    const auto sliced = [&](std::size_t threads) {
        const ThreadCountScope scope(threads);
        return sliceSurface(body, plan);
    };
    const SliceResult alone = sliced(1);
    EXPECT_GT(alone.sections.size(), 100U);
    for (const std::size_t threads : {2, 7, 64}) {
        const SliceResult shared = sliced(threads);
        EXPECT_EQ(shared.linesLeft, alone.linesLeft);
        EXPECT_TRUE(sameBits(shared.sections, alone.sections)) << threads << " threads, axis " << axis;
    }
}

} // namespace

TEST(SliceSurface, IsTheSameWhateverTheNumberOfThreads) {
    // Some hundred planes through a body of 5,000 triangles, and through pieces: several groups of planes. A few planes
    // through 72,000 triangles: several parts of these.
    Source source(66);
    const zRegion_fe body = roughSquare(source, 50);
    const zRegion_fe pieces = manyPieces(source, 600, 0.01);
    for (const int axis : {0, 2}) {
        expectTheSameWithAnyThreads(body, axis, 150);
        expectTheSameWithAnyThreads(pieces, axis, 150);
    }
    expectTheSameWithAnyThreads(roughSquare(source, 190), 2, 3);
}

} // namespace velmora::test
