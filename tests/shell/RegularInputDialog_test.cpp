#include "RegularInputDialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QTableWidget>

#include "CRegularInput.h"
#include "Person.h"

namespace velmora::test {
namespace {

/// The point table as New opens it.
struct TableRig {
    Person person;
    PatchList list;
    CRegularInput table{list};
    std::unique_ptr<RegularInputDialog> dialog;

    TableRig() {
        dialog = std::make_unique<RegularInputDialog>(table);
        dialog->show();
        dialog->activateWindow();
        EXPECT_TRUE(waitUntil([this] { return dialog->isActiveWindow(); }));
    }
    template <class Widget>
    Widget& part(const char* name) {
        return *dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    QString text(const char* key) { return part<QLineEdit>(key).text(); }
    void type(const char* key, const char* words) { part<QLineEdit>(key).setText(QString::fromLatin1(words)); }
    void act() { part<QPushButton>("act").click(); }
    void addPoint(const char* x) {
        type("X", x);
        act();
    }
    QString focus() { return dialog->focusWidget()->objectName(); }
    int chosenRow() { return part<QTableWidget>("rows").currentRow(); }
};

TEST(RegularInputDialog, OpensReadyForTheFirstPoint) {
    TableRig rig;
    EXPECT_EQ(rig.dialog->windowTitle(), QStringLiteral("Regular Input"));
    EXPECT_EQ(rig.focus(), QStringLiteral("X"));
    EXPECT_EQ(rig.part<QLineEdit>("X").selectedText(), QStringLiteral("0"));
    EXPECT_TRUE(rig.part<QPushButton>("act").isDefault());
    EXPECT_EQ(rig.part<QTableWidget>("rows").rowCount(), 0);
    EXPECT_EQ(rig.part<QTableWidget>("rows").editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_TRUE(rig.part<QLineEdit>("K").isReadOnly());
    QStringList headings;
    for (int column = 0; column < 6; ++column) {
        headings.append(rig.part<QTableWidget>("rows").horizontalHeaderItem(column)->text());
    }
    EXPECT_EQ(headings, QStringList({"X", "Y", "Z", "K", "N", "M"}));
}

TEST(RegularInputDialog, TheColumnsShowWholeNumbers) {
    TableRig rig;
    const auto& rows = rig.part<QTableWidget>("rows");
    const QFontMetrics metrics = rig.dialog->fontMetrics();
    for (int column = 0; column < 6; ++column) {
        const QString widest = column < 3 ? QStringLiteral("-1.234568e-100") : QStringLiteral("100000");
        EXPECT_GT(rows.columnWidth(column), metrics.horizontalAdvance(widest)) << column;
    }
    EXPECT_GE(rows.viewport()->width(), 3 * (rows.columnWidth(0) + rows.columnWidth(3))) << "none is scrolled away";
}

TEST(RegularInputDialog, RowsShowThePointsAndTheLastIsChosen) {
    TableRig rig;
    rig.addPoint("1");
    rig.addPoint("2.5");
    const auto& rows = rig.part<QTableWidget>("rows");
    ASSERT_EQ(rows.rowCount(), 2);
    QStringList cells;
    for (int column = 0; column < 6; ++column) {
        cells.append(rows.item(1, column)->text());
    }
    EXPECT_EQ(cells, QStringList({"+2.500000e+00", "+0.000000e+00", "+0.000000e+00", "1", "1", "2"}));
    EXPECT_EQ(rig.chosenRow(), 1);
    EXPECT_EQ(rig.focus(), QStringLiteral("X"));
    EXPECT_EQ(rig.text("M"), QStringLiteral("2"));
}

TEST(RegularInputDialog, ARowThatIsChosenShowsItsPoint) {
    TableRig rig;
    rig.addPoint("1");
    rig.addPoint("2");
    rig.part<QTableWidget>("rows").setCurrentCell(0, 2);
    EXPECT_EQ(rig.text("X"), QStringLiteral("1"));
    EXPECT_EQ(rig.text("M"), QStringLiteral("1"));
    EXPECT_EQ(rig.chosenRow(), 0);
    rig.type("X", "9");
    rig.part<QTableWidget>("rows").setCurrentCell(0, 0);
    EXPECT_EQ(rig.text("X"), QStringLiteral("9")) << "the current row again changes nothing";
}

TEST(RegularInputDialog, AWrongNumberIsToldAndKeepsTheFocusAndNothingHappens) {
    TableRig rig;
    rig.type("X", "5");
    rig.type("Y", "two");
    rig.person.at("messageBox", [&](QWidget& open) {
        EXPECT_EQ(dynamic_cast<QMessageBox&>(open).text(), QStringLiteral("Please enter a number."));
        EXPECT_EQ(open.windowTitle(), QStringLiteral("Regular Input"));
        open.close();
    });
    rig.act();
    EXPECT_EQ(rig.focus(), QStringLiteral("Y"));
    EXPECT_EQ(rig.part<QLineEdit>("Y").selectedText(), QStringLiteral("two"));
    EXPECT_TRUE(rig.list.empty());
    rig.type("Y", "2");
    rig.act();
    EXPECT_EQ(rig.list, (PatchList{{{{5, 2, 0}}}}));
}

TEST(RegularInputDialog, AnActionThatIsChosenNamesTheButtonAndTurnsFieldsOff) {
    TableRig rig;
    EXPECT_FALSE(rig.part<QRadioButton>("action.2").isEnabled());
    rig.addPoint("1");
    struct Case {
        const char* radio;
        const char* button;
        const char* focus;
    };
    const Case cases[] = {
        {.radio = "action.2", .button = "Replace", .focus = "X"},
        {.radio = "action.3", .button = "Cut", .focus = "act"},
        {.radio = "action.4", .button = "Copy", .focus = "act"},
        {.radio = "action.5", .button = "New patch", .focus = "X"},
        {.radio = "action.6", .button = "New line", .focus = "X"},
        {.radio = "action.7", .button = "Find", .focus = "act"},
        {.radio = "action.8", .button = "OK", .focus = "X"},
        {.radio = "action.1", .button = "Input after", .focus = "X"},
    };
    for (const Case& c : cases) {
        rig.part<QRadioButton>(c.radio).click();
        EXPECT_TRUE(rig.part<QRadioButton>(c.radio).isChecked());
        EXPECT_EQ(rig.part<QPushButton>("act").text(), QString::fromLatin1(c.button));
        EXPECT_EQ(rig.focus(), QString::fromLatin1(c.focus)) << c.radio;
        EXPECT_EQ(rig.part<QLineEdit>("X").isEnabled(), rig.focus() == QStringLiteral("X")) << c.radio;
    }
}

TEST(RegularInputDialog, PasteTakesTheKeyboardToTheBufferAndBack) {
    TableRig rig;
    rig.addPoint("1");
    rig.part<QRadioButton>("action.3").click();
    rig.part<QCheckBox>("paste").click();
    EXPECT_TRUE(rig.part<QRadioButton>("action.1").isChecked()) << "from Cut to Input after";
    EXPECT_EQ(rig.focus(), QStringLiteral("bufferX"));
    EXPECT_FALSE(rig.part<QLineEdit>("X").isEnabled());
    rig.type("bufferX", "7");
    rig.act();
    EXPECT_EQ(rig.list, (PatchList{{{{1, 0, 0}, {7, 0, 0}}}}));
    rig.part<QCheckBox>("paste").click();
    EXPECT_EQ(rig.focus(), QStringLiteral("X"));
    EXPECT_FALSE(rig.part<QLineEdit>("bufferX").isEnabled());
}

TEST(RegularInputDialog, FindGoesToAPointOrStaysWhenItIsCancelled) {
    TableRig rig;
    rig.addPoint("1");
    rig.addPoint("4");
    rig.part<QRadioButton>("action.5").click();
    rig.addPoint("7");
    EXPECT_EQ(rig.text("K"), QStringLiteral("2"));
    EXPECT_EQ(rig.part<QTableWidget>("rows").rowCount(), 1);
    rig.part<QRadioButton>("action.7").click();
    rig.person.atDialogCancel("CRegularFind");
    rig.act();
    EXPECT_EQ(rig.text("K"), QStringLiteral("2"));
    rig.person.atDialog("CRegularFind", {{"K", "1"}, {"M", "2"}});
    rig.act();
    EXPECT_EQ(rig.text("K"), QStringLiteral("1"));
    EXPECT_EQ(rig.text("X"), QStringLiteral("4"));
    EXPECT_EQ(rig.part<QTableWidget>("rows").rowCount(), 2);
    EXPECT_EQ(rig.chosenRow(), 1);
}

TEST(RegularInputDialog, PointsThatWereTypedAreNotLostWithOneKey) {
    TableRig rig;
    rig.addPoint("1");
    const auto answer = [&rig](QMessageBox::StandardButton button) {
        rig.person.at("messageBox", [button](QWidget& open) {
            auto& box = dynamic_cast<QMessageBox&>(open);
            EXPECT_EQ(box.text(), QStringLiteral("The points that were typed will be lost. Leave the table?"));
            EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
            box.button(button)->click();
        });
        rig.dialog->reject();
    };
    answer(QMessageBox::No);
    EXPECT_TRUE(rig.dialog->isVisible());
    EXPECT_EQ(rig.list, (PatchList{{{{1, 0, 0}}}}));
    answer(QMessageBox::Yes);
    EXPECT_FALSE(rig.dialog->isVisible());
    EXPECT_EQ(rig.dialog->result(), QDialog::Rejected);
}

TEST(RegularInputDialog, OkClosesItAndCancelTakesNothing) {
    TableRig rig;
    rig.addPoint("1");
    rig.part<QRadioButton>("action.8").click();
    rig.act();
    EXPECT_EQ(rig.dialog->result(), QDialog::Accepted);
    EXPECT_FALSE(rig.dialog->isVisible());
    TableRig other;
    for (QPushButton* button : other.dialog->findChildren<QPushButton*>()) {
        if (button->objectName() != QStringLiteral("act")) {
            button->click();
        }
    }
    EXPECT_FALSE(other.dialog->isVisible());
    EXPECT_EQ(other.dialog->result(), QDialog::Rejected);
}

} // namespace
} // namespace velmora::test
