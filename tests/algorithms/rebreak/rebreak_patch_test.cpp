#include "rebreak_patch.h"

#include <bit>
#include <cmath>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "rebreak_patch_reference.h"
#include "surface_samples.h"

namespace velmora::test {

namespace {

using reference::RebreakFields;

/// A law with the curves that it is for.
struct WholeLaw : RebreakLaw {
    CurveRange curves;
};

/// Equal steps along the chords, the whole of every section.
WholeLaw linearLaw(const Patch& patch, std::int32_t newCount) {
    WholeLaw law;
    law.linear = true;
    law.newCount = newCount;
    law.lastPoint = lineCount(patch);
    law.curves.last = countOf(patch);
    return law;
}

WholeLaw linearLineLaw(const Patch& patch, std::int32_t newCount) {
    WholeLaw law = linearLaw(patch, newCount);
    law.lastPoint = countOf(patch);
    law.curves.last = lineCount(patch);
    return law;
}

/// A flat patch whose sections are graded: x = 0, 1, 4, 9, ...
Patch gradedPatch(int sections, int points) {
    Patch patch = flatPatch(sections, points);
    for (PointList& section : patch) {
        for (zVec<double>& p : section) {
            p.x = p.x * p.x;
        }
    }
    return patch;
}

} // namespace

// ---- Sections -------------------------------------------------------------------------------------------------------

TEST(RebreakSections, OfOneSectionGivesEqualStepsAndLeavesTheOthers) {
    const Patch before = gradedPatch(4, 4);
    Patch patch = before;
    WholeLaw law = linearLaw(patch, 7);
    law.curves.first = 1;
    law.curves.last = 2;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[1]), Pointwise(DoubleNear(1e-12), {0.0, 1.5, 3.0, 4.5, 6.0, 7.5, 9.0}));
    EXPECT_THAT(along(patch[1], &zVec<double>::y), testing::Each(1.0));
    for (const std::size_t n : {0U, 2U, 3U}) {
        EXPECT_EQ(patch[n], before[n]);
    }
}

TEST(RebreakSections, BySplineOfAStraightSectionGivesEqualSteps) {
    Patch patch = gradedPatch(2, 5);
    WholeLaw law = linearLaw(patch, 9);
    law.linear = false;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-9), {0.0, 2.0, 4.0, 6.0, 8.0, 10.0, 12.0, 14.0, 16.0}));
}

TEST(RebreakSections, RunsFromTheFirstOfTheRangeToItsEnd) {
    const Patch before = gradedPatch(10, 4);
    Patch patch = before;
    WholeLaw law = linearLaw(patch, 6);
    law.curves.first = 2;
    rebreakSections(patch, law, law.curves);
    for (std::size_t n = 0; n < 10; ++n) {
        EXPECT_EQ(patch[n].size(), n < 2 ? 4U : 6U) << n;
    }
    EXPECT_EQ(patch[1], before[1]);
}

TEST(RebreakSections, CompressionIsTheLastStepDividedByTheFirst) {
    Patch patch = flatPatch(1, 9);
    WholeLaw law = linearLaw(patch, 5);
    law.compression = 8;
    rebreakSections(patch, law, law.curves);
    const std::vector<double> x = along(patch[0]);
    ASSERT_EQ(x.size(), 5U);
    // Four steps in the ratio 1, 2, 4, 8 over a length of 8.
    const double unit = 8.0 / 15.0;
    EXPECT_THAT(x, Pointwise(DoubleNear(1e-12), {0.0, unit, 3 * unit, 7 * unit, 8.0}));
}

TEST(RebreakSections, KeepTheOldPointsOutsideTheStretch) {
    Patch patch = flatPatch(1, 9);
    WholeLaw law = linearLaw(patch, 5);
    law.firstPoint = 3;
    law.lastPoint = 5;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 2.5, 3.0, 3.5, 4.0, 5.0, 6.0, 7.0, 8.0}));
}

TEST(RebreakSections, FitTakesTheSpacingOfTheLawSection) {
    Patch patch = flatPatch(2, 5);
    patch[0] = {{0, 0, 0}, {1, 0, 0}, {4, 0, 0}, {6, 0, 0}, {8, 0, 0}};
    for (zVec<double>& p : patch[1]) {
        p.x *= 4; // 0, 4, ... 16: twice the length
    }
    WholeLaw law = linearLaw(patch, 5);
    law.fitToLawCurve = true;
    law.curves.first = 1;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[1]), Pointwise(DoubleNear(1e-12), {0.0, 2.0, 8.0, 12.0, 16.0}));
}

