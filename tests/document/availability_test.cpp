#include <functional>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "arranged_capture.h"
#include "command_table.h"

namespace velmora::test {

namespace {

// The rules are written out as users know them and evaluated here, over every combination of the things that a rule
// names, before random settings of all the rest.

/// What the rules look at. Every member counts from 0.
struct State {
    int structure = 0; ///< "non", "str", "uns"
    int file = 0;      ///< "non", "apt", "skl"
    int second = 0;    ///< "non", "wrl", "dat"
    int B = 0;         ///< patches in the zBlock
    int P = 0;         ///< patches of the model
    int FM = 0;
    int SEC = 0;
    int LIN = 0;
    int PT = 0;
    int FP = 0;
    int BUF = 0;
    int patchCaptured = 0;
    int pointPicked = 0;
    int pointClipboard = 0;
    int blockClipboard = 0;
    int pointUndo = 0;
    int patchUndo = 0;
    int sftOpen = 0;
    int markersOpen = 0;
    int gridNamed = 0;
    int sectionNumber = 0; ///< 1: capturedSection is not negative
    int lineNumber = 0;
};

using Variable = int State::*;

struct Domain {
    const char* name;
    Variable variable;
    int count;
};

const std::vector<Domain>& domains() {
    static const std::vector<Domain> all = {
        {"structureKind", &State::structure, 3},
        {"fileKind", &State::file, 3},
        {"secondKind", &State::second, 3},
        {"B", &State::B, 4},
        {"P", &State::P, 4},
        {"FM", &State::FM, 2},
        {"SEC", &State::SEC, 2},
        {"LIN", &State::LIN, 2},
        {"PT", &State::PT, 2},
        {"FP", &State::FP, 2},
        {"BUF", &State::BUF, 2},
        {"patchCaptured", &State::patchCaptured, 2},
        {"pointPicked", &State::pointPicked, 2},
        {"pointClipboardFull", &State::pointClipboard, 2},
        {"blockClipboardFull", &State::blockClipboard, 2},
        {"pointUndoReady", &State::pointUndo, 2},
        {"patchUndoReady", &State::patchUndo, 2},
        {"sftOpen", &State::sftOpen, 2},
        {"markersOpen", &State::markersOpen, 2},
        {"gridNamed", &State::gridNamed, 2},
        {"capturedSection", &State::sectionNumber, 2},
        {"capturedLine", &State::lineNumber, 2},
    };
    return all;
}

struct Condition {
    std::vector<Variable> uses;
    std::function<bool(const State&)> holds;
};

Condition flag(Variable variable, int value) {
    return {{variable}, [=](const State& s) { return s.*variable == value; }};
}

Condition flagNot(Variable variable, int value) {
    return {{variable}, [=](const State& s) { return s.*variable != value; }};
}

Condition fewer(Variable variable, int bound) {
    return {{variable}, [=](const State& s) { return s.*variable < bound; }};
}

const std::map<std::string, Condition>& conditions() {
    static const std::map<std::string, Condition> all = {
        {"always", {{}, [](const State&) { return true; }}},
        {"NON", flag(&State::structure, 0)},
        {"STR", flag(&State::structure, 1)},
        {"not STR", flagNot(&State::structure, 1)},
        {"UNS", flag(&State::structure, 2)},
        {"not UNS", flagNot(&State::structure, 2)},
        {"APT", flag(&State::file, 1)},
        {"not APT", flagNot(&State::file, 1)},
        {"SKL", flag(&State::file, 2)},
        {"secondKind is non", flag(&State::second, 0)},
        {"secondKind is not wrl", flagNot(&State::second, 1)},
        {"secondKind is not dat", flagNot(&State::second, 2)},
        {"B is 0", flag(&State::B, 0)},
        {"B < 1", fewer(&State::B, 1)},
        {"B < 2", fewer(&State::B, 2)},
        {"P < 2", fewer(&State::P, 2)},
        {"B >= P", {{&State::B, &State::P}, [](const State& s) { return s.B >= s.P; }}},
        {"FM", flag(&State::FM, 1)},
        {"not FM", flag(&State::FM, 0)},
        {"SEC", flag(&State::SEC, 1)},
        {"not SEC", flag(&State::SEC, 0)},
        {"LIN", flag(&State::LIN, 1)},
        {"not SL", {{&State::SEC, &State::LIN}, [](const State& s) { return s.SEC + s.LIN == 0; }}},
        {"PT", flag(&State::PT, 1)},
        {"not PT", flag(&State::PT, 0)},
        {"FP", flag(&State::FP, 1)},
        {"not FP", flag(&State::FP, 0)},
        {"not BUF", flag(&State::BUF, 0)},
        {"patchCaptured", flag(&State::patchCaptured, 1)},
        {"not pointPicked", flag(&State::pointPicked, 0)},
        {"not pointClipboardFull", flag(&State::pointClipboard, 0)},
        {"not blockClipboardFull", flag(&State::blockClipboard, 0)},
        {"not pointUndoReady", flag(&State::pointUndo, 0)},
        {"not patchUndoReady", flag(&State::patchUndo, 0)},
        {"not sftOpen", flag(&State::sftOpen, 0)},
        {"not markersOpen", flag(&State::markersOpen, 0)},
        {"not gridNamed", flag(&State::gridNamed, 0)},
        {"no section number", flag(&State::sectionNumber, 0)},
        {"no line number", flag(&State::lineNumber, 0)},
    };
    return all;
}

struct Rule {
    const char* command;
    const char* offWhen; ///< conditions joined by " or ", each of which may join others by " and "
};

const Rule rules[] = {
    // File commands
    {"file.append", "NON or FM"},
    {"file.save", "NON or FM"},
    {"file.saveAs", "NON or FM"},
    {"file.saveAsField", "NON or not FM"},
    {"file.closeField", "NON or not FM"},
    {"file.appendWrl", "not STR or FM"},
    {"file.closeWrl", "secondKind is non"},
    {"file.appendDat", "not STR or FM"},
    {"file.closeDat", "secondKind is not dat"},
    {"file.appendSft", "NON or FM"},
    {"file.closeSft", "not sftOpen"},
    {"file.openApm", "not STR or not APT or FM"},
    {"file.closeApm", "not markersOpen"},
    {"file.appendCbc", "not gridNamed"},

    // Point commands
    {"point.capture", "NON or PT"},
    {"point.next", "not PT"},
    {"point.input", "UNS or not PT"},
    {"point.edit", "not PT"},
    {"point.delete", "UNS or not PT or LIN or FM"},
    {"point.duplicate", "UNS or not PT or LIN or FM"},
    {"point.cut", "UNS or not PT or FM"},
    {"point.copy", "not PT"},
    {"point.paste", "not PT or not pointClipboardFull"},
    {"point.drag", "not PT or UNS or not APT"},
    {"point.undo", "not pointUndoReady"},
    {"point.free", "no section number and no line number"},
    {"point.free.line", "not SL or FM"},
    {"buffer.addPoint", "not pointPicked"},

    // Patch and zBlock commands
    {"patch.capture", "NON or patchCaptured"},
    {"patch.inputAndAdd", "NON"},
    {"patch.addToBlock", "NON"},
    {"patch.removeFromBlock", "B < 1"},
    {"block.new", "B is 0"},
    {"block.only", "B < 1"},
    {"block.extract", "B < 1 or FM"},
    {"block.delete", "B < 1 or FM"},
    {"block.saveAs", "B < 1"},
    {"block.copy", "B < 1 or not STR or FM"},
    {"block.paste", "not blockClipboardFull or not STR"},
    {"patch.undo", "not patchUndoReady"},
    {"block.matchBorder", "not STR or B < 2"},
    {"block.matchBorderAndGrid", "not STR or B < 2"},
    {"block.merge", "STR and not APT or B < 2"},
    {"block.extrapolate", "not STR or not APT or B < 1 or FM"},
    {"model.reflectToApt", "not STR or B < 1 or P < 2 or FM"},
    {"model.reflectToWrl", "secondKind is not wrl or B < 1"},
    {"model.reflectToDat", "secondKind is not dat or B < 1"},
    {"model.reflectToSft", "NON or B < 1 or FM"},
    {"model.intersection", "not STR or B < 1 or P < 2 or B >= P or FM"},

    // Section and line commands
    {"line.captureSection", "not STR or SEC"},
    {"line.captureLine", "NON or LIN or not STR or not APT"},
    {"line.inputSection", "not STR"},
    {"line.inputLine", "not STR or not APT"},
    {"line.next", "not SL"},
    {"line.gateToPatchMode", "NON"},
    {"line.rebreak", "not SL or UNS or FM"},
    {"point.rebreakPart", "not PT or FP or not SL"},
    {"line.delete", "not SL or FM"},
    {"line.duplicate", "not SL or FM"},
    {"line.copy", "not SL or FM"},
    {"line.paste", "not SL or not BUF"},
    {"line.weeding", "not SL or FM"},
    {"line.cylinder", "not SEC or FM"},
    {"line.firstPoint", "not STR or FM or not SL"},
    {"line.move", "not STR or not SL"},
    {"line.interpolate", "not SL or not STR or not APT or FM"},
    {"line.correct", "not FP"},
    {"line.scaling", "not STR or not SL"},
    {"line.flip", "not STR or not SL"},
    {"line.rotation", "not STR or not SL"},
    {"line.symmetric", "not STR or not SEC or FM"},
    {"line.knife", "not STR or not SEC or FM"},
    {"line.prescribe", "not STR or FM or not SL"},
    {"line.splitPatch", "not STR or not SL"},
    {"point.knifePart", "not STR or not SEC or not PT"},
    {"point.copyPart", "not STR or not SEC or not PT"},
    {"point.reverseSection", "not STR or not SEC or not PT"},
    {"point.pastePart", "not STR or not SEC or not PT or not BUF"},
    {"buffer.merge", "not STR or not SEC or not BUF"},
    {"buffer.match", "not BUF or not SL"},
    {"buffer.open.line", "not STR or FM or not SL"},
    {"buffer.saveAs", "not BUF"},
    {"buffer.clear", "not BUF"},
    {"buffer.reverse", "not BUF"},

    // Model commands
    {"model.scaling", "NON"},
    {"model.move", "NON"},
    {"model.rotation", "NON"},
    {"model.flip", "NON"},
    {"model.symmetric", "NON or FM"},
    {"model.convertation", "not STR or not APT or FM"},
    {"model.lastFirstSwitch", "not STR or not APT or FM"},
    {"model.knife", "not STR or not APT or FM"},
    {"model.coonsRebuild", "not STR or not APT or FM"},
    {"model.smooth", "not STR or not APT or FM"},
    {"model.invisibleRemove", "not UNS"},
    {"convert.toUnstructured", "not STR or SKL or FM"},
    {"convert.toApt", "not STR or APT"},
    {"convert.toSkl", "not UNS"},
    {"convert.knife", "not UNS"},
    {"view.fit", "NON"},

    // View commands
    {"view.perspective", "NON"},
    {"view.orthographic", "NON"},
    {"view.top", "NON"},
    {"view.bottom", "NON"},
    {"view.front", "NON"},
    {"view.back", "NON"},
    {"view.right", "NON"},
    {"view.left", "NON"},
    {"view.iso", "NON"},
    {"view.manual", "NON"},
    {"view.threeD", "NON"},
    {"view.frontView", "NON"},
    {"view.upView", "NON"},
    {"view.sideView", "NON"},
    {"view.rotate", "NON"},
    {"view.rotateX", "NON"},
    {"view.rotateY", "NON"},
    {"view.rotateZ", "NON"},
    {"view.translateXY", "NON"},
    {"view.translateZ", "NON"},
    {"view.shift", "NON"},
    {"view.scale", "NON"},
    {"view.zoomIn", "NON"},
    {"view.zoomOut", "NON"},
    {"view.surface", "NON"},
    {"view.previous", "always"},
};

const char* const alwaysOn[] = {
    "file.new",       "file.open",     "file.import", "file.export", "file.openField", "file.exit",
    "patch.exit",     "block.invert",  "line.exit",   "buffer.open", "point.exit",     "view.toolbar",
    "view.statusBar", "view.features", "help.topics", "help.about",
};

void apply(const State& s, VelmoraDoc& d) {
    constexpr StructureKind structures[] = {StructureKind::None, StructureKind::Structured,
                                            StructureKind::Unstructured};
    constexpr FileKind files[] = {FileKind::None, FileKind::Apt, FileKind::Skl};
    constexpr SecondKind seconds[] = {SecondKind::None, SecondKind::Wrl, SecondKind::Dat};
    d.structureKind = structures[s.structure];
    d.fileKind = files[s.file];
    d.secondKind = seconds[s.second];
    d.blockCount = s.B;
    d.patches.resize(static_cast<std::size_t>(s.P));
    d.fieldMode = s.FM != 0;
    arranged(d).sectionCaptured = s.SEC != 0;
    arranged(d).lineCaptured = s.LIN != 0;
    arranged(d).pointCaptured = s.PT != 0;
    arranged(d).freePointHeld = s.FP != 0;
    d.lineBufferFull = s.BUF != 0;
    arranged(d).patchCaptured = s.patchCaptured != 0;
    arranged(d).pointPicked = s.pointPicked != 0;
    d.pointClipboardFull = s.pointClipboard != 0;
    d.blockClipboardFull = s.blockClipboard != 0;
    d.pointUndoReady = s.pointUndo != 0;
    d.patchUndoReady = s.patchUndo != 0;
    d.sftOpen = s.sftOpen != 0;
    d.markersOpen = s.markersOpen != 0;
    d.gridNamed = s.gridNamed != 0;
    d.capture.renumberSection(s.sectionNumber - 1);
    d.capture.renumberLine(s.lineNumber - 1);
}

std::string describe(const State& state) {
    std::ostringstream text;
    for (const Domain& domain : domains()) {
        text << domain.name << '=' << state.*domain.variable << ' ';
    }
    return text.str();
}

State randomState(std::mt19937& engine) {
    State state;
    for (const Domain& domain : domains()) {
        state.*domain.variable = static_cast<int>(engine() % static_cast<unsigned>(domain.count));
    }
    return state;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t at; (at = text.find(separator, from)) != std::string::npos; from = at + separator.size()) {
        parts.push_back(text.substr(from, at - from));
    }
    parts.push_back(text.substr(from));
    return parts;
}

/// One rule, ready to be asked.
struct ParsedRule {
    std::vector<std::vector<Condition>> alternatives;
    std::vector<Domain> uses;

