#include "TextScan.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace velmora {
namespace {

// The number at the front of a text and what is left behind it; "none" when there is no number.
std::pair<double, std::string> numberOf(const std::string& text) {
    TextScan scan(text);
    double value = -77.0;
    if (!scan.takeNumber(value)) {
        EXPECT_EQ(scan.tell(), 0U);
        EXPECT_EQ(value, -77.0);
        return {0.0, "none"};
    }
    return {value, std::string(scan.rest())};
}

using Taken = std::pair<double, std::string>;

TEST(TextScan, NumbersAreCorrectlyRoundedAndEndAtWhatIsNoPartOfThem) {
    EXPECT_EQ(numberOf("0.1 2"), Taken(0.1, " 2"));
    EXPECT_EQ(numberOf("-.5,1"), Taken(-0.5, ",1"));
    EXPECT_EQ(numberOf("+3"), Taken(3.0, ""));
    EXPECT_EQ(numberOf("7."), Taken(7.0, ""));
    EXPECT_EQ(numberOf("1e3/2"), Taken(1000.0, "/2"));
    EXPECT_EQ(numberOf("3*0.0"), Taken(3.0, "*0.0"));
    EXPECT_EQ(numberOf("-0.14000000000000001"), Taken(-0.14, ""));
}

TEST(TextScan, FortranExponentsAreRead) {
    EXPECT_EQ(numberOf("1.0D+05"), Taken(1.0e5, ""));
    EXPECT_EQ(numberOf("1d-2 "), Taken(0.01, " "));
    EXPECT_EQ(numberOf("-2.5Q1"), Taken(-25.0, ""));
    EXPECT_EQ(numberOf("1.5-104"), Taken(1.5e-104, ""));
    EXPECT_EQ(numberOf("1.5+10"), Taken(1.5e10, ""));
}

TEST(TextScan, WhatIsTooSmallIsZeroAndWhatIsTooLargeIsNotFinite) {
    EXPECT_EQ(numberOf("1e-400"), Taken(0.0, ""));
    EXPECT_TRUE(std::signbit(numberOf("-1e-400").first));
    EXPECT_EQ(numberOf("1e999").first, std::numeric_limits<double>::infinity());
    EXPECT_EQ(numberOf("-1e999").first, -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(numberOf("nan").first));
    EXPECT_TRUE(std::isnan(numberOf("-NaN").first));
    EXPECT_TRUE(std::isinf(numberOf("Infinity").first));
    EXPECT_TRUE(std::isnan(numberOf("1.#QNAN 2").first));
    EXPECT_EQ(numberOf("1.#QNAN 2").second, " 2");
}

TEST(TextScan, WordsAreNoNumbers) {
    for (const char* const text : {"", "abc", "-", "+-1", ".", "e5", "1e", "1x", "2.5abc", "nano", "--1", "infx"}) {
        EXPECT_EQ(numberOf(text).second, "none") << text;
    }
}

TEST(TextScan, ANumberOfManyDigitsIsReadToItsEnd) {
    EXPECT_EQ(numberOf("0." + std::string(3000, '0') + "1e3001 z"), Taken(1.0, " z"));
    EXPECT_EQ(numberOf(std::string(10000, '1') + " z").second, " z");
}

TEST(TextScan, IntegersHaveRoomIn64Bits) {
    const auto integerOf = [](const std::string& text) {
        TextScan scan(text);
        std::int64_t value = -1;
        return scan.takeInteger(value) ? std::to_string(value) + "|" + std::string(scan.rest()) : "none";
    };
    EXPECT_EQ(integerOf("12/3"), "12|/3");
    EXPECT_EQ(integerOf("-7 "), "-7| ");
    EXPECT_EQ(integerOf("+4"), "4|");
    EXPECT_EQ(integerOf("9223372036854775808"), "none");
    EXPECT_EQ(integerOf("+-4"), "none");
    EXPECT_EQ(integerOf("x"), "none");
}

TEST(TextScan, LinesEndInEachOfTheThreeWays) {
    const std::string text = "a b\nc\r\nd\re";
    TextScan scan(text);
    EXPECT_EQ(scan.takeLine(), "a b");
    EXPECT_EQ(scan.takeLine(), "c");
    EXPECT_EQ(scan.takeLine(), "d");
    EXPECT_EQ(scan.takeLine(), "e");
    EXPECT_TRUE(scan.atEnd());
    EXPECT_EQ(scan.takeLine(), "");
}

TEST(TextScan, BlanksEndAtTheLineAndCommentsWithIt) {
    const std::string text = " \t\n # one\r # two\n  x";
    TextScan scan(text);
    EXPECT_FALSE(scan.skipBlanks());
    EXPECT_EQ(scan.tell(), 2U);
    EXPECT_TRUE(scan.skipComments('#'));
    EXPECT_EQ(scan.takeWord(), "x");
    EXPECT_FALSE(scan.skipComments('#'));
}

TEST(TextScan, ANulIsACharacterAndNoEnd) {
    const std::string text("a\0b", 3);
    TextScan scan(text);
    EXPECT_EQ(scan.takeWord().size(), 3U);
    EXPECT_TRUE(scan.atEnd());
}

} // namespace
} // namespace velmora
