#include "SegmentChainer.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "curve_samples.h"

namespace velmora::test {

namespace {

using samples::Source;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const SlicePoint a = {0, 0, 5};
const SlicePoint b = {1, 0, 5};
const SlicePoint c = {1, 1, 5};
const SlicePoint d = {0, 1, 5};

using SliceLine = std::vector<SlicePoint>;

std::vector<SliceLine> oneByOne(const SliceLines& lines) {
    std::vector<SliceLine> found;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        found.emplace_back(lines[i].begin(), lines[i].end());
    }
    return found;
}

/// The lines of one plane across z.
std::vector<SliceLine> chained(const std::vector<SliceSegment>& segments) {
    SliceLines lines;
    SegmentChainer(2).chain(segments, lines);
    return oneByOne(lines);
}

} // namespace

TEST(SegmentChainer, ClosesARingWhicheverWayTheSegmentsRun) {
    const auto lines = chained({{a, b}, {c, b}, {c, d}, {a, d}});
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_THAT(lines[0], SizeIs(5));
    EXPECT_EQ(lines[0].front(), lines[0].back());
    for (const SlicePoint& corner : {a, b, c, d}) {
        EXPECT_NE(std::find(lines[0].begin(), lines[0].end(), corner), lines[0].end());
    }
}

TEST(SegmentChainer, GoesOnFromBothEndsOfItsFirstSegment) {
    const auto lines = chained({{b, c}, {a, b}, {c, d}});
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_THAT(lines[0], testing::AnyOf(ElementsAre(a, b, c, d), ElementsAre(d, c, b, a)));
}

TEST(SegmentChainer, AppendsSeparateLinesInTheOrderOfTheirFirstSegments) {
    SliceLines given{{d, d}, {2}};
    SegmentChainer chainer(2);
    const std::vector<SliceSegment> segments = {{c, d}, {a, b}};
    chainer.chain(segments, given);
    const auto lines = oneByOne(given);
    ASSERT_THAT(lines, SizeIs(3));
    EXPECT_THAT(lines[0], ElementsAre(d, d));
    EXPECT_THAT(lines[1], testing::UnorderedElementsAre(c, d));
    EXPECT_THAT(lines[2], testing::UnorderedElementsAre(a, b));
}

TEST(SegmentChainer, OfSegmentsWithoutLengthTheFirstMakesALine) {
    const auto lines = chained({{a, a}, {c, c}});
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_THAT(lines[0], ElementsAre(a, a));
}

TEST(SegmentChainer, OfManySegmentsThatMeetInAPointTakesTheFirstTwo) {
    for (const int rays : {3, 200}) {
        std::vector<SliceSegment> star;
        for (int ray = 0; ray < rays; ++ray) {
            const SlicePoint tip = {std::cos(0.03 * ray), std::sin(0.03 * ray), 5};
            star.push_back(ray % 2 == 0 ? SliceSegment{a, tip} : SliceSegment{tip, a});
        }
        // All others touch the line; of what does not, a ring of its own is left.
        const SlicePoint p = {7, 7, 5};
        const SlicePoint q = {8, 7, 5};
        const SlicePoint r = {7, 8, 5};
        star.insert(star.end(), {{p, q}, {r, q}, {r, p}});
        const auto lines = chained(star);
        ASSERT_THAT(lines, SizeIs(2));
        EXPECT_THAT(lines[0], ElementsAre(star[0].second, a, star[1].first));
        EXPECT_THAT(lines[1], SizeIs(4));
        EXPECT_EQ(lines[1].front(), lines[1].back());
    }
}

TEST(SegmentChainer, WhereThreeSegmentsMeetGoesOnOverTheFirstInOrder) {
    const SlicePoint tip = {2, 0, 5};
    EXPECT_THAT(chained({{a, b}, {c, b}, {b, tip}})[0], testing::AnyOf(ElementsAre(a, b, c), ElementsAre(c, b, a)));
    EXPECT_THAT(chained({{a, b}, {b, tip}, {c, b}})[0], testing::AnyOf(ElementsAre(a, b, tip), ElementsAre(tip, b, a)));
}

TEST(SegmentChainer, ASegmentThatStandsTwiceDoesNotLeadBack) {
    EXPECT_THAT(chained({{a, b}, {b, a}, {b, c}})[0], testing::AnyOf(ElementsAre(a, b, c), ElementsAre(c, b, a)));
}

TEST(SegmentChainer, OfNoSegmentsMakesNoLine) {
    EXPECT_THAT(chained({}), IsEmpty());
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
        const SlicePoint first = {anyCoordinate(), anyCoordinate(), plane};
        SlicePoint second = first;
        for (const std::size_t i : {0U, 1U}) {
            const double shift = largestCoordinate(first) * 1e-10 * source.real(-1.1, 1.1);
            second[i] += source.once(3) ? 0 : shift;
        }
        PointCells cells(2);
        cells.reset(1000, 1);
        cells.put(first, 0);
        const PointCells::Buckets near = cells.near(second);
        const bool found = std::any_of(near.bucket, near.bucket + near.count,
                                       [&cells](std::uint32_t bucket) { return cells.head(bucket) == 0; });
        if (samePoint(first, second)) {
            ++same;
            ASSERT_TRUE(found) << "round " << round;
        }
    }
    EXPECT_GT(same, 5000);
}

} // namespace velmora::test
