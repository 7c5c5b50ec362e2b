#pragma once

#include <fstream>
#include <locale>
#include <string>

#include "triangulation_reference.h"

namespace velmora::reference {

/// A facet behind its first word, with a stream's own reads.
inline void readStlFacet(std::istream& stream, TriangleZone& zone) {
    std::string word;
    Point point{};
    stream >> word >> point[0] >> point[1] >> point[2];
    if (!stream.good()) {
        throw IOError("reference", __LINE__);
    }
    std::string outer;
    std::string loop;
    stream >> outer >> loop;
    std::vector<Point> facet;
    std::string next;
    stream >> next;
    while (next != "endloop") {
        stream >> point[0] >> point[1] >> point[2];
        if (!stream.good()) {
            throw IOError("reference", __LINE__);
        }
        facet.push_back(point);
        stream >> next;
    }
    if (facet.size() >= 3) {
        Corners polygon;
        for (const Point& corner : facet) {
            polygon.push_back(static_cast<std::int64_t>(zone.nodes.size()));
            zone.nodes.push_back(corner);
        }
        triangulate(zone.nodes, polygon, zone.triangles);
    }
    std::string endfacet;
    stream >> endfacet;
}

inline TriangleFile readStl(const std::string& path) {
    TriangleFile file;
    std::ifstream stream(path);
    stream.imbue(std::locale::classic());
    std::string word;
    while (stream >> word) {
        if (word != "solid") {
            continue;
        }
        TriangleZone zone;
        stream >> zone.title;
        while (stream >> word && word != "endsolid") {
            if (word != "facet") {
                continue;
            }
            try {
                readStlFacet(stream, zone);
            } catch (const IOError&) {
                stream.clear();
            }
        }
        std::string closing;
        stream >> closing;
        if (!zone.nodes.empty()) {
            file.zones.push_back(zone);
        }
    }
    return file;
}

} // namespace velmora::reference
