#include "zTecplotReader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include "TecplotHeaderParser.h"
#include "TecplotHeaderScan.h"
#include "TecplotZoneData.h"
#include "TextStream.h"
#include "characters.h"
#include "format_outcome.h"
#include "letter_case.h"
#include "name_list.h"
#include "tecplot_unit.h"
#include "tecplot_writer.h"
#include "zExceptions.h"
#include "zone_conversion.h"

namespace velmora {

namespace {

/// How records begin that may stand between zones and hold no points.
constexpr std::array<std::string_view, 7> recordsWithoutGeometry{
    "TEXT", "GEOMETRY", "CUSTOMLABELS", "DATASETAUXDATA", "VARAUXDATA", "TITLE", "VARIABLES"};

/// What of a file is no zone of a model, or another than it was.
struct TecplotLosses {
    std::int64_t layered = 0;      // grids of several layers, of which the first is a surface
    std::int64_t withoutLayer = 0; // grids without K=: no point of them is read
    std::int64_t narrow = 0;       // grids less than 2 points wide
    std::int64_t otherElements = 0;
    std::int64_t quadrilaterals = 0;
    std::int64_t titles = 0;
};

// One file on its way into two regions.
class TecplotFile {
public:
    TecplotFile(const std::filesystem::path& path, bool coordinatesOnly, const ReportProgress& report, FileRead& record)
        : stream_(path), data_(stream_, header_, coordinatesOnly), coordinatesOnly_(coordinatesOnly), record_(record) {
        if (!stream_.isOpen()) {
            throw FileError(tecplotUnit, __LINE__);
        }
        beginRecord(record, path, stream_, "dat", {"zones", "points", "variables"});
        stream_.reportTo(report);
    }

    const std::string& title() const { return header_.title; }

    void read(zRegion& structured, zRegion_fe& unstructured) {
        try {
            readZones(structured, unstructured);
        } catch (...) {
            // The zone at hand is in the file; of its points its header alone tells, which may be wrong.
            countOf(record_.found, "zones") += zoneBegun_ ? 1 : 0;
            countOf(record_.found, "variables") = static_cast<std::int64_t>(header_.variables.size());
            throw;
        }
        if (stream_.readFailed()) {
            throw IOError(tecplotUnit, __LINE__, unreadText(stream_));
        }
        noteLosses(!structured.blocks.empty() && !unstructured.blocks.empty());
    }

private:
    void readZones(zRegion& structured, zRegion_fe& unstructured) {
        while (stream_.good()) {
            const std::string& header = scan_.next();
            zoneBegun_ = header.find("ZONE") != std::string::npos;
            if (parser_.parse(header)) {
                // Counted here, between header and data: an error in the data of the first zone speaks of zone 2.
                ++header_.zoneNumber;
                readZone(structured, unstructured);
                zoneBegun_ = false;
                lookBehindZone();
            } else if (stream_.good()) {
                record_.losesGeometry("Numbers that belong to no zone are not read, from " + lineText(stream_) + " on");
            }
            skipToTecplotZone(stream_);
        }
    }

    void count(const char* kind, std::int64_t found, bool kept) {
        countOf(record_.found, kind) += found;
        countOf(record_.kept, kind) += kept ? found : 0;
    }

    // A grid is a surface by its first layer.
    void countGrid(bool kept) {
        const TecplotZoneHeader& zone = header_.zone;
        const std::int64_t layer = std::int64_t{zone.i} * zone.j;
        const bool withoutLayer = layer > 0 && zone.k == 0;
        losses_.withoutLayer += withoutLayer ? 1 : 0;
        losses_.narrow += !kept && !withoutLayer ? 1 : 0;
        losses_.layered += kept && zone.k > 1 ? 1 : 0;
        losses_.titles += kept && zone.title != "z" && zone.title != TecplotZoneHeader().title ? 1 : 0;
        count("zones", 1, kept && !withoutLayer);
        countOf(record_.found, "points") += layer * std::max<std::int64_t>(zone.k, 1);
        countOf(record_.kept, "points") += kept && !withoutLayer ? layer : 0;
    }

    void countElements(bool kept) {
        const TecplotZoneHeader& zone = header_.zone;
        losses_.otherElements += kept ? 0 : 1;
        losses_.quadrilaterals += zone.type == TecplotZoneType::Quadrilaterals ? zone.elements : 0;
        count("zones", 1, kept);
        count("points", zone.nodes, kept);
    }

    // What stands behind the numbers that a zone's header tells of is passed over, up to the next "ZONE" in capitals.
    void lookBehindZone() {
        if (!stream_.good() || !stream_.skipSpace()) {
            return;
        }
        const int c = stream_.peek();
        if (isDigit(c) || isSign(c) || c == '.') {
            record_.losesGeometry("Zone " + std::to_string(countOf(record_.found, "zones")) +
                                  ": more numbers than its header tells of, from " + lineText(stream_) + " on");
        } else if (c == 'z') {
            record_.losesGeometry("A zone in small letters is not read, in " + lineText(stream_));
        } else if (c != '#') {
            lookAtWord();
        }
    }

