#include <algorithm>

#include <gmock/gmock.h>

#include <cmath>

#include "SessionFixture.h"

// Acts by number and the journal, as lines of a script.

namespace velmora {
namespace {

using test::EventRecorder;
using test::SessionFixture;

class ActLines : public SessionFixture {
protected:
    ActLines() { must("open " + file("plate.apt")); }
};

TEST_F(ActLines, ARegimeTakesItsOwnKindAlone) {
    must("run line.captureSection");
    EXPECT_EQ(errorOf("capture line 1 1"), "nothing waits for \"capture line 1 1\"; run line.captureLine before it");
    EXPECT_EQ(errorOf("capture patch 1"),
              "nothing waits for \"capture patch 1\"; run patch.capture, patch.addToBlock or patch.removeFromBlock "
              "before it");
    must("run point.capture");
    EXPECT_THAT(errorOf("capture section 1 1"), testing::StartsWith("nothing waits for \"capture section 1 1\";"))
        << "what was armed last alone takes a click";
    EXPECT_THAT(errorOf("capture node 1 1"), testing::StartsWith("nothing waits for \"capture node 1 1\";"));
    must("capture point 1 4 5");
    EXPECT_THAT(errorOf("capture point 1 4 5"), testing::StartsWith("nothing waits for")) << "it was taken";
}

TEST_F(ActLines, WhatIsNotThereIsAnError) {
    must("run point.capture");
    for (const char* line : {"capture point 2 1 1", "capture point 1 5 1", "capture point 1 4 6"}) {
        EXPECT_EQ(errorOf(line), "the model has nothing of the number in \"" + std::string(line) +
                                     "\"; print state tells its patches, zones and their counts");
    }
    must("run line.captureLine");
    EXPECT_THAT(errorOf("capture line 1 6"), testing::StartsWith("the model has nothing"));
    must("run line.captureSection");
    EXPECT_THAT(errorOf("capture section 1 5"), testing::StartsWith("the model has nothing"));
    must("run patch.capture");
    EXPECT_THAT(errorOf("capture patch 2"), testing::StartsWith("the model has nothing"));
    EXPECT_EQ(printed("state").at("patchCaptureArmed"), true) << "it waits on";
}

TEST_F(ActLines, APointIsTakenInsideOfTheCapturedSectionAlone) {
    must("run line.inputSection section=2");
    must("run point.capture");
    EXPECT_EQ(errorOf("capture point 1 3 1"),
              "\"capture point 1 3 1\" is outside of what is captured; take a part of it, or leave that regime before");
    must("capture point 1 2 1");
}

TEST_F(ActLines, APointGoesToANodeOfItsGridHoweverFarThePlace) {
    must("run point.capture");
    must("capture point 1 2 3");
    for (const char* place : {"1e300 0 0", "-1e308 1e308 1e308", "1e155 1e155 1e155"}) {
        must("run point.drag");
        const Json grid = printed("dragPatches");
        must(std::string("drag ") + place);
        // So far away all nodes are the same to the last bit: the first is taken.
        EXPECT_EQ(printed("patches").at(0).at(1).at(2), grid.at(0).at(0).at(0)) << place;
        must("release");
    }
}

TEST_F(ActLines, ACurveIsBentInAPrincipalViewAlone) {
    must("run line.inputSection section=2");
    must("run point.capture");
    must("capture point 1 2 3");
    must("run point.dragAndCorrect");
    must("run view.threeD");
    EXPECT_EQ(errorOf("drag 2 2 0"),
              "\"drag 2 2 0\" needs a principal view; run view.frontView, view.upView or view.sideView before it");
    must("run view.sideView");
    must("drag 2 2 0");
    must("release");
    EXPECT_EQ(printed("patches")[0][1][2], Json::parse("[2.0, 2.0, 0.0]"));
}

TEST_F(ActLines, TheJournalIsPrintedAndWritten) {
    must("run point.capture");
    must("capture point 1 4 5");
    EXPECT_EQ(errorOf("capture point 1 1 1").substr(0, 7), "nothing");
    must("run view.top");
    const Json lines = printed("journal");
    EXPECT_EQ(lines,
              Json::array({"open " + (folder / "plate.apt").string(), "run point.capture", "capture point 1 4 5"}));
    must("journal " + file("done so far.script"));
    EXPECT_EQ(test::fileText(folder / "done so far.script"),
              "open " + (folder / "plate.apt").string() + "\nrun point.capture\ncapture point 1 4 5\n");
    EXPECT_EQ(printed("journal"), lines) << "it is no part of itself";
}

TEST_F(ActLines, AJournalThatCannotBeWrittenHasFailed) {
    must("journal " + file("gone/a.script"));
    EXPECT_EQ(event("done").value("outcome", ""), "failed");
    EXPECT_EQ(event("message").value("severity", ""), "error");
}

// ---- What a replay would meet otherwise ------------------------------------------------------------------------------

class JournalOfMisses : public ActLines {
protected:
    JournalOfMisses() {
        test::writeFileText(folder / "two.apt", aptText({test::flatPatch(4, 5), test::flatPatch(4, 5)}));
    }
    std::vector<std::string> journal() { return printed("journal").get<std::vector<std::string>>(); }

