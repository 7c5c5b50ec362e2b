#include "BlocksAhead.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FailingReads.h"
#include "ReadAheadScope.h"
#include "TextStream.h"
#include "format_test_tools.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What was converted, and the one behind it.
std::vector<NumberAhead> numbersOf(const std::string& text) {
    std::vector<NumberAhead> numbers(mostNumbers(text.size()));
    convertNumbers(text.c_str(), text.size(), numbers.data());
    std::size_t count = 1;
    while (numbers[count - 1].begin < text.size()) {
        ++count;
    }
    numbers.resize(count);
    return numbers;
}

/// The bytes at which numbers were converted.
std::vector<std::size_t> places(const std::string& text) {
    std::vector<NumberAhead> numbers = numbersOf(text);
    EXPECT_GT(numbers.back().begin, text.size());
    numbers.pop_back();
    std::vector<std::size_t> found;
    for (const NumberAhead& number : numbers) {
        found.push_back(number.begin);
    }
    return found;
}

TEST(ConvertNumbers, TakesThoseBehindWhiteSpace) {
    EXPECT_THAT(places("1 -2.5\n+7\tx3 .5  12.0.5 vertex -.25e1 8\n"), ElementsAre(0, 2, 7, 13, 17, 31, 38));
}

TEST(ConvertNumbers, LeavesOutWhatAStreamWouldNotTakeAsItStands) {
    EXPECT_THAT(places("1e 2e+ - + . 1e999 inf nan e5 0x "), ElementsAre(30)); // of "0x" a stream takes the 0
    EXPECT_THAT(places("1 23"), ElementsAre(0));                               // the last one may go on
    EXPECT_THAT(places(""), IsEmpty());
    EXPECT_THAT(places(" \n "), IsEmpty());
}

TEST(ConvertNumbers, KnowsTheirValueTheirLengthAndWhetherTheyAreWhole) {
    const std::string text = "12 -0 -3.5e2 +2147483647 -999999999 5.\n";
    const std::vector<NumberAhead> numbers = numbersOf(text);
    ASSERT_EQ(numbers.size(), 7U);
    const auto expect = [&numbers](std::size_t i, double value, int length, bool whole) {
        EXPECT_EQ(numbers[i].value, value);
        EXPECT_EQ(std::signbit(numbers[i].value), std::signbit(value));
        EXPECT_EQ(numbers[i].length, length);
        EXPECT_EQ(numbers[i].whole, whole);
    };
    expect(0, 12, 2, true);
    expect(1, -0.0, 2, true);
    expect(2, -350, 6, false);
    expect(3, 2147483647, 11, false); // more digits than are taken for whole without a look
    expect(4, -999999999, 10, true);
    expect(5, 5, 2, false);
}

TEST(ConvertNumbers, KnowsWhetherOnlyWhiteSpaceStandsBeforeThem) {
    const auto follow = [](const std::string& text) {
        std::vector<bool> found;
        for (const NumberAhead& number : numbersOf(text)) {
            found.push_back(number.follows);
        }
        return found;
    };
    // The first has the block's beginning before it, the one behind the last is none.
    EXPECT_THAT(follow("1 2\t 3\n4 \r\n 5\n   \t6 \n \n7 x 8 9y 1\n"),
                ElementsAre(false, true, true, true, true, true, true, false, true, false, false));
    EXPECT_THAT(follow("1.5-2 3 1e 4\n"), ElementsAre(false, false, false, false)); // "-2" is no word of its own
}

/// The lines of a form that were converted: the first byte, the first one of a number, the end, the numbers.
std::vector<std::string> linesOf(const std::string& text, LineForm form) {
    std::vector<LineAhead> lines(mostNumbers(text.size()));
    std::vector<double> values(mostNumbers(text.size()));
    convertLines(text.c_str(), text.size(), form, lines.data(), values.data());
    std::vector<std::string> found;
    for (std::size_t k = 0; lines[k].begin < text.size(); ++k) {
        std::string line = std::to_string(lines[k].begin) + ' ' + std::to_string(lines[k].first) + ' ' +
                           std::to_string(lines[k].end) + ':';
        for (std::size_t i = 0; i < form.numbers; ++i) {
            line += ' ' + std::to_string(static_cast<int>(values[k * form.numbers + i]));
        }
        found.push_back(line);
    }
    return found;
}

