#include "dialog_tests.h"

#include <filesystem>
#include <set>
#include <sstream>
#include <utility>

#include "exchange_files.h"

namespace velmora::test {

namespace {

std::string plain(double number) {
    std::ostringstream text;
    text.precision(15);
    text << number;
    return text.str();
}

std::string rangeText(const DialogField& field) {
    if (!field.minimum && !field.maximum) {
        return "any";
    }
    return plain(field.minimum.value()) + " to " + plain(field.maximum.value());
}

/// A field in one line: "key | label | type | start | range", of a radio group its choices in place of the range.
std::string lineOf(const DialogField& field) {
    std::string text = field.key + " | " + field.label + " | ";
    switch (field.kind) {
    case FieldKind::Check:
        return text + "check | " + fieldText(field);
    case FieldKind::Radio:
        text += "radio | " + fieldText(field) + " |";
        for (const std::string& choice : field.choices) {
            text += " \"" + choice + "\"";
        }
        return text;
    case FieldKind::Integer:
        text += "int | ";
        break;
    case FieldKind::Real:
        text += "real | ";
        break;
    }
    return text + fieldText(field) + " | " + rangeText(field) + (field.readOnly ? " | read-only" : "");
}

/// Told in tests of their own: IntersectionOfOneCell, with the whole grid compared, CompareCommand, and ViewCommands
/// with ValuesToShow and ColouredView, and PictureProgram.
const std::set<std::string> toldElsewhere = {"CIntersection.insideSide=1",
                                             "CIntersection.insideSide=2",
                                             "CIntersection.outsideSide=1",
                                             "CIntersection.outsideSide=2",
                                             "CCompare.target=1",
                                             "CCompare.target=2",
                                             "CCompare.target=3",
                                             "CColours.quantity=1",
                                             "CColours.quantity=2",
                                             "CColours.quantity=3",
                                             "CColours.quantity=4",
                                             "CColours.quantity=5",
                                             "CColours.quantity=6",
                                             "CColours.quantity=7",
                                             "CColours.quantity=8",
                                             "CColours.quantity=9",
                                             "CColours.automatic=0",
                                             "CColours.automatic=1",
                                             "CPicture.ground=1",
                                             "CPicture.ground=2",
                                             "CPicture.ground=3",
                                             "CPicture.triad=0",
                                             "CPicture.triad=1"};

std::string keyOf(const std::string& dialog, const std::string& field, int value) {
    return dialog + '.' + field + '=' + std::to_string(value);
}

} // namespace

std::vector<std::string> linesOf(const char* name) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    const auto form = doc.dialogs->form(name);
    if (!form) {
        return {"no dialog"};
    }
    std::vector<std::string> lines = {form->title};
    for (const DialogField& field : form->fields) {
        lines.push_back(lineOf(field));
    }
    return lines;
}

std::vector<std::string> liveFields(const DialogForm& form) {
    std::vector<std::string> live;
    for (const DialogField& field : form.fields) {
        if (field.on) {
            live.push_back(field.key);
        }
    }
    return live;
}

void PrintTo(const Choice& choice, std::ostream* out) {
    *out << choice.dialog << '.' << choice.field << '=' << choice.value << ' ' << choice.when;
}

DialogChoice::DialogChoice() {
    const std::string zone = "ZONE T=\"ZONE_0\",I=2,J=2,K=1,F= POINT\n0 0 0 10\n1 0 0 11\n0 1 0 12\n1 1 0 13\n";
    writeFileText(folder / "flow.dat", "TITLE = \"flow\"\nVARIABLES = \"X\", \"Y\", \"Z\", \"P\"\n" + zone + zone);
    // Two triangles of three points each, two of which they have in common.
    writeFileText(folder / "soup.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 4 5 6\n");
    // One triangle, and one cell whose six faces are two triangles each.
    writeFileText(folder / "brick.dat",
                  "VARIABLES = X, Y, Z\nZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n"
                  "ZONE N=8, E=1, F=FEPOINT, ET=BRICK\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n0 0 1\n1 0 1\n1 1 1\n"
                  "0 1 1\n1 2 3 4 5 6 7 8\n");
    std::filesystem::copy_file(VELMORA_TEST_DATA "/box.step", folder / "box.step");
}

void DialogChoice::holdTiltedPlate() {
    holdZones({});
    doc.feRegion.blocks.push_back(
        triangleZone("plate", {{0, 0, 0}, {4, 0, 0}, {4, 6, 8}, {0, 6, 8}}, {0, 1, 2, 0, 2, 3}));
    updateBounds();
}

