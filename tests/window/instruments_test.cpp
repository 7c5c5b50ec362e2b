#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QDockWidget>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "CurvePlotPanel.h"
#include "Desk.h"
#include "DocumentState.h"
#include "Process.h"
#include "WindowDriver.h"
#include "pixel_of.h"

// The worked example of the guide's instruments, by mouse and keyboard: look at the report, plot a section, space it
// anew with the plot at hand, compare with the original, measure, keep picture, model and journal.

namespace velmora::test {
namespace {

QDockWidget* dock(const char* id) {
    return WindowDriver::frame().findChild<QDockWidget*>(QString::fromLatin1(id) + QStringLiteral(".panel"));
}

QStringList linesOf(WindowDriver& person, const char* id) {
    return person.ask([id] {
        QStringList lines;
        const auto* list = dock(id)->findChild<QListWidget*>(QStringLiteral("lines"));
        for (int row = 0; row < list->count(); ++row) {
            lines.append(list->item(row)->text());
        }
        return lines;
    });
}

std::size_t plottedPoints(WindowDriver& person) {
    return person.ask([] { return dynamic_cast<CurvePlotPanel*>(dock("options.curvePlot"))->curve().size(); });
}

/// Gives the chooser that is open a path.
void choosePath(WindowDriver& person, const std::filesystem::path& path) {
    person.waitForBox(QStringLiteral("fileChooser"));
    person.clickWidget(QStringLiteral("fileNameEdit"));
    person.key("a", "Control_L");
    person.type(path.string());
    person.key("Return");
    ASSERT_TRUE(person.waitForNoBox());
}

void focusField(WindowDriver& person, const char* name) {
    const auto focused = [] { return QApplication::focusWidget()->objectName(); };
    for (int tab = 0; tab < 12 && person.ask(focused) != QLatin1String(name); ++tab) {
        person.key("Tab");
        person.settle();
    }
    ASSERT_EQ(person.ask(focused), QLatin1String(name));
}

/// Points a button of a panel with the mouse.
void clickButton(WindowDriver& person, const char* id, const char* button) {
    person.click(person.ask([=] {
        const auto* widget = dock(id)->findChild<QPushButton*>(QLatin1String(button));
        return widget->mapToGlobal(widget->rect().center());
    }));
}

void lookAtTheReport(WindowDriver& person) {
    person.choose({"Options", "Model report"});
    ASSERT_TRUE(person.waitFor([] { return dock("options.report")->isVisible(); }));
    const QStringList report = linesOf(person, "options.report");
    EXPECT_FALSE(report.filter(QStringLiteral("largest step")).isEmpty());
    person.choose({"Options", "Model report"});
}

void plotASection(WindowDriver& person) {
    person.choose({"Options", "Curve plot"});
    person.choose({"Edit", "Lines", "Input", "Section..."});
    person.waitForBox(QStringLiteral("CInputSection"));
    focusField(person, "section");
    person.key("a", "Control_L");
    person.type("9");
    person.key("Return");
    ASSERT_TRUE(person.waitForNoBox());
    const std::size_t points = person.ask([] { return WindowDriver::frame().state().patches[0][8].size(); });
    EXPECT_EQ(plottedPoints(person), points);
}

/// Plot and picture follow what is typed, though nobody left the field; the model is changed by what is confirmed.
void spaceItAnew(WindowDriver& person) {
    person.click(person.onView({40, 40}), WindowDriver::rightButton);
    ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
    person.clickEntry(QStringLiteral("Rebreak..."));
    person.waitForBox(QStringLiteral("CRebreak"));
    person.clickWidget(QStringLiteral("regime.2"));
    focusField(person, "newCount");
    person.type("37");
    EXPECT_TRUE(
        person.waitFor([] { return dynamic_cast<CurvePlotPanel*>(dock("options.curvePlot"))->curve().size() == 37; }));
    EXPECT_FALSE(person.ask([] { return WindowDriver::frame().state().documentModified; }));
    person.screenshot(QStringLiteral("plot-live"));
    person.key("Return");
    ASSERT_TRUE(person.waitForNoBox());
    EXPECT_TRUE(person.ask([] { return WindowDriver::frame().state().documentModified; }));
    EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().patches[0][8].size(); }), 37U);
}

/// Two clicks on points of the section; the key that would close the window ends it.
void measureTheSection(WindowDriver& person) {
    person.choose({"View", "Measure"});
    for (const std::size_t m : {std::size_t{2}, std::size_t{8}}) {
        person.click(person.onView(person.ask([m] {
            MainFrame& frame = WindowDriver::frame();
            return pixelOf(frame.view(), frame.state(), frame.state().patches[0][8][m]);
        })));
        person.settle();
    }
    EXPECT_TRUE(person.waitFor([] {
        return QString::fromStdString(WindowDriver::frame().state().status).startsWith(QStringLiteral("Distance "));
    }));
    person.screenshot(QStringLiteral("measured"));
    person.key("Escape");
    EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().view().mouseMode != ModeMeasure; }));
}