TEST(ConvertLines, TakesThoseOfTheFormBehindTheFirstLineFeed) {
    const std::string text = "1 2\n3 4\n \t5 6 \r\n7\n8 9 10\n\n11 12x\n13 14\n15 16";
    EXPECT_THAT(linesOf(text, {2, 0}), ElementsAre("4 4 8: 3 4", "8 10 16: 5 6", "33 33 39: 13 14"));
    EXPECT_THAT(linesOf(text, {1, 0}), ElementsAre("16 16 18: 7"));
    EXPECT_THAT(linesOf("\n1 2.0\n3 -4\n5 1e1\n", {2, 1}), ElementsAre("7 7 12: 3 -4"));
    EXPECT_THAT(linesOf("", {2, 0}), IsEmpty());
    EXPECT_THAT(linesOf("1 2\n", {2, 0}), IsEmpty()); // whether it begins there, nobody knows
    const std::string longest = "1" + std::string(static_cast<std::size_t>(longestNumberLine) - 2, ' ') + "2\n";
    EXPECT_THAT(linesOf("\n" + longest + ' ' + longest, {2, 0}), ElementsAre("1 1 256: 1 2"));
}

TEST(BlocksAhead, ComeInTheOrderOfTheFileAndEndWithIt) {
    const test::TemporaryFolder folder;
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += std::to_string(i) + ' ';
    }
    const auto file = test::writeFileText(folder / "numbers.txt", text);
    for (const std::size_t helpers : {1, 2, 6, 40}) {
        const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_GE(descriptor, 0);
        {
            BlocksAhead blocks(descriptor, 100, helpers);
            EXPECT_TRUE(blocks.hasHelpers());
            auto block = std::make_unique<char[]>(101);
            EXPECT_EQ(blocks.at(0), nullptr); // nothing was given yet
            std::string all;
            while (const std::size_t size = blocks.next(block)) {
                EXPECT_EQ(block[size], '\0');
                const std::size_t second = std::string_view(block.get(), size).find(' ') + 1;
                const NumberAhead* const number = blocks.at(second);
                if (second + 5 < size) {
                    ASSERT_NE(number, nullptr);
                    EXPECT_EQ(number->value, std::stod(block.get() + second));
                }
                all.append(block.get(), size);
            }
            EXPECT_EQ(all, text);
            EXPECT_EQ(blocks.next(block), 0U); // and again
            EXPECT_FALSE(blocks.readFailed());
        }
        ::close(descriptor);
    }
}

