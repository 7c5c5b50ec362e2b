#pragma once

#include <bit>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TextStream.h"
#include "temporary_folder.h"
#include "triangulation_reference.h"
#include "zExceptions.h"
#include "zRegion.h"

namespace velmora::test {

/// What goes to the standard error stream while it lives.
class CapturedErrors {
public:
    CapturedErrors() : old_(std::cerr.rdbuf(text_.rdbuf())) {}
    ~CapturedErrors() { std::cerr.rdbuf(old_); }
    CapturedErrors(const CapturedErrors&) = delete;
    CapturedErrors& operator=(const CapturedErrors&) = delete;

    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* old_;
};

/// The number of places at which `part` stands in `text`.
inline int occurrences(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

/// A zone's first three entries of every element.
inline reference::Triangles trianglesOf(const zBlock_fe& zone) {
    reference::Triangles triangles;
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        triangles.push_back({zone.connectivity[entry], zone.connectivity[entry + 1], zone.connectivity[entry + 2]});
    }
    return triangles;
}

inline std::vector<reference::Point> nodesOf(const zBlock_fe& zone) {
    std::vector<reference::Point> nodes(static_cast<std::size_t>(zone.nodeCount));
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (std::size_t node = 0; node < nodes.size(); ++node) {
            nodes[node][axis] = zone.variables.at(axis)->data.at(node);
        }
    }
    return nodes;
}

inline std::vector<std::string> titlesOf(const zRegion_fe& region) {
    std::vector<std::string> titles;
    for (const auto& zone : region.blocks) {
        titles.push_back(zone->title);
    }
    return titles;
}

/// Success when the zone is whole: x, y, z for all nodes, four entries an element, the last one of them -1.
inline testing::AssertionResult isTriangleZone(const zBlock_fe& zone) {
    if (!consistent(zone) || zone.variables.size() != 3 || zone.connectivitySize != 4 * zone.elementCount) {
        return testing::AssertionFailure() << "zone " << zone.title << " is not consistent";
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (zone.variables[axis]->name != std::string(1, static_cast<char>('x' + axis))) {
            return testing::AssertionFailure() << "variable " << axis << " is " << zone.variables[axis]->name;
        }
    }
    for (std::size_t entry = 3; entry < zone.connectivity.size(); entry += 4) {
        if (zone.connectivity[entry] != -1) {
            return testing::AssertionFailure() << "entry " << entry << " is " << zone.connectivity[entry];
        }
    }
    return testing::AssertionSuccess();
}

/// Success when both hold the same zones, to the last bit of every coordinate.
inline testing::AssertionResult sameZones(const zRegion_fe& region, const reference::TriangleFile& expected) {
    if (region.blocks.size() != expected.zones.size()) {
        return testing::AssertionFailure() << region.blocks.size() << " zones instead of " << expected.zones.size();
    }
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const zBlock_fe& zone = *region.blocks[k];
        const reference::TriangleZone& wanted = expected.zones[k];
        if (const auto whole = isTriangleZone(zone); !whole) {
            return whole;
        }
        if (zone.title != wanted.title || trianglesOf(zone) != wanted.triangles ||
            zone.nodeCount != static_cast<std::int32_t>(wanted.nodes.size())) {
            return testing::AssertionFailure() << "zone " << k << " differs";
        }
        for (std::size_t node = 0; node < wanted.nodes.size(); ++node) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (std::bit_cast<std::uint64_t>(zone.variables[axis]->data[node]) !=
                    std::bit_cast<std::uint64_t>(wanted.nodes[node][axis])) {
                    return testing::AssertionFailure() << "zone " << k << ", node " << node << " differs";
                }
            }
        }
    }
    return testing::AssertionSuccess();
}

/// Reads a file with a reader of its own and gives the error's name and text, or an empty text.
template <class Reader>
std::string readWith(const std::filesystem::path& path, zRegion_fe& region,
                     std::size_t blockSize = TextStream::defaultBlockSize) {
    try {
        Reader(blockSize).read(path, region);
    } catch (const GenericError& error) {
        return error.name() + ": " + error.text();
    }
    return {};
}

/// The text with a few bytes or words lost, changed, or copied to another place.
inline std::string damaged(std::string text, std::mt19937& random, const std::vector<std::string>& splinters) {
    for (std::size_t left = random() % 4 + 1; left > 0 && !text.empty(); --left) {
        const std::size_t at = random() % text.size();
        const std::size_t length = random() % 3 == 0 ? random() % 40 : 1;
        switch (random() % 5) {
        case 0:
            text.erase(at, length);
            break;
        case 1:
            text.insert(at, splinters[random() % splinters.size()]);
            break;
        case 2:
            text.replace(at, length, splinters[random() % splinters.size()]);
            break;
        case 3:
            text.insert(at, text.substr(random() % text.size(), length));
            break;
        default:
            text.resize(random() % 8 == 0 ? at : text.size());
        }
    }
    return text;
}

} // namespace velmora::test
