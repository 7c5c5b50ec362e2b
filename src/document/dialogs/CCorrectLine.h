#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// How a line is bent through a point. The command sets the values anew for each run.
struct CCorrectLine {
    std::int32_t linesBefore = 1; ///< lines up to the corrected one, itself included
    std::int32_t linesAfter = 1;  ///< lines from the corrected one on, itself included
    double power = 0.65;          ///< how the bend fades out along the line

    MemoryRoom room = {}; ///< set by the command before the dialog opens: of one line
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CCorrectLine& values) {
    DialogForm form;
    form.name = "CCorrectLine";
    form.title = "Line correct";
    form.fields = {
        integerField("linesBefore", "Numder of lines before ", values.linesBefore, 1, 10000000),
        integerField("linesAfter", "Number of lines after", values.linesAfter, 1, 10000000),
        realField("power", "Power ", values.power, 0.1, 10),
    };
    form.confirm = [&values](DialogForm&) {
        return refuseTooMany({{"linesBefore", values.linesBefore, 1, values.room.bytesEach},
                              {"linesAfter", values.linesAfter, 1, values.room.bytesEach}},
                             values.room.free);
    };
    return form;
}

} // namespace velmora
