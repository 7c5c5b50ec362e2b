#pragma once

#include <string>
#include <string_view>

namespace velmora {

class VelmoraDoc;
struct DocumentState;

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

/// What a row runs: a function over the document in the file of the row, or a method of the document when others call
/// it too.
class CommandRun {
public:
    constexpr CommandRun() = default;
    constexpr CommandRun(void (*function)(VelmoraDoc&)) : function_(function) {}
    constexpr CommandRun(void (VelmoraDoc::*method)()) : method_(method) {}

    explicit constexpr operator bool() const { return function_ != nullptr || method_ != nullptr; }
    /// Runs it; there must be something to run.
    void operator()(VelmoraDoc& document) const;

private:
    void (*function_)(VelmoraDoc&) = nullptr;
    void (VelmoraDoc::*method_)() = nullptr;
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
    CommandRun run = {};                             ///< of document commands; empty for the others
    bool (*off)(const DocumentState&) = nullptr;     ///< true when the document's state turns it off; null: always on
    bool (*checked)(const DocumentState&) = nullptr; ///< of a command that switches something: whether that is on
    /// Of another owner's row: the command that it comes behind in the table of all, where that is not the row before.
    const char* follows = nullptr;
    MenuPlace places[6] = {};
    CommandOwner owner = CommandOwner::Document; ///< set by the table of all
};

/// A menu text as plain words: without access marks, "&&" as "&", without the dots of "...".
std::string plainText(std::string_view menuText);

} // namespace velmora