TEST(BlocksAhead, MayBeLeftAtAnyTime) {
    const test::TemporaryFolder folder;
    const auto file = test::writeFileText(folder / "numbers.txt", std::string(10'000, '1'));
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    for (int given = 0; given < 30; ++given) {
        BlocksAhead blocks(descriptor, 64, 3);
        auto block = std::make_unique<char[]>(65);
        for (int i = 0; i < given; ++i) {
            blocks.next(block);
        }
    }
    ::close(descriptor);
}

TEST(BlocksAhead, TellOfAFileThatCannotBeReadOn) {
    const test::TemporaryFolder folder;
    const auto file = test::writeFileText(folder / "numbers.txt", std::string(1000, ' '));
    const test::FailingReads failing(300);
    const test::ReadAheadScope ahead("3", 100);
    TextStream stream(file);
    double value = 0;
    EXPECT_FALSE(stream.readDouble(value)); // the first that is asked for begins the reading ahead
    EXPECT_TRUE(stream.readFailed());
    EXPECT_EQ(stream.tell(), 300);
}

/// How many come at once depends on the block.
void takeFiveLines(TextStream& stream, std::array<double, 3>& sums) {
    std::array<double, 15> values{};
    std::size_t lines = 0;
    while (lines < 5) {
        const std::size_t more = stream.takeLinesOfDoubles(values.data() + 3 * lines, 3, 5 - lines);
        lines += more;
        if (more == 0 && !stream.readLineOfDoubles(values.data() + 3 * lines, 3)) {
            break;
        }
        lines += more == 0 ? 1 : 0;
    }
    for (std::size_t i = 0; i < 3 * lines; ++i) {
        sums.at(i % 3) += values.at(i) * static_cast<double>(i + 1);
    }
}

/// What a script of reads takes from a file, as text.
std::string taken(const std::filesystem::path& file, const std::string& script) {
    TextStream stream(file, 64);
    std::string all;
    std::string word;
    for (const char kind : script) {
        double real = -1;
        std::array<double, 3> three{};
        std::int32_t whole = -1;
        switch (kind) {
        case 'd':
            stream.readDouble(real);
            break;
        case 'i':
            stream.readInt(whole);
            break;
        case 'm':
            stream.readDoubles(three.data(), three.size());
            break;
        case 'j': {
            std::array<std::int32_t, 3> integers{};
            stream.readInts(integers.data(), integers.size());
            std::copy(integers.begin(), integers.end(), three.begin());
            break;
        }
        case 'o':
            stream.readLineOfDoubles(three.data(), three.size());
            break;
        case 'n':
            takeFiveLines(stream, three);
            break;
        case 'e':
            stream.takeLineEnd();
            break;
        case 'w':
            stream.readWord(word);
            break;
        case 'l':
            stream.getline(word);
            break;
        case 'b':
            stream.clear();
            stream.seek(stream.tell() / 2);
            break;
        default:
            stream.clear();
        }
        for (const double value : three) {
            all += std::to_string(test::bitsOf(value)) + ' ';
        }
        all += std::to_string(test::bitsOf(real)) + ' ' + std::to_string(whole) + ' ' + word + ' ' +
               std::to_string(stream.tell()) + (stream.eof() ? "e" : "") + (stream.fail() ? "f" : "") + '\n';
    }
    return all + std::to_string(stream.joinedNumbers()) + ' ' + std::to_string(stream.firstJoinedNumber());
}

TEST(BlocksAhead, AStreamGivesTheSameWithThem) {
    const test::TemporaryFolder folder;
    std::mt19937 random(81);
    const std::string letters = "0123456789012345678901234567890123456789+-..eE x           \n\n\t";
    for (int round = 0; round < 600 && !testing::Test::HasFailure(); ++round) {
        std::string text;
        for (std::size_t left = random() % 400; left > 0; --left) {
            text += letters[random() % letters.size()];
        }
        std::string script;
        for (int step = 0; step < 60; ++step) {
            script += "ddddiiimmoojjnnewlcccb"[random() % 22];
        }
        const auto file = test::writeFileText(folder / "numbers.txt", text);
        const std::string alone = taken(file, script);
        const char* const threads[] = {"2", "7", "64"};
        const test::ReadAheadScope ahead(threads[round % 3], 1 + random() % 200);
        EXPECT_EQ(taken(file, script), alone) << "text [" << text << "] script " << script;
    }
}

TEST(BlocksAhead, AStreamGivesTheSameLinesWithThem) {
    const test::TemporaryFolder folder;
    std::mt19937 random(82);
    const std::vector<std::string> pieces{"1 2 3\n",    " -1.5 2e1\t.5 \r\n", "4 5 6\n",     "3 4\n", "1\n2 3\n",
                                          "7 8 9 10\n", "1.2.3 4 5\n",        "\n1 2 3\n\n", "x\n",   "0 0 0"};
    for (int round = 0; round < 400 && !testing::Test::HasFailure(); ++round) {
        std::string text;
        for (std::size_t left = random() % 40; left > 0; --left) {
            text += pieces[random() % (round % 2 == 0 ? pieces.size() : 3)];
        }
        std::string script = "d";
        for (int step = 0; step < 40; ++step) {
            script += "oooonnnneimjlc"[random() % 14];
        }
        const auto file = test::writeFileText(folder / "numbers.txt", text);
        const std::string alone = taken(file, script);
        const char* const threads[] = {"2", "7", "64"};
        const test::ReadAheadScope ahead(threads[round % 3], 10 + random() % 100);
        EXPECT_EQ(taken(file, script), alone) << "text [" << text << "] script " << script;
    }
}

TEST(BlocksAhead, SmallFilesDoWithout) {
    EXPECT_GE(aheadSizes().leastFile, std::int64_t{1} << 20);
    EXPECT_GT(aheadSizes().numbersBefore, 0);
}

} // namespace
} // namespace velmora
