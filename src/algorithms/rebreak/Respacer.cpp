#include "Respacer.h"

#include <algorithm>

#include "carried_values.h"
#include "polyline.h"
#include "rebreak_kernels.h"

namespace velmora {

namespace {

/// Fewer points, or fewer outputs, are laid along the chords.
constexpr std::int32_t fewestForSpline = 4;

} // namespace

void Respacer::Coordinates::clear() {
    x.clear();
    y.clear();
    z.clear();
}

void Respacer::Coordinates::add(const zVec<double>& p) {
    x.push_back(p.x);
    y.push_back(p.y);
    z.push_back(p.z);
}

void Respacer::Coordinates::fill(std::int32_t count, const zVec<double>& p) {
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    x.assign(size, p.x);
    y.assign(size, p.y);
    z.assign(size, p.z);
}

double Respacer::length() const {
    return polylineLength(in_.x.data(), in_.y.data(), in_.z.data(), count());
}

void Respacer::dropCoincident() {
    std::int32_t kept = count();
    RemoveCoincidentPoints(in_.x.data(), in_.y.data(), in_.z.data(), kept);
    in_.x.resize(static_cast<std::size_t>(kept));
    in_.y.resize(static_cast<std::size_t>(kept));
    in_.z.resize(static_cast<std::size_t>(kept));
}

bool Respacer::hasCoincident(std::int32_t scanned) const {
    return hasCoincidentPoints(in_.x.data(), in_.y.data(), in_.z.data(), std::min(scanned, count()));
}

bool Respacer::hasZeroChord() const {
    for (std::int32_t i = 1; i < count(); ++i) {
        if (chordLength(in_.x.data(), in_.y.data(), in_.z.data(), i) == 0) {
            return true;
        }
    }
    return false;
}

std::vector<double> Respacer::fractions(bool spline, std::int32_t m, double compression) const {
    const bool few = count() < fewestForSpline || m < fewestForSpline;
    return progressionFractions(m, spline && few ? 1.0 : compression);
}

std::vector<double> Respacer::fractionsByLaw(bool spline, std::int32_t m, const double* law) const {
    const bool few = count() < fewestForSpline || m < fewestForSpline;
    if ((spline && few) || m < 3) {
        return progressionFractions(m, 1.0);
    }
    std::vector<double> parts(law, law + m);
    for (double& part : parts) {
        part /= law[m - 1];
    }
    return parts;
}

void Respacer::respace(bool spline, std::int32_t m, double compression, std::int32_t exactness) {
    prepareOutputs(m);
    if (spline) {
        SplineRebreakLaw(in_.x.data(), in_.y.data(), in_.z.data(), count(), out_.x.data(), out_.y.data(), out_.z.data(),
                         m, exactness, lawCompression, compression, nullptr);
    } else {
        LinearRebreak(in_.x.data(), in_.y.data(), in_.z.data(), count(), out_.x.data(), out_.y.data(), out_.z.data(), m,
                      compression);
    }
}

void Respacer::respaceByLaw(bool spline, std::int32_t m, std::int32_t exactness, double* law) {
    prepareOutputs(m);
    if (spline) {
        SplineRebreakLaw(in_.x.data(), in_.y.data(), in_.z.data(), count(), out_.x.data(), out_.y.data(), out_.z.data(),
                         m, exactness, lawPrescribed, 1, law);
    } else {
        LinearRebreakLaw(in_.x.data(), in_.y.data(), in_.z.data(), count(), out_.x.data(), out_.y.data(), out_.z.data(),
                         m, law);
    }
}

} // namespace velmora
