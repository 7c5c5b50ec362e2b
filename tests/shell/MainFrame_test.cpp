#include "MainFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusTipEvent>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <set>

#include "FrameRig.h"
#include "VelmoraDoc.h"
#include "messages.h"

namespace velmora::test {
namespace {

const zVec<double> onFirst{0.4, 0.7, 0};
const zVec<double> onSecond{5.4, 0.7, 0};

// ---- Title ----------------------------------------------------------------------------------------------------------

TEST(MainFrame, NamesTheModelInItsTitleAndMarksIt) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    EXPECT_EQ(rig.frame.windowTitle(), QStringLiteral("flat.apt[*] - Velmora"));
    EXPECT_FALSE(rig.frame.isWindowModified());
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    EXPECT_TRUE(rig.frame.isWindowModified());
    rig.run("file.save");
    EXPECT_FALSE(rig.frame.isWindowModified());
}

TEST(MainFrame, MarksTheModelAsSoonAsADragHasChangedIt) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("point.capture");
    rig.clickOn({1, 1, 0});
    ASSERT_TRUE(rig.doc().capture->pointCaptured);
    rig.run("point.drag");
    rig.clickOn({1.5, 1.25, 0});
    EXPECT_TRUE(rig.frame.isWindowModified());
}

// ---- States of commands ---------------------------------------------------------------------------------------------

/// The commands that carry a mark.
const char* const marked[] = {"view.toolbar",      "view.statusBar",  "view.surface",       "view.perspective",
                              "view.orthographic", "block.only",      "model.reflectToSft", "options.report",
                              "options.curvePlot", "options.journal", "help.fileReport"};

std::string marks(FrameRig& rig, bool onToolBar) {
    std::string words;
    for (const char* id : marked) {
        const QAction* action = onToolBar ? rig.toolButton(id) : rig.menuEntry(id);
        if (action != nullptr) {
            EXPECT_TRUE(action->isCheckable()) << id;
            words += std::string(words.empty() ? "" : " ") + (action->isChecked() ? "+" : "-") + id;
        }
    }
    return words;
}

TEST(MainFrame, ShowsWhatIsSwitchedOnAfterEachCommand) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    EXPECT_EQ(marks(rig, false),
              "+view.toolbar +view.statusBar +view.surface +view.perspective -view.orthographic "
              "+model.reflectToSft -options.report -options.curvePlot -options.journal -help.fileReport");
    EXPECT_EQ(marks(rig, true), "+view.surface -block.only");
    rig.run("view.surface");
    rig.run("view.orthographic");
    rig.run("view.statusBar");
    EXPECT_EQ(marks(rig, false),
              "+view.toolbar -view.statusBar -view.surface -view.perspective +view.orthographic "
              "+model.reflectToSft -options.report -options.curvePlot -options.journal -help.fileReport");
    EXPECT_EQ(marks(rig, true), "-view.surface -block.only") << "the tool bar follows a command of a menu";
    rig.person.atDialog("CInputPatch", {});
    rig.run("patch.inputAndAdd");
    rig.run("block.only");
    rig.run("view.toolbar");
    rig.run("view.perspective");
    EXPECT_EQ(marks(rig, false),
              "-view.toolbar -view.statusBar -view.surface +view.perspective -view.orthographic "
              "+model.reflectToSft -options.report -options.curvePlot -options.journal -help.fileReport");
    EXPECT_EQ(marks(rig, true), "-view.surface +block.only");
}

TEST(MainFrame, PutsAMarkBackThatAClickTookAwayForNothing) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    // The toolkit turns the mark over before the command runs, which leaves the projection as it is.
    rig.menuEntry("view.perspective")->trigger();
    EXPECT_TRUE(rig.menuEntry("view.perspective")->isChecked());
    EXPECT_FALSE(rig.menuEntry("view.orthographic")->isChecked());
}

/// What the shortcut of that key does.
void press(FrameRig& rig, const char* key) {
    for (QShortcut* shortcut : rig.frame.findChildren<QShortcut*>()) {
        if (shortcut->key() == QKeySequence(QString::fromLatin1(key))) {
            emit shortcut->activated();
            return;
        }
    }
    ADD_FAILURE() << "nobody listens to " << key;
}

TEST(MainFrame, ShowsTheModeOfTheMouseInMenuButtonAndStatusLine) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const auto mode = [&rig] { return rig.frame.findChild<QLabel*>(QStringLiteral("mode"))->text(); };
    rig.run("view.rotate");
    EXPECT_EQ(mode(), QStringLiteral("Rotate"));
    EXPECT_TRUE(rig.menuEntry("view.rotate")->isChecked());
    EXPECT_TRUE(rig.toolButton("view.rotate")->isChecked());
    rig.run("view.zoomIn");
    EXPECT_EQ(mode(), QStringLiteral("Zoom In"));
    EXPECT_FALSE(rig.toolButton("view.rotate")->isChecked());
    rig.run("view.measure");
    EXPECT_EQ(mode(), QStringLiteral("Measure"));
    EXPECT_TRUE(rig.menuEntry("view.measure")->isChecked());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(rig.frame.findChild<QWidget*>(QStringLiteral("view")), &escape);
    EXPECT_NE(mode(), QStringLiteral("Measure"));
    EXPECT_FALSE(rig.menuEntry("view.measure")->isChecked());
    rig.run("line.captureSection");
    EXPECT_EQ(mode(), QStringLiteral("Section"));
    EXPECT_TRUE(rig.toolButton("line.captureSection")->isChecked());
    rig.run("line.exit");
    EXPECT_FALSE(rig.toolButton("line.captureSection")->isChecked());
}

TEST(MainFrame, CopiesNoPictureWhereThereIsNoOpenGl) {
    FrameRig rig;
    rig.person.atMessage(QStringLiteral("The picture cannot be drawn"));
    rig.run("file.copyPicture");
    EXPECT_TRUE(rig.person.isDone());
}

