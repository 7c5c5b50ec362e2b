#pragma once

#include <string_view>

namespace velmora {

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
    virtual void showAbout() = 0;
    virtual void toggleToolBars() {}
    virtual void toggleStatusBar() {}
};

/// Runs the shell command of that id; false when there is none.
bool runShellCommand(ShellCommands& shell, std::string_view id);

} // namespace velmora
