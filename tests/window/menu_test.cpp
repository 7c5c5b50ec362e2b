#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenuBar>
#include <QToolButton>

#include "Desk.h"
#include "DocumentState.h"
#include "WindowDriver.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

using Kind = MenuEntry::Kind;

/// One line of an open menu, as a person sees it.
struct ShownEntry {
    std::string words; ///< empty: a separator
    bool on = false;
    bool submenu = false;

    friend bool operator==(const ShownEntry&, const ShownEntry&) = default;
};

void PrintTo(const ShownEntry& entry, std::ostream* stream) {
    *stream << '"' << entry.words << '"' << (entry.on ? "" : " (off)") << (entry.submenu ? " >" : "");
}

/// The lines of the menu that is open, from top to bottom.
std::vector<ShownEntry> shownEntries(WindowDriver& person) {
    return person.ask([] {
        QMenu* menu = WindowDriver::openedMenu();
        std::vector<ShownEntry> shown;
        int bottom = 0;
        for (QAction* action : menu->actions()) {
            if (!action->isVisible()) {
                continue;
            }
            const QRect place = menu->actionGeometry(action);
            EXPECT_GE(place.top(), bottom);
            bottom = place.bottom();
            if (action->isSeparator()) {
                shown.push_back({"", false, false});
            } else {
                shown.push_back({plainBytes(wordsOf(action->text())), action->isEnabled(), action->menu() != nullptr});
            }
        }
        EXPECT_LE(bottom, menu->height());
        return shown;
    });
}

bool isOn(const std::string& id) {
    MainFrame& frame = WindowDriver::frame();
    const Command& command = *findCommand(id);
    return !isCommandOff(frame.state(), id) &&
           !(command.owner == CommandOwner::View && frame.view().isViewCommandOff(id));
}

/// What the tables and the availability rules ask for, with `recent` in the place of the recent files.
std::vector<ShownEntry> wantedEntries(WindowDriver& person, const std::vector<MenuEntry>& entries,
                                      const std::vector<ShownEntry>& recent) {
    return person.ask([&] {
        std::vector<ShownEntry> wanted;
        for (const MenuEntry& entry : entries) {
            switch (entry.kind) {
            case Kind::Separator:
                wanted.push_back({"", false, false});
                break;
            case Kind::Submenu:
                wanted.push_back({plainBytes(wordsOf(qtText(entry.text))), true, true});
                break;
            case Kind::RecentFiles:
                wanted.insert(wanted.end(), recent.begin(), recent.end());
                break;
            case Kind::Item:
                wanted.push_back({plainBytes(wordsOf(qtText(entry.text))), isOn(entry.command), false});
                break;
            }
        }
        return wanted;
    });
}

/// Compares the open menu and, by opening each, its submenus.
void expectMenu(WindowDriver& person, const std::vector<MenuEntry>& entries, const std::vector<ShownEntry>& recent) {
    EXPECT_THAT(shownEntries(person), ::testing::ElementsAreArray(wantedEntries(person, entries, recent)));
    for (const MenuEntry& entry : entries) {
        if (entry.kind == Kind::Submenu) {
            person.clickEntry(wordsOf(qtText(entry.text)));
            expectMenu(person, entry.entries, recent);
            person.key("Left");
            person.settle();
        }
    }
}

void closeMenus(WindowDriver& person) {
    person.ask([] {
        while (QWidget* popup = QApplication::activePopupWidget()) {
            popup->close();
        }
    });
    person.settle();
}

void expectAllMenus(WindowDriver& person, const std::vector<ShownEntry>& recent) {
    for (const Menu& menu : mainMenus()) {
        SCOPED_TRACE(menu.name);
        person.openMenu(wordsOf(qtText(menu.name)));
        expectMenu(person, menu.entries, recent);
        closeMenus(person);
    }
}

void expectAllToolBars(WindowDriver& person) {
    person.ask([] {
        for (const Menu& wanted : toolBars()) {
            SCOPED_TRACE(wanted.name);
            const auto* bar = WindowDriver::frame().findChild<QToolBar*>(qtText(wanted.name));
            const QList<QAction*> actions = bar->actions();
            ASSERT_EQ(actions.size(), static_cast<qsizetype>(wanted.entries.size()));
            int right = -1;
            for (qsizetype i = 0; i < actions.size(); ++i) {
                const MenuEntry& entry = wanted.entries[static_cast<std::size_t>(i)];
                const QWidget* button = bar->widgetForAction(actions[i]);
                EXPECT_TRUE(button->isVisible()) << entry.command;
                EXPECT_GT(button->geometry().left(), right) << entry.command;
                right = button->geometry().right();
                ASSERT_EQ(actions[i]->isSeparator(), entry.kind == Kind::Separator);
                if (actions[i]->isSeparator()) {
                    continue;
                }
                EXPECT_EQ(actions[i]->isEnabled(), isOn(entry.command)) << entry.command;
                EXPECT_EQ(actions[i]->toolTip(), QLatin1String(findCommand(entry.command)->toolTip));
                EXPECT_EQ(button->accessibleName(), actions[i]->toolTip());
                EXPECT_FALSE(actions[i]->icon().pixmap(16, 16).isNull()) << entry.command;
            }
        }
    });
}

