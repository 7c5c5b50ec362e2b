#include "CConvert_to_SKL.h"

#include "vectors.h"

namespace velmora {

namespace {

/// The body's extent on the chosen axis, and what follows from it.
void takeExtent(CConvert_to_SKL& values) {
    constexpr double borderOfExtent = 0.01;
    values.min = along(values.boxMin, values.planeAxis - 1);
    values.max = along(values.boxMax, values.planeAxis - 1);
    values.border = (values.max - values.min) * borderOfExtent;
    values.yourMin = values.min + values.border;
    values.yourMax = values.max - values.border;
}

void refresh(DialogForm& form, CConvert_to_SKL& values, std::string_view key) {
    if (key.empty() || key == "planeAxis") {
        takeExtent(values);
    }
    const bool manual = values.borderApproach == 2;
    form.find("border")->on = !manual;
    form.find("yourMin")->on = manual;
    form.find("yourMax")->on = manual;
}

/// Both tests hold in either approach.
std::optional<DialogRefusal> confirm(const CConvert_to_SKL& values) {
    if (values.min > values.yourMin) {
        return DialogRefusal{"Your min choice is out of body. Try another one.", "yourMin"};
    }
    if (values.yourMax > values.max) {
        return DialogRefusal{"Your max choice is out of body. Try another one.", "yourMax"};
    }
    return std::nullopt;
}

} // namespace

DialogForm describe(CConvert_to_SKL& values) {
    DialogForm form;
    form.name = "CConvert_to_SKL";
    form.title = "Convert to SKL";
    form.fields = {
        integerField("number", "Number", values.number, 0, 100000),
        realField("border", "", values.border, 0, 1e7),
        shownOnly(realField("min", "Min", values.min)),
        shownOnly(realField("max", "Max", values.max)),
        realField("yourMin", "Your Min choice", values.yourMin),
        realField("yourMax", "Your Max choice", values.yourMax),
        realField("precision", "Precision", values.precision, 1e-10, 100),
        radioField("planeAxis", values.planeAxis, {"Use x=const planes", "Use y=const planes", "Use z=const planes"}),
        radioField("borderApproach", values.borderApproach, {"Automatic", "Manual"}),
    };
    form.refresh = [&values](DialogForm& self, std::string_view key) { refresh(self, values, key); };
    form.confirm = [&values](DialogForm&) { return confirm(values); };
    return form;
}

} // namespace velmora
