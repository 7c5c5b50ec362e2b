#include "CConvert_SKL_to_APT.h"

namespace velmora {

DialogForm describe(CConvert_SKL_to_APT& values) {
    DialogForm form;
    form.name = "CConvert_SKL_to_APT";
    form.title = "Convert to APT";
    form.fields = {
        integerField("pointCount", "Number of points in sections", values.pointCount, 2, 1000000),
        radioField("approximation", values.approximation, {"Spline approximation", "Linear approximation"}),
    };
    form.confirm = [&values](DialogForm&) {
        return refuseTooMany({{"pointCount", values.pointCount, 2, values.room.bytesEach}}, values.room.free);
    };
    return form;
}

} // namespace velmora
