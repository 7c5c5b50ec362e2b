#include "plain_decimal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

#include "format_test_tools.h"

namespace velmora {
namespace {

using test::bitsOf;

/// Whether the text was converted; if it was, then as std::from_chars does it.
bool isConverted(const std::string& text) {
    constexpr double untouched = -7777.0;
    const char* const end = text.data() + text.size();
    double value = untouched;
    const char* const stop = convertPlainDecimal(text.data(), end, value);
    if (stop == nullptr) {
        return false;
    }
    double expected = untouched;
    const auto [behind, error] = std::from_chars(text.data(), end, expected);
    EXPECT_EQ(error, std::errc{}) << text;
    EXPECT_EQ(stop, behind) << text;
    EXPECT_EQ(bitsOf(value), bitsOf(expected)) << text;
    return true;
}

class PlainDecimal : public testing::Test {
protected:
    std::mt19937_64 random_{36};

    std::size_t below(std::size_t count) { return random_() % count; }

    std::string digits(std::size_t count) {
        std::string text;
        while (text.size() < count) {
            // Runs of zeros and nines stand where numbers are rounded.
            const std::size_t kind = below(4);
            const std::size_t run = kind < 2 ? 1 : std::min(1 + below(6), count - text.size());
            text += kind == 2   ? std::string(run, '0')
                    : kind == 3 ? std::string(run, '9')
                                : std::string(1, static_cast<char>('0' + below(10)));
        }
        return text;
    }

    std::string exponent() {
        static constexpr std::array<std::string_view, 3> signs{"", "+", "-"};
        return (below(2) == 0 ? "e" : "E") + std::string(signs[below(3)]) + digits(1 + below(2));
    }

    std::string spelling() {
        std::string text = (below(2) == 0 ? "-" : "") + digits(below(5) == 0 ? below(22) : below(3));
        text += below(8) == 0 ? "" : "." + digits(below(22));
        text += below(2) == 0 ? "" : exponent();
        return text + std::string(1, " \nx,e-.5"[below(8)]);
    }

    /// As printf writes it.
    std::string printed(const char* format, double value) {
        std::array<char, 64> text{};
        const int length = std::snprintf(text.data(), text.size(), format, value);
        return {text.data(), static_cast<std::size_t>(length)};
    }
};

TEST_F(PlainDecimal, AnySpellingIsConvertedAsTheLibraryDoesItOrNotAtAll) {
    int converted = 0;
    for (int i = 0; i < 2'000'000 && !HasFailure(); ++i) {
        converted += isConverted(spelling()) ? 1 : 0;
    }
    EXPECT_GT(converted, 1'000'000);
}

TEST_F(PlainDecimal, WhatProgramsWriteIsConverted) {
    std::uniform_real_distribution<double> power(-7.0, 9.0);
    for (int i = 0; i < 200'000 && !HasFailure(); ++i) {
        const double value = std::copysign(std::pow(10.0, power(random_)), below(2) == 0 ? -1.0 : 1.0);
        for (const char* const format : {"%.16e ", "%.17g ", "%.9g ", "%.6f ", "%g "}) {
            const std::string text = printed(format, value);
            // Of the longest spellings some have more than 19 digits, as zeros in front count.
            EXPECT_TRUE(isConverted(text) || text.size() > 21) << text;
        }
    }
}

/// A number in the middle of two doubles is rounded to the even one; one digit behind it decides otherwise.
TEST_F(PlainDecimal, TheMiddleOfTwoDoublesIsNeverRoundedWrongly) {
    for (int i = 0; i < 300'000 && !HasFailure(); ++i) {
        const std::uint64_t mantissa = (std::uint64_t{1} << 53) + (random_() >> 11);
        for (const std::uint64_t middle : {2 * mantissa + 1, 2 * mantissa, 4 * mantissa + 2, 4 * mantissa + 3}) {
            const std::string text = std::to_string(middle);
            isConverted(text + ' ');
            isConverted(text + ".0 ");
            isConverted(text.substr(0, 3) + '.' + text.substr(3) + "e" + std::to_string(text.size() - 3) + ' ');
            isConverted(std::to_string(middle + 1) + "e-" + std::to_string(below(30)) + ' ');
        }
    }
}

TEST(ConvertPlainDecimal, LeavesOtherSpellingsToTheLibrary) {
    for (const char* const text : {"", " ", "-", ".", "-.", "e5", "1e", "1e+", "1e-x", "1e100", "+1", "inf", "nan",
                                   "12345678901234567890", "0.12345678901234567890"}) {
        EXPECT_FALSE(isConverted(text)) << text;
    }
}

TEST(ConvertPlainDecimal, KnowsValuesThatAreWorkedOutByHand) {
    const auto valueOf = [](const std::string& text) {
        double value = 0.0;
        EXPECT_NE(convertPlainDecimal(text.data(), text.data() + text.size(), value), nullptr) << text;
        return bitsOf(value);
    };
    EXPECT_EQ(valueOf("0.5 "), bitsOf(0x1p-1));
    EXPECT_EQ(valueOf("-0 "), std::uint64_t{1} << 63);
    EXPECT_EQ(valueOf("9007199254740992 "), bitsOf(0x1p53));
    EXPECT_EQ(valueOf("1.8446744073709552e19 "), bitsOf(0x1p64));
    EXPECT_EQ(valueOf("0.0009765625 "), bitsOf(0x1p-10));
    EXPECT_EQ(valueOf("1.0000000000000002 "), bitsOf(0x1.0000000000001p0)); // one step above 1, which is 2.2e-16
}

TEST(ConvertFewDigits, TakesWholeNumbersThatWhiteSpaceFollows) {
    const auto valueOf = [](const std::string& text) {
        std::int32_t value = -7777;
        const char* const stop = convertFewDigits(text.c_str(), value);
        EXPECT_EQ(stop == nullptr, value == -7777) << text;
        EXPECT_TRUE(stop == nullptr || stop == text.c_str() + text.size() - 1) << text;
        return value;
    };
    EXPECT_EQ(valueOf("0 "), 0);
    EXPECT_EQ(valueOf("-12\n"), -12);
    EXPECT_EQ(valueOf("+999999999\t"), 999'999'999);
    for (const char* const text : {"1000000000 ", "12", "1.5 ", "- ", "+-5 ", "x ", " 1 ", "7,"}) {
        EXPECT_EQ(valueOf(text), -7777) << text;
    }
}

} // namespace
} // namespace velmora
