#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QDockWidget>
#include <QListWidget>
#include <QMouseEvent>

#include "CurvePlotPanel.h"
#include "FrameRig.h"
#include "VelmoraDoc.h"
#include "messages.h"
#include "temporary_folder.h"

// The panels beside the view: report, plot and journal.

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

QDockWidget& dock(FrameRig& rig, const char* id) {
    return *rig.frame.findChild<QDockWidget*>(QString::fromLatin1(id) + QStringLiteral(".panel"));
}

std::vector<std::string> linesOf(FrameRig& rig, const char* id) {
    std::vector<std::string> lines;
    const auto* list = dock(rig, id).findChild<QListWidget*>(QStringLiteral("lines"));
    for (int row = 0; row < list->count(); ++row) {
        lines.push_back(plainBytes(list->item(row)->text()));
    }
    return lines;
}

void click(FrameRig& rig, const char* id, const char* button) {
    dock(rig, id).findChild<QPushButton*>(QString::fromLatin1(button))->click();
}

TEST(Panels, AreShownAndHiddenByTheirCommands) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    for (const char* id : {"options.report", "options.curvePlot", "options.journal"}) {
        EXPECT_TRUE(dock(rig, id).isHidden()) << id;
        rig.run(id);
        EXPECT_FALSE(dock(rig, id).isHidden()) << id;
        EXPECT_TRUE(rig.menuEntry(id)->isChecked()) << id;
        rig.run(id);
        EXPECT_TRUE(dock(rig, id).isHidden()) << id;
    }
}

TEST(Panels, TheMarkInTheMenuFollowsAPanelThatWasClosed) {
    FrameRig rig;
    rig.run("options.journal");
    dock(rig, "options.journal").close();
    EXPECT_FALSE(rig.menuEntry("options.journal")->isChecked());
}

// ---- Journal --------------------------------------------------------------------------------------------------------

TEST(JournalPanel, GrowsWithWhatIsDone) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    const std::string opened = "open " + desk.model.string();
    EXPECT_THAT(linesOf(rig, "options.journal"), ElementsAre(opened));
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    rig.run("point.capture");
    rig.clickOn({1 + 1, 1, 0});
    EXPECT_THAT(linesOf(rig, "options.journal"), ElementsAre(opened, "run model.move deltaX=1", "run point.capture",
                                                             testing::StartsWith("capture point 1 ")));
}

TEST(JournalPanel, CopiesAllOrWhatIsSelected) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    rig.run("line.captureSection");
    click(rig, "options.journal", "copy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              qtText("open " + desk.model.string() + "\nrun line.captureSection\n"));
    rig.run("line.captureLine");
    auto* list = dock(rig, "options.journal").findChild<QListWidget*>(QStringLiteral("lines"));
    EXPECT_TRUE(list->item(2)->isSelected()) << "where the model stands";
    click(rig, "options.journal", "copy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              qtText("open " + desk.model.string() + "\nrun line.captureSection\nrun line.captureLine\n"));
    list->item(1)->setSelected(true);
    click(rig, "options.journal", "copy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("run line.captureSection\nrun line.captureLine\n"));
    rig.run("line.captureSection");
    EXPECT_FALSE(list->item(3)->isSelected()) << "lines that were picked out stay so";
}

TEST(JournalPanel, CopiesTheNumbersThatTheLastClickLeft) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    rig.run("point.capture");
    rig.frame.session().act({.kind = Act::Kind::Beside, .patch = 0, .section = 1, .point = 0});
    click(rig, "options.journal", "copy");
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              qtText("open " + desk.model.string() + "\nrun point.capture\ncapture beside 1 2 1\n"));
}

namespace {

/// The rows that are highlighted, from 0.
std::vector<int> highlighted(const QListWidget& list) {
    std::vector<int> rows;
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->isSelected()) {
            rows.push_back(row);
        }
    }
    return rows;
}

/// As the hand does it: the click selects the line.
void clickLine(QListWidget& list, int row) {
    list.setCurrentRow(row);
    emit list.itemClicked(list.item(row));
}

} // namespace

