#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// The value by which a surface is coloured, and how values become colours.
struct CColours {
    static constexpr std::int32_t firstOfReport = 6;

    /// 1 none, 2 the distances of the last Compare, 3 to 5 a field value, from firstOfReport on a value of the report.
    std::int32_t quantity = 1;
    std::int32_t bands = 10; ///< 2 to 20
    bool automatic = true;   ///< the range is that of the values
    double least = 0.0;      ///< else this one
    double most = 1.0;

    bool isOn() const { return quantity > 1; }
    bool ofCompare() const { return quantity == 2; }
    bool ofField() const { return quantity > 2 && quantity < firstOfReport; }
    bool ofReport() const { return quantity >= firstOfReport; }
    /// The field value, or the value of the report, from 0.
    std::int32_t fieldIndex() const { return quantity - 3; }
    std::int32_t reportIndex() const { return quantity - firstOfReport; }
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CColours& values) {
    constexpr double fewestBands = 2.0;
    constexpr double mostBands = 20.0;
    DialogForm form;
    form.name = "CColours";
    form.title = "Colour by value";
    form.fields = {
        radioField("quantity", values.quantity,
                   {"None", "Distance of Compare", "Field value 1", "Field value 2", "Field value 3", "Aspect of cells",
                    "Skew of cells", "Warp of cells", "Growth of steps"}),
        integerField("bands", "Bands", values.bands, fewestBands, mostBands),
        checkField("automatic", "Range of the values", values.automatic),
        realField("least", "From", values.least),
        realField("most", "To", values.most),
    };
    form.refresh = [&values](DialogForm& shown, std::string_view) {
        for (const char* key : {"bands", "automatic"}) {
            shown.find(key)->on = values.quantity != 1;
        }
        for (const char* key : {"least", "most"}) {
            shown.find(key)->on = values.quantity != 1 && !values.automatic;
        }
    };
    form.confirm = [&values](DialogForm& shown) -> std::optional<DialogRefusal> {
        if (shown.find("least")->on && !(values.least < values.most)) {
            return DialogRefusal{"The range must end above its start", "most"};
        }
        return std::nullopt;
    };
    return form;
}

} // namespace velmora
