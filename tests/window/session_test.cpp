#include <gtest/gtest.h>

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QSettings>
#include <QThread>
#include <algorithm>
#include <atomic>

#include "Desk.h"
#include "DialogValues.h"
#include "DocumentState.h"
#include "FilesListDialog.h"
#include "VelmoraDoc.h"
#include "WindowDriver.h"
#include "qt_text.h"

// What a session keeps and shows around its commands: long work, the window's place, file choosers, the project list.

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

// ---- Long work ------------------------------------------------------------------------------------------------------

QRect statusLineOnScreen(WindowDriver& person) {
    return person.ask([] {
        const QWidget* line = WindowDriver::frame().statusBar();
        return QRect(line->mapToGlobal(QPoint(0, 0)), line->size());
    });
}

/// Counts what of the user comes in.
class InputCounter : public QObject {
public:
    int count = 0;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool input = event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress;
        count += input ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

/// Works in the program's thread for `steps` tenths of a second and tells of each. What came in meanwhile is counted.
void work(int steps, std::atomic<bool>& running, int& inputs, bool& waitCursor) {
    InputCounter counter;
    qApp->installEventFilter(&counter);
    {
        UserInterface& ui = WindowDriver::frame().document().ui();
        const BusyScope busy(ui);
        waitCursor =
            QApplication::overrideCursor() != nullptr && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
        running = true;
        for (int i = 0; i <= steps; ++i) {
            ui.showProgress(static_cast<double>(i) / steps);
            QThread::msleep(100);
        }
    }
    inputs = counter.count;
    running = false;
}

TEST(Session, LongWorkShowsABarWhileItRunsAndLetsNoInputIn) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        const QRect place = statusLineOnScreen(person);
        const QByteArray before = person.pixelsOf(place);
        std::atomic<bool> running{false};
        int inputs = -1;
        bool waitCursor = false;
        QMetaObject::invokeMethod(
            qApp, [&] { work(20, running, inputs, waitCursor); }, Qt::QueuedConnection);
        while (!running) {
            QThread::msleep(5);
        }
        QThread::msleep(300);
        EXPECT_EQ(person.pixelsOf(place), before) << "no bar for the first half second";
        person.key("Escape");
        QThread::msleep(700);
        const QByteArray early = person.pixelsOf(place);
        EXPECT_NE(early, before) << "then it is painted, while the program is at work";
        QThread::msleep(500);
        EXPECT_NE(person.pixelsOf(place), early) << "and moves on";
        EXPECT_TRUE(running);
        while (running) {
            QThread::msleep(5);
        }
        EXPECT_EQ(inputs, 0);
        EXPECT_TRUE(waitCursor);
        // Esc ends the program at any other time. The one that was pressed meanwhile is gone with the work.
        person.settle();
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().isVisible(); }));
    });
}

TEST(Session, ShortWorkShowsNoBarAndTheBarGoesWithTheWaitCursor) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.ask([] {
            UserInterface& ui = WindowDriver::frame().document().ui();
            const auto* bar = WindowDriver::frame().findChild<QProgressBar*>(QStringLiteral("progress"));
            ui.showProgress(0.5);
            EXPECT_FALSE(bar->isVisible()) << "nothing is at work";
            ui.setBusy(true);
            QThread::msleep(200);
            ui.showProgress(0.5);
            EXPECT_FALSE(bar->isVisible());
            ui.setBusy(true);
            QThread::msleep(400);
            ui.showProgress(0.5);
            EXPECT_TRUE(bar->isVisible());
            EXPECT_EQ(bar->value(), 50);
            ui.setBusy(false);
            EXPECT_TRUE(bar->isVisible()) << "the outer work goes on";
            ui.setBusy(false);
            EXPECT_FALSE(bar->isVisible());
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        });
    });
}

// ---- The window's place ---------------------------------------------------------------------------------------------

