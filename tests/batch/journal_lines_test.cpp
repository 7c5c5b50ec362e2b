#include <gmock/gmock.h>

#include "SessionFixture.h"

// Acts by number and the journal, as lines of a script.

namespace velmora {
namespace {

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

} // namespace
} // namespace velmora
