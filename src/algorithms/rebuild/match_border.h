#pragma once

#include <cstdint>
#include <optional>

#include "PatchList.h"

namespace velmora {

/// A border of a patch: its first or last section or line.
struct Border {
    bool line = false;
    bool last = false;
};

/// One of the 32 ways in which a border of patch A can lie against one of patch B.
struct BorderPairing {
    Border a;
    Border b;
    bool reversed = false; ///< B's border runs against A's
};

inline constexpr int pairingCount = 32;

/// Pairing number 4 * kind + 2 * a + b, from 0: the kinds go through section or line of A, section or line of B, same
/// or reversed direction, the last one fastest; a and b are 1 for the last border.
BorderPairing borderPairing(int number);

/// The mean distance between the points of the two borders, in the pairing's direction; -1 when they have different
/// numbers of points or a patch has no such border. A line that some section has no point on is no border.
double borderGap(const Patch& a, const Patch& b, const BorderPairing& pairing);

/// Puts the points of B's border onto those of A's. False, and nothing happens, where borderGap gives -1.
bool borderCopy(const Patch& a, Patch& b, const BorderPairing& pairing);

/// The number of the pairing with the smallest gap, the first one of several; none when no two borders match in count.
std::optional<int> nearestBorders(const Patch& a, const Patch& b, double& gap);

/// Closes the gap between the borders of two patches that lie nearest to each other: B's border takes A's points. With
/// `grid` the rest of B then takes the border's spacing. False when the nearest borders are more than `borderReach`
/// apart; nothing happens then. `a` and `b` may be the same patch. `values`, if there are any, have the shape of B and
/// go along with its points.
bool matchBorder(const Patch& a, Patch& b, bool grid, Patch* values = nullptr);

/// The largest mean gap that is closed, in model units.
inline constexpr double borderReach = 0.1;

} // namespace velmora
