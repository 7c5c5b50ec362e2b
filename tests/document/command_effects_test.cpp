#include <algorithm>
#include <ostream>
#include <set>

#include "command_rig.h"
#include "document_fixture.h"
#include "file_texts.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

enum class Holding { None, Grid, Lines, Triangles, Field, NamedGrid };
/// What is seen to differ afterwards.
enum class Change { Nothing, Selection, Model };
/// Who is told: the picture anew, the picture with a new box, or the mouse alone.
enum class Told { Nobody, Mouse, Redraw, Bounds };
enum class Undo { AsBefore, Patch, Point, Both, Used };
/// What a command that was called off leaves: all as it was, but for the piercing points, which stay in sight.
enum class CalledOff { Untouched, JointShown };

/// One command at work, and what must be seen of it afterwards.
struct Effect {
    std::string id;
    std::string when = {}; ///< tells two entries of one command apart
    Holding holding = Holding::Grid;
    Steps before = {};
    Fields fields = {};
    std::vector<std::string> files = {};
    Change change = Change::Model;
    Told told = Told::Redraw;
    std::string mouse = {}; ///< a call that the mouse must hear
    Undo undo = Undo::AsBefore;
    std::optional<bool> modified = std::nullopt; ///< absent: as the snapshot says
    std::string title = {};                      ///< absent: as before
    std::string status = {};                     ///< absent: not looked at
    bool asks = false;
    CalledOff calledOff = CalledOff::Untouched;
    bool startsModified = false;
};

void PrintTo(const Effect& effect, std::ostream* out) {
    *out << effect.id << ' ' << effect.when;
}

const char* const idle = "For Help, press F1";
const char* const drag = "Press left button of mouse and drag it";
const char* const findPatch = "Find patch and click it";

const Steps showBuffer = {{.id = "view.features", .fields = {{"showBuffer", "1"}}}};
const Steps copyLine = {{.id = "line.copy"}};
const Steps moved = {{.id = "model.move", .fields = {{"deltaX", "1"}}}};

