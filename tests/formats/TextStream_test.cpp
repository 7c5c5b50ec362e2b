#include "TextStream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "FailingReads.h"
#include "ReadAheadScope.h"
#include "stream_numbers.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

constexpr std::array<std::size_t, 6> blockSizes{1, 2, 3, 7, 64, TextStream::defaultBlockSize};

// The same reads on a file with TextStream and with a stream of the standard library.
class Twins {
public:
    Twins(const std::filesystem::path& file, std::size_t blockSize) : text_(file, blockSize), stream_(file) {
        stream_.imbue(std::locale::classic());
    }

    // 'w' word, 'd' double, 'm' three doubles at once, 'i' integer, 'l' line, 'k' line without its text, 'g' byte, 'p'
    // next byte, 's' white space, 'z' the next "Z", 'c' clear, 't' remember the position, 'b' back to it, 'x' clear and
    // back.
    void step(char kind) {
        switch (kind) {
        case 'w':
            readWord();
            break;
        case 'd':
            readNumber<double>(&TextStream::readDouble);
            break;
        case 'm':
            readThree();
            break;
        case 'i':
            readNumber<std::int32_t>(&TextStream::readInt);
            break;
        case 'l':
            readLine();
            break;
        case 'k':
            EXPECT_EQ(text_.skipLine(), static_cast<bool>(std::getline(stream_, word_)));
            break;
        case 'g':
            EXPECT_EQ(text_.get(), stream_.get());
            break;
        case 'p':
            EXPECT_EQ(text_.peek(), stream_.peek());
            break;
        case 's':
            skipSpace();
            break;
        case 'z':
            skipToZ();
            break;
        case 'c':
            clear();
            break;
        case 't':
            remember();
            break;
        case 'b':
            goBack();
            break;
        default:
            clear();
            goBack();
        }
        EXPECT_EQ(text_.eof(), stream_.eof());
        EXPECT_EQ(text_.fail(), stream_.fail());
        EXPECT_EQ(text_.good(), stream_.good());
        EXPECT_EQ(text_.tell(), stream_.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
    }

private:
    void readWord() {
        std::string read = "untouched";
        word_ = read;
        EXPECT_EQ(text_.readWord(read), static_cast<bool>(stream_ >> word_));
        EXPECT_EQ(read, word_);
    }

    template <class Number>
    void readNumber(bool (TextStream::*take)(Number&)) {
        Number read = -7777;
        Number expected = -7777;
        EXPECT_EQ((text_.*take)(read), reference::take(stream_, expected));
        EXPECT_EQ(read, expected);
        EXPECT_EQ(std::signbit(static_cast<double>(read)), std::signbit(static_cast<double>(expected)));
    }

    void readThree() {
        std::array<double, 3> read{-7777, -7777, -7777};
        std::array<double, 3> expected = read;
        const auto failed = std::find_if_not(expected.begin(), expected.end(),
                                             [this](double& number) { return reference::take(stream_, number); });
        EXPECT_EQ(text_.readDoubles(read.data(), read.size()), failed == expected.end());
        for (std::size_t i = 0; i < read.size(); ++i) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(read[i]), std::bit_cast<std::uint64_t>(expected[i]));
        }
    }

    void readLine() {
        std::string read;
        const bool wasGood = stream_.good();
        word_.clear();
        EXPECT_EQ(text_.getline(read), static_cast<bool>(std::getline(stream_, word_)));
        if (wasGood) {
            EXPECT_EQ(read, word_);
        }
    }

    void skipSpace() {
        const bool wasGood = stream_.good();
        if (wasGood) {
            stream_ >> std::ws;
        }
        EXPECT_EQ(text_.skipSpace(), stream_.good());
    }

    void skipToZ() {
        while (stream_.good() && stream_.peek() != 'Z' && stream_.good()) {
            stream_.ignore();
        }
        EXPECT_EQ(text_.skipTo('Z'), stream_.good());
    }

    void clear() {
        text_.clear();
        stream_.clear();
    }

    void remember() { position_ = text_.tell(); }

    void goBack() {
        text_.seek(position_);
        stream_.seekg(position_);
    }

    TextStream text_;
    std::ifstream stream_;
    std::string word_;
    std::int64_t position_ = 0;
};

class TextStreamTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    std::filesystem::path file(std::string_view text) const { return test::writeFileText(folder_ / "text.txt", text); }

    void compare(const std::string& text, const std::string& script, std::size_t blockSize) const {
        Twins twins(file(text), blockSize);
        for (std::size_t step = 0; step < script.size() && !HasFailure(); ++step) {
            SCOPED_TRACE(testing::Message()
                         << "text [" << text << "] script " << script << " step " << step << " block " << blockSize);
            twins.step(script[step]);
        }
    }
};

std::string randomText(std::mt19937& random, std::string_view letters, std::size_t most) {
    std::string text;
    for (std::size_t left = random() % most; left > 0; --left) {
        text += letters[random() % letters.size()];
    }
    return text;
}

TEST_F(TextStreamTest, AnyReadsOfTokenSoupAreThoseOfAStream) {
    std::mt19937 random(31);
    for (int round = 0; round < 20000 && !HasFailure(); ++round) {
        compare(randomText(random, "0123456789+-.eEZ[] x\n\t", 40), randomText(random, "wdmilkgpszctbx", 16),
                blockSizes[random() % blockSizes.size()]);
    }
}

TEST_F(TextStreamTest, AnyReadsOfRandomBytesAreThoseOfAStream) {
    std::mt19937 random(32);
    std::string bytes;
    for (int c = 0; c < 256; ++c) {
        bytes += static_cast<char>(c);
    }
    bytes += "            \n\n\n\n1111222..";
    for (int round = 0; round < 10000 && !HasFailure(); ++round) {
        compare(randomText(random, bytes, 60), randomText(random, "wdmilkgpszctbx", 16),
                blockSizes[random() % blockSizes.size()]);
    }
}

TEST_F(TextStreamTest, MostlyGoodNumbersWithSeeksBackAreTakenAsAStreamTakesThem) {
    std::mt19937 random(33);
    const std::vector<std::string> pieces{"1 ", "-2.5\n",      " 3e2 ",  "+7", "12345678 ",
                                          "x ", "2147483648 ", "1e999 ", "8"};
    for (int round = 0; round < 6000 && !HasFailure(); ++round) {
        std::string text;
        for (std::size_t left = random() % 10; left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        compare(text, randomText(random, "dddmmiiiiwtbx", 20), blockSizes[random() % blockSizes.size()]);
    }
}

TEST_F(TextStreamTest, NumbersInARowThatWereConvertedAheadAreThoseOfAStream) {
    std::mt19937 random(34);
    const std::vector<std::string> pieces{"1 ", "-2.5\n", " 3e2 ", "+7 ", "12345678 ", "x ", "1.2.3 ", "1e999 ", "-0 "};
    for (const char* const threads : {"2", "7"}) {
        for (int round = 0; round < 150 && !HasFailure(); ++round) {
            std::string text;
            for (std::size_t left = random() % 60; left > 0; --left) {
                text += pieces[random() % (round % 2 == 0 ? pieces.size() : 5)];
            }
            const test::ReadAheadScope scope(threads, 16);
            compare(text, "d" + randomText(random, "mmmmddiwcx", 30), 16);
        }
    }
}

TEST_F(TextStreamTest, ShortLinesAtOnceAreTheLinesThatAreThere) {
    std::mt19937 random(35);
    constexpr std::array<std::size_t, 11> lengths{0, 1, 20, 60, 126, 127, 128, 129, 253, 254, 255};
    std::int64_t atOnce = 0;
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
        std::string text;
        for (std::size_t left = random() % 40; left > 0; --left) {
            text += std::string(lengths[random() % (round % 3 == 0 ? lengths.size() : 4)], 'a') + '\n';
        }
        const std::size_t blockSize = round % 2 == 0 ? TextStream::defaultBlockSize : 700;
        TextStream all(file(text), blockSize);
        TextStream single(folder_ / "text.txt", blockSize);
        while (!single.eof() && !HasFailure()) {
            const auto most = static_cast<std::int64_t>(random() % 30);
            const std::int64_t lines = all.skipShortLines(most);
            EXPECT_LE(lines, most);
            for (std::int64_t i = 0; i < lines; ++i) {
                EXPECT_TRUE(single.skipLine(TextStream::shortLine));
            }
            EXPECT_EQ(all.tell(), single.tell());
            EXPECT_TRUE(all.good());
            EXPECT_EQ(all.skipLine(), single.skipLine());
            atOnce += lines;
        }
    }
    EXPECT_GT(atOnce, 1000);
}

