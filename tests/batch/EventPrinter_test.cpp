#include "EventPrinter.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace velmora {
namespace {

std::string asText(const Json& event) {
    std::ostringstream out;
    TextEventPrinter(out).print(event);
    return out.str();
}

std::string asJson(const Json& event) {
    std::ostringstream out;
    JsonEventPrinter(out).print(event);
    return out.str();
}

TEST(TextEventPrinter, NamesWhatIsSaid) {
    EXPECT_EQ(asText({{"event", "message"}, {"text", "Hello"}}), "message: Hello\n");
    EXPECT_EQ(asText({{"event", "status"}, {"text", "Hello"}}), "status: Hello\n");
    EXPECT_EQ(asText({{"event", "title"}, {"text", "wing.apt"}}), "title: wing.apt\n");
}

TEST(TextEventPrinter, ShowsTheAnswerBehindAQuestion) {
    EXPECT_EQ(asText({{"event", "question"}, {"text", "Sure?"}, {"answer", "yes"}}), "question: Sure? -> yes\n");
}

TEST(TextEventPrinter, NamesTheLineOfAnError) {
    EXPECT_EQ(asText({{"event", "error"}, {"line", 3}, {"text", "bad"}}), "error: line 3: bad\n");
}

TEST(TextEventPrinter, KeepsAnErrorOnOneLine) {
    EXPECT_EQ(asText({{"event", "error"}, {"line", 3}, {"text", "a\nb\rc"}}), "error: line 3: a b c\n");
}

TEST(TextEventPrinter, PrintsValuesBehindTheirName) {
    EXPECT_EQ(asText({{"event", "print"}, {"what", "patches"}, {"value", Json::array({1.5, 2})}}),
              "print patches: [1.5,2]\n");
}

TEST(TextEventPrinter, ListsMenuItemsWithTheirStates) {
    const Json items = {{{"text", "&Undo"}, {"command", "patch.undo"}, {"on", false}},
                        {{"text", "&Convert to"},
                         {"items", Json::array({{{"text", "&APT..."}, {"command", "convert.toApt"}, {"on", true}}})}}};
    EXPECT_EQ(asText({{"event", "menu"}, {"name", "Patch Context"}, {"items", items}}),
              "menu: Patch Context\n"
              "  &Undo (patch.undo) off\n"
              "  &Convert to\n"
              "    &APT... (convert.toApt)\n");
}

TEST(TextEventPrinter, RepeatsAnEchoedLineAsItStands) {
    EXPECT_EQ(asText({{"event", "echo"}, {"line", 1}, {"text", "  open  wing.apt"}}), "  open  wing.apt\n");
}

TEST(TextEventPrinter, TellsWhatWasLostOfAFile) {
    const Json read = {{"event", "read"},
                       {"path", "box.stl"},
                       {"complete", false},
                       {"lossless", false},
                       {"found", {{"facets", 522}, {"solids", 2}}},
                       {"kept", {{"facets", 521}, {"solids", 1}}},
                       {"changed", {"Degenerate triangles: 3"}},
                       {"reasons", {"Solids: 2, only the first is read"}}};
    EXPECT_EQ(asText(read), "read: box.stl: kept 521 of 522 facets, 1 of 2 solids\n"
                            "  Degenerate triangles: 3\n"
                            "  Solids: 2, only the first is read\n");
}

TEST(TextEventPrinter, TellsOfAFileThatASaveWouldNotGiveBack) {
    const Json read = {{"event", "read"},          {"path", "a"},
                       {"complete", true},         {"lossless", false},
                       {"found", {{"points", 4}}}, {"kept", {{"points", 4}}},
                       {"changed", Json::array()}, {"reasons", {"Colours"}}};
    EXPECT_EQ(asText(read), "read: a: kept 4 of 4 points\n  Colours\n");
}

TEST(TextEventPrinter, IsSilentAboutAFileThatWasReadWhole) {
    const Json read = {{"event", "read"}, {"path", "a"}, {"complete", true}, {"lossless", true},
                       {"found", {}},     {"kept", {}},  {"changed", {"x"}}, {"reasons", Json::array()}};
    EXPECT_EQ(asText(read), "");
    EXPECT_EQ(asText({{"event", "written"}, {"path", "a"}}), "");
}

TEST(TextEventPrinter, LetsNoNameOfAFileSpeakToTheTerminal) {
    const std::string name = "\x1b]0;x\x07\nerror: line 1: all lost";
    const std::string shown = "\\x1b]0;x\\x07\\x0aerror: line 1: all lost";
    EXPECT_EQ(asText({{"event", "status"}, {"text", name}}), "status: " + shown + '\n');
    EXPECT_EQ(asText({{"event", "title"}, {"text", name}}), "title: " + shown + '\n');
    EXPECT_EQ(asText({{"event", "echo"}, {"line", 1}, {"text", name}}), shown + '\n');
    EXPECT_EQ(asText({{"event", "question"}, {"text", name}, {"answer", "no"}}), "question: " + shown + " -> no\n");
    const Json read = {{"event", "read"}, {"path", name}, {"complete", false},        {"lossless", false},
                       {"found", {}},     {"kept", {}},   {"changed", Json::array()}, {"reasons", {name}}};
    EXPECT_EQ(asText(read), "read: " + shown + ": \n  " + shown + '\n');
    EXPECT_EQ(asText({{"event", "error"}, {"line", 1}, {"text", "\x1b\x9b"}}), "error: line 1:  \\x9b\n");
    // Boxes have several lines, as ever.
    EXPECT_EQ(asText({{"event", "message"}, {"text", "a\n\x1b"}}), "message: a\n\\x1b\n");
    EXPECT_EQ(asText({{"event", "print"}, {"what", "state"}, {"value", {{"t", "\x1b\x7f"}}}}),
              "print state: {\"t\":\"\\u001b\\u007f\"}\n");
}

TEST(TextEventPrinter, IsSilentAboutOtherEvents) {
    EXPECT_EQ(asText({{"event", "done"}, {"line", 1}}), "");
    EXPECT_EQ(asText({{"event", "recent"}, {"path", "x"}}), "");
    EXPECT_EQ(asText({{"event", "dialog"}, {"name", "CRebreak"}}), "");
    EXPECT_EQ(asText({{"event", "chooser"}, {"mode", "Open"}}), "");
}

TEST(JsonEventPrinter, WritesOneObjectALineWithMembersInOrder) {
    EXPECT_EQ(asJson({{"event", "question"}, {"text", "a\nb"}, {"answer", "no"}}),
              "{\"event\":\"question\",\"text\":\"a\\nb\",\"answer\":\"no\"}\n");
}

TEST(JsonEventPrinter, EscapesWhatATerminalWouldObey) {
    EXPECT_EQ(asJson({{"event", "title"}, {"text", "\x1b\x7f\xc2\x9b"}}),
              "{\"event\":\"title\",\"text\":\"\\u001b\\u007f\\u009b\"}\n");
}

TEST(JsonEventPrinter, ReplacesBytesThatAreNoUtf8) {
    EXPECT_EQ(asJson({{"event", "title"}, {"text", "a\xff"}}), "{\"event\":\"title\",\"text\":\"a\xef\xbf\xbd\"}\n");
}

TEST(JsonValues, NumbersKeepTheDigitsThatGiveTheSameDoubleBack) {
    for (const double value : {0.1, 1.0 / 3.0, 5e-324, 1.7976931348623157e308, -123456.789, 2.0 / 3.0 * 1e-7}) {
        EXPECT_EQ(Json::parse(numberValue(value).dump()).get<double>(), value);
    }
    EXPECT_EQ(numberValue(0.1).dump(), "0.1");
}

TEST(JsonValues, NumbersThatAreNotFiniteAreStrings) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(numberValue(infinity).dump(), "\"inf\"");
    EXPECT_EQ(numberValue(-infinity).dump(), "\"-inf\"");
    EXPECT_EQ(numberValue(std::numeric_limits<double>::quiet_NaN()).dump(), "\"nan\"");
    EXPECT_EQ(pointValue({infinity, 0.0, 1.5}).dump(), "[\"inf\",0.0,1.5]");
}

TEST(JsonValues, PatchesNestAsPatchSectionPointCoordinate) {
    EXPECT_EQ(patchesValue({{{{1, 2, 3}, {4, 5, 6}}, {}}, {}}).dump(), "[[[[1.0,2.0,3.0],[4.0,5.0,6.0]],[]],[]]");
}

} // namespace
} // namespace velmora
