#include "Journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DocumentState.h"
#include "FakeSurface.h"
#include "RecordingUi.h"
#include "Session.h"
#include "small_models.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QuietShell : public ShellCommands {
public:
    void exit() override {}
    void showGuide() override {}
    void showKeys() override {}
    void showAbout() override {}
    void savePicture() override {}
    void copyPicture() override {}
    void showPanel(Panel) override {}
};

/// A session with the plate of three by two points open, which counts as nothing done yet: `lines` are those behind it.
class JournalTest : public testing::Test {
protected:
    JournalTest() {
        writeFileText(folder / "plate.apt", "2 3\n0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n");
        session.view().OnCreate();
        session.view().OnSize(600, 600);
        session.start();
        session.open({folder / "plate.apt"});
        session.view().OnDraw();
        before = session.journal().lines().size();
    }

    CommandReport run(const char* id) { return session.run(*findCommand(id)); }
    std::vector<std::string> lines() const {
        const auto& all = session.journal().lines();
        return {all.begin() + static_cast<std::ptrdiff_t>(before), all.end()};
    }
    VelmoraView::ActResult act(Act::Kind kind, std::int32_t patch, std::int32_t section, std::int32_t point) {
        return session.act({.kind = kind, .patch = patch, .section = section, .point = point});
    }

    TemporaryFolder folder;
    RecordingUi person;
    FakeSurface surface;
    QuietShell shell;
    Session session{person, surface, shell, folder.path()};
    std::size_t before = 0;
};

TEST_F(JournalTest, AFileThatWasOpenedByItsPathStandsAsItWasNamed) {
    EXPECT_THAT(session.journal().lines(), ElementsAre("open " + (folder / "plate.apt").string()));
    session.open({folder / "nothing.apt"});
    EXPECT_THAT(lines(), IsEmpty()) << "it gave nothing";
}