TEST_F(TextStreamTest, ALineOfSoManyNumbersIsTakenWholeAndNoOther) {
    const std::string longest = "1 2" + std::string(TextStream::shortLine - 4, ' ') + "3";
    const std::vector<std::string> good{"1 2 3\n", " \t+1 2.0 3e0 \r\n", "1 2 3", "1 2 3 ", longest + "\n", longest};
    const std::vector<std::string> bad{"",         "\n",          "\n1 2 3\n",   "1 2\n3\n",     "1 2 3 4\n",
                                       "1 2 3x\n", "1.5-2.5 3\n", "1 2\n",       "1 2",          "x 2 3\n",
                                       "1 2 1e\n", "1 2 3 x",     " " + longest, longest + " \n"};
    for (const std::size_t blockSize : blockSizes) {
        std::array<double, 3> values{};
        for (const std::string& text : good) {
            TextStream stream(file(text), blockSize);
            EXPECT_TRUE(stream.readLineOfDoubles(values.data(), values.size())) << text;
            EXPECT_EQ(values, (std::array<double, 3>{1, 2, 3}));
            EXPECT_EQ(stream.tell(), static_cast<std::int64_t>(text.size()));
            EXPECT_EQ(stream.eof(), text.back() != '\n');
            EXPECT_FALSE(stream.fail());
        }
        for (const std::string& text : bad) {
            TextStream stream(file(text), blockSize);
            EXPECT_FALSE(stream.readLineOfDoubles(values.data(), values.size())) << text;
        }
    }
}

TEST_F(TextStreamTest, TheEndOfALineIsTakenWhereNothingElseStands) {
    for (const std::size_t blockSize : blockSizes) {
        for (const char* const text : {"7\n8", "7 \t\r\n8"}) {
            TextStream stream(file(text), blockSize);
            std::int32_t value = 0;
            EXPECT_TRUE(stream.readInt(value));
            EXPECT_TRUE(stream.takeLineEnd());
            EXPECT_EQ(stream.peek(), '8');
            EXPECT_TRUE(stream.readInt(value));
            EXPECT_TRUE(stream.takeLineEnd()); // of the last line
            EXPECT_EQ(value, 8);
        }
        TextStream stream(file("7 8\n"), blockSize);
        std::int32_t value = 0;
        EXPECT_TRUE(stream.readInt(value));
        EXPECT_FALSE(stream.takeLineEnd());
    }
}

TEST_F(TextStreamTest, ANumberThatEndsTheFileSucceedsAndReachesTheEnd) {
    for (const std::size_t blockSize : blockSizes) {
        TextStream stream(file("1.5"), blockSize);
        double value = 0.0;
        EXPECT_TRUE(stream.readDouble(value));
        EXPECT_EQ(value, 1.5);
        EXPECT_TRUE(stream.eof());
        EXPECT_FALSE(stream.fail());
        EXPECT_EQ(stream.tell(), 3);
        EXPECT_FALSE(stream.readDouble(value));
        EXPECT_TRUE(stream.fail());
    }
}

TEST_F(TextStreamTest, AnExponentWithoutDigitsFailsAndIsTaken) {
    for (const std::size_t blockSize : blockSizes) {
        TextStream stream(file("1e+x 2"), blockSize);
        double value = 7.0;
        std::string word;
        EXPECT_FALSE(stream.readDouble(value));
        EXPECT_EQ(value, 7.0);
        stream.clear();
        EXPECT_TRUE(stream.readWord(word));
        EXPECT_EQ(word, "x");
    }
}

