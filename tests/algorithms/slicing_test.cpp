#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corner_box.h"
#include "cut_zones.h"
#include "cut_zones_reference.h"
#include "line_joiner.h"
#include "lines_to_grid.h"
#include "random_patches.h"
#include "rebreak_kernels.h"
#include "segment_chainer.h"
#include "slice_reference.h"
#include "slice_surface.h"
#include "small_zones.h"

namespace velmora::test {

namespace {

using samples::sameBits;
using samples::Source;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Point = zVec<double>;

zRegion_fe regionOf(const std::vector<Point>& nodes, const std::vector<std::int32_t>& corners) {
    zRegion_fe region;
    region.blocks.push_back(triangleZone("body", nodes, corners));
    return region;
}

/// A closed box from the origin to (a, b, c), its sides split in two.
zRegion_fe box(double a, double b, double c) {
    return regionOf(
        {{0, 0, 0}, {a, 0, 0}, {a, b, 0}, {0, b, 0}, {0, 0, c}, {a, 0, c}, {a, b, c}, {0, b, c}},
        {0, 2, 1, 0, 3, 2, 4, 5, 6, 4, 6, 7, 0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7});
}

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

} // namespace

// ---- The box --------------------------------------------------------------------------------------------------------

TEST(CornerBoxOfZones, FirstValueDoesNotLowerTheMinimum) {
    const CornerBox box = cornerBox(regionOf({{0, 5, 2}, {1, 4, 3}, {2, 3, 1}}, {0, 1, 2}));
    EXPECT_EQ(box.upper, Point(2, 5, 3));
    EXPECT_EQ(box.lower, Point(1e65, 3, 1)); // x rises only
}

TEST(CornerBoxOfZones, LeavesOutNodesOfNoTriangle) {
    const CornerBox box =
        cornerBox(regionOf({{0, 0, 0}, {1, 1, 1}, {0.5, 0, 1}, {0, 1, 0}, {9, 9, 9}}, {1, 0, 2, 3, 0, 1}));
    EXPECT_EQ(box.lower, Point(0, 0, 0));
    EXPECT_EQ(box.upper, Point(1, 1, 1));
}

TEST(CornerBoxOfZones, StaysInsideOutWithoutTriangles) {
    const CornerBox box = cornerBox({});
    EXPECT_EQ(box.lower, Point(1e65, 1e65, 1e65));
    EXPECT_EQ(box.upper, Point(-1e65, -1e65, -1e65));
}

// ---- Slicing --------------------------------------------------------------------------------------------------------

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
    const zRegion_fe flat = regionOf({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}}, {0, 1, 2});
    EXPECT_THAT(sliceSurface(flat, manualPlan(2, 2, 1, 1)).sections, IsEmpty());
}

TEST(SliceSurface, CornerThatOnlyTouchesIsALineOfThatPointTwice) {
    const zRegion_fe up = regionOf({{0, 0, 1}, {1, 0, 2}, {0, 1, 2}}, {0, 1, 2});
    const Patch sections = sliceSurface(up, manualPlan(2, 2, 1, 3)).sections;
    ASSERT_THAT(sections, SizeIs(1));
    EXPECT_THAT(sections[0], ElementsAre(Point(0, 0, 1), Point(0, 0, 1)));
}

TEST(SliceSurface, CornerOnThePlaneCountsForTheEdgeThatLeavesIt) {
    // Corners below, on and above the plane z = 0: the cut runs from the corner to the middle of the long edge.
    const zRegion_fe region = regionOf({{0, 0, -1}, {1, 0, 0}, {0, 0, 1}}, {0, 1, 2});
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
        regionOf({{0, 0, 0}, {1, 0, 0}, {1, 0, 2}, {0, 0, 2}, {1.01, 0, 0}, {2, 0, 0}, {2, 0, 2}, {1.01, 0, 2}},
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
        regionOf({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}, {0, 0, 2}, {1, 0, 2}, {1, 0, 3}, {0, 0, 3}},
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
    const zRegion_fe region = regionOf(nodes, corners);
    EXPECT_TRUE(slicesAsThePlainRule(region, manualPlan(2, 3, 0.5, 1.5)));
    EXPECT_FALSE(sliceSurface(region, manualPlan(2, 3, 0.5, 1.5)).sections.empty());
}

TEST(SliceSurface, TellsItsProgressUpToOneAndNeverBack) {
    std::vector<double> told;
    sliceSurface(box(1, 1, 1), manualPlan(2, 7, 0.1, 0.9), [&told](double fraction) { told.push_back(fraction); });
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1);
}

