#include "threemf_import.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FileBytes.h"
#include "PlacedMesh.h"
#include "TextScan.h"
#include "XmlScan.h"
#include "ZipArchive.h"
#include "read_record.h"

namespace velmora {

namespace {

/// An object stands in a part of the package under its number there.
using ObjectName = std::pair<std::string, std::int64_t>;

/// An object as a part of another one, or of what is to be built.
struct Use {
    ObjectName object;
    Placement placement;
    std::string name;
};

struct Object {
    std::string name;
    std::vector<double> points; ///< three numbers each
    std::vector<std::int64_t> corners;
    std::vector<Use> parts;
    bool isUsed = false;
};

/// Twelve numbers, a column of ours after the other; what cannot be read leaves things in place.
Placement placementOf(std::string_view text) {
    TextScan scan(text);
    std::array<double, 12> m{};
    for (double& value : m) {
        if (!scan.skipSpace() || !scan.takeNumber(value)) {
            return {};
        }
    }
    return {{m[0], m[3], m[6], m[9], m[1], m[4], m[7], m[10], m[2], m[5], m[8], m[11]}};
}

double numberOf(const XmlAttributes& attributes, std::string_view name) {
    double value = std::numeric_limits<double>::quiet_NaN();
    TextScan scan(attributes.textOf(name));
    if (!scan.rest().empty() && scan.skipSpace() && !scan.takeNumber(value)) {
        value = std::numeric_limits<double>::quiet_NaN();
    }
    return value;
}

std::int64_t integerOf(const XmlAttributes& attributes, std::string_view name) {
    std::int64_t value = -1;
    TextScan scan(attributes.textOf(name));
    return !scan.rest().empty() && scan.takeInteger(value) ? value : -1;
}

/// The name of a part as the archive has it: without a slash before it.
std::string partName(std::string_view path) {
    return std::string(path.substr(path.starts_with('/') ? 1 : 0));
}

class ThreemfReader {
public:
    ThreemfReader(std::string_view text, FileRead& record, const ReportProgress& report)
        : archive_(text), record_(record), report_(report) {}

    FileMesh run();

private:
    std::string rootPart();
    bool readPart(const std::string& name, XmlScan& scan);
    void readModel(const std::string& name);
    void takeElement(std::string_view name, const XmlAttributes& attributes);
    Use useOf(const XmlAttributes& attributes) const;
    void place();
    void placeMesh(const Object& object, const Placement& placement, const std::string& name);
    void tell();