    /// What a session of its own prints behind these lines.
    Json again(const std::vector<std::string>& lines, const char* what = "patches") const {
        EventRecorder heard;
        BatchSession replay(heard, {folder.path(), {800, 600}, false});
        std::int64_t at = 0;
        for (const std::string& line : lines) {
            EXPECT_EQ(replay.run(++at, line), Next::GoOn) << line << heard.events.back();
        }
        heard.events.clear();
        replay.run(++at, std::string("print ") + what);
        return heard.events.front().at("value");
    }
};

TEST_F(JournalOfMisses, TheNumbersThatAClickBesideLeavesStandBeforeWhatComesNext) {
    must("run point.capture");
    must("mouse down 3 3"); // beside all; the corner (4, 5) of the four sections of five points is nearest there
    must("mouse up 3 3");
    const Json missed = printed("state");
    ASSERT_EQ(missed.at("pointCaptured"), false);
    ASSERT_GE(missed.at("capturedPoint").get<int>(), 0);
    EXPECT_EQ(session.session().journal().lines().size(), 2U) << "nothing came behind it yet";
    const std::string beside = "capture beside " + std::to_string(missed.at("capturedPatch").get<int>() + 1) + ' ' +
                               std::to_string(missed.at("capturedPointSection").get<int>() + 1) + ' ' +
                               std::to_string(missed.at("capturedPoint").get<int>() + 1);
    ASSERT_EQ(journal().size(), 3U) << "as a script it ends with them";
    EXPECT_EQ(journal()[2], beside);
    must("run line.inputSection section=2");
    ASSERT_EQ(journal().size(), 4U);
    EXPECT_EQ(journal()[2], beside);
}

TEST_F(JournalOfMisses, AMissAsTheLastActIsOfTheScript) {
    for (const char* regime : {"point.capture", "line.captureSection", "line.captureLine"}) {
        must(std::string("run ") + regime);
        must("mouse down 3 3");
        must("mouse up 3 3");
        EXPECT_EQ(again(journal(), "state"), printed("state")) << regime;
    }
    must("run point.capture");
    must("mouse down 3 3");
    Json down = printed("state");
    EXPECT_TRUE(down.at("leftButtonDown").get<bool>());
    down["leftButtonDown"] = false; // which no line can tell
    EXPECT_EQ(again(journal(), "state"), down);
}

TEST_F(JournalOfMisses, AClickThatCapturesTakesTheirPlace) {
    must("run point.capture");
    must("mouse down 3 3");
    must("mouse up 3 3");
    must("capture point 1 4 5");
    must("run point.exit");
    EXPECT_EQ(journal(), (std::vector<std::string>{"open " + (folder / "plate.apt").string(), "run point.capture",
                                                   "capture point 1 4 5", "run point.exit"}));
}

TEST_F(JournalOfMisses, WhatIsCapturedIsNotRenumbered) {
    must("run line.inputSection section=2");
    EXPECT_THAT(errorOf("capture beside 0 0 0"), testing::HasSubstr("is outside of what is captured"));
    EXPECT_THAT(errorOf("capture beside 2 1 1"), testing::StartsWith("the model has nothing of the number"));
    must("capture beside 1 3 4");
    const Json state = printed("state");
    EXPECT_EQ(state.at("capturedPointSection"), 2);
    EXPECT_EQ(state.at("capturedPoint"), 3);
    EXPECT_EQ(state.at("pointCaptured"), false);
    must("run point.capture");
    must("capture point 1 2 1");
    EXPECT_THAT(errorOf("capture beside 1 3 4"), testing::HasSubstr("is outside of what is captured"));
}

TEST_F(JournalOfMisses, AFreePointThatIsMissedMovesTheCapturedPointThereToo) {
    must("run line.inputSection section=2");
    must("run point.capture");
    must("capture point 1 2 1");
    must("run point.free");
    must("mouse down 3 3"); // of the corners of the plate the fourth section's are the upper ones
    must("mouse up 3 3");
    must("run point.edit x=9");
    const Json patches = printed("patches");
    ASSERT_EQ(journal()[4], "run point.free");
    EXPECT_EQ(journal()[5], "capture beside 1 4 1");
    EXPECT_EQ(patches[0][3][0][0], 9.0);
    EXPECT_EQ(again(journal()), patches);
}

TEST_F(JournalOfMisses, WhatIsDoneWhileTheButtonIsDownOnAPointFindsItThere) {
    must("run point.capture");
    const Json at = printed("window 3 2 0");
    const std::string place =
        std::to_string(std::lround(at[0].get<double>())) + ' ' + std::to_string(std::lround(at[1].get<double>()));
    must("mouse down " + place);
    must("run buffer.addPoint");
    EXPECT_EQ(journal(), (std::vector<std::string>{"open " + (folder / "plate.apt").string(), "run point.capture",
                                                   "capture under 1 3 4", "run buffer.addPoint"}));
    const Json buffer = printed("lineBuffer");
    EXPECT_EQ(buffer, Json::parse("[[3.0, 2.0, 0.0]]"));
    EXPECT_EQ(again(journal(), "lineBuffer"), buffer);
    must("mouse up " + place);
    EXPECT_EQ(journal().back(), "capture point 1 3 4");
}

TEST_F(JournalOfMisses, WhatIsDoneWhileTheButtonIsDownOnACurveFindsItThere) {
    const std::string opened = "open " + (folder / "plate.apt").string();
    const auto press = [&](const char* x, const char* y) {
        const Json at = printed(std::string("window ") + x + ' ' + y + " 0");
        const std::string place =
            std::to_string(std::lround(at[0].get<double>())) + ' ' + std::to_string(std::lround(at[1].get<double>()));
        must("mouse down " + place);
        return place;
    };
    must("run point.capture");
    must("capture beside 1 3 4");
    must("run line.captureLine");
    std::string place = press("2", "1.5"); // on the line of x = 2; it forgets the section of the point
    must("run point.free");
    EXPECT_EQ(journal(),
              (std::vector<std::string>{opened, "run point.capture", "capture beside 1 3 4", "run line.captureLine",
                                        "capture under line 1 3", "run point.free"}));
    must("mouse up " + place);
    EXPECT_EQ(again(journal(), "state"), printed("state"));
    must("open " + file("plate.apt"));
    must("run line.captureSection");
    place = press("2", "1"); // on the section of y = 1
    must("run view.surface");
    EXPECT_EQ(journal()[journal().size() - 2], "capture under section 1 2");
    must("mouse up " + place);
    EXPECT_EQ(journal().back(), "capture section 1 2") << "the button still takes what it went down for";
    EXPECT_EQ(again(journal(), "state"), printed("state"));
}

TEST_F(JournalOfMisses, WhatTheButtonWentDownOnIsTakenThoughItIsLetThroughNoMore) {
    must("open " + file("two.apt"));
    must("run patch.inputAndAdd number=2");
    must("run line.captureSection");
    must("capture under section 2 3");
    must("run block.invert"); // patch 1 is in the zBlock now, alone
    EXPECT_THAT(errorOf("capture section 2 1"), testing::HasSubstr("is outside of what is captured"));
    must("capture section 2 3");
    EXPECT_EQ(printed("state").at("sectionCaptured"), true);
    EXPECT_EQ(again(journal(), "state"), printed("state"));
}

TEST_F(JournalOfMisses, WhereTheButtonMovesOffACurveNoneIsThere) {
    must("run line.captureSection");
    must("capture under section 1 2");
    must("run model.move deltaZ=1");
    EXPECT_EQ(printed("state").at("capturedSection"), 1);
    EXPECT_EQ(printed("state").at("sectionCaptured"), false);
    must("capture under section 1 0");
    must("run model.move deltaZ=1");
    EXPECT_EQ(printed("state").at("capturedSection"), -1);
    EXPECT_EQ(journal()[journal().size() - 2], "capture under section 1 0");
    EXPECT_THAT(errorOf("capture under section 1 5"), testing::StartsWith("the model has nothing of the number"));
    EXPECT_THAT(errorOf("capture under line 1 1"), testing::StartsWith("nothing waits for"));
    EXPECT_EQ(run("capture under line 1 0"), Next::Fail) << "a line is held on to";
}

TEST_F(JournalOfMisses, WhileTheNextPointIsWaitedForTheOneBeforeIsRenumbered) {
    must("run line.inputSection section=2");
    must("run point.capture");
    must("capture point 1 2 1");
    EXPECT_THAT(errorOf("capture beside 1 3 4"), testing::HasSubstr("is outside of what is captured"));
    must("run point.free");
    must("capture beside 1 3 4");
    EXPECT_EQ(printed("state").at("capturedPointSection"), 2);
}

TEST_F(JournalOfMisses, AClickForWhichBothRegimesOfPointsWaitIsOneLine) {
    must("run line.inputSection section=2");
    must("run point.capture");
    must("run point.free");
    must("capture point 1 2 1");
    const std::vector<std::string> lines = journal();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "capture point 1 2 1"), 1);
}