// ---- Against the plain rule -----------------------------------------------------------------------------------------

namespace {

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

/// A tube or ring of quads with every triangle's corners its own, shifted by up to `crack` of their size; at times
/// opened, or with corners on whole numbers.
zRegion_fe anyBody(Source& source, double middle, double size, double crack) {
    const std::int32_t around = source.whole(3, 8);
    const std::int32_t along = source.whole(2, 6);
    const bool whole = source.once(2);
    const bool ring = source.once(2);
    std::vector<std::vector<Point>> rows;
    for (std::int32_t i = 0; i <= along; ++i) {
        std::vector<Point> row;
        for (std::int32_t j = 0; j < around; ++j) {
            const double u = 6.283185307179586 * j / around;
            const double v = 6.283185307179586 * i / along;
            Point p = ring ? Point((3 + std::cos(u)) * std::cos(v), (3 + std::cos(u)) * std::sin(v), std::sin(u))
                           : Point(4 * std::cos(u), 4 * std::sin(u), 8.0 * i / along - 4);
            p = p + Point(source.real(-0.2, 0.2), source.real(-0.2, 0.2), source.real(-0.2, 0.2));
            row.push_back(whole ? Point(std::round(p.x), std::round(p.y), std::round(p.z)) : p);
        }
        rows.push_back(ring && i == along ? rows.front() : row);
    }
    std::vector<Point> nodes;
    const auto put = [&](const Point& p) {
        const auto shifted = [&](double c) { return middle + size / 4 * (c + crack * source.whole(-1, 1)); };
        nodes.push_back({shifted(p.x), shifted(p.y), shifted(p.z)});
    };
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
        for (std::size_t j = 0; j < rows[i].size(); ++j) {
            const std::size_t k = (j + 1) % rows[i].size();
            for (const Point& p :
                 {rows[i][j], rows[i][k], rows[i + 1][j], rows[i + 1][j], rows[i][k], rows[i + 1][k]}) {
                put(p);
            }
        }
    }
    std::vector<std::int32_t> corners(nodes.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        corners[i] = static_cast<std::int32_t>(i);
    }
    if (source.once(4)) {
        corners.resize(corners.size() - 3); // a hole
    }
    return regionOf(nodes, corners);
}

/// Triangles between few nodes: many share edges and corners, lie in planes or have no area.
zRegion_fe anySoup(Source& source, double size, bool nasty) {
    std::vector<Point> nodes;
    for (int i = source.whole(4, 14); i > 0; --i) {
        Point p(size * source.whole(-2, 2), size * source.whole(-2, 2), size * source.whole(-2, 2));
        if (nasty && source.once(4)) {
            (source.once(2) ? p.x : p.y) = source.nasty();
        }
        nodes.push_back(p);
    }
    std::vector<std::int32_t> corners;
    for (int i = 3 * source.whole(1, 40); i > 0; --i) {
        corners.push_back(source.whole(0, samples::countOf(samples::Column(nodes.size())) - 1));
    }
    return regionOf(nodes, corners);
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
    return regionOf(nodes, corners);
}

} // namespace

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

TEST(PointCellsOfAPlane, HoldEveryPointThatIsTheSame) {
    Source source(65);
    int same = 0;
    for (int round = 0; round < 20000; ++round) {
        const double scales[] = {1, 1e-300, 1e300, 1e-308, 1.7e308, 1e-12};
        const double scale = scales[source.whole(0, 5)];
        const double plane = source.once(2) ? 0 : source.real(-1, 1) * scale;
        const auto anyCoordinate = [&] {
            // Often a power of two, where the cells' width changes, and often small beside the others.
            const double number = source.once(2) ? std::ldexp(1.0, -source.whole(0, 40)) : source.real(-1, 1);
            return scale * (source.once(2) ? -number : number);
        };
        const SlicePoint a = {anyCoordinate(), anyCoordinate(), plane};
        SlicePoint b = a;
        for (const std::size_t i : {0U, 1U}) {
            const double shift = largestCoordinate(a) * 1e-10 * source.real(-1.1, 1.1);
            b[i] += source.once(3) ? 0 : shift;
        }
        PointCells cells(2);
        cells.reset(1000, 1);
        cells.put(a, 0);
        const PointCells::Buckets near = cells.near(b);
        const bool found = std::any_of(near.bucket, near.bucket + near.count,
                                       [&cells](std::uint32_t bucket) { return cells.head(bucket) == 0; });
        if (samePoint(a, b)) {
            ++same;
            ASSERT_TRUE(found) << "round " << round;
        }
    }
    EXPECT_GT(same, 5000);
}

