#include "CommandActions.h"

#include <QFileInfo>
#include <QShortcut>
#include <QStringList>
#include <QTextDocument>
#include <algorithm>

#include "AccessKeys.h"
#include "RecentFiles.h"
#include "qt_text.h"
#include "theme_icon.h"

namespace velmora {

namespace {

QString idOf(const Command& command) {
    return QString::fromLatin1(command.id);
}

/// The icon of a command, or none when it has none.
QIcon iconOf(const Command& command) {
    return command.icon ? themeIcon(QStringLiteral(":/icons/%1.svg").arg(idOf(command))) : QIcon();
}

/// What is said of a tool button while it is pointed at.
QString toolTipOf(const Command& command) {
    return *command.toolTip == '\0' ? qtText(plainText(command.menuText)) : qtText(command.toolTip);
}

/// The words of a menu with the command's key behind them.
QString menuText(const QString& text, const Command& command) {
    return *command.accelerator == '\0' ? text : text + QLatin1Char('\t') + QString::fromLatin1(command.accelerator);
}

/// The words of the entries, each access key once.
QStringList wordsOf(const std::vector<MenuEntry>& entries) {
    QStringList words;
    for (const MenuEntry& entry : entries) {
        words.append(qtText(entry.text));
    }
    return withKeysOnce(words);
}

} // namespace

CommandActions::CommandActions(RecentFiles& recent, StateOf stateOf, CommandsOfKey commandsOfKey, QObject* parent)
    : QObject(parent), recent_(recent), stateOf_(std::move(stateOf)), commandsOfKey_(std::move(commandsOfKey)) {
    connect(&recent_, &RecentFiles::changed, this, &CommandActions::refreshRecentFiles);
}

QAction* CommandActions::makeAction(const Command& command, const QString& text, QObject& owner) {
    auto* action = new QAction(text, &owner);
    action->setObjectName(idOf(command));
    action->setStatusTip(qtText(command.statusText));
    action->setMenuRole(QAction::NoRole);
    const CommandState state = stateOf_(command);
    action->setCheckable(state.checked.has_value());
    action->setChecked(state.checked.value_or(false));
    action->setEnabled(state.on);
    connect(action, &QAction::triggered, this, [this, &command] { emit triggered(command); });
    return action;
}

void CommandActions::fillMenu(QMenu& menu, const std::vector<MenuEntry>& entries) {
    QStringList words = wordsOf(entries);
    for (const MenuEntry& entry : entries) {
        const QString text = words.takeFirst();
        switch (entry.kind) {
        case MenuEntry::Kind::Item: {
            const Command& command = *findCommand(entry.command);
            QAction* action = makeAction(command, menuText(text, command), menu);
            if (!action->isCheckable()) {
                action->setIcon(iconOf(command)); // of a switch the mark is shown in its place
            }
            menu.addAction(action);
            entries_.push_back({action, &command});
            connect(action, &QObject::destroyed, this, [this, action] {
                std::erase_if(entries_, [action](const Entry& e) { return e.action == action; });
            });
            break;
        }
        case MenuEntry::Kind::Separator:
            menu.addSeparator();
            break;
        case MenuEntry::Kind::Submenu:
            fillMenu(*menu.addMenu(text), entry.entries);
            break;
        case MenuEntry::Kind::RecentFiles:
            addRecentFiles(menu);
            break;
        }
    }
    connect(&menu, &QMenu::aboutToShow, this, &CommandActions::refresh);
    connect(&menu, &QMenu::aboutToHide, this, &CommandActions::menuClosed);
}

void CommandActions::fillToolBar(QToolBar& bar, const std::vector<MenuEntry>& entries) {
    for (const MenuEntry& entry : entries) {
        if (entry.kind != MenuEntry::Kind::Item) {
            bar.addSeparator();
            continue;
        }
        const Command& command = *findCommand(entry.command);
        const QString name = qtText(plainText(entry.text));
        QAction* action = makeAction(command, withoutAccessKeys(name), bar);
        action->setIcon(iconOf(command));
        action->setToolTip(*command.toolTip == '\0' ? name : qtText(command.toolTip));
        bar.addAction(action);
        bar.widgetForAction(action)->setObjectName(idOf(command));
        bar.widgetForAction(action)->setAccessibleName(action->toolTip());
        entries_.push_back({action, &command});
    }
}

// ---- Recent files ---------------------------------------------------------------------------------------------------

void CommandActions::addRecentFiles(QMenu& menu) {
    for (int i = 0; i < RecentFiles::capacity; ++i) {
        auto* action = new QAction(&menu);
        action->setObjectName(QStringLiteral("recent.%1").arg(i + 1));
        connect(action, &QAction::triggered, this, [this, i] { emit recentFileChosen(recent_.paths().value(i)); });
        menu.addAction(action);
        recentActions_.push_back(action);
    }
    refreshRecentFiles();
    // Files come and go while the program runs.
    connect(&menu, &QMenu::aboutToShow, this, &CommandActions::refreshRecentFiles);
}

void CommandActions::refreshRecentFiles() {
    const QStringList& paths = recent_.paths();
    for (int i = 0; i < static_cast<int>(recentActions_.size()); ++i) {
        QAction* action = recentActions_[static_cast<std::size_t>(i)];
        const bool filled = i < paths.size();
        // Without any file the first entry says what stands here.
        action->setVisible(filled || (i == 0 && paths.isEmpty()));
        action->setEnabled(filled && QFileInfo::exists(paths.at(i)));
        action->setText(filled ? QStringLiteral("&%1 %2").arg(i + 1).arg(withoutAccessKeys(paths.at(i)))
                               : tr("Recent File"));
        action->setStatusTip(!filled                          ? QString()
                             : QFileInfo(paths.at(i)).isDir() ? tr("Open a file of this folder")
                             : action->isEnabled()            ? tr("Open this file")
                                                              : tr("This file is not there any more"));
    }
}

// ---- Keys and states ------------------------------------------------------------------------------------------------

void CommandActions::addShortcuts(QWidget& window) {
    QStringList keys;
    for (const Command& command : commandTable()) {
        const QString key = QString::fromLatin1(command.accelerator);
        if (key.isEmpty() || keys.contains(key)) {
            continue;
        }
        keys.append(key);
        auto* shortcut = new QShortcut(QKeySequence(key), &window);
        connect(shortcut, &QShortcut::activated, this, [this, key] { runKey(key); });
    }
}

void CommandActions::runKey(const QString& key) {
    const auto commands = commandsOfKey_(key.toStdString());
    const auto first = std::find_if(commands.begin(), commands.end(),
                                    [this](const Command* command) { return stateOf_(*command).on; });
    if (first != commands.end()) {
        emit triggered(**first);
        emit keyUsed(**first);
    }
}

void CommandActions::tell(std::string_view id, const QString& text) {
    for (const Entry& entry : entries_) {
        if (id == entry.command->id) {
            // A path may hold what looks like markup.
            entry.action->setToolTip(text.isEmpty() ? toolTipOf(*entry.command) : Qt::convertFromPlainText(text));
            entry.action->setStatusTip(text.isEmpty() ? qtText(entry.command->statusText) : text);
        }
    }
}

void CommandActions::refresh() {
    for (const Entry& entry : entries_) {
        const CommandState state = stateOf_(*entry.command);
        entry.action->setEnabled(state.on);
        if (state.checked) {
            entry.action->setChecked(*state.checked);
        }
    }
}

} // namespace velmora
