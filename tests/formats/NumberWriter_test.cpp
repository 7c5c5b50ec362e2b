#include "NumberWriter.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "NumberPortions.h"
#include "parallel.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

std::string written(int precision, std::size_t blockSize, const std::function<void(NumberWriter&)>& write,
                    NumberNotation notation = NumberNotation::Scientific) {
    const test::TemporaryFolder folder;
    SafeFile file(folder / "out.txt");
    NumberWriter writer(file, precision, notation, blockSize);
    write(writer);
    EXPECT_TRUE(writer.flush());
    EXPECT_TRUE(file.commit());
    return test::fileText(folder / "out.txt");
}

std::string number(double value, int precision) {
    return written(precision, 4096, [value](NumberWriter& writer) { writer.writeDouble(value); });
}

TEST(NumberWriter, SixteenDigitsStandBehindThePoint) {
    EXPECT_EQ(number(0.0, 16), "0.0000000000000000e+00");
    EXPECT_EQ(number(-0.0, 16), "-0.0000000000000000e+00");
    EXPECT_EQ(number(1.0, 16), "1.0000000000000000e+00");
    EXPECT_EQ(number(0.1, 16), "1.0000000000000001e-01");
    EXPECT_EQ(number(-1234.5, 16), "-1.2345000000000000e+03");
    EXPECT_EQ(number(1e300, 16), "1.0000000000000001e+300");
    EXPECT_EQ(number(5e-324, 16), "4.9406564584124654e-324");
    EXPECT_EQ(number(std::numeric_limits<double>::max(), 16), "1.7976931348623157e+308");
}

TEST(NumberWriter, TheLastDigitIsRoundedToEvenOnATie) {
    EXPECT_EQ(number(2.5, 0), "2e+00");
    EXPECT_EQ(number(3.5, 0), "4e+00");
    EXPECT_EQ(number(9.96, 1), "1.0e+01");
    EXPECT_EQ(number(0.125, 1), "1.2e-01");
}

TEST(NumberWriter, WhatIsNoNumberIsWrittenAsAWord) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::bit_cast<double>(std::uint64_t{0x7FF8000000000000});
    EXPECT_EQ(number(infinity, 16), "inf");
    EXPECT_EQ(number(-infinity, 16), "-inf");
    EXPECT_EQ(number(nan, 16), "nan");
    EXPECT_EQ(number(std::copysign(nan, -1.0), 16), "-nan");
}

TEST(NumberWriter, EveryDoubleIsWrittenAsAStreamWritesIt) {
    std::mt19937_64 random(5);
    std::vector<double> values{0.0, -0.0, 1e22, 1e23, 5e-324, std::numeric_limits<double>::max()};
    while (values.size() < 5000) {
        values.push_back(std::bit_cast<double>(random()));
    }
    for (const int precision : {-1, 0, 1, 6, 15, 16, 17, 40, 400, NumberWriter::maxPrecision}) {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << std::scientific;
        stream.precision(precision);
        for (const double value : values) {
            stream << value << '\n';
        }
        const std::string text = written(precision, 1 << 16, [&values](NumberWriter& writer) {
            for (const double value : values) {
                writer.writeDouble(value);
                writer.writeChar('\n');
            }
        });
        EXPECT_TRUE(text == stream.str()) << "precision " << precision;
    }
}

TEST(NumberWriter, IntegersAndTextsAreWrittenAsTheyAre) {
    const std::string text = written(16, 4096, [](NumberWriter& writer) {
        writer.writeInt(0);
        writer.writeChar(' ');
        writer.writeInt(-12);
        writer.writeText(" to ");
        writer.writeInt(std::numeric_limits<std::int64_t>::min());
    });
    EXPECT_EQ(text, "0 -12 to -9223372036854775808");
}

TEST(NumberWriter, TheBlockSizeHasNoEffectOnTheText) {
    const auto write = [](NumberWriter& writer) {
        for (int i = 0; i < 2000; ++i) {
            writer.writeInt(i);
            writer.writeText(" is ");
            writer.writeDouble(i / 7.0);
            writer.writeChar('\n');
        }
    };
    const std::string expected = written(16, NumberWriter::defaultBlockSize, write);
    EXPECT_EQ(expected.substr(0, 28), "0 is 0.0000000000000000e+00\n");
    for (const std::size_t blockSize : {std::size_t{1}, std::size_t{900}, std::size_t{1000}}) {
        EXPECT_TRUE(written(16, blockSize, write) == expected) << blockSize;
    }
}

/// While it lives, portions are that small, and threads that many, from the first full block on.
class PortionScope {
public:
    PortionScope(std::size_t threads, std::size_t numbers) : before_(portionSizes()), threads_(threads) {
        portionSizes() = {numbers, 0};
    }
    ~PortionScope() { portionSizes() = before_; }
    PortionScope(const PortionScope&) = delete;
    PortionScope& operator=(const PortionScope&) = delete;

private:
    PortionSizes before_;
    ThreadCountScope threads_;
};

