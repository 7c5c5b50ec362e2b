#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <atomic>

#include "DocumentState.h"
#include "WindowDriver.h"
#include "large_body.h"
#include "messages.h"
#include "temporary_folder.h"

namespace velmora::test {
namespace {

std::size_t patchesOf(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().state().patches.size(); });
}

QString messagePane(const MainFrame& frame) {
    return frame.findChild<QLabel*>(QStringLiteral("message"))->text();
}

/// Opens the dialog of the conversion and gives it more planes than are cut within a second.
void beginLongSlice(WindowDriver& person) {
    person.choose({"Transformations", "Convert to", "SKL..."});
    person.waitForBox(QStringLiteral("CConvert_to_SKL"));
    person.clickWidget(QStringLiteral("number"));
    person.key("a", "Control_L");
    person.type("20000");
    person.key("Return");
}

/// Waits for the bar without asking the program for more than it can answer while it is at work.
bool barIsShown(WindowDriver& person) {
    return person.waitFor([] {
        const auto* cancel = WindowDriver::frame().findChild<QPushButton*>(QStringLiteral("cancelWork"));
        return cancel->isVisible();
    });
}

void expectAsBefore(WindowDriver& person, std::size_t zones) {
    EXPECT_TRUE(person.waitFor([] { return QApplication::overrideCursor() == nullptr; }));
    person.settle();
    EXPECT_EQ(person.status(), QString::fromLatin1(message::workCancelled));
    EXPECT_EQ(patchesOf(person), 0U);
    EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().feRegion.blocks.size(); }), zones);
    EXPECT_FALSE(person.ask([] { return WindowDriver::frame().state().documentModified; }));
    EXPECT_FALSE(person.ask(
        [] { return WindowDriver::frame().findChild<QPushButton*>(QStringLiteral("cancelWork"))->isVisible(); }));
}

TEST(LongWork, EscAndTheButtonGiveItUpAndNothingTypedMeanwhileActsAfterwards) {
    const TemporaryFolder folder;
    const std::filesystem::path body = writeLargeBody(folder / "body.dat", 200);
    runProgram({body.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const std::size_t zones = person.ask([] { return WindowDriver::frame().state().feRegion.blocks.size(); });
        ASSERT_EQ(zones, 1U);
        beginLongSlice(person);
        ASSERT_TRUE(barIsShown(person));
        EXPECT_EQ(person.ask([] { return messagePane(WindowDriver::frame()); }),
                  QStringLiteral("Convert unstructured grid to lines (SKL)"));
        person.screenshot(QStringLiteral("long-work"));
        person.key("n", "Control_L"); // New, which would ask
        person.click(person.onView({300, 300}), WindowDriver::rightButton);
        person.key("Escape");
        expectAsBefore(person, zones);
        EXPECT_EQ(person.ask([] { return QApplication::activeModalWidget(); }), nullptr);
        EXPECT_EQ(person.ask([] { return WindowDriver::openedMenu(); }), nullptr);

        beginLongSlice(person);
        ASSERT_TRUE(barIsShown(person));
        person.clickWidget(QStringLiteral("cancelWork"));
        expectAsBefore(person, zones);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().session().journal().lines().size(); }), 1U)
            << "the file that was opened";
    });
}

} // namespace
} // namespace velmora::test
