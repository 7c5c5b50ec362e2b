#include "zVRMLReader.h"

#include <algorithm>
#include <iostream>
#include <span>
#include <utility>

#include "SafeFile.h"
#include "VrmlParser.h"
#include "VrmlScene.h"
#include "format_outcome.h"
#include "patch_text.h"
#include "triangle_zone.h"
#include "zExceptions.h"
#include "zone_files.h"

namespace velmora {

namespace {

constexpr const char* unitName = "zVRMLReader";
constexpr int significantDigits = 6;

void writeNodes(NumberWriter& output, const zBlock_fe& zone, const ZoneCoordinates& nodes) {
    for (std::size_t node = 0; node < static_cast<std::size_t>(std::max(zone.nodeCount, 0)); ++node) {
        writePoint(output, {nodes.x->data[node], nodes.y->data[node], nodes.z->data[node]});
    }
}

void writeElements(NumberWriter& output, const zBlock_fe& zone) {
    forEachTriangle(zone, [&output](const std::int32_t* nodes) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            output.writeInt(nodes[corner]);
            output.writeChar(' ');
        }
        output.writeText("-1\n");
    });
}

/// The numbers of a file of it: coordinates and corners.
std::int64_t numbersOf(const zRegion_fe& region) {
    std::int64_t numbers = 0;
    for (const auto& zone : region.blocks) {
        numbers += 3 * (std::int64_t{zone->nodeCount} + zone->elementCount);
    }
    return numbers;
}

// False when the zone has no coordinates to write.
bool writeShape(NumberWriter& output, const zBlock_fe& zone) {
    const ZoneCoordinates nodes = coordinatesOf(zone.variables);
    if (!nodes || !coversNodes(*nodes.x, zone) || !coversNodes(*nodes.y, zone) || !coversNodes(*nodes.z, zone)) {
        return false;
    }
    output.writeText("Shape {\n"
                     "  appearance Appearance {\n"
                     "    material Material {}\n"
                     "  }\n"
                     "  geometry IndexedFaceSet {\n"
                     "    coord Coordinate {\n"
                     "      point [\n");
    writeNodes(output, zone, nodes);
    output.writeText("      ]\n"
                     "    }\n"
                     "    coordIndex [\n");
    writeElements(output, zone);
    output.writeText("    ]\n"
                     "  }\n"
                     "}\n");
    return true;
}

} // namespace

