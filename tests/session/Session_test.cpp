#include "Session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "DocumentState.h"
#include "FakeSurface.h"
#include "RecordingUi.h"
#include "arranged_capture.h"
#include "messages.h"
#include "small_models.h"

namespace velmora::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// A front end without a window, which keeps what was asked of it.
class NotedShell : public ShellCommands {
public:
    std::vector<std::string> calls;

    void exit() override { calls.emplace_back("exit"); }
    void showGuide() override { calls.emplace_back("guide"); }
    void showKeys() override { calls.emplace_back("keys"); }
    void showAbout() override { calls.emplace_back("about"); }
    void savePicture() override { calls.emplace_back("picture"); }
    void copyPicture() override { calls.emplace_back("copy"); }
    void showPanel(Panel panel) override { calls.push_back("panel " + std::to_string(static_cast<int>(panel))); }
    void toggleToolBars() override { calls.emplace_back("tool bars"); }
    void toggleStatusBar() override { calls.emplace_back("status bar"); }
};

/// A session as after the start, and a folder with plate.apt in it.
class SessionTest : public testing::Test {
protected:
    SessionTest() {
        writeFileText(folder / "plate.apt", "2 3\n0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n");
        session.view().OnCreate();
        session.view().OnSize(600, 600);
        session.start();
        person.transcript.clear();
    }

    CommandReport run(const char* id) { return session.run(*findCommand(id)); }
    DocumentState& doc() { return session.state(); }

    /// Opens the plate and moves it.
    void changePlate() {
        session.open({folder / "plate.apt"});
        person.dialogs = {{{"deltaX", "1"}}};
        run("model.move");
        ASSERT_TRUE(doc().documentModified);
        person.transcript.clear();
    }

    TemporaryFolder folder;
    RecordingUi person;
    FakeSurface surface;
    NotedShell shell;
    Session session{person, surface, shell, folder.path()};
};

// ---- Commands -------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, TheDocumentTheViewAndTheShellRunTheirCommands) {
    session.open({folder / "plate.apt"});
    const CommandReport input = run("line.inputSection");
    EXPECT_THAT(input.dialogs, testing::SizeIs(1)) << "the document's";
    run("view.perspective");
    EXPECT_EQ(session.view().projectionMode, 0) << "the view's";
    run("help.topics");
    EXPECT_THAT(shell.calls, ElementsAre("guide")) << "the shell's";
}

TEST_F(SessionTest, EveryShellCommandOfTheTableIsCarriedOut) {
    for (const Command& command : commandTable()) {
        shell.calls.clear();
        EXPECT_EQ(runShellCommand(shell, command.id), command.owner == CommandOwner::Shell) << command.id;
        EXPECT_EQ(shell.calls.size(), command.owner == CommandOwner::Shell ? 1U : 0U) << command.id;
    }
}

TEST_F(SessionTest, EachShellCommandDoesItsOwn) {
    for (const char* id :
         {"file.exit", "file.picture", "file.copyPicture", "view.toolbar", "view.statusBar", "options.report",
          "options.curvePlot", "options.journal", "help.topics", "help.keys", "help.fileReport", "help.about"}) {
        run(id);
    }
    EXPECT_THAT(shell.calls, ElementsAre("exit", "picture", "copy", "tool bars", "status bar", "panel 0", "panel 1",
                                         "panel 2", "guide", "keys", "panel 3", "about"));
}

TEST_F(SessionTest, TellsWhenAnEditTakesTheDistancesShownAway) {
    const std::string lost = "The distances shown were of the model before: Compare finds new ones";
    const auto move = [&](const char* by) {
        person.dialogs = {{{"deltaX", by}}};
        run("model.move");
    };
    writeFileText(folder / "other.apt", "2 2\n0 0 1\n2 0 1\n0 1 1\n2 1 1\n");
    session.open({folder / "plate.apt"});
    person.dialogs = {{{"target", "3"}}};
    person.files = {{folder / "other.apt"}};
    run("model.compare");
    ASSERT_NE(doc().comparison(), nullptr);
    person.dialogs = {{{"quantity", "2"}}};
    run("view.colourByValue");
    const auto told = [&] { return std::count(person.transcript.begin(), person.transcript.end(), "status: " + lost); };
    move("0");
    EXPECT_EQ(told(), 0) << "nothing moved";
    move("1");
    EXPECT_EQ(doc().status, lost);
    move("1");
    EXPECT_EQ(told(), 1) << "once";
    run("patch.undo");
    person.dialogs = {{{"target", "3"}}};
    person.files = {{folder / "other.apt"}};
    run("model.compare");
    ASSERT_NE(doc().comparison(), nullptr);
    run("view.surface");
    move("1");
    EXPECT_EQ(told(), 1) << "they were not seen";
}

