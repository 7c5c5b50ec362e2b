#include "NumberReader.h"

#include <array>
#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "stream_numbers.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

constexpr std::array<std::size_t, 6> blockSizes{1, 2, 3, 7, 64, NumberReader::defaultBlockSize};

constexpr std::int32_t untouchedInt = -7777;
constexpr double untouchedDouble = -7777.5;

class NumberReaderTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    std::filesystem::path file(std::string_view text) const {
        return test::writeFileText(folder_ / "numbers.txt", text);
    }

    // Runs the reads named by `script` ('i' integer, 'd' double, 'l' line, 's' skipped line) over the same text with
    // the reader and with a stream, and compares every outcome.
    void compareWithStream(const std::string& text, const std::string& script, std::size_t blockSize) const {
        NumberReader reader(file(text), blockSize);
        std::istringstream stream(text);
        stream.imbue(std::locale::classic());
        for (std::size_t step = 0; step < script.size(); ++step) {
            SCOPED_TRACE(testing::Message()
                         << "text [" << text << "] script " << script << " step " << step << " block " << blockSize);
            compareStep(reader, stream, script[step]);
            if (HasFailure()) {
                return;
            }
        }
    }

private:
    static void compareStep(NumberReader& reader, std::istream& stream, char kind) {
        if (kind == 'i') {
            std::int32_t read = untouchedInt;
            std::int32_t expected = untouchedInt;
            EXPECT_EQ(reader.readInt(read), reference::take(stream, expected));
            EXPECT_EQ(read, expected);
        } else if (kind == 'd') {
            double read = untouchedDouble;
            double expected = untouchedDouble;
            EXPECT_EQ(reader.readDouble(read), reference::take(stream, expected));
            EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(expected))
                << read << " instead of " << expected;
        } else {
            char expected[255] = "";
            std::string read;
            const bool lineRead = kind == 'l' ? reader.readLine(read) : reader.skipLine();
            const bool wasFailed = stream.fail();
            EXPECT_EQ(lineRead, reference::takeLine(stream, expected));
            if (kind == 'l' && !wasFailed) {
                EXPECT_EQ(read, expected);
            }
        }
        EXPECT_EQ(reader.failed(), stream.fail());
    }
};

