#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

Patch closedSection() {
    return {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {0, 0, 0}},
            {{9, 1, 0}, {8, 1, 0}, {7, 1, 0}, {6, 1, 0}, {5, 1, 0}}};
}

} // namespace

const Choices sectionChoices = {
    {.dialog = "CFirstPoint",
     .field = "kind",
     .value = 1,
     .command = "line.firstPoint",
     .model = {flatPatch(2, 5)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "4 3 2 1 0"},
    {.dialog = "CFirstPoint",
     .field = "kind",
     .value = 2,
     .command = "line.firstPoint",
     .model = {closedSection()},
     .before = section(1, 1) + point(1, 1, 3),
     .look = along(0, 0),
     .expected = "2 3 0 1 2"},
    {.dialog = "CFirstPoint",
     .field = "sortKind",
     .value = 1,
     .command = "line.firstPoint",
     .model = {closedSection()},
     .before = section(1, 1) + point(1, 1, 2),
     .look = along(0, 0),
     .expected = "1 2 3 0 1"},
    {.dialog = "CFirstPoint",
     .field = "sortKind",
     .value = 2,
     .command = "line.firstPoint",
     .model = {closedSection()},
     .before = section(1, 1) + point(1, 1, 2),
     .look = along(0, 0),
     .expected = "1 0 3 2 1"},
    {.dialog = "CFirstPoint",
     .field = "makeLoop",
     .value = 0,
     .command = "line.firstPoint",
     .model = {flatPatch(2, 5)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "4 3 2 1 0"},
    {.dialog = "CFirstPoint",
     .field = "makeLoop",
     .value = 1,
     .command = "line.firstPoint",
     .model = {flatPatch(2, 5)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "0 3 2 1 0"},

    {.dialog = "CPrescribe",
     .field = "useX",
     .value = 1,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"x", "7"}},
     .look = pointOf(0, 1, 2),
     .expected = "7 1 0"},
    {.dialog = "CPrescribe",
     .field = "useY",
     .value = 1,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"y", "7"}},
     .look = pointOf(0, 1, 2),
     .expected = "2 7 0"},
    {.dialog = "CPrescribe",
     .field = "useZ",
     .value = 1,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = line(1, 2),
     .fields = {{"z", "7"}},
     .look = pointOf(0, 0, 1),
     .expected = "1 0 7"},
    {.dialog = "CPrescribe",
     .field = "useX",
     .value = 0,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"useY", "1"}, {"y", "7"}, {"useZ", "1"}, {"z", "8"}},
     .look = pointOf(0, 1, 2),
     .expected = "2 7 8"},
    {.dialog = "CPrescribe",
     .field = "useY",
     .value = 0,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"useX", "1"}, {"x", "7"}, {"useZ", "1"}, {"z", "8"}},
     .look = pointOf(0, 1, 2),
     .expected = "7 1 8"},
    {.dialog = "CPrescribe",
     .field = "useZ",
     .value = 0,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"useX", "1"}, {"x", "7"}, {"useY", "1"}, {"y", "8"}},
     .look = pointOf(0, 1, 2),
     .expected = "7 8 0"},

    {.dialog = "CLast_First_switch",
     .field = "kind",
     .value = 1,
     .command = "model.lastFirstSwitch",
     .model = {flatPatch(3, 4)},
     .look = [](DocumentState& doc) { return across(0)(doc) + ", " + along(0, 0)(doc); },
     .expected = "2 1 0, 0 1 2 3"},
    {.dialog = "CLast_First_switch",
     .field = "kind",
     .value = 2,
     .command = "model.lastFirstSwitch",
     .model = {flatPatch(3, 4)},
     .look = [](DocumentState& doc) { return across(0)(doc) + ", " + along(0, 0)(doc); },
     .expected = "0 1 2, 3 2 1 0"},

    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "line.knife",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "3 4 5 6"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "line.knife",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "0 1 2 3"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "model.knife",
     .model = {flatPatch(2, 7)},
     .look = along(0, 1),
     .expected = "3 4 5 6",
     .when = "of the model"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "model.knife",
     .model = {flatPatch(2, 7)},
     .look = along(0, 1),
     .expected = "0 1 2 3",
     .when = "of the model"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "point.knifePart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = along(0, 0),
     .expected = "2 3 4 5 6",
     .when = "at a point"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "point.knifePart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = along(0, 0),
     .expected = "0 1 2",
     .when = "at a point"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "point.copyPart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = [](DocumentState& doc) { return text(coordinates(doc.lineBuffer)); },
     .expected = "0 1 2",
     .when = "as what is copied"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "point.copyPart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = [](DocumentState& doc) { return text(coordinates(doc.lineBuffer)); },
     .expected = "2 3 4 5 6",
     .when = "as what is copied"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "point.pastePart",
     .model = {flatPatch(2, 4)},
     .before = section(1, 1) + Steps{{.id = "line.copy"}} + section(1, 2) + point(1, 2, 3),
     .look = along(0, 1),
     .expected = "0 1 2 3 2 3",
     .when = "as what is replaced"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "point.pastePart",
     .model = {flatPatch(2, 4)},
     .before = section(1, 1) + Steps{{.id = "line.copy"}} + section(1, 2) + point(1, 2, 3),
     .look = along(0, 1),
     .expected = "0 1 2 0 1 2 3",
     .when = "as what is replaced"},

    // A tilted plate: x from 0 to 4, y from 0 to 6, z from 0 to 8. The plane in the middle halves it.
};

