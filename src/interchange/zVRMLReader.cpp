#include "zVRMLReader.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "SafeFile.h"
#include "VrmlParser.h"
#include "patch_text.h"
#include "triangle_zone.h"
#include "zExceptions.h"

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

void writeShape(NumberWriter& output, const zBlock_fe& zone) {
    const ZoneCoordinates nodes = coordinatesOf(zone.variables);
    if (!nodes || !coversNodes(*nodes.x, zone) || !coversNodes(*nodes.y, zone) || !coversNodes(*nodes.z, zone)) {
        return;
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
}

} // namespace

void zVRMLReader::read(const std::filesystem::path& fileName, zRegion_fe& region) {
    TextStream input(fileName, blockSize_);
    if (!input.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    input.reportTo(report);
    VrmlParser parser(input);
    parser.readHeader();
    for (int number = 1; !input.eof(); ++number) {
        points_.clear();
        polygons_.clear();
        triangles_.clear();
        try {
            parser.findNode();
            parser.parseNode(points_, polygons_);
        } catch (const EOFError&) {
            return;
        } catch (const ParseError& error) {
            std::cerr << error.message() << '\n';
            continue;
        }
        takeNode(number, region);
    }
}

void zVRMLReader::takeNode(int number, zRegion_fe& region) {
    if (points_.empty() || polygons_.empty()) {
        return;
    }
    triangulateAll(points_, polygons_, triangles_);
    std::unique_ptr<zBlock_fe> zone =
        makeTriangleZone(std::move(points_), triangles_, "Zone_" + std::to_string(number));
    if (zone == nullptr) {
        throw SystemError(unitName, __LINE__);
    }
    region.blocks.push_back(std::move(zone));
}

void zVRMLReader::write(const std::filesystem::path& fileName, const zRegion_fe& region) const {
    SafeFile file(fileName);
    if (!file.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    NumberWriter output(file, significantDigits, NumberNotation::General);
    output.reportTo(report, numbersOf(region));
    output.writeText("#VRML V2.0 utf8\n"
                     "WorldInfo {\n"
                     "  info \"VRML97: The Virtual Reality Modeling Language International Standard ISO/IEC 14772\"\n"
                     "  title ");
    output.writeQuoted(region.title);
    output.writeText("\n}\n");
    for (const auto& zone : region.blocks) {
        writeShape(output, *zone);
    }
    if (!output.flush() || !file.commit()) {
        throw FileError(unitName, __LINE__);
    }
}

} // namespace velmora
