#include "ply_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TextScan.h"
#include "binary_numbers.h"
#include "mesh_builder.h"
#include "read_record.h"

namespace velmora {

namespace {

enum class NumberType { Int8, UInt8, Int16, UInt16, Int32, UInt32, Float, Double };

struct Property {
    std::string name;
    NumberType type = NumberType::Float;
    std::optional<NumberType> countType; ///< of a list
};

struct Element {
    std::string name;
    std::int64_t count = 0;
    std::vector<Property> properties;
};

enum class PlyForm { Text, LowestFirst, HighestFirst };

std::optional<NumberType> typeNamed(std::string_view word) {
    static constexpr std::array<std::pair<std::string_view, NumberType>, 16> types = {
        {{"char", NumberType::Int8},
         {"int8", NumberType::Int8},
         {"uchar", NumberType::UInt8},
         {"uint8", NumberType::UInt8},
         {"short", NumberType::Int16},
         {"int16", NumberType::Int16},
         {"ushort", NumberType::UInt16},
         {"uint16", NumberType::UInt16},
         {"int", NumberType::Int32},
         {"int32", NumberType::Int32},
         {"uint", NumberType::UInt32},
         {"uint32", NumberType::UInt32},
         {"float", NumberType::Float},
         {"float32", NumberType::Float},
         {"double", NumberType::Double},
         {"float64", NumberType::Double}}};
    const auto* const found =
        std::find_if(types.begin(), types.end(), [word](const auto& type) { return type.first == word; });
    return found == types.end() ? std::nullopt : std::optional(found->second);
}

std::size_t sizeOf(NumberType type) {
    switch (type) {
    case NumberType::Int8:
    case NumberType::UInt8:
        return 1;
    case NumberType::Int16:
    case NumberType::UInt16:
        return 2;
    case NumberType::Double:
        return 8;
    default:
        return 4;
    }
}

double valueAt(const char* at, NumberType type, bool highestFirst) {
    switch (type) {
    case NumberType::Int8:
        return static_cast<signed char>(*at);
    case NumberType::UInt8:
        return static_cast<unsigned char>(*at);
    case NumberType::Int16:
        return numberAt<std::int16_t>(at, highestFirst);
    case NumberType::UInt16:
        return numberAt<std::uint16_t>(at, highestFirst);
    case NumberType::Int32:
        return numberAt<std::int32_t>(at, highestFirst);
    case NumberType::UInt32:
        return numberAt<std::uint32_t>(at, highestFirst);
    case NumberType::Float:
        return static_cast<double>(numberAt<float>(at, highestFirst));
    default:
        return numberAt<double>(at, highestFirst);
    }
}

/// The number of a point from a value of whatever type; never one that is there for a value that is no whole number.
std::int64_t indexOf(double value) {
    constexpr double most = 9e15; // whole numbers are exact up to here
    return std::abs(value) <= most && std::floor(value) == value ? static_cast<std::int64_t>(value)
                                                                 : std::numeric_limits<std::int64_t>::max();
}

class PlyReader {
public:
    PlyReader(std::string_view text, FileRead& record, const ReportProgress& report)
        : scan_(text), size_(text.size()), record_(record), report_(report) {}

    FileMesh run();

private:
    bool readHeader();
    bool takeHeaderLine(std::string_view line, bool& ended);
    bool takeProperty(TextScan& words);
    bool readElement(const Element& element);
    bool takeNumber(NumberType type, double& value);
    bool takeRow(const Element& element);
    void planRow(const Element& element);
    void addStrip();
    void tellOthers();

    TextScan scan_;
    std::size_t size_;
    FileRead& record_;
    const ReportProgress& report_;
    PlyForm form_ = PlyForm::Text;
    std::vector<Element> elements_;
    FileMesh mesh_;

