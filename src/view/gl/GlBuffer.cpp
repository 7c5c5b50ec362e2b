#include "GlBuffer.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>

namespace velmora {

namespace {

using Triple = std::array<float, 3>;

/// Sizes of the pieces that are left out as a whole when an eye sees nothing of them.
constexpr int quadsOfPiece = 32;
constexpr int trianglesOfPiece = 256;
/// Ranges of pieces grow no longer than this, in vertices: of a longer one some face would always be seen.
constexpr int longestRange = 8192;

Triple singlePrecision(const zVec<double>& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// Strips end where their batch ends; the vertices of separate primitives may run on.
bool isStrip(Primitive primitive) {
    return primitive == Primitive::LineStrip || primitive == Primitive::QuadStrip;
}

bool sameLook(const DrawBatch& a, const DrawBatch& b) {
    return a.primitive == b.primitive && a.colour == b.colour && a.pointSize == b.pointSize &&
           a.lineWidth == b.lineWidth && a.lit == b.lit && a.hasNormals == b.hasNormals &&
           a.outlineFront == b.outlineFront && a.framing == b.framing;
}

GLenum modeOf(Primitive primitive) {
    switch (primitive) {
    case Primitive::Points:
        return GL_POINTS;
    case Primitive::LineStrip:
        return GL_LINE_STRIP;
    case Primitive::Lines:
        return GL_LINES;
    case Primitive::Triangles:
        return GL_TRIANGLES;
    case Primitive::QuadStrip:
        return GL_QUAD_STRIP;
    }
    return GL_POINTS;
}

void appendRange(GlRun& run, int first, int count) {
    const bool adjoins = !run.first.empty() && run.first.back() + run.counts.back() == first;
    if (adjoins && !isStrip(run.look.primitive)) {
        run.counts.back() += count;
        return;
    }
    run.first.push_back(first);
    run.counts.push_back(count);
}

std::vector<Triple> positionsOf(const DrawList& list) {
    std::vector<Triple> positions;
    positions.reserve(list.vertices.size());
    for (const zVec<double>& vertex : list.vertices) {
        positions.push_back(singlePrecision(vertex));
    }
    return positions;
}

std::vector<Triple> seenPositionsOf(const DrawList& list, const Matrix4& m) {
    std::vector<Triple> positions;
    positions.reserve(list.vertices.size());
    for (const zVec<double>& p : list.vertices) {
        positions.push_back(
            singlePrecision({m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
                             m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]}));
    }
    return positions;
}

/// The normals beside their vertices; vertices without one get zeros that nothing reads. Empty when none has one.
std::vector<Triple> normalsBesideVertices(const DrawList& list) {
    if (list.normals.empty()) {
        return {};
    }
    std::vector<Triple> normals(list.vertices.size(), Triple{});
    for (const DrawBatch& batch : list.batches) {
        if (!batch.hasNormals) {
            continue;
        }
        for (std::size_t i = 0; i < batch.vertexCount; ++i) {
            normals[batch.firstVertex + i] = singlePrecision(list.normals[batch.firstNormal + i]);
        }
    }
    return normals;
}

void fillBuffer(unsigned& buffer, const std::vector<Triple>& values, GLenum usage) {
    if (buffer == 0) {
        glGenBuffers(1, &buffer);
    }
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(values.size() * sizeof(Triple)), values.data(), usage);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

} // namespace

std::vector<GlPiece> piecesOf(const GlRun& run, const DrawList& list) {
    std::vector<GlPiece> pieces;
    const bool strips = isStrip(run.look.primitive);
    // A strip goes on with the two vertices that the piece before ended with.
    const int step = strips ? 2 * quadsOfPiece : 3 * trianglesOfPiece;
    const int shared = strips ? 2 : 0;
    for (std::size_t i = 0; i < run.first.size(); ++i) {
        const int last = run.first[i] + run.counts[i];
        for (int first = run.first[i]; first + shared < last || first == run.first[i]; first += step) {
            const int count = std::min(step + shared, last - first);
            pieces.push_back(
                {first, count,
                 faceCone(list, run.look.primitive, static_cast<std::size_t>(first), static_cast<std::size_t>(count))});
        }
    }
    return pieces;
}

GlRanges facingRanges(const GlRun& run, const Eye& eye, Facing side) {
    GlRanges ranges;
    const int shared = isStrip(run.look.primitive) ? 2 : 0;
    int end = -1;
    bool strip = false; // the piece before was taken and its strip may go on
    for (const GlPiece& piece : run.pieces) {
        const Facing facing = facingOf(piece.cone, eye);
        if (facing != side && facing != Facing::Mixed) {
            strip = false;
            continue;
        }
        if (strip && piece.first + shared == end && ranges.counts.back() < longestRange) {
            ranges.counts.back() += piece.count - shared;
        } else {
            ranges.first.push_back(piece.first);
            ranges.counts.push_back(piece.count);
        }
        strip = true;
        end = piece.first + piece.count;
    }
    return ranges;
}

std::vector<GlRun> joinBatches(const DrawList& list) {
    std::vector<GlRun> runs;
    for (const DrawBatch& batch : list.batches) {
        if (batch.vertexCount == 0) {
            continue;
        }
        if (runs.empty() || !sameLook(runs.back().look, batch)) {
            runs.push_back({batch, {}, {}, {}});
        }
        appendRange(runs.back(), static_cast<int>(batch.firstVertex), static_cast<int>(batch.vertexCount));
    }
    return runs;
}

std::optional<std::size_t> stripIn(const GlRun& run, std::size_t firstVertex) {
    if (!isStrip(run.look.primitive)) {
        return std::nullopt;
    }
    // Runs keep the order of the vertices.
    const auto vertex = static_cast<int>(firstVertex);
    const auto found = std::lower_bound(run.first.begin(), run.first.end(), vertex);
    if (found == run.first.end() || *found != vertex) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - run.first.begin());
}