TEST_F(JournalOfMisses, AButtonThatWentDownInAnotherRegimeTakesNothing) {
    must("mouse down 400 300");
    must("run patch.capture");
    must("mouse up 400 300");
    const Json state = printed("state");
    EXPECT_EQ(state.at("patchCaptureArmed"), true) << "the click is still waited for";
    EXPECT_EQ(state.at("patchCaptured"), false);
    must("mouse down 400 300");
    must("mouse up 400 300");
    EXPECT_EQ(journal().back(), "capture patch 1");
}

TEST_F(JournalOfMisses, AButtonThatWentDownToMeasureCapturesNothing) {
    must("run patch.capture");
    must("run view.measure");
    must("mouse down 650 41");
    must("run view.measure"); // the regime has its button back
    must("mouse up 650 41");
    EXPECT_EQ(printed("state").at("patchCaptureArmed"), true) << "the click is still waited for";
    EXPECT_EQ(printed("state").at("patchCaptured"), false);
}

TEST_F(JournalOfMisses, AValueThatALeftOutLineLeftIsSet) {
    must("run line.inputSection section=2");
    must("run line.exit");
    must("run line.inputSection cancel=dialog");

    must("run line.inputSection");
    EXPECT_EQ(journal().back(), "run line.inputSection") << "Cancel leaves nothing";
    must("run line.exit");
    must("run model.compare target=3 file=nowhere.apt"); // fails, and keeps what was typed
    must("run model.compare file=" + file("plate.apt"));
    EXPECT_EQ(journal().back(), "run model.compare target=3 file=" + (folder / "plate.apt").string());
    must("run model.move deltaX=1");
    must("run model.compare file=" + file("plate.apt"));
    EXPECT_EQ(journal().back(), "run model.compare file=" + (folder / "plate.apt").string()) << "it stands there now";
}

