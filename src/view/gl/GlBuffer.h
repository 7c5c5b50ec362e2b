#pragma once

#include <vector>

#include "DrawList.h"

namespace velmora {

/// Neighbouring batches of one look, drawn by one call.
struct GlRun {
    DrawBatch look;          ///< the batch that opened the run; its vertex range is not used
    std::vector<int> first;  ///< first vertex of each strip or range
    std::vector<int> counts; ///< vertices of each
};

/// The batches of `list` in their order, neighbours of one look joined: strips side by side in one call, separate
/// primitives whose vertices adjoin as one range. Batches without vertices are left out.
std::vector<GlRun> joinBatches(const DrawList& list);

/// A draw list in vertex buffers of the current context. Every operation needs that context to be current.
class GlBuffer {
public:
    GlBuffer() = default;
    GlBuffer(const GlBuffer&) = delete;
    GlBuffer& operator=(const GlBuffer&) = delete;
    /// The context may be gone by now: release() comes first, this frees nothing of it.
    ~GlBuffer() = default;

    /// Copies the list's positions and normals, in single precision, to the context's memory.
    void upload(const DrawList& list, bool drawnOnce);
    void release();

    /// Makes the buffers the source of the draw calls until unbind().
    void bind() const;
    static void unbind();
    /// Draws one run with the state that is set.
    void draw(const GlRun& run) const;
    const std::vector<GlRun>& runs() const { return runs_; }

private:
    unsigned positions_ = 0; ///< names of the buffers; 0: not made
    unsigned normals_ = 0;
    std::vector<GlRun> runs_;
};

} // namespace velmora
