#include "carried_values.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "Respacer.h"
#include "rebreak_kernels.h"

namespace velmora {

std::vector<double> chordFractions(const PointList& points) {
    std::vector<double> fractions = runningLength(points.size(), [&points](std::size_t i) { return points[i]; });
    const double length = fractions.empty() ? 0.0 : fractions.back();
    const double steps = static_cast<double>(std::max<std::size_t>(points.size(), 2) - 1);
    for (std::size_t i = 0; i < fractions.size(); ++i) {
        fractions[i] = length > 0.0 ? fractions[i] / length : static_cast<double>(i) / steps;
    }
    return fractions;
}

std::vector<double> progressionFractions(std::int32_t count, double compression) {
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    std::vector<double> fractions(size);
    std::vector<double> spare(2 * size);
    const std::array<double, 2> ends = {0.0, 1.0};
    const std::array<double, 2> zeros = {0.0, 0.0};
    LinearRebreak(ends.data(), zeros.data(), zeros.data(), 2, fractions.data(), spare.data(), spare.data() + size,
                  count, compression);
    return fractions;
}

PointList valuesAlong(const PointList& points, const PointList& values, const std::vector<double>& fractions) {
    const std::vector<double> own = chordFractions(points);
    const auto valueOf = [&values](std::size_t i) { return i < values.size() ? values[i] : zVec<double>(); };
    PointList result;
    result.reserve(fractions.size());
    for (const double fraction : fractions) {
        const auto next = std::upper_bound(own.begin(), own.end(), fraction);
        if (own.empty()) {
            result.emplace_back();
        } else if (next == own.begin()) {
            result.push_back(valueOf(0));
        } else if (next == own.end()) {
            result.push_back(valueOf(own.size() - 1));
        } else {
            const auto i = static_cast<std::size_t>(next - own.begin());
            const double part = (fraction - own[i - 1]) / (own[i] - own[i - 1]);
            const zVec<double> start = valueOf(i - 1);
            result.push_back(start + (valueOf(i) - start) * part);
        }
    }
    return result;
}

void carryValues(const PointList& before, const PointList& after, PointList& values) {
    values = valuesAlong(before, values, chordFractions(after));
}

} // namespace velmora
