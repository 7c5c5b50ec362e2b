#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "point_transforms.h"

namespace velmora {

/// A plane on which one coordinate is constant: 1 x, 2 y, 3 z, and the value of each.
struct MirrorPlane {
    std::int32_t plane = 1;
    double xPlane = 0.0;
    double yPlane = 0.0;
    double zPlane = 0.0;

    /// The plane that the values name.
    CoordinatePlane chosen() const;
    /// The reflection in it.
    PointMap map() const;
};

/// The plane of a flip.
struct CFlipBlock : MirrorPlane {};
/// The plane of a symmetric copy.
struct CSymmetricBlock : MirrorPlane {};

/// The form over `values`, which must outlive it.
DialogForm describe(CFlipBlock& values);
DialogForm describe(CSymmetricBlock& values);

} // namespace velmora
