#include "field_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "FieldLosses.h"
#include "NumberReader.h"
#include "apt.h"
#include "characters.h"
#include "patch_text.h"
#include "thinning.h"

namespace velmora {

namespace {

constexpr std::int32_t unread = -1;

// What a buffer for the line shows as its text; false when that is nothing.
bool takeBufferLine(TextStream& stream, std::string& line) {
    stream.getline(line, NumberReader::lineLimit);
    line.resize(std::min(line.find('\0'), line.size()));
    return !line.empty();
}

// None when the quotes do not pair or their pairs are less than the coordinates or too many.
std::optional<std::int32_t> countFields(std::string_view variablesLine) {
    constexpr std::int32_t coordinateQuotes = 6;
    const auto quotes = static_cast<std::int32_t>(std::count(variablesLine.begin(), variablesLine.end(), '"'));
    if (quotes % 2 != 0 || quotes < coordinateQuotes || quotes > coordinateQuotes + 2 * maxFieldCount) {
        return std::nullopt;
    }
    return (quotes - coordinateQuotes) / 2;
}

// What stands behind `key` up to a comma, without blanks and the plus sign before it.
std::string_view textBehind(std::string_view line, std::string_view key, std::size_t mostCharacters) {
    const std::size_t place = line.find(key);
    if (place == std::string_view::npos) {
        return {};
    }
    std::string_view text = line.substr(place + key.size(), mostCharacters);
    text = text.substr(0, text.find(','));
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    if (text.size() > 1 && text[0] == '+' && isDigit(text[1])) {
        text.remove_prefix(1);
    }
    return text;
}

// The integer behind `key`, or `unread`.
std::int32_t countBehind(std::string_view line, std::string_view key) {
    constexpr std::size_t mostCharacters = 5;
    const std::string_view text = textBehind(line, key, mostCharacters);
    std::int32_t value = unread;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// The number behind `key` as it stands there, where `count` is but a beginning of it; else empty.
std::string_view longerNumber(std::string_view line, std::string_view key, std::int32_t count) {
    const std::string_view text = textBehind(line, key, std::string_view::npos);
    const auto* const word = std::find_if(text.begin(), text.end(), [](char c) { return !isDigit(c) && c != '-'; });
    std::int32_t whole = unread;
    const auto [end, error] = std::from_chars(text.begin(), word, whole);
    const bool goesOn = word != text.end() && (*word == '.' || *word == 'e' || *word == 'E');
    if (error == std::errc() && whole == count && !goesOn) {
        return {};
    }
    return {text.begin(),
            static_cast<std::size_t>(std::find_if(word, text.end(), [](char c) { return isSpace(c); }) - text.begin())};
}

struct FieldHeader {
    explicit FieldHeader(std::string_view line) : points(countBehind(line, "I=")), sections(countBehind(line, "J=")) {}

    bool isGood() const { return points != unread && sections != unread; }
    bool holdsPoints() const { return points > 0 && sections > 0; }

    std::int32_t points; // per section
    std::int32_t sections;
};

class FieldReader {
public:
    FieldReader(const std::filesystem::path& path, FieldReadResult& result, const ReportProgress& report)
        : stream_(path), path_(path), result_(result) {
        stream_.reportTo(report);
    }

    void run();

private:
    bool readHead();
    bool readZone();
    void noteLongerNumber(std::string_view key, std::int32_t count);
    bool readPatch(const FieldHeader& header, Patch& patch, Patch& field);
    bool readSection(std::int32_t points);
    bool readValues(zVec<double>& values);
    void passRestOfLine();
    bool fail(FormatFaultKind kind, const std::string& reason);
    void noteEnd();

    TextStream stream_;
    std::filesystem::path path_;
    FieldReadResult& result_;
    std::int64_t compartment_ = 0;
    std::string line_;
    FieldLosses losses_;
    BareSections bareSections_;
    PointList section_; // those in hand; a patch gets copies of just their size
    PointList fieldSection_;
};

bool FieldReader::fail(FormatFaultKind kind, const std::string& reason) {
    const bool diskFailed = stream_.readFailed();
    result_.faults.push_back({diskFailed ? FormatFaultKind::Unread : kind, compartment_, 1});
    result_.record.losesGeometry(diskFailed ? unreadText(stream_)
                                            : "Zone " + std::to_string(compartment_) + ": " + reason);
    losses_.noteGeometry(result_.record);
    return false;
}

void FieldReader::run() {
    if (!readHead()) {
        return;
    }
    for (compartment_ = 1; takeBufferLine(stream_, line_); ++compartment_) {
        countOf(result_.record.found, "zones") = compartment_;
        if (!readZone()) {
            result_.patches.clear();
            result_.fieldPatches.clear();
            return;
        }
    }
    if (stream_.readFailed()) {
        fail(FormatFaultKind::Unread, {});
        result_.patches.clear();
        result_.fieldPatches.clear();
        return;
    }
    result_.loaded = true;
    noteEnd();
}

void FieldReader::noteEnd() {
    FileRead& record = result_.record;
    stream_.clear();
    result_.textBehind = stream_.skipSpace();
    if (result_.textBehind) {
        record.losesGeometry("No header of a zone stands before " + lineText(stream_) +
                             ": what follows there is not read");
    }
    if (countOf(record.found, "zones") == 0 && !result_.textBehind) {
        record.losesGeometry("No zone stands in the file");
    }
    losses_.noteGeometry(record);
    losses_.noteDetails(record);
    record.kept = record.found;
    noteJoinedNumbers(record, stream_);
}

bool FieldReader::readHead() {
    result_.opened = stream_.isOpen();
    if (!result_.opened) {
        result_.faults.push_back({FormatFaultKind::CannotOpen, compartment_, 1});
        return false;
    }
    beginRecord(result_.record, path_, stream_, "field", {"zones", "points", "variables"});
    takeBufferLine(stream_, result_.titleLine);
    takeBufferLine(stream_, result_.variablesLine);
    const std::optional<std::int32_t> fields = countFields(result_.variablesLine);
    if (!fields) {
        result_.faults.push_back(
            {stream_.readFailed() ? FormatFaultKind::Unread : FormatFaultKind::Variables, compartment_, 1});
        if (stream_.size() > 0) {
            result_.record.losesGeometry("Line 2 does not name three coordinates and up to three values in quotes");
        }
        return false;
    }
    result_.fieldCount = *fields;
    countOf(result_.record.found, "variables") = 3 + *fields;
    losses_.takeVariables(result_.variablesLine);
    return true;
}

// The zone of the header in `line_`.
bool FieldReader::readZone() {
    const FieldHeader header(line_);
    if (!header.isGood() || !bareSections_.accepts(header.sections, header.points)) {
        return fail(FormatFaultKind::Header, "no counts I= and J= that can be used stand before " + lineText(stream_));
    }
    losses_.takeZone(line_);
    noteLongerNumber("I=", header.points);
    noteLongerNumber("J=", header.sections);
    Patch patch;
    Patch field;
    const bool whole = readPatch(header, patch, field);
    countOf(result_.record.found, "points") += pointCountOf({&patch});
    if (!whole) {
        return fail(FormatFaultKind::Body, "no point can be read in " + lineText(stream_));
    }
    result_.patches.push_back(std::move(patch));
    result_.fieldPatches.push_back(std::move(field));
    if (header.holdsPoints()) { // else the line in hand is the header, which has no rest
        passRestOfLine();
    }
    return true;
}

// The header holds more than a count can tell: what follows is not read as it is meant.
void FieldReader::noteLongerNumber(std::string_view key, std::int32_t count) {
    const std::string_view number = longerNumber(line_, key, count);
    if (!number.empty()) {
        result_.record.losesGeometry("Zone " + std::to_string(compartment_) + ": " + std::string(key) +
                                     std::string(number) + " is read as " + std::to_string(count) +
                                     ": a count is a whole number of at most " + std::to_string(maxZoneCount));
    }
}

// What stands behind the last number in its line is not read: the mark of another language's exponent, say, which made
// the number another one, or a value that has no variable.
void FieldReader::passRestOfLine() {
    const std::string place = lineText(stream_);
    std::string rest;
    stream_.getline(rest, NumberReader::lineLimit);
    if (!std::all_of(rest.begin(), rest.end(), [](char c) { return isSpace(c); })) {
        result_.record.losesGeometry("Zone " + std::to_string(compartment_) +
                                     ": what stands behind its last number in " + place + " is not read");
    }
}

bool FieldReader::readPatch(const FieldHeader& header, Patch& patch, Patch& field) {
    for (std::int32_t n = 0; n < header.sections; ++n) {
        if (!readSection(header.points)) {
            return false;
        }
        patch.push_back(section_);
        field.push_back(fieldSection_);
    }
    return true;
}

bool FieldReader::readSection(std::int32_t points) {
    section_.clear();
    fieldSection_.clear();
    zVec<double> point;
    zVec<double> values;
    for (std::int32_t m = 0; m < points; ++m) {
        if (!readPoint(stream_, point) || !readValues(values)) {
            return false;
        }
        section_.push_back(point);
        fieldSection_.push_back(values);
    }
    return true;
}

bool FieldReader::readValues(zVec<double>& values) {
    const std::array<double*, maxFieldCount> places{&values.x, &values.y, &values.z};
    return std::all_of(places.begin(), places.begin() + result_.fieldCount,
                       [this](double* place) { return stream_.readDouble(*place); });
}

// A place that the list does not have holds zeros.
zVec<double> valuesAt(const PatchList& field, std::size_t k, std::size_t n, std::size_t m) {
    const bool exists = k < field.size() && n < field[k].size() && m < field[k][n].size();
    return exists ? field[k][n][m] : zVec<double>();
}

// What in the file that would be written could not be read again; empty when there is nothing.
std::string whyNotReadable(const PatchList& patches, const PatchList& field) {
    for (std::size_t k = 0; k < patches.size(); ++k) {
        const std::int32_t most = std::max(countOf(patches[k]), lineCount(patches[k]));
        if (most > maxZoneCount) {
            return "Patch " + std::to_string(k + 1) + " has " + std::to_string(most) +
                   " points in a direction: a header of a field file tells no more than " +
                   std::to_string(maxZoneCount);
        }
    }
    const std::string point = placeNotFinite(patches, selectAll(patches));
    const std::string value = placeNotFinite(field, selectAll(field));
    return !point.empty()   ? refuseNotFinite(point).problem
           : !value.empty() ? refuseNotFinite(value + " of the field").problem
                            : std::string();
}

void writeZoneHeader(NumberWriter& writer, std::size_t k, const Patch& patch) {
    writer.writeText("ZONE  T=\"ZONE_");
    writer.writeInt(static_cast<std::int64_t>(k));
    writer.writeText("\",I=");
    writer.writeInt(lineCount(patch));
    writer.writeText(",J=");
    writer.writeInt(countOf(patch));
    writer.writeText(",K=1,F= POINT\n");
}

void writeFieldPoint(NumberWriter& writer, const zVec<double>& point, const zVec<double>& values,
                     std::int32_t fieldCount) {
    const std::array<double, 3 + maxFieldCount> numbers{point.x, point.y, point.z, values.x, values.y, values.z};
    for (std::int32_t i = 0; i < 3 + fieldCount; ++i) {
        if (i > 0) {
            writer.writeChar(' ');
        }
        writer.writeDouble(numbers[static_cast<std::size_t>(i)]);
    }
    writer.writeChar('\n');
}

void writeZone(NumberWriter& writer, std::size_t k, const Patch& patch, const PatchList& field,
               std::int32_t fieldCount) {
    writeZoneHeader(writer, k, patch);
    const auto points = static_cast<std::size_t>(lineCount(patch));
    for (std::size_t n = 0; n < patch.size(); ++n) {
        for (std::size_t m = 0; m < points; ++m) {
            writeFieldPoint(writer, patch[n][m], valuesAt(field, k, n, m), fieldCount);
        }
    }
}

} // namespace

FieldReadResult readFieldFile(const std::filesystem::path& path, const ReportProgress& report) {
    FieldReadResult result;
    FieldReader(path, result, report).run();
    return result;
}

WriteOutcome writeFieldFile(const std::filesystem::path& path, const PatchList& patches, const PatchList& field,
                            std::int32_t fieldCount, std::string_view titleLine, std::string_view variablesLine,
                            int precision, const ReportProgress& report) {
    if (!std::all_of(patches.begin(), patches.end(), holdsGrid)) {
        return {};
    }
    const std::int32_t fields = std::clamp(fieldCount, 0, maxFieldCount);
    WriteOutcome outcome;
    outcome.problem = whyNotReadable(patches, field);
    if (!outcome.problem.empty()) {
        return outcome;
    }
    const auto write = [&](NumberWriter& writer) {
        for (const std::string_view line : {titleLine, variablesLine}) {
            writer.writeText(line);
            writer.writeChar('\n');
        }
        for (std::size_t k = 0; k < patches.size(); ++k) {
            writeZone(writer, k, patches[k], field, fields);
        }
    };
    const std::int64_t points = pointCountOf(selectAll(patches));
    outcome = saveText(path, precision, write, report, (3 + fields) * points);
    outcome.record.format = "field";
    outcome.record.counts = {{"zones", countOf(patches)}, {"points", points}, {"variables", 3 + fields}};
    return outcome;
}

std::string fieldMessage(const FormatFault& fault) {
    // A field file's zones are told of as those of an .apt file.
    return fault.kind == FormatFaultKind::Variables ? std::string(wrongVariablesMessage) : aptMessage(fault);
}

} // namespace velmora
