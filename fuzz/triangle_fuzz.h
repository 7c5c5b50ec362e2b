#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <numeric>
#include <string>

#include "fuzz_files.h"
#include "stl_reference.h"
#include "vrml_reference.h"
#include "zExceptions.h"
#include "zSTLReader.h"
#include "zVRMLReader.h"

namespace velmora::fuzz {

inline bool sameZone(const zBlock_fe& zone, const reference::TriangleZone& wanted) {
    if (!consistent(zone) || zone.variables.size() != 3 || zone.title != wanted.title ||
        static_cast<std::size_t>(zone.nodeCount) != wanted.nodes.size() ||
        static_cast<std::size_t>(zone.elementCount) != wanted.triangles.size()) {
        return false;
    }
    for (std::size_t node = 0; node < wanted.nodes.size(); ++node) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (std::bit_cast<std::uint64_t>(zone.variables[axis]->data[node]) !=
                std::bit_cast<std::uint64_t>(wanted.nodes[node][axis])) {
                return false;
            }
        }
    }
    for (std::size_t element = 0; element < wanted.triangles.size(); ++element) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            if (zone.connectivity[4 * element + corner] != wanted.triangles[element][corner]) {
                return false;
            }
        }
    }
    return true;
}

inline std::int64_t triangleCount(const zRegion_fe& region) {
    return std::accumulate(region.blocks.begin(), region.blocks.end(), std::int64_t{0},
                           [](std::int64_t sum, const auto& zone) { return sum + zone->elementCount; });
}

template <class Reader>
std::string errorOfReading(const std::filesystem::path& path, zRegion_fe& region, std::size_t blockSize) {
    try {
        Reader(blockSize).read(path, region);
    } catch (const GenericError& error) {
        return error.name() + ": " + error.text();
    }
    return {};
}

// The readers' complaints of single nodes would slow the run.
class QuietErrors {
public:
    QuietErrors() : old_(std::cerr.rdbuf(nullptr)) {}
    ~QuietErrors() {
        std::cerr.rdbuf(old_);
        std::cerr.clear();
    }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    std::streambuf* old_;
};

/// Any bytes as a file: they are read as the plain rules read them from a stream, and what comes of it can be written
/// and read again.
template <class Reader>
void checkTriangleFile(const std::uint8_t* data, std::size_t size,
                       reference::TriangleFile (*expectedOf)(const std::string&)) {
    static const OutputFolder folder;
    const QuietErrors quiet;
    const InputFile input(data, size);
    zRegion_fe region;
    const std::string error = errorOfReading<Reader>(input.path(), region, size % 50 + 1);
    const reference::TriangleFile expected = expectedOf(input.path().string());
    require(error == expected.error && region.blocks.size() == expected.zones.size());
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        require(sameZone(*region.blocks[k], expected.zones[k]));
    }
    Reader().write(folder / "again", region);
    zRegion_fe again;
    require(errorOfReading<Reader>(folder / "again", again, TextStream::defaultBlockSize).empty());
    require(triangleCount(again) <= triangleCount(region));
}

inline void checkStl(const std::uint8_t* data, std::size_t size) {
    checkTriangleFile<zSTLReader>(data, size, reference::readStl);
}

inline void checkVrml(const std::uint8_t* data, std::size_t size) {
    checkTriangleFile<zVRMLReader>(data, size, reference::readVrml);
}

} // namespace velmora::fuzz
