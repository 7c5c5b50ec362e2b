#include "CCorrectLine.h"

namespace velmora {

DialogForm describe(CCorrectLine& values) {
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
