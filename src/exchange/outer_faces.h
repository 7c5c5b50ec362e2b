#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "progress.h"

namespace velmora {

/// An element that fills space. Its corners: those of one end in turn, then those above them, or the one above all.
enum class VolumeShape : std::uint8_t { Tetrahedron, Pyramid, Prism, Brick };

/// How many corners it has.
std::size_t cornersOf(VolumeShape shape);

/// The outside of a zone of elements: the faces that only one of them has. Corners that are the same point may stand
/// for a shape of fewer.
class OuterFaces {
public:
    /// `nodes` are the corners.
    void add(VolumeShape shape, std::span<const std::int64_t> nodes);
    /// Hands on the corners of each outer face, in the order of the elements, so that it looks outwards when its
    /// element is right-handed. `report` hears how far the search has come.
    void forEach(const std::function<void(std::span<const std::int64_t> face)>& take, const ReportProgress& report);

private:
    /// Sorted corners, the last one -1 for a triangle, and the number of the face.
    struct Seen {
        std::array<std::int64_t, 4> key;
        std::size_t number;
    };
    struct Element {
        VolumeShape shape;
        std::size_t first; // of its nodes
    };
    std::vector<std::int64_t> faceAt(std::size_t number) const;
    std::vector<std::size_t> outerFaces(const ReportProgress& report) const;

    std::vector<Element> elements_;
    std::vector<std::int64_t> nodes_;
    std::vector<Seen> seen_;
};

/// Without corners that repeat the one before; a side that is all one point leaves fewer than three.
std::vector<std::int64_t> withoutRepeats(std::span<const std::int64_t> corners);

} // namespace velmora
