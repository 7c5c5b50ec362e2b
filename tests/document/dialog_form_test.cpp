#include "DialogForm.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velmora::test {

namespace {

/// A dialog of one field of each kind, with what a refresh was told.
struct Sample : testing::Test {
    Sample() {
        form.fields = {integerField("count", "Count", count, 2, 1000000),
                       realField("size", "Size", size, 0.5, 10),
                       integerField("anyWhole", "Any", anyWhole),
                       realField("any", "Any", any),
                       checkField("tick", "Tick", tick),
                       radioField("way", way, {"One", "Two", "Three"}),
                       shownOnly(integerField("shown", "Shown", shown, 1, 5))};
        form.refresh = [this](DialogForm&, std::string_view key) { refreshed.emplace_back(key); };
    }

    /// The refusal's field, or "taken".
    std::string set(const char* key, const std::string& text) {
        const auto refusal = setField(form, key, text);
        if (refusal) {
            EXPECT_FALSE(refusal->message.empty());
        }
        return refusal ? "refused " + refusal->key : "taken";
    }

    std::int32_t count = 20;
    std::int32_t anyWhole = 1;
    double size = 1.5;
    double any = 2.5;
    bool tick = false;
    std::int32_t way = 1;
    std::int32_t shown = 3;
    DialogForm form;
    std::vector<std::string> refreshed;
};

struct BadIntegerField : Sample, testing::WithParamInterface<const char*> {};
struct BadRealField : Sample, testing::WithParamInterface<const char*> {};

} // namespace

TEST_P(BadIntegerField, RefusesAndChangesNothing) {
    EXPECT_EQ(set("count", GetParam()), "refused count");
    EXPECT_EQ(count, 20);
    EXPECT_TRUE(refreshed.empty());
}

INSTANTIATE_TEST_SUITE_P(Texts, BadIntegerField,
                         testing::Values("", " ", "two", "3.5", "3.", "1e3", "0x10", "3 ", " 3", "3,5", "--3", "+-3",
                                         "-", "+", "nan", "2147483648", "99999999999999999999", "1", "0", "-5",
                                         "1000001"));

TEST_P(BadRealField, RefusesAndChangesNothing) {
    EXPECT_EQ(set("size", GetParam()), "refused size");
    EXPECT_EQ(size, 1.5);
    EXPECT_TRUE(refreshed.empty());
}

INSTANTIATE_TEST_SUITE_P(Texts, BadRealField,
                         testing::Values("", " ", "one", "1,5", "1.5 ", " 1.5", "1.5x", "nan", "inf", "-inf", "1e999",
                                         "+-1", "-", "0x1", "0.49999", "10.00001", "-1"));

TEST_F(Sample, NumbersOnTheEdgesOfTheRangeAreTaken) {
    EXPECT_EQ(set("count", "2"), "taken");
    EXPECT_EQ(count, 2);
    EXPECT_EQ(set("count", "1000000"), "taken");
    EXPECT_EQ(count, 1000000);
    EXPECT_EQ(set("size", "0.5"), "taken");
    EXPECT_EQ(size, 0.5);
    EXPECT_EQ(set("size", "1e1"), "taken");
    EXPECT_EQ(size, 10);
    EXPECT_EQ(set("size", "+2.25"), "taken");
    EXPECT_EQ(size, 2.25);
}

TEST_F(Sample, AFieldWithoutARangeTakesAnyFiniteNumber) {
    EXPECT_EQ(set("any", "-1e300"), "taken");
    EXPECT_EQ(any, -1e300);
    EXPECT_EQ(set("any", "nan"), "refused any");
    EXPECT_EQ(set("any", "inf"), "refused any");
    EXPECT_EQ(any, -1e300);
    EXPECT_EQ(set("anyWhole", "-2147483648"), "taken");
    EXPECT_EQ(anyWhole, -2147483647 - 1);
}

TEST_F(Sample, ANumberHasOneSign) {
    for (const char* key : {"any", "anyWhole"}) {
        EXPECT_EQ(set(key, "+-3"), std::string("refused ") + key);
        EXPECT_EQ(set(key, "-+3"), std::string("refused ") + key);
    }
    EXPECT_EQ(any, 2.5);
    EXPECT_EQ(anyWhole, 1);
}

