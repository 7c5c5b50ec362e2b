#include <gmock/gmock.h>

#include <cmath>

#include "SessionFixture.h"
#include "about.h"
#include "camera.h"

namespace velmora {
namespace {

using test::SessionFixture;
using testing::HasSubstr;
using testing::StartsWith;

class Session : public SessionFixture {
protected:
    void openPlate() { must("open " + file("plate.apt")); }
    /// A model with unsaved work: its captured section has other points.
    void changePlate() {
        openPlate();
        must("run line.inputSection patch=1 section=1");
        must("run line.rebreak regime=2 function=2 newCount=3");
    }
};

// ---- Start and lines -----------------------------------------------------------------------------------------------

TEST_F(Session, StandsAsAfterTheStart) {
    EXPECT_TRUE(recorder.events.empty()) << "the start is not printed";
    const Json state = printed("state");
    EXPECT_EQ(state.at("structureKind"), "non");
    EXPECT_EQ(state.at("documentTitle"), "Untitled");
    EXPECT_EQ(printed("view").at("viewport"), Json::array({0, 0, 800, 600}));
}

TEST_F(Session, SkipsEmptyLinesAndComments) {
    must("");
    EXPECT_TRUE(events.empty());
    must("  # a comment");
    EXPECT_TRUE(events.empty());
}

TEST_F(Session, SaysDoneWithTheNumberOfTheLine) {
    ASSERT_EQ(session.run(17, "wait 0"), Next::GoOn);
    ASSERT_EQ(recorder.events.size(), 1U);
    EXPECT_EQ(recorder.events[0].dump(), R"({"event":"done","line":17,"outcome":"ok"})");
}

TEST_F(Session, RefusesAnUnknownLine) {
    EXPECT_THAT(errorOf("capture section"), HasSubstr("\"capture\""));
}

TEST_F(Session, RefusesALineThatCannotBeTakenApart) {
    EXPECT_THAT(errorOf("open \"plate.apt"), HasSubstr("not closed"));
}

TEST_F(Session, RefusesLinesWithWrongArguments) {
    for (const char* line : {"open",
                             "open a b",
                             "open \"\"",
                             "run",
                             "size 5",
                             "size 5 6 7",
                             "size a 5",
                             "size 5.5 5",
                             "size 1000001 5",
                             "size 99999999999 5",
                             "mouse",
                             "mouse down",
                             "mouse down 5",
                             "mouse down 5 5 5",
                             "mouse down a 5",
                             "mouse down nan 5",
                             "mouse down 1e9 5",
                             "mouse left 5 5",
                             "key",
                             "key enter",
                             "key escape escape",
                             "wait",
                             "wait -1",
                             "wait 1.5",
                             "wait 3600001",
                             "wait 5 5",
                             "print",
                             "quit now"}) {
        EXPECT_NE(errorOf(line), "") << line;
    }
}

TEST_F(Session, ErrorsNameCauseAndRemedy) {
    EXPECT_EQ(errorOf("wait x"),
              "the line \"wait\" cannot be read so; write wait MILLISECONDS, a whole number from 0 to 3600000");
}

TEST_F(Session, EchoSaysEachLineBeforeItRuns) {
    test::EventRecorder echoed;
    BatchSession echoing(echoed, {folder.path(), {800, 600}, true});
    EXPECT_EQ(echoing.run(4, " wait  0 # now"), Next::GoOn);
    EXPECT_EQ(echoing.run(5, "# nothing"), Next::GoOn);
    EXPECT_EQ(echoing.run(6, "nothing"), Next::Fail);
    ASSERT_EQ(echoed.events.size(), 4U);
    EXPECT_EQ(echoed.events[0].dump(), R"({"event":"echo","line":4,"text":" wait  0 # now"})");
    EXPECT_EQ(echoed.events[1].at("event"), "done");
    EXPECT_EQ(echoed.events[2].at("event"), "echo");
    EXPECT_EQ(echoed.events[3].at("event"), "error");
}

// ---- Opening -------------------------------------------------------------------------------------------------------

TEST_F(Session, OpenByPathAsksNothing) {
    changePlate();
    must("open " + file("plate.apt"));
    EXPECT_EQ(kinds("question"), 0);
    EXPECT_EQ(kinds("chooser"), 0);
    EXPECT_EQ(kinds("title"), 0) << "the title is the same as before";
    EXPECT_EQ(event("recent").at("path"), (folder / "plate.apt").string());
    EXPECT_EQ(printed("state").at("counts"), Json({{5, 5, 5, 5}}));
}

TEST_F(Session, OpeningAFileThatIsNotThereIsAMessageAndNoError) {
    must("open " + file("nothing.apt"));
    EXPECT_EQ(event("message").at("text"), "It is impossible to open selected file");
}

TEST_F(Session, OpenTakesBytesThatAreNoUtf8) {
    test::writeFileText(folder / "pl\xff.apt", aptText({test::flatPatch(2, 2)}));
    must("open " + file("pl\xff.apt"));
    EXPECT_EQ(event("title").at("text"), "pl\xff.apt");
}

// ---- Commands ------------------------------------------------------------------------------------------------------

TEST_F(Session, RefusesAnUnknownCommand) {
    EXPECT_THAT(errorOf("run line.dance"), HasSubstr("\"line.dance\""));
    EXPECT_THAT(errorOf("run Line.Rebreak"), HasSubstr("no command"));
}

TEST_F(Session, RefusesACommandThatIsOff) {
    EXPECT_THAT(errorOf("run file.save"), HasSubstr("off"));
    EXPECT_THAT(errorOf("run view.iso"), HasSubstr("off"));
    openPlate();
    EXPECT_THAT(errorOf("run view.previous"), HasSubstr("off"));
    EXPECT_THAT(errorOf("run point.dragAndCorrect"), HasSubstr("off"));
}

TEST_F(Session, RunsCommandsOfTheViewAndOfTheDocument) {
    openPlate();
    must("run view.rotate");
    EXPECT_EQ(printed("view").at("mouseMode"), 0);
    must("run line.captureLine");
    EXPECT_EQ(event("status").at("text"), "Press left button of mouse and drag it");
    EXPECT_EQ(printed("view").at("mouseMode"), 13);
}

TEST_F(Session, HelpTopicsTellsWhereTheGuideIs) {
    must("run help.topics");
    EXPECT_EQ(event("status").at("text"), "The user guide is shown by the window; --help-commands lists the commands");
}

TEST_F(Session, KeysAreToldByTheGuide) {
    must("run help.keys");
    EXPECT_EQ(event("status").at("text"), "Keys and mouse are the window's; the user guide lists them");
}

TEST_F(Session, AboutIsAMessage) {
    must("run help.about");
    const std::string text = event("message").at("text").get<std::string>();
    EXPECT_THAT(text, HasSubstr(programVersion()));
    EXPECT_THAT(text, HasSubstr("Physical memory:"));
}

TEST_F(Session, TheFileReportIsAPanelOfTheWindowAndPointsToPrintRead) {
    must("run help.fileReport");
    EXPECT_EQ(event("message").at("text"), "This is a panel of the window. A script has: print read");
    EXPECT_EQ(event("message").at("severity"), "error");
    EXPECT_EQ(event("done").at("outcome"), "refused");
}

TEST_F(Session, TogglesOfTheFrameDoNothing) {
    must("run view.toolbar");
    EXPECT_EQ(events.size(), 1U);
    must("run view.statusBar");
    EXPECT_EQ(events.size(), 1U);
}

// ---- Questions, choosers and what is left over ---------------------------------------------------------------------

TEST_F(Session, AnswersQuestionsFromTheLine) {
    openPlate();
    must("run file.open answer=no");
    EXPECT_EQ(event("question").dump(),
              R"({"event":"question","text":"Current geometry will be removed. Are you sure","answer":"no"})");
    EXPECT_EQ(printed("state").at("documentTitle"), "plate.apt");
}

TEST_F(Session, AQuestionWithoutAnAnswerEndsTheScript) {
    openPlate();
    const std::string error = errorOf("run file.open file=" + file("plate.apt"));
    EXPECT_THAT(error, HasSubstr("Current geometry will be removed. Are you sure"));
    EXPECT_THAT(error, HasSubstr("answer=yes or answer=no"));
    EXPECT_EQ(kinds("question") + kinds("chooser"), 0);
}

TEST_F(Session, ChooserEventsTellWhatWasOfferedAndChosen) {
    must("run file.open file=" + file("plate.apt"));
    const Json chooser = event("chooser");
    EXPECT_EQ(chooser.at("mode"), "Open");
    EXPECT_EQ(chooser.at("extensions"), Json({"apt", "skl", "dat", "wrl", "stl", "apm", "fld", "grd"}));
    EXPECT_EQ(chooser.at("paths"), Json::array({(folder / "plate.apt").string()}));
    EXPECT_EQ(chooser.at("proposed"), "");
}

TEST_F(Session, AChooserWithoutAFileEndsTheScript) {
    EXPECT_THAT(errorOf("run file.open"), HasSubstr("the chooser \"Open\" has no file"));
}

TEST_F(Session, ACancelledChooserIsNoError) {
    must("run file.open cancel=file");
    EXPECT_EQ(event("chooser").at("paths"), Json::array());
    EXPECT_EQ(printed("state").at("structureKind"), "non");
}

TEST_F(Session, AMultiFileChooserTakesAllFilesInOrderAndNoneTwice) {
    test::writeFileText(folder / "b.apt", aptText({test::flatPatch(2, 3)}));
    must("run file.open file=" + file("b.apt") + " file=" + file("plate.apt") + " file=" + file("b.apt"));
    EXPECT_EQ(event("chooser").at("paths"),
              Json::array({(folder / "b.apt").string(), (folder / "plate.apt").string()}));
    EXPECT_EQ(printed("state").at("counts"), Json::array({{3, 3}, {5, 5, 5, 5}}));
}

TEST_F(Session, ASingleFileChooserLeavesFurtherFilesUnused) {
    openPlate();
    EXPECT_THAT(errorOf("run file.append file=" + file("plate.apt") + " file=" + file("plate.apt")),
                HasSubstr("nothing asked for"));
}

TEST_F(Session, AnythingThatNothingAskedForEndsTheScript) {
    openPlate();
    EXPECT_EQ(errorOf("run view.fit answer=yes"), "nothing asked for \"answer=yes\"; leave it out");
    EXPECT_EQ(errorOf("run view.fit answer=no"), "nothing asked for \"answer=no\"; leave it out");
    EXPECT_EQ(errorOf("run view.fit file=a.apt"), "nothing asked for \"file=a.apt\"; leave it out");
    EXPECT_EQ(errorOf("run view.fit cancel=file"), "nothing asked for \"cancel=file\"; leave it out");
    EXPECT_EQ(errorOf("run view.fit cancel=dialog"), "nothing asked for \"cancel=dialog\"; leave it out");
    EXPECT_EQ(errorOf("run view.fit newCount=5"), "nothing asked for \"newCount=5\"; leave it out");
    EXPECT_EQ(errorOf("quit answer=yes"), "nothing asked for \"answer=yes\"; leave it out");
}

TEST_F(Session, WordsBehindACommandGiveValues) {
    EXPECT_NE(errorOf("run help.topics fast"), "");
    EXPECT_NE(errorOf("run help.topics answer=perhaps"), "");
    EXPECT_EQ(kinds("status"), 0) << "the command has not run";
}

// ---- Leaving -------------------------------------------------------------------------------------------------------

TEST_F(Session, QuitSaysDoneAndLeaves) {
    EXPECT_EQ(run("quit"), Next::Leave);
    EXPECT_EQ(events.size(), 1U);
    EXPECT_EQ(event("done").at("line"), 1);
}

TEST_F(Session, ExitIsTheSameAsQuit) {
    EXPECT_EQ(run("run file.exit"), Next::Leave);
}

TEST_F(Session, QuitAsksAboutUnsavedData) {
    changePlate();
    EXPECT_THAT(errorOf("quit"), HasSubstr("Save data before exit"));
    must("wait 0"); // whoever goes on behind the error has not left
    EXPECT_EQ(run("quit answer=no"), Next::Leave);
    EXPECT_EQ(event("question").at("text"), "Save data before exit");
    EXPECT_EQ(event("done").at("outcome"), "ok") << "to leave without saving is no refusal to leave";
    EXPECT_EQ(test::fileText(folder / "plate.apt"), aptText({test::flatPatch(4, 5)}));
}

TEST_F(Session, QuitAnsweredYesSaves) {
    changePlate();
    EXPECT_EQ(run("run file.exit answer=yes"), Next::Leave);
    EXPECT_THAT(test::fileText(folder / "plate.apt"), StartsWith("4 3\n"));
}

TEST_F(Session, QuitStaysWhenSavingFails) {
    changePlate();
    std::filesystem::create_directory(folder / "gone");
    must("run file.saveAs file=" + file("gone/plate.apt"));
    must("run line.rebreak regime=2 function=2 newCount=4");
    std::filesystem::remove_all(folder / "gone");
    must("quit answer=yes");
    EXPECT_EQ(event("message").at("text"), "It is impossible to save current file");
    EXPECT_EQ(event("done").at("outcome"), "failed");
    EXPECT_TRUE(printed("state").at("documentModified").get<bool>()) << "nothing is lost";
}

TEST_F(Session, EscapeLeavesLikeQuit) {
    EXPECT_EQ(run("key escape"), Next::Leave);
}

TEST_F(Session, EscapeWithUnsavedDataNeedsAnAnswerThatItCannotHave) {
    changePlate();
    EXPECT_THAT(errorOf("key escape"), HasSubstr("Save data before exit"));
}

// ---- Size, mouse and paints ----------------------------------------------------------------------------------------

TEST_F(Session, SizeResizesTheView) {
    must("size 400 100");
    EXPECT_EQ(printed("view").at("viewport"), Json::array({0, 0, 400, 100}));
    EXPECT_EQ(printed("view").at("aspectRatio"), 4.0);
}

TEST_F(Session, ASizeBelowOneIsIgnored) {
    must("size 0 100");
    must("size 100 -5");
    EXPECT_EQ(printed("view").at("viewport"), Json::array({0, 0, 800, 600}));
}

TEST_F(Session, AClickCapturesTheSectionUnderThePixel) {
    openPlate();
    must("run line.captureSection");
    // Point (1, 2, 0): 400 + (1 - 2) * 114.29 = 285.7 and 599 - (300 + (2 - 1.5) * 114.29) = 241.9.
    must("mouse down 286 242");
    EXPECT_TRUE(printed("state").at("leftButtonDown").get<bool>());
    must("mouse up 286 242");
    EXPECT_EQ(event("status").at("text"),
              "Captured section: Patch K=1, Section N=3, Points M=5  // Press right button to continue ");
    EXPECT_EQ(printed("state").at("capturedSection"), 2);
}

TEST_F(Session, MousePositionsAreRoundedToTheNearestPixel) {
    openPlate();
    must("run view.zoomIn");
    must("mouse down 99.5 -0.4");
    must("mouse up 399.7 299.6");
    // As from pixel (100, 0) to (400, 300): 300 of 600 rows.
    EXPECT_EQ(printed("view").at("zoomFactor"), 0.5);
}

TEST_F(Session, ThePaintOfALineBelongsToIt) {
    test::writeFileText(folder / "lines.skl", "2\n2\n0 0 0\n1 0 0\n3\n0 1 0\n1 1 0\n2 1 0\n");
    must("open " + file("lines.skl"));
    ASSERT_GE(events.size(), 2U);
    EXPECT_EQ(events[events.size() - 2].dump(),
              R"({"event":"message","text":"surface not allowed","severity":"warning"})");
    EXPECT_EQ(events.back().at("event"), "done");
    must("wait 0");
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(Session, ViewAnglesFollowWithTheNextPaint) {
    openPlate();
    must("run view.top");
    EXPECT_EQ(printed("view").at("viewAngles"), Json({0.0, 0.0, 0.0})) << "the menu's view asks for no repaint";
    must("run view.perspective");
    must("run view.orthographic");
    EXPECT_EQ(printed("view").at("viewAngles"), Json({90.0, 0.0, 0.0}));
    EXPECT_TRUE(printed("view").at("viewAlongY").get<bool>());
}

TEST_F(Session, RightClickShowsNoMenuWithoutARegime) {
    openPlate();
    must("mouse right 5 5");
    EXPECT_EQ(kinds("menu"), 0);
}

// ---- Time ----------------------------------------------------------------------------------------------------------

class Spin : public Session {
protected:
    void throwModel() {
        openPlate();
        must("run view.rotate");
        must("mouse down 400 300");
        must("mouse move 410 300");
        must("mouse up 420 300");
    }

    Matrix4 rotation() {
        Matrix4 matrix{};
        const Json elements = printed("view").at("modelRotation");
        for (std::size_t i = 0; i < matrix.size(); ++i) {
            matrix[i] = elements.at(i).get<double>();
        }
        return matrix;
    }

    /// The rotation that `ticks` ticks make of `start`: each turns by a quarter of the spin angle twice.
    Matrix4 spun(Matrix4 start, int ticks) {
        const Json view = printed("view");
        const Json& axis = view.at("spinAxis");
        for (int i = 0; i < 2 * ticks; ++i) {
            start =
                start * rotationMatrix(0.25 * view.at("spinAngle").get<double>(),
                                       {axis.at(0).get<double>(), axis.at(1).get<double>(), axis.at(2).get<double>()});
        }
        return start;
    }

    static void expectNear(const Matrix4& actual, const Matrix4& expected) {
        for (std::size_t i = 0; i < actual.size(); ++i) {
            EXPECT_NEAR(actual[i], expected[i], 1e-12) << "element " << i;
        }
    }
};

TEST_F(Spin, AThrowSpinsByTheTicksOfTheWait) {
    throwModel();
    ASSERT_TRUE(printed("state").at("spinTimerOn").get<bool>());
    const Matrix4 start = rotation();
    must("wait 14");
    expectNear(rotation(), start);
    must("wait 1");
    expectNear(rotation(), spun(start, 1));
    must("wait 30");
    expectNear(rotation(), spun(start, 3));
}

TEST_F(Spin, TheClockStandsStillWithoutAWait) {
    openPlate();
    must("run view.rotate");
    must("mouse down 400 300");
    must("mouse move 410 300");
    must("wait 50");
    must("mouse up 420 300");
    EXPECT_FALSE(printed("state").at("spinTimerOn").get<bool>()) << "50 milliseconds are no throw any more";
}

TEST_F(Spin, AClickStopsIt) {
    throwModel();
    must("mouse down 400 300");
    must("mouse up 400 300");
    const Matrix4 start = rotation();
    must("wait 1000");
    expectNear(rotation(), start);
}

TEST_F(Spin, GoesOnThroughALongWait) {
    throwModel();
    must("wait 60000");
    EXPECT_TRUE(printed("state").at("spinTimerOn").get<bool>());
}

} // namespace
} // namespace velmora
