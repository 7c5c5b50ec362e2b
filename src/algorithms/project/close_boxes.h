#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "zVec.h"

namespace velmora {

/// A box whose sides lie along the axes of a frame.
struct FrameBox {
    std::array<double, 3> lower{};
    std::array<double, 3> upper{};
};

/// Three axes square to each other: those of the coordinates, or turned ones.
class BoxFrame {
public:
    BoxFrame() = default;
    /// `axes` are of unit length and square to each other.
    explicit BoxFrame(const std::array<zVec<double>, 3>& axes) : turned_(true), axes_(axes) {}

    zVec<double> in(const zVec<double>& v) const {
        return turned_ ? zVec<double>(dot(axes_[0], v), dot(axes_[1], v), dot(axes_[2], v)) : v;
    }
    FrameBox boxOf(const std::array<zVec<double>, 3>& corners) const {
        const zVec<double> a = in(corners[0]);
        const zVec<double> b = in(corners[1]);
        const zVec<double> c = in(corners[2]);
        return {{std::min({a.x, b.x, c.x}), std::min({a.y, b.y, c.y}), std::min({a.z, b.z, c.z})},
                {std::max({a.x, b.x, c.x}), std::max({a.y, b.y, c.y}), std::max({a.z, b.z, c.z})}};
    }

private:
    bool turned_ = false;
    std::array<zVec<double>, 3> axes_;
};

/// A part of a triangle, by the box that holds it.
struct TrianglePiece {
    std::int32_t triangle = 0;
    FrameBox box;
};

/// Boxes that hold triangles closely. One box about each, along the axes of the coordinates, does where triangles have
/// some width. The boxes of long slivers that run askew are nearly empty and overlap each other: a tree of them spares
/// no test. Slivers of one direction get axes along it; those of many are held by the boxes of their pieces.
struct CloseBoxes {
    BoxFrame frame;
    /// By rising triangle number; a triangle without a piece has the one box that the frame gives it.
    std::vector<TrianglePiece> pieces;
};

/// The corners of a triangle, by its number.
using CornersOf = std::function<std::array<zVec<double>, 3>(std::int32_t)>;

/// For these triangles, by rising number, whose corners are finite. There are a million or two of pieces at most.
/// Rounding moves a box by a few parts in 1e16 of the coordinates. Linear.
CloseBoxes closeBoxes(const std::vector<std::int32_t>& triangles, const CornersOf& cornersOf);

} // namespace velmora
