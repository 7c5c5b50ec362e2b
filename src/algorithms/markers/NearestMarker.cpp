#include "NearestMarker.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace velmora {

namespace {

constexpr std::size_t leafSize = 6;

} // namespace

NearestMarker::NearestMarker(std::vector<PlanePoint> markers) : markers_(std::move(markers)) {
    markers_.erase(std::remove_if(markers_.begin(), markers_.end(),
                                  [](const PlanePoint& p) { return !std::isfinite(p.a) || !std::isfinite(p.b); }),
                   markers_.end());
    if (!markers_.empty()) {
        build(0, 0, markers_.size());
    }
}

void NearestMarker::build(std::size_t node, std::size_t first, std::size_t last) {
    if (node >= nodes_.size()) {
        nodes_.resize(node + 1);
    }
    const auto at = [this](std::size_t i) { return markers_.begin() + static_cast<std::ptrdiff_t>(i); };
    const auto byA = [](const PlanePoint& p, const PlanePoint& q) { return p.a < q.a; };
    const auto byB = [](const PlanePoint& p, const PlanePoint& q) { return p.b < q.b; };
    const auto [lowA, highA] = std::minmax_element(at(first), at(last), byA);
    const auto [lowB, highB] = std::minmax_element(at(first), at(last), byB);
    const Node box{first, last, lowA->a, highA->a, lowB->b, highB->b};
    nodes_[node] = box;
    if (last - first <= leafSize) {
        return;
    }
    const std::size_t middle = first + (last - first) / 2;
    if (box.highA - box.lowA > box.highB - box.lowB) {
        std::nth_element(at(first), at(middle), at(last), byA);
    } else {
        std::nth_element(at(first), at(middle), at(last), byB);
    }
    build(2 * node + 1, first, middle);
    build(2 * node + 2, middle, last);
}

/// The square of the distance to a node's box. Rounding keeps order, so it is never above that of a point inside.
double NearestMarker::boundOf(std::size_t node, double a, double b) const {
    const Node& box = nodes_[node];
    const double da = std::max({0.0, box.lowA - a, a - box.highA});
    const double db = std::max({0.0, box.lowB - b, b - box.highB});
    return da * da + db * db;
}

void NearestMarker::search(std::size_t node, double a, double b, double& best) const {
    const Node& box = nodes_[node];
    if (box.last - box.first <= leafSize) {
        for (std::size_t i = box.first; i < box.last; ++i) {
            const double da = markers_[i].a - a;
            const double db = markers_[i].b - b;
            best = std::min(best, da * da + db * db);
        }
        return;
    }
    std::size_t near = 2 * node + 1;
    std::size_t far = near + 1;
    double nearBound = boundOf(near, a, b);
    double farBound = boundOf(far, a, b);
    if (farBound < nearBound) {
        std::swap(near, far);
        std::swap(nearBound, farBound);
    }
    if (nearBound < best) {
        search(near, a, b, best);
    }
    if (farBound < best) {
        search(far, a, b, best);
    }
}

double NearestMarker::distanceFrom(double a, double b) const {
    double best = std::numeric_limits<double>::infinity();
    if (!nodes_.empty()) {
        search(0, a, b, best);
    }
    return std::sqrt(best);
}

} // namespace velmora
