#pragma once

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "command_table.h"

namespace velmora {

class RecentFiles;

/// What the state of the program makes of a command.
struct CommandState {
    bool on = true;
    std::optional<bool> checked; ///< of a command that switches something: whether that is on
};

/// The menus, tool bars and keys of the frame, made from the command table. Each is named after its command's id.
class CommandActions : public QObject {
    Q_OBJECT

public:
    using StateOf = std::function<CommandState(const Command&)>;

    /// The commands of a key in the order in which they are asked.
    using CommandsOfKey = std::function<std::vector<const Command*>(std::string_view)>;

    CommandActions(RecentFiles& recent, StateOf stateOf, CommandsOfKey commandsOfKey, QObject* parent = nullptr);

    void fillMenu(QMenu& menu, const std::vector<MenuEntry>& entries);
    void fillToolBar(QToolBar& bar, const std::vector<MenuEntry>& entries);
    /// One shortcut for each key of the table; a key that several commands share runs the first that is on.
    void addShortcuts(QWidget& window);
    /// What a command would do now, in its tool tip and in the status line while it is pointed at; empty: what it
    /// always does.
    void tell(std::string_view id, const QString& text);
    /// Asks the state of every command anew and shows it.
    void refresh();

signals:
    void triggered(const Command& command);
    /// A key ran the command.
    void keyUsed(const Command& command);
    void recentFileChosen(const QString& path);
    void menuClosed();

private:
    struct Entry {
        QAction* action;
        const Command* command;
    };

    QAction* makeAction(const Command& command, const QString& text, QObject& owner);
    void addRecentFiles(QMenu& menu);
    void refreshRecentFiles();
    void runKey(const QString& key);

    RecentFiles& recent_;
    StateOf stateOf_;
    CommandsOfKey commandsOfKey_;
    std::vector<Entry> entries_;
    std::vector<QAction*> recentActions_;
};

} // namespace velmora
