#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>

#include "FilesListDialog.h"
#include "FolderDialog.h"
#include "Person.h"
#include "RecordingUi.h"
#include "qt_text.h"
#include "small_models.h"

// The windows of the project list and of the folder chooser. The rules stand in the values that they show.

namespace velmora::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A person before whom each box takes the focus away from the field that is typed in.
class FocusTakingUi : public RecordingUi {
public:
    std::function<void()> whileBoxStands;

    void showMessage(const Message& message) override {
        RecordingUi::showMessage(message);
        if (whileBoxStands) {
            whileBoxStands();
        }
    }
};

/// A folder with two models, a note and two folders in it; three drives, of which the last is the folder "inner".
struct ListsRig {
    TemporaryFolder folder;
    fs::path place = fs::canonical(folder.path());
    FocusTakingUi ui;
    Person person;

    ListsRig() {
        for (const char* name : {"a.apt", "b.APT", "note.txt", "inner/c.apt"}) {
            fs::create_directories((place / name).parent_path());
            writeFileText(place / name, "");
        }
    }
    VolumeList volumes() const {
        return [this] { return std::vector<fs::path>{"/", place, place / "inner"}; };
    }
};

template <class Widget>
Widget& part(const QDialog& dialog, const char* name) {
    return *dialog.findChild<Widget*>(QString::fromLatin1(name));
}

std::vector<std::string> linesOf(const QDialog& dialog, const char* list) {
    std::vector<std::string> lines;
    const auto& widget = part<QListWidget>(dialog, list);
    for (int i = 0; i < widget.count(); ++i) {
        lines.push_back(plainBytes(widget.item(i)->text()));
    }
    return lines;
}

QListWidgetItem& lineOf(const QDialog& dialog, const char* list, const char* text) {
    return *part<QListWidget>(dialog, list).findItems(QString::fromLatin1(text), Qt::MatchEndsWith).value(0);
}

void chooseLine(const QDialog& dialog, const char* list, const char* text) {
    part<QListWidget>(dialog, list).setCurrentItem(&lineOf(dialog, list, text));
}

void doubleClick(const QDialog& dialog, const char* list, const char* text) {
    chooseLine(dialog, list, text);
    emit part<QListWidget>(dialog, list).itemDoubleClicked(&lineOf(dialog, list, text));
}

void pressKey(QWidget& widget, Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Types into a field and leaves it.
void typeAndLeave(const QDialog& dialog, const char* name, const std::string& text) {
    auto& edit = part<QLineEdit>(dialog, name);
    edit.setText(QString::fromStdString(text));
    emit edit.editingFinished();
}

// ---- The folder chooser ---------------------------------------------------------------------------------------------

struct FolderRig : ListsRig {
    dlgFolder chooser{ui, place, volumes()};
    FolderDialog dialog{chooser};

    std::string path() { return plainBytes(part<QLineEdit>(dialog, "path").text()); }
};

TEST(FolderDialog, ShowsWhereItStandsWithItsFoldersAndTheDriveThatHoldsIt) {
    FolderRig rig;
    EXPECT_EQ(rig.dialog.windowTitle(), QStringLiteral("Choose Folder"));
    EXPECT_EQ(rig.path(), rig.place.string());
    EXPECT_THAT(linesOf(rig.dialog, "folders"), ElementsAre("[..]", "[inner]"));
    const auto& drives = part<QComboBox>(rig.dialog, "drives");
    EXPECT_EQ(drives.count(), 3);
    EXPECT_EQ(plainBytes(drives.currentText()), rig.place.string()) << "the longest that holds it";
    EXPECT_EQ(rig.dialog.focusWidget(), &part<QListWidget>(rig.dialog, "folders"));
}

TEST(FolderDialog, ADriveWhoseNameOnlyBeginsAlikeDoesNotHoldThePlace) {
    QComboBox box;
    showDrives(box, {"/", "/media/us", "/media/usb"}, "/media/usb/models");
    EXPECT_EQ(box.currentText(), QStringLiteral("/media/usb"));
    showDrives(box, {"/media/us", "/", "/media"}, "/media/usb");
    EXPECT_EQ(box.currentText(), QStringLiteral("/media"));
    EXPECT_EQ(box.count(), 3) << "those of before are gone";
    showDrives(box, {"/", "/media/usb"}, "/media/usb");
    EXPECT_EQ(box.currentText(), QStringLiteral("/media/usb")) << "the drive itself";
    showDrives(box, {"/media/usb", "/media", "/"}, "/media/usb/models");
    EXPECT_EQ(box.currentText(), QStringLiteral("/media/usb")) << "the longest, wherever it stands";
}

TEST(FolderDialog, GoesIntoALineByDoubleClickAndByReturn) {
    FolderRig rig;
    doubleClick(rig.dialog, "folders", "[inner]");
    EXPECT_EQ(rig.path(), (rig.place / "inner").string());
    EXPECT_THAT(linesOf(rig.dialog, "folders"), ElementsAre("[..]"));
    EXPECT_EQ(plainBytes(part<QComboBox>(rig.dialog, "drives").currentText()), (rig.place / "inner").string());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        FolderRig other;
        other.dialog.show();
        chooseLine(other.dialog, "folders", "[inner]");
        pressKey(part<QListWidget>(other.dialog, "folders"), key);
        EXPECT_EQ(other.path(), (other.place / "inner").string());
        EXPECT_TRUE(other.dialog.isVisible()) << "Return does not go to OK";
        pressKey(part<QListWidget>(other.dialog, "folders"), key);
        EXPECT_EQ(other.path(), (other.place / "inner").string()) << "no line is chosen";
    }
}

