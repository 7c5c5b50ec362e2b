#include "pick_boxes.h"

#include <algorithm>
#include <cmath>

#include "camera.h"
#include "vectors.h"

namespace velmora {

namespace {

using Vec = zVec<double>;

/// Boxes are wider than what they hold by this part of their size: the inside test accepts a hit that lies off a
/// triangle by some millionths of its size.
constexpr double boxMargin = 1e-4;
/// And by this part of the numbers in play, for rounding.
constexpr double roundingMargin = 1e-9;
/// A triangle lower than this part of its longest edge, or smaller than this part of its coordinates, is odd.
constexpr double oddFlatness = 1e-6;
constexpr double oddSmallness = 1e-7;

const Vec nowhere(std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN(),
                  std::numeric_limits<double>::quiet_NaN());

} // namespace

bool PickBox::missedBy(const Vec& origin, const Vec& direction) const {
    // Separating axes: the line against the box, across each pair of axes. NaN never separates.
    const Vec p = origin - centre;
    const Vec h = half + Vec(1.0, 1.0, 1.0) * (1e-11 * (std::abs(p.x) + std::abs(p.y) + std::abs(p.z)));
    const Vec moment = cross(p, direction);
    const Vec d(std::abs(direction.x), std::abs(direction.y), std::abs(direction.z));
    return std::abs(moment.x) > h.y * d.z + h.z * d.y || std::abs(moment.y) > h.x * d.z + h.z * d.x ||
           std::abs(moment.z) > h.x * d.y + h.y * d.x;
}

void PickExtent::add(const Vec& p) {
    broken_ = broken_ || !std::isfinite(p.x + p.y + p.z);
    lower_ = {std::min(lower_.x, p.x), std::min(lower_.y, p.y), std::min(lower_.z, p.z)};
    upper_ = {std::max(upper_.x, p.x), std::max(upper_.y, p.y), std::max(upper_.z, p.z)};
}

PickBox PickExtent::triangleBox() const {
    const double size = lengthOf(upper_ - lower_);
    const double largest = std::max(lengthOf(upper_), lengthOf(lower_));
    const double margin = boxMargin * size + roundingMargin * largest;
    PickBox box;
    box.centre = broken_ ? nowhere : (lower_ + upper_) * 0.5;
    box.half = (upper_ - lower_) * 0.5 + Vec(margin, margin, margin);
    box.radius = lengthOf(box.half);
    return box;
}

PickBox PickExtent::boxOfBoxes() const {
    PickBox box;
    box.centre = broken_ ? nowhere : (lower_ + upper_) * 0.5;
    box.half = (upper_ - lower_) * (0.5 + roundingMargin);
    box.radius = lengthOf(box.half);
    return box;
}

namespace {

/// The fourth powers of larger numbers overflow.
constexpr double largestPlain = 1e60;

double largestOf(const Vec& v) {
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

/// What brings a vast number near to 1, exactly; 1 for others.
double scaleFor(double largest) {
    return largest > largestPlain && std::isfinite(largest) ? std::ldexp(1.0, -std::ilogb(largest)) : 1.0;
}

} // namespace

Vec sightDirection(const Vec& nearPoint, const Vec& farPoint) {
    const Vec direction = farPoint - nearPoint;
    return direction * scaleFor(largestOf(direction));
}

TriangleHit sightHitsTriangle(const TriangleCorners& t, const Vec& direction, const Vec& origin) {
    const double scale = scaleFor(std::max({largestOf(*t.a), largestOf(*t.b), largestOf(*t.c)}));
    if (scale == 1.0) {
        return LineHitsTriangle(*t.a, *t.b, *t.c, direction, origin);
    }
    TriangleHit hit = LineHitsTriangle(*t.a * scale, *t.b * scale, *t.c * scale, direction, origin * scale);
    hit.point = hit.point * (1.0 / scale);
    return hit;
}

bool isOddTriangle(const TriangleCorners& t) {
    if (sameVertex(*t.a, *t.b) || sameVertex(*t.a, *t.c) || sameVertex(*t.b, *t.c)) {
        return true;
    }
    const Vec ab = *t.b - *t.a;
    const Vec ac = *t.c - *t.a;
    const Vec bc = *t.c - *t.b;
    const double longest = std::max({dot(ab, ab), dot(ac, ac), dot(bc, bc)});
    const double area = lengthOf(cross(ab, ac));
    const double largest = std::max({dot(*t.a, *t.a), dot(*t.b, *t.b), dot(*t.c, *t.c)});
    // Written so that what is not a number counts as odd.
    return !(area > oddFlatness * longest) || !(longest > oddSmallness * oddSmallness * largest);
}

} // namespace velmora