    /// A word between zones may begin a record that holds no geometry. Any other may be what is left of a zone's
    /// header.
    void lookAtWord() {
        const std::int64_t place = stream_.tell();
        std::string word;
        stream_.readWord(word);
        stream_.clear();
        stream_.seek(place);
        if (upperCase(word) == "ZONE") {
            return;
        }
        const auto begins = [&word](std::string_view record) { return word.starts_with(record); };
        const std::string reason = "What stands between zones is not read, in " + lineText(stream_);
        if (std::any_of(recordsWithoutGeometry.begin(), recordsWithoutGeometry.end(), begins)) {
            record_.losesDetail(reason);
        } else {
            record_.losesGeometry(reason);
        }
    }

    void noteLosses(bool mixed) {
        const std::string zones = "Zones: " + std::to_string(countOf(record_.found, "zones"));
        const auto lose = [&](std::int64_t number, const std::string& why) {
            if (number > 0) {
                record_.losesGeometry(zones + ", " + why);
            }
        };
        if (countOf(record_.found, "zones") == 0 && record_.bytes > 0) {
            record_.losesGeometry("No zone stands in the file");
        }
        lose(losses_.layered, losses_.layered == countOf(record_.found, "zones")
                                  ? "only the first layer of each is a surface"
                                  : "only the first layer of " + std::to_string(losses_.layered) + " is a surface");
        lose(losses_.withoutLayer, std::to_string(losses_.withoutLayer) + " without K= in their header are not read");
        lose(losses_.narrow, std::to_string(losses_.narrow) + " less than 2 points wide are no surface");
        lose(losses_.otherElements, std::to_string(losses_.otherElements) + " of lines or volumes are no surface");
        noteDetails(mixed);
        noteJoinedNumbers(record_, stream_);
    }

    void noteDetails(bool mixed) {
        const auto variables = static_cast<std::int64_t>(header_.variables.size());
        countOf(record_.found, "variables") = variables;
        countOf(record_.kept, "variables") = coordinatesOnly_ ? std::min<std::int64_t>(variables, 3) : variables;
        if (coordinatesOnly_ && variables > 3) {
            record_.losesDetail("Variables: " + std::to_string(variables) + ", only x, y and z are kept");
        }
        if (losses_.titles > 0) {
            record_.losesDetail("Titles of zones that patches do not have: " + std::to_string(losses_.titles));
        }
        if (!header_.passedOver.empty()) {
            record_.losesDetail("Values of headers that are not kept: " + listOf(header_.passedOver));
        }
        if (losses_.quadrilaterals > 0) {
            record_.alters("Quadrilaterals: " + std::to_string(losses_.quadrilaterals) + ", made triangles");
        }
        if (mixed) {
            record_.alters("Grids beside zones of triangles are made triangles");
        }
    }

    void readZone(zRegion& structured, zRegion_fe& unstructured) {
        const TecplotZoneType type = header_.zone.type;
        try {
            if (type == TecplotZoneType::Ordered) {
                auto zone = data_.readOrdered(scan_.zoneStart());
                countGrid(zone != nullptr);
                if (zone != nullptr) {
                    structured.blocks.push_back(std::move(zone));
                }
            } else if (type == TecplotZoneType::Triangles || type == TecplotZoneType::Quadrilaterals) {
                unstructured.blocks.push_back(data_.readTriangles(scan_.zoneStart()));
                countElements(true);
            } else {
                data_.skip(scan_.zoneStart());
                countElements(false);
            }
        } catch (const std::bad_alloc&) {
            throw SystemError(tecplotUnit, __LINE__);
        }
    }

    TextStream stream_;
    TecplotHeader header_;
    TecplotHeaderScan scan_{stream_};
    TecplotHeaderParser parser_{header_};
    TecplotZoneData data_;
    bool coordinatesOnly_;
    bool zoneBegun_ = false; // its header was seen, and it is not counted yet
    FileRead& record_;
    TecplotLosses losses_;
};

} // namespace

void zTecplotReader::read(const std::filesystem::path& fileName, zRegion& structured, zRegion_fe& unstructured,
                          bool coordinatesOnly) {
    TecplotFile file(fileName, coordinatesOnly, report, record);
    file.read(structured, unstructured);
    if (!structured.blocks.empty() && !unstructured.blocks.empty()) {
        regionToSurface(structured, unstructured);
        structured.blocks.clear();
    }
    if (!structured.blocks.empty()) {
        structured.title = file.title();
    } else if (!unstructured.blocks.empty()) {
        unstructured.title = file.title();
    }
}

WriteOutcome zTecplotReader::write(const std::filesystem::path& fileName, std::int32_t precision) const {
    static const zRegion none;
    if (structuredTarget != nullptr && !structuredTarget->blocks.empty()) {
        return writeTecplot(fileName, *structuredTarget, precision, report);
    }
    if (unstructuredTarget != nullptr && !unstructuredTarget->blocks.empty()) {
        return writeTecplot(fileName, *unstructuredTarget, precision, report);
    }
    return writeTecplot(fileName, none, precision, report);
}

} // namespace velmora