TEST(MainFrame, TellsOfAKeyOfTheViewUntilOneWasPressed) {
    const FlatDesk desk;
    FrameRig rig;
    const auto mode = [&rig] { return rig.frame.findChild<QLabel*>(QStringLiteral("mode"))->text(); };
    EXPECT_EQ(mode(), QString()) << "there is nothing to see yet";
    rig.frame.openFile(qtPath(desk.model));
    EXPECT_EQ(mode(), QStringLiteral("Key 8: Oblique view"));
    press(rig, "7");
    EXPECT_NE(rig.view().modelRotation, identityMatrix()) << "that of Iso";
    EXPECT_EQ(mode(), QString());
}

TEST(MainFrame, TheKeysOfTheViewWorkInARegimeToo) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("line.captureSection");
    press(rig, "8");
    EXPECT_NE(rig.view().zoomFactor, 1.0);
    press(rig, "Shift+F");
    press(rig, "F");
    EXPECT_EQ(rig.view().zoomFactor, 1.0);
    press(rig, "S");
    EXPECT_FALSE(rig.doc().surfaceMode);
    press(rig, "P");
    EXPECT_EQ(rig.view().projectionMode, 1);
    press(rig, "Backspace");
    EXPECT_EQ(rig.view().projectionMode, 0);
    EXPECT_TRUE(rig.doc().capture->sectionCaptureArmed);
    EXPECT_EQ(rig.view().mouseMode, ModeSection);
    press(rig, "Home");
    EXPECT_EQ(rig.view().modelRotation, identityMatrix());
}

TEST(MainFrame, AnEmptyViewTellsHowToBegin) {
    const FlatDesk desk;
    FrameRig rig;
    auto* panel = rig.frame.findChild<QWidget*>(QStringLiteral("startPanel"));
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->isVisible());
    auto* text = panel->findChild<QLabel*>(QStringLiteral("startText"));
    for (const char* word : {"Open", "Ctrl+O", "wing.apt", "Wheel", "Shift+F1"}) {
        EXPECT_TRUE(text->text().contains(QString::fromLatin1(word))) << word;
    }
    // Its links open files.
    emit text->linkActivated(QUrl::fromLocalFile(qtPath(desk.model)).toString(QUrl::FullyEncoded));
    EXPECT_FALSE(rig.doc().holdsNothing());
    EXPECT_FALSE(panel->isVisible());
}

TEST(MainFrame, ListsItsKeys) {
    FrameRig rig;
    int rows = 0;
    QTimer::singleShot(0, &rig.frame, [&rows] {
        auto* box = QApplication::activeModalWidget();
        ASSERT_NE(box, nullptr);
        rows = box->findChild<QTableWidget*>(QStringLiteral("keyList"))->rowCount();
        box->close();
    });
    rig.run("help.keys");
    EXPECT_GT(rows, 20);
}

TEST(MainFrame, OnlyTheSwitchesCarryMarks) {
    FrameRig rig;
    std::set<std::string> switches(std::begin(marked), std::end(marked));
    switches.insert({"view.edges", "view.fillBackFaces", "patch.capture", "line.captureSection", "line.captureLine",
                     "point.capture"});
    for (const Command& command : commandTable()) {
        const bool wanted = switches.count(command.id) == 1 || VelmoraView::mouseModeOf(command.id) != ModeNone;
        for (const QAction* action : {rig.menuEntry(command.id), rig.toolButton(command.id)}) {
            EXPECT_TRUE(action == nullptr || action->isCheckable() == wanted) << command.id;
        }
    }
}

/// The ids of tool buttons whose state is not that of their command.
std::vector<std::string> wrongButtons(FrameRig& rig) {
    std::vector<std::string> wrong;
    for (const Command& command : commandTable()) {
        const QAction* button = rig.toolButton(command.id);
        const bool on = !isCommandOff(rig.doc(), command.id) &&
                        !(command.owner == CommandOwner::View && rig.view().isViewCommandOff(command.id));
        if (button != nullptr && button->isEnabled() != on) {
            wrong.emplace_back(command.id);
        }
    }
    return wrong;
}

TEST(MainFrame, TheToolBarFollowsEachStepOfARegime) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    EXPECT_THAT(wrongButtons(rig), ::testing::IsEmpty());
    rig.run("patch.capture");
    EXPECT_THAT(wrongButtons(rig), ::testing::IsEmpty());
    EXPECT_FALSE(rig.toolButton("block.delete")->isEnabled());
    rig.clickOn(onFirst);
    ASSERT_TRUE(rig.doc().capture->patchCaptured);
    EXPECT_THAT(wrongButtons(rig), ::testing::IsEmpty()) << "a click on the view is no command";
    EXPECT_TRUE(rig.toolButton("block.delete")->isEnabled());
    rig.run("patch.exit");
    EXPECT_THAT(wrongButtons(rig), ::testing::IsEmpty());
}

TEST(MainFrame, ACommandThatIsOffDoesNotRun) {
    FrameRig rig;
    for (const char* id : {"view.rotate", "file.saveAs", "point.capture"}) {
        rig.run(id);
    }
    EXPECT_EQ(rig.view().mouseMode, ModeNone);
    EXPECT_FALSE(rig.doc().capture->pointCaptureArmed);
}

TEST(MainFrame, APictureOfTheAxesTurnsTheBendOfTheLineOnAndOff) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.person.atDialog("CInputSection", {{"patch", "1"}, {"section", "2"}});
    rig.run("line.inputSection");
    rig.run("point.capture");
    rig.clickOn({1, 1, 0});
    ASSERT_TRUE(rig.doc().capture->pointCaptured);
    rig.view().OnDraw();
    const auto bendRuns = [&rig] {
        rig.run("point.dragAndCorrect");
        return rig.doc().capture->dragCorrectsLine;
    };
    rig.view().SetEulerView({10, 20, 20});
    rig.view().OnDraw();
    EXPECT_FALSE(bendRuns()) << "no principal view";
    rig.view().SetAxisView(0, {0, 1, 0});
    rig.view().OnDraw();
    EXPECT_TRUE(bendRuns());
}

// ---- Bars -----------------------------------------------------------------------------------------------------------

std::vector<bool> barsShown(FrameRig& rig) {
    std::vector<bool> shown;
    for (const char* name : {"General", "Editing", "Transformations"}) {
        shown.push_back(!rig.frame.findChild<QToolBar*>(QString::fromLatin1(name))->isHidden());
    }
    return shown;
}

