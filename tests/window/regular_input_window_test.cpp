#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTableWidget>

#include "Desk.h"
#include "DocumentState.h"
#include "WindowDriver.h"
#include "arranged_capture.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

// ---- Looking ----------------------------------------------------------------------------------------------------

QString fieldOf(WindowDriver& person, const char* key) {
    return person.ask(
        [key] { return QApplication::activeModalWidget()->findChild<QLineEdit*>(QLatin1String(key))->text(); });
}

/// The values of several fields of the window on top, with blanks between.
QString fields(WindowDriver& person, const std::vector<const char*>& keys) {
    QStringList texts;
    for (const char* key : keys) {
        texts.append(fieldOf(person, key));
    }
    return texts.join(QLatin1Char(' '));
}

QString address(WindowDriver& person) {
    return fields(person, {"K", "N", "M"});
}

/// The field that has the focus and what is selected there.
QString focus(WindowDriver& person) {
    return person.ask([] {
        const QWidget* widget = QApplication::focusWidget();
        const auto* edit = qobject_cast<const QLineEdit*>(widget);
        const QString name = widget != nullptr ? widget->objectName() : QString();
        return edit != nullptr ? name + QLatin1Char('=') + edit->selectedText() : name;
    });
}

/// The rows of the table, cells with blanks between; the selected one in brackets.
std::vector<std::string> rows(WindowDriver& person) {
    return person.ask([] {
        const auto* table = QApplication::activeModalWidget()->findChild<QTableWidget*>(QStringLiteral("rows"));
        std::vector<std::string> texts;
        for (int row = 0; row < table->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < table->columnCount(); ++column) {
                cells.append(table->item(row, column)->text());
            }
            const QString text = cells.join(QLatin1Char(' '));
            texts.push_back(plainBytes(row == table->currentRow() ? QLatin1Char('[') + text + QLatin1Char(']') : text));
        }
        return texts;
    });
}

/// The actions that can be chosen, by their numbers, with the chosen one in brackets.
std::string actions(WindowDriver& person) {
    return person.ask([] {
        std::string live;
        for (int i = 1; i <= 8; ++i) {
            const auto* radio =
                QApplication::activeModalWidget()->findChild<QAbstractButton*>(QStringLiteral("action.%1").arg(i));
            if (radio->isEnabled()) {
                live += radio->isChecked() ? "[" + std::to_string(i) + "]" : std::to_string(i);
            }
        }
        return live;
    });
}

bool isOn(WindowDriver& person, const char* key) {
    return person.ask(
        [key] { return QApplication::activeModalWidget()->findChild<QWidget*>(QLatin1String(key))->isEnabled(); });
}

QString actionText(WindowDriver& person) {
    return person.ask(
        [] { return QApplication::activeModalWidget()->findChild<QAbstractButton*>(QStringLiteral("act"))->text(); });
}

PatchList model(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().state().patches; });
}

// ---- Doing ------------------------------------------------------------------------------------------------------

void openTable(WindowDriver& person) {
    person.waitForFrame();
    person.rest = std::chrono::milliseconds(100);
    person.choose({"File", "New"});
    person.waitForBox(QStringLiteral("CRegularInput"));
}

/// Types a number, or a word of small letters, without a rest behind it.
void typeAtOnce(WindowDriver& person, const std::string& text) {
    for (const char letter : text) {
        const std::string name(1, letter);
        person.key(letter == '-' ? "minus" : letter == '.' ? "period" : name.c_str());
    }
}

/// Types a point from the field that has the focus on, and presses the action button by the key.
void enter(WindowDriver& person, const std::vector<std::string>& numbers) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) {
            person.key("Tab");
        }
        typeAtOnce(person, numbers[i]);
    }
    person.key("Return");
    person.settle();
}

void choose(WindowDriver& person, int action) {
    person.click(person.ask([action] {
        const auto* radio =
            QApplication::activeModalWidget()->findChild<QWidget*>(QStringLiteral("action.%1").arg(action));
        // On the circle: the text beside it may be shorter than the widget.
        return radio->mapToGlobal(QPoint(10, radio->height() / 2));
    }));
}

