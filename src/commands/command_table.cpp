#include "command_table.h"

#include <algorithm>

#include "ShellCommands.h"
#include "VelmoraView.h"
#include "ViewCommand.h"
#include "document_commands.h"

namespace velmora {

namespace {

using Rows = std::vector<Command>;

Rows::iterator placeOf(Rows& rows, std::string_view id) {
    return std::find_if(rows.begin(), rows.end(), [id](const Command& command) { return id == command.id; });
}

/// Puts one owner's rows among the others: each behind the one that it names, or behind its own row before.
void insertRows(Rows& all, const Rows& rows, CommandOwner owner) {
    std::string_view before;
    for (Command row : rows) {
        row.owner = owner;
        before = row.follows != nullptr ? row.follows : before;
        all.insert(std::next(placeOf(all, before)), row);
        before = row.id;
    }
}

/// The rows of a table whose entries hold more than the row.
template <class Entries>
Rows rowsOf(const Entries& entries) {
    Rows rows;
    for (const auto& entry : entries) {
        rows.push_back(entry.row);
    }
    return rows;
}

Rows allCommands() {
    const auto documents = documentCommands();
    Rows all(documents.begin(), documents.end());
    insertRows(all, rowsOf(shellCommands()), CommandOwner::Shell);
    insertRows(all, rowsOf(VelmoraView::commands()), CommandOwner::View);
    return all;
}

} // namespace

std::span<const Command> commandTable() {
    static const Rows commands = allCommands();
    return commands;
}

const Command* findCommand(std::string_view id) {
    const auto commands = commandTable();
    const auto found = std::find_if(commands.begin(), commands.end(), [id](const Command& c) { return id == c.id; });
    return found == commands.end() ? nullptr : &*found;
}

bool isCommandOff(const VelmoraDoc& document, std::string_view id) {
    const Command* command = findCommand(id);
    return command != nullptr && command->off != nullptr && command->off(document);
}

std::optional<bool> checkedState(const Command& command, const VelmoraDoc& document, const VelmoraView& view,
                                 const ShellCommands& shell) {
    switch (command.owner) {
    case CommandOwner::View:
        return view.checkedState(command.id);
    case CommandOwner::Shell:
        return shellCheckedState(shell, command.id);
    case CommandOwner::Document:
        break;
    }
    return command.checked != nullptr ? std::optional(command.checked(document)) : std::nullopt;
}

} // namespace velmora
