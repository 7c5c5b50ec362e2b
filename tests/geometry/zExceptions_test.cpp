#include "zExceptions.h"

#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "number_text.h"

namespace velmora {
namespace {

template <class Error>
void expectClass(std::int32_t code, const std::string& name) {
    const Error error("unit", 1234567);
    EXPECT_EQ(error.code(), code);
    EXPECT_EQ(error.name(), name);
    EXPECT_EQ(error.text(), "...");
    EXPECT_EQ(error.file(), "unit");
    EXPECT_EQ(error.line(), 1234567);
    EXPECT_EQ(error.message(), "\n--- Error Message ---\n\n" + name + ": ...\n\nIn file:\n'unit'\n\nLine No 1234567");
    EXPECT_EQ(Error("unit", 1, "my text").message(),
              "\n--- Error Message ---\n\n" + name + ": my text\n\nIn file:\n'unit'\n\nLine No 1");
}

TEST(Exceptions, EveryClassHasItsCodeAndName) {
    expectClass<IndexError>(1, "Index Error");
    expectClass<FileError>(2, "File Error");
    expectClass<AlgoError>(3, "Algorithm Error");
    expectClass<SystemError>(4, "System Error");
    expectClass<IOError>(10, "Input-Output Error");
    expectClass<EOFError>(11, "End Of File Error");
    expectClass<ValueError>(12, "Value Error");
    expectClass<InfinityError>(14, "Infinity Error");
    expectClass<ParseError>(15, "Parsing Error");
}

TEST(Exceptions, TheRootTakesItsCodeAndIsUnknown) {
    const GenericError error(77, "unit", 5);
    EXPECT_EQ(error.code(), 77);
    EXPECT_EQ(error.message(), "\n--- Error Message ---\n\nUnknown Exception: ...\n\nIn file:\n'unit'\n\nLine No 5");
}

TEST(Exceptions, AnEmptyMessageLeavesTheRestOfTheReport) {
    EXPECT_EQ(ParseError("f", 0, "").message(),
              "\n--- Error Message ---\n\nParsing Error: \n\nIn file:\n'f'\n\nLine No 0");
}

// The class by whose handler an error is caught first.
template <class Error, class First, class Second>
std::string caughtBy() {
    try {
        throw Error("f", 1);
    } catch (const First&) {
        return "first";
    } catch (const Second&) {
        return "second";
    }
}

TEST(Exceptions, HandlersOfABaseCatchTheDerivedClasses) {
    EXPECT_EQ((caughtBy<EOFError, ParseError, IOError>()), "second");
    EXPECT_EQ((caughtBy<EOFError, ParseError, GenericError>()), "second");
    EXPECT_EQ((caughtBy<InfinityError, ParseError, ValueError>()), "second");
    EXPECT_EQ((caughtBy<InfinityError, IOError, GenericError>()), "second");
    EXPECT_EQ((caughtBy<IOError, EOFError, GenericError>()), "second");
}

TEST(Exceptions, ACopyCaughtByValueKeepsItsName) {
    try {
        throw EOFError("f", 9);
    } catch (GenericError error) { // NOLINT(misc-throw-by-value-catch-by-reference)
        EXPECT_EQ(error.name(), "End Of File Error");
    }
}

TEST(Exceptions, TheyAreNoExceptionsOfTheStandardLibrary) {
    EXPECT_FALSE((std::is_base_of_v<std::exception, GenericError>));
    EXPECT_FALSE(std::is_polymorphic_v<GenericError>);
}

TEST(ToString, NumbersHaveTheDigitsOfTheirType) {
    EXPECT_EQ(toString(1.0F / 3.0F), "0.333333");
    EXPECT_EQ(toString(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(toString(0.1), "0.1");
    EXPECT_EQ(toString(1e300), "1e+300");
    EXPECT_EQ(toString(-42), "-42");
    EXPECT_EQ(toString(std::int64_t{1234567890123}), "1234567890123");
    EXPECT_EQ(toString('c'), "c");
    EXPECT_EQ(toString(static_cast<unsigned char>('u')), "u");
}

TEST(ToString, FixedCountsDigitsBehindThePoint) {
    EXPECT_EQ(toString(0.5F, "fixed"), "0.500000");
    EXPECT_EQ(toString(0.5, "fixed"), "0.5000000000000000");
    EXPECT_EQ(toString(7, "fixed"), "7");
}

TEST(ToString, AnyOtherFormatGivesNothing) {
    EXPECT_EQ(toString(0.5, "scientific"), "");
    EXPECT_EQ(toString(7, " "), "");
    EXPECT_EQ(toString('c', "other"), "c");
}

TEST(FromString, ARestBehindTheNumberIsNoMatter) {
    EXPECT_EQ(fromString<int>("12"), 12);
    EXPECT_EQ(fromString<int>("  -7abc"), -7);
    EXPECT_EQ(fromString<int>("3.9"), 3);
    EXPECT_EQ(fromString<double>("1.5e3x"), 1500.0);
    EXPECT_EQ(fromString<float>(".25"), 0.25F);
    EXPECT_EQ(fromString<int>("0x10"), 0);
}

TEST(FromString, WhatIsNoNumberIsAValueError) {
    for (const char* const text : {"", " ", "abc", "-", "2147483648", "-2147483649"}) {
        EXPECT_THROW(fromString<int>(text), ValueError) << text;
    }
    for (const char* const text : {"", "x1", ".", "1e", "1e999", "nan", "inf"}) {
        EXPECT_THROW(fromString<double>(text), ValueError) << text;
    }
    try {
        fromString<int>("x");
        FAIL() << "no error";
    } catch (const ValueError& error) {
        EXPECT_EQ(error.text(), "...");
        EXPECT_EQ(error.file(), "zExceptions");
    }
}

class Grouping : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(FromString, TheGlobalLocaleHasNoEffect) {
    const std::locale old = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    EXPECT_EQ(fromString<double>("1.5"), 1.5);
    EXPECT_EQ(toString(1234567), "1234567");
    EXPECT_EQ(toString(0.5), "0.5");
    EXPECT_TRUE(ParseError("f", 1234567).message().ends_with("Line No 1234567"));
    std::locale::global(old);
}

} // namespace
} // namespace velmora
