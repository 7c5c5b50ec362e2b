#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// Parameters of the conversion of lines to a grid.
struct CConvert_SKL_to_APT {
    std::int32_t pointCount = 20;   ///< of every section of the grid
    std::int32_t approximation = 1; ///< 1 spline, 2 linear
    bool align = false;             ///< each section follows the one before

    MemoryRoom room = {}; ///< set by the command before the dialog opens: of one point of each section
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CConvert_SKL_to_APT& values) {
    DialogForm form;
    form.name = "CConvert_SKL_to_APT";
    form.title = "Convert to APT";
    form.fields = {
        integerField("pointCount", "Number of points in sections", values.pointCount, 2, 1000000),
        radioField("approximation", values.approximation, {"Spline approximation", "Linear approximation"}),
        checkField("align", "Align lines to their neighbours", values.align),
    };
    form.confirm = [&values](DialogForm&) {
        return refuseTooMany({{"pointCount", values.pointCount, 2, values.room.bytesEach}}, values.room.free);
    };
    return form;
}

} // namespace velmora