TEST(SamePoint, IsRelativeToTheLargestCoordinateOfBoth) {
    EXPECT_TRUE(samePoint({1, 0, 0}, {1 + 0.9e-10, 0, 0}));
    EXPECT_FALSE(samePoint({1, 0, 0}, {1 + 1.1e-10, 0, 0}));
    EXPECT_TRUE(samePoint({1, 1e-12, 0}, {1, -5e-11, 0}));
    EXPECT_FALSE(samePoint({1e-12, 0, 0}, {-5e-11, 0, 0}));
    EXPECT_TRUE(samePoint({0, 0, 0}, {-0.0, 0, 0}));
    EXPECT_FALSE(samePoint({0, 0, 0}, {1e-300, 0, 0}));
    EXPECT_FALSE(samePoint({samples::infinite, 0, 0}, {samples::infinite, 0, 0}));
    EXPECT_FALSE(samePoint({samples::notANumber, 0, 0}, {samples::notANumber, 0, 0}));
}

// ---- Joining and orientation ----------------------------------------------------------------------------------------

namespace {

SliceLine lineOf(const std::vector<double>& xs, double z = 0) {
    SliceLine line;
    for (const double x : xs) {
        line.push_back({x, 0, z});
    }
    return line;
}

std::vector<double> xsOf(const SliceLine& line) {
    std::vector<double> xs;
    for (const SlicePoint& p : line) {
        xs.push_back(p[0]);
    }
    return xs;
}

} // namespace

TEST(JoinLines, TriesTheFourPairsOfEndsInOrder) {
    const auto join = [](const SliceLine& a, const SliceLine& b) {
        return xsOf(joinLines({a, b}, 2, 0.1).lines.at(0));
    };
    EXPECT_THAT(join(lineOf({0, 1}), lineOf({1, 2})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({0, 1}), lineOf({2, 1})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({1, 0}), lineOf({1, 2})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({1, 0}), lineOf({2, 1})), ElementsAre(0, 1, 1, 2));
    EXPECT_THAT(join(lineOf({0, 1, 0}), lineOf({0, 5, 0})), ElementsAre(0, 1, 0, 0, 5, 0)); // all four: the first
}

TEST(JoinLines, DistanceEqualToThePrecisionIsNear) {
    EXPECT_THAT(joinLines({lineOf({0, 1}), lineOf({1.5, 2})}, 2, 0.5).lines, SizeIs(1));
    EXPECT_THAT(joinLines({lineOf({0, 1}), lineOf({1.5, 2})}, 2, 0.499).lines, SizeIs(2));
}

TEST(JoinLines, LastLineOfThePlaneGrowsNext) {
    const auto joined = joinLines({lineOf({0, 1}), lineOf({10, 11}), lineOf({20, 21}), lineOf({9, 10})}, 2, 0.1).lines;
    ASSERT_THAT(joined, SizeIs(3));
    EXPECT_THAT(xsOf(joined[1]), ElementsAre(9, 10, 10, 11)); // 9 to 10 starts and takes 10 to 11
    EXPECT_THAT(xsOf(joined[2]), ElementsAre(20, 21));
}

TEST(JoinLines, LinesOfDifferentPlanesNeverJoin) {
    EXPECT_THAT(joinLines({lineOf({0, 1}, 1), lineOf({1, 2}, 1.0001)}, 2, 100).lines, SizeIs(2));
}

TEST(OrientLines, TurnLinesThatStartTheOtherWay) {
    std::vector<SliceLine> lines = {lineOf({0, 1, 2}), lineOf({5, 4, 3}), lineOf({7, 8}), lineOf({1}), lineOf({3, 2})};
    orientLines(lines);
    EXPECT_THAT(xsOf(lines[1]), ElementsAre(3, 4, 5));
    EXPECT_THAT(xsOf(lines[2]), ElementsAre(7, 8));
    EXPECT_THAT(xsOf(lines[4]), ElementsAre(3, 2)); // the line before it has one point
}

