#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "arranged_capture.h"
#include "command_table.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Kind = MenuEntry::Kind;
using Texts = std::vector<std::string>;

void addTexts(const std::vector<MenuEntry>& entries, bool plain, Texts& texts) {
    const auto worded = [plain](const std::string& text) { return plain ? plainText(text) : text; };
    for (const MenuEntry& entry : entries) {
        if (entry.kind == Kind::Item) {
            texts.push_back(worded(entry.text));
        } else if (entry.kind == Kind::RecentFiles) {
            texts.emplace_back("recent files");
        } else if (entry.kind == Kind::Submenu) {
            texts.push_back(worded(entry.text) + " >");
            addTexts(entry.entries, plain, texts);
            texts.emplace_back("<");
        }
    }
}

/// The items in order, separators left out; a submenu as "Text >", its items, "<".
Texts exactTexts(const Menu& menu) {
    Texts texts;
    addTexts(menu.entries, false, texts);
    return texts;
}

Texts plainTexts(const std::vector<MenuEntry>& entries) {
    Texts texts;
    addTexts(entries, true, texts);
    return texts;
}

/// The commands of a menu in order, submenus opened.
void addCommands(const std::vector<MenuEntry>& entries, Texts& commands) {
    for (const MenuEntry& entry : entries) {
        if (entry.kind == Kind::Item) {
            commands.push_back(entry.command);
        }
        addCommands(entry.entries, commands);
    }
}

Texts commandsOf(const Menu& menu) {
    Texts commands;
    addCommands(menu.entries, commands);
    return commands;
}

/// The tool tips of a bar in order, "|" for a separator.
Texts tipsOf(const Menu& bar) {
    Texts tips;
    for (const MenuEntry& entry : bar.entries) {
        tips.emplace_back(entry.kind == Kind::Separator ? "|" : findCommand(entry.command)->toolTip);
    }
    return tips;
}

const Menu& mainMenu(std::size_t index) {
    return mainMenus().at(index);
}

std::vector<const Menu*> allMenus() {
    std::vector<const Menu*> all = {&pointContextMenu(), &lineContextMenu(), &patchContextMenu()};
    for (const auto* group : {&mainMenus(), &toolBars()}) {
        for (const Menu& menu : *group) {
            all.push_back(&menu);
        }
    }
    return all;
}

} // namespace

TEST(Menus, HaveTheSixHeadings) {
    Texts headings;
    for (const Menu& menu : mainMenus()) {
        headings.push_back(plainText(menu.name));
    }
    EXPECT_THAT(headings, ElementsAre("File", "Edit", "Transformations", "View", "Options", "Help"));
}

TEST(Menus, FileHoldsItsCommandsInOrder) {
    EXPECT_THAT(plainTexts(mainMenu(0).entries),
                ElementsAre("New", "Open", "Append", "Import", "Export", "Append wrl", "Close wrl", "Append dat",
                            "Close dat", "Append sft", "Close sft", "Append CBC", "Open apm", "Close apm",
                            "Open dat (field)", "Save As dat (field)", "Close dat (field)", "Save", "Save As",
                            "recent files", "Exit"));
}

TEST(Menus, EditHoldsPatchesLinesAndPoint) {
    EXPECT_THAT(plainTexts(mainMenu(1).entries),
                ElementsAre("Patches >", "Capture", "Input & Add to zBlock", "Undo", "Block delete", "Block extract",
                            "Block Save As", "Block copy", "Block paste", "Extrapolate", "Exit", "<", //
                            "Lines >", "Capture >", "Section", "Line", "<", "Input >", "Section", "Line", "<", "Undo",
                            "Exit", "<", //
                            "Point >", "Capture", "Input", "Delete", "Duplicate", "Edit", "Drag", "Cut", "Copy",
                            "Paste", "Undo", "<"));
}

TEST(Menus, EditWordsItsItemsAsUsersKnowThem) {
    EXPECT_THAT(exactTexts(mainMenu(1)),
                testing::IsSupersetOf({"&Section", "&Line", "&Section...", "&Line...", "&Input && Add to zBlock...",
                                       "&Delete", "Dup&licate...", "&Edit...", "C&ut", "C&opy", "&Paste", "&Input...",
                                       "D&rag", "&Undo", "E&xit", "&Capture"}));
}

