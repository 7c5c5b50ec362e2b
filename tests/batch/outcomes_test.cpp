#include <gmock/gmock.h>

#include "SessionFixture.h"

// What the lines of a script come to, as they say it at their end.

namespace velmora {
namespace {

using test::SessionFixture;
using testing::ElementsAre;

class LineOutcomes : public SessionFixture {
protected:
    LineOutcomes() { must("open " + file("plate.apt")); }

    /// The outcome of a line, which must be no error.
    std::string outcomeOf(const std::string& line) {
        must(line);
        return event("done").value("outcome", "");
    }
    /// The severities of the messages of the last line.
    std::vector<std::string> severities() const {
        std::vector<std::string> found;
        for (const Json& each : events) {
            if (each.at("event") == "message") {
                found.push_back(each.at("severity").get<std::string>());
            }
        }
        return found;
    }
};

TEST_F(LineOutcomes, WhatIsDoneIsOk) {
    for (const char* line : {"run view.top", "print lineBuffer", "mouse move 5 5", "size 400 400", "wait 5",
                             "help file.new", "run model.move deltaX=1", "run patch.undo"}) {
        EXPECT_EQ(outcomeOf(line), "ok") << line;
    }
}

TEST_F(LineOutcomes, WhatIsCalledOffIsCancelled) {
    for (const char* line :
         {"run file.open answer=no", "run file.append cancel=file", "run model.move cancel=dialog"}) {
        EXPECT_EQ(outcomeOf(line), "cancelled") << line;
    }
}

TEST_F(LineOutcomes, ACommandThatSaysItCannotIsRefused) {
    EXPECT_EQ(outcomeOf("run model.rotation x1=1 y1=1 z1=1 x2=1 y2=1 z2=1"), "refused");
    EXPECT_THAT(severities(), ElementsAre("error"));
}

TEST_F(LineOutcomes, ATypeThatOpenDoesNotTakeIsRefused) {
    EXPECT_EQ(outcomeOf("open wing.foo"), "refused");
    EXPECT_THAT(severities(), ElementsAre("error", "error"));
}

TEST_F(LineOutcomes, AFileThatCannotBeOpenedHasFailed) {
    for (const char* line :
         {"open nothing.apt", "run file.appendSft file=nothing.sft", "run buffer.open file=nothing.ext"}) {
        must("open " + file("plate.apt"));
        EXPECT_EQ(outcomeOf(line), "failed") << line;
        EXPECT_EQ(severities().front(), "error") << line;
    }
}

TEST_F(LineOutcomes, AFileThatGivesNoModelHasFailed) {
    test::writeFileText(folder / "empty.apt", "");
    EXPECT_EQ(outcomeOf("open " + file("empty.apt")), "failed");
    test::writeFileText(folder / "no.wrl", "no scene\n");
    EXPECT_EQ(outcomeOf("open " + file("no.wrl")), "failed");
}

TEST_F(LineOutcomes, AFileThatCannotBeWrittenHasFailed) {
    EXPECT_EQ(outcomeOf("run file.saveAs file=" + file("gone/wing.apt")), "failed");
    EXPECT_TRUE(session.report().writeFailed());
    EXPECT_EQ(outcomeOf("open nothing.apt"), "failed");
    EXPECT_FALSE(session.report().writeFailed());
}

TEST_F(LineOutcomes, ASaveIsToldAsInformation) {
    EXPECT_EQ(outcomeOf("run file.saveAs file=" + file("plate.dat")), "ok");
    EXPECT_THAT(severities(), ElementsAre("info"));
}

TEST_F(LineOutcomes, AWarningIsOk) {
    test::writeFileText(folder / "lines.skl", "2\n2\n0 0 0\n1 0 0\n3\n0 1 0\n1 1 0\n2 1 0\n");
    EXPECT_EQ(outcomeOf("open " + file("lines.skl")), "ok");
    EXPECT_THAT(severities(), ElementsAre("warning")) << "lines have no surface";
}

TEST_F(LineOutcomes, AFaultBehindWhatWasReadIsAWarning) {
    test::writeFileText(folder / "half.apt", aptText({test::flatPatch(2, 2)}) + "2 2\n0 0 0\n1 0 0\n0 1 0\n1 x 0\n");
    must("open " + file("half.apt"));
    EXPECT_EQ(severities().front(), "warning");
    test::writeFileText(folder / "none.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 x 0\n");
    must("open " + file("none.apt"));
    EXPECT_EQ(severities().front(), "error");
}

TEST_F(LineOutcomes, ASaveOnLeavingThatIsDeclinedIsCancelledAndTheProgramStays) {
    std::string points = "3 67001\n";
    for (int i = 0; i < 3 * 67001; ++i) {
        points += std::to_string(i % 67001) + " " + std::to_string(i / 67001) + " 0\n";
    }
    test::writeFileText(folder / "long.apt", points); // more than 201,000 points: thinned
    must("open " + file("long.apt"));
    must("run model.move deltaX=1");
    EXPECT_EQ(outcomeOf("quit answer=yes answer=no"), "cancelled");
    EXPECT_EQ(run("quit answer=no"), Next::Leave);
    EXPECT_EQ(event("done").at("outcome"), "ok");
}

// ---- Files read and written -----------------------------------------------------------------------------------------

class FileNews : public testing::Test {
protected:
    test::EventRecorder recorder;
    BatchUserInterface ui{recorder};
};

TEST_F(FileNews, OfAFileReadHasItsCountsInOrder) {
    FileRead read;
    read.path = "in/box.stl";
    read.bytes = 1234;
    read.format = "stl";
    read.complete = false;
    read.lossless = false;
    read.found = {{"facets", 522}, {"solids", 2}};
    read.kept = {{"facets", 521}, {"solids", 1}};
    read.changed = {"Degenerate triangles: 3"};
    read.reasons = {"Solids: 2, only the first is read"};
    ui.beginLine();
    ui.tellFileRead(read);
    ASSERT_EQ(recorder.events.size(), 1U);
    EXPECT_EQ(recorder.events[0].dump(),
              R"({"event":"read","path":"in/box.stl","bytes":1234,"format":"stl","complete":false,"lossless":false,)"
              R"("found":{"facets":522,"solids":2},"kept":{"facets":521,"solids":1},)"
              R"("changed":["Degenerate triangles: 3"],"reasons":["Solids: 2, only the first is read"]})");
}

TEST_F(FileNews, OfAFileWrittenHasItsCounts) {
    FileWritten written;
    written.path = "wing.apt";
    written.bytes = 77;
    written.format = "apt";
    written.counts = {{"patches", 1}, {"points", 6}};
    ui.beginLine();
    ui.tellFileWritten(written);
    ASSERT_EQ(recorder.events.size(), 1U);
    EXPECT_EQ(recorder.events[0].dump(),
              R"({"event":"written","path":"wing.apt","bytes":77,"format":"apt","counts":{"patches":1,"points":6}})");
}

// ---- What can be asked ----------------------------------------------------------------------------------------------

TEST_F(LineOutcomes, VersionTellsProgramGrammarAndPictures) {
    const Json version = printed("version");
    EXPECT_THAT(version.at("program").get<std::string>(), testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
    EXPECT_EQ(version.at("grammar"), 2);
    EXPECT_TRUE(version.at("picture").is_boolean());
}

TEST_F(LineOutcomes, ReadIsAListOfWhatTheLastReadingLineRead) {
    EXPECT_TRUE(printed("read").is_array());
}

} // namespace
} // namespace velmora
