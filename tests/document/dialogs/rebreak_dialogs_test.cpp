#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

const Steps onPoint3 = section(1, 2) + point(1, 2, 3);

const Fields nine = {{"newCount", "9"}};

/// A polyline of eight steps of 1 in each section.
const PatchList longPlate = {flatPatch(2, 9)};

/// The last of the five steps up to the point at x = 4: behind it the steps are 1.
std::string stepBeforePoint(DocumentState& doc) {
    const PointList& points = doc.patches.at(0).at(0);
    return std::abs(points.at(5).x - points.at(4).x - 1) < 0.01 ? "runs on" : "jumps";
}

} // namespace

const Choices rebreakChoices = {
    {.dialog = "CRebreak",
     .field = "regime",
     .value = 1,
     .command = "line.rebreak",
     .model = {flatPatch(3, 5)},
     .before = section(1, 2),
     .fields = nine,
     .look = pointCounts,
     .expected = "5 9 5"},
    {.dialog = "CRebreak",
     .field = "regime",
     .value = 2,
     .command = "line.rebreak",
     .model = {flatPatch(3, 5)},
     .before = section(1, 2),
     .fields = nine,
     .look = pointCounts,
     .expected = "9 9 9"},
    {.dialog = "CRebreak",
     .field = "regime",
     .value = 2,
     .command = "line.rebreak",
     .model = {flatPatch(4, 5)},
     .before = section(1, 1),
     .fields = {{"newCount", "9"}, {"firstCurve", "3"}, {"lastCurve", "3"}},
     .look = pointCounts,
     .expected = "5 5 9 9",
     .when = "from the third on"},
    {.dialog = "CRebreak",
     .field = "function",
     .value = 1,
     .command = "line.rebreak",
     .model = {zigzag()},
     .before = section(1, 2),
     .fields = nine,
     .look = onChords(1),
     .expected = "off the chords"},
    {.dialog = "CRebreak",
     .field = "function",
     .value = 2,
     .command = "line.rebreak",
     .model = {zigzag()},
     .before = section(1, 2),
     .fields = nine,
     .look = onChords(1),
     .expected = "on the chords"},
    {.dialog = "CRebreak",
     .field = "style",
     .value = 1,
     .command = "line.rebreak",
     .model = {uneven()},
     .before = section(1, 2),
     .fields = {{"regime", "2"}, {"function", "2"}},
     .look = along(0, 1),
     .expected = "0 2 4 6 8"},
    {.dialog = "CRebreak",
     .field = "style",
     .value = 2,
     .command = "line.rebreak",
     .model = {uneven()},
     .before = section(1, 2),
     .fields = {{"regime", "2"}, {"function", "2"}},
     .look = along(0, 0),
     .expected = "0 0.5 1 1.5 4"},
    {.dialog = "CRebreak",
     .field = "style",
     .value = 2,
     .command = "line.rebreak",
     .model = {uneven()},
     .before = section(1, 2),
     .fields = {{"regime", "2"}, {"function", "1"}},
     .look = along(0, 2),
     .expected = "0 0.5 1 1.5 4",
     .when = "by a spline"},
    {.dialog = "CRebreak",
     .field = "useBlock",
     .value = 0,
     .command = "line.rebreak",
     .model = {flatPatch(3, 5), flatPatch(2, 7, 1), flatPatch(2, 5, 2)},
     .before = addPatch(1) + addPatch(2) + section(1, 2),
     .first = {{"regime", "2"}},
     .fields = nine,
     .look = pointCounts,
     .expected = "9 9 9; 7 7; 5 5"},
    {.dialog = "CRebreak",
     .field = "useBlock",
     .value = 1,
     .command = "line.rebreak",
     .model = {flatPatch(3, 5), flatPatch(2, 7, 1), flatPatch(2, 5, 2)},
     .before = addPatch(1) + addPatch(2) + section(1, 2),
     .first = {{"regime", "2"}},
     .fields = nine,
     .look = pointCounts,
     .expected = "9 9 9; 9 9; 5 5"},

    {.dialog = "CRebreakPart",
     .field = "regime",
     .value = 1,
     .command = "point.rebreakPart",
     .model = {flatPatch(3, 5)},
     .before = onPoint3,
     .fields = {{"newCount", "5"}},
     .look = pointCounts,
     .expected = "5 7 5"},
    {.dialog = "CRebreakPart",
     .field = "regime",
     .value = 2,
     .command = "point.rebreakPart",
     .model = {flatPatch(3, 5)},
     .before = onPoint3,
     .fields = {{"newCount", "5"}},
     .look = pointCounts,
     .expected = "7 7 7"},
    {.dialog = "CRebreakPart",
     .field = "position",
     .value = 1,
     .command = "point.rebreakPart",
     .model = {flatPatch(3, 5)},
     .before = onPoint3,
     .fields = {{"newCount", "5"}},
     .look = along(0, 1),
     .expected = "0 0.5 1 1.5 2 3 4"},
    {.dialog = "CRebreakPart",
     .field = "position",
     .value = 2,
     .command = "point.rebreakPart",
     .model = {flatPatch(3, 5)},
     .before = onPoint3,
     .fields = {{"newCount", "5"}},
     .look = along(0, 1),
     .expected = "0 1 2 2.5 3 3.5 4"},
    {.dialog = "CRebreakPart",
     .field = "function",
     .value = 1,
     .command = "point.rebreakPart",
     .model = {zigzag()},
     .before = section(1, 2) + point(1, 2, 4),
     .fields = {{"position", "1"}, {"newCount", "8"}},
     .look = onChords(1),
     .expected = "off the chords"},
    {.dialog = "CRebreakPart",
     .field = "function",
     .value = 2,
     .command = "point.rebreakPart",
     .model = {zigzag()},
     .before = section(1, 2) + point(1, 2, 4),
     .fields = {{"position", "1"}, {"newCount", "8"}},
     .look = onChords(1),
     .expected = "on the chords"},
    {.dialog = "CRebreakPart",
     .field = "style",
     .value = 1,
     .command = "point.rebreakPart",
     .model = longPlate,
     .before = section(1, 1) + point(1, 1, 5),
     .fields = {{"position", "1"}, {"newCount", "6"}, {"compression", "2"}},
     .look = stepBeforePoint,
     .expected = "jumps"},
    {.dialog = "CRebreakPart",
     .field = "style",
     .value = 2,
     .command = "point.rebreakPart",
     .model = longPlate,
     .before = section(1, 1) + point(1, 1, 5),
     .fields = {{"position", "1"}, {"newCount", "6"}, {"compression", "2"}},
     .look = stepBeforePoint,
     .expected = "runs on"},

};

