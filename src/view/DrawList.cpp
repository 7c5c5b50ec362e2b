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

void DrawList::clear() {
    number = 0;
    batches.clear();
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
