#pragma once

#include <algorithm>
#include <cstdint>

namespace velmora {

/// Kept points at which a reader stops taking more from the compartment or zone in hand.
inline constexpr std::int64_t keptPointLimit = 2'412'000;
/// Sections without points, and patches without sections, that a file may have. A header of a few bytes asks for them,
/// and with all that follows it each takes a hundred bytes of memory and more.
inline constexpr std::int64_t bareSectionLimit = 100'000;
/// A direction of at most this many sections, or points per section, is never thinned.
inline constexpr std::int32_t unthinnedCount = 65;

/// How much a model of `totalPoints` is thinned: 0 up to 201,000 points, 1 up to 2,211,000, and one more for each
/// further 2,010,000.
std::int32_t thinningFactor(std::int32_t totalPoints);

/// Every how many points one is kept: 1 (all) for a factor of 0 or less, 2 up to 4, 3 up to 9, 4 from 10 on.
std::int32_t thinningPeriod(std::int32_t factor);

/// Counts along one direction of a grid and says what stays of it.
class ThinningPhase {
public:
    explicit ThinningPhase(std::int32_t period) : period_(period) {}

    /// True when element `index`, from 0, of `count` stays: each period's first one, the last one, and all of a
    /// short direction. To be asked once for each element in turn; the count runs on behind the last one.
    bool keeps(std::int32_t index, std::int32_t count) {
        const bool kept = phase_ == 0 || index == count - 1 || count <= unthinnedCount;
        phase_ = phase_ + 1 >= period_ ? 0 : phase_ + 1;
        return kept;
    }

private:
    std::int32_t period_;
    std::int32_t phase_ = 0;
};

/// Counts the sections without points that the headers of a file ask for: no data pays for their memory.
class BareSections {
public:
    /// False when the header of a patch brings them above `bareSectionLimit`.
    bool accepts(std::int32_t sections, std::int32_t pointsPerSection) {
        count_ += pointsPerSection > 0 ? 0 : std::max(sections, 0);
        return count_ <= bareSectionLimit;
    }

private:
    std::int64_t count_ = 0;
};

} // namespace velmora
