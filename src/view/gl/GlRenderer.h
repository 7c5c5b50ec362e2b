#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "GlBuffer.h"
#include "GlPicture.h"
#include "ViewSurface.h"

namespace velmora {

/// A text as pixels: one bit each, rows from the bottom up, each row padded to whole bytes, the first pixel in the
/// highest bit.
struct TextBitmap {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rows;
};

/// Draws a text in the window's font, so many times as large. OpenGL has no fonts; whoever owns the window has.
using TextRasterizer = std::function<TextBitmap(const std::string&, double scale)>;

/// Carries the frames of a view out with OpenGL 2.1 and its fixed-function state. It decides nothing: what is drawn
/// stands in the frame. Every operation needs the view's context to be current.
class GlRenderer {
public:
    explicit GlRenderer(TextRasterizer rasterizer) : rasterizer_(std::move(rasterizer)) {}

    /// Clear colour and depth, depth test.
    void prepare();
    /// Of colour and depth, before the next that is drawn.
    void clear(const Colour& colour);
    /// The list of `frame` is copied to the context whenever its revision is a new one. The model's picture is kept: it
    /// is drawn anew only when what it shows, or the camera, is another.
    void draw(const SceneFrame& frame);
    /// Milliseconds that the model took when it was drawn last, not the coarse form of it; 0: never yet.
    double modelTime() const { return modelTime_; }
    /// How many times the model was drawn.
    int modelDraws() const { return modelDraws_; }
    /// Samples a pixel in place of what suits the context: four, and none where the processor draws.
    void useSamples(int samples) {
        samples_ = samples;
        kept_.reset();
    }
    void finish();
    /// Inverts the outline, one pixel wide, of the rectangle between two corners on the frame drawn last.
    /// Twice the same rectangle changes nothing. `viewport` is the whole window.
    void invertRectangle(PixelPoint from, PixelPoint to, const Viewport& viewport);
    /// Frees what the context holds for this renderer; a later draw copies the list anew.
    void release();

private:
    /// All that the picture of the model depends on.
    struct ModelLook {
        std::uint64_t revision = 0;
        bool coarse = false;
        std::vector<Accent> accents;
        bool filled = false;
        bool edges = false;
        bool backFilled = false;
        Matrix4 modelView{};
        Matrix4 projection{};
        int width = 0;
        int height = 0;
        double pixelScale = 1.0;

        friend bool operator==(const ModelLook&, const ModelLook&) = default;
    };
    static ModelLook lookOf(const SceneFrame& frame);

    void drawModel(const SceneFrame& frame);
    void drawKeptModel(const SceneFrame& frame);
    static void drawSurfaces(GlBuffer& buffer, const SceneFrame& frame);
    static void drawSideEdges(GlBuffer& buffer, const GlRun& run, const Eye& eye, Facing side);
    void drawMarks(const GlBuffer& buffer, const SceneFrame& frame);
    int samples();
    void clearNow();
    void clearIfWanted();
    void drawRuns(GlBuffer& buffer, const DrawList& list, const SceneFrame& frame, bool lightsOn);
    void drawRun(const GlBuffer& buffer, const GlRun& run, const DrawList& list, const SceneFrame& frame,
                 bool lightsOn);
    void drawTexts(const std::vector<DrawText>& texts, double scale);

    TextRasterizer rasterizer_;
    GlBuffer list_;
    GlBuffer coarse_;
    GlBuffer held_;
    GlBuffer overlay_;
    std::optional<std::uint64_t> uploadedRevision_;
    std::optional<std::uint64_t> uploadedCoarse_;
    std::optional<std::uint64_t> uploadedHeld_;
    GlPicture picture_;
    std::optional<ModelLook> kept_; ///< of the picture
    std::optional<int> samples_;
    Colour ground_{};
    bool clearWanted_ = false;
    double modelTime_ = 0.0;
    int modelDraws_ = 0;
};

} // namespace velmora
