#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

#include "PatchList.h"
#include "zRegion.h"

/// The report's numbers by their plain rules: sorted maps of coordinates, every face walked from neighbour to
/// neighbour, angles by their cosines.
namespace velmora::reference {

using Place = zVec<double>;
using Key = std::tuple<double, double, double>;

inline Key keyOf(const Place& p) {
    return {p.x, p.y, p.z}; // -0 and 0 compare as equal
}
inline double normOf(const Place& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}
inline double areaOf(const Place& a, const Place& b, const Place& c) {
    return 0.5 * normOf(cross(b - a, c - a));
}

/// The corners of a cell or triangle, and the patch that it is of; -1 for a triangle.
struct Outline {
    std::vector<Place> corners;
    int patch = -1;
};

inline bool hasCells(const Patch& patch) {
    return patch.size() > 1 && patch[0].size() > 1 &&
           std::all_of(patch.begin(), patch.end(), [&](const PointList& s) { return s.size() == patch[0].size(); });
}

inline std::vector<Outline> cellsOf(const Patch& patch, int number) {
    std::vector<Outline> cells;
    for (std::size_t i = 0; hasCells(patch) && i + 1 < patch.size(); ++i) {
        for (std::size_t j = 0; j + 1 < patch[i].size(); ++j) {
            cells.push_back({{patch[i][j], patch[i + 1][j], patch[i + 1][j + 1], patch[i][j + 1]}, number});
        }
    }
    return cells;
}

inline std::vector<Outline> facesOf(const PatchList& patches, const zRegion_fe& region) {
    std::vector<Outline> faces;
    for (std::size_t k = 0; k < patches.size(); ++k) {
        const std::vector<Outline> cells = cellsOf(patches[k], static_cast<int>(k));
        faces.insert(faces.end(), cells.begin(), cells.end());
    }
    for (const auto& zone : region.blocks) {
        for (std::size_t t = 0; t < static_cast<std::size_t>(zone->elementCount); ++t) {
            Outline face;
            for (std::size_t i = 0; i < 3; ++i) {
                const auto node = static_cast<std::size_t>(zone->connectivity[4 * t + i]);
                face.corners.push_back(
                    {zone->variables[0]->data[node], zone->variables[1]->data[node], zone->variables[2]->data[node]});
            }
            faces.push_back(face);
        }
    }
    return faces;
}

inline std::size_t differentPoints(const Outline& face) {
    std::set<Key> keys;
    for (const Place& corner : face.corners) {
        keys.insert(keyOf(corner));
    }
    return keys.size();
}

/// An edge by its ends, the lower one first, with each pass along it: the face, and whether from the lower end.
using EdgePasses = std::map<std::pair<Key, Key>, std::vector<std::pair<std::size_t, bool>>>;

inline EdgePasses edgesOf(const std::vector<Outline>& faces) {
    EdgePasses edges;
    for (std::size_t f = 0; f < faces.size(); ++f) {
        const auto& corners = faces[f].corners;
        for (std::size_t i = 0; differentPoints(faces[f]) > 2 && i < corners.size(); ++i) {
            const Key from = keyOf(corners[i]);
            const Key to = keyOf(corners[(i + 1) % corners.size()]);
            if (from != to) {
                edges[std::minmax(from, to)].emplace_back(f, from < to);
            }
        }
    }
    return edges;
}

struct Body {
    std::int64_t components = 0;
    double openBorder = 0;
    std::int64_t badEdges = 0;
    std::optional<double> volume;
};

inline double volumeBelow(const Outline& face, const Place& centre) {
    double volume = 0;
    for (std::size_t i = 1; i + 1 < face.corners.size(); ++i) {
        volume += dot(face.corners[0] - centre, cross(face.corners[i] - centre, face.corners[i + 1] - centre)) / 6;
    }
    return volume;
}

inline Body bodyOf(const std::vector<Outline>& faces, const Place& centre) {
    Body body;
    const EdgePasses edges = edgesOf(faces);
    std::vector<std::vector<std::pair<std::size_t, bool>>> neighbours(faces.size()); // and whether one is turned
    std::set<std::size_t> withEdges;
    bool solid = !edges.empty();
    for (const auto& [ends, passes] : edges) {
        if (passes.size() == 1) {
            const auto& [x, y, z] = ends.first;
            const auto& [u, v, w] = ends.second;
            body.openBorder += normOf({u - x, v - y, w - z});
        }
        body.badEdges += passes.size() > 2 ? 1 : 0;
        solid = solid && passes.size() == 2;
        for (const auto& [face, up] : passes) {
            withEdges.insert(face);
            for (const auto& [other, otherUp] : passes) {
                neighbours[face].emplace_back(other, other != face && up == otherUp);
            }
        }
    }
    std::vector<int> sense(faces.size(), 0);
    double volume = 0;
    for (const std::size_t first : withEdges) {
        if (sense[first] != 0) {
            continue;
        }
        ++body.components;
        double sum = 0;
        sense[first] = 1;
        std::vector<std::size_t> waiting = {first};
        while (!waiting.empty()) {
            const std::size_t face = waiting.back();
            waiting.pop_back();
            sum += sense[face] * volumeBelow(faces[face], centre);
            for (const auto& [other, turned] : neighbours[face]) {
                const int wanted = turned ? -sense[face] : sense[face];
                if (sense[other] == 0) {
                    sense[other] = wanted;
                    waiting.push_back(other);
                }
                solid = solid && sense[other] == wanted;
            }
        }
        volume += std::abs(sum);
    }
    if (solid) {
        body.volume = volume;
    }
    return body;
}

// ---- Quality --------------------------------------------------------------------------------------------------------

/// Everything that has a place in a patch's report.
struct Quality {
    double area = 0;
    std::optional<double> smallestStep, largestStep, aspect, skew, warp;
    double growth = 1;
    std::int64_t repeatedPoints = 0, collapsedCells = 0;
    std::set<std::size_t> foldedCells; ///< cells section by section
};

inline void raise(std::optional<double>& largest, double value) {
    largest = std::max(largest.value_or(value), value);
}

inline void addCurve(const PointList& curve, Quality& quality) {
    for (std::size_t i = 1; i < curve.size(); ++i) {
        const double step = normOf(curve[i] - curve[i - 1]);
        raise(quality.largestStep, step);
        quality.smallestStep = std::min(quality.smallestStep.value_or(step), step);
        const double before = i > 1 ? normOf(curve[i - 1] - curve[i - 2]) : 0;
        if (before > 0 && step > 0) {
            quality.growth = std::max({quality.growth, before / step, step / before});
        }
    }
}

inline double degreesBetween(const Place& a, const Place& b) {
    const double cosine = dot(a, b) / normOf(a) / normOf(b);
    return std::acos(std::clamp(cosine, -1.0, 1.0)) * 180 / std::acos(-1.0);
}

inline Place normalOf(const Outline& cell) {
    const auto& c = cell.corners;
    return cross(c[1] - c[0], c[2] - c[0]) + cross(c[2] - c[0], c[3] - c[0]);
}

inline void addCell(const Outline& cell, Quality& quality) {
    const auto& c = cell.corners;
    const Place first = cross(c[1] - c[0], c[2] - c[0]);
    const Place second = cross(c[2] - c[0], c[3] - c[0]);
    quality.area += areaOf(c[0], c[1], c[2]) + areaOf(c[0], c[2], c[3]);
    quality.collapsedCells += normOf(first) == 0 && normOf(second) == 0 ? 1 : 0;
    if (normOf(first) > 0 && normOf(second) > 0) {
        raise(quality.warp, degreesBetween(first, second));
    }
    if (differentPoints(cell) < 3) {
        return;
    }
    double longest = 0;
    double shortest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < 4; ++i) {
        const Place ahead = c[(i + 1) % 4] - c[i];
        const Place back = c[(i + 3) % 4] - c[i];
        if (normOf(ahead) > 0) {
            longest = std::max(longest, normOf(ahead));
            shortest = std::min(shortest, normOf(ahead));
            if (normOf(back) > 0) {
                raise(quality.skew, std::abs(degreesBetween(ahead, back) - 90) / 90);
            }
        }
    }
    raise(quality.aspect, longest / shortest);
}

