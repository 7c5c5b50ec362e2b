#include "IntervalFinder.h"

#include <algorithm>
#include <cmath>

namespace velmora {

IntervalFinder::IntervalFinder(const double* knots, std::int32_t count)
    : knots_(knots), none_(std::max(count - 1, std::int32_t{0})) {}

std::int32_t IntervalFinder::findFalling(double s) {
    if (std::isnan(s)) {
        return none_; // and the walk goes on from where it was
    }
    if (furthest_.empty() && none_ > 0) {
        furthest_.reserve(static_cast<std::size_t>(none_));
        double furthest = knots_[1];
        for (std::int32_t j = 0; j < none_; ++j) {
            const double knot = knots_[j + 1];
            // Knots that are not numbers end no interval: they count only until the first number is met.
            furthest = std::isnan(furthest) || knot > furthest ? knot : furthest;
            furthest_.push_back(furthest);
        }
    }
    const auto found =
        std::partition_point(furthest_.begin(), furthest_.end(), [s](double furthest) { return !(furthest >= s); });
    previous_ = s;
    position_ = static_cast<std::int32_t>(found - furthest_.begin());
    return position_;
}

} // namespace velmora
