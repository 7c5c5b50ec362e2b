#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "GlRenderer.h"
#include "picture.h"

namespace velmora {

/// OpenGL without a window or a display, where need be by the processor: current for as long as the object lives.
class OffscreenContext {
public:
    OffscreenContext();
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;
    ~OffscreenContext();

    bool isThere() const { return context_ != nullptr; }

private:
    void* display_ = nullptr;
    void* context_ = nullptr;
};

/// The pixels of the frame, red, green, blue, alpha, rows from the bottom up; none when they cannot be drawn. Needs a
/// context that is current.
std::vector<std::uint8_t> drawnPixels(const SceneFrame& frame, const PictureSettings& settings,
                                      const TextRasterizer& rasterizer);

} // namespace velmora