TEST_F(Sample, ACheckBoxTakesNothingButZeroAndOne) {
    EXPECT_EQ(set("tick", "1"), "taken");
    EXPECT_TRUE(tick);
    EXPECT_EQ(set("tick", "0"), "taken");
    EXPECT_FALSE(tick);
    for (const char* text : {"2", "", "true", "-1", "01"}) {
        EXPECT_EQ(set("tick", text), "refused tick") << text;
        EXPECT_FALSE(tick);
    }
}

TEST_F(Sample, ARadioGroupCountsItsChoicesFromOne) {
    EXPECT_EQ(set("way", "3"), "taken");
    EXPECT_EQ(way, 3);
    for (const char* text : {"0", "4", "-1", "", "Two", "1.0"}) {
        EXPECT_EQ(set("way", text), "refused way") << text;
        EXPECT_EQ(way, 3);
    }
}

TEST_F(Sample, AChoiceThatIsOffIsRefused) {
    form.find("way")->choiceOn[1] = false;
    EXPECT_EQ(set("way", "2"), "refused way");
    EXPECT_EQ(way, 1);
    EXPECT_EQ(set("way", "3"), "taken");
}

TEST_F(Sample, AFieldThatIsOffIsRefused) {
    for (const char* key : {"count", "size", "tick", "way"}) {
        form.find(key)->on = false;
        EXPECT_EQ(set(key, "2"), std::string("refused ") + key);
    }
    EXPECT_EQ(count, 20);
    EXPECT_EQ(way, 1);
    EXPECT_TRUE(refreshed.empty());
}

TEST_F(Sample, AReadOnlyFieldIsRefused) {
    EXPECT_EQ(set("shown", "4"), "refused shown");
    EXPECT_EQ(shown, 3);
}

TEST_F(Sample, AnUnknownFieldIsRefused) {
    EXPECT_EQ(set("Count", "4"), "refused Count");
    EXPECT_EQ(set("", "4"), "refused ");
}

TEST_F(Sample, RefreshRunsOnOpeningAndAfterEachValueTaken) {
    openDialog(form);
    set("count", "5");
    set("count", "x");
    set("tick", "1");
    set("way", "2");
    EXPECT_EQ(refreshed, (std::vector<std::string>{"", "count", "tick", "way"}));
}

TEST_F(Sample, WhatIsTriedIsSeenWhileItIsTriedAlone) {
    std::vector<std::string> seen;
    form.tried = [&](bool good) { seen.push_back((good ? "good " : "bad ") + std::to_string(count)); };
    tryField(form, "count", "30");
    tryField(form, "count", "1"); // below its range
    tryField(form, "count", "3x");
    tryField(form, "count", "");
    EXPECT_EQ(seen, (std::vector<std::string>{"good 30", "bad 20", "bad 20", "bad 20"}));
    EXPECT_EQ(count, 20);
    EXPECT_TRUE(refreshed.empty());
    EXPECT_TRUE(form.changes.empty());
    form.find("count")->on = false;
    tryField(form, "count", "30");
    tryField(form, "shown", "4");
    tryField(form, "none", "4");
    EXPECT_EQ(seen.size(), 4U) << "what cannot be set is not tried";
    form.tried = [&](bool) { throw std::runtime_error("no memory"); };
    EXPECT_THROW(tryField(form, "size", "3"), std::runtime_error);
    EXPECT_EQ(size, 1.5);
}

TEST_F(Sample, ADialogWithoutRefreshTakesValuesToo) {
    form.refresh = nullptr;
    openDialog(form);
    EXPECT_EQ(set("count", "5"), "taken");
    EXPECT_EQ(count, 5);
}

TEST_F(Sample, OkTestsTheRangesOfLiveFieldsInOrder) {
    EXPECT_FALSE(acceptDialog(form).has_value());
    size = 11;
    count = 1;
    ASSERT_TRUE(acceptDialog(form).has_value());
    EXPECT_EQ(acceptDialog(form)->key, "count");
    form.find("count")->on = false;
    EXPECT_EQ(acceptDialog(form)->key, "size");
    size = std::nan("");
    EXPECT_EQ(acceptDialog(form)->key, "size");
    form.find("size")->on = false;
    shown = 99; // shown only: the command's own number
    EXPECT_FALSE(acceptDialog(form).has_value());
}

