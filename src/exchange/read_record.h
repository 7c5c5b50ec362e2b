#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "FileRecord.h"

namespace velmora {

/// What several formats have to tell in the same words.
inline constexpr const char* materialsNotKept = "Colours and materials are not kept";
inline constexpr const char* noFacesFound = "No faces were found";
inline constexpr const char* volumesWithoutInside = "Volumes of which only the outer faces are kept";

/// Geometry that did not come into the model, told with its number; nothing with 0.
inline void tellMissing(FileRead& record, std::string_view what, std::int64_t number) {
    if (number != 0) {
        record.losesGeometry(std::string(what) + ": " + std::to_string(number));
    }
}

/// What was altered on the way without a loss, with its number; nothing with 0.
inline void tellChanged(FileRead& record, std::string_view what, std::int64_t number) {
    if (number != 0) {
        record.changed.push_back(std::string(what) + ": " + std::to_string(number));
    }
}

/// What was altered so that a save would not bring it back, with its number; nothing with 0.
inline void tellAltered(FileRead& record, std::string_view what, std::int64_t number) {
    if (number != 0) {
        record.alters(std::string(what) + ": " + std::to_string(number));
    }
}

} // namespace velmora