TEST(RebreakSections, FitMeasuresTheLawSectionAsItWasBefore) {
    const PointList graded = {{0, 0, 0}, {1, 0, 0}, {4, 0, 0}, {6, 0, 0}, {8, 0, 0}};
    Patch patch = flatPatch(3, 5);
    patch[0] = graded;
    WholeLaw law = linearLaw(patch, 5);
    law.fitToLawCurve = true;
    rebreakSections(patch, law, law.curves); // the law section itself comes first
    for (std::size_t n = 1; n < 3; ++n) {
        EXPECT_THAT(along(patch[n]), Pointwise(DoubleNear(1e-12), {0.0, 0.5, 2.0, 3.0, 4.0})) << n;
    }
}

TEST(RebreakSections, AFirstPointBeyondASectionBecomesItsLastButOneForAllThatFollow) {
    Patch patch = {flatPatch(1, 5)[0], flatPatch(1, 9)[0]};
    WholeLaw law = linearLaw(patch, 3);
    law.firstPoint = 6;
    law.lastPoint = 9;
    law.curves.lawCurve = 1;
    rebreakSections(patch, law, law.curves);
    EXPECT_EQ(law.firstPoint, 4);
    EXPECT_EQ(law.lastPoint, 5);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 3.5, 4.0}));
    EXPECT_THAT(along(patch[1]), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 3.5, 4.0, 5.0, 6.0, 7.0, 8.0}));
}

TEST(RebreakSections, TheTailEndsWhereTheLawSectionEnds) {
    Patch patch = {flatPatch(1, 9)[0], flatPatch(1, 6)[0]};
    WholeLaw law = linearLaw(patch, 2);
    law.lastPoint = 3;
    law.curves.last = 1;
    law.curves.lawCurve = 1; // six points long
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 2.0, 3.0, 4.0, 5.0}));
}

TEST(RebreakSections, TheTailOfAShorterSectionEndsWithIt) {
    Patch patch = {flatPatch(1, 6)[0], flatPatch(1, 9)[0]};
    WholeLaw law = linearLaw(patch, 2);
    law.lastPoint = 3;
    law.curves.last = 1;
    law.curves.lawCurve = 1;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 2.0, 3.0, 4.0, 5.0}));
}

TEST(RebreakSections, AStretchOfFewerThanTwoPointsGivesTheOldPointsBack) {
    for (const bool spline : {false, true}) {
        for (const bool fit : {false, true}) {
            for (const auto& [first, last] : {std::pair{3, 3}, {4, 2}, {9, 9}}) {
                const Patch before = flatPatch(2, 5);
                Patch patch = before;
                WholeLaw law = linearLaw(patch, 7);
                law.linear = !spline;
                law.fitToLawCurve = fit;
                law.firstPoint = first;
                law.lastPoint = last == 9 ? 4 : last;
                if (last == 9) {
                    law.lastPoint = 1; // firstPoint becomes 4, behind it
                }
                rebreakSections(patch, law, law.curves);
                EXPECT_EQ(patch, before);
            }
        }
    }
}

TEST(RebreakSections, OfSectionsOfOnePointOrNoneGivesTheOldPointsBack) {
    const Patch before = {{{1, 2, 3}}, {}, flatPatch(1, 3)[0]};
    Patch patch = before;
    WholeLaw law = linearLaw(patch, 4);
    law.lastPoint = 3;
    rebreakSections(patch, law, law.curves);
    EXPECT_EQ(patch[0], before[0]);
    EXPECT_EQ(patch[1], before[1]);
}

TEST(RebreakSections, CoincidentPointsCountOnceInAStretchOfMoreThanThree) {
    Patch patch = {{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {3, 0, 0}, {4, 0, 0}}};
    WholeLaw law = linearLaw(patch, 5);
    law.linear = false;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-9), {0.0, 1.0, 2.0, 3.0, 4.0}));
}

TEST(RebreakSections, IndicesOutsideThePatchAreCutToIt) {
    Patch patch = flatPatch(2, 5);
    WholeLaw law = linearLaw(patch, 3);
    law.curves.first = -4;
    law.curves.last = 99;
    law.curves.lawCurve = 99;
    law.lastPoint = 99;
    rebreakSections(patch, law, law.curves);
    EXPECT_THAT(along(patch[0]), Pointwise(DoubleNear(1e-12), {0.0, 2.0, 4.0}));
    EXPECT_EQ(patch[1].size(), 3U);
    Patch none;
    rebreakSections(none, law, law.curves);
    EXPECT_TRUE(none.empty());
}

