#include "shell_commands.h"

namespace velmora {

namespace {

using enum MenuId;

const Command commands[] = {
    {.id = "file.exit",
     .menuText = "E&xit",
     .statusText = "Quit the program",
     .follows = "file.saveAs",
     .places = {{File, 710}}},
    {.id = "view.toolbar",
     .menuText = "&Toolbar",
     .statusText = "Show or hide the tool bars",
     .follows = "convert.knife",
     .places = {{View, 110}}},
    {.id = "view.statusBar",
     .menuText = "&Status Bar",
     .statusText = "Show or hide the status line",
     .places = {{View, 120}}},
    {.id = "help.topics",
     .menuText = "&Help Topics",
     .statusText = "Show the user guide",
     .toolTip = "Help",
     .accelerator = "F1",
     .icon = true,
     .follows = "view.features",
     .places = {{Help, 110}, {GeneralBar, 1020}}},
    {.id = "help.about",
     .menuText = "&About Velmora...",
     .statusText = "Show the program's version and the machine's state",
     .places = {{Help, 210}}},
};

} // namespace

std::span<const Command> shellCommands() {
    return commands;
}

} // namespace velmora
