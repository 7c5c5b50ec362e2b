#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DialogValues.h"
#include "DocumentState.h"
#include "RecordingUi.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

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

/// The title, then the fields of the stored dialog, which holds its start values.
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

} // namespace

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

TEST(DialogFields, OfInterpolateStandOverItsNotice) {
    CInterpolate values;
    EXPECT_THAT(describe(values).notices, ElementsAre("Coefficient is changed in range (-1; 1)"));
}

TEST(DialogFields, OfDuplicate) {
    EXPECT_THAT(linesOf("Cduplicate"),
                ElementsAre("Duplicate", "duplicateCount | Duplication | int | 1 | 1 to 1000000"));
}

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

TEST(DialogFields, OfCompare) {
    EXPECT_THAT(
        linesOf("CCompare"),
        ElementsAre("Compare", "target |  | radio | 1 | \"Second geometry\" \"Patches outside of zBlock\" \"File\""));
}

TEST(DialogFields, OfColourByValue) {
    EXPECT_THAT(
        linesOf("CColours"),
        ElementsAre("Colour by value",
                    "quantity |  | radio | 1 | \"None\" \"Distance of Compare\" \"Field value 1\" \"Field value "
                    "2\" \"Field value 3\"",
                    "bands | Bands | int | 10 | 2 to 20", "automatic | Range of the values | check | 1",
                    "least | From | real | 0 | any", "most | To | real | 1 | any"));
}

TEST(DialogFields, OfIntersection) {
    EXPECT_THAT(linesOf("CIntersection"),
                ElementsAre("Intersection",
                            "insideSide |  | radio | 2 | \"Before intersection\" \"After intersection\"",
                            "insidePoints | Number of points | int | 20 | 2 to 1000000",
                            "outsideSide |  | radio | 2 | \"Before intersection\" \"After intersection\"",
                            "outsidePoints | Number of points | int | 20 | 2 to 1000000",
                            "tolerance | Tolerance | real | 5e-04 | 1e-12 to 1"));
}

