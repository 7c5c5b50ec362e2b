#include <gmock/gmock.h>

#include "SessionFixture.h"

namespace velmora {
namespace {

using test::SessionFixture;
using testing::ElementsAreArray;
using testing::HasSubstr;

class DialogLines : public SessionFixture {
protected:
    void holdFirstSection() {
        must("open " + file("plate.apt"));
        must("run line.inputSection patch=1 section=1");
    }
};

TEST_F(DialogLines, FieldsAreSetAndOkIsPressed) {
    holdFirstSection();
    EXPECT_EQ(event("dialog").dump(),
              R"({"event":"dialog","name":"CInputSection","title":"Input section","result":"ok",)"
              R"("fields":{"patch":1,"maximumPatches":1,"section":1,"maximumSections":4}})");
}

TEST_F(DialogLines, WithoutFieldsOkIsPressedOnWhatIsShown) {
    holdFirstSection();
    must("run line.rebreak");
    const Json dialog = event("dialog");
    EXPECT_EQ(dialog.at("title"), "Rebreak ");
    EXPECT_EQ(dialog.at("fields").dump(),
              R"({"regime":1,"function":1,"style":1,"exactness":0,"newCount":5,"compression":1.0,"firstPoint":1,)"
              R"("lastPoint":5,"capturedNumber":1,"firstCurve":1,"lastCurve":4,"patchNumber":1,"useBlock":0})");
}

TEST_F(DialogLines, EventsOfTheCommandFollowTheDialog) {
    holdFirstSection();
    ASSERT_GE(events.size(), 3U);
    EXPECT_EQ(events[0].at("event"), "dialog");
    EXPECT_EQ(events[1].at("event"), "status");
    EXPECT_EQ(events.back().at("event"), "done");
}

TEST_F(DialogLines, FieldsAreSetInTheGivenOrder) {
    holdFirstSection();
    // "First" is live in the regime for all sections only.
    EXPECT_THAT(errorOf("run line.rebreak firstCurve=2 regime=2"), HasSubstr("The field is off"));
    must("run line.rebreak regime=2 firstCurve=2 regime=1 regime=2 function=2");
    EXPECT_EQ(event("dialog").at("fields").at("firstCurve"), 2);
}

TEST_F(DialogLines, CancelTakesNothing) {
    holdFirstSection();
    must("run line.rebreak newCount=9 cancel=dialog");
    EXPECT_EQ(event("dialog").at("result"), "cancel");
    EXPECT_EQ(printed("state").at("counts"), Json({{5, 5, 5, 5}}));
    EXPECT_EQ(printed("dialog CRebreak").at("newCount"), 5);
}

TEST_F(DialogLines, AnUnknownFieldEndsTheScriptBeforeAnythingIsDone) {
    holdFirstSection();
    const std::string error = errorOf("run line.rebreak newcount=9");
    EXPECT_THAT(error, HasSubstr("\"newcount=9\""));
    EXPECT_THAT(error, HasSubstr("newCount")) << "the remedy tells the fields";
    EXPECT_EQ(kinds("dialog"), 0);
    EXPECT_EQ(printed("state").at("documentModified"), false);
}

TEST_F(DialogLines, AReadOnlyFieldIsRefused) {
    holdFirstSection();
    EXPECT_THAT(errorOf("run line.rebreak patchNumber=1"), HasSubstr("read-only"));
}

TEST_F(DialogLines, AFieldThatIsOffIsRefused) {
    holdFirstSection();
    EXPECT_THAT(errorOf("run line.rebreak useBlock=1"), HasSubstr("off"));
}

TEST_F(DialogLines, ARadioChoiceThatIsOffIsRefused) {
    test::writeFileText(folder / "lines.skl", "2\n2\n0 0 0\n1 0 0\n3\n0 1 0\n1 1 0\n2 1 0\n");
    must("open " + file("lines.skl"));
    must("run line.inputSection patch=1 section=1");
    EXPECT_THAT(errorOf("run line.rebreak regime=2"), HasSubstr("off"));
}

TEST_F(DialogLines, ValuesThatAreNoNumbersOrOutOfRangeAreRefused) {
    holdFirstSection();
    for (const char* field :
         {"newCount=many", "newCount=", "newCount=1", "newCount=1000001", "newCount=2.5", "compression=0",
          "compression=nan", "compression=inf", "exactness=101", "regime=3", "regime=0", "style=x"}) {
        const std::string error = errorOf(std::string("run line.rebreak ") + field);
        EXPECT_THAT(error, HasSubstr(field));
        EXPECT_THAT(error, HasSubstr("give another value"));
    }
    must("run patch.inputAndAdd number=1");
    must("run line.inputSection");
    EXPECT_THAT(errorOf("run line.rebreak regime=2 useBlock=2"), HasSubstr("useBlock=2"));
}

TEST_F(DialogLines, ADialogThatStaysOpenPrintsItsMessageFirst) {
    must("open " + file("plate.apt"));
    const std::string error = errorOf("run line.inputSection patch=1 section=9");
    EXPECT_THAT(error, HasSubstr("\"CInputSection\" stays open after OK"));
    EXPECT_THAT(error, HasSubstr("\"section\""));
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].at("event"), "message");
    EXPECT_EQ(events[0].at("text"), "Number of inputted section is corrected");
    EXPECT_EQ(printed("state").at("sectionCaptured"), false);
}

