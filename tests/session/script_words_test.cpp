#include "script_words.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"

namespace velmora::test {
namespace {

TEST(ScriptWords, StandInQuotationMarksOnlyWhereTheyNeedThem) {
    EXPECT_EQ(scriptWord("wing.apt"), "wing.apt");
    EXPECT_EQ(scriptWord("C:\\wing#2.apt"), "C:\\wing#2.apt");
    EXPECT_EQ(scriptWord("my wing.apt"), "\"my wing.apt\"");
    EXPECT_EQ(scriptWord("#2.apt"), "\"#2.apt\"") << "else a comment";
    EXPECT_EQ(scriptWord(""), "\"\"");
    EXPECT_EQ(scriptWord("a \\ \"b\""), R"("a \\ \"b\"")");
}

TEST(ScriptWords, OfASettingOnlyTheValueIsQuoted) {
    EXPECT_EQ(scriptSetting("file", "#2.apt"), "file=#2.apt");
    EXPECT_EQ(scriptSetting("do", "inputAfter 1 2 3"), "do=\"inputAfter 1 2 3\"");
    EXPECT_EQ(scriptSetting("file", "say\"so"), R"(file="say\"so")");
}

TEST(ScriptFile, HoldsALineEach) {
    const TemporaryFolder folder;
    EXPECT_TRUE(writeScript(folder / "a.script", {"open wing.apt", "run line.copy"}));
    EXPECT_EQ(fileText(folder / "a.script"), "open wing.apt\nrun line.copy\n");
    EXPECT_TRUE(writeScript(folder / "a.script", {}));
    EXPECT_EQ(fileText(folder / "a.script"), "");
    EXPECT_FALSE(writeScript(folder / "gone" / "a.script", {"open wing.apt"}));
}

} // namespace
} // namespace velmora::test
