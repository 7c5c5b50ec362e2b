#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "NearestMarker.h"
#include "PatchList.h"

namespace velmora {

/// The most pairs of markers that a fit takes.
inline constexpr std::int32_t maxShiftPairs = 1000;

/// What can go wrong while a shift is fitted; the user is told of each.
enum class ShiftTrouble {
    CountsDiffer,       ///< initial and shifted markers are not pairs
    UnknownPlane,       ///< a plane code other than 1, 2, 3
    MarkersIdentical,   ///< no pair, or none that moved
    MatrixNotPositive,  ///< the markers do not determine the terms
    EquationsNotSolved, ///< no fit: for that reason or for the number of pairs
};
using TellTrouble = std::function<void(ShiftTrouble)>;

/// Two polynomials in x and y, one for each output coordinate. Terms in order: 1, x, y, xy, x^2, y^2, x^2 y, x y^2,
/// x^3, y^3. It starts as the identity.
struct ShiftFit {
    std::array<double, 10> coefU{0.0, 1.0};
    std::array<double, 10> coefV{0.0, 0.0, 1.0};

    /// The value at (x, y) by the terms of `order`: 0 gives (x, y), 1 adds the constant terms to it, 3, 6 and 10 take
    /// as many terms. Any other order leaves u and v as they are.
    void EvalShift(std::int32_t order, double x, double y, double& u, double& v) const;

    friend bool operator==(const ShiftFit& p, const ShiftFit& q) { return p.coefU == q.coefU && p.coefV == q.coefV; }
};

/// Least squares: fits `terms` (3, 6 or 10) terms so that each (xIn, yIn) goes to (uOut, vOut), and puts as many
/// coefficients into coefU and coefV, in the order of ShiftFit. 1 on success. 0, with the coefficients as they were,
/// for fewer pairs than terms or more than maxShiftPairs, another number of terms, pairs that do not determine the
/// terms (`tell` hears MatrixNotPositive), and numbers that leave the range of a double.
int FitShift(const double* xIn, const double* yIn, const double* uOut, const double* vOut, std::int32_t count,
             std::int32_t terms, double* coefU, double* coefV, const TellTrouble& tell);

/// How far a fit misses its pairs: over all of them the mean, the root of the sum of squares over one less than their
/// number, and the largest.
struct ShiftError {
    double mean = 0.0;
    double meanSquare = 0.0;
    double maximum = 0.0;
};
struct ShiftErrors {
    std::int32_t pairs = 0;
    ShiftError distance;
    ShiftError x;
    ShiftError y;
};

/// The text that tells of these errors, two digits behind each point.
std::string shiftReport(const ShiftErrors& errors);

/// The marks of the blend, as distances from the nearest marker. Up to dMin the ten-term fit counts alone, beyond dMean
/// the three-term fit, and between them one goes over into the other by way of the six-term fit at dMid.
struct ShiftBlend {
    double dMin = 0.0;
    double dMid = 0.0;
    double dMean = 0.0;
};

/// The smallest and the mean distance between any two of the points, and the middle of both. Coordinates and distances
/// are rounded to single precision first. All 0 for fewer than two points. n^2.
ShiftBlend shiftBlend(const std::vector<PlanePoint>& markers);

/// The shift of a model from shifted markers to the initial ones: maps of one coordinate plane at a time, by pairs.
/// Plane 1 is (y, z), 2 is (x, z), 3 is (x, y): a plane has the number of the axis that it lacks.
struct MarkerShift {
    ShiftFit shiftFit;   ///< shifted to initial, 10 terms; the error figures are its
    ShiftFit shiftFit10; ///< the same, for use near a marker
    ShiftFit shiftFit6;
    ShiftFit shiftFit3;
    ShiftFit inverseFit; ///< initial to shifted, 10 terms
    std::int32_t shiftOrder = 10;
    std::string report; ///< how well shiftFit meets the pairs; empty without a fit. No command shows it

    /// Fits all five to the pairs in a plane. What fails is told, and those that were not reached stay the identity.
    void PrepareShift(std::int32_t plane, const PointList& initial, const PointList& shifted, const TellTrouble& tell);

    /// Moves the points in the plane's two coordinates; in a second pass in that one alone which `firstPlane`, the
    /// plane of the pass before, does not have. Planes other than 1, 2, 3 move nothing, nor do fits that all are the
    /// identity. A point that would leave the range of numbers stays. log m for each point and m markers.
    void ApplyShift(PointList& points, std::int32_t plane, std::int32_t firstPlane, bool secondPass,
                    const PointList& shifted) const;

private:
    bool isIdentity() const;
    /// Where (a, b), at a distance of d from the nearest marker, goes.
    PlanePoint shiftedPoint(const ShiftBlend& blend, double d, double a, double b) const;
};

} // namespace velmora
