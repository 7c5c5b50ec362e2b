#pragma once

#include <cstdint>
#include <limits>

#include "PatchList.h"
#include "thinning.h"

namespace velmora {

/// Makes the patches of a model that arrives point by point: thinned by the size of the model, and with what all of
/// them keep cut at `keptPointLimit`.
class PatchThinner {
public:
    /// For a model of `totalPoints`.
    explicit PatchThinner(std::int32_t totalPoints)
        : PatchThinner(thinningPeriod(thinningFactor(totalPoints)), keptPointLimit) {}
    /// One that neither thins nor cuts.
    static PatchThinner keepingAll() { return {1, std::numeric_limits<std::int64_t>::max()}; }

    /// Lets the next patch begin with a point and a section that stay. Without it the phases run on.
    void restartPhases();

    /// Puts what stays of a patch of `sections` times `points` points behind the sections of `patch`, and adds it to
    /// `kept`. `nextPoint(zVec<double>&)` yields the points in order, and false when there is none; then the result is
    /// false and `patch` holds the sections before. At the limit the patch ends early, behind a section of which all
    /// points were taken; once it is reached, every further patch ends behind its first section. A count below zero
    /// counts as zero.
    template <class NextPoint>
    bool takePatch(std::int32_t sections, std::int32_t points, NextPoint&& nextPoint, Patch& patch);

    /// What stays of a patch that is there already, all of whose sections have as many points.
    Patch thin(const Patch& whole);

    std::int64_t kept() const { return kept_; }
    bool thinned() const { return thinned_; }       ///< points or sections were left out, other than at the limit
    bool cutAtLimit() const { return cutAtLimit_; } ///< sections were left out at the limit

private:
    PatchThinner(std::int32_t period, std::int64_t limit)
        : period_(period), limit_(limit), pointPhase_(period), sectionPhase_(period) {}

    template <class NextPoint>
    bool takeSection(std::int32_t points, NextPoint& nextPoint);

    std::int32_t period_;
    std::int64_t limit_;
    ThinningPhase pointPhase_;
    ThinningPhase sectionPhase_;
    std::int64_t kept_ = 0;
    bool thinned_ = false;
    bool cutAtLimit_ = false;
    PointList section_; // the one in hand; a patch gets a copy of just its size
};

inline void PatchThinner::restartPhases() {
    pointPhase_ = ThinningPhase(period_);
    sectionPhase_ = ThinningPhase(period_);
}

template <class NextPoint>
bool PatchThinner::takePatch(std::int32_t sections, std::int32_t points, NextPoint&& nextPoint, Patch& patch) {
    for (std::int32_t i = 0; i < sections; ++i) {
        if (!takeSection(points, nextPoint)) {
            return false;
        }
        if (sectionPhase_.keeps(i, sections)) {
            patch.push_back(section_);
            kept_ += static_cast<std::int64_t>(section_.size());
        } else {
            thinned_ = true;
        }
        if (kept_ >= limit_) {
            cutAtLimit_ = cutAtLimit_ || i + 1 < sections;
            break;
        }
    }
    return true;
}

inline Patch PatchThinner::thin(const Patch& whole) {
    const std::int32_t points = lineCount(whole);
    std::int64_t place = 0;
    const auto next = [&](zVec<double>& point) {
        point = whole[static_cast<std::size_t>(place / points)][static_cast<std::size_t>(place % points)];
        ++place;
        return true;
    };
    Patch patch;
    takePatch(countOf(whole), points, next, patch);
    return patch;
}

template <class NextPoint>
bool PatchThinner::takeSection(std::int32_t points, NextPoint& nextPoint) {
    section_.clear();
    zVec<double> point;
    for (std::int32_t j = 0; j < points; ++j) {
        if (!nextPoint(point)) {
            return false;
        }
        if (pointPhase_.keeps(j, points)) {
            section_.push_back(point);
        } else {
            thinned_ = true;
        }
    }
    return true;
}

} // namespace velmora
