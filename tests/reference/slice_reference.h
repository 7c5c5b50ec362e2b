#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "PatchList.h"
#include "zRegion.h"

// Slicing as the rule has it: every plane looks at every triangle, every step of a line at every segment, and every
// join at every line.

namespace velmora::reference {

struct Slicing {
    char axis = 'x';
    int number = 20;
    bool manual = false;
    double yourMin = 0;
    double yourMax = 0;
    double border = 0;
    double precision = 0.0001;
};

struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

inline double on(const Point3& p, char axis) {
    return axis == 'x' ? p.x : axis == 'y' ? p.y : p.z;
}

inline bool samePoint(const Point3& a, const Point3& b, double tolerance) {
    if (a.x == 0 && a.y == 0 && a.z == 0 && b.x == 0 && b.y == 0 && b.z == 0) {
        return true;
    }
    const double mx = std::max(std::abs(a.x), std::abs(b.x));
    const double my = std::max(std::abs(a.y), std::abs(b.y));
    const double mz = std::max(std::abs(a.z), std::abs(b.z));
    const double m = std::max(mx, std::max(my, mz));
    const double r = 1 / m;
    return std::abs(a.x - b.x) * r < tolerance && std::abs(a.y - b.y) * r < tolerance &&
           std::abs(a.z - b.z) * r < tolerance;
}

inline bool same(const Point3& a, const Point3& b) {
    return samePoint(a, b, 1e-10);
}

inline bool samePlane(double a, double b) {
    return (a == 0 && b == 0) || std::abs(a - b) / std::max(std::abs(a), std::abs(b)) < 1e-10;
}

using Line3 = std::vector<Point3>;

/// The corners of all triangles, three for each.
inline Line3 cornersOf(const zRegion_fe& region) {
    Line3 corners;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const zBlock_fe& zone = *region.blocks[k];
        for (std::int32_t element = 0; element < zone.elementCount; ++element) {
            for (std::int32_t corner = 0; corner < 3; ++corner) {
                Point3 p;
                const std::int32_t node =
                    zone.connectivity[4 * static_cast<std::size_t>(element) + static_cast<std::size_t>(corner)];
                if (region.getNode(static_cast<std::ptrdiff_t>(k), node, p.x, p.y, p.z) == 0) {
                    corners.push_back(p);
                }
            }
        }
    }
    return corners;
}

struct Segment3 {
    Point3 e;
    Point3 f;
};

class PlainSlicer {
public:
    explicit PlainSlicer(const Slicing& slicing) : s_(slicing) {}

    /// The sections; `left` counts the messages about lines that came into none.
    Patch run(const zRegion_fe& region, int& left) {
        corners_ = cornersOf(region);
        double lo = 1e65;
        double hi = -1e65;
        for (const Point3& p : corners_) {
            hi = std::max(hi, on(p, s_.axis));
            lo = std::min(lo, on(p, s_.axis));
        }
        double border = s_.border;
        if (s_.manual) {
            lo = s_.yourMin;
            hi = s_.yourMax;
            border = 0;
        }
        const int planes = s_.number + 2;
        const double step = (hi - lo) / double(planes - 3);
        for (int i = 1; i < planes - 1; ++i) {
            if (i == 1) {
                cutPlane(lo + step * border);
            } else if (i == planes - 2) {
                cutPlane(hi - step * border);
            } else {
                cutPlane(lo + (i - 1) * step);
            }
        }
        left = 0;
        std::vector<Line3> result = lines_;
        if (lines_.size() >= 2) {
            result = joined();
            left = static_cast<int>(std::count(used_.begin(), used_.end(), false));
        }
        orient(result);
        Patch patch;
        for (const Line3& line : result) {
            PointList section;
            for (const Point3& p : line) {
                section.push_back({p.x, p.y, p.z});
            }
            patch.push_back(section);
        }
        return patch;
    }

private:
    bool edgeCut(const Point3& u, const Point3& v, double p, Point3& cut) const {
        const double a = on(u, s_.axis);
        const double b = on(v, s_.axis);
        if (!((p >= a && b > p) || (p > b && a >= p))) {
            return false;
        }
        const double t = a == b ? 0 : (p - a) / (b - a);
        cut = {u.x + t * (v.x - u.x), u.y + t * (v.y - u.y), u.z + t * (v.z - u.z)};
        (s_.axis == 'x' ? cut.x : s_.axis == 'y' ? cut.y : cut.z) = p;
        return true;
    }

    void cutPlane(double p) {
        std::vector<Segment3> segments;
        for (std::size_t i = 0; i + 2 < corners_.size(); i += 3) {
            Point3 cp;
            Point3 cq;
            Point3 cr;
            const bool hasP = edgeCut(corners_[i], corners_[i + 1], p, cp);
            const bool hasQ = edgeCut(corners_[i + 1], corners_[i + 2], p, cq);
            const bool hasR = edgeCut(corners_[i + 2], corners_[i], p, cr);
            if (hasP && hasQ) {
                segments.push_back({cp, cq});
            } else if (hasQ && hasR) {
                segments.push_back({cq, cr});
            } else if (hasR && hasP) {
                segments.push_back({cr, cp});
            } else if (hasP) {
                segments.push_back({cp, cp});
            } else if (hasQ) {
                segments.push_back({cq, cq});
            } else if (hasR) {
                segments.push_back({cr, cr});
            }
        }
        if (!segments.empty()) {
            chain(segments);
        }
    }