const std::vector<Effect> effects = {
    // File
    {.id = "file.new",
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .title = "Untitled.apt",
     .status = idle,
     .asks = true},
    {.id = "file.new",
     .when = "on nothing",
     .holding = Holding::None,
     .told = Told::Bounds,
     .modified = true,
     .title = "Untitled.apt",
     .asks = true},
    {.id = "file.open",
     .files = {"other.apt"},
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .modified = false,
     .title = "other.apt",
     .asks = true},
    {.id = "file.open",
     .when = "on nothing",
     .holding = Holding::None,
     .files = {"other.apt"},
     .told = Told::Bounds,
     .title = "other.apt",
     .asks = true},
    {.id = "file.append", .files = {"other.apt"}, .undo = Undo::Patch, .asks = true},
    {.id = "file.append",
     .when = "to triangles",
     .holding = Holding::Triangles,
     .files = {"square.wrl"},
     .undo = Undo::Patch,
     .asks = true},
    {.id = "file.import",
     .files = {"grid.dat"},
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .modified = true,
     .title = "Untitled.apt",
     .asks = true},
    {.id = "file.export", .files = {"new.obj"}, .change = Change::Nothing, .told = Told::Nobody, .asks = true},
    {.id = "file.appendWrl", .files = {"square.wrl"}, .change = Change::Selection, .undo = Undo::Patch, .asks = true},
    {.id = "file.closeWrl", .before = {{.id = "file.appendWrl", .files = {"square.wrl"}}}, .change = Change::Selection},
    {.id = "file.appendDat", .files = {"grid.dat"}, .change = Change::Nothing, .told = Told::Nobody, .asks = true},
    {.id = "file.appendSft", .files = {"up.sft"}, .change = Change::Selection, .asks = true},
    {.id = "file.closeSft", .before = {{.id = "file.appendSft", .files = {"up.sft"}}}, .change = Change::Selection},
    {.id = "file.appendCbc",
     .holding = Holding::NamedGrid,
     .files = {"some.cbc"},
     .change = Change::Nothing,
     .asks = true},
    {.id = "file.openApm", .files = {"some.apm"}, .change = Change::Selection, .asks = true},
    {.id = "file.closeApm", .before = {{.id = "file.openApm", .files = {"some.apm"}}}, .change = Change::Selection},
    {.id = "file.openField",
     .files = {"flow.dat"},
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .modified = false,
     .title = "flow.dat",
     .asks = true},
    {.id = "file.saveAsField",
     .holding = Holding::Field,
     .files = {"new.dat"},
     .change = Change::Nothing,
     .told = Told::Nobody,
     .title = "new.dat",
     .asks = true},
    {.id = "file.closeField", .holding = Holding::Field, .title = "Untitled", .status = idle},
    {.id = "file.save", .change = Change::Nothing, .told = Told::Nobody, .modified = false, .startsModified = true},
    {.id = "file.saveAs",
     .files = {"new.apt"},
     .change = Change::Nothing,
     .told = Told::Nobody,
     .modified = false,
     .title = "new.apt",
     .asks = true,
     .startsModified = true},
    {.id = "file.saveAs",
     .when = "as a surface",
     .files = {"new.stl"},
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .modified = false,
     .title = "new.stl",
     .asks = true,
     .startsModified = true},

    // Patches and the zBlock
    {.id = "patch.capture",
     .change = Change::Nothing,
     .told = Told::Mouse,
     .mouse = "force patch",
     .status = findPatch},
    {.id = "patch.inputAndAdd",
     .fields = {{"number", "2"}},
     .change = Change::Selection,
     .mouse = "force patch",
     .status = "Captured patch: Patch K=2 // Press right button to continue ",
     .asks = true},
    {.id = "patch.addToBlock",
     .before = addPatch(1),
     .change = Change::Nothing,
     .told = Told::Mouse,
     .mouse = "force patch"},
    {.id = "patch.removeFromBlock",
     .before = addPatch(1),
     .change = Change::Nothing,
     .told = Told::Mouse,
     .mouse = "force patch",
     .status = findPatch},
    {.id = "patch.undo",
     .when = "of another extent",
     .before = moved,
     .told = Told::Bounds,
     .undo = Undo::Used,
     .modified = true,
     .status = idle},
    {.id = "patch.undo",
     .when = "of the same extent",
     .before = section(1, 2) + Steps{{.id = "line.delete"}},
     .undo = Undo::Used,
     .modified = true,
     .status = idle},
    {.id = "patch.exit", .before = addPatch(1), .change = Change::Selection, .mouse = "reset", .status = idle},
    {.id = "block.new", .before = addPatch(1), .change = Change::Selection, .mouse = "force patch"},
    {.id = "block.all",
     .before = section(1, 2),
     .change = Change::Selection,
     .mouse = "force patch",
     .status = "Captured patch: Patch K=4 // Press right button to continue "},
    {.id = "block.invert", .before = addPatch(1), .change = Change::Selection},
    {.id = "block.only", .before = addPatch(1), .change = Change::Selection},
    {.id = "block.extract", .before = addPatch(1), .mouse = "reset", .undo = Undo::Patch, .status = idle},
    {.id = "block.extract",
     .when = "of zones",
     .holding = Holding::Triangles,
     .before = addPatch(1),
     .mouse = "reset",
     .undo = Undo::Patch,
     .status = idle},
    {.id = "block.delete", .before = addPatch(1), .mouse = "reset", .undo = Undo::Patch, .status = idle},
    {.id = "block.delete",
     .when = "of zones",
     .holding = Holding::Triangles,
     .before = addPatch(1),
     .mouse = "reset",
     .undo = Undo::Patch,
     .status = idle},
    {.id = "block.delete",
     .when = "of all",
     .before = {{.id = "block.invert"}},
     .mouse = "reset",
     .undo = Undo::Patch,
     .status = idle},
    {.id = "block.saveAs",
     .before = addPatch(1),
     .files = {"part.apt"},
     .change = Change::Nothing,
     .told = Told::Nobody,
     .asks = true},
    {.id = "block.copy", .before = addPatch(1), .change = Change::Nothing, .told = Told::Nobody},
    {.id = "block.paste", .before = addPatch(1) + Steps{{.id = "block.copy"}}, .undo = Undo::Patch},
    {.id = "block.extrapolate", .before = addPatch(1), .undo = Undo::Patch, .asks = true},
    {.id = "block.matchBorder", .before = addPatch(1) + addPatch(2), .undo = Undo::Patch},
    {.id = "block.matchBorderAndGrid", .before = addPatch(1) + addPatch(2), .undo = Undo::Patch},
    {.id = "block.merge",
     .before = addPatch(1) + addPatch(2),
     .mouse = "reset",
     .undo = Undo::Patch,
     .status = idle,
     .asks = true},
    {.id = "block.merge",
     .when = "of zones",
     .holding = Holding::Triangles,
     .before = addPatch(1) + addPatch(2),
     .mouse = "reset",
     .undo = Undo::Patch,
     .status = idle},
    {.id = "block.merge",
     .when = "that is refused",
     .before = addPatch(1) + addPatch(4),
     .fields = {{"showDouble", "1"}},
     .change = Change::Selection,
     .asks = true},

    // Sections and lines
    {.id = "line.captureSection",
     .change = Change::Nothing,
     .told = Told::Mouse,
     .mouse = "force section",
     .status = drag},
    {.id = "line.captureSection",
     .when = "out of Add",
     .before = addPatch(1) + Steps{{.id = "patch.addToBlock"}},
     .change = Change::Nothing,
     .told = Told::Mouse,
     .mouse = "force section",
     .status = drag,
     .asks = true},
    {.id = "line.captureLine", .change = Change::Nothing, .told = Told::Mouse, .mouse = "force line", .status = drag},
    {.id = "line.inputSection",
     .fields = {{"patch", "2"}, {"section", "3"}},
     .change = Change::Selection,
     .mouse = "force section",
     .status = "Captured section: Patch K=2, Section N=3, Points M=6  // Press right button to continue ",
     .asks = true},
    {.id = "line.inputLine",
     .fields = {{"patch", "2"}, {"line", "3"}},
     .change = Change::Selection,
     .mouse = "force line",
     .status = "Captured line: Patch K=2, Line N=3  // Press right button to continue ",
     .asks = true},
    {.id = "line.next",
     .before = section(1, 2),
     .change = Change::Selection,
     .told = Told::Mouse,
     .mouse = "force section",
     .status = drag},
    {.id = "line.splitPatch", .before = section(1, 3), .undo = Undo::Patch},
    {.id = "line.splitPatch", .when = "at a line", .before = line(1, 3), .undo = Undo::Patch, .status = idle},
    {.id = "line.gateToPatchMode", .before = section(1, 2), .change = Change::Selection, .mouse = "force patch"},
    {.id = "line.scaling", .before = section(1, 2), .fields = {{"scale", "2"}}, .undo = Undo::Patch, .asks = true},
    {.id = "line.move", .before = section(1, 2), .fields = {{"deltaZ", "2"}}, .undo = Undo::Patch, .asks = true},
    {.id = "line.move",
     .when = "of a line",
     .before = line(1, 2),
     .fields = {{"deltaZ", "2"}},
     .undo = Undo::Patch,
     .asks = true},
    {.id = "line.flip", .before = section(1, 2), .undo = Undo::Patch, .asks = true},
    {.id = "line.rotation", .before = section(1, 2), .fields = {{"angle", "90"}}, .undo = Undo::Patch, .asks = true},
    {.id = "line.symmetric", .before = section(1, 2), .undo = Undo::Patch, .title = "wing.skl", .asks = true},
    {.id = "line.firstPoint", .before = section(1, 2), .undo = Undo::Patch, .asks = true},
    {.id = "line.interpolate",
     .before = section(1, 4),
     .fields = {{"coefficient", "0.5"}},
     .undo = Undo::Patch,
     .asks = true},
    {.id = "line.rebreak",
     .before = section(1, 2),
     .fields = {{"newCount", "9"}},
     .undo = Undo::Patch,
     .title = "wing.skl",
     .asks = true},
    {.id = "line.prescribe",
     .before = section(1, 2),
     .fields = {{"useZ", "1"}, {"z", "7"}},
     .undo = Undo::Patch,
     .asks = true},
    {.id = "line.delete", .before = section(1, 2), .undo = Undo::Patch},
    {.id = "line.delete", .when = "of a line", .before = line(1, 2), .undo = Undo::Patch},
    {.id = "line.delete",
     .when = "that is refused",
     .before = section(4, 2),
     .change = Change::Selection,
     .undo = Undo::Patch},
    {.id = "line.duplicate",
     .before = section(1, 2),
     .fields = {{"duplicateCount", "2"}},
     .undo = Undo::Patch,
     .asks = true},
    {.id = "line.duplicate",
     .when = "of a line",
     .before = line(1, 2),
     .fields = {{"duplicateCount", "2"}},
     .undo = Undo::Patch,
     .asks = true},
    {.id = "line.weeding", .before = section(1, 2), .undo = Undo::Patch},
    {.id = "line.knife", .before = section(1, 2), .undo = Undo::Patch, .title = "wing.skl", .asks = true},
    {.id = "line.copy", .before = showBuffer + section(1, 2), .change = Change::Selection},
    {.id = "line.paste", .before = section(1, 1) + copyLine + section(1, 2), .undo = Undo::Patch},
    {.id = "line.correct",
     .before = line(1, 2) + Steps{{.id = "point.free.line", .click = Place{1, 1, 4}}},
     .undo = Undo::Both,
     .asks = true},
    {.id = "line.cylinder",
     .before = section(1, 2),
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .title = "Untitled.apt",
     .status = idle,
     .asks = true},
    {.id = "line.exit", .before = section(1, 2), .change = Change::Selection, .mouse = "reset", .status = idle},

    // The line buffer
    {.id = "buffer.addPoint", .before = point(1, 1, 2), .change = Change::Selection},
    {.id = "buffer.clear", .before = showBuffer + section(1, 2) + copyLine, .change = Change::Selection, .asks = true},
    {.id = "buffer.open", .files = {"some.ext"}, .change = Change::Selection, .asks = true},
    {.id = "buffer.open.line",
     .before = section(1, 2),
     .files = {"some.ext"},
     .change = Change::Selection,
     .asks = true},
    {.id = "buffer.saveAs",
     .before = section(1, 2) + copyLine,
     .files = {"new.ext"},
     .change = Change::Nothing,
     .asks = true},
    {.id = "buffer.reverse", .before = showBuffer + section(1, 2) + copyLine, .change = Change::Selection},
    {.id = "buffer.merge", .before = section(1, 2) + copyLine, .undo = Undo::Patch, .title = "wing.skl"},
    {.id = "buffer.match", .before = section(2, 1) + copyLine + section(1, 5), .undo = Undo::Patch},

    // Points
    {.id = "point.capture", .change = Change::Nothing, .told = Told::Mouse, .mouse = "force point", .status = drag},
    {.id = "point.next",
     .before = point(1, 1, 2),
     .change = Change::Selection,
     .told = Told::Mouse,
     .mouse = "force point",
     .status = drag},
    {.id = "point.input",
     .before = point(1, 2, 2),
     .fields = {{"M", "3"}},
     .change = Change::Selection,
     .mouse = "set point",
     .status = "Captured point: (Patch K=1, Section N=2, Point M=3) X=2.000000, Y=1.000000, Z=0.000000 "
               "// Press right button to continue ",
     .asks = true},
    {.id = "point.edit",
     .before = point(1, 2, 2),
     .fields = {{"x", "1.5"}},
     .undo = Undo::Point,
     .status = "Captured point: (Patch K=1, Section N=2, Point M=2) X=1.500000, Y=1.000000, Z=0.000000 "
               "// Press right button to continue ",
     .asks = true},
    {.id = "point.drag",
     .before = point(1, 2, 2),
     .change = Change::Nothing,
     .mouse = "set point",
     .undo = Undo::Point,
     .status = drag},
    {.id = "point.delete",
     .before = point(1, 2, 2),
     .undo = Undo::Point,
     .title = "wing.skl",
     .status = "Save writes wing.skl",
     .asks = true},
    {.id = "point.duplicate",
     .before = point(1, 2, 2),
     .fields = {{"duplicateCount", "3"}},
     .undo = Undo::Point,
     .title = "wing.skl",
     .asks = true},
    {.id = "point.cut", .before = point(1, 2, 2), .undo = Undo::Point, .title = "wing.skl", .asks = true},
    {.id = "point.copy", .before = showBuffer + point(1, 2, 2), .change = Change::Selection},
    {.id = "point.paste",
     .before = point(1, 2, 2) + Steps{{.id = "point.copy"}, {.id = "point.next", .click = Place{1, 3, 3}}},
     .undo = Undo::Point,
     .status = "Captured point: (Patch K=1, Section N=3, Point M=3) X=1.000000, Y=1.000000, Z=0.000000 "
               "// Press right button to continue "},
    {.id = "point.free",
     .before = section(1, 2),
     .change = Change::Nothing,
     .told = Told::Mouse,
     .mouse = "force point",
     .status = drag},
    {.id = "point.free.line", .before = section(1, 2), .change = Change::Nothing, .told = Told::Nobody, .status = drag},
    {.id = "point.undo",
     .before = point(1, 2, 2) + Steps{{.id = "point.edit", .fields = {{"x", "1.5"}}}},
     .undo = Undo::Used,
     .modified = true,
     .status = "Captured point: (Patch K=1, Section N=2, Point M=2) X=1.000000, Y=1.000000, Z=0.000000 "
               "// Press right button to continue "},
    {.id = "point.exit", .before = point(1, 2, 2), .change = Change::Selection, .mouse = "reset", .status = idle},
    {.id = "point.rebreakPart",
     .before = section(1, 2) + point(1, 2, 4),
     .fields = {{"newCount", "6"}},
     .undo = Undo::Both,
     .title = "wing.skl",
     .asks = true},
    {.id = "point.knifePart",
     .before = section(1, 2) + point(1, 2, 4),
     .undo = Undo::Patch,
     .title = "wing.skl",
     .asks = true},
    {.id = "point.copyPart",
     .before = showBuffer + section(1, 2) + point(1, 2, 4),
     .change = Change::Selection,
     .asks = true},
    {.id = "point.pastePart",
     .before = section(1, 2) + copyLine + point(1, 2, 4),
     .undo = Undo::Patch,
     .title = "wing.skl",
     .asks = true},
    {.id = "point.reverseSection", .before = section(1, 2) + point(1, 2, 4), .modified = true},

    // Transformations
    {.id = "model.scaling", .fields = {{"scale", "2"}}, .told = Told::Bounds, .undo = Undo::Patch, .asks = true},
    {.id = "model.move", .fields = {{"deltaX", "1"}}, .told = Told::Bounds, .undo = Undo::Patch, .asks = true},
    {.id = "model.move",
     .when = "of zones",
     .holding = Holding::Triangles,
     .fields = {{"deltaX", "1"}},
     .told = Told::Bounds,
     .undo = Undo::Patch,
     .asks = true},
    {.id = "model.rotation", .fields = {{"angle", "90"}}, .told = Told::Bounds, .undo = Undo::Patch, .asks = true},
    {.id = "model.flip", .told = Told::Bounds, .undo = Undo::Patch, .asks = true},
    {.id = "model.turnRound", .undo = Undo::Patch},
    {.id = "model.turnRound", .when = "of zones", .holding = Holding::Triangles, .undo = Undo::Patch},
    {.id = "model.turnRound", .when = "with a field", .holding = Holding::Field, .undo = Undo::Patch},
    {.id = "model.symmetric", .told = Told::Bounds, .undo = Undo::Patch, .asks = true},
    {.id = "model.convertation", .modified = true},
    {.id = "model.lastFirstSwitch", .modified = true, .asks = true},
    {.id = "model.knife", .undo = Undo::Patch, .asks = true},
    {.id = "patch.reflection", .before = addPatch(1), .undo = Undo::Patch},
    {.id = "patch.reflection",
     .when = "Triangles",
     .holding = Holding::Triangles,
     .before = addPatch(1),
     .undo = Undo::Patch},
    {.id = "model.reflectToApt", .before = addPatch(1), .undo = Undo::Patch},
    {.id = "model.reflectToWrl",
     .before = Steps{{.id = "file.appendWrl", .files = {"square.wrl"}}} + addPatch(1),
     .undo = Undo::Patch},
    {.id = "model.reflectToSft",
     .before = Steps{{.id = "file.appendSft", .files = {"up.sft"}}} + addPatch(1),
     .undo = Undo::Patch},
    {.id = "model.intersection",
     .before = addPatch(4),
     .fields = {{"insideSide", "1"}, {"outsideSide", "1"}},
     .undo = Undo::Patch,
     .status = idle,
     .asks = true,
     .calledOff = CalledOff::JointShown},
    {.id = "model.invisibleRemove",
     .holding = Holding::Triangles,
     .change = Change::Nothing,
     .told = Told::Nobody,
     .undo = Undo::Patch},
    {.id = "model.coonsRebuild", .undo = Undo::Patch},
    {.id = "model.smooth", .undo = Undo::Patch, .asks = true},
    {.id = "model.compare",
     .before = addPatch(1),
     .fields = {{"target", "2"}},
     .change = Change::Nothing,
     .told = Told::Nobody,
     .asks = true},
    {.id = "model.saveDistances",
     .before = addPatch(1) + Steps{{.id = "model.compare", .fields = {{"target", "2"}}}},
     .files = {"far.csv"},
     .change = Change::Nothing,
     .told = Told::Nobody,
     .asks = true},
    {.id = "convert.toUnstructured", .undo = Undo::Patch, .title = "wing.dat", .status = "Save writes wing.dat"},
    {.id = "convert.toApt",
     .holding = Holding::Lines,
     .undo = Undo::Patch,
     .title = "wing.apt",
     .status = "Save writes wing.apt",
     .asks = true},
    {.id = "convert.toSkl",
     .holding = Holding::Triangles,
     .undo = Undo::Patch,
     .title = "wing.skl",
     .status = "Save writes wing.skl",
     .asks = true},
    {.id = "convert.knife",
     .holding = Holding::Triangles,
     .fields = {{"section", "2"}},
     .undo = Undo::Patch,
     .asks = true},

    // View
    {.id = "view.fit", .change = Change::Nothing, .told = Told::Bounds},
    {.id = "view.colourByValue",
     .fields = {{"quantity", "3"}},
     .change = Change::Nothing,
     .status = "The model has no such field value",
     .asks = true},
    {.id = "view.features",
     .fields = {{"showFirstPoints", "1"}, {"showDoublePoints", "1"}},
     .change = Change::Selection,
     .asks = true},
};

