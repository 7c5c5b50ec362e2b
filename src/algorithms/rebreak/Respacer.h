#pragma once

#include <cstdint>
#include <vector>

#include "PatchList.h"
#include "vectors.h"

namespace velmora {

/// Running chord length along a curve of `count` points, of which point i is given by `pointAt(i)`.
template <class PointAt>
std::vector<double> runningLength(std::size_t count, PointAt pointAt) {
    std::vector<double> length(count, 0.0);
    for (std::size_t i = 1; i < count; ++i) {
        length[i] = length[i - 1] + distance(pointAt(i), pointAt(i - 1));
    }
    return length;
}

/// Re-spaces one curve after the other, in arrays that are used again: clear, add the points, re-space, read the
/// outputs. At least one point must have been added. Outputs that a kernel does not reach lie on the curve's end.
class Respacer {
public:
    void clear() { in_.clear(); }
    void add(const zVec<double>& point) { in_.add(point); }
    /// The points added, less those that dropCoincident took.
    std::int32_t count() const { return static_cast<std::int32_t>(in_.x.size()); }
    double length() const;

    /// Drops repeated neighbours among the points added.
    void dropCoincident();
    /// Whether dropping repeated neighbours among the first `scanned` points would take one.
    bool hasCoincident(std::int32_t scanned) const;
    /// Whether two neighbours among the points added are exactly the same.
    bool hasZeroChord() const;

    /// m outputs with steps in geometric progression, along the spline (in a band of `exactness` percent) or the
    /// chords.
    void respace(bool spline, std::int32_t m, double compression, std::int32_t exactness);
    /// m outputs at the positions law[0] to law[m-1] in parts of law[m-1]. The spline divides the law in place.
    void respaceByLaw(bool spline, std::int32_t m, std::int32_t exactness, double* law);

    zVec<double> output(std::int32_t i) const { return out_.at(static_cast<std::size_t>(i)); }

private:
    /// Three parallel coordinate arrays, the working form of the kernels.
    struct Coordinates {
        std::vector<double> x;
        std::vector<double> y;
        std::vector<double> z;

        void clear();
        void add(const zVec<double>& p);
        void fill(std::int32_t count, const zVec<double>& p);
        zVec<double> at(std::size_t i) const { return {x[i], y[i], z[i]}; }
    };

    void prepareOutputs(std::int32_t m) { out_.fill(m, in_.at(in_.x.size() - 1)); }

    Coordinates in_;
    Coordinates out_;
};

} // namespace velmora
