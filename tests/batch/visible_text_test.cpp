#include "visible_text.h"

#include <gtest/gtest.h>

#include "json_values.h"

namespace velmora {
namespace {

TEST(VisibleText, LeavesTextAsItIs) {
    EXPECT_EQ(visibleText("wing 1.apt"), "wing 1.apt");
    EXPECT_EQ(visibleText("Fl\xc3\xbcgel \xe2\x86\x92 \xf0\x9f\x9b\xa9.apt"),
              "Fl\xc3\xbcgel \xe2\x86\x92 \xf0\x9f\x9b\xa9.apt");
    EXPECT_EQ(visibleText("a\tb"), "a\tb");
}

TEST(VisibleText, WritesControlsAsTheirNumbers) {
    EXPECT_EQ(visibleText("a\x1b[2Jb"), "a\\x1b[2Jb");
    EXPECT_EQ(visibleText(std::string("\0\r\x7f", 3)), "\\x00\\x0d\\x7f");
    EXPECT_EQ(visibleText("\xc2\x9b"
                          "31m"),
              "\\x9b31m")
        << "the one that some terminals take for escape and bracket";
    EXPECT_EQ(visibleText("\xc2\xa0"), "\xc2\xa0") << "the first character behind them";
}

TEST(VisibleText, KeepsLineEndsWhereTheyAreWanted) {
    EXPECT_EQ(visibleText("a\nerror: b"), "a\\x0aerror: b");
    EXPECT_EQ(visibleText("a\nb\x1b", true), "a\nb\\x1b");
}

TEST(VisibleText, WritesBytesThatAreNoUtf8AsTheirNumbers) {
    EXPECT_EQ(visibleText("\x9b"
                          "2J"),
              "\\x9b2J");
    EXPECT_EQ(visibleText("a\xc3"), "a\\xc3") << "ends within a character";
    EXPECT_EQ(visibleText("\xc3("), "\\xc3(");
    EXPECT_EQ(visibleText("\xc0\x9b"), "\\xc0\\x9b") << "longer than need be";
    EXPECT_EQ(visibleText("\xe0\x82\x9b"), "\\xe0\\x82\\x9b");
    EXPECT_EQ(visibleText("\xf0\x80\x80\x9b"), "\\xf0\\x80\\x80\\x9b");
    EXPECT_EQ(visibleText("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "half of a pair";
    EXPECT_EQ(visibleText("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "behind the last character";
    EXPECT_EQ(visibleText("\xff"), "\\xff");
}

TEST(VisibleJson, StaysTheValueThatItIs) {
    const Json value = {{"name", "a\x7f\xc2\x9b\x1b\xc3\xbc"}};
    const std::string text = visibleJson(value.dump());
    EXPECT_EQ(text, "{\"name\":\"a\\u007f\\u009b\\u001b\xc3\xbc\"}");
    EXPECT_EQ(Json::parse(text), value);
}

} // namespace
} // namespace velmora
