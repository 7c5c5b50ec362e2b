#include "DrawList.h"

namespace velmora {

DrawBatch& DrawList::begin(Primitive primitive, const Colour& colour) {
    DrawBatch& batch = batches.emplace_back();
    batch.primitive = primitive;
    batch.colour = colour;
    batch.firstVertex = vertices.size();
    batch.firstNormal = normals.size();
    return batch;
}

void DrawList::vertex(const zVec<double>& position) {
    vertices.push_back(position);
    ++batches.back().vertexCount;
}

void DrawList::vertex(const zVec<double>& position, const zVec<double>& normal) {
    vertex(position);
    normals.push_back(normal);
    batches.back().hasNormals = true;
}

void DrawList::addVertices(const std::vector<zVec<double>>& positions) {
    vertices.insert(vertices.end(), positions.begin(), positions.end());
    batches.back().vertexCount += positions.size();
}

DrawList DrawList::flattened() const {
    DrawList flat;
    flat.number = number;
    flat.batches.reserve(batches.size() + accents.size());
    flat.vertices.reserve(vertices.size());
    const auto copyRun = [this, &flat](DrawBatch batch) {
        const auto firstVertex = vertices.begin() + static_cast<std::ptrdiff_t>(batch.firstVertex);
        const auto firstNormal = normals.begin() + static_cast<std::ptrdiff_t>(batch.firstNormal);
        const auto count = static_cast<std::ptrdiff_t>(batch.vertexCount);
        batch.firstVertex = flat.vertices.size();
        batch.firstNormal = flat.normals.size();
        flat.vertices.insert(flat.vertices.end(), firstVertex, firstVertex + count);
        if (batch.hasNormals) {
            flat.normals.insert(flat.normals.end(), firstNormal, firstNormal + count);
        }
        flat.batches.push_back(batch);
    };
    auto accent = accents.begin();
    for (std::size_t i = 0; i < batches.size(); ++i) {
        DrawBatch batch = batches[i];
        for (; accent != accents.end() && accent->batch == i; ++accent) {
            DrawBatch points = batch;
            points.primitive = Primitive::Points;
            points.pointSize = accent->pointSize;
            points.colour = batch.colour = accent->colour;
            copyRun(points);
        }
        copyRun(batch);
    }
    return flat;
}

void DrawList::clear() {
    number = 0;
    batches.clear();
    accents.clear();
    vertices.clear();
    normals.clear();
}

void DrawList::point(const zVec<double>& position, float size, const Colour& colour) {
    begin(Primitive::Points, colour).pointSize = size;
    vertex(position);
}

void DrawList::framedPoint(const zVec<double>& position, float size, const Colour& colour, float frameSize,
                           const Colour& frameColour) {
    point(position, size, colour);
    point(position, frameSize, frameColour);
    batches.back().framing = true;
}

const char* primitiveName(Primitive primitive) {
    switch (primitive) {
    case Primitive::Points:
        return "points";
    case Primitive::LineStrip:
        return "lineStrip";
    case Primitive::Lines:
        return "lines";
    case Primitive::Triangles:
        return "triangles";
    case Primitive::QuadStrip:
        return "quadStrip";
    }
    return "";
}

} // namespace velmora
