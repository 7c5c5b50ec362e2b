#include "DocumentState.h"
#include "print_values.h"

namespace velmora {

namespace {

Json placeValue(const std::optional<ComparedPlace>& at) {
    if (!at) {
        return {};
    }
    return at->section < 0 ? Json::array({at->part + 1, at->point + 1})
                           : Json::array({at->part + 1, at->section + 1, at->point + 1});
}

} // namespace

Json comparisonValue(const DocumentState& doc) {
    const Comparison* const comparison = doc.comparison();
    if (comparison == nullptr) {
        return {};
    }
    const auto ofPoints = [comparison](double value) { return comparison->at ? numberValue(value) : Json(); };
    return {{"points", comparison->values.size()}, {"largest", ofPoints(comparison->largest)},
            {"mean", ofPoints(comparison->mean)},  {"rms", ofPoints(comparison->rms)},
            {"at", placeValue(comparison->at)},    {"values", numbersValue(comparison->values)}};
}

} // namespace velmora
