#include "Respacer.h"

#include "surface_samples.h"

namespace velmora::test {

namespace {

Respacer holding(const std::vector<double>& x) {
    Respacer respacer;
    for (const double value : x) {
        respacer.add({value, 0, 0});
    }
    return respacer;
}

std::vector<double> outputsOf(const Respacer& respacer, std::int32_t count) {
    std::vector<double> x;
    for (std::int32_t i = 0; i < count; ++i) {
        x.push_back(respacer.output(i).x);
    }
    return x;
}

} // namespace

TEST(RunningLength, AddsUpTheChords) {
    const PointList points = {{0, 0, 0}, {3, 4, 0}, {3, 4, 2}};
    const auto pointAt = [&points](std::size_t i) { return points[i]; };
    EXPECT_THAT(runningLength(3, pointAt), ElementsAre(0, 5, 7));
    EXPECT_TRUE(runningLength(0, pointAt).empty());
}

TEST(Respacer, HoldsThePointsAddedSinceItWasCleared) {
    Respacer respacer = holding({0, 100});
    respacer.clear();
    respacer.add({0, 0, 0});
    respacer.add({3, 4, 0});
    EXPECT_EQ(respacer.count(), 2);
    EXPECT_EQ(respacer.length(), 5);
}

TEST(Respacer, DropsRepeatedNeighbours) {
    Respacer respacer = holding({0, 1, 1, 2});
    EXPECT_FALSE(respacer.hasCoincident(2));
    EXPECT_TRUE(respacer.hasCoincident(3));
    EXPECT_TRUE(respacer.hasCoincident(100));
    respacer.dropCoincident();
    EXPECT_EQ(respacer.count(), 3);
    EXPECT_FALSE(respacer.hasCoincident(3));
    EXPECT_EQ(respacer.length(), 2);
}

TEST(Respacer, AChordIsZeroOnlyBetweenEqualPoints) {
    EXPECT_TRUE(holding({0, 1, 1}).hasZeroChord());
    EXPECT_FALSE(holding({0, 1, 1 + 1e-12}).hasZeroChord());
    EXPECT_FALSE(holding({0}).hasZeroChord());
}

TEST(Respacer, RespacesAlongTheChordsOrTheSpline) {
    Respacer respacer = holding({0, 1, 3, 4});
    respacer.respace(false, 5, 1, 0);
    EXPECT_THAT(outputsOf(respacer, 5), ElementsAre(0, 1, 2, 3, 4));
    respacer.respace(true, 5, 1, 0);
    EXPECT_THAT(outputsOf(respacer, 5), Pointwise(DoubleNear(1e-12), {0.0, 1.0, 2.0, 3.0, 4.0}));
}

TEST(Respacer, RespacesByALawThatTheSplineDividesInPlace) {
    Respacer respacer = holding({0, 1, 2, 3});
    std::vector<double> law = {0, 1, 2, 4};
    respacer.respaceByLaw(false, 4, 0, law.data());
    EXPECT_THAT(outputsOf(respacer, 4), Pointwise(DoubleNear(1e-12), {0.0, 0.75, 1.5, 3.0}));
    EXPECT_THAT(law, ElementsAre(0, 1, 2, 4));
    respacer.respaceByLaw(true, 4, 0, law.data());
    EXPECT_THAT(outputsOf(respacer, 4), Pointwise(DoubleNear(1e-12), {0.0, 0.75, 1.5, 3.0}));
    EXPECT_THAT(law, ElementsAre(0, 0.25, 0.5, 1));
}

TEST(Respacer, PutsOutputsThatAreNotReachedOnTheEnd) {
    Respacer respacer = holding({0, 1, 4});
    double law[] = {0, 2, 0.25, 1}; // the second target lies behind the end, where the kernel stops
    respacer.respaceByLaw(false, 4, 0, law);
    EXPECT_THAT(outputsOf(respacer, 4), ElementsAre(0, 4, 4, 4));
}

} // namespace velmora::test