TEST(JournalPanel, TheHighlightIsWhereTheModelStands) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    auto* list = dock(rig, "options.journal").findChild<QListWidget*>(QStringLiteral("lines"));
    for (const char* by : {"1", "2"}) {
        rig.person.atDialog("CBlockMove", {{"deltaX", by}});
        rig.run("model.move");
    }
    EXPECT_THAT(highlighted(*list), ElementsAre(2));
    clickLine(*list, 0);
    EXPECT_THAT(highlighted(*list), ElementsAre(0));
    rig.person.atDialog("CBlockMove", {{"deltaX", "3"}});
    rig.run("model.move");
    EXPECT_THAT(highlighted(*list), ElementsAre(1)) << "something new was done";
    rig.frame.session().document().freeMemory = [] { return std::uint64_t{0}; };
    rig.person.atDialog("CBlockMove", {{"deltaX", "4"}});
    rig.run("model.move");
    clickLine(*list, 0);
    EXPECT_EQ(rig.doc().status, message::stateNotKept);
    EXPECT_THAT(highlighted(*list), ElementsAre(2)) << "the model did not go there";
}

TEST(JournalPanel, AMoveOfADragLeadsToItsEnd) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    auto* list = dock(rig, "options.journal").findChild<QListWidget*>(QStringLiteral("lines"));
    rig.run("point.capture");
    rig.frame.session().act({.kind = Act::Kind::Point, .patch = 0, .section = 0, .point = 0});
    rig.run("point.drag");
    const zVec<double> from = rig.doc().patches[0][0][0];
    for (const zVec<double>& place : {rig.doc().patches[0][0][1], rig.doc().patches[0][1][0]}) {
        rig.frame.session().act({.kind = Act::Kind::Drag, .place = place});
    }
    rig.frame.session().act({.kind = Act::Kind::Release});
    const zVec<double> to = rig.doc().patches[0][0][0];
    rig.run("point.exit");
    ASSERT_EQ(list->count(), 8);
    clickLine(*list, 4);
    EXPECT_EQ(rig.doc().patches[0][0][0], to);
    EXPECT_THAT(highlighted(*list), ElementsAre(6)) << "the release";
    EXPECT_NE(rig.doc().status, message::stateNotKept);
    clickLine(*list, 5);
    EXPECT_THAT(highlighted(*list), ElementsAre(6)) << "there already";
    clickLine(*list, 3);
    EXPECT_EQ(rig.doc().patches[0][0][0], from);
    EXPECT_THAT(highlighted(*list), ElementsAre(3));
}

TEST(JournalPanel, RunsAScriptAndStopsAtItsFirstError) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const TemporaryFolder folder;
    writeFileText(folder / "a.script",
                  "\xef\xbb\xbfrun model.move deltaX=2\nrun point.capture\ncapture point 1 1 1\ncapture point 1 1 2\n"
                  "run model.move deltaX=5\n");
    rig.person.at("messageBox", [](QWidget& box) {
        const std::string text = plainBytes(dynamic_cast<QMessageBox&>(box).text());
        EXPECT_THAT(text, HasSubstr("The script ended at line 4: capture point 1 1 2\n\nnothing waits for"));
        dynamic_cast<QDialog&>(box).accept();
    });
    const double before = rig.doc().patches[0][0][0].x;
    rig.frame.runScript(folder / "a.script");
    EXPECT_EQ(rig.doc().patches[0][0][0].x, before + 2.0) << "what stands behind the error was not done";
    EXPECT_TRUE(rig.doc().capture->pointCaptured);
    EXPECT_TRUE(rig.frame.isWindowModified());
    EXPECT_EQ(rig.frame.session().journal().lines().back(), "capture point 1 1 1");
}

TEST(JournalPanel, AScriptAnswersInThePlaceOfThePerson) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    const TemporaryFolder folder;
    writeFileText(folder / "a.script",
                  "run file.open answer=yes file=" + desk.model.string() + "\nrun line.inputSection section=2\n");
    rig.frame.runScript(folder / "a.script");
    EXPECT_EQ(rig.doc().capture->capturedSection, 1);
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move"); // the person is asked again
    EXPECT_TRUE(rig.person.isDone());
}

TEST(JournalPanel, AScriptLeavesAsTheWindowWould) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.frame.show();
    const TemporaryFolder folder;
    writeFileText(folder / "unanswered.script", "run model.move deltaX=1\nquit\nrun model.move deltaX=1\n");
    rig.person.at("messageBox", [](QWidget& box) {
        EXPECT_THAT(plainBytes(dynamic_cast<QMessageBox&>(box).text()),
                    HasSubstr("line 2: quit\n\nthe question \"Save data before exit\" has no answer"));
        dynamic_cast<QDialog&>(box).accept();
    });
    rig.frame.runScript(folder / "unanswered.script");
    EXPECT_FALSE(rig.frame.isHidden());
    const double moved = rig.doc().patches[0][0][0].x;
    writeFileText(folder / "leave.script", "run file.exit answer=no\nrun model.move deltaX=1\n");
    rig.frame.runScript(folder / "leave.script");
    EXPECT_TRUE(rig.frame.isHidden());
    EXPECT_EQ(rig.doc().patches[0][0][0].x, moved) << "nothing is done behind it";
    EXPECT_TRUE(rig.person.isDone());
}

