#include "History.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeSurface.h"
#include "RecordingUi.h"
#include "Session.h"
#include "VelmoraDoc.h"
#include "small_models.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StillShell : public ShellCommands {
public:
    void exit() override {}
    void showGuide() override {}
    void showKeys() override {}
    void showAbout() override {}
    void savePicture() override {}
    void copyPicture() override {}
    void showPanel(Panel) override {}
};

/// A session that keeps its history, with a model of three patches open: line 1 of the journal.
class HistoryTest : public testing::Test {
protected:
    HistoryTest() {
        session.view().OnCreate();
        session.view().OnSize(600, 600);
        session.start();
        session.keepHistory();
        std::string text;
        for (const double z : {0.0, 10.0, 20.0}) {
            text += "2 3\n";
            for (const double y : {0.0, 1.0}) {
                for (const double x : {0.0, 1.0, 2.0}) {
                    text += std::to_string(x) + ' ' + std::to_string(y) + ' ' + std::to_string(z) + '\n';
                }
            }
        }
        writeFileText(folder / "three.apt", text);
        session.open({folder / "three.apt"});
    }

    void moveX(const char* by) {
        person.dialogs = {{{"deltaX", by}, {"deltaY", "0"}, {"deltaZ", "0"}}};
        session.run(*findCommand("model.move"));
    }
    double firstX() { return session.state().patches.at(0).at(0).at(0).x; }
    VelmoraDoc& doc() { return session.document(); }

    TemporaryFolder folder;
    RecordingUi person;
    FakeSurface surface;
    StillShell shell;
    Session session{person, surface, shell, folder.path()};
};

TEST_F(HistoryTest, EachLineLeadsToTheModelAsItWasBehindIt) {
    moveX("1");
    moveX("2");
    ASSERT_EQ(session.journal().lines().size(), 3U);
    EXPECT_TRUE(session.goTo(1));
    EXPECT_EQ(firstX(), 0.0);
    EXPECT_FALSE(doc().documentModified) << "as the file has it";
    EXPECT_FALSE(doc().patchUndoReady);
    EXPECT_TRUE(session.goTo(3));
    EXPECT_EQ(firstX(), 3.0);
    EXPECT_TRUE(session.goTo(2));
    EXPECT_EQ(firstX(), 1.0);
    EXPECT_TRUE(doc().documentModified);
    session.run(*findCommand("patch.undo"));
    EXPECT_EQ(firstX(), 0.0) << "Undo has its one step, of that line";
}

TEST_F(HistoryTest, LaterLinesStayUntilSomethingNewIsDone) {
    moveX("1");
    moveX("2");
    const auto all = session.journal().lines();
    session.goTo(1);
    EXPECT_THAT(session.journal().lines(), ElementsAre(all[0]));
    EXPECT_THAT(session.journal().later(), ElementsAre(all[1], all[2]));
    session.run(*findCommand("view.top")); // nothing of the journal
    EXPECT_TRUE(session.leadsTo(3));
    moveX("5");
    EXPECT_THAT(session.journal().lines(), ElementsAre(all[0], "run model.move deltaX=5"));
    EXPECT_THAT(session.journal().later(), IsEmpty());
    EXPECT_FALSE(session.goTo(3));
    EXPECT_EQ(firstX(), 5.0);
    session.goTo(1);
    session.goTo(2);
    EXPECT_EQ(firstX(), 5.0) << "line 2 is the new one";
}

TEST_F(HistoryTest, WhatADialogKeepsGoesBackWithTheModel) {
    moveX("1");
    moveX("2");
    session.goTo(2);
    person.dialogs = {{}};
    session.run(*findCommand("model.move")); // OK on what it shows
    EXPECT_EQ(firstX(), 2.0);
    EXPECT_EQ(session.journal().lines().back(), "run model.move");
}

TEST_F(HistoryTest, CapturesGoBackToo) {
    session.run(*findCommand("line.captureSection"));
    session.act({.kind = Act::Kind::Section, .patch = 1, .section = 1});
    session.run(*findCommand("line.exit"));
    ASSERT_EQ(session.journal().lines().size(), 4U);
    session.goTo(3);
    EXPECT_TRUE(doc().capture->sectionCaptured);
    EXPECT_EQ(doc().capture->capturedPatch, 1);
    EXPECT_EQ(session.view().mouseMode, ModeSection);
    session.goTo(2);
    EXPECT_TRUE(doc().capture->sectionCaptureArmed);
    session.goTo(4);
    EXPECT_FALSE(doc().capture->curveHeld());
}

TEST_F(HistoryTest, OfADragTheEndIsKept) {
    session.run(*findCommand("point.capture"));
    session.act({.kind = Act::Kind::Point, .patch = 0, .section = 0, .point = 0});
    session.run(*findCommand("point.drag"));
    Act move{.kind = Act::Kind::Drag};
    move.place = {9.0, 9.0, 0.0};
    session.act(move);
    session.act({.kind = Act::Kind::Release});
    session.keepUp();
    ASSERT_EQ(session.journal().lines().size(), 6U);
    EXPECT_FALSE(session.leadsTo(5)) << "a place on the way";
    EXPECT_TRUE(session.goTo(4));
    EXPECT_TRUE(doc().capture->pointDragging);
    EXPECT_EQ(firstX(), 0.0);
    EXPECT_TRUE(session.goTo(6));
    EXPECT_FALSE(doc().capture->pointDragging);
    EXPECT_EQ(firstX(), 1.0) << "the far corner of the cell, the nearest that a drag reaches";
}

