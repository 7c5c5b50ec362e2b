#include "lines_to_grid.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vectors.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Point = zVec<double>;

} // namespace

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

// The last of equal parts of a length is rounded, often to above the length: no curve goes on behind its end for that.
TEST(LinesToGrid, EndsAreThoseOfTheLineForAnyNumberOfPoints) {
    for (int corners = 5; corners <= 40; corners += 7) {
        PointList ring;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2 * 3.14159265358979 * i / corners;
            ring.emplace_back((1 + 0.3 * std::sin(3 * angle)) * std::cos(angle), 0.7 * std::sin(angle), 0.1 * (i % 3));
        }
        ring.push_back(ring.front());
        const PointList open(ring.begin(), ring.end() - 2);
        for (std::int32_t points = 4; points <= 60; ++points) {
            for (const PointList& line : {ring, open}) {
                const PointList section = linesToGrid({{line}}, points, true)[0][0];
                EXPECT_LT(distance(section.front(), line.front()), 1e-12) << corners << ' ' << points;
                EXPECT_LT(distance(section.back(), line.back()), 1e-12) << corners << ' ' << points;
            }
        }
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

// ---- Alignment ------------------------------------------------------------------------------------------------------

namespace {

/// The corners of a unit square at that height, each by its number: 0 to 3 counter-clockwise from the origin.
PointList square(double z, std::initializer_list<int> corners) {
    const Point all[] = {{0, 0, z}, {1, 0, z}, {1, 1, z}, {0, 1, z}};
    PointList points;
    for (const int corner : corners) {
        points.push_back(all[corner]);
    }
    return points;
}

double plainSum(const PointList& previous, const PointList& section) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < section.size(); ++i) {
        sum += distance(previous[i], section[i]);
    }
    return sum;
}

/// Every start, both ways: the first of the least sum.
PointList plainlyAligned(const PointList& previous, const PointList& section) {
    PointList best = section;
    for (const bool backward : {false, true}) {
        PointList ring(section.begin(), section.end() - 1);
        if (backward) {
            std::reverse(ring.begin() + 1, ring.end()); // from the same point the other way
        }
        for (std::size_t start = 0; start < ring.size(); ++start) {
            const std::size_t first = backward ? (ring.size() - start) % ring.size() : start;
            PointList turned = ring;
            std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(first), turned.end());
            turned.push_back(turned.front());
            if (plainSum(previous, turned) < plainSum(previous, best)) {
                best = turned;
            }
        }
    }
    return best;
}

/// A ring of n points about the origin at that height, begun at `phase` of a turn, with some noise.
PointList ring(std::size_t n, double z, double phase, bool backward, double noise, std::mt19937& engine) {
    std::uniform_real_distribution<double> shake(-noise, noise);
    PointList points;
    for (std::size_t i = 0; i < n; ++i) {
        const double turn = phase + static_cast<double>(i) / static_cast<double>(n) * (backward ? -1.0 : 1.0);
        const double angle = 2.0 * std::acos(-1.0) * turn;
        points.emplace_back(3.0 * std::cos(angle) + shake(engine), std::sin(angle) + shake(engine), z);
    }
    points.push_back(points.front());
    return points;
}

} // namespace

TEST(AlignSections, LetsAClosedLineBeginBesideTheOneBefore) {
    Patch patch = {square(0, {0, 1, 2, 3, 0}), square(1, {2, 3, 0, 1, 2}), square(2, {1, 2, 3, 0, 1})};
    alignSections(patch);
    EXPECT_EQ(patch[1], square(1, {0, 1, 2, 3, 0}));
    EXPECT_EQ(patch[2], square(2, {0, 1, 2, 3, 0}));
}

TEST(AlignSections, TurnsAClosedLineThatRunsTheOtherWay) {
    Patch patch = {square(0, {0, 1, 2, 3, 0}), square(1, {2, 1, 0, 3, 2})};
    alignSections(patch);
    EXPECT_EQ(patch[1], square(1, {0, 1, 2, 3, 0}));
}

TEST(AlignSections, TakesTheValuesOfThePointsAlong) {
    Patch patch = {square(0, {0, 1, 2, 3, 0}), square(1, {2, 1, 0, 3, 2})};
    Patch values = {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {0, 0, 0}},
                    {{12, 0, 0}, {11, 0, 0}, {10, 0, 0}, {13, 0, 0}, {12, 0, 0}}};
    const PointList before = values[0];
    alignSections(patch, &values);
    EXPECT_EQ(values[0], before);
    EXPECT_EQ(values[1], (PointList{{10, 0, 0}, {11, 0, 0}, {12, 0, 0}, {13, 0, 0}, {10, 0, 0}}));
}

