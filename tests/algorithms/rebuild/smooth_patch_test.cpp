#include "smooth_patch.h"

#include <cmath>

#include "surface_samples.h"

namespace velmora::test {

namespace {

void expectNear(const Patch& actual, const Patch& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t n = 0; n < expected.size(); ++n) {
        for (const auto axis : {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z}) {
            EXPECT_THAT(along(actual[n], axis), Pointwise(DoubleNear(tolerance), along(expected[n], axis))) << n;
        }
    }
}

Patch smoothed(Patch patch, bool spline) {
    smoothSections(patch, spline);
    return patch;
}

} // namespace

TEST(Smooth, OfAFlatUniformPatchLeavesIt) {
    for (const bool along : {true, false}) {
        Patch patch = flatPatch(6, 5);
        bool spline = along;
        smoothSections(patch, spline);
        smoothLines(patch, spline);
        expectNear(patch, flatPatch(6, 5), 1e-9);
        EXPECT_EQ(spline, along);
    }
}

TEST(SmoothSections, GoesOverFromTheFirstSpacingToTheLast) {
    const Patch before = {rowAt({0, 1, 4}), rowAt({0, 3, 8}, 1), rowAt({0, 3, 8}, 2), rowAt({0, 3, 8}, 3),
                          rowAt({0, 3, 4}, 4)};
    const Patch after = smoothed(before, false);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[4], before[4]);
    // 1/4 to 3/4 in four equal steps, over a length of 8.
    EXPECT_THAT(along(after[1]), Pointwise(DoubleNear(1e-12), {0.0, 3.0, 8.0}));
    EXPECT_THAT(along(after[2]), Pointwise(DoubleNear(1e-12), {0.0, 4.0, 8.0}));
    EXPECT_THAT(along(after[3]), Pointwise(DoubleNear(1e-12), {0.0, 5.0, 8.0}));
}

TEST(SmoothSections, BySplineOfThreePointsGetsEqualSteps) {
    const Patch before = {rowAt({0, 1, 4}), rowAt({0, 3, 8}, 1), rowAt({0, 1, 4}, 2)};
    EXPECT_THAT(along(smoothed(before, true)[1]), ElementsAre(0, 4, 8));
}

TEST(SmoothSections, TakesAnEqualSpacingFromABorderOfNoLength) {
    const Patch before = {rowAt({0, 0, 0.00009}), rowAt({0, 3, 8}, 1), rowAt({0, 0, 0}, 2)};
    EXPECT_THAT(along(smoothed(before, false)[1]), Pointwise(DoubleNear(1e-12), {0.0, 4.0, 8.0}));
}

TEST(SmoothLines, DoesToLinesWhatSmoothSectionsDoesToSections) {
    Patch patch = flatPatch(3, 5);
    const double first[] = {0, 1, 4};
    const double last[] = {0, 3, 4};
    for (std::size_t i = 0; i < 3; ++i) {
        patch[i][0].y = first[i];
        patch[i][4].y = last[i];
        for (std::size_t j = 1; j < 4; ++j) {
            patch[i][j].y *= 4; // length 8
        }
    }
    bool spline = false;
    smoothLines(patch, spline);
    EXPECT_THAT(along(patch[1], &zVec<double>::y), Pointwise(DoubleNear(1e-12), {1.0, 3.0, 4.0, 5.0, 3.0}));
}

TEST(SmoothSections, TurnsToTheChordsAtCoincidentPointsAmongTheFirst) {
    Patch patch = flatPatch(5, 6);
    patch[2][3] = patch[2][2];
    bool spline = true;
    smoothSections(patch, spline);
    EXPECT_FALSE(spline);
}

TEST(SmoothSections, LooksAtAsManyPointsAsThereAreSections) {
    Patch patch = flatPatch(4, 7);
    patch[1][5] = patch[1][4]; // behind the first four
    bool spline = true;
    smoothSections(patch, spline);
    EXPECT_TRUE(spline);
    for (const PointList& section : patch) {
        for (const zVec<double>& p : section) {
            EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z));
        }
    }
    Patch more = flatPatch(12, 3); // more sections than points
    more[1][2] = more[1][1];
    smoothSections(more, spline);
    EXPECT_FALSE(spline);
}

TEST(SmoothSections, OfThreeSectionsLooksAtNoPoints) {
    Patch patch = flatPatch(3, 6);
    patch[1][1] = patch[1][0];
    bool spline = true;
    smoothSections(patch, spline);
    EXPECT_TRUE(spline);
}

TEST(SmoothLines, LooksAtAllPointsOfALine) {
    Patch patch = flatPatch(7, 4);
    patch[6][1] = patch[5][1];
    bool spline = true;
    smoothLines(patch, spline);
    EXPECT_FALSE(spline);
}

TEST(Smooth, SectionsThenLinesDiffersFromLinesThenSections) {
    Patch patch = flatPatch(5, 5);
    for (std::size_t i = 0; i < 5; ++i) {
        for (std::size_t j = 0; j < 5; ++j) {
            patch[i][j].z = 0.3 * static_cast<double>((i * i + 3 * j * i) % 5);
        }
    }
    Patch sectionsFirst = patch;
    Patch linesFirst = patch;
    bool spline = true;
    smoothSections(sectionsFirst, spline);
    smoothLines(sectionsFirst, spline);
    smoothLines(linesFirst, spline);
    smoothSections(linesFirst, spline);
    EXPECT_NE(sectionsFirst, linesFirst);
}

TEST(Smooth, OfFewCurvesOrNoGridLeavesThePatch) {
    bool spline = true;
    for (const Patch& before : {Patch{}, flatPatch(2, 6), flatPatch(1, 3), Patch{{}, {}, {}}, flatPatch(4, 1)}) {
        EXPECT_EQ(smoothed(before, true), before);
    }
    Patch ragged = flatPatch(4, 5);
    ragged[2].resize(3);
    const Patch before = ragged;
    smoothSections(ragged, spline);
    smoothLines(ragged, spline);
    EXPECT_EQ(ragged, before);
    Patch narrow = flatPatch(6, 2);
    smoothLines(narrow, spline);
    EXPECT_EQ(narrow, flatPatch(6, 2));
}

} // namespace velmora::test
