#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "Command.h"

namespace velmora {

/// The panels of a window beside the view.
enum class Panel { Report, CurvePlot, Journal, FileReport };

/// The commands that neither the document nor the view carries out: each front end does them in its way. What shows
/// and hides parts of a window does nothing where there is none.
class ShellCommands {
public:
    ShellCommands() = default;
    ShellCommands(const ShellCommands&) = delete;
    ShellCommands& operator=(const ShellCommands&) = delete;
    virtual ~ShellCommands() = default;

    /// Ends the program by Session::leave.
    virtual void exit() = 0;
    virtual void showGuide() = 0;
    virtual void showKeys() = 0;
    virtual void showAbout() = 0;
    /// Saves what the view shows as a picture.
    virtual void savePicture() = 0;
    /// Puts it into the clipboard.
    virtual void copyPicture() = 0;
    /// Shows the panel, or hides it when it is shown.
    virtual void showPanel(Panel panel) = 0;
    virtual bool panelShown(Panel) const { return false; }
    virtual void toggleToolBars() {}
    virtual void toggleStatusBar() {}
    virtual bool toolBarsShown() const { return false; }
    virtual bool statusBarShown() const { return false; }

    void showReport() { showPanel(Panel::Report); }
    void showCurvePlot() { showPanel(Panel::CurvePlot); }
    void showJournal() { showPanel(Panel::Journal); }
    void showFileReport() { showPanel(Panel::FileReport); }
    bool reportShown() const { return panelShown(Panel::Report); }
    bool curvePlotShown() const { return panelShown(Panel::CurvePlot); }
    bool journalShown() const { return panelShown(Panel::Journal); }
    bool fileReportShown() const { return panelShown(Panel::FileReport); }
};

/// One command of the shell: its row, and how the front end carries it out.
struct ShellCommand {
    Command row;
    void (ShellCommands::*run)() = nullptr;
    bool (ShellCommands::*checked)() const = nullptr; ///< of a command that switches something: whether that is on
};

/// The rows of the shell's commands.
std::span<const ShellCommand> shellCommands();

/// Runs the shell command of that id; false when there is none.
bool runShellCommand(ShellCommands& shell, std::string_view id);
/// Of a shell command that switches something: whether that is on.
std::optional<bool> shellCheckedState(const ShellCommands& shell, std::string_view id);

} // namespace velmora
