#include <algorithm>

#include "DocumentState.h"
#include "command_table.h"

namespace velmora {

namespace {

/// A menu within a menu: where it stands is told as it is of a command.
struct Submenu {
    MenuId menu;
    const char* text;
    MenuPlace place;
};

constexpr Submenu submenus[] = {
    {MenuId::EditPatches, "&Patches", {MenuId::Edit, 110}},
    {MenuId::EditLines, "&Lines", {MenuId::Edit, 120}},
    {MenuId::EditLinesCapture, "&Capture", {MenuId::EditLines, 110}},
    {MenuId::EditLinesInput, "&Input", {MenuId::EditLines, 120}},
    {MenuId::EditPoint, "P&oint", {MenuId::Edit, 130}},
    {MenuId::ConvertTo, "&Convert to", {MenuId::Transformations, 310}},
    {MenuId::ViewProjection, "&Projection", {MenuId::View, 210}},
    {MenuId::PatchConvertTo, "&Convert to", {MenuId::PatchContext, 370}},
};

constexpr MenuPlace recentFiles = {MenuId::File, 710};

struct PlacedEntry {
    int position;
    MenuEntry entry;
};

std::vector<MenuEntry> entriesOf(MenuId menu);

void addCommands(MenuId menu, std::vector<PlacedEntry>& placed) {
    for (const Command& command : commandTable()) {
        for (const MenuPlace& place : command.places) {
            if (place.menu == menu) {
                const char* text = place.text != nullptr ? place.text : command.menuText;
                placed.push_back({place.position, {MenuEntry::Kind::Item, text, command.id, {}}});
            }
        }
    }
}

void addSubmenus(MenuId menu, std::vector<PlacedEntry>& placed) {
    for (const Submenu& submenu : submenus) {
        if (submenu.place.menu == menu) {
            placed.push_back(
                {submenu.place.position, {MenuEntry::Kind::Submenu, submenu.text, {}, entriesOf(submenu.menu)}});
        }
    }
}

/// What stands in a menu, in order of the positions, with a bar between groups.
std::vector<MenuEntry> entriesOf(MenuId menu) {
    std::vector<PlacedEntry> placed;
    addCommands(menu, placed);
    addSubmenus(menu, placed);
    if (recentFiles.menu == menu) {
        placed.push_back({recentFiles.position, {MenuEntry::Kind::RecentFiles, {}, {}, {}}});
    }
    std::sort(placed.begin(), placed.end(),
              [](const PlacedEntry& a, const PlacedEntry& b) { return a.position < b.position; });
    std::vector<MenuEntry> entries;
    int group = placed.empty() ? 0 : placed.front().position / 100;
    for (const PlacedEntry& each : placed) {
        if (each.position / 100 != group) {
            group = each.position / 100;
            entries.push_back({MenuEntry::Kind::Separator, {}, {}, {}});
        }
        entries.push_back(each.entry);
    }
    return entries;
}

Menu menuOf(MenuId menu, const char* name) {
    return {name, entriesOf(menu)};
}

} // namespace

const std::vector<Menu>& mainMenus() {
    static const std::vector<Menu> menus = {menuOf(MenuId::File, "&File"),
                                            menuOf(MenuId::Edit, "&Edit"),
                                            menuOf(MenuId::Transformations, "&Transformations"),
                                            menuOf(MenuId::View, "&View"),
                                            menuOf(MenuId::Options, "&Options"),
                                            menuOf(MenuId::Help, "&Help")};
    return menus;
}

const std::vector<Menu>& toolBars() {
    static const std::vector<Menu> bars = {menuOf(MenuId::GeneralBar, "General"), menuOf(MenuId::EditingBar, "Editing"),
                                           menuOf(MenuId::TransformationsBar, "Transformations")};
    return bars;
}

const Menu& pointContextMenu() {
    static const Menu menu = menuOf(MenuId::PointContext, "Point_context");
    return menu;
}

const Menu& lineContextMenu() {
    static const Menu menu = menuOf(MenuId::LineContext, "Line Context");
    return menu;
}

const Menu& patchContextMenu() {
    static const Menu menu = menuOf(MenuId::PatchContext, "Patch Context");
    return menu;
}

const Menu* activeContextMenu(const DocumentState& document) {
    if (document.capture->pointCaptured || document.capture->pointCaptureArmed) {
        return &pointContextMenu();
    }
    if (document.capture->sectionCaptured || document.capture->sectionCaptureArmed || document.capture->lineCaptured ||
        document.capture->lineCaptureArmed) {
        return &lineContextMenu();
    }
    if (document.capture->patchCaptured || document.capture->patchCaptureArmed) {
        return &patchContextMenu();
    }
    return nullptr;
}

} // namespace velmora
