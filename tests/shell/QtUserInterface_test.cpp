#include "QtUserInterface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QMainWindow>
#include <QProgressBar>
#include <QSettings>
#include <QThread>
#include <QTreeView>

#include "CBlockMove.h"
#include "CRegularInput.h"
#include "Person.h"
#include "RecentFiles.h"
#include "StatusLine.h"
#include "messages.h"
#include "qt_text.h"
#include "small_models.h"

namespace velmora::test {
namespace {

struct UiRig {
    Person person;
    QMainWindow frame;
    StatusLine status;
    RecentFiles recent;
    QtUserInterface ui{frame, status, recent};

    UiRig() {
        frame.setStatusBar(new QStatusBar(&frame));
        frame.show();
    }
    QString shownStatus() { return status.findChild<QLabel*>(QStringLiteral("message"))->text(); }
};

bool waits() {
    return QApplication::overrideCursor() != nullptr && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
}

void pressKey(QWidget& widget, Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

// ---- Long work ------------------------------------------------------------------------------------------------------

TEST(QtUserInterface, EscStopsLongWorkAndNothingElseBeginsMeanwhile) {
    UiRig rig;
    QAction action(&rig.frame);
    action.setShortcut(QKeySequence(Qt::Key_F5));
    rig.frame.addAction(&action);
    int begun = 0;
    QObject::connect(&action, &QAction::triggered, [&begun] { ++begun; });
    const auto type = [&rig](Qt::Key key) {
        QCoreApplication::postEvent(&rig.frame, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    };
    EXPECT_FALSE(rig.ui.wantsToStop()); // there is no work
    rig.ui.setBusy(true);
    type(Qt::Key_Escape);
    EXPECT_FALSE(rig.ui.wantsToStop()); // it has just begun
    QCoreApplication::removePostedEvents(&rig.frame);
    QThread::msleep(600);
    EXPECT_FALSE(rig.ui.wantsToStop());
    const auto wait = [] { QThread::msleep(40); }; // it does not look all the time
    wait();
    type(Qt::Key_F5);
    EXPECT_FALSE(rig.ui.wantsToStop());
    wait();
    type(Qt::Key_Escape);
    EXPECT_TRUE(rig.ui.wantsToStop());
    wait();
    EXPECT_FALSE(rig.ui.wantsToStop()); // it was asked once
    rig.ui.setBusy(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(begun, 0);
}

// ---- Messages and questions -----------------------------------------------------------------------------------------

TEST(QtUserInterface, AMessageIsABoxWithOkAlone) {
    UiRig rig;
    rig.person.at("messageBox", [&](QWidget& open) {
        auto& box = dynamic_cast<QMessageBox&>(open);
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Velmora"));
        EXPECT_EQ(box.text(), QStringLiteral("<b>Matching</b> is impossible"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        EXPECT_EQ(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
        EXPECT_EQ(box.parentWidget(), &rig.frame);
        pressKey(box, Qt::Key_Escape);
    });
    rig.ui.showMessage({Severity::Info, "<b>Matching</b> is impossible"});
}

TEST(QtUserInterface, ABoxOfAFileThatGaveNoModelTellsWhatBecameOfIt) {
    UiRig rig;
    const auto expectReason = [&rig](const QString& reason) {
        rig.person.at("messageBox", [reason](QWidget& box) {
            EXPECT_EQ(dynamic_cast<QMessageBox&>(box).text(), QStringLiteral("Open procedure is canceled"));
            EXPECT_EQ(dynamic_cast<QMessageBox&>(box).informativeText(), reason);
            for (const QLabel* label : box.findChildren<QLabel*>()) {
                EXPECT_NE(label->textFormat(), Qt::AutoText);
            }
            dynamic_cast<QDialog&>(box).accept();
        });
    };
    FileRead read;
    read.reasons = {"Facets in the file: 9, kept: 0"};
    expectReason(QStringLiteral("Facets in the file: 9, kept: 0"));
    rig.ui.tellFileRead(read);
    rig.ui.showMessage(message::openCancelled);
    expectReason({});
    rig.ui.showMessage(message::openCancelled);
    // What became the model is no reason of the next file.
    rig.ui.tellFileRead(read);
    rig.ui.addRecentFile("/tmp/model.apt");
    expectReason({});
    rig.ui.showMessage(message::openCancelled);
}

TEST(QtUserInterface, AMomentAfterLongWorkAnEscMayStillBeMeantForIt) {
    UiRig rig;
    rig.ui.setBusy(true);
    rig.ui.setBusy(false);
    EXPECT_FALSE(rig.ui.mayBeMeantForWork()) << "nobody could have wanted to stop it";
    rig.ui.setBusy(true);
    QThread::msleep(600);
    rig.ui.wantsToStop();
    rig.ui.setBusy(false);
    EXPECT_TRUE(rig.ui.mayBeMeantForWork());
    QThread::msleep(1600);
    EXPECT_FALSE(rig.ui.mayBeMeantForWork());
}

TEST(QtUserInterface, AMessageOverADialogBelongsToTheDialog) {
    UiRig rig;
    CBlockMove values;
    DialogForm form = describe(values);
    openDialog(form);
    rig.person.at("CBlockMove", [&](QWidget& dialog) {
        rig.person.at("messageBox", [&](QWidget& box) {
            EXPECT_EQ(box.parentWidget(), &dialog);
            dynamic_cast<QDialog&>(box).accept();
        });
        rig.ui.showMessage({Severity::Info, "one"});
        dynamic_cast<QDialog&>(dialog).reject();
    });
    EXPECT_FALSE(rig.ui.showDialog(form));
}

TEST(QtUserInterface, AQuestionProposesYesAndEscapeSaysNo) {
    UiRig rig;
    rig.person.at("questionBox", [](QWidget& open) {
        auto& box = dynamic_cast<QMessageBox&>(open);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        box.button(QMessageBox::Yes)->click();
    });
    EXPECT_TRUE(rig.ui.ask(message::removeGeometry));
    rig.person.atQuestion(QString::fromLatin1(message::removeGeometry), false);
    EXPECT_FALSE(rig.ui.ask(message::removeGeometry));
    rig.person.at("questionBox", [](QWidget& box) { pressKey(box, Qt::Key_Escape); });
    EXPECT_FALSE(rig.ui.ask(message::removeGeometry));
    rig.person.at("questionBox", [](QWidget& box) { box.close(); });
    EXPECT_FALSE(rig.ui.ask(message::removeGeometry));
}

TEST(QtUserInterface, AWarningAboutAFileCanBeAnsweredNo) {
    UiRig rig;
    const QString text = QStringLiteral("With 6 digits points move by up to 1.5. Overwrite the file?");
    rig.person.atQuestion(text, false);
    EXPECT_FALSE(rig.ui.warn(message::digitsMovePoints(6, "1.5")));
    rig.person.atQuestion(text, true);
    EXPECT_TRUE(rig.ui.warn(message::digitsMovePoints(6, "1.5")));
}

TEST(QtUserInterface, TheQuestionBeforeExitCanStayWithoutAnAnswer) {
    UiRig rig;
    rig.person.at("questionBox", [](QWidget& box) { pressKey(box, Qt::Key_Escape); });
    EXPECT_EQ(rig.ui.askOrNone(message::saveBeforeExit), Answer::None);
    rig.person.at("questionBox", [](QWidget& box) { box.close(); });
    EXPECT_EQ(rig.ui.askOrNone(message::saveBeforeExit), Answer::None);
    rig.person.at("questionBox", [](QWidget& box) { pressKey(box, Qt::Key_Return); });
    EXPECT_EQ(rig.ui.askOrNone(message::saveBeforeExit), Answer::Yes);
    rig.person.atQuestion(QString::fromLatin1(message::saveBeforeExit), false);
    EXPECT_EQ(rig.ui.askOrNone(message::saveBeforeExit), Answer::No);
}

TEST(QtUserInterface, HeldMessagesComeInTheirOrderOnceTheEventLoopRuns) {
    UiRig rig;
    rig.ui.holdMessages(true);
    rig.ui.showMessage({Severity::Info, "first"});
    rig.ui.showMessage({Severity::Info, "second"});
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    rig.ui.holdMessages(false);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "not within the paint";
    rig.person.atMessage(QStringLiteral("first"));
    rig.person.atMessage(QStringLiteral("second"));
    EXPECT_TRUE(waitUntil([&] { return rig.person.isDone() && QApplication::activeModalWidget() == nullptr; }));
    rig.ui.holdMessages(true);
    rig.ui.holdMessages(false);
    QApplication::processEvents();
    rig.person.atMessage(QStringLiteral("third"));
    rig.ui.showMessage({Severity::Info, "third"});
}

// ---- The wait cursor ------------------------------------------------------------------------------------------------

TEST(QtUserInterface, TheUserHasTheArrowWhileWorkWaitsForAnAnswerAndTheWaitCursorComesBack) {
    UiRig rig;
    CBlockMove values;
    DialogForm form = describe(values);
    openDialog(form);
    PatchList list;
    CRegularInput table(list);
    const BusyScope busy(rig.ui);
    EXPECT_TRUE(waits());
    const auto close = [](QWidget& open) {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr) << open.objectName().toStdString();
        dynamic_cast<QDialog&>(open).reject();
    };
    for (const char* name : {"messageBox", "questionBox", "CBlockMove", "CRegularInput", "fileChooser"}) {
        rig.person.at(name, close);
    }
    rig.ui.showMessage({Severity::Info, "text"});
    EXPECT_TRUE(waits());
    rig.ui.ask("text");
    EXPECT_TRUE(waits());
    rig.ui.showDialog(form);
    EXPECT_TRUE(waits());
    rig.ui.showRegularInput(table);
    EXPECT_TRUE(waits());
    rig.ui.chooseFiles({});
    EXPECT_TRUE(waits());
}

TEST(QtUserInterface, NestedWorkHasOneWaitCursorAndItsEndTakesItAway) {
    UiRig rig;
    rig.ui.setBusy(true);
    rig.ui.setBusy(true);
    EXPECT_TRUE(waits());
    rig.ui.setBusy(false);
    EXPECT_TRUE(waits());
    rig.ui.setBusy(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    rig.person.at("messageBox", [](QWidget& box) { dynamic_cast<QDialog&>(box).accept(); });
    rig.ui.showMessage({Severity::Info, "text"});
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "none comes back that was not there";
}

TEST(QtUserInterface, ShortWorkShowsNoBarAndTheEndOfWorkHidesIt) {
    UiRig rig;
    const auto* bar = rig.status.findChild<QProgressBar*>(QStringLiteral("progress"));
    rig.ui.showProgress(0.5);
    EXPECT_TRUE(bar->isHidden());
    rig.ui.setBusy(true);
    rig.ui.showProgress(0.5);
    EXPECT_TRUE(bar->isHidden());
    rig.status.showProgress(0.5);
    EXPECT_FALSE(bar->isHidden());
    rig.ui.setBusy(false);
    EXPECT_TRUE(bar->isHidden());
}

// ---- Title, status, recent files ------------------------------------------------------------------------------------

TEST(QtUserInterface, TellsTitleStatusAndRecentFileToTheFrame) {
    QSettings().clear();
    UiRig rig;
    rig.ui.showTitle("wing.apt");
    EXPECT_EQ(rig.frame.windowTitle(), QStringLiteral("wing.apt[*] - Velmora"));
    rig.ui.showStatus("Rotate model");
    EXPECT_EQ(rig.shownStatus(), QStringLiteral("Rotate model"));
    EXPECT_EQ(rig.status.text(), QStringLiteral("Rotate model"));
    rig.ui.addRecentFile("/models/wing.apt");
    EXPECT_EQ(rig.recent.paths().value(0), QStringLiteral("/models/wing.apt"));
}

// ---- Dialogs --------------------------------------------------------------------------------------------------------

TEST(QtUserInterface, ADialogGivesWhetherOkWasPressed) {
    UiRig rig;
    CBlockMove values;
    DialogForm form = describe(values);
    openDialog(form);
    rig.person.atDialog("CBlockMove", {{"deltaX", "2.5"}});
    EXPECT_TRUE(rig.ui.showDialog(form));
    EXPECT_EQ(values.deltaX, 2.5);
    rig.person.atDialogCancel("CBlockMove");
    EXPECT_FALSE(rig.ui.showDialog(form));
    PatchList list;
    CRegularInput table(list);
    rig.person.at("CRegularInput", [](QWidget& open) { dynamic_cast<QDialog&>(open).accept(); });
    EXPECT_TRUE(rig.ui.showRegularInput(table));
    rig.person.atDialogCancel("CRegularInput");
    EXPECT_FALSE(rig.ui.showRegularInput(table));
}

// ---- File choosers --------------------------------------------------------------------------------------------------

using Chooser = std::function<void(QFileDialog&)>;

/// What the chooser of `request` gives when `use` is done with it.
std::vector<std::filesystem::path> choose(UiRig& rig, const FileRequest& request, const Chooser& use) {
    rig.person.at("fileChooser", [use](QWidget& open) { use(dynamic_cast<QFileDialog&>(open)); });
    return rig.ui.chooseFiles(request);
}

QString chosenType(const QFileDialog& dialog) {
    return dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))->currentText();
}

void chooseType(QFileDialog& dialog, int index) {
    auto* types = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    types->setCurrentIndex(index);
    emit types->textActivated(types->currentText());
    emit types->activated(index);
}

void typeName(QFileDialog& dialog, const QString& name) {
    dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
}

QString proposedName(const QFileDialog& dialog) {
    return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
}

/// As its button does.
void pressOk(QDialog& dialog) {
    dialog.accept();
}

FileRequest requestIn(const TemporaryFolder& folder, ChooserMode mode, const char* proposed = "wing.apt") {
    FileRequest request;
    request.mode = mode;
    request.types = {{"apt", "Geometry"}, {"skl", "Sections"}};
    request.proposed = folder / proposed;
    request.command = "file.test";
    return request;
}

TEST(FileChooser, StandsInItsFolderWithTheProposedNameAndItsCaption) {
    const TemporaryFolder folder;
    struct Case {
        ChooserMode mode;
        const char* caption;
        bool writes;
    };
    const Case cases[] = {
        {.mode = ChooserMode::SaveAs, .caption = "Save As", .writes = true},
        {.mode = ChooserMode::New, .caption = "New", .writes = true},
        {.mode = ChooserMode::Open, .caption = "Open", .writes = false},
        {.mode = ChooserMode::Append, .caption = "Append", .writes = false},
        {.mode = ChooserMode::Import, .caption = "Import", .writes = false},
        {.mode = ChooserMode::Export, .caption = "Export", .writes = true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.caption);
        UiRig rig;
        const auto paths = choose(rig, requestIn(folder, c.mode), [&](QFileDialog& dialog) {
            EXPECT_EQ(dialog.windowTitle(), QLatin1String(c.caption));
            EXPECT_EQ(dialog.acceptMode(), c.writes ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
            EXPECT_EQ(dialog.fileMode(), c.writes ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
            EXPECT_EQ(dialog.directory().absolutePath(), qtPath(folder.path()));
            EXPECT_EQ(proposedName(dialog), c.writes ? QStringLiteral("wing") : QString());
            dialog.reject();
        });
        EXPECT_TRUE(paths.empty());
    }
}

TEST(FileChooser, ANameToReadIsProposedWhereThereIsSuchAFileOfATypeThatIsAskedFor) {
    const TemporaryFolder folder;
    writeFileText(folder / "wing.apt", "");
    writeFileText(folder / "wing.stl", "");
    struct Case {
        const char* proposed;
        const char* name;
    };
    const Case cases[] = {{.proposed = "wing.apt", .name = "wing"},
                          {.proposed = "wing.skl", .name = ""},
                          {.proposed = "wing.stl", .name = ""},
                          {.proposed = "gone.apt", .name = ""}};
    for (const Case& c : cases) {
        UiRig rig;
        choose(rig, requestIn(folder, ChooserMode::Open, c.proposed), [&c](QFileDialog& dialog) {
            EXPECT_EQ(proposedName(dialog), QLatin1String(c.name)) << c.proposed;
            dialog.reject();
        });
    }
    UiRig rig;
    const auto paths = choose(rig, requestIn(folder, ChooserMode::Open), [](QFileDialog& dialog) { pressOk(dialog); });
    EXPECT_THAT(paths, ::testing::ElementsAre(folder / "wing.apt")) << "the proposed one as it stands";
}

TEST(FileChooser, ShowsItsColumnsWhole) {
    const TemporaryFolder folder;
    const char* const name = "a_wing_with_a_long_name_of_forty_letters.apt";
    writeFileText(folder / name, std::string(12345678, ' '));
    UiRig rig;
    choose(rig, requestIn(folder, ChooserMode::Open), [name](QFileDialog& dialog) {
        const auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
        EXPECT_TRUE(waitUntil([list] { return list->model()->rowCount(list->rootIndex()) == 1; }));
        const QModelIndex file = list->model()->index(0, 0, list->rootIndex());
        EXPECT_EQ(file.data().toString(), QLatin1String(name));
        for (int column = 0; column < 4; ++column) {
            const QString text = file.siblingAtColumn(column).data().toString();
            EXPECT_FALSE(text.isEmpty()) << column;
            const int wanted = list->fontMetrics().horizontalAdvance(text);
            EXPECT_TRUE(waitUntil([&] { return list->columnWidth(column) > wanted; }))
                << column << ": " << list->columnWidth(column) << " for " << wanted;
        }
        EXPECT_LE(list->header()->length(), list->viewport()->width());
        const auto* places = dialog.findChild<QListView*>(QStringLiteral("sidebar"));
        EXPECT_GT(places->model()->rowCount(), 0);
        EXPECT_GE(places->viewport()->width(), std::min(places->sizeHintForColumn(0), 200)) << "the places beside it";
        dialog.reject();
    });
}

TEST(FileChooser, ProposesANameWithoutAFolderWhereItStands) {
    const TemporaryFolder folder;
    writeFileText(folder / "Markers.apm", "");
    UiRig rig;
    FileRequest request;
    request.types = {{"apm", "Markers"}};
    request.proposed = folder / "";
    const auto nameOf = [&rig](const FileRequest& asked) {
        QString name;
        choose(rig, asked, [&name](QFileDialog& dialog) {
            name = proposedName(dialog);
            dialog.reject();
        });
        return name;
    };
    EXPECT_EQ(nameOf(request), QString());
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    request.proposed = "Markers.apm";
    EXPECT_EQ(nameOf(request), QStringLiteral("Markers"));
    request.proposed = "Others.apm";
    EXPECT_EQ(nameOf(request), QString());
    std::filesystem::current_path(before);
}

TEST(FileChooser, SeveralFilesAreTakenOnlyWhereTheyAreAskedFor) {
    const TemporaryFolder folder;
    UiRig rig;
    FileRequest request = requestIn(folder, ChooserMode::Open);
    request.multiple = true;
    choose(rig, request, [](QFileDialog& dialog) {
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFiles);
        dialog.reject();
    });
}

TEST(FileChooser, GivesNoFileTwiceAndKeepsTheirOrder) {
    const TemporaryFolder folder;
    writeFileText(folder / "a.apt", "");
    writeFileText(folder / "b.apt", "");
    UiRig rig;
    FileRequest request = requestIn(folder, ChooserMode::Open);
    request.multiple = true;
    const auto paths = choose(rig, request, [](QFileDialog& dialog) {
        typeName(dialog, QStringLiteral("\"b.apt\" \"a.apt\" \"b.apt\""));
        pressOk(dialog);
    });
    EXPECT_THAT(paths, ::testing::ElementsAre(folder / "b.apt", folder / "a.apt"));
}

TEST(FileChooser, TheTypeUsedLastIsRememberedForItsCommandAlone) {
    const TemporaryFolder folder;
    UiRig rig;
    FileRequest request = requestIn(folder, ChooserMode::SaveAs);
    const auto expectType = [&](const char* text) {
        choose(rig, request, [text](QFileDialog& dialog) {
            EXPECT_EQ(chosenType(dialog), QLatin1String(text));
            dialog.reject();
        });
    };
    expectType("Geometry Files (*.apt)");
    choose(rig, request, [](QFileDialog& dialog) {
        chooseType(dialog, 1);
        dialog.reject();
    });
    expectType("Geometry Files (*.apt)");
    const auto paths = choose(rig, request, [](QFileDialog& dialog) {
        chooseType(dialog, 1);
        typeName(dialog, QStringLiteral("lines"));
        pressOk(dialog);
    });
    EXPECT_THAT(paths, ::testing::ElementsAre(folder / "lines.skl"));
    expectType("Sections Files (*.skl)");
    request.command = "file.other";
    expectType("Geometry Files (*.apt)");
}

TEST(FileChooser, ANameGetsTheExtensionOfTheChosenType) {
    const TemporaryFolder folder;
    struct Case {
        const char* typed;
        int type;
        const char* given;
    };
    const Case cases[] = {
        {.typed = "a", .type = 0, .given = "a.apt"},         {.typed = "a", .type = 1, .given = "a.skl"},
        {.typed = "a.skl", .type = 0, .given = "a.skl"},     {.typed = "a.APT", .type = 0, .given = "a.APT"},
        {.typed = "a.txt", .type = 0, .given = "a.txt.apt"}, {.typed = "a.txt", .type = 1, .given = "a.txt.skl"},
    };
    for (const Case& c : cases) {
        UiRig rig;
        const auto paths = choose(rig, requestIn(folder, ChooserMode::SaveAs), [&](QFileDialog& dialog) {
            chooseType(dialog, c.type);
            typeName(dialog, QString::fromLatin1(c.typed));
            pressOk(dialog);
        });
        EXPECT_THAT(paths, ::testing::ElementsAre(folder / c.given)) << c.typed;
    }
}

TEST(FileChooser, AFileOfTheCompletedNameIsReplacedOnlyWhenAsked) {
    const TemporaryFolder folder;
    writeFileText(folder / "a.txt.apt", "old");
    const QString question =
        QStringLiteral("%1 already exists.\nDo you want to replace it?").arg(qtPath(folder / "a.txt.apt"));
    for (const bool yes : {false, true}) {
        UiRig rig;
        rig.person.at("fileChooser", [](QWidget& open) {
            typeName(dynamic_cast<QFileDialog&>(open), QStringLiteral("a.txt"));
            dynamic_cast<QDialog&>(open).accept();
        });
        rig.person.atQuestion(question, yes);
        EXPECT_EQ(rig.ui.chooseFiles(requestIn(folder, ChooserMode::SaveAs)).size(), yes ? 1U : 0U);
    }
}

TEST(FileChooser, ANameToReadStaysAsItIs) {
    const TemporaryFolder folder;
    writeFileText(folder / "points.txt", "1 2 3");
    UiRig rig;
    const auto paths = choose(rig, requestIn(folder, ChooserMode::Open), [](QFileDialog& dialog) {
        chooseType(dialog, 0);
        typeName(dialog, QStringLiteral("points.txt"));
        pressOk(dialog);
    });
    EXPECT_THAT(paths, ::testing::ElementsAre(folder / "points.txt"));
}

} // namespace
} // namespace velmora::test
