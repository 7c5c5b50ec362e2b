#include "BatchSurface.h"

#include <algorithm>

namespace velmora {

void BatchSurface::startTimer(int milliseconds) {
    timerPeriod_ = std::max(milliseconds, 1);
    nextTick_ = clock_ + timerPeriod_;
}

bool BatchSurface::advanceToTick(std::int64_t end) {
    if (timerPeriod_ == 0 || nextTick_ > end) {
        return false;
    }
    clock_ = nextTick_;
    nextTick_ += timerPeriod_;
    return true;
}

void BatchSurface::advanceTo(std::int64_t end) {
    clock_ = std::max(clock_, end);
}

} // namespace velmora