TEST(FolderDialog, GoesToADriveThatIsChosen) {
    FolderRig rig;
    emit part<QComboBox>(rig.dialog, "drives").textActivated(QStringLiteral("/"));
    EXPECT_EQ(rig.path(), "/");
}

TEST(FolderDialog, TakesATypedPathWhenTheFieldIsLeft) {
    FolderRig rig;
    typeAndLeave(rig.dialog, "path", "inner");
    EXPECT_EQ(rig.path(), (rig.place / "inner").string());
    EXPECT_EQ(rig.chooser.folder(), rig.place / "inner");
    typeAndLeave(rig.dialog, "path", (rig.place / "made").string());
    EXPECT_TRUE(fs::is_directory(rig.place / "made"));
    EXPECT_EQ(rig.path(), (rig.place / "made").string());
    EXPECT_EQ(rig.ui.transcript.size(), 1U) << "told once";
}

TEST(FolderDialog, OkTakesWhatIsTypedAndStaysWhereItCannotGo) {
    FolderRig rig;
    rig.dialog.show();
    part<QLineEdit>(rig.dialog, "path").setText(QStringLiteral("   "));
    rig.dialog.accept();
    EXPECT_TRUE(rig.dialog.isVisible());
    EXPECT_EQ(rig.path(), rig.place.string());
    part<QLineEdit>(rig.dialog, "path").setText(QStringLiteral("inner"));
    rig.dialog.accept();
    EXPECT_FALSE(rig.dialog.isVisible());
    EXPECT_EQ(rig.dialog.result(), QDialog::Accepted);
    EXPECT_EQ(rig.chooser.folder(), rig.place / "inner");
}

TEST(FolderDialog, ABoxThatTakesTheFocusHasThePathTakenOnce) {
    FolderRig rig;
    rig.ui.whileBoxStands = [&] { emit part<QLineEdit>(rig.dialog, "path").editingFinished(); };
    typeAndLeave(rig.dialog, "path", "made");
    EXPECT_EQ(rig.ui.transcript.size(), 1U);
    EXPECT_EQ(rig.path(), (rig.place / "made").string());
}

// ---- The project list -----------------------------------------------------------------------------------------------

struct FilesRig : ListsRig {
    dlgFilesList list{ui, place, volumes()};
    std::unique_ptr<FilesListDialog> window;
    FilesListDialog* dialog = nullptr;

    FilesRig() {
        list.names.add("apt");
        window = std::make_unique<FilesListDialog>(list);
        dialog = window.get();
    }
    std::string text(const char* field) { return plainBytes(part<QLineEdit>(*dialog, field).text()); }
    void press(const char* button) { part<QAbstractButton>(*dialog, button).click(); }
    std::vector<std::string> project() { return linesOf(*dialog, "project"); }
    std::string file(const char* name) { return (place / name).string(); }
};