TEST_F(TextStreamTest, AWordLongerThanManyBlocksIsTakenWhole) {
    const std::string longWord(3000, 'a');
    for (const std::size_t blockSize : blockSizes) {
        TextStream stream(file("  " + longWord + "\tb"), blockSize);
        std::string word;
        EXPECT_TRUE(stream.readWord(word));
        EXPECT_EQ(word, longWord);
        EXPECT_TRUE(stream.readWord(word));
        EXPECT_EQ(word, "b");
    }
}

TEST_F(TextStreamTest, OfAWordLongerThanAnyIsMeantTheBeginningIsHeldAndThatIsTold) {
    const std::string most(TextStream::longestWord, 'a');
    TextStream stream(file(most + "bcd " + most + " e"));
    std::string word;
    EXPECT_TRUE(stream.readWord(word));
    EXPECT_TRUE(word == most);
    EXPECT_TRUE(stream.wordWasCut());
    EXPECT_EQ(stream.tell(), static_cast<std::int64_t>(most.size()) + 3);
    EXPECT_TRUE(stream.readWord(word));
    EXPECT_TRUE(word == most);
    EXPECT_FALSE(stream.wordWasCut());
    EXPECT_TRUE(stream.readWord(word));
    EXPECT_EQ(word, "e");
    EXPECT_FALSE(stream.wordWasCut());
}

TEST_F(TextStreamTest, ANumberOfAnyLengthIsRoundedByAllItsDigits) {
    const std::string zeros(5000, '0');
    // In the middle between 1 and the next double, which rounds to the even one.
    const std::string middle = "1.00000000000000011102230246251565404236316680908203125";
    const double behind = std::nextafter(1.0, 2.0);
    const std::vector<std::pair<std::string, double>> numbers = {
        {middle + zeros, 1.0},
        {middle + zeros + "1", behind},
        {middle + zeros + "1" + zeros, behind},
        {"-" + middle + zeros + "1", -behind},
        {zeros + "2.5", 2.5},
        {"0." + zeros + "25e5001", 2.5},
        {"25" + zeros + "e-5001", 2.5},
        {"25" + zeros + "." + zeros + "e-5001", 2.5},
        {"2.5e" + zeros + "1", 25.0},
        {"2.5e-" + zeros + "1", 0.25},
        {std::string(5000, '3') + "e-5000", 1.0 / 3.0},
        {"0." + std::string(5000, '6') + "7", 2.0 / 3.0},
        {"-0." + zeros, -0.0},
        {"1e-" + std::string(5000, '9'), 0.0},
        {"0e" + std::string(5000, '9'), 0.0},
    };
    for (const std::size_t blockSize : blockSizes) {
        for (const auto& [text, expected] : numbers) {
            TextStream stream(file(text + " 7"), blockSize);
            double value = 99.0;
            EXPECT_TRUE(stream.readDouble(value)) << text.substr(0, 60);
            EXPECT_EQ(value, expected) << text.substr(0, 60);
            EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text.substr(0, 60);
            EXPECT_TRUE(stream.readDouble(value));
            EXPECT_EQ(value, 7.0);
        }
    }
}

TEST_F(TextStreamTest, ALongNumberThatIsTooLargeOrNoneFailsAsAShortOneDoes) {
    const std::string zeros(5000, '0');
    for (const std::size_t blockSize : blockSizes) {
        for (const std::string& text : {"1" + zeros, "1e" + std::string(5000, '9'), "0." + zeros + "1e5310"}) {
            TextStream stream(file("-" + text), blockSize);
            double value = 99.0;
            EXPECT_FALSE(stream.readDouble(value));
            EXPECT_EQ(value, std::numeric_limits<double>::lowest());
        }
        for (const std::string& text : {"1" + zeros + "e", "1." + zeros + "e+"}) {
            TextStream stream(file(text + " 7"), blockSize);
            double value = 99.0;
            EXPECT_FALSE(stream.readDouble(value));
            EXPECT_EQ(value, 99.0);
            EXPECT_EQ(stream.tell(), static_cast<std::int64_t>(text.size()));
        }
    }
}