void zVRMLReader::read(const std::filesystem::path& fileName, zRegion_fe& region) {
    TextStream input(fileName, blockSize_);
    if (!input.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    beginRecord(record, fileName, input, "wrl", {"faceSets"});
    wideFaces_ = 0;
    shifted_ = 0;
    dropped_.clear();
    firstNotUnderstood_.clear();
    input.reportTo(report);
    VrmlParser parser(input);
    parser.readHeader();
    readNodes(parser, input, region);
    if (input.readFailed()) {
        throw IOError(unitName, __LINE__, unreadText(input));
    }
    noteLosses();
    parser.scene().note(record);
    if (region.title.empty()) {
        region.title = parser.scene().title();
    }
    noteJoinedNumbers(record, input);
}

void zVRMLReader::readNodes(VrmlParser& parser, TextStream& input, zRegion_fe& region) {
    std::int64_t& found = countOf(record.found, "faceSets");
    for (int number = 1; !input.eof(); ++number) {
        points_.clear();
        polygons_.clear();
        triangles_.clear();
        bool within = false;
        try {
            parser.findNode();
            ++found;
            within = true;
            parser.parseNode(points_, polygons_);
        } catch (const EOFError&) {
            dropped_["the file ends within it"] += within ? 1 : 0;
            return;
        } catch (const ParseError& error) {
            std::cerr << error.message() << '\n';
            noteParseError(parser, input);
            continue;
        }
        takeNode(number, parser, region);
    }
}

void zVRMLReader::noteParseError(const VrmlParser& parser, TextStream& input) {
    if (parser.metComma()) {
        ++dropped_["commas between numbers"];
        return;
    }
    if (firstNotUnderstood_.empty()) {
        firstNotUnderstood_ = "not understood, the first in " + lineText(input);
    }
    ++dropped_[firstNotUnderstood_];
}

void zVRMLReader::noteLosses() {
    const std::int64_t found = countOf(record.found, "faceSets");
    if (found == 0) {
        record.losesGeometry("No face set stands in the file");
    }
    std::string reasons;
    for (const auto& [reason, count] : dropped_) {
        if (count > 0) {
            reasons += (reasons.empty() ? "" : "; ") + reason + (count > 1 && count < found ? ": " : "") +
                       (count > 1 && count < found ? std::to_string(count) : "");
        }
    }
    if (!reasons.empty()) {
        record.losesGeometry("Face sets: " + std::to_string(found) +
                             ", kept: " + std::to_string(countOf(record.kept, "faceSets")) + " (" + reasons + ")");
    }
    if (shifted_ > 0) {
        record.losesGeometry("Face sets whose numbers are not three for each point: " + std::to_string(shifted_));
    }
    if (wideFaces_ > 0) {
        record.alters("Faces of more than three corners: " + std::to_string(wideFaces_) + ", made triangles");
    }
}

// The face that ends the reading: the first with fewer than three corners or one that is no point.
void zVRMLReader::noteBadFace(int number) {
    const auto points = static_cast<std::int64_t>(points_.size());
    for (std::size_t polygon = 0; polygon < polygons_.size(); ++polygon) {
        const std::span<const std::int64_t> corners = polygons_[polygon];
        const auto bad = std::find_if(corners.begin(), corners.end(),
                                      [points](std::int64_t corner) { return corner < 0 || corner >= points; });
        if (corners.size() < 3 || bad != corners.end()) {
            record.losesGeometry(
                "Face set " + std::to_string(number) + ", face " + std::to_string(polygon + 1) +
                (bad != corners.end() ? ": there is no point " + std::to_string(*bad) : ": fewer than three corners"));
            return;
        }
    }
}

void zVRMLReader::takeNode(int number, const VrmlParser& parser, zRegion_fe& region) {
    if (points_.empty() || polygons_.empty()) {
        ++dropped_[parser.metReference() ? "points by DEF or USE" : points_.empty() ? "no points" : "no faces"];
        return;
    }
    for (std::size_t polygon = 0; polygon < polygons_.size(); ++polygon) {
        wideFaces_ += polygons_[polygon].size() > 3 ? 1 : 0;
    }
    try {
        triangulateAll(points_, polygons_, triangles_);
    } catch (const GenericError&) {
        noteBadFace(number);
        throw;
    }
    std::unique_ptr<zBlock_fe> zone =
        makeTriangleZone(std::move(points_), triangles_, "Zone_" + std::to_string(number));
    if (zone == nullptr) {
        throw SystemError(unitName, __LINE__);
    }
    region.blocks.push_back(std::move(zone));
    countOf(record.kept, "faceSets") += 1;
    shifted_ += parser.metPartOfPoint() ? 1 : 0;
}

WriteOutcome zVRMLReader::write(const std::filesystem::path& fileName, const zRegion_fe& region) const {
    requireFinite(region, unitName);
    SafeFile file(fileName);
    if (!file.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    NumberWriter output(file, significantDigits, NumberNotation::General);
    output.reportTo(report, numbersOf(region));
    output.writeText("#VRML V2.0 utf8\n"
                     "WorldInfo {\n"
                     "  info ");
    output.writeQuoted(writtenInfo);
    output.writeText("\n  title ");
    output.writeQuoted(region.title);
    output.writeText("\n}\n");
    std::int64_t shapes = 0;
    for (const auto& zone : region.blocks) {
        shapes += writeShape(output, *zone) ? 1 : 0;
    }
    if (!output.flush() || !file.commit()) {
        throw FileError(unitName, __LINE__);
    }
    WriteOutcome outcome = outcomeOf(file, fileName, "wrl");
    outcome.record.counts = {{"faceSets", shapes}};
    return outcome;
}

} // namespace velmora
