#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>

#include "DialogForm.h"
#include "PatchList.h"

namespace velmora {

/// What one point of the model takes with all that follows it: snapshots, picture, index of the picks. Counted high, as
/// what is refused costs a user a smaller number, and what is not refused can cost him the program.
inline constexpr double bytesOfPoint = 500.0;
/// The same for one section, beside its points.
inline constexpr double bytesOfSection = 500.0;

/// Bytes that a copy of the patches takes, without anything that follows it.
double bytesOf(const PatchList& patches);

/// What the command that shows a dialog knows of the memory; without it nothing is refused.
struct MemoryRoom {
    double free = std::numeric_limits<double>::infinity(); ///< bytes that the model may grow by
    double bytesEach = 0.0;                                ///< that one more of what is counted takes
};

/// A number of a dialog that says how many of something there shall be.
struct DialogCount {
    const char* key;
    std::int32_t count;
    std::int32_t least; ///< of the field's range
    double bytesEach;   ///< that each of them takes
};

/// Refuses counts that together take more than `freeBytes`, with the largest number that one of them can have; nothing
/// when they fit. Up to two counts: where both are large, each is granted half.
std::optional<DialogRefusal> refuseTooMany(std::initializer_list<DialogCount> counts, double freeBytes);

/// The same where the memory does not depend on a number: refuses when `bytes` do not fit.
std::optional<DialogRefusal> refuseTooLarge(double bytes, double freeBytes);

} // namespace velmora