TEST_F(SessionTest, WhatCameOfTheFilesStaysKnownUntilTheNextFile) {
    EXPECT_THAT(session.filesRead(), IsEmpty());
    session.open({folder / "plate.apt"});
    ASSERT_THAT(session.filesRead(), testing::SizeIs(1));
    EXPECT_EQ(session.filesRead()[0].path, folder / "plate.apt");
    run("view.top");
    person.files = {{folder / "no.apt"}};
    run("file.append"); // not there: nothing was read
    EXPECT_THAT(session.filesRead(), testing::SizeIs(1));
    writeFileText(folder / "point.apt", "1 1\n0 0 0\n");
    person.files = {{folder / "point.apt"}};
    run("file.append");
    ASSERT_THAT(session.filesRead(), testing::SizeIs(1));
    EXPECT_EQ(session.filesRead()[0].path, folder / "point.apt");
    session.open({folder / "plate.apt", folder / "point.apt"});
    EXPECT_THAT(session.filesRead(), testing::SizeIs(2)) << "all that one command read";
}

TEST_F(SessionTest, ACommandThatIsOffDoesNothing) {
    ASSERT_FALSE(session.isOn(*findCommand("model.move")));
    person.dialogs = {{}};
    const CommandReport report = run("model.move");
    EXPECT_THAT(person.transcript, IsEmpty());
    EXPECT_THAT(report.dialogs, IsEmpty());
    EXPECT_TRUE(report.off);
    EXPECT_EQ(report.outcome(), Outcome::Refused);
}

TEST_F(SessionTest, TheStatesOfDocumentAndViewTurnCommandsOff) {
    const Command& drag = *findCommand("point.dragAndCorrect");
    session.open({folder / "plate.apt"});
    run("view.top");
    session.view().OnDraw();
    EXPECT_FALSE(session.isOn(drag)) << "nothing is captured";
    holdSection(doc(), 0, 0);
    holdPoint(doc(), 0, 0, 1);
    EXPECT_TRUE(session.isOn(drag));
    run("view.iso");
    session.view().OnDraw();
    EXPECT_FALSE(session.isOn(drag)) << "the view is oblique";
}

TEST_F(SessionTest, ACommandIsReportedWithWhatWasSaidAskedAndAnswered) {
    session.open({folder / "plate.apt"});
    person.answers = {true};
    person.files = {{folder / "nothing.apt"}};
    const CommandReport report = run("file.open");
    ASSERT_THAT(report.questions, testing::SizeIs(1));
    EXPECT_EQ(report.questions[0].answer, Answer::Yes);
    ASSERT_THAT(report.choosers, testing::SizeIs(1));
    EXPECT_EQ(report.choosers[0].command, "file.open");
    ASSERT_GE(report.messages.size(), 1U);
    EXPECT_EQ(report.messages[0].text, "It is impossible to open selected file");
    EXPECT_EQ(report.outcome(), Outcome::Failed);
    EXPECT_FALSE(report.writeFailed());
}

TEST_F(SessionTest, WorkOfManyStepsHasOneReport) {
    CommandReport moved;
    const CommandReport report = session.perform([&] {
        session.open({folder / "plate.apt"});
        moved = run("model.move");
    });
    EXPECT_THAT(moved.titles, IsEmpty());
    EXPECT_EQ(moved.outcome(), Outcome::Cancelled) << "nobody answered its dialog";
    EXPECT_THAT(report.titles, ElementsAre("plate.apt"));
    EXPECT_EQ(report.outcome(), Outcome::Cancelled);
}

// ---- Files ----------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, OpensByPathWithoutAQuestion) {
    changePlate();
    EXPECT_EQ(session.open({folder / "plate.apt"}).outcome(), Outcome::Ok);
    EXPECT_FALSE(doc().documentModified);
    EXPECT_THAT(person.transcript, Not(Contains(testing::StartsWith("question"))));
}

