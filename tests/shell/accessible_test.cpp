#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>

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

} // namespace
} // namespace velmora::test
