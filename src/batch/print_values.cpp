#include "print_values.h"

#include "DocumentState.h"
#include "count_limit.h"
#include "parse_number.h"

namespace velmora {

namespace {

constexpr const char* knownValues = "print one of: state, commands, version, read, view, scene, scene overlay, window "
                                    "X Y Z, dialog NAME, kernel NAME NUMBERS, report, curve, comparison, "
                                    "journal, or a "
                                    "list of the model such as patches or lineBuffer";

/// A value that takes no arguments.
std::optional<Json> plainValue(const std::string& name, DocumentState& doc, VelmoraView& view) {
    if (name == "state") {
        return stateValue(doc, view);
    }
    if (name == "commands") {
        return commandsValue(doc, view);
    }
    if (name == "view") {
        return viewValue(view);
    }
    if (name == "scene") {
        return sceneValue(view);
    }
    if (name == "report") {
        return reportValue(doc);
    }
    if (name == "curve") {
        return curveValue(doc);
    }
    if (name == "comparison") {
        return comparisonValue(doc);
    }
    return geometryValue(name, doc);
}

} // namespace

ScriptFailure tooLargeToPrint(const std::string& what) {
    return {"there is not enough free memory to print " + inQuotes(what),
            "print a part of it: print state counts what the model holds"};
}

PrintedValue printedValue(std::span<const std::string> words, DocumentState& doc, VelmoraView& view) {
    const std::string& name = words.front();
    const auto arguments = words.subspan(1);
    if (printedBytes(name, doc, view) > doc.memoryRoom(0.0).free) {
        return tooLargeToPrint(name);
    }
    if (name == "window") {
        return windowValue(arguments, view, doc);
    }
    if (name == "kernel") {
        return kernelValue(arguments);
    }
    if (name == "dialog" && arguments.size() == 1) {
        return dialogValue(arguments[0], doc);
    }
    if (name == "scene" && arguments.size() == 1 && arguments[0] == "overlay") {
        return overlayValue(view);
    }
    if (arguments.empty()) {
        if (auto value = plainValue(name, doc, view)) {
            return std::move(*value);
        }
    }
    std::string what = name;
    for (const std::string& argument : arguments) {
        what += ' ' + argument;
    }
    return ScriptFailure{"there is no value " + inQuotes(what), knownValues};
}

std::optional<std::vector<double>> parseReals(std::span<const std::string> words, std::size_t count) {
    if (words.size() != count) {
        return std::nullopt;
    }
    std::vector<double> numbers;
    for (const std::string& word : words) {
        const auto number = parseReal(word);
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    return numbers;
}

} // namespace velmora