    explicit ParsedRule(const std::string& offWhen) {
        for (const std::string& alternative : split(offWhen, " or ")) {
            alternatives.emplace_back();
            for (const std::string& name : split(alternative, " and ")) {
                const Condition& condition = conditions().at(name);
                alternatives.back().push_back(condition);
                note(condition);
            }
        }
    }

    bool off(const State& state) const {
        return std::any_of(alternatives.begin(), alternatives.end(), [&](const auto& all) {
            return std::all_of(all.begin(), all.end(), [&](const Condition& c) { return c.holds(state); });
        });
    }

    /// Sets the variables that the rule names to their combination of that number; false past the last one.
    bool setCombination(int number, State& state) const {
        for (const Domain& domain : uses) {
            state.*domain.variable = number % domain.count;
            number /= domain.count;
        }
        return number == 0;
    }

private:
    void note(const Condition& condition) {
        for (const Domain& domain : domains()) {
            const auto& named = condition.uses;
            const bool known =
                std::any_of(uses.begin(), uses.end(), [&](const Domain& d) { return d.variable == domain.variable; });
            if (!known && std::find(named.begin(), named.end(), domain.variable) != named.end()) {
                uses.push_back(domain);
            }
        }
    }
};

class AvailabilityRule : public testing::TestWithParam<Rule> {};

std::string nameOf(const testing::TestParamInfo<Rule>& info) {
    std::string name = info.param.command;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

} // namespace

TEST_P(AvailabilityRule, TurnsTheCommandOffExactlyWhenOneOfItsConditionsHolds) {
    RecordingUi ui;
    VelmoraDoc doc(ui, {});
    ASSERT_NE(findCommand(GetParam().command), nullptr);
    const ParsedRule rule(GetParam().offWhen);
    std::mt19937 engine(7);
    bool seenOn = false;
    for (int background = 0; background < 25; ++background) {
        State state = background == 0 ? State() : randomState(engine);
        for (int combination = 0; rule.setCombination(combination, state); ++combination) {
            apply(state, doc);
            ASSERT_EQ(isCommandOff(doc, GetParam().command), rule.off(state)) << describe(state);
            seenOn = seenOn || !rule.off(state);
        }
    }
    EXPECT_NE(seenOn, std::string(GetParam().offWhen) == "always");
}

INSTANTIATE_TEST_SUITE_P(Rules, AvailabilityRule, testing::ValuesIn(rules), nameOf);

TEST(Availability, CommandsWithoutARuleAreOnInAllStates) {
    RecordingUi ui;
    VelmoraDoc doc(ui, {});
    std::mt19937 engine(11);
    for (int i = 0; i < 500; ++i) {
        const State state = i == 0 ? State() : randomState(engine);
        apply(state, doc);
        for (const char* command : alwaysOn) {
            ASSERT_NE(findCommand(command), nullptr) << command;
            ASSERT_FALSE(isCommandOff(doc, command)) << command << " with " << describe(state);
        }
    }
}

TEST(Availability, EveryCommandHasARuleHereOrIsNamedAsAlwaysOn) {
    std::set<std::string> known(std::begin(alwaysOn), std::end(alwaysOn));
    for (const Rule& rule : rules) {
        EXPECT_TRUE(known.insert(rule.command).second) << rule.command;
    }
    known.insert("point.dragAndCorrect"); // the view's own rule
    for (const Command& command : commandTable()) {
        EXPECT_EQ(known.erase(command.id), 1U) << command.id;
    }
    EXPECT_TRUE(known.empty()) << *known.begin();
}

TEST(Availability, AnUnknownCommandIsNotOff) {
    RecordingUi ui;
    const VelmoraDoc doc(ui, {});
    EXPECT_FALSE(isCommandOff(doc, "no.such"));
}

TEST(Availability, OfTheDocumentForDragAndCorrectNeedsAPointOnACurveAndNoFreePoint) {
    RecordingUi ui;
    VelmoraDoc doc(ui, {});
    State state;
    state.PT = 1;
    state.SEC = 1;
    apply(state, doc);
    EXPECT_FALSE(isCommandOff(doc, "point.dragAndCorrect"));
    state.FP = 1;
    apply(state, doc);
    EXPECT_TRUE(isCommandOff(doc, "point.dragAndCorrect"));
    state = {};
    state.PT = 1;
    apply(state, doc);
    EXPECT_TRUE(isCommandOff(doc, "point.dragAndCorrect"));
    state = {};
    state.LIN = 1;
    apply(state, doc);
    EXPECT_TRUE(isCommandOff(doc, "point.dragAndCorrect"));
}

// ---- Cases worth a name ---------------------------------------------------------------------------------------------

namespace {

class AvailabilityCase : public testing::Test {
protected:
    AvailabilityCase() : doc(ui, {}) {}