void clickPaste(WindowDriver& person) {
    person.click(person.ask([] {
        const auto* box = QApplication::activeModalWidget()->findChild<QWidget*>(QStringLiteral("paste"));
        return box->mapToGlobal(QPoint(10, box->height() / 2));
    }));
}

void clickRow(WindowDriver& person, int row) {
    person.click(person.ask([row] {
        const auto* table = QApplication::activeModalWidget()->findChild<QTableWidget*>(QStringLiteral("rows"));
        return table->viewport()->mapToGlobal(table->visualItemRect(table->item(row, 0)).center());
    }));
}

const std::vector<const char*> typedFields = {"X", "Y", "Z"};
const std::vector<const char*> bufferFields = {"bufferX", "bufferY", "bufferZ"};

// ---- The table --------------------------------------------------------------------------------------------------

TEST(RegularInput, PointsAreTypedPutInReplacedCutCopiedAndPasted) {
    runProgram({}, [](WindowDriver& person) {
        openTable(person);
        EXPECT_EQ(actions(person), "[1]8");
        EXPECT_EQ(address(person), QStringLiteral("1 1 0"));
        EXPECT_EQ(focus(person), QStringLiteral("X=0"));
        EXPECT_EQ(actionText(person), QStringLiteral("Input after"));
        EXPECT_FALSE(isOn(person, "bufferX"));

        enter(person, {"1", "2", "3"});
        EXPECT_EQ(rows(person), (std::vector<std::string>{"[+1.000000e+00 +2.000000e+00 +3.000000e+00 1 1 1]"}));
        EXPECT_EQ(focus(person), QStringLiteral("X=1"));
        EXPECT_EQ(actions(person), "[1]2345678");
        enter(person, {"-4", "5e-3", "6"});
        EXPECT_EQ(address(person), QStringLiteral("1 1 2"));

        clickRow(person, 0);
        EXPECT_EQ(address(person), QStringLiteral("1 1 1"));
        EXPECT_EQ(fields(person, typedFields), QStringLiteral("1 2 3"));
        person.click(person.centreOf(QStringLiteral("X")));
        person.key("a", "Control_L");
        enter(person, {"7", "8", "9"});
        EXPECT_EQ(rows(person), (std::vector<std::string>{"+1.000000e+00 +2.000000e+00 +3.000000e+00 1 1 1",
                                                          "[+7.000000e+00 +8.000000e+00 +9.000000e+00 1 1 2]",
                                                          "-4.000000e+00 +5.000000e-03 +6.000000e+00 1 1 3"}))
            << "put in behind the selected one";

        choose(person, 2);
        EXPECT_EQ(actionText(person), QStringLiteral("Replace"));
        EXPECT_EQ(focus(person), QStringLiteral("X=7"));
        enter(person, {"0.123456789", "8", "9"});
        EXPECT_EQ(rows(person)[1], "[+1.234568e-01 +8.000000e+00 +9.000000e+00 1 1 2]");
        EXPECT_EQ(fieldOf(person, "X"), QStringLiteral("0.1234568")) << "read back from the row";

        choose(person, 4);
        EXPECT_EQ(actionText(person), QStringLiteral("Copy"));
        EXPECT_FALSE(isOn(person, "X"));
        person.clickWidget(QStringLiteral("act"));
        EXPECT_EQ(fields(person, bufferFields), QStringLiteral("0.1234568 8 9"));

        choose(person, 3);
        EXPECT_EQ(actionText(person), QStringLiteral("Cut"));
        clickRow(person, 2);
        person.clickWidget(QStringLiteral("act"));
        EXPECT_EQ(fields(person, bufferFields), QStringLiteral("-4 0.005 6"));
        EXPECT_EQ(rows(person).size(), 2U);
        EXPECT_EQ(address(person), QStringLiteral("1 1 2"));

        clickPaste(person);
        EXPECT_EQ(actions(person), "[1]28") << "from Cut to Input after";
        EXPECT_TRUE(isOn(person, "bufferX") && !isOn(person, "X"));
        enter(person, {"-5"});
        EXPECT_EQ(rows(person)[2], "[-5.000000e+00 +5.000000e-03 +6.000000e+00 1 1 3]");
        clickPaste(person);
        EXPECT_EQ(actions(person), "[1]2345678");
        EXPECT_EQ(focus(person), QStringLiteral("X=-5"));

        choose(person, 8);
        EXPECT_EQ(actionText(person), QStringLiteral("OK"));
        person.screenshot(QStringLiteral("regular-input"));
        person.clickWidget(QStringLiteral("act"));
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(model(person), (PatchList{{{{1, 2, 3}, {0.123456789, 8, 9}, {-5, 0.005, 6}}}}));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().structureKind; }), StructureKind::Structured);
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().isWindowModified(); }));
    });
}