/// Off whatever the model: nothing opens a second grid.
const std::set<std::string> neverOn = {"file.closeDat", "model.reflectToDat"};

class CommandEffect : public CommandRig, public testing::WithParamInterface<Effect> {
protected:
    CommandEffect() {
        writeFileText(folder / "other.apt", aptText({flatPatch(2, 3, 7)}));
        writeFileText(folder / "square.wrl", "#VRML V2.0 utf8\nShape {\n  geometry IndexedFaceSet {\n"
                                             "    coord Coordinate { point [\n-9 -9 2\n9 -9 2\n9 9 2\n-9 9 2\n] }\n"
                                             "    coordIndex [ 0 1 2 -1 0 2 3 -1 ]\n  }\n}\n");
        writeFileText(folder / "grid.dat", "VARIABLES = \"X\", \"Y\", \"Z\"\nZONE T=\"a\", I=2, J=2, F=POINT\n"
                                           "0 0 0\n1 0 0\n0 1 0\n1 1 0\n");
        writeFileText(folder / "flow.dat", "TITLE = \"flow\"\nVARIABLES = \"X\", \"Y\", \"Z\", \"P\"\n"
                                           "ZONE T=\"ZONE_0\",I=2,J=2,K=1,F= POINT\n"
                                           "0 0 0 10\n1 0 0 11\n0 1 0 12\n1 1 0 13\n");
        writeFileText(folder / "some.apm", "1 2 3\n4 5 6\n");
        writeFileText(folder / "some.ext", "1 2 3\n4 5 6\n");
        writeFileText(folder / "up.sft", markersThatWentUp());
        ui.onRegularInput = [](CRegularInput& table) {
            table.regularPatches = {flatPatch(2, 2, 3)};
            return true;
        };
    }

