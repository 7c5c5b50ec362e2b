#include "thinning.h"

namespace velmora {

std::int32_t thinningFactor(std::int32_t totalPoints) {
    constexpr std::int32_t pointsPerStep = 2'010'000;
    const std::int32_t whole = totalPoints / pointsPerStep;
    // In single precision a tenth is exactly the limit, so that 201,000 points are still within it.
    const auto part = static_cast<float>(static_cast<double>(totalPoints) / pointsPerStep - whole);
    return part > 0.1F ? whole + 1 : whole;
}

std::int32_t thinningPeriod(std::int32_t factor) {
    if (factor < 1) {
        return 1;
    }
    if (factor < 5) {
        return 2;
    }
    return factor < 10 ? 3 : 4;
}

} // namespace velmora
