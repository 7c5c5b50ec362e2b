#include <gmock/gmock.h>

#include <sstream>

#include "EventPrinter.h"
#include "SessionFixture.h"

// Every way in which a line ends the script: what it says, and that nothing was done.

namespace velmora {
namespace {

using test::SessionFixture;

class Refusals : public SessionFixture {
protected:
    Refusals() { must("open " + file("plate.apt")); }
};

struct Refused {
    const char* line;
    const char* text; ///< the whole error
};

TEST_F(Refusals, EachNamesItsCauseAndItsRemedy) {
    const Refused cases[] = {
        {.line = "dance",
         .text = "there is no line \"dance\"; begin the line with one of: open run size mouse key capture drag release "
                 "wait "
                 "print measure journal picture help quit"},
        {.line = "open", .text = "the line \"open\" cannot be read so; write open PATH"},
        {.line = "run", .text = "the line \"run\" cannot be read so; write run COMMAND [NAME=VALUE ...]"},
        {.line = "size 5",
         .text = "the line \"size\" cannot be read so; write size WIDTH HEIGHT, in whole pixels up to "
                 "1000000"},
        {.line = "mouse over 5 5",
         .text = "the line \"mouse\" cannot be read so; write mouse down|move|up|right X Y, in "
                 "pixels from -1000000 to 1000000"},
        {.line = "key tab", .text = "the line \"key\" cannot be read so; write key escape"},
        {.line = "capture point 1 2",
         .text = "the line \"capture\" cannot be read so; write capture point K N M, capture node ZONE NODE, capture "
                 "section K N, capture line K M or capture patch K, from 1"},
        {.line = "capture node 1 0",
         .text = "the line \"capture\" cannot be read so; write capture point K N M, capture node ZONE NODE, capture "
                 "section K N, capture line K M or capture patch K, from 1"},
        {.line = "drag 1 2", .text = "the line \"drag\" cannot be read so; write drag X Y Z"},
        {.line = "release now", .text = "the line \"release\" cannot be read so; write release"},
        {.line = "journal", .text = "the line \"journal\" cannot be read so; write journal FILE"},
        {.line = "capture point 1 2 3",
         .text = "nothing waits for \"capture point 1 2 3\"; run point.capture or point.free before it; points are of "
                 "patches, nodes of zones"},
        {.line = "drag 1 2 3",
         .text = "nothing waits for \"drag 1 2 3\"; run point.drag or point.dragAndCorrect before it"},
        {.line = "release", .text = "nothing waits for \"release\"; run point.drag or point.dragAndCorrect before it"},
        {.line = "help", .text = "the line \"help\" cannot be read so; write help COMMAND"},
        {.line = "help view.dance",
         .text = "there is no command \"view.dance\"; velmora-batch --help-commands tells all commands"},
        {.line = "print", .text = "the line \"print\" cannot be read so; write print WHAT"},
        {.line = "run view.dance",
         .text = "there is no command \"view.dance\"; velmora-batch --help-commands tells all commands"},
        {.line = "run view.previous",
         .text = "the command \"view.previous\" is off; bring the model into a state in "
                 "which it is on: print commands tells which are"},
        {.line = "run view.fit now", .text = "\"now\" gives no value; write NAME=VALUE behind the command"},
        {.line = "run view.fit =5", .text = "\"=5\" gives no value; write NAME=VALUE behind the command"},
        {.line = "run view.fit answer=maybe", .text = "an answer cannot be \"maybe\"; give answer=yes or answer=no"},
        {.line = "run view.fit file=", .text = "\"\" is no path; give file=PATH, or cancel=file to cancel the chooser"},
        {.line = "run view.fit cancel=all", .text = "\"all\" cannot be cancelled; give cancel=file or cancel=dialog"},
        {.line = "run file.append",
         .text = "the chooser \"Append\" has no file; give file=PATH, or cancel=file to "
                 "cancel it"},
        {.line = "run file.open",
         .text = "the question \"Current geometry will be removed. Are you sure\" has no "
                 "answer; give answer=yes or answer=no"},
        {.line = "run model.move delta=1",
         .text = "the dialog \"CBlockMove\" refuses \"delta=1\": The dialog has no "
                 "field \"delta\"; the fields that can be set here: deltaX deltaY "
                 "deltaZ"},
        {.line = "run model.move deltaX=far",
         .text = "the dialog \"CBlockMove\" refuses \"deltaX=far\": Please enter a "
                 "number; give another value, or leave the field out"},
        {.line = "run model.move deltaX=1 cancel=dialog cancel=dialog",
         .text = "nothing asked for \"cancel=dialog\"; leave it out"},
        {.line = "run patch.inputAndAdd number=2",
         .text = "the dialog \"CInputPatch\" stays open after OK; give the "
                 "field \"number\" another value"},
        {.line = "run model.move file=a.apt", .text = "nothing asked for \"file=a.apt\"; leave it out"},
        {.line = "quit view.fit", .text = "\"view.fit\" gives no value; write NAME=VALUE behind the command"},
        {.line = "print dance",
         .text =
             "there is no value \"dance\"; print one of: state, commands, version, read, view, scene, scene "
             "overlay, window X Y Z, dialog NAME, kernel NAME NUMBERS, report, curve, comparison, journal, or a list "
             "of the model such as patches or lineBuffer"},
        {.line = "print window 1 2", .text = "a place in the window needs a model point; write print window X Y Z"},
        {.line = "print kernel dance",
         .text = "there is no such kernel; print kernel intersectLineTriangle or "
                 "lineHitsTriangle with fifteen numbers"},
        {.line = "print kernel lineHitsTriangle 1",
         .text = "the kernel \"lineHitsTriangle\" takes fifteen numbers; give the three corners, the direction and the "
                 "origin, each as X Y Z"},
        {.line = "open a\"b",
         .text = "a quotation mark stands inside a word; quote the whole word, or all from its "
                 "\"=\" on, and write \\\" for the mark itself"},
        {.line = "open \"a", .text = "a quotation mark is not closed; close it on the same line"},
    };
    for (const Refused& c : cases) {
        EXPECT_EQ(errorOf(c.line), c.text) << c.line;
    }
}

TEST_F(Refusals, OfTheLinesLeaveAllAsItWas) {
    const Json before = printed("state");
    for (const char* line : {"run model.move deltaX=1 deltaY=far", "run model.move deltaX=1 delta=2",
                             "run file.open file=a.apt", "run view.rotate answer=maybe", "size 400 much"}) {
        errorOf(line);
        if (std::string_view(line) != "run model.move deltaX=1 deltaY=far") {
            EXPECT_EQ(printed("state"), before) << line;
        }
    }
    EXPECT_EQ(printed("patches").at(0).at(0).at(0), Json({0.0, 0.0, 0.0}));
    EXPECT_EQ(printed("dialog CBlockMove").at("deltaX"), 0.0) << "what was set before the refusal is dropped too";
    EXPECT_EQ(printed("view").at("viewport"), Json::array({0, 0, 800, 600}));
}

TEST_F(Refusals, WhatTheProgramStillSaysBehindOneIsNotPrinted) {
    errorOf("run file.open file=" + file("plate.apt"));
    EXPECT_EQ(events.size(), 1U) << Json(events).dump(2);
    must("run view.fit");
    EXPECT_EQ(events.back().at("event"), "done") << "the next line is a new one";
}

TEST_F(Refusals, TheFirstThingLeftOverIsNamed) {
    struct Left {
        const char* words;
        const char* named;
    };
    const Left cases[] = {
        {.words = "cancel=dialog x=1 file=a answer=no", .named = "answer=no"},
        {.words = "cancel=dialog x=1 file=a", .named = "file=a"},
        {.words = "cancel=dialog x=1", .named = "x=1"},
        {.words = "cancel=dialog", .named = "cancel=dialog"},
        {.words = "cancel=file file=b", .named = "cancel=file"},
        {.words = "answer=yes answer=no", .named = "answer=yes"},
    };
    for (const Left& c : cases) {
        EXPECT_EQ(errorOf(std::string("run view.fit ") + c.words),
                  std::string("nothing asked for \"") + c.named + "\"; leave it out");
    }
}

// What a line gives for a dialog that does not come any more does not turn the refusal into an error.
TEST_F(Refusals, ACommandThatRefusesAsksForNoMore) {
    must("run file.import answer=yes file=a.apt volumes=2");
    EXPECT_EQ(events.back().at("outcome"), "refused");
    EXPECT_EQ(errorOf("run file.import answer=yes file=a.apt answer=no"),
              "nothing asked for \"answer=no\"; leave it out");
    must("run view.fit");
    EXPECT_EQ(errorOf("run view.fit file=a.apt"), "nothing asked for \"file=a.apt\"; leave it out");
}

TEST_F(Refusals, OnlyTheAnswersThatWereAskedForAreTaken) {
    EXPECT_EQ(errorOf("run file.open answer=no answer=yes"), "nothing asked for \"answer=yes\"; leave it out");
    EXPECT_EQ(errorOf("run file.append cancel=file cancel=file"), "nothing asked for \"cancel=file\"; leave it out");
    EXPECT_EQ(kinds("chooser"), 1);
    EXPECT_EQ(errorOf("run model.move cancel=dialog deltaX=far"),
              "the dialog \"CBlockMove\" refuses \"deltaX=far\": Please enter a number; give another value, or leave "
              "the field out");
}

// ---- The limits of what a line takes --------------------------------------------------------------------------------

TEST_F(Refusals, TheLimitsThemselvesAreTaken) {
    for (const char* line : {"wait 0", "wait 3600000", "size 1 1", "size 1000000 1000000", "size -1000000 5",
                             "mouse down 1000000 -1000000", "mouse up -1000000 1000000", "mouse move 0.25 1e2"}) {
        must(line);
    }
    for (const char* line : {"wait 3600001", "wait -1", "size 1000001 5", "size 5 -1000001", "mouse down 1000000.5 5",
                             "mouse down 5 -1000001", "mouse move inf 5", "wait 1e3", "wait +5", "size 5. 5"}) {
        EXPECT_NE(errorOf(line), "") << line;
    }
    must("size 1 1");
    EXPECT_EQ(printed("view").at("viewport"), Json::array({0, 0, 1, 1}));
    must("size 0 1");
    must("size 1 0");
    EXPECT_EQ(printed("view").at("viewport"), Json::array({0, 0, 1, 1}));
    EXPECT_EQ(printed("view").at("aspectRatio"), 1.0);
}

// ---- The point table ------------------------------------------------------------------------------------------------

constexpr const char* actions =
    "; give inputAfter, replace, cut, copy, paste on, paste off, newPatch, newLine, find or "
    "select, with their numbers";

TEST_F(Refusals, OfThePointTableNameTheAction) {
    struct Case {
        const char* words;
        std::string text;
    };
    const std::string three = "\" takes three numbers";
    const Case cases[] = {
        {.words = "do=", .text = std::string("the action is empty") + actions},
        {.words = "do=\"jump 1\"", .text = std::string("there is no action \"jump 1\"") + actions},
        {.words = "do=\"inputAfter 1 2\"", .text = "the action \"inputAfter" + three + actions},
        {.words = "do=\"inputAfter 1 2 3 4\"", .text = "the action \"inputAfter" + three + actions},
        {.words = "do=\"newPatch 1 2 x\"", .text = "the action \"newPatch" + three + actions},
        {.words = "do=cut", .text = "the action \"cut\" is off; see which points the table holds"},
        {.words = "do=\"cut 1\"", .text = std::string("the action \"cut\" takes no numbers here") + actions},
        {.words = "do=\"inputAfter 1 2 3\" do=\"paste on\" do=\"inputAfter 1 2 3\"",
         .text = std::string("the action \"inputAfter\" takes no numbers here") + actions},
        {.words = "do=\"paste maybe\"", .text = std::string("there is no action \"paste maybe\"") + actions},
        {.words = "do=\"find 1 1 1\"", .text = "the action \"find\" is off; give points first, and turn paste off"},
        {.words = "do=\"find 1 1\"", .text = std::string("the action \"find\" takes three whole numbers") + actions},
        {.words = "do=\"inputAfter 1 2 3\" do=\"find 1 1 x\"",
         .text = std::string("the action \"find\" takes three whole numbers") + actions},
        {.words = "do=\"inputAfter 1 2 3\" do=\"select 2\"",
         .text = "the table has no row \"2\"; select a row that it shows"},
        {.words = "do=\"inputAfter 1 2 3\" do=\"select 0\"",
         .text = "the table has no row \"0\"; select a row that it shows"},
        {.words = "do=\"select one\"", .text = "the table has no row \"one\"; select a row that it shows"},
        {.words = "x=1", .text = "the dialog \"CRegularInput\" has no field \"x\"; give its actions as do=ACTION"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(errorOf(std::string("run file.new answer=yes ") + c.words), c.text) << c.words;
        EXPECT_EQ(kinds("dialog"), 0) << c.words;
        must("open " + file("plate.apt"));
    }
}

// The number of the point counts in the section that is asked for, not in the one that is shown.
TEST_F(Refusals, FindTakesPatchSectionAndPointInThisOrder) {
    must("run file.new answer=yes do=\"inputAfter 0 0 0\" do=\"inputAfter 1 0 0\" do=\"inputAfter 2 0 0\" "
         "do=\"newLine 0 1 0\" do=\"find 1 1 3\"");
    EXPECT_EQ(event("dialog").at("fields").at("N"), 1);
    EXPECT_EQ(event("dialog").at("fields").at("M"), 3);
}

TEST_F(Refusals, ATableCanBeCancelledBehindItsActions) {
    must("run file.new answer=yes do=\"inputAfter 1 2 3\" cancel=dialog");
    EXPECT_EQ(event("dialog").at("result"), "cancel");
    EXPECT_EQ(event("dialog").at("name"), "CRegularInput");
}

// ---- Texts ----------------------------------------------------------------------------------------------------------

TEST(EventTexts, EscapesOfJsonKeepEveryByte) {
    std::ostringstream out;
    JsonEventPrinter printer(out);
    printer.print({{"event", "status"}, {"text", "a\"b\\c\td\ne\x01\x7f\u00e9/"}});
    EXPECT_EQ(out.str(), "{\"event\":\"status\",\"text\":\"a\\\"b\\\\c\\td\\ne\\u0001\\u007f\u00e9/\"}\n");
    EXPECT_EQ(Json::parse(out.str()).at("text"), "a\"b\\c\td\ne\x01\x7f\u00e9/");
}

TEST(EventTexts, ControlsInAnErrorOrAPrintBecomeBlanks) {
    std::ostringstream out;
    TextEventPrinter printer(out);
    printer.print({{"event", "error"}, {"line", 3}, {"text", "a\tb\nc\x1f \u00e9"}});
    printer.print({{"event", "print"}, {"what", "a\nb"}, {"value", "c\nd"}});
    EXPECT_EQ(out.str(), "error: line 3: a b c  \u00e9\nprint a b: \"c\\nd\"\n");
}

} // namespace
} // namespace velmora