void GlBuffer::upload(const DrawList& list) {
    runs_ = joinBatches(list);
    for (GlRun& run : runs_) {
        if (run.look.lit) {
            run.pieces = piecesOf(run, list);
        }
    }
    fillBuffer(positions_, positionsOf(list), GL_STATIC_DRAW);
    fillBuffer(normals_, normalsBesideVertices(list), GL_STATIC_DRAW);
}

void GlBuffer::uploadSeen(const DrawList& list, const Matrix4& modelView) {
    runs_ = joinBatches(list);
    fillBuffer(positions_, seenPositionsOf(list, modelView), GL_STREAM_DRAW);
    fillBuffer(normals_, {}, GL_STREAM_DRAW);
}

void GlBuffer::release() {
    for (unsigned* buffer : {&positions_, &normals_}) {
        if (*buffer != 0) {
            glDeleteBuffers(1, buffer);
            *buffer = 0;
        }
    }
    runs_.clear();
}

void GlBuffer::bind() const {
    glBindBuffer(GL_ARRAY_BUFFER, normals_);
    glNormalPointer(GL_FLOAT, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, positions_);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glEnableClientState(GL_VERTEX_ARRAY);
}

void GlBuffer::unbind() {
    glDisableClientState(GL_VERTEX_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void GlBuffer::draw(const GlRun& run, std::size_t from, std::size_t to) const {
    if (from >= to) {
        return;
    }
    if (run.look.hasNormals) {
        glEnableClientState(GL_NORMAL_ARRAY);
    }
    glMultiDrawArrays(modeOf(run.look.primitive), run.first.data() + from, run.counts.data() + from,
                      static_cast<GLsizei>(to - from));
    if (run.look.hasNormals) {
        glDisableClientState(GL_NORMAL_ARRAY);
    }
}

void GlBuffer::draw(const GlRun& run, const GlRanges& ranges) const {
    if (run.look.hasNormals) {
        glEnableClientState(GL_NORMAL_ARRAY);
    }
    glMultiDrawArrays(modeOf(run.look.primitive), ranges.first.data(), ranges.counts.data(),
                      static_cast<GLsizei>(ranges.first.size()));
    if (run.look.hasNormals) {
        glDisableClientState(GL_NORMAL_ARRAY);
    }
}

void GlBuffer::draw(const DrawBatch& batch, Primitive primitive) const {
    glDrawArrays(modeOf(primitive), static_cast<GLint>(batch.firstVertex), static_cast<GLsizei>(batch.vertexCount));
}

} // namespace velmora
