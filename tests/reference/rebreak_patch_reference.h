#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "PatchList.h"
#include "curve_reference.h"

/// Rebreak of one patch in its plainest form: one curve after the other, every list copied, the whole model rebuilt.
namespace velmora::reference {

/// The fields of the dialog that a rebreak reads, counted from 1. `firstPoint` and `lastPoint` are changed by it.
struct RebreakFields {
    int regime = 1;
    int function = 1;
    int style = 1;
    int exactness = 0;
    int newCount = 2;
    double compression = 1.0;
    int firstPoint = 1;
    int lastPoint = 1;
    int capturedNumber = 1;
    int firstCurve = 1;
};

/// The curves [first, last) of a patch that has `count` of them.
inline std::pair<int, int> rebreakRange(const RebreakFields& fields, int count) {
    int first = fields.regime == 1 ? fields.capturedNumber - 1 : fields.firstCurve - 1;
    int last = fields.regime == 1 ? fields.capturedNumber : count;
    if (first > count - 1) {
        first = count - 1;
    }
    if (last > count) {
        last = count;
    }
    if (fields.regime == 2) {
        if (first > last) {
            first = last - 1;
        }
        if (first < 0) {
            first = 0;
            last = 1;
        }
    }
    return {first, last};
}

/// Running chord lengths along the curve that gives the law.
inline Column measuredLaw(const PointList& curve) {
    Column law;
    for (std::size_t i = 0; i < curve.size(); ++i) {
        if (i == 0) {
            law.push_back(0);
            continue;
        }
        const double dx = curve[i].x - curve[i - 1].x;
        const double dy = curve[i].y - curve[i - 1].y;
        const double dz = curve[i].z - curve[i - 1].z;
        law.push_back(law[i - 1] + std::sqrt(dx * dx + dy * dy + dz * dz));
    }
    return law;
}

/// The new points of a stretch of at least two. What a kernel leaves unwritten lies on the end of the stretch, and a
/// law that is too short stays at its end. A law without a length is one of equal steps.
inline PointList rebuiltStretch(const PointList& stretch, RebreakFields fields, const PointList& lawCurve) {
    const auto count = static_cast<std::size_t>(fields.newCount);
    Points in;
    for (const zVec<double>& p : stretch) {
        in.x.push_back(p.x);
        in.y.push_back(p.y);
        in.z.push_back(p.z);
    }
    const zVec<double> end = stretch.back();
    Points out{Column(count, end.x), Column(count, end.y), Column(count, end.z)};
    if (in.size() > 3) {
        removeCoincidentPoints(in);
    }
    Column law = measuredLaw(lawCurve);
    while (law.size() < count) {
        law.push_back(law.empty() ? 0.0 : law.back());
    }
    if (fields.style == 2 && !(law.back() > 0)) {
        fields.style = 1;
        fields.compression = 1;
    }
    if (fields.function == 1 && fields.style == 1) {
        splineRebreak(in, out, fields.exactness, 1, fields.compression, law, true);
    } else if (fields.function == 1) {
        splineRebreak(in, out, fields.exactness, 3, 0, law, true);
    } else if (fields.style == 1) {
        linearRebreak(in, out, fields.compression);
    } else {
        linearRebreakLaw(in, out, law);
    }
    PointList points;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back({out.x[i], out.y[i], out.z[i]});
    }
    return points;
}

/// Points `first` to `last` of a curve, counted from 1; none when there are none.
inline PointList pointsFromTo(const PointList& curve, int first, int last) {
    PointList points;
    for (int i = first; i <= last && i <= static_cast<int>(curve.size()); ++i) {
        points.push_back(curve[static_cast<std::size_t>(i - 1)]);
    }
    return points;
}