inline Quality qualityOf(const Patch& patch) {
    Quality quality;
    PatchList lines;
    std::set<std::pair<std::size_t, std::size_t>> repeated;
    for (std::size_t n = 0; n < patch.size(); ++n) {
        addCurve(patch[n], quality);
        for (std::size_t m = 0; m < patch[n].size(); ++m) {
            const bool grid = std::all_of(patch.begin(), patch.end(),
                                          [&](const PointList& s) { return s.size() == patch[0].size(); });
            if ((m > 0 && patch[n][m] == patch[n][m - 1]) || (grid && n > 0 && patch[n][m] == patch[n - 1][m])) {
                repeated.insert({n, m});
            }
            if (grid && n == 0) {
                PointList line;
                for (const PointList& section : patch) {
                    line.push_back(section[m]);
                }
                addCurve(line, quality);
            }
        }
    }
    quality.repeatedPoints = static_cast<std::int64_t>(repeated.size());
    const std::vector<Outline> cells = cellsOf(patch, 0);
    for (std::size_t f = 0; f < cells.size(); ++f) {
        addCell(cells[f], quality);
        const auto& c = cells[f].corners;
        if (dot(cross(c[1] - c[0], c[2] - c[0]), cross(c[2] - c[0], c[3] - c[0])) < 0) {
            quality.foldedCells.insert(f);
        }
    }
    for (const auto& [ends, passes] : edgesOf(cells)) {
        for (const auto& [face, up] : passes) {
            for (const auto& [other, otherUp] : passes) {
                if (dot(normalOf(cells[face]), normalOf(cells[other])) < 0) {
                    quality.foldedCells.insert(face);
                }
            }
        }
    }
    return quality;
}

} // namespace velmora::reference
