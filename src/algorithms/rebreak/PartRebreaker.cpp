#include "PartRebreaker.h"

#include <algorithm>
#include <cmath>

#include "curve_tolerances.h"
#include "vectors.h"

namespace velmora {

namespace {

/// A compression between these means equal steps: there is nothing to search.
constexpr double nearlyOneBelow = 0.9999999;
constexpr double nearlyOneAbove = 1.0000001;
/// A step within this part of its target fits.
constexpr double fitTolerance = 0.01;
constexpr int mostSearchSteps = 200;

/// Where a search on one side of 1 gives up.
struct SearchLimits {
    double lowest;
    double highest;
};

SearchLimits limitsOf(bool after, bool above) {
    if (after) {
        return above ? SearchLimits{1.0001, 9999} : SearchLimits{0.001, 0.99};
    }
    return above ? SearchLimits{1.00001, 9999.9999} : SearchLimits{1e-5, 0.99999};
}

/// The step that the stretch should have at the point. `near` is the step beyond the point and `next` the one behind
/// that. The four cases are not each other's mirror images: wanted.
double targetStep(bool after, bool above, double near, double next) {
    const double continued = near + (near - next);
    if (after) {
        return above && !(next >= near) ? continued : near;
    }
    return (next >= near) == above ? continued : near;
}

} // namespace

/// Finds the compression by bisection, until the step at the point is within 1% of its target. The steps are measured
/// along the chords, also for the spline.
double PartRebreaker::fittingCompression(double near, double next, bool& fitted) {
    double c = law_.compression;
    const bool above = c > nearlyOneAbove;
    double lower = above ? 1 : compressionMin;
    double upper = above ? compressionMax : 1;
    const SearchLimits limits = limitsOf(law_.after, above);
    for (int step = 0; step < mostSearchSteps; ++step) {
        if (c > nearlyOneBelow && c < nearlyOneAbove) {
            return c;
        }
        respacer_.respace(false, law_.newCount, c, 0);
        const std::int32_t end = law_.after ? 1 : law_.newCount - 1;
        const double e = distance(respacer_.output(end), respacer_.output(end - 1));
        const double t = targetStep(law_.after, above, near, next);
        if (std::abs(e - t) < fitTolerance * t) {
            return c;
        }
        const double before = c;
        if (std::abs(e - t) > fitTolerance * t) {
            // A larger compression makes the last step longer and the first one shorter.
            const bool up = law_.after ? e > t : e < t;
            (up ? lower : upper) = c;
            c = (upper + lower) / 2;
        }
        if (c == before || c < limits.lowest || c > limits.highest) {
            break;
        }
    }
    fitted = false;
    return c;
}

void PartRebreaker::replaceStretch(PointList& section, std::int32_t last) {
    rebuilt_.clear();
    rebuilt_.insert(rebuilt_.end(), section.begin(), section.begin() + (law_.firstPoint - 1));
    for (std::int32_t i = 0; i < law_.newCount; ++i) {
        rebuilt_.push_back(respacer_.output(i));
    }
    rebuilt_.insert(rebuilt_.end(), section.begin() + last, section.end());
    section = rebuilt_;
}

PartResult PartRebreaker::rebuild(PointList& section) {
    const std::int32_t points = countOf(section);
    const std::int32_t first = law_.firstPoint;
    const std::int32_t last = std::min(law_.lastPoint, points);
    PartResult result;
    if (first < 1 || last - first + 1 < 2 || law_.newCount < 2) {
        result.hasLength = false;
        return result;
    }
    respacer_.clear();
    std::for_each(section.begin() + (first - 1), section.begin() + last,
                  [this](const zVec<double>& p) { respacer_.add(p); });
    if (respacer_.count() > 3) {
        respacer_.dropCoincident();
    }
    result.hasLength = respacer_.length() >= coincidentDistance;
    if (!result.hasLength && !law_.keepGrid) {
        return result;
    }
    double c = law_.compression;
    const std::int32_t near = law_.after ? first - 2 : last; // the first point beyond the stretch
    const std::int32_t next = law_.after ? first - 3 : last + 1;
    if (law_.fit && result.hasLength && next >= 0 && next < points) {
        const auto at = [&section](std::int32_t i) { return section[static_cast<std::size_t>(i)]; };
        const double nearStep = distance(at(near), at(law_.after ? near + 1 : near - 1));
        c = fittingCompression(nearStep, distance(at(next), at(near)), result.fitted);
    }
    respacer_.respace(!law_.linear, law_.newCount, c, law_.exactness);
    replaceStretch(section, last);
    result.rebuilt = true;
    return result;
}

} // namespace velmora