TEST_F(DialogLines, CheckBoxesAreZeroOrOne) {
    must("open " + file("plate.apt"));
    must("run view.features showFirstPoints=1");
    EXPECT_EQ(event("dialog").at("fields").dump(),
              R"({"showBlockOnly":0,"showFirstPoints":1,"showDoublePoints":0,"showBuffer":0,"showZBlockMarkers":0})");
    EXPECT_EQ(printed("state").at("showFirstPoints"), true);
}

TEST_F(DialogLines, WhatWasTakenIsTheNextDefault) {
    holdFirstSection();
    must("run line.rebreak regime=2 function=2 compression=2.5");
    EXPECT_EQ(printed("dialog CRebreak").at("compression"), 2.5);
    must("run line.rebreak cancel=dialog");
    EXPECT_EQ(event("dialog").at("fields").at("function"), 2);
}

/// The fields of a dialog, in the order in which they are shown.
struct Promise {
    const char* dialog;
    std::vector<std::string> fields;
};

TEST_F(DialogLines, DialogsHaveTheirPromisedFields) {
    const std::vector<Promise> promises = {
        {"Cduplicate", {"duplicateCount"}},
        {"CRebreak",
         {"regime", "function", "style", "exactness", "newCount", "compression", "firstPoint", "lastPoint",
          "capturedNumber", "firstCurve", "lastCurve", "patchNumber", "useBlock"}},
        {"CInputPatch", {"number", "maximum"}},
        {"CInputSection", {"patch", "maximumPatches", "section", "maximumSections"}},
        {"CInputLine", {"patch", "maximumPatches", "line", "maximumLines"}},
        {"CFeatures", {"showBlockOnly", "showFirstPoints", "showDoublePoints", "showBuffer", "showZBlockMarkers"}},
        {"CBeforeAfter", {"choice"}},
        {"dlgEditPoint", {"x", "y", "z"}},
        {"dlgViewing", {"angleX", "angleY", "angleZ", "distanceX", "distanceY", "distanceZ", "scale"}},
    };
    for (const Promise& promise : promises) {
        std::vector<std::string> names;
        const Json dialog = printed(std::string("dialog ") + promise.dialog);
        for (const auto& [name, value] : dialog.items()) {
            names.push_back(name);
        }
        EXPECT_THAT(names, ElementsAreArray(promise.fields)) << promise.dialog;
    }
}

TEST_F(DialogLines, PrintingAnUnknownDialogIsAnError) {
    EXPECT_THAT(errorOf("print dialog CNothing"), HasSubstr("\"CNothing\""));
    EXPECT_NE(errorOf("print dialog"), "");
    EXPECT_NE(errorOf("print dialog CRebreak CRebreak"), "");
}

} // namespace
} // namespace velmora