TEST(RegularInput, PatchesAndLinesAreBegunAndFoundByNumber) {
    runProgram({}, [](WindowDriver& person) {
        openTable(person);
        enter(person, {"1", "0", "0"});
        enter(person, {"2"});
        choose(person, 6);
        enter(person, {"3", "1", "0"});
        EXPECT_EQ(rows(person), (std::vector<std::string>{"[+3.000000e+00 +1.000000e+00 +0.000000e+00 1 2 1]"}));
        EXPECT_EQ(actions(person), "[1]2345678");
        choose(person, 5);
        enter(person, {"5"});
        EXPECT_EQ(rows(person), (std::vector<std::string>{"[+5.000000e+00 +1.000000e+00 +0.000000e+00 2 1 1]"}));

        choose(person, 7);
        EXPECT_EQ(actionText(person), QStringLiteral("Find"));
        person.clickWidget(QStringLiteral("act"));
        person.waitForBox(QStringLiteral("CRegularFind"));
        EXPECT_EQ(fields(person, {"K", "N", "M", "Kmax", "Nmax", "Mmax"}), QStringLiteral("2 1 1 2 1 1"));
        EXPECT_EQ(focus(person), QStringLiteral("M=1"));
        EXPECT_TRUE(isOn(person, "K") && isOn(person, "N") && isOn(person, "M"));
        person.key("Tab", "Shift_L");
        person.key("Tab", "Shift_L");
        person.type("1");
        person.key("Tab");
        person.settle();
        EXPECT_EQ(fields(person, {"Nmax", "Mmax"}), QStringLiteral("2 2"));
        person.key("Return");
        person.waitForBox(QStringLiteral("CRegularInput"));
        EXPECT_EQ(rows(person), (std::vector<std::string>{"[+1.000000e+00 +0.000000e+00 +0.000000e+00 1 1 1]",
                                                          "+2.000000e+00 +0.000000e+00 +0.000000e+00 1 1 2"}));
        EXPECT_EQ(address(person), QStringLiteral("1 1 1"));

        choose(person, 8);
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(model(person), (PatchList{{{{1, 0, 0}, {2, 0, 0}}, {{3, 1, 0}}}, {{{5, 1, 0}}}}));
    });
}

TEST(RegularInput, AWrongNumberIsRefusedAndTheFieldKeepsTheFocus) {
    runProgram({}, [](WindowDriver& person) {
        openTable(person);
        enter(person, {"1", "two"});
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("Please enter a number."));
        person.key("Return");
        person.waitForBox(QStringLiteral("CRegularInput"));
        EXPECT_EQ(focus(person), QStringLiteral("Y=two"));
        EXPECT_TRUE(rows(person).empty());
        enter(person, {"2"});
        EXPECT_EQ(rows(person), (std::vector<std::string>{"[+1.000000e+00 +2.000000e+00 +0.000000e+00 1 1 1]"}));

        person.key("Escape");
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("The points that were typed will be lost. Leave the table?"));
        person.key("Return");
        person.waitForBox(QStringLiteral("CRegularInput"));
        person.key("Escape");
        person.waitForBox(QStringLiteral("messageBox"));
        person.key("y", "Alt_L");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_TRUE(model(person).empty()) << "Cancel takes nothing";
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().structureKind; }), StructureKind::None);
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().isWindowModified(); }));
    });
}