TEST(AlignSections, TurnsAnOpenLineIfThatIsLess) {
    Patch patch = {{{0, 0, 0}, {1, 0, 0}, {5, 0, 0}}, {{5, 1, 0}, {1, 1, 0}, {0, 1, 0}}};
    alignSections(patch);
    EXPECT_EQ(patch[1], (PointList{{0, 1, 0}, {1, 1, 0}, {5, 1, 0}}));
}

TEST(AlignSections, CountsDistancesAndNotTheirSquares) {
    // Kept, the ends are 16.3 and 0 away from those before, turned 10 and 6.7: by the squares that would be less.
    const PointList line = {{16, 3, 0}, {5, 0, 0}, {10, 0, 0}};
    Patch patch = {{{0, 0, 0}, {5, 0, 0}, {10, 0, 0}}, line};
    alignSections(patch);
    EXPECT_EQ(patch[1], line);
    alignWithPrevious(patch[0], patch[1]);
    EXPECT_NE(patch[1], line);
}

TEST(AlignSections, LeavesTiesAndSectionsOfOtherLengths) {
    // Of a line whose points all coincide every start is as good; of one upright before the middle both ways are.
    const Patch before = {
        {{0, 0, 0}, {2, 0, 0}}, {{1, 1, 0}, {1, 1, 5}}, {{0, 9, 0}, {3, 9, 0}, {4, 9, 0}}, {}, {{1, 1, 1}}};
    Patch patch = before;
    alignSections(patch);
    EXPECT_EQ(patch, before);
    const PointList dot(5, Point(1, 1, 1));
    Patch dots = {square(0, {0, 1, 2, 3, 0}), dot};
    alignSections(dots);
    EXPECT_EQ(dots[1], dot);
}

TEST(AlignSections, FindsWhatTryingEveryStartFinds) {
    std::mt19937 engine(5);
    std::uniform_real_distribution<double> phase(0.0, 1.0);
    for (int round = 0; round < 400; ++round) {
        const std::size_t n = 3 + engine() % 60;
        const double noise = round % 3 == 0 ? 1.5 : 0.05;
        Patch patch = {ring(n, 0, 0, false, noise, engine),
                       ring(n, 0.1, phase(engine), engine() % 2 == 0, noise, engine)};
        const PointList expected = plainlyAligned(patch[0], patch[1]);
        alignSections(patch);
        ASSERT_EQ(patch[1], expected) << "round " << round;
    }
}

TEST(AlignSections, ManyPointsTakeNoQuadraticTime) {
    std::mt19937 engine(6);
    Patch patch = {ring(40000, 0, 0, false, 0, engine), ring(40000, 0.5, 0.25, true, 0, engine)};
    alignSections(patch);
    // A quarter of a turn on, and back the other way: it begins where the one before does.
    EXPECT_NEAR(patch[1].front().x, 3, 1e-9);
    EXPECT_NEAR(patch[1].front().y, 0, 1e-9);
    EXPECT_NEAR(patch[1][10000].y, 1, 1e-9);
}

// ---- Twists ---------------------------------------------------------------------------------------------------------

TEST(TwistedSections, AreThoseThatBeginElsewhereOrRunTheOtherWay) {
    std::mt19937 engine(7);
    const Patch patch = {ring(40, 0, 0, false, 0, engine),    ring(40, 1, 0.05, false, 0, engine),
                         ring(40, 2, 0.5, false, 0, engine),  ring(40, 3, 0.5, false, 0, engine),
                         ring(40, 4, 0.5, true, 0, engine),   ring(40, 5, 0.5, true, 0, engine),
                         ring(40, 6, 0.375, true, 0, engine), ring(40, 7, 0.0, false, 0, engine)};
    // 1: a twentieth of a turn on. 2: half a turn. 4: the same place, the other way. 6: an eighth back, which is no
    // more than is let pass. 7: both.
    EXPECT_THAT(twistedSections(patch), ElementsAre(2, 4, 7));
    Patch aligned = patch;
    alignSections(aligned);
    EXPECT_THAT(twistedSections(aligned), IsEmpty());
}

TEST(TwistedSections, OfOpenSectionsTheDirectionCounts) {
    const PointList here = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    const PointList there = {{0, 1, 0}, {1, 1, 0}, {2, 1, 0}};
    const PointList back(there.rbegin(), there.rend());
    EXPECT_THAT(twistedSections({here, there, back}), ElementsAre(2));
    EXPECT_THAT(twistedSections({here, {{5, 5, 5}}, there}), IsEmpty()) << "sections of other lengths are not compared";
    EXPECT_THAT(twistedSections({}), IsEmpty());
}

TEST(TwistedSections, LongOnesAreTakenByTheirShape) {
    std::mt19937 engine(8);
    EXPECT_THAT(twistedSections({ring(100000, 0, 0, false, 0, engine), ring(100000, 1, 0.25, false, 0, engine)}),
                ElementsAre(1));
}

} // namespace velmora::test
