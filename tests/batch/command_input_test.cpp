#include "command_input.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

CommandInput parsed(const std::vector<std::string>& words) {
    auto result = parseCommandInput(words);
    EXPECT_TRUE(std::holds_alternative<CommandInput>(result));
    return std::get<CommandInput>(result);
}

bool refused(const std::vector<std::string>& words) {
    return std::holds_alternative<ScriptFailure>(parseCommandInput(words));
}

TEST(CommandInput, KeepsTheOrderOfAnswersFilesAndFields) {
    const CommandInput input =
        parsed({"answer=yes", "b=1", "file=x.apt", "answer=no", "cancel=file", "a=2", "file=y.apt", "b=3"});
    EXPECT_EQ(input.answers, (std::deque<bool>{true, false}));
    ASSERT_EQ(input.files.size(), 3U);
    EXPECT_EQ(input.files[0], std::filesystem::path("x.apt"));
    EXPECT_FALSE(input.files[1]);
    EXPECT_EQ(input.files[2], std::filesystem::path("y.apt"));
    ASSERT_EQ(input.fields.size(), 3U);
    EXPECT_EQ(input.fields[0].name + input.fields[1].name + input.fields[2].name, "bab");
    EXPECT_EQ(input.fields[2].value, "3");
    EXPECT_EQ(input.cancelledDialogs, 0);
}

TEST(CommandInput, CountsCancelledDialogs) {
    EXPECT_EQ(parsed({"cancel=dialog"}).cancelledDialogs, 1);
}

TEST(CommandInput, RefusesWordsThatGiveNoValue) {
    EXPECT_TRUE(refused({"newCount"}));
    EXPECT_TRUE(refused({"=5"}));
    EXPECT_TRUE(refused({""}));
}

TEST(CommandInput, AnswersAreYesOrNoOnly) {
    EXPECT_TRUE(refused({"answer=maybe"}));
    EXPECT_TRUE(refused({"answer="}));
    EXPECT_TRUE(refused({"answer=Yes"}));
}

TEST(CommandInput, AFileNeedsAPath) {
    EXPECT_TRUE(refused({"file="}));
    EXPECT_TRUE(refused({std::string("file=a\0b", 8)}));
}

TEST(CommandInput, OnlyFilesAndDialogsAreCancelled) {
    EXPECT_TRUE(refused({"cancel=question"}));
    EXPECT_TRUE(refused({"cancel="}));
}

} // namespace
} // namespace velmora