std::vector<std::string> splitAtBlanks(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

const std::vector<std::string> oddTokens =
    splitAtBlanks("0 -0 +0 7 -7 +7 007 -007 1.5 -1.5 +1.5 .5 -.5 +.5 5. -5. . - + -. +. +-5 -+5 --5 ++5 1e5 "
                  "1E5 1e+5 1e-5 1e 1E 1e+ 1e- 1e++5 1e+-5 1e5e 1e5e5 1e5.5 1.e5 .5e5 .e5 e5 E5 1.2.3 1..2 1d5 "
                  "1D5 1,5 1'000 0x10 0X1p3 0x x10 inf -inf INF infinity nan -nan NAN nan(1) 1inf 1nan 1e400 "
                  "-1e400 1e308 1.7976931348623157e308 1.7976931348623159e308 -1.7976931348623159e308 1e-400 "
                  "-1e-400 4.9406564584124654e-324 2.4703282292062327e-324 2.4703282292062328e-324 "
                  "2.2250738585072011e-308 2147483647 2147483648 -2147483648 -2147483649 "
                  "99999999999999999999999 -99999999999999999999999 21474836470 -21474836480 "
                  "9223372036854775807 9223372036854775808 1e99999999999999999999 1e-99999999999999999999 "
                  "0e99999999999999999999 -0e-5 0.0000000000000000000000000000000000001e300 0001e1 "
                  "9007199254740993 9007199254740992.9999999999999999999999999 0.1 "
                  "123456789012345678901234567890e-10 abc a1 1a #5 \"1\" \302\2401 \357\273\2771 1e5x 5-3 5+3 "
                  "1.5-2.5 1e5-3 ");

TEST_F(NumberReaderTest, OddTokensAreTakenAsAStreamTakesThem) {
    for (const std::string& token : oddTokens) {
        for (const char* const tail : {"", " ", " 8", "\n8", ".8", "8"}) {
            for (const char* const script : {"dd", "ii", "di", "id", "dl", "il", "ddd", "iii"}) {
                for (const std::size_t blockSize : {std::size_t{1}, std::size_t{4096}}) {
                    compareWithStream(token + tail, script, blockSize);
                }
            }
        }
    }
}

TEST_F(NumberReaderTest, OddTokensBehindAGoodNumberAreTakenAsAStreamTakesThem) {
    for (const std::string& token : oddTokens) {
        for (const std::size_t blockSize : blockSizes) {
            compareWithStream("12.25\t" + token + "\n3", "ddd", blockSize);
        }
    }
}

std::string randomText(std::mt19937& random, const std::vector<std::string>& pieces, std::size_t most) {
    std::string text;
    for (std::size_t left = random() % most + 1; left > 0; --left) {
        text += pieces[random() % pieces.size()];
    }
    return text;
}

std::string randomScript(std::mt19937& random, std::string_view kinds) {
    std::string script;
    for (int i = 0; i < 12; ++i) {
        script += kinds[random() % kinds.size()];
    }
    return script;
}

std::vector<std::string> charactersOf(std::string_view text) {
    std::vector<std::string> pieces;
    for (const char c : text) {
        pieces.emplace_back(1, c);
    }
    return pieces;
}

TEST_F(NumberReaderTest, TokenSoupIsTakenAsAStreamTakesIt) {
    std::mt19937 random(20240607);
    const std::vector<std::string> soup = charactersOf("0123456789+-.eExnaif \n\t");
    for (int round = 0; round < 6000; ++round) {
        const std::string text = randomText(random, soup, 30);
        compareWithStream(text, randomScript(random, "ddddil"), blockSizes[random() % blockSizes.size()]);
        ASSERT_FALSE(HasFailure());
    }
}

// Mostly good numbers, so that the reads get far into the text before one of them fails.
TEST_F(NumberReaderTest, MostlyGoodNumbersAreTakenAsAStreamTakesThem) {
    std::mt19937 random(7);
    const std::vector<std::string> pieces{"1 ", "-2.5\n", " 3e2 ",        "\t4.E-3\v", "+.5\f", " 17\r\n",
                                          "0 ", " -0.0 ", "1e-320 ",      "8.",        ".25 ",  "6",
                                          "-",  "e",      " 2147483647 ", "1e-999 ",   "\n"};
    for (int round = 0; round < 6000; ++round) {
        const std::string text = randomText(random, pieces, 14);
        compareWithStream(text, randomScript(random, "dddddiils"), blockSizes[random() % blockSizes.size()]);
        ASSERT_FALSE(HasFailure());
    }
}

class CommaPoint : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class LocaleGuard {
public:
    LocaleGuard() : old_(std::locale::global(std::locale(std::locale::classic(), new CommaPoint))) {
        for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr) {
                break;
            }
        }
    }
    ~LocaleGuard() {
        std::locale::global(old_);
        std::setlocale(LC_NUMERIC, "C");
    }
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;

private:
    std::locale old_;
};

TEST_F(NumberReaderTest, TheGlobalLocaleHasNoEffect) {
    const LocaleGuard guard;
    for (const std::string& token : oddTokens) {
        compareWithStream(token + " 1.5", "dd", 4096);
        compareWithStream(token + " 1.5", "ii", 4096);
    }
    NumberReader reader(file("1.5 1,5"));
    double value = 0.0;
    EXPECT_TRUE(reader.readDouble(value));
    EXPECT_EQ(value, 1.5);
    EXPECT_TRUE(reader.readDouble(value));
    EXPECT_EQ(value, 1.0);
    EXPECT_FALSE(reader.readDouble(value));
}

