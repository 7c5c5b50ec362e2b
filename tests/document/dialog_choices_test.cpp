#include <cmath>
#include <ostream>
#include <set>
#include <sstream>

#include "DialogValues.h"
#include "command_rig.h"
#include "corner_box.h"
#include "exchange_files.h"
#include "looks.h"

namespace velmora::test {

namespace {

using Vector = zVec<double>;

/// Where the triangles begin and end along one axis.
Look extent(Coordinate axis) {
    return [=](DocumentState& doc) {
        const CornerBox box = cornerBox(doc.feRegion);
        return text({box.lower.*axis, box.upper.*axis});
    };
}

/// Whether the points of a section lie on the chords of the zigzag that it was.
Look onChords(std::size_t section) {
    return [=](DocumentState& doc) {
        for (const Vector& p : doc.patches.at(0).at(section)) {
            const double foot = std::fmod(p.x, 2.0);
            if (std::abs(p.z - (foot < 1 ? foot : 2 - foot)) > 1e-9) {
                return "off the chords";
            }
        }
        return "on the chords";
    };
}

Look flag(bool DocumentState::*which) {
    return [=](DocumentState& doc) { return std::string(doc.*which ? "on" : "off"); };
}

/// Two square slices; the upper one has a point in the middle of each side, and begins at the opposite corner.
Patch slices() {
    return {
        {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}},
        {{1, 1, 1}, {0.5, 1, 1}, {0, 1, 1}, {0, 0.5, 1}, {0, 0, 1}, {0.5, 0, 1}, {1, 0, 1}, {1, 0.5, 1}, {1, 1, 1}}};
}

Patch zigzag() {
    Patch patch = flatPatch(3, 5);
    for (PointList& points : patch) {
        points[1].z = points[3].z = 1;
    }
    return patch;
}

/// Steps of 1 along x, but the last step of the section in the middle is 5.
Patch uneven() {
    Patch patch = flatPatch(3, 5);
    patch[1][4].x = 8;
    return patch;
}

/// A second plate whose first section lies on the last of `first`; its points have steps of 2.
Patch behind() {
    Patch patch = flatPatch(2, 5);
    for (PointList& points : patch) {
        for (Vector& p : points) {
            p = {2 * p.x, p.y + 2, 0};
        }
    }
    return patch;
}

Patch closedSection() {
    return {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {0, 0, 0}},
            {{9, 1, 0}, {8, 1, 0}, {7, 1, 0}, {6, 1, 0}, {5, 1, 0}}};
}

Patch dented() {
    Patch patch = flatPatch(4, 4);
    patch[1][1] = {1.5, 1.2, 0.6};
    return patch;
}

/// One choice of a dialog in a command, and what comes of it.
struct Choice {
    std::string dialog;
    std::string field;
    int value = 0;
    std::string command;
    PatchList model = {};
    Steps before = {};
    Fields first = {};  ///< of the same dialog, set before the choice
    Fields fields = {}; ///< and after it
    std::vector<std::string> files = {};
    Look look;
    std::string expected;
    std::string when = {};
};

void PrintTo(const Choice& choice, std::ostream* out) {
    *out << choice.dialog << '.' << choice.field << '=' << choice.value << ' ' << choice.when;
}

const Steps onPoint3 = section(1, 2) + point(1, 2, 3);
const Fields nine = {{"newCount", "9"}};
const Steps openField = {{.id = "file.openField", .files = {"flow.dat"}}};

/// A polyline of eight steps of 1 in each section.
const PatchList longPlate = {flatPatch(2, 9)};

/// The last of the five steps up to the point at x = 4: behind it the steps are 1.
std::string stepBeforePoint(DocumentState& doc) {
    const PointList& points = doc.patches.at(0).at(0);
    return std::abs(points.at(5).x - points.at(4).x - 1) < 0.01 ? "runs on" : "jumps";
}