TEST(JournalPanel, AScriptThatIsNotThereIsTold) {
    FrameRig rig;
    rig.person.atMessage(QStringLiteral("The script cannot be read: /nowhere/a.script"));
    rig.frame.runScript("/nowhere/a.script");
    EXPECT_TRUE(rig.person.isDone());
}

TEST(JournalPanel, AClickOnALineGoesBackAndForth) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    for (const char* by : {"1", "2"}) {
        rig.person.atDialog("CBlockMove", {{"deltaX", by}});
        rig.run("model.move");
    }
    auto* list = dock(rig, "options.journal").findChild<QListWidget*>(QStringLiteral("lines"));
    ASSERT_EQ(list->count(), 3);
    const double opened = rig.doc().patches[0][0][0].x - 3.0;
    const auto lines = linesOf(rig, "options.journal");
    emit list->itemClicked(list->item(0));
    EXPECT_EQ(rig.doc().patches[0][0][0].x, opened);
    EXPECT_FALSE(rig.frame.isWindowModified());
    EXPECT_EQ(linesOf(rig, "options.journal"), lines) << "what is gone back over stays to be seen";
    EXPECT_FALSE(list->item(0)->font().italic());
    EXPECT_TRUE(list->item(1)->font().italic());
    click(rig, "options.journal", "copy");
    EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith(QStringLiteral("deltaX=2\n"))) << "all that is seen";
    emit list->itemClicked(list->item(1));
    EXPECT_EQ(rig.doc().patches[0][0][0].x, opened + 1.0);
    EXPECT_TRUE(rig.frame.isWindowModified());
    rig.person.atDialog("CBlockMove", {{"deltaX", "10"}});
    rig.run("model.move");
    EXPECT_EQ(rig.doc().patches[0][0][0].x, opened + 11.0);
    EXPECT_EQ(list->count(), 3);
    EXPECT_EQ(linesOf(rig, "options.journal").back(), "run model.move deltaX=10");
    EXPECT_FALSE(list->item(2)->font().italic());
}

TEST(JournalPanel, WhatIsNotKeptAnyMoreIsTold) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.journal");
    rig.frame.session().document().freeMemory = [] { return std::uint64_t{0}; };
    rig.person.atDialog("CBlockMove", {{"deltaX", "1"}});
    rig.run("model.move");
    auto* list = dock(rig, "options.journal").findChild<QListWidget*>(QStringLiteral("lines"));
    const double moved = rig.doc().patches[0][0][0].x;
    emit list->itemClicked(list->item(0));
    EXPECT_EQ(rig.doc().patches[0][0][0].x, moved);
    EXPECT_EQ(rig.doc().status, message::stateNotKept);
}

// ---- Report ---------------------------------------------------------------------------------------------------------

TEST(ReportPanel, FollowsTheModelAndLeadsToAPlace) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.run("options.report");
    const auto before = linesOf(rig, "options.report");
    ASSERT_FALSE(before.empty());
    rig.person.atDialog("CBlockMove", {{"deltaX", "100"}});
    rig.run("model.move");
    EXPECT_NE(linesOf(rig, "options.report")[0], before[0]) << "the box";
    auto* list = dock(rig, "options.report").findChild<QListWidget*>(QStringLiteral("lines"));
    const auto found = list->findItems(QStringLiteral("    largest step"), Qt::MatchStartsWith);
    ASSERT_FALSE(found.isEmpty());
    emit list->itemClicked(found.first());
    EXPECT_TRUE(rig.doc().capture->pointCaptured);
    EXPECT_THAT(rig.frame.session().journal().lines().back(), testing::StartsWith("capture point 1 "));
}

// ---- Plot -----------------------------------------------------------------------------------------------------------

class PlotPanel : public testing::Test {
protected:
    PlotPanel() {
        rig.person.atDialog("CInputSection", {});
        rig.run("line.inputSection");
        rig.run("options.curvePlot");
        panel = dynamic_cast<CurvePlotPanel*>(&dock(rig, "options.curvePlot"));
        panel->plot().resize(400, 300);
    }

    /// Where the plot shows point `i` of the curve.
    QPointF placeOf(std::size_t i) const {
        const PlotWidget& plot = panel->plot();
        const PlotPoint& point = plot.plot().curve.pieces.at(0).at(i);
        const FramePlace at = placeIn(plot.frame(), plot.plot(), point.along, point.value);
        return {at.x, at.y};
    }
    void mouse(QEvent::Type type, const QPointF& at, Qt::MouseButton button) {
        QMouseEvent event(type, at, panel->plot().mapToGlobal(at), button, button, Qt::NoModifier);
        QApplication::sendEvent(&panel->plot(), &event);
    }

