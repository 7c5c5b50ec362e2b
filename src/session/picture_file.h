#pragma once

#include <filesystem>
#include <functional>

#include "picture.h"

namespace velmora {

class Session;

/// Draws a frame into a file of pixels; false when that failed. Empty where nothing can draw pixels.
using DrawPixels = std::function<bool(const SceneFrame&, const PictureSettings&, const std::filesystem::path& file)>;

enum class PictureResult {
    Written,
    UnknownType, ///< the extension is none that can be drawn here
    HoldsModel,  ///< the file is that of a model, which stays
    Failed,
};

/// Writes a picture of what the view shows: lines for ".svg", else pixels.
PictureResult writePicture(Session& session, const std::filesystem::path& file, const PictureSettings& settings,
                           const DrawPixels& drawPixels);

/// Asks how, lets the user choose a file, and writes what the view shows; what fails is told.
void savePicture(Session& session, const DrawPixels& drawPixels);

} // namespace velmora
