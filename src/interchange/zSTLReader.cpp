#include "zSTLReader.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "SafeFile.h"
#include "format_outcome.h"
#include "large_memory.h"
#include "patch_text.h"
#include "triangle_zone.h"
#include "vectors.h"
#include "zExceptions.h"
#include "zone_files.h"

namespace velmora {

namespace {

constexpr const char* unitName = "zSTLReader";
constexpr int significantDigits = 6;
/// A normal and three corners.
constexpr std::int64_t numbersOfFacet = 12;
/// Bytes of the binary form: what stands before the facets of a solid, and one of them.
constexpr std::size_t binaryHeader = 84;
constexpr std::int64_t binaryFacet = 50;
/// So many facets of a solid tell how long the others will be.
constexpr std::int64_t facetsBeforeRoom = 16'384;

std::int64_t elementCount(const zRegion_fe& region) {
    std::int64_t elements = 0;
    for (const auto& zone : region.blocks) {
        elements += zone->elementCount;
    }
    return elements;
}

bool readThree(TextStream& input, std::array<double, 3>& values) {
    return input.readDoubles(values.data(), values.size()) && input.good();
}

bool hasCoordinates(const zBlock_fe& zone) {
    return zone.variables.size() >= 3 &&
           std::all_of(zone.variables.begin(), zone.variables.begin() + 3,
                       [&zone](const auto& variable) { return coversNodes(*variable, zone); });
}

// The normal's length is what the writer divides by; it may be 0 or no number.
bool hasNoNormal(const std::vector<std::array<double, 3>>& corners) {
    const auto at = [&corners](std::size_t corner) {
        return zVec<double>(corners[corner][0], corners[corner][1], corners[corner][2]);
    };
    const zVec<double> normal = cross(at(2) - at(0), at(1) - at(0));
    return !(dot(normal, normal) > 0.0);
}

// Text has no byte of zero among its first ones.
bool beginsAsBinary(TextStream& input) {
    std::string head;
    for (int c = input.get(); c >= 0 && head.size() < binaryHeader; c = input.get()) {
        head += static_cast<char>(c);
    }
    return head.size() == binaryHeader && head.find('\0') != std::string::npos;
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
    beginRecord(record, fileName, input, "stl", {"facets", "solids"});
    losses_ = {};
    noteBinary(input);
    input.reportTo(report);
    std::string_view word;
    while (input.readWord(word)) {
        if (word == "solid") {
            readSolid(input, region);
        } else if (!countCapitals(word)) {
            losses_.outside += word == "facet" ? 1 : 0;
        }
    }
    if (input.readFailed()) {
        throw IOError(unitName, __LINE__, unreadText(input));
    }
    noteLosses(input);
}

bool zSTLReader::isBinary(const std::filesystem::path& fileName) {
    TextStream input(fileName);
    return input.isOpen() && beginsAsBinary(input);
}

// Words in capital letters are none to this reader; what they stand for is in the file all the same.
bool zSTLReader::countCapitals(std::string_view word) {
    if (word == "SOLID") {
        countOf(record.found, "solids") += 1;
    } else if (word == "FACET") {
        countOf(record.found, "facets") += 1;
        ++losses_.capitals;
    } else {
        return false;
    }
    return true;
}

// The text reader finds next to nothing in a file of bytes; that it is one must be told. Text holds no NUL.
void zSTLReader::noteBinary(TextStream& input) {
    losses_.binary = beginsAsBinary(input);
    if (losses_.binary) {
        countBinary(input);
    }
    input.clear();
    input.seek(0);
}

// Several solids may stand one behind the other, each with its count; counts that do not lead to the end of the file
// are wrong, and its size tells.
void zSTLReader::countBinary(TextStream& input) {
    const auto header = static_cast<std::int64_t>(binaryHeader);
    std::int64_t facets = 0;
    std::int64_t solids = 0;
    std::int64_t at = 0;
    for (std::int64_t count = 1; count > 0 && input.size() - at >= header; ++solids) {
        input.clear();
        input.seek(at + header - 4);
        count = 0;
        for (int byte = 0; byte < 4; ++byte) {
            count |= static_cast<std::int64_t>(std::max(input.get(), 0)) << (8 * byte);
        }
        at += header + count * binaryFacet;
        facets += count;
    }
    const bool fits = at == input.size() && facets > 0;
    countOf(record.found, "facets") = fits ? facets : (input.size() - header) / binaryFacet;
    countOf(record.found, "solids") = fits ? solids : 1;
}

// What was counted while the facets were read becomes words.
void zSTLReader::noteLosses(TextStream& input) {
    countOf(record.found, "facets") += losses_.outside;
    const std::string facets = keptText("facets", countOf(record.found, "facets"), countOf(record.kept, "facets"));
    const auto lose = [&](std::int64_t count, const std::string& why) {
        if (count > 0) {
            record.losesGeometry(facets + " (" + why + ")");
        }
    };
    if (losses_.binary) {
        record.losesGeometry(facets + " (a binary STL file: Open reads text, Import reads both)");
        return;
    }
    if (countOf(record.found, "solids") == 0 && record.bytes > 0) {
        record.losesGeometry("No solid stands in the file");
    }
    lose(losses_.namelessSolids,
         losses_.namelessSolids == 1
             ? "the first facet of a solid without a name"
             : "the first facets of " + std::to_string(losses_.namelessSolids) + " solids without a name");
    lose(losses_.capitals,
         std::to_string(losses_.capitals) + " in capital letters: Open reads small ones, Import reads both");
    lose(losses_.outside, std::to_string(losses_.outside) + " behind the end of a solid without a name");
    if (losses_.damaged > 0) {
        lose(losses_.damaged, std::to_string(losses_.damaged) + " damaged, the first at line " +
                                  std::to_string(input.lineOf(losses_.firstDamaged)));
    }
    lose(losses_.narrow, std::to_string(losses_.narrow) + " of fewer than three corners");
    lose(losses_.swallowed, std::to_string(losses_.swallowed) + " behind a facet without its end");
    if (losses_.strayCorners > 0) {
        std::string reason = "Corners that stand in no facet: " + std::to_string(losses_.strayCorners);
        reason += ", the first at line " + std::to_string(input.lineOf(losses_.firstStray));
        record.losesGeometry(std::move(reason));
    }
    if (losses_.unended) {
        record.losesGeometry("The file ends before its last solid does");
    }
    if (losses_.fans > 0) {
        record.alters("Facets of more than three corners: " + std::to_string(losses_.fans) + ", made triangles");
    }
    if (losses_.degenerate > 0) {
        // They are kept; a save as STL leaves them out, as they have no normal.
        record.alters("Degenerate triangles: " + std::to_string(losses_.degenerate));
    }
    if (losses_.innerSolids > 0) {
        countOf(record.found, "solids") += losses_.innerSolids;
        record.losesDetail("Solids that begin before the end of another, and became part of it: " +
                           std::to_string(losses_.innerSolids));
    }
    if (losses_.longNames > 0) {
        record.losesDetail("Names of solids of which only the first word is kept: " +
                           std::to_string(losses_.longNames));
    }
    if (losses_.cutNames > 0) {
        record.losesDetail("Names of solids of which only the first " + std::to_string(TextStream::longestWord) +
                           " characters are kept: " + std::to_string(losses_.cutNames));
    }
    noteJoinedNumbers(record, input);
}

// A solid without a name takes its first "facet" for one, and that facet is lost; an end without a name takes the next
// "solid". Both are wanted.
void zSTLReader::readSolid(TextStream& input, zRegion_fe& region) {
    std::string title;
    losses_.cutNames += input.readWord(title) && input.wordWasCut() ? 1 : 0;
    countOf(record.found, "solids") += losses_.binary ? 0 : 1; // counted by its bytes
    if (title == "facet") {
        ++losses_.namelessSolids;
        countOf(record.found, "facets") += 1;
    }
    vertices_.clear();
    connectivity_.clear();
    solidBegin_ = input.tell();
    losses_.longNames += readFacets(input, title == "facet") && title != "facet" ? 1 : 0;
    std::string_view nameAtEnd;
    if (input.readWord(nameAtEnd) && nameAtEnd == "solid") {
        countOf(record.found, "solids") += 1;
    }
    if (vertices_.empty()) {
        return;
    }
    trimRoom();
    std::unique_ptr<zBlock_fe> zone = makeTriangleZone(std::move(vertices_), std::move(connectivity_), title);
    if (zone == nullptr) {
        throw SystemError(unitName, __LINE__);
    }
    region.blocks.push_back(std::move(zone));
    countOf(record.kept, "solids") += 1;
}

// True when words stand between the first one behind "solid" and the first facet. While the facet before is `lost`,
// which is told, what is left of it is no loss of its own.
bool zSTLReader::readFacets(TextStream& input, bool lost) {
    std::int64_t& found = countOf(record.found, "facets");
    std::int64_t facets = 0;
    bool wordsBefore = false;
    std::string_view word;
    while (input.readWord(word) && word != "endsolid") {
        if (word != "facet") {
            const bool capitals = countCapitals(word);
            wordsBefore = wordsBefore || (facets == 0 && !capitals && losses_.capitals == 0);
            if (word == "solid" && facets > 0) {
                ++losses_.innerSolids;
            }
            if (word == "vertex" && !lost) {
                losses_.firstStray = losses_.strayCorners++ == 0 ? input.tell() : losses_.firstStray;
            }
        } else {
            ++facets;
            if (facets == facetsBeforeRoom) {
                makeRoom(input);
            }
            const std::int64_t swallowed = losses_.swallowed;
            lost = !readFacet(input);
            if (lost) {
                losses_.firstDamaged = losses_.damaged++ == 0 ? input.tell() : losses_.firstDamaged;
                input.clear();
            }
            lost = lost || losses_.swallowed > swallowed;
        }
    }
    losses_.unended = input.fail() && losses_.capitals == 0; // the end may stand there in capitals too
    found += facets;
    return wordsBefore;
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
    } else {
        ++losses_.narrow;
    }
    // Where "endfacet" is missing, the facet behind loses its first word, and so all of it.
    if (input.readWord(word) && word == "facet") {
        ++losses_.swallowed;
        countOf(record.found, "facets") += 1;
    }
    return true;
}

// Room for a solid that goes on to the end of the file with facets as long as those before. That is a guess; what of it
// is not needed is never laid on pages.
void zSTLReader::makeRoom(const TextStream& input) {
    const auto whole = static_cast<double>(input.size() - solidBegin_);
    const double times = 1.02 * whole / static_cast<double>(std::max<std::int64_t>(input.tell() - solidBegin_, 1));
    const auto room = [times](std::size_t size) { return static_cast<std::size_t>(times * static_cast<double>(size)); };
    for (std::vector<double>* const values : {&vertices_.x, &vertices_.y, &vertices_.z}) {
        reserveLarge(*values, room(values->size()));
    }
    reserveLarge(connectivity_, room(connectivity_.size()));
}

// What the solid did not need is given back.
void zSTLReader::trimRoom() {
    const auto trim = [](auto& values) {
        if (values.capacity() / 2 > values.size()) {
            values.shrink_to_fit();
        }
    };
    trim(vertices_.x);
    trim(vertices_.y);
    trim(vertices_.z);
    trim(connectivity_);
}

void zSTLReader::takeFacet() {
    const auto first = static_cast<std::int64_t>(vertices_.size());
    for (const std::array<double, 3>& corner : corners_) {
        vertices_.append(corner[0], corner[1], corner[2]);
    }
    faces_.clear();
    if (corners_.size() == 3) {
        faces_.push_back({first, first + 1, first + 2});
    } else {
        polygon_.assignRange(first, first + static_cast<std::int64_t>(corners_.size()));
        triangulate(vertices_, polygon_, faces_);
    }
    for (const Triangle& face : faces_) {
        connectivity_.insert(connectivity_.end(),
                             {static_cast<std::int32_t>(face[0]), static_cast<std::int32_t>(face[1]),
                              static_cast<std::int32_t>(face[2]), -1});
    }
    countOf(record.kept, "facets") += 1;
    if (corners_.size() > 3) {
        ++losses_.fans;
    } else if (hasNoNormal(corners_)) {
        ++losses_.degenerate;
    }
}

WriteOutcome zSTLReader::write(const std::filesystem::path& fileName, const zRegion_fe& region) {
    requireFinite(region, unitName);
    SafeFile file(fileName);
    if (!file.isOpen()) {
        throw FileError(unitName, __LINE__);
    }
    NumberWriter output(file, significantDigits, NumberNotation::General);
    output.reportTo(report, numbersOfFacet * elementCount(region));
    const std::int64_t skippedBefore = skippedFacets_;
    std::size_t number = 0;
    for (const auto& zone : region.blocks) {
        writeSolid(output, *zone, solidName(zone->title, ++number));
    }
    if (!output.flush() || !file.commit()) {
        throw FileError(unitName, __LINE__);
    }
    WriteOutcome outcome = outcomeOf(file, fileName, "stl");
    const std::int64_t skipped = skippedFacets_ - skippedBefore;
    outcome.leftOut = skipped;
    outcome.record.counts = {{"facets", elementCount(region) - skipped}, {"solids", countOf(region.blocks)}};
    if (skipped > 0) {
        outcome.notes.push_back("Triangles without a normal that were left out: " + std::to_string(skipped));
    }
    return outcome;
}

void zSTLReader::writeSolid(NumberWriter& output, const zBlock_fe& zone, const std::string& name) {
    output.writeText("solid ");
    output.writeText(name);
    output.writeChar('\n');
    if (hasCoordinates(zone)) {
        forEachTriangle(zone, [&](const std::int32_t* nodes) {
            writeFacet(output, {nodeOf(zone, nodes[0]), nodeOf(zone, nodes[1]), nodeOf(zone, nodes[2])});
        });
    }
    output.writeText("endsolid ");
    output.writeText(name);
    output.writeChar('\n');
}

namespace {

// The normal points against the right-hand rule on the corners as written; this is wanted. None where it has no length.
std::optional<zVec<double>> normalOf(const std::array<zVec<double>, 3>& corners) {
    const zVec<double> normal = cross(corners[2] - corners[0], corners[1] - corners[0]);
    try {
        return scale(normal, 1.0 / lengthOf(normal));
    } catch (const ValueError&) {
        return std::nullopt;
    }
}

} // namespace

std::int64_t zSTLReader::facetsLeftOut(const zRegion_fe& region) {
    std::int64_t count = 0;
    for (const auto& zone : region.blocks) {
        if (hasCoordinates(*zone)) {
            forEachTriangle(*zone, [&](const std::int32_t* nodes) {
                count += normalOf({nodeOf(*zone, nodes[0]), nodeOf(*zone, nodes[1]), nodeOf(*zone, nodes[2])}) ? 0 : 1;
            });
        }
    }
    return count;
}

void zSTLReader::writeFacet(NumberWriter& output, const std::array<zVec<double>, 3>& corners) {
    const std::optional<zVec<double>> normal = normalOf(corners);
    if (!normal) {
        ++skippedFacets_;
        return;
    }
    output.writeText("  facet normal ");
    writePoint(output, *normal);
    output.writeText("    outer loop\n");
    for (const zVec<double>& corner : corners) {
        output.writeText("      vertex ");
        writePoint(output, corner);
    }
    output.writeText("    endloop\n  endfacet\n");
}

} // namespace velmora
