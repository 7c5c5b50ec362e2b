#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

Look flag(bool DocumentState::*which) {
    return [=](DocumentState& doc) { return std::string(doc.*which ? "on" : "off"); };
}

Patch dented() {
    Patch patch = flatPatch(4, 4);
    patch[1][1] = {1.5, 1.2, 0.6};
    return patch;
}

const Steps openField = {{.id = "file.openField", .files = {"flow.dat"}}};

} // namespace

const Choices gridChoices = {
    {.dialog = "CMerge",
     .field = "kind",
     .value = 1,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look = pointCounts,
     .expected = "3 3 3 3 3"},
    {.dialog = "CMerge",
     .field = "kind",
     .value = 2,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look = pointCounts,
     .expected = "5 5 5"},
    // It is shown and stored, and has no part in the merge.
    {.dialog = "CMerge",
     .field = "aptControl",
     .value = 0,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look =
         [](DocumentState& doc) {
             return pointCounts(doc) + (doc.dialogs->merge.aptControl ? " ticked" : " not ticked");
         },
     .expected = "3 3 3 3 3 not ticked"},
    {.dialog = "CMerge",
     .field = "aptControl",
     .value = 1,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look =
         [](DocumentState& doc) {
             return pointCounts(doc) + (doc.dialogs->merge.aptControl ? " ticked" : " not ticked");
         },
     .expected = "3 3 3 3 3 ticked"},
    {.dialog = "CMerge",
     .field = "matching",
     .value = 0,
     .command = "block.merge",
     .model = {{uneven()[0], uneven()[1]}, behind()},
     .before = addPatch(1) + addPatch(2),
     .look = along(0, 2),
     .expected = "0 2 4 6 8"},
    {.dialog = "CMerge",
     .field = "matching",
     .value = 1,
     .command = "block.merge",
     .model = {{uneven()[0], uneven()[1]}, behind()},
     .before = addPatch(1) + addPatch(2),
     .look = along(0, 2),
     .expected = "0 1 2 3 8"},
    {.dialog = "CMerge",
     .field = "showDouble",
     .value = 0,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = Steps{{.id = "view.features", .fields = {{"showDoublePoints", "1"}}}} + addPatch(1) + addPatch(2),
     .look = flag(&DocumentState::showDoublePoints),
     .expected = "off"},
    {.dialog = "CMerge",
     .field = "showDouble",
     .value = 1,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look = flag(&DocumentState::showDoublePoints),
     .expected = "on"},
    {.dialog = "CMerge",
     .field = "deleteDouble",
     .value = 0,
     .command = "block.merge",
     .before = openField + addPatch(1) + addPatch(2),
     .fields = {{"kind", "2"}},
     .look = [](DocumentState& doc) { return pointCounts(doc) + " with " + fieldCounts(doc); },
     .expected = "3 3 with 3 3"},
    {.dialog = "CMerge",
     .field = "deleteDouble",
     .value = 1,
     .command = "block.merge",
     .before = openField + addPatch(1) + addPatch(2),
     .fields = {{"kind", "2"}},
     .look = [](DocumentState& doc) { return pointCounts(doc) + " with " + fieldCounts(doc); },
     .expected = "3 3 with 3 3"},

    // The borders have equal steps, so each curve inside gets equal steps along its chords.
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 1,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.0548 1.1406 0.4219"},
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 2,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.4132 0.9917 0.4959"},
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 3,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.0476 0.992 0.3669"},
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 4,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.0272 0.994 0.3604"},
    {.dialog = "CSmooth",
     .field = "function",
     .value = 1,
     .command = "model.smooth",
     .model = {{uneven()[1], zigzag()[1], uneven()[1]}},
     .look = onChords(1),
     .expected = "off the chords"},
    {.dialog = "CSmooth",
     .field = "function",
     .value = 2,
     .command = "model.smooth",
     .model = {{uneven()[1], zigzag()[1], uneven()[1]}},
     .look = onChords(1),
     .expected = "on the chords"},

    {.dialog = "CInterpolate",
     .field = "fitToBuffer",
     .value = 0,
     .command = "line.interpolate",
     .model = {flatPatch(3, 3), {{{1, 1.5, 0}, {2, 2, 2}}, {{3, 3, 3}, {4, 4, 4}}}},
     .before = point(2, 1, 1) + Steps{{.id = "point.copy"}} + section(1, 2),
     .fields = {{"coefficient", "0.25"}},
     .look = along(0, 1, &Vector::y),
     .expected = "1.25 1.25 1.25"},
    {.dialog = "CInterpolate",
     .field = "fitToBuffer",
     .value = 1,
     .command = "line.interpolate",
     .model = {flatPatch(3, 3), {{{1, 1.5, 0}, {2, 2, 2}}, {{3, 3, 3}, {4, 4, 4}}}},
     .before = point(2, 1, 1) + Steps{{.id = "point.copy"}} + section(1, 2),
     .look = along(0, 1, &Vector::y),
     .expected = "1.5 1.5 1.5"},

    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 1,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = across(0),
     .expected = "-2 0 1 2"},
    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 2,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = across(0),
     .expected = "0 1 2 4"},
    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 3,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = along(0, 1),
     .expected = "-2 0 1 2 3"},
    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 4,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = along(0, 1),
     .expected = "0 1 2 3 5"},

};

