#include "GlBuffer.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "vectors.h"

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
           a.lineWidth == b.lineWidth && a.lit == b.lit && a.readable == b.readable && a.hasNormals == b.hasNormals &&
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

void freeBuffer(unsigned& buffer) {
    if (buffer != 0) {
        glDeleteBuffers(1, &buffer);
        buffer = 0;
    }
}

/// The normals of a batch; none where it has none.
const zVec<double>* normalsAt(const DrawList& list, const DrawBatch& batch) {
    return batch.hasNormals ? list.normals.data() + batch.firstNormal : nullptr;
}

/// Whether strip `b` begins with the row of points that strip `a` ends with, lit the same.
bool goesOn(const DrawList& list, const DrawBatch& a, const DrawBatch& b) {
    if (a.vertexCount != b.vertexCount || a.hasNormals != b.hasNormals) {
        return false;
    }
    const zVec<double>* const normalsA = normalsAt(list, a);
    const zVec<double>* const normalsB = normalsAt(list, b);
    for (std::size_t i = 0; i + 1 < a.vertexCount; i += 2) {
        if (list.vertices[a.firstVertex + i + 1] != list.vertices[b.firstVertex + i] ||
            (normalsA != nullptr && normalsA[i + 1] != normalsB[i])) {
            return false;
        }
    }
    return true;
}

/// Ties the pieces of each strip to those of the strip that goes on with it.
void tieStrips(const GlRun& run, const DrawList& list, std::vector<GlPiece>& pieces) {
    std::vector<const DrawBatch*> strips;
    std::vector<std::size_t> firstPiece;
    std::size_t piece = 0;
    auto batch = list.batches.begin();
    for (const int first : run.first) {
        batch = std::find_if(batch, list.batches.end(), [first](const DrawBatch& b) {
            return b.vertexCount > 0 && static_cast<int>(b.firstVertex) == first;
        });
        strips.push_back(&*batch);
        while (pieces[piece].first < first) {
            ++piece;
        }
        firstPiece.push_back(piece);
    }
    firstPiece.push_back(pieces.size());
    for (std::size_t i = 0; i + 1 < strips.size(); ++i) {
        if (!goesOn(list, *strips[i], *strips[i + 1])) {
            continue;
        }
        for (std::size_t k = firstPiece[i]; k < firstPiece[i + 1]; ++k) {
            pieces[k].next = static_cast<int>(firstPiece[i + 1] + k - firstPiece[i]);
        }
    }
}

/// Adds a range, or lets the one before it go on: of separate lines where both adjoin, of strips where they share a
/// vertex.
void addRange(GlRanges& ranges, int first, int count, int shared) {
    if (!ranges.first.empty() && ranges.first.back() + ranges.counts.back() == first + shared) {
        ranges.counts.back() += count - shared;
        return;
    }
    ranges.first.push_back(first);
    ranges.counts.push_back(count);
}

/// One row of a piece: 0 that which it begins with, 1 that which it ends with.
void addRow(GlEdges& edges, const GlPiece& piece, int row) {
    const int first = piece.first + row;
    addRange(edges.rows.at(static_cast<std::size_t>(first % 2)), first / 2, piece.count / 2, 1);
}

void addEdges(GlEdges& edges, const std::vector<GlPiece>& pieces, const std::vector<bool>& taken, std::size_t k) {
    const GlPiece& piece = pieces[k];
    const bool goesOn = k > 0 && taken[k - 1] && pieces[k - 1].first + pieces[k - 1].count == piece.first + 2;
    // The rung that the piece before ended with is drawn already.
    const int drawn = goesOn ? 2 : 0;
    addRange(edges.rungs, piece.first + drawn, piece.count - drawn, 0);
    addRow(edges, piece, 0);
    if (piece.next < 0 || !taken[static_cast<std::size_t>(piece.next)]) {
        addRow(edges, piece, 1);
    }
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
    if (strips) {
        tieStrips(run, list, pieces);
    }
    return pieces;
}