void savePictures(WindowDriver& person, const std::filesystem::path& file) {
    person.choose({"File", "Save picture..."});
    person.waitForBox(QStringLiteral("CPicture"));
    person.key("Return");
    choosePath(person, file);
    person.choose({"File", "Copy picture"});
    EXPECT_TRUE(person.waitFor([] { return !QGuiApplication::clipboard()->image().isNull(); }));
    const QImage copied = person.ask([] { return QGuiApplication::clipboard()->image(); });
    const QImage saved(QString::fromStdString(file.string()));
    EXPECT_GT(saved.width(), 100);
    EXPECT_EQ(copied.convertToFormat(QImage::Format_RGB32), saved.convertToFormat(QImage::Format_RGB32));
}

void compareWithTheOriginal(WindowDriver& person, const std::filesystem::path& original) {
    person.choose({"Transformations", "Compare..."});
    person.waitForBox(QStringLiteral("CCompare"));
    for (int i = 0; i < 2; ++i) {
        person.key("Down"); // to "File"
        person.settle();
    }
    person.key("Return");
    choosePath(person, original);
    EXPECT_TRUE(person.waitFor([] {
        return QString::fromStdString(WindowDriver::frame().state().status)
            .startsWith(QStringLiteral("Largest distance "));
    }));
}

void saveDistances(WindowDriver& person, const std::filesystem::path& table) {
    person.choose({"Transformations", "Save distances..."});
    choosePath(person, table);
}

TEST(Instruments, OneWingFromTheReportToTheJournal) {
    const Desk desk;
    const Desk original;
    const auto picture = desk.folder / "wing.png";
    const auto journal = desk.folder / "wing.script";
    const auto saved = desk.folder / "fine.apt";
    const auto table = desk.folder / "distances.csv";
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        lookAtTheReport(person);
        plotASection(person);
        spaceItAnew(person);
        compareWithTheOriginal(person, original.model);
        saveDistances(person, table);
        measureTheSection(person);
        savePictures(person, picture);
        person.choose({"File", "Save As..."});
        choosePath(person, saved);
        person.choose({"Options", "Journal"});
        ASSERT_TRUE(person.waitFor([] { return dock("options.journal")->isVisible(); }));
        clickButton(person, "options.journal", "save");
        choosePath(person, journal);
        EXPECT_EQ(linesOf(person, "options.journal").size(), 6);
    });
    const std::string bytes = fileText(saved);
    const std::string rows = fileText(table);
    ASSERT_FALSE(bytes.empty());
    ASSERT_FALSE(rows.empty());
    std::filesystem::remove(saved);
    std::filesystem::remove(table);
    const ProcessResult run = runProcess({VELMORA_BATCH, journal.string()}, desk.folder.path());
    EXPECT_EQ(run.status, 0) << fileText(journal) << run.errors;
    EXPECT_EQ(fileText(saved), bytes);
    EXPECT_EQ(fileText(table), rows);
}

// ---- Scripts that leave ----------------------------------------------------------------------------------------------

/// Runs the program with a script that moves the model and then says `last`; gives its status.
int runScriptWithEnd(const Desk& desk, const std::string& last, const std::function<void(WindowDriver&)>& person) {
    const auto script = desk.folder / "leave.script";
    writeFileText(script, "open \"" + desk.model.string() + "\"\nrun model.move deltaX=1\npicture \"" +
                              (desk.folder / "moved.png").string() + "\"\n" + last + "\nrun model.move deltaX=1\n");
    return runProgram({"--no-rescue", "--run", script.string()}, person);
}

TEST(Instruments, AScriptThatLeavesEndsTheProgram) {
    for (const char* last : {"quit answer=no", "run file.exit answer=no"}) {
        const Desk desk;
        const std::string before = fileText(desk.model);
        EXPECT_EQ(runScriptWithEnd(desk, last, [](WindowDriver& person) { EXPECT_TRUE(person.waitForEnd()); }), 0);
        EXPECT_FALSE(QImage(QString::fromStdString((desk.folder / "moved.png").string())).isNull());
        EXPECT_EQ(fileText(desk.model), before) << last;
    }
    const Desk desk;
    const std::string before = fileText(desk.model);
    EXPECT_EQ(runScriptWithEnd(desk, "quit answer=yes", [](WindowDriver& person) { EXPECT_TRUE(person.waitForEnd()); }),
              0);
    EXPECT_NE(fileText(desk.model), before) << "it was saved";
}

TEST(Instruments, AScriptDoesNotLeaveByAQuestionWithoutAnAnswer) {
    const Desk desk;
    runScriptWithEnd(desk, "quit", [](WindowDriver& person) {
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_TRUE(person.boxText().startsWith(QStringLiteral("The script ended at line 4: quit\n\nthe question ")))
            << person.boxText().toStdString();
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().state().documentModified; }));
    });
}

} // namespace
} // namespace velmora::test
