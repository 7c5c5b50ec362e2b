#include "interpolate_section.h"

#include "surface_samples.h"

namespace velmora::test {

namespace {

/// Sections at heights 0, 1, 3, 6: steps of 1, 2 and 3.
Patch ladder() {
    return {rowAt({0, 1, 2}, 0), rowAt({0, 1, 2}, 1), rowAt({0, 1, 2}, 3), rowAt({0, 1, 2}, 6)};
}

/// The height of section N after the move by k; the outcome must be Done.
double heightAfter(std::int32_t N, double k) {
    Patch patch = ladder();
    EXPECT_EQ(interpolateSection(patch, N, k), Interpolation::Done);
    const double height = patch[static_cast<std::size_t>(N)][0].y;
    EXPECT_EQ(patch[static_cast<std::size_t>(N)], rowAt({0, 1, 2}, height));
    return height;
}

/// The same for the fit to a point.
double heightFitted(std::int32_t N, const zVec<double>& target) {
    Patch patch = ladder();
    EXPECT_EQ(interpolateToPoint(patch, N, target), Interpolation::Done);
    return patch[static_cast<std::size_t>(N)][0].y;
}

} // namespace

TEST(Interpolate, WithCoefficientZeroGivesTheSectionAsItWas) {
    for (std::int32_t N = 0; N < 4; ++N) {
        Patch patch = ladder();
        interpolateSection(patch, N, 0);
        EXPECT_EQ(patch, ladder());
    }
}

TEST(Interpolate, OfAnInnerSectionGoesToTheNextOrThePreviousOne) {
    EXPECT_DOUBLE_EQ(heightAfter(1, 1), 3.0);
    EXPECT_DOUBLE_EQ(heightAfter(1, 0.5), 2.0);
    EXPECT_DOUBLE_EQ(heightAfter(1, -1), 0.0);
    EXPECT_DOUBLE_EQ(heightAfter(2, -0.5), 2.0);
}

TEST(Interpolate, OfABorderSectionMovesAlongItsOnlyStep) {
    EXPECT_DOUBLE_EQ(heightAfter(0, 0.5), 0.5);
    EXPECT_DOUBLE_EQ(heightAfter(0, -0.5), -0.5); // outwards
    EXPECT_DOUBLE_EQ(heightAfter(3, 0.5), 7.5);   // outwards
    EXPECT_DOUBLE_EQ(heightAfter(3, -1), 3.0);
}

TEST(Interpolate, NeedsThreeSections) {
    Patch patch = flatPatch(2, 4);
    EXPECT_EQ(interpolateSection(patch, 0, 0.5), Interpolation::TooFewSections);
    EXPECT_EQ(interpolateToPoint(patch, 0, {}), Interpolation::TooFewSections);
    EXPECT_EQ(patch, flatPatch(2, 4));
}

TEST(Interpolate, OutsideOfAGridMovesNothing) {
    Patch patch = ladder();
    for (const std::int32_t N : {-1, 4}) {
        EXPECT_EQ(interpolateSection(patch, N, 0.5), Interpolation::NotMoved);
        EXPECT_EQ(interpolateToPoint(patch, N, {}), Interpolation::NotMoved);
    }
    patch[2].resize(2);
    const Patch ragged = patch;
    EXPECT_EQ(interpolateSection(patch, 1, 0.5), Interpolation::NotMoved);
    EXPECT_EQ(patch, ragged);
}

TEST(InterpolateToPoint, OnTheSectionGivesItAsItWas) {
    for (std::int32_t N = 0; N < 4; ++N) {
        Patch patch = ladder();
        EXPECT_EQ(interpolateToPoint(patch, N, patch[static_cast<std::size_t>(N)][1]), Interpolation::Done);
        EXPECT_EQ(patch, ladder()) << N;
    }
}

TEST(InterpolateToPoint, OfAnInnerSectionGoesTowardsTheTargetsSide) {
    EXPECT_DOUBLE_EQ(heightFitted(1, {1, 1.5, 0}), 1.5);
    EXPECT_DOUBLE_EQ(heightFitted(1, {1, 0.25, 0}), 0.25);
    EXPECT_DOUBLE_EQ(heightFitted(2, {2, 2.5, 0}), 2.5);
}

TEST(InterpolateToPoint, MeasuresAtThePointNearestToTheTarget) {
    Patch patch = ladder();
    patch[2] = {{0, 3, 0}, {1, 5, 0}, {2, 3, 0}}; // the step at the middle point is 4
    EXPECT_EQ(interpolateToPoint(patch, 1, {1, 2, 0}), Interpolation::Done);
    EXPECT_DOUBLE_EQ(patch[1][1].y, 2.0);
    EXPECT_DOUBLE_EQ(patch[1][0].y, 1.5); // a quarter of the step of 2
}

TEST(InterpolateToPoint, FartherThanBothNeighboursIsTooFar) {
    Patch patch = ladder();
    EXPECT_EQ(interpolateToPoint(patch, 1, {1, 1, 2.5}), Interpolation::TooFar);
    EXPECT_EQ(patch, ladder());
    EXPECT_EQ(interpolateToPoint(patch, 1, {1, 1, 1.9}), Interpolation::Done); // between 1 and 2 away
}

TEST(InterpolateToPoint, OnTheSideOfACoincidentNeighbourIsADoubleLine) {
    Patch next = ladder();
    next[2] = next[1];
    const Patch before = next;
    EXPECT_EQ(interpolateToPoint(next, 1, next[1][1]), Interpolation::DoubleLine);
    EXPECT_EQ(next, before);
    Patch previous = ladder();
    previous[0] = previous[1];
    EXPECT_EQ(interpolateToPoint(previous, 1, {1, 0.5, 0}), Interpolation::DoubleLine);
}

TEST(InterpolateToPoint, OfABorderSectionTakesTheSignThatComesNearer) {
    EXPECT_DOUBLE_EQ(heightFitted(0, {1, 0.25, 0}), 0.25);
    EXPECT_DOUBLE_EQ(heightFitted(0, {1, -0.25, 0}), -0.25);
    EXPECT_DOUBLE_EQ(heightFitted(3, {1, 7.0, 0}), 7.0);
    EXPECT_DOUBLE_EQ(heightFitted(3, {1, 5.0, 0}), 5.0);
}

TEST(InterpolateToPoint, OfABorderSectionTakesThePositiveSignInATie) {
    EXPECT_DOUBLE_EQ(heightFitted(0, {1, 0, 0.5}), 0.5);
}

TEST(InterpolateToPoint, OfABorderSectionWithACoincidentNeighbourStopsSilently) {
    Patch patch = ladder();
    patch[1] = patch[0];
    EXPECT_EQ(interpolateToPoint(patch, 0, {1, 5, 0}), Interpolation::NotMoved);
    patch = ladder();
    patch[3] = patch[2];
    EXPECT_EQ(interpolateToPoint(patch, 3, {1, 5, 0}), Interpolation::NotMoved);
}

} // namespace velmora::test
