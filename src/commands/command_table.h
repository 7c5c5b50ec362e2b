#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Command.h"

namespace velmora {

class ShellCommands;
class VelmoraView;

/// All commands, the document's, the view's and those of the front ends, in one order.
std::span<const Command> commandTable();

/// The command of that id, or null.
const Command* findCommand(std::string_view id);

/// True when a rule on the document's state turns the command off. A command without a rule is on.
bool isCommandOff(const VelmoraDoc& document, std::string_view id);

/// Of a command that switches something: whether that is on.
std::optional<bool> checkedState(const Command& command, const VelmoraDoc& document, const VelmoraView& view,
                                 const ShellCommands& shell);

/// One entry of a menu or a tool bar.
struct MenuEntry {
    enum class Kind { Item, Separator, Submenu, RecentFiles };
    Kind kind = Kind::Item;
    std::string text;    ///< caption of a submenu; of an item, its wording in this menu
    std::string command; ///< id of an item
    std::vector<MenuEntry> entries;
};

/// A menu, a context menu or a tool bar: what the rows of the commands place there.
struct Menu {
    std::string name;
    std::vector<MenuEntry> entries;
};

/// The headings of the menu bar with all they hold.
const std::vector<Menu>& mainMenus();
/// "General", "Editing", "Transformations".
const std::vector<Menu>& toolBars();
/// "Point_context", "Line Context" and "Patch Context".
const Menu& pointContextMenu();
const Menu& lineContextMenu();
const Menu& patchContextMenu();
/// The context menu of the regime that is active, or null when none is.
const Menu* activeContextMenu(const VelmoraDoc& document);

} // namespace velmora
