#include "PlaneCutter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "corner_box.h"

namespace velmora {

namespace {

/// So many segments are held at a time, if the planes are not fuller than that.
constexpr std::size_t segmentsAtOnce = std::size_t{1} << 20;
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Cuts one triangle after the other by one plane.
class TriangleCut {
public:
    explicit TriangleCut(int axis) : axis_(static_cast<std::size_t>(axis)) {}

    /// The segment of the plane in the triangle; false when no edge is cut. An edge that starts on the plane is cut,
    /// one that ends on it or lies in it is not.
    bool operator()(const std::array<SlicePoint, 3>& corners, double plane, SliceSegment& segment) const {
        SlicePoint cuts[3];
        bool cut[3];
        for (std::size_t edge = 0; edge < 3; ++edge) {
            cut[edge] = cutEdge(corners[edge], corners[edge == 2 ? 0 : edge + 1], plane, cuts[edge]);
        }
        if (cut[0] && cut[1]) {
            segment = {cuts[0], cuts[1]};
        } else if (cut[1] && cut[2]) {
            segment = {cuts[1], cuts[2]};
        } else if (cut[2] && cut[0]) {
            segment = {cuts[2], cuts[0]};
        } else if (cut[0] || cut[1] || cut[2]) {
            const SlicePoint& single = cut[0] ? cuts[0] : cut[1] ? cuts[1] : cuts[2];
            segment = {single, single};
        } else {
            return false;
        }
        return true;
    }

private:
    bool cutEdge(const SlicePoint& u, const SlicePoint& v, double plane, SlicePoint& at) const {
        const double a = u[axis_];
        const double b = v[axis_];
        if (!((plane >= a && b > plane) || (plane > b && a >= plane))) {
            return false;
        }
        const double t = (plane - a) / (b - a);
        for (std::size_t i = 0; i < 3; ++i) {
            at[i] = u[i] + t * (v[i] - u[i]);
        }
        at[axis_] = plane;
        return true;
    }

    std::size_t axis_;
};

} // namespace

PlaneCutter::PlaneCutter(const zRegion_fe& region, int axis, const std::vector<double>& planes)
    : region_(region), axis_(axis) {
    for (const auto& zone : region.blocks) {
        axes_.push_back(zoneAxes(*zone));
    }
    for (std::size_t number = 0; number < planes.size(); ++number) {
        if (planes[number] == planes[number]) {
            planes_.push_back({planes[number], number});
        }
    }
    std::stable_sort(planes_.begin(), planes_.end(), [](const Plane& a, const Plane& b) { return a.value < b.value; });
    if (planes_.size() > 1) {
        // The planes stand at equal steps, but for those at the ends.
        const std::size_t middle = (planes_.size() - 1) / 2;
        const double scale = 1.0 / (planes_[middle + 1].value - planes_[middle].value);
        guessScale_ = scale < infinity ? scale : 0.0;
        guessFrom_ = planes_[middle].value - static_cast<double>(middle) / scale;
    }
}

/// The first plane that is not below a coordinate.
std::int32_t PlaneCutter::firstPlaneFrom(double value) const {
    const double guess = std::ceil((value - guessFrom_) * guessScale_);
    const auto count = static_cast<std::int32_t>(planes_.size());
    if (guess >= 0.0 && guess <= count) {
        const auto at = static_cast<std::int32_t>(guess);
        const bool noneMissed = at == 0 || planes_[static_cast<std::size_t>(at) - 1].value < value;
        if (noneMissed && (at == count || planes_[static_cast<std::size_t>(at)].value >= value)) {
            return at;
        }
    }
    const auto found = std::lower_bound(planes_.begin(), planes_.end(), value,
                                        [](const Plane& plane, double least) { return plane.value < least; });
    return static_cast<std::int32_t>(found - planes_.begin());
}

void PlaneCutter::findHits(const ReportProgress& progress) {
    // Differences first: up where a triangle's planes begin, down behind them.
    candidates_.assign(planes_.size() + 1, 0);
    for (std::uint32_t k = 0; k < region_.blocks.size(); ++k) {
        const zBlock_fe& zone = *region_.blocks[k];
        const double* const values = axes_[k][static_cast<std::size_t>(axis_)];
        const std::int32_t* corners = zone.connectivity.data();
        for (std::int32_t element = 0; values != nullptr && element < zone.elementCount; ++element, corners += 4) {
            double low = infinity;
            double high = -infinity;
            for (int corner = 0; corner < 3; ++corner) {
                const double value = values[corners[corner]];
                low = value < low ? value : low;
                high = value > high ? value : high;
            }
            const std::int32_t first = firstPlaneFrom(low);
            std::int32_t end = first;
            while (end < static_cast<std::int32_t>(planes_.size()) &&
                   planes_[static_cast<std::size_t>(end)].value <= high) {
                ++end;
            }
            if (end > first) {
                hits_.push_back({k, element, first, end});
                ++candidates_[static_cast<std::size_t>(first)];
                --candidates_[static_cast<std::size_t>(end)];
            }
        }
        if (progress) {
            progress(0.3 * (k + 1) / static_cast<double>(region_.blocks.size()));
        }
    }
    for (std::size_t i = 1; i < candidates_.size(); ++i) {
        candidates_[i] += candidates_[i - 1]; // a difference below 0 wraps round and back
    }
}

void PlaneCutter::cutPlanes(std::size_t from, std::size_t to, const TakePlane& take) {
    std::vector<std::size_t> ends(to - from);
    std::size_t total = 0;
    for (std::size_t plane = from; plane < to; ++plane) {
        ends[plane - from] = total;
        total += candidates_[plane];
    }
    segments_.resize(total);
    const TriangleCut cutTriangle(axis_);
    for (const Hit& hit : hits_) {
        const auto first = std::max(from, static_cast<std::size_t>(hit.firstPlane));
        const auto end = std::min(to, static_cast<std::size_t>(hit.endPlane));
        if (first >= end) {
            continue;
        }
        const auto& axes = axes_[hit.zone];
        const std::int32_t* const nodes =
            &region_.blocks[hit.zone]->connectivity[std::size_t{4} * static_cast<std::size_t>(hit.element)];
        std::array<SlicePoint, 3> corners;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            corners[corner] = {axes[0][nodes[corner]], axes[1][nodes[corner]], axes[2][nodes[corner]]};
        }
        for (std::size_t plane = first; plane < end; ++plane) {
            std::size_t& place = ends[plane - from];
            place += cutTriangle(corners, planes_[plane].value, segments_[place]) ? 1 : 0;
        }
    }
    std::size_t begin = 0;
    for (std::size_t plane = from; plane < to; ++plane) {
        if (ends[plane - from] > begin) {
            take(planes_[plane].number, {segments_.data() + begin, ends[plane - from] - begin});
        }
        begin += candidates_[plane];
    }
}

void PlaneCutter::cut(const TakePlane& take, const ReportProgress& progress) {
    findHits(progress);
    for (std::size_t from = 0; from < planes_.size();) {
        std::size_t to = from;
        std::size_t total = 0;
        do {
            total += candidates_[to++];
        } while (to < planes_.size() && total + candidates_[to] <= segmentsAtOnce);
        cutPlanes(from, to, take);
        from = to;
        if (progress) {
            progress(0.3 + 0.6 * static_cast<double>(from) / static_cast<double>(planes_.size()));
        }
    }
}

} // namespace velmora