TEST_F(Sample, OkAsksTheDialogsOwnTestAfterTheRanges) {
    int asked = 0;
    form.confirm = [&](DialogForm&) -> std::optional<DialogRefusal> {
        ++asked;
        return DialogRefusal{"no", "any"};
    };
    count = 1;
    EXPECT_EQ(acceptDialog(form)->key, "count");
    EXPECT_EQ(asked, 0);
    count = 2;
    EXPECT_EQ(acceptDialog(form)->message, "no");
    EXPECT_EQ(asked, 1);
}

TEST_F(Sample, ARefusedIntegerNamesItsRangeInPlainDigits) {
    const auto refusal = setField(form, "count", "1000001");
    ASSERT_TRUE(refusal.has_value());
    EXPECT_NE(refusal->message.find("between 2 and 1000000"), std::string::npos) << refusal->message;
}

TEST_F(Sample, FieldTextGivesTheSameNumberBack) {
    size = 0.1;
    EXPECT_EQ(fieldText(*form.find("size")), "0.1");
    count = 1000000;
    EXPECT_EQ(fieldText(*form.find("count")), "1000000");
    way = 2;
    EXPECT_EQ(fieldText(*form.find("way")), "2");
    tick = true;
    EXPECT_EQ(fieldText(*form.find("tick")), "1");
    any = 1.0 / 3.0;
    const std::string third = fieldText(*form.find("any"));
    any = 0;
    EXPECT_EQ(set("any", third), "taken");
    EXPECT_EQ(any, 1.0 / 3.0);
}

// ---- What was set ---------------------------------------------------------------------------------------------------

namespace {

std::string changesOf(const DialogForm& form) {
    std::string text;
    for (const FieldChange& change : form.changes) {
        text += change.key + '=' + change.text + ' ';
    }
    return text;
}

} // namespace

TEST_F(Sample, WhatWasSetStandsInTheListAsTheFieldHoldsIt) {
    set("size", "+2.50");
    set("tick", "1");
    set("count", "5x");
    EXPECT_EQ(changesOf(form), "size=2.5 tick=1 ") << "what was refused is not there";
}

TEST_F(Sample, WhatWasSetToAndFroIsLeftOut) {
    set("count", "30");
    set("way", "2");
    set("count", "40");
    EXPECT_EQ(changesOf(form), "way=2 count=40 ");
    set("way", "1");
    set("count", "20");
    set("size", "1.5");
    EXPECT_EQ(changesOf(form), "");
}

TEST_F(Sample, WhatBroughtOtherChangesKeepsItsPlace) {
    form.refresh = [this](DialogForm&, std::string_view key) {
        if (key == "way") {
            size = 1.0;
        }
    };
    set("size", "3");
    set("way", "2");
    set("size", "4");
    set("way", "1");
    EXPECT_EQ(changesOf(form), "size=3 way=2 size=4 way=1 ") << "each step may decide what the next one does";
    EXPECT_EQ(size, 1.0);
}

TEST_F(Sample, WhatOkPutRightCountsAsSet) {
    form.confirm = [this](DialogForm&) -> std::optional<DialogRefusal> {
        if (count <= 100) {
            return std::nullopt;
        }
        count = 100;
        return DialogRefusal{"Too many", "count"};
    };
    set("count", "500");
    ASSERT_TRUE(acceptDialog(form));
    EXPECT_EQ(changesOf(form), "count=100 ");
    EXPECT_FALSE(acceptDialog(form));
}

TEST_F(Sample, FindGivesNullForAnUnknownField) {
    EXPECT_EQ(form.find("none"), nullptr);
    const DialogForm& constant = form;
    EXPECT_EQ(constant.find("count"), form.find("count"));
    EXPECT_EQ(constant.find("none"), nullptr);
}

} // namespace velmora::test
