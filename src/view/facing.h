#pragma once

#include <cstddef>

#include "DrawList.h"
#include "camera.h"

namespace velmora {

/// Which side of some faces an eye sees.
enum class Facing { Front, Back, Mixed };

/// Where a picture is looked at from, in model coordinates.
struct Eye {
    bool parallel = false;
    zVec<double> place; ///< of the eye; of parallel lines of sight the way towards it, of length 1
};
/// The eye of a pair of matrices; the model view matrix only turns and shifts.
Eye eyeOf(const Matrix4& modelView, const Matrix4& projection);

/// A bound on some faces: a ball about their corners, and a cone about the ways that their fronts look.
struct FaceCone {
    zVec<double> centre;
    double radius = 0.0;
    zVec<double> axis;
    double angle = 4.0; ///< between the axis and the farthest of them, in radians; above a right angle: any way
};
/// The cone of `count` vertices of the list from `first` on, as triangles or as one quad strip.
FaceCone faceCone(const DrawList& list, Primitive primitive, std::size_t first, std::size_t count);

/// Front or back only when that is certain of each of the faces.
Facing facingOf(const FaceCone& cone, const Eye& eye);

} // namespace velmora