namespace {

/// The pieces that `isTaken` says yes to, neighbours as one range.
template <class Question>
GlRanges rangesOf(const GlRun& run, Question isTaken) {
    GlRanges ranges;
    const int shared = isStrip(run.look.primitive) ? 2 : 0;
    int end = -1;
    bool strip = false; // the piece before was taken and its strip may go on
    for (std::size_t k = 0; k < run.pieces.size(); ++k) {
        const GlPiece& piece = run.pieces[k];
        if (!isTaken(k)) {
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

} // namespace

GlRanges facingRanges(const GlRun& run, const Eye& eye, Facing side) {
    return rangesOf(run, [&](std::size_t k) {
        const Facing facing = facingOf(run.pieces[k].cone, eye);
        return facing == side || facing == Facing::Mixed;
    });
}

double edgeLength(const GlRun& run, const DrawList& list) {
    constexpr std::size_t looks = 500;
    const int step = isStrip(run.look.primitive) ? 2 : 1; // along a row, or a side
    std::vector<double> lengths;
    const std::size_t every = std::max<std::size_t>(1, run.pieces.size() / looks);
    for (std::size_t k = 0; k < run.pieces.size(); k += every) {
        const GlPiece& piece = run.pieces[k];
        for (const int other : {1, step}) {
            const auto from = static_cast<std::size_t>(piece.first);
            const double length = other < piece.count ? distance(list.vertices[from],
                                                                 list.vertices[from + static_cast<std::size_t>(other)])
                                                      : 0.0;
            if (length > 0.0) {
                lengths.push_back(length);
            }
        }
    }
    if (lengths.empty()) {
        return 0.0;
    }
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    return *middle;
}

GlSide edgesOf(const GlRun& run, const Eye& eye, Facing side) {
    std::vector<Facing> facings;
    facings.reserve(run.pieces.size());
    std::transform(run.pieces.begin(), run.pieces.end(), std::back_inserter(facings),
                   [&eye](const GlPiece& piece) { return facingOf(piece.cone, eye); });
    std::vector<bool> certain(facings.size(), false);
    if (run.look.primitive == Primitive::QuadStrip) {
        std::transform(facings.begin(), facings.end(), certain.begin(), [side](Facing f) { return f == side; });
    }
    GlSide edges;
    for (std::size_t k = 0; k < certain.size(); ++k) {
        if (certain[k]) {
            addEdges(edges.certain, run.pieces, certain, k);
        }
    }
    edges.doubtful = rangesOf(
        run, [&](std::size_t k) { return !certain[k] && (facings[k] == side || facings[k] == Facing::Mixed); });
    return edges;
}

std::vector<GlRun> joinBatches(const DrawList& list) {
    std::vector<GlRun> runs;
    for (const DrawBatch& batch : list.batches) {
        if (batch.vertexCount == 0) {
            continue;
        }
        if (runs.empty() || !sameLook(runs.back().look, batch)) {
            runs.push_back({batch, {}, {}, {}, 0.0, {}});
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

namespace {

zVec<double> middleOf(const std::vector<GlPiece>& pieces) {
    zVec<double> sum;
    for (const GlPiece& piece : pieces) {
        sum = sum + piece.cone.centre;
    }
    return sum / static_cast<double>(std::max<std::size_t>(1, pieces.size()));
}

} // namespace

void GlBuffer::upload(const DrawList& list) {
    runs_ = joinBatches(list);
    for (GlRun& run : runs_) {
        if (run.look.lit) {
            run.pieces = piecesOf(run, list);
            run.edge = edgeLength(run, list);
            run.middle = middleOf(run.pieces);
        }
    }
    fillBuffer(positions_, positionsOf(list), GL_STATIC_DRAW);
    fillBuffer(normals_, normalsBesideVertices(list), GL_STATIC_DRAW);
    freeBuffer(backNormals_);
}

void GlBuffer::bringBackNormals() {
    if (backNormals_ != 0) {
        return;
    }
    std::vector<Triple> normals;
    glBindBuffer(GL_ARRAY_BUFFER, normals_);
    GLint size = 0;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    normals.resize(static_cast<std::size_t>(size) / sizeof(Triple));
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, size, normals.data());
    for (Triple& normal : normals) {
        normal = {-normal[0], -normal[1], -normal[2]};
    }
    fillBuffer(backNormals_, normals, GL_STATIC_DRAW);
}

void GlBuffer::uploadSeen(const DrawList& list, const Matrix4& modelView) {
    runs_ = joinBatches(list);
    fillBuffer(positions_, seenPositionsOf(list, modelView), GL_STREAM_DRAW);
    fillBuffer(normals_, {}, GL_STREAM_DRAW);
}

void GlBuffer::release() {
    for (unsigned* buffer : {&positions_, &normals_, &backNormals_}) {
        freeBuffer(*buffer);
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

void GlBuffer::drawEdges(const GlRun& run, const GlEdges& edges, Facing side) {
    const unsigned normals = [this, side] {
        if (side == Facing::Back) {
            bringBackNormals();
            return backNormals_;
        }
        return normals_;
    }();
    const auto drawFrom = [this, normals](int vertex, int step, GLenum mode, const GlRanges& ranges) {
        const auto stride = static_cast<GLsizei>(static_cast<std::size_t>(step) * sizeof(Triple));
        // In a buffer that is bound the pointer is an offset in bytes.
        const auto* const offset = reinterpret_cast<const void*>( // NOLINT(performance-no-int-to-ptr)
            static_cast<std::uintptr_t>(vertex) * sizeof(Triple));
        glBindBuffer(GL_ARRAY_BUFFER, normals);
        glNormalPointer(GL_FLOAT, stride, offset);
        glBindBuffer(GL_ARRAY_BUFFER, positions_);
        glVertexPointer(3, GL_FLOAT, stride, offset);
        glMultiDrawArrays(mode, ranges.first.data(), ranges.counts.data(), static_cast<GLsizei>(ranges.first.size()));
    };
    if (run.look.hasNormals) {
        glEnableClientState(GL_NORMAL_ARRAY);
    }
    for (const int row : {0, 1}) {
        drawFrom(row, 2, GL_LINE_STRIP, edges.rows.at(static_cast<std::size_t>(row)));
    }
    drawFrom(0, 1, GL_LINES, edges.rungs);
    glDisableClientState(GL_NORMAL_ARRAY);
    bind();
}

void GlBuffer::draw(const DrawBatch& batch, Primitive primitive) const {
    glDrawArrays(modeOf(primitive), static_cast<GLint>(batch.firstVertex), static_cast<GLsizei>(batch.vertexCount));
}

} // namespace velmora
