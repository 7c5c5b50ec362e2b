#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QToolButton>

#include "AboutBox.h"
#include "CRegularInput.h"
#include "DialogValues.h"
#include "FilesListDialog.h"
#include "FolderDialog.h"
#include "FormDialog.h"
#include "FrameRig.h"
#include "HelpWindow.h"
#include "KeyListBox.h"
#include "RecordingUi.h"
#include "RegularInputDialog.h"

// What a screen reader and tool tips say of the widgets that can be worked.

namespace velmora::test {
namespace {

/// Parts that the toolkit makes for a widget belong to it and are not told apart.
bool isPartOfAnother(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    return widget.objectName().startsWith(QLatin1String("qt_")) ||
           (parent != nullptr &&
            (qobject_cast<const QAbstractItemView*>(parent) != nullptr ||
             qobject_cast<const QComboBox*>(parent) != nullptr || qobject_cast<const QLineEdit*>(parent) != nullptr ||
             parent->objectName().startsWith(QLatin1String("qt_"))));
}

/// The number of widgets that the keyboard or the mouse works; each must have a name.
int expectNames(QWidget& window) {
    int count = 0;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isWorked = qobject_cast<QAbstractButton*>(widget) != nullptr || widget->focusPolicy() != Qt::NoFocus;
        if (!isWorked || isPartOfAnother(*widget)) {
            continue;
        }
        ++count;
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
        const QString name = told == nullptr ? QString() : told->text(QAccessible::Name);
        EXPECT_FALSE(name.trimmed().isEmpty())
            << window.objectName().toStdString() << ": " << widget->metaObject()->className() << ' '
            << widget->objectName().toStdString();
    }
    return count;
}

/// The number of edits; each must tell what it takes while it is pointed at.
int expectTips(const QWidget& window) {
    int count = 0;
    for (const QLineEdit* edit : window.findChildren<QLineEdit*>()) {
        if (!isPartOfAnother(*edit)) {
            ++count;
            EXPECT_FALSE(edit->toolTip().isEmpty()) << edit->objectName().toStdString();
        }
    }
    return count;
}

TEST(ScreenReader, HasANameForEveryWidgetOfTheFrame) {
    FrameRig rig;
    EXPECT_GT(expectNames(rig.frame), 50) << "the buttons of three bars";
}

TEST(ScreenReader, HasANameForEveryFieldOfTheDialogs) {
    RecordingUi ui;
    DocumentState document(ui, ".");
    for (const std::string& name : DialogValues::names()) {
        auto form = document.dialogs->form(name);
        openDialog(*form);
        FormDialog dialog(*form);
        EXPECT_GT(expectNames(dialog), 2) << name;
    }
    PatchList list;
    CRegularInput table(list);
    RegularInputDialog points(table);
    EXPECT_GT(expectNames(points), 6);
    EXPECT_GE(expectTips(points), 3) << "X, Y, Z";
}

TEST(ScreenReader, HasANameForEveryWidgetOfTheOtherWindows) {
    RecordingUi ui;
    const TemporaryFolder folder;
    const auto volumes = [] { return std::vector<std::filesystem::path>{"/"}; };
    dlgFolder chooser(ui, folder.path(), volumes);
    FolderDialog choosesFolder(chooser);
    EXPECT_GT(expectNames(choosesFolder), 3);
    EXPECT_EQ(expectTips(choosesFolder), 1);
    dlgFilesList files(ui, folder.path(), volumes);
    FilesListDialog listsFiles(files);
    EXPECT_GT(expectNames(listsFiles), 8);
    EXPECT_EQ(expectTips(listsFiles), 2);
    HelpWindow help;
    EXPECT_GT(expectNames(help), 3);
    EXPECT_EQ(expectTips(help), 1);
    KeyListBox keys{nullptr};
    EXPECT_GT(expectNames(keys), 1);
    AboutBox about{QString()};
    EXPECT_GT(expectNames(about), 2);
}

// ---- Access keys ----------------------------------------------------------------------------------------------------

/// The letter that is underlined, or nothing; "&&" is an ampersand.
QString accessKeyOf(QString text) {
    text.remove(QStringLiteral("&&"));
    const qsizetype mark = text.indexOf(QLatin1Char('&'));
    return mark < 0 ? QString() : text.mid(mark + 1, 1).toUpper();
}

/// The access keys of labels, buttons and group boxes that stand in a window.
QStringList keysIn(const QWidget& window) {
    QStringList keys;
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        keys.append(label->buddy() == nullptr ? QString() : accessKeyOf(label->text()));
    }
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        // The names of commands on tool buttons have no key there.
        keys.append(qobject_cast<const QToolButton*>(button) != nullptr ? QString() : accessKeyOf(button->text()));
    }
    for (const QGroupBox* box : window.findChildren<QGroupBox*>()) {
        keys.append(accessKeyOf(box->title()));
    }
    keys.removeAll(QString());
    return keys;
}

/// The number of keys; none may stand twice.
qsizetype expectKeysOnce(QStringList keys, const std::string& window) {
    const qsizetype count = keys.size();
    keys.sort();
    const std::string all = keys.join(QLatin1Char(' ')).toStdString();
    EXPECT_EQ(keys.removeDuplicates(), 0) << window << ": " << all;
    return count;
}

TEST(AccessKeys, StandOnceInEachDialog) {
    RecordingUi ui;
    DocumentState document(ui, ".");
    for (const std::string& name : DialogValues::names()) {
        auto form = document.dialogs->form(name);
        openDialog(*form);
        const FormDialog dialog(*form);
        EXPECT_GT(expectKeysOnce(keysIn(dialog), name), 0) << name;
    }
    PatchList list;
    CRegularInput table(list);
    const RegularInputDialog points(table);
    expectKeysOnce(keysIn(points), "points");
    const TemporaryFolder folder;
    const auto volumes = [] { return std::vector<std::filesystem::path>{"/"}; };
    dlgFolder chooser(ui, folder.path(), volumes);
    EXPECT_GT(expectKeysOnce(keysIn(FolderDialog(chooser)), "folder"), 2);
    dlgFilesList files(ui, folder.path(), volumes);
    EXPECT_GT(expectKeysOnce(keysIn(FilesListDialog(files)), "files"), 4);
}

TEST(AccessKeys, OfThePanelsAreNoneOfTheMenuBar) {
    FrameRig rig;
    for (const char* const panel : {"options.report", "options.curvePlot", "options.journal", "help.fileReport"}) {
        rig.frame.run(*findCommand(panel));
    }
    QStringList keys;
    for (const QAction* menu : rig.frame.menuBar()->actions()) {
        keys.append(accessKeyOf(menu->text()));
    }
    const qsizetype ofMenus = keys.size();
    const auto docks = rig.frame.findChildren<QDockWidget*>();
    ASSERT_EQ(docks.size(), 4);
    for (const QDockWidget* dock : docks) {
        keys.append(keysIn(*dock));
    }
    EXPECT_GT(expectKeysOnce(keys, "frame"), ofMenus + 4);
}

} // namespace
} // namespace velmora::test