    /// Pairs of markers over the model, each 4 higher now than it was.
    static std::string markersThatWentUp() {
        std::ostringstream text;
        text << "\n\n\n\n\n\n\n";
        for (const int x : {-90, -30, 30, 90}) {
            for (const int y : {-90, -30, 30, 90}) {
                for (const int z : {-90, -30, 30, 90}) {
                    text << x << ' ' << y << ' ' << z << " 0 0 4 0\n";
                }
            }
        }
        return text.str();
    }

    void holdModel() {
        switch (GetParam().holding) {
        case Holding::None:
            break;
        case Holding::Grid:
            holdGrid();
            break;
        case Holding::Lines:
            holdLines();
            break;
        case Holding::Triangles:
            holdTriangles();
            break;
        case Holding::Field:
            run({.id = "file.openField", .files = {"flow.dat"}});
            break;
        case Holding::NamedGrid:
            run({.id = "file.open", .files = {"some.grd"}});
        }
    }

    /// The model, what comes before, and then a clean start: saved, unless the entry says otherwise, and nothing heard.
    void prepare(const Steps& first = {}) {
        holdModel();
        runAll(first + GetParam().before);
        if (doc.documentModified) {
            settle();
        }
        if (GetParam().startsModified) {
            runAll({{.id = "model.convertation"}, {.id = "model.convertation"}});
        }
        redraw();
        forget();
        ASSERT_EQ(doc.documentModified, GetParam().startsModified);
        model = Picture::ofModel(doc);
        picture = Picture::ofAll(doc);
        title = doc.modelFile.documentTitle;
        undo = undoState();
        pointReady = doc.pointUndoReady;
        patchReady = doc.patchUndoReady;
    }

