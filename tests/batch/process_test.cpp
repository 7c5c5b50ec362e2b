#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fstream>

#include "Process.h"
#include "command_table.h"
#include "small_models.h"

namespace velmora {
namespace {

using nlohmann::json;
using test::Process;
using test::ProcessResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* smallModel = "2 3\n0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n";

class BatchProcess : public testing::Test {
protected:
    BatchProcess() { test::writeFileText(folder / "wing.apt", smallModel); }

    ProcessResult run(std::vector<std::string> arguments, const std::string& input = "") const {
        arguments.insert(arguments.begin(), VELMORA_BATCH);
        return test::runProcess(arguments, folder.path(), input);
    }

    /// The kinds of the events of a run with --json.
    static std::vector<std::string> kinds(const ProcessResult& result) {
        std::vector<std::string> names;
        for (const std::string& line : result.lines) {
            names.push_back(json::parse(line).at("event").get<std::string>());
        }
        return names;
    }

    test::TemporaryFolder folder;
};

// ---- Arguments -----------------------------------------------------------------------------------------------------

TEST_F(BatchProcess, WithoutAScriptAndALineItTellsItsUsage) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{}, {"--json"}, {"--strict"}}) {
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.lines, IsEmpty());
        EXPECT_THAT(result.errors, HasSubstr("Usage: velmora-batch"));
    }
}

TEST_F(BatchProcess, BadUsageIsStatusTwo) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"--fast"},
             {"-c"},
             {"--size"},
             {"--size", "800"},
             {"--size", "0x600"},
             {"--size", "800x-1"},
             {"--size", "800x600x5"},
             {"--size", "8000000x600"},
             {"--size", " 800x600"},
             {"nothing.script"},
             {"."},
             {"one.script", "two.script"},
             {"--strict", "--keep-going", "-c", "wait 0"},
             {"--help-commands", "view.dance"},
         }) {
        const ProcessResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments.back();
        EXPECT_THAT(result.lines, IsEmpty()) << arguments.back();
        EXPECT_NE(result.errors, "") << arguments.back();
    }
}

TEST_F(BatchProcess, AMissingScriptKeepsTheLinesBeforeItFromRunning) {
    EXPECT_EQ(run({"-c", "open wing.apt", "-c", "run file.saveAs file=new.apt", "nothing.script"}).status, 2);
    EXPECT_FALSE(std::filesystem::exists(folder / "new.apt"));
}

TEST_F(BatchProcess, HelpAndVersionAreNoErrors) {
    const ProcessResult help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.lines, Not(IsEmpty()));
    const ProcessResult version = run({"--version"});
    EXPECT_EQ(version.status, 0);
    ASSERT_EQ(version.lines.size(), 1U);
    EXPECT_THAT(version.lines[0], StartsWith("velmora-batch "));
}

TEST_F(BatchProcess, HelpCommandsTellsEveryCommandWithItsStatusText) {
    const ProcessResult result = run({"--help-commands"});
    EXPECT_EQ(result.status, 0);
    ASSERT_EQ(result.lines.size(), commandTable().size());
    for (std::size_t i = 0; i < result.lines.size(); ++i) {
        EXPECT_THAT(result.lines[i], StartsWith(std::string(commandTable()[i].id) + ' '));
        EXPECT_THAT(result.lines[i], HasSubstr(commandTable()[i].statusText));
    }
}

TEST_F(BatchProcess, HelpCommandsTellsTheFieldsOfOneAsJson) {
    const ProcessResult result = run({"--help-commands", "line.duplicate"});
    EXPECT_EQ(result.status, 0);
    ASSERT_EQ(result.lines.size(), 1U);
    const json value = json::parse(result.lines[0]);
    EXPECT_EQ(value.at("command"), "line.duplicate");
    EXPECT_EQ(value.at("dialog"), "Cduplicate");
    EXPECT_EQ(value, json::parse(run({"--json", "-c", "help line.duplicate"}).lines.at(0)).at("value"));
}

