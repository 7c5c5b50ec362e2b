#include "PartRebreaker.h"

#include <limits>

#include "surface_samples.h"

namespace velmora::test {

namespace {

/// Points 0 to 9 on the x axis.
PointList ruler() {
    return flatPatch(1, 10)[0];
}

PartLaw linearBefore(std::int32_t point, std::int32_t newCount) {
    PartLaw law;
    law.linear = true;
    law.lastPoint = point;
    law.newCount = newCount;
    return law;
}

PartLaw linearAfter(std::int32_t point, std::int32_t length, std::int32_t newCount) {
    PartLaw law = linearBefore(length, newCount);
    law.after = true;
    law.firstPoint = point;
    return law;
}

PartResult rebuild(PointList& section, const PartLaw& law) {
    return PartRebreaker(law).rebuild(section);
}

/// A stretch of length 10 that ends at x = 10, with steps of 1 and 1.5 beyond it.
PointList growingBehind() {
    return rowAt({0, 1, 2, 10, 11, 12.5, 20});
}

/// Its mirror image: steps of 1.5 and 1 in front of a stretch of length 10 that begins at x = 10.
PointList growingInFront() {
    return rowAt({0, 7.5, 9, 10, 18, 19, 20});
}

} // namespace

TEST(RebreakPart, BeforeRespacesUpToThePointAndKeepsTheRest) {
    PointList section = ruler();
    const PartResult result = rebuild(section, linearBefore(5, 9));
    EXPECT_TRUE(result.rebuilt && result.hasLength && result.fitted);
    EXPECT_THAT(along(section),
                Pointwise(DoubleNear(1e-12), {0.0, 0.5, 1.0, 1.5, 2.0, 2.5, 3.0, 3.5, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0}));
}

TEST(RebreakPart, AfterRespacesFromThePointAndKeepsTheRest) {
    PointList section = ruler();
    EXPECT_TRUE(rebuild(section, linearAfter(7, 10, 3)).rebuilt);
    EXPECT_THAT(along(section), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.5, 9.0}));
}

TEST(RebreakPart, CompressionIsTheLastStepDividedByTheFirst) {
    PointList section = ruler();
    PartLaw law = linearBefore(8, 4); // steps in the ratio 1, 2, 4 over a length of 7
    law.compression = 4;
    rebuild(section, law);
    EXPECT_THAT(along(section), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 3.0, 7.0, 8.0, 9.0}));
}

TEST(RebreakPart, AlongTheChordsDoesNotUseTheExactness) {
    PointList plain = ruler();
    plain[3].y = 0.5;
    PointList exact = plain;
    PartLaw law = linearBefore(9, 8);
    rebuild(plain, law);
    law.exactness = 100;
    rebuild(exact, law);
    EXPECT_EQ(plain, exact);
}

TEST(RebreakPart, OnePointHasNoLengthAndTheSectionStays) {
    PointList section = ruler();
    const PartResult before = rebuild(section, linearBefore(1, 5));
    EXPECT_FALSE(before.hasLength || before.rebuilt);
    const PartResult after = rebuild(section, linearAfter(10, 10, 5));
    EXPECT_FALSE(after.hasLength || after.rebuilt);
    EXPECT_EQ(section, ruler());
}

TEST(RebreakPart, CoincidentPointsHaveNoLengthAndTheSectionStays) {
    const PointList before = rowAt({2, 2, 2.0000005, 3});
    PointList section = before;
    const PartResult result = rebuild(section, linearBefore(3, 5));
    EXPECT_FALSE(result.hasLength || result.rebuilt);
    EXPECT_EQ(section, before);
}

TEST(RebreakPart, InAGridCoincidentPointsBecomeCopies) {
    PointList section = rowAt({2, 2, 2, 3});
    PartLaw law = linearBefore(3, 5);
    law.keepGrid = true;
    const PartResult result = rebuild(section, law);
    EXPECT_FALSE(result.hasLength);
    EXPECT_TRUE(result.rebuilt);
    EXPECT_EQ(section, rowAt({2, 2, 2, 2, 2, 3}));
}

TEST(RebreakPart, StretchBeyondTheSectionIsCutToIt) {
    PointList section = ruler();
    EXPECT_TRUE(rebuild(section, linearAfter(9, 50, 3)).rebuilt);
    EXPECT_THAT(along(section), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 8.5, 9.0}));
    const PointList once = section;
    EXPECT_FALSE(rebuild(section, linearAfter(50, 60, 3)).rebuilt);
    EXPECT_EQ(section, once);
    PointList nothing;
    EXPECT_FALSE(rebuild(nothing, linearBefore(1, 3)).rebuilt);
}

// ---- Compress && Fit ------------------------------------------------------------------------------------------------

TEST(RebreakPartFit, OnAUniformSectionWithCompressionOneLeavesItAtOne) {
    PointList section = ruler();
    PartLaw law = linearBefore(5, 9);
    law.fit = true;
    EXPECT_TRUE(rebuild(section, law).fitted);
    EXPECT_NEAR(section[8].x - section[7].x, 0.5, 1e-12); // and not the step of 1 beyond the point
}

