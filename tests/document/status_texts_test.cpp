#include "status_texts.h"

#include <clocale>

#include <gtest/gtest.h>

namespace velmora::test {

TEST(StatusTexts, CountFromOne) {
    EXPECT_EQ(capturedPointText(false, {0, 1, 2}, {1.5, -2, 0}),
              "Captured point: (Patch K=1, Section N=2, Point M=3) X=1.500000, Y=-2.000000, Z=0.000000");
    EXPECT_EQ(capturedPointText(true, {4, 5, 6}, {0, 0, 0}),
              "Captured point: (Patch K=5, Line N=6, Point M=7) X=0.000000, Y=0.000000, Z=0.000000");
    EXPECT_EQ(capturedSectionText(0, 2, 81), "Captured section: Patch K=1, Section N=3, Points M=81");
    EXPECT_EQ(capturedLineText(0, 2, 81), "Captured line: Patch K=1, Line N=3, Points M=81 ");
    EXPECT_EQ(inputtedLineText(1, 2), "Captured line: Patch K=2, Line N=3  // Press right button to continue ");
    EXPECT_EQ(capturedPatchText(3), "Captured patch: Patch K=4 // Press right button to continue ");
}

TEST(StatusTexts, EndWithTheContinueClauses) {
    EXPECT_STREQ(pointContinueClause, " // Press right button to continue ");
    EXPECT_STREQ(curveContinueClause, "  // Press right button to continue ");
}

TEST(FixedText, HasSixDigitsBehindThePoint) {
    EXPECT_EQ(fixedText(0), "0.000000");
    EXPECT_EQ(fixedText(0.0000004), "0.000000");
    EXPECT_EQ(fixedText(2.0 / 3.0), "0.666667");
    EXPECT_EQ(fixedText(-1234567.25), "-1234567.250000");
}

TEST(FixedText, WritesTheLargestNumberInFull) {
    const std::string text = fixedText(1.7976931348623157e308);
    EXPECT_EQ(text.size(), 309U + 7U);
    EXPECT_EQ(text.substr(0, 17), "17976931348623157");
    EXPECT_EQ(fixedText(-1.7976931348623157e308), "-" + text);
}

} // namespace velmora::test
