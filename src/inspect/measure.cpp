#include "measure.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "patch_curves.h"
#include "report_lines.h"
#include "vectors.h"

namespace velmora {

namespace {

template <class Sequence>
bool hasElement(const Sequence& sequence, std::int32_t number) {
    return number >= 0 && number < countOf(sequence);
}

/// Only sections of one length have lines across them.
bool hasLines(const Patch& patch) {
    return std::all_of(patch.begin(), patch.end(),
                       [&patch](const PointList& section) { return section.size() == patch.front().size(); });
}

/// The vector brought near length 1 by a power of two, which changes no digit, and that power: squares of its
/// components neither vanish nor overflow.
struct Scaled {
    zVec<double> vector;
    int power = 0;
};

Scaled scaled(const zVec<double>& v) {
    const double largest = std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
    if (largest == 0.0 || !std::isfinite(largest)) {
        return {v, 0};
    }
    const int power = std::ilogb(largest);
    return {{std::scalbn(v.x, -power), std::scalbn(v.y, -power), std::scalbn(v.z, -power)}, power};
}

double lengthOfAny(const zVec<double>& v) {
    const Scaled near = scaled(v);
    return std::scalbn(lengthOf(near.vector), near.power);
}

double lengthBetween(const ConstPatchCurve& curve, std::int32_t first, std::int32_t last) {
    double length = 0.0;
    for (std::int32_t i = first; i < last; ++i) {
        length += lengthOfAny(curve[i] - curve[i + 1]);
    }
    return length;
}

std::optional<double> lengthAlong(const PatchList& patches, const MeasuredPlace& a, const MeasuredPlace& b) {
    if (!a.address || !b.address || (*a.address)[0] != (*b.address)[0]) {
        return std::nullopt;
    }
    const Patch& patch = patches[static_cast<std::size_t>((*a.address)[0])];
    const auto [firstN, lastN] = std::minmax((*a.address)[1], (*b.address)[1]);
    const auto [firstM, lastM] = std::minmax((*a.address)[2], (*b.address)[2]);
    if (firstN == lastN) {
        return lengthBetween(ConstPatchCurve(patch, false, firstN), firstM, lastM);
    }
    if (firstM == lastM && hasLines(patch)) {
        return lengthBetween(ConstPatchCurve(patch, true, firstM), firstN, lastN);
    }
    return std::nullopt;
}

std::optional<double> angleAt(const zVec<double>& b, const zVec<double>& a, const zVec<double>& c) {
    if (a == b || c == b) {
        return std::nullopt;
    }
    const zVec<double> one = scaled(a - b).vector;
    const zVec<double> other = scaled(c - b).vector;
    return std::atan2(lengthOf(cross(one, other)), dot(one, other)) * (180.0 / std::numbers::pi);
}

} // namespace

std::optional<MeasuredPlace> gridPlace(const PatchList& patches, std::int32_t K, std::int32_t N, std::int32_t M) {
    if (!hasElement(patches, K) || !hasElement(patches[static_cast<std::size_t>(K)], N)) {
        return std::nullopt;
    }
    const PointList& section = patches[static_cast<std::size_t>(K)][static_cast<std::size_t>(N)];
    if (!hasElement(section, M)) {
        return std::nullopt;
    }
    return MeasuredPlace{section[static_cast<std::size_t>(M)], std::array{K, N, M}};
}

std::optional<MeasuredPlace> nodePlace(const zRegion_fe& region, std::int32_t zone, std::int32_t node) {
    MeasuredPlace place;
    if (region.getNode(zone, node, place.point.x, place.point.y, place.point.z) != 0) {
        return std::nullopt;
    }
    return place;
}

Measurement measure(const PatchList& patches, const MeasuredPlace& a, const MeasuredPlace& b,
                    const std::optional<MeasuredPlace>& c) {
    Measurement result;
    result.distance = lengthOfAny(a.point - b.point);
    result.delta = b.point - a.point;
    result.along = lengthAlong(patches, a, b);
    result.angle = c ? angleAt(b.point, a.point, c->point) : std::nullopt;
    return result;
}

std::string lengthText(double length, double radius) {
    constexpr double roundingOfRadius = 1e-12;
    return shortNumber(std::abs(length) < roundingOfRadius * radius ? 0.0 : length);
}

std::string measuredText(const Measurement& measurement, double radius) {
    const zVec<double>& delta = measurement.delta;
    std::string text = "Distance " + lengthText(measurement.distance, radius) + ": X " + lengthText(delta.x, radius) +
                       ", Y " + lengthText(delta.y, radius) + ", Z " + lengthText(delta.z, radius);
    text += measurement.along ? "; along the curve " + lengthText(*measurement.along, radius) : "";
    return text + (measurement.angle ? "; angle " + shortNumber(*measurement.angle) + " degrees" : "");
}

} // namespace velmora