// ---- Lines to a grid ------------------------------------------------------------------------------------------------

TEST(LinesToGrid, GivesEverySectionTheSameNumberOfPoints) {
    const PatchList lines = {{{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}, {{0, 1, 0}, {4, 1, 0}}}, {{{0, 0, 5}, {0, 2, 5}}}};
    for (const bool spline : {true, false}) {
        const PatchList grid = linesToGrid(lines, 5, spline);
        ASSERT_THAT(grid, SizeIs(2));
        for (const Patch& patch : grid) {
            for (const PointList& section : patch) {
                ASSERT_THAT(section, SizeIs(5));
            }
        }
        EXPECT_EQ(grid[0][0][1], Point(1, 0, 0));
        EXPECT_EQ(grid[0][1][3], Point(3, 1, 0));
        EXPECT_EQ(grid[1][0][4], Point(0, 2, 5));
    }
}

TEST(LinesToGrid, SectionsOfFewerThanTwoPointsHaveDefinedPoints) {
    for (const bool spline : {true, false}) {
        const PatchList grid = linesToGrid({{{}, {{1, 2, 3}}}}, 3, spline);
        EXPECT_THAT(grid[0][0], ElementsAre(Point(), Point(), Point()));
        EXPECT_THAT(grid[0][1], ElementsAre(Point(1, 2, 3), Point(1, 2, 3), Point(1, 2, 3)));
    }
}

TEST(LinesToGrid, DoubledPointsOfLongerSectionsAreLeftOutFirst) {
    // Chords 0, 0, 1 and 3 after cleaning: steps of 1 hit the points.
    const PatchList grid = linesToGrid({{{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {4, 0, 0}}}}, 5, false);
    EXPECT_EQ(grid[0][0][1], Point(1, 0, 0));
    EXPECT_EQ(grid[0][0][4], Point(4, 0, 0));
    // Of three points none is: the spline falls back on the chords, and all the same nothing is divided by zero.
    const PatchList doubled = linesToGrid({{{{0, 0, 0}, {0, 0, 0}, {4, 0, 0}}}}, 5, true);
    EXPECT_EQ(doubled[0][0][0], Point(0, 0, 0));
    EXPECT_NEAR(doubled[0][0][3].x, 3, 1e-12);
    EXPECT_EQ(doubled[0][0][4], Point(4, 0, 0));
}

TEST(LinesToGrid, ClosedSectionStaysClosed) {
    for (const bool spline : {true, false}) {
        const PointList ring = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {0, 0, 0}};
        const PointList section = linesToGrid({{ring}}, 17, spline)[0][0];
        EXPECT_EQ(section.front(), Point(0, 0, 0));
        EXPECT_NEAR(section.back().x, 0, 1e-12);
        EXPECT_NEAR(section.back().y, 0, 1e-12);
    }
}

TEST(LinesToGrid, EachSectionIsTurnedAsTheOneBeforeIt) {
    const PatchList lines = {
        {{{0, 0, 0}, {1, 0, 0}}, {{1, 1, 0}, {0, 1, 0}}, {{1, 2, 0}, {0, 2, 0}}, {{0, 3, 0}, {1, 3, 0}}}};
    const PatchList grid = linesToGrid(lines, 3, false);
    for (const PointList& section : grid[0]) {
        EXPECT_EQ(section.front().x, 0);
    }
}

TEST(LinesToGrid, EmptyModelStaysEmpty) {
    EXPECT_THAT(linesToGrid({}, 20, true), IsEmpty());
    EXPECT_THAT(linesToGrid({{}}, 20, true), ElementsAre(IsEmpty()));
}

TEST(AlignWithPrevious, LeavesATieAndListsOfOtherLengths) {
    const PointList previous = {{0, 0, 0}, {1, 0, 0}};
    PointList tie = {{0.5, 1, 0}, {0.5, 2, 0}};
    const PointList before = tie;
    alignWithPrevious(previous, tie);
    EXPECT_EQ(tie, before);
    PointList shorter = {{5, 0, 0}};
    alignWithPrevious(previous, shorter);
    EXPECT_THAT(shorter, ElementsAre(Point(5, 0, 0)));
    PointList opposite = {{1, 1, 0}, {0, 1, 0}};
    alignWithPrevious(previous, opposite);
    EXPECT_EQ(opposite[0], Point(0, 1, 0));
}

// ---- Cutting triangles ----------------------------------------------------------------------------------------------