INSTANTIATE_TEST_SUITE_P(Grid, DialogChoice, testing::ValuesIn(gridChoices), nameOf);

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfInterpolateStandOverItsNotice) {
    CInterpolate values;
    EXPECT_THAT(describe(values).notices, ElementsAre("Coefficient is changed in range (-1; 1)"));
}

TEST(DialogFields, OfIntersection) {
    EXPECT_THAT(linesOf("CIntersection"),
                ElementsAre("Intersection",
                            "insideSide |  | radio | 2 | \"Before intersection\" \"After intersection\"",
                            "insidePoints | Number of points | int | 20 | 2 to 1000000",
                            "outsideSide |  | radio | 2 | \"Before intersection\" \"After intersection\"",
                            "outsidePoints | Number of points | int | 20 | 2 to 1000000",
                            "tolerance | Tolerance | real | 5e-04 | 1e-12 to 1"));
}

TEST(DialogFields, OfIntersectionStandInTwoFrames) {
    CIntersection values;
    const DialogForm form = describe(values);
    EXPECT_EQ(form.find("insideSide")->group, "Patches in Block");
    EXPECT_EQ(form.find("insidePoints")->group, "Patches in Block");
    EXPECT_EQ(form.find("outsideSide")->group, "Patches out Block");
    EXPECT_EQ(form.find("outsidePoints")->group, "Patches out Block");
    EXPECT_EQ(form.find("tolerance")->group, "");
    EXPECT_EQ(form.focus, "insidePoints");
}

TEST(DialogFields, OfExtrapolation) {
    EXPECT_THAT(linesOf("CExtrapolation"),
                ElementsAre("Extrapolation",
                            "kind |  | radio | 1 | \"First section\" \"Last section\" \"First line\" \"Last line\"",
                            "coefficient | Coefficient | real | 1 | 0 to 1000000"));
}

TEST(DialogFields, OfMerge) {
    EXPECT_THAT(linesOf("CMerge"),
                ElementsAre("Merge", "kind |  | radio | 1 | \"Sections\" \"Lines\"",
                            "aptControl | APT control | check | 0", "matching | Matching | check | 0",
                            "showDouble | Show double points | check | 0",
                            "deleteDouble | Delete double sections | check | 0"));
}

TEST(DialogFields, OfSmooth) {
    EXPECT_THAT(linesOf("CSmooth"),
                ElementsAre("Smooth",
                            "regime |  | radio | 1 | \"Sections only\" \"Lines only\" \"Sections + Lines\" "
                            "\"Lines + Sections\"",
                            "function |  | radio | 1 | \"Spline\" \"Linear\""));
}

TEST(DialogFields, OfInterpolate) {
    EXPECT_THAT(linesOf("CInterpolate"), ElementsAre("Interpolate", "coefficient | Coefficient | real | 0 | -1 to 1",
                                                     "fitToBuffer | Fit to point in buffer | check | 0"));
}

TEST(DialogFields, OfLineCorrect) {
    EXPECT_THAT(linesOf("CCorrectLine"),
                ElementsAre("Line correct", "linesBefore | Numder of lines before  | int | 1 | 1 to 10000000",
                            "linesAfter | Number of lines after | int | 1 | 1 to 10000000",
                            "power | Power  | real | 0.65 | 0.1 to 10"));
}

TEST(RangesOfDialogs, CoefficientOfExtrapolationIsNotNegative) {
    CExtrapolation values;
    DialogForm form = describe(values);
    EXPECT_TRUE(setField(form, "coefficient", "-0.1").has_value());
    EXPECT_TRUE(setField(form, "coefficient", "1000001").has_value());
    EXPECT_FALSE(setField(form, "coefficient", "0").has_value());
}

} // namespace velmora::test
