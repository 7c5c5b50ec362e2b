#include "zBlock.h"

#include <algorithm>

namespace velmora {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char p, char q) { return lower(p) == lower(q); });
}

template <class Zone>
zArray<double>* findIn(Zone& zone, const std::string& name) {
    zArray<double>* const found = variableNamed(zone.variables, name);
    if (found != nullptr) {
        zone.title = name; // wanted: the title of a zone after a look-up is the last name found
    }
    return found;
}

bool fits(const zArray<double>& variable, std::int32_t nodeCount) {
    return variable.size == nodeCount && variable.data.size() == static_cast<std::size_t>(nodeCount);
}

} // namespace

zArray<double>* variableNamed(const ZoneVariables& variables, const std::string& name) {
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&name](const auto& variable) { return sameName(variable->name, name); });
    return found == variables.end() ? nullptr : found->get();
}

ZoneCoordinates coordinatesOf(const ZoneVariables& variables) {
    const ZoneCoordinates found{variableNamed(variables, "x"), variableNamed(variables, "y"),
                                variableNamed(variables, "z")};
    return found.x != nullptr && found.y != nullptr && found.z != nullptr ? found : ZoneCoordinates{};
}

zBlock::zBlock(std::int32_t imaxValue, std::int32_t jmaxValue, std::int32_t kmaxValue)
    : imax(imaxValue), jmax(jmaxValue), kmax(kmaxValue), total(gridSize(imaxValue, jmaxValue, kmaxValue)) {}

zArray<double>* zBlock::findVariable(const std::string& name) {
    return findIn(*this, name);
}

zArray<double>* zBlock::addVariable(const std::string& name) {
    if (zArray<double>* const found = findVariable(name)) {
        return found;
    }
    return variables.emplace_back(std::make_unique<zArray<double>>(imax, jmax, kmax, name)).get();
}

zBlock_fe::zBlock_fe(std::int32_t nodes, std::int32_t connectivityEntries, std::int32_t elements)
    : nodeCount(std::max(nodes, 0)), elementCount(std::max(elements, 0)),
      connectivitySize(std::max(connectivityEntries, 0)), connectivity(static_cast<std::size_t>(connectivitySize), -1) {
}

zArray<double>* zBlock_fe::findVariable(const std::string& name) {
    return findIn(*this, name);
}

zArray<double>* zBlock_fe::addVariable(const std::string& name) {
    if (zArray<double>* const found = findVariable(name)) {
        return found;
    }
    return variables.emplace_back(std::make_unique<zArray<double>>(nodeCount, 1, 1, name)).get();
}

bool elementInRange(const zBlock_fe& zone, std::int32_t element) {
    const std::size_t entry = static_cast<std::size_t>(element) * 4;
    if (element < 0 || entry + 3 >= zone.connectivity.size()) {
        return false;
    }
    const std::int32_t* const corners = zone.connectivity.data() + entry;
    return std::all_of(corners, corners + 3, [&zone](std::int32_t node) { return node >= 0 && node < zone.nodeCount; });
}

bool consistent(const zBlock_fe& zone) {
    if (zone.nodeCount < 0 ||
        zone.connectivity.size() != static_cast<std::size_t>(std::max(zone.connectivitySize, 0)) ||
        !std::all_of(zone.variables.begin(), zone.variables.end(),
                     [&zone](const auto& variable) { return fits(*variable, zone.nodeCount); })) {
        return false;
    }
    std::int32_t element = 0;
    while (element < zone.elementCount && elementInRange(zone, element)) {
        ++element;
    }
    return element == std::max(zone.elementCount, 0);
}

} // namespace velmora