    void chain(const std::vector<Segment3>& segments) {
        const std::size_t firstLine = lines_.size();
        std::vector<bool> started(segments.size(), false);
        std::size_t steps = 0;
        do {
            std::size_t start = 0;
            while (start < segments.size() && (started[start] || !canStart(segments[start], firstLine))) {
                ++start;
            }
            if (start == segments.size()) {
                if (lines_.size() > firstLine) {
                    return;
                }
                start = 0;
            }
            started[start] = true;
            Line3 line = {segments[start].e};
            extend(line, segments);
            std::reverse(line.begin(), line.end());
            extend(line, segments);
            lines_.push_back(line);
            steps += line.size() - 1;
        } while (steps != segments.size());
    }

    bool canStart(const Segment3& segment, std::size_t firstLine) const {
        if (same(segment.e, segment.f)) {
            return false;
        }
        for (std::size_t i = firstLine; i < lines_.size(); ++i) {
            for (const Point3& p : lines_[i]) {
                if (same(segment.e, p) || same(segment.f, p)) {
                    return false;
                }
            }
        }
        return true;
    }

    static bool accepts(const Line3& line, const Segment3& segment, const Point3& to) {
        if (line.size() == 1) {
            return true;
        }
        return !same(line[line.size() - 2], to) && !same(segment.e, segment.f) && !same(line.back(), line.front());
    }

    static void extend(Line3& line, const std::vector<Segment3>& segments) {
        std::vector<bool> walked(segments.size(), false);
        for (std::size_t i = 0; i < segments.size(); ++i) {
            if (walked[i]) {
                continue;
            }
            const Segment3& segment = segments[i];
            const Point3* to = nullptr;
            if (same(line.back(), segment.e)) {
                to = &segment.f;
            } else if (same(line.back(), segment.f)) {
                to = &segment.e;
            }
            if (to != nullptr && accepts(line, segment, *to)) {
                walked[i] = true;
                line.push_back(*to);
                i = std::size_t(-1);
            }
        }
    }

    bool near(const Point3& a, const Point3& b) const {
        const double dx = a.x - b.x;
        const double dy = a.y - b.y;
        const double dz = a.z - b.z;
        return dx * dx + dy * dy + dz * dz <= s_.precision * s_.precision;
    }

    /// Tries to take line L; false when no ends meet.
    bool takes(Line3& current, const Line3& l) const {
        const bool lastFirst = near(current.back(), l.front());
        const bool lastLast = near(current.back(), l.back());
        const bool firstFirst = near(current.front(), l.front());
        const bool firstLast = near(current.front(), l.back());
        if (!lastFirst && !lastLast && !firstFirst && !firstLast) {
            return false;
        }
        Line3 added = l;
        if (!lastFirst && !lastLast) {
            std::reverse(current.begin(), current.end());
        }
        if (!lastFirst && (lastLast || !firstFirst)) {
            std::reverse(added.begin(), added.end());
        }
        current.insert(current.end(), added.begin(), added.end());
        return true;
    }

    std::vector<Line3> joined() {
        std::vector<Line3> result = {lines_[0]};
        used_.assign(lines_.size(), false);
        used_[0] = true;
        while (joinOne(result)) {
        }
        return result;
    }

    bool joinOne(std::vector<Line3>& result) {
        for (std::size_t i = 1; i < lines_.size(); ++i) {
            if (used_[i]) {
                continue;
            }
            Line3& current = result.back();
            const bool samePlaneAsL = samePlane(on(lines_[i].front(), s_.axis), on(current.back(), s_.axis));
            if (samePlaneAsL && takes(current, lines_[i])) {
                used_[i] = true;
                return true;
            }
            bool later = false;
            for (std::size_t j = i + 1; j < lines_.size(); ++j) {
                later = later || (!used_[j] && samePlane(on(lines_[j].front(), s_.axis), on(current.back(), s_.axis)));
            }
            if (!samePlaneAsL || !later) {
                used_[i] = true;
                result.push_back(lines_[i]);
                return true;
            }
        }
        return false;
    }

    static double cosine(const Point3& a, const Point3& b) {
        const double lengthOfA = std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z);
        const double lengthOfB = std::sqrt(b.x * b.x + b.y * b.y + b.z * b.z);
        return (a.x * b.x + a.y * b.y + a.z * b.z) / (lengthOfA * lengthOfB);
    }

    static void orient(std::vector<Line3>& lines) {
        const auto minus = [](const Point3& a, const Point3& b) { return Point3{a.x - b.x, a.y - b.y, a.z - b.z}; };
        for (std::size_t i = 1; i < lines.size(); ++i) {
            const Line3& last = lines[i - 1];
            Line3& line = lines[i];
            if (last.size() < 2 || line.size() < 2) {
                continue;
            }
            const Point3 d = minus(last[1], last[0]);
            const Point3 b = minus(line[1], line[0]);
            const Point3 c = minus(line[line.size() - 2], line[line.size() - 1]);
            if (cosine(d, c) > cosine(d, b)) {
                std::reverse(line.begin(), line.end());
            }
        }
    }

    Slicing s_;
    Line3 corners_;
    std::vector<Line3> lines_;
    std::vector<bool> used_;
};

} // namespace velmora::reference