TEST(FilesListDialog, OpensOnItsNameAndShowsTheFolder) {
    FilesRig rig;
    EXPECT_EQ(rig.dialog->statusTip(), QStringLiteral("Create or edit documents list"));
    EXPECT_EQ(rig.text("name"), "untitled");
    EXPECT_EQ(part<QLineEdit>(*rig.dialog, "name").selectedText(), QStringLiteral("untitled"));
    EXPECT_EQ(rig.dialog->focusWidget(), &part<QLineEdit>(*rig.dialog, "name"));
    EXPECT_EQ(rig.text("directory"), rig.place.string());
    EXPECT_EQ(part<QLabel>(*rig.dialog, "projectPath").text(), QStringLiteral("No folder chosen"));
    const std::string inner = (rig.place / "inner").string();
    EXPECT_THAT(linesOf(*rig.dialog, "files"), ElementsAre("a.apt", "b.APT", "[..]", "[inner]", "[-/-]",
                                                           "[-" + rig.place.string() + "-]", "[-" + inner + "-]"));
    EXPECT_THAT(rig.project(), IsEmpty());
}

TEST(FilesListDialog, ItsButtonsMoveFiles) {
    FilesRig rig;
    chooseLine(*rig.dialog, "files", "b.APT");
    rig.press("add");
    EXPECT_THAT(rig.project(), ElementsAre(rig.file("b.APT")));
    EXPECT_TRUE(lineOf(*rig.dialog, "files", "b.APT").isSelected()) << "the line stays chosen";
    rig.press("addAll");
    const auto all = rig.project();
    EXPECT_THAT(all, ::testing::Contains(rig.file("a.apt")));
    chooseLine(*rig.dialog, "project", "a.apt");
    rig.press("remove");
    EXPECT_EQ(rig.project().size(), all.size() - 1);
    EXPECT_THAT(rig.project(), ::testing::Not(::testing::Contains(rig.file("a.apt"))));
    rig.press("removeAll");
    EXPECT_THAT(rig.project(), IsEmpty());
    EXPECT_THAT(rig.ui.transcript, IsEmpty());
}

TEST(FilesListDialog, SaysWhatItsButtonsMiss) {
    FilesRig rig;
    rig.press("add");
    rig.press("remove");
    rig.press("removeAll");
    EXPECT_THAT(rig.ui.transcript, ElementsAre("message: Text is not selected", "message: Text is not selected",
                                               "message: List is empty"));
}

TEST(FilesListDialog, AfterARemovalTheNextLineIsChosen) {
    FilesRig rig;
    rig.press("addAll");
    ASSERT_EQ(rig.project().size(), 2U);
    part<QListWidget>(*rig.dialog, "project").setCurrentRow(0);
    rig.press("remove");
    rig.press("remove");
    EXPECT_THAT(rig.project(), IsEmpty());
    EXPECT_THAT(rig.ui.transcript, IsEmpty());
}

TEST(FilesListDialog, AFolderEnteredLeavesNoLineChosen) {
    FilesRig rig;
    chooseLine(*rig.dialog, "files", "[inner]");
    rig.press("add");
    EXPECT_EQ(rig.text("directory"), (rig.place / "inner").string());
    EXPECT_TRUE(part<QListWidget>(*rig.dialog, "files").selectedItems().isEmpty());
}

TEST(FilesListDialog, DoubleClicksAndKeysWorkAsTheButtons) {
    FilesRig rig;
    doubleClick(*rig.dialog, "files", "a.apt");
    EXPECT_THAT(rig.project(), ElementsAre(rig.file("a.apt")));
    chooseLine(*rig.dialog, "files", "b.APT");
    pressKey(part<QListWidget>(*rig.dialog, "files"), Qt::Key_Return);
    EXPECT_THAT(rig.project(), ElementsAre(rig.file("a.apt"), rig.file("b.APT")));
    doubleClick(*rig.dialog, "project", "a.apt");
    EXPECT_THAT(rig.project(), ElementsAre(rig.file("b.APT")));
    part<QListWidget>(*rig.dialog, "project").setCurrentRow(0);
    pressKey(part<QListWidget>(*rig.dialog, "project"), Qt::Key_Space);
    EXPECT_EQ(rig.project().size(), 1U);
    pressKey(part<QListWidget>(*rig.dialog, "project"), Qt::Key_Delete);
    EXPECT_THAT(rig.project(), IsEmpty());
}