TEST(Menus, EditRunsTheCommandsOfEachRegime) {
    EXPECT_THAT(commandsOf(mainMenu(1)),
                ElementsAre("patch.capture", "patch.inputAndAdd", "patch.undo", "block.delete", "block.extract",
                            "block.saveAs", "block.copy", "block.paste", "block.extrapolate", "patch.exit",
                            "line.captureSection", "line.captureLine", "line.inputSection", "line.inputLine",
                            "patch.undo", "line.exit", "point.capture", "point.input", "point.delete",
                            "point.duplicate", "point.edit", "point.drag", "point.cut", "point.copy", "point.paste",
                            "point.undo"));
}

TEST(Menus, TransformationsHoldsItsCommandsInOrder) {
    EXPECT_THAT(plainTexts(mainMenu(2).entries),
                ElementsAre("Scaling", "Move", "Rotation", "Flip", "Symmetric", "Convertation", "Last/First switch",
                            "Knife", "Merge", "Reflection to apt", "Reflection to wrl", "Reflection to dat",
                            "Reflection to sft", "Convert to >", "VRML or DAT", "APT", "SKL", "Knife", "<",
                            "Intersection", "Invisible remove", "Coons Rebuild", "Smooth geometry"));
    EXPECT_THAT(exactTexts(mainMenu(2)),
                testing::IsSupersetOf({"S&ymmetric...", "Convertation", "Last/First switch...", "&Knife", "M&erge...",
                                       "Reflect&ion to apt", "Reflection to wrl", "Reflection to dat",
                                       "Reflection to sft", "&VRML or DAT", "&APT...", "&SKL...", "&Intersection...",
                                       "I&nvisible remove", "Coons Re&build", "Smoo&th geometry..."}));
}

TEST(Menus, TransformationsRunsTheCommandsOfTheModel) {
    EXPECT_THAT(commandsOf(mainMenu(2)),
                ElementsAre("model.scaling", "model.move", "model.rotation", "model.flip", "model.symmetric",
                            "model.convertation", "model.lastFirstSwitch", "model.knife", "block.merge",
                            "model.reflectToApt", "model.reflectToWrl", "model.reflectToDat", "model.reflectToSft",
                            "convert.toUnstructured", "convert.toApt", "convert.toSkl", "convert.knife",
                            "model.intersection", "model.invisibleRemove", "model.coonsRebuild", "model.smooth"));
}

TEST(Menus, ViewHoldsItsCommandsInOrder) {
    EXPECT_THAT(plainTexts(mainMenu(3).entries),
                ElementsAre("Toolbar", "Status Bar", "Projection >", "Perspective Projection",
                            "Orthographic Projection", "Top", "Bottom", "Front", "Back", "Right", "Left", "Iso",
                            "Manual", "<", "Rotate", "Rotate about X axis", "Rotate about Y axis",
                            "Rotate about Z axis", "Translate in XY plane", "Translate in Z direction", "Shift",
                            "Scale", "Zoom In", "Zoom Out", "Fit to Window", "Previous", "Surface"));
    EXPECT_THAT(exactTexts(mainMenu(3)), testing::IsSupersetOf({"&Perspective Projection",
                                                                "&Orthographic Projection",
                                                                "&Top",
                                                                "&Bottom",
                                                                "&Front",
                                                                "Bac&k",
                                                                "&Right",
                                                                "&Left",
                                                                "&Iso",
                                                                "&Manual...",
                                                                "&Rotate",
                                                                "Rotate about &X axis",
                                                                "Rotate about &Y axis",
                                                                "Rotate about &Z axis",
                                                                "Translate in XY plan&e",
                                                                "Translate in Z directio&n",
                                                                "S&hift",
                                                                "S&cale",
                                                                "Zoom &In",
                                                                "Zoom &Out",
                                                                "&Fit to Window",
                                                                "Pre&vious",
                                                                "&Surface"}));
}

TEST(Menus, OptionsAndHelpHoldTheirCommands) {
    EXPECT_THAT(plainTexts(mainMenu(4).entries), ElementsAre("View features"));
    EXPECT_THAT(plainTexts(mainMenu(5).entries), ElementsAre("Help Topics", "About Velmora"));
}

