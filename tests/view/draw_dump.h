#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "DrawList.h"

/// A draw list as lines of text, one for each point and each strip, in drawing order.
namespace velmora::test {

inline std::string text(const zVec<double>& v) {
    char buffer[100];
    // Adding 0 makes a plain zero of a negative one.
    std::snprintf(buffer, sizeof buffer, "(%g %g %g)", v.x + 0.0, v.y + 0.0, v.z + 0.0);
    return buffer;
}

inline std::string text(const Colour& c) {
    char buffer[100];
    std::snprintf(buffer, sizeof buffer, "%g,%g,%g,%g", static_cast<double>(c[0]), static_cast<double>(c[1]),
                  static_cast<double>(c[2]), static_cast<double>(c[3]));
    return buffer;
}

/// A point overlay: unlit.
inline std::string point(double size, const Colour& colour, const zVec<double>& at) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%g ", size);
    return "point " + std::string(buffer) + text(colour) + " " + text(at);
}

/// An unlit line strip of width 1.
inline std::string strip(const Colour& colour, const std::vector<zVec<double>>& points) {
    std::string line = "strip " + text(colour);
    for (const zVec<double>& p : points) {
        line += " " + text(p);
    }
    return line;
}

/// A lit quad strip: each vertex with its normal.
inline std::string quads(const Colour& colour, const std::vector<std::pair<zVec<double>, zVec<double>>>& vertices) {
    std::string line = "quads " + text(colour);
    for (const auto& [position, normal] : vertices) {
        line += " " + text(position) + "^" + text(normal);
    }
    return line;
}

inline void dumpBatch(const DrawList& list, const DrawBatch& batch, std::vector<std::string>& lines) {
    const auto at = [&](std::size_t i) { return list.vertices.at(batch.firstVertex + i); };
    std::vector<zVec<double>> points;
    for (std::size_t i = 0; i < batch.vertexCount; ++i) {
        points.push_back(at(i));
    }
    const std::string oddities = std::string(batch.outlineFront ? "outlined " : "") +
                                 (batch.lineWidth == 1.0F ? "" : "wide ") +
                                 (batch.lit == (batch.primitive == Primitive::QuadStrip) ? "" : "wrongly lit ") +
                                 (batch.hasNormals == (batch.primitive == Primitive::QuadStrip) ? "" : "normals? ");
    if (batch.primitive == Primitive::Points) {
        for (const zVec<double>& p : points) {
            lines.push_back(oddities + point(static_cast<double>(batch.pointSize), batch.colour, p));
        }
    } else if (batch.primitive == Primitive::LineStrip) {
        lines.push_back(oddities + strip(batch.colour, points));
    } else if (batch.primitive == Primitive::QuadStrip) {
        std::vector<std::pair<zVec<double>, zVec<double>>> vertices;
        for (std::size_t i = 0; i < points.size(); ++i) {
            vertices.emplace_back(points[i], list.normals.at(batch.firstNormal + i));
        }
        lines.push_back(oddities + quads(batch.colour, vertices));
    } else {
        lines.push_back(oddities + primitiveName(batch.primitive));
    }
}

inline std::vector<std::string> dump(const DrawList& list) {
    std::vector<std::string> lines;
    for (const DrawBatch& batch : list.batches) {
        dumpBatch(list, batch, lines);
    }
    return lines;
}

// The colours that the lists use.
inline const Colour white{1, 1, 1, 1};
inline const Colour red{1, 0, 0, 1};
inline const Colour green{0, 1, 0, 1};
inline const Colour blue{0, 0, 1, 1};
inline const Colour yellow{1, 1, 0, 1};
inline const Colour grey{0.7F, 0.7F, 0.7F, 1};
inline const Colour pink{1, 0.5F, 1, 1};
inline const Colour bufferBlue{0.2F, 0.2F, 1, 1};
inline const Colour blockYellow{1, 1, 0.1F, 1};
inline const Colour removedYellow{0.4F, 0.4F, 0, 1};
/// The colours of the first five patches.
inline const Colour table[5] = {{0.5F, 0.5F, 1, 1}, {0.5F, 1, 0.5F, 1}, {1, 0.5F, 0.5F, 1}, grey, pink};

} // namespace velmora::test