TEST_F(JournalTest, FilesThatWereOpenedTogetherStandAsThoseOfOneCommand) {
    writeFileText(folder / "my other.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
    session.open({folder / "plate.apt", folder / "my other.apt"});
    EXPECT_THAT(lines(), ElementsAre("run file.open answer=yes file=" + (folder / "plate.apt").string() + " file=\"" +
                                     (folder / "my other.apt").string() + "\""));
}

TEST_F(JournalTest, ADialogGivesTheFieldsThatDiffer) {
    person.dialogs = {{{"deltaX", "1"}, {"deltaY", "0"}}};
    run("model.move");
    EXPECT_THAT(lines(), ElementsAre("run model.move deltaX=1"));
}

TEST_F(JournalTest, WhatADialogKeepsFromTheLastTimeIsNotSaidAgain) {
    person.dialogs = {{{"deltaX", "1"}}, {}};
    run("model.move");
    run("model.move");
    EXPECT_THAT(lines(), ElementsAre("run model.move deltaX=1", "run model.move"));
}

TEST_F(JournalTest, WhatWasCancelledOrIsOffIsLeftOut) {
    run("model.move");
    run("patch.undo");
    EXPECT_THAT(person.transcript, testing::Contains("dialog: CBlockMove -> cancel"));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(JournalTest, WhereTheModelIsLookedAtFromIsLeftOut) {
    for (const char* id : {"view.top", "view.rotate", "view.zoomOut", "view.fit", "view.toolbar", "help.topics"}) {
        run(id);
    }
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(JournalTest, WhatIsShownOfTheModelStandsInIt) {
    person.dialogs = {{{"showFirstPoints", "1"}}};
    run("view.surface");
    run("view.features");
    person.dialogs = {{{"quantity", "2"}, {"bands", "5"}}};
    run("view.colourByValue");
    EXPECT_THAT(lines(), ElementsAre("run view.surface", "run view.features showFirstPoints=1",
                                     "run view.colourByValue quantity=2 bands=5"));
}

TEST_F(JournalTest, AnswersAndFilesFollowTheFields) {
    person.answers = {true};
    person.files = {{folder / "plate.apt"}};
    run("file.open");
    EXPECT_THAT(lines(), ElementsAre("run file.open answer=yes file=" + (folder / "plate.apt").string()));
}

TEST_F(JournalTest, ASaveStandsInItThoughTheModelStays) {
    person.files = {{folder / "copy.apt"}};
    run("file.saveAs");
    run("file.save");
    EXPECT_THAT(lines(), ElementsAre("run file.saveAs file=" + (folder / "copy.apt").string(), "run file.save"));
}

TEST_F(JournalTest, WhatASaveOnTheWayToAnotherFileWroteStandsBeforeIt) {
    person.dialogs = {{{"deltaX", "1"}}};
    run("model.move");
    person.answers = {true};
    session.openInstead({folder / "plate.apt"});
    EXPECT_THAT(lines(),
                ElementsAre("run model.move deltaX=1", "run file.save", "open " + (folder / "plate.apt").string()));
}

// A line that was left out can have left its values in its dialog.
TEST_F(JournalTest, WhatALineThatIsLeftOutSetStandsInTheNextOfItsDialog) {
    person.dialogs = {{{"target", "3"}}, {{"target", "3"}}};
    person.files = {{folder / "nothing.apt"}, {folder / "plate.apt"}};
    run("model.compare");
    EXPECT_THAT(lines(), IsEmpty());
    run("model.compare");
    EXPECT_THAT(lines(), ElementsAre("run model.compare target=3 file=" + (folder / "plate.apt").string()));
}

TEST_F(JournalTest, TheMouseStandsInItByWhatItTook) {
    run("line.captureSection");
    EXPECT_EQ(act(Act::Kind::Section, 0, 1, -1), VelmoraView::ActResult::Done);
    run("point.capture");
    EXPECT_EQ(act(Act::Kind::Point, 0, 1, 2), VelmoraView::ActResult::Done);
    EXPECT_THAT(lines(), ElementsAre("run line.captureSection", "capture section 1 2", "run point.capture",
                                     "capture point 1 2 3"));
}

TEST_F(JournalTest, AClickThatTookNothingIsLeftOut) {
    run("point.capture");
    session.view().OnLeftButtonDown({3, 3});
    session.view().OnLeftButtonUp({3, 3});
    run("point.capture");
    EXPECT_THAT(lines(), ElementsAre("run point.capture"));
}

TEST_F(JournalTest, ADragIsALineForEachMoveThatChangedSomething) {
    run("point.capture");
    act(Act::Kind::Point, 0, 0, 0);
    run("point.drag");
    const Act corner{.kind = Act::Kind::Drag, .place = {-9.0, -9.0, 0.0}};
    session.act(corner); // where it stands already
    Act inside = corner;
    inside.place = {9.0, 9.0, 0.0};
    session.act(inside);
    session.act(inside);
    session.act({.kind = Act::Kind::Release});
    EXPECT_THAT(lines(),
                ElementsAre("run point.capture", "capture point 1 1 1", "run point.drag", "drag 1 1 0", "release"));
}

TEST_F(JournalTest, ThePlaneOfAViewStandsBeforeWhatDependsOnIt) {
    run("line.captureSection");
    act(Act::Kind::Section, 0, 1, -1);
    run("point.capture");
    act(Act::Kind::Point, 0, 1, 1);
    run("view.upView");
    session.view().OnDraw();
    run("point.dragAndCorrect");
    session.act({.kind = Act::Kind::Drag, .place = {1.0, 7.0, 2.0}});
    session.act({.kind = Act::Kind::Release});
    const auto found = lines();
    ASSERT_EQ(found.size(), 8U);
    EXPECT_EQ(found[4], "run view.upView");
    EXPECT_EQ(found[5], "run point.dragAndCorrect");
    EXPECT_EQ(found[6], "drag 1 1 2") << "along y the point keeps its coordinate";
    EXPECT_EQ(found[7], "release");
    EXPECT_EQ(session.state().patches[0][1][1].z, 2.0);
}

TEST_F(JournalTest, ARemarkIsAComment) {
    session.remark("the model came from somewhere else");
    EXPECT_THAT(lines(), ElementsAre("# the model came from somewhere else"));
}

} // namespace
} // namespace velmora::test