INSTANTIATE_TEST_SUITE_P(Section, DialogChoice, testing::ValuesIn(sectionChoices), nameOf);

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfDuplicate) {
    EXPECT_THAT(linesOf("Cduplicate"),
                ElementsAre("Duplicate", "duplicateCount | Duplication | int | 1 | 1 to 1000000"));
}

TEST(DialogFields, OfInputPatch) {
    EXPECT_THAT(linesOf("CInputPatch"),
                ElementsAre("Input patch", "number | Inputted number | int | 1 | any",
                            "maximum | Maximum number of patches | int | 1 | 1 to 1000000 | read-only"));
}

TEST(DialogFields, OfInputSection) {
    EXPECT_THAT(linesOf("CInputSection"),
                ElementsAre("Input section", "patch | Inputted patch | int | 1 | 1 to 1000000",
                            "maximumPatches | Maximum number of patches | int | 1 | 1 to 1000000 | read-only",
                            "section | Inputted section | int | 1 | 1 to 1000000",
                            "maximumSections | Maximum number of sections | int | 1 | 1 to 1000000 | read-only"));
}

TEST(DialogFields, OfInputLine) {
    EXPECT_THAT(linesOf("CInputLine"),
                ElementsAre("Input line", "patch | Inputted patch | int | 1 | 1 to 1000000",
                            "maximumPatches | Maximum number of patches | int | 1 | 1 to 1000000 | read-only",
                            "line | Inputted line | int | 1 | 1 to 1000000",
                            "maximumLines | Maximum number of lines | int | 1 | 1 to 1000000 | read-only"));
}

TEST(DialogFields, OfBeforeOrAfter) {
    EXPECT_THAT(linesOf("CBeforeAfter"),
                ElementsAre("Before or After", "choice |  | radio | 1 | \"Before\" \"After\""));
}

TEST(DialogFields, OfLastFirstSwitchWithItsNotice) {
    EXPECT_THAT(linesOf("CLast_First_switch"),
                ElementsAre("Last/First switch",
                            "kind |  | radio | 1 | \"Make last section the first\" \"Make last line the first\""));
    CLast_First_switch values;
    EXPECT_THAT(describe(values).notices, ElementsAre("This option changes normal ", "of the surfaces"));
}

TEST(DialogFields, OfFirstPoint) {
    EXPECT_THAT(linesOf("CFirstPoint"),
                ElementsAre("First point in section", "kind |  | radio | 1 | \"First/Last switch\" \"Captured point\"",
                            "sortKind |  | radio | 1 | \"Sort up\" \"Sort down\"", "makeLoop | Make loop | check | 0",
                            "closed | Closed section | check | 0", "pointInside | Point inside section | check | 0"));
    CFirstPoint values;
    const DialogForm form = describe(values);
    EXPECT_TRUE(form.find("closed")->readOnly && form.find("pointInside")->readOnly);
}

TEST(FirstPointDialog, SortsALoopByThePointThatIsCapturedInIt) {
    for (const bool inside : {false, true}) {
        for (const bool closed : {false, true}) {
            CFirstPoint values;
            values.pointInside = inside;
            values.closed = closed;
            DialogForm form = describe(values);
            openDialog(form);
            EXPECT_EQ(form.find("sortKind")->on, inside && closed) << inside << closed;
        }
    }
}

TEST(DialogFields, OfPrescribe) {
    EXPECT_THAT(linesOf("CPrescribe"),
                ElementsAre("Prescribe", "useX | X coordinate | check | 0", "x |  | real | 0 | any",
                            "useY | Y coordinate | check | 0", "y |  | real | 0 | any",
                            "useZ | Z coordinate | check | 0", "z |  | real | 0 | any"));
}

TEST(DialogFields, OfEditPoint) {
    EXPECT_THAT(linesOf("dlgEditPoint"), ElementsAre("Edit point", "x | X | real | 0 | any", "y | Y | real | 0 | any",
                                                     "z | Z | real | 0 | any"));
}

TEST(PrescribeDialog, EnablesTheNumberOfEachTickedCoordinate) {
    CPrescribe values;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("useX", "useY", "useZ"));
    EXPECT_FALSE(setField(form, "useY", "1").has_value());
    EXPECT_THAT(liveFields(form), ElementsAre("useX", "useY", "y", "useZ"));
}

TEST(AcceptedDialogs, AreNoneWhoseOkIsOff) {
    CFirstPoint values;
    values.pointInside = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_EQ(values.kind, 2);
    const auto refusal = acceptDialog(form);
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->message, "");
    EXPECT_FALSE(setField(form, "makeLoop", "1").has_value());
    EXPECT_FALSE(acceptDialog(form).has_value());
}

} // namespace velmora::test