TEST(Menus, ShowEveryEntryInOrderWithItsStateWithoutAModel) {
    runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        const QStringList headings = person.ask([] {
            QStringList words;
            for (const QAction* action : WindowDriver::frame().menuBar()->actions()) {
                words.append(wordsOf(action->text()));
            }
            return words;
        });
        EXPECT_EQ(headings, QStringList({"File", "Edit", "Transformations", "View", "Options", "Help"}));
        expectAllMenus(person, {{"Recent File", false, false}});
        expectAllToolBars(person);
    });
}

TEST(Menus, ShowEveryEntryInOrderWithItsStateForAModel) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        expectAllMenus(person, {{"1 " + desk.model.string(), true, false}});
        expectAllToolBars(person);
    });
}

TEST(Menus, TheFileMenuTurnsOnWithAModel) {
    const Desk desk;
    const std::vector<std::string> offWithoutModel = {"Append...",     "Append wrl...", "Append dat...",
                                                      "Append sft...", "Save",          "Save As..."};
    const auto states = [](WindowDriver& person) {
        std::map<std::string, bool> on;
        person.openMenu(QStringLiteral("File"));
        for (const ShownEntry& entry : shownEntries(person)) {
            on[entry.words] = entry.on;
        }
        closeMenus(person);
        return on;
    };
    runProgram({}, [&](WindowDriver& person) {
        person.waitForFrame();
        const auto on = states(person);
        for (const std::string& words : offWithoutModel) {
            EXPECT_FALSE(on.at(words)) << words;
        }
        EXPECT_TRUE(on.at("New"));
        EXPECT_TRUE(on.at("Open..."));
        EXPECT_TRUE(on.at("Exit"));
    });
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const auto on = states(person);
        for (const std::string& words : offWithoutModel) {
            EXPECT_TRUE(on.at(words)) << words;
        }
        EXPECT_FALSE(on.at("Close wrl"));
        EXPECT_FALSE(on.at("Close dat (field)"));
    });
}

TEST(Menus, AnEntryPointedAtShowsItsHelpUntilItIsLeft) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const QPoint button = person.ask([] {
            const auto* found = WindowDriver::frame().findChild<QToolButton*>(QStringLiteral("view.rotate"));
            return found->mapToGlobal(found->rect().center());
        });
        person.move(button - QPoint(1, 1));
        person.move(button);
        EXPECT_TRUE(person.waitFor([] {
            return WindowDriver::frame().findChild<QLabel*>(QStringLiteral("message"))->text() ==
                   QStringLiteral("Rotate model");
        }));
        person.move(person.onView({400, 300}));
        person.settle();
        EXPECT_EQ(person.status(), QStringLiteral("For Help, press F1"));

        person.openMenu(QStringLiteral("File"));
        person.key("Down");
        person.settle();
        EXPECT_EQ(person.status(), QStringLiteral("Create a new model"));
        person.key("Down");
        person.settle();
        EXPECT_EQ(person.status(), QStringLiteral("Open an existing model"));
        closeMenus(person);
        EXPECT_EQ(person.status(), QStringLiteral("For Help, press F1"));
    });
}

