// What the scanner of characters makes of a file, and where it leaves the stream.

#include <string>

#include <gtest/gtest.h>

#include "TecplotHeaderScan.h"
#include "TextStream.h"
#include "temporary_folder.h"
#include "zExceptions.h"

namespace velmora {
namespace {

struct Scanned {
    std::string text;
    std::int64_t zoneStart;
    std::string rest; // from where the stream stands
};

Scanned scan(std::string_view file, std::size_t blockSize = 7) {
    const test::TemporaryFolder folder;
    TextStream stream(test::writeFileText(folder / "a.dat", file), blockSize);
    TecplotHeaderScan header(stream);
    const std::string text = header.next();
    return {text, header.zoneStart(), std::string(file.substr(static_cast<std::size_t>(stream.tell())))};
}

TEST(TecplotHeaderScan, RunsOfWhiteSpaceBecomeTheirFirstCharacter) {
    EXPECT_EQ(scan(" \tZONE\t \n T\r\n\nX").text, "ZONE\tT\rX");
}

TEST(TecplotHeaderScan, ACommentBecomesALineFeedAlsoBehindABlank) {
    EXPECT_EQ(scan("A # 1 2 3 \"[\nB\n#\nC#").text, "A \nB\n\nC\n");
}

TEST(TecplotHeaderScan, BracketsAndQuotesGoOverWhole) {
    EXPECT_EQ(scan("DT=[1 2  3\n\n4] \"5 6  7#[\" Z").text, "DT=[1 2  3\n\n4] \"5 6  7#[\" Z");
}

TEST(TecplotHeaderScan, WhatIsNotClosedRunsToTheEndOfTheFile) {
    EXPECT_EQ(scan("A [1 2 3").text, "A [1 2 3");
    EXPECT_EQ(scan("A \"1 2 3").text, "A \"1 2 3");
    EXPECT_EQ(scan("A [").text, "A [");
}

TEST(TecplotHeaderScan, AHeaderWithoutAnEndIsRefusedBeforeItFillsTheMemory) {
    constexpr std::size_t tooMuch = (std::size_t{1} << 26) + 1;
    constexpr std::size_t block = 1 << 20;
    EXPECT_THROW(scan(std::string(tooMuch, 'a'), block), ParseError);
    EXPECT_THROW(scan("T \"" + std::string(tooMuch, ' '), block), ParseError);
    EXPECT_THROW(scan("T " + std::string(tooMuch, '7'), block), ParseError);
}

TEST(TecplotHeaderScan, AHeaderEndsInFrontOfThreeNumbers) {
    const Scanned scanned = scan("ZONE I=2, F=POINT\n  1 -2.5 +.5e3 4\n");
    EXPECT_EQ(scanned.text, "ZONE I=2,F=POINT\n");
    EXPECT_EQ(scanned.rest, "1 -2.5 +.5e3 4\n");
}

TEST(TecplotHeaderScan, TheValueThatEndsAHeaderIsTakenForData) {
    const Scanned scanned = scan("ZONE I= 504\n1 2 3\n");
    EXPECT_EQ(scanned.text, "ZONE I= ");
    EXPECT_EQ(scanned.rest, "504\n1 2 3\n");
}

TEST(TecplotHeaderScan, TokensThatAreNoNumbersGoOverWithTheirDelimiters) {
    EXPECT_EQ(scan("Z I=3, J=4 K").text, "Z I=3,J=4 K");
    EXPECT_EQ(scan("Z 1,,2").text, "Z 1,,2");
    EXPECT_EQ(scan("Z 1 2 x y").text, "Z 1 2 x y");
    EXPECT_EQ(scan("Z 1#2 3\n\n4 x").text, "Z 1#4 x");
}

TEST(TecplotHeaderScan, WhiteSpaceBehindAFailedCheckIsPassedOver) {
    EXPECT_EQ(scan("Z I=3 J=4 \n\n K").text, "Z I=3 J=4 K");
}

TEST(TecplotHeaderScan, ATokenThatBeginsWithANumberIsOne) {
    EXPECT_EQ(scan("Z 10abc 2;3 1e5x").rest, "10abc 2;3 1e5x");
    EXPECT_EQ(scan("Z 1,2,3,").rest, "1,2,3,");
    EXPECT_EQ(scan("Z 1 2 3#").rest, "1 2 3#");
}

TEST(TecplotHeaderScan, TokensThatNoStreamConvertsAreNoNumbers) {
    for (const char* const token : {"1e", "-", ".", "+.", "1e999", "-x", "1e+"}) {
        EXPECT_EQ(scan(std::string("Z 1 2 ") + token + " 4 5").rest, "") << token;
    }
    for (const char* const token : {"inf", "nan", "x1"}) {
        EXPECT_EQ(scan(std::string("Z 1 2 ") + token + " 4 5").rest, "") << token;
    }
}

TEST(TecplotHeaderScan, TheThirdNumberMayEndTheFile) {
    const Scanned scanned = scan("Z 1 2 3");
    EXPECT_EQ(scanned.text, "Z ");
    EXPECT_EQ(scanned.rest, "1 2 3");
}

TEST(TecplotHeaderScan, FewerNumbersAtTheEndOfTheFileAreHeaderText) {
    EXPECT_EQ(scan("Z K=1").text, "Z K=1");
    EXPECT_EQ(scan("Z 1 2").text, "Z 1 2");
}

TEST(TecplotHeaderScan, NumbersBeforeTheFirstWordArePassedOver) {
    const Scanned scanned = scan("1 2\n3 4\nZONE\n");
    EXPECT_EQ(scanned.text, "ZONE\n");
    EXPECT_EQ(scanned.zoneStart, 7) << "behind the last number";
}

TEST(TecplotHeaderScan, LeftOverNumbersCountAsTheFirstWord) {
    const Scanned scanned = scan("1 2,3 4 5 Z");
    EXPECT_EQ(scanned.text, ",");
    EXPECT_EQ(scanned.rest, "3 4 5 Z");
    EXPECT_EQ(scanned.zoneStart, 3);
}

TEST(TecplotHeaderScan, QuotesAndBracketsAreNoFirstWord) {
    const Scanned scanned = scan("\"a\" [b] 1 2 3 Z");
    EXPECT_EQ(scanned.text, "\"a\" [b] Z");
    EXPECT_EQ(scanned.zoneStart, 13);
}

TEST(TecplotHeaderScan, ASignThatIsNoNumberIsHeaderText) {
    EXPECT_EQ(scan("-abc d").text, "-abc d");
    EXPECT_EQ(scan("...").text, "...");
}

TEST(TecplotHeaderScan, TheZoneStartsBehindTheFirstCharacterOfItsFirstWord) {
    EXPECT_EQ(scan("#c\n\n  ZONE").zoneStart, 7);
}

TEST(TecplotHeaderScan, AnEmptyFileHasAnEmptyHeader) {
    EXPECT_EQ(scan("").text, "");
}

std::string zoneFound(std::string_view file) {
    const test::TemporaryFolder folder;
    TextStream stream(test::writeFileText(folder / "a.dat", file), 5);
    skipToTecplotZone(stream);
    return stream.eof() ? "end" : std::string(file.substr(static_cast<std::size_t>(stream.tell())));
}

TEST(SkipToTecplotZone, OnlyAWordThatBeginsWithACapitalZStartsAZone) {
    EXPECT_EQ(zoneFound("1 2 3\nZONE T"), "ZONE T");
    EXPECT_EQ(zoneFound("x Zone\tT"), "Zone\tT");
    EXPECT_EQ(zoneFound("x zone T"), "end");
}

TEST(SkipToTecplotZone, TheWordMustBeDelimitedByWhiteSpace) {
    EXPECT_EQ(zoneFound("ZONE, ZONET ZONE=1 ZON E"), "end");
    EXPECT_EQ(zoneFound("ZONE, ZONE "), "ZONE ");
}

TEST(SkipToTecplotZone, TheEndOfALongerWordStartsAZoneToo) {
    EXPECT_EQ(zoneFound("ARZONE T"), "ZONE T");
    EXPECT_EQ(zoneFound("GIMM_ZONE: T"), "end");
    EXPECT_EQ(zoneFound("ZZONE T"), "end") << "the word from the first Z on is passed over whole";
}

TEST(SkipToTecplotZone, TheWordMayEndTheFile) {
    EXPECT_EQ(zoneFound("9 ZONE"), "ZONE");
}

} // namespace
} // namespace velmora
