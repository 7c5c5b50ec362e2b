#include "section_edits.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "match_border.h"
#include "vectors.h"

namespace velmora {

namespace {

bool isPointOf(const PointList& section, std::int32_t point) {
    return point >= 0 && point < countOf(section);
}

double meanGap(const PointList& a, const PointList& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += distance(a[i], b[i]);
    }
    return sum / static_cast<double>(a.size());
}

} // namespace

PointList withoutHalf(const PointList& section, Side removed) {
    const auto count = static_cast<std::ptrdiff_t>(section.size());
    if (removed == Side::After) {
        return {section.begin(), section.begin() + (count + 1) / 2};
    }
    return {section.begin() + count / 2, section.end()};
}

PointList withoutSide(const PointList& section, std::int32_t point, Side removed) {
    return withSideReplaced(section, point, removed, {});
}

PointList withSideReplaced(const PointList& section, std::int32_t point, Side replaced, const PointList& part) {
    if (!isPointOf(section, point)) {
        return section;
    }
    PointList result;
    if (replaced == Side::After) {
        result.assign(section.begin(), section.begin() + point + 1);
        result.insert(result.end(), part.begin(), part.end());
    } else {
        result = part;
        result.insert(result.end(), section.begin() + point, section.end());
    }
    return result;
}

PointList withMirrorImage(const PointList& section, const CoordinatePlane& plane) {
    PointList result = section;
    result.reserve(2 * section.size());
    std::transform(section.rbegin(), section.rend(), std::back_inserter(result),
                   [&plane](const zVec<double>& point) { return reflectedPoint(point, plane); });
    return result;
}

bool isClosed(const PointList& section) {
    if (section.empty()) {
        return false;
    }
    const zVec<double> gap = section.front() - section.back();
    return std::abs(gap.x) < nearZero && std::abs(gap.y) < nearZero && std::abs(gap.z) < nearZero;
}

PointList loopFrom(const PointList& section, std::int32_t first, bool rising) {
    if (!isPointOf(section, first)) {
        return section;
    }
    PointList loop;
    loop.reserve(section.size());
    if (rising) {
        loop.assign(section.begin() + first, section.end());
        loop.insert(loop.end(), section.begin() + 1, section.begin() + first + 1);
    } else {
        const auto start = section.rbegin() + (countOf(section) - 1 - first);
        loop.assign(start, section.rend());
        loop.insert(loop.end(), section.rbegin() + 1, start + 1);
    }
    return loop;
}

void prescribe(zVec<double>& point, const PrescribedValues& values) {
    point.x = values.x.value_or(point.x);
    point.y = values.y.value_or(point.y);
    point.z = values.z.value_or(point.z);
}

std::optional<PointList> matchedPoints(const PointList& curve, const PointList& target) {
    if (curve.empty() || curve.size() != target.size()) {
        return std::nullopt;
    }
    const PointList backwards(target.rbegin(), target.rend());
    const double same = meanGap(curve, target);
    const double reversed = meanGap(curve, backwards);
    // A tie goes to the direction as it is. A distance that is not a number matches nothing.
    if (same <= borderReach && !(reversed < same)) {
        return target;
    }
    if (reversed <= borderReach) {
        return backwards;
    }
    return std::nullopt;
}

} // namespace velmora
