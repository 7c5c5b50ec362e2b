#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class VelmoraDoc;
struct DocumentState;

/// Who carries a command out: the document, the view, or the front end (frame or batch).
enum class CommandOwner { Document, View, Shell };

/// One command, declared once. Menus, context menus, tool bars, scripts, help and tests read the same table.
struct Command {
    const char* id;          ///< the name in scripts: "line.rebreak"
    const char* menuText;    ///< with "&" before the access key, "&&" for an ampersand
    const char* statusText;  ///< what the status line says while the command is pointed at
    const char* toolTip;     ///< second line of the status text; empty: none
    const char* accelerator; ///< "Ctrl+S"; several commands may share one, the first that is on takes it
    CommandOwner owner;
    void (VelmoraDoc::*run)();         ///< of document commands; null for the others
    bool (*off)(const DocumentState&); ///< true when the document's state turns the command off; null: always on
};

/// All commands, in the order of the menus.
std::span<const Command> commandTable();

/// The command of that id, or null.
const Command* findCommand(std::string_view id);

/// A menu text as plain words: without access marks, "&&" as "&", without the dots of "...".
std::string plainText(std::string_view menuText);

/// True when a rule on the document's state turns the command off. A command without a rule is on.
bool isCommandOff(const DocumentState& document, std::string_view id);

/// One entry of a menu or a tool bar.
struct MenuEntry {
    enum class Kind { Item, Separator, Submenu, RecentFiles };
    Kind kind = Kind::Item;
    std::string text;    ///< caption of a submenu; of an item, its wording in this menu
    std::string command; ///< id of an item
    std::vector<MenuEntry> entries;
};

/// A menu, a context menu or a tool bar.
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
const Menu* activeContextMenu(const DocumentState& document);

} // namespace velmora