TEST_F(BatchProcess, SizeIsTheSizeOfTheView) {
    EXPECT_THAT(run({"--size", "320x200", "-c", "print view"}).lines,
                ElementsAre(HasSubstr("\"viewport\":[0,0,320,200]")));
    EXPECT_THAT(run({"-c", "print view"}).lines, ElementsAre(HasSubstr("\"viewport\":[0,0,800,600]")));
}

TEST_F(BatchProcess, LinesOfTheCommandLineRunBeforeTheScript) {
    test::writeFileText(folder / "two.script", "# first\nprint window 0 0 0\nwait 0\n");
    const ProcessResult result = run({"--json", "two.script", "-c", "wait 1", "-c", "open wing.apt"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(kinds(result), ElementsAre("done", "read", "title", "recent", "done", "print", "done", "done"));
    EXPECT_EQ(json::parse(result.lines[4]).at("line"), 2);
    EXPECT_EQ(json::parse(result.lines[6]).at("line"), 2) << "the script counts its own lines";
}

TEST_F(BatchProcess, EachLineOptionTakesOneLine) {
    test::writeFileText(folder / "wait.script", "wait 5\n");
    EXPECT_THAT(kinds(run({"--json", "-c", "wait 1", "wait.script"})), ElementsAre("done", "done"));
}

TEST_F(BatchProcess, EchoPrintsEachLineBeforeItRuns) {
    test::writeFileText(folder / "a.script", "\n# nothing\nopen wing.apt\nprint lineBuffer\n");
    EXPECT_THAT(run({"--echo", "a.script"}).lines,
                ElementsAre("open wing.apt", "title: wing.apt", "print lineBuffer", "print lineBuffer: []"));
}

TEST_F(BatchProcess, ALastLineNeedsNoLineFeed) {
    test::writeFileText(folder / "a.script", "print lineBuffer");
    EXPECT_THAT(run({"a.script"}).lines, ElementsAre("print lineBuffer: []"));
}

TEST_F(BatchProcess, ScriptsMayHaveTheLineEndsOfOtherSystems) {
    test::writeFileText(folder / "a.script", "open wing.apt\r\n\r\nprint lineBuffer\r\n");
    const ProcessResult result = run({"a.script"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.lines, ElementsAre("title: wing.apt", "print lineBuffer: []"));
}

// ---- Exit statuses and errors --------------------------------------------------------------------------------------

TEST_F(BatchProcess, AnEndedScriptIsStatusOneWithOneErrorLine) {
    test::writeFileText(folder / "a.script", "open wing.apt\n\nrun line.rebreak\nprint state\n");
    const ProcessResult result = run({"a.script"});
    EXPECT_EQ(result.status, 1);
    ASSERT_EQ(result.lines.size(), 2U);
    EXPECT_THAT(result.lines[1], StartsWith("error: line 3: the command \"line.rebreak\" is off"));
}

TEST_F(BatchProcess, EveryKindOfErrorEndsTheScript) {
    for (const char* line :
         {"bogus", "run bogus.command", "run file.save", "run file.open file=wing.apt", "run file.append",
          "run line.inputSection pach=1", "run line.inputSection maximumPatches=3", "run line.inputSection patch=x",
          "run line.inputSection patch=0", "run line.inputSection patch=1 section=99", "run view.fit answer=yes",
          "run view.fit file=a", "run view.fit a=b", "print nonsense", "open \"wing.apt", "mouse down", "wait never"}) {
        // "run file.save" is off before a model is open, the others fail with one.
        const bool empty = std::string(line) == "run file.save";
        const ProcessResult result = empty ? run({"--json", "-c", "wait 0", "-c", line, "-c", "wait 0"})
                                           : run({"--json", "-c", "open wing.apt", "-c", line, "-c", "wait 0"});
        EXPECT_EQ(result.status, 1) << line;
        const json last = json::parse(result.lines.back());
        EXPECT_EQ(last.at("event"), "error") << line;
        EXPECT_EQ(last.at("line"), 2) << line;
        EXPECT_THAT(last.at("text").get<std::string>(), HasSubstr("; ")) << "cause and remedy of " << line;
        const auto names = kinds(result);
        EXPECT_EQ(std::count(names.begin(), names.end(), "error"), 1) << line;
        EXPECT_EQ(std::count(names.begin(), names.end(), "done"), 1) << line;
    }
}

TEST_F(BatchProcess, TheEndOfTheScriptLeavesWithoutAQuestionAndWithoutSaving) {
    const ProcessResult result = run({"-c", "open wing.apt", "-c", "run line.inputSection patch=1 section=1", "-c",
                                      "run line.rebreak regime=2 function=2 newCount=9"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(test::fileText(folder / "wing.apt"), smallModel);
}

TEST_F(BatchProcess, QuitEndsTheProgramBehindDone) {
    const ProcessResult result = run({"--json", "-c", "quit", "-c", "bogus"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.lines, ElementsAre(R"({"event":"done","line":1,"outcome":"ok"})"));
}

// ---- Output --------------------------------------------------------------------------------------------------------

TEST_F(BatchProcess, JsonEventsComeInOrderWithTheirMembers) {
    const std::string path = (folder / "wing.apt").string();
    const ProcessResult result = run({"--json", "-c", "run file.open file=wing.apt", "-c",
                                      "run line.inputSection patch=1 section=2", "-c", "run file.new answer=no"});
    ASSERT_EQ(result.status, 0);
    EXPECT_THAT(
        result.lines,
        ElementsAre(
            R"({"event":"chooser","mode":"Open","extensions":["apt","skl","dat","wrl","stl","apm","fld","grd"],"proposed":"","paths":["wing.apt"]})",
            R"({"event":"read","path":")" + path +
                R"(","bytes":40,"format":"apt","complete":true,"lossless":true,"found":{"patches":1,"points":6},)"
                R"("kept":{"patches":1,"points":6},"changed":[],"reasons":[]})",
            R"({"event":"title","text":"wing.apt"})", R"({"event":"recent","path":")" + path + R"("})",
            R"({"event":"done","line":1,"outcome":"ok"})",
            R"({"event":"dialog","name":"CInputSection","title":"Input section","result":"ok","fields":{"patch":1,"maximumPatches":1,"section":2,"maximumSections":2}})",
            R"({"event":"status","text":"Captured section: Patch K=1, Section N=2, Points M=3  // Press right button to continue "})",
            R"({"event":"done","line":2,"outcome":"ok"})",
            R"({"event":"question","text":"Current geometry will be removed. Are you sure","answer":"no"})",
            R"({"event":"done","line":3,"outcome":"cancelled"})"));
}

TEST_F(BatchProcess, TextIsForPeople) {
    const ProcessResult result =
        run({"-c", "open wing.apt", "-c", "open nothing.apt", "-c", "open wing.apt", "-c", "run line.captureLine", "-c",
             "run file.new answer=no", "-c", "print lineBuffer", "-c", "bogus"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.lines,
                ElementsAre("title: wing.apt", "message: It is impossible to open selected file",
                            "message: Open procedure is canceled", "status: Press left button of mouse and drag it",
                            "question: Current geometry will be removed. Are you sure -> no", "print lineBuffer: []",
                            StartsWith("error: line 7: there is no line \"bogus\"")));
}

// The system ends a program that writes beyond the limit, unless the program says otherwise.
TEST_F(BatchProcess, ALimitOfTheFileSizeEndsNoProgramAndLosesNoFile) {
    std::string model = "60 60\n";
    for (int point = 0; point < 60 * 60; ++point) {
        model += std::to_string(point % 60) + ' ' + std::to_string(point / 60) + " 0\n";
    }
    test::writeFileText(folder / "wing.apt", model);
    for (const char* name : {"out.apt", "out.dat", "out.wrl", "out.stl", "out.obj", "out.svg"}) {
        test::writeFileText(folder / name, "what was there");
    }
    const std::string limited = "ulimit -f 4; exec \"$0\" --json --strict -c 'open wing.apt' "
                                "-c 'run model.move deltaX=1' -c \"$1\" -c 'print state'";
    for (const auto& [line, name] :
         std::vector<std::pair<std::string, std::string>>{{"run file.save", "wing.apt"},
                                                          {"run file.saveAs file=out.apt answer=yes", "out.apt"},
                                                          {"run file.saveAs file=out.dat answer=yes", "out.dat"},
                                                          {"run file.saveAs file=out.wrl answer=yes", "out.wrl"},
                                                          {"run file.saveAs file=out.stl answer=yes", "out.stl"},
                                                          {"run file.export file=out.obj answer=yes", "out.obj"},
                                                          {"picture out.svg width=900 height=900", "out.svg"},
                                                          {"run file.saveAs file=new.apt", "new.apt"}}) {
        const bool isNew = name == "new.apt";
        const std::string before = isNew ? "" : test::fileText(folder / name);
        const ProcessResult result = test::runProcess({"/bin/sh", "-c", limited, VELMORA_BATCH, line}, folder.path());
        EXPECT_EQ(result.status, 4) << line << ": a file could not be written";
        EXPECT_THAT(result.lines.back(), HasSubstr("\"failed\"")) << line;
        EXPECT_EQ(std::filesystem::exists(folder / name), !isNew) << line;
        EXPECT_EQ(isNew ? "" : test::fileText(folder / name), before) << line;
    }
    const std::filesystem::directory_iterator files(folder.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 7) << "nothing is left beside";
}

// Such a device has no end, and what it gives is no script.
TEST_F(BatchProcess, ADeviceThatIsNoTerminalIsNoScript) {
    for (const char* device : {"/dev/zero", "/dev/urandom", "/dev/full"}) {
        const ProcessResult result = run({device});
        EXPECT_EQ(result.status, 2) << device;
        EXPECT_THAT(result.errors, HasSubstr("cannot be read")) << device;
        EXPECT_THAT(result.lines, IsEmpty()) << device;
    }
    const ProcessResult input =
        test::runProcess({"/bin/sh", "-c", "exec \"$0\" - < /dev/zero", VELMORA_BATCH}, folder.path());
    EXPECT_EQ(input.status, 2);
    EXPECT_THAT(input.errors, HasSubstr("cannot be read"));
}

TEST_F(BatchProcess, PipesAndTheEmptyDeviceAreScripts) {
    EXPECT_THAT(run({"/dev/stdin"}, "print lineBuffer\n").lines, ElementsAre("print lineBuffer: []"));
    EXPECT_EQ(run({"/dev/null"}).status, 0);
    EXPECT_EQ(test::runProcess({"/bin/sh", "-c", "exec \"$0\" - < /dev/null", VELMORA_BATCH}, folder.path()).status, 0);
    EXPECT_THAT(
        test::runProcess({"/bin/bash", "-c", "exec \"$0\" <(echo 'print lineBuffer')", VELMORA_BATCH}, folder.path())
            .lines,
        ElementsAre("print lineBuffer: []"));
}

TEST_F(BatchProcess, OutputThatCannotBeWrittenIsNoSuccess) {
    EXPECT_EQ(
        test::runProcess({"/bin/sh", "-c", "exec \"$0\" -c 'print state' > /dev/full", VELMORA_BATCH}, folder.path())
            .status,
        1);
}

// ---- Standard input ------------------------------------------------------------------------------------------------

TEST_F(BatchProcess, AnswersEachLineBeforeItReadsTheNext) {
    Process process({VELMORA_BATCH, "--json", "-"}, folder.path());
    process.write("open wing.apt\n");
    EXPECT_THAT(process.readLine().value_or(""), HasSubstr("\"read\""));
    EXPECT_EQ(process.readLine(), R"({"event":"title","text":"wing.apt"})");
    EXPECT_THAT(process.readLine().value_or(""), HasSubstr("\"recent\""));
    EXPECT_EQ(process.readLine(), R"({"event":"done","line":1,"outcome":"ok"})");
    process.write("# a comment\nprint lineBuffer\n");
    EXPECT_EQ(process.readLine(), R"({"event":"print","what":"lineBuffer","value":[]})");
    EXPECT_EQ(process.readLine(), R"({"event":"done","line":3,"outcome":"ok"})");
    process.write("quit\n");
    EXPECT_EQ(process.readLine(), R"({"event":"done","line":4,"outcome":"ok"})");
    EXPECT_EQ(process.readLine(), std::nullopt);
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(BatchProcess, TextIsFlushedLineByLineToo) {
    Process process({VELMORA_BATCH, "-"}, folder.path());
    process.write("open wing.apt\n");
    EXPECT_EQ(process.readLine(), "title: wing.apt");
    process.closeInput();
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(BatchProcess, AnErrorEndsTheConversation) {
    Process process({VELMORA_BATCH, "--json", "-"}, folder.path());
    process.write("bogus\n");
    EXPECT_THAT(process.readLine().value_or(""), StartsWith(R"({"event":"error","line":1,)"));
    EXPECT_EQ(process.readLine(), std::nullopt);
    EXPECT_EQ(process.wait(), 1);
}

TEST_F(BatchProcess, AnyBytesOnStandardInputGiveAnErrorAtMost) {
    EXPECT_EQ(run({"--json", "-"}, std::string("\0\0\n", 3)).status, 1);
    EXPECT_EQ(run({"--json", "-"}, "open \xff\xfe.apt\n").status, 0);
    EXPECT_EQ(run({"--json", "-"}, "open " + std::string(2'000'000, 'a') + "\n").status, 0);
    EXPECT_EQ(run({"--json", "-"}, std::string(1'000'000, '\n')).status, 0);
}

TEST_F(BatchProcess, AByteOrderMarkBeforeTheFirstLineIsSkipped) {
    const std::string mark = "\xef\xbb\xbf";
    test::writeFileText(folder / "marked.script", mark + "print lineBuffer\n");
    EXPECT_THAT(run({"marked.script"}).lines, ElementsAre("print lineBuffer: []"));
    EXPECT_THAT(run({"-"}, mark + "print lineBuffer").lines, ElementsAre("print lineBuffer: []"));
    EXPECT_EQ(run({"-"}, mark + mark + "wait 0\n").status, 1) << "one mark";
    EXPECT_EQ(run({"-"}, "wait 0\n" + mark + "wait 0\n").status, 1) << "before the first line alone";
}

// ---- Strict scripts, and those that go on ---------------------------------------------------------------------------

TEST_F(BatchProcess, AStrictScriptEndsWhereAFileCannotBeRead) {
    const ProcessResult result = run({"--json", "--strict", "-c", "open nothing.apt", "-c", "print state"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(kinds(result), ElementsAre("message", "message", "done")) << "the line is done, and the last";
    EXPECT_THAT(result.errors, HasSubstr("line 1: failed")) << "a person learns why the script ended";
}

TEST_F(BatchProcess, AStrictScriptEndsWhereAFileIsReadInPart) {
    test::writeFileText(folder / "half.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n2 2\n0 0 0\n1 0 0\n0 1 0\n1 x 0\n");
    const ProcessResult result = run({"--json", "--strict", "-c", "open half.apt", "-c", "print state"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.lines.back(), HasSubstr("\"partial\""));
    EXPECT_EQ(run({"-c", "open half.apt"}).status, 0) << "a script that is not strict goes on";
}

TEST_F(BatchProcess, AStrictScriptEndsWhereAFileCannotBeWritten) {
    EXPECT_EQ(run({"--strict", "-c", "open wing.apt", "-c", "run file.saveAs file=gone/wing.apt"}).status, 4);
}

TEST_F(BatchProcess, AStrictScriptEndsWhereACommandIsRefused) {
    const ProcessResult result = run({"--json", "--strict", "-c", "open wing.apt", "-c",
                                      "run model.rotation x1=1 y1=1 z1=1 x2=1 y2=1 z2=1", "-c", "print state"});
    EXPECT_EQ(result.status, 5);
    EXPECT_THAT(result.lines.back(), HasSubstr("\"refused\""));
    EXPECT_EQ(run({"--strict", "-c", "open wing.foo"}).status, 5) << "a type that Open does not take";
}

TEST_F(BatchProcess, AStrictScriptGoesOnBehindWhatWasCancelled) {
    const ProcessResult result = run({"--json", "--strict", "-c", "open wing.apt", "-c", "run file.new answer=no", "-c",
                                      "run file.append cancel=file", "-c", "print lineBuffer"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.lines.back(), HasSubstr("\"line\":4"));
}

TEST_F(BatchProcess, AnErrorOfAStrictScriptIsStatusOne) {
    EXPECT_EQ(run({"--strict", "-c", "bogus"}).status, 1);
}

TEST_F(BatchProcess, WithoutStrictTheStatusTellsErrorsAlone) {
    EXPECT_EQ(
        run({"-c", "open nothing.apt", "-c", "open wing.apt", "-c", "run model.rotation x1=1 y1=1 z1=1 x2=1 y2=1 z2=1"})
            .status,
        0);
}

TEST_F(BatchProcess, AScriptThatKeepsGoingRunsTheLinesBehindAnError) {
    test::writeFileText(folder / "a.script", "bogus\nopen wing.apt\nrun line.inputSection pach=1\nprint lineBuffer\n");
    const ProcessResult result = run({"--json", "--keep-going", "a.script"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(kinds(result), ElementsAre("error", "read", "title", "recent", "done", "error", "print", "done"));
    EXPECT_EQ(json::parse(result.lines[5]).at("line"), 3);
    EXPECT_EQ(run({"--keep-going", "-c", "open wing.apt"}).status, 0) << "when there was none";
}

TEST_F(BatchProcess, QuitEndsAScriptThatKeepsGoing) {
    const ProcessResult result = run({"--json", "--keep-going", "-c", "bogus", "-c", "quit", "-c", "wait 0"});
    EXPECT_EQ(result.status, 1) << "of the error before";
    EXPECT_THAT(kinds(result), ElementsAre("error", "done"));
}

TEST_F(BatchProcess, ALineThatIsAnErrorLeavesTheModelAsItIs) {
    const ProcessResult result = run({"--json", "--keep-going", "-c", "open wing.apt", "-c",
                                      "run model.move deltaX=1 delta=2", "-c", "print patches"});
    EXPECT_EQ(json::parse(result.lines[5]).at("value").at(0).at(0).at(0), json::array({0.0, 0.0, 0.0}));
}

// ---- Paths ---------------------------------------------------------------------------------------------------------

TEST_F(BatchProcess, PathsStartFromTheCurrentFolder) {
    std::filesystem::create_directory(folder / "sub");
    const ProcessResult result = run({"-c", "open ./sub/../wing.apt", "-c", "run file.saveAs file=sub/Copy.APT"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "sub/Copy.APT"));
}

TEST_F(BatchProcess, QuotedPathsMayHoldBlanks) {
    EXPECT_EQ(
        run({"-c", "open wing.apt", "-c", "run file.saveAs file=\"my wing.apt\"", "-c", "open \"my wing.apt\""}).status,
        0);
    EXPECT_TRUE(std::filesystem::exists(folder / "my wing.apt"));
}

// ---- A file that is thinned ----------------------------------------------------------------------------------------

TEST_F(BatchProcess, SavingOverAFileThatWasThinnedIsAsked) {
    // 3 sections of 67001 points are 201003 points: every second one of a section is kept, and the last.
    std::ofstream file(folder / "long.apt");
    file << "3 67001\n";
    for (int i = 0; i < 3 * 67001; ++i) {
        file << i % 67001 << ' ' << i / 67001 << " 0\n";
    }
    file.close();
    const std::string before = test::fileText(folder / "long.apt");
    const ProcessResult unanswered = run({"-c", "open long.apt", "-c", "run file.save"});
    EXPECT_EQ(unanswered.status, 1);
    const ProcessResult declined = run({"-c", "open long.apt", "-c", "run file.save answer=no"});
    EXPECT_EQ(declined.status, 0);
    EXPECT_THAT(declined.lines,
                testing::Contains("question: The file holds more points than were read. Overwrite it? -> no"));
    EXPECT_EQ(test::fileText(folder / "long.apt"), before);
    const ProcessResult accepted = run({"-c", "open long.apt", "-c", "run file.save answer=yes"});
    EXPECT_EQ(accepted.status, 0);
    EXPECT_NE(test::fileText(folder / "long.apt"), before);
}

} // namespace
} // namespace velmora