TEST_F(TextStreamTest, LongNumbersAreThoseOfAStream) {
    std::mt19937 random(34);
    for (int round = 0; round < 300 && !HasFailure(); ++round) {
        std::string text = random() % 2 == 0 ? "-" : "";
        const auto digits = [&random, &text](std::string_view from) { text += randomText(random, from, 2000); };
        digits(random() % 2 == 0 ? "0" : "0123456789");
        digits("0123456789");
        text += random() % 4 == 0 ? "" : ".";
        digits(random() % 2 == 0 ? "0" : "0123456789");
        digits("0123456789");
        if (random() % 2 == 0) {
            text += "e" + std::to_string(static_cast<int>(random() % 6000) - 3000);
        }
        compare(text + " 1", "dd", blockSizes[2 + random() % 4]);
    }
}

TEST_F(TextStreamTest, AFailedStreamDoesNotMoveUntilItIsCleared) {
    TextStream stream(file("ab 12"), 2);
    double value = 0.0;
    std::string word;
    ASSERT_TRUE(stream.readWord(word));
    EXPECT_EQ(stream.tell(), 2);
    stream.seek(0);
    EXPECT_FALSE(stream.readDouble(value));
    stream.seek(3);
    EXPECT_EQ(stream.tell(), 0);
    stream.clear();
    stream.seek(3);
    EXPECT_TRUE(stream.readDouble(value));
    EXPECT_EQ(value, 12.0);
}

TEST_F(TextStreamTest, APlaceBehindTheEndCanBeSoughtAndHoldsNothing) {
    TextStream stream(file("abc"), 2);
    stream.seek(100);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.tell(), 100);
    EXPECT_EQ(stream.get(), -1);
    EXPECT_TRUE(stream.eof());
    stream.clear();
    stream.seek(1);
    EXPECT_EQ(stream.get(), 'b');
    stream.seek(-1);
    EXPECT_TRUE(stream.fail());
}

TEST_F(TextStreamTest, ALineOverTheLimitFailsBehindTheLimit) {
    for (const std::size_t blockSize : blockSizes) {
        TextStream stream(file("abcd\nabcde\n"), blockSize);
        std::string line;
        EXPECT_TRUE(stream.getline(line, 4));
        EXPECT_EQ(line, "abcd");
        EXPECT_FALSE(stream.getline(line, 4));
        EXPECT_EQ(line, "abcd");
        EXPECT_EQ(stream.tell(), 9);
    }
}

TEST_F(TextStreamTest, TheSizeIsThatOfTheFile) {
    EXPECT_EQ(TextStream(file("12345")).size(), 5);
    EXPECT_EQ(TextStream(file("")).size(), 0);
}

TEST_F(TextStreamTest, WhatCannotBeOpenedIsClosedAndFailed) {
    TextStream missing(folder_ / "missing.txt");
    EXPECT_FALSE(missing.isOpen());
    EXPECT_TRUE(missing.fail());
    EXPECT_EQ(missing.get(), -1);
    TextStream folder(folder_.path());
    EXPECT_FALSE(folder.isOpen());
    EXPECT_TRUE(folder.fail());
}

TEST_F(TextStreamTest, AClosedStreamThatIsClearedHoldsNothing) {
    TextStream missing(folder_ / "missing.txt");
    missing.clear();
    std::string word;
    EXPECT_EQ(missing.peek(), -1);
    missing.clear();
    EXPECT_FALSE(missing.readWord(word));
    EXPECT_FALSE(missing.skipTo('Z'));
}

TEST_F(TextStreamTest, APipeAndADeviceAreRefusedAsTheyMayNeverEnd) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(TextStream(folder_ / "pipe").isOpen());
    EXPECT_FALSE(TextStream("/dev/zero").isOpen());
}

TEST(TextStreamProgress, IsToldByBlocksNeverFallingAndNotTooOften) {
    const test::TemporaryFolder folder;
    const auto path = test::writeFileText(folder / "a.txt", std::string(std::size_t{64} * 1000, 'x'));
    TextStream stream(path, 64);
    std::vector<double> told;
    stream.reportTo([&told](double fraction) { told.push_back(fraction); }, 0.5, 1.0);
    stream.skipLine();
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_GE(told.size(), 150U);
    EXPECT_LE(told.size(), 200U);
    EXPECT_GE(told.front(), 0.5);
    EXPECT_GT(told.back(), 0.98);
    EXPECT_LE(told.back(), 1.0);
}

