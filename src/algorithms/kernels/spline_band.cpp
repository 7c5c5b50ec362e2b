#include "spline_band.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "IntervalFinder.h"
#include "SplineSystem.h"
#include "curve_tolerances.h"

namespace velmora {

namespace {

constexpr int bandPasses = 11;

/// The active-set iteration of `FitSplineInBand`: free points move towards the spline through the pinned ones until
/// one touches the band and is pinned there; pinned points that the spline no longer presses on are released.
class BandFit {
public:
    BandFit(std::int32_t n, const double* t, const double* y, const double* halfWidth, std::int32_t capacity);

    /// Writes the fitted values to `out`; gives 0 when no point was pinned, otherwise 1.
    int run(double* out);

private:
    void renewSpline();
    double splineAt(IntervalFinder& finder, double s, double otherwise) const;
    double measureSteps();
    bool advance(double alpha);
    bool release();
    bool staysPinned(std::int32_t knot) const;

    std::size_t size_;
    std::size_t capacity_;
    const double* t_;
    const double* halfWidth_;
    std::vector<double> current_;
    std::vector<double> lower_;
    std::vector<double> upper_;
    std::vector<double> step_;
    std::vector<double> ratio_;
    std::vector<char> free_;
    std::vector<std::int32_t> knotPoint_; ///< the point that each knot of the spline is
    std::vector<double> knotT_;
    std::vector<double> knotY_;
    std::vector<double> moments_;
    SplineSystem system_;
};

BandFit::BandFit(std::int32_t n, const double* t, const double* y, const double* halfWidth, std::int32_t capacity)
    : size_(static_cast<std::size_t>(n)), capacity_(static_cast<std::size_t>(std::max(capacity, std::int32_t{0}))),
      t_(t), halfWidth_(halfWidth), current_(y, y + n), lower_(size_), upper_(size_), step_(size_), ratio_(size_),
      free_(size_) {
    for (std::size_t i = 0; i < size_; ++i) {
        lower_[i] = y[i] - halfWidth[i];
        upper_[i] = y[i] + halfWidth[i];
        free_[i] = halfWidth[i] > bandFreeTolerance ? 1 : 0;
    }
    knotPoint_.reserve(size_);
    knotT_.reserve(size_);
    knotY_.reserve(size_);
    moments_.reserve(size_);
}

/// Takes the pinned points, in order, as the knots of the spline.
void BandFit::renewSpline() {
    knotPoint_.clear();
    knotT_.clear();
    knotY_.clear();
    for (std::size_t i = 0; i < size_ && knotT_.size() < capacity_; ++i) {
        if (free_[i] == 0) {
            knotPoint_.push_back(static_cast<std::int32_t>(i));
            knotT_.push_back(t_[i]);
            knotY_.push_back(current_[i]);
        }
    }
    moments_.resize(knotT_.size());
    system_.factor(static_cast<std::int32_t>(knotT_.size()), knotT_.data());
    system_.solve(knotY_.data(), moments_.data());
}

double BandFit::splineAt(IntervalFinder& finder, double s, double otherwise) const {
    if (knotT_.size() < 2) {
        return knotT_.empty() ? otherwise : knotY_.front();
    }
    const std::int32_t j = std::min(finder.find(s), finder.none() - 1);
    const double* knots = knotT_.data() + j;
    return SplinePiece(knots[0], knots[1], s).value(knotY_.data() + j, moments_.data() + j);
}

/// The step of each free point to the spline, and the part of it that the band allows; gives the smallest part.
double BandFit::measureSteps() {
    IntervalFinder finder(knotT_.data(), static_cast<std::int32_t>(knotT_.size()));
    double alpha = 1;
    for (std::size_t i = 0; i < size_; ++i) {
        if (free_[i] == 0) {
            continue;
        }
        double step = splineAt(finder, t_[i], current_[i]) - current_[i];
        double ratio = 1;
        if (std::abs(step) < bandTouchTolerance) {
            step = 0;
        } else {
            ratio = ((step < 0 ? lower_[i] : upper_[i]) - current_[i]) / step;
        }
        step_[i] = step;
        ratio_[i] = ratio;
        alpha = ratio < alpha ? ratio : alpha;
    }
    return alpha;
}

/// Moves the free points by that part of their steps; says whether one of them came to its bound and is now pinned.
bool BandFit::advance(double alpha) {
    bool pinned = false;
    for (std::size_t i = 0; i < size_; ++i) {
        if (free_[i] == 0) {
            continue;
        }
        current_[i] += alpha * step_[i];
        if (!(std::abs(ratio_[i] - alpha) > bandTouchTolerance)) {
            free_[i] = 0;
            pinned = true;
        }
    }
    return pinned;
}

/// Whether the band still has to hold the point of this knot back, which the bend of the moments there shows.
bool BandFit::staysPinned(std::int32_t knot) const {
    const auto j = static_cast<std::size_t>(knot);
    const auto i = static_cast<std::size_t>(knotPoint_[j]);
    if (halfWidth_[i] < bandFreeTolerance || j == 0 || j + 1 == knotT_.size()) {
        return true;
    }
    const double part = (knotT_[j] - knotT_[j - 1]) / (knotT_[j + 1] - knotT_[j - 1]);
    const double straight = moments_[j - 1] + (moments_[j + 1] - moments_[j - 1]) * part;
    if (moments_[j] > straight && !(upper_[i] - current_[i] > bandFreeTolerance)) {
        return true;
    }
    return moments_[j] < straight && !(current_[i] - lower_[i] > bandFreeTolerance);
}

/// Says whether any point was released.
bool BandFit::release() {
    bool released = false;
    for (std::size_t j = 0; j < knotPoint_.size(); ++j) {
        if (!staysPinned(static_cast<std::int32_t>(j))) {
            free_[static_cast<std::size_t>(knotPoint_[j])] = 1;
            released = true;
        }
    }
    return released;
}

int BandFit::run(double* out) {
    renewSpline();
    bool everPinned = false; // never cleared between passes: after the first pinned point all passes are run
    for (int pass = 1; pass <= bandPasses; ++pass) {
        const bool pinned = advance(measureSteps());
        everPinned = everPinned || pinned;
        if (!everPinned) {
            break;
        }
        if (pinned) {
            renewSpline();
        }
        if (pass < bandPasses && release()) {
            renewSpline();
        }
    }
    std::copy(current_.begin(), current_.end(), out);
    return everPinned ? 1 : 0;
}

} // namespace

void BandMoments(std::int32_t n, const double* t, const double* y, double* momentsOut, std::int32_t capacity) {
    if (n < 1 || n > capacity) {
        return;
    }
    SplineSystem system;
    system.factor(n, t);
    system.solve(y, momentsOut);
}

void BandSplineAt(std::int32_t n, const double* t, const double* y, const double* moments, double s, double& value,
                  double& slope, double& curvature) {
    if (n < 2) {
        if (n == 1) {
            value = y[0];
            slope = 0;
            curvature = 0;
        }
        return;
    }
    IntervalFinder finder(t, n);
    const std::int32_t j = std::min(finder.find(s), n - 2);
    const SplinePiece piece(t[j], t[j + 1], s);
    value = piece.value(y + j, moments + j);
    slope = piece.slope(y + j, moments + j);
    curvature = piece.curvature(moments + j);
}

int FitSplineInBand(std::int32_t n, const double* t, const double* y, const double* halfWidth, double* out,
                    std::int32_t capacity) {
    return n < 1 ? 0 : BandFit(n, t, y, halfWidth, capacity).run(out);
}

} // namespace velmora