TEST(MainFrame, HidesAndShowsItsBars) {
    FrameRig rig;
    EXPECT_THAT(barsShown(rig), ::testing::ElementsAre(true, true, true));
    rig.run("view.toolbar");
    EXPECT_THAT(barsShown(rig), ::testing::ElementsAre(false, false, false));
    rig.run("view.toolbar");
    EXPECT_THAT(barsShown(rig), ::testing::ElementsAre(true, true, true));
    rig.run("view.statusBar");
    EXPECT_TRUE(rig.frame.statusBar()->isHidden());
    rig.run("view.statusBar");
    EXPECT_FALSE(rig.frame.statusBar()->isHidden());
}

TEST(MainFrame, ABarHiddenByHandCountsAtOnceAndOneThatIsLeftIsHiddenByTheCommand) {
    FrameRig rig;
    for (const char* name : {"General", "Editing"}) {
        rig.frame.findChild<QToolBar*>(QString::fromLatin1(name))->hide();
    }
    EXPECT_TRUE(rig.menuEntry("view.toolbar")->isChecked());
    rig.run("view.toolbar");
    EXPECT_THAT(barsShown(rig), ::testing::ElementsAre(false, false, false));
    rig.run("view.toolbar");
    EXPECT_THAT(barsShown(rig), ::testing::ElementsAre(true, true, true));
    for (const char* name : {"General", "Editing", "Transformations"}) {
        rig.frame.findChild<QToolBar*>(QString::fromLatin1(name))->hide();
    }
    EXPECT_FALSE(rig.menuEntry("view.toolbar")->isChecked());
}

TEST(MainFrame, StandsWithItsBarsAtTheTopTheLongestInARowOfItsOwn) {
    FrameRig rig;
    rig.frame.showNormal();
    rig.frame.resize(1400, 700);
    QApplication::processEvents();
    const auto bar = [&rig](const char* name) {
        const auto* found = rig.frame.findChild<QToolBar*>(QString::fromLatin1(name));
        EXPECT_TRUE(found->isMovable());
        EXPECT_EQ(found->iconSize(), QSize(16, 16));
        EXPECT_EQ(rig.frame.toolBarArea(found), Qt::TopToolBarArea);
        return found->geometry();
    };
    EXPECT_LT(bar("General").bottom(), bar("Editing").top());
    EXPECT_EQ(bar("Editing").top(), bar("Transformations").top());
    EXPECT_LT(bar("Editing").right(), bar("Transformations").left());
}

// ---- Status line ----------------------------------------------------------------------------------------------------

TEST(MainFrame, ShowsThePromptOfTheStartFirst) {
    const MainFrame frame;
    EXPECT_EQ(frame.findChild<QLabel*>(QStringLiteral("message"))->text(), QStringLiteral("For Help, press F1"));
    EXPECT_EQ(frame.windowTitle(), QStringLiteral("Velmora"));
}

TEST(MainFrame, TellsOfAMissingPictureAndOfThePromptAfterwards) {
    FrameRig rig;
    EXPECT_EQ(rig.message(), QStringLiteral("wglCreateContext failed"));
    rig.document().ShowStatus("Find patch and click it");
    EXPECT_EQ(rig.message(), QStringLiteral("Find patch and click it"));
}

void tip(FrameRig& rig, const char* text) {
    QStatusTipEvent event(QString::fromLatin1(text));
    QApplication::sendEvent(&rig.frame, &event);
}

TEST(MainFrame, AHintStandsInPlaceOfTheMessageUntilItsEntryIsLeft) {
    FrameRig rig;
    rig.document().ShowStatus("prompt");
    tip(rig, "Create a new model");
    EXPECT_EQ(rig.message(), QStringLiteral("Create a new model"));
    tip(rig, "");
    EXPECT_EQ(rig.message(), QStringLiteral("prompt"));
    tip(rig, "Create a new model");
    rig.document().ShowStatus("news");
    EXPECT_EQ(rig.message(), QStringLiteral("news")) << "a message comes at once";
    tip(rig, "");
    EXPECT_EQ(rig.message(), QStringLiteral("news"));
}

TEST(MainFrame, AHintGoesWithItsMenuEvenWhenItsEntryWasNotLeft) {
    FrameRig rig;
    rig.document().ShowStatus("prompt");
    for (const QAction* heading : rig.frame.menuBar()->actions()) {
        tip(rig, "Create a new model");
        emit heading->menu()->aboutToHide();
        EXPECT_EQ(rig.message(), QStringLiteral("prompt"));
    }
}

TEST(MainFrame, EveryEntryOfTheMenusShowsItsCommandsStatusText) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.document().ShowStatus("prompt");
    for (const char* id : {"file.new", "model.move", "view.fit", "help.about"}) {
        rig.menuEntry(id)->showStatusText(&rig.frame);
        EXPECT_EQ(rig.message(), QLatin1String(findCommand(id)->statusText)) << id;
    }
}

// ---- Context menu ---------------------------------------------------------------------------------------------------

/// The frame in the regime of patches: a right click opens their menu.
struct RegimeRig : FrameRig {
    explicit RegimeRig(const FlatDesk& desk) : FrameRig(desk.model) {
        run("patch.capture");
        clickOn(onFirst);
        EXPECT_TRUE(doc().capture->patchCaptured);
        QApplication::processEvents();
    }
};

QAction* entryOf(QWidget& menu, const char* id) {
    return menu.findChild<QAction*>(QString::fromLatin1(id));
}

/// The access key of a text, or none; "&&" is an ampersand.
QString accessKeyOf(QString text) {
    text.remove(QStringLiteral("&&"));
    const qsizetype mark = text.indexOf(QLatin1Char('&'));
    return mark < 0 ? QString() : text.mid(mark + 1, 1).toUpper();
}

/// Counts the keys that were looked at, so that a walk that sees none is noticed.
int expectKeysOnce(const QList<QAction*>& actions, const std::string& place) {
    QStringList seen;
    int keys = 0;
    for (const QAction* action : actions) {
        const QString key = accessKeyOf(action->text());
        EXPECT_TRUE(key.isEmpty() || !seen.contains(key)) << place << ": " << action->text().toStdString();
        seen.append(key);
        keys += key.isEmpty() ? 0 : 1;
        if (action->menu() != nullptr) {
            keys += expectKeysOnce(action->menu()->actions(), place + " > " + action->text().toStdString());
        }
    }
    return keys;
}

