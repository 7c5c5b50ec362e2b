#include "compared_parts.h"

#include "DocumentState.h"

namespace velmora {

namespace {

std::size_t valueCount(const DocumentState& document, std::size_t part) {
    if (document.structureKind != StructureKind::Unstructured) {
        std::size_t count = 0;
        for (const PointList& section : document.patches[part]) {
            count += section.size();
        }
        return count;
    }
    const zBlock_fe& zone = *document.feRegion.blocks[part];
    return coordinatesOf(zone.variables) ? static_cast<std::size_t>(zone.nodeCount) : 0;
}

} // namespace

std::vector<std::vector<double>> comparedParts(const DocumentState& document) {
    std::vector<std::vector<double>> parts;
    const Comparison* const comparison = document.comparison();
    if (comparison == nullptr) {
        return parts;
    }
    auto next = comparison->values.begin();
    for (std::size_t k = 0; k < static_cast<std::size_t>(document.partCount()); ++k) {
        auto& values = parts.emplace_back();
        if (k < comparison->chosen.size() && comparison->chosen[k]) {
            const auto end = next + static_cast<std::ptrdiff_t>(valueCount(document, k));
            values.assign(next, end);
            next = end;
        }
    }
    return parts;
}

} // namespace velmora