TEST(RebreakSections, AnEmptyRangeChangesNothing) {
    const Patch before = flatPatch(3, 5);
    Patch patch = before;
    WholeLaw law = linearLaw(patch, 3);
    law.curves.first = law.curves.last = 1;
    rebreakSections(patch, law, law.curves);
    EXPECT_EQ(patch, before);
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

TEST(RebreakLines, OfAllLinesChangesTheNumberOfSections) {
    Patch patch = flatPatch(5, 3);
    WholeLaw law = linearLineLaw(patch, 9);
    rebreakLines(patch, law, law.curves);
    ASSERT_EQ(patch.size(), 9U);
    for (std::size_t n = 0; n < 9; ++n) {
        EXPECT_THAT(along(patch[n]), ElementsAre(0.0, 1.0, 2.0));
        EXPECT_THAT(along(patch[n], &zVec<double>::y), testing::Each(DoubleNear(0.5 * static_cast<double>(n), 1e-12)));
    }
}

TEST(RebreakLines, OfOneLineLeavesTheOthers) {
    Patch patch = flatPatch(4, 3);
    for (std::size_t n = 0; n < 4; ++n) {
        patch[n][1].y = static_cast<double>(n * n);
    }
    Patch expected = patch;
    for (std::size_t n = 0; n < 4; ++n) {
        expected[n][1].y = 3.0 * static_cast<double>(n);
    }
    WholeLaw law = linearLineLaw(patch, 4);
    law.curves.first = 1;
    law.curves.last = 2;
    rebreakLines(patch, law, law.curves);
    for (std::size_t n = 0; n < 4; ++n) {
        EXPECT_EQ(patch[n][0], expected[n][0]);
        EXPECT_EQ(patch[n][2], expected[n][2]);
        EXPECT_NEAR(patch[n][1].y, expected[n][1].y, 1e-12);
    }
}

TEST(RebreakLines, KeepTheSectionsOutsideTheStretch) {
    Patch patch = flatPatch(6, 2);
    WholeLaw law = linearLineLaw(patch, 5);
    law.firstPoint = 2;
    law.lastPoint = 4;
    rebreakLines(patch, law, law.curves);
    ASSERT_EQ(patch.size(), 8U);
    std::vector<double> y;
    for (const PointList& section : patch) {
        y.push_back(section[1].y);
    }
    EXPECT_THAT(y, Pointwise(DoubleNear(1e-12), {0.0, 1.0, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0}));
}

TEST(RebreakLines, FitTakesTheSpacingOfTheLawLine) {
    Patch patch = flatPatch(4, 2);
    const double spacing[] = {0, 1, 2, 8};
    for (std::size_t n = 0; n < 4; ++n) {
        patch[n][0].y = spacing[n];
    }
    WholeLaw law = linearLineLaw(patch, 4);
    law.fitToLawCurve = true;
    law.curves.first = 1;
    rebreakLines(patch, law, law.curves);
    std::vector<double> y;
    for (const PointList& section : patch) {
        y.push_back(section[1].y);
    }
    EXPECT_THAT(y, Pointwise(DoubleNear(1e-12), {0.0, 0.375, 0.75, 3.0}));
}

TEST(RebreakLines, BothEndsAreCappedAtTheNumberOfSections) {
    const Patch before = flatPatch(4, 3);
    Patch patch = before;
    WholeLaw law = linearLineLaw(patch, 5);
    law.firstPoint = 50;
    law.lastPoint = 60;
    rebreakLines(patch, law, law.curves);
    EXPECT_EQ(law.firstPoint, 4);
    EXPECT_EQ(law.lastPoint, 4);
    EXPECT_EQ(patch, before); // a stretch of one section
    law = linearLineLaw(patch, 5);
    law.lastPoint = 60;
    rebreakLines(patch, law, law.curves);
    EXPECT_EQ(law.lastPoint, 4);
    EXPECT_EQ(patch.size(), 5U);
}

TEST(RebreakLines, OfAnIrregularPatchOrOneWithoutLinesChangesNothing) {
    Patch irregular = flatPatch(3, 4);
    irregular[1].pop_back();
    for (const Patch& before : {irregular, flatPatch(3, 0), Patch(), flatPatch(1, 4)}) {
        Patch patch = before;
        WholeLaw law = linearLineLaw(patch, 5);
        rebreakLines(patch, law, law.curves);
        EXPECT_EQ(patch, before);
    }
}

TEST(RebreakLines, IndicesOutsideThePatchAreCutToIt) {
    Patch patch = flatPatch(3, 2);
    WholeLaw law = linearLineLaw(patch, 5);
    law.curves.first = -1;
    law.curves.last = 77;
    law.curves.lawCurve = -3;
    law.firstPoint = -2;
    rebreakLines(patch, law, law.curves);
    EXPECT_EQ(patch.size(), 5U);
}

// ---- Against the plain form -----------------------------------------------------------------------------------------

namespace {

class RandomModels {
public:
    explicit RandomModels(unsigned seed) : engine_(seed) {}

    int whole(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine_); }
    bool once(int in) { return whole(1, in) == 1; }

    Patch patch(bool regular) {
        Patch patch;
        const int sections = whole(2, 7);
        const int points = whole(1, 12);
        for (int n = 0; n < sections; ++n) {
            patch.push_back(section(regular ? points : whole(0, 12)));
        }
        return patch;
    }

    RebreakFields fields(int curveLength) {
        RebreakFields f;
        f.regime = whole(1, 2);
        f.function = whole(1, 2);
        f.style = whole(1, 2);
        f.exactness = once(2) ? 0 : whole(0, 100);
        f.newCount = whole(2, 15);
        f.compression = once(2) ? 1 : std::exp(std::uniform_real_distribution<double>(-3, 3)(engine_));
        f.firstPoint = once(2) ? 1 : whole(1, 14);
        f.lastPoint = once(2) ? curveLength : whole(1, 14);
        f.capturedNumber = whole(1, 14);
        f.firstCurve = whole(1, 14);
        return f;
    }

private:
    /// Points that mostly move on, some standing on the one before.
    PointList section(int points) {
        PointList section;
        zVec<double> at(along(), along(), along());
        for (int m = 0; m < points; ++m) {
            if (!once(6)) {
                at = at + zVec<double>(std::abs(along()), along(), along());
            }
            section.push_back(at);
        }
        return section;
    }

    double along() { return std::uniform_real_distribution<double>(-1, 1)(engine_); }

    std::mt19937 engine_;
};

bool sameNumber(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool samePatch(const Patch& a, const Patch& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const PointList& s, const PointList& t) {
        return std::equal(s.begin(), s.end(), t.begin(), t.end(), [](const auto& p, const auto& q) {
            return sameNumber(p.x, q.x) && sameNumber(p.y, q.y) && sameNumber(p.z, q.z);
        });
    });
}