TEST(RebreakPartFit, BeforeWithCompressionBelowOneMeetsTheNextStepWhereStepsGrow) {
    PointList section = growingBehind();
    PartLaw law = linearBefore(4, 6);
    law.fit = true;
    law.compression = 0.5;
    EXPECT_TRUE(rebuild(section, law).fitted);
    ASSERT_EQ(section.size(), 9U);
    EXPECT_NEAR(section[5].x, 10.0, 1e-12);
    EXPECT_NEAR(section[5].x - section[4].x, 1.0, 0.01);
    EXPECT_GT(section[1].x - section[0].x, 2.0);
}

TEST(RebreakPartFit, BeforeWithCompressionBelowOneContinuesStepsThatFall) {
    PointList section = rowAt({0, 1, 2, 10, 11, 11.8, 20}); // steps of 1 and 0.8: the one before would be 1.2
    PartLaw law = linearBefore(4, 6);
    law.fit = true;
    law.compression = 0.5;
    EXPECT_TRUE(rebuild(section, law).fitted);
    EXPECT_NEAR(section[5].x - section[4].x, 1.2, 0.012);
}

TEST(RebreakPartFit, BeforeWithCompressionAboveOneMeetsOrContinuesTheOtherWayRound) {
    PartLaw law = linearBefore(4, 6); // equal steps would be 2
    law.fit = true;
    law.compression = 3;
    PointList falling = rowAt({0, 1, 2, 10, 13, 15, 20}); // 3 and 2: meets 3
    EXPECT_TRUE(rebuild(falling, law).fitted);
    EXPECT_NEAR(falling[5].x - falling[4].x, 3.0, 0.03);
    PointList growing = rowAt({0, 1, 2, 10, 15, 21, 22}); // 5 and 6: continues to 4
    EXPECT_TRUE(rebuild(growing, law).fitted);
    EXPECT_NEAR(growing[5].x - growing[4].x, 4.0, 0.04);
}

TEST(RebreakPartFit, AfterMeetsTheStepInFrontOfThePoint) {
    PointList section = growingInFront();
    PartLaw law = linearAfter(4, 7, 6);
    law.fit = true;
    law.compression = 2;
    EXPECT_TRUE(rebuild(section, law).fitted);
    ASSERT_EQ(section.size(), 9U);
    EXPECT_EQ(section[3].x, 10.0);
    EXPECT_NEAR(section[4].x - section[3].x, 1.0, 0.01);
}

TEST(RebreakPartFit, AfterWithCompressionBelowOneMeetsTheStepWhetherStepsGrowOrFall) {
    PartLaw law = linearAfter(4, 7, 6);
    law.fit = true;
    law.compression = 0.5;
    for (const double second : {2.0, 4.0}) {
        PointList section = rowAt({0, 10 - 3 - second, 10 - 3, 10, 18, 19, 20});
        EXPECT_TRUE(rebuild(section, law).fitted) << second;
        EXPECT_NEAR(section[4].x - section[3].x, 3.0, 0.03) << second;
    }
}

TEST(RebreakPartFit, AfterWithCompressionAboveOneContinuesStepsThatGrow) {
    PartLaw law = linearAfter(4, 7, 6);
    law.fit = true;
    law.compression = 2;
    PointList section = rowAt({0, 9.0 - 0.5, 9, 10, 18, 19, 20}); // 0.5 and 1: the next would be 1.5
    EXPECT_TRUE(rebuild(section, law).fitted);
    EXPECT_NEAR(section[4].x - section[3].x, 1.5, 0.015);
}

TEST(RebreakPartFit, ThatIsOutOfReachIsRebuiltWithTheCompressionReached) {
    PointList section = growingBehind();
    PartLaw law = linearBefore(4, 6);
    law.fit = true;
    law.compression = 2; // the step should be 0.5, but above 1 it never falls below 2
    const PartResult result = rebuild(section, law);
    EXPECT_FALSE(result.fitted);
    EXPECT_TRUE(result.rebuilt);
    EXPECT_NEAR(section[5].x - section[4].x, 2.0, 1e-4);
}

TEST(RebreakPartFit, EndsOnAStepThatIsNoNumber) {
    PointList section = growingBehind();
    section[4].x = std::numeric_limits<double>::quiet_NaN();
    PartLaw law = linearBefore(4, 3);
    law.fit = true;
    law.compression = 4;
    const PartResult result = rebuild(section, law);
    EXPECT_FALSE(result.fitted);
    EXPECT_NEAR(section[1].x, 2.0, 1e-12); // two steps in the ratio 1 to 4: the compression typed
}

TEST(RebreakPartFit, MeasuresTheSearchAlongTheChordsForTheSplineToo) {
    PointList spline = growingBehind();
    PointList chords = growingBehind();
    PartLaw law = linearBefore(4, 6);
    law.fit = true;
    law.compression = 0.5;
    rebuild(chords, law);
    law.linear = false;
    EXPECT_TRUE(rebuild(spline, law).fitted);
    EXPECT_THAT(along(spline), Pointwise(DoubleNear(1e-9), along(chords)));
}

} // namespace velmora::test
