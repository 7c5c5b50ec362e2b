#include "triangulate_polygon.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace velmora {

namespace {

struct FlatPoint {
    double u = 0.0;
    double v = 0.0;
    friend bool operator==(const FlatPoint&, const FlatPoint&) = default;
};

/// Twice the area of the triangle, positive when it turns left.
double turn(const FlatPoint& a, const FlatPoint& b, const FlatPoint& c) {
    return (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u);
}

/// The corners seen along the widest axis so that they turn left, moved and scaled into a box of size 1. All zero when
/// the polygon has no area.
std::vector<FlatPoint> flattened(std::span<const zVec<double>> corners) {
    const zVec<double> origin = corners.front();
    double size = 0.0;
    for (const zVec<double>& corner : corners) {
        // The halves keep the difference of two numbers near the limit finite.
        size = std::max({size, std::abs(corner.x / 2 - origin.x / 2), std::abs(corner.y / 2 - origin.y / 2),
                         std::abs(corner.z / 2 - origin.z / 2)});
    }
    std::vector<FlatPoint> flat(corners.size());
    if (size == 0.0) {
        return flat;
    }
    const auto local = [&](const zVec<double>& p) {
        return zVec<double>((p.x / 2 - origin.x / 2) / size, (p.y / 2 - origin.y / 2) / size,
                            (p.z / 2 - origin.z / 2) / size);
    };
    zVec<double> area;
    zVec<double> before = local(corners.back());
    for (const zVec<double>& corner : corners) {
        const zVec<double> here = local(corner);
        area = area + cross(before, here);
        before = here;
    }
    const double widest = std::max({std::abs(area.x), std::abs(area.y), std::abs(area.z)});
    for (std::size_t i = 0; i < corners.size() && widest > 0.0; ++i) {
        const zVec<double> p = local(corners[i]);
        flat[i] = widest == std::abs(area.z)   ? FlatPoint{p.x, p.y}
                  : widest == std::abs(area.x) ? FlatPoint{p.y, p.z}
                                               : FlatPoint{p.z, p.x};
        const double side = widest == std::abs(area.z) ? area.z : widest == std::abs(area.x) ? area.x : area.y;
        flat[i].u = side < 0.0 ? -flat[i].u : flat[i].u;
    }
    return flat;
}

/// Whether every corner turns left, and the border goes round once.
bool strictlyConvex(const std::vector<FlatPoint>& flat) {
    const std::size_t n = flat.size();
    int turnsOfU = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const FlatPoint& a = flat[i];
        const FlatPoint& b = flat[(i + 1) % n];
        const FlatPoint& c = flat[(i + 2) % n];
        if (!(turn(a, b, c) > 0.0)) {
            return false;
        }
        turnsOfU += (b.u >= a.u) != (c.u >= b.u) ? 1 : 0;
    }
    return turnsOfU <= 2;
}

/// The corners that are left, and the ears cut off one by one. Only corners that do not turn left can lie in an ear;
/// they are kept in a grid of cells.
class EarCutter {
public:
    EarCutter(const std::vector<FlatPoint>& flat, std::vector<std::array<std::int32_t, 3>>& triangles)
        : flat_(flat), triangles_(triangles), left_(flat.size()), next_(flat.size()), previous_(flat.size()) {
        for (std::size_t i = 0; i < flat.size(); ++i) {
            next_[i] = i + 1 == flat.size() ? 0 : i + 1;
            previous_[i] = i == 0 ? flat.size() - 1 : i - 1;
        }
        fillGrid();
    }

    bool run();

private:
    void fillGrid();
    std::size_t column(double value, double lower, double size) const;
    double turnAt(std::size_t i) const { return turn(flat_[previous_[i]], flat_[i], flat_[next_[i]]); }
    bool isEar(std::size_t i);
    bool blocks(std::size_t other, std::size_t i) const;
    void cut(std::size_t i);

    static constexpr std::size_t gone = std::numeric_limits<std::size_t>::max();

    const std::vector<FlatPoint>& flat_;
    std::vector<std::array<std::int32_t, 3>>& triangles_;
    std::size_t left_;
    std::vector<std::size_t> next_;
    std::vector<std::size_t> previous_;
    std::vector<std::vector<std::size_t>> cells_;
    std::size_t side_ = 1;
    double lowerU_ = 0.0;
    double lowerV_ = 0.0;
    double sizeU_ = 0.0;
    double sizeV_ = 0.0;
    std::int64_t work_ = 0;
};

