#include "count_limit.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "messages.h"

namespace velmora {

namespace {

double bytesOf(const DialogCount& counted) {
    return counted.count * counted.bytesEach;
}

} // namespace

double bytesOf(const PatchList& patches) {
    double bytes = 0.0;
    for (const Patch& patch : patches) {
        bytes += static_cast<double>(sizeof(Patch) + patch.size() * sizeof(PointList));
        for (const PointList& section : patch) {
            bytes += static_cast<double>(section.size() * sizeof(zVec<double>));
        }
    }
    return bytes;
}

std::optional<DialogRefusal> refuseTooMany(std::initializer_list<DialogCount> counts, double freeBytes) {
    double needed = 0.0;
    for (const DialogCount& counted : counts) {
        needed += bytesOf(counted);
    }
    if (!(needed > freeBytes)) {
        return std::nullopt;
    }
    const double share = freeBytes / static_cast<double>(counts.size());
    for (const DialogCount& counted : counts) {
        double left = freeBytes;
        for (const DialogCount& other : counts) {
            left -= &other == &counted ? 0.0 : std::min(bytesOf(other), share);
        }
        const double largest = std::floor(left / counted.bytesEach);
        if (counted.count <= largest) {
            continue;
        }
        if (largest < counted.least) {
            return DialogRefusal{message::notEnoughMemory.text, counted.key};
        }
        return DialogRefusal{"There is not enough free memory for so many. Please enter an integer between " +
                                 std::to_string(counted.least) + " and " +
                                 std::to_string(static_cast<std::int64_t>(largest)) + ".",
                             counted.key};
    }
    return std::nullopt;
}

std::optional<DialogRefusal> refuseTooLarge(double bytes, double freeBytes) {
    return bytes > freeBytes ? std::optional(DialogRefusal{message::notEnoughMemory.text, ""}) : std::nullopt;
}

} // namespace velmora