    ZipArchive archive_;
    FileRead& record_;
    const ReportProgress& report_;
    std::map<ObjectName, Object> objects_;
    std::vector<Use> items_;
    std::vector<std::string> parts_; // of the package, to be read
    std::string part_;               // that is read
    Object* object_ = nullptr;       // the same
    XmlScan* scan_ = nullptr;
    PlacedMesh placed_;
    std::uint64_t unpacked_ = 0; // bytes
    std::uint64_t numbers_ = 0;  // of points and corners of all objects
    std::int64_t missing_ = 0;   // objects that are not there
    std::int64_t circles_ = 0;   // objects within themselves
    std::int64_t noParts_ = 0;   // parts of the package that are not there
    std::int64_t damaged_ = 0;   // the same
    std::int64_t noRoom_ = 0;    // meshes
    std::int64_t notBuilt_ = 0;  // objects with a mesh
    std::int64_t beams_ = 0;
    bool tooLarge_ = false;
    bool colours_ = false;
};

FileMesh ThreemfReader::run() {
    if (!archive_.isOpen()) {
        record_.losesGeometry("It is no archive, or a damaged one");
        return {};
    }
    parts_ = {rootPart()};
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        readModel(std::string(parts_[i]));
    }
    place();
    tell();
    return std::move(placed_.mesh());
}

bool ThreemfReader::readPart(const std::string& name, XmlScan& scan) {
    const ZipArchive::Part outcome = archive_.read(name, [&](std::string_view piece) {
        unpacked_ += piece.size();
        tooLarge_ = tooLarge_ || unpacked_ > memoryForImport();
        if (report_) {
            report_(0.2); // how much is to come is not known
        }
        return !tooLarge_ && scan.take(piece, false);
    });
    if (outcome == ZipArchive::Part::Missing) {
        ++noParts_;
        return false;
    }
    damaged_ += outcome == ZipArchive::Part::Whole && scan.take({}, true) ? 0 : 1;
    return true;
}

// The part with the model, as the package names it.
std::string ThreemfReader::rootPart() {
    std::string target;
    XmlScan scan(
        [&target](std::string_view, const XmlAttributes& attributes) {
            if (target.empty() && attributes.textOf("Type").ends_with("/3dmodel")) {
                target = partName(attributes.textOf("Target"));
            }
        },
        [](std::string_view) {});
    const std::int64_t missing = noParts_;
    readPart("_rels/.rels", scan);
    noParts_ = missing;
    return target.empty() ? "3D/3dmodel.model" : target;
}

void ThreemfReader::readModel(const std::string& name) {
    XmlScan scan(
        [this](std::string_view element, const XmlAttributes& attributes) { takeElement(element, attributes); },
        [this](std::string_view element) { object_ = element == "object" ? nullptr : object_; });
    part_ = name;
    object_ = nullptr;
    scan_ = &scan;
    readPart(name, scan);
    scan_ = nullptr;
}

void ThreemfReader::takeElement(std::string_view name, const XmlAttributes& attributes) {
    if (name == "vertex" && object_ != nullptr) {
        for (const char* const axis : {"x", "y", "z"}) {
            object_->points.push_back(numberOf(attributes, axis));
        }
        numbers_ += 3;
    } else if (name == "triangle" && object_ != nullptr) {
        for (const char* const corner : {"v1", "v2", "v3"}) {
            object_->corners.push_back(integerOf(attributes, corner));
        }
        numbers_ += 3;
        colours_ = colours_ || attributes.find("pid") != nullptr;
    } else if (name == "object") {
        object_ = &objects_[{part_, integerOf(attributes, "id")}];
        object_->name = attributes.textOf("name");
        colours_ = colours_ || attributes.find("pid") != nullptr;
    } else if (name == "component" && object_ != nullptr) {
        object_->parts.push_back(useOf(attributes));
    } else if (name == "item" && part_ == parts_.front()) {
        items_.push_back(useOf(attributes));
        items_.back().name = attributes.textOf("partnumber");
    } else if (name == "model" && part_ == parts_.front()) {
        record_.unit = attributes.find("unit") == nullptr ? "millimeter" : attributes.textOf("unit");
    } else if (name == "beam") {
        ++beams_;
    }
    if (numbers_ > memoryForImport() / 16) {
        tooLarge_ = true;
        scan_->stop();
    }
    const std::string_view path = attributes.textOf("path");
    if ((name == "component" || name == "item") && !path.empty() &&
        std::find(parts_.begin(), parts_.end(), partName(path)) == parts_.end()) {
        parts_.push_back(partName(path));
    }
}

Use ThreemfReader::useOf(const XmlAttributes& attributes) const {
    const std::string_view path = attributes.textOf("path");
    return {{path.empty() ? part_ : partName(path), integerOf(attributes, "objectid")},
            placementOf(attributes.textOf("transform")),
            {}};
}

// Objects are made of objects; one that is a part of itself would have no end, and few bytes can name one object
// without number.
void ThreemfReader::place() {
    constexpr std::size_t deepest = 64;
    constexpr std::int64_t mostSteps = std::int64_t{1} << 17;
    struct Step {
        Use use;
        std::size_t depth = 0;
    };
    std::vector<Step> waiting;
    std::vector<const Object*> path; // to the object at hand
    for (auto item = items_.rbegin(); item != items_.rend(); ++item) {
        waiting.push_back({*item, 0});
    }
    std::int64_t steps = 0;
    while (!waiting.empty()) {
        const Step step = std::move(waiting.back());
        waiting.pop_back();
        const auto found = objects_.find(step.use.object);
        if (found == objects_.end() || step.depth > deepest || ++steps > mostSteps) {
            (found == objects_.end() ? missing_ : step.depth > deepest ? circles_ : noRoom_) += 1;
            if (steps > mostSteps) {
                break;
            }
            continue;
        }
        Object& object = found->second;
        path.resize(step.depth);
        if (std::find(path.begin(), path.end(), &object) != path.end()) {
            ++circles_;
            continue;
        }
        path.push_back(&object);
        const std::string& name = object.name.empty() ? step.use.name : object.name;
        object.isUsed = true;
        if (!object.corners.empty()) {
            placeMesh(object, step.use.placement, name);
        }
        for (auto part = object.parts.rbegin(); part != object.parts.rend(); ++part) {
            waiting.push_back({{part->object, step.use.placement * part->placement, name}, step.depth + 1});
        }
        if (report_ && steps % 256 == 1) {
            report_(0.5);
        }
    }
    for (const auto& [name, object] : objects_) {
        notBuilt_ += !object.isUsed && !object.corners.empty() ? 1 : 0;
    }
}

void ThreemfReader::placeMesh(const Object& object, const Placement& placement, const std::string& name) {
    if (!placed_.hasRoom(object.points.size() / 3, object.corners.size())) {
        ++noRoom_;
        return;
    }
    placed_.beginZone(name, placement);
    const std::int64_t first = placed_.nextPoint();
    const auto count = static_cast<std::int64_t>(object.points.size() / 3);
    for (std::size_t i = 0; i + 2 < object.points.size(); i += 3) {
        placed_.addPoint({object.points[i], object.points[i + 1], object.points[i + 2]});
    }
    const auto corner = [&](std::size_t i) {
        const std::int64_t number = object.corners[i];
        return number >= 0 && number < count ? first + number : -1;
    };
    for (std::size_t i = 0; i + 2 < object.corners.size(); i += 3) {
        placed_.addTriangle(corner(i), corner(i + 1), corner(i + 2));
    }
}

void ThreemfReader::tell() {
    tellMissing(record_, "Parts of the archive that are not there", noParts_);
    tellMissing(record_, "Parts of the archive that are damaged", damaged_);
    tellMissing(record_, "Objects that are not there", missing_);
    tellMissing(record_, "Objects that stand within themselves", circles_);
    tellMissing(record_, "Objects that are not to be built", notBuilt_);
    tellMissing(record_, "Beams, which are no polygons", beams_);
    tellMissing(record_, "Objects for which the memory does not suffice", noRoom_);
    if (tooLarge_) {
        record_.losesGeometry("The file is too large for the memory");
    }
    placed_.tell(record_, "Objects", colours_);
}

} // namespace

void importThreemf(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                   const ReportProgress& report) {
    record.format = "3mf";
    const bool isEmpty = trimmed(text).empty();
    FileMesh mesh = isEmpty ? FileMesh() : ThreemfReader(text, record, report).run();
    buildScene(std::move(mesh), isEmpty, options, model, record, report);
}

} // namespace velmora
