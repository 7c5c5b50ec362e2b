#include "ShellCommands.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

struct ShellCommand {
    const char* id;
    void (ShellCommands::*run)();
};

constexpr std::array<ShellCommand, 5> shellCommands = {{
    {"file.exit", &ShellCommands::exit},
    {"view.toolbar", &ShellCommands::toggleToolBars},
    {"view.statusBar", &ShellCommands::toggleStatusBar},
    {"help.topics", &ShellCommands::showGuide},
    {"help.about", &ShellCommands::showAbout},
}};

} // namespace

bool runShellCommand(ShellCommands& shell, std::string_view id) {
    const auto* command = std::find_if(shellCommands.begin(), shellCommands.end(),
                                       [id](const ShellCommand& each) { return id == each.id; });
    if (command == shellCommands.end()) {
        return false;
    }
    (shell.*command->run)();
    return true;
}

} // namespace velmora
