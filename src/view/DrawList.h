#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "zVec.h"

namespace velmora {

/// Red, green, blue, alpha, each 0 to 1.
using Colour = std::array<float, 4>;

enum class Primitive { Points, LineStrip, Lines, Triangles, QuadStrip };

/// One run of vertices of one kind and colour. A LineStrip or QuadStrip batch is one strip.
struct DrawBatch {
    Primitive primitive = Primitive::Points;
    Colour colour{};
    float pointSize = 1.0F;
    float lineWidth = 1.0F;
    bool lit = false;
    /// Lit so mildly that the colour, which stands for something, is read from any side, on the back too.
    bool readable = false;
    bool hasNormals = false;
    /// Front faces as lines and back faces filled, whatever the scene's own mode.
    bool outlineFront = false;
    /// Points that leave what was drawn at their place: of a larger one a border shows. Others show over it.
    bool framing = false;
    std::size_t firstVertex = 0;
    std::size_t vertexCount = 0;
    std::size_t firstNormal = 0; ///< of vertexCount normals, when hasNormals
};

/// A strip of a list that stands out: its vertices as points, then the strip itself, all in one colour.
struct Accent {
    std::size_t batch = 0; ///< the strip's place among the batches
    float pointSize = 1.0F;
    Colour colour{};

    friend bool operator==(const Accent&, const Accent&) = default;
};

/// A picture as data, in drawing order. Building one needs no display.
struct DrawList {
    int number = 0; ///< 1 to 4; 0: nothing is drawn
    std::vector<DrawBatch> batches;
    std::vector<Accent> accents; ///< in the order of the batches that they stand for; they cost no new vertices
    std::vector<zVec<double>> vertices;
    std::vector<zVec<double>> normals;

    /// Opens a batch; the vertices added until the next call belong to it.
    DrawBatch& begin(Primitive primitive, const Colour& colour);
    void vertex(const zVec<double>& position);
    void vertex(const zVec<double>& position, const zVec<double>& normal);
    void addVertices(const std::vector<zVec<double>>& positions);
    /// A batch of a single point.
    void point(const zVec<double>& position, float size, const Colour& colour);
    /// A point, then a larger one at the same place that shows as a frame around it.
    void framedPoint(const zVec<double>& position, float size, const Colour& colour, float frameSize,
                     const Colour& frameColour);
    /// The same picture without accents: batches of their own stand for them.
    DrawList flattened() const;
    /// Empties the list and keeps its memory for the next one.
    void clear();
};

/// A text on a plate stands so far to the right of its place and above or below it, and the plate so far beyond the
/// text, in pixels.
struct TextPlate {
    enum class Side { None, Above, Below };

    static constexpr double right = 10.0;
    static constexpr double off = 6.0;
    static constexpr double border = 3.0;
    static constexpr Colour colour{0.0F, 0.0F, 0.0F, 1.0F};
};

/// A text at a model position.
struct DrawText {
    std::string text;
    zVec<double> position;
    Colour colour{};
    TextPlate::Side plate = TextPlate::Side::None; ///< it stands there on one
};

/// What is drawn beside the list in one frame, in model coordinates.
struct Overlay {
    DrawList list;
    std::vector<DrawText> texts;
};

/// "points", "lineStrip", "lines", "triangles", "quadStrip".
const char* primitiveName(Primitive primitive);

} // namespace velmora
