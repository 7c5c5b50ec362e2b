#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "zVec.h"

namespace velmora {

/// The corners that polygons name by their numbers, from 0: three sequences of one length.
struct VertexList {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;

    std::size_t size() const { return x.size(); }
    bool empty() const { return x.empty(); }
    void clear();
    void append(double xValue, double yValue, double zValue);
};

/// Three vertex numbers.
using Triangle = std::array<std::int64_t, 3>;

/// A ring of vertex numbers, one for each corner in order, with a cursor on one of them; at first on entry 0.
class Polygon {
public:
    Polygon() = default;
    explicit Polygon(std::span<const std::int64_t> corners) { assign(corners); }
    /// The numbers from `first` up to but not including `last`. Raises IndexError when `last` is below `first`.
    Polygon(std::int64_t first, std::int64_t last) { assignRange(first, last); }

    /// Take the place of all that was there; the cursor stands on entry 0.
    void assign(std::span<const std::int64_t> corners);
    void assignRange(std::int64_t first, std::int64_t last);

    std::size_t size() const { return corners_.size(); }
    std::span<const std::int64_t> corners() const { return corners_; }

    /// Puts the cursor on entry 0. As the four below, raises IndexError on an empty polygon.
    void first();
    /// Puts the cursor on the first entry that holds `vertex`. Raises IndexError when there is none.
    void setCursor(std::int64_t vertex);
    /// The number at the cursor, behind it, before it.
    std::int64_t current() const;
    std::int64_t next() const;
    std::int64_t previous() const;
    /// Moves the cursor to the entry behind it.
    void advance();

private:
    void requireCorners() const;

    std::vector<std::int64_t> corners_;
    std::size_t cursor_ = 0;
};

/// Polygons one behind the other in one block of memory.
class PolygonList {
public:
    std::size_t size() const { return ends_.size(); }
    bool empty() const { return ends_.empty(); }
    std::span<const std::int64_t> operator[](std::size_t index) const;
    void clear();

    /// Appends a corner to the polygon that is being built.
    void addCorner(std::int64_t vertex) { corners_.push_back(vertex); }
    /// Whether the polygon that is being built has no corner yet.
    bool isOpenEmpty() const { return corners_.size() == (ends_.empty() ? 0 : ends_.back()); }
    /// Ends the polygon that is being built and begins a new one.
    void close() { ends_.push_back(corners_.size()); }

private:
    std::vector<std::int64_t> corners_;
    std::vector<std::size_t> ends_;
};

/// Appends the triangles of a polygon. Three corners give the triangle of the cursor's corner, the next one and the
/// one before. Any other polygon becomes a fan from its widest corner, the first one of equals; one that is not
/// convex may overlap itself.
///
/// Raises ValueError when a corner is no vertex, AlgoError on one or two corners, IndexError on none. Moves the cursor.
void triangulate(const VertexList& vertices, Polygon& polygon, std::vector<Triangle>& triangles);

/// The same for every polygon in turn.
void triangulateAll(const VertexList& vertices, const PolygonList& polygons, std::vector<Triangle>& triangles);

/// The vector with every component times `factor`. Raises InfinityError when `factor` is not finite.
zVec<double> scale(const zVec<double>& vector, double factor);

} // namespace velmora