std::string nameOf(const testing::TestParamInfo<Choice>& info) {
    std::string name = info.param.dialog + '_' + info.param.field + '_' + std::to_string(info.param.value) +
                       (info.param.when.empty() ? "" : "_" + info.param.when);
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

TEST_P(DialogChoice, HasItsOutcome) {
    const Choice& choice = GetParam();
    const std::vector<std::string_view> known = importExtensions();
    if (choice.field == "cad" && std::find(known.begin(), known.end(), "step") == known.end()) {
        GTEST_SKIP() << "the program is built without CAD";
    }
    if (!choice.model.empty()) {
        hold(choice.model);
    } else if (choice.before.empty()) {
        holdTiltedPlate();
    }
    runAll(choice.before);
    Fields fields = choice.first;
    fields.emplace_back(choice.field, std::to_string(choice.value));
    fields.insert(fields.end(), choice.fields.begin(), choice.fields.end());
    forget();
    run({.id = choice.command, .fields = fields, .files = choice.files});
    EXPECT_THAT(heard(), testing::Not(testing::Contains(testing::StartsWith("refused:"))));
    EXPECT_EQ(choice.look(doc), choice.expected);
}

TEST_F(CommandRig, EachChoiceOfADialogHasATest) {
    std::set<std::string> told = toldElsewhere;
    for (const Choices* choices :
         {&rebreakChoices, &gridChoices, &sectionChoices, &transformChoices, &convertChoices, &exchangeChoices}) {
        for (const Choice& choice : *choices) {
            told.insert(keyOf(choice.dialog, choice.field, choice.value));
        }
    }
    for (const std::string& dialog : DialogValues::names()) {
        const auto form = doc.dialogs->form(dialog);
        ASSERT_TRUE(form.has_value());
        for (const DialogField& field : form->fields) {
            const bool radio = field.kind == FieldKind::Radio;
            if (dialog == "CFeatures" || field.readOnly || (!radio && field.kind != FieldKind::Check)) {
                continue;
            }
            for (int value = radio ? 1 : 0; value <= (radio ? static_cast<int>(field.choices.size()) : 1); ++value) {
                EXPECT_EQ(told.count(keyOf(dialog, field.key, value)), 1U) << keyOf(dialog, field.key, value);
            }
        }
    }
}

// ---- All dialogs ----------------------------------------------------------------------------------------------------

/// The title of each dialog; one that is new in the document gets a row here, and a test of its fields below.
const std::pair<const char*, const char*> titles[] = {
    {"Cduplicate", "Duplicate"},
    {"CRebreak", "Rebreak "},
    {"CRebreakPart", "Rebreak Part"},
    {"CInputPatch", "Input patch"},
    {"CInputSection", "Input section"},
    {"CInputLine", "Input line"},
    {"CScaling", "Scaling"},
    {"CBlockMove", "Move"},
    {"CBlockRotate", "Rotation"},
    {"CFlipBlock", "Flip"},
    {"CSymmetricBlock", "Symmetry"},
    {"CLast_First_switch", "Last/First switch"},
    {"CSmooth", "Smooth"},
    {"CFeatures", "View features"},
    {"CMerge", "Merge"},
    {"CFirstPoint", "First point in section"},
    {"CExtrapolation", "Extrapolation"},
    {"CInterpolate", "Interpolate"},
    {"CPrescribe", "Prescribe"},
    {"CBeforeAfter", "Before or After"},
    {"CCorrectLine", "Line correct"},
    {"dlgEditPoint", "Edit point"},
    {"dlgViewing", "Viewport Options"},
    {"CRegularFind", "Find"},
    {"CImport", "Import"},
    {"CExport", "Export"},
};

TEST(DialogFields, StandUnderTheTitlesThatUsersKnow) {
    for (const auto& [name, title] : titles) {
        EXPECT_THAT(linesOf(name), testing::Contains(std::string(title))) << name;
    }
}

TEST(DialogFields, KeepTheirStartValuesWithinTheirRanges) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    for (const std::string& name : DialogValues::names()) {
        auto form = doc.dialogs->form(name);
        openDialog(*form);
        for (const DialogField& field : form->fields) {
            const bool number = field.kind == FieldKind::Integer || field.kind == FieldKind::Real;
            if (number && field.on && !field.readOnly) {
                EXPECT_FALSE(setField(*form, field.key, fieldText(field)).has_value()) << name << " " << field.key;
            }
            EXPECT_TRUE(field.label != " " && (field.kind != FieldKind::Radio || field.choices.size() > 1)) << name;
        }
    }
}

TEST(StoredDialogs, AreFoundByEachOfTheirNames) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    for (const std::string& name : DialogValues::names()) {
        const auto form = doc.dialogs->form(name);
        ASSERT_TRUE(form.has_value()) << name;
        EXPECT_EQ(form->name, name);
    }
    EXPECT_FALSE(doc.dialogs->form("crebreak").has_value());
    EXPECT_FALSE(doc.dialogs->form("").has_value());
}

TEST(StoredDialogs, ShowTheValuesThatTheDocumentHolds) {
    RecordingUi ui;
    DocumentState doc(ui, {});
    doc.dialogs->rebreak.law.compression = 2.5;
    doc.dialogs->inputLine.line = 7;
    EXPECT_EQ(fieldText(*doc.dialogs->form("CRebreak")->find("compression")), "2.5");
    EXPECT_EQ(fieldText(*doc.dialogs->form("CInputLine")->find("line")), "7");
}

} // namespace velmora::test
