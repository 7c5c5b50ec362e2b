#include "CommandActions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMainWindow>
#include <QSettings>
#include <QShortcut>
#include <map>
#include <memory>
#include <set>

#include "Person.h"
#include "RecentFiles.h"
#include "qt_text.h"
#include "temporary_folder.h"

namespace velmora::test {
namespace {

/// Menus and bars of a program whose commands are on or off as `states` says; on where it says nothing.
struct ActionsRig {
    std::map<std::string, CommandState> states;
    std::vector<std::string> ran;
    QStringList chosen;
    RecentFiles recent;
    CommandActions actions{recent, [this](const Command& command) { return stateOf(command.id); },
                           &ActionsRig::inOrderOfTheTable};
    QMainWindow window;

    ActionsRig() {
        QObject::connect(&actions, &CommandActions::triggered, &window,
                         [this](const Command& command) { ran.emplace_back(command.id); });
        QObject::connect(&actions, &CommandActions::recentFileChosen, &window,
                         [this](const QString& path) { chosen.append(path); });
    }
    CommandState stateOf(const std::string& id) {
        const auto found = states.find(id);
        return found == states.end() ? CommandState() : found->second;
    }
    static std::vector<const Command*> inOrderOfTheTable(std::string_view key) {
        std::vector<const Command*> commands;
        for (const Command& command : commandTable()) {
            if (key == command.accelerator) {
                commands.push_back(&command);
            }
        }
        return commands;
    }
    void pressKey(const char* key) {
        for (QShortcut* shortcut : window.findChildren<QShortcut*>()) {
            if (shortcut->key() == QKeySequence(QString::fromLatin1(key))) {
                emit shortcut->activated();
            }
        }
    }
};

MenuEntry entry(const char* id, const char* text) {
    MenuEntry made;
    made.kind = MenuEntry::Kind::Item;
    made.command = id;
    made.text = text;
    return made;
}

MenuEntry separator() {
    MenuEntry made;
    made.kind = MenuEntry::Kind::Separator;
    return made;
}

class ActionsTest : public testing::Test {
protected:
    void SetUp() override { QSettings().clear(); }
};

TEST_F(ActionsTest, AnEntryHasItsWordsItsKeyItsHelpAndItsState) {
    ActionsRig rig;
    rig.states["file.append"] = {.on = false, .checked = {}};
    QMenu menu;
    rig.actions.fillMenu(menu, {entry("file.new", "&New"), separator(), entry("file.append", "&Append..."),
                                entry("file.saveAs", "Save &As...")});
    ASSERT_EQ(menu.actions().size(), 4);
    const QAction& first = *menu.actions()[0];
    EXPECT_EQ(first.text(), QStringLiteral("&New\tCtrl+N"));
    EXPECT_EQ(first.objectName(), QStringLiteral("file.new"));
    EXPECT_EQ(first.statusTip(), QStringLiteral("Create a new model"));
    EXPECT_EQ(first.menuRole(), QAction::NoRole);
    EXPECT_TRUE(first.isEnabled());
    EXPECT_FALSE(first.icon().isNull());
    EXPECT_TRUE(menu.actions()[1]->isSeparator());
    EXPECT_FALSE(menu.actions()[2]->isEnabled());
    EXPECT_EQ(menu.actions()[3]->text(), QStringLiteral("&Save As...")) << "a command without a key; A is taken";
}

TEST_F(ActionsTest, ASwitchShowsItsMarkInPlaceOfAPicture) {
    ActionsRig rig;
    rig.states["view.surface"] = {.on = true, .checked = true};
    rig.states["view.rotate"] = {.on = true, .checked = {}};
    QMenu menu;
    rig.actions.fillMenu(menu, {entry("view.surface", "&Surface"), entry("view.rotate", "&Rotate")});
    QToolBar bar;
    rig.actions.fillToolBar(bar, {entry("view.surface", "&Surface")});
    EXPECT_TRUE(menu.actions()[0]->isCheckable());
    EXPECT_TRUE(menu.actions()[0]->isChecked());
    EXPECT_TRUE(menu.actions()[0]->icon().isNull());
    EXPECT_FALSE(menu.actions()[1]->isCheckable());
    EXPECT_TRUE(bar.actions()[0]->isChecked());
    EXPECT_FALSE(bar.actions()[0]->icon().isNull()) << "a button always has its picture";
}

TEST_F(ActionsTest, StatesAreAskedAnewWhenAMenuOpensAndOnDemand) {
    ActionsRig rig;
    rig.states["view.surface"] = {.on = true, .checked = false};
    QMenu menu;
    rig.actions.fillMenu(menu, {entry("file.save", "&Save"), entry("view.surface", "&Surface")});
    QToolBar bar;
    rig.actions.fillToolBar(bar, {entry("file.save", "&Save"), entry("view.surface", "&Surface")});
    const auto shown = [](const QWidget& place) {
        const QAction& surface = *place.actions()[1];
        return std::vector<bool>{place.actions()[0]->isEnabled(), surface.isEnabled(), surface.isChecked()};
    };
    rig.states["file.save"] = {.on = false, .checked = {}};
    rig.states["view.surface"] = {.on = true, .checked = true};
    EXPECT_THAT(shown(menu), ::testing::ElementsAre(true, true, false)) << "not before";
    emit menu.aboutToShow();
    for (const QWidget* place : {static_cast<QWidget*>(&menu), static_cast<QWidget*>(&bar)}) {
        EXPECT_THAT(shown(*place), ::testing::ElementsAre(false, true, true));
    }
    rig.states["view.surface"] = {.on = false, .checked = false};
    rig.actions.refresh();
    EXPECT_THAT(shown(bar), ::testing::ElementsAre(false, false, false));
}

TEST_F(ActionsTest, ASubmenuAsksTooAndSaysWhenItCloses) {
    ActionsRig rig;
    int closed = 0;
    QObject::connect(&rig.actions, &CommandActions::menuClosed, &rig.window, [&closed] { ++closed; });
    MenuEntry inner;
    inner.kind = MenuEntry::Kind::Submenu;
    inner.text = "&Projection";
    inner.entries = {entry("view.top", "&Top")};
    QMenu menu;
    rig.actions.fillMenu(menu, {inner});
    QMenu* submenu = menu.actions()[0]->menu();
    ASSERT_NE(submenu, nullptr);
    EXPECT_EQ(submenu->title(), QStringLiteral("&Projection"));
    rig.states["view.top"] = {.on = false, .checked = {}};
    emit submenu->aboutToShow();
    EXPECT_FALSE(submenu->actions()[0]->isEnabled());
    emit submenu->aboutToHide();
    EXPECT_EQ(closed, 1);
    emit menu.aboutToHide();
    EXPECT_EQ(closed, 2);
}

TEST_F(ActionsTest, AMenuThatIsGoneIsAskedNoMore) {
    ActionsRig rig;
    QMenu kept;
    rig.actions.fillMenu(kept, {entry("file.save", "&Save")});
    auto menu = std::make_unique<QMenu>();
    rig.actions.fillMenu(*menu, {entry("file.new", "&New")});
    menu.reset();
    rig.states["file.save"] = {.on = false, .checked = {}};
    rig.actions.refresh();
    EXPECT_FALSE(kept.actions()[0]->isEnabled()) << "the others are";
}

TEST_F(ActionsTest, AToolButtonHasItsTipAndASeparatorItsPlace) {
    ActionsRig rig;
    QToolBar bar;
    rig.actions.fillToolBar(bar, {entry("patch.capture", "&Capture"), separator(), entry("file.exit", "E&xit")});
    ASSERT_EQ(bar.actions().size(), 3);
    EXPECT_EQ(bar.actions()[0]->toolTip(), QStringLiteral("Capture patch"));
    EXPECT_EQ(bar.actions()[0]->text(), QStringLiteral("Capture"));
    EXPECT_EQ(bar.widgetForAction(bar.actions()[0])->objectName(), QStringLiteral("patch.capture"));
    EXPECT_EQ(bar.widgetForAction(bar.actions()[0])->accessibleName(), QStringLiteral("Capture patch"));
    EXPECT_TRUE(bar.actions()[1]->isSeparator());
    bar.actions()[0]->trigger();
    EXPECT_THAT(rig.ran, ::testing::ElementsAre("patch.capture"));
}

TEST_F(ActionsTest, AButtonWithoutATipIsNamedByItsWords) {
    ActionsRig rig;
    for (const Command& command : commandTable()) {
        if (*command.toolTip == '\0') {
            QToolBar bar;
            rig.actions.fillToolBar(bar, {entry(command.id, "Input && &Add...")});
            EXPECT_EQ(bar.actions()[0]->toolTip(), QStringLiteral("Input & Add")) << command.id;
            EXPECT_EQ(bar.actions()[0]->text(), QStringLiteral("Input && Add"));
            return;
        }
    }
}

// ---- Keys -----------------------------------------------------------------------------------------------------------

TEST_F(ActionsTest, EachKeyOfTheTableIsThereOnce) {
    ActionsRig rig;
    rig.actions.addShortcuts(rig.window);
    std::multiset<std::string> keys;
    for (const QShortcut* shortcut : rig.window.findChildren<QShortcut*>()) {
        keys.insert(plainBytes(shortcut->key().toString()));
    }
    EXPECT_THAT(keys, ::testing::ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "B", "Backspace", "Ctrl+A",
                                             "Ctrl+C", "Ctrl+N", "Ctrl+O", "Ctrl+S", "Ctrl+V", "Ctrl+X", "Ctrl+Z", "E",
                                             "F", "F1", "Home", "M", "P", "S", "Shift+F", "Shift+F1"));
}

TEST_F(ActionsTest, ASharedKeyRunsTheFirstOfItsOrderThatIsOnAndNoneWhenAllAreOff) {
    ActionsRig rig;
    rig.actions.addShortcuts(rig.window);
    rig.pressKey("Ctrl+Z");
    rig.states["patch.undo"] = {.on = false, .checked = {}};
    rig.pressKey("Ctrl+Z");
    rig.states["point.undo"] = {.on = false, .checked = {}};
    rig.pressKey("Ctrl+Z");
    rig.pressKey("Ctrl+S");
    EXPECT_THAT(rig.ran, ::testing::ElementsAre("patch.undo", "point.undo", "file.save"));
}

// ---- Recent files ---------------------------------------------------------------------------------------------------

TEST_F(ActionsTest, RecentFilesStandWhereTheMenuSaysAndFollowTheList) {
    ActionsRig rig;
    MenuEntry place;
    place.kind = MenuEntry::Kind::RecentFiles;
    QMenu menu;
    rig.actions.fillMenu(menu, {entry("file.new", "&New"), place, entry("file.exit", "E&xit")});
    ASSERT_EQ(menu.actions().size(), 2 + RecentFiles::capacity);
    const auto shown = [&menu] {
        std::vector<std::string> lines;
        for (int i = 1; i <= RecentFiles::capacity; ++i) {
            const QAction& action = *menu.actions()[i];
            EXPECT_EQ(action.objectName(), QStringLiteral("recent.%1").arg(i));
            if (action.isVisible()) {
                lines.push_back(plainBytes(action.text()) + (action.isEnabled() ? "" : " off"));
            }
        }
        return lines;
    };
    EXPECT_THAT(shown(), ::testing::ElementsAre("Recent File off"));
    EXPECT_EQ(menu.actions()[1]->statusTip(), QString());
    const TemporaryFolder folder;
    const std::string root = folder.path().string() + "/";
    for (const char* name : {"a.apt", "b & c.apt", "d", "f"}) {
        writeFileText(folder / name, "");
    }
    rig.recent.add(qtText(root + "a.apt"));
    EXPECT_THAT(shown(), ::testing::ElementsAre("&1 " + root + "a.apt"));
    EXPECT_EQ(menu.actions()[1]->statusTip(), QStringLiteral("Open this file"));
    for (const char* name : {"b & c.apt", "d", "e", "f"}) {
        rig.recent.add(qtText(root + name));
    }
    EXPECT_THAT(shown(), ::testing::ElementsAre("&1 " + root + "f", "&2 " + root + "e off", "&3 " + root + "d",
                                                "&4 " + root + "b && c.apt"));
    EXPECT_EQ(menu.actions()[2]->statusTip(), QStringLiteral("This file is not there any more"));
    menu.actions()[4]->trigger();
    menu.actions()[1]->trigger();
    EXPECT_EQ(rig.chosen, QStringList({qtText(root + "b & c.apt"), qtText(root + "f")}));
    // The files are looked for as the menu opens.
    std::filesystem::remove(folder / "f");
    std::filesystem::create_directory(folder / "e");
    emit menu.aboutToShow();
    EXPECT_THAT(shown(), ::testing::ElementsAre("&1 " + root + "f off", "&2 " + root + "e", "&3 " + root + "d",
                                                "&4 " + root + "b && c.apt"));
    EXPECT_EQ(menu.actions()[2]->statusTip(), QStringLiteral("Open a file of this folder"));
    EXPECT_THAT(rig.ran, ::testing::IsEmpty());
}

} // namespace
} // namespace velmora::test