namespace {

KnifePlane across(int axis, double section) {
    KnifePlane plane;
    plane.axis = axis;
    plane.section = section;
    return plane;
}

KnifePlane throughPoint(const Point& point, const Point& normal) {
    KnifePlane plane;
    plane.axis = 3;
    plane.point = point;
    plane.normal = unitVector(normal);
    return plane;
}

Point nodeOf(const zRegion_fe& region, std::int32_t node) {
    Point p;
    EXPECT_EQ(region.getNode(0, node, p.x, p.y, p.z), 0);
    return p;
}

Point areaOf(const zRegion_fe& region) {
    Point sum;
    const zBlock_fe& zone = *region.blocks[0];
    for (std::size_t i = 0; i < zone.connectivity.size(); i += 4) {
        const Point a = nodeOf(region, zone.connectivity[i]);
        sum = sum +
              cross(nodeOf(region, zone.connectivity[i + 1]) - a, nodeOf(region, zone.connectivity[i + 2]) - a) * 0.5;
    }
    return sum;
}

testing::AssertionResult sameZone(const zBlock_fe& a, const zBlock_fe& b) {
    if (a.title != b.title || a.nodeCount != b.nodeCount || a.elementCount != b.elementCount ||
        a.connectivitySize != b.connectivitySize || a.connectivity != b.connectivity ||
        a.variables.size() != b.variables.size()) {
        return testing::AssertionFailure() << "title, counts or connectivity differ";
    }
    for (std::size_t i = 0; i < a.variables.size(); ++i) {
        if (a.variables[i]->name != b.variables[i]->name || a.variables[i]->size != b.variables[i]->size) {
            return testing::AssertionFailure() << "field " << i << " differs";
        }
        if (const auto same = sameBits(a.variables[i]->data, b.variables[i]->data); !same) {
            return same;
        }
    }
    return testing::AssertionSuccess();
}

} // namespace

TEST(SplitZones, WhicheverCornerStandsAloneThePiecesRunRoundAsTheTriangleDid) {
    const std::vector<Point> nodes = {{0, 0, 0}, {2, -1, 0}, {2, 1, 0}};
    const std::vector<std::vector<std::int32_t>> orders = {{0, 1, 2}, {2, 0, 1}, {1, 2, 0}};
    for (const auto& order : orders) {
        zRegion_fe region = regionOf(nodes, order);
        const Point area = areaOf(region);
        splitZones(region, across(0, 1));
        const zBlock_fe& zone = *region.blocks[0];
        EXPECT_EQ(zone.nodeCount, 5);
        EXPECT_EQ(zone.elementCount, 3);
        EXPECT_EQ(zone.connectivitySize, 12);
        EXPECT_EQ(nodeOf(region, 3), Point(1, -0.5, 0)); // on the edge that leaves the lone corner
        EXPECT_EQ(nodeOf(region, 4), Point(1, 0.5, 0));
        EXPECT_EQ((std::vector<std::int32_t>(zone.connectivity.begin() + 4, zone.connectivity.end())),
                  (std::vector<std::int32_t>{3, 1, 2, -1, 3, 2, 4, -1}));
        EXPECT_EQ(areaOf(region), area);
        EXPECT_EQ(zone.title, "z");
    }
}

