#pragma once

#include <cstdint>
#include <limits>
#include <vector>

namespace velmora {

/// Finds for one parameter after another the first interval of a knot sequence that ends at or behind it.
///
/// Gives what a scan from the first knot gives, for any knots and parameters, but goes on from the interval
/// found before as long as the parameters rise: all of n rising parameters cost one walk along the knots. The
/// first parameter that falls makes a list of the furthest knot so far, and costs log n then, as each later fall.
class IntervalFinder {
public:
    /// The `count` knots must outlive the finder and stay as they are.
    IntervalFinder(const double* knots, std::int32_t count);

    /// The first j of 0 to count-2 with knots[j+1] >= s; `none()` if there is no such j, as for an s that is not
    /// a number.
    std::int32_t find(double s) {
        if (!(s >= previous_)) {
            return findFalling(s);
        }
        previous_ = s;
        while (position_ < none_ && !(knots_[position_ + 1] >= s)) {
            ++position_;
        }
        return position_;
    }

    /// As `find`, but where no interval qualifies the one given last stays in use; at first that is interval 0.
    std::int32_t findOrStay(double s) {
        const std::int32_t found = find(s);
        inUse_ = found == none_ ? inUse_ : found;
        return inUse_;
    }

    /// What `find` gives when no interval qualifies; behind the last interval.
    std::int32_t none() const { return none_; }

private:
    std::int32_t findFalling(double s);

    const double* knots_;
    std::int32_t none_;
    std::int32_t position_ = 0;
    std::int32_t inUse_ = 0;
    double previous_ = -std::numeric_limits<double>::infinity();
    std::vector<double> furthest_; ///< [j]: the largest of knots 1 to j+1; empty until a parameter falls
};

} // namespace velmora