    // What the values of the element at hand are for.
    enum class Use { Nothing, X, Y, Z, Polygon, Strip };
    std::vector<Use> uses_;
    bool givesPoints_ = false;
    std::vector<std::int64_t> list_;
    std::string others_; // names of values that are not kept
};

FileMesh PlyReader::run() {
    if (!readHeader()) {
        record_.losesGeometry("The header is not that of a PLY file");
        return {};
    }
    bool whole = true;
    for (const Element& element : elements_) {
        planRow(element);
        if (whole) {
            whole = readElement(element);
        }
    }
    if (whole && scan_.skipSpace()) { // faces beyond the number in the header, say
        record_.losesGeometry("What stands behind the last element that the header tells of is not read");
    }
    tellOthers();
    return std::move(mesh_);
}

bool PlyReader::readHeader() {
    scan_.skipSpace();
    if (trimmed(scan_.takeLine()) != "ply") {
        return false;
    }
    bool ended = false;
    while (!ended && !scan_.atEnd()) {
        if (!takeHeaderLine(scan_.takeLine(), ended)) {
            return false;
        }
    }
    return ended;
}

bool PlyReader::takeHeaderLine(std::string_view line, bool& ended) {
    // The scan needs a NUL behind the text, which a part of the file does not have.
    const std::string copy(line);
    TextScan words(copy);
    words.skipSpace();
    const std::string_view keyword = words.takeWord();
    words.skipSpace();
    if (keyword == "end_header") {
        ended = true;
    } else if (keyword == "format") {
        const std::string_view form = words.takeWord();
        form_ = form == "binary_little_endian" ? PlyForm::LowestFirst
                : form == "binary_big_endian"  ? PlyForm::HighestFirst
                                               : PlyForm::Text;
        return form_ != PlyForm::Text || form == "ascii";
    } else if (keyword == "element") {
        Element element;
        element.name = words.takeWord();
        words.skipSpace();
        if (!words.takeInteger(element.count) || element.count < 0) {
            return false;
        }
        elements_.push_back(std::move(element));
    } else if (keyword == "property") {
        return takeProperty(words);
    }
    return true; // comments, and what is not known
}

bool PlyReader::takeProperty(TextScan& words) {
    if (elements_.empty()) {
        return false;
    }
    Property property;
    std::string_view word = words.takeWord();
    words.skipSpace();
    if (word == "list") {
        property.countType = typeNamed(words.takeWord());
        words.skipSpace();
        word = words.takeWord();
        words.skipSpace();
        if (!property.countType) {
            return false;
        }
    }
    const std::optional<NumberType> type = typeNamed(word);
    if (!type) {
        return false;
    }
    property.type = *type;
    property.name = words.takeWord();
    elements_.back().properties.push_back(std::move(property));
    return true;
}

void PlyReader::planRow(const Element& element) {
    const auto useOf = [&element](const Property& property) {
        const std::string& name = property.name;
        if (element.name == "vertex" && !property.countType) {
            return name == "x" ? Use::X : name == "y" ? Use::Y : name == "z" ? Use::Z : Use::Nothing;
        }
        if (property.countType && (name == "vertex_indices" || name == "vertex_index")) {
            return element.name == "face" ? Use::Polygon : element.name == "tristrips" ? Use::Strip : Use::Nothing;
        }
        return Use::Nothing;
    };
    uses_.clear();
    for (const Property& property : element.properties) {
        uses_.push_back(useOf(property));
        const bool normal = property.name == "nx" || property.name == "ny" || property.name == "nz";
        if (uses_.back() == Use::Nothing && !normal && element.count > 0) {
            others_ += (others_.empty() ? "" : ", ") + property.name;
        }
    }
    givesPoints_ = std::find(uses_.begin(), uses_.end(), Use::X) != uses_.end() &&
                   std::find(uses_.begin(), uses_.end(), Use::Y) != uses_.end();
}

// False when the file ends before the element does, or holds what is no number: where the next one begins is then not
// known.
bool PlyReader::readElement(const Element& element) {
    constexpr std::int64_t reportStep = 1 << 16;
    if (element.properties.empty()) {
        return true; // rows of nothing
    }
    std::int64_t row = 0;
    while (row < element.count && takeRow(element)) {
        ++row;
        if (report_ && row % reportStep == 0) {
            report_(std::lerp(0.2, 0.6, static_cast<double>(scan_.tell()) / static_cast<double>(size_)));
        }
    }
    const std::int64_t missing = element.count - row;
    if (missing > 0) {
        if (element.name == "vertex" || element.name == "face") {
            countOf(record_.found, element.name == "vertex" ? "points" : "faces") += missing;
        }
        tellMissing(record_, "Rows of \"" + element.name + "\" that the file does not have", missing);
    }
    return missing == 0;
}

bool PlyReader::takeNumber(NumberType type, double& value) {
    if (form_ == PlyForm::Text) {
        return scan_.skipSpace() && scan_.takeNumber(value) && scan_.atWordEnd();
    }
    const std::string_view rest = scan_.rest();
    const std::size_t size = sizeOf(type);
    if (rest.size() < size) {
        return false;
    }
    value = valueAt(rest.data(), type, form_ == PlyForm::HighestFirst);
    scan_.seek(scan_.tell() + size);
    return true;
}

bool PlyReader::takeRow(const Element& element) {
    std::array<double, 3> point{};
    bool polygon = false;
    bool strip = false;
    for (std::size_t i = 0; i < element.properties.size(); ++i) {
        const Property& property = element.properties[i];
        double value = 0.0;
        if (!property.countType) {
            if (!takeNumber(property.type, value)) {
                return false;
            }
            if (uses_[i] >= Use::X && uses_[i] <= Use::Z) {
                point.at(static_cast<std::size_t>(uses_[i]) - static_cast<std::size_t>(Use::X)) = value;
            }
            continue;
        }
        double entries = 0.0;
        if (!takeNumber(*property.countType, entries) || !(entries >= 0.0)) {
            return false;
        }
        const bool used = uses_[i] == Use::Polygon || uses_[i] == Use::Strip;
        if (used) {
            list_.clear();
        }
        // The data ends long before a count that no file can hold.
        const auto count = static_cast<std::uint64_t>(std::ceil(std::min(entries, 1e18)));
        for (std::uint64_t entry = 0; entry < count; ++entry) {
            if (!takeNumber(property.type, value)) {
                return false;
            }
            if (used) {
                list_.push_back(indexOf(value));
            }
        }
        polygon = polygon || uses_[i] == Use::Polygon;
        strip = strip || uses_[i] == Use::Strip;
    }
    if (givesPoints_) {
        mesh_.addPoint(point[0], point[1], point[2]);
    }
    if (polygon) {
        mesh_.addPolygon(list_);
    } else if (strip) {
        addStrip();
    }
    return true;
}

// Each further point makes a triangle with the two before it, every other one turned; -1 ends a strip.
void PlyReader::addStrip() {
    std::size_t start = 0;
    for (std::size_t i = 0; i < list_.size(); ++i) {
        if (list_[i] == -1) {
            start = i + 1;
        } else if (i >= start + 2) {
            const bool turned = (i - start) % 2 != 0;
            mesh_.addPolygon({list_[i - (turned ? 1 : 2)], list_[i - (turned ? 2 : 1)], list_[i]});
        }
    }
}

void PlyReader::tellOthers() {
    if (!others_.empty()) {
        record_.losesDetail("Values that are not kept: " + others_);
    }
}

} // namespace

void importPly(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report) {
    record.format = "ply";
    record.found = record.kept = {{"points", 0}, {"faces", 0}, {"triangles", 0}};
    if (!text.empty()) {
        buildMesh(PlyReader(text, record, report).run(), options, model, record, report);
    }
}

} // namespace velmora
