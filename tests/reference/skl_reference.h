#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <locale>
#include <string>
#include <vector>

#include "PatchList.h"
#include "stream_numbers.h"

namespace velmora::reference {

/// The .skl reader as a plain sequence of stream reads; yields the messages for the user.
inline std::vector<std::string> readSkl(const std::filesystem::path& path, PatchList& patches) {
    std::ifstream stream(path);
    stream.imbue(std::locale::classic());
    if (!stream) {
        return {"It is impossible to open selected file"};
    }
    for (int compartment = 1;; ++compartment) {
        Patch patch;
        std::int32_t sections = -1;
        if (!take(stream, sections)) {
            return {};
        }
        for (std::int32_t i = 0; i < sections; ++i) {
            std::int32_t points = 0;
            if (!take(stream, points)) {
                return {"Line header of SLK file is wrong. Compartment N= " + std::to_string(compartment)};
            }
            PointList section;
            for (std::int32_t j = 0; j < points; ++j) {
                zVec<double> point;
                if (!take(stream, point.x) || !take(stream, point.y) || !take(stream, point.z)) {
                    return {"Body of SLK file is wrong. Compartment N= " + std::to_string(compartment)};
                }
                section.push_back(point);
            }
            patch.push_back(section);
        }
        patches.push_back(patch);
    }
}

} // namespace velmora::reference