TEST(MainFrame, NoAccessKeyStandsTwiceInAMenu) {
    FrameRig rig;
    EXPECT_GT(expectKeysOnce(rig.frame.menuBar()->actions(), "menu bar"), 80);
    RecentFiles recent;
    CommandActions actions(
        recent, [](const Command&) { return CommandState(); },
        [](std::string_view) { return std::vector<const Command*>(); });
    for (const Menu* menu : {&pointContextMenu(), &lineContextMenu(), &patchContextMenu()}) {
        QMenu made;
        actions.fillMenu(made, menu->entries);
        EXPECT_GT(expectKeysOnce(made.actions(), menu->name), 5);
    }
}

TEST(MainFrame, ARightClickWithoutARegimeOpensNothing) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.rightClick({40, 40});
    EXPECT_TRUE(rig.person.isDone());
}

TEST(MainFrame, AnEntryOfTheContextMenuShowsItsHintAndTheMessageComesBack) {
    const FlatDesk desk;
    RegimeRig rig(desk);
    const QString prompt = rig.message();
    rig.person.at("Patch Context", [&](QWidget& open) {
        auto& menu = dynamic_cast<QMenu&>(open);
        menu.setActiveAction(entryOf(menu, "block.delete"));
        EXPECT_EQ(rig.message(), QLatin1String(findCommand("block.delete")->statusText));
        menu.close();
    });
    rig.rightClick({40, 40});
    EXPECT_EQ(rig.message(), prompt);
}

TEST(MainFrame, AnEntryOfTheContextMenuRunsAndItsPromptIsSeen) {
    const FlatDesk desk;
    RegimeRig rig(desk);
    rig.person.at("Patch Context", [&](QWidget& open) {
        QAction* leave = entryOf(open, "patch.exit");
        dynamic_cast<QMenu&>(open).setActiveAction(leave);
        leave->trigger();
        open.close();
    });
    rig.rightClick({40, 40});
    EXPECT_FALSE(rig.doc().capture->patchCaptured);
    EXPECT_EQ(rig.message(), QString::fromStdString(rig.doc().status));
    // The menu is gone: the states of its entries are asked no more.
    rig.run("view.fit");
}

TEST(MainFrame, TheViewIsPaintedAnewWhenAMenuHasClosed) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    int paints = 0;
    QObject::connect(&rig.viewWidget(), &GlViewWidget::paintEnds, &rig.frame, [&paints] { ++paints; });
    for (const QAction* heading : rig.frame.menuBar()->actions()) {
        QApplication::processEvents();
        // This form of the command asks for no paint of its own.
        rig.run(rig.view().viewAlongX ? "view.top" : "view.front");
        paints = 0;
        QApplication::processEvents();
        EXPECT_EQ(paints, 0);
        emit heading->menu()->aboutToHide();
        QApplication::processEvents();
        EXPECT_EQ(paints, 1) << heading->text().toStdString();
    }
}

TEST(MainFrame, AMessageOfAPaintWaitsForItsEnd) {
    const TemporaryFolder folder;
    writeFileText(folder / "lines.skl", "1\n2\n3\n0 0 0\n1 0 0\n2 0 0\n2\n0 1 0\n1 1 0\n");
    FrameRig rig;
    int depth = 0;
    QObject::connect(&rig.viewWidget(), &GlViewWidget::paintBegins, &rig.frame, [&depth] { ++depth; });
    QObject::connect(&rig.viewWidget(), &GlViewWidget::paintEnds, &rig.frame, [&depth] { --depth; });
    rig.person.at("messageBox", [&](QWidget& box) {
        EXPECT_EQ(dynamic_cast<QMessageBox&>(box).text(), QStringLiteral("surface not allowed"));
        EXPECT_EQ(depth, 0);
        dynamic_cast<QDialog&>(box).accept();
    });
    rig.frame.openFile(qtPath(folder / "lines.skl"));
    EXPECT_TRUE(waitUntil([&] { return rig.person.isDone(); }));
    EXPECT_FALSE(rig.doc().surfaceMode);
}

// ---- Interrupted drags ----------------------------------------------------------------------------------------------

TEST(InterruptedDrag, NoContextMenuOpensWhileTheLeftButtonIsDown) {
    const FlatDesk desk;
    RegimeRig rig(desk);
    rig.press({100, 100});
    rig.rightClick({100, 100});
    EXPECT_TRUE(rig.view().leftButtonDown);
    rig.release({100, 100});
    rig.person.at("Patch Context", [](QWidget& open) { open.close(); });
    rig.rightClick({100, 100});
}

TEST(InterruptedDrag, AReleaseThatWasLostCountsAtTheNextMove) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("view.shift");
    rig.press({100, 100});
    rig.moveTo({120, 100});
    const double moved = rig.view().viewCentreX;
    // A box, a menu or another window took the release.
    rig.moveTo({200, 100}, Qt::NoButton);
    EXPECT_FALSE(rig.view().leftButtonDown);
    EXPECT_EQ(rig.view().viewCentreX, moved) << "what came without the button moves nothing";
    rig.moveTo({300, 100}, Qt::NoButton);
    EXPECT_EQ(rig.view().viewCentreX, moved);
}

TEST(InterruptedDrag, AReleaseThatWasLostFreesTheCursorAndBringsTheStatesUpToDate) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("patch.capture");
    const PixelPoint at = pixelOf(rig.view(), rig.doc(), onSecond);
    rig.press(at);
    rig.moveTo({at.x + 20, at.y}, Qt::NoButton);
    EXPECT_TRUE(rig.doc().capture->patchCaptured) << "the release moves the regime on";
    EXPECT_THAT(wrongButtons(rig), ::testing::IsEmpty());
    const int outside = rig.viewWidget().height() + 50;
    rig.moveTo({300, outside}, Qt::NoButton);
    EXPECT_EQ(rig.view().lastMousePos, (PixelPoint{300, outside})) << "no longer kept inside";
}