TEST(SplitZones, CornerOnThePlaneSplitsATriangleInTwo) {
    zRegion_fe region = regionOf({{1, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {0, 1, 2});
    const Point area = areaOf(region);
    splitZones(region, across(0, 1 + 0.9e-8));
    const zBlock_fe& zone = *region.blocks[0];
    EXPECT_EQ(zone.nodeCount, 4);
    EXPECT_EQ(zone.connectivity, (std::vector<std::int32_t>{0, 1, 3, -1, 3, 2, 0, -1}));
    EXPECT_NEAR(areaOf(region).z, area.z, 1e-12);
}

TEST(SplitZones, CornerNearThePlaneWithBothOthersOnOneSideSplitsNothing) {
    zRegion_fe region = regionOf({{1, 0, 0}, {2, 2, 0}, {3, 2, 0}}, {0, 1, 2});
    splitZones(region, across(0, 1 + 0.9e-8));
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
    EXPECT_EQ(region.blocks[0]->title, "body"); // no field was looked up
}

TEST(SplitZones, FieldsOtherThanCoordinatesAreZeroAtNewNodes) {
    zRegion_fe region = regionOf({{0, 0, 0}, {2, -1, 0}, {2, 1, 0}}, {0, 1, 2});
    region.blocks[0]->addVariable("p")->data = {7, 8, 9};
    splitZones(region, across(0, 1));
    EXPECT_THAT(region.blocks[0]->variables[3]->data, ElementsAre(7, 8, 9, 0, 0));
    EXPECT_TRUE(consistent(*region.blocks[0]));
}

TEST(SplitZones, ZonesWithoutCoordinatesStay) {
    zRegion_fe region = regionOf({{0, 0, 0}, {2, -1, 0}, {2, 1, 0}}, {0, 1, 2});
    region.blocks[0]->variables.pop_back();
    splitZones(region, across(0, 1));
    keepSide(region, across(0, 1), Side::Before);
    EXPECT_EQ(region.blocks[0]->elementCount, 1);
}

TEST(SplitZonesAgainstThePlainRule, GiveTheSameZonesForPlanesAcrossAxes) {
    Source source(71);
    int split = 0;
    for (int round = 0; round < 600; ++round) {
        zRegion_fe fast = round % 2 == 0 ? anyBody(source, 0, 4, 0) : anyBody(source, 10, 1e3, 1e-4);
        fast.blocks[0]->addVariable("p")->data.assign(static_cast<std::size_t>(fast.blocks[0]->nodeCount), 1.5);
        zRegion_fe plain;
        copyRegion(fast, plain);
        const int axis = source.whole(0, 2);
        const double p = source.once(2) ? source.whole(-3, 3) : source.real(-3, 13);
        const auto along = [axis](const Point& at) { return axis == 0 ? at.x : axis == 1 ? at.y : at.z; };
        reference::splitZonesOneByOne(plain, [&](const Point& from, const Point& to) -> std::optional<Point> {
            const double u1 = along(from);
            const double u2 = along(to);
            if (!((p - u1 > nearZero && u2 - p > nearZero) || (u1 - p > nearZero && p - u2 > nearZero))) {
                return std::nullopt;
            }
            const double t = (p - u1) / (u2 - u1);
            Point cut(from.x + t * (to.x - from.x), from.y + t * (to.y - from.y), from.z + t * (to.z - from.z));
            (axis == 0 ? cut.x : axis == 1 ? cut.y : cut.z) = p;
            return cut;
        });
        splitZones(fast, across(axis, p));
        ASSERT_TRUE(sameZone(*fast.blocks[0], *plain.blocks[0])) << "round " << round;
        split += fast.blocks[0]->title == "z" ? 1 : 0;
    }
    EXPECT_GT(split, 300);
}

TEST(SplitZonesAgainstThePlainRule, GiveTheSameZonesForAnyPlane) {
    Source source(72);
    for (int round = 0; round < 400; ++round) {
        zRegion_fe fast = anyBody(source, 0, 4, 0);
        zRegion_fe plain;
        copyRegion(fast, plain);
        const KnifePlane plane = throughPoint({source.real(-2, 2), source.real(-2, 2), source.whole(-2, 2) * 1.0},
                                              {source.real(-1, 1), source.real(-1, 1), source.real(-1, 1)});
        reference::splitZonesOneByOne(plain, [&](const Point& from, const Point& to) -> std::optional<Point> {
            const double s1 = dot(from - plane.point, plane.normal);
            const double s2 = dot(to - plane.point, plane.normal);
            const bool crossed = (s1 > nearZero && s2 < -nearZero) || (s2 > nearZero && s1 < -nearZero);
            return crossed ? segmentPlane(from, to, plane.point, plane.normal) : std::nullopt;
        });
        splitZones(fast, plane);
        ASSERT_TRUE(sameZone(*fast.blocks[0], *plain.blocks[0])) << "round " << round;
    }
}

TEST(KeepSide, KeepsTrianglesWithACornerOnThatSide) {
    const auto kept = [](const KnifePlane& plane, Side side) {
        zRegion_fe region = regionOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {3, 0, 0}, {3, 1, 0}, {1, 1, 0}, {1, 2, 0}},
                                     {0, 1, 2, 1, 3, 4, 1, 5, 6});
        keepSide(region, plane, side);
        const zBlock_fe& zone = *region.blocks[0];
        std::vector<std::int32_t> first;
        for (std::int32_t i = 0; i < zone.elementCount; ++i) {
            first.push_back(zone.connectivity[static_cast<std::size_t>(4 * i + 1)]);
        }
        return first;
    };
    EXPECT_THAT(kept(across(0, 1), Side::Before), ElementsAre(1));
    EXPECT_THAT(kept(across(0, 1), Side::After), ElementsAre(3)); // the one in the plane goes either way
    EXPECT_THAT(kept(across(0, 0), Side::Before), IsEmpty());
    EXPECT_THAT(kept(across(0, 0), Side::After), ElementsAre(1, 3, 5));
    EXPECT_THAT(kept(throughPoint({1, 0, 0}, {2, 0, 0}), Side::Before), ElementsAre(1));
    EXPECT_THAT(kept(throughPoint({1, 0, 0}, {-2, 0, 0}), Side::Before), ElementsAre(3));
}

