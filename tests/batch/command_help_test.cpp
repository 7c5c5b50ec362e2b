#include "command_help.h"

#include <map>

#include "SessionFixture.h"

namespace velmora {
namespace {

using test::SessionFixture;

class CommandHelp : public SessionFixture {
protected:
    /// The fields of the help of a command, by their names.
    std::map<std::string, Json> fieldsOf(const std::string& id) {
        EXPECT_EQ(run("help " + id), Next::GoOn);
        const Json printed = event("print");
        EXPECT_EQ(printed.at("what"), "help " + id);
        std::map<std::string, Json> fields;
        for (const Json& field : printed.at("value").at("fields")) {
            fields[field.at("name").get<std::string>()] = field;
        }
        return fields;
    }
};

Json fieldValue(const char* name, const char* kind, const Json& minimum, const Json& maximum, const Json& start,
                const Json& choices, bool on) {
    return {{"name", name},       {"kind", kind}, {"minimum", minimum}, {"maximum", maximum}, {"start", start},
            {"choices", choices}, {"on", on}};
}

TEST_F(CommandHelp, TellsTheDialogWithTheFieldsInTheirOrder) {
    must("help line.inputSection");
    const Json value = event("print").at("value");
    EXPECT_EQ(value.at("command"), "line.inputSection");
    EXPECT_EQ(value.at("dialog"), "CInputSection");
    ASSERT_EQ(value.at("fields").size(), 4U);
    EXPECT_EQ(value.at("fields").at(0), fieldValue("patch", "integer", 1, 1000000, 1, nullptr, true));
    EXPECT_EQ(value.at("fields").at(1).at("name"), "maximumPatches");
    EXPECT_EQ(value.at("fields").at(1).at("on"), false) << "what is shown only";
    EXPECT_EQ(value.at("fields").at(2).at("name"), "section");
}

TEST_F(CommandHelp, KnowsEveryKindOfField) {
    const auto move = fieldsOf("model.move");
    EXPECT_EQ(move.at("deltaX").at("kind"), "number");
    EXPECT_EQ(move.at("deltaX").at("start"), 0.0);
    EXPECT_EQ(move.at("deltaX").at("choices"), nullptr);
    const auto flip = fieldsOf("model.flip");
    EXPECT_EQ(flip.at("plane").at("kind"), "choice");
    EXPECT_EQ(flip.at("plane").at("choices").size(), 3U);
    const auto features = fieldsOf("view.features");
    EXPECT_EQ(features.at("showBuffer").at("kind"), "check");
    EXPECT_EQ(features.at("showBuffer").at("start"), 0);
    EXPECT_EQ(fieldsOf("file.new").at("do"), fieldValue("do", "text", nullptr, nullptr, "", nullptr, true));
}

TEST_F(CommandHelp, TellsLimitsWhereThereAreSome) {
    const auto move = fieldsOf("model.move");
    EXPECT_EQ(move.at("deltaX").at("minimum"), nullptr) << "any number goes";
    EXPECT_EQ(move.at("deltaX").at("maximum"), nullptr);
}

TEST_F(CommandHelp, StartsAreThoseOfANewProgramWhateverWasTyped) {
    must("open " + file("plate.apt"));
    must("run model.move deltaX=7");
    EXPECT_EQ(fieldsOf("model.move").at("deltaX").at("start"), 0.0);
}

TEST_F(CommandHelp, OfACommandWithoutADialogHasNoFields) {
    must("help file.open");
    const Json expected = {{"command", "file.open"}, {"dialog", nullptr}, {"fields", Json::array()}};
    EXPECT_EQ(event("print").at("value"), expected);
}

TEST_F(CommandHelp, NeedsNoModelAndNoCommandThatIsOn) {
    must("help line.rebreak");
    EXPECT_EQ(event("done").at("outcome"), "ok");
}

// ---- The dialogs are those that the commands show -------------------------------------------------------------------

/// The file that a command asks for before its dialog.
std::string fileFirst(const std::string& id) {
    return id == "file.import" ? " file=one.stl" : id == "file.export" ? " file=out.obj" : "";
}

/// Runs every command that is on behind `setup` in a session of its own, and gives the dialog that each showed.
std::map<std::string, std::string> dialogsShown(const std::filesystem::path& folder,
                                                const std::vector<std::string>& setup) {
    std::map<std::string, std::string> shown;
    for (const Command& command : commandTable()) {
        test::EventRecorder recorder;
        BatchSession session(recorder, {folder, {800, 600}, false});
        for (const std::string& line : setup) {
            EXPECT_EQ(session.run(1, line), BatchSession::Next::GoOn) << line << Json(recorder.events).dump(2);
        }
        recorder.events.clear();
        session.run(2, std::string("run ") + command.id + fileFirst(command.id) + " cancel=dialog");
        for (const Json& event : recorder.events) {
            if (event.at("event") == "dialog") {
                shown[command.id] = event.at("name").get<std::string>();
            }
        }
    }
    return shown;
}

TEST_F(CommandHelp, NamesTheDialogThatTheCommandShows) {
    test::writeFileText(folder / "two.apt", aptText({test::flatPatch(4, 5), test::flatPatch(4, 5)}));
    test::writeFileText(folder / "wall.apt", "2 4\n1 1 -1\n1 1 1\n1 1 2\n1 1 3\n3 1 -1\n3 1 1\n3 1 2\n3 1 3\n");
    test::writeFileText(folder / "lines.skl", "2\n2\n0 0 0\n1 0 0\n3\n0 1 0\n1 1 0\n2 1 0\n");
    test::writeFileText(folder / "one.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                                            "vertex 0 1 0\nendloop\nendfacet\nendsolid a\n");
    const std::string two = "open " + file("two.apt");
    const std::vector<std::string> section = {two, "run line.inputSection patch=1 section=2"};
    std::vector<std::string> point = section;
    // Point (2, 1, 0): the middle of the view in x, and half a unit of 300 / 2.625 pixels below it.
    for (const char* line : {"run line.copy", "run point.capture", "mouse down 400 356", "mouse up 400 356"}) {
        point.emplace_back(line);
    }
    const std::vector<std::vector<std::string>> setups = {
        {},
        section,
        {two, "run line.inputLine patch=1 line=2", "run point.free.line", "mouse down 400 356", "mouse up 400 356"},
        point,
        {two, "run patch.inputAndAdd number=1", "run patch.inputAndAdd number=2"},
        {"open " + file("plate.apt"), "run file.append file=" + file("wall.apt"), "run patch.inputAndAdd number=2"},
        {"open " + file("lines.skl")},
        {"open " + file("one.stl")},
    };
    std::map<std::string, std::string> shown;
    for (const auto& setup : setups) {
        shown.merge(dialogsShown(folder.path(), setup));
    }
    for (const Command& command : commandTable()) {
        EXPECT_EQ(shown[command.id], dialogOf(command)) << command.id;
    }
}

} // namespace
} // namespace velmora
