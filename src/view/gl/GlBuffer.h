#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "DrawList.h"
#include "facing.h"

namespace velmora {

/// Vertices of a run that are drawn by one call, or are left out of it.
struct GlRanges {
    std::vector<int> first;  ///< first vertex of each strip or range
    std::vector<int> counts; ///< vertices of each
};

/// Part of a lit run, so small that an eye sees one side of all its faces mostly.
struct GlPiece {
    int first = 0;
    int count = 0;
    FaceCone cone;
    int next = -1; ///< of quads: the piece that begins with the row of points that this one ends with; -1: none
};

/// The edges of pieces of quads, each of them once.
struct GlEdges {
    GlRanges rungs;               ///< between the two rows of a strip, as separate lines
    std::array<GlRanges, 2> rows; ///< along the rows, as strips of every second vertex, from vertex 0 or 1 on
};

/// Neighbouring batches of one look, drawn by one call.
struct GlRun {
    DrawBatch look;              ///< the batch that opened the run; its vertex range is not used
    std::vector<int> first;      ///< first vertex of each strip or range
    std::vector<int> counts;     ///< vertices of each
    std::vector<GlPiece> pieces; ///< of a lit run: all of it, in order
    double edge = 0.0;           ///< of a lit run: how long its edges are, in the middle; 0: it has none
    zVec<double> middle;         ///< of a lit run: of its pieces
};

/// The pieces of a lit run of `list`.
std::vector<GlPiece> piecesOf(const GlRun& run, const DrawList& list);

/// The length of the edges of a lit run in the middle, of some hundred that lie all over it; 0: there is none.
double edgeLength(const GlRun& run, const DrawList& list);

/// What of the pieces may show that side to the eye, neighbours as one range: what is certain to show the other alone
/// is left out.
GlRanges facingRanges(const GlRun& run, const Eye& eye, Facing side);

/// The same in two parts, for edges: `certain` has the edges of quads of which every one shows that side, the ranges
/// are what is left.
struct GlSide {
    GlEdges certain;
    GlRanges doubtful;
};
GlSide edgesOf(const GlRun& run, const Eye& eye, Facing side);

/// The batches of `list` in their order, neighbours of one look joined: strips side by side in one call, separate
/// primitives whose vertices adjoin as one range. Batches without vertices are left out.
std::vector<GlRun> joinBatches(const DrawList& list);

/// Where the batch that begins at `firstVertex` stands in a run of strips; none when it is not one of it.
std::optional<std::size_t> stripIn(const GlRun& run, std::size_t firstVertex);

/// A draw list in vertex buffers of the current context. Every operation needs that context to be current.
class GlBuffer {
public:
    GlBuffer() = default;
    GlBuffer(const GlBuffer&) = delete;
    GlBuffer& operator=(const GlBuffer&) = delete;
    /// The context may be gone by now: release() comes first, this frees nothing of it.
    ~GlBuffer() = default;

    /// Copies the list's positions and normals, in single precision, to the context's memory.
    void upload(const DrawList& list);
    /// The same for one frame and without normals, the positions as the eye sees them: seen from very near what is
    /// drawn beside the model would lose its shape in single precision. To be drawn with the identity as model view
    /// matrix.
    void uploadSeen(const DrawList& list, const Matrix4& modelView);
    void release();

    /// Makes the buffers the source of the draw calls until unbind().
    void bind() const;
    static void unbind();
    /// Draws the strips or ranges of a run from `from` up to `to`, with the state that is set.
    void draw(const GlRun& run, std::size_t from, std::size_t to) const;
    void draw(const GlRun& run, const GlRanges& ranges) const;
    /// Draws edges by themselves, lit as that side of their faces is.
    void drawEdges(const GlRun& run, const GlEdges& edges, Facing side);
    /// Draws the vertices of one batch of the list as `primitive`, without normals.
    void draw(const DrawBatch& batch, Primitive primitive) const;
    const std::vector<GlRun>& runs() const { return runs_; }

private:
    void bringBackNormals();

    unsigned positions_ = 0; ///< names of the buffers; 0: not made
    unsigned normals_ = 0;
    unsigned backNormals_ = 0; ///< the normals turned round; made when they are first drawn with
    std::vector<GlRun> runs_;
};

} // namespace velmora