TEST_F(SessionTest, OpensInsteadOfAModelThatMayBeSavedFirst) {
    changePlate();
    writeFileText(folder / "other.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    person.answers = {true};
    const CommandReport report = session.openInstead({folder / "other.apt"});
    EXPECT_EQ(report.outcome(), Outcome::Ok);
    EXPECT_THAT(report.titles, Contains("other.apt"));
    EXPECT_THAT(fileText(folder / "plate.apt"), testing::StartsWith("2 3\n1"));
}

TEST_F(SessionTest, AModelThatCannotBeSavedIsNotReplaced) {
    changePlate();
    doc().modelFile.chosenPath = folder / "gone" / "plate.apt";
    person.answers = {true};
    const CommandReport report = session.openInstead({folder / "plate.apt"});
    EXPECT_EQ(report.outcome(), Outcome::Failed);
    EXPECT_TRUE(report.writeFailed());
    EXPECT_TRUE(doc().documentModified);
    EXPECT_EQ(doc().patches[0][0][0].x, 1.0) << "the model that was moved";
}

TEST_F(SessionTest, OnlyFilesThatWereOpenedAreRecent) {
    session.open({folder / "nothing.apt"});
    session.open({folder / "wing.foo"});
    EXPECT_THAT(person.transcript, Not(Contains(testing::StartsWith("recent"))));
    session.open({folder / "plate.apt"});
    EXPECT_THAT(person.transcript, Contains("recent: " + (folder / "plate.apt").string()));
}

/// A grid whose file is read and written in several blocks.
std::string largeFile() {
    std::string text = "300 200\n";
    for (int n = 0; n < 300; ++n) {
        for (int m = 0; m < 200; ++m) {
            text += std::to_string(m / 7.0) + "00000000 " + std::to_string(n / 3.0) + "00000000 0.125000000000\n";
        }
    }
    return text;
}

TEST_F(SessionTest, AReadingThatIsCancelledLeavesTheModelThatWasThere) {
    changePlate();
    writeFileText(folder / "large.apt", largeFile());
    const PatchList before = doc().patches;
    const std::vector<std::string> lines = session.journal().lines();
    person.stops = true;
    const CommandReport report = session.open({folder / "large.apt"});
    EXPECT_EQ(report.outcome(), Outcome::Cancelled);
    EXPECT_EQ(doc().patches, before);
    EXPECT_EQ(doc().modelFile.documentTitle, "plate.apt");
    EXPECT_TRUE(doc().documentModified);
    EXPECT_EQ(doc().status, message::workCancelled);
    EXPECT_EQ(session.journal().lines(), lines);
    EXPECT_THAT(session.filesRead(), testing::SizeIs(1)) << "those of the file before";
}

// ---- Leaving --------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, LeavesWithoutAQuestionWhenNothingChanged) {
    EXPECT_TRUE(session.leave());
    EXPECT_THAT(person.transcript, IsEmpty());
}

TEST_F(SessionTest, ASaveThatIsCancelledOnLeavingKeepsTheProgramAndTheFile) {
    writeFileText(folder / "large.apt", largeFile());
    session.open({folder / "large.apt"});
    doc().documentModified = true;
    person.answers = {true};
    person.stops = true;
    EXPECT_FALSE(session.leave());
    EXPECT_TRUE(doc().documentModified);
    EXPECT_EQ(doc().status, message::workCancelled);
    EXPECT_EQ(fileText(folder / "large.apt"), largeFile());
    person.answers = {true};
    EXPECT_EQ(session.openInstead({folder / "plate.apt"}).outcome(), Outcome::Cancelled);
    EXPECT_EQ(doc().modelFile.documentTitle, "large.apt");
}

TEST_F(SessionTest, LeavesWithTheModelSavedOrNot) {
    changePlate();
    person.answers = {false};
    EXPECT_TRUE(session.leave());
    EXPECT_THAT(fileText(folder / "plate.apt"), testing::StartsWith("2 3\n0"));
    person.answers = {true};
    EXPECT_TRUE(session.leave());
    EXPECT_THAT(fileText(folder / "plate.apt"), testing::StartsWith("2 3\n1"));
}

TEST_F(SessionTest, StaysWhenTheModelCannotBeSaved) {
    changePlate();
    doc().modelFile.chosenPath = folder / "gone" / "plate.apt";
    person.answers = {true};
    bool left = true;
    const CommandReport report = session.perform([&] { left = session.leave(); });
    EXPECT_FALSE(left);
    EXPECT_TRUE(report.stayed);
    EXPECT_EQ(report.outcome(), Outcome::Failed);
    EXPECT_TRUE(doc().documentModified);
}

} // namespace
} // namespace velmora::test