// ---- Find in the model ------------------------------------------------------------------------------------------

/// Opens the menus and the item by their underlined letters.
void openFind(WindowDriver& person) {
    person.key("e", "Alt_L");
    person.settle();
    person.key("o");
    person.settle();
    person.key("i");
    person.waitForBox(QStringLiteral("CRegularFind"));
}

void expectFieldsOn(WindowDriver& person, bool K, bool N, bool M) {
    EXPECT_EQ(isOn(person, "K"), K);
    EXPECT_EQ(isOn(person, "N"), N);
    EXPECT_EQ(isOn(person, "M"), M);
}

/// Sets what the regimes hold and captures point 2 of section 3 of patch 2.
void hold(WindowDriver& person, bool CaptureState::*regime) {
    person.ask([regime] {
        DocumentState& doc = WindowDriver::frame().state();
        arranged(doc).patchCaptured = arranged(doc).sectionCaptured = arranged(doc).lineCaptured = false;
        if (regime != nullptr) {
            arranged(doc).*regime = true;
        }
        doc.capture.renumberPatch(1);
        arranged(doc).capturedPointSection = arranged(doc).capturedSection = 2;
        arranged(doc).capturedPoint = arranged(doc).capturedLine = 1;
        arranged(doc).pointCaptured = arranged(doc).pointPicked = true;
        doc.capture.placePoint(doc.patches[1][2][1]);
    });
}

TEST(RegularInput, FindBringsWhatIsTypedIntoRangeAsTheFieldIsLeft) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        hold(person, nullptr);
        person.click(person.onView({30, 30}));
        openFind(person);
        EXPECT_EQ(fields(person, {"K", "N", "M", "Kmax", "Nmax", "Mmax"}), QStringLiteral("2 3 2 3 3 4"));
        EXPECT_EQ(focus(person), QStringLiteral("M=2"));
        expectFieldsOn(person, true, true, true);
        person.type("77");
        person.key("Tab", "Shift_L");
        person.settle();
        EXPECT_EQ(address(person), QStringLiteral("2 3 4"));
        EXPECT_EQ(focus(person), QStringLiteral("N=3"));
        person.type("-5");
        person.key("Tab", "Shift_L");
        person.settle();
        EXPECT_EQ(address(person), QStringLiteral("2 1 4"));
        person.type("99");
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox()) << "a number out of range is never refused";
        EXPECT_EQ(person.status(), QStringLiteral("Captured point: (Patch K=3, Section N=1, Point M=4) X=13.000000, "
                                                  "Y=0.000000, Z=0.000000 // Press right button to continue "));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().state().capture->pointCaptured; }));
    });
}

TEST(RegularInput, FindLeavesAloneWhatTheRegimeHolds) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.click(person.onView({30, 30}));
        const struct {
            bool CaptureState::*regime;
            bool K;
            bool N;
            bool M;
        } regimes[] = {{&CaptureState::patchCaptured, false, true, true},
                       {&CaptureState::sectionCaptured, false, false, true},
                       {&CaptureState::lineCaptured, false, true, false}};
        for (const auto& [regime, K, N, M] : regimes) {
            hold(person, regime);
            openFind(person);
            expectFieldsOn(person, K, N, M);
            EXPECT_EQ(address(person), QStringLiteral("2 3 2"));
            person.key("Escape");
            ASSERT_TRUE(person.waitForNoBox());
        }
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().capture->capturedPoint; }), 1) << "Cancel";
    });
}

} // namespace
} // namespace velmora::test