TEST(DialogFields, OfIntersectionStandInTwoFrames) {
    CIntersection values;
    const DialogForm form = describe(values);
    EXPECT_EQ(form.find("insideSide")->group, "Patches in Block");
    EXPECT_EQ(form.find("insidePoints")->group, "Patches in Block");
    EXPECT_EQ(form.find("outsideSide")->group, "Patches out Block");
    EXPECT_EQ(form.find("outsidePoints")->group, "Patches out Block");
    EXPECT_EQ(form.find("tolerance")->group, "");
    EXPECT_EQ(form.focus, "insidePoints");
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

TEST(DialogFields, OfViewFeatures) {
    EXPECT_THAT(linesOf("CFeatures"),
                ElementsAre("View features", "showBlockOnly | Block only | check | 0",
                            "showFirstPoints | First points | check | 0",
                            "showDoublePoints | Double points | check | 0", "showBuffer | Buffer | check | 0",
                            "showZBlockMarkers | Markers in zBlock | check | 0"));
}

TEST(DialogFields, OfBeforeOrAfter) {
    EXPECT_THAT(linesOf("CBeforeAfter"),
                ElementsAre("Before or After", "choice |  | radio | 1 | \"Before\" \"After\""));
}

TEST(DialogFields, OfScaling) {
    EXPECT_THAT(linesOf("CScaling"),
                ElementsAre("Scaling", "xCenter | X center | real | 0 | any", "yCenter | Y center | real | 0 | any",
                            "zCenter | Z center | real | 0 | any", "scale | Scale | real | 1 | any"));
}

TEST(DialogFields, OfImport) {
    EXPECT_THAT(linesOf("CImport"),
                ElementsAre("Import", "merge | Merge equal points | check | 0",
                            "volumes |  | radio | 1 | \"Surface zones only\" \"Outer faces of volume zones too\"",
                            "cad |  | radio | 1 | \"CAD as triangles\" \"CAD as structured patches\"",
                            "chord | Error of triangles | real | 0.1 | any",
                            "sections | Sections of a patch | int | 33 | 2 to 10000",
                            "points | Points of a section | int | 33 | 2 to 10000", "scale | Scale | real | 1 | any"));
}

TEST(DialogFields, OfExport) {
    EXPECT_THAT(linesOf("CExport"), ElementsAre("Export", "digits | Digits in text | int | 17 | 6 to 17",
                                                "binary | Binary, where the format can be | check | 1",
                                                "precision |  | radio | 2 | \"Single precision\" \"Double precision\"",
                                                "merge | Merge equal points | check | 0"));
}

TEST(DialogFields, OfMove) {
    EXPECT_THAT(linesOf("CBlockMove"),
                ElementsAre("Move", "deltaX | Delta X | real | 0 | any", "deltaY | Delta Y | real | 0 | any",
                            "deltaZ | Delta Z | real | 0 | any"));
}

TEST(DialogFields, OfRotation) {
    EXPECT_THAT(linesOf("CBlockRotate"),
                ElementsAre("Rotation", "x1 | X 1 | real | 0 | any", "y1 | Y 1 | real | 0 | any",
                            "z1 | Z 1 | real | 0 | any", "x2 | X 2 | real | 1 | any", "y2 | Y 2 | real | 0 | any",
                            "z2 | Z 2 | real | 0 | any", "angle | Angle of rotation  | real | 0 | any"));
}

TEST(DialogFields, OfFlipAndSymmetry) {
    for (const auto& [name, title] : {std::pair{"CFlipBlock", "Flip"}, {"CSymmetricBlock", "Symmetry"}}) {
        EXPECT_THAT(linesOf(name),
                    ElementsAre(title, "plane |  | radio | 1 | \"X=const plane\" \"Y=const plane\" \"Z=const plane\"",
                                "xPlane | X plane | real | 0 | any", "yPlane | Y plane | real | 0 | any",
                                "zPlane | Z plane | real | 0 | any"));
    }
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

TEST(DialogFields, OfExtrapolation) {
    EXPECT_THAT(linesOf("CExtrapolation"),
                ElementsAre("Extrapolation",
                            "kind |  | radio | 1 | \"First section\" \"Last section\" \"First line\" \"Last line\"",
                            "coefficient | Coefficient | real | 1 | 0 to 1000000"));
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

TEST(DialogFields, OfViewportOptions) {
    EXPECT_THAT(linesOf("dlgViewing"),
                ElementsAre("Viewport Options", "angleX | Angle X | real | 0 | any",
                            "angleY | Angle Y | real | 0 | any", "angleZ | Angle Z | real | 0 | any",
                            "distanceX | Distance X | real | 0 | any", "distanceY | Distance Y | real | 0 | any",
                            "distanceZ | Distance Z | real | 0 | any", "scale | Scale | real | 1 | 0.01 to 10000000"));
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

TEST(DialogFields, OfMerge) {
    EXPECT_THAT(linesOf("CMerge"),
                ElementsAre("Merge", "kind |  | radio | 1 | \"Sections\" \"Lines\"",
                            "aptControl | APT control | check | 0", "matching | Matching | check | 0",
                            "showDouble | Show double points | check | 0",
                            "deleteDouble | Delete double sections | check | 0"));
}

TEST(DialogFields, OfSmooth) {
    EXPECT_THAT(linesOf("CSmooth"),
                ElementsAre("Smooth",
                            "regime |  | radio | 1 | \"Sections only\" \"Lines only\" \"Sections + Lines\" "
                            "\"Lines + Sections\"",
                            "function |  | radio | 1 | \"Spline\" \"Linear\""));
}

TEST(DialogFields, OfInterpolate) {
    EXPECT_THAT(linesOf("CInterpolate"), ElementsAre("Interpolate", "coefficient | Coefficient | real | 0 | -1 to 1",
                                                     "fitToBuffer | Fit to point in buffer | check | 0"));
}

TEST(DialogFields, OfLineCorrect) {
    EXPECT_THAT(linesOf("CCorrectLine"),
                ElementsAre("Line correct", "linesBefore | Numder of lines before  | int | 1 | 1 to 10000000",
                            "linesAfter | Number of lines after | int | 1 | 1 to 10000000",
                            "power | Power  | real | 0.65 | 0.1 to 10"));
}

TEST(DialogFields, OfConvertToSkl) {
    EXPECT_THAT(linesOf("CConvert_to_SKL"),
                ElementsAre("Convert to SKL", "number | Number | int | 20 | 0 to 100000",
                            "border |  | real | 0.1 | 0 to 10000000", "min | Min | real | 0 | any | read-only",
                            "max | Max | real | 0 | any | read-only", "yourMin | Your Min choice | real | 0 | any",
                            "yourMax | Your Max choice | real | 0 | any",
                            "precision | Precision | real | 1e-04 | 1e-10 to 100",
                            "planeAxis |  | radio | 1 | \"Use x=const planes\" \"Use y=const planes\" \"Use z=const "
                            "planes\"",
                            "borderApproach |  | radio | 1 | \"Automatic\" \"Manual\""));
}

TEST(DialogFields, OfConvertToApt) {
    EXPECT_THAT(linesOf("CConvert_SKL_to_APT"),
                ElementsAre("Convert to APT", "pointCount | Number of points in sections | int | 20 | 2 to 1000000",
                            "approximation |  | radio | 1 | \"Spline approximation\" \"Linear approximation\"",
                            "align | Align lines to their neighbours | check | 0"));
}

TEST(DialogFields, OfUnstructuredKnife) {
    EXPECT_THAT(
        linesOf("CUKnife"),
        ElementsAre("Unstructured knife",
                    "planeKind |  | radio | 1 | \"Use X=const plane\" \"Use Y=const plane\" \"Use Z=const plane\" "
                    "\"Use 3D plane\"",
                    "cutKind |  | radio | 1 | \"Before\" \"After\" \"Save parts\"",
                    "min | Min | real | 0 | any | read-only", "max | Max | real | 0 | any | read-only",
                    "section | Max >Section >Min | real | 0 | any", "nx | Nx | real | 0 | any",
                    "ny | Ny | real | 0 | any", "nz | Nz | real | 0 | any", "xMin | Xmin | real | 0 | any | read-only",
                    "xMax | Xmax | real | 0 | any | read-only", "x | X | real | 0 | any",
                    "yMin | Ymin | real | 0 | any | read-only", "yMax | Ymax | real | 0 | any | read-only",
                    "y | Y | real | 0 | any", "zMin | Zmin | real | 0 | any | read-only",
                    "zMax | Zmax | real | 0 | any | read-only", "z | Z | real | 0 | any"));
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

// ---- Live fields of View features -----------------------------------------------------------------------------------

namespace {

CFeatures allTicked() {
    CFeatures values;
    values.showBlockOnly = values.showFirstPoints = values.showDoublePoints = true;
    values.showBuffer = values.showZBlockMarkers = true;
    values.blockEmpty = false;
    return values;
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

} // namespace

TEST(ViewFeaturesDialog, LeavesAllOnWithAZBlockInAStructuredModel) {
    CFeatures values = allTicked();
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_EQ(liveFields(form).size(), 5U);
    EXPECT_TRUE(values.showBlockOnly && values.showDoublePoints && values.showZBlockMarkers);
}

TEST(ViewFeaturesDialog, ClearsAndDisablesBlockOnlyAndMarkersWithoutAZBlock) {
    CFeatures values = allTicked();
    values.blockEmpty = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("showFirstPoints", "showDoublePoints", "showBuffer"));
    EXPECT_FALSE(values.showBlockOnly);
    EXPECT_FALSE(values.showZBlockMarkers);
    EXPECT_TRUE(values.showFirstPoints && values.showDoublePoints && values.showBuffer);
}

TEST(ViewFeaturesDialog, ClearsAndDisablesDoublePointsInAnUnstructuredModel) {
    CFeatures values = allTicked();
    values.unstructured = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("showBlockOnly", "showFirstPoints", "showBuffer", "showZBlockMarkers"));
    EXPECT_FALSE(values.showDoublePoints);
}

TEST(PlaneDialogs, HaveTheFieldOfTheChosenPlaneAloneOn) {
    CFlipBlock flip;
    DialogForm form = describe(flip);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("plane", "xPlane"));
    EXPECT_FALSE(setField(form, "plane", "3").has_value());
    EXPECT_THAT(liveFields(form), ElementsAre("plane", "zPlane"));
    CSymmetricBlock symmetric;
    symmetric.plane = 2;
    DialogForm other = describe(symmetric);
    openDialog(other);
    EXPECT_THAT(liveFields(other), ElementsAre("plane", "yPlane"));
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

TEST(RangesOfDialogs, CoefficientOfExtrapolationIsNotNegative) {
    CExtrapolation values;
    DialogForm form = describe(values);
    EXPECT_TRUE(setField(form, "coefficient", "-0.1").has_value());
    EXPECT_TRUE(setField(form, "coefficient", "1000001").has_value());
    EXPECT_FALSE(setField(form, "coefficient", "0").has_value());
}

TEST(RangesOfDialogs, ScaleOfViewportOptionsRefusesWhatIsOutOfIt) {
    dlgViewing values;
    DialogForm form = describe(values);
    EXPECT_TRUE(setField(form, "scale", "0.009").has_value());
    EXPECT_TRUE(setField(form, "scale", "10000001").has_value());
    EXPECT_FALSE(setField(form, "scale", "0.01").has_value());
    EXPECT_FALSE(setField(form, "scale", "1e7").has_value());
    EXPECT_FALSE(setField(form, "angleX", "-7200").has_value());
}

} // namespace velmora::test