TEST(InterruptedDrag, TheOtherButtonsNeitherStartNorEndOne) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("view.shift");
    for (const Qt::MouseButton other : {Qt::RightButton, Qt::MiddleButton}) {
        rig.press({100, 100}, other);
        EXPECT_FALSE(rig.view().leftButtonDown);
        rig.release({100, 100}, other);
        rig.press({100, 100});
        rig.press({100, 100}, other);
        rig.release({100, 100}, other, Qt::LeftButton);
        EXPECT_TRUE(rig.view().leftButtonDown);
        const double before = rig.view().viewCentreX;
        rig.moveTo({110, 100}, Qt::LeftButton | other);
        EXPECT_EQ(rig.view().viewCentreX, before - 10.0) << "the drag goes on";
        rig.release({110, 100});
        EXPECT_FALSE(rig.view().leftButtonDown);
    }
}

TEST(InterruptedDrag, ASecondPressStartsItAnew) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("view.shift");
    rig.press({100, 100});
    rig.moveTo({120, 100});
    const double before = rig.view().viewCentreX;
    rig.mouse(QEvent::MouseButtonDblClick, {200, 100}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_TRUE(rig.view().leftButtonDown) << "the second press of a double click is a press";
    rig.moveTo({210, 100});
    EXPECT_EQ(rig.view().viewCentreX, before - 10.0);
    rig.release({210, 100});
}

TEST(InterruptedDrag, AModeChangedByAKeyInItsMiddleTakesOver) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("view.shift");
    rig.press({100, 100});
    rig.moveTo({120, 100});
    const double centre = rig.view().viewCentreX;
    rig.run("view.scale");
    rig.moveTo({120, 130});
    EXPECT_EQ(rig.view().viewCentreX, centre);
    EXPECT_LT(rig.view().zoomFactor, 1.0);
    rig.release({120, 130});
    EXPECT_FALSE(rig.view().leftButtonDown);
}

TEST(InterruptedDrag, ABoxThatOpensInItsMiddleLeavesNothingHeld) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("view.shift");
    rig.press({100, 100});
    rig.person.atDialogCancel("CBlockMove");
    rig.run("model.move");
    const double centre = rig.view().viewCentreX;
    rig.moveTo({180, 100}, Qt::NoButton);
    rig.moveTo({260, 100}, Qt::NoButton);
    EXPECT_FALSE(rig.view().leftButtonDown);
    EXPECT_EQ(rig.view().viewCentreX, centre);
}

TEST(InterruptedDrag, AClickThatMissesAllPatchesIsOverBeforeItsBoxAndTheNextIsTaken) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("patch.capture");
    rig.person.atMessage(QStringLiteral("Patch is not selected. Try again"));
    rig.press(pixelOf(rig.view(), rig.doc(), {4, 5, 0}));
    EXPECT_FALSE(rig.view().leftButtonDown);
    rig.release({10, 10});
    EXPECT_TRUE(rig.doc().capture->patchCaptureArmed);
    rig.clickOn(onSecond);
    EXPECT_TRUE(rig.doc().capture->patchCaptured);
}

TEST(InterruptedDrag, AMinimisedWindowKeepsTheFramesSize) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const Viewport before = rig.view().viewport;
    rig.run("view.shift");
    rig.press({100, 100});
    rig.frame.showMinimized();
    QApplication::processEvents();
    rig.frame.showMaximized();
    EXPECT_TRUE(waitUntil([&] { return rig.view().viewport.width == before.width; }));
    rig.moveTo({300, 300}, Qt::NoButton);
    EXPECT_FALSE(rig.view().leftButtonDown);
}

// ---- After a command that failed ------------------------------------------------------------------------------------

void expectAtRest(FrameRig& rig) {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(rig.frame.findChild<QProgressBar*>(QStringLiteral("progress"))->isHidden());
    EXPECT_THAT(wrongButtons(rig), ::testing::IsEmpty());
    EXPECT_EQ(rig.frame.isWindowModified(), rig.doc().documentModified);
}

TEST(MainFrame, IsAtRestAfterAFileThatCannotBeRead) {
    const FlatDesk desk;
    writeFileText(desk.folder / "torn.apt", "3 4\n1 2");
    writeFileText(desk.folder / "torn.dat", "VARIABLES = X Y Z\nZONE I=2 J=2 F=POINT\n1 2");
    writeFileText(desk.folder / "what.grid", "1 2 3");
    for (const char* name : {"absent.apt", "torn.apt", "torn.dat", "what.grid"}) {
        SCOPED_TRACE(name);
        FrameRig rig(desk.model);
        int boxes = 0;
        const std::function<void(QWidget&)> step = [&](QWidget& box) {
            ++boxes;
            EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the user has the word";
            rig.person.at("messageBox", step);
            dynamic_cast<QDialog&>(box).accept();
        };
        rig.person.at("messageBox", step);
        rig.frame.openFile(qtPath(desk.folder / name));
        rig.person.forget();
        EXPECT_GE(boxes, 1);
        expectAtRest(rig);
    }
}

TEST(MainFrame, AFileThatOnlyImportTakesIsOfferedToIt) {
    const FlatDesk desk;
    writeFileText(desk.folder / "tent.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const QString offer = QStringLiteral("tent.obj is a file of another program. Import it?");
    FrameRig rig(desk.model);
    const std::size_t patches = rig.doc().patches.size();
    rig.person.atQuestion(offer, false);
    rig.frame.openFile(qtPath(desk.folder / "tent.obj"));
    EXPECT_EQ(rig.doc().patches.size(), patches);
    rig.person.atQuestion(offer, true);
    rig.person.atDialog("CImport", {});
    rig.frame.openFile(qtPath(desk.folder / "tent.obj"));
    EXPECT_TRUE(rig.person.isDone());
    EXPECT_TRUE(rig.doc().patches.empty());
    EXPECT_EQ(rig.doc().feRegion.blocks.size(), 1U);
    EXPECT_TRUE(rig.doc().documentModified);
    expectAtRest(rig);
}

TEST(MainFrame, IsAtRestAfterASaveThatFailed) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    std::filesystem::remove_all(desk.folder.path());
    rig.person.at("messageBox", [](QWidget& box) { dynamic_cast<QDialog&>(box).accept(); });
    rig.run("file.save");
    expectAtRest(rig);
}

