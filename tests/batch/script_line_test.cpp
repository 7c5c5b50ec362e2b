#include "script_line.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> wordsOf(std::string_view line) {
    const ScriptLine result = splitLine(line);
    EXPECT_FALSE(result.failure) << line;
    return result.words;
}

TEST(ScriptLine, WordsAreSeparatedByBlanksOfAnyNumber) {
    EXPECT_THAT(wordsOf("  run \t line.rebreak  newCount=5 \r"), ElementsAre("run", "line.rebreak", "newCount=5"));
}

TEST(ScriptLine, AnEmptyLineHasNoWords) {
    EXPECT_THAT(wordsOf(""), IsEmpty());
    EXPECT_THAT(wordsOf(" \t\r"), IsEmpty());
}

TEST(ScriptLine, AWordThatBeginsWithAHashStartsAComment) {
    EXPECT_THAT(wordsOf("# open wing.apt"), IsEmpty());
    EXPECT_THAT(wordsOf("open wing.apt #the first \"one"), ElementsAre("open", "wing.apt"));
}

TEST(ScriptLine, AHashInsideAWordIsPartOfIt) {
    EXPECT_THAT(wordsOf("open wing#2.apt file=#1"), ElementsAre("open", "wing#2.apt", "file=#1"));
}

TEST(ScriptLine, AQuotedHashStartsNoComment) {
    EXPECT_THAT(wordsOf("open \"#1.apt\""), ElementsAre("open", "#1.apt"));
}

TEST(ScriptLine, AWholeWordMayBeQuoted) {
    EXPECT_THAT(wordsOf("open \"my wing.apt\" x"), ElementsAre("open", "my wing.apt", "x"));
    EXPECT_THAT(wordsOf("run file.open \"file=my wing.apt\""), ElementsAre("run", "file.open", "file=my wing.apt"));
}

TEST(ScriptLine, AWordMayBeQuotedFromItsEqualsSignOn) {
    EXPECT_THAT(wordsOf("file=\"my wing.apt\""), ElementsAre("file=my wing.apt"));
}

TEST(ScriptLine, AnEmptyPairOfQuotesIsAnEmptyWord) {
    EXPECT_THAT(wordsOf("open \"\" x="), ElementsAre("open", "", "x="));
}

TEST(ScriptLine, EscapesStandForQuotesAndBackslashes) {
    EXPECT_THAT(wordsOf(R"("a\"b" f="c:\\x")"), ElementsAre("a\"b", "f=c:\\x"));
}

TEST(ScriptLine, AnyOtherBackslashStandsForItself) {
    EXPECT_THAT(wordsOf(R"("a\nb" c\d)"), ElementsAre(R"(a\nb)", R"(c\d)"));
}

TEST(ScriptLine, AQuoteInsideAWordIsRefused) {
    EXPECT_TRUE(splitLine("open my\"wing.apt").failure);
    EXPECT_TRUE(splitLine("file=a\"b\"").failure);
    EXPECT_TRUE(splitLine("a=b=\"c\"").failure);
}

TEST(ScriptLine, TextBehindAClosingQuoteIsRefused) {
    EXPECT_TRUE(splitLine("\"a\"b").failure);
    EXPECT_TRUE(splitLine("a=\"b\"\"c\"").failure);
}

TEST(ScriptLine, AnUnclosedQuoteIsRefused) {
    EXPECT_TRUE(splitLine("open \"wing.apt").failure);
    EXPECT_TRUE(splitLine("open \"wing.apt\\\"").failure);
    EXPECT_TRUE(splitLine("\"").failure);
}

TEST(ScriptLine, AnyBytesPass) {
    const std::string_view bytes("open \0\xff\xfe x", 10);
    const std::vector<std::string> words = wordsOf(bytes);
    ASSERT_EQ(words.size(), 3U);
    EXPECT_EQ(words[1], std::string("\0\xff\xfe", 3));
}

TEST(ScriptLine, AVeryLongWordPasses) {
    const std::string word(5'000'000, 'a');
    EXPECT_THAT(wordsOf("open " + word), ElementsAre("open", word));
}

TEST(Assignment, SplitsAtTheFirstEqualsSign) {
    const auto assignment = asAssignment("file=a=b");
    ASSERT_TRUE(assignment);
    EXPECT_EQ(assignment->name, "file");
    EXPECT_EQ(assignment->value, "a=b");
}

TEST(Assignment, NeedsANameAndAnEqualsSign) {
    EXPECT_FALSE(asAssignment("file"));
    EXPECT_FALSE(asAssignment("=x"));
    EXPECT_TRUE(asAssignment("x="));
}

} // namespace
} // namespace velmora