INSTANTIATE_TEST_SUITE_P(Rebreak, DialogChoice, testing::ValuesIn(rebreakChoices), nameOf);

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfRebreak) {
    EXPECT_THAT(
        linesOf("CRebreak"),
        ElementsAre(
            "Rebreak ", "regime |  | radio | 1 | \"Captured section (line)\" \"All sections (lines)\"",
            "function |  | radio | 1 | \"Spline\" \"Linear\"",
            "style |  | radio | 1 | \"Compress points\" \"Fit to captured section\"",
            "exactness | Exactness % | int | 0 | 0 to 100", "newCount | Number of points | int | 2 | 2 to 1000000",
            "compression | Compression | real | 1 | 0.0001 to 10000",
            "firstPoint | First point | int | 1 | 1 to 1000000", "lastPoint | Last point | int | 1 | 1 to 1000000",
            "capturedNumber | Captured | int | 1 | 1 to 1000000", "firstCurve | First | int | 1 | 1 to 1000000",
            "lastCurve | Last | int | 1 | 1 to 1000000", "patchNumber | Patch | int | 1 | 1 to 1000000 | read-only",
            "useBlock | Block | check | 0"));
}

TEST(DialogFields, OfRebreakFirstAndLastStandInAFrame) {
    CRebreak values;
    const DialogForm form = describe(values);
    EXPECT_EQ(form.find("firstCurve")->group, "Sections (lines)");
    EXPECT_EQ(form.find("lastCurve")->group, "Sections (lines)");
}

TEST(DialogFields, OfRebreakPart) {
    EXPECT_THAT(linesOf("CRebreakPart"),
                ElementsAre("Rebreak Part",
                            "regime |  | radio | 1 | \"Captured section (line)\" \"All sections (lines)\"",
                            "function |  | radio | 1 | \"Spline\" \"Linear\"",
                            "style |  | radio | 1 | \"Compress points\" \"Compress && Fit\"",
                            "position | Position | radio | 1 | \"Before\" \"After\"",
                            "exactness | Exactness % | int | 0 | 0 to 100",
                            "newCount | Number of points | int | 2 | 2 to 100000",
                            "compression | Compression | real | 1 | 0.0001 to 10000",
                            "firstPoint | First point | int | 1 | 1 to 100000 | read-only",
                            "lastPoint | Last point | int | 1 | 1 to 100000 | read-only"));
}

} // namespace velmora::test
