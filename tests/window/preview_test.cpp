#include <gtest/gtest.h>

#include "Desk.h"
#include "DocumentState.h"
#include "VelmoraDoc.h"
#include "WindowDriver.h"

namespace velmora::test {
namespace {

double firstX(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().state().patches[0][0][0].x; });
}

std::string bytesOf(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().document().rescueBytes(); });
}

void typeInto(WindowDriver& person, const QString& field, const std::string& text) {
    person.clickWidget(field);
    person.key("a", "Control_L");
    person.type(text);
    person.key("Tab");
    person.settle();
}

TEST(Preview, AFieldThatIsLeftMovesTheModelAndCancelMovesItBackToTheBit) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const std::string before = bytesOf(person);
        const double x = firstX(person);
        person.choose({"Transformations", "Move..."});
        person.waitForBox(QStringLiteral("CBlockMove"));
        typeInto(person, QStringLiteral("deltaX"), "0.75");
        EXPECT_EQ(firstX(person), x + 0.75);
        person.screenshot(QStringLiteral("preview-move"));
        typeInto(person, QStringLiteral("deltaY"), "1,5");
        EXPECT_EQ(firstX(person), x) << "a value that cannot be taken";
        typeInto(person, QStringLiteral("deltaY"), "1.5");
        EXPECT_EQ(firstX(person), x + 0.75);
        person.key("Escape");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(bytesOf(person), before);
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().state().documentModified; }));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().session().journal().lines().size(); }), 1U);
    });
}

/// Waits until the first point stands there.
bool comesTo(WindowDriver& person, double x) {
    return person.waitFor([x] { return WindowDriver::frame().state().patches[0][0][0].x == x; });
}

TEST(Preview, ANumberThatIsBeingTypedMovesTheModelOnceTheKeysRest) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const std::string before = bytesOf(person);
        const double x = firstX(person);
        person.choose({"Transformations", "Move..."});
        person.waitForBox(QStringLiteral("CBlockMove"));
        person.clickWidget(QStringLiteral("deltaX"));
        person.key("a", "Control_L");
        person.type("0.5");
        EXPECT_TRUE(comesTo(person, x + 0.5)) << "nobody left the field";
        person.type("x");
        EXPECT_TRUE(comesTo(person, x)) << "a number that cannot be taken";
        EXPECT_EQ(person.ask([] { return QApplication::activeModalWidget()->objectName(); }),
                  QStringLiteral("CBlockMove"))
            << "and no word about it";
        person.key("BackSpace");
        EXPECT_TRUE(comesTo(person, x + 0.5));
        person.key("Escape");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(bytesOf(person), before);
        person.choose({"Transformations", "Move..."});
        person.waitForBox(QStringLiteral("CBlockMove"));
        person.clickWidget(QStringLiteral("deltaX"));
        person.key("a", "Control_L");
        person.type("0.25");
        EXPECT_TRUE(comesTo(person, x + 0.25));
        person.key("Return");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(firstX(person), x + 0.25);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().session().journal().lines().back(); }),
                  "run model.move deltaX=0.25");
    });
}

TEST(Preview, IsThereFromTheBeginningBesideTheDialog) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const std::string before = bytesOf(person);
        person.choose({"Transformations", "Smooth geometry..."});
        person.waitForBox(QStringLiteral("CSmooth"));
        EXPECT_NE(bytesOf(person), before) << "as OK would leave it";
        const QPoint middle = person.onView({600, 300});
        EXPECT_FALSE(
            person.ask([middle] { return QApplication::activeModalWidget()->frameGeometry().contains(middle); }));
        person.key("Escape");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(bytesOf(person), before);
    });
}

TEST(Preview, OkRunsTheCommandOnce) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const std::string before = bytesOf(person);
        const double x = firstX(person);
        person.choose({"Transformations", "Move..."});
        person.waitForBox(QStringLiteral("CBlockMove"));
        typeInto(person, QStringLiteral("deltaX"), "0.5");
        typeInto(person, QStringLiteral("deltaX"), "0.25");
        EXPECT_EQ(firstX(person), x + 0.25);
        person.key("Return");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(firstX(person), x + 0.25);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().session().journal().lines().back(); }),
                  "run model.move deltaX=0.25");
        person.key("z", "Control_L");
        person.settle();
        EXPECT_EQ(firstX(person), x);
        EXPECT_EQ(bytesOf(person), before);
    });
}

} // namespace
} // namespace velmora::test
