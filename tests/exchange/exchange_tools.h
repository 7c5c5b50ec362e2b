#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "FileRecord.h"
#include "exchange_files.h"
#include "temporary_folder.h"

namespace velmora::test {

using Point = std::array<double, 3>;
using Corners = std::array<Point, 3>;
using Reader = void (*)(std::string_view, const ImportOptions&, ExchangeModel&, FileRead&, const ReportProgress&);

/// What came of reading a text.
struct Imported {
    ExchangeModel model;
    FileRead record;
};

inline Imported importText(Reader reader, const std::string& text, const ImportOptions& options = {}) {
    Imported result;
    reader(text, options, result.model, result.record, {});
    for (const auto& zone : result.model.region.blocks) {
        EXPECT_TRUE(consistent(*zone));
        EXPECT_GT(zone->elementCount, 0);
    }
    return result;
}

inline Point nodeAt(const zBlock_fe& zone, std::int32_t node) {
    Point point{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        point.at(axis) = zone.variables.at(axis)->data.at(static_cast<std::size_t>(node));
    }
    return point;
}

inline std::vector<Point> nodesOf(const zBlock_fe& zone) {
    std::vector<Point> nodes;
    for (std::int32_t node = 0; node < zone.nodeCount; ++node) {
        nodes.push_back(nodeAt(zone, node));
    }
    return nodes;
}

/// The node numbers of the triangles.
inline std::vector<std::array<std::int32_t, 3>> trianglesOf(const zBlock_fe& zone) {
    std::vector<std::array<std::int32_t, 3>> triangles;
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        EXPECT_EQ(zone.connectivity[entry + 3], -1);
        triangles.push_back({zone.connectivity[entry], zone.connectivity[entry + 1], zone.connectivity[entry + 2]});
    }
    return triangles;
}

/// The corners of all triangles of all zones.
inline std::vector<Corners> cornersOf(const ExchangeModel& model) {
    std::vector<Corners> corners;
    for (const auto& zone : model.region.blocks) {
        for (const auto& [a, b, c] : trianglesOf(*zone)) {
            corners.push_back({nodeAt(*zone, a), nodeAt(*zone, b), nodeAt(*zone, c)});
        }
    }
    return corners;
}

inline zVec<double> vectorOf(const Point& p) {
    return {p[0], p[1], p[2]};
}

/// Twice as long as the triangle is large; it looks to where the corners run against the clock.
inline zVec<double> normalOf(const Corners& corners) {
    const zVec<double> a = vectorOf(corners[0]);
    return cross(vectorOf(corners[1]) - a, vectorOf(corners[2]) - a);
}

inline double areaOf(const Corners& corners) {
    const zVec<double> normal = normalOf(corners);
    return 0.5 * std::sqrt(dot(normal, normal));
}

/// Of all triangles of all zones.
inline double areaOf(const ExchangeModel& model) {
    double area = 0.0;
    for (const Corners& corners : cornersOf(model)) {
        area += areaOf(corners);
    }
    return area;
}

inline std::vector<std::string> titlesOf(const ExchangeModel& model) {
    std::vector<std::string> titles;
    for (const auto& zone : model.region.blocks) {
        titles.push_back(zone->title);
    }
    return titles;
}

/// The sections of a patch as points.
inline std::vector<std::vector<Point>> sectionsOf(const Patch& patch) {
    std::vector<std::vector<Point>> sections;
    for (const PointList& section : patch) {
        sections.emplace_back();
        for (const zVec<double>& p : section) {
            sections.back().push_back({p.x, p.y, p.z});
        }
    }
    return sections;
}

inline std::int64_t found(const Imported& imported, const char* kind) {
    return countOf(imported.record.found, kind);
}
inline std::int64_t kept(const Imported& imported, const char* kind) {
    return countOf(imported.record.kept, kind);
}

/// Numbers as they stand in a binary file.
class Bytes {
public:
    explicit Bytes(bool highestFirst = false) : highestFirst_(highestFirst) {}

    template <class T>
    Bytes& add(T value) {
        std::array<char, sizeof(T)> bytes = std::bit_cast<std::array<char, sizeof(T)>>(value);
        if (highestFirst_) {
            text.append(bytes.rbegin(), bytes.rend());
        } else {
            text.append(bytes.begin(), bytes.end());
        }
        return *this;
    }
    template <class T>
    Bytes& addAll(const std::vector<double>& values) {
        for (const double value : values) {
            add(static_cast<T>(value));
        }
        return *this;
    }
    Bytes& addText(std::string_view part) {
        text += part;
        return *this;
    }

    std::string text;

private:
    bool highestFirst_;
};

} // namespace velmora::test