    bool on(const char* command) const { return !isCommandOff(doc, command); }

    RecordingUi ui;
    VelmoraDoc doc;
};

} // namespace

TEST_F(AvailabilityCase, AnAptModelCanBeAppendedToSavedAndCaptured) {
    doc.patches.resize(1);
    doc.structureKind = StructureKind::Structured;
    doc.fileKind = FileKind::Apt;
    for (const char* command : {"file.append", "file.save", "file.saveAs", "point.capture", "patch.capture"}) {
        EXPECT_TRUE(on(command)) << command;
    }
    EXPECT_FALSE(on("patch.removeFromBlock"));
}

TEST_F(AvailabilityCase, AModelWithFieldDataIsSavedByTheFieldCommandOnly) {
    doc.structureKind = StructureKind::Structured;
    doc.fileKind = FileKind::Apt;
    doc.fieldMode = true;
    EXPECT_FALSE(on("file.save"));
    EXPECT_FALSE(on("file.saveAs"));
    EXPECT_TRUE(on("file.saveAsField"));
}

TEST_F(AvailabilityCase, IntersectionNeedsAPatchOutsideTheZBlock) {
    doc.structureKind = StructureKind::Structured;
    doc.patches.resize(3);
    doc.blockCount = 3;
    EXPECT_FALSE(on("model.intersection"));
    doc.blockCount = 2;
    EXPECT_TRUE(on("model.intersection"));
}

TEST_F(AvailabilityCase, MergeOnASklModelIsOffWhateverTheZBlock) {
    doc.structureKind = StructureKind::Structured;
    doc.fileKind = FileKind::Skl;
    for (const std::int32_t count : {0, 1, 2, 50, blockCapacity}) {
        doc.blockCount = count;
        EXPECT_FALSE(on("block.merge")) << count;
    }
}

TEST_F(AvailabilityCase, MergeOnAnUnstructuredModelNeedsTwoZones) {
    doc.structureKind = StructureKind::Unstructured;
    doc.blockCount = 1;
    EXPECT_FALSE(on("block.merge"));
    doc.blockCount = 2;
    EXPECT_TRUE(on("block.merge"));
}

} // namespace velmora::test
