#include "ShellCommands.h"

#include <algorithm>

namespace velmora {

namespace {

using enum MenuId;

const ShellCommand commands[] = {
    {.row = {.id = "file.picture",
             .menuText = "Save p&icture...",
             .statusText = "Save what the view shows as a picture",
             .follows = "file.saveAs",
             .places = {{File, 630}}},
     .run = &ShellCommands::savePicture},
    {.row = {.id = "file.copyPicture",
             .menuText = "&Copy picture",
             .statusText = "Put what the view shows into the clipboard",
             .places = {{File, 640}}},
     .run = &ShellCommands::copyPicture},
    {.row = {.id = "file.exit", .menuText = "E&xit", .statusText = "Quit the program", .places = {{File, 810}}},
     .run = &ShellCommands::exit},
    {.row = {.id = "view.toolbar",
             .menuText = "&Toolbar",
             .statusText = "Show or hide the tool bars",
             .follows = "convert.knife",
             .places = {{View, 110}}},
     .run = &ShellCommands::toggleToolBars,
     .checked = &ShellCommands::toolBarsShown},
    {.row = {.id = "view.statusBar",
             .menuText = "&Status Bar",
             .statusText = "Show or hide the status line",
             .places = {{View, 120}}},
     .run = &ShellCommands::toggleStatusBar,
     .checked = &ShellCommands::statusBarShown},
    {.row = {.id = "options.report",
             .menuText = "Model &report",
             .statusText = "Show or hide sizes, quality and faults of the model",
             .follows = "view.features",
             .places = {{Options, 210}}},
     .run = &ShellCommands::showReport,
     .checked = &ShellCommands::reportShown},
    {.row = {.id = "options.curvePlot",
             .menuText = "Curve &plot",
             .statusText = "Show or hide the plot of the captured section or line",
             .places = {{Options, 220}}},
     .run = &ShellCommands::showCurvePlot,
     .checked = &ShellCommands::curvePlotShown},
    {.row = {.id = "options.journal",
             .menuText = "&Journal",
             .statusText = "Show or hide what was done, as a script",
             .places = {{Options, 230}}},
     .run = &ShellCommands::showJournal,
     .checked = &ShellCommands::journalShown},
    {.row = {.id = "help.topics",
             .menuText = "&Help Topics",
             .statusText = "Show the user guide",
             .toolTip = "Help",
             .accelerator = "F1",
             .icon = true,
             .places = {{Help, 110}, {GeneralBar, 1020}}},
     .run = &ShellCommands::showGuide},
    {.row = {.id = "help.keys",
             .menuText = "&Keys and Mouse",
             .statusText = "List all keys and what the mouse does in the view",
             .accelerator = "Shift+F1",
             .places = {{Help, 120}}},
     .run = &ShellCommands::showKeys},
    {.row = {.id = "help.fileReport",
             .menuText = "File &report",
             .statusText = "Show what was kept, changed and lost of the files read last",
             .places = {{Help, 210}}},
     .run = &ShellCommands::showFileReport,
     .checked = &ShellCommands::fileReportShown},
    {.row = {.id = "help.about",
             .menuText = "&About Velmora...",
             .statusText = "Show the program's version and the machine's state",
             .places = {{Help, 310}}},
     .run = &ShellCommands::showAbout},
};

const ShellCommand* findShellCommand(std::string_view id) {
    const auto* const found =
        std::find_if(std::begin(commands), std::end(commands), [id](const ShellCommand& c) { return id == c.row.id; });
    return found == std::end(commands) ? nullptr : found;
}

} // namespace

std::span<const ShellCommand> shellCommands() {
    return commands;
}

bool runShellCommand(ShellCommands& shell, std::string_view id) {
    const ShellCommand* command = findShellCommand(id);
    if (command != nullptr) {
        (shell.*command->run)();
    }
    return command != nullptr;
}

std::optional<bool> shellCheckedState(const ShellCommands& shell, std::string_view id) {
    const ShellCommand* command = findShellCommand(id);
    return command != nullptr && command->checked != nullptr ? std::optional((shell.*command->checked)())
                                                             : std::nullopt;
}

} // namespace velmora
