#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// Field values of a model: up to three for each point, and the first two lines of their file.
struct RescuedField {
    bool loaded = false;
    bool mode = false;
    std::int32_t count = 0;
    std::string titleLine;
    std::string variablesLine;
};

/// What a rescue copy holds: all of a model that a save can write.
struct RescuedModel {
    std::string path; ///< of the file that Save would write; bytes of the file system
    std::string title;
    bool imported = false; ///< it is in no file of its own: Save asks where it goes
    PatchList patches;     ///< either these or the zones
    zRegion_fe zones;
    PatchList fieldPatches;
    RescuedField field;
};

/// The bytes of a rescue copy: the doubles as they stand in memory, for this machine alone.
std::string encodeRescue(std::string_view path, std::string_view title, bool imported, const PatchList& patches,
                         const zRegion_fe& zones, const PatchList& fieldPatches, const RescuedField& field);

/// The model of such bytes; none when they are not whole, or not of this program.
std::optional<RescuedModel> decodeRescue(std::string_view bytes);

} // namespace velmora