    void work() { run({.id = GetParam().id, .fields = GetParam().fields, .files = GetParam().files}); }

    bool hasAsked() const {
        return std::any_of(ui.transcript.begin(), ui.transcript.end(), [](const std::string& line) {
            return line.starts_with("dialog:") || line.starts_with("question:") || line.starts_with("chooser:");
        });
    }

    /// The last line of a kind that was shown; empty when there was none.
    std::string lastShown(const std::string& kind) const {
        const auto found = std::find_if(ui.transcript.rbegin(), ui.transcript.rend(),
                                        [&](const std::string& text) { return text.starts_with(kind); });
        return found == ui.transcript.rend() ? "" : found->substr(kind.size());
    }

    void expectTitle(const std::string& expected) {
        EXPECT_EQ(doc.modelFile.documentTitle, expected);
        EXPECT_EQ(lastShown("title: "), expected == title ? lastShown("title: ") : expected);
    }

    std::string model;
    std::string picture;
    std::string title;
    std::string undo;
    bool pointReady = false;
    bool patchReady = false;
};

std::string nameOf(const testing::TestParamInfo<Effect>& info) {
    std::string name = info.param.id + (info.param.when.empty() ? "" : "_" + info.param.when);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '.' || c == ' '; }, '_');
    return name;
}

