#pragma once

#include "DialogForm.h"
#include "point_transforms.h"

namespace velmora {

/// An axis by two points and the angle of a turn about it in degrees. A turn may move the second point away (see
/// rotatePoint); it then stays there.
struct CBlockRotate {
    double x1 = 0.0;
    double y1 = 0.0;
    double z1 = 0.0;
    double x2 = 1.0;
    double y2 = 0.0;
    double z2 = 0.0;
    double angle = 0.0;

    /// The axis that the values name.
    RotationAxis axis() const { return {{x1, y1, z1}, {x2, y2, z2}, angle}; }
    /// Takes over where a turn left the second point.
    void takeEnd(const RotationAxis& used);
};

/// The form over `values`, which must outlive it.
DialogForm describe(CBlockRotate& values);

} // namespace velmora