TEST(SegmentPlane, FollowsItsFourCases) {
    const Point z(0, 0, 1);
    EXPECT_EQ(segmentPlane({1, 1, 1}, {1, 1, 1}, {1, 1, 1}, z), Point(1, 1, 1));
    EXPECT_EQ(segmentPlane({1, 1, 1}, {1, 1, 1}, {1, 1, 2}, z), std::nullopt);
    EXPECT_EQ(segmentPlane({1, 1, 1}, {2, 2, 2}, {2, 2, 2}, z), Point(2, 2, 2));
    EXPECT_EQ(segmentPlane({1, 1, 1}, {2, 2, 2}, {1, 1, 1}, z), Point(1, 1, 1));
    EXPECT_EQ(segmentPlane({0, 0, 5}, {2, 0, 5}, {0, 7, 5}, z), Point(1, 0, 5)); // in the plane: the middle
    EXPECT_EQ(segmentPlane({0, 0, 4}, {2, 0, 4}, {0, 7, 5}, z), std::nullopt);
    EXPECT_EQ(segmentPlane({0, 0, 0}, {2, 4, 8}, {9, 9, 2}, z), Point(0.5, 1, 2));
    EXPECT_EQ(segmentPlane({0, 0, 3}, {2, 4, 8}, {9, 9, 2}, z), std::nullopt); // beyond the end
}

TEST(PlaneThrough, HasTheMeanPointAndTheUnitNormal) {
    const KnifePlane plane = planeThrough({0, 0, 3}, {3, 0, 3}, {0, 3, 3});
    EXPECT_EQ(plane.point, Point(1, 1, 3));
    // Nz = (Cy - Ay)(Bx - Ax) - (By - Ay)(Cx - Ax) = 9, of length 1.
    EXPECT_EQ(plane.normal, Point(0, 0, 1));
    // x = 2: Nx = (Cz - Az)(By - Ay) - (Bz - Az)(Cy - Ay) = 1 * 1 - 0 = 1.
    EXPECT_EQ(planeThrough({2, 0, 0}, {2, 1, 0}, {2, 0, 1}).normal, Point(1, 0, 0));
    // y = 2: Ny = (Bz - Az)(Cx - Ax) - (Cz - Az)(Bx - Ax) = 0 - 1 = -1.
    EXPECT_EQ(planeThrough({0, 2, 0}, {1, 2, 0}, {0, 2, 1}).normal, Point(0, -1, 0));
    EXPECT_EQ(planeThrough({0, 0, 0}, {1, 1, 1}, {2, 2, 2}).normal, Point());
}

TEST(UnitVector, HasTheDirectionOfVeryShortAndVeryLongOnes) {
    for (const double size : {1e-300, 1e-200, 1e-5, 1.0, 1e200, 1e300}) {
        const Point v = unitVector({3.0 * size, 0.0, -4.0 * size});
        EXPECT_DOUBLE_EQ(v.x, 0.6) << size;
        EXPECT_EQ(v.y, 0.0) << size;
        EXPECT_DOUBLE_EQ(v.z, -0.8) << size;
    }
    EXPECT_EQ(unitVector({}), Point());
    EXPECT_EQ(unitVector({INFINITY, 0, 0}), Point());
}

TEST(SplitZones, TellTheirProgress) {
    std::vector<double> told;
    zRegion_fe region = box(1, 1, 1);
    splitZones(region, across(0, 0.5), [&told](double fraction) { told.push_back(fraction); });
    EXPECT_FALSE(told.empty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_LE(told.back(), 1);
}

} // namespace velmora::test
