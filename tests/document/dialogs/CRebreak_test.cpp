#include "CRebreak.h"

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

namespace velmora::test {

namespace {

/// The dialog over a curve of 10 points of a regular model, with 3 patches in the zBlock.
struct RebreakDialog : testing::Test {
    RebreakDialog() {
        values.isApt = true;
        values.blockCount = 3;
        values.curveCount = 10;
        values.law.newCount = values.law.lastPoint = 10;
    }

    void open() {
        form = describe(values);
        openDialog(form);
    }

    void set(const char* key, const char* text) {
        const auto refusal = setField(form, key, text);
        ASSERT_FALSE(refusal.has_value()) << key << ": " << refusal->message;
    }

    bool on(const char* key) const { return form.find(key)->on; }
    bool choiceOn(const char* key, std::size_t choice) const { return form.find(key)->choiceOn[choice - 1]; }

    void expectOn(std::initializer_list<const char*> keys) const {
        for (const char* key : keys) {
            EXPECT_TRUE(on(key)) << key;
        }
    }
    void expectOff(std::initializer_list<const char*> keys) const {
        for (const char* key : keys) {
            EXPECT_FALSE(on(key)) << key;
        }
    }

    CRebreak values;
    DialogForm form;
};

} // namespace

TEST_F(RebreakDialog, OfAnAptModelOpensAsItWasLeft) {
    values.regime = 2;
    values.law.fitToLawCurve = true;
    values.law.linear = true;
    open();
    EXPECT_EQ(values.regime, 2);
    EXPECT_TRUE(values.law.fitToLawCurve);
    EXPECT_TRUE(values.law.linear);
    EXPECT_TRUE(choiceOn("regime", 2));
}

TEST_F(RebreakDialog, OfASklModelOpensWithRegimeAndStyleOne) {
    values.isApt = false;
    values.regime = 2;
    values.law.fitToLawCurve = true;
    open();
    EXPECT_EQ(values.regime, 1);
    EXPECT_FALSE(values.law.fitToLawCurve);
    EXPECT_FALSE(choiceOn("regime", 2));
    EXPECT_FALSE(choiceOn("style", 2));
    expectOff({"capturedNumber", "useBlock", "firstCurve", "lastCurve"});
    expectOn({"newCount", "firstPoint", "lastPoint", "compression", "exactness"});
}

TEST_F(RebreakDialog, OfASklModelGivesFitBackAtTheNextRefresh) {
    values.isApt = false;
    open();
    set("function", "2");
    EXPECT_TRUE(choiceOn("style", 2));
    EXPECT_FALSE(choiceOn("regime", 2));
    expectOff({"capturedNumber"});
}

TEST_F(RebreakDialog, WithOneCurveHasCapturedOnAndTheRangeOff) {
    open();
    expectOn({"capturedNumber", "newCount", "firstPoint", "lastPoint"});
    expectOff({"firstCurve", "lastCurve"});
}

TEST_F(RebreakDialog, WithOneLineCannotChangeTheNumberOfSections) {
    values.lineMode = true;
    open();
    expectOn({"capturedNumber"});
    expectOff({"newCount", "firstPoint", "lastPoint", "firstCurve", "lastCurve"});
}

TEST_F(RebreakDialog, WithAllSectionsHasTheRangeOnAndCapturedOff) {
    open();
    set("regime", "2");
    expectOn({"newCount", "firstPoint", "lastPoint", "firstCurve", "lastCurve"});
    expectOff({"capturedNumber"});
}

TEST_F(RebreakDialog, WithAllLinesHasTheCountsOnAndTheRangeOff) {
    values.lineMode = true;
    open();
    set("regime", "2");
    expectOn({"newCount", "firstPoint", "lastPoint"});
    expectOff({"capturedNumber", "firstCurve", "lastCurve"});
}

TEST_F(RebreakDialog, TypedCountsDoNotLingerBehindASingleLine) {
    values.lineMode = true;
    open();
    set("regime", "2");
    set("newCount", "50");
    set("firstPoint", "3");
    set("lastPoint", "7");
    set("regime", "1");
    EXPECT_EQ(values.law.newCount, 10);
    EXPECT_EQ(values.law.firstPoint, 1);
    EXPECT_EQ(values.law.lastPoint, 10);
}

TEST_F(RebreakDialog, HasExactnessOnWithSplineOnly) {
    open();
    expectOn({"exactness"});
    set("function", "2");
    expectOff({"exactness"});
    set("function", "1");
    expectOn({"exactness"});
}

TEST_F(RebreakDialog, HasCompressionOnUntilFitTurnsItOff) {
    open();
    expectOn({"compression"});
    set("function", "2");
    expectOn({"compression"});
    set("style", "2");
    expectOff({"compression"});
    set("style", "1");
    expectOn({"compression"});
}

TEST_F(RebreakDialog, FitTakesLawAndCountFromTheCapturedCurve) {
    open();
    set("style", "2");
    expectOff({"newCount", "compression", "firstPoint", "lastPoint", "capturedNumber", "firstCurve", "lastCurve"});
    set("regime", "2");
    expectOff({"newCount", "compression", "firstPoint", "lastPoint", "capturedNumber", "firstCurve", "lastCurve"});
}

TEST_F(RebreakDialog, TypedCountsDoNotLingerBehindFit) {
    open();
    set("newCount", "50");
    set("lastPoint", "7");
    set("style", "2");
    EXPECT_EQ(values.law.newCount, 10);
    EXPECT_EQ(values.law.firstPoint, 1);
    EXPECT_EQ(values.law.lastPoint, 10);
}

TEST_F(RebreakDialog, OpenedWithFitTakesTheWholeCurve) {
    values.law.fitToLawCurve = true;
    values.law.newCount = 77;
    values.law.firstPoint = 3;
    values.law.lastPoint = 4;
    open();
    EXPECT_EQ(values.law.newCount, 10);
    EXPECT_EQ(values.law.firstPoint, 1);
    EXPECT_EQ(values.law.lastPoint, 10);
}

TEST_F(RebreakDialog, LeavingFitGivesTheFieldsBack) {
    open();
    set("style", "2");
    set("style", "1");
    expectOn({"newCount", "compression", "firstPoint", "lastPoint", "capturedNumber"});
}

TEST_F(RebreakDialog, HasBlockOnOnlyForAllCurvesOfARegularModelWithAZBlock) {
    for (const bool apt : {false, true}) {
        for (const int regime : {1, 2}) {
            for (const int count : {0, 1, 3}) {
                values.isApt = apt;
                values.regime = regime;
                values.blockCount = count;
                values.useBlock = true;
                open();
                const bool expected = apt && regime == 2 && count >= 1;
                EXPECT_EQ(on("useBlock"), expected) << apt << regime << count;
                EXPECT_EQ(values.useBlock, expected) << apt << regime << count;
            }
        }
    }
}

TEST_F(RebreakDialog, GoingBackToOneCurveUnticksBlock) {
    open();
    set("regime", "2");
    set("useBlock", "1");
    set("regime", "1");
    EXPECT_FALSE(values.useBlock);
    expectOff({"useBlock"});
}

TEST_F(RebreakDialog, TickingBlockSetsCompressAndSwitchesOffWhatFollowsEachPatch) {
    open();
    set("regime", "2");
    set("style", "2");
    set("useBlock", "1");
    EXPECT_FALSE(values.law.fitToLawCurve);
    EXPECT_FALSE(choiceOn("style", 2));
    expectOff({"firstPoint", "lastPoint", "firstCurve", "lastCurve", "capturedNumber"});
    expectOn({"newCount", "compression", "exactness"});
}

TEST_F(RebreakDialog, UntickingBlockGivesTheFieldsBack) {
    open();
    set("regime", "2");
    set("useBlock", "1");
    set("useBlock", "0");
    expectOn({"firstPoint", "lastPoint", "firstCurve", "lastCurve"});
    EXPECT_TRUE(choiceOn("style", 2));
}

TEST_F(RebreakDialog, NeverLetsThePatchBeTyped) {
    open();
    EXPECT_TRUE(setField(form, "patchNumber", "2").has_value());
    set("regime", "2");
    EXPECT_TRUE(setField(form, "patchNumber", "2").has_value());
}

TEST_F(RebreakDialog, RefusesWhatIsOutOfRange) {
    open();
    for (const auto& [key, text] : std::initializer_list<std::pair<const char*, const char*>>{
             {"exactness", "-1"},
             {"exactness", "101"},
             {"newCount", "1"},
             {"newCount", "1000001"},
             {"compression", "0.00009"},
             {"compression", "10001"},
             {"firstPoint", "0"},
             {"lastPoint", "0"},
             {"capturedNumber", "0"},
         }) {
        EXPECT_TRUE(setField(form, key, text).has_value()) << key << "=" << text;
    }
    EXPECT_EQ(values.law.newCount, 10);
    EXPECT_EQ(values.law.compression, 1.0);
}

TEST_F(RebreakDialog, OkTestsTheCountOfACurveOfOnePoint) {
    values.law.newCount = values.law.lastPoint = values.curveCount = 1;
    open();
    const auto refusal = acceptDialog(form);
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->key, "newCount");
}

} // namespace velmora::test
