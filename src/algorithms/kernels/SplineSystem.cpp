#include "SplineSystem.h"

namespace velmora {

void SplineSystem::factor(std::int32_t n, const double* t) {
    const auto size = static_cast<std::size_t>(n > 0 ? n : 0);
    gap_.resize(size);
    lower_.resize(size);
    pivot_.resize(size);
    carry_.resize(size + 1);
    for (std::size_t i = 1; i < size; ++i) {
        gap_[i] = t[i] - t[i - 1];
    }
    carry_[0] = 0;
    for (std::size_t k = 0; k < size; ++k) {
        const bool interior = k > 0 && k + 1 < size;
        const double upper = interior ? gap_[k + 1] / (gap_[k + 1] + gap_[k]) : 0;
        lower_[k] = 1 - upper;
        pivot_[k] = carry_[k] * lower_[k] + 2;
        carry_[k + 1] = -upper / pivot_[k];
    }
}

void SplineSystem::solve(const double* y, double* moments) const {
    const std::size_t size = gap_.size();
    double swept = 0;
    double slopeBefore = size > 1 ? (y[1] - y[0]) / gap_[1] : 0;
    for (std::size_t k = 0; k < size; ++k) {
        double right = 0;
        if (k > 0 && k + 1 < size) {
            const double slopeAfter = (y[k + 1] - y[k]) / gap_[k + 1];
            right = 6 * (slopeAfter - slopeBefore) / (gap_[k] + gap_[k + 1]);
            slopeBefore = slopeAfter;
        }
        swept = (right - swept * lower_[k]) / pivot_[k];
        moments[k] = swept;
    }
    for (std::size_t k = size; k-- > 1;) {
        moments[k - 1] = carry_[k] * moments[k] + moments[k - 1];
    }
}

} // namespace velmora
