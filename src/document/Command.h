#pragma once

#include <string>
#include <string_view>

namespace velmora {

class VelmoraDoc;

/// Who carries a command out: the document, the view, or the front end (frame or batch).
enum class CommandOwner { Document, View, Shell };

/// The menus with their submenus, the context menus and the tool bars.
enum class MenuId {
    None,
    File,
    Edit,
    EditPatches,
    EditLines,
    EditLinesCapture,
    EditLinesInput,
    EditPoint,
    Transformations,
    ConvertTo,
    View,
    ViewProjection,
    Options,
    Help,
    PointContext,
    LineContext,
    PatchContext,
    PatchConvertTo,
    GeneralBar,
    EditingBar,
    TransformationsBar,
};

/// Where a menu or a tool bar shows a command.
struct MenuPlace {
    MenuId menu = MenuId::None;
    int position = 0;           ///< the hundreds count the groups, between which a bar stands; what is below, within it
    const char* text = nullptr; ///< the wording in this menu where it is not the command's own
};

/// One command, declared once, all that is known of it: menus, context menus, tool bars, keys, scripts, help and tests
/// read it.
struct Command {
    const char* id = "";          ///< the name in scripts: "line.rebreak"; also that of its icon
    const char* menuText = "";    ///< with "&" before the access key, "&&" for an ampersand
    const char* statusText = "";  ///< what the status line says while the command is pointed at
    const char* toolTip = "";     ///< of a tool button; empty: the words of the menu
    const char* accelerator = ""; ///< "Ctrl+S"; several commands may share one, the first that is on takes it
    bool icon = false;
    void (VelmoraDoc::*run)() = nullptr;          ///< of document commands; null for the others
    bool (*off)(const VelmoraDoc&) = nullptr;     ///< true when the document's state turns it off; null: always on
    bool (*checked)(const VelmoraDoc&) = nullptr; ///< of a command that switches something: whether that is on
    /// Of another owner's row: the command that it comes behind in the table of all, where that is not the row before.
    const char* follows = nullptr;
    MenuPlace places[6] = {};
    CommandOwner owner = CommandOwner::Document; ///< set by the table of all
};

/// A menu text as plain words: without access marks, "&&" as "&", without the dots of "...".
std::string plainText(std::string_view menuText);

} // namespace velmora