bool isIn(Undo undo, std::initializer_list<Undo> list) {
    return std::find(list.begin(), list.end(), undo) != list.end();
}

} // namespace

TEST(CommandEffects, AreKnownOfEveryCommandOfTheDocument) {
    std::set<std::string> told = neverOn;
    for (const Effect& effect : effects) {
        told.insert(effect.id);
    }
    for (const Command& command : commandTable()) {
        if (command.owner == CommandOwner::Document) {
            EXPECT_EQ(told.count(command.id), 1U) << command.id << " has no entry in the table of effects";
        }
    }
}

TEST_F(CommandRig, CommandsThatAreNeverOn) {
    holdGrid();
    runAll(addPatch(1));
    for (const std::string& id : neverOn) {
        EXPECT_TRUE(isCommandOff(doc, id)) << id;
    }
}

TEST_F(CommandRig, ADraggedPointIsDrawnAtEachMove) {
    holdGrid();
    runAll(section(1, 2) + point(1, 2, 2) + Steps{{.id = "point.drag"}});
    for (const double x : {1.25, 1.5}) {
        forget();
        document_->takePick({.target = Pick::Target::DragPlace, .found = true, .position = {x, 1, 0}});
        document_->placeDraggedPoint(doc.capture->capturedPointPos);
        EXPECT_EQ(doc.patches[0][1][1], zVec<double>(x, 1, 0));
        EXPECT_EQ(heard(), Lines{"status: " + doc.capture->dragStatus});
        EXPECT_THAT(view.calls, Contains("redraw"));
        EXPECT_EQ(watcher.drawn, Picture::ofAll(doc));
    }
    releaseButton();
    EXPECT_FALSE(doc.capture->pointDragging);
    EXPECT_TRUE(doc.pointUndoReady && doc.documentModified);
    run({.id = "point.undo"});
    EXPECT_EQ(doc.patches[0][1][1], zVec<double>(1, 1, 0));
    EXPECT_EQ(watcher.drawn, Picture::ofAll(doc));
}

TEST_F(CommandRig, ABendIsReadyToBeTakenBackByEitherUndo) {
    for (const bool byPoint : {true, false}) {
        holdGrid();
        runAll(section(1, 2) + point(1, 2, 2));
        settle();
        const std::string model = Picture::ofModel(doc);
        document_->prepareDragCorrection();
        EXPECT_TRUE(doc.capture->dragCorrectsLine && doc.pointUndoReady && doc.patchUndoReady && doc.documentModified);
        EXPECT_FALSE(doc.rebuildOnUndo);
        EXPECT_THAT((std::vector{doc.capture->savedPatch, doc.capture->savedPointSection, doc.capture->savedPoint}),
                    ElementsAre(0, 1, 1));
        doc.patches[0][1][1].z = 3; // the view bends the curve
        run({.id = byPoint ? "point.undo" : "patch.undo"});
        EXPECT_EQ(Picture::ofModel(doc), model);
        EXPECT_FALSE(doc.pointUndoReady || doc.patchUndoReady);
        leaveRegimes();
    }
}