TEST_F(NumberReaderTest, EveryBitPatternOfADoubleComesBack) {
    std::mt19937_64 random(99);
    std::vector<double> values{-0.0, 4.9406564584124654e-324, 2.2250738585072014e-308,
                               std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
    std::string text;
    while (values.size() < 20000) {
        const double value = std::bit_cast<double>(random());
        if (value - value == 0.0) {
            values.push_back(value);
        }
    }
    for (const double value : values) {
        char token[64];
        std::snprintf(token, sizeof token, "%.16e ", value);
        text += token;
    }
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{13}, NumberReader::defaultBlockSize}) {
        NumberReader reader(file(text), blockSize);
        for (const double expected : values) {
            double value = 0.0;
            ASSERT_TRUE(reader.readDouble(value));
            ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected));
        }
        double value = 0.0;
        EXPECT_FALSE(reader.readDouble(value));
    }
}

TEST_F(NumberReaderTest, ATokenLongerThanManyBlocksIsTakenWhole) {
    const std::string zeros(5000, '0');
    // The digit behind five thousand zeros decides: 2^53 + 1 lies halfway, anything more rounds up.
    const std::string text = zeros + "9007199254740993." + zeros + "1 0." + zeros + "25e5001 " + zeros + "42 8";
    for (const std::size_t blockSize : blockSizes) {
        NumberReader reader(file(text), blockSize);
        double value = 0.0;
        ASSERT_TRUE(reader.readDouble(value));
        EXPECT_EQ(value, 9007199254740994.0);
        ASSERT_TRUE(reader.readDouble(value));
        EXPECT_EQ(value, 2.5);
        std::int32_t whole = 0;
        ASSERT_TRUE(reader.readInt(whole));
        EXPECT_EQ(whole, 42);
        ASSERT_TRUE(reader.readInt(whole));
        EXPECT_EQ(whole, 8);
    }
}

TEST_F(NumberReaderTest, ANumberCutByTheBlockEndAtAnyPlaceIsTakenWhole) {
    const std::string text = "  -1.2345678901234567e-101\n-1.2345678901234567e-101";
    for (std::size_t blockSize = 1; blockSize <= text.size(); ++blockSize) {
        NumberReader reader(file(text), blockSize);
        double value = 0.0;
        ASSERT_TRUE(reader.readDouble(value)) << blockSize;
        EXPECT_EQ(value, -1.2345678901234567e-101);
        ASSERT_TRUE(reader.readDouble(value)) << blockSize;
        EXPECT_EQ(value, -1.2345678901234567e-101);
    }
}

TEST_F(NumberReaderTest, OverflowFailsWithTheLimitAsValue) {
    double real = 0.0;
    EXPECT_FALSE(NumberReader(file("1e309")).readDouble(real));
    EXPECT_EQ(real, std::numeric_limits<double>::max());
    EXPECT_FALSE(NumberReader(file("-1e309")).readDouble(real));
    EXPECT_EQ(real, std::numeric_limits<double>::lowest());
    std::int32_t whole = 0;
    EXPECT_FALSE(NumberReader(file("2147483648")).readInt(whole));
    EXPECT_EQ(whole, std::numeric_limits<std::int32_t>::max());
    EXPECT_FALSE(NumberReader(file("-2147483649")).readInt(whole));
    EXPECT_EQ(whole, std::numeric_limits<std::int32_t>::min());
}

TEST_F(NumberReaderTest, UnderflowGivesAZeroOfItsSign) {
    NumberReader reader(file("1e-400 -1e-400 1e-320"));
    double value = 1.0;
    ASSERT_TRUE(reader.readDouble(value));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(0.0));
    ASSERT_TRUE(reader.readDouble(value));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(-0.0));
    ASSERT_TRUE(reader.readDouble(value));
    EXPECT_EQ(value, 1e-320);
}

