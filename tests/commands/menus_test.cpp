#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DocumentState.h"
#include "RecordingUi.h"
#include "arranged_capture.h"
#include "command_table.h"
#include "expected_commands.h"

namespace velmora::test {

namespace {

using testing::ElementsAreArray;
using Kind = MenuEntry::Kind;
using Lines = std::vector<std::string>;

std::string quoted(const std::string& text) {
    return " \"" + text + '"';
}

/// The entries as tests/data/commands.txt has them; a wording is told where it is not the command's own.
void addEntries(const std::vector<MenuEntry>& entries, const std::string& indent, Lines& lines) {
    for (const MenuEntry& entry : entries) {
        switch (entry.kind) {
        case Kind::Item: {
            const bool own = entry.text == findCommand(entry.command)->menuText;
            lines.push_back(indent + entry.command + (own ? "" : quoted(entry.text)));
            break;
        }
        case Kind::Separator:
            lines.push_back(indent + "---");
            break;
        case Kind::Submenu:
            lines.push_back(indent + "submenu" + quoted(entry.text));
            addEntries(entry.entries, indent + "    ", lines);
            break;
        case Kind::RecentFiles:
            lines.push_back(indent + "recent files");
            break;
        }
    }
}

void addMenu(const char* kind, const Menu& menu, Lines& lines) {
    lines.push_back(kind + quoted(menu.name));
    addEntries(menu.entries, "    ", lines);
}

} // namespace

TEST(Menus, HoldWhatUsersKnow) {
    Lines lines;
    for (const Menu& menu : mainMenus()) {
        addMenu("menu", menu, lines);
    }
    for (const Menu* menu : {&pointContextMenu(), &lineContextMenu(), &patchContextMenu()}) {
        addMenu("context menu", *menu, lines);
    }
    for (const Menu& bar : toolBars()) {
        addMenu("tool bar", bar, lines);
    }
    EXPECT_THAT(lines, ElementsAreArray(expectedCommands().menus));
}

TEST(Menus, ShowEveryCommandSomewhere) {
    for (const Command& command : commandTable()) {
        EXPECT_NE(command.places[0].menu, MenuId::None) << command.id;
    }
}

TEST(Menus, HaveNoPlaceForTwoCommands) {
    std::map<std::pair<MenuId, int>, std::string> taken;
    for (const Command& command : commandTable()) {
        for (const MenuPlace& place : command.places) {
            if (place.menu != MenuId::None) {
                const auto [other, isFree] = taken.try_emplace({place.menu, place.position}, command.id);
                EXPECT_TRUE(isFree) << command.id << " stands where " << other->second << " does";
            }
        }
    }
}

TEST(ToolBars, NameEveryButtonByATipAndAnIcon) {
    for (const Command& command : commandTable()) {
        for (const MenuPlace& place : command.places) {
            if (place.menu >= MenuId::GeneralBar) {
                EXPECT_TRUE(command.icon && *command.toolTip != '\0') << command.id;
            }
        }
    }
}

// ---- Which context menu opens ---------------------------------------------------------------------------------------

namespace {

struct Choice {
    const char* name;
    std::vector<bool CaptureState::*> set;
    const Menu& (*menu)();
};

class ContextMenuChoice : public testing::TestWithParam<Choice> {};

const Choice choices[] = {
    {"PointCaptured", {&CaptureState::pointCaptured}, pointContextMenu},
    {"PointArmed", {&CaptureState::pointCaptureArmed}, pointContextMenu},
    {"PointOnASection", {&CaptureState::pointCaptured, &CaptureState::sectionCaptured}, pointContextMenu},
    {"PointBeforePatch", {&CaptureState::pointCaptureArmed, &CaptureState::patchCaptured}, pointContextMenu},
    {"SectionCaptured", {&CaptureState::sectionCaptured}, lineContextMenu},
    {"SectionArmed", {&CaptureState::sectionCaptureArmed}, lineContextMenu},
    {"LineCaptured", {&CaptureState::lineCaptured}, lineContextMenu},
    {"LineArmed", {&CaptureState::lineCaptureArmed}, lineContextMenu},
    {"SectionInPatch", {&CaptureState::sectionCaptured, &CaptureState::patchCaptured}, lineContextMenu},
    {"FreePointOnALine", {&CaptureState::freePointHeld, &CaptureState::lineCaptured}, lineContextMenu},
    {"PatchCaptured", {&CaptureState::patchCaptured}, patchContextMenu},
    {"PatchArmed", {&CaptureState::patchCaptureArmed}, patchContextMenu},
};

} // namespace

TEST_P(ContextMenuChoice, TakesTheInnermostRegime) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    EXPECT_EQ(activeContextMenu(doc), nullptr);
    for (bool CaptureState::*flag : GetParam().set) {
        arranged(doc).*flag = true;
    }
    EXPECT_EQ(activeContextMenu(doc), &GetParam().menu());
}

INSTANTIATE_TEST_SUITE_P(Regimes, ContextMenuChoice, testing::ValuesIn(choices),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ContextMenus, AFreePointAloneOpensNone) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    arranged(doc).freePointArmed = arranged(doc).freePointHeld = true;
    EXPECT_EQ(activeContextMenu(doc), nullptr);
}

} // namespace velmora::test
