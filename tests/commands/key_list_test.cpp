#include "key_list.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "command_table.h"

namespace velmora::test {

namespace {

const KeyEntry* entryOf(const std::vector<KeyEntry>& list, const std::string& keys) {
    const auto found = std::find_if(list.begin(), list.end(), [&keys](const KeyEntry& e) { return e.keys == keys; });
    return found == list.end() ? nullptr : &*found;
}

} // namespace

TEST(KeyList, HoldsEveryKeyOfTheTableOnceAndEscape) {
    const auto list = keyList();
    std::map<std::string, int> seen;
    for (const KeyEntry& entry : list) {
        EXPECT_EQ(++seen[entry.keys], 1) << entry.keys;
        EXPECT_FALSE(entry.act.empty()) << entry.keys;
    }
    std::map<std::string, int> wanted{{"Escape", 1}};
    for (const Command& command : commandTable()) {
        if (*command.accelerator != '\0') {
            wanted[command.accelerator] = 1;
        }
    }
    EXPECT_EQ(seen, wanted);
}

TEST(KeyList, NamesAllThatShareAKey) {
    const auto list = keyList();
    const KeyEntry* const copy = entryOf(list, "Ctrl+C");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->act, "Copy (line) / Copy (point)");
    EXPECT_EQ(copy->hint, "Copy captured line to buffer / Copy captured point");
    EXPECT_EQ(entryOf(list, "Shift+F")->act, "Fit Captured");
}

// What a command of the model shares a key with is another such command, of which one alone is meant at a time.
TEST(Keys, OfTheViewAreSharedByNobody) {
    std::map<std::string, std::vector<std::string>> users;
    for (const Command& command : commandTable()) {
        if (*command.accelerator != '\0') {
            users[command.accelerator].emplace_back(command.id);
        }
    }
    for (const auto& [key, ids] : users) {
        const bool ofView = std::any_of(
            ids.begin(), ids.end(), [](const auto& id) { return id.starts_with("view.") || id.starts_with("help."); });
        EXPECT_TRUE(!ofView || ids.size() == 1) << key;
        EXPECT_NE(key, "Escape");
    }
    EXPECT_EQ(users.count("F"), 1U);
}

TEST(MouseActs, TellOfWheelAndButtons) {
    const auto acts = mouseActs();
    for (const char* what : {"Wheel", "Middle button, drag", "Shift + middle button, drag",
                             "Ctrl + middle button, drag", "Right button"}) {
        EXPECT_NE(entryOf(acts, what), nullptr) << what;
    }
}

} // namespace velmora::test
