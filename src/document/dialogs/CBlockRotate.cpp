#include "CBlockRotate.h"

namespace velmora {

void CBlockRotate::takeEnd(const RotationAxis& used) {
    x2 = used.to.x;
    y2 = used.to.y;
    z2 = used.to.z;
}

DialogForm describe(CBlockRotate& values) {
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
