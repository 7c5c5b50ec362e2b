#include "command_table.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "expected_commands.h"

namespace velmora::test {

namespace {

using testing::ElementsAreArray;

std::string orDash(const char* text) {
    return *text == '\0' ? "-" : text;
}

const char* nameOf(CommandOwner owner) {
    return owner == CommandOwner::Document ? "document" : owner == CommandOwner::View ? "view" : "shell";
}

/// A row as tests/data/commands.txt has it, but for the rule.
std::string rowOf(const Command& c) {
    return std::string(c.id) + " | " + c.menuText + " | " + c.statusText + " | " + orDash(c.toolTip) + " | " +
           orDash(c.accelerator) + " | " + (c.icon ? "icon" : "-") + " | " + nameOf(c.owner);
}

} // namespace

TEST(CommandTable, SaysOfEachCommandWhatUsersKnow) {
    std::vector<std::string> rows;
    for (const Command& command : commandTable()) {
        rows.push_back(rowOf(command));
    }
    EXPECT_THAT(rows, ElementsAreArray(expectedCommands().rows));
}

TEST(CommandTable, HasNoIdTwice) {
    std::set<std::string> ids;
    for (const Command& command : commandTable()) {
        EXPECT_TRUE(ids.insert(command.id).second) << command.id;
    }
}

TEST(CommandTable, FindsEachOfItsCommandsAndNoOther) {
    for (const Command& command : commandTable()) {
        EXPECT_EQ(findCommand(command.id), &command);
    }
    EXPECT_EQ(findCommand("file"), nullptr);
    EXPECT_EQ(findCommand(""), nullptr);
    EXPECT_EQ(findCommand("FILE.NEW"), nullptr);
}

TEST(CommandTable, GivesEveryCommandATextAndAStatusText) {
    for (const Command& command : commandTable()) {
        EXPECT_NE(std::string(command.menuText), "") << command.id;
        EXPECT_NE(std::string(command.statusText), "") << command.id;
    }
}

TEST(CommandTable, HasAMethodOfTheDocumentForItsCommandsAlone) {
    for (const Command& command : commandTable()) {
        EXPECT_EQ(static_cast<bool>(command.run), command.owner == CommandOwner::Document) << command.id;
    }
}

} // namespace velmora::test