TEST(Menus, SwitchesShowTheirState) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const auto checked = [&person](const char* id) {
            return person.ask([id] {
                const auto actions = WindowDriver::frame().menuBar()->findChildren<QAction*>(QString::fromLatin1(id));
                EXPECT_EQ(actions.size(), 1) << id;
                return actions.front()->isChecked();
            });
        };
        EXPECT_TRUE(checked("model.reflectToSft"));
        EXPECT_TRUE(checked("view.surface"));
        person.choose({"View", "Surface"});
        EXPECT_FALSE(checked("view.surface"));
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().state().surfaceMode; }));

        EXPECT_TRUE(checked("view.perspective"));
        person.choose({"View", "Projection", "Orthographic Projection"});
        EXPECT_FALSE(checked("view.perspective"));
        EXPECT_TRUE(checked("view.orthographic"));
        person.choose({"View", "Projection", "Orthographic Projection"});
        EXPECT_TRUE(checked("view.orthographic")) << "choosing it again does not switch it off";

        person.choose({"View", "Toolbar"});
        EXPECT_FALSE(checked("view.toolbar"));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().findChild<QToolBar*>("Editing")->isHidden(); }));
        person.choose({"View", "Toolbar"});
        EXPECT_TRUE(checked("view.toolbar"));
        person.choose({"View", "Status Bar"});
        EXPECT_FALSE(checked("view.statusBar"));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().statusBar()->isHidden(); }));
    });
}

/// Opens the context menu in the middle of the view; its name, empty when none opens.
QString contextMenuName(WindowDriver& person) {
    person.click(person.onView({400, 300}), WindowDriver::rightButton);
    person.settle();
    return person.ask(
        [] { return WindowDriver::openedMenu() != nullptr ? WindowDriver::openedMenu()->objectName() : QString(); });
}

TEST(Menus, ARightClickOpensTheMenuOfTheRegime) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        EXPECT_EQ(contextMenuName(person), QString()) << "no regime, no menu";

        person.choose({"Edit", "Patches", "Input & Add to zBlock..."});
        person.waitForBox(QStringLiteral("CInputPatch"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(contextMenuName(person), QStringLiteral("Patch Context"));
        expectMenu(person, patchContextMenu().entries, {});
        closeMenus(person);

        person.choose({"Edit", "Lines", "Capture", "Section"});
        EXPECT_EQ(contextMenuName(person), QStringLiteral("Line Context"));
        expectMenu(person, lineContextMenu().entries, {});
        closeMenus(person);

        person.choose({"Edit", "Point", "Capture"});
        EXPECT_EQ(contextMenuName(person), QStringLiteral("Point_context"));
        expectMenu(person, pointContextMenu().entries, {});
        closeMenus(person);
    });
}

// ---- What a menu leaves behind --------------------------------------------------------------------------------------

bool waitForStatus(WindowDriver& person, const QString& text) {
    person.waitFor([&] { return WindowDriver::frame().findChild<QLabel*>(QStringLiteral("message"))->text() == text; });
    EXPECT_EQ(person.status(), text);
    return person.status() == text;
}

/// Moves the mouse to an entry of the open menu, by its command's id.
void pointAt(WindowDriver& person, const QString& id) {
    person.move(person.ask([id] {
        QMenu* menu = WindowDriver::openedMenu();
        for (QAction* action : menu->actions()) {
            if (action->objectName() == id) {
                return menu->mapToGlobal(menu->actionGeometry(action).center());
            }
        }
        throw std::runtime_error("no entry " + id.toStdString());
    }));
}

TEST(Menus, TheHintOfAnEntryGoesWithTheMenu) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(50);
        person.choose({"Edit", "Lines", "Capture", "Section"});
        const QString prompt = QStringLiteral("Press left button of mouse and drag it");
        person.openMenu(QStringLiteral("File"));
        pointAt(person, QStringLiteral("file.saveAs"));
        waitForStatus(person, QLatin1String(findCommand("file.saveAs")->statusText));
        person.key("Escape");
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() == nullptr; }));
        person.move(person.onView({400, 300}));
        waitForStatus(person, prompt);

        person.click(person.onView({30, 30}), WindowDriver::rightButton);
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
        pointAt(person, QStringLiteral("line.exit"));
        waitForStatus(person, QLatin1String(findCommand("line.exit")->statusText));
        person.key("Escape");
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() == nullptr; }));
        waitForStatus(person, prompt);
    });
}

TEST(Menus, AViewChosenInAMenuIsPaintedAndTheToolBarFollowsASwitch) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(50);
        person.choose({"View", "Projection", "Front"});
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().view().viewAlongX; }))
            << "the command asks for no paint, the menu that closes does";
        const auto pressed = [] {
            const auto* bar = WindowDriver::frame().findChild<QToolBar*>(QStringLiteral("General"));
            return bar->findChild<QToolButton*>(QStringLiteral("view.surface"))->isChecked();
        };
        EXPECT_TRUE(person.ask(pressed));
        person.choose({"View", "Surface"});
        EXPECT_TRUE(person.waitFor([&] { return !pressed(); }));
        person.choose({"View", "Surface"});
        EXPECT_TRUE(person.waitFor(pressed));
    });
}

} // namespace
} // namespace velmora::test
