#include "CColours.h"

namespace velmora {

DialogForm describe(CColours& values) {
    constexpr double fewestBands = 2.0;
    constexpr double mostBands = 20.0;
    DialogForm form;
    form.name = "CColours";
    form.title = "Colour by value";
    form.fields = {
        radioField("quantity", values.quantity,
                   {"None", "Distance of Compare", "Field value 1", "Field value 2", "Field value 3"}),
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