// ---- Leaving --------------------------------------------------------------------------------------------------------

TEST(MainFrame, KeepsItsPlaceWhenItCloses) {
    const FlatDesk desk;
    {
        FrameRig rig(desk.model);
        EXPECT_TRUE(rig.frame.isMaximized()) << "the first time";
        rig.frame.showNormal();
        rig.frame.resize(640, 480);
        rig.frame.findChild<QToolBar*>(QStringLiteral("Editing"))->hide();
        QApplication::processEvents();
        EXPECT_FALSE(QSettings().contains(QStringLiteral("Window/Geometry")));
        rig.run("file.exit");
        EXPECT_FALSE(rig.frame.isVisible());
    }
    EXPECT_TRUE(QSettings().contains(QStringLiteral("Window/Geometry")));
    EXPECT_TRUE(QSettings().contains(QStringLiteral("Window/Bars")));
    MainFrame next;
    next.document().onNewDocument();
    next.showAsLeft();
    EXPECT_FALSE(next.isMaximized());
    EXPECT_EQ(next.size(), QSize(640, 480));
    EXPECT_TRUE(next.findChild<QToolBar*>(QStringLiteral("Editing"))->isHidden());
    EXPECT_FALSE(next.findChild<QToolBar*>(QStringLiteral("General"))->isHidden());
}

// One bit of them is enough to crash the toolkit, or to keep it busy without end.
TEST(MainFrame, LeavesDamagedBarsAside) {
    const FlatDesk desk;
    {
        FrameRig rig(desk.model);
        rig.frame.findChild<QToolBar*>(QStringLiteral("Editing"))->hide();
        rig.run("file.exit");
    }
    const QString key = QStringLiteral("Window/Bars");
    const QByteArray whole = QSettings().value(key).toByteArray();
    ASSERT_GT(whole.size(), 40);
    for (qsizetype at = -1; at < whole.size(); at += at < 0 ? 1 : 7) {
        QByteArray bars = whole;
        if (at >= 0) {
            bars[at] = static_cast<char>(bars[at] ^ (1 << (at % 8)));
        }
        QSettings().setValue(key, bars);
        MainFrame next;
        next.showAsLeft();
        EXPECT_EQ(next.findChild<QToolBar*>(QStringLiteral("Editing"))->isHidden(), at < 0) << at;
    }
}

TEST(MainFrame, StaysWhenTheModelCannotBeSavedAndKeepsNoPlaceThen) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    std::filesystem::remove_all(desk.folder.path());
    rig.person.atQuestion(QStringLiteral("Save data before exit"), true);
    rig.person.at("messageBox", [](QWidget& box) { dynamic_cast<QDialog&>(box).accept(); });
    rig.run("file.exit");
    EXPECT_TRUE(rig.frame.isVisible());
    EXPECT_FALSE(QSettings().contains(QStringLiteral("Window/Geometry")));
    rig.person.atQuestion(QStringLiteral("Save data before exit"), false);
    rig.run("file.exit");
    EXPECT_FALSE(rig.frame.isVisible());
}

TEST(MainFrame, OpensNoFileInPlaceOfAModelThatCannotBeSaved) {
    const FlatDesk desk;
    const FlatDesk other;
    FrameRig rig(desk.model);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    const PatchList moved = rig.doc().patches;
    std::filesystem::remove_all(desk.folder.path());
    rig.person.atQuestion(QStringLiteral("Save data before exit"), true);
    rig.person.at("messageBox", [](QWidget& box) { dynamic_cast<QDialog&>(box).accept(); });
    rig.frame.openFile(qtPath(other.model));
    EXPECT_EQ(rig.doc().patches, moved);
    EXPECT_TRUE(rig.frame.isWindowModified());
}

TEST(MainFrame, StaysWhenTheQuestionBeforeExitIsClosed) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    const PatchList moved = rig.doc().patches;
    rig.person.at("questionBox", [](QWidget& box) { box.close(); });
    rig.run("file.exit");
    EXPECT_TRUE(rig.frame.isVisible());
    EXPECT_TRUE(rig.frame.isWindowModified());
    EXPECT_EQ(rig.doc().patches, moved);
}

// The window's X, or a desktop's own way of closing, while the program waits for an answer.
TEST(MainFrame, RefusesToCloseWhileAQuestionIsOpen) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    rig.person.at("questionBox", [&rig](QWidget& box) {
        EXPECT_FALSE(rig.frame.close());
        EXPECT_FALSE(rig.frame.close());
        EXPECT_TRUE(rig.frame.isVisible() && box.isVisible());
        dynamic_cast<QMessageBox&>(box).button(QMessageBox::Yes)->click();
    });
    rig.run("file.exit");
    EXPECT_FALSE(rig.frame.isVisible());
    rig.frame.show();
    rig.doc().documentModified = false;
    rig.person.at("CBlockMove", [&rig](QWidget& dialog) {
        EXPECT_FALSE(rig.frame.close()) << "a dialog waits too";
        dynamic_cast<QDialog&>(dialog).reject();
    });
    rig.run("model.move");
    EXPECT_TRUE(rig.frame.isVisible());
}

TEST(MainFrame, EscapeInTheViewAsksItToClose) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    QKeyEvent other(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(&rig.viewWidget(), &other);
    QApplication::processEvents();
    EXPECT_TRUE(rig.frame.isVisible());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&rig.viewWidget(), &escape);
    EXPECT_TRUE(rig.frame.isVisible()) << "the request is posted";
    EXPECT_TRUE(waitUntil([&] { return !rig.frame.isVisible(); }));
}

// ---- Files ----------------------------------------------------------------------------------------------------------

