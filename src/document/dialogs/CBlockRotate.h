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

inline void CBlockRotate::takeEnd(const RotationAxis& used) {
    x2 = used.to.x;
    y2 = used.to.y;
    z2 = used.to.z;
}

/// The form over `values`, which must outlive it.
inline DialogForm describe(CBlockRotate& values) {
    DialogForm form;
    form.name = "CBlockRotate";
    form.title = "Rotation";
    form.fields = {
        realField("x1", "X 1", values.x1),
        realField("y1", "Y 1", values.y1),
        realField("z1", "Z 1", values.z1),
        realField("x2", "X 2", values.x2),
        realField("y2", "Y 2", values.y2),
        realField("z2", "Z 2", values.z2),
        realField("angle", "Angle of rotation ", values.angle),
    };
    return form;
}

} // namespace velmora
