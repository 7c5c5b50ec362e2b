#include "CExport.h"

namespace velmora {

ExportOptions CExport::options() const {
    ExportOptions options;
    options.digits = digits;
    options.binary = binary;
    options.doublePrecision = precision == 2;
    options.merge = merge;
    return options;
}

DialogForm describe(CExport& values) {
    DialogForm form;
    form.name = "CExport";
    form.title = "Export";
    form.fields = {
        integerField("digits", "Digits in text", values.digits, 6, 17),
        checkField("binary", "Binary, where the format can be", values.binary),
        radioField("precision", values.precision, {"Single precision", "Double precision"}),
        checkField("merge", "Merge equal points", values.merge),
    };
    return form;
}

} // namespace velmora
