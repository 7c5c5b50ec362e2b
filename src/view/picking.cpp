#include "picking.h"

#include <cmath>

namespace velmora {

namespace {

constexpr double shortestLine = 1e-10;
constexpr double distanceOfShortLine = -1e10;

double squaredLength(const zVec<double>& v) {
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

/// The distances from one line, with what depends on the line alone worked out once.
class LineDistance {
public:
    explicit LineDistance(const PixelLine& line)
        : far_(line.farPoint), along_(line.nearPoint - line.farPoint), length_(std::sqrt(squaredLength(along_))) {}

    double operator()(const zVec<double>& point) const {
        if (length_ < shortestLine) {
            return distanceOfShortLine;
        }
        return std::sqrt(squaredLength(cross(along_, far_ - point))) / length_;
    }

private:
    zVec<double> far_;
    zVec<double> along_;
    double length_;
};

} // namespace

double RayDistance(const PixelLine& line, const zVec<double>& point) {
    return LineDistance(line)(point);
}

std::optional<NearestPoint> nearestGridPoint(const PatchList& list, const PixelLine& line, const PickFilter& filter) {
    const LineDistance distanceTo(line);
    std::optional<NearestPoint> nearest;
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
                const zVec<double>& point = section[static_cast<std::size_t>(m)];
                const double distance = distanceTo(point);
                if (nearest ? distance < nearest->distance : !std::isnan(distance)) {
                    nearest = NearestPoint{k, n, m, distance, point};
                }
            }
        }
    }
    return nearest;
}

} // namespace velmora