TEST(Menus, FileWordsItsItemsAsUsersKnowThem) {
    EXPECT_THAT(
        exactTexts(mainMenu(0)),
        testing::IsSupersetOf({"Append wrl...", "Append dat...", "Close dat", "Append sft...", "Close sft", "Open apm",
                               "Close apm", "Open dat (field)...", "Save As dat (field)", "Close dat (field)"}));
}

TEST(ContextMenus, OfAPointListsItsTextsInOrder) {
    EXPECT_EQ(pointContextMenu().name, "Point_context");
    EXPECT_THAT(exactTexts(pointContextMenu()),
                ElementsAre("&Next point", "&Find...", "&Edit...", "D&rag point", "&Delete", "Dup&licate...",
                            "Free point", "&Cut", "C&opy", "&Paste", "Add to \"line\" buffer", "Buffer clear ",
                            "Buffer Open...", "Buffer Save As ...", "First/Last in \"line\" buffer", "Correct line",
                            "Drag point && correct line", "Rebreak part...", "&Knife part...", "Copy par&t...",
                            "Paste part...", "First/Last in section", "&Undo", "E&xit "));
}

TEST(ContextMenus, OfAPointRunsPointCommands) {
    EXPECT_THAT(commandsOf(pointContextMenu()),
                ElementsAre("point.next", "point.input", "point.edit", "point.drag", "point.delete", "point.duplicate",
                            "point.free", "point.cut", "point.copy", "point.paste", "buffer.addPoint", "buffer.clear",
                            "buffer.open", "buffer.saveAs", "buffer.reverse", "line.correct", "point.dragAndCorrect",
                            "point.rebreakPart", "point.knifePart", "point.copyPart", "point.pastePart",
                            "point.reverseSection", "point.undo", "point.exit"));
}

TEST(ContextMenus, OfAPatchListsItsTextsInOrder) {
    EXPECT_EQ(patchContextMenu().name, "Patch Context");
    EXPECT_THAT(exactTexts(patchContextMenu()),
                ElementsAre("&Add to zBlock", "&Remove from zBlock", "Invert Selection", "New zBlock", "&Undo",
                            "Block &delete ", "&Block extract ", "Block Sa&ve As ...", "Block copy ", "Block paste ",
                            "&Merge... ", "Match border", "Match border && grid", "Re&flection", "&Intersection...",
                            "I&nvisible remove", "&Convert to >", "&VRML or DAT", "&APT...", "&SKL...", "<",
                            "Capture &Section", "Capture &Line", "&Extrapolate...", "E&xit"));
}

TEST(ContextMenus, OfAPatchRunsPatchCommands) {
    EXPECT_THAT(commandsOf(patchContextMenu()),
                ElementsAre("patch.addToBlock", "patch.removeFromBlock", "block.invert", "block.new", "patch.undo",
                            "block.delete", "block.extract", "block.saveAs", "block.copy", "block.paste", "block.merge",
                            "block.matchBorder", "block.matchBorderAndGrid", "model.reflectToApt", "model.intersection",
                            "model.invisibleRemove", "convert.toUnstructured", "convert.toApt", "convert.toSkl",
                            "line.captureSection", "line.captureLine", "block.extrapolate", "patch.exit"));
}

TEST(ContextMenus, OfALineListsItsTextsInOrder) {
    EXPECT_EQ(lineContextMenu().name, "Line Context");
    EXPECT_THAT(exactTexts(lineContextMenu()),
                ElementsAre("&Next Section (Line)", "S&plit patch in zBlock", "Gate to patch mode", "&Undo",
                            "&Scaling...", "&Move...", "&Flip...", "S&ymmetric...", "&Rotation...", "Firs&t point...",
                            "&Interpolate...", "Rebre&ak...", "Prescri&be...", "&Delete", "Dup&licate...", "&Weeding",
                            "&Knife", "Buffer Open...", "Buffer Save As", "Buffer clear",
                            "First/Last in \"line\" buffer", "Buffer m&erge", "Buffer match", "C&opy", "&Paste",
                            "Free point", "Correct Line...", "C&ylinder", "E&xit"));
}

TEST(ContextMenus, OfALineRunsLineCommands) {
    EXPECT_THAT(commandsOf(lineContextMenu()),
                ElementsAre("line.next", "line.splitPatch", "line.gateToPatchMode", "patch.undo", "line.scaling",
                            "line.move", "line.flip", "line.symmetric", "line.rotation", "line.firstPoint",
                            "line.interpolate", "line.rebreak", "line.prescribe", "line.delete", "line.duplicate",
                            "line.weeding", "line.knife", "buffer.open.line", "buffer.saveAs", "buffer.clear",
                            "buffer.reverse", "buffer.merge", "buffer.match", "line.copy", "line.paste",
                            "point.free.line", "line.correct", "line.cylinder", "line.exit"));
}

