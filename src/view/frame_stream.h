#pragma once

#include <cstddef>
#include <functional>

#include "picture.h"

namespace velmora {

// A frame as bytes, for the program that draws pictures where this one cannot: both ends are of one build.

/// Takes the next bytes; false: no more are wanted.
using TakeBytes = std::function<bool(const char* bytes, std::size_t size)>;
/// Fills the room with the next bytes; false when there are too few.
using FillBytes = std::function<bool(char* room, std::size_t size)>;

/// A frame that came as bytes, and all that it shows.
struct ReceivedFrame {
    PictureSettings settings;
    DrawList list;
    DrawList held;
    Overlay overlay;
    bool filled = false;
    bool edges = false;
    bool backFilled = false;
    Matrix4 modelView{};
    Matrix4 projection{};
    Viewport viewport;
    double pixelScale = 1.0;

    /// The frame over it, which must outlive that.
    SceneFrame scene() const;
};

bool writeFrame(const SceneFrame& frame, const PictureSettings& settings, const TakeBytes& take);
/// False when the bytes are not those of a whole frame of this build.
bool readFrame(const FillBytes& fill, ReceivedFrame& frame);

} // namespace velmora
