#include "zTriangulator.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "vectors.h"
#include "zExceptions.h"

namespace velmora {

namespace {

constexpr const char* unitName = "zTriangulator";

using Vector = zVec<double>;

Vector pointOf(const VertexList& vertices, std::int64_t vertex) {
    const auto index = static_cast<std::size_t>(vertex);
    return {vertices.x[index], vertices.y[index], vertices.z[index]};
}

void requireVertices(const VertexList& vertices, const Polygon& polygon) {
    const auto count = static_cast<std::int64_t>(vertices.size());
    for (const std::int64_t corner : polygon.corners()) {
        if (corner < 0 || corner >= count) {
            throw ValueError(unitName, __LINE__);
        }
    }
}

// The corner with the widest angle inside the polygon.
std::int64_t findApex(const VertexList& vertices, Polygon& polygon) {
    polygon.first();
    const auto edge = [&vertices](std::int64_t from, std::int64_t to) {
        return pointOf(vertices, to) - pointOf(vertices, from);
    };
    Vector in = edge(polygon.current(), polygon.next());
    double best = cosine(in, edge(polygon.current(), polygon.previous()));
    std::int64_t apex = polygon.current();
    for (std::size_t entry = 1; entry < polygon.size(); ++entry) {
        polygon.advance();
        const Vector out = edge(polygon.current(), polygon.next());
        const double here = -cosine(in, out); // `in` points into this corner
        if (best > here) {
            best = here;
            apex = polygon.current();
        }
        in = out;
    }
    return apex;
}

void makeFan(Polygon& polygon, std::int64_t apex, std::vector<Triangle>& triangles) {
    if (polygon.size() < 3) {
        throw AlgoError(unitName, __LINE__);
    }
    polygon.setCursor(apex);
    for (std::size_t step = 2; step < polygon.size(); ++step) {
        polygon.advance();
        triangles.push_back({apex, polygon.current(), polygon.next()});
    }
}

} // namespace

void VertexList::clear() {
    x.clear();
    y.clear();
    z.clear();
}

void VertexList::append(double xValue, double yValue, double zValue) {
    x.push_back(xValue);
    y.push_back(yValue);
    z.push_back(zValue);
}

void Polygon::assign(std::span<const std::int64_t> corners) {
    corners_.assign(corners.begin(), corners.end());
    cursor_ = 0;
}

void Polygon::assignRange(std::int64_t first, std::int64_t last) {
    if (last < first) {
        throw IndexError(unitName, __LINE__);
    }
    corners_.resize(static_cast<std::size_t>(last - first));
    std::iota(corners_.begin(), corners_.end(), first);
    cursor_ = 0;
}

void Polygon::requireCorners() const {
    if (corners_.empty()) {
        throw IndexError(unitName, __LINE__);
    }
}

void Polygon::first() {
    requireCorners();
    cursor_ = 0;
}

void Polygon::setCursor(std::int64_t vertex) {
    const auto found = std::find(corners_.begin(), corners_.end(), vertex);
    if (found == corners_.end()) {
        throw IndexError(unitName, __LINE__);
    }
    cursor_ = static_cast<std::size_t>(found - corners_.begin());
}

std::int64_t Polygon::current() const {
    requireCorners();
    return corners_[cursor_];
}

std::int64_t Polygon::next() const {
    requireCorners();
    return corners_[cursor_ + 1 == corners_.size() ? 0 : cursor_ + 1];
}

std::int64_t Polygon::previous() const {
    requireCorners();
    return corners_[cursor_ == 0 ? corners_.size() - 1 : cursor_ - 1];
}

void Polygon::advance() {
    requireCorners();
    cursor_ = cursor_ + 1 == corners_.size() ? 0 : cursor_ + 1;
}

std::span<const std::int64_t> PolygonList::operator[](std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::span(corners_).subspan(begin, ends_[index] - begin);
}

void PolygonList::clear() {
    corners_.clear();
    ends_.clear();
}

void triangulate(const VertexList& vertices, Polygon& polygon, std::vector<Triangle>& triangles) {
    requireVertices(vertices, polygon);
    if (polygon.size() == 3) {
        triangles.push_back({polygon.current(), polygon.next(), polygon.previous()});
    } else {
        makeFan(polygon, findApex(vertices, polygon), triangles);
    }
}

void triangulateAll(const VertexList& vertices, const PolygonList& polygons, std::vector<Triangle>& triangles) {
    Polygon polygon;
    for (std::size_t index = 0; index < polygons.size(); ++index) {
        polygon.assign(polygons[index]);
        triangulate(vertices, polygon, triangles);
    }
}

zVec<double> scale(const zVec<double>& vector, double factor) {
    if (!std::isfinite(factor)) {
        throw InfinityError(unitName, __LINE__);
    }
    return vector * factor;
}

} // namespace velmora