inline Patch rebreakSectionsOf(const Patch& patch, RebreakFields& fields, int capturedSection) {
    const int count = static_cast<int>(patch.size());
    const auto [first, last] = rebreakRange(fields, count);
    Patch rebuilt;
    for (int n = 0; n < count; ++n) {
        const PointList& section = patch[static_cast<std::size_t>(n)];
        if (n < first || n >= last) {
            rebuilt.push_back(section);
            continue;
        }
        const int points = static_cast<int>(section.size());
        if (fields.firstPoint > points) {
            fields.firstPoint = std::max(points - 1, 1);
        }
        fields.lastPoint = std::min(fields.lastPoint, points);
        const PointList stretch = pointsFromTo(section, fields.firstPoint, fields.lastPoint);
        if (stretch.size() < 2) {
            rebuilt.push_back(section);
            continue;
        }
        const PointList& captured = patch[static_cast<std::size_t>(std::clamp(capturedSection, 0, count - 1))];
        PointList fresh = pointsFromTo(section, 1, fields.firstPoint - 1);
        for (const zVec<double>& p : rebuiltStretch(stretch, fields, captured)) {
            fresh.push_back(p);
        }
        // The captured section's length bounds the tail.
        for (const zVec<double>& p : pointsFromTo(section, fields.lastPoint + 1, static_cast<int>(captured.size()))) {
            fresh.push_back(p);
        }
        rebuilt.push_back(fresh);
    }
    return rebuilt;
}

/// Point `line` of sections `first` to `last`, counted from 1, in turn.
inline PointList lineOf(const Patch& patch, std::size_t line, int first, int last) {
    PointList points;
    for (int s = first; s <= last; ++s) {
        points.push_back(patch[static_cast<std::size_t>(s - 1)][line]);
    }
    return points;
}

/// Of a regular patch. `capturedLine` becomes the first line of the range unless that is line 0.
inline Patch rebreakLinesOf(const Patch& patch, RebreakFields& fields, int& capturedLine) {
    const int sections = static_cast<int>(patch.size());
    const int lines = static_cast<int>(patch.front().size());
    const auto [first, last] = rebreakRange(fields, lines);
    fields.firstPoint = std::min(fields.firstPoint, sections);
    fields.lastPoint = std::min(fields.lastPoint, sections);
    const int lawLine = std::clamp(capturedLine, 0, lines - 1);
    if (first > 0) {
        capturedLine = first;
    }
    if (fields.lastPoint - fields.firstPoint + 1 < 2) {
        return patch;
    }
    Patch rebuilt;
    for (int s = 1; s < fields.firstPoint; ++s) {
        rebuilt.push_back(patch[static_cast<std::size_t>(s - 1)]);
    }
    for (int i = 0; i < fields.newCount; ++i) {
        rebuilt.emplace_back(patch.front().size(), patch.front().front());
    }
    for (int s = fields.lastPoint + 1; s <= sections; ++s) {
        rebuilt.push_back(patch[static_cast<std::size_t>(s - 1)]);
    }
    for (int line = 0; line < lines; ++line) {
        const auto j = static_cast<std::size_t>(line);
        if (line < first || line >= last) {
            for (int s = fields.firstPoint - 1; s <= fields.lastPoint - 1; ++s) {
                if (s < static_cast<int>(rebuilt.size())) {
                    rebuilt[static_cast<std::size_t>(s)][j] = patch[static_cast<std::size_t>(s)][j];
                }
            }
            continue;
        }
        const PointList stretch = lineOf(patch, j, fields.firstPoint, fields.lastPoint);
        const PointList law = lineOf(patch, static_cast<std::size_t>(lawLine), 1, sections);
        const PointList fresh = rebuiltStretch(stretch, fields, law);
        for (int i = 0; i < fields.newCount; ++i) {
            rebuilt[static_cast<std::size_t>(fields.firstPoint - 1) + static_cast<std::size_t>(i)][j] =
                fresh[static_cast<std::size_t>(i)];
        }
    }
    return rebuilt;
}

/// The model with patch K rewritten: those before it copied, the new one, those after it.
inline PatchList withPatch(const PatchList& list, std::size_t K, const Patch& rewritten) {
    PatchList rebuilt;
    for (std::size_t k = 0; k < list.size(); ++k) {
        rebuilt.push_back(k == K ? rewritten : list[k]);
    }
    return rebuilt;
}

} // namespace velmora::reference
