#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "FileRecord.h"

namespace velmora {

/// Adds to the number of a kind; one that is not there yet goes behind the others.
inline void addCount(Counts& counts, std::string_view kind, std::int64_t number) {
    for (auto& [name, value] : counts) {
        if (name == kind) {
            value += number;
            return;
        }
    }
    counts.emplace_back(kind, number);
}

/// The number of a kind; 0 when it is not there.
inline std::int64_t countOfKind(const Counts& counts, std::string_view kind) {
    for (const auto& [name, value] : counts) {
        if (name == kind) {
            return value;
        }
    }
    return 0;
}

/// Geometry that did not come into the model, told with its number; nothing with 0.
inline void tellMissing(FileRead& record, std::string_view what, std::int64_t number) {
    if (number != 0) {
        record.complete = record.lossless = false;
        record.reasons.push_back(std::string(what) + ": " + std::to_string(number));
    }
}

/// The same for a cause that has no number.
inline void tellMissing(FileRead& record, std::string_view what) {
    record.complete = record.lossless = false;
    record.reasons.emplace_back(what);
}

/// Something beside geometry that was lost: a save over the file would lose it too.
inline void tellLost(FileRead& record, std::string_view what) {
    record.lossless = false;
    record.reasons.emplace_back(what);
}

/// What was altered on the way, with its number; nothing with 0.
inline void tellChanged(FileRead& record, std::string_view what, std::int64_t number) {
    if (number != 0) {
        record.changed.push_back(std::string(what) + ": " + std::to_string(number));
    }
}

} // namespace velmora