/// Numbers, words and single characters as they come.
void writeAnything(NumberWriter& writer, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> value(-1e3, 1e3);
    for (int i = 0; i < 3000; ++i) {
        switch (random() % 6) {
        case 0:
            writer.writeInt(static_cast<std::int64_t>(random()) - 2'000'000'000);
            break;
        case 1:
            writer.writeText(std::string(random() % 90, static_cast<char>('a' + random() % 26)));
            break;
        case 2:
            writer.writeQuoted("a \"zone\"");
            break;
        case 3:
            writer.writeChar(static_cast<char>(random() % 128));
            break;
        default:
            writer.writeDouble(value(random));
            writer.writeChar(i % 3 == 0 ? '\n' : ' ');
        }
    }
}

TEST(NumberWriter, AnyNumberOfThreadsWritesTheSameText) {
    for (const NumberNotation notation : {NumberNotation::Scientific, NumberNotation::General}) {
        for (const int precision : {-1, 0, 6, 16, 17, 32, 33}) {
            const auto text = [&](std::size_t threads, std::size_t numbers, std::size_t blockSize) {
                const PortionScope scope(threads, numbers);
                return written(
                    precision, blockSize, [](NumberWriter& writer) { writeAnything(writer, 38); }, notation);
            };
            const std::string alone = text(1, 100, 1 << 20);
            EXPECT_GT(alone.size(), 20'000U);
            for (const std::size_t threads : {2, 7, 64}) {
                EXPECT_EQ(text(threads, 5, 1), alone) << threads << " threads, precision " << precision;
                EXPECT_EQ(text(threads, 100, 3000), alone) << threads << " threads, precision " << precision;
            }
        }
    }
}

TEST(NumberWriter, AFailedWriteOfSeveralThreadsIsToldByFlush) {
    const PortionScope scope(2, 50);
    const test::TemporaryFolder folder;
    SafeFile file(folder / "out.txt");
    NumberWriter writer(file, 16, NumberNotation::Scientific, 1);
    const test::FileSizeLimit limit(30'000);
    writeAnything(writer, 39);
    EXPECT_FALSE(writer.flush());
    EXPECT_FALSE(file.commit());
}

TEST(NumberWriter, APrecisionAboveTheMostIsCutToIt) {
    EXPECT_EQ(number(1.0, NumberWriter::maxPrecision + 100),
              "1." + std::string(NumberWriter::maxPrecision, '0') + "e+00");
}

TEST(NumberWriter, AFailedWriteIsToldByFlush) {
    const test::TemporaryFolder folder;
    const test::FileSizeLimit full(0);
    SafeFile file(folder / "a.txt");
    NumberWriter writer(file, 16);
    writer.writeInt(1);
    EXPECT_FALSE(writer.flush());
    EXPECT_FALSE(file.commit());
}

std::string general(double value, int precision) {
    return written(
        precision, 4096, [value](NumberWriter& writer) { writer.writeDouble(value); }, NumberNotation::General);
}

TEST(NumberWriter, GeneralNotationLeavesTrailingZerosOut) {
    EXPECT_EQ(general(1.0, 6), "1");
    EXPECT_EQ(general(0.1, 6), "0.1");
    EXPECT_EQ(general(123456.0, 6), "123456");
    EXPECT_EQ(general(1234567.0, 6), "1.23457e+06");
    EXPECT_EQ(general(0.0001, 6), "0.0001");
    EXPECT_EQ(general(0.00001, 6), "1e-05");
    EXPECT_EQ(general(-0.0, 6), "-0");
    EXPECT_EQ(general(std::numeric_limits<double>::infinity(), 6), "inf");
    EXPECT_EQ(general(-std::numeric_limits<double>::infinity(), 6), "-inf");
}

TEST(NumberWriter, GeneralNotationIsThatOfAStreamWithoutFlags) {
    std::mt19937_64 random(5);
    std::vector<double> values{0.0,       -0.0,     5e-324,       std::numeric_limits<double>::max(),
                               9.9999995, 999999.5, 0.00009999995};
    for (int i = 0; i < 300; ++i) {
        values.push_back(std::bit_cast<double>(random()));
        values.push_back(static_cast<double>(random() % 2000000) / 1000.0);
    }
    for (const int precision : {-1, 0, 1, 6, 8, 16, 17, 60, 800}) {
        std::ostringstream expected;
        expected.imbue(std::locale::classic());
        expected.precision(precision);
        for (const double value : values) {
            expected << value << ' ';
        }
        const auto writeAll = [&values](NumberWriter& writer) {
            for (const double value : values) {
                writer.writeDouble(value);
                writer.writeChar(' ');
            }
        };
        EXPECT_EQ(written(precision, 4096, writeAll, NumberNotation::General), expected.str()) << precision;
    }
}

TEST(NumberWriter, ATextLongerThanTheBlockIsWrittenWhole) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += std::to_string(i) + ' ';
    }
    EXPECT_EQ(written(6, 1, [&text](NumberWriter& writer) { writer.writeText(text); }), text);
}

TEST(NumberWriterProgress, IsToldByBlocksUpToOneWhateverWasExpected) {
    for (const std::int64_t expected : {2000, 500, 0}) {
        std::vector<double> told;
        written(16, 1024, [&](NumberWriter& writer) {
            writer.reportTo([&told](double fraction) { told.push_back(fraction); }, expected);
            for (int i = 0; i < 1000; ++i) {
                writer.writeDouble(0.1);
                writer.writeInt(7);
            }
        });
        EXPECT_TRUE(std::is_sorted(told.begin(), told.end())) << expected;
        EXPECT_EQ(told.empty(), expected == 0) << expected;
        if (!told.empty()) {
            EXPECT_GT(told.front(), 0.0);
            EXPECT_GT(told.back(), 0.9);
            EXPECT_LE(told.back(), 1.0);
        }
    }
}

} // namespace
} // namespace velmora
