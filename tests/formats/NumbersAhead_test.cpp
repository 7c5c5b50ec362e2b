#include "NumbersAhead.h"

#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ReadAheadScope.h"
#include "TextStream.h"
#include "format_test_tools.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The bytes at which numbers were converted.
std::vector<std::size_t> places(const std::string& text, std::size_t piece) {
    NumbersAhead numbers;
    EXPECT_FALSE(numbers.isReady());
    numbers.convert(text.c_str(), text.size(), piece);
    EXPECT_TRUE(numbers.isReady());
    std::vector<std::size_t> found;
    for (std::size_t begin = 0; begin <= text.size(); ++begin) {
        if (numbers.at(begin) != nullptr) {
            found.push_back(begin);
        }
    }
    return found;
}

TEST(NumbersAhead, AreThoseBehindWhiteSpaceWhateverThePieces) {
    const std::string text = "1 -2.5\n+7\tx3 .5  12.0.5 vertex -.25e1 8\n";
    for (std::size_t piece = 1; piece <= text.size() + 1; ++piece) {
        EXPECT_THAT(places(text, piece), ElementsAre(0, 2, 7, 13, 17, 31, 38)) << piece;
    }
}

TEST(NumbersAhead, WhatAStreamWouldNotTakeAsItStandsIsLeftOut) {
    EXPECT_THAT(places("1e 2e+ - + . 1e999 inf nan e5 0x ", 4), ElementsAre(30)); // of "0x" a stream takes the 0
    EXPECT_THAT(places("1 23", 4), ElementsAre(0));                               // the last one may go on
    EXPECT_THAT(places("", 4), IsEmpty());
    EXPECT_THAT(places(" \n ", 1), IsEmpty());
}

TEST(NumbersAhead, KnowTheirValueTheirLengthAndWhetherTheyAreWhole) {
    const std::string text = "12 -0 -3.5e2 +2147483647 -999999999 5.\n";
    NumbersAhead numbers;
    numbers.convert(text.c_str(), text.size(), 3);
    const auto expect = [&numbers](std::size_t begin, double value, int length, bool whole) {
        const NumbersAhead::Number* const number = numbers.at(begin);
        ASSERT_NE(number, nullptr) << begin;
        EXPECT_EQ(number->value, value);
        EXPECT_EQ(std::signbit(number->value), std::signbit(value));
        EXPECT_EQ(number->length, length);
        EXPECT_EQ(number->whole, whole);
    };
    expect(0, 12, 2, true);
    expect(3, -0.0, 2, true);
    expect(6, -350, 6, false);
    expect(13, 2147483647, 11, false); // more digits than are taken for whole without a look
    expect(25, -999999999, 10, true);
    expect(36, 5, 2, false);
    EXPECT_EQ(numbers.at(3), nullptr); // a later one was asked for
}

/// What a script of reads takes from a file, as text.
std::string taken(const std::filesystem::path& file, const std::string& script) {
    TextStream stream(file, 64);
    std::string all;
    std::string word;
    for (const char kind : script) {
        double real = -1;
        std::int32_t whole = -1;
        switch (kind) {
        case 'd':
            stream.readDouble(real);
            break;
        case 'i':
            stream.readInt(whole);
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
        all += std::to_string(test::bitsOf(real)) + ' ' + std::to_string(whole) + ' ' + word + ' ' +
               std::to_string(stream.tell()) + (stream.eof() ? "e" : "") + (stream.fail() ? "f" : "") + '\n';
    }
    return all + std::to_string(stream.joinedNumbers()) + ' ' + std::to_string(stream.firstJoinedNumber());
}

TEST(NumbersAhead, AStreamGivesTheSameWithThem) {
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
            script += "ddddddiiiiwlcccb"[random() % 16];
        }
        const auto file = test::writeFileText(folder / "numbers.txt", text);
        const std::string alone = taken(file, script);
        const char* const threads[] = {"2", "7", "64"};
        const test::ReadAheadScope ahead(threads[round % 3], 1 + random() % 200, 1 + random() % 60);
        EXPECT_EQ(taken(file, script), alone) << "text [" << text << "] script " << script;
    }
}

TEST(NumbersAhead, SmallFilesAndSingleThreadsDoWithout) {
    EXPECT_GE(aheadSizes().leastFile, std::int64_t{1} << 20);
    EXPECT_GT(aheadSizes().block, aheadSizes().piece);
    EXPECT_GT(aheadSizes().numbersBefore, 0);
}

} // namespace
} // namespace velmora