TEST_F(NumberReaderTest, AfterAFailureNothingMoreIsRead) {
    NumberReader reader(file("x 5\n6\n"));
    std::int32_t whole = untouchedInt;
    double real = untouchedDouble;
    std::string line;
    EXPECT_FALSE(reader.readInt(whole));
    EXPECT_TRUE(reader.failed());
    EXPECT_FALSE(reader.readInt(whole));
    EXPECT_FALSE(reader.readDouble(real));
    EXPECT_FALSE(reader.readLine(line));
    EXPECT_FALSE(reader.skipLine());
    EXPECT_FALSE(reader.skipLines(1));
    EXPECT_TRUE(reader.skipLines(0));
    EXPECT_EQ(whole, untouchedInt);
    EXPECT_EQ(real, untouchedDouble);
}

TEST_F(NumberReaderTest, ALineOf254CharactersIsTakenAndOneMoreFails) {
    for (const std::size_t blockSize : blockSizes) {
        for (const char* const end : {"\n", ""}) {
            std::string line;
            EXPECT_TRUE(NumberReader(file(std::string(254, 'a') + end), blockSize).readLine(line));
            EXPECT_EQ(line, std::string(254, 'a'));
            EXPECT_TRUE(NumberReader(file(std::string(254, 'a') + end), blockSize).skipLines(1));
            EXPECT_FALSE(NumberReader(file(std::string(255, 'a') + end), blockSize).readLine(line));
            EXPECT_EQ(line, std::string(254, 'a'));
            EXPECT_FALSE(NumberReader(file(std::string(255, 'a') + end), blockSize).skipLines(1));
        }
    }
}

TEST_F(NumberReaderTest, TheLastLineNeedsNoLineFeedAndAnEmptyOneFails) {
    for (const std::size_t blockSize : blockSizes) {
        NumberReader open(file("a\n\nb"), blockSize);
        EXPECT_TRUE(open.skipLines(3));
        EXPECT_FALSE(open.skipLine());
        NumberReader closed(file("a\n\nb\n"), blockSize);
        EXPECT_TRUE(closed.skipLines(3));
        EXPECT_FALSE(closed.skipLine());
        EXPECT_FALSE(NumberReader(file(""), blockSize).skipLine());
    }
}

TEST_F(NumberReaderTest, LinesOfRandomLengthAreTakenAsAStreamTakesThem) {
    std::mt19937 random(11);
    for (int round = 0; round < 400; ++round) {
        std::string text;
        for (int line = 0; line < 8; ++line) {
            const std::size_t length = random() % 4 == 0 ? 250 + random() % 6 : random() % 20;
            text.append(length, static_cast<char>('0' + line));
            text += line == 7 && round % 2 == 0 ? "" : "\n";
        }
        compareWithStream(text, randomScript(random, "ls"), blockSizes[random() % blockSizes.size()]);
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(NumberReaderTest, ANulByteEndsATokenAndIsNoWhiteSpace) {
    using namespace std::string_literals;
    compareWithStream("1\0 2"s, "dd", 4096);
    compareWithStream(" \0 2"s, "d", 4096);
    compareWithStream("1\0 2"s, "ii", 1);
}

TEST_F(NumberReaderTest, WhatCannotBeOpenedIsClosedAndFails) {
    double value = 0.0;
    NumberReader missing(folder_ / "missing.txt");
    EXPECT_FALSE(missing.isOpen());
    EXPECT_FALSE(missing.readDouble(value));
    EXPECT_FALSE(missing.skipLine());
    EXPECT_FALSE(NumberReader(folder_.path()).isOpen());
}

TEST_F(NumberReaderTest, APipeAndADeviceAreRefusedAsTheyMayNeverEnd) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(NumberReader(folder_ / "pipe").isOpen());
    EXPECT_FALSE(NumberReader("/dev/zero").isOpen());
}

} // namespace
} // namespace velmora
