#include "obj_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TextScan.h"
#include "mesh_builder.h"
#include "read_record.h"

namespace velmora {

namespace {

/// Never the number of a point.
constexpr std::int64_t noPoint = -1;

/// Statements by which no polygon comes and none goes; a face whose first letter is damaged is none of them.
constexpr std::array<std::string_view, 31> statementsWithoutPolygons{
    "vn",  "vp",  "cstype", "deg",      "bmat",     "step", "parm",       "trim",      "hole",  "scrv",  "sp",
    "end", "con", "s",      "mg",       "bevel",    "lod",  "shadow_obj", "trace_obj", "ctech", "stech", "mtllib",
    "csh", "bsp", "bzp",    "c_interp", "d_interp", "cdc",  "cdp",        "usemap",    "maplib"};

class ObjReader {
public:
    ObjReader(std::string_view text, FileRead& record, const ReportProgress& report)
        : scan_(text), record_(record), report_(report) {}

    FileMesh run();

private:
    void takeStatement(std::string_view keyword);
    void takePoint();
    void takeFace();
    std::int64_t takeCorner();
    bool onLine();
    std::string restOfLine();
    std::int32_t zone();
    void tell();

    TextScan scan_;
    FileRead& record_;
    const ReportProgress& report_;
    FileMesh mesh_;
    std::string object_;
    std::string group_;
    std::int64_t objects_ = 0; // begun so far: one of a name that was there before is another one
    std::map<std::pair<std::int64_t, std::string>, std::int32_t> zones_; // by object and group
    std::int32_t zone_ = -1;                                             // none yet under these names
    std::vector<std::int64_t> face_;
    std::int64_t badPoints_ = 0;
    std::int64_t curves_ = 0; // lines, points, free forms: geometry that is no polygon
    std::int64_t unknown_ = 0;
    bool colours_ = false;
    bool materials_ = false;
    bool textures_ = false;
    bool otherFiles_ = false;
};

FileMesh ObjReader::run() {
    std::size_t reported = 0;
    while (scan_.skipSpace()) {
        if (scan_.peek() != '#') {
            takeStatement(scan_.takeWord());
        }
        while (onLine()) {
            scan_.takeWord();
        }
        scan_.takeLine();
        if (report_ && scan_.tell() - reported > (std::size_t{1} << 22)) {
            reported = scan_.tell();
            report_(std::lerp(0.2, 0.6,
                              static_cast<double>(reported) / static_cast<double>(reported + scan_.rest().size())));
        }
    }
    tell();
    return std::move(mesh_);
}

void ObjReader::takeStatement(std::string_view keyword) {
    if (keyword == "v") {
        takePoint();
    } else if (keyword == "f" || keyword == "fo") {
        takeFace();
    } else if (keyword == "o") {
        object_ = restOfLine();
        ++objects_;
        group_.clear();
        zone_ = -1;
    } else if (keyword == "g") {
        group_ = restOfLine();
        zone_ = -1;
    } else if (keyword == "l" || keyword == "p" || keyword == "curv" || keyword == "curv2" || keyword == "surf") {
        ++curves_;
    } else if (keyword == "usemtl") {
        materials_ = true;
    } else if (keyword == "vt") {
        textures_ = true;
    } else if (keyword == "call") {
        otherFiles_ = true;
    } else if (std::find(statementsWithoutPolygons.begin(), statementsWithoutPolygons.end(), keyword) ==
               statementsWithoutPolygons.end()) {
        ++unknown_;
    }
}

// Whether something is left of the statement; a backslash at the end of a line carries it on. Comments end it.
bool ObjReader::onLine() {
    while (scan_.skipBlanks()) {
        if (scan_.peek() != '\\') {
            return scan_.peek() != '#';
        }
        const std::size_t here = scan_.tell();
        scan_.advance();
        if (scan_.skipBlanks()) {
            scan_.seek(here);
            return true;
        }
        scan_.takeLine();
    }
    return false;
}

std::string ObjReader::restOfLine() {
    std::string text;
    while (onLine()) {
        text += text.empty() ? "" : " ";
        text += scan_.takeWord();
    }
    return text;
}

// A point that cannot be read keeps its number, so that those behind it keep theirs.
void ObjReader::takePoint() {
    constexpr double missing = std::numeric_limits<double>::quiet_NaN();
    std::array<double, 3> values = {missing, missing, missing};
    int taken = 0;
    while (taken < 3 && onLine() && scan_.takeNumber(values.at(static_cast<std::size_t>(taken)))) {
        ++taken;
    }
    const bool whole = taken == 3 && (scan_.atWordEnd() || scan_.peek() == '\\');
    if (!whole) { // also "0,5", of which only the 0 was taken
        values = {missing, missing, missing};
        ++badPoints_;
    }
    mesh_.addPoint(values[0], values[1], values[2]);
    int more = 0;
    double value = 0.0;
    while (whole && onLine() && scan_.takeNumber(value)) {
        ++more;
    }
    colours_ = colours_ || more >= 3;
}

void ObjReader::takeFace() {
    face_.clear();
    while (onLine()) {
        face_.push_back(takeCorner());
    }
    mesh_.addPolygon(face_);
    mesh_.zoneOfPolygon.push_back(zone());
}

// "7", "7/1", "7//3", "-2/..": the first number, from 1 or back from the last point so far.
std::int64_t ObjReader::takeCorner() {
    std::int64_t number = 0;
    const bool taken = scan_.takeInteger(number);
    const char behind = scan_.peek();
    scan_.takeWord();
    if (!taken || number == 0 || (!scan_.atEnd() && !isSpace(behind) && behind != '/')) {
        return noPoint;
    }
    const std::int64_t index = number > 0 ? number - 1 : static_cast<std::int64_t>(mesh_.pointCount()) + number;
    return index < 0 ? noPoint : index;
}

std::int32_t ObjReader::zone() {
    if (zone_ < 0) {
        const auto [place, isNew] =
            zones_.try_emplace({objects_, group_}, static_cast<std::int32_t>(mesh_.zones.size()));
        if (isNew) {
            mesh_.zones.push_back(group_.empty() ? object_ : group_);
        }
        zone_ = place->second;
    }
    return zone_;
}

void ObjReader::tell() {
    tellMissing(record_, "Points that cannot be read", badPoints_);
    tellMissing(record_, "Statements that are not known", unknown_);
    tellMissing(record_, "Lines, points and free forms, which are no polygons", curves_);
    if (otherFiles_) {
        record_.losesGeometry("Another file is called, which is not read");
    }
    if (materials_) {
        record_.losesDetail("Materials are not kept");
    }
    if (colours_) {
        record_.losesDetail("Colours of points are not kept");
    }
    if (textures_) {
        record_.losesDetail("Texture coordinates are not kept");
    }
}

} // namespace

void importObj(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report) {
    record.format = "obj";
    FileMesh mesh = ObjReader(text, record, report).run();
    if (mesh.polygonEnds.empty() && !trimmed(text).empty()) {
        record.losesGeometry(noFacesFound);
    }
    buildZones(std::move(mesh), options, model, record, report);
}

} // namespace velmora