TEST(MainFrame, AFileThatIsOpenedGoesOnTopOfTheRecentOnes) {
    const FlatDesk desk;
    std::filesystem::copy_file(desk.model, desk.folder / "two & two.apt");
    FrameRig rig(desk.model);
    rig.frame.openFile(qtPath(desk.folder / "two & two.apt"));
    const auto recent = [&rig](int number) {
        return rig.frame.findChild<QAction*>(QStringLiteral("recent.%1").arg(number));
    };
    EXPECT_EQ(recent(1)->text(), QStringLiteral("&1 ") + qtPath(desk.folder / "two && two.apt"));
    EXPECT_EQ(recent(2)->text(), QStringLiteral("&2 ") + qtPath(desk.model));
    recent(2)->trigger();
    EXPECT_EQ(rig.frame.windowTitle(), QStringLiteral("flat.apt[*] - Velmora"));
    EXPECT_EQ(recent(1)->text(), QStringLiteral("&1 ") + qtPath(desk.model));
}

TEST(MainFrame, AFileThatIsGoneDoesNotCostTheModel) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const PatchList before = rig.doc().patches;
    rig.person.atMessage(QStringLiteral("There is no ") + qtPath(desk.folder / "gone.apt"));
    rig.frame.openFile(qtPath(desk.folder / "gone.apt"));
    EXPECT_EQ(rig.doc().patches, before);
    EXPECT_EQ(rig.frame.windowTitle(), QStringLiteral("flat.apt[*] - Velmora"));
}

TEST(MainFrame, AFolderOpensTheChooserThere) {
    const FlatDesk desk;
    const FlatDesk other;
    FrameRig rig(desk.model);
    rig.person.atQuestion(QString::fromLatin1(message::removeGeometry), true);
    rig.person.at("fileChooser", [&other](QWidget& open) {
        auto& chooser = dynamic_cast<QFileDialog&>(open);
        EXPECT_EQ(filePath(chooser.directory().path()), other.folder.path());
        chooser.reject();
    });
    rig.frame.openFile(qtPath(other.folder.path()));
}

// ---- What does not go as planned ------------------------------------------------------------------------------------

/// A view that has no memory so many times when the geometry changes.
class PoorView : public DocumentView {
public:
    void onGeometryChanged() override {
        if (poor > 0) {
            --poor;
            throw std::bad_alloc();
        }
    }
    void onPictureChanged() override {}
    void onHighlightChanged() override {
        if (poorHighlight) {
            poorHighlight = false;
            throw std::bad_alloc();
        }
    }
    void onBoundsChanged() override {}
    void setMouseMode(MouseMode) override {}
    void forceMouseMode(MouseMode) override {}
    void resetMouseMode() override {}
    int principalPlane() const override { return 0; }

    int poor = 3; ///< when a dialog shows what it tries out, when it stops to, and when its command runs
    bool poorHighlight = false;
};

TEST(MainFrame, ACommandThatRunsOutOfMemoryIsToldAndLeavesTheModel) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const PatchList before = rig.doc().patches;
    PoorView view;
    rig.document().attachView(view);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.person.atMessage(QStringLiteral("The command could not be carried out (out of memory). The model is as it was "
                                        "before."));
    rig.run("model.move");
    EXPECT_EQ(rig.doc().patches, before);
    EXPECT_FALSE(rig.frame.isWindowModified());
    EXPECT_TRUE(rig.person.isDone());
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    EXPECT_NE(rig.doc().patches, before) << "the next one works again";
    rig.document().detachView(view);
    rig.doc().documentModified = false;
}

TEST(MainFrame, AClickThatRunsOutOfMemoryIsToldAndLeavesWhatWasCaptured) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    PoorView view;
    rig.run("patch.capture");
    rig.document().attachView(view);
    view.poor = 0;
    view.poorHighlight = true;
    rig.clickOn(onFirst);
    EXPECT_EQ(rig.message(), QStringLiteral("The command could not be carried out (out of memory). The model is as it "
                                            "was before."));
    EXPECT_EQ(rig.doc().blockCount, 0);
    EXPECT_TRUE(rig.frame.isVisible());
    rig.document().detachView(view);
}

TEST(MainFrame, TheSurfaceButtonFollowsWhatAPaintFindsOut) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    ASSERT_TRUE(rig.toolButton("view.surface")->isChecked());
    rig.doc().patches[0][0].pop_back();
    rig.doc().retitle();
    rig.person.atMessage(QStringLiteral("surface not allowed"));
    rig.document().redraw();
    EXPECT_TRUE(waitUntil([&rig] { return !rig.toolButton("view.surface")->isChecked(); }));
    EXPECT_FALSE(rig.menuEntry("view.surface")->isChecked());
    EXPECT_TRUE(waitUntil([&rig] { return rig.person.isDone(); }));
}

TEST(MainFrame, AKeptSizeOfNextToNothingGivesTheUsualOne) {
    QByteArray tiny;
    {
        FrameRig rig;
        rig.frame.showNormal();
        rig.frame.centralWidget()->setMinimumSize(1, 1);
        for (QToolBar* bar : rig.frame.findChildren<QToolBar*>()) {
            bar->hide();
        }
        rig.frame.menuBar()->hide();
        rig.frame.resize(160, 109);
        ASSERT_LT(rig.frame.width(), 320);
        tiny = rig.frame.saveGeometry();
    }
    QSettings().setValue(QStringLiteral("Window/Geometry"), tiny);
    MainFrame next;
    next.showAsLeft();
    EXPECT_GE(next.width(), 600);
    EXPECT_GE(next.height(), 400);
}

TEST(MainFrame, AWindowOfAScreenThatIsGoneComesUpOnOneThatIsThere) {
    QByteArray farAway;
    {
        FrameRig rig;
        rig.frame.showNormal();
        rig.frame.move(6000, 3000);
        ASSERT_GT(rig.frame.x(), 5000);
        farAway = rig.frame.saveGeometry();
    }
    QSettings().setValue(QStringLiteral("Window/Geometry"), farAway);
    MainFrame next;
    next.showAsLeft();
    const QRect place = next.geometry();
    const QRect room = next.screen()->availableGeometry();
    EXPECT_TRUE(room.contains(place.center().x(), place.top())) << "its title bar cannot be taken hold of";
}

/// Whether the frame takes what is dragged over it.
bool takes(FrameRig& rig, const QList<QUrl>& urls, bool drop) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(40, 40), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&rig.frame, &enter);
    if (drop) {
        QDropEvent event(QPointF(40, 40), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&rig.frame, &event);
    }
    return enter.isAccepted();
}

