#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "GlBuffer.h"
#include "ViewSurface.h"

namespace velmora {

/// A text as pixels: one bit each, rows from the bottom up, each row padded to whole bytes, the first pixel in the
/// highest bit.
struct TextBitmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rows;
};

/// Draws a text in the window's font. OpenGL has no fonts; whoever owns the window has.
using TextRasterizer = std::function<TextBitmap(const std::string&)>;

/// Carries the frames of a view out with OpenGL 2.1 and its fixed-function state. It decides nothing: what is drawn
/// stands in the frame. Every operation needs the view's context to be current.
class GlRenderer {
public:
    explicit GlRenderer(TextRasterizer rasterizer) : rasterizer_(std::move(rasterizer)) {}

    /// Clear colour and depth, depth test.
    void prepare();
    void clear(const Colour& colour);
    /// The list of `frame` is copied to the context whenever its revision is a new one.
    void draw(const SceneFrame& frame);
    void finish();
    /// Inverts the outline, one pixel wide, of the rectangle between two corners on the frame drawn last.
    /// Twice the same rectangle changes nothing. `viewport` is the whole window.
    void invertRectangle(PixelPoint from, PixelPoint to, const Viewport& viewport);
    /// Frees what the context holds for this renderer; a later draw copies the list anew.
    void release();

private:
    void drawRuns(const GlBuffer& buffer, const DrawList& list, const SceneFrame& frame, bool lightsOn);
    void drawRun(const GlBuffer& buffer, const GlRun& run, const DrawList& list, const SceneFrame& frame,
                 bool lightsOn);
    void drawTexts(const std::vector<DrawText>& texts);

    TextRasterizer rasterizer_;
    GlBuffer list_;
    GlBuffer overlay_;
    std::optional<std::uint64_t> uploadedRevision_;
};

} // namespace velmora
