#include "input_dialogs.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace velmora::test {

namespace {

std::string confirmText(DialogForm& form) {
    const auto refusal = acceptDialog(form);
    return refusal ? refusal->key + ": " + refusal->message : "ok";
}

} // namespace

TEST(InputPatchDialog, LowersANumberAboveTheMaximumOnOpeningWithoutAWord) {
    CInputPatch values{9, 4};
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_EQ(values.number, 4);
}

TEST(InputPatchDialog, TakesEachNumberOfAPatch) {
    CInputPatch values{1, 4};
    DialogForm form = describe(values);
    openDialog(form);
    for (const char* number : {"1", "4"}) {
        EXPECT_FALSE(setField(form, "number", number).has_value());
        EXPECT_EQ(confirmText(form), "ok");
    }
}

TEST(InputPatchDialog, LowersANumberAboveTheMaximumOnOkAndStaysOpen) {
    CInputPatch values{1, 4};
    DialogForm form = describe(values);
    openDialog(form);
    ASSERT_FALSE(setField(form, "number", "5").has_value());
    EXPECT_EQ(values.number, 5);
    EXPECT_EQ(confirmText(form), "number: Number of inputted patch is corrected");
    EXPECT_EQ(values.number, 4);
    EXPECT_EQ(confirmText(form), "ok");
}

TEST(InputPatchDialog, NeverLetsANumberBelowOneThrough) {
    for (const char* number : {"0", "-3"}) {
        CInputPatch values{1, 4};
        DialogForm form = describe(values);
        openDialog(form);
        if (!setField(form, "number", number).has_value()) {
            EXPECT_NE(confirmText(form), "ok") << number;
        }
        EXPECT_GE(values.number, 1);
        EXPECT_LE(values.number, 4);
    }
}

// ---- Section and line -----------------------------------------------------------------------------------------------

namespace {

/// Three patches of 5, 3 and 8 sections, or lines.
template <class Values>
struct CurveDialog {
    Values values;
    DialogForm form;

    explicit CurveDialog(std::vector<std::int32_t> block = {}, Values start = {})
        : values(start), form(describe(values, {{5, 3, 8}, std::move(block)})) {
        values.maximumPatches = 3;
        openDialog(form);
    }
    CurveDialog(const CurveDialog&) = delete;
    CurveDialog& operator=(const CurveDialog&) = delete;

    std::string press(const char* patch, const char* curveKey, const char* curve) {
        if (setField(form, "patch", patch).has_value() || setField(form, curveKey, curve).has_value()) {
            return "refused";
        }
        return confirmText(form);
    }
};

} // namespace

TEST(InputSectionDialog, TakesTheMaximumFromThePatch) {
    CurveDialog<CInputSection> dialog;
    EXPECT_EQ(dialog.values.maximumSections, 5);
    setField(dialog.form, "patch", "3");
    EXPECT_EQ(dialog.values.maximumSections, 8);
}

TEST(InputSectionDialog, TakesTheLastSectionOfTheLastPatch) {
    CurveDialog<CInputSection> dialog;
    EXPECT_EQ(dialog.press("3", "section", "8"), "ok");
}

TEST(InputSectionDialog, CorrectsAPatchAboveTheMaximumFirst) {
    CurveDialog<CInputSection> dialog;
    EXPECT_EQ(dialog.press("7", "section", "99"), "patch: Number of inputted patch is corrected");
    EXPECT_EQ(dialog.values.patch, 3);
    EXPECT_EQ(dialog.values.maximumSections, 8);
    EXPECT_EQ(dialog.values.section, 99);
    EXPECT_EQ(confirmText(dialog.form), "section: Number of inputted section is corrected");
    EXPECT_EQ(dialog.values.section, 8);
    EXPECT_EQ(confirmText(dialog.form), "ok");
}

TEST(InputSectionDialog, CorrectsAPatchAboveTheMaximumBeforeItLooksAtTheZBlock) {
    CurveDialog<CInputSection> dialog({1, 0});
    EXPECT_EQ(dialog.press("4", "section", "1"), "patch: Number of inputted patch is corrected");
    EXPECT_EQ(dialog.values.patch, 3);
}

TEST(InputSectionDialog, WantsAPatchOfTheZBlock) {
    CurveDialog<CInputSection> dialog({1, 0});
    EXPECT_EQ(dialog.press("3", "section", "9"), "patch: Number of inputted patch is out of Block");
    EXPECT_EQ(dialog.values.patch, 2); // the first of the selection
    EXPECT_EQ(dialog.values.maximumSections, 3);
    EXPECT_EQ(dialog.press("1", "section", "5"), "ok");
    EXPECT_EQ(dialog.press("2", "section", "3"), "ok");
}

TEST(InputSectionDialog, LowersASectionAboveItsMaximum) {
    CurveDialog<CInputSection> dialog;
    EXPECT_EQ(dialog.press("2", "section", "4"), "section: Number of inputted section is corrected");
    EXPECT_EQ(dialog.values.section, 3);
    EXPECT_EQ(confirmText(dialog.form), "ok");
}

TEST(InputSectionDialog, RefusesNumbersOutOfTheirRange) {
    CurveDialog<CInputSection> dialog;
    EXPECT_EQ(dialog.press("0", "section", "1"), "refused");
    EXPECT_EQ(dialog.press("1", "section", "0"), "refused");
    EXPECT_EQ(dialog.press("1000001", "section", "1"), "refused");
    EXPECT_EQ(dialog.press("1", "section", "1000001"), "refused");
}

TEST(InputSectionDialog, NeverTakesASectionOfAPatchWithoutAny) {
    CInputSection values;
    DialogForm form = describe(values, {{0}, {}});
    openDialog(form);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NE(confirmText(form), "ok");
    }
}

TEST(InputLineDialog, TakesTheMaximumFromThePatch) {
    CurveDialog<CInputLine> dialog;
    EXPECT_EQ(dialog.values.maximumLines, 5);
    EXPECT_EQ(dialog.press("3", "line", "8"), "ok");
    EXPECT_EQ(dialog.values.maximumLines, 8);
}

TEST(InputLineDialog, CorrectsAPatchAboveTheMaximum) {
    CurveDialog<CInputLine> dialog;
    EXPECT_EQ(dialog.press("4", "line", "1"), "patch: Number of inputted patch is corrected");
    EXPECT_EQ(dialog.values.patch, 3);
    EXPECT_EQ(dialog.values.maximumLines, 8);
}

TEST(InputLineDialog, WantsAPatchOfTheZBlock) {
    CurveDialog<CInputLine> dialog({2});
    EXPECT_EQ(dialog.press("1", "line", "1"), "patch: Number of inputted patch is out of Block");
    EXPECT_EQ(dialog.values.patch, 3);
    EXPECT_EQ(confirmText(dialog.form), "ok");
}

TEST(InputLineDialog, LowersALineAboveItsMaximumWithItsOwnWords) {
    CurveDialog<CInputLine> dialog;
    EXPECT_EQ(dialog.press("1", "line", "6"), "line: Number of inputted lines is corrected");
    EXPECT_EQ(dialog.values.line, 5);
    EXPECT_EQ(confirmText(dialog.form), "ok");
}

} // namespace velmora::test
