#pragma once

namespace velmora {

// The two band tolerances were single-precision values once and are kept to the last digit, so that a fit gives
// the same points as before.

/// A band half-width not above this pins the point; a distance to a bound not above this touches the bound.
inline constexpr double bandFreeTolerance = 9.999999974752427e-07;
/// A step below this is no step; a step ratio within this of the common ratio pins the point.
inline constexpr double bandTouchTolerance = 9.99999975123501e-09;
/// Neighbours closer than this are one point; also the smallest chord divisor and the smallest polyline length.
inline constexpr double coincidentDistance = 1e-6;
/// A polyline shorter than this is resampled along its chords, not splined.
inline constexpr double shortLineLength = 0.0001;
/// A compression within this of 1 means equal spacing.
inline constexpr double compressionUnity = 0.01;
/// Compression ratios are clamped to this range.
inline constexpr double compressionMin = 0.0001;
inline constexpr double compressionMax = 10000;

} // namespace velmora