WholeLaw lawOf(const RebreakFields& f, int curves, int lawCurve) {
    const auto [first, last] = reference::rebreakRange(f, curves);
    WholeLaw law;
    law.linear = f.function == 2;
    law.fitToLawCurve = f.style == 2;
    law.exactness = f.exactness;
    law.newCount = f.newCount;
    law.compression = f.compression;
    law.firstPoint = f.firstPoint;
    law.lastPoint = f.lastPoint;
    law.curves.first = first;
    law.curves.last = last;
    law.curves.lawCurve = lawCurve;
    return law;
}

} // namespace

TEST(RebreakSections, GiveTheSameBitsAsThePlainForm) {
    RandomModels random(3);
    for (int round = 0; round < 4000; ++round) {
        Patch patch = random.patch(!random.once(3));
        RebreakFields fields = random.fields(lineCount(patch));
        const int lawCurve = random.whole(0, countOf(patch) - 1);
        WholeLaw law = lawOf(fields, countOf(patch), lawCurve);
        const Patch expected = reference::rebreakSectionsOf(patch, fields, lawCurve);
        rebreakSections(patch, law, law.curves);
        ASSERT_TRUE(samePatch(patch, expected)) << "round " << round;
        ASSERT_EQ(law.firstPoint, fields.firstPoint) << "round " << round;
        ASSERT_EQ(law.lastPoint, fields.lastPoint) << "round " << round;
    }
}

TEST(RebreakLines, GiveTheSameBitsAsThePlainForm) {
    RandomModels random(5);
    for (int round = 0; round < 4000; ++round) {
        Patch patch = random.patch(true);
        RebreakFields fields = random.fields(countOf(patch));
        int lawCurve = random.whole(0, lineCount(patch) - 1);
        WholeLaw law = lawOf(fields, lineCount(patch), lawCurve);
        const Patch expected = reference::rebreakLinesOf(patch, fields, lawCurve);
        rebreakLines(patch, law, law.curves);
        ASSERT_TRUE(samePatch(patch, expected)) << "round " << round;
        ASSERT_EQ(law.firstPoint, fields.firstPoint) << "round " << round;
        ASSERT_EQ(law.lastPoint, fields.lastPoint) << "round " << round;
    }
}

} // namespace velmora::test
