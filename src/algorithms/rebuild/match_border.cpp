#include "match_border.h"

#include <algorithm>

#include "patch_curves.h"
#include "regrid.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Where the search for the smallest gap starts.
constexpr double widestGap = 1e6;
/// Gaps are above this; the mark of borders that do not fit is not.
constexpr double gapMark = -1e-6;

std::int32_t borderIndex(const Patch& patch, const Border& border) {
    const std::int32_t curves = border.line ? lineCount(patch) : countOf(patch);
    return border.last ? curves - 1 : 0;
}

bool hasBorder(const Patch& patch, const Border& border) {
    const std::int32_t index = borderIndex(patch, border);
    if (patch.empty() || index < 0) {
        return false;
    }
    return !border.line ||
           std::all_of(patch.begin(), patch.end(), [index](const PointList& s) { return index < countOf(s); });
}

template <class PatchType>
CurveOf<PatchType> borderOf(PatchType& patch, const Border& border) {
    return {patch, border.line, borderIndex(patch, border)};
}

bool bordersFit(const Patch& a, const Patch& b, const BorderPairing& pairing) {
    return hasBorder(a, pairing.a) && hasBorder(b, pairing.b) &&
           borderOf(a, pairing.a).count() == borderOf(b, pairing.b).count();
}

} // namespace

BorderPairing borderPairing(int number) {
    const int kind = number / 4;
    BorderPairing pairing;
    pairing.a = {kind >= 4, number % 4 >= 2};
    pairing.b = {kind % 4 >= 2, number % 2 == 1};
    pairing.reversed = kind % 2 == 1;
    return pairing;
}

double borderGap(const Patch& a, const Patch& b, const BorderPairing& pairing) {
    if (!bordersFit(a, b, pairing)) {
        return -1.0;
    }
    const ConstPatchCurve from = borderOf(a, pairing.a);
    const ConstPatchCurve to = borderOf(b, pairing.b);
    const std::int32_t count = from.count();
    double sum = 0;
    for (std::int32_t k = 0; k < count; ++k) {
        sum += distance(from[k], to[pairing.reversed ? count - 1 - k : k]);
    }
    return sum / count;
}

bool borderCopy(const Patch& a, Patch& b, const BorderPairing& pairing) {
    if (!bordersFit(a, b, pairing)) {
        return false;
    }
    const ConstPatchCurve from = borderOf(a, pairing.a);
    const PatchCurve to = borderOf(b, pairing.b);
    const std::int32_t count = from.count();
    for (std::int32_t k = 0; k < count; ++k) {
        to[k] = from[pairing.reversed ? count - 1 - k : k];
    }
    return true;
}

std::optional<int> nearestBorders(const Patch& a, const Patch& b, double& gap) {
    std::optional<int> nearest;
    gap = widestGap;
    for (int number = 0; number < pairingCount; ++number) {
        const double value = borderGap(a, b, borderPairing(number));
        if (gap > value && value > gapMark) {
            gap = value;
            nearest = number;
        }
    }
    return nearest;
}

bool matchBorder(const Patch& a, Patch& b, bool grid) {
    double gap = 0;
    const std::optional<int> nearest = nearestBorders(a, b, gap);
    if (!nearest || gap > borderReach) {
        return false;
    }
    const BorderPairing pairing = borderPairing(*nearest);
    borderCopy(a, b, pairing);
    if (grid) {
        const std::int32_t j = borderIndex(b, pairing.b);
        if (pairing.b.line) {
            regridLikeLine(b, j);
        } else {
            regridLikeSection(b, j);
        }
    }
    return true;
}

} // namespace velmora
