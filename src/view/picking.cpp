#include "picking.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "camera.h"
#include "vectors.h"

namespace velmora {

namespace {

constexpr double shortestLine = 1e-10;
constexpr double distanceOfShortLine = -1e10;
/// Keys farther apart than this factor cannot round to one distance.
constexpr double keyMargin = 1.0 + 8e-15;
constexpr double roundingOfDistance = 1e-12;
/// The fourth power of longer lines overflows: distances from them are worked out scaled by a power of two.
constexpr double largestPlainLine = 1e60;

} // namespace

LineDistance::LineDistance(const PixelLine& line) : far_(line.farPoint), along_(line.nearPoint - line.farPoint) {
    const double largest = std::max({std::abs(along_.x), std::abs(along_.y), std::abs(along_.z)});
    if (largest > largestPlainLine && std::isfinite(largest)) {
        scale_ = std::ldexp(1.0, -std::ilogb(largest));
        along_ = along_ * scale_;
    }
    length_ = lengthOf(along_);
}

bool LineDistance::isLine() const {
    return !(length_ < shortestLine);
}

double LineDistance::key(const zVec<double>& point) const {
    const zVec<double> moment = cross(along_, (far_ - point) * scale_);
    return dot(moment, moment);
}

double LineDistance::operator()(const zVec<double>& point) const {
    return isLine() ? std::sqrt(key(point)) / length_ / scale_ : distanceOfShortLine;
}

double LineDistance::slack(const zVec<double>& point) const {
    return roundingOfDistance * lengthOf((far_ - point) * scale_) / scale_;
}

double RayDistance(const PixelLine& line, const zVec<double>& point) {
    return LineDistance(line)(point);
}

void NearestSearch::look(std::int32_t patch, std::int32_t section, std::int32_t point, const zVec<double>& position) {
    if (found_ && distanceTo_.isLine() && !(distanceTo_.key(position) <= keyBound_)) {
        return;
    }
    const double distance = distanceTo_(position);
    if (std::isnan(distance)) {
        return;
    }
    const bool earlier = std::tie(patch, section, point) < std::tie(nearest_.patch, nearest_.section, nearest_.point);
    if (!found_ || distance < nearest_.distance || (distance == nearest_.distance && earlier)) {
        found_ = true;
        nearest_ = {patch, section, point, distance, position};
        keyBound_ = distanceTo_.key(position) * keyMargin;
    }
}

std::optional<NearestPoint> nearestGridPoint(const PatchList& list, const PixelLine& line, const PickFilter& filter) {
    const LineDistance distanceTo(line);
    NearestSearch search(distanceTo);
    for (std::int32_t k = 0; k < countOf(list); ++k) {
        const bool wanted = filter.patches.empty() || filter.patches[static_cast<std::size_t>(k)];
        if (!wanted || (filter.patch >= 0 && k != filter.patch)) {
            continue;
        }
        const Patch& patch = list[static_cast<std::size_t>(k)];
        for (std::int32_t n = 0; n < countOf(patch); ++n) {
            if (filter.section >= 0 && n != filter.section) {
                continue;
            }
            const PointList& section = patch[static_cast<std::size_t>(n)];
            const std::int32_t first = filter.point >= 0 ? filter.point : 0;
            const std::int32_t last =
                filter.point >= 0 ? std::min(filter.point + 1, countOf(section)) : countOf(section);
            for (std::int32_t m = first; m < last; ++m) {
                search.look(k, n, m, section[static_cast<std::size_t>(m)]);
            }
        }
    }
    return search.result();
}

} // namespace velmora