    FlatDesk desk;
    FrameRig rig{desk.model};
    CurvePlotPanel* panel = nullptr;
};

TEST_F(PlotPanel, ShowsTheCapturedSectionWithItsNeighbour) {
    EXPECT_EQ(panel->curve(), rig.doc().patches[0][0]);
    EXPECT_EQ(panel->plot().plot().quantity, PlotQuantity::Step);
    EXPECT_EQ(panel->plot().plot().neighbours.size(), 1U) << "the first section has one behind it alone";
    panel->findChild<QComboBox*>(QStringLiteral("quantity"))->setCurrentIndex(3);
    EXPECT_EQ(panel->plot().plot().quantity, PlotQuantity::X);
    rig.person.atDialog("CBlockMove", {{"deltaX", "100"}});
    rig.run("line.move");
    EXPECT_EQ(panel->plot().plot().curve.pieces.at(0).at(0).value, rig.doc().patches[0][0][0].x);
}

TEST_F(PlotPanel, ShowsWhatTheOpenDialogOfRebreakWouldGive) {
    const PointList before = rig.doc().patches[0][0];
    rig.person.at("CRebreak", [this](QWidget& dialog) {
        auto* const count = dialog.findChild<QLineEdit*>(QStringLiteral("newCount"));
        count->setText(QStringLiteral("7"));
        emit count->editingFinished();
        EXPECT_EQ(panel->curve().size(), 7U);
        EXPECT_EQ(panel->plot().plot().neighbours.size(), 2U) << "the curve as it stands, and the one behind it";
        EXPECT_EQ(rig.doc().patches[0][0].size(), 7U) << "the view shows it as well";
        dynamic_cast<QDialog&>(dialog).reject();
    });
    rig.run("line.rebreak");
    EXPECT_EQ(rig.doc().patches[0][0], before);
    EXPECT_EQ(panel->curve(), before);
    EXPECT_EQ(panel->plot().plot().neighbours.size(), 1U);
}

TEST_F(PlotPanel, APointUnderTheCursorIsMarkedInThePicture) {
    panel->findChild<QComboBox*>(QStringLiteral("quantity"))->setCurrentIndex(3);
    rig.view().OnDraw();
    const std::size_t batches = rig.view().overlay().list.batches.size();
    mouse(QEvent::MouseMove, placeOf(1), Qt::NoButton);
    rig.view().OnDraw();
    EXPECT_GT(rig.view().overlay().list.batches.size(), batches);
    mouse(QEvent::MouseMove, {1, 1}, Qt::NoButton);
    rig.view().OnDraw();
    EXPECT_EQ(rig.view().overlay().list.batches.size(), batches);
}

TEST_F(PlotPanel, AClickCapturesThePoint) {
    panel->findChild<QComboBox*>(QStringLiteral("quantity"))->setCurrentIndex(3);
    mouse(QEvent::MouseButtonPress, placeOf(1), Qt::LeftButton);
    EXPECT_TRUE(rig.doc().capture->pointCaptured);
    EXPECT_TRUE(rig.doc().capture->sectionCaptured) << "the point lies on it";
    EXPECT_EQ(rig.doc().capture->capturedPoint, 1);
}

TEST_F(PlotPanel, AClickLetsMeasuringGoOn) {
    VelmoraView& view = rig.frame.session().view();
    rig.run("view.measure");
    mouse(QEvent::MouseButtonPress, placeOf(1), Qt::LeftButton);
    EXPECT_TRUE(rig.doc().capture->pointCaptured);
    EXPECT_EQ(view.mouseMode, ModeMeasure);
    view.OnKeyDown(ViewKey::Escape);
    EXPECT_EQ(view.mouseMode, ModePoint) << "the point has its button back";
    EXPECT_TRUE(rig.frame.isVisible());
}

TEST_F(PlotPanel, TellsWhyItIsEmpty) {
    rig.run("line.exit");
    EXPECT_EQ(panel->plot().hint(), QStringLiteral("Capture a section or a line"));
    panel->plot().showPlot(curvePlot(PlotQuantity::Growth, {{0, 0, 0}, {1, 0, 0}}, {}));
    EXPECT_EQ(panel->plot().hint(), QStringLiteral("Growth has no value here")) << "at two ends there is none";
}

} // namespace
} // namespace velmora::test