TEST(Session, TheNextOneFindsWindowAndToolBarsWhereTheyWereLeft) {
    runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        person.ask([] {
            MainFrame& frame = WindowDriver::frame();
            frame.showNormal();
            frame.resize(930, 610);
            frame.addToolBar(Qt::LeftToolBarArea, frame.findChild<QToolBar*>(QStringLiteral("Editing")));
            frame.findChild<QToolBar*>(QStringLiteral("Transformations"))->hide();
        });
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().width() == 930; }));
        person.settle();
        person.ask([] { QMetaObject::invokeMethod(&WindowDriver::frame(), &QWidget::close, Qt::QueuedConnection); });
        EXPECT_TRUE(person.waitForEnd());
    });
    runProgram(
        {},
        [](WindowDriver& person) {
            EXPECT_TRUE(person.waitFor([] {
                const auto tops = QApplication::topLevelWidgets();
                return std::any_of(tops.begin(), tops.end(), [](const QWidget* widget) {
                    return qobject_cast<const MainFrame*>(widget) != nullptr && widget->isVisible();
                });
            }));
            person.settle();
            person.ask([] {
                const MainFrame& frame = WindowDriver::frame();
                EXPECT_FALSE(frame.isMaximized());
                EXPECT_EQ(frame.size(), QSize(930, 610));
                EXPECT_EQ(frame.toolBarArea(frame.findChild<QToolBar*>(QStringLiteral("Editing"))),
                          Qt::LeftToolBarArea);
                EXPECT_TRUE(frame.findChild<QToolBar*>(QStringLiteral("Transformations"))->isHidden());
                EXPECT_FALSE(frame.findChild<QToolBar*>(QStringLiteral("General"))->isHidden());
            });
        },
        Settings::Kept);
}

// ---- File choosers --------------------------------------------------------------------------------------------------

void waitForChooser(WindowDriver& person) {
    person.waitForBox(QStringLiteral("fileChooser"));
}

QString fileName(WindowDriver& person) {
    return person.ask([] {
        return QApplication::activeModalWidget()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
    });
}

QString chosenType(WindowDriver& person) {
    return person.ask([] {
        return QApplication::activeModalWidget()->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))->currentText();
    });
}

TEST(Session, SavingOverAFileIsAskedFirst) {
    const FlatDesk desk;
    const std::string before = fileText(desk.model);
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.ask([] { WindowDriver::frame().state().patches[0][0][0].x = 0.5; });
        const auto saveAs = [&person] {
            person.choose({"File", "Save As..."});
            waitForChooser(person);
            EXPECT_EQ(person.ask([] { return QApplication::activeModalWidget()->windowTitle(); }),
                      QStringLiteral("Save As"));
            EXPECT_EQ(fileName(person), QStringLiteral("flat")) << "the name without its extension";
            EXPECT_EQ(chosenType(person), QStringLiteral("Velmora Geometry Files (*.apt)"));
            person.key("Return");
            EXPECT_TRUE(person.waitFor([] {
                const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                return box != nullptr && box->isActiveWindow();
            }));
            person.settle();
            person.screenshot(QStringLiteral("save-over"));
        };
        saveAs();
        person.key("n", "Alt_L");
        waitForChooser(person);
        person.key("Escape");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(fileText(desk.model), before);
        saveAs();
        person.key("y", "Alt_L");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_NE(fileText(desk.model), before);
    });
}

TEST(Session, OpenProposesTheNameInItsFolderAndReturnOpensIt) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.key("o", "Control_L");
        person.waitForBox(QStringLiteral("questionBox"));
        person.key("Return");
        waitForChooser(person);
        person.ask([&] {
            const auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Open"));
            EXPECT_EQ(dialog->directory().absolutePath(), qtPath(fs::canonical(desk.folder.path())));
            EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFiles);
        });
        EXPECT_EQ(fileName(person), QStringLiteral("flat"));
        EXPECT_EQ(chosenType(person), QStringLiteral("Geometry Files (*.apt)")) << "that of the proposed file";
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().patches.size(); }), 3U);
    });
}

TEST(Session, OpenTakesSeveralFilesInListMode) {
    const FlatDesk desk;
    fs::copy_file(desk.model, desk.folder / "second.apt");
    runProgram({}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.key("o", "Control_L");
        waitForChooser(person);
        person.type('"' + desk.model.string() + "\" \"" + (desk.folder / "second.apt").string() + '"');
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().patches.size(); }), 6U);
    });
}

// ---- The project list -----------------------------------------------------------------------------------------------

QStringList linesOf(WindowDriver& person, const char* list) {
    return person.ask([list] {
        const auto* widget = QApplication::activeModalWidget()->findChild<QListWidget*>(QString::fromLatin1(list));
        QStringList lines;
        for (int i = 0; i < widget->count(); ++i) {
            lines.append(widget->item(i)->text());
        }
        return lines;
    });
}