TEST(ToolBars, AreGeneralEditingAndTransformations) {
    Texts names;
    for (const Menu& bar : toolBars()) {
        names.push_back(bar.name);
    }
    EXPECT_THAT(names, ElementsAre("General", "Editing", "Transformations"));
}

TEST(ToolBars, GeneralHasItsButtonsInOrder) {
    EXPECT_THAT(tipsOf(toolBars()[0]),
                ElementsAre("New", "Open", "Save", "Append", "|", "Capture patch", "Input patch", "|",
                            "Capture section", "Input section", "|", "Capture line", "Input line", "|", "Capture point",
                            "|", "Undo patch", "Undo point", "|", "Rotate", "Rotate about X axis",
                            "Rotate about Y axis", "Rotate about Z axis", "Translate in XY plane",
                            "Translate in Z direction", "Shift", "|", "Scale", "Zoom In", "Zoom out", "Fit image",
                            "Surface", "|", "Manual", "3D view", "Front view", "Up view", "Side view", "|",
                            "Block only", "Help"));
}

TEST(ToolBars, EditingHasItsButtonsInOrder) {
    EXPECT_THAT(tipsOf(toolBars()[1]),
                ElementsAre("Add to zBlock", "Delete zBlock", "Split patch", "Remove from zBlock", "Extract zBlock",
                            "|", "Rebreak", "Delete section (line)", "Duplicate section (line)", "Copy to buffer",
                            "Paste from buffer", "|", "Next point", "Input point", "|", "Delete point",
                            "Duplicate point", "Edit point", "Drag point", "|", "Cut point", "Copy point",
                            "Paste point"));
}

TEST(ToolBars, TransformationsHasItsButtonsInOrder) {
    EXPECT_THAT(tipsOf(toolBars()[2]),
                ElementsAre("APT to DAT", "SKL to APT", "DAT to SKL", "|", "Scaling zBlock or geometry",
                            "Move zBlock or geometry", "Rotate zBlock or geometry", "Flip zBlock or geometry",
                            "Create symmetric geometry", "Convert sections to lines", "Last_First switch", "Knife",
                            "Merge patches", "|", "Reflect zBlock to apt", "Reflect zBlock to wrl", "Intersect zBlock",
                            "|", "Coons rebuild", "Smooth geometry"));
}

TEST(ToolBars, AloneHoldTheCommandsThatHaveNoMenu) {
    std::set<std::string> inMenus;
    for (const Menu* menu : allMenus()) {
        const bool isBar = menu >= &toolBars().front() && menu <= &toolBars().back();
        const Texts commands = commandsOf(*menu);
        if (!isBar) {
            inMenus.insert(commands.begin(), commands.end());
        }
    }
    std::set<std::string> onBarsOnly;
    for (const Menu& bar : toolBars()) {
        for (const std::string& command : commandsOf(bar)) {
            if (!inMenus.contains(command)) {
                onBarsOnly.insert(command);
            }
        }
    }
    EXPECT_THAT(onBarsOnly, ElementsAre("block.only", "view.frontView", "view.sideView", "view.threeD", "view.upView"));
}

TEST(Menus, ShowEveryCommandSomewhere) {
    std::set<std::string> shown;
    for (const Menu* menu : allMenus()) {
        const Texts commands = commandsOf(*menu);
        shown.insert(commands.begin(), commands.end());
    }
    for (const Command& command : commandTable()) {
        EXPECT_TRUE(shown.contains(command.id)) << command.id;
    }
}

TEST(Menus, ShowOnlyCommandsOfTheTable) {
    for (const Menu* menu : allMenus()) {
        for (const std::string& command : commandsOf(*menu)) {
            EXPECT_NE(findCommand(command), nullptr) << command;
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
    VelmoraDoc doc(ui, {});
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
    VelmoraDoc doc(ui, {});
    arranged(doc).freePointArmed = arranged(doc).freePointHeld = true;
    EXPECT_EQ(activeContextMenu(doc), nullptr);
}

} // namespace velmora::test