void EarCutter::fillGrid() {
    const auto [leastU, mostU] =
        std::minmax_element(flat_.begin(), flat_.end(), [](const auto& a, const auto& b) { return a.u < b.u; });
    const auto [leastV, mostV] =
        std::minmax_element(flat_.begin(), flat_.end(), [](const auto& a, const auto& b) { return a.v < b.v; });
    lowerU_ = leastU->u;
    lowerV_ = leastV->v;
    sizeU_ = mostU->u - lowerU_;
    sizeV_ = mostV->v - lowerV_;
    side_ = static_cast<std::size_t>(std::sqrt(static_cast<double>(flat_.size()))) + 1;
    cells_.resize(side_ * side_);
    for (std::size_t i = 0; i < flat_.size(); ++i) {
        if (!(turnAt(i) > 0.0)) {
            cells_[column(flat_[i].u, lowerU_, sizeU_) + side_ * column(flat_[i].v, lowerV_, sizeV_)].push_back(i);
        }
    }
}

std::size_t EarCutter::column(double value, double lower, double size) const {
    const double place = size > 0.0 ? (value - lower) / size * static_cast<double>(side_) : 0.0;
    return std::min(static_cast<std::size_t>(std::max(place, 0.0)), side_ - 1);
}

// A corner inside of the ear or on its border; one at the same place as a corner of the ear does not count.
bool EarCutter::blocks(std::size_t other, std::size_t i) const {
    const FlatPoint& p = flat_[other];
    const FlatPoint& a = flat_[previous_[i]];
    const FlatPoint& b = flat_[i];
    const FlatPoint& c = flat_[next_[i]];
    return next_[other] != gone && p != a && p != b && p != c && turn(a, b, p) >= 0.0 && turn(b, c, p) >= 0.0 &&
           turn(c, a, p) >= 0.0;
}

bool EarCutter::isEar(std::size_t i) {
    ++work_;
    if (!(turnAt(i) > 0.0)) {
        return false;
    }
    const FlatPoint& a = flat_[previous_[i]];
    const FlatPoint& b = flat_[i];
    const FlatPoint& c = flat_[next_[i]];
    const std::size_t firstU = column(std::min({a.u, b.u, c.u}), lowerU_, sizeU_);
    const std::size_t lastU = column(std::max({a.u, b.u, c.u}), lowerU_, sizeU_);
    const std::size_t firstV = column(std::min({a.v, b.v, c.v}), lowerV_, sizeV_);
    const std::size_t lastV = column(std::max({a.v, b.v, c.v}), lowerV_, sizeV_);
    for (std::size_t v = firstV; v <= lastV; ++v) {
        for (std::size_t u = firstU; u <= lastU; ++u) {
            std::vector<std::size_t>& cell = cells_[u + side_ * v];
            std::erase_if(cell, [this](std::size_t other) { return next_[other] == gone; });
            work_ += 1 + static_cast<std::int64_t>(cell.size());
            if (std::any_of(cell.begin(), cell.end(), [this, i](std::size_t other) { return blocks(other, i); })) {
                return false;
            }
        }
    }
    return true;
}

void EarCutter::cut(std::size_t i) {
    const std::size_t before = previous_[i];
    const std::size_t behind = next_[i];
    triangles_.push_back(
        {static_cast<std::int32_t>(before), static_cast<std::int32_t>(i), static_cast<std::int32_t>(behind)});
    next_[before] = behind;
    previous_[behind] = before;
    next_[i] = gone;
    --left_;
}

// Goes round and cuts every other ear, so that no fan of thin triangles comes of it. Where a whole round finds none,
// a corner on the line of its neighbours is cut, and where there is not even that the border crosses itself.
bool EarCutter::run() {
    const auto enough = static_cast<std::int64_t>(400) * static_cast<std::int64_t>(flat_.size()) + 100'000;
    bool clean = true;
    std::size_t at = 0;
    std::size_t refused = 0;
    while (left_ > 3) {
        const bool giveUp = work_ > enough;
        if (!giveUp && refused < left_ && !isEar(at)) {
            at = next_[at];
            ++refused;
            continue;
        }
        if (refused >= left_ && !giveUp) {
            std::size_t flatCorner = at;
            for (std::size_t step = 0; step < left_ && turnAt(flatCorner) != 0.0; ++step) {
                flatCorner = next_[flatCorner];
            }
            work_ += static_cast<std::int64_t>(left_);
            clean = clean && turnAt(flatCorner) == 0.0;
            at = flatCorner;
        }
        clean = clean && !giveUp;
        const std::size_t behind = next_[at];
        cut(at);
        at = giveUp ? behind : next_[behind];
        refused = 0;
    }
    const bool last = turnAt(at) >= 0.0;
    cut(at);
    return clean && last;
}

} // namespace

bool triangulatePolygon(std::span<const zVec<double>> corners, std::vector<std::array<std::int32_t, 3>>& triangles) {
    if (corners.size() == 3) {
        triangles.push_back({0, 1, 2});
        return true;
    }
    const std::vector<FlatPoint> flat = flattened(corners);
    if (strictlyConvex(flat)) {
        for (std::int32_t i = 1; i + 1 < static_cast<std::int32_t>(corners.size()); ++i) {
            triangles.push_back({0, i, i + 1});
        }
        return true;
    }
    return EarCutter(flat, triangles).run();
}

} // namespace velmora