std::string partsOnDisk(DocumentState& doc) {
    const std::filesystem::path folder = doc.modelFile.chosenPath.parent_path();
    const bool both = std::filesystem::exists(folder / "wing_1.dat") && std::filesystem::exists(folder / "wing_2.dat");
    return (both ? "both, the model is " : "none, the model is ") + extent(&Vector::x)(doc);
}

std::string nodeTotal(DocumentState& doc) {
    std::int64_t nodes = 0;
    for (const auto& zone : doc.feRegion.blocks) {
        nodes += zone->nodeCount;
    }
    return std::to_string(nodes);
}

std::string triangleTotal(DocumentState& doc) {
    std::int64_t triangles = 0;
    for (const auto& zone : doc.feRegion.blocks) {
        triangles += zone->elementCount;
    }
    return std::to_string(triangles);
}

std::string patchesAndTriangles(DocumentState& doc) {
    return std::to_string(doc.patches.size()) + " patches, " + triangleTotal(doc) + " triangles";
}

/// A line, from 1, of the file "out.ply" beside the model.
Look lineOfPly(int number) {
    return [=](DocumentState& doc) {
        std::istringstream file(fileText(doc.modelFile.chosenPath.parent_path() / "out.ply"));
        std::string line;
        for (int i = 0; i < number; ++i) {
            std::getline(file, line);
        }
        return line;
    };
}

/// Three sides of a prism: each section ends where it begins.
const Patch prism = {{{0, 0, 0}, {1, 0, 0}, {0.5, 1, 0}, {0, 0, 0}}, {{0, 0, 1}, {1, 0, 1}, {0.5, 1, 1}, {0, 0, 1}}};