TEST_F(JournalOfMisses, WhatACommandPutsIntoItsDialogIsNotSetAgain) {
    must("run line.inputSection section=2");
    must("run line.rebreak cancel=dialog"); // came up with the five points of the section
    must("run line.rebreak compression=2");
    EXPECT_EQ(journal().back(), "run line.rebreak compression=2");
}

TEST_F(JournalOfMisses, NumbersThatCameOfACaptureAreSetWhereNothingIsCaptured) {
    must("open " + file("two.apt"));
    must("run line.inputSection patch=2 section=3");
    must("run line.inputLine cancel=dialog"); // comes up with patch 2
    must("run line.exit");
    must("run line.inputLine");
    EXPECT_EQ(journal().back(), "run line.inputLine patch=2") << "a script would find patch 1";
    EXPECT_EQ(printed("state").at("capturedPatch"), 1);
}

TEST_F(ActLines, APointAndAFreePointThatBothWaitTakeOneClick) {
    must("run line.inputLine line=2");
    must("run point.capture");
    must("run point.free");
    must("capture point 1 3 4");
    const Json state = printed("state");
    EXPECT_EQ(state.at("pointCaptured"), true);
    EXPECT_EQ(state.at("freePointHeld"), true);
    EXPECT_THAT(printed("journal"),
                testing::ElementsAre("open " + (folder / "plate.apt").string(), "run line.inputLine line=2",
                                     "run point.capture", "run point.free", "capture point 1 3 4"));
}

TEST_F(ActLines, ACommandThatDropsTheSectionLeftByRebreakOfALineIsWritten) {
    must("run line.inputLine line=2");
    must("run line.rebreak");
    ASSERT_EQ(printed("state").at("capturedSection"), 1) << "the number of the line";
    must("run line.scaling"); // by 1: the points stay
    ASSERT_EQ(printed("state").at("capturedSection"), -1);
    EXPECT_EQ(printed("journal").back(), "run line.scaling");
}

// ---- A journal that saves, run again where it was made ----------------------------------------------------------------

TEST_F(ActLines, WithOverwriteASaveNeedsNoAnswer) {
    must("run file.saveAs file=" + file("copy.apt"));
    EventRecorder heard;
    BatchSession again(heard, {folder.path(), {800, 600}, false, true});
    std::int64_t at = 0;
    for (const std::string& line : {"open " + file("plate.apt"), "run file.saveAs file=" + file("copy.apt"),
                                    "run file.saveAs answer=yes file=" + file("other.apt")}) {
        EXPECT_EQ(again.run(++at, line), Next::GoOn) << line << heard.events.back();
    }
    EXPECT_EQ(again.run(++at, "run model.move answer=no"), Next::Fail) << "other answers must be asked for";
    BatchSession asked(heard, {folder.path(), {800, 600}, false});
    asked.run(1, "open " + file("plate.apt"));
    EXPECT_EQ(asked.run(2, "run file.saveAs file=" + file("copy.apt")), Next::Fail)
        << "without it the file is asked for";
}

} // namespace
} // namespace velmora
