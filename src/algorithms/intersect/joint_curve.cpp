#include "joint_curve.h"

#include <algorithm>
#include <cmath>

#include "Respacer.h"
#include "same_point.h"
#include "section_edits.h"
#include "segment_tests.h"

namespace velmora {

namespace {

/// Sections of more points lose repeated neighbours before they are re-spaced.
constexpr std::int32_t mostPointsKeptAsTheyAre = 3;

/// Looks for the joint on one edge. True when the section is done; `begin` moves if the joint is inside the edge.
bool snapEdge(zVec<double>& begin, const zVec<double>& end, const JointPoints& joint, double tolerance,
              std::vector<std::int32_t>& candidates) {
    const double slack = betweenSlack(begin, end);
    joint.inRange(std::min(begin.x, end.x) - slack, std::max(begin.x, end.x) + slack, candidates);
    for (const std::int32_t i : candidates) {
        const zVec<double>& p = joint[i];
        if (samePoint(p, begin, samePointTolerance) || samePoint(p, end, samePointTolerance)) {
            return true;
        }
        const SegmentPlace place = pointOnSegment(begin, end, p, tolerance);
        if (place.kind == SegmentPlace::On) {
            begin = begin + (end - begin) * place.t;
            return true;
        }
    }
    return false;
}

} // namespace

JointPoints::JointPoints(const PointList& points) : points_(points) {
    for (std::int32_t i = 0; i < countOf(points_); ++i) {
        if (!std::isnan((*this)[i].x)) {
            byX_.emplace_back((*this)[i].x, i);
        }
    }
    std::sort(byX_.begin(), byX_.end());
}

bool JointPoints::holds(const zVec<double>& p) const {
    auto at = std::lower_bound(byX_.begin(), byX_.end(), std::pair(p.x - 2.0 * nearZero, std::int32_t{0}));
    for (; at != byX_.end() && at->first <= p.x + 2.0 * nearZero; ++at) {
        if (withinReach((*this)[at->second], p, nearZero)) {
            return true;
        }
    }
    return false;
}

std::optional<std::int32_t> JointPoints::firstOn(const PointList& section) const {
    const auto found = std::find_if(section.begin(), section.end(), [this](const zVec<double>& p) { return holds(p); });
    return found != section.end() ? std::optional(static_cast<std::int32_t>(found - section.begin())) : std::nullopt;
}

void JointPoints::inRange(double low, double high, std::vector<std::int32_t>& numbers) const {
    numbers.clear();
    auto at = std::lower_bound(byX_.begin(), byX_.end(), std::pair(low, std::int32_t{0}));
    for (; at != byX_.end() && at->first <= high; ++at) {
        numbers.push_back(at->second);
    }
    std::sort(numbers.begin(), numbers.end());
}

void keepJointSections(Patch& patch, const JointPoints& joint) {
    patch.erase(std::remove_if(patch.begin(), patch.end(),
                               [&joint](const PointList& section) { return !joint.firstOn(section); }),
                patch.end());
}

void snapSections(Patch& patch, const JointPoints& joint, double tolerance) {
    std::vector<std::int32_t> candidates;
    for (PointList& section : patch) {
        for (std::size_t m = 0; m + 1 < section.size(); ++m) {
            if (snapEdge(section[m], section[m + 1], joint, tolerance, candidates)) {
                break;
            }
        }
    }
}

void trimSections(Patch& patch, const JointPoints& joint, bool keepBefore) {
    for (PointList& section : patch) {
        if (const auto point = joint.firstOn(section)) {
            section = withoutSide(section, *point, keepBefore ? Side::After : Side::Before);
        }
    }
}

void respaceSections(Patch& patch, std::int32_t count) {
    Respacer respacer;
    for (PointList& section : patch) {
        if (section.empty()) {
            continue;
        }
        respacer.clear();
        for (const zVec<double>& point : section) {
            respacer.add(point);
        }
        if (respacer.count() > mostPointsKeptAsTheyAre) {
            respacer.dropCoincident();
        }
        respacer.respace(true, count, 1.0, 0);
        section.resize(static_cast<std::size_t>(count));
        for (std::int32_t m = 0; m < count; ++m) {
            section[static_cast<std::size_t>(m)] = respacer.output(m);
        }
    }
}

} // namespace velmora