TEST(FilesListDialog, TakesFieldsAsTheyAreLeft) {
    FilesRig rig;
    typeAndLeave(*rig.dialog, "name", "  wing ");
    EXPECT_EQ(rig.text("name"), "wing");
    typeAndLeave(*rig.dialog, "directory", (rig.place / "inner").string());
    EXPECT_THAT(linesOf(*rig.dialog, "files"), ::testing::Contains("c.apt"));
    typeAndLeave(*rig.dialog, "name", (rig.place / "project").string() + "/hull");
    EXPECT_EQ(rig.text("name"), "hull");
    EXPECT_EQ(plainBytes(part<QLabel>(*rig.dialog, "projectPath").text()), (rig.place / "project").string());
}

TEST(FilesListDialog, ABoxThatTakesTheFocusHasTheNameTakenOnce) {
    FilesRig rig;
    rig.ui.whileBoxStands = [&] { emit part<QLineEdit>(*rig.dialog, "name").editingFinished(); };
    typeAndLeave(*rig.dialog, "name", "made/wing");
    EXPECT_EQ(rig.ui.transcript.size(), 1U);
    EXPECT_EQ(rig.text("name"), "wing");
    EXPECT_TRUE(fs::is_directory(rig.place / "made"));
}

TEST(FilesListDialog, GoesToADriveThatIsChosen) {
    FilesRig rig;
    emit part<QComboBox>(*rig.dialog, "drives").textActivated(QString::fromStdString((rig.place / "inner").string()));
    EXPECT_EQ(rig.text("directory"), (rig.place / "inner").string());
}

TEST(FilesListDialog, BrowseTakesTheFolderForTheProject) {
    FilesRig rig;
    rig.dialog->show();
    rig.person.atDialogCancel("dlgFolder");
    rig.press("browse");
    EXPECT_EQ(part<QLabel>(*rig.dialog, "projectPath").text(), QStringLiteral("No folder chosen"));
    rig.person.at("dlgFolder", [](QWidget& open) {
        auto& chooser = dynamic_cast<QDialog&>(open);
        doubleClick(chooser, "folders", "[inner]");
        chooser.accept();
    });
    rig.press("browse");
    EXPECT_EQ(plainBytes(part<QLabel>(*rig.dialog, "projectPath").text()), (rig.place / "inner").string());
    EXPECT_EQ(rig.text("directory"), rig.place.string()) << "the list stays where it is";
}

TEST(FilesListDialog, OkTakesTheListAndCancelLeavesIt) {
    FilesRig rig;
    rig.dialog->show();
    rig.dialog->accept();
    EXPECT_THAT(rig.ui.transcript, ElementsAre("message: List is empty"));
    EXPECT_TRUE(rig.dialog->isVisible());
    doubleClick(*rig.dialog, "files", "a.apt");
    EXPECT_TRUE(rig.list.projectList.empty()) << "not before OK";
    part<QLineEdit>(*rig.dialog, "name").setText(QString());
    rig.dialog->accept();
    EXPECT_EQ(rig.ui.transcript.back(), "message: Insert name, please");
    EXPECT_TRUE(rig.dialog->isVisible());
    part<QLineEdit>(*rig.dialog, "name").setText(QStringLiteral("wing"));
    rig.dialog->accept();
    EXPECT_FALSE(rig.dialog->isVisible());
    EXPECT_EQ(rig.list.name.text, "wing");
    EXPECT_THAT(rig.list.projectList, ElementsAre(rig.place / "a.apt"));
    FilesListDialog again(rig.list);
    doubleClick(again, "files", "b.APT");
    again.reject();
    EXPECT_EQ(rig.list.projectList.size(), 1U);
}

TEST(FilesListDialog, OkTakesADirectoryThatIsStillTypedIn) {
    FilesRig rig;
    doubleClick(*rig.dialog, "files", "a.apt");
    part<QLineEdit>(*rig.dialog, "directory").setText(qtPath(rig.place / "inner"));
    rig.dialog->accept();
    EXPECT_EQ(rig.list.currentDirectory(), rig.place / "inner");
}

} // namespace
} // namespace velmora::test
