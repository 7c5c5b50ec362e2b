#include "zSTLReader.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "SafeFile.h"
#include "patch_text.h"
#include "triangle_zone.h"
#include "vectors.h"
#include "zExceptions.h"

namespace velmora {

namespace {

constexpr const char* unitName = "zSTLReader";
constexpr int significantDigits = 6;
/// A normal and three corners.
constexpr std::int64_t numbersOfFacet = 12;

std::int64_t elementCount(const zRegion_fe& region) {
    std::int64_t elements = 0;
    for (const auto& zone : region.blocks) {
        elements += zone->elementCount;
    }
    return elements;
}

bool readThree(TextStream& input, std::array<double, 3>& values) {
    return input.readDouble(values[0]) && input.readDouble(values[1]) && input.readDouble(values[2]) && input.good();
}

bool hasCoordinates(const zBlock_fe& zone) {
    return zone.variables.size() >= 3 &&
           std::all_of(zone.variables.begin(), zone.variables.begin() + 3,
                       [&zone](const auto& variable) { return coversNodes(*variable, zone); });
}

zVec<double> nodeOf(const zBlock_fe& zone, std::int32_t node) {
    const auto index = static_cast<std::size_t>(node);
    return {zone.variables[0]->data[index], zone.variables[1]->data[index], zone.variables[2]->data[index]};
}

} // namespace

void zSTLReader::read(const std::filesystem::path& fileName, zRegion_fe& region) {
    TextStream input(fileName, blockSize_);
    if (!input.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    input.reportTo(report);
    std::string_view word;
    while (input.readWord(word)) {
        if (word == "solid") {
            readSolid(input, region);
        }
    }
}

// A solid without a name takes its first "facet" for one, and that facet is lost; an end without a name takes the next
// "solid". Both are wanted.
void zSTLReader::readSolid(TextStream& input, zRegion_fe& region) {
    std::string title;
    input.readWord(title);
    vertices_.clear();
    faces_.clear();
    readFacets(input);
    std::string_view nameAtEnd;
    input.readWord(nameAtEnd);
    if (vertices_.empty()) {
        return;
    }
    std::unique_ptr<zBlock_fe> zone = makeTriangleZone(std::move(vertices_), faces_, title);
    if (zone == nullptr) {
        throw SystemError(unitName, __LINE__);
    }
    region.blocks.push_back(std::move(zone));
}

void zSTLReader::readFacets(TextStream& input) {
    std::string_view word;
    while (input.readWord(word) && word != "endsolid") {
        if (word == "facet" && !readFacet(input)) {
            input.clear(); // a damaged facet is dropped in silence
        }
    }
}

// False when a number is damaged or the file ends within the facet. The words between the numbers are not looked at,
// but for the one that ends the loop.
bool zSTLReader::readFacet(TextStream& input) {
    std::array<double, 3> triple{};
    std::string_view word;
    input.readWord(word);
    if (!readThree(input, triple)) {
        return false;
    }
    input.readWord(word);
    input.readWord(word);
    corners_.clear();
    while (!input.readWord(word) || word != "endloop") {
        if (!readThree(input, triple)) {
            return false;
        }
        corners_.push_back(triple);
    }
    if (corners_.size() >= 3) {
        takeFacet();
    }
    input.readWord(word);
    return true;
}

void zSTLReader::takeFacet() {
    const auto first = static_cast<std::int64_t>(vertices_.size());
    polygon_.assignRange(first, first + static_cast<std::int64_t>(corners_.size()));
    for (const std::array<double, 3>& corner : corners_) {
        vertices_.append(corner[0], corner[1], corner[2]);
    }
    triangulate(vertices_, polygon_, faces_);
}

void zSTLReader::write(const std::filesystem::path& fileName, const zRegion_fe& region) {
    SafeFile file(fileName);
    if (!file.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    NumberWriter output(file, significantDigits, NumberNotation::General);
    output.reportTo(report, numbersOfFacet * elementCount(region));
    for (const auto& zone : region.blocks) {
        writeSolid(output, *zone);
    }
    if (!output.flush() || !file.commit()) {
        throw FileError(unitName, __LINE__);
    }
}

void zSTLReader::writeSolid(NumberWriter& output, const zBlock_fe& zone) {
    output.writeText("solid ");
    output.writeText(zone.title);
    output.writeChar('\n');
    if (hasCoordinates(zone)) {
        forEachTriangle(zone, [&](const std::int32_t* nodes) {
            writeFacet(output, {nodeOf(zone, nodes[0]), nodeOf(zone, nodes[1]), nodeOf(zone, nodes[2])});
        });
    }
    output.writeText("endsolid ");
    output.writeText(zone.title);
    output.writeChar('\n');
}

// The normal points against the right-hand rule on the corners as written; this is wanted.
void zSTLReader::writeFacet(NumberWriter& output, const std::array<zVec<double>, 3>& corners) {
    zVec<double> normal = cross(corners[2] - corners[0], corners[1] - corners[0]);
    try {
        normal = scale(normal, 1.0 / lengthOf(normal));
    } catch (const ValueError&) {
        ++skippedFacets_;
        return;
    }
    output.writeText("  facet normal ");
    writePoint(output, normal);
    output.writeText("    outer loop\n");
    for (const zVec<double>& corner : corners) {
        output.writeText("      vertex ");
        writePoint(output, corner);
    }
    output.writeText("    endloop\n  endfacet\n");
}

} // namespace velmora
