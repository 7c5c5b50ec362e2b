#include "input_dialogs.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

constexpr double largestNumber = 1000000.0;

/// The four numbers that Input section and Input line have alike.
struct CurveNumbers {
    std::int32_t& patch;
    std::int32_t& curve;
    std::int32_t& maximumCurves;
    const char* curveKey;
    const char* curveCorrected;
};

/// Takes the curve maximum from the patch, if that is one of the model.
void takeMaximum(const CurveNumbers& numbers, const InputContext& context) {
    if (numbers.patch >= 1 && numbers.patch <= static_cast<std::int32_t>(context.curveCounts.size())) {
        numbers.maximumCurves = context.curveCounts[static_cast<std::size_t>(numbers.patch - 1)];
    }
}

std::optional<DialogRefusal> confirmCurve(const CurveNumbers& numbers, const InputContext& context) {
    const auto patchCount = static_cast<std::int32_t>(context.curveCounts.size());
    if (numbers.patch > patchCount) {
        numbers.patch = patchCount;
        takeMaximum(numbers, context);
        return DialogRefusal{"Number of inputted patch is corrected", "patch"};
    }
    takeMaximum(numbers, context);
    const auto& block = context.block;
    if (!block.empty() && std::find(block.begin(), block.end(), numbers.patch - 1) == block.end()) {
        numbers.patch = block.front() + 1;
        takeMaximum(numbers, context);
        return DialogRefusal{"Number of inputted patch is out of Block", "patch"};
    }
    if (numbers.curve > numbers.maximumCurves) {
        numbers.curve = numbers.maximumCurves;
        return DialogRefusal{numbers.curveCorrected, numbers.curveKey};
    }
    return std::nullopt;
}

void addRules(DialogForm& form, CurveNumbers numbers, InputContext context) {
    form.refresh = [numbers, context](DialogForm&, std::string_view) { takeMaximum(numbers, context); };
    form.confirm = [numbers, context = std::move(context)](DialogForm&) { return confirmCurve(numbers, context); };
}

} // namespace

DialogForm describe(CInputPatch& values) {
    DialogForm form;
    form.name = "CInputPatch";
    form.title = "Input patch";
    form.fields = {
        integerField("number", "Inputted number", values.number),
        shownOnly(integerField("maximum", "Maximum number of patches", values.maximum, 1, largestNumber)),
    };
    form.refresh = [&values](DialogForm&, std::string_view key) {
        if (key.empty()) {
            values.number = std::min(values.number, values.maximum);
        }
    };
    form.confirm = [&values](DialogForm&) -> std::optional<DialogRefusal> {
        if (values.number >= 1 && values.number <= values.maximum) {
            return std::nullopt;
        }
        // No patch has a number below 1 either.
        values.number = values.number < 1 ? 1 : values.maximum;
        return DialogRefusal{"Number of inputted patch is corrected", "number"};
    };
    return form;
}

DialogForm describe(CInputSection& values, InputContext context) {
    DialogForm form;
    form.name = "CInputSection";
    form.title = "Input section";
    form.fields = {
        integerField("patch", "Inputted patch", values.patch, 1, largestNumber),
        shownOnly(integerField("maximumPatches", "Maximum number of patches", values.maximumPatches, 1, largestNumber)),
        integerField("section", "Inputted section", values.section, 1, largestNumber),
        shownOnly(
            integerField("maximumSections", "Maximum number of sections", values.maximumSections, 1, largestNumber)),
    };
    addRules(
        form,
        {values.patch, values.section, values.maximumSections, "section", "Number of inputted section is corrected"},
        std::move(context));
    return form;
}

DialogForm describe(CInputLine& values, InputContext context) {
    DialogForm form;
    form.name = "CInputLine";
    form.title = "Input line";
    form.fields = {
        integerField("patch", "Inputted patch", values.patch, 1, largestNumber),
        shownOnly(integerField("maximumPatches", "Maximum number of patches", values.maximumPatches, 1, largestNumber)),
        integerField("line", "Inputted line", values.line, 1, largestNumber),
        shownOnly(integerField("maximumLines", "Maximum number of lines", values.maximumLines, 1, largestNumber)),
    };
    addRules(form, {values.patch, values.line, values.maximumLines, "line", "Number of inputted lines is corrected"},
             std::move(context));
    return form;
}

} // namespace velmora
