#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QSet>

#include "Desk.h"
#include "WindowDriver.h"

namespace velmora::test {
namespace {

/// The line edit of a field in the dialog on top; for ask() only.
QLineEdit& editOf(const QString& key) {
    return *QApplication::activeModalWidget()->findChild<QLineEdit*>(key);
}

QString typed(WindowDriver& person, const QString& key) {
    return person.ask([key] { return editOf(key).text(); });
}

QString selected(WindowDriver& person) {
    return person.ask([] {
        const auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        return edit != nullptr ? edit->objectName() + QLatin1Char('=') + edit->selectedText() : QString();
    });
}

/// The names of the controls of the dialog on top that can be changed now.
QSet<QString> liveControls(WindowDriver& person) {
    return person.ask([] {
        QSet<QString> live;
        const QWidget* dialog = QApplication::activeModalWidget();
        for (const QLineEdit* edit : dialog->findChildren<QLineEdit*>()) {
            if (edit->isEnabled() && !edit->isReadOnly()) {
                live.insert(edit->objectName());
            }
        }
        for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
            if (button->isEnabled() && !button->objectName().isEmpty()) {
                live.insert(button->objectName());
            }
        }
        return live;
    });
}

/// Captures a section by its numbers.
void inputSection(WindowDriver& person, const std::string& patch, const std::string& section) {
    person.choose({"Edit", "Lines", "Input", "Section..."});
    person.waitForBox(QStringLiteral("CInputSection"));
    person.type(patch);
    person.key("Tab");
    person.type(section);
    person.key("Return");
    ASSERT_TRUE(person.waitForNoBox());
}

void openRebreak(WindowDriver& person) {
    person.click(person.onView({400, 300}), WindowDriver::rightButton);
    ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
    person.clickEntry(QStringLiteral("line.rebreak"));
    person.waitForBox(QStringLiteral("CRebreak"));
}

TEST(Dialogs, AWrongNumberIsRefusedAndTheFieldKeepsTheFocus) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"Edit", "Lines", "Input", "Section..."});
        person.waitForBox(QStringLiteral("CInputSection"));
        EXPECT_EQ(selected(person), QStringLiteral("patch=1")) << "the first field is ready to be typed over";

        person.type("abc");
        person.key("Return");
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("Please enter an integer between 1 and 1000000."));
        person.screenshot(QStringLiteral("refused-number"));
        person.key("Return");
        person.waitForBox(QStringLiteral("CInputSection"));
        EXPECT_EQ(selected(person), QStringLiteral("patch=abc"));

        person.type("99");
        person.key("Return");
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("Number of inputted patch is corrected"));
        person.key("Return");
        person.waitForBox(QStringLiteral("CInputSection"));
        const auto patchCount = person.ask([] { return WindowDriver::frame().document().patches.size(); });
        EXPECT_EQ(selected(person), QStringLiteral("patch=%1").arg(patchCount));

        person.key("Escape");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().document().capture->capturedSection; }), -1);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().document().inputSectionValues.patch; }), 1)
            << "what was typed before Cancel is forgotten";
    });
}

TEST(Dialogs, AMaximumFollowsTheNumberAsTheFieldIsLeft) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"Edit", "Lines", "Input", "Section..."});
        person.waitForBox(QStringLiteral("CInputSection"));
        const auto sectionsOf = [&person](std::size_t patch) {
            return person.ask(
                [patch] { return QString::number(WindowDriver::frame().document().patches[patch].size()); });
        };
        ASSERT_NE(sectionsOf(0), sectionsOf(2)) << "the model must tell the patches apart";
        EXPECT_EQ(typed(person, QStringLiteral("maximumSections")), sectionsOf(0));
        person.type("3");
        person.key("Tab");
        person.settle();
        EXPECT_EQ(typed(person, QStringLiteral("maximumSections")), sectionsOf(2));
        EXPECT_EQ(selected(person), QStringLiteral("section=1"));
    });
}

TEST(Dialogs, ClickingTheChoicesOfRebreakTurnsItsFieldsOnAndOff) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        inputSection(person, "1", "5");
        openRebreak(person);
        const QSet<QString> choices = {"regime.1", "regime.2", "function.1", "function.2", "style.1", "style.2"};
        const auto expectLive = [&](const QSet<QString>& fields, const char* when) {
            EXPECT_EQ(liveControls(person), choices + fields) << when;
        };
        expectLive({"exactness", "newCount", "compression", "firstPoint", "lastPoint", "capturedNumber"}, "as opened");

        person.clickWidget(QStringLiteral("function.2"));
        person.settle();
        expectLive({"newCount", "compression", "firstPoint", "lastPoint", "capturedNumber"}, "linear");

        person.clickWidget(QStringLiteral("regime.2"));
        person.settle();
        expectLive({"newCount", "compression", "firstPoint", "lastPoint", "firstCurve", "lastCurve"}, "all sections");

        const QString points = typed(person, QStringLiteral("newCount"));
        person.click(person.centreOf(QStringLiteral("newCount")));
        person.key("a", "Control_L");
        person.type("17");
        person.clickWidget(QStringLiteral("style.2"));
        person.settle();
        expectLive({}, "fit to the captured section");
        EXPECT_EQ(typed(person, QStringLiteral("newCount")), points) << "the whole section again";
        person.screenshot(QStringLiteral("rebreak-fit"));

        person.clickWidget(QStringLiteral("style.1"));
        person.clickWidget(QStringLiteral("regime.1"));
        person.clickWidget(QStringLiteral("function.1"));
        person.settle();
        expectLive({"exactness", "newCount", "compression", "firstPoint", "lastPoint", "capturedNumber"}, "back again");
    });
}

TEST(Dialogs, CancelChangesNothing) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        inputSection(person, "1", "5");
        const PatchList before = person.ask([] { return WindowDriver::frame().document().patches; });
        openRebreak(person);
        person.clickWidget(QStringLiteral("regime.2"));
        person.clickWidget(QStringLiteral("function.2"));
        person.click(person.centreOf(QStringLiteral("newCount")));
        person.key("a", "Control_L");
        person.type("17");
        person.key("Escape");
        ASSERT_TRUE(person.waitForNoBox());
        const CRebreak values = person.ask([] { return WindowDriver::frame().document().rebreakValues; });
        EXPECT_EQ(values.regime, 1);
        EXPECT_FALSE(values.law.linear);
        EXPECT_NE(values.law.newCount, 17);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().document().patches; }), before);
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().isWindowModified(); }));
    });
}

} // namespace
} // namespace velmora::test