TEST(MainFrame, TakesFilesThatAreDroppedAndOpensThemAfterTheDrop) {
    const FlatDesk desk;
    FrameRig rig;
    EXPECT_TRUE(rig.frame.acceptDrops());
    EXPECT_FALSE(takes(rig, {}, false));
    EXPECT_FALSE(takes(rig, {QUrl(QStringLiteral("https://example.org/a.apt"))}, false));
    const QUrl file = QUrl::fromLocalFile(qtPath(desk.model));
    EXPECT_TRUE(takes(rig, {QUrl(QStringLiteral("https://example.org/a.apt")), file, file}, true));
    EXPECT_EQ(rig.doc().structureKind, StructureKind::None) << "the program that the file comes from does not wait";
    EXPECT_TRUE(waitUntil([&] { return rig.doc().patches.size() == 3; })) << "each file once";
}

TEST(MainFrame, AFolderThatIsDroppedOpensTheChooserThere) {
    const FlatDesk desk;
    FrameRig rig;
    rig.person.at("fileChooser", [&desk](QWidget& open) {
        auto& chooser = dynamic_cast<QFileDialog&>(open);
        EXPECT_EQ(filePath(chooser.directory().path()), desk.folder.path());
        chooser.reject();
    });
    EXPECT_TRUE(takes(rig, {QUrl::fromLocalFile(qtPath(desk.folder.path()))}, true));
    EXPECT_TRUE(waitUntil([&] { return rig.person.isDone(); }));
}

// ---- Keys and focus -------------------------------------------------------------------------------------------------

TEST(MainFrame, TheViewHasTheKeyboardAndTakesItBackFromTheMenuBar) {
    FrameRig rig;
    EXPECT_EQ(rig.frame.focusWidget(), &rig.viewWidget());
    rig.frame.menuBar()->setFocus();
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(&rig.frame, &activate);
    EXPECT_EQ(rig.frame.focusWidget(), &rig.viewWidget());
}

TEST(MainFrame, AKeyRunsTheFirstOfItsCommandsThatIsOn) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const auto press = [&rig](const char* key) {
        for (QShortcut* shortcut : rig.frame.findChildren<QShortcut*>()) {
            if (shortcut->key() == QKeySequence(QString::fromLatin1(key))) {
                emit shortcut->activated();
                return;
            }
        }
        ADD_FAILURE() << "no key " << key;
    };
    press("Ctrl+C");
    EXPECT_FALSE(rig.doc().lineBufferFull);
    EXPECT_FALSE(rig.doc().pointClipboardFull) << "nothing is on";
    rig.run("point.capture");
    rig.clickOn({1, 1, 0});
    press("Ctrl+C");
    EXPECT_TRUE(rig.doc().pointClipboardFull);
    rig.person.atDialog("CInputSection", {{"patch", "1"}, {"section", "2"}});
    rig.run("line.inputSection");
    rig.doc().pointClipboardFull = false;
    press("Ctrl+C");
    EXPECT_TRUE(rig.doc().lineBufferFull);
    EXPECT_FALSE(rig.doc().pointClipboardFull) << "one command at a time";
}

TEST(MainFrame, TheToolTipOfSaveNamesTheFileWhereItIsNotTheOneThatWasOpened) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    QAction* const button = rig.toolButton("file.save");
    EXPECT_EQ(button->toolTip(), QStringLiteral("Save"));
    EXPECT_EQ(button->statusTip(), QStringLiteral("Save the model"));
    rig.run("convert.toUnstructured");
    const QString target = QStringLiteral("Save writes ") + qtPath(desk.folder / "flat.dat");
    EXPECT_EQ(button->toolTip(), Qt::convertFromPlainText(target));
    EXPECT_EQ(button->statusTip(), target);
    EXPECT_EQ(rig.menuEntry("file.save")->statusTip(), target);
    rig.run("patch.undo");
    EXPECT_EQ(button->toolTip(), QStringLiteral("Save"));
    EXPECT_EQ(rig.menuEntry("file.save")->statusTip(), QStringLiteral("Save the model"));
}

TEST(MainFrame, ShowsTheFileReportUntilTheNextFile) {
    const FlatDesk desk;
    FrameRig rig;
    auto* const panel = rig.frame.findChild<QDockWidget*>(QStringLiteral("fileReport"));
    auto* const lines = panel->findChild<QPlainTextEdit*>();
    EXPECT_TRUE(panel->isHidden());
    rig.run("help.fileReport");
    EXPECT_FALSE(panel->isHidden());
    EXPECT_TRUE(rig.menuEntry("help.fileReport")->isChecked());
    EXPECT_EQ(lines->toPlainText(), QStringLiteral("No file has been read yet."));
    rig.frame.openFile(qtPath(desk.model));
    const QString report =
        qtPath(desk.model) + QStringLiteral("\nFormat: apt, bytes: %1\nPatches in the file: 3, all kept\n"
                                            "Points in the file: 36, all kept\n"
                                            "All of its geometry was kept as it is.")
                                 .arg(QFileInfo(qtPath(desk.model)).size());
    EXPECT_EQ(lines->toPlainText(), report);
    lines->selectAll();
    rig.run("convert.toUnstructured");
    EXPECT_EQ(lines->toPlainText(), report) << "no file was read";
    EXPECT_TRUE(lines->textCursor().hasSelection()) << "what is marked stays";
    auto* const escape = panel->findChild<QShortcut*>();
    EXPECT_EQ(escape->key(), QKeySequence(Qt::Key_Escape));
    emit escape->activated();
    EXPECT_TRUE(panel->isHidden());
    EXPECT_TRUE(rig.frame.isVisible());
    EXPECT_FALSE(rig.menuEntry("help.fileReport")->isChecked()) << "the mark follows a panel that was closed";
}

TEST(MainFrame, AsksForTheAboutBox) {
    FrameRig rig;
    int asked = 0;
    QObject::connect(&rig.frame, &MainFrame::aboutWanted, &rig.frame, [&asked] { ++asked; });
    rig.run("help.about");
    EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace velmora::test
