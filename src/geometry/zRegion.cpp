#include "zRegion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace velmora {

namespace {

using Field = zArray<double>;

struct NodeFields {
    Field* x = nullptr;
    Field* y = nullptr;
    Field* z = nullptr;
};

bool holds(const Field* field, std::ptrdiff_t node) {
    return field != nullptr && node >= 0 && static_cast<std::size_t>(node) < field->data.size();
}

// The three fields of a zone, or false when one of them has no such node.
bool findNode(const zRegion_fe& region, std::ptrdiff_t block, std::ptrdiff_t node, NodeFields& fields) {
    if (block < 0 || static_cast<std::size_t>(block) >= region.blocks.size()) {
        return false;
    }
    const ZoneVariables& variables = region.blocks[static_cast<std::size_t>(block)]->variables;
    if (variables.size() < 3) {
        return false;
    }
    fields = {variableNamed(variables, "x"), variableNamed(variables, "y"), variableNamed(variables, "z")};
    return holds(fields.x, node) && holds(fields.y, node) && holds(fields.z, node);
}

} // namespace

int zRegion_fe::getNode(std::ptrdiff_t block, std::ptrdiff_t node, double& x, double& y, double& z) const {
    NodeFields fields;
    if (!findNode(*this, block, node, fields)) {
        return -1;
    }
    const auto index = static_cast<std::size_t>(node);
    x = fields.x->data[index];
    y = fields.y->data[index];
    z = fields.z->data[index];
    return 0;
}

int zRegion_fe::setNode(std::ptrdiff_t block, std::ptrdiff_t node, double x, double y, double z) {
    NodeFields fields;
    if (!findNode(*this, block, node, fields)) {
        return -1;
    }
    const auto index = static_cast<std::size_t>(node);
    fields.x->data[index] = x;
    fields.y->data[index] = y;
    fields.z->data[index] = z;
    return 0;
}

std::unique_ptr<zBlock_fe> cloneZone(const zBlock_fe& zone) {
    auto copy = std::make_unique<zBlock_fe>(zone.nodeCount, 0, zone.elementCount);
    copy->title = zone.title;
    copy->connectivitySize = zone.connectivitySize;
    copy->connectivity = zone.connectivity;
    for (const auto& variable : zone.variables) {
        copy->variables.push_back(std::make_unique<Field>(*variable));
    }
    return copy;
}

void copyBlock(const zRegion_fe& source, zRegion_fe& destination, std::ptrdiff_t index) {
    if (index >= 0 && static_cast<std::size_t>(index) < source.blocks.size()) {
        destination.blocks.push_back(cloneZone(*source.blocks[static_cast<std::size_t>(index)]));
    }
}

void copyRegion(const zRegion_fe& source, zRegion_fe& destination) {
    if (source.blocks.empty() || &source == &destination) {
        return;
    }
    destination.blocks.clear();
    destination.title = source.title;
    destination.words = source.words;
    for (const auto& zone : source.blocks) {
        destination.blocks.push_back(cloneZone(*zone));
    }
}

namespace {

/// The least and the largest of the values and of what stands there, what is not a number left out. Of equal ones, as
/// the two zeros are, the first stays. Four at a time do not wait for each other.
void widen(const std::vector<double>& values, double& low, double& high) {
    constexpr std::size_t lanes = 4;
    std::array<double, lanes> lows{};
    std::array<double, lanes> highs{};
    lows.fill(low);
    highs.fill(high);
    const std::size_t whole = values.size() - values.size() % lanes;
    for (std::size_t i = 0; i < whole; i += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const double value = values[i + lane];
            lows[lane] = value < lows[lane] ? value : lows[lane];
            highs[lane] = value > highs[lane] ? value : highs[lane];
        }
    }
    double least = *std::min_element(lows.begin(), lows.end());
    double most = *std::max_element(highs.begin(), highs.end());
    for (std::size_t i = whole; i < values.size(); ++i) {
        least = std::min(least, values[i]);
        most = std::max(most, values[i]);
    }
    low = least < low ? *std::find(values.begin(), values.end(), least) : low;
    high = most > high ? *std::find(values.begin(), values.end(), most) : high;
}

} // namespace

void zoneBounds(const zRegion_fe& region, zVec<double>& lower, zVec<double>& upper) {
    for (const auto& zone : region.blocks) {
        if (const ZoneCoordinates at = coordinatesOf(zone->variables)) {
            widen(at.x->data, lower.x, upper.x);
            widen(at.y->data, lower.y, upper.y);
            widen(at.z->data, lower.z, upper.z);
        }
    }
}

} // namespace velmora
