#include "CBlockMove.h"

namespace velmora {

PointMap CBlockMove::map() const {
    return [delta = zVec<double>(deltaX, deltaY, deltaZ)](const zVec<double>& point) {
        return std::optional(point + delta);
    };
}

DialogForm describe(CBlockMove& values) {
    DialogForm form;
    form.name = "CBlockMove";
    form.title = "Move";
    form.fields = {
        realField("deltaX", "Delta X", values.deltaX),
        realField("deltaY", "Delta Y", values.deltaY),
        realField("deltaZ", "Delta Z", values.deltaZ),
    };
    return form;
}

} // namespace velmora