QPoint lineOf(WindowDriver& person, const char* list, const QString& text) {
    return person.ask([list, text] {
        auto* widget = QApplication::activeModalWidget()->findChild<QListWidget*>(QString::fromLatin1(list));
        const auto found = widget->findItems(text, Qt::MatchExactly);
        if (found.isEmpty()) {
            throw std::runtime_error("no line " + text.toStdString());
        }
        widget->scrollToItem(found.front());
        return widget->viewport()->mapToGlobal(widget->visualItemRect(found.front()).center());
    });
}

void doubleClick(WindowDriver& person, QPoint position) {
    person.move(position);
    for (int i = 0; i < 2; ++i) {
        person.press();
        person.release();
    }
    person.settle();
}

void expectMessage(WindowDriver& person, const char* text) {
    person.waitForBox(QStringLiteral("messageBox"));
    EXPECT_EQ(person.boxText(), QString::fromLatin1(text));
    person.key("Return");
    person.waitForBox(QStringLiteral("dlgFilesList"));
}

TEST(Session, AProjectListIsMadeInItsWindow) {
    const FlatDesk desk;
    fs::copy_file(desk.model, desk.folder / "second.APT");
    fs::copy_file(desk.model, desk.folder / "notes.txt");
    fs::create_directory(desk.folder / "inner");
    const QString first = qtPath(fs::canonical(desk.model));
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.ask([] {
            QMetaObject::invokeMethod(
                &WindowDriver::frame(),
                [] {
                    FilesListDialog(WindowDriver::frame().state().dialogs->filesList, &WindowDriver::frame()).exec();
                },
                Qt::QueuedConnection);
        });
        person.waitForBox(QStringLiteral("dlgFilesList"));
        EXPECT_EQ(person.ask([] { return QApplication::focusWidget()->objectName(); }), QStringLiteral("name"));
        person.key("d", "Alt_L");
        person.key("a", "Control_L");
        person.type(fs::canonical(desk.folder.path()).string());
        person.key("Tab");
        person.settle();
        const QStringList shown = linesOf(person, "files");
        EXPECT_EQ(shown.mid(0, 4), QStringList({"flat.apt", "second.APT", "[..]", "[inner]"}));
        EXPECT_TRUE(shown.contains(QStringLiteral("[-/-]")));

        person.clickWidget(QStringLiteral("add"));
        expectMessage(person, "Text is not selected");
        person.clickWidget(QStringLiteral("removeAll"));
        expectMessage(person, "List is empty");
        doubleClick(person, lineOf(person, "files", QStringLiteral("flat.apt")));
        EXPECT_EQ(linesOf(person, "project"), QStringList(first));
        person.clickWidget(QStringLiteral("addAll"));
        EXPECT_EQ(linesOf(person, "project").size(), 3);
        person.screenshot(QStringLiteral("dialog-dlgFilesList"));
        doubleClick(person, lineOf(person, "project", first));
        EXPECT_EQ(linesOf(person, "project").size(), 2);
        doubleClick(person, lineOf(person, "files", QStringLiteral("[inner]")));
        EXPECT_EQ(linesOf(person, "files").front(), QStringLiteral("[..]"));

        person.key("b", "Alt_L");
        person.waitForBox(QStringLiteral("dlgFolder"));
        person.screenshot(QStringLiteral("dialog-dlgFolder"));
        person.key("p", "Alt_L");
        person.key("a", "Control_L");
        person.type("made");
        person.key("Return");
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("Directory  'made'  not found\nWould you like to create it?"));
        EXPECT_EQ(
            person.ask([] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->standardButtons(); }),
            QMessageBox::StandardButtons(QMessageBox::Ok));
        person.key("Return");
        person.waitForBox(QStringLiteral("dlgFilesList"));
        EXPECT_TRUE(fs::is_directory(desk.folder / "inner" / "made"));

        person.key("p", "Alt_L");
        person.key("a", "Control_L");
        person.key("Delete");
        person.key("Return");
        expectMessage(person, "Insert name, please");
        person.key("p", "Alt_L");
        person.type("wing");
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        person.ask([&] {
            const dlgFilesList& list = WindowDriver::frame().state().dialogs->filesList;
            EXPECT_EQ(list.name.text, "wing");
            EXPECT_EQ(list.projectList.size(), 2U);
            EXPECT_EQ(list.projectPath, fs::canonical(desk.folder / "inner" / "made"));
        });
    });
}

} // namespace
} // namespace velmora::test
