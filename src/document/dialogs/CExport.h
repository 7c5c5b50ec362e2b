#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "exchange_model.h"

namespace velmora {

/// How a model becomes a file of others.
struct CExport {
    std::int32_t digits = 17;   ///< significant ones of numbers in text, 6 to 17
    bool binary = true;         ///< where the format has both forms
    std::int32_t precision = 2; ///< of binary numbers: 1 single, 2 double
    bool merge = false;         ///< points with equal coordinates become one in the file
    bool onlyBlock = false;     ///< the zBlock, if it has parts, in place of all

    /// What the writers are to do.
    ExportOptions options() const;
};

inline ExportOptions CExport::options() const {
    ExportOptions options;
    options.digits = digits;
    options.binary = binary;
    options.doublePrecision = precision == 2;
    options.merge = merge;
    return options;
}

/// The form over `values`, which must outlive it.
inline DialogForm describe(CExport& values) {
    DialogForm form;
    form.name = "CExport";
    form.title = "Export";
    form.fields = {
        integerField("digits", "Digits in text", values.digits, 6, 17),
        checkField("binary", "Binary, where the format can be", values.binary),
        radioField("precision", values.precision, {"Single precision", "Double precision"}),
        checkField("merge", "Merge equal points", values.merge),
        checkField("onlyBlock", "Only the zBlock", values.onlyBlock),
    };
    return form;
}

} // namespace velmora