TEST_P(CommandEffect, IsToldToTheViews) {
    const Effect& effect = GetParam();
    prepare();
    work();
    EXPECT_EQ(Picture::ofModel(doc) != model, effect.change == Change::Model);
    EXPECT_EQ(Picture::ofAll(doc) != picture, effect.change != Change::Nothing);
    if (effect.told == Told::Redraw || effect.told == Told::Bounds) {
        EXPECT_THAT(view.calls, Contains(effect.told == Told::Redraw ? "redraw" : "bounds"));
        EXPECT_EQ(watcher.drawn, Picture::ofAll(doc)); // what was drawn last is what there is now
    }
    if (effect.told == Told::Redraw) {
        EXPECT_THAT(view.calls, Not(Contains("bounds"))); // the camera stays
    }
    if (!effect.mouse.empty()) {
        EXPECT_THAT(view.calls, Contains(effect.mouse));
    }
}

TEST_P(CommandEffect, IsToldInMarkTitleStatusAndUndo) {
    const Effect& effect = GetParam();
    prepare();
    work();
    EXPECT_EQ(hasAsked(), effect.asks);
    const bool snapshot = isIn(effect.undo, {Undo::Patch, Undo::Point, Undo::Both});
    EXPECT_EQ(doc.documentModified, effect.modified.value_or(snapshot));
    expectTitle(effect.title.empty() ? title : effect.title);
    if (!effect.status.empty()) {
        std::string shown = doc.status;
        const std::string place = folder.path().string() + '/';
        if (const std::size_t at = shown.find(place); at != std::string::npos) {
            shown.erase(at, place.size());
        }
        EXPECT_EQ(shown, effect.status);
    }
    if (!lastShown("status: ").empty()) {
        EXPECT_EQ(lastShown("status: "), doc.status);
    }
    if (effect.undo == Undo::Used) {
        EXPECT_FALSE(doc.pointUndoReady || doc.patchUndoReady);
        EXPECT_TRUE(doc.undoPatches.empty() && doc.pointUndoPatches.empty());
    } else {
        EXPECT_EQ(doc.patchUndoReady, patchReady || isIn(effect.undo, {Undo::Patch, Undo::Both}));
        EXPECT_EQ(doc.pointUndoReady,
                  isIn(effect.undo, {Undo::Point, Undo::Both}) || (pointReady && doc.capture->pointRegimeActive()));
    }
}

TEST_P(CommandEffect, IsTakenBackByUndo) {
    const Effect& effect = GetParam();
    if (isIn(effect.undo, {Undo::Patch, Undo::Both})) {
        prepare();
        work();
        call("patch.undo");
        EXPECT_EQ(Picture::ofModel(doc), model);
        EXPECT_EQ(watcher.drawn, Picture::ofAll(doc));
        EXPECT_FALSE(doc.patchUndoReady);
        if (effect.title != "new.stl") { // the grid comes back under the name that it was saved by
            expectTitle(title);
        }
    }
    if (isIn(effect.undo, {Undo::Point, Undo::Both})) {
        leaveRegimes();
        prepare();
        work();
        call("point.undo");
        EXPECT_EQ(Picture::ofModel(doc), model);
        EXPECT_EQ(watcher.drawn, Picture::ofAll(doc));
        EXPECT_FALSE(doc.pointUndoReady);
        expectTitle(title);
    }
}

TEST_P(CommandEffect, CalledOffLeavesAllAsItWas) {
    const Effect& effect = GetParam();
    if (!effect.asks) {
        return; // nothing to call off
    }
    const bool movable =
        effect.holding == Holding::Grid || effect.holding == Holding::Lines || effect.holding == Holding::Triangles;
    prepare(movable ? moved : Steps());
    ASSERT_EQ(doc.patchUndoReady, movable); // the snapshot of another command, which must stay
    callOff(effect.id);
    EXPECT_TRUE(hasAsked());
    EXPECT_EQ(Picture::ofModel(doc), model);
    EXPECT_EQ(Picture::ofAll(doc) != picture, effect.calledOff == CalledOff::JointShown);
    EXPECT_EQ(watcher.drawn, Picture::ofAll(doc));
    expectTitle(title);
    EXPECT_EQ(undoState(), undo);
}

INSTANTIATE_TEST_SUITE_P(Of, CommandEffect, testing::ValuesIn(effects), nameOf);

// ---- Select all -----------------------------------------------------------------------------------------------------

TEST_F(CommandRig, SelectAllPutsEveryPatchIntoTheZBlockWhateverItHeld) {
    hold({flatPatch(2, 3), flatPatch(2, 3, 5), flatPatch(2, 3, 9)});
    runAll(addPatch(3) + addPatch(1) + Steps{{.id = "block.all"}});
    EXPECT_EQ(doc.blockCount, 3);
    EXPECT_EQ(std::vector<std::int32_t>(doc.blockList.begin(), doc.blockList.begin() + 4),
              (std::vector<std::int32_t>{0, 1, 2, -1}));
    EXPECT_EQ(doc.capture->capturedPatch, 2);
    run({.id = "block.delete"});
    EXPECT_EQ(doc.structureKind, StructureKind::None);
}

