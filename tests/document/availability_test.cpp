#include <functional>
#include <map>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "Digest.h"
#include "DocumentState.h"
#include "RecordingUi.h"
#include "arranged_capture.h"
#include "command_table.h"
#include "expected_commands.h"

namespace velmora::test {

namespace {

// The rules are written out in tests/data/commands.txt as users know them and evaluated here, over every combination of
// the things that a rule names, before random settings of all the rest.

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
    int compared = 0;
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
        {"compared", &State::compared, 2},
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
        {"never", {{}, [](const State&) { return false; }}},
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
        {"nothing compared", flag(&State::compared, 0)},
        {"no section number", flag(&State::sectionNumber, 0)},
        {"no line number", flag(&State::lineNumber, 0)},
    };
    return all;
}

using Rule = ExpectedCommands::Rule; // conditions joined by " or ", each of which may join others by " and "

void apply(const State& s, DocumentState& d) {
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
    d.pointUndoPatches = s.pointUndo != 0 ? KeptPatches::of({Patch()}) : KeptPatches(); // what is ready is there
    d.patchUndoReady = s.patchUndo != 0;
    d.sftOpen = s.sftOpen != 0;
    d.markersOpen = s.markersOpen != 0;
    d.gridNamed = s.gridNamed != 0;
    d.feRegion.title = "a model"; // what was compared was not empty
    d.foundComparison = s.compared != 0 ? std::optional(Comparison()) : std::nullopt;
    d.comparedDigest = geometryDigest(d.patches, d.feRegion);
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
    DocumentState doc(ui, {});
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
    EXPECT_NE(seenOn, GetParam().offWhen == "always");
}

INSTANTIATE_TEST_SUITE_P(Rules, AvailabilityRule, testing::ValuesIn(expectedCommands().rules), nameOf);

TEST(Availability, CommandsWithoutARuleAreOnInAllStates) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    std::mt19937 engine(11);
    const std::vector<Rule> rules = expectedCommands().rules;
    for (int i = 0; i < 500; ++i) {
        const State state = i == 0 ? State() : randomState(engine);
        apply(state, doc);
        for (const Rule& rule : rules) {
            ASSERT_FALSE(rule.offWhen == "never" && isCommandOff(doc, rule.command))
                << rule.command << " with " << describe(state);
        }
    }
}

TEST(Availability, AnUnknownCommandIsNotOff) {
    RecordingUi ui;
    const DocumentState doc(ui, {});
    EXPECT_FALSE(isCommandOff(doc, "no.such"));
}

TEST(Availability, OfTheDocumentForDragAndCorrectNeedsAPointOnACurveAndNoFreePoint) {
    RecordingUi ui;
    DocumentState doc(ui, {});
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
    DocumentState doc;
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
