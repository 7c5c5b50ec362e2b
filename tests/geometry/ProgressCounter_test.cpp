#include "ProgressCounter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace velmora::test {
namespace {

using testing::ElementsAre;

struct Told {
    std::vector<double> fractions;
    ReportProgress report = [this](double fraction) { fractions.push_back(fraction); };
};

TEST(ProgressCounter, TellsOfEachPartOfAFew) {
    Told told;
    ProgressCounter counter(told.report, 4);
    for (int i = 0; i < 4; ++i) {
        counter.advance();
    }
    EXPECT_THAT(told.fractions, ElementsAre(0.25, 0.5, 0.75, 1.0));
}

TEST(ProgressCounter, TellsAThousandTimesOfMany) {
    Told told;
    ProgressCounter counter(told.report, 50'000);
    for (int i = 0; i < 50'000; ++i) {
        counter.advance();
    }
    ASSERT_EQ(told.fractions.size(), 1000U);
    EXPECT_EQ(told.fractions.front(), 0.001);
    EXPECT_EQ(told.fractions.back(), 1.0);
}

TEST(ProgressCounter, NeverTellsMoreThanAllAndNothingToNobody) {
    Told told;
    ProgressCounter counter(told.report, 0);
    counter.advance(5);
    EXPECT_THAT(told.fractions, ElementsAre(1.0));
    const ReportProgress nobody;
    ProgressCounter silent(nobody, 1);
    EXPECT_NO_THROW(silent.advance());
}

TEST(PartOfProgress, GoesFromOnePlaceToAnother) {
    Told told;
    const ReportProgress part = partOfProgress(told.report, 0.5, 0.75);
    part(0.0);
    part(1.0);
    EXPECT_THAT(told.fractions, ElementsAre(0.5, 0.75));
    const ReportProgress nobody;
    EXPECT_NO_THROW(partOfProgress(nobody, 0.0, 1.0)(0.5));
}

} // namespace
} // namespace velmora::test