TEST_F(CommandRig, SelectAllTakesTheZonesOfTriangles) {
    holdTriangles();
    run({.id = "block.all"});
    EXPECT_EQ(doc.blockCount, countOf(doc.feRegion.blocks));
}

TEST_F(CommandRig, SelectAllOfMorePatchesThanAZBlockHoldsIsRefused) {
    hold(PatchList(blockCapacity + 1, flatPatch(2, 2)));
    run({.id = "block.all"});
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_THAT(heard(), testing::ElementsAre("message: It is impossible to add one more zBlock"));
}

// ---- Turn round -----------------------------------------------------------------------------------------------------

TEST_F(CommandRig, TurnRoundReversesTheSectionsOfTheZBlockWithTheirFieldAndCapture) {
    hold({flatPatch(2, 3), flatPatch(2, 3, 5)});
    doc.fieldMode = true;
    doc.fieldPatches = {flatPatch(2, 3, 7), flatPatch(2, 3, 8)};
    const PatchList before = doc.patches;
    const PatchList field = doc.fieldPatches;
    runAll(addPatch(2) + Steps{{.id = "model.turnRound"}});
    EXPECT_EQ(doc.patches[0], before[0]);
    EXPECT_EQ(doc.fieldPatches[0], field[0]);
    for (std::size_t n = 0; n < 2; ++n) {
        for (std::size_t m = 0; m < 3; ++m) {
            EXPECT_EQ(doc.patches[1][n][m], before[1][n][2 - m]);
            EXPECT_EQ(doc.fieldPatches[1][n][m], field[1][n][2 - m]);
        }
    }
    run({.id = "patch.undo"});
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.fieldPatches, field);
}

TEST_F(CommandRig, TurnRoundKeepsWhatIsCaptured) {
    hold({flatPatch(2, 3), flatPatch(2, 3, 5)});
    runAll(line(2, 1) + point(2, 2, 1));
    const zVec<double> place = doc.capture->capturedPointPos;
    run({.id = "model.turnRound"});
    EXPECT_EQ(doc.capture->capturedLine, 2);
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointSection, 1);
    EXPECT_EQ(doc.capture->capturedPointPos, place);
}

TEST_F(CommandRig, UndoOfTurnRoundLeavesWhatIsCapturedWithItsPoints) {
    hold({flatPatch(2, 3), flatPatch(2, 4, 5)});
    runAll(line(2, 1) + point(2, 2, 1));
    const zVec<double> place = doc.capture->capturedPointPos;
    run({.id = "model.turnRound"});
    ASSERT_EQ(doc.capture->capturedPoint, 3);
    run({.id = "patch.undo"});
    EXPECT_EQ(doc.capture->capturedPoint, 0);
    EXPECT_EQ(doc.capture->capturedPointSection, 1);
    EXPECT_EQ(doc.capture->capturedLine, 0);
    EXPECT_EQ(doc.capture->capturedPointPos, place);
}

TEST_F(CommandRig, UndoOfAnotherCommandLeavesTheCaptureItsNumber) {
    hold({flatPatch(2, 3), flatPatch(2, 4, 5)});
    runAll(point(2, 2, 1));
    run({.id = "model.move", .fields = {{"deltaX", "1"}}});
    run({.id = "patch.undo"});
    EXPECT_EQ(doc.capture->capturedPoint, 0);
}

TEST_F(CommandRig, UndoBehindALastFirstSwitchLeavesThePointCapturedThatWas) {
    // The move changed nothing: what Undo brings back is the order.
    hold({flatPatch(3, 4)});
    runAll(point(1, 1, 2));
    run({.id = "model.move"});
    const zVec<double> place = doc.capture->capturedPointPos;
    run({.id = "model.lastFirstSwitch", .fields = {{"kind", "1"}}});
    ASSERT_EQ(doc.capture->capturedPointSection, 2);
    run({.id = "patch.undo"});
    EXPECT_EQ(doc.capture->capturedPointSection, 0);
    EXPECT_EQ(doc.capture->capturedPointPos, place);
}

TEST_F(CommandRig, TurnRoundLeavesTheCaptureInAPatchThatStays) {
    hold({flatPatch(2, 3), flatPatch(2, 3, 5)});
    runAll(addPatch(1) + point(2, 2, 1));
    run({.id = "model.turnRound"});
    EXPECT_EQ(doc.capture->capturedPoint, 0);
}

TEST_F(CommandRig, TurnRoundExchangesTwoCornersOfEachTriangle) {
    holdTriangles();
    const std::vector<std::int32_t> before = doc.feRegion.blocks[0]->connectivity;
    run({.id = "model.turnRound"});
    const std::vector<std::int32_t>& after = doc.feRegion.blocks[0]->connectivity;
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i + 3 < before.size(); i += 4) {
        EXPECT_EQ(after[i], before[i]);
        EXPECT_EQ(after[i + 1], before[i + 2]);
        EXPECT_EQ(after[i + 2], before[i + 1]);
    }
}

} // namespace velmora::test