const std::vector<Choice> choices = {
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

    {.dialog = "CMerge",
     .field = "kind",
     .value = 1,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look = pointCounts,
     .expected = "3 3 3 3 3"},
    {.dialog = "CMerge",
     .field = "kind",
     .value = 2,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look = pointCounts,
     .expected = "5 5 5"},
    // It is shown and stored, and has no part in the merge.
    {.dialog = "CMerge",
     .field = "aptControl",
     .value = 0,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look =
         [](DocumentState& doc) {
             return pointCounts(doc) + (doc.dialogs->merge.aptControl ? " ticked" : " not ticked");
         },
     .expected = "3 3 3 3 3 not ticked"},
    {.dialog = "CMerge",
     .field = "aptControl",
     .value = 1,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look =
         [](DocumentState& doc) {
             return pointCounts(doc) + (doc.dialogs->merge.aptControl ? " ticked" : " not ticked");
         },
     .expected = "3 3 3 3 3 ticked"},
    {.dialog = "CMerge",
     .field = "matching",
     .value = 0,
     .command = "block.merge",
     .model = {{uneven()[0], uneven()[1]}, behind()},
     .before = addPatch(1) + addPatch(2),
     .look = along(0, 2),
     .expected = "0 2 4 6 8"},
    {.dialog = "CMerge",
     .field = "matching",
     .value = 1,
     .command = "block.merge",
     .model = {{uneven()[0], uneven()[1]}, behind()},
     .before = addPatch(1) + addPatch(2),
     .look = along(0, 2),
     .expected = "0 1 2 3 8"},
    {.dialog = "CMerge",
     .field = "showDouble",
     .value = 0,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = Steps{{.id = "view.features", .fields = {{"showDoublePoints", "1"}}}} + addPatch(1) + addPatch(2),
     .look = flag(&DocumentState::showDoublePoints),
     .expected = "off"},
    {.dialog = "CMerge",
     .field = "showDouble",
     .value = 1,
     .command = "block.merge",
     .model = {flatPatch(3, 3), flatPatch(3, 3)},
     .before = addPatch(1) + addPatch(2),
     .look = flag(&DocumentState::showDoublePoints),
     .expected = "on"},
    {.dialog = "CMerge",
     .field = "deleteDouble",
     .value = 0,
     .command = "block.merge",
     .before = openField + addPatch(1) + addPatch(2),
     .fields = {{"kind", "2"}},
     .look = [](DocumentState& doc) { return pointCounts(doc) + " with " + fieldCounts(doc); },
     .expected = "3 3 with 3 3"},
    {.dialog = "CMerge",
     .field = "deleteDouble",
     .value = 1,
     .command = "block.merge",
     .before = openField + addPatch(1) + addPatch(2),
     .fields = {{"kind", "2"}},
     .look = [](DocumentState& doc) { return pointCounts(doc) + " with " + fieldCounts(doc); },
     .expected = "3 3 with 3 3"},

    // The borders have equal steps, so each curve inside gets equal steps along its chords.
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 1,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.0548 1.1406 0.4219"},
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 2,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.4132 0.9917 0.4959"},
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 3,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.0476 0.992 0.3669"},
    {.dialog = "CSmooth",
     .field = "regime",
     .value = 4,
     .command = "model.smooth",
     .model = {dented()},
     .fields = {{"function", "2"}},
     .look = pointOf(0, 1, 1),
     .expected = "1.0272 0.994 0.3604"},
    {.dialog = "CSmooth",
     .field = "function",
     .value = 1,
     .command = "model.smooth",
     .model = {{uneven()[1], zigzag()[1], uneven()[1]}},
     .look = onChords(1),
     .expected = "off the chords"},
    {.dialog = "CSmooth",
     .field = "function",
     .value = 2,
     .command = "model.smooth",
     .model = {{uneven()[1], zigzag()[1], uneven()[1]}},
     .look = onChords(1),
     .expected = "on the chords"},

    {.dialog = "CInterpolate",
     .field = "fitToBuffer",
     .value = 0,
     .command = "line.interpolate",
     .model = {flatPatch(3, 3), {{{1, 1.5, 0}, {2, 2, 2}}, {{3, 3, 3}, {4, 4, 4}}}},
     .before = point(2, 1, 1) + Steps{{.id = "point.copy"}} + section(1, 2),
     .fields = {{"coefficient", "0.25"}},
     .look = along(0, 1, &Vector::y),
     .expected = "1.25 1.25 1.25"},
    {.dialog = "CInterpolate",
     .field = "fitToBuffer",
     .value = 1,
     .command = "line.interpolate",
     .model = {flatPatch(3, 3), {{{1, 1.5, 0}, {2, 2, 2}}, {{3, 3, 3}, {4, 4, 4}}}},
     .before = point(2, 1, 1) + Steps{{.id = "point.copy"}} + section(1, 2),
     .look = along(0, 1, &Vector::y),
     .expected = "1.5 1.5 1.5"},

    {.dialog = "CFirstPoint",
     .field = "kind",
     .value = 1,
     .command = "line.firstPoint",
     .model = {flatPatch(2, 5)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "4 3 2 1 0"},
    {.dialog = "CFirstPoint",
     .field = "kind",
     .value = 2,
     .command = "line.firstPoint",
     .model = {closedSection()},
     .before = section(1, 1) + point(1, 1, 3),
     .look = along(0, 0),
     .expected = "2 3 0 1 2"},
    {.dialog = "CFirstPoint",
     .field = "sortKind",
     .value = 1,
     .command = "line.firstPoint",
     .model = {closedSection()},
     .before = section(1, 1) + point(1, 1, 2),
     .look = along(0, 0),
     .expected = "1 2 3 0 1"},
    {.dialog = "CFirstPoint",
     .field = "sortKind",
     .value = 2,
     .command = "line.firstPoint",
     .model = {closedSection()},
     .before = section(1, 1) + point(1, 1, 2),
     .look = along(0, 0),
     .expected = "1 0 3 2 1"},
    {.dialog = "CFirstPoint",
     .field = "makeLoop",
     .value = 0,
     .command = "line.firstPoint",
     .model = {flatPatch(2, 5)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "4 3 2 1 0"},
    {.dialog = "CFirstPoint",
     .field = "makeLoop",
     .value = 1,
     .command = "line.firstPoint",
     .model = {flatPatch(2, 5)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "0 3 2 1 0"},

    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 1,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = across(0),
     .expected = "-2 0 1 2"},
    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 2,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = across(0),
     .expected = "0 1 2 4"},
    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 3,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = along(0, 1),
     .expected = "-2 0 1 2 3"},
    {.dialog = "CExtrapolation",
     .field = "kind",
     .value = 4,
     .command = "block.extrapolate",
     .model = {flatPatch(3, 4)},
     .before = addPatch(1),
     .fields = {{"coefficient", "2"}},
     .look = along(0, 1),
     .expected = "0 1 2 3 5"},

    {.dialog = "CPrescribe",
     .field = "useX",
     .value = 1,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"x", "7"}},
     .look = pointOf(0, 1, 2),
     .expected = "7 1 0"},
    {.dialog = "CPrescribe",
     .field = "useY",
     .value = 1,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"y", "7"}},
     .look = pointOf(0, 1, 2),
     .expected = "2 7 0"},
    {.dialog = "CPrescribe",
     .field = "useZ",
     .value = 1,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = line(1, 2),
     .fields = {{"z", "7"}},
     .look = pointOf(0, 0, 1),
     .expected = "1 0 7"},
    {.dialog = "CPrescribe",
     .field = "useX",
     .value = 0,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"useY", "1"}, {"y", "7"}, {"useZ", "1"}, {"z", "8"}},
     .look = pointOf(0, 1, 2),
     .expected = "2 7 8"},
    {.dialog = "CPrescribe",
     .field = "useY",
     .value = 0,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"useX", "1"}, {"x", "7"}, {"useZ", "1"}, {"z", "8"}},
     .look = pointOf(0, 1, 2),
     .expected = "7 1 8"},
    {.dialog = "CPrescribe",
     .field = "useZ",
     .value = 0,
     .command = "line.prescribe",
     .model = {flatPatch(2, 3)},
     .before = section(1, 2),
     .fields = {{"useX", "1"}, {"x", "7"}, {"useY", "1"}, {"y", "8"}},
     .look = pointOf(0, 1, 2),
     .expected = "7 8 0"},

    {.dialog = "CFlipBlock",
     .field = "plane",
     .value = 1,
     .command = "line.flip",
     .model = {flatPatch(2, 3, 3)},
     .before = section(1, 2),
     .fields = {{"xPlane", "10"}},
     .look = pointOf(0, 1, 2),
     .expected = "18 1 3"},
    {.dialog = "CFlipBlock",
     .field = "plane",
     .value = 2,
     .command = "line.flip",
     .model = {flatPatch(2, 3, 3)},
     .before = section(1, 2),
     .fields = {{"yPlane", "10"}},
     .look = pointOf(0, 1, 2),
     .expected = "2 19 3"},
    {.dialog = "CFlipBlock",
     .field = "plane",
     .value = 3,
     .command = "model.flip",
     .model = {flatPatch(2, 3, 3)},
     .fields = {{"zPlane", "10"}},
     .look = pointOf(0, 1, 0), // its points stand in reverse order
     .expected = "2 1 17"},
    {.dialog = "CSymmetricBlock",
     .field = "plane",
     .value = 1,
     .command = "model.symmetric",
     .model = {flatPatch(2, 3, 3)},
     .fields = {{"xPlane", "10"}},
     .look = pointOf(1, 1, 2),
     .expected = "18 1 3"},
    {.dialog = "CSymmetricBlock",
     .field = "plane",
     .value = 2,
     .command = "model.symmetric",
     .model = {flatPatch(2, 3, 3)},
     .fields = {{"yPlane", "10"}},
     .look = pointOf(1, 1, 2),
     .expected = "2 19 3"},
    {.dialog = "CSymmetricBlock",
     .field = "plane",
     .value = 3,
     .command = "line.symmetric",
     .model = {flatPatch(2, 3, 3)},
     .before = section(1, 2),
     .fields = {{"zPlane", "10"}},
     .look = along(0, 1, &Vector::z),
     .expected = "3 3 3 17 17 17"},

    {.dialog = "CLast_First_switch",
     .field = "kind",
     .value = 1,
     .command = "model.lastFirstSwitch",
     .model = {flatPatch(3, 4)},
     .look = [](DocumentState& doc) { return across(0)(doc) + ", " + along(0, 0)(doc); },
     .expected = "2 1 0, 0 1 2 3"},
    {.dialog = "CLast_First_switch",
     .field = "kind",
     .value = 2,
     .command = "model.lastFirstSwitch",
     .model = {flatPatch(3, 4)},
     .look = [](DocumentState& doc) { return across(0)(doc) + ", " + along(0, 0)(doc); },
     .expected = "0 1 2, 3 2 1 0"},

    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "line.knife",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "3 4 5 6"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "line.knife",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1),
     .look = along(0, 0),
     .expected = "0 1 2 3"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "model.knife",
     .model = {flatPatch(2, 7)},
     .look = along(0, 1),
     .expected = "3 4 5 6",
     .when = "of the model"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "model.knife",
     .model = {flatPatch(2, 7)},
     .look = along(0, 1),
     .expected = "0 1 2 3",
     .when = "of the model"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "point.knifePart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = along(0, 0),
     .expected = "2 3 4 5 6",
     .when = "at a point"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "point.knifePart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = along(0, 0),
     .expected = "0 1 2",
     .when = "at a point"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "point.copyPart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = [](DocumentState& doc) { return text(coordinates(doc.lineBuffer)); },
     .expected = "0 1 2",
     .when = "as what is copied"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "point.copyPart",
     .model = {flatPatch(2, 7)},
     .before = section(1, 1) + point(1, 1, 3),
     .look = [](DocumentState& doc) { return text(coordinates(doc.lineBuffer)); },
     .expected = "2 3 4 5 6",
     .when = "as what is copied"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 1,
     .command = "point.pastePart",
     .model = {flatPatch(2, 4)},
     .before = section(1, 1) + Steps{{.id = "line.copy"}} + section(1, 2) + point(1, 2, 3),
     .look = along(0, 1),
     .expected = "0 1 2 3 2 3",
     .when = "as what is replaced"},
    {.dialog = "CBeforeAfter",
     .field = "choice",
     .value = 2,
     .command = "point.pastePart",
     .model = {flatPatch(2, 4)},
     .before = section(1, 1) + Steps{{.id = "line.copy"}} + section(1, 2) + point(1, 2, 3),
     .look = along(0, 1),
     .expected = "0 1 2 0 1 2 3",
     .when = "as what is replaced"},

    // A tilted plate: x from 0 to 4, y from 0 to 6, z from 0 to 8. The plane in the middle halves it.
    {.dialog = "CConvert_to_SKL",
     .field = "planeAxis",
     .value = 1,
     .command = "convert.toSkl",
     .fields = {{"number", "3"}},
     .look =
         [](DocumentState& doc) {
             return text({doc.patches.at(0).at(1).front().x, doc.patches.at(0).at(1).back().x});
         },
     .expected = "2 2"},
    {.dialog = "CConvert_to_SKL",
     .field = "planeAxis",
     .value = 2,
     .command = "convert.toSkl",
     .fields = {{"number", "3"}},
     .look =
         [](DocumentState& doc) {
             return text({doc.patches.at(0).at(1).front().y, doc.patches.at(0).at(1).back().y});
         },
     .expected = "3 3"},
    {.dialog = "CConvert_to_SKL",
     .field = "planeAxis",
     .value = 3,
     .command = "convert.toSkl",
     .fields = {{"number", "3"}, {"borderApproach", "2"}, {"yourMin", "1"}, {"yourMax", "6"}},
     .look = across(0, &Vector::z),
     .expected = "1 3.5 6"},
    {.dialog = "CConvert_to_SKL",
     .field = "borderApproach",
     .value = 1,
     .command = "convert.toSkl",
     .fields = {{"planeAxis", "1"}, {"number", "3"}, {"border", "0.1"}},
     .look = across(0, &Vector::x),
     .expected = "0.2 2 3.8"},
    {.dialog = "CConvert_to_SKL",
     .field = "borderApproach",
     .value = 2,
     .command = "convert.toSkl",
     .fields = {{"planeAxis", "1"}, {"number", "3"}, {"yourMin", "1"}, {"yourMax", "3"}},
     .look = across(0, &Vector::x),
     .expected = "1 2 3"},

    {.dialog = "CConvert_SKL_to_APT",
     .field = "approximation",
     .value = 1,
     .command = "convert.toApt",
     .model = {{zigzag()[0], flatPatch(1, 3)[0]}},
     .fields = {{"pointCount", "9"}},
     .look = onChords(0),
     .expected = "off the chords"},
    {.dialog = "CConvert_SKL_to_APT",
     .field = "approximation",
     .value = 2,
     .command = "convert.toApt",
     .model = {{zigzag()[0], flatPatch(1, 3)[0]}},
     .fields = {{"pointCount", "9"}},
     .look = onChords(0),
     .expected = "on the chords"},

    {.dialog = "CConvert_SKL_to_APT",
     .field = "align",
     .value = 0,
     .command = "convert.toApt",
     .model = {slices()},
     .fields = {{"approximation", "2"}, {"pointCount", "5"}},
     .look = pointOf(0, 1, 0),
     .expected = "1 1 1"},
    {.dialog = "CConvert_SKL_to_APT",
     .field = "align",
     .value = 1,
     .command = "convert.toApt",
     .model = {slices()},
     .fields = {{"approximation", "2"}, {"pointCount", "5"}},
     .look = pointOf(0, 1, 0),
     .expected = "0 0 1"},

    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 1,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = extent(&Vector::x),
     .expected = "0 1"},
    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 2,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = extent(&Vector::y),
     .expected = "0 1"},
    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 3,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = extent(&Vector::z),
     .expected = "0 1"},
    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 4,
     .command = "convert.knife",
     .fields = {{"x", "3"}, {"y", "3"}, {"z", "4"}, {"nx", "2"}, {"ny", "0"}, {"nz", "0"}},
     .look = extent(&Vector::x),
     .expected = "0 3"},
    {.dialog = "CUKnife",
     .field = "cutKind",
     .value = 1,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = partsOnDisk,
     .expected = "none, the model is 0 1"},
    {.dialog = "CUKnife",
     .field = "cutKind",
     .value = 2,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = partsOnDisk,
     .expected = "none, the model is 1 4"},
    {.dialog = "CUKnife",
     .field = "cutKind",
     .value = 3,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = partsOnDisk,
     .expected = "both, the model is 0 4"},

    {.dialog = "CImport",
     .field = "merge",
     .value = 0,
     .command = "file.import",
     .files = {"soup.obj"},
     .look = nodeTotal,
     .expected = "6"},
    {.dialog = "CImport",
     .field = "merge",
     .value = 1,
     .command = "file.import",
     .files = {"soup.obj"},
     .look = nodeTotal,
     .expected = "4"},
    {.dialog = "CImport",
     .field = "volumes",
     .value = 1,
     .command = "file.import",
     .files = {"brick.dat"},
     .look = triangleTotal,
     .expected = "1"},
    {.dialog = "CImport",
     .field = "volumes",
     .value = 2,
     .command = "file.import",
     .files = {"brick.dat"},
     .look = triangleTotal,
     .expected = "13"},
    {.dialog = "CImport",
     .field = "cad",
     .value = 1,
     .command = "file.import",
     .files = {"box.step"},
     .look = patchesAndTriangles,
     .expected = "0 patches, 12 triangles"},
    {.dialog = "CImport",
     .field = "cad",
     .value = 2,
     .command = "file.import",
     .files = {"box.step"},
     .look = patchesAndTriangles,
     .expected = "6 patches, 0 triangles"},
    {.dialog = "CExport",
     .field = "binary",
     .value = 0,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(2),
     .expected = "format ascii 1.0"},
    {.dialog = "CExport",
     .field = "binary",
     .value = 1,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(2),
     .expected = "format binary_little_endian 1.0"},
    {.dialog = "CExport",
     .field = "precision",
     .value = 1,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(4),
     .expected = "property float x"},
    {.dialog = "CExport",
     .field = "precision",
     .value = 2,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(4),
     .expected = "property double x"},
    {.dialog = "CExport",
     .field = "merge",
     .value = 0,
     .command = "file.export",
     .model = {prism},
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 8"},
    {.dialog = "CExport",
     .field = "merge",
     .value = 1,
     .command = "file.export",
     .model = {prism},
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 6"},
};

/// Told in tests of their own: IntersectionOfOneCell, with the whole grid compared, CompareCommand, and ViewCommands
/// with ValuesToShow and ColouredView.
const std::set<std::string> toldElsewhere = {
    "CIntersection.insideSide=1",  "CIntersection.insideSide=2", "CIntersection.outsideSide=1",
    "CIntersection.outsideSide=2", "CCompare.target=1",          "CCompare.target=2",
    "CCompare.target=3",           "CColours.quantity=1",        "CColours.quantity=2",
    "CColours.quantity=3",         "CColours.quantity=4",        "CColours.quantity=5",
    "CColours.automatic=0",        "CColours.automatic=1"};

std::string keyOf(const std::string& dialog, const std::string& field, int value) {
    return dialog + '.' + field + '=' + std::to_string(value);
}

class DialogChoice : public CommandRig, public testing::WithParamInterface<Choice> {
protected:
    DialogChoice() {
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

    void holdTiltedPlate() {
        holdZones({});
        doc.feRegion.blocks.push_back(
            triangleZone("plate", {{0, 0, 0}, {4, 0, 0}, {4, 6, 8}, {0, 6, 8}}, {0, 1, 2, 0, 2, 3}));
        updateBounds();
    }
};

std::string nameOf(const testing::TestParamInfo<Choice>& info) {
    std::string name = info.param.dialog + '_' + info.param.field + '_' + std::to_string(info.param.value) +
                       (info.param.when.empty() ? "" : "_" + info.param.when);
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

} // namespace

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

INSTANTIATE_TEST_SUITE_P(Of, DialogChoice, testing::ValuesIn(choices), nameOf);

class FeatureSwitch : public CommandRig {};

TEST_F(FeatureSwitch, EachBoxIsItsOwnSwitch) {
    const std::pair<const char*, bool DocumentState::*> switches[] = {
        {"showBlockOnly", &DocumentState::showBlockOnly},
        {"showFirstPoints", &DocumentState::showFirstPoints},
        {"showDoublePoints", &DocumentState::showDoublePoints},
        {"showBuffer", &DocumentState::showBuffer},
        {"showZBlockMarkers", &DocumentState::showZBlockMarkers}};
    hold({flatPatch(2, 2), flatPatch(2, 2, 1)});
    runAll(addPatch(1));
    for (const auto& [key, chosen] : switches) {
        for (const bool on : {true, false}) {
            run({.id = "view.features", .fields = {{key, on ? "1" : "0"}}});
            for (const auto& [other, flag] : switches) {
                EXPECT_EQ(doc.*flag, on && flag == chosen) << key << ' ' << other;
            }
        }
    }
}

TEST_F(FeatureSwitch, AndEveryOtherChoiceOfADialogHasATest) {
    std::set<std::string> told = toldElsewhere;
    for (const Choice& choice : choices) {
        told.insert(keyOf(choice.dialog, choice.field, choice.value));
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

} // namespace velmora::test