TEST_F(HistoryTest, WhatAFileHoldsIsKnownOnTheWay) {
    moveX("1");
    person.files = {{folder / "moved.apt"}};
    session.run(*findCommand("file.saveAs"));
    moveX("2");
    ASSERT_EQ(session.journal().lines().size(), 4U);
    session.goTo(3);
    EXPECT_FALSE(doc().documentModified) << "the file holds this";
    EXPECT_EQ(doc().modelFile.chosenPath, folder / "moved.apt");
    session.goTo(2);
    EXPECT_TRUE(doc().documentModified);
    EXPECT_EQ(doc().modelFile.chosenPath, folder / "three.apt");
}

TEST_F(HistoryTest, AModelThatWasWrittenOverSinceIsInNoFile) {
    moveX("1");
    session.run(*findCommand("file.save"));
    session.goTo(1);
    EXPECT_EQ(firstX(), 0.0);
    EXPECT_TRUE(doc().documentModified) << "the file holds the moved one";
    session.goTo(3);
    EXPECT_FALSE(doc().documentModified);
    session.goTo(1);
    person.transcript.clear();
    session.run(*findCommand("file.save"));
    EXPECT_THAT(person.transcript, testing::Not(testing::Contains(testing::HasSubstr("question")))) << "it is ours";
}

TEST_F(HistoryTest, AModelThatStandsInAFileOfItsOwnIsNotChanged) {
    person.files = {{folder / "copy.apt"}};
    session.run(*findCommand("file.saveAs"));
    moveX("1");
    person.files = {{folder / "moved.apt"}};
    session.run(*findCommand("file.saveAs"));
    ASSERT_EQ(session.journal().lines().size(), 4U);
    session.goTo(1);
    EXPECT_EQ(doc().modelFile.chosenPath, folder / "three.apt");
    EXPECT_FALSE(doc().documentModified) << "nobody wrote over it";
    session.goTo(2);
    EXPECT_EQ(doc().modelFile.chosenPath, folder / "copy.apt");
    EXPECT_FALSE(doc().documentModified);
    session.goTo(3);
    EXPECT_TRUE(doc().documentModified) << "of that file the model before was written";
}

TEST_F(HistoryTest, AModelThatWasSavedBehindTheLineStandsInItsFile) {
    moveX("1");
    session.run(*findCommand("file.save"));
    session.goTo(2);
    EXPECT_EQ(firstX(), 1.0);
    EXPECT_FALSE(doc().documentModified) << "not saved yet then, but its file holds it now";
    session.goTo(1);
    EXPECT_TRUE(doc().documentModified);
    person.answers = {true, true};
    session.run(*findCommand("file.save"));
    session.goTo(1);
    EXPECT_FALSE(doc().documentModified) << "its file holds it again";
}

TEST_F(HistoryTest, AFileThatTookThePlaceOfTheModelsHoldsItNoMore) {
    person.files = {{folder / "copy.apt"}};
    session.run(*findCommand("file.saveAs"));
    moveX("1");
    person.files = {{folder / "three.apt"}};
    person.answers = {true};
    session.run(*findCommand("file.saveAs"));
    ASSERT_EQ(session.journal().lines().size(), 4U);
    session.goTo(1);
    EXPECT_EQ(doc().modelFile.chosenPath, folder / "three.apt");
    EXPECT_TRUE(doc().documentModified) << "the moved one stands there";
    session.goTo(2);
    EXPECT_FALSE(doc().documentModified);
}

// ---- What is shared -------------------------------------------------------------------------------------------------

TEST_F(HistoryTest, PatchesThatStayAreHeldOnce) {
    const std::uint64_t opened = session.historyBytes();
    session.run(*findCommand("line.captureSection"));
    session.act({.kind = Act::Kind::Section, .patch = 0, .section = 0});
    const std::uint64_t captured = session.historyBytes();
    person.dialogs = {{{"deltaX", "1"}}};
    session.run(*findCommand("line.move")); // a section of the first patch alone
    const std::uint64_t patch = sizeof(Patch) + 2 * sizeof(PointList) + 6 * sizeof(zVec<double>);
    const std::uint64_t curves = sizeof(Patch) + 8 * sizeof(PointList);
    EXPECT_EQ(opened, 3 * patch + curves) << "three patches, and lists of points without one";
    EXPECT_EQ(captured, opened) << "nothing of the geometry changed";
    EXPECT_EQ(session.historyBytes(), opened + patch) << "Undo holds the model that was there before";
    moveX("1");
    EXPECT_EQ(session.historyBytes(), opened + 4 * patch);
}

TEST_F(HistoryTest, APatchThatGoesLeavesTheOthersShared) {
    person.dialogs = {{{"number", "1"}}};
    session.run(*findCommand("patch.inputAndAdd"));
    const std::uint64_t before = session.historyBytes();
    person.answers = {true};
    session.run(*findCommand("block.delete"));
    ASSERT_EQ(doc().patches.size(), 2U);
    EXPECT_EQ(session.historyBytes(), before);
}

TEST_F(HistoryTest, WithoutMemoryTheOldestAreGone) {
    doc().freeMemory = [] { return std::uint64_t{0}; };
    moveX("1");
    EXPECT_FALSE(session.leadsTo(1));
    EXPECT_FALSE(session.goTo(1));
    EXPECT_EQ(firstX(), 1.0);
    EXPECT_EQ(session.historyBytes(), 0U);
}

TEST_F(HistoryTest, NothingIsKeptUnlessItIsAskedFor) {
    Session other(person, surface, shell, folder.path());
    other.start();
    other.open({folder / "three.apt"});
    EXPECT_EQ(other.historyBytes(), 0U);
    EXPECT_FALSE(other.leadsTo(1));
}

} // namespace
} // namespace velmora::test
