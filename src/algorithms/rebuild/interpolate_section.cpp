#include "interpolate_section.h"

#include "patch_curves.h"
#include "vectors.h"

namespace velmora {

namespace {

constexpr std::int32_t fewestSections = 3;

/// start + (to - from) * part / whole, for each point.
struct Blend {
    const PointList& start;
    const PointList& from;
    const PointList& to;

    zVec<double> at(std::size_t j, double part, double whole) const {
        const zVec<double> way = (to[j] - from[j]) * part;
        return start[j] + zVec<double>(way.x / whole, way.y / whole, way.z / whole);
    }
    PointList all(double part, double whole) const {
        PointList points;
        points.reserve(start.size());
        for (std::size_t j = 0; j < start.size(); ++j) {
            points.push_back(at(j, part, whole));
        }
        return points;
    }
};

/// The way on which a border section moves: along the step between it and its neighbour, in the order of the sections.
Blend borderBlend(const Patch& patch, std::int32_t N) {
    const auto n = static_cast<std::size_t>(N);
    return N == 0 ? Blend{patch[0], patch[0], patch[1]} : Blend{patch[n], patch[n - 1], patch[n]};
}

bool atBorder(const Patch& patch, std::int32_t N) {
    return N == 0 || N == countOf(patch) - 1;
}

/// What stands in the way of any interpolation; Done for nothing.
Interpolation obstacle(const Patch& patch, std::int32_t N) {
    if (countOf(patch) < fewestSections) {
        return Interpolation::TooFewSections;
    }
    return N < 0 || N >= countOf(patch) || !isGrid(patch) ? Interpolation::NotMoved : Interpolation::Done;
}

std::size_t nearestPoint(const PointList& points, const zVec<double>& target) {
    std::size_t nearest = 0;
    for (std::size_t j = 1; j < points.size(); ++j) {
        if (distance(points[j], target) < distance(points[nearest], target)) {
            nearest = j;
        }
    }
    return nearest;
}

Interpolation fitBorder(Patch& patch, std::int32_t N, std::size_t c, const zVec<double>& target) {
    const Blend blend = borderBlend(patch, N);
    PointList& section = patch[static_cast<std::size_t>(N)];
    const double g = distance(blend.to[c], blend.from[c]);
    if (g < nearZero) {
        return Interpolation::NotMoved;
    }
    const double k = distance(section[c], target) / g;
    const bool forward = !(distance(blend.at(c, -k, 1), target) < distance(blend.at(c, k, 1), target));
    section = blend.all(forward ? k : -k, 1);
    return Interpolation::Done;
}

Interpolation fitInner(Patch& patch, std::int32_t N, std::size_t c, const zVec<double>& target) {
    const auto n = static_cast<std::size_t>(N);
    PointList& section = patch[n];
    const PointList& previous = patch[n - 1];
    const PointList& next = patch[n + 1];
    const double d = distance(section[c], target);
    const double toPrevious = distance(previous[c], section[c]);
    const double toNext = distance(next[c], section[c]);
    if (d > toPrevious && d > toNext) {
        return Interpolation::TooFar;
    }
    const bool forward = !(toNext < distance(next[c], target));
    if ((forward ? toNext : toPrevious) < nearZero) {
        return Interpolation::DoubleLine;
    }
    section = forward ? Blend{section, section, next}.all(d, toNext)
                      : Blend{previous, previous, section}.all(distance(previous[c], target), toPrevious);
    return Interpolation::Done;
}

} // namespace

Interpolation interpolateSection(Patch& patch, std::int32_t N, double k) {
    const Interpolation stop = obstacle(patch, N);
    if (stop != Interpolation::Done) {
        return stop;
    }
    const auto n = static_cast<std::size_t>(N);
    PointList& section = patch[n];
    if (atBorder(patch, N)) {
        section = borderBlend(patch, N).all(k, 1);
    } else if (k > 0) {
        section = Blend{section, section, patch[n + 1]}.all(k, 1);
    } else {
        section = Blend{section, patch[n - 1], section}.all(k, 1);
    }
    return Interpolation::Done;
}

Interpolation interpolateToPoint(Patch& patch, std::int32_t N, const zVec<double>& target) {
    const Interpolation stop = obstacle(patch, N);
    if (stop != Interpolation::Done) {
        return stop;
    }
    const std::size_t c = nearestPoint(patch[static_cast<std::size_t>(N)], target);
    return atBorder(patch, N) ? fitBorder(patch, N, c, target) : fitInner(patch, N, c, target);
}

} // namespace velmora