TEST(TextStreamProgress, DoesNotFallWhenSomethingIsReadAgain) {
    const test::TemporaryFolder folder;
    const auto path = test::writeFileText(folder / "a.txt", std::string(std::size_t{64} * 100, 'x'));
    TextStream stream(path, 64);
    std::vector<double> told;
    stream.reportTo([&told](double fraction) { told.push_back(fraction); });
    while (stream.tell() < std::int64_t{64} * 50) {
        stream.get();
    }
    stream.seek(0);
    while (stream.get() >= 0) {
    }
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_LE(told.size(), 100U);
    EXPECT_DOUBLE_EQ(told.back(), 0.99);
}

TEST(TextStreamProgress, IsNotToldOfAnEmptyFile) {
    const test::TemporaryFolder folder;
    TextStream stream(test::writeFileText(folder / "a", ""), 1);
    stream.reportTo([](double) { FAIL(); });
    EXPECT_EQ(stream.get(), -1);
}

TEST_F(TextStreamTest, AReadErrorEndsTheStreamAndIsToldFromTheEndOfTheFile) {
    const auto path = test::writeFileText(folder_ / "a", "1 2 3 4 5 6 7 8 9\n");
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{4}, std::size_t{1000}}) {
        const test::FailingReads broken(6);
        TextStream stream(path, blockSize);
        std::int32_t value = 0;
        for (std::int32_t expected = 1; expected <= 3; ++expected) {
            EXPECT_TRUE(stream.readInt(value));
            EXPECT_EQ(value, expected);
            EXPECT_FALSE(stream.readFailed());
        }
        EXPECT_FALSE(stream.readInt(value));
        EXPECT_TRUE(stream.eof());
        EXPECT_TRUE(stream.readFailed());
    }
    TextStream whole(path);
    EXPECT_TRUE(whole.skipLine());
    EXPECT_FALSE(whole.skipLine());
    EXPECT_FALSE(whole.readFailed());
}

TEST_F(TextStreamTest, NumbersThatRunIntoTheNextAreCounted) {
    const auto path = test::writeFileText(folder_ / "a", "1 -2 3e5 4.5\n1.5-104 2\n1.2.3 +4+5 6- 7");
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{1000}}) {
        TextStream stream(path, blockSize);
        double value = 0.0;
        for (int number = 0; number < 4; ++number) {
            EXPECT_TRUE(stream.readDouble(value));
        }
        EXPECT_EQ(stream.joinedNumbers(), 0);
        while (stream.readDouble(value)) {
        }
        EXPECT_EQ(stream.joinedNumbers(), 4); // 1.5 1.2 +4 6
        EXPECT_EQ(stream.firstJoinedNumber(), 16);
        EXPECT_EQ(stream.lineOf(stream.firstJoinedNumber()), 2);
    }
}

TEST_F(TextStreamTest, TheLineOfAPlaceIsAskedWithoutMoving) {
    const auto path = test::writeFileText(folder_ / "a", "one\ntwo 5\n\nfour");
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{3}, std::size_t{1000}}) {
        TextStream stream(path, blockSize);
        std::string word;
        EXPECT_TRUE(stream.readWord(word) && stream.readWord(word));
        EXPECT_EQ(stream.lineOf(0), 1);
        EXPECT_EQ(stream.lineOf(3), 1);
        EXPECT_EQ(stream.lineOf(4), 2);
        EXPECT_EQ(stream.lineOf(14), 4);
        EXPECT_TRUE(stream.good());
        std::int32_t value = 0;
        EXPECT_TRUE(stream.readInt(value));
        EXPECT_EQ(value, 5);
        EXPECT_FALSE(stream.readInt(value));
        EXPECT_EQ(stream.lineOf(stream.tell()), 4);
        EXPECT_TRUE(stream.fail());
        EXPECT_FALSE(stream.eof());
    }
}

} // namespace
} // namespace velmora
