#include "off_import.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "TextScan.h"
#include "binary_numbers.h"
#include "mesh_builder.h"
#include "read_record.h"

namespace velmora {

namespace {

struct OffHeader {
    bool textures = false;
    bool colours = false;
    bool normals = false;
    bool four = false;       ///< a fourth coordinate, by which the others are divided
    bool dimensions = false; ///< a number of dimensions comes first
    bool binary = false;
    std::int64_t points = 0;
    std::int64_t faces = 0;
};

class OffReader {
public:
    OffReader(std::string_view text, FileRead& record) : scan_(text), record_(record) {}

    FileMesh run();

private:
    bool readHeader();
    bool takePrefix(std::string_view word);
    bool readTextCounts();
    bool readBinaryCounts();
    void readText();
    bool takeTextPoint(bool byLines);
    bool takeTextFace(bool byLines);
    bool linesSuffice() const;
    void readBinary();
    void tellRest(bool isRest);
    bool takeBytes(std::size_t count, const char*& bytes);
    void addPoint(const std::array<double, 4>& values);
    void tellCounts(std::int64_t points, std::int64_t faces);
    void tell();

    TextScan scan_;
    FileRead& record_;
    OffHeader header_;
    FileMesh mesh_;
    std::vector<std::int64_t> face_;
    bool faceColours_ = false;
};

FileMesh OffReader::run() {
    if (!scan_.skipComments('#')) {
        return {}; // nothing at all
    }
    if (!readHeader()) {
        record_.losesGeometry("The header is not that of an OFF file");
        return {};
    }
    if (header_.binary) {
        readBinary();
    } else {
        readText();
    }
    tell();
    return std::move(mesh_);
}

bool OffReader::readHeader() {
    const std::size_t start = scan_.tell();
    const std::string_view word = scan_.takeWord();
    if (!takePrefix(word)) {
        scan_.seek(start);
        return isDigit(scan_.peek()) && readTextCounts();
    }
    if (scan_.skipBlanks()) {
        const std::size_t behind = scan_.tell();
        header_.binary = sameWord(scan_.takeWord(), "binary");
        if (header_.binary) {
            scan_.takeLine();
            return readBinaryCounts();
        }
        scan_.seek(behind);
    }
    std::int64_t dimensions = 3;
    if (header_.dimensions && (!scan_.skipComments('#') || !scan_.takeInteger(dimensions) || dimensions != 3)) {
        return false;
    }
    return readTextCounts();
}

// The word "OFF" with what may stand before it.
bool OffReader::takePrefix(std::string_view word) {
    const auto take = [&word](std::string_view prefix) {
        const bool found = word.size() > 3 && word.starts_with(prefix);
        word.remove_prefix(found ? prefix.size() : 0);
        return found;
    };
    header_.textures = take("ST");
    header_.colours = take("C");
    header_.normals = take("N");
    header_.four = take("4");
    header_.dimensions = take("n");
    return sameWord(word, "off");
}

// The number of edges is not needed, and sometimes missing.
bool OffReader::readTextCounts() {
    if (!scan_.skipComments('#') || !scan_.takeInteger(header_.points) || !scan_.skipComments('#') ||
        !scan_.takeInteger(header_.faces)) {
        return false;
    }
    std::int64_t edges = 0;
    if (scan_.skipBlanks()) {
        scan_.takeInteger(edges);
    }
    scan_.takeLine();
    constexpr std::int64_t most = std::int64_t{1} << 53; // no file holds more, and sums of such counts have room
    return header_.points >= 0 && header_.points <= most && header_.faces >= 0 && header_.faces <= most;
}

bool OffReader::readBinaryCounts() {
    const char* bytes = nullptr;
    if (!takeBytes(12, bytes)) {
        return false;
    }
    header_.points = numberAt<std::int32_t>(bytes, true);
    header_.faces = numberAt<std::int32_t>(bytes + 4, true);
    return header_.points >= 0 && header_.faces >= 0;
}

bool OffReader::takeBytes(std::size_t count, const char*& bytes) {
    const std::string_view rest = scan_.rest();
    if (rest.size() < count) {
        return false;
    }
    bytes = rest.data();
    scan_.seek(scan_.tell() + count);
    return true;
}

void OffReader::addPoint(const std::array<double, 4>& values) {
    const double divisor = header_.four ? values[3] : 1.0;
    mesh_.addPoint(values[0] / divisor, values[1] / divisor, values[2] / divisor);
}

/// Whether there is a line for each point and each face: then what else stands on them belongs to them.
bool OffReader::linesSuffice() const {
    TextScan scan = scan_;
    std::int64_t lines = 0;
    while (lines < header_.points + header_.faces && scan.skipComments('#')) {
        scan.takeLine();
        ++lines;
    }
    return lines == header_.points + header_.faces;
}

void OffReader::readText() {
    const bool byLines = header_.colours || header_.normals || header_.textures || linesSuffice();
    std::int64_t points = 0;
    while (points < header_.points && takeTextPoint(byLines)) {
        ++points;
    }
    std::int64_t faces = 0;
    while (points == header_.points && faces < header_.faces && takeTextFace(byLines)) {
        ++faces;
    }
    tellCounts(points, faces);
    tellRest(points == header_.points && faces == header_.faces && scan_.skipComments('#'));
}

bool OffReader::takeTextPoint(bool byLines) {
    std::array<double, 4> values{};
    for (std::size_t i = 0; i < (header_.four ? 4U : 3U); ++i) {
        if (!scan_.skipComments('#') || !scan_.takeNumber(values.at(i))) {
            return false;
        }
    }
    if (!scan_.atWordEnd()) {
        return false; // "0,5", say, of which only the 0 was taken
    }
    addPoint(values);
    if (byLines) {
        scan_.takeLine();
    }
    return true;
}

bool OffReader::takeTextFace(bool byLines) {
    std::int64_t corners = 0;
    if (!scan_.skipComments('#') || !scan_.takeInteger(corners) || corners < 0) {
        return false;
    }
    face_.clear();
    for (std::int64_t corner = 0; corner < corners; ++corner) {
        std::int64_t index = 0;
        if (!scan_.skipComments('#') || !scan_.takeInteger(index)) {
            return false;
        }
        face_.push_back(index);
    }
    if (!scan_.atWordEnd()) {
        return false;
    }
    mesh_.addPolygon(face_);
    if (byLines) {
        faceColours_ = (scan_.skipBlanks() && scan_.peek() != '#') || faceColours_;
        scan_.takeLine();
    }
    return true;
}

void OffReader::readBinary() {
    const std::size_t numbers = (header_.four ? 4U : 3U) + (header_.normals ? 3U : 0U) + (header_.colours ? 4U : 0U) +
                                (header_.textures ? 2U : 0U);
    const char* bytes = nullptr;
    std::int64_t points = 0;
    for (; points < header_.points && takeBytes(4 * numbers, bytes); ++points) {
        std::array<double, 4> values{};
        for (std::size_t i = 0; i < (header_.four ? 4U : 3U); ++i) {
            values.at(i) = realAt(bytes + 4 * i, 4, true);
        }
        addPoint(values);
    }
    std::int64_t faces = 0;
    for (; points == header_.points && faces < header_.faces; ++faces) {
        if (!takeBytes(4, bytes)) {
            break;
        }
        const auto corners = numberAt<std::int32_t>(bytes, true);
        if (corners < 0 || !takeBytes(4 * static_cast<std::size_t>(corners), bytes)) {
            break;
        }
        face_.clear();
        for (std::int32_t corner = 0; corner < corners; ++corner) {
            face_.push_back(numberAt<std::int32_t>(bytes + 4 * std::ptrdiff_t{corner}, true));
        }
        if (!takeBytes(4, bytes)) {
            break;
        }
        const auto colours = numberAt<std::int32_t>(bytes, true);
        if (colours < 0 || !takeBytes(4 * static_cast<std::size_t>(colours), bytes)) {
            break;
        }
        faceColours_ = faceColours_ || colours > 0;
        mesh_.addPolygon(face_);
    }
    tellCounts(points, faces);
    tellRest(points == header_.points && faces == header_.faces && scan_.skipSpace());
}

// Faces beyond the number in the header, say.
void OffReader::tellRest(bool isRest) {
    if (isRest) {
        record_.losesGeometry("What stands behind the last face that the header tells of is not read");
    }
}

// What the header promised counts as found.
void OffReader::tellCounts(std::int64_t points, std::int64_t faces) {
    countOf(record_.found, "points") += header_.points - points;
    countOf(record_.found, "faces") += header_.faces - faces;
    tellMissing(record_, "Points that the file does not have", header_.points - points);
    tellMissing(record_, "Faces that the file does not have", header_.faces - faces);
}

void OffReader::tell() {
    if (header_.colours || faceColours_) {
        record_.losesDetail("Colours are not kept");
    }
    if (header_.textures) {
        record_.losesDetail("Texture coordinates are not kept");
    }
}

} // namespace

void importOff(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report) {
    record.format = "off";
    buildMesh(OffReader(text, record).run(), options, model, record, report);
}

} // namespace velmora
